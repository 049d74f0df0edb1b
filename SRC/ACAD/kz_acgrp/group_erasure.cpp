/// Whether groups are erased, and erasing the object of one.
#include "ACAD/kz_acgrp/kz_acgrp.h"

namespace {

constexpr const char* kTraceSource = "SRC/ACAD/kz_acgrp";

}  // namespace

int kz_AcGroup_isAcDbObjectErased(const AcDbObjectId* object) {
    if (object == nullptr || object->isNull()) return 1;
    AcDbObject* opened = nullptr;
    if (acdbOpenObject(opened, *object, AcDb::kForRead, true) != Acad::eOk) return 1;
    const bool erased = opened->isErased();
    opened->close();
    return erased ? 1 : 0;
}

int kz_AcGroup_isAdsNameErased(const ads_name name) {
    AcDbObjectId object;
    if (name == nullptr || acdbGetObjectId(object, name) != Acad::eOk) return 1;
    return kz_AcGroup_isAcDbObjectErased(&object);
}

int kz_AcGroup_isErased(const kz_GroupId* id, int checkMaster) {
    const kz::GroupTrace trace(KZ_T("kz_AcGroup_isErased"));
    if (kz_Group_isNull(id) == 1 || kz_AcGroup_isAdsNameErased(id->ename) == 1) return 1;
    ads_name master = {};
    if (checkMaster == 0 || kz_AcGroup_getMasterEntName(master, id, 1) != 1) return 0;
    return kz_AcGroup_isAdsNameErased(master);
}

int kz_AcDbGroup_delete(const AcDbObjectId* group) {
    const kz::GroupTrace trace(KZ_T("kz_AcDbGroup_delete"));
    if (group == nullptr) return 0;
    const kz::Opened<AcDbGroup> opened = kz::openGroup(*group, AcDb::kForWrite);
    return opened && opened->erase(true) == Acad::eOk ? 1 : 0;
}

int kz_AcGroup_deleteByGroupObjId(kz_GroupId** id) {
    const kz::GroupTrace trace(KZ_T("kz_AcGroup_deleteByGroupObjId"));
    if (id == nullptr) return 0;
    const kz::OwnedGroup owned(std::exchange(*id, nullptr));
    AcDbObjectId object;
    if (kz_Group_isValid(owned.get()) == 0) return 0;
    const int known = kz_Group_getAcDbObjectId(&object, owned.get());
    KZ_ASSERTION(known == 1);
    return known == 1 ? kz_AcDbGroup_delete(&object) : 0;
}
