/// Finding and reading program files.
#include "lisp/load.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <system_error>

#include "base/search_path.h"
#include "db/database.h"
#include "kz_tls21an/text.h"

namespace host::lisp {

namespace fs = std::filesystem;

std::string findFile(const std::string& name) {
    const Database* drawing = currentDatabase();
    const fs::path file = drawing == nullptr ? "" : drawing->path();
    return findInPath(name, file.parent_path().string());
}

std::string findProgram(const std::string& name) {
    std::string path = findFile(name);
    return path.empty() ? findFile(name + ".lsp") : path;
}

bool readProgram(const std::string& path, std::u16string& text, std::string& error) {
    std::error_code ignored;
    if (fs::is_directory(path, ignored)) {
        error = "is a directory";
        return false;
    }
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> stream(std::fopen(path.c_str(), "rb"),
                                                                 std::fclose);
    if (!stream) {
        error = std::strerror(errno);
        return false;
    }
    std::string bytes;
    char block[1 << 16];
    size_t count = 0;
    while ((count = std::fread(block, 1, sizeof block, stream.get())) > 0)
        bytes.append(block, count);
    if (std::ferror(stream.get())) {
        error = std::strerror(errno);
        return false;
    }
    text = kz::toUtf16(bytes);
    return true;
}

}  // namespace host::lisp
