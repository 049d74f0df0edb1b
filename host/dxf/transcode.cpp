/// Only the runs of bytes that are no ASCII are decoded and encoded.
#include "dxf/transcode.h"

#include <cstdint>
#include <cstring>

namespace host::dxf {
namespace {

bool isHigh(char c) {
    return (static_cast<unsigned char>(c) & 0x80U) != 0;
}

/// True for a lone surrogate that stands for a byte.
bool isByte(char16_t unit, char16_t before) {
    return unit >= 0xDC80 && unit <= 0xDCFF && (before < 0xD800 || before > 0xDBFF);
}

/// True for a text without lone surrogates.
bool isWhole(std::u16string_view text) {
    for (size_t i = 0; i < text.size(); ++i) {
        const bool low = i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF;
        if (text[i] >= 0xD800 && text[i] <= 0xDBFF && low) {
            ++i;
        } else if (text[i] >= 0xD800 && text[i] <= 0xDFFF) {
            return false;
        }
    }
    return true;
}

}  // namespace

bool hasHighBytes(std::string_view text) {
    constexpr uint64_t kHighBits = 0x8080808080808080U;
    const char* at = text.data();
    const char* end = at + text.size();
    for (; end - at >= 8; at += 8) {
        uint64_t word = 0;
        std::memcpy(&word, at, sizeof word);
        if ((word & kHighBits) != 0) return true;
    }
    for (; at < end; ++at) {
        if (isHigh(*at)) return true;
    }
    return false;
}

bool hasEscapes(std::string_view text) {
    return text.find("\\U+") != std::string_view::npos;
}

/// Appends ASCII; characters that stand escaped in it are taken over where there are such.
void Transcoder::copyPlain(std::string_view text, std::string& out) {
    constexpr size_t kSize = 7;  // \U+XXXX
    size_t at = 0;
    while (to_.isUtf8()) {
        const size_t found = text.find("\\U+", at);
        if (found == std::string_view::npos) break;
        size_t end = found;
        units_.clear();
        for (size_t length = 0; text.substr(end, 3) == "\\U+" && end + kSize <= text.size();
             end += kSize) {
            from_.decode(text.substr(end, kSize), units_);
            if (units_.size() != ++length || units_.back() < 0x80) break;
        }
        if (end == found) {
            out += text.substr(at, found + 3 - at);
            at = found + 3;
            continue;
        }
        units_.resize((end - found) / kSize);
        out += text.substr(at, found - at);
        if (isWhole(units_)) {
            to_.encode(units_, out);
        } else {
            out += text.substr(found, end - found);
        }
        at = end;
    }
    out += text.substr(at);
}

void Transcoder::convert(std::string_view text, std::string& out) {
    bool meaningless = false;
    size_t at = 0;
    while (at < text.size()) {
        size_t end = at;
        while (end < text.size() && !isHigh(text[end]))
            ++end;
        copyPlain(text.substr(at, end - at), out);
        at = end;
        while (end < text.size() && isHigh(text[end]))
            ++end;
        if (at == end) break;
        // The second byte of a character may be one of ASCII.
        const size_t ahead = end < text.size() ? 1 : 0;
        units_.clear();
        from_.decode(text.substr(at, end - at + ahead), units_);
        if (ahead == 1 && units_.back() == static_cast<char16_t>(text[end])) {
            units_.pop_back();
        } else {
            end += ahead;
        }
        for (size_t i = 0; i < units_.size(); ++i) {
            if (!isByte(units_[i], i == 0 ? u'\0' : units_[i - 1])) continue;
            meaningless = true;
            // UTF-8 has no bytes of their own; the character of that number comes closest.
            if (to_.isUtf8()) units_[i] = static_cast<char16_t>(units_[i] - 0xDC00);
        }
        to_.encode(units_, out);
        at = end;
    }
    if (meaningless) ++meaningless_;
}

}  // namespace host::dxf
