/// The two directions between binary and text DXF.
#include "dxf/binary.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <type_traits>

#include "dxf/group_codes.h"
#include "dxf/pairs.h"

static_assert(std::endian::native == std::endian::little, "files are read as they lie in memory");

namespace host::dxf {
namespace {

constexpr std::string_view kSentinel("AutoCAD Binary DXF\r\n\x1A\0", 22);
/// No group grows by more than this when it becomes text.
constexpr size_t kGrowth = 4;
constexpr size_t kLongestChunk = 127;

/// Texts of a binary drawing can hold line ends as they are, which in text have an escape of their
/// own: "^J" stands in binary drawings too.
struct LineEnd {
    char raw;
    std::string_view escape;
};
constexpr std::string_view kEscape = "\\U+000";
constexpr LineEnd kLineEnds[] = {{'\n', "\\U+000A"}, {'\r', "\\U+000D"}};

const LineEnd* lineEndOf(char c) {
    return c == '\n' ? &kLineEnds[0] : c == '\r' ? &kLineEnds[1] : nullptr;
}

class Decoder {
  public:
    Decoder(std::string_view file, char* out) : file_(file), at_(kSentinel.size()), out_(out) {
        // The first group is 0 SECTION: its code is followed by a letter, or by its high byte.
        wide_ = file.size() > at_ + 1 && file[at_ + 1] == '\0';
    }

    /// Decodes group by group until EOF, the end of the file or `limit` bytes of text.
    /// @return false at something that is no group; error() says what
    bool run(size_t limit) {
        while (at_ < file_.size() && size_ <= limit) {
            group_ = at_;
            whole_size_ = size_;
            if (!decodeGroup()) return false;
            if (is_end_) return true;
        }
        return true;
    }

    size_t size() const { return size_; }
    /// Size without the group that failed.
    size_t wholeSize() const { return whole_size_; }
    size_t group() const { return group_; }
    const std::string& error() const { return error_; }

  private:
    bool fail(const char* cause) {
        error_ = cause;
        return false;
    }

    template <class Number>
    bool take(Number& number) {
        if (file_.size() - at_ < sizeof number) return fail("the file ends within a group");
        std::memcpy(&number, file_.data() + at_, sizeof number);
        at_ += sizeof number;
        return true;
    }

    bool takeCode(int& code) {
        if (wide_) {
            int16_t number = 0;
            if (!take(number)) return false;
            code = number;
            return true;
        }
        uint8_t byte = 0;
        int16_t number = 0;
        if (!take(byte)) return false;
        if (byte == 255 && !take(number)) return false;
        code = byte == 255 ? number : byte;
        return true;
    }

    bool decodeGroup() {
        int code = 0;
        if (!takeCode(code)) return false;
        if (code < 0 || code > kMaxGroupCode) {
            return fail("a group code that there is not; the file is damaged in front of it");
        }
        putCode(code);
        switch (groupType(code)) {
            case GroupType::Real:
                return decodeReal();
            case GroupType::Int16:
                return decodeInteger<int16_t>();
            case GroupType::Int32:
                return decodeInteger<int32_t>();
            case GroupType::Int64:
                return decodeInteger<int64_t>();
            case GroupType::Bool:
                return decodeInteger<uint8_t>();
            case GroupType::Hex:
                return decodeChunk();
            default:
                return decodeText(code);
        }
    }

    void put(char c) {
        if (out_ != nullptr) out_[size_] = c;
        ++size_;
    }
    void put(std::string_view text) {
        if (out_ != nullptr) std::memcpy(out_ + size_, text.data(), text.size());
        size_ += text.size();
    }
    template <class Number>
    void putNumber(Number number) {
        char digits[32];
        const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
        const std::string_view text(digits, static_cast<size_t>(end - digits));
        put(text);
        // A real has a point or an exponent.
        if constexpr (std::is_floating_point_v<Number>) {
            if (text.find_first_of(".e") == std::string_view::npos) put(".0");
        }
    }

    void putCode(int code) {
        if (code < 100) put(' ');
        if (code < 10) put(' ');
        putNumber(code);
        put('\n');
    }

    bool decodeReal() {
        double number = 0;
        if (!take(number)) return false;
        if (!std::isfinite(number)) return fail("a number that is infinite or none");
        putNumber(number);
        put('\n');
        return true;
    }

    template <class Number>
    bool decodeInteger() {
        Number number = 0;
        if (!take(number)) return false;
        putNumber(number);
        put('\n');
        return true;
    }

    bool decodeText(int code) {
        const size_t end = file_.find('\0', at_);
        if (end == std::string_view::npos) return fail("the file ends within a text");
        const std::string_view text = file_.substr(at_, end - at_);
        for (const char c : text) {
            const LineEnd* const mark = lineEndOf(c);
            if (mark != nullptr) {
                put(mark->escape);
            } else {
                put(c);
            }
        }
        put('\n');
        at_ = end + 1;
        is_end_ = code == 0 && text == "EOF";
        return true;
    }

    bool decodeChunk() {
        static constexpr char kDigits[] = "0123456789ABCDEF";
        uint8_t length = 0;
        if (!take(length)) return false;
        if (file_.size() - at_ < length) return fail("the file ends within a binary chunk");
        for (size_t i = 0; i < length; ++i) {
            const auto byte = static_cast<unsigned char>(file_[at_ + i]);
            put(kDigits[byte >> 4U]);
            put(kDigits[byte & 15U]);
        }
        put('\n');
        at_ += length;
        return true;
    }

    std::string_view file_;
    size_t at_;
    size_t group_ = 0;  ///< where the group begins that is decoded
    char* out_;         ///< NULL for counting only
    size_t size_ = 0;
    size_t whole_size_ = 0;
    bool wide_ = true;
    bool is_end_ = false;
    std::string error_;
};

class Encoder {
  public:
    explicit Encoder(std::string& out) : out_(out) { out_ = kSentinel; }

    bool encode(const Pair& pair) {
        if (pair.code == 999) return true;
        code_ = pair.code;
        switch (groupType(pair.code)) {
            case GroupType::Real:
                return encodeReal(trimmed(pair.value));
            case GroupType::Int16:
                return encodeInteger<int16_t>(trimmed(pair.value), UINT16_MAX);
            case GroupType::Int32:
                return encodeInteger<int32_t>(trimmed(pair.value), UINT32_MAX);
            case GroupType::Int64:
                return encodeInteger<int64_t>(trimmed(pair.value),
                                              std::numeric_limits<int64_t>::max());
            case GroupType::Bool:
                return encodeInteger<uint8_t>(trimmed(pair.value), UINT8_MAX);
            case GroupType::Hex:
                return encodeChunks(trimmed(pair.value));
            default:
                return encodeText(pair.value);
        }
    }

    const std::string& error() const { return error_; }

  private:
    bool fail(std::string_view value, const char* cause) {
        error_ = "group " + std::to_string(code_) + " holds \"" + std::string(value.substr(0, 40)) +
                 "\", " + cause;
        return false;
    }

    template <class Number>
    void put(Number number) {
        char bytes[sizeof number];
        std::memcpy(bytes, &number, sizeof number);
        out_.append(bytes, sizeof number);
    }
    void putCode() { put(static_cast<int16_t>(code_)); }

    bool encodeReal(std::string_view text) {
        if (text.starts_with('+')) text.remove_prefix(1);
        double number = 0;
        const char* const end = text.data() + text.size();
        const auto result = std::from_chars(text.data(), end, number);
        if (result.ptr != end || result.ec == std::errc::invalid_argument) {
            return fail(text, "which is no number");
        }
        if (result.ec != std::errc()) number = std::strtod(std::string(text).c_str(), nullptr);
        if (!std::isfinite(number)) return fail(text, "which is too large for a number");
        putCode();
        put(number);
        return true;
    }

    template <class Number>
    bool encodeInteger(std::string_view text, int64_t greatest) {
        const std::string_view digits = text.substr(0, text.find('.'));
        int64_t number = 0;
        const char* begin = digits.data() + (digits.starts_with('+') ? 1 : 0);
        const char* const end = digits.data() + digits.size();
        const auto result = std::from_chars(begin, end, number);
        if (result.ec != std::errc() || result.ptr != end) return fail(text, "which is no number");
        if (number < int64_t{std::numeric_limits<Number>::min()} || number > greatest) {
            return fail(text, "which is too large for binary DXF");
        }
        putCode();
        put(static_cast<Number>(number));
        return true;
    }

    bool encodeText(std::string_view text) {
        if (text.find('\0') != std::string_view::npos) {
            return fail(text.substr(0, text.find('\0')), "with a NUL behind it");
        }
        putCode();
        while (!text.empty()) {
            const size_t plain = std::min(text.find(kEscape), text.size());
            out_.append(text.substr(0, plain));
            text.remove_prefix(plain);
            const auto* const mark =
                std::find_if(std::begin(kLineEnds), std::end(kLineEnds),
                             [text](const LineEnd& end) { return text.starts_with(end.escape); });
            if (mark != std::end(kLineEnds)) {
                out_ += mark->raw;
                text.remove_prefix(mark->escape.size());
            } else if (!text.empty()) {
                out_ += text.front();
                text.remove_prefix(1);
            }
        }
        out_ += '\0';
        return true;
    }

    static int digit(char c) {
        if (c >= '0' && c <= '9') return c - '0';
        if (c >= 'A' && c <= 'F') return c - 'A' + 10;
        if (c >= 'a' && c <= 'f') return c - 'a' + 10;
        return -1;
    }

    bool encodeChunks(std::string_view text) {
        if (text.size() % 2 != 0) return fail(text, "an odd number of digits");
        do {
            const size_t bytes = text.size() / 2;
            const size_t length = bytes <= UINT8_MAX ? bytes : kLongestChunk;
            putCode();
            out_ += static_cast<char>(length);
            for (size_t i = 0; i < length; ++i) {
                const int high = digit(text[2 * i]);
                const int low = digit(text[2 * i + 1]);
                if (high < 0 || low < 0) return fail(text, "which is not hexadecimal");
                out_ += static_cast<char>(high << 4 | low);
            }
            text.remove_prefix(2 * length);
        } while (!text.empty());
        return true;
    }

    std::string& out_;
    int code_ = 0;
    std::string error_;
};

}  // namespace

bool isBinary(std::string_view file) {
    return file.starts_with(kSentinel);
}

BinaryText decodeBinary(std::string_view file) {
    BinaryText text;
    if (file.size() < kSentinel.size()) return text;
    text.bytes = makeBigBytes(kGrowth * file.size() + kImagePadding);
    if (text.bytes == nullptr) throw std::bad_alloc();
    Decoder decoder(file, text.bytes.get());
    if (!decoder.run(SIZE_MAX)) {
        text.error = decoder.error();
        text.error_at = decoder.group();
    }
    text.size = text.error.empty() ? decoder.size() : decoder.wholeSize();
    std::memset(text.bytes.get() + text.size, 0, kImagePadding);
    return text;
}

size_t binaryOffset(std::string_view file, size_t text_offset) {
    Decoder decoder(file, nullptr);
    decoder.run(text_offset);
    return decoder.group();
}

bool encodeBinary(const std::vector<std::string_view>& pieces, std::string& out,
                  std::string& error) {
    size_t size = 0;
    for (const std::string_view piece : pieces)
        size += piece.size();
    const BigBytes text = makeBigBytes(size + kImagePadding);
    if (text == nullptr) throw std::bad_alloc();
    char* end = text.get();
    for (const std::string_view piece : pieces)
        end = std::copy(piece.begin(), piece.end(), end);
    std::memset(end, 0, kImagePadding);
    Encoder encoder(out);
    PairCursor cursor(text.get(), end);
    Pair pair;
    while (cursor.next(pair)) {
        if (!encoder.encode(pair)) {
            error = encoder.error();
            return false;
        }
        if (pair.code == 0 && trimmed(pair.value) == "EOF") break;
    }
    return true;
}

}  // namespace host::dxf
