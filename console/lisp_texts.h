/// The manual's texts of the library's functions, and the examples of all. The table is made from
/// the sources when the program is built (scripts/lisp_reference.py).
#ifndef CONSOLE_LISP_TEXTS_H
#define CONSOLE_LISP_TEXTS_H

#include <span>

#include "host/lisp.h"

namespace console {

std::span<const host::LispText> lispTexts();

}  // namespace console

#endif
