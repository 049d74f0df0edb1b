/// acedFindFile: the search for files from the drawing in the editor.
#include <filesystem>

#include "acad/ed.h"
#include "base/faults.h"
#include "base/search_path.h"
#include "db/database.h"
#include "kz_tls21an/text.h"

extern "C" int acedFindFile(const ACHAR* name, ACHAR* result) {
    constexpr size_t kRoom = 512;
    int status = 0;
    if (host::mustFail(host::Call::acedFindFile, status)) return status;
    if (name == nullptr || result == nullptr) return RTERROR;
    const host::Database* drawing = host::currentDatabase();
    const std::filesystem::path file = drawing == nullptr ? "" : drawing->path();
    const std::u16string found =
        kz::toUtf16(host::findInPath(kz::toUtf8(name), file.parent_path().string()));
    if (found.empty() || found.size() > kRoom) return RTERROR;
    found.copy(result, found.size());
    result[found.size()] = 0;
    return RTNORM;
}
