/// A group's master: how it changes, what goes over to the new one, and how open objects of groups
/// are told from others.
#include "ACAD/cad_rx/cad_rx.h"
#include "ACAD/kz_acgrp/group_edit.h"
#include "APP/services.h"
#include "kz/kz_xdata.h"

namespace {

constexpr const char* kTraceSource = "SRC/ACAD/kz_acgrp";

// --- data ---------------------------------------------------------------------------------------

/// Gives the fields of the group to the new master; the old one becomes its member.
int moveGroupFields(const kz_CADObjId* to, const kz_CADObjId* from) {
    kz_Char handle[kz::kHandleSize];
    const kz::OwnedFldList fields(kz_XData_getFldList(from->ename, nullptr, kz::kGroupApp));
    if (fields == nullptr || kz_Group_getHandleFromEname(handle, to->ename) != 1) return 0;
    // A master that was a member once names itself.
    if (kz_FldList_find(fields.get(), kz::kMasterField) != nullptr) {
        kz_FldList_modHandle(fields.get(), kz::kMasterField, handle);
    }
    if (kz_XData_objModFldList(to, fields.get(), kz::kGroupApp) != 1) return 0;
    const kz::OwnedFldList role = kz::memberFields(handle);
    if (kz_XData_objModFldList(from, role.get(), kz::kGroupApp) != 1) return 0;
    int status = 1;
    for (const kz_Char* field :
         {kz::kNameField, kz::kParentField, kz::kChildField, kz::kContainerField}) {
        const int deleted = kz_Ename_delCharFieldReference(from->ename, field, nullptr, 0);
        if (deleted != 1) status = deleted;
    }
    return status;
}

int moveSubGroupLists(const kz_CADObjId* to, const kz_CADObjId* from) {
    const kz::OwnedFldList lists(kz_XData_getFldList(from->ename, nullptr, kz::kSubGroupApp));
    if (lists == nullptr) return 1;
    if (kz_XData_objModFldList(to, lists.get(), kz::kSubGroupApp) != 1) return 0;
    return kz_XData_objDeleteFldList(from, kz::kSubGroupApp);
}

/// Writes a chain of extended data as it is.
int writeChain(const kz_CADObjId* to, const resbuf* chain) {
    kz::Opened<AcDbObject> object(to->ename, AcDb::kForWrite, true);
    return object && object->setXData(chain) == Acad::eOk ? 1 : 0;
}

/// Moves what one application keeps. Its fields join those that the new master has; where it has
/// none everything goes over, data that can't be read as fields too. What can't be written stays
/// with the old master.
int moveData(const kz_CADObjId* to, const kz_CADObjId* from, const kz_Char* app) {
    const kz::OwnedChain chain(kz_Xdata_getFromEnt(from->ename, app));
    if (chain == nullptr || chain->rbnext == nullptr) return 1;
    const kz::OwnedChain present(kz_Xdata_getFromEnt(to->ename, app));
    const kz::OwnedFldList fields(
        present != nullptr ? kz_XData_getFldList(from->ename, nullptr, app) : nullptr);
    const int written = fields != nullptr ? kz_XData_objModFldList(to, fields.get(), app)
                                          : writeChain(to, chain.get());
    return written == 1 ? kz_XData_objDeleteFldList(from, app) : 0;
}

/// Moves the data of the other applications. It is taken as the drawing has it: both masters are in
/// one drawing, so points must not be turned into the coordinates of another.
int moveForeignData(const kz_CADObjId* to, const kz_CADObjId* from) {
    constexpr int kAppName = 1001;
    const kz::OwnedChain all(kz_Xdata_getFromEnt(from->ename, nullptr));
    int status = 1;
    for (const resbuf* node = all.get(); node != nullptr; node = node->rbnext) {
        if (node->restype != kAppName) continue;
        const kz_Char* const app = node->resval.rstring;
        const bool own =
            kz_Str_cmpi(app, kz::kGroupApp) == 0 || kz_Str_cmpi(app, kz::kSubGroupApp) == 0;
        if (!own && moveData(to, from, app) != 1) status = 0;
    }
    return status;
}

// --- the change ---------------------------------------------------------------------------------

/// Writes the handle of the master on every member that has fields of the group.
int writeMasterHandle(kz_CADObjIdList* members, const kz_Char* handle) {
    int status = 1;
    for (kz_CADObjIdList_start(members); kz_CADObjIdList_eol(members) == 0;
         kz_CADObjIdList_next(members)) {
        const kz_CADObjId* member = kz_CADObjIdList_getCurr(members);
        const kz::OwnedFldList fields(kz_XData_getFldList(member->ename, nullptr, kz::kGroupApp));
        if (fields == nullptr) continue;
        kz_FldList_modHandle(fields.get(), kz::kMasterField, handle);
        if (kz_XData_objModFldList(member, fields.get(), kz::kGroupApp) != 1) status = 0;
    }
    return status;
}

/// Frees an entity that is to become the master from what binds it: its sub-group, or its own group
/// when that is another one. @return 0 for the master of other entities
int freeFromBonds(const kz_GroupId* id, const kz_CADObjId* object, const kz_CADObjId* master) {
    kz_Char name[kz::kNameSize];
    if (kz_Group_isAMemberOf(object, id, 1) == 1) {
        if (kz_Group_enameGetSubGroupName(name, object->ename) != 1) return 1;
        kz_SubGroup_removeMemberRef(master->ename, name, object->ename);
        return kz_Group_removeSubGroupRef(object->ename);
    }
    const kz::OwnedGroup other(kz_Group_getFromMember(object, 0));
    const bool bound = other != nullptr && kz_Group_isAMemberOf(object, other.get(), 1) == 1;
    if (bound && kz_Group_removeMember(nullptr, other.get(), object) != 1) return 0;
    // A copy of an entity of a group brings fields along.
    kz_XData_objDeleteFldList(object, kz::kGroupApp);
    kz_XData_objDeleteFldList(object, kz::kSubGroupApp);
    return 1;
}

/// Makes an entity the first one of a group.
int putFirst(const AcDbObjectId& group, const AcDbObjectId& entity) {
    const kz::Opened<AcDbGroup> opened = kz::openGroup(group, AcDb::kForWrite);
    if (!opened) return 0;
    uint32_t index = 0;
    if (opened->getIndex(entity, index) == Acad::eOk) {
        if (index == 0) return 1;
        if (opened->removeAt(index) != Acad::eOk) return 0;
    }
    return opened->prepend(entity) == Acad::eOk ? 1 : 0;
}

int joinContainer(const kz_GroupId* id, const kz_CADObjId* object) {
    const kz::OwnedGroup container(kz_Group_getContainerGroup(id));
    return container != nullptr ? kz_Group_addMemberToContainerGroup(container.get(), object) : 1;
}

int attachReactor(const kz_GroupId* id, const kz_CADObjId* master, const kz_CADObjId* old_master) {
    kz_Group_detachMasterEntReactor(id, old_master);
    const int status = kz_Group_attachMasterEntReactor(id, master);
    if (status != 1) {
        KZ_TRACE(kz::kTraceFailure, kz::kTraceGroups,
                 KZ_T("kz_Group_attachMasterEntReactor failed"));
    }
    return status;
}

int changeMaster(const kz_GroupId* id, const kz_CADObjId* master, const kz_CADObjId* old_master) {
    kz_Char handle[kz::kHandleSize];
    AcDbObjectId group, entity;
    if (kz_CADObjId_getAcDbObjectId(&entity, master) != 1) return 0;
    if (kz_Group_getAcDbObjectId(&group, id) != 1) return 0;
    if (kz_Group_isErased(id) == 1 || kz_AcGroup_isAcDbObjectErased(&entity) == 1) return 0;
    if (!kz::inSameDrawing(group, entity) || freeFromBonds(id, master, old_master) != 1) return 0;
    const kz::OwnedObjects members(kz_Group_getMemberList(id, nullptr, nullptr, 1, 0));
    if (kz_AcGroup_moveMasterXdata(master, old_master) != 1) return 0;
    if (putFirst(group, entity) != 1) return 0;
    if (kz_AcCAD_getHandleFromAcDbObjectId(handle, &entity) != 1) return 0;
    kz_Group_setXdata(id, 0, nullptr, nullptr, handle);
    if (joinContainer(id, master) != 1) return 0;
    if (writeMasterHandle(members.get(), handle) != 1) return 0;
    return attachReactor(id, master, old_master);
}

}  // namespace

int kz_AcGroup_moveMasterXdata(const kz_CADObjId* newMaster, const kz_CADObjId* oldMaster) {
    const kz::GroupTrace trace(KZ_T("kz_AcGroup_moveMasterXdata"));
    if (kz_CADObjId_isNull(newMaster) == 1 || kz_CADObjId_isNull(oldMaster) == 1) return 0;
    int status = moveGroupFields(newMaster, oldMaster);
    if (status != 1) return status;
    if (moveSubGroupLists(newMaster, oldMaster) != 1) status = 0;
    if (moveForeignData(newMaster, oldMaster) != 1) status = 0;
    return status;
}

int kz_AcGroup_setMasterObject(const kz_GroupId* id, const kz_CADObjId* master) {
    const kz::GroupTrace trace(KZ_T("kz_AcGroup_setMasterObject"));
    if (kz_Group_isNull(id) == 1) {
        kz::submitGroupError(kz::kNoGroupId);
        return 0;
    }
    if (kz_CADObjId_isNull(master) == 1) return 0;
    const kz::OwnedObject old_master(kz_Group_getMasterObject(id));
    if (old_master == nullptr) return 0;
    if (kz_CADObjId_isEqual(master, old_master.get()) == 1) return 1;
    return changeMaster(id, master, old_master.get());
}

int kz_Group_updateMasterHandleInMembers(const kz_GroupId* id) {
    const kz::GroupTrace trace(KZ_T("kz_Group_updateMasterHandleInMembers"));
    kz_Char handle[kz::kHandleSize];
    const int status = kz_Group_getMasterHandle(handle, id);
    if (status != 1) return status;
    const kz::OwnedObjects members(kz_Group_getMemberList(id, nullptr, nullptr, 1, 0));
    for (; kz_CADObjIdList_eol(members.get()) == 0; kz_CADObjIdList_next(members.get())) {
        kz_CADObjId_setCharFieldReference(kz_CADObjIdList_getCurr(members.get()), kz::kMasterField,
                                          handle, 1, kz::kGroupApp);
    }
    return status;
}

// --- open objects -------------------------------------------------------------------------------

namespace {

/// True for an object whose key in the dictionary of groups is a name of this system.
bool hasGroupKey(AcDbObject* object) {
    AcDbDatabase* drawing = object->database();
    KZ_ASSERTION(drawing != nullptr);
    if (drawing == nullptr) drawing = kz::workingDatabase();
    AcDbDictionary* opened = nullptr;
    if (drawing == nullptr || drawing->getGroupDictionary(opened) != Acad::eOk) return false;
    const kz::Opened<AcDbDictionary> groups(opened);
    kz_Char* key = nullptr;
    groups->nameAt(object->objectId(), key);
    const kz::OwnedText name(key);
    return kz_Group_isAMovarGroupName(name.get()) == 1;
}

}  // namespace

int kz_AcDbGroup_isAMovarGroupObject(AcDbObject* object) {
    const AcDbGroup* const group = AcDbGroup::cast(object);
    if (group == nullptr) return 0;
    if (hasGroupKey(object)) return 1;
    const std::unique_ptr<AcDbGroupIterator> walk(group->newIterator());
    ads_name first = {};
    kz_Char name[kz::kNameSize];
    if (walk == nullptr || walk->done()) return 0;
    if (acdbGetAdsName(first, walk->objectId()) != Acad::eOk) return 0;
    kz_AcGroup_getCharFieldValFromEname(name, kz::kNameRead, kz::kNameField, first);
    return kz_Group_isAMovarGroupName(name);
}

int kz_AcDbGroup_isAMovarMasterEntity(AcDbObject* object) {
    constexpr int kRoleSize = 32;
    if (AcDbEntity::cast(object) == nullptr) return 0;
    resbuf* chain = object->xData(nullptr);
    const int found = kz_XData_getAppXData(&chain, kz::kGroupApp);
    const kz::OwnedChain fields(chain);
    kz_Char role[kRoleSize];
    if (found != 1 || chain == nullptr) return 0;
    kz_AcGroup_getCharFieldValFromXdataFlds(role, kRoleSize, kz::kRoleField, chain);
    return kz::isSame(role, kz::kMasterRole) ? 1 : 0;
}
