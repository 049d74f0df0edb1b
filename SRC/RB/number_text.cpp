/// Decimal parsing of wide text. The language's parser of reals wants 8-bit text, so the numeric
/// characters are narrowed into a small buffer first.
#include "RB/number_text.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace kz {
namespace {

const kz_Char* skipBlanks(const kz_Char* text) {
    while (*text == KZ_T(' ') || (*text >= KZ_T('\t') && *text <= KZ_T('\r')))
        ++text;
    return text;
}

bool isDigit(kz_Char unit) {
    return unit >= KZ_T('0') && unit <= KZ_T('9');
}

bool isNumeric(kz_Char unit) {
    return isDigit(unit) || unit == KZ_T('.') || unit == KZ_T('-') || unit == KZ_T('+') ||
           unit == KZ_T('e') || unit == KZ_T('E');
}

/// What a parser of reals gives for a text whose number is too large or too small for a double.
double limitOf(const char* begin, const char* end) {
    const char* exponent = std::find_if(begin, end, [](char c) { return c == 'e' || c == 'E'; });
    const bool tiny = exponent != end && exponent + 1 != end && exponent[1] == '-';
    const double size = tiny ? 0.0 : std::numeric_limits<double>::infinity();
    return *begin == '-' ? -size : size;
}

}  // namespace

int32_t parseLong(const kz_Char* text) {
    if (text == nullptr) return 0;
    text = skipBlanks(text);
    const bool negative = *text == KZ_T('-');
    if (negative || *text == KZ_T('+')) ++text;
    constexpr int64_t kLimit = int64_t{std::numeric_limits<int32_t>::max()} + 1;
    int64_t value = 0;
    for (; isDigit(*text) && value < kLimit; ++text)
        value = value * 10 + (*text - KZ_T('0'));
    if (negative) return static_cast<int32_t>(-std::min(value, kLimit));
    return static_cast<int32_t>(std::min(value, kLimit - 1));
}

double parseReal(const kz_Char* text) {
    if (text == nullptr) return 0.0;
    text = skipBlanks(text);
    if (*text == KZ_T('+') && text[1] != KZ_T('-')) ++text;
    char narrow[128] = {};
    char* end = narrow;
    for (; isNumeric(*text) && end < narrow + sizeof narrow - 1; ++text) {
        *end++ = static_cast<char>(*text);
    }
    double value = 0.0;
    const std::from_chars_result result = std::from_chars(narrow, end, value);
    if (result.ec == std::errc::result_out_of_range) return limitOf(narrow, result.ptr);
    return value;
}

int32_t truncateToLong(double value) {
    if (!(value > -2147483649.0 && value < 2147483648.0)) {
        return std::numeric_limits<int32_t>::min();
    }
    return static_cast<int32_t>(value);
}

}  // namespace kz
