/// Numbers written with the digits 0-9 and A-Z, as the codes of drawings and groups are. Digits are
/// read in either case and written in upper case.
#ifndef KZ_TLS21AN_BASE36_H
#define KZ_TLS21AN_BASE36_H

#include "kz_tls21an/types.h"

/// Digits of the suite's codes; kz_Base36_increment makes no number longer than this.
#define KZ_BASE36_DIGITS 8

extern "C" {

/// The digits of the integer part of `value`.
/// @return text in storage of this function that holds until its next call; empty for a negative
/// value, one of 2^64 or more, and one that is no number
KZ_TLS_API const kz_Char* kz_Base36_fromBase10(double value);
/// Compares two numbers: negative, 0, positive. A number ends at the first character that is no
/// digit, leading zeros don't count, and NULL or a text without digits is zero.
KZ_TLS_API int kz_Base36_compare(const kz_Char* a, const kz_Char* b);
/// Adds `step`, which may be negative, to the number in `text`, in place. Leading zeros stay; an
/// empty text is zero. The text grows by carries up to KZ_BASE36_DIGITS digits, so a buffer that
/// holds those and the terminator is always enough.
/// @return 1; 0 with the text unchanged when it holds another character than a digit, or when the
/// sum is negative or needs a longer text
KZ_TLS_API int kz_Base36_increment(kz_Char* text, int step);
}

#endif
