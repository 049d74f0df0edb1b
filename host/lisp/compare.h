/// Equality and order of values.
#ifndef HOST_LISP_COMPARE_H
#define HOST_LISP_COMPARE_H

#include <compare>

#include "lisp/interpreter.h"

namespace host::lisp {

/// Same structure and values; numbers may differ by `fuzz`, and 1 is equal to 1.0.
bool isEqual(Interpreter& in, const Value& a, const Value& b, double fuzz = 0.0);
/// Equality as `=` sees it: numbers by value, texts by content, else the same object.
bool isSameValue(const Value& a, const Value& b);
/// Order of numbers and texts: negative, 0, positive; nothing for NaN. nil comes before everything,
/// numbers before texts, texts before the rest.
std::partial_ordering orderOf(const Value& a, const Value& b);

}  // namespace host::lisp

#endif
