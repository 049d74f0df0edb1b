/// The search for files.
#include "base/search_path.h"

#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <system_error>

#include "kz_tls21an/text.h"

namespace fs = std::filesystem;

namespace host {
namespace {

std::string fullPath(const fs::path& wanted) {
    std::error_code error;
    const fs::path path = spelledPath(wanted.string());
    if (!fs::is_regular_file(path, error)) return {};
    const fs::path full = fs::absolute(path, error);
    return error ? std::string() : full.lexically_normal().string();
}

/// The name in a folder that differs from `name` in the case of its letters; empty for none.
std::string otherCase(const fs::path& folder, const std::string& name) {
    const std::u16string wanted = kz::toUtf16(name);
    std::string found;
    std::error_code error;
    fs::directory_iterator entry(folder.empty() ? fs::path(".") : folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const std::string other = entry->path().filename().string();
        if (kz::compareNoCase(kz::toUtf16(other), wanted) != 0) continue;
        if (found.empty() || other < found) found = other;
    }
    return found;
}

}  // namespace

std::string spelledPath(const std::string& name) {
    std::error_code error;
    if (name.empty() || fs::exists(name, error)) return name;
    const fs::path plain = plainPath(name);
    if (fs::exists(plain, error)) return plain.string();
    fs::path path;
    bool is_there = true;
    for (const fs::path& part : plain) {
        const bool known = !is_there || part.empty() || fs::exists(path / part, error);
        const std::string other = known ? std::string() : otherCase(path, part.string());
        is_there = known || !other.empty();
        path /= other.empty() ? part : fs::path(other);
    }
    return path.string();
}

std::string plainPath(std::string path) {
    for (char& c : path) {
        if (c == '\\') c = '/';
    }
    return path;
}

std::vector<std::string> supportFolders() {
    std::vector<std::string> folders;
    const char* all = std::getenv("KZ_PATH");
    std::istringstream list(all == nullptr ? "" : all);
    for (std::string folder; std::getline(list, folder, ':');) {
        if (!folder.empty()) folders.push_back(folder);
    }
    return folders;
}

std::string findInPath(const std::string& name, const std::string& beside) {
    if (name.empty()) return {};
    std::string found = fullPath(name);
    const fs::path plain = plainPath(name);
    if (!found.empty() || plain.is_absolute()) return found;
    if (!beside.empty()) found = fullPath(fs::path(beside) / plain);
    if (!found.empty()) return found;
    for (const std::string& folder : supportFolders()) {
        found = fullPath(fs::path(folder) / plain);
        if (!found.empty()) return found;
    }
    return {};
}

}  // namespace host
