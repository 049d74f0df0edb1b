/// What a drawing knows of the file it was read from: its form on the disk where that differs from
/// the image in memory, and which file it was.
#ifndef HOST_DB_FILE_ORIGIN_H
#define HOST_DB_FILE_ORIGIN_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/big_memory.h"

namespace host {

/// Which state of which file a drawing was read from; all zero for none.
struct FileStamp {
    uint64_t device = 0, inode = 0;
    uint64_t size = 0;
    int64_t changed_seconds = 0, changed_nanoseconds = 0;  ///< time of the last change

    bool exists() const { return inode != 0; }
    bool operator==(const FileStamp&) const = default;
};

struct FileOrigin {
    /// The file is binary DXF: the image holds its groups as text, and saving makes them binary
    /// again.
    bool binary = false;
    /// $ACADVER of the file; the image may have been lifted to a later version.
    std::string version;
    /// The file's own bytes, where the image is not the same; NULL otherwise. A drawing that nobody
    /// changed is saved as these.
    BigBytes bytes;
    size_t size = 0;
    FileStamp stamp;
    /// The file is damaged and the image is what could be read of it.
    bool recovered = false;
    /// $ACADVER that the drawing is saved as from now on; empty for the version that it has.
    std::string save_as;

    std::string_view kept() const { return {bytes.get(), size}; }
};

}  // namespace host

#endif
