/// Wide strings: copies, comparison, trimming and justification in place, search.
#ifndef KZ_TLS21AN_STR_H
#define KZ_TLS21AN_STR_H

#include "kz_tls21an/lnklist.h"

extern "C" {

/// Number of characters before the terminator; 0 for NULL.
KZ_TLS_API size_t kz_Str_len(const kz_Char* text);
/// Heap copy that kz_Free or free releases; NULL for NULL and without memory.
KZ_TLS_API kz_Char* kz_Str_dup(const kz_Char* text);
/// The same function under the name that modules with 8-bit text use for the wide form.
KZ_TLS_API kz_Char* kz_Str_dupW(const kz_Char* text);
/// Copies at most `n` characters and terminates, so `destination` holds n + 1. NULL source: empty.
/// @return destination
KZ_TLS_API kz_Char* kz_Str_ncpy(kz_Char* destination, const kz_Char* source, size_t n);
/// Comparison without regard to case: negative, 0, positive. NULL is smaller than any text.
KZ_TLS_API int kz_Str_cmpi(const kz_Char* a, const kz_Char* b);
/// The same over the first `n` characters.
KZ_TLS_API int kz_Str_ncmpi(const kz_Char* a, const kz_Char* b, size_t n);
/// Upper case in place. @return text
KZ_TLS_API kz_Char* kz_Str_upper(kz_Char* text);
}

#endif
