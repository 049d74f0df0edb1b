/// Conversions of text. Case is one table of ranges, so that it is the same on every machine and in
/// every locale.
#include "kz_tls21an/text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace kz {
namespace {

constexpr kz_Char escapeBase = 0xDC00;  // U+DC80 to U+DCFF stand for the bytes 0x80 to 0xFF

constexpr bool isHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit < 0xDC00;
}

constexpr bool isLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit < 0xE000;
}

struct Decoded {
    char32_t code;
    size_t length;  // in bytes; 0 when the head of the text is no UTF-8
};

/// The character at the head of a text that isn't empty.
Decoded decodeHead(std::string_view utf8) {
    const auto byteAt = [&](size_t index) { return static_cast<unsigned char>(utf8[index]); };
    const unsigned lead = byteAt(0);
    if (lead < 0x80) return {lead, 1};
    const size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || utf8.size() < length) return {0, 0};
    char32_t code = lead & (0xFFU >> (length + 1));
    for (size_t index = 1; index < length; ++index) {
        if ((byteAt(index) & 0xC0U) != 0x80) return {0, 0};
        code = (code << 6) | (byteAt(index) & 0x3FU);
    }
    constexpr char32_t least[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool isSurrogate = isHighSurrogate(code) || isLowSurrogate(code);
    if (code < least[length] || code > 0x10FFFF || isSurrogate) return {0, 0};
    return {code, length};
}

void appendCodeUtf8(std::string& out, char32_t code) {
    const auto tail = [&](int shift) {
        out += static_cast<char>(0x80U | ((code >> static_cast<unsigned>(shift)) & 0x3FU));
    };
    if (code < 0x80) {
        out += static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xC0U | (code >> 6));
        tail(0);
    } else if (code < 0x10000) {
        out += static_cast<char>(0xE0U | (code >> 12));
        tail(6);
        tail(0);
    } else {
        out += static_cast<char>(0xF0U | (code >> 18));
        tail(12);
        tail(6);
        tail(0);
    }
}

/// Lower-case units first, first + stride, ... last, whose upper case lies `toUpper` further on.
struct CaseRange {
    kz_Char first;
    kz_Char last;
    int stride;
    int toUpper;
};

constexpr CaseRange caseRanges[] = {
    {0x061, 0x07A, 1, -32}, {0x0E0, 0x0F6, 1, -32}, {0x0F8, 0x0FE, 1, -32}, {0x0FF, 0x0FF, 1, 121},
    {0x101, 0x12F, 2, -1},  {0x133, 0x137, 2, -1},  {0x13A, 0x148, 2, -1},  {0x14B, 0x177, 2, -1},
    {0x17A, 0x17E, 2, -1},  {0x3AC, 0x3AC, 1, -38}, {0x3AD, 0x3AF, 1, -37}, {0x3B1, 0x3C1, 1, -32},
    {0x3C3, 0x3CB, 1, -32}, {0x3CC, 0x3CC, 1, -64}, {0x3CD, 0x3CE, 1, -63}, {0x430, 0x44F, 1, -32},
    {0x450, 0x45F, 1, -80}, {0x461, 0x481, 2, -1},  {0x48B, 0x4BF, 2, -1},  {0x4C2, 0x4CE, 2, -1},
    {0x4CF, 0x4CF, 1, -15}, {0x4D1, 0x52F, 2, -1},  {0x561, 0x586, 1, -48},
};

/// The range that holds `unit` after its ends have been moved by `shifted` times toUpper.
const CaseRange* rangeOf(int unit, bool shifted) {
    for (const CaseRange& range : caseRanges) {
        const int first = range.first + (shifted ? range.toUpper : 0);
        const int last = range.last + (shifted ? range.toUpper : 0);
        if (unit >= first && unit <= last && (unit - first) % range.stride == 0) return &range;
    }
    return nullptr;
}

bool isSpace(kz_Char unit) {
    return unit == ' ' || (unit >= '\t' && unit <= '\r');
}

bool isDigit(kz_Char unit) {
    return unit >= '0' && unit <= '9';
}

std::u16string_view withoutLeadingSpace(std::u16string_view text) {
    while (!text.empty() && isSpace(text.front()))
        text.remove_prefix(1);
    return text;
}

size_t countDigits(std::u16string_view text) {
    size_t count = 0;
    while (count < text.size() && isDigit(text[count]))
        ++count;
    return count;
}

/// Length of the number at the head of an unsigned decimal text; 0 when there is none.
size_t realLength(std::u16string_view text) {
    const size_t whole = countDigits(text);
    size_t length = whole;
    size_t fraction = 0;
    if (length < text.size() && text[length] == '.') {
        fraction = countDigits(text.substr(length + 1));
        length += 1 + fraction;
    }
    if (whole + fraction == 0) return 0;
    if (length < text.size() && (text[length] == 'e' || text[length] == 'E')) {
        size_t digits = length + 1;
        if (digits < text.size() && (text[digits] == '+' || text[digits] == '-')) ++digits;
        const size_t exponent = digits < text.size() ? countDigits(text.substr(digits)) : 0;
        if (exponent > 0) length = digits + exponent;
    }
    return length;
}

/// Whether a number out of the range of a double is too large, not too small.
bool isTooLarge(std::string_view number) {
    const size_t mark = std::min(number.find_first_of("eE"), number.size());
    const std::string_view mantissa = number.substr(0, mark);
    const size_t point = std::min(mantissa.find('.'), mantissa.size());
    const size_t digit = mantissa.find_first_of("123456789");
    const auto position = static_cast<int64_t>(point) - static_cast<int64_t>(digit);

    const bool hasSign =
        mark + 1 < number.size() && !isDigit(static_cast<kz_Char>(number[mark + 1]));
    const bool isNegative = hasSign && number[mark + 1] == '-';
    const size_t digits = std::min(mark + 1 + (hasSign ? 1 : 0), number.size());
    int64_t exponent = 0;
    const auto result =
        std::from_chars(number.data() + digits, number.data() + number.size(), exponent);
    if (result.ec == std::errc::result_out_of_range) return !isNegative;
    return position + (isNegative ? -exponent : exponent) > 0;
}

}  // namespace

void appendUtf16(std::u16string& out, std::string_view utf8) {
    out.reserve(out.size() + utf8.size());
    while (!utf8.empty()) {
        const Decoded head = decodeHead(utf8);
        if (head.length == 0) {
            out += static_cast<kz_Char>(escapeBase + static_cast<unsigned char>(utf8.front()));
            utf8.remove_prefix(1);
            continue;
        }
        if (head.code < 0x10000) {
            out += static_cast<kz_Char>(head.code);
        } else {
            out += static_cast<kz_Char>(0xD800 + ((head.code - 0x10000) >> 10));
            out += static_cast<kz_Char>(0xDC00 + ((head.code - 0x10000) & 0x3FFU));
        }
        utf8.remove_prefix(head.length);
    }
}

std::u16string toUtf16(std::string_view utf8) {
    std::u16string out;
    appendUtf16(out, utf8);
    return out;
}

void appendUtf8(std::string& out, std::u16string_view text) {
    out.reserve(out.size() + text.size());
    for (size_t index = 0; index < text.size(); ++index) {
        const char32_t unit = text[index];
        const char32_t next = index + 1 < text.size() ? text[index + 1] : 0;
        if (isHighSurrogate(unit) && isLowSurrogate(next)) {
            appendCodeUtf8(out, 0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00));
            ++index;
        } else if (unit >= escapeBase + 0x80U && unit <= escapeBase + 0xFFU) {
            out += static_cast<char>(unit - escapeBase);
        } else {
            appendCodeUtf8(out, unit);
        }
    }
}

std::string toUtf8(std::u16string_view text) {
    std::string out;
    appendUtf8(out, text);
    return out;
}

kz_Char upperUnit(kz_Char unit) {
    if (unit < 0xE0) return unit >= 'a' && unit <= 'z' ? static_cast<kz_Char>(unit - 32) : unit;
    const CaseRange* range = rangeOf(unit, false);
    return range ? static_cast<kz_Char>(unit + range->toUpper) : unit;
}

kz_Char lowerUnit(kz_Char unit) {
    if (unit < 0xC0) return unit >= 'A' && unit <= 'Z' ? static_cast<kz_Char>(unit + 32) : unit;
    const CaseRange* range = rangeOf(unit, true);
    return range ? static_cast<kz_Char>(unit - range->toUpper) : unit;
}

std::u16string toUpper(std::u16string_view text) {
    std::u16string out(text);
    for (kz_Char& unit : out)
        unit = upperUnit(unit);
    return out;
}

int compareNoCase(std::u16string_view a, std::u16string_view b) {
    const size_t common = a.size() < b.size() ? a.size() : b.size();
    for (size_t index = 0; index < common; ++index) {
        const int difference = upperUnit(a[index]) - upperUnit(b[index]);
        if (difference != 0) return difference;
    }
    if (a.size() == b.size()) return 0;
    return a.size() < b.size() ? -1 : 1;
}

int32_t parseInteger(std::u16string_view text) {
    text = withoutLeadingSpace(text);
    const bool isNegative = !text.empty() && text.front() == '-';
    if (isNegative || (!text.empty() && text.front() == '+')) text.remove_prefix(1);
    const int64_t limit = std::numeric_limits<int32_t>::max() + (isNegative ? int64_t{1} : 0);
    int64_t value = 0;
    for (size_t index = 0; index < text.size() && isDigit(text[index]) && value < limit; ++index) {
        value = value * 10 + (text[index] - '0');
    }
    if (value > limit) value = limit;
    return static_cast<int32_t>(isNegative ? -value : value);
}

double parseReal(std::u16string_view text) {
    text = withoutLeadingSpace(text);
    const bool isNegative = !text.empty() && text.front() == '-';
    if (isNegative || (!text.empty() && text.front() == '+')) text.remove_prefix(1);
    const size_t length = realLength(text);
    if (length == 0) return 0.0;

    const std::string number(text.begin(), text.begin() + static_cast<ptrdiff_t>(length));
    double value = 0.0;
    const auto result = std::from_chars(number.data(), number.data() + number.size(), value);
    if (result.ec == std::errc::result_out_of_range) value = isTooLarge(number) ? HUGE_VAL : 0.0;
    return isNegative ? -value : value;
}

}  // namespace kz
