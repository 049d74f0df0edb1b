/// Masters of groups: their handles, and the way to them from a group and from a member.
#include "ACAD/kz_acgrp/kz_acgrp.h"
#include "kz/kz_xdata.h"

namespace {

constexpr const char* kTraceSource = "SRC/ACAD/kz_acgrp";

}  // namespace

int kz_Group_getHandleFromEname(kz_Char* out, const ads_name name) {
    KZ_ASSERTION(out != nullptr && name != nullptr);
    if (out == nullptr) return 0;
    *out = 0;
    const kz_Char* handle = kz_Ename_toHandle(name);
    if (handle == nullptr) return 0;
    kz_Str_ncpy(out, handle, kz::kHandleSize - 1);
    return 1;
}

// --- handles ------------------------------------------------------------------------------------

int kz_Group_getMasterHandle(kz_Char* out, const kz_GroupId* id) {
    const kz::GroupTrace trace(KZ_T("kz_Group_getMasterHandle"));
    if (kz_Group_isNull(id) == 1) {
        kz::submitGroupError(kz::kInvalidGroup);
        return 0;
    }
    return kz_AcGroup_getCharFieldValFromEname(out, kz::kHandleSize, kz::kMasterField, id->ename);
}

int kz_AcGroup_getMasterHandle(kz_Char* out, const AcDbObjectId* group) {
    ads_name name = {};
    if (group == nullptr || acdbGetAdsName(name, *group) != Acad::eOk) return 0;
    return kz_AcGroup_getCharFieldValFromEname(out, kz::kHandleSize, kz::kMasterField, name);
}

int kz_AcGroup_getMasterHandleAsFirstMember(kz_Char* out, const AcDbObjectId* group) {
    const kz::GroupTrace trace(KZ_T("kz_AcGroup_getMasterHandleAsFirstMember"));
    if (out == nullptr || group == nullptr) return 0;
    const kz::Opened<AcDbGroup> opened = kz::openGroup(*group, AcDb::kForRead);
    const std::unique_ptr<AcDbGroupIterator> walk(opened ? opened->newIterator() : nullptr);
    ads_name first = {};
    if (walk == nullptr || walk->done()) return 0;
    if (acdbGetAdsName(first, walk->objectId()) != Acad::eOk) return 0;
    return kz_Group_getHandleFromEname(out, first);
}

int kz_AcGroup_getMasterHandleX(kz_Char* out, const kz_GroupId* id, int fromField) {
    if (fromField != 0 || kz_Group_isNull(id) == 1) return kz_Group_getMasterHandle(out, id);
    AcDbObjectId object;
    if (kz_Group_getAcDbObjectId(&object, id) != 1) return 0;
    return kz_AcGroup_getMasterHandleAsFirstMember(out, &object);
}

// --- masters ------------------------------------------------------------------------------------

int kz_AcGroup_getMasterEntName(ads_name out, const kz_GroupId* id, int fromField) {
    const kz::GroupTrace trace(KZ_T("kz_AcGroup_getMasterEntName"));
    if (out == nullptr) return 0;
    ads_name_clear(out);
    kz_Char handle[kz::kHandleSize];
    AcDbObjectId object;
    if (kz_AcGroup_getMasterHandleX(handle, id, fromField) != 1) return 0;
    if (kz_Group_getAcDbObjectId(&object, id) != 1) return 0;
    AcDbDatabase* drawing = kz::databaseOfObject(object);
    KZ_ASSERTION(drawing != nullptr);
    // In another drawing the handle would lead to another object.
    return drawing != nullptr ? kz_AcCAD_getEntNameFromHandle(out, handle, drawing) : 0;
}

int kz_AcGroup_getMasterEntNameFromGroupName(ads_name out, const kz_Char* name, int fromField,
                                             AcDbDatabase* database) {
    if (out == nullptr) return 0;
    ads_name_clear(out);
    const kz::OwnedGroup id(kz_AcGroup_getIdFromAcDbDatabase(name, database, 1));
    return id != nullptr ? kz_AcGroup_getMasterEntName(out, id.get(), fromField) : 0;
}

kz_CADObjId* kz_AcGroup_getMasterObjectX(const kz_GroupId* id, int fromField) {
    const kz::GroupTrace trace(KZ_T("kz_AcGroup_getMasterObjectX"));
    ads_name master = {};
    if (kz_Group_isNull(id) == 1) {
        kz::submitGroupError(kz::kNoGroupId);
        return nullptr;
    }
    if (kz_AcGroup_getMasterEntName(master, id, fromField) == 1) {
        return kz_CADObjId_fromADSEname(master);
    }
    kz::submitGeneralError(kz::kInvalidName);
    return nullptr;
}

kz_CADObjId* kz_AcGroup_getMasterObject(const kz_GroupId* id) {
    return kz_AcGroup_getMasterObjectX(id, 1);
}

kz_CADObjId* kz_AcGroup_getMasterFromMember(const kz_CADObjId* object) {
    const kz::GroupTrace trace(KZ_T("kz_AcGroup_getMasterFromMember"));
    AcDbObjectId entity;
    kz_Char role[kz::kTypeSize], handle[kz::kHandleSize];
    if (kz_CADObjId_isNull(object) == 1) return nullptr;
    const kz::OwnedFldList list(kz_XData_getFldList(object->ename, nullptr, kz::kGroupApp));
    if (kz_FldList_getChar(list.get(), kz::kRoleField, role, kz::kTypeSize) != 1) return nullptr;
    if (kz::isSame(role, kz::kMasterRole)) return kz_CADObjId_copy(object);
    if (!kz::isSame(role, kz::kMemberRole)) return nullptr;
    const bool known =
        kz_FldList_getChar(list.get(), kz::kMasterField, handle, kz::kHandleSize) == 1 &&
        kz_CADObjId_getAcDbObjectId(&entity, object) == 1;
    AcDbDatabase* drawing = known ? kz::databaseOfObject(entity) : nullptr;
    ads_name master = {};
    if (drawing == nullptr) return nullptr;
    if (kz_AcCAD_getEntNameFromHandle(master, handle, drawing) != 1) return nullptr;
    return kz_CADObjId_fromADSEname(master);
}
