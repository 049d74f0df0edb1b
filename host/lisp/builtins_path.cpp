/// Files and folders by their names: parts of names, what is known of a file, copying, listing.
/// Names may have backslashes; parts of names keep those that they were given with.
#include <sys/stat.h>

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <vector>

#include "acad/ads.h"
#include "base/search_path.h"
#include "kz_tls21an/text.h"
#include "lisp/builtin.h"
#include "lisp/interpreter.h"
#include "lisp/load.h"

namespace host::lisp {

namespace {

namespace fs = std::filesystem;

fs::path pathArg(Interpreter& in, const Value& value) {
    return spelledPath(kz::toUtf8(textArg(in, value)));
}

// --- parts of names -----------------------------------------------------------------------------

/// Units of a name in front of its last part, the separator among them.
size_t folderLength(std::u16string_view name) {
    const size_t separator = name.find_last_of(u"/\\:");
    return separator == std::u16string_view::npos ? 0 : separator + 1;
}

/// Where the extension of a name begins, with its dot; the name's length when it has none.
size_t extensionBegin(std::u16string_view name) {
    const size_t dot = name.rfind(u'.');
    return dot == std::u16string_view::npos || dot < folderLength(name) ? name.size() : dot;
}

Value filenameBase(Interpreter& in, Args args) {
    const std::u16string_view name = textArg(in, args[0]);
    const size_t folder = folderLength(name);
    return makeText(name.substr(folder, extensionBegin(name) - folder));
}

Value filenameExtension(Interpreter& in, Args args) {
    const std::u16string_view name = textArg(in, args[0]);
    const size_t begin = extensionBegin(name);
    return begin == name.size() ? Value() : makeText(name.substr(begin));
}

/// The folder goes without the separator behind it, unless it is the root.
Value filenameDirectory(Interpreter& in, Args args) {
    const std::u16string_view name = textArg(in, args[0]);
    std::u16string_view folder = name.substr(0, folderLength(name));
    const bool root = folder.size() == 1 || folder.ends_with(u":") ||
                      (folder.size() > 1 && folder[folder.size() - 2] == u':');
    if (!root && !folder.empty()) folder.remove_suffix(1);
    return makeText(folder);
}

// --- files --------------------------------------------------------------------------------------

/// Bytes that were copied; nil for a file that is there already, unless it is to grow.
Value copyFile(Interpreter& in, Args args) {
    const fs::path from = pathArg(in, args[0]);
    const fs::path to = pathArg(in, args[1]);
    const bool append = static_cast<bool>(optionalArg(args, 2));
    std::error_code error;
    if (!fs::is_regular_file(from, error) || fs::is_directory(to, error)) return {};
    if (fs::exists(to, error) && (!append || fs::equivalent(from, to, error))) return {};
    std::ifstream source(from, std::ios::binary);
    std::ofstream target(to, std::ios::binary | std::ios::app);
    const auto before = target.tellp();
    if (fs::file_size(from, error) > 0) target << source.rdbuf();
    target.flush();
    if (!source || !target) return {};
    const auto count = static_cast<double>(target.tellp() - before);
    return count <= INT32_MAX ? Value::integer(static_cast<int32_t>(count)) : Value::real(count);
}

Value renameFile(Interpreter& in, Args args) {
    const fs::path from = pathArg(in, args[0]);
    const fs::path to = pathArg(in, args[1]);
    std::error_code error;
    if (!fs::exists(from, error) || fs::exists(to, error)) return {};
    fs::rename(from, to, error);
    return in.truth(!error);
}

/// 0 for a folder.
Value fileSize(Interpreter& in, Args args) {
    const fs::path path = pathArg(in, args[0]);
    std::error_code error;
    if (fs::is_directory(path, error)) return Value::integer(0);
    const auto size = static_cast<double>(fs::file_size(path, error));
    if (error) return {};
    return size <= INT32_MAX ? Value::integer(static_cast<int32_t>(size)) : Value::real(size);
}

Value fileTime(Interpreter& in, Args args) {
    struct stat status {};
    std::tm time{};
    if (::stat(pathArg(in, args[0]).c_str(), &status) != 0) return {};
    if (::localtime_r(&status.st_mtime, &time) == nullptr) return {};
    return makeList(Value::integer(time.tm_year + 1900), Value::integer(time.tm_mon + 1),
                    Value::integer(time.tm_wday), Value::integer(time.tm_mday),
                    Value::integer(time.tm_hour), Value::integer(time.tm_min),
                    Value::integer(time.tm_sec));
}

Value isFolder(Interpreter& in, Args args) {
    std::error_code error;
    return in.truth(fs::is_directory(pathArg(in, args[0]), error));
}

Value makeFolder(Interpreter& in, Args args) {
    std::error_code error;
    return in.truth(fs::create_directory(pathArg(in, args[0]), error) && !error);
}

/// "*.*" means all names, also those without a dot.
bool fitsPattern(const std::u16string& name, const std::u16string& pattern) {
    if (pattern.empty() || pattern == u"*.*") return true;
    return acutWcMatch(kz::toUpper(name).c_str(), kz::toUpper(pattern).c_str()) == RTNORM;
}

/// Patterns of file names know * and ?; the rest of the wildcards stands for itself.
std::u16string namePattern(std::u16string_view pattern) {
    std::u16string out;
    for (const char16_t unit : pattern) {
        if (std::u16string_view(u"#@.~[]-,`").find(unit) != std::u16string_view::npos) out += u'`';
        out += unit;
    }
    return out;
}

Value folderFiles(Interpreter& in, Args args) {
    const Value& folder = optionalArg(args, 0);
    const Value& pattern = optionalArg(args, 1);
    const Value& kind = optionalArg(args, 2);
    const fs::path path = folder.isNil() ? fs::path(".") : pathArg(in, folder);
    const std::u16string given(pattern.isNil() ? std::u16string_view() : textArg(in, pattern));
    const std::u16string wanted = given == u"*.*" ? given : namePattern(given);
    const int32_t mode = kind.isNil() ? 0 : integerArg(in, kind);
    std::vector<std::u16string> names;
    std::error_code error;
    for (fs::directory_iterator entry(path, error), end; !error && entry != end;
         entry.increment(error)) {
        const bool is_folder = entry->is_directory(error);
        if ((mode < 0 && !is_folder) || (mode > 0 && is_folder)) continue;
        names.push_back(kz::toUtf16(entry->path().filename().string()));
    }
    if (mode <= 0 && fs::is_directory(path, error)) {
        names.emplace_back(u".");
        names.emplace_back(u"..");
    }
    std::sort(names.begin(), names.end());
    ListBuilder list;
    for (const std::u16string& name : names) {
        if (fitsPattern(name, wanted)) list.add(makeText(name));
    }
    return list.take();
}

/// Every folder is as trusted as the user who runs the program.
Value findTrustedFile(Interpreter& in, Args args) {
    const std::string path = findFile(pathArg(in, args[0]).string());
    return path.empty() ? Value() : makeText(kz::toUtf16(path));
}

const Builtin kRows[] = {
    {"vl-filename-base", 1, 1, filenameBase, "(vl-filename-base name)",
     "Name of a file without folder and extension."},
    {"vl-filename-directory", 1, 1, filenameDirectory, "(vl-filename-directory name)",
     "Folder of a file's name; an empty text when it has none."},
    {"vl-filename-extension", 1, 1, filenameExtension, "(vl-filename-extension name)",
     "Extension of a file's name with its dot; nil when it has none."},
    {"vl-file-copy", 2, 3, copyFile, "(vl-file-copy from to [append])",
     "Copies a file to one that is not there yet, or behind one; gives the bytes copied, nil when "
     "it can't."},
    {"vl-file-rename", 2, 2, renameFile, "(vl-file-rename from to)",
     "Renames a file; nil when it can't or the new name is taken."},
    {"vl-file-size", 1, 1, fileSize, "(vl-file-size name)",
     "Size of a file in bytes, 0 for a folder; nil when there is none."},
    {"vl-file-systime", 1, 1, fileTime, "(vl-file-systime name)",
     "When a file was changed last: year, month, day of the week (0 is Sunday), day, hour, "
     "minute, second; nil when there is none."},
    {"vl-file-directory-p", 1, 1, isFolder, "(vl-file-directory-p name)", "T for a folder."},
    {"vl-mkdir", 1, 1, makeFolder, "(vl-mkdir name)", "Makes a folder; nil when it can't."},
    {"vl-directory-files", 0, 3, folderFiles, "(vl-directory-files [folder [pattern [mode]]])",
     "Names in a folder, sorted: all (0), files only (1) or folders only (-1)."},
    {"findtrustedfile", 1, 1, findTrustedFile, "(findtrustedfile name)",
     "Full path of a file, as findfile gives it."},
};

}  // namespace

std::span<const Builtin> pathBuiltins() {
    return kRows;
}

}  // namespace host::lisp
