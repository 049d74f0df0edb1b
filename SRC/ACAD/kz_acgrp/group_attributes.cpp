/// Attributes of groups: their names and types.
#include "ACAD/cad_rx/cad_rx.h"
#include "ACAD/kz_acgrp/kz_acgrp.h"
#include "kz/kz_fldcnv.h"
#include "kz/kz_xdata.h"

namespace {

constexpr const char* kTraceSource = "SRC/ACAD/kz_acgrp";

/// A text field of a group object, by its id.
int readField(kz_Char* out, const kz_Char* field, const kz_GroupId* id) {
    if (kz_Group_isNull(id) == 1) {
        kz::submitGroupError(kz::kNoGroupId);
        return 0;
    }
    return kz_AcGroup_getCharFieldValFromEname(out, kz::kNameRead, field, id->ename);
}

}  // namespace

// --- fields -------------------------------------------------------------------------------------

int kz_AcGroup_getCharFieldValFromEname(kz_Char* out, int size, const kz_Char* fieldName,
                                        const ads_name name) {
    if (out == nullptr || size <= 0) return 0;
    *out = 0;
    if (kz::isNull(name) || kz::isEmpty(fieldName)) return 0;
    const kz::OwnedFldList list(kz_XData_getFld(name, fieldName, kz::kGroupApp));
    return kz_FldList_getChar(list.get(), fieldName, out, size);
}

int kz_AcGroup_getCharFieldValFromXdataFlds(kz_Char* out, int size, const kz_Char* fieldName,
                                            resbuf* chain) {
    if (out == nullptr || size <= 0) return 0;
    *out = 0;
    if (chain == nullptr || kz::isEmpty(fieldName)) return 0;
    kz_FldList* read = nullptr;
    resbuf* cursor = chain->rbnext;
    const int status = kz_Rb_convertRbToFldList(&read, &cursor, 1);
    const kz::OwnedFldList list(read);
    return status == 1 ? kz_FldList_getChar(list.get(), fieldName, out, size) : 0;
}

int kz_AcGroup_isAMember(const kz_CADObjId* object) {
    if (kz_CADObjId_isNull(object) == 1) return 0;
    const kz::OwnedFldList list(kz_XData_getFldList(object->ename, nullptr, kz::kGroupApp));
    if (list != nullptr) return 1;
    KZ_TRACEF(kz::kTraceFailure, kz::kTraceGroups,
              KZ_T("No xdata found in given entity for app name %s"), kz::kGroupApp);
    return 0;
}

// --- names --------------------------------------------------------------------------------------

int kz_AcGroup_getName(kz_Char* out, const kz_GroupId* id) {
    const kz::GroupTrace trace(KZ_T("kz_AcGroup_getName"));
    return readField(out, kz::kNameField, id);
}

int kz_AcGroup_getOldName(kz_Char* out, const kz_GroupId* id) {
    const kz::GroupTrace trace(KZ_T("kz_AcGroup_getOldName"));
    return readField(out, kz::kOldNameField, id);
}

int kz_AcGroup_setOldName(const kz_GroupId* id, const kz_Char* name) {
    const kz::GroupTrace trace(KZ_T("kz_AcGroup_setOldName"));
    if (kz_Group_isNull(id) == 1) {
        kz::submitGroupError(kz::kNoGroupId);
        return 0;
    }
    return kz_Ename_setCharFieldReference(id->ename, kz::kOldNameField, name, 0, kz::kGroupApp);
}

int kz_Group_getNameFromDict(kz_Char* out, const kz_GroupId* id) {
    const kz::GroupTrace trace(KZ_T("kz_Group_getNameFromDict"));
    AcDbObjectId object;
    if (kz_Group_isNull(id) == 1) {
        kz::submitGroupError(kz::kNoGroupId);
        return 0;
    }
    if (out == nullptr || kz_Group_getAcDbObjectId(&object, id) != 1) return 0;
    const AcDbDatabase* drawing = kz::databaseOfObject(object);
    KZ_ASSERTION(drawing != nullptr);
    if (drawing == nullptr) drawing = kz::workingDatabase();
    AcDbDictionary* opened = nullptr;
    if (drawing == nullptr || drawing->getGroupDictionary(opened) != Acad::eOk) return 0;
    const kz::Opened<AcDbDictionary> groups(opened);
    ACHAR* key = nullptr;
    if (groups->nameAt(object, key) != Acad::eOk) return 0;
    kz_Str_ncpy(out, key, kz::kLongestName);
    kz_Free(key);
    return 1;
}

// --- types --------------------------------------------------------------------------------------

int kz_AcDbGroup_getDesc(kz_Char* out, const AcDbObjectId* group) {
    if (out == nullptr || group == nullptr) return 0;
    const kz::Opened<AcDbGroup> opened = kz::openGroup(*group, AcDb::kForRead);
    if (!opened) return 0;
    kz_Str_ncpy(out, opened->description(), kz::kTypeSize - 1);
    return 1;
}

int kz_AcDbGroup_isTypeOf(const AcDbObjectId* group, const kz_Char* type) {
    kz_Char found[kz::kTypeSize];
    return kz_AcDbGroup_getDesc(found, group) == 1 && kz_Str_cmpi(found, type) == 0 ? 1 : 0;
}

int kz_AcGroup_getType(kz_Char* out, const kz_GroupId* id) {
    const kz::GroupTrace trace(KZ_T("kz_AcGroup_getType"));
    AcDbObjectId object;
    if (kz_Group_isNull(id) == 1) {
        kz::submitGroupError(kz::kNoGroupId);
        return 0;
    }
    return kz_Group_getAcDbObjectId(&object, id) == 1 ? kz_AcDbGroup_getDesc(out, &object) : 0;
}
