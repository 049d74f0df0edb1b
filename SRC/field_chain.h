/// Fields on chains in the XData form, for the stores that keep such chains. Implemented beside the
/// exported chain operations of extended data, in SRC/XD.
#ifndef SRC_FIELD_CHAIN_H
#define SRC_FIELD_CHAIN_H

#include "kz/kz_platform.h"

namespace kz {

/// Writes the fields of the list into the chain at `*fields`, which may be empty. With `look` a
/// field that the chain has is replaced in its place; all others go behind its end.
/// @return false when a field can't be written; the chain then holds a part of the list
bool mergeFields(resbuf** fields, kz_FldList* list, bool look);

/// Fills the fields of the list from the chain and removes those that the chain does not have;
/// `missing`, when it is not NULL, hears of each. The position ends behind the last field.
void fillFields(resbuf* chain, kz_FldList* list, void (*missing)(const kz_Char* name));

}  // namespace kz

#endif
