/// Text of a drawing file to UTF-16 and back: the drawing's code page before R2007, UTF-8 since
/// then, \U+XXXX and \M+nXXXX (two bytes of an East Asian code page; read, never written) in both,
/// carets for control characters. Bytes that the encoding doesn't know become lone surrogates
/// (U+DC00 + byte) and go back to the same bytes.
#ifndef HOST_DXF_CODEC_H
#define HOST_DXF_CODEC_H

#include <string>
#include <string_view>

namespace host::dxf {

class CodePage;

class TextCodec {
  public:
    /// UTF-8, as drawings since R2007 are.
    TextCodec() = default;
    /// Of a drawing with this $ACADVER and $DWGCODEPAGE; the code page is spelled in
    /// any of the usual ways, an unknown one counts as ANSI_1252.
    TextCodec(std::string_view version, std::string_view code_page);

    bool isUtf8() const { return page_ == nullptr; }
    /// Appends the decoded text, escapes and carets resolved.
    void decode(std::string_view bytes, std::u16string& out) const;
    std::u16string decode(std::string_view bytes) const;
    /// Appends the decoded text of a file that is no drawing: escapes and carets stay.
    void decodePlain(std::string_view bytes, std::u16string& out) const;
    /// Appends the text as the file holds it.
    void encode(std::u16string_view text, std::string& out) const;
    /// Length of a text as the limits of groups count it: characters since R2007, before that bytes
    /// in the file.
    size_t storedLength(std::u16string_view text) const;

  private:
    const CodePage* page_ = nullptr;  ///< one for all codecs that name it
};

}  // namespace host::dxf

#endif
