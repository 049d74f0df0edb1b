/// The temporary file beside the target, its way to the disk, and the rename.
#include "dxf/save_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstring>

namespace host::dxf {
namespace {

/// A file under a temporary name that disappears unless it is put in the place of the target.
class ReplacementFile {
  public:
    explicit ReplacementFile(std::string target) : target_(std::move(target)) {
        temporary_ = target_ + ".XXXXXX";
        fd_ = ::mkstemp(temporary_.data());
        if (fd_ < 0) {
            cause_ = errno;
            return;
        }
        struct stat status {};
        const mode_t mask = ::umask(0);
        ::umask(mask);
        const bool present = ::stat(target_.c_str(), &status) == 0;
        ::fchmod(fd_, present ? status.st_mode & 07777U : 0666U & ~mask);
    }
    ~ReplacementFile() {
        if (fd_ >= 0) ::close(fd_);
        if (fd_ >= 0 && !done_) ::unlink(temporary_.c_str());
    }
    ReplacementFile(const ReplacementFile&) = delete;
    ReplacementFile& operator=(const ReplacementFile&) = delete;

    bool isOpen() const { return fd_ >= 0; }
    std::string cause() const { return std::strerror(cause_); }

    bool write(const std::vector<std::string_view>& pieces) {
        std::vector<iovec> parts;
        parts.reserve(IOV_MAX);
        for (size_t i = 0; i < pieces.size(); ++i) {
            if (!pieces[i].empty()) {
                parts.push_back({const_cast<char*>(pieces[i].data()), pieces[i].size()});
            }
            if (parts.size() == IOV_MAX || i + 1 == pieces.size()) {
                if (!writeAll(parts)) return false;
                parts.clear();
            }
        }
        return true;
    }

    /// Syncs the file and renames it to the target.
    bool commit() {
        if (::fsync(fd_) != 0 || ::rename(temporary_.c_str(), target_.c_str()) != 0) {
            cause_ = errno;
            return false;
        }
        done_ = true;
        syncFolder();
        return true;
    }

  private:
    bool writeAll(std::vector<iovec>& parts) {
        size_t first = 0;
        while (first < parts.size()) {
            const ssize_t wrote =
                ::writev(fd_, parts.data() + first, static_cast<int>(parts.size() - first));
            if (wrote < 0 && errno == EINTR) continue;
            if (wrote < 0) {
                cause_ = errno;
                return false;
            }
            auto left = static_cast<size_t>(wrote);
            while (first < parts.size() && left >= parts[first].iov_len) {
                left -= parts[first++].iov_len;
            }
            if (first < parts.size()) {
                parts[first].iov_base = static_cast<char*>(parts[first].iov_base) + left;
                parts[first].iov_len -= left;
            }
        }
        return true;
    }

    /// The rename itself is on the disk when the folder is.
    void syncFolder() const {
        const size_t slash = target_.rfind('/');
        const std::string folder = slash == std::string::npos ? "." : target_.substr(0, slash + 1);
        const int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (fd < 0) return;
        ::fsync(fd);
        ::close(fd);
    }

    std::string target_;
    std::string temporary_;
    int fd_ = -1;
    int cause_ = 0;
    bool done_ = false;
};

/// The file behind a path: links are followed, so that the file they lead to is replaced.
std::string resolvedPath(const std::string& path) {
    char* resolved = ::realpath(path.c_str(), nullptr);
    if (resolved == nullptr) return path;
    std::string result = resolved;
    ::free(resolved);
    return result;
}

}  // namespace

bool replaceFile(const std::string& path, const std::vector<std::string_view>& pieces,
                 std::string& error) {
    const auto refuse = [&](const std::string& cause) {
        error = path + ": " + cause;
        return false;
    };
    struct stat status {};
    if (::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) {
        return refuse("a folder, no drawing can be saved there");
    }
    ReplacementFile file(resolvedPath(path));
    if (!file.isOpen()) return refuse(file.cause());
    if (!file.write(pieces) || !file.commit()) return refuse(file.cause());
    return true;
}

}  // namespace host::dxf
