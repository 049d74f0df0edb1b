/// File names.
#include "kz_tls21an/fname.h"

#include <algorithm>
#include <filesystem>
#include <new>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "kz_tls21an/str.h"
#include "kz_tls21an/text.h"
#include "open_file.h"

namespace fs = std::filesystem;

namespace {

#if defined(_WIN32)
constexpr kz_Char kSeparator = '\\';
#else
constexpr kz_Char kSeparator = '/';
#endif

/// How many names are tried for a temporary file.
constexpr int kMaxTries = 100;

using View = std::u16string_view;

bool isSeparator(kz_Char unit) {
    return unit == '/' || unit == '\\';
}

/// Characters of the folder.
size_t folderLength(View name) {
    size_t length = name.size();
    while (length > 0 && !isSeparator(name[length - 1]) && name[length - 1] != ':')
        --length;
    return length;
}

/// Place of the dot in front of the extension, which may be empty; the end of the name for none.
size_t dotPlace(View name) {
    const View file = name.substr(folderLength(name));
    const size_t dot = file.rfind(u'.');
    const bool is_extension = dot != View::npos && file.find_first_not_of(u'.') < dot;
    return is_extension ? name.size() - file.size() + dot : name.size();
}

bool hasExtension(View name) {
    return dotPlace(name) + 1 < name.size();
}

/// Puts the extension where the name's own begins.
void setExtension(kz_Char* name, const kz_Char* extension) {
    kz_Char* end = name + dotPlace(name);
    if (extension != nullptr && *extension == '.') ++extension;
    if (extension != nullptr && *extension != 0) {
        *end++ = '.';
        while (*extension != 0)
            *end++ = *extension++;
    }
    *end = 0;
}

bool startsWithDrive(View name) {
    return name.size() > 1 && name[1] == ':';
}

bool isFull(View name) {
    return startsWithDrive(name) || (!name.empty() && isSeparator(name.front()));
}

/// Characters of what ".." can't leave: "C:", "C:/", "//", "/" or nothing.
size_t rootLength(View name) {
    size_t length = startsWithDrive(name) ? 2 : 0;
    if (length < name.size() && isSeparator(name[length])) ++length;
    if (length == 1 && name.size() > 1 && isSeparator(name[1])) ++length;
    return length;
}

/// The name with the system's separators, one each, and without "." and "..".
std::u16string withoutDots(View name) {
    const size_t root = rootLength(name);
    std::vector<View> parts;
    for (size_t at = root; at < name.size();) {
        const auto stop =
            std::find_if(name.begin() + static_cast<std::ptrdiff_t>(at), name.end(), isSeparator);
        const auto end = static_cast<size_t>(stop - name.begin());
        const View part = name.substr(at, end - at);
        if (part == u"..") {
            if (!parts.empty()) parts.pop_back();
        } else if (!part.empty() && part != u".") {
            parts.push_back(part);
        }
        at = end + 1;
    }
    std::u16string full(name.substr(0, root));
    std::replace_if(full.begin(), full.end(), isSeparator, kSeparator);
    for (const View part : parts) {
        if (full.size() > root) full += kSeparator;
        full += part;
    }
    return full;
}

/// A name that no other caller is likely to try.
std::u16string freshName() {
    static std::random_device source;
    std::u16string name = u"kz";
    for (uint64_t rest = (static_cast<uint64_t>(source()) << 32U) | source(); rest > 0; rest /= 36)
        name += u"0123456789abcdefghijklmnopqrstuvwxyz"[rest % 36];
    return name + u".tmp";
}

/// The text in the storage of a function that lends it.
const kz_Char* lend(std::u16string& storage, std::u16string text) {
    storage = std::move(text);
    return storage.c_str();
}

}  // namespace

int kz_Fname_extractPath(const kz_Char* name, kz_Char* out) {
    if (out == nullptr) return 0;
    const size_t length = name != nullptr ? folderLength(name) : 0;
    kz_Str_ncpy(out, name, length);
    return length > 0 ? 1 : 0;
}

int kz_Fname_extractExt(const kz_Char* name, kz_Char* out) {
    if (out == nullptr) return 0;
    const bool found = name != nullptr && hasExtension(name);
    kz_Str_ncpy(out, found ? name + dotPlace(name) + 1 : nullptr, SIZE_MAX);
    return found ? 1 : 0;
}

kz_Char* kz_Fname_rmvPath(kz_Char* name) {
    return name != nullptr ? kz_Str_ncpy(name, name + folderLength(name), SIZE_MAX) : nullptr;
}

kz_Char* kz_Fname_rmvExt(kz_Char* name) {
    return kz_Fname_modExt(name, nullptr, 0);
}

kz_Char* kz_Fname_addExt(kz_Char* name, const kz_Char* extension) {
    const bool nothing = extension == nullptr || *extension == 0;
    return nothing ? name : kz_Fname_modExt(name, extension, 1);
}

kz_Char* kz_Fname_modExt(kz_Char* name, const kz_Char* extension, int keep) {
    if (name == nullptr || (keep != 0 && hasExtension(name))) return name;
    setExtension(name, extension);
    return name;
}

kz_Char* kz_Fname_fixDir(kz_Char* folder) {
    if (folder == nullptr || *kz_Str_rtb(kz_Str_rlb(folder)) == 0) return folder;
    kz_Char* out = folder;
    for (const kz_Char* unit = folder; *unit != 0; ++unit) {
        const bool again = out != folder && isSeparator(*unit) && out[-1] == kSeparator;
        // The second of a network name's two separators is no repetition.
        if (again && out != folder + 1) continue;
        *out++ = isSeparator(*unit) ? kSeparator : *unit;
    }
    if (out[-1] != kSeparator) *out++ = kSeparator;
    *out = 0;
    return folder;
}

const kz_Char* kz_Fname_fullPath(const kz_Char* name) {
    static std::u16string storage;
    if (name == nullptr) return nullptr;
    try {
        if (isFull(name)) return lend(storage, withoutDots(name));
        std::error_code error;
        const fs::path current = fs::current_path(error);
        if (error) return nullptr;
        return lend(storage, withoutDots(kz::toUtf16(current.string()) + kSeparator + name));
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

const kz_Char* kz_Fname_createTemp(void) {
    static std::u16string storage;
    try {
        std::error_code error;
        const fs::path folder = fs::temp_directory_path(error);
        for (int i = 0; !error && i < kMaxTries; ++i) {
            std::u16string name = kz::toUtf16((folder / "").string()) + freshName();
            std::FILE* file = kz::openFile(name.c_str(), "wx");
            if (file == nullptr) continue;
            std::fclose(file);
            return lend(storage, std::move(name));
        }
    } catch (const std::exception&) {
        return nullptr;
    }
    return nullptr;
}
