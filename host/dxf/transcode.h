/// Values of groups from one encoding to another.
#ifndef HOST_DXF_TRANSCODE_H
#define HOST_DXF_TRANSCODE_H

#include <string>
#include <string_view>

#include "dxf/codec.h"

namespace host::dxf {

/// True when a byte of the text is none of ASCII, which is the same in all encodings.
bool hasHighBytes(std::string_view text);
/// True for a text with something like \U+XXXX in it.
bool hasEscapes(std::string_view text);

class Transcoder {
  public:
    /// Both are borrowed.
    Transcoder(const TextCodec& from, const TextCodec& to) : from_(from), to_(to) {}

    /// True when the text is, or may be, another one in the other encoding.
    bool concerns(std::string_view text) const {
        return hasHighBytes(text) || (to_.isUtf8() && hasEscapes(text));
    }
    /// Appends the text in the other encoding. Carets stay as they are, and escapes do but where
    /// UTF-8 has the character itself.
    void convert(std::string_view text, std::string& out);
    /// Number of texts with bytes that mean nothing in their encoding.
    size_t meaningless() const { return meaningless_; }

  private:
    void copyPlain(std::string_view text, std::string& out);

    const TextCodec& from_;
    const TextCodec& to_;
    std::u16string units_;
    size_t meaningless_ = 0;
};

}  // namespace host::dxf

#endif
