/// Code pages come from iconv, character by character, and what it said is kept in tables. Escapes
/// are decoded behind that.
#include "dxf/codec.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <unordered_map>
#include <vector>

#include "kz_tls21an/text.h"

namespace host::dxf {
namespace {

/// First unit of the range that stands for bytes without a meaning.
constexpr char16_t kByteBase = 0xDC00;

bool isDigits(std::string_view text) {
    return text.find_first_not_of("0123456789") == std::string_view::npos;
}

/// Letters in upper case and digits of a name, nothing else: "ansi-1252" is "ANSI1252".
std::string bareName(std::string_view name) {
    std::string bare;
    for (const char c : name) {
        if (c >= 'a' && c <= 'z') bare += static_cast<char>(c - 32);
        if ((c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9')) bare += c;
    }
    return bare;
}

/// Name of a code page at iconv: "ANSI_1252" is "CP1252". Files name pages by ANSI_ or DOS and
/// their number, by ISO names, and by those of East Asian standards; "ASCII" and what nobody knows
/// is Western European.
std::string iconvName(std::string_view code_page) {
    static const std::unordered_map<std::string_view, const char*> kNames = {
        {"KSC5601", "CP949"},  {"KSC56011987", "CP949"}, {"JOHAB", "JOHAB"},
        {"BIG5", "CP950"},     {"GB2312", "CP936"},      {"GBK", "CP936"},
        {"SHIFTJIS", "CP932"}, {"SJIS", "CP932"},        {"MACINTOSH", "MACINTOSH"},
        {"UTF8", "UTF-8"},     {"ASCII", "CP1252"},      {"ANSI1361", "JOHAB"},
        {"DOS1361", "JOHAB"},  {"ANSI65001", "UTF-8"}};
    const std::string bare = bareName(code_page);
    if (const auto found = kNames.find(bare); found != kNames.end()) return found->second;
    const auto number = [&bare](std::string_view prefix) {
        return bare.starts_with(prefix) ? bare.substr(prefix.size()) : std::string();
    };
    for (const std::string_view prefix : {"ANSI", "DOS", "WINDOWS", "CP"}) {
        const std::string digits = number(prefix);
        if (digits.size() >= 3 && isDigits(digits)) return "CP" + digits;
    }
    for (const std::string_view prefix : {"ISO8859", "8859"}) {
        const std::string digits = number(prefix);
        if (!digits.empty() && isDigits(digits)) return "ISO-8859-" + digits;
    }
    return "CP1252";
}

class Converter {
  public:
    Converter(const char* to, const char* from) : handle_(iconv_open(to, from)) {}
    ~Converter() {
        if (good()) iconv_close(handle_);
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    // iconv_open answers -1 as a pointer.
    bool good() const { return reinterpret_cast<intptr_t>(handle_) != -1; }

    /// Converts one character; the number of bytes made, or 0 when it has no counterpart.
    size_t convert(const char* in, size_t in_size, char* out, size_t out_size) const {
        iconv(handle_, nullptr, nullptr, nullptr, nullptr);
        char* from = const_cast<char*>(in);
        char* to = out;
        size_t left = out_size;
        if (iconv(handle_, &from, &in_size, &to, &left) != 0 || in_size != 0) return 0;
        // Pages with combining marks hold a letter back until they know what follows.
        iconv(handle_, nullptr, nullptr, &to, &left);
        return out_size - left;
    }

  private:
    iconv_t handle_;
};

void appendEscape(char16_t unit, std::string& out) {
    static constexpr char kDigits[] = "0123456789ABCDEF";
    out += "\\U+";
    for (int shift = 12; shift >= 0; shift -= 4) {
        out += kDigits[static_cast<unsigned>(unit) >> static_cast<unsigned>(shift) & 15U];
    }
}

}  // namespace

/// One code page, in both directions.
class CodePage {
  public:
    /// The page that iconv knows by this name, CP1252 when there is none; kept for the life of the
    /// program.
    static const CodePage* named(const std::string& name) {
        static auto& pages = *new std::map<std::string, std::unique_ptr<CodePage>>;
        std::unique_ptr<CodePage>& page = pages[name];
        if (page == nullptr) page = std::make_unique<CodePage>(name);
        return page->good() || name == "CP1252" ? page.get() : named("CP1252");
    }

    explicit CodePage(const std::string& name)
        : decoder_("UTF-16LE", name.c_str()), encoder_(name.c_str(), "UTF-16LE") {
        for (int byte = 0; byte < 0x80; ++byte)
            single_[static_cast<size_t>(byte)] = static_cast<char16_t>(byte);
        for (int byte = 0x80; byte < 0x100; ++byte) {
            const char in = static_cast<char>(byte);
            single_[static_cast<size_t>(byte)] = decodedUnit({&in, 1});
        }
    }

    bool good() const { return decoder_.good() && encoder_.good(); }

    void decode(std::string_view bytes, std::u16string& out) const {
        for (size_t i = 0; i < bytes.size(); ++i) {
            const auto byte = static_cast<unsigned char>(bytes[i]);
            const char16_t unit = single_[byte];
            if (unit != 0 || byte == 0) {
                out += unit;
                continue;
            }
            const char16_t pair =
                i + 1 < bytes.size()
                    ? twoBytes(byte << 8 | static_cast<unsigned char>(bytes[i + 1]))
                    : u'\0';
            out += pair != 0 ? pair : static_cast<char16_t>(kByteBase + byte);
            if (pair != 0) ++i;
        }
    }

    /// The character of two bytes, 0 for none.
    char16_t twoBytes(int bytes) const {
        if (pairs_.empty()) pairs_.assign(0x10000, kUnasked);
        char16_t& unit = pairs_[static_cast<size_t>(bytes)];
        if (unit == kUnasked) {
            const char in[2] = {static_cast<char>(bytes >> 8), static_cast<char>(bytes & 0xFF)};
            unit = decodedUnit({in, 2});
        }
        return unit;
    }

    void encode(char16_t unit, std::string& out) const {
        if (unit < 0x80) {
            out += static_cast<char>(unit);
            return;
        }
        if (encoded_.empty()) encoded_.assign(0x10000, Encoded{});
        Encoded& bytes = encoded_[unit];
        if (bytes.size == kNotAsked) bytes = encodedBytes(unit);
        if (bytes.size == 0) {
            appendEscape(unit, out);
        } else {
            out.append(bytes.bytes, static_cast<size_t>(bytes.size));
        }
    }

  private:
    static constexpr char16_t kUnasked = 0xFFFF;
    static constexpr int8_t kNotAsked = -1;
    struct Encoded {
        char bytes[2] = {};
        int8_t size = kNotAsked;  ///< 0 for a character that the page doesn't have
    };

    /// The one unit that the bytes are, 0 when they are none or more.
    char16_t decodedUnit(std::string_view bytes) const {
        char made[8];
        if (decoder_.convert(bytes.data(), bytes.size(), made, sizeof made) != 2) return 0;
        return static_cast<char16_t>(static_cast<unsigned char>(made[0]) |
                                     static_cast<unsigned char>(made[1]) << 8U);
    }

    /// What decoding doesn't give back as the same character counts as missing.
    Encoded encodedBytes(char16_t unit) const {
        const char in[2] = {static_cast<char>(unit & 0xFFU), static_cast<char>(unit >> 8U)};
        char made[8];
        const size_t size = encoder_.convert(in, 2, made, sizeof made);
        Encoded result;
        result.size = 0;
        if (size == 0 || size > 2) return result;
        std::u16string back;
        decode({made, size}, back);
        if (back.size() != 1 || back.front() != unit) return result;
        std::copy_n(made, size, result.bytes);
        result.size = static_cast<int8_t>(size);
        return result;
    }

    Converter decoder_;
    Converter encoder_;
    std::array<char16_t, 256> single_{};
    mutable std::vector<char16_t> pairs_;   ///< by two bytes; empty until the first is asked for
    mutable std::vector<Encoded> encoded_;  ///< by character; the same
};

namespace {

int hexDigit(char16_t unit) {
    if (unit >= u'0' && unit <= u'9') return unit - u'0';
    if (unit >= u'A' && unit <= u'F') return unit - u'A' + 10;
    if (unit >= u'a' && unit <= u'f') return unit - u'a' + 10;
    return -1;
}

/// The number that the four hexadecimal digits at `at` spell, or -1.
int fourDigits(std::u16string_view text, size_t at) {
    if (at + 4 > text.size()) return -1;
    int number = 0;
    for (size_t i = at; i < at + 4; ++i) {
        const int digit = hexDigit(text[i]);
        if (digit < 0) return -1;
        number = number * 16 + digit;
    }
    return number;
}

/// What the escape at `at` stands for, and its length; length 0 for no escape.
struct Escape {
    char16_t unit = 0;
    size_t length = 0;
};

/// Code pages of \M+nXXXX by n.
constexpr const char* kMultibytePages[] = {"CP932", "CP950", "CP949", "JOHAB", "CP936"};

Escape escapeAt(std::u16string_view text, size_t at) {
    const std::u16string_view rest = text.substr(at);
    if (rest.starts_with(u"\\U+")) {
        const int unit = fourDigits(text, at + 3);
        if (unit >= 0) return {static_cast<char16_t>(unit), 7};
    } else if (rest.starts_with(u"\\M+") && rest.size() >= 8) {
        const int page = rest[3] - u'1';
        const int bytes = fourDigits(text, at + 4);
        if (page >= 0 && page < 5 && bytes >= 0) {
            const char16_t unit = CodePage::named(kMultibytePages[page])->twoBytes(bytes);
            if (unit != 0) return {unit, 8};
        }
    }
    return {};
}

/// Replaces \U+XXXX, \M+nXXXX and carets in the part of `text` behind `from`.
void decodeEscapes(std::u16string& text, size_t from) {
    const size_t first = text.find_first_of(u"\\^", from);
    if (first == std::u16string::npos) return;
    size_t out = first;
    for (size_t i = first; i < text.size(); ++i) {
        char16_t unit = text[i];
        if (unit == u'\\') {
            const Escape escape = escapeAt(text, i);
            if (escape.length != 0) {
                unit = escape.unit;
                i += escape.length - 1;
            }
        } else if (unit == u'^' && i + 1 < text.size()) {
            const char16_t next = text[i + 1];
            if (next == u' ') {
                ++i;
            } else if (next >= u'@' && next <= u'_') {
                unit = static_cast<char16_t>(next - u'@');
                ++i;
            }
        }
        text[out++] = unit;
    }
    text.resize(out);
}

/// True for the lone surrogate that stands for the byte `unit - kByteBase`.
bool isKeptByte(std::u16string_view text, size_t at) {
    const char16_t unit = text[at];
    if (unit < kByteBase + 0x80 || unit > kByteBase + 0xFF) return false;
    return at == 0 || text[at - 1] < 0xD800 || text[at - 1] > 0xDBFF;
}

}  // namespace

TextCodec::TextCodec(std::string_view version, std::string_view code_page) {
    if (version >= "AC1021") return;
    const std::string name = iconvName(code_page);
    if (name != "UTF-8") page_ = CodePage::named(name);
}

void TextCodec::decode(std::string_view bytes, std::u16string& out) const {
    const size_t from = out.size();
    // Nearly all texts are plain ASCII without escapes, the same in every encoding.
    out.resize(from + bytes.size());
    size_t plain = 0;
    while (plain < bytes.size()) {
        const auto byte = static_cast<unsigned char>(bytes[plain]);
        if (byte >= 0x80 || byte == '\\' || byte == '^') break;
        out[from + plain++] = byte;
    }
    if (plain == bytes.size()) return;
    out.resize(from);
    decodePlain(bytes, out);
    decodeEscapes(out, from);
}

void TextCodec::decodePlain(std::string_view bytes, std::u16string& out) const {
    if (page_ == nullptr) {
        kz::appendUtf16(out, bytes);
    } else {
        page_->decode(bytes, out);
    }
}

std::u16string TextCodec::decode(std::string_view bytes) const {
    std::u16string out;
    decode(bytes, out);
    return out;
}

void TextCodec::encode(std::u16string_view text, std::string& out) const {
    for (size_t i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i];
        if (unit == u'^') {
            out += "^ ";
        } else if (unit < 0x20) {
            out += '^';
            out += static_cast<char>(unit + u'@');
        } else if (unit < 0x80) {
            out += static_cast<char>(unit);
        } else if (isKeptByte(text, i)) {
            out += static_cast<char>(unit - kByteBase);
        } else if (page_ != nullptr) {
            page_->encode(unit, out);
        } else {
            const bool pair = unit >= 0xD800 && unit <= 0xDBFF && i + 1 < text.size() &&
                              text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF;
            if (unit >= 0xD800 && unit <= 0xDFFF && !pair) {
                appendEscape(unit, out);
            } else {
                kz::appendUtf8(out, text.substr(i, pair ? 2 : 1));
                if (pair) ++i;
            }
        }
    }
}

size_t TextCodec::storedLength(std::u16string_view text) const {
    if (isUtf8()) return text.size();
    std::string bytes;
    encode(text, bytes);
    return bytes.size();
}

}  // namespace host::dxf
