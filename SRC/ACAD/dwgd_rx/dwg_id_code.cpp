/// The code that tells a drawing from all others.
#include <chrono>

#include "ACAD/dwgd_rx/id_code.h"
#include "guards.h"
#include "kz/kz_dwgdata.h"

namespace {

constexpr const kz_Char* kDictName = KZ_T("KZ_MOVAR_APP");
constexpr const kz_Char* kGroup = KZ_T("DWGINFO");
constexpr const kz_Char* kField = KZ_T("DWGIDCODE");

}  // namespace

// Codes count the time since 1970 in UTC, so that no time zone makes two of them equal.
const kz_Char* kz_DwgIdCode_create(void) {
    using std::chrono::milliseconds;
    static kz_Char code[kz::kIdCodeSize];
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    const int64_t moment = std::chrono::duration_cast<milliseconds>(now).count();
    return kz::writeIdCode(code, moment / 1000, static_cast<int>(moment % 1000)) ? code : nullptr;
}

const kz_Char* kz_DwgIdCode_get(const kz_CADDwgId* drawing) {
    constexpr int kSize = 9;
    static kz_Char code[kSize];
    const kz::OwnedFldList list(kz_DwgData_getFld(drawing, kDictName, kGroup, kField));
    const int good = kz_FldList_getChar(list.get(), kField, code, kSize);
    return good == 1 && code[0] != 0 ? code : nullptr;
}

int kz_DwgIdCode_set(const kz_CADDwgId* drawing, const kz_Char* code) {
    if (code == nullptr) return 0;
    return kz_DwgData_setFld(drawing, kDictName, kGroup, kField, KZ_FLD_CHAR, code, 1, 1);
}

int kz_DwgIdCode_addToDrawing(const kz_CADDwgId* drawing, int force) {
    if (force == 0 && kz_DwgIdCode_get(drawing) != nullptr) return 0;
    return kz_DwgIdCode_set(drawing, kz_DwgIdCode_create());
}
