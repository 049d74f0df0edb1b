/// Code pages come from iconv; a page of single bytes is a table, one with double bytes is
/// converted character by character. Escapes are decoded behind that.
#include "dxf/codec.h"

#include <iconv.h>

#include <array>
#include <cstdint>
#include <unordered_map>

#include "kz_tls21an/text.h"

namespace host::dxf {
namespace {

/// First unit of the range that stands for bytes without a meaning.
constexpr char16_t kByteBase = 0xDC00;

/// Name of a code page at iconv: "ANSI_1252" is "CP1252".
std::string iconvName(std::string_view code_page) {
    static const std::unordered_map<std::string_view, const char*> kOthers = {
        {"DOS437", "CP437"},   {"DOS850", "CP850"},   {"DOS852", "CP852"},
        {"DOS855", "CP855"},   {"DOS857", "CP857"},   {"DOS860", "CP860"},
        {"DOS861", "CP861"},   {"DOS863", "CP863"},   {"DOS864", "CP864"},
        {"DOS865", "CP865"},   {"DOS866", "CP866"},   {"DOS869", "CP869"},
        {"DOS932", "CP932"},   {"KSC5601", "CP949"},  {"JOHAB", "JOHAB"},
        {"BIG5", "CP950"},     {"GB2312", "CP936"},   {"MACINTOSH", "MACINTOSH"},
        {"ASCII", "CP1252"},   {"8859_1", "8859_1"},  {"ANSI_949", "CP949"},
        {"ANSI_932", "CP932"}, {"ANSI_1361", "JOHAB"}};
    std::string upper(code_page);
    for (char& c : upper)
        c = static_cast<char>(c >= 'a' && c <= 'z' ? c - 32 : c);
    const auto found = kOthers.find(upper);
    if (found != kOthers.end()) return found->second;
    if (upper.starts_with("ANSI_")) return "CP" + upper.substr(5);
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
        return out_size - left;
    }

  private:
    iconv_t handle_;
};

int hexDigit(char16_t unit) {
    if (unit >= u'0' && unit <= u'9') return unit - u'0';
    if (unit >= u'A' && unit <= u'F') return unit - u'A' + 10;
    if (unit >= u'a' && unit <= u'f') return unit - u'a' + 10;
    return -1;
}

/// The unit behind "\U+" at `at`, or -1.
int escapedUnit(std::u16string_view text, size_t at) {
    if (at + 7 > text.size() || text[at + 1] != u'U' || text[at + 2] != u'+') return -1;
    int unit = 0;
    for (size_t i = at + 3; i < at + 7; ++i) {
        const int digit = hexDigit(text[i]);
        if (digit < 0) return -1;
        unit = unit * 16 + digit;
    }
    return unit;
}

/// Replaces \U+XXXX and carets in the part of `text` behind `from`.
void decodeEscapes(std::u16string& text, size_t from) {
    const size_t first = text.find_first_of(u"\\^", from);
    if (first == std::u16string::npos) return;
    size_t out = first;
    for (size_t i = first; i < text.size(); ++i) {
        char16_t unit = text[i];
        if (unit == u'\\') {
            const int escaped = escapedUnit(text, i);
            if (escaped >= 0) {
                unit = static_cast<char16_t>(escaped);
                i += 6;
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

void appendEscape(char16_t unit, std::string& out) {
    static constexpr char kDigits[] = "0123456789ABCDEF";
    out += "\\U+";
    for (int shift = 12; shift >= 0; shift -= 4) {
        out += kDigits[static_cast<unsigned>(unit) >> static_cast<unsigned>(shift) & 15U];
    }
}

/// True for the lone surrogate that stands for the byte `unit - kByteBase`.
bool isKeptByte(std::u16string_view text, size_t at) {
    const char16_t unit = text[at];
    if (unit < kByteBase + 0x80 || unit > kByteBase + 0xFF) return false;
    return at == 0 || text[at - 1] < 0xD800 || text[at - 1] > 0xDBFF;
}

}  // namespace

/// One code page, in both directions.
class CodePage {
  public:
    explicit CodePage(const std::string& name)
        : decoder_("UTF-16LE", name.c_str()), encoder_(name.c_str(), "UTF-16LE") {
        for (int byte = 0; byte < 256; ++byte)
            fillTable(byte);
    }

    bool good() const { return decoder_.good() && encoder_.good(); }

    void decode(std::string_view bytes, std::u16string& out) const {
        for (size_t i = 0; i < bytes.size(); ++i) {
            const auto byte = static_cast<unsigned char>(bytes[i]);
            const char16_t unit = table_[byte];
            if (unit != 0 || byte == 0) {
                out += unit;
                continue;
            }
            char made[8];
            const size_t size =
                i + 1 < bytes.size() ? decoder_.convert(bytes.data() + i, 2, made, sizeof made) : 0;
            if (size == 2) {
                out += static_cast<char16_t>(static_cast<unsigned char>(made[0]) |
                                             static_cast<unsigned char>(made[1]) << 8U);
                ++i;
            } else {
                out += static_cast<char16_t>(kByteBase + byte);
            }
        }
    }

    void encode(char16_t unit, std::string& out) const {
        if (unit < 0x80) {
            out += static_cast<char>(unit);
            return;
        }
        const char in[2] = {static_cast<char>(unit & 0xFFU), static_cast<char>(unit >> 8U)};
        char made[8];
        const size_t size = encoder_.convert(in, 2, made, sizeof made);
        if (size == 0) {
            appendEscape(unit, out);
        } else {
            out.append(made, size);
        }
    }

  private:
    void fillTable(int byte) {
        const char in = static_cast<char>(byte);
        char made[8];
        const bool alone = byte < 0x80 || decoder_.convert(&in, 1, made, sizeof made) == 2;
        if (byte < 0x80) {
            table_[static_cast<size_t>(byte)] = static_cast<char16_t>(byte);
        } else if (alone) {
            table_[static_cast<size_t>(byte)] = static_cast<char16_t>(
                static_cast<unsigned char>(made[0]) | static_cast<unsigned char>(made[1]) << 8U);
        }
    }

    Converter decoder_;
    Converter encoder_;
    std::array<char16_t, 256> table_{};
};

TextCodec::TextCodec() = default;
TextCodec::~TextCodec() = default;
TextCodec::TextCodec(TextCodec&&) noexcept = default;
TextCodec& TextCodec::operator=(TextCodec&&) noexcept = default;

TextCodec::TextCodec(std::string_view version, std::string_view code_page) {
    if (version >= "AC1021") return;
    page_ = std::make_unique<CodePage>(iconvName(code_page));
    if (!page_->good()) page_ = std::make_unique<CodePage>("CP1252");
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
    if (page_ == nullptr) {
        kz::appendUtf16(out, bytes);
    } else {
        page_->decode(bytes, out);
    }
    decodeEscapes(out, from);
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
