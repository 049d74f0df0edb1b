/// The history in its file.
#include "history.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <unordered_set>

#include "expression_scanner.h"

namespace console {

namespace fs = std::filesystem;

namespace {

/// A file that is cut has more than this many bytes.
constexpr off_t kLongFile = off_t{1} << 20;
/// Longer entries are kept in the running console only.
constexpr size_t kLongEntry = size_t{1} << 16;

std::string historyPath() {
    if (const char* named = std::getenv("KZ_HISTORY")) return named;
    const char* state = std::getenv("XDG_STATE_HOME");
    const char* home = std::getenv("HOME");
    fs::path folder;
    if (state && *state) {
        folder = state;
    } else if (home && *home) {
        folder = fs::path(home) / ".local" / "state";
    } else {
        return {};
    }
    folder /= "kz_zaglaid";
    std::error_code error;
    fs::create_directories(folder, error);
    return error ? std::string() : (folder / "console_history").string();
}

/// The file, opened and locked against other consoles. Closing gives the lock back.
class Locked {
  public:
    explicit Locked(const std::string& path) {
        if (path.empty()) return;
        // A console that cuts the file puts another one in its place.
        for (int tries = 0; tries < 100 && file_ < 0; ++tries) {
            file_ = ::open(path.c_str(), O_RDWR | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
            if (file_ < 0 || ::flock(file_, LOCK_EX) != 0) return;
            struct stat mine {
            }, there{};
            const bool same = ::fstat(file_, &mine) == 0 && ::stat(path.c_str(), &there) == 0 &&
                              mine.st_ino == there.st_ino;
            if (!same) shut();
        }
    }
    ~Locked() { shut(); }
    Locked(const Locked&) = delete;
    Locked& operator=(const Locked&) = delete;

    bool isOpen() const { return file_ >= 0; }
    std::string bytes() const {
        std::string all;
        char block[1 << 16];
        for (ssize_t count = 0; (count = ::read(file_, block, sizeof block)) > 0;)
            all.append(block, static_cast<size_t>(count));
        return all;
    }
    bool append(const std::string& text) const {
        return ::write(file_, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    }

  private:
    void shut() {
        if (file_ >= 0) ::close(file_);
        file_ = -1;
    }
    int file_ = -1;
};

/// Puts a shorter file in the place of a long one, which the caller has locked.
void replace(const std::string& path, const std::vector<std::string>& entries) {
    std::string text;
    for (const std::string& entry : entries)
        text += entry + "\n";
    const std::string other = path + ".new";
    std::error_code error;
    fs::remove(other, error);
    const int file = ::open(other.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (file < 0) return;
    const bool written =
        ::write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    ::close(file);
    if (written) fs::rename(other, path, error);
    if (!written || error) fs::remove(other, error);
}

}  // namespace

std::string onOneLine(std::string_view expression) {
    std::string line;
    ExpressionScanner scanner;
    for (const char unit : expression) {
        const bool in_text = scanner.inText(), in_comment = scanner.inComment();
        scanner.step(unit);
        const bool blank = unit == ' ' || unit == '\t' || unit == '\n' || unit == '\r';
        if (in_text) {
            if (unit != '\r') line += unit == '\n' ? "\\n" : std::string(1, unit);
        } else if (blank && (!in_comment || unit == '\n')) {
            if (!line.ends_with(' ')) line += ' ';
        } else if (!in_comment && !scanner.inComment()) {
            line += unit;
        }
    }
    const size_t first = line.find_first_not_of(" \t");
    if (first == std::string::npos) return {};
    return line.substr(first, line.find_last_not_of(" \t") + 1 - first);
}

HistoryFile::HistoryFile() : path_(historyPath()) {}

std::vector<std::string> HistoryFile::read() const {
    const Locked file(path_);
    if (!file.isOpen()) return {};
    const std::string bytes = file.bytes();
    std::vector<std::string> all, latest;
    std::istringstream lines(bytes);
    for (std::string line; std::getline(lines, line);)
        if (!line.empty()) all.push_back(line);
    std::unordered_set<std::string> seen;
    for (size_t i = all.size(); i-- > 0 && latest.size() < kEntries;)
        if (seen.insert(all[i]).second) latest.push_back(all[i]);
    std::reverse(latest.begin(), latest.end());
    if (static_cast<off_t>(bytes.size()) > kLongFile || all.size() > 2 * kEntries)
        replace(path_, latest);
    return latest;
}

void HistoryFile::append(const std::string& entry) const {
    if (entry.empty() || entry.size() > kLongEntry) return;
    const Locked file(path_);
    if (file.isOpen()) file.append(entry + "\n");
}

}  // namespace console
