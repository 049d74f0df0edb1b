/// Finding and reading program files.
#include "lisp/load.h"

#include <algorithm>
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

std::u16string decodeText(std::string_view bytes) {
    std::u16string text = kz::toUtf16(bytes);
    // Bytes that are no UTF-8 come as lone surrogates.
    const bool foreign =
        std::any_of(text.begin(), text.end(), [previous = u'\0'](char16_t unit) mutable {
            const bool lone =
                unit >= 0xDC80 && unit <= 0xDCFF && (previous < 0xD800 || previous > 0xDBFF);
            previous = unit;
            return lone;
        });
    Database* drawing = foreign ? currentDatabase() : nullptr;
    if (drawing == nullptr) return text;
    const HeaderVariable* page = drawing->header("$DWGCODEPAGE");
    const bool named = page != nullptr && !page->tags.empty();
    const std::string name =
        named ? kz::toUtf8(page->tags.front().text(drawing->codec())) : "ANSI_1252";
    text.clear();
    dxf::TextCodec("AC1015", name).decodePlain(bytes, text);
    return text;
}

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
    // Files of old systems end their lines in carriage returns alone.
    if (bytes.find('\n') == std::string::npos) std::replace(bytes.begin(), bytes.end(), '\r', '\n');
    const bool marked = bytes.starts_with(kUtf8Mark);
    text = decodeText(std::string_view(bytes).substr(marked ? kUtf8Mark.size() : 0));
    return true;
}

}  // namespace host::lisp
