/// The flag of hidden lines: a field list of one integer in the XDATA of an entity.
#include "ACAD/cad_rx/cad_rx.h"
#include "guards.h"
#include "kz/kz_fldcnv.h"
#include "kz/kz_objprops.h"
#include "kz/kz_xdata.h"

namespace {

constexpr const kz_Char* kApp = KZ_T("KZ_HLR");
constexpr const kz_Char* kField = KZ_T("HIDDEN");
constexpr int kAppName = 1001;

// What a refused change gives, by the table of general errors.
constexpr int kInvalidInput = 4;
constexpr int kNoMemory = 5;
constexpr int kNullInput = 7;

/// The application's data with the flag; NULL without memory.
kz::OwnedChain flagChain(int hidden) {
    kz::OwnedChain chain(acutBuildList(kAppName, kApp, 0));
    const kz::OwnedFldList fields(kz_FldList_create(nullptr, 0, nullptr, 0));
    if (chain == nullptr || fields == nullptr) return nullptr;
    resbuf* head = chain.get();
    const bool good =
        kz_FldList_appInt(fields.get(), kField, static_cast<int16_t>(hidden != 0 ? 1 : 0)) == 1 &&
        kz_FldList_start(fields.get()) == 1 &&
        kz_Rb_convertFldListToRb(&head, fields.get(), 1, 1, 1, 1) == 1;
    return good ? std::move(chain) : nullptr;
}

}  // namespace

int kz_AcCADEntity_isHLRHidden(const AcDbEntity* entity) {
    resbuf* data = entity != nullptr ? entity->xData(nullptr) : nullptr;
    if (data == nullptr) return 0;
    const int found = kz_XData_getAppXData(&data, kApp);
    const kz::OwnedChain part(data);
    if (found != 1 || part == nullptr) return 0;
    kz_FldList* read = nullptr;
    resbuf* cursor = part->rbnext;
    const int status = kz_Rb_convertRbToFldList(&read, &cursor, 1);
    const kz::OwnedFldList fields(read);
    int16_t hidden = 0;
    return status == 1 && kz_FldList_getInt(fields.get(), kField, &hidden) == 1 && hidden != 0 ? 1
                                                                                               : 0;
}

int kz_AcCADEntity_setHLRHidden(AcDbEntity* entity, int hidden) {
    if (entity == nullptr) return kNullInput;
    acdbRegApp(kApp);
    const kz::OwnedChain data = flagChain(hidden);
    if (data == nullptr) return kNoMemory;
    Acad::ErrorStatus status = entity->setXData(data.get());
    if (status == Acad::eNotOpenForWrite && entity->upgradeOpen() == Acad::eOk) {
        status = entity->setXData(data.get());
        entity->downgradeOpen();
    }
    return status == Acad::eOk ? 1 : 0;
}

int kz_CADObjId_isHLRHidden(const kz_CADObjId* id) {
    const kz::Opened<AcDbEntity> entity = kz::openObject<AcDbEntity>(id, AcDb::kForRead);
    return kz_AcCADEntity_isHLRHidden(entity.get());
}

int kz_CADObjId_setHLRHidden(const kz_CADObjId* id, int hidden) {
    if (kz_CADObjId_isNull(id) == 1) return kNullInput;
    AcDbObjectId object;
    if (kz_CADObjId_getAcDbObjectId(&object, id) != 1) return kInvalidInput;
    const kz::Opened<AcDbEntity> entity = kz::openObject<AcDbEntity>(object, AcDb::kForWrite);
    return entity ? kz_AcCADEntity_setHLRHidden(entity.get(), hidden) : 0;
}
