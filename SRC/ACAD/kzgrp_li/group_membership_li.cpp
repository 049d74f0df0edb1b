/// Lisp twins of the entities of groups: who is in, who is the master, and whose group it is.
#include "ACAD/kzgrp_li/group_call.h"

using kz::groupTextTwin;
using kz::groupTwin;

namespace {

int removeMember(const kz_GroupId* id, const kz_CADObjId* object) {
    int ended = 0;
    const int status = kz_Group_removeMember(&ended, id, object);
    return status == 1 && ended != 0 ? kz::kGroupEnded : status;
}

int removeFromItsGroup(const kz_CADObjId* object) {
    int ended = 0;
    const int status = kz_Group_removeMemberFromGroup(&ended, object);
    return status == 1 && ended != 0 ? kz::kGroupEnded : status;
}

kz_GroupId* groupOfName(const kz_CADObjId* object, int to_root) {
    return kz_Group_getFromEntityName(object->ename, to_root);
}

}  // namespace

/// (kz_Group_add group entity [subGroup]) -> T | nil
/// Takes an entity into a group, and into a sub-group if it is named; it leaves the group that it
/// was in.
KZ_TWIN kz_Group_add_li(void) {
    return groupTwin<kz_Group_add, kz::kStatus, kz::kGroup, kz::kObject, kz::kNameOrNil>();
}

/// (kz_Group_addSelSet group set [subGroup]) -> T | nil
/// Takes in all entities of a set.
KZ_TWIN kz_Group_addSelSet_li(void) {
    return groupTwin<kz_Group_addSelSet, kz::kStatus, kz::kGroup, kz::kSet, kz::kNameOrNil>();
}

/// (kz_Group_createSubGroup group set subGroup) -> T | nil
/// Takes in all entities of a set as a sub-group.
KZ_TWIN kz_Group_createSubGroup_li(void) {
    return groupTwin<kz_Group_createSubGroup, kz::kStatus, kz::kGroup, kz::kSet, kz::kName>();
}

/// (kz_Group_removeMember group entity) -> T | -1 | nil
/// Takes an entity out of its group; -1 when it was the last one and the group is gone.
KZ_TWIN kz_Group_removeMember_li(void) {
    return groupTwin<removeMember, kz::kRemoval, kz::kGroup, kz::kObject>();
}

/// (kz_Group_removeMemberFromGroup entity) -> T | -1 | nil
/// The same for whatever group the entity is in; T when there is none.
KZ_TWIN kz_Group_removeMemberFromGroup_li(void) {
    return groupTwin<removeFromItsGroup, kz::kRemoval, kz::kObject>();
}

/// (kz_Group_setMasterObject group entity) -> T | nil
/// Makes an entity the master of a group; the one before becomes a member.
KZ_TWIN kz_Group_setMasterObject_li(void) {
    return groupTwin<kz_Group_setMasterObject, kz::kStatus, kz::kGroup, kz::kObject>();
}

/// (kz_Group_getMasterObject group) -> entity | nil
/// The master of a group.
KZ_TWIN kz_Group_getMasterObject_li(void) {
    return groupTwin<kz_Group_getMasterObject, kz::kToObject, kz::kSomeGroup>();
}

/// (kz_Group_getMasterFromMember entity) -> entity | nil
/// The master of a member.
KZ_TWIN kz_Group_getMasterFromMember_li(void) {
    return groupTwin<kz_Group_getMasterFromMember, kz::kToObject, kz::kObject>();
}

/// (kz_Group_getMasterHandle group) -> handle | nil
/// The handle of the master, as the group has it.
KZ_TWIN kz_Group_getMasterHandle_li(void) {
    return groupTextTwin<kz_Group_getMasterHandle, kz::kHandleSize, kz::kSomeGroup>();
}

/// (kz_Group_getFromMember entity [toRoot]) -> group | nil
/// The group of a member or master, or the top of its tree.
KZ_TWIN kz_Group_getFromMember_li(void) {
    return groupTwin<kz_Group_getFromMember, kz::kToGroup, kz::kObject, kz::kGiven>();
}

/// (kz_Group_getFromEntityName entity [toRoot]) -> group | nil
/// The same.
KZ_TWIN kz_Group_getFromEntityName_li(void) {
    return groupTwin<groupOfName, kz::kToGroup, kz::kObject, kz::kGiven>();
}

/// (kz_Group_getFromPersistObjId handle [drawing [notToRoot]]) -> group | nil
/// The top of the tree that the entity with this handle is in, in a drawing or in the one in the
/// editor; with the third argument the entity's own group.
KZ_TWIN kz_Group_getFromPersistObjId_li(void) {
    kz::GroupCall call(KZ_T("kz_Group_getFromPersistObjId_li"),
                       KZ_T(": Invalid or missing parameters."));
    const kz_Char* handle = call.longText();
    const kz_CADDwgId* drawing = call.drawingOrWorking();
    const int to_root = call.truth() != 0 ? 0 : 1;
    if (call.readAll()) call.answerGroup(kz_Group_getFromPersistObjId(handle, drawing, to_root));
    return 1;
}
