/// Writing one field behind the known end of a chain.
#ifndef SRC_RB_FIELD_WRITER_H
#define SRC_RB_FIELD_WRITER_H

#include "chain_tail.h"

namespace kz {

/// The form in which a field is written.
struct FieldForm {
    bool xdata;         ///< XData form, else Lisp form
    bool open;          ///< with the opening marker and the name
    bool close;         ///< with the closing marker
    bool list_markers;  ///< RTLB and RTLE also in the XData form
};

/// Longest name or text that is written [characters].
constexpr size_t kMaxWrittenText = 511;

/// Appends the field. False without memory and, in the XData form, for a type that it does not
/// have; the closing marker is there all the same.
bool appendField(ChainTail& tail, const kz_FldNode& field, const FieldForm& form);

}  // namespace kz

#endif
