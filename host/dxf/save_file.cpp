/// The steps of a replacement, what keeps it from being made, and how that is said.
#include "dxf/save_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>

#include "dxf/temporary_file.h"

namespace host::dxf {
namespace {

/// A path as folder and name in it.
struct SplitPath {
    explicit SplitPath(const std::string& path) {
        const size_t slash = path.rfind('/');
        name = slash == std::string::npos ? path : path.substr(slash + 1);
        if (slash != std::string::npos) folder = slash == 0 ? "/" : path.substr(0, slash);
    }
    std::string folder = ".";
    std::string name;
};

/// A limit for the size of files is an error of write and not the end of the program.
class SizeLimitIsAnError {
  public:
    SizeLimitIsAnError() : before_(std::signal(SIGXFSZ, SIG_IGN)) {}
    ~SizeLimitIsAnError() {
        if (before_ != SIG_ERR) std::signal(SIGXFSZ, before_);
    }
    SizeLimitIsAnError(const SizeLimitIsAnError&) = delete;
    SizeLimitIsAnError& operator=(const SizeLimitIsAnError&) = delete;

  private:
    void (*before_)(int);
};

std::string inFolder(const std::string& folder) {
    return folder == "." ? "in the present folder" : "in the folder " + folder;
}

/// What a failed call means to the one who saves.
std::string meaningOf(int cause, const std::string& folder) {
    switch (cause) {
        case ENOENT:
            return "there is no folder " + folder;
        case ENOTDIR:
            return folder + " is no folder";
        case EACCES:
        case EPERM:
            return "no permission to write " + inFolder(folder);
        case EROFS:
            return "the file system is read-only";
        case ENOSPC:
            return "the disk is full";
        case EDQUOT:
            return "the disk quota is used up";
        case EFBIG:
            return "the drawing is larger than a file may be here";
        case ENAMETOOLONG:
            return "the file's name or path is too long";
        case ELOOP:
            return "links that lead in a circle";
        case EIO:
            return "the disk reports an error";
        default:
            return std::strerror(cause);
    }
}

class Replacement {
  public:
    Replacement(const std::string& path, const ReplaceOptions& options)
        : path_(resolvedPath(path)), place_(path_), options_(options) {}
    ~Replacement() {
        if (old_ >= 0) ::close(old_);
    }
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;

    /// @return an empty text, or what went wrong
    std::string run(const std::vector<std::string_view>& pieces, FileStamp& written) {
        std::string refusal = lookAtTarget();
        if (!refusal.empty()) return refusal;
        const Folder folder(place_.folder);
        if (!folder.isOpen()) return meaningOf(errno, place_.folder);
        folder.removeDead();
        const SizeLimitIsAnError size_limit;
        TemporaryFile file(folder, place_.name);
        if (!file.create(present_) || !file.write(pieces) ||
            (present_ && !file.resemble(status_, old_)) || !file.sync()) {
            return meaningOf(errno, place_.folder);
        }
        // Writing takes its time; somebody may have saved meanwhile.
        refusal = lookAtTarget();
        if (!refusal.empty()) return refusal;
        const std::string backup = SplitPath(backupPath(path_)).name;
        if (present_ && options_.backup && !keepUnderName(folder, place_.name, backup)) {
            return "the backup " + backup + " can't be made, " +
                   (errno == EISDIR ? "a folder has that name" : meaningOf(errno, place_.folder));
        }
        struct stat status {};
        if (::fstat(file.fd(), &status) != 0 || !file.put(place_.name)) {
            return meaningOf(errno, place_.folder);
        }
        folder.sync();
        written = stampOf(status);
        return {};
    }

  private:
    std::string lookAtTarget() {
        if (place_.name.empty() || place_.name == "." || place_.name == "..") {
            return "a folder, no drawing can be saved there";
        }
        if (old_ >= 0) ::close(old_);
        old_ = -1;
        present_ = ::stat(path_.c_str(), &status_) == 0;
        if (!present_) return errno == ENOENT ? std::string() : meaningOf(errno, place_.folder);
        if (S_ISDIR(status_.st_mode)) return "a folder, no drawing can be saved there";
        if (!S_ISREG(status_.st_mode)) return "no regular file, no drawing can be saved there";
        errno = 0;
        const bool may_write = (status_.st_mode & 0222U) != 0 && ::access(path_.c_str(), W_OK) == 0;
        if (!may_write && errno == EROFS) return meaningOf(EROFS, place_.folder);
        if (!may_write && !options_.force) return "the file is write-protected";
        if (!options_.force && options_.expected.exists() &&
            stampOf(status_) != options_.expected) {
            return "changed on disk since it was opened; save under another name, or with --force "
                   "to lose those changes";
        }
        old_ = ::open(path_.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        return {};
    }

    const std::string path_;
    const SplitPath place_;
    const ReplaceOptions& options_;
    struct stat status_ {};
    bool present_ = false;
    int old_ = -1;  ///< the present file, when it can be read
};

}  // namespace

bool replaceFile(const std::string& path, const std::vector<std::string_view>& pieces,
                 const ReplaceOptions& options, FileStamp& written, std::string& error) {
    const std::string refusal = Replacement(path, options).run(pieces, written);
    if (!refusal.empty()) error = path + ": " + refusal;
    return refusal.empty();
}

FileStamp stampOf(const struct stat& status) {
    FileStamp stamp;
    stamp.device = status.st_dev;
    stamp.inode = status.st_ino;
    stamp.size = static_cast<uint64_t>(status.st_size);
    stamp.changed_seconds = status.st_mtim.tv_sec;
    stamp.changed_nanoseconds = status.st_mtim.tv_nsec;
    return stamp;
}

std::string resolvedPath(const std::string& path) {
    constexpr int kLinks = 40;
    std::string wanted = path;
    for (int followed = 0; followed < kLinks; ++followed) {
        if (char* resolved = ::realpath(wanted.c_str(), nullptr)) {
            wanted = resolved;
            std::free(resolved);
            return wanted;
        }
        char target[PATH_MAX];
        const ssize_t size = ::readlink(wanted.c_str(), target, sizeof target);
        if (size < 0) return wanted;
        const std::string next(target, static_cast<size_t>(size));
        if (next.starts_with('/')) {
            wanted = next;
        } else {
            wanted = SplitPath(wanted).folder;
            wanted.append("/").append(next);
        }
    }
    return wanted;
}

std::string backupPath(const std::string& path) {
    const size_t slash = path.rfind('/');
    const size_t name = slash == std::string::npos ? 0 : slash + 1;
    const size_t dot = path.rfind('.');
    const bool extended = dot != std::string::npos && dot > name && path.substr(dot) != ".bak";
    return (extended ? path.substr(0, dot) : path) + ".bak";
}

}  // namespace host::dxf
