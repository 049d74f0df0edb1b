/// Binary DXF: the same groups as in the text form, each a code and a value in a form by its type.
///
/// The file begins with "AutoCAD Binary DXF", CR, LF, 0x1A and NUL. Codes are two bytes, low byte
/// first; in files up to R12 one byte, where 255 announces a code of two. Texts and handles end in
/// NUL, reals are IEEE doubles, integers have 1 (290-299), 2, 4 or 8 bytes, binary chunks (310-319,
/// 1004) are a byte with their length and that many bytes.
#ifndef HOST_DXF_BINARY_H
#define HOST_DXF_BINARY_H

#include <string>
#include <string_view>
#include <vector>

#include "base/big_memory.h"

namespace host::dxf {

/// True for the contents of a binary DXF file.
bool isBinary(std::string_view file);

/// A binary file as text, with room for the padding of images behind it.
struct BinaryText {
    BigBytes bytes;
    size_t size = 0;
    /// What was wrong, and the byte of the file where; then the text is that of the groups before.
    std::string error;
    size_t error_at = 0;
};

/// Decodes a binary file up to its EOF group. Reals come in the shortest form that reads back as
/// the same bits, line ends within texts as \U+000A and \U+000D, chunks as hexadecimal digits.
/// Infinite numbers and NaN have no such form and are errors.
BinaryText decodeBinary(std::string_view file);

/// The byte of a binary file where the group stands whose text is at `text_offset`.
size_t binaryOffset(std::string_view file, size_t text_offset);

/// Encodes text, with codes of two bytes. What decodeBinary made comes back as the same bytes,
/// unless a text itself spells out a line end so. Chunks that are too long become several.
/// Comments have no place in the form and are left out.
/// @return false with one sentence in `error` for a value that the form can't hold
bool encodeBinary(const std::vector<std::string_view>& pieces, std::string& out,
                  std::string& error);

}  // namespace host::dxf

#endif
