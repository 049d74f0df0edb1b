/// Safe replacement of a file on the disk. The target holds the old contents or the new ones at
/// every moment, whatever ends the program.
#ifndef HOST_DXF_SAVE_FILE_H
#define HOST_DXF_SAVE_FILE_H

#include <sys/stat.h>

#include <string>
#include <string_view>
#include <vector>

#include "db/file_origin.h"

namespace host::dxf {

struct ReplaceOptions {
    bool backup = false;  ///< what is replaced stays under the name of backupPath
    bool force = false;   ///< a write-protected file, or one in another state, is replaced, too
    /// State in which a present target has to be; none for any.
    FileStamp expected;
};

/// Writes the pieces to a temporary file in the target's folder, syncs it, and puts it in the
/// target's place with its permissions and owner. Links are followed. Temporary files that earlier
/// runs were killed over are removed.
/// @param[out] written  the new file's state
/// @return true; false with one sentence in `error`, the target is as it was and no file is left
bool replaceFile(const std::string& path, const std::vector<std::string_view>& pieces,
                 const ReplaceOptions& options, FileStamp& written, std::string& error);

/// The state of an open or present file.
FileStamp stampOf(const struct stat& status);
/// The file behind a path: links are followed, also one that leads to a file that isn't there yet.
std::string resolvedPath(const std::string& path);
/// Where the backup of a drawing goes: "plan.bak" beside "plan.dxf".
std::string backupPath(const std::string& path);

}  // namespace host::dxf

#endif
