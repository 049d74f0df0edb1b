/// Writes a drawing to a file.
#ifndef HOST_DXF_WRITER_H
#define HOST_DXF_WRITER_H

#include <string>

#include "db/database.h"

namespace host::dxf {

/// Writes the drawing to `path` through a temporary file beside it that is synced and renamed.
/// @return true; false with one sentence in `error`, the target is as it was and no file is left
bool writeFile(Database& database, const std::string& path, std::string& error);

}  // namespace host::dxf

#endif
