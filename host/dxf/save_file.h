/// Safe replacement of a file on the disk.
#ifndef HOST_DXF_SAVE_FILE_H
#define HOST_DXF_SAVE_FILE_H

#include <string>
#include <string_view>
#include <vector>

namespace host::dxf {

/// Writes the pieces to a temporary file beside `path` that is synced and renamed.
/// @return true; false with one sentence in `error`, the target is as it was and no file is left
bool replaceFile(const std::string& path, const std::vector<std::string_view>& pieces,
                 std::string& error);

}  // namespace host::dxf

#endif
