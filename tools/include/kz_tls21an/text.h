/// Conversions between UTF-16, UTF-8 and folded text, as C++ strings. A byte that is no UTF-8
/// becomes the lone surrogate U+DC80 + (byte - 0x80) and goes back to the same byte, so nothing is
/// lost.
#ifndef KZ_TLS21AN_TEXT_H
#define KZ_TLS21AN_TEXT_H

#include <string>
#include <string_view>

#include "kz_tls21an/types.h"

namespace kz {

/// UTF-8 to UTF-16.
KZ_TLS_API std::u16string toUtf16(std::string_view utf8);
/// Appends the UTF-16 form of `utf8` to `out`.
KZ_TLS_API void appendUtf16(std::u16string& out, std::string_view utf8);
/// UTF-16 to UTF-8.
KZ_TLS_API std::string toUtf8(std::u16string_view text);
/// Appends the UTF-8 form of `text` to `out`.
KZ_TLS_API void appendUtf8(std::string& out, std::u16string_view text);

/// Upper case of one unit: ASCII, Latin-1, Latin Extended-A, Greek, Cyrillic and Armenian by simple
/// one-to-one mapping, all else unchanged. Independent of the locale.
KZ_TLS_API kz_Char upperUnit(kz_Char unit);
/// Lower case, the inverse of upperUnit.
KZ_TLS_API kz_Char lowerUnit(kz_Char unit);
/// Upper case of a text by upperUnit.
KZ_TLS_API std::u16string toUpper(std::u16string_view text);
/// Comparison without regard to case by upperUnit: negative, 0, positive.
KZ_TLS_API int compareNoCase(std::u16string_view a, std::u16string_view b);

/// Decimal prefix of a text as a number, as strtol does: leading blanks, sign, digits; 0 on
/// rubbish; clamped to the range of 32 bits.
KZ_TLS_API int32_t parseInteger(std::u16string_view text);
/// Decimal prefix of a text as a real, as strtod does, always with '.'; 0.0 on rubbish.
KZ_TLS_API double parseReal(std::u16string_view text);

}  // namespace kz

#endif
