/// Temporary files: how they are made, written, named and cleaned up.
#include "dxf/temporary_file.h"

#include <dirent.h>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/xattr.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <memory>

#include "base/progress.h"

namespace host::dxf {
namespace {

constexpr char kMark[] = ".kz-save-";
constexpr size_t kRandomSize = 6;
/// Longest part of the drawing's name in that of the temporary file [bytes].
constexpr size_t kNamePart = 200;
constexpr int kAttempts = 100;
/// Bytes that are written at once.
constexpr size_t kBlock = size_t{4} << 20U;

std::string randomPart() {
    static constexpr char kDigits[] =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
    uint64_t number = 0;
    if (::getrandom(&number, sizeof number, 0) != sizeof number) {
        // Any name will do: one that is taken is not used.
        number = static_cast<uint64_t>(::getpid()) * 1000003U + static_cast<uint64_t>(::clock());
    }
    std::string part;
    for (size_t i = 0; i < kRandomSize; ++i, number /= sizeof kDigits - 1)
        part += kDigits[number % (sizeof kDigits - 1)];
    return part;
}

/// ".NAME.kz-save-", cut between characters where the name is long.
std::string baseOf(const std::string& name) {
    size_t size = std::min(name.size(), kNamePart);
    while (size > 0 && size < name.size() &&
           (static_cast<unsigned char>(name[size]) & 0xC0U) == 0x80)
        --size;
    return "." + name.substr(0, size) + kMark;
}

bool isTemporaryName(std::string_view name) {
    const size_t mark = name.rfind(kMark);
    if (name.empty() || name.front() != '.' || mark == std::string_view::npos || mark == 0) {
        return false;
    }
    const std::string_view random = name.substr(mark + sizeof kMark - 1);
    return random.size() == kRandomSize && std::all_of(random.begin(), random.end(), [](char c) {
               return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
           });
}

/// The name that a signal which ends the program has to remove.
struct PassingName {
    volatile std::sig_atomic_t folder = -1;
    char name[NAME_MAX + 1] = {};
};
PassingName passing_name;

extern "C" void removePassingName(int signal) {
    if (passing_name.folder >= 0) ::unlinkat(passing_name.folder, passing_name.name, 0);
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

constexpr int kEndingSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};

/// From now on a signal that ends the program removes the file. Signals that somebody handles are
/// left to him.
void guardName(int folder, const std::string& name) {
    std::strncpy(passing_name.name, name.c_str(), NAME_MAX);
    passing_name.folder = folder;
    for (const int signal : kEndingSignals) {
        struct sigaction now {};
        if (::sigaction(signal, nullptr, &now) == 0 && now.sa_handler == SIG_DFL) {
            std::signal(signal, removePassingName);
        }
    }
}

void unguardName() {
    passing_name.folder = -1;
    for (const int signal : kEndingSignals) {
        struct sigaction now {};
        if (::sigaction(signal, nullptr, &now) == 0 && now.sa_handler == removePassingName) {
            std::signal(signal, SIG_DFL);
        }
    }
}

/// Removes the file if it is ours and nobody holds it any more.
void removeIfDead(int folder, const char* name) {
    const int fd = ::openat(folder, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) return;
    struct stat opened {};
    struct stat present {};
    const bool dead = ::fstat(fd, &opened) == 0 && S_ISREG(opened.st_mode) &&
                      opened.st_uid == ::geteuid() && ::flock(fd, LOCK_EX | LOCK_NB) == 0 &&
                      ::fstatat(folder, name, &present, AT_SYMLINK_NOFOLLOW) == 0 &&
                      present.st_ino == opened.st_ino && present.st_dev == opened.st_dev;
    if (dead) ::unlinkat(folder, name, 0);
    ::close(fd);
}

/// Copies an attribute that says who may do what, or that users have set.
void copyAttributes(int from, int to) {
    const ssize_t size = ::flistxattr(from, nullptr, 0);
    if (size <= 0) return;
    std::string names(static_cast<size_t>(size), '\0');
    const ssize_t got = ::flistxattr(from, names.data(), names.size());
    std::string value;
    for (ssize_t at = 0; at < got;
         at += static_cast<ssize_t>(std::strlen(&names[static_cast<size_t>(at)])) + 1) {
        const char* name = &names[static_cast<size_t>(at)];
        const std::string_view text = name;
        if (!text.starts_with("user.") && text != "system.posix_acl_access") continue;
        const ssize_t length = ::fgetxattr(from, name, nullptr, 0);
        if (length < 0) continue;
        value.resize(static_cast<size_t>(length));
        if (::fgetxattr(from, name, value.data(), value.size()) == length) {
            // An attribute that the file system doesn't take is no reason not to save.
            [[maybe_unused]] const int ignored =
                ::fsetxattr(to, name, value.data(), value.size(), 0);
        }
    }
}

}  // namespace

FileCalls& fileCalls() {
    static FileCalls calls;
    return calls;
}

// --- folder -------------------------------------------------------------------------------------

Folder::Folder(const std::string& path)
    : fd_(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    // A folder that may be written to but not listed.
    if (fd_ < 0 && errno == EACCES) fd_ = ::open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
}

Folder::~Folder() {
    if (fd_ >= 0) ::close(fd_);
}

void Folder::sync() const {
    fileCalls().sync(fd_);
}

void Folder::removeDead() const {
    const int fd = ::openat(fd_, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    DIR* list = fd < 0 ? nullptr : ::fdopendir(fd);
    if (list == nullptr) {
        if (fd >= 0) ::close(fd);
        return;
    }
    while (const dirent* entry = ::readdir(list)) {
        if (isTemporaryName(entry->d_name)) removeIfDead(fd_, entry->d_name);
    }
    ::closedir(list);
}

// --- file ---------------------------------------------------------------------------------------

TemporaryFile::TemporaryFile(const Folder& folder, const std::string& name)
    : folder_(folder), base_(baseOf(name)) {}

TemporaryFile::~TemporaryFile() {
    if (!name_.empty()) ::unlinkat(folder_.fd(), name_.c_str(), 0);
    if (!name_.empty()) unguardName();
    if (fd_ >= 0) ::close(fd_);
}

bool TemporaryFile::create(bool in_place_of_another) {
    const mode_t mode = in_place_of_another ? 0600 : 0666;
    return (fileCalls().unnamed && createUnnamed(mode)) || createNamed(mode);
}

bool TemporaryFile::createUnnamed(mode_t mode) {
    fd_ = ::openat(folder_.fd(), ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, mode);
    if (fd_ < 0) return false;
    // The name comes through /proc; where there is none the file has to have one from the start.
    const std::string way = "/proc/self/fd/" + std::to_string(fd_);
    ::flock(fd_, LOCK_EX | LOCK_NB);
    if (::access(way.c_str(), F_OK) == 0) return true;
    ::close(fd_);
    fd_ = -1;
    return false;
}

bool TemporaryFile::createNamed(mode_t mode) {
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        name_ = base_ + randomPart();
        guardName(folder_.fd(), name_);
        fd_ = ::openat(folder_.fd(), name_.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, mode);
        if (fd_ >= 0) {
            // Who cleans up may have come between making the file and locking it.
            struct stat status {};
            ::flock(fd_, LOCK_EX | LOCK_NB);
            if (::fstat(fd_, &status) == 0 && status.st_nlink > 0) return true;
            ::close(fd_);
            fd_ = -1;
        }
        const int cause = errno;
        unguardName();
        name_.clear();
        errno = cause;
        if (cause != EEXIST && cause != 0) return false;
    }
    return false;
}

bool TemporaryFile::write(const std::vector<std::string_view>& pieces) {
    uint64_t total = 0;
    for (const std::string_view piece : pieces)
        total += piece.size();
    Progress progress(Work::Saving, total);
    std::vector<iovec> parts;
    parts.reserve(IOV_MAX);
    uint64_t done = 0;
    size_t waiting = 0;
    for (std::string_view piece : pieces) {
        while (!piece.empty()) {
            const std::string_view part = piece.substr(0, kBlock - waiting);
            parts.push_back({const_cast<char*>(part.data()), part.size()});
            waiting += part.size();
            done += part.size();
            piece.remove_prefix(part.size());
            if (waiting < kBlock && parts.size() < IOV_MAX) continue;
            if (!writeAll(parts)) return false;
            parts.clear();
            waiting = 0;
            progress.at(done);
        }
    }
    return parts.empty() || writeAll(parts);
}

bool TemporaryFile::writeAll(std::vector<iovec>& parts) const {
    size_t first = 0;
    while (first < parts.size()) {
        const ssize_t wrote =
            fileCalls().write(fd_, parts.data() + first, static_cast<int>(parts.size() - first));
        if (wrote < 0 && errno == EINTR) continue;
        if (wrote < 0) return false;
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

bool TemporaryFile::resemble(const struct stat& other, int other_fd) {
    mode_t mode = other.st_mode & 0777U;
    struct stat own {};
    if (::fstat(fd_, &own) != 0) return false;
    const bool other_owner = own.st_uid != other.st_uid || own.st_gid != other.st_gid;
    if (other_owner && ::fchown(fd_, other.st_uid, other.st_gid) != 0 &&
        ::fchown(fd_, static_cast<uid_t>(-1), other.st_gid) != 0) {
        // Rights of the old group must not go over to the user's own one.
        mode &= ~070U | (mode & 07U) << 3U;
    }
    if (::fchmod(fd_, mode) != 0) return false;
    if (other_fd >= 0) copyAttributes(other_fd, fd_);
    return true;
}

bool TemporaryFile::sync() {
    return fileCalls().sync(fd_) == 0;
}

bool TemporaryFile::giveName() {
    const std::string way = "/proc/self/fd/" + std::to_string(fd_);
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        name_ = base_ + randomPart();
        guardName(folder_.fd(), name_);
        if (fileCalls().link(AT_FDCWD, way.c_str(), folder_.fd(), name_.c_str(),
                             AT_SYMLINK_FOLLOW) == 0) {
            return true;
        }
        const int cause = errno;
        unguardName();
        name_.clear();
        errno = cause;
        if (cause != EEXIST) return false;
    }
    return false;
}

bool TemporaryFile::put(const std::string& target) {
    if (name_.empty() && !giveName()) return false;
    if (fileCalls().rename(folder_.fd(), name_.c_str(), folder_.fd(), target.c_str()) != 0) {
        return false;
    }
    unguardName();
    name_.clear();
    return true;
}

// --- backup -------------------------------------------------------------------------------------

namespace {

/// The same file under a second name, which then takes the place of the backup.
bool linkBackup(const Folder& folder, const std::string& name, const std::string& backup) {
    const std::string passing = baseOf(backup) + randomPart();
    const int at = folder.fd();
    if (fileCalls().link(at, name.c_str(), at, passing.c_str(), 0) != 0) return false;
    const bool done = fileCalls().rename(at, passing.c_str(), at, backup.c_str()) == 0;
    const int cause = errno;
    // Renaming to another name of the same file does nothing, and leaves the passing one.
    ::unlinkat(at, passing.c_str(), 0);
    errno = cause;
    return done;
}

bool copyBackup(const Folder& folder, const std::string& name, const std::string& backup) {
    const int from = ::openat(folder.fd(), name.c_str(), O_RDONLY | O_CLOEXEC);
    if (from < 0) return false;
    TemporaryFile copy(folder, backup);
    struct stat status {};
    bool good = ::fstat(from, &status) == 0 && copy.create(true);
    const std::unique_ptr<char[]> block(new char[kBlock]);
    while (good) {
        const ssize_t got = ::read(from, block.get(), kBlock);
        if (got < 0 && errno == EINTR) continue;
        good = got >= 0 && copy.write({std::string_view(
                               block.get(), static_cast<size_t>(std::max<ssize_t>(got, 0)))});
        if (got <= 0) break;
    }
    good = good && copy.resemble(status, from) && copy.sync() && copy.put(backup);
    const int cause = errno;
    ::close(from);
    errno = cause;
    return good;
}

}  // namespace

bool keepUnderName(const Folder& folder, const std::string& name, const std::string& backup) {
    struct stat status {};
    if (::fstatat(folder.fd(), backup.c_str(), &status, 0) == 0 && S_ISDIR(status.st_mode)) {
        errno = EISDIR;
        return false;
    }
    // Some file systems have no second names, and files of others may not be given one.
    return linkBackup(folder, name, backup) || copyBackup(folder, name, backup);
}

}  // namespace host::dxf
