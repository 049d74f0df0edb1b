/// Wide strings: copies, comparison, trimming and justification in place, search.
#ifndef KZ_TLS21AN_STR_H
#define KZ_TLS21AN_STR_H

#include "kz_tls21an/strlist.h"

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

/// Trimming in place; a blank is a space or a tab. All give `text` back, NULL for NULL.
/// rlb removes leading blanks, rtb trailing ones; delBlks removes both and makes one space of each
/// run of blanks between.
KZ_TLS_API kz_Char* kz_Str_rlb(kz_Char* text);
KZ_TLS_API kz_Char* kz_Str_rtb(kz_Char* text);
KZ_TLS_API kz_Char* kz_Str_delBlks(kz_Char* text);

/// Justification in place, in a field of `width` characters; `text` holds width + 1 or more. The
/// text is trimmed first and filled with spaces to the width: cj centres it (an odd space goes
/// behind), lj puts it to the left, rj to the right. A trimmed text that is longer than the width
/// is not cut. A width of 0 or less leaves the text as it was. @return text
KZ_TLS_API kz_Char* kz_Str_cj(kz_Char* text, int width);
KZ_TLS_API kz_Char* kz_Str_lj(kz_Char* text, int width);
KZ_TLS_API kz_Char* kz_Str_rj(kz_Char* text, int width);
/// Appends spaces up to `width` characters; nothing is trimmed or cut. @return text
KZ_TLS_API kz_Char* kz_Str_pad(kz_Char* text, int width);

/// `length` characters of `text` from `start` on, counted from 1; fewer where the text ends. A
/// start below 1 counts as 1, a length below 0 as 0. `out` may be `text`; a NULL text is empty.
/// @return out
KZ_TLS_API kz_Char* kz_Str_substr(kz_Char* out, const kz_Char* text, int start, int length);
/// `text` with every occurrence of the text `from` replaced by `to`, found from left to right. A
/// NULL or empty `from` changes nothing, a NULL `to` removes.
/// @return text in storage of this function that holds until its next call; it may be passed to
/// that call. Empty for a NULL text and without memory.
KZ_TLS_API const kz_Char* kz_Str_replaceChar(const kz_Char* text, const kz_Char* from,
                                             const kz_Char* to);
/// Position of the first occurrence of `part` in `text`, counted from 0, without regard to case
/// when `ignoreCase` is not 0; -1 when there is none or for NULL. An empty part stands at 0.
KZ_TLS_API int kz_Str_index(const kz_Char* text, const kz_Char* part, int ignoreCase);
/// Breaks `text` into lines of at most `width` characters, at blanks where there are some, which
/// are dropped; a longer word is cut. Line ends in the text end a line, too. A width of 0 or less
/// breaks at line ends only. The empty text has no line.
/// @return a new list, standing at its start, that the caller destroys; NULL for a NULL text or
/// without memory
KZ_TLS_API kz_StrList* kz_Str_wrapText(const kz_Char* text, int width);
}

#endif
