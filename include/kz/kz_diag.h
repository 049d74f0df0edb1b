/// The trace output's functions that the library offers once more, for modules that link this
/// library alone. They lead to the tools library's functions of the same names (kz_tls21an/diag.h),
/// so it is the same whether a program finds these or those.
#ifndef KZ_DIAG_H
#define KZ_DIAG_H

#include "kz/kz_platform.h"

extern "C" {

/// Writes the message in `buffer`, `count` characters long (negative: up to its terminator).
KZ_EXPORT void kz_Diag_putOutput(int count, const kz_Char* buffer, const char* source, int line);
/// Writes one fixed message.
KZ_EXPORT void kz_Diag_putOutputMsg(const kz_Char* message, const char* source, int line);
/// Selects the output. @return 1; 0 when that is refused, output unchanged
KZ_EXPORT int kz_Diag_setOutput(int option, const kz_Char* fileName);
}

#endif
