/// A file without a name, or with a passing one, that takes the place of another when it is whole.
///
/// Where the file system can do it the file has no name while it is written, and a program that is
/// killed leaves nothing. Elsewhere it is called ".NAME.kz-save-XXXXXX". Its writer holds a lock on
/// it as long as it lives, so a file of such a name without a lock is a dead one's.
#ifndef HOST_DXF_TEMPORARY_FILE_H
#define HOST_DXF_TEMPORARY_FILE_H

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace host::dxf {

/// The calls that a full or broken disk lets fail; tests put others in their place.
struct FileCalls {
    ssize_t (*write)(int, const iovec*, int) = ::writev;
    int (*sync)(int) = ::fsync;
    int (*link)(int, const char*, int, const char*, int) = ::linkat;
    int (*rename)(int, const char*, int, const char*) = ::renameat;
    bool unnamed = true;  ///< files without a name are tried
};
FileCalls& fileCalls();

/// The folder that a file is in, open.
class Folder {
  public:
    explicit Folder(const std::string& path);
    ~Folder();
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    bool isOpen() const { return fd_ >= 0; }
    int fd() const { return fd_; }
    /// Brings names that were given in the folder to the disk.
    void sync() const;
    /// Removes the temporary files of programs that are no more.
    void removeDead() const;

  private:
    int fd_ = -1;
};

class TemporaryFile {
  public:
    /// `name` is that of the file in whose place it comes.
    TemporaryFile(const Folder& folder, const std::string& name);
    /// Removes the file, unless it was put somewhere.
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    // Each gives false and leaves the cause in errno. The file then is of no use any more.

    /// Makes the file. One that comes in the place of another can be read by its owner only until
    /// it has the other's permissions.
    bool create(bool in_place_of_another);
    bool write(const std::vector<std::string_view>& pieces);
    /// Gives the file owner, permissions and access lists of another, as far as the user may.
    bool resemble(const struct stat& other, int other_fd);
    bool sync();
    /// Puts the file in the place of `target`, which is a name in the folder.
    bool put(const std::string& target);

    int fd() const { return fd_; }

  private:
    bool createUnnamed(mode_t mode);
    bool createNamed(mode_t mode);
    bool writeAll(std::vector<iovec>& parts) const;
    bool giveName();

    const Folder& folder_;
    std::string base_;
    std::string name_;  ///< empty as long as the file has none
    int fd_ = -1;
};

/// Lets `backup` stand for the file `name` as well; both are names in the folder. A backup that is
/// there is replaced. @return false with the cause in errno
bool keepUnderName(const Folder& folder, const std::string& name, const std::string& backup);

}  // namespace host::dxf

#endif
