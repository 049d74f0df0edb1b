/// The groups' front for what makes, changes and ends them: each function is the back's own.
#include "kz/kz_group_edit.h"

#include "ACAD/kz_acgrp/kz_acgrp.h"

int kz_Group_delete(kz_GroupId* id, int deleteMaster, int deleteMembers) {
    return kz_AcGroup_delete(id, deleteMaster, deleteMembers);
}

int kz_Group_deleteAll(kz_GroupId* id, const kz_Char* type, int deleteMaster, int deleteMembers) {
    return kz_AcGroup_deleteAll(id, type, deleteMaster, deleteMembers);
}

int kz_Group_deleteMembers(const kz_GroupId* id, const kz_Char* type, const kz_Char* subGroup,
                           int includeChildren) {
    return kz_AcGroup_deleteMembers(id, type, subGroup, includeChildren);
}

int kz_Group_purge(void) {
    return kz_AcGroup_purge();
}

int kz_Group_purgeAllEmptyGroups(void) {
    return kz_AcGroup_purgeAllEmptyGroups();
}

int kz_Group_add(const kz_GroupId* id, const kz_CADObjId* object, const kz_Char* subGroup) {
    return kz_AcGroup_add(id, object, subGroup);
}

int kz_Group_addSelSet(const kz_GroupId* id, const kz_CADSelSet* set, const kz_Char* subGroup) {
    return kz_AcGroup_addSelSet(id, set, subGroup);
}

int kz_Group_createSubGroup(const kz_GroupId* id, const kz_CADSelSet* set,
                            const kz_Char* subGroup) {
    const bool given = kz_Group_isNull(id) == 0 && set != nullptr && !kz::isAny(subGroup);
    return given ? kz_Group_addSelSet(id, set, subGroup) : 0;
}

int kz_Group_removeMember(int* groupErased, const kz_GroupId* id, const kz_CADObjId* object) {
    return kz_AcGroup_removeMember(groupErased, id, object);
}

int kz_Group_removeMemberFromGroup(int* groupErased, const kz_CADObjId* object) {
    return kz_AcGroup_removeMemberFromGroup(groupErased, object);
}

int kz_Group_isAMemberOf(const kz_CADObjId* object, const kz_GroupId* id, int thisGroupOnly) {
    return kz_AcGroup_isAMemberOf(object, id, thisGroupOnly);
}

int kz_Group_setMasterObject(const kz_GroupId* id, const kz_CADObjId* master) {
    return kz_AcGroup_setMasterObject(id, master);
}

int kz_Group_makeChild(const kz_GroupId* child, const kz_GroupId* parent, int leaveChildren) {
    return kz_AcGroup_makeChild(child, parent, leaveChildren);
}

int kz_Group_makeRootGroup(const kz_GroupId* id, int leaveChildren) {
    return kz_AcGroup_makeRootGroup(id, leaveChildren);
}
