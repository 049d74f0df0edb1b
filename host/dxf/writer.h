/// Writes a drawing: what nobody changed as the bytes it was read from, what was changed or made
/// from its decoded form.
#ifndef HOST_DXF_WRITER_H
#define HOST_DXF_WRITER_H

#include <string>
#include <string_view>
#include <vector>

#include "db/database.h"

namespace host::dxf {

/// The drawing as a row of pieces, each in the file image or in `made`.
struct Composition {
    std::vector<std::string_view> pieces;
    std::vector<std::string> made;
};

/// Puts the drawing's text together. The pieces are valid as long as database and composition are.
void compose(Database& database, Composition& out);

/// Writes the drawing to `path` through a temporary file beside it that is synced and renamed.
/// @return true; false with one sentence in `error`, the target is as it was and no file is left
bool writeFile(Database& database, const std::string& path, std::string& error);

}  // namespace host::dxf

#endif
