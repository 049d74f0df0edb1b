/// Writes a drawing to a file.
#ifndef HOST_DXF_WRITER_H
#define HOST_DXF_WRITER_H

#include <string>

#include "db/database.h"
#include "host/drawing.h"

namespace host::dxf {

/// Writes the drawing to `path` through a temporary file beside it that is synced and renamed.
SaveOutcome writeFile(Database& database, const std::string& path, const SaveOptions& options);

/// True when the path leads to the file that the drawing was read from or last saved to.
bool isOwnFile(const Database& database, const std::string& path);

}  // namespace host::dxf

#endif
