/// The search for files.
#include "base/search_path.h"

#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <system_error>

namespace fs = std::filesystem;

namespace host {
namespace {

std::string fullPath(const fs::path& path) {
    std::error_code error;
    if (!fs::is_regular_file(path, error)) return {};
    const fs::path full = fs::absolute(path, error);
    return error ? std::string() : full.lexically_normal().string();
}

}  // namespace

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
    // A name that is there with its backslashes goes before one without.
    std::string found = fullPath(name);
    const fs::path plain = plainPath(name);
    if (found.empty()) found = fullPath(plain);
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
