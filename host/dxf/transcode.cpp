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

void Transcoder::convert(std::string_view text, std::string& out) {
    bool meaningless = false;
    size_t at = 0;
    while (at < text.size()) {
        size_t end = at;
        while (end < text.size() && !isHigh(text[end]))
            ++end;
        out += text.substr(at, end - at);
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
