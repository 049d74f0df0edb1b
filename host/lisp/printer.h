/// Data to text.
#ifndef HOST_LISP_PRINTER_H
#define HOST_LISP_PRINTER_H

#include "lisp/value.h"

namespace host::lisp {

enum class PrintForm {
    Plain,    ///< as princ: texts as they stand
    Readable  ///< as prin1: texts in quotes, with escapes
};

/// Appends the printed form of a value to `out`. Any depth of nesting is printed.
/// @param limit  stops with "..." once `out` has grown by this many units
void print(std::u16string& out, const Value& value, PrintForm form, size_t limit = SIZE_MAX);
/// The printed form as a new text.
std::u16string printed(const Value& value, PrintForm form);
/// A real with six significant digits, and always a point or an exponent.
void printReal(std::u16string& out, double number);

}  // namespace host::lisp

#endif
