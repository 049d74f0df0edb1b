/// Fields of a group object and its master: whole lists, and references, which are written on both.
#include "ACAD/kz_acgrp/kz_acgrp.h"
#include "kz/kz_xdata.h"

namespace {

/// The object that carries the fields: the group, or its master. False when there is none.
bool carrier(ads_name out, const kz_GroupId* id, int from_master) {
    if (kz_Group_isNull(id) == 1) return false;
    if (from_master != 0) return kz_AcGroup_getMasterEntName(out, id, 1) == 1;
    ads_name_set(id->ename, out);
    return true;
}

/// The type letter of a reference.
int16_t letter(int as_handle) {
    return as_handle != 0 ? KZ_FLD_HANDLE : KZ_FLD_CHAR;
}

/// Does `write`, a function on a name, for the group object and its master.
template <class Write>
int onBoth(const kz_GroupId* id, int skip_master, int by_field, Write write) {
    int status = write(id->ename);
    ads_name master = {};
    if (skip_master != 0 || kz_AcGroup_getMasterEntName(master, id, by_field) != 1) return status;
    const int on_master = write(master);
    return status == 1 ? on_master : 0;
}

}  // namespace

// --- lists --------------------------------------------------------------------------------------

int kz_Group_setXdata(const kz_GroupId* id, int skipMaster, const kz_Char* name,
                      const kz_Char* type, const kz_Char* masterHandle) {
    const kz::GroupTrace trace(KZ_T("kz_Group_setXdata"));
    const kz::OwnedFldList list(kz_FldList_create(nullptr, 0, nullptr, 0));
    if (kz_Group_isNull(id) == 1 || list == nullptr) return 0;
    const auto add = [&](const kz_Char* field, const kz_Char* value) {
        return value == nullptr || kz_FldList_addCharVal(list.get(), field, value) == 1;
    };
    const bool whole = add(kz::kNameField, name) && add(kz::kTypeField, type) &&
                       add(kz::kMasterField, masterHandle);
    kz_XData_modFldList(id->ename, list.get(), kz::kGroupApp);
    ads_name master = {};
    if (skipMaster == 0 && name != nullptr && kz_AcGroup_getMasterEntName(master, id, 1) == 1) {
        kz_Ename_setCharFieldReference(master, kz::kNameField, name, 0, kz::kGroupApp);
    }
    return whole ? 1 : 0;
}

kz_FldList* kz_Group_getXDataFld(const kz_GroupId* id, int fromMaster, const kz_Char* fieldName) {
    ads_name name = {};
    if (kz::isEmpty(fieldName) || !carrier(name, id, fromMaster)) return nullptr;
    kz::OwnedFldList list(kz_XData_getFld(name, fieldName, kz::kGroupApp));
    kz_FldList_start(list.get());
    kz_LnkList* values = nullptr;
    // A field of several values gives way to what is in it.
    if (kz_FldList_currList(list.get(), &values) == 1) list.reset(kz_FldList_copy(values));
    kz_FldList_start(list.get());
    return list.release();
}

kz_FldList* kz_Group_getXDataFldList(const kz_GroupId* id, int fromMaster) {
    ads_name name = {};
    if (!carrier(name, id, fromMaster)) return nullptr;
    return kz_XData_getFldList(name, nullptr, kz::kGroupApp);
}

int kz_Group_getCharFieldValFromMaster(kz_Char* out, int size, const kz_Char* fieldName,
                                       const kz_GroupId* id) {
    ads_name master = {};
    if (out != nullptr && size > 0) *out = 0;
    if (!carrier(master, id, 1)) return 0;
    return kz_AcGroup_getCharFieldValFromEname(out, size, fieldName, master);
}

// --- references of one object -------------------------------------------------------------------

int kz_Ename_setCharFieldReference(const ads_name name, const kz_Char* fieldName,
                                   const kz_Char* value, int asHandle, const kz_Char* app) {
    if (name == nullptr || fieldName == nullptr) return 0;
    return kz_XData_setFld(name, letter(asHandle), value, fieldName, app, 1, 1);
}

int kz_CADObjId_setCharFieldReference(const kz_CADObjId* object, const kz_Char* fieldName,
                                      const kz_Char* value, int asHandle, const kz_Char* app) {
    if (object == nullptr) return 0;
    return kz_Ename_setCharFieldReference(object->ename, fieldName, value, asHandle, app);
}

int kz_Ename_addCharFieldReference(const ads_name name, const kz_Char* fieldName,
                                   const kz_Char* value, int asHandle) {
    if (name == nullptr || fieldName == nullptr) return 0;
    return kz_XData_setFld(name, letter(asHandle), value, fieldName, kz::kGroupApp, 0, 1);
}

int kz_Ename_delCharFieldReference(const ads_name name, const kz_Char* fieldName,
                                   const kz_Char* value, int asHandle) {
    if (name == nullptr || fieldName == nullptr) return 0;
    if (value == nullptr) return kz_XData_deleteFld(name, fieldName, kz::kGroupApp);
    return kz_XData_deleteFldValue(name, letter(asHandle), value, fieldName, kz::kGroupApp, 1);
}

// --- references of a group ----------------------------------------------------------------------

int kz_Group_setCharFieldReference(const kz_GroupId* id, int skipMaster, int masterByField,
                                   const kz_Char* fieldName, const kz_Char* value, int asHandle) {
    const kz::GroupTrace trace(KZ_T("kz_Group_setCharFieldReference"));
    if (kz_AcGroup_isErased(id, masterByField) == 1 || kz::isEmpty(fieldName)) return 0;
    return onBoth(id, skipMaster, masterByField, [&](const ads_name name) {
        return kz_Ename_setCharFieldReference(name, fieldName, value, asHandle, kz::kGroupApp);
    });
}

int kz_Group_addCharFieldReference(const kz_GroupId* id, int skipMaster, int masterByField,
                                   const kz_Char* fieldName, const kz_Char* value, int asHandle) {
    const kz::GroupTrace trace(KZ_T("kz_Group_addCharFieldReference"));
    if (kz_Group_isErased(id) == 1 || kz::isEmpty(fieldName)) return 0;
    return onBoth(id, skipMaster, masterByField, [&](const ads_name name) {
        return kz_Ename_addCharFieldReference(name, fieldName, value, asHandle);
    });
}

int kz_Group_delCharFieldReference(const kz_GroupId* id, int skipMaster, int masterByField,
                                   const kz_Char* fieldName, const kz_Char* value, int asHandle) {
    const kz::GroupTrace trace(KZ_T("kz_Group_delCharFieldReference"));
    if (kz_Group_isErased(id) == 1 || kz::isEmpty(fieldName)) return 0;
    return onBoth(id, skipMaster, masterByField, [&](const ads_name name) {
        return kz_Ename_delCharFieldReference(name, fieldName, value, asHandle);
    });
}

int kz_Group_addChildGroupReference(const kz_GroupId* parent, const kz_Char* child,
                                    int masterByField) {
    return kz_Group_addCharFieldReference(parent, 0, masterByField, kz::kChildField, child, 0);
}

int kz_Group_removeChildGroupReference(const kz_GroupId* parent, const kz_Char* child) {
    // Without a name all of them would go.
    if (child == nullptr) return 0;
    return kz_Group_delCharFieldReference(parent, 0, 1, kz::kChildField, child, 0);
}

int kz_Group_setParentGroupReference(const kz_GroupId* child, const kz_Char* parent,
                                     int masterByField) {
    return kz_Group_setCharFieldReference(child, 0, masterByField, kz::kParentField, parent, 0);
}

int kz_Group_removeParentGroupReference(const kz_GroupId* child) {
    return kz_Group_delCharFieldReference(child, 0, 1, kz::kParentField, nullptr, 0);
}

int kz_Group_setContainerGroupReference(const kz_GroupId* id, const kz_Char* container,
                                        int masterByField) {
    return kz_Group_setCharFieldReference(id, 0, masterByField, kz::kContainerField, container, 0);
}

int kz_Group_removeContainerGroupReference(const kz_GroupId* id) {
    return kz_Group_delCharFieldReference(id, 0, 1, kz::kContainerField, nullptr, 0);
}
