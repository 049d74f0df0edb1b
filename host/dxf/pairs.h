/// The text layer of ASCII DXF: pairs of a line with the group code and a line with the value, and
/// the checks of a value's form. Everything here works on the bytes of a file image and copies
/// nothing.
#ifndef HOST_DXF_PAIRS_H
#define HOST_DXF_PAIRS_H

#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "dxf/group_codes.h"

namespace host::dxf {

/// What is wrong with a file, and the byte where it was noticed.
class FormatError : public std::runtime_error {
  public:
    FormatError(const char* at, const std::string& cause) : std::runtime_error(cause), at_(at) {}
    const char* at() const { return at_; }

  private:
    const char* at_;
};

/// Readable bytes that stand behind the end of every file image, so that a line may be searched in
/// blocks.
constexpr size_t kImagePadding = 16;

/// One pair. The value goes without its line end; blanks around it belong to it.
struct Pair {
    int code = 0;
    const char* begin = nullptr;  ///< first byte of the code line
    std::string_view value;
    const char* end = nullptr;  ///< behind the value's line end

    std::string_view bytes() const { return {begin, static_cast<size_t>(end - begin)}; }
};

inline bool isBlank(char c) {
    return c == ' ' || c == '\t';
}
inline bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// The text without blanks at both ends.
inline std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && (isBlank(text.back()) || text.back() == '\r'))
        text.remove_suffix(1);
    return text;
}

/// The text with its ASCII letters in upper case, as names of the format are compared.
inline std::string upperAscii(std::string_view text) {
    std::string upper(text);
    for (char& c : upper) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 32);
    }
    return upper;
}

/// Position of the line end at or behind `at`, or `end`.
inline const char* findLineEnd(const char* at, const char* end) {
#if defined(__SSE2__)
    const __m128i feed = _mm_set1_epi8('\n');
    while (at < end) {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
        const int hits = _mm_movemask_epi8(_mm_cmpeq_epi8(block, feed));
        if (hits != 0) {
            const char* found = at + __builtin_ctz(static_cast<unsigned>(hits));
            return found < end ? found : end;
        }
        at += 16;
    }
    return end;
#else
    const void* found = at < end ? std::memchr(at, '\n', static_cast<size_t>(end - at)) : nullptr;
    return found == nullptr ? end : static_cast<const char*>(found);
#endif
}

/// Size of the byte order mark that some programs put in front of UTF-8.
inline size_t markSize(std::string_view image) {
    return image.starts_with("\xEF\xBB\xBF") ? 3 : 0;
}

/// Walks over the pairs of a range of bytes.
class PairCursor {
  public:
    PairCursor(const char* begin, const char* end) : at_(begin), end_(end) {}

    /// The next pair; false at the end of the range, or when nothing but blank lines is left.
    /// A code line that is no number, or a code without a value line, throws FormatError.
    bool next(Pair& pair) {
        const char* line = at_;
        if (line >= end_) return false;
        const char* c = line;
        while (isBlank(*c))
            ++c;
        int code = 0;
        const char* digits = c;
        if (*c == '-') ++c;
        const char* first = c;
        while (isDigit(*c) && c - first < 6)
            code = code * 10 + (*c++ - '0');
        if (c == first) return endOrThrow(line);
        if (*digits == '-') code = -code;
        while (isBlank(*c))
            ++c;
        if (*c == '\r') ++c;
        if (c >= end_) throw FormatError(line, "the file ends behind a group code");
        if (*c != '\n') throwBadCode(line);
        const char* value = c + 1;
        if (value >= end_) throw FormatError(line, "the file ends behind a group code");
        const char* feed = findLineEnd(value, end_);
        const char* value_end = feed;
        if (value_end > value && value_end[-1] == '\r') --value_end;
        pair.code = code;
        pair.begin = line;
        pair.value = std::string_view(value, static_cast<size_t>(value_end - value));
        pair.end = feed < end_ ? feed + 1 : end_;
        at_ = pair.end;
        return true;
    }

    const char* position() const { return at_; }
    const char* end() const { return end_; }

  private:
    bool endOrThrow(const char* line) {
        const char* feed = findLineEnd(line, end_);
        if (!trimmed(std::string_view(line, static_cast<size_t>(feed - line))).empty()) {
            throwBadCode(line);
        }
        for (const char* c = line; c < end_; ++c) {
            if (!isBlank(*c) && *c != '\r' && *c != '\n') throwBadCode(line);
        }
        at_ = end_;
        return false;
    }

    [[noreturn]] void throwBadCode(const char* line) const {
        const char* feed = findLineEnd(line, end_);
        const std::string_view text = trimmed({line, static_cast<size_t>(feed - line)});
        throw FormatError(
            line, "expected a group code, found \"" + std::string(text.substr(0, 40)) + "\"");
    }

    const char* at_;
    const char* end_;
};

/// True for a real number: sign, digits with a point, exponent; blanks around it.
inline bool isReal(std::string_view text) {
    const char* c = text.data();
    const char* end = c + text.size();
    while (c < end && isBlank(*c))
        ++c;
    if (c < end && (*c == '-' || *c == '+')) ++c;
    const char* first = c;
    while (c < end && isDigit(*c))
        ++c;
    int64_t digits = c - first;
    if (c < end && *c == '.') {
        first = ++c;
        while (c < end && isDigit(*c))
            ++c;
        digits += c - first;
    }
    if (digits == 0) return false;
    if (c < end && (*c == 'e' || *c == 'E')) {
        ++c;
        if (c < end && (*c == '-' || *c == '+')) ++c;
        first = c;
        while (c < end && isDigit(*c))
            ++c;
        if (c == first) return false;
    }
    while (c < end && isBlank(*c))
        ++c;
    return c == end;
}

/// True for an integer; a real with a zero fraction counts too, as some programs write "1.0".
inline bool isInteger(std::string_view text) {
    const char* c = text.data();
    const char* end = c + text.size();
    while (c < end && isBlank(*c))
        ++c;
    if (c < end && (*c == '-' || *c == '+')) ++c;
    const char* first = c;
    while (c < end && isDigit(*c))
        ++c;
    if (c == first || c - first > 19) return false;
    if (c < end && *c == '.') {
        ++c;
        while (c < end && *c == '0')
            ++c;
    }
    while (c < end && isBlank(*c))
        ++c;
    return c == end;
}

/// The handle in a text, hexadecimal with blanks around it. False when it is none (then `handle` is
/// 0).
inline bool parseHandle(std::string_view text, uint64_t& handle) {
    handle = 0;
    text = trimmed(text);
    if (text.empty() || text.size() > 16) return false;
    uint64_t value = 0;
    for (const char c : text) {
        uint64_t digit = 0;
        if (isDigit(c)) {
            digit = static_cast<uint64_t>(c - '0');
        } else if (c >= 'A' && c <= 'F') {
            digit = static_cast<uint64_t>(c - 'A') + 10;
        } else if (c >= 'a' && c <= 'f') {
            digit = static_cast<uint64_t>(c - 'a') + 10;
        } else {
            return false;
        }
        value = value << 4U | digit;
    }
    handle = value;
    return true;
}

}  // namespace host::dxf

#endif
