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

namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

/// True for a text of 16-bit units with the mark that editors put in front of it.
bool isUtf16(std::string_view bytes) {
    return bytes.starts_with("\xFF\xFE") && bytes.size() % 2 == 0;
}

}  // namespace

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
    if (isUtf16(bytes)) {
        text.resize(bytes.size() / 2 - 1);
        std::memcpy(text.data(), bytes.data() + 2, text.size() * 2);
        return true;
    }
    if (bytes.find('\0') != std::string::npos) {
        error = "is no text; of a compiled program the source is needed";
        return false;
    }
    const bool marked = bytes.starts_with(kUtf8Mark);
    text = kz::toUtf16(std::string_view(bytes).substr(marked ? kUtf8Mark.size() : 0));
    return true;
}

}  // namespace host::lisp
