/// Base 36 numbers as text.
#include "kz_tls21an/base36.h"

#include <cmath>
#include <cstring>
#include <string_view>

#include "kz_tls21an/str.h"
#include "kz_tls21an/text.h"

namespace {

constexpr int base = 36;

/// Value of a digit; -1 for another character.
int digitValue(kz_Char unit) {
    const kz_Char upper = kz::upperUnit(unit);
    if (upper >= '0' && upper <= '9') return upper - '0';
    return upper >= 'A' && upper <= 'Z' ? upper - 'A' + 10 : -1;
}

kz_Char digitUnit(int64_t value) {
    return static_cast<kz_Char>(value < 10 ? '0' + value : 'A' + value - 10);
}

/// The digits at the head of a text without leading zeros.
std::u16string_view significantDigits(const kz_Char* text) {
    if (!text) return {};
    while (*text == '0')
        ++text;
    size_t length = 0;
    while (digitValue(text[length]) >= 0)
        ++length;
    return {text, length};
}

/// Adds `carry` to the digits, storing them only when `isStored`. @return the carry out of the
/// first digit, negative for a borrow
int64_t addToDigits(kz_Char* digits, size_t length, int64_t carry, bool isStored) {
    for (size_t index = length; index > 0; --index) {
        const int64_t sum = digitValue(digits[index - 1]) + carry;
        const int64_t digit = (sum % base + base) % base;
        carry = (sum - digit) / base;
        if (isStored) digits[index - 1] = digitUnit(digit);
    }
    return carry;
}

size_t countDigits(int64_t value) {
    size_t count = 0;
    for (; value > 0; value /= base)
        ++count;
    return count;
}

}  // namespace

const kz_Char* kz_Base36_fromBase10(double value) {
    static kz_Char text[16];
    kz_Char* first = text + 15;
    *first = 0;
    const double whole = std::trunc(value);
    if (!(whole >= 0.0 && whole < 18446744073709551616.0)) return first;
    auto rest = static_cast<uint64_t>(whole);
    do {
        *--first = digitUnit(static_cast<int64_t>(rest % base));
        rest /= base;
    } while (rest > 0);
    return first;
}

int kz_Base36_compare(const kz_Char* a, const kz_Char* b) {
    const std::u16string_view left = significantDigits(a);
    const std::u16string_view right = significantDigits(b);
    if (left.size() != right.size()) return left.size() < right.size() ? -1 : 1;
    return kz::compareNoCase(left, right);
}

int kz_Base36_increment(kz_Char* text, int step) {
    if (!text) return 0;
    const size_t length = kz_Str_len(text);
    for (size_t index = 0; index < length; ++index) {
        if (digitValue(text[index]) < 0) return 0;
    }
    const int64_t carry = addToDigits(text, length, step, false);
    const size_t grown = length == 0 && carry == 0 ? 1 : countDigits(carry);
    if (carry < 0 || (grown > 0 && length + grown > KZ_BASE36_DIGITS)) return 0;
    addToDigits(text, length, step, true);
    std::memmove(text + grown, text, (length + 1) * sizeof(kz_Char));
    int64_t rest = carry;
    for (size_t index = grown; index > 0; --index, rest /= base) {
        text[index - 1] = digitUnit(rest % base);
    }
    return 1;
}
