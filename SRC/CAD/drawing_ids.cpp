/// Drawing ids on their way through Lisp: an entity name that holds the record's address.
#include <cstring>

#include "APP/services.h"
#include "kz/kz_objid.h"

namespace {

constexpr kz_Char kSignature[] = KZ_T("KZ_D");
/// How much of the signature counts [bytes].
constexpr size_t kCompared = 4;

/// True for a record that the service knows. One whose drawing was closed is not valid any more,
/// but it is there until its uses end.
bool isLiving(const kz_CADDwgId* drawing) {
    return kz_CADDwgId_isValid(drawing) != 0 || kz_CADDwgId_getRefCount(drawing) > 0;
}

}  // namespace

void kz_CADDwgId_toADSName(ads_name out, const kz_CADDwgId* drawing) {
    if (drawing == nullptr) return;
    out[0] = static_cast<int64_t>(reinterpret_cast<intptr_t>(drawing));
    out[1] = 0;
}

kz_CADDwgId* kz_CADDwgId_fromADSName(const ads_name name, int check) {
    if (name == nullptr) return nullptr;
    const auto address = static_cast<intptr_t>(name[0]);
    // NOLINTNEXTLINE(performance-no-int-to-ptr): this is how an id travels
    return kz_CADDwgId_check(reinterpret_cast<kz_CADDwgId*>(address), check);
}

kz_CADDwgId* kz_CADDwgId_check(kz_CADDwgId* drawing, int check) {
    if (drawing == nullptr || check == 0) return drawing;
    // The word may be an entity's name or a record that is gone: only the service can tell.
    if (!isLiving(drawing)) return nullptr;
    return std::memcmp(drawing->signature, kSignature, kCompared) == 0 ? drawing : nullptr;
}
