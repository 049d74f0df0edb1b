/// Entities that enter groups and leave them.
#include "ACAD/kz_acgrp/group_edit.h"
#include "kz/kz_xdata.h"

namespace kz {

int countLiving(const AcDbGroup& group, int limit) {
    const std::unique_ptr<AcDbGroupIterator> walk(group.newIterator());
    int count = 0;
    for (; walk != nullptr && !walk->done() && count < limit; walk->next()) {
        const AcDbObjectId entity = walk->objectId();
        if (kz_AcGroup_isAcDbObjectErased(&entity) == 0) ++count;
    }
    return count;
}

bool inSameDrawing(const AcDbObjectId& a, const AcDbObjectId& b) {
    const AcDbDatabase* const drawing = databaseOfObject(a);
    return drawing != nullptr && drawing == databaseOfObject(b);
}

OwnedFldList memberFields(const kz_Char* master_handle) {
    OwnedFldList fields(kz_FldList_create(nullptr, 0, nullptr, 0));
    const bool made = kz_FldList_addCharVal(fields.get(), kRoleField, kMemberRole) == 1 &&
                      kz_FldList_addHandleVal(fields.get(), kMasterField, master_handle) == 1;
    return made ? std::move(fields) : nullptr;
}

}  // namespace kz

// --- leaving ------------------------------------------------------------------------------------

namespace {

constexpr const char* kTraceSource = "SRC/ACAD/kz_acgrp";

/// An entity that is to leave a group.
struct Leaver {
    const kz_GroupId* id;
    const kz_CADObjId* object;
    AcDbObjectId group;
    AcDbObjectId entity;
    kz::OwnedObject master;  ///< of the group
    bool is_master = false;
};

/// Fills in what is known of it. @return the error that stands against it, 0 for none, -1 for one
/// without a number
int look(Leaver& leaver) {
    constexpr int kUnnamed = -1;
    leaver.master.reset(kz_Group_getMasterObject(leaver.id));
    if (leaver.master == nullptr) return kz::kNoMaster;
    leaver.is_master = kz_CADObjId_isEqual(leaver.master.get(), leaver.object) == 1;
    if (kz_CADObjId_getAcDbObjectId(&leaver.entity, leaver.object) != 1) return kUnnamed;
    if (kz_Group_getAcDbObjectId(&leaver.group, leaver.id) != 1) return kUnnamed;
    const kz::Opened<AcDbGroup> group = kz::openGroup(leaver.group, AcDb::kForRead);
    if (!group) return kUnnamed;
    uint32_t index = 0;
    const bool inside = group->getIndex(leaver.entity, index) == Acad::eOk &&
                        kz_AcGroup_isAcDbObjectErased(&leaver.entity) == 0;
    if (!inside) return kz::countLiving(*group.get(), 1) > 0 ? kz::kNotInGroup : kz::kNoEntities;
    return leaver.is_master && kz::countLiving(*group.get(), 2) > 1 ? kz::kMasterOfOthers : 0;
}

/// Takes the entity out of the group object.
bool takeOut(const AcDbObjectId& group, const AcDbObjectId& entity) {
    const kz::Opened<AcDbGroup> opened = kz::openGroup(group, AcDb::kForWrite);
    return opened && opened->remove(entity) == Acad::eOk;
}

/// Takes the entity out of the container and erases one that is empty then.
int leaveContainer(const kz_GroupId* container, const AcDbObjectId& entity) {
    AcDbObjectId object;
    if (kz_Group_getAcDbObjectId(&object, container) != 1) return 0;
    const kz::Opened<AcDbGroup> opened = kz::openGroup(object, AcDb::kForWrite);
    if (!opened) return 0;
    const Acad::ErrorStatus status = opened->remove(entity);
    if (status != Acad::eOk && status != Acad::eKeyNotFound) return 0;
    const bool kept = opened->numEntities() > 0 || opened->erase(true) == Acad::eOk;
    return kept ? 1 : 0;
}

/// Ends the sub-group of a member.
int leaveSubGroup(const Leaver& leaver) {
    kz_Char name[kz::kNameSize];
    if (kz_Group_enameGetSubGroupName(name, leaver.object->ename) != 1) return 1;
    if (kz_Group_removeSubGroupRef(leaver.object->ename) != 1) return 0;
    return kz_SubGroup_removeMemberRef(leaver.master->ename, name, leaver.object->ename);
}

/// Ends a group that its master leaves as the last living entity. The container must not keep those
/// that are erased, and the tree not the name.
int leaveAsLast(int* group_erased, const Leaver& leaver, const kz_GroupId* container) {
    int status = 1;
    if (container != nullptr) status = kz_Group_removeFromContainerGroup(container, leaver.id);
    if (!takeOut(leaver.group, leaver.entity)) return 0;
    kz_Group_removeGroupRefs(leaver.id);
    if (kz_AcDbGroup_delete(&leaver.group) != 1) return 0;
    if (group_erased != nullptr) *group_erased = 1;
    return status;
}

int leave(int* group_erased, const Leaver& leaver) {
    const kz::OwnedGroup container(kz_Group_getContainerGroup(leaver.id));
    if (leaver.is_master) {
        const int status = leaveAsLast(group_erased, leaver, container.get());
        kz_XData_objDeleteFldList(leaver.object, kz::kSubGroupApp);
        return kz_XData_objDeleteFldList(leaver.object, kz::kGroupApp) == 1 ? status : 0;
    }
    if (!takeOut(leaver.group, leaver.entity)) return 0;
    if (kz_XData_objDeleteFldList(leaver.object, kz::kGroupApp) != 1) return 0;
    const int sub_group = leaveSubGroup(leaver);
    const int status = container != nullptr ? leaveContainer(container.get(), leaver.entity) : 1;
    return status == 1 ? sub_group : status;
}

}  // namespace

int kz_AcGroup_removeMember(int* groupErased, const kz_GroupId* id, const kz_CADObjId* object) {
    const kz::GroupTrace trace(KZ_T("kz_AcGroup_removeMember"));
    if (groupErased != nullptr) *groupErased = 0;
    KZ_ASSERTION(kz_CADObjId_isNull(object) == 0);
    if (kz_Group_isNull(id) == 1) {
        kz::submitGroupError(kz::kNoGroupId);
        return 0;
    }
    if (kz_CADObjId_isNull(object) == 1) return 0;
    Leaver leaver{id, object, {}, {}, nullptr};
    const int error = look(leaver);
    if (error > 0) kz::submitGroupError(error);
    return error == 0 ? leave(groupErased, leaver) : 0;
}

int kz_AcGroup_removeMemberFromGroup(int* groupErased, const kz_CADObjId* object) {
    const kz::GroupTrace trace(KZ_T("kz_AcGroup_removeMemberFromGroup"));
    if (kz_CADObjId_isNull(object) == 1) return 0;
    const kz::OwnedGroup group(kz_Group_getFromMember(object, 0));
    return group != nullptr ? kz_Group_removeMember(groupErased, group.get(), object) : 1;
}

// --- entering -----------------------------------------------------------------------------------

namespace {

/// Takes the entity out of the group that it is in. @return 0 when it must stay there: a master of
/// other entities, and one of the group that it is to enter
int leaveOldGroup(const kz_GroupId* id, const kz_CADObjId* object) {
    const kz::OwnedGroup old(kz_Group_getFromMember(object, 0));
    if (old == nullptr) return 1;
    Leaver leaver{old.get(), object, {}, {}, nullptr};
    int error = look(leaver);
    if (leaver.is_master && kz_Group_isEqual(old.get(), id) == 1) error = kz::kMasterOfOthers;
    if (error == kz::kMasterOfOthers) kz::submitGroupError(error);
    if (error == 0) return leave(nullptr, leaver);
    // Fields that a copy brought along are no bond to that group.
    return error == kz::kNotInGroup || error == kz::kNoEntities || error == kz::kNoMaster ? 1 : 0;
}

bool appendTo(const AcDbObjectId& group, const AcDbObjectId& entity) {
    const kz::Opened<AcDbGroup> opened = kz::openGroup(group, AcDb::kForWrite);
    if (!opened) return false;
    const Acad::ErrorStatus status = opened->append(entity);
    return status == Acad::eOk || status == Acad::eAlreadyInGroup;
}

int enterSubGroup(const kz_GroupId* id, const kz_CADObjId* object, const kz_Char* sub_group) {
    if (kz::isAny(sub_group)) return 1;
    const int marked = kz_Group_setSubGroupRef(object->ename, sub_group);
    const kz::OwnedObject master(kz_Group_getMasterObject(id));
    if (marked != 1 || master == nullptr) return 0;
    return kz_SubGroup_setMemberRef(master->ename, sub_group, object->ename);
}

int enter(const kz_GroupId* id, const kz_CADObjId* object, const kz_Char* sub_group) {
    kz_Char handle[kz::kHandleSize];
    AcDbObjectId group, entity;
    if (kz_Group_getMasterHandle(handle, id) != 1) {
        kz::submitGroupError(kz::kNoMaster);
        return 0;
    }
    if (kz_CADObjId_getAcDbObjectId(&entity, object) != 1) return 0;
    if (kz_Group_getAcDbObjectId(&group, id) != 1) return 0;
    if (kz_Group_isErased(id) == 1 || kz_AcGroup_isAcDbObjectErased(&entity) == 1) return 0;
    if (!kz::inSameDrawing(group, entity) || leaveOldGroup(id, object) != 1) return 0;
    if (!appendTo(group, entity)) return 0;
    const kz::OwnedFldList fields = kz::memberFields(handle);
    kz_Group_removeSubGroupRef(object->ename);
    if (kz_XData_objInitFldList(object, fields.get(), kz::kGroupApp) != 1) return 0;
    const kz::OwnedGroup container(kz_Group_getContainerGroup(id));
    const bool inside =
        container == nullptr || kz_Group_addMemberToContainerGroup(container.get(), object) == 1;
    return inside ? enterSubGroup(id, object, sub_group) : 0;
}

}  // namespace

int kz_AcGroup_add(const kz_GroupId* id, const kz_CADObjId* object, const kz_Char* subGroup) {
    const kz::GroupTrace trace(KZ_T("kz_AcGroup_add"));
    KZ_ASSERTION(kz_CADObjId_isNull(object) == 0);
    if (kz_Group_isNull(id) == 1) {
        kz::submitGroupError(kz::kNoGroupId);
        return 0;
    }
    return kz_CADObjId_isNull(object) == 0 ? enter(id, object, subGroup) : 0;
}

int kz_AcGroup_addSelSet(const kz_GroupId* id, const kz_CADSelSet* set, const kz_Char* subGroup) {
    const kz::GroupTrace trace(KZ_T("kz_AcGroup_addSelSet"));
    if (kz_Group_isNull(id) == 1) {
        kz::submitGroupError(kz::kNoGroupId);
        return 0;
    }
    const int length = kz_CADSelSet_length(set);
    int status = length > 0 ? 1 : 0;
    for (int i = 0; i < length; ++i) {
        const kz::OwnedObject object(kz_CADSelSet_getNth(set, i));
        if (kz_Group_add(id, object.get(), subGroup) != 1) status = 0;
    }
    return status;
}

int kz_Group_updateSubGroupRefs(const kz_GroupId* id) {
    const kz::GroupTrace trace(KZ_T("kz_Group_updateSubGroupRefs"));
    if (kz_Group_isNull(id) == 1) return 0;
    const kz::OwnedObject master(kz_Group_getMasterObject(id));
    if (master != nullptr) kz_Group_removeSubGroupRefs(master->ename);
    const kz::OwnedSet members(kz_Group_getMemberSelSet(id, nullptr, nullptr, 1, 0));
    const int length = kz_CADSelSet_length(members.get());
    for (int i = 0; i < length; ++i) {
        kz_Char name[kz::kNameSize];
        const kz::OwnedObject member(kz_CADSelSet_getNth(members.get(), i));
        if (kz_Group_getSubGroupName(name, member.get()) != 1) continue;
        kz_SubGroup_setMemberRef(master->ename, name, member->ename);
    }
    return members != nullptr ? 1 : 0;
}

// --- testing ------------------------------------------------------------------------------------

namespace {

bool holds(const kz_GroupId* id, const AcDbObjectId& entity) {
    AcDbObjectId object;
    uint32_t index = 0;
    if (kz_Group_getAcDbObjectId(&object, id) != 1) return false;
    const kz::Opened<AcDbGroup> group = kz::openGroup(object, AcDb::kForRead);
    return group && group->getIndex(entity, index) == Acad::eOk;
}

}  // namespace

int kz_AcGroup_isAMemberOf(const kz_CADObjId* object, const kz_GroupId* id, int thisGroupOnly) {
    const kz::GroupTrace trace(KZ_T("kz_AcGroup_isAMemberOf"));
    AcDbObjectId entity;
    KZ_ASSERTION(kz_CADObjId_isNull(object) == 0);
    if (kz_CADObjId_isNull(object) == 1) return 0;
    if (kz_Group_isNull(id) == 1) {
        kz::submitGroupError(kz::kNoGroupId);
        return 0;
    }
    if (kz_CADObjId_getAcDbObjectId(&entity, object) != 1) return 0;
    if (kz_Group_isValid(id) == 0) {
        kz::submitGroupError(kz::kInvalidGroup);
        return 0;
    }
    if (holds(id, entity)) return 1;
    if (thisGroupOnly != 0) return 0;
    const std::vector<kz::OwnedGroup> branch = kz::branchOf(id);
    for (const kz::OwnedGroup& group : branch) {
        const bool below = kz_Group_isEqual(group.get(), id) == 0;
        if (below && holds(group.get(), entity)) return 1;
    }
    return 0;
}
