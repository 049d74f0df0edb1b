/// Changes of the tree of groups.
#include "ACAD/kz_acgrp/group_edit.h"

namespace {

constexpr const char* kTraceSource = "SRC/ACAD/kz_acgrp";

bool areGiven(const kz_GroupId* child, const kz_GroupId* parent) {
    KZ_ASSERTION(kz_Group_isNull(child) == 0);
    KZ_ASSERTION(kz_Group_isNull(parent) == 0);
    if (kz_Group_isNull(child) == 0 && kz_Group_isNull(parent) == 0) return true;
    kz::submitGroupError(kz::kNoGroupId);
    return false;
}

/// Refuses what would make a group its own ancestor.
int refuseCycle() {
    kz::submitGroupError(kz::kSameGroups);
    return 0;
}

/// The container of a group's tree, made for a root that has none. What an earlier call has left
/// behind may lack the group's own entities.
kz::OwnedGroup needContainer(const kz_GroupId* id) {
    kz::OwnedGroup container(kz_Group_getContainerGroup(id));
    if (container == nullptr) return kz::OwnedGroup(kz_Group_createContainerGroup(id));
    const kz::OwnedObject master(kz_Group_getMasterObject(id));
    if (kz_Group_isAMemberOf(master.get(), container.get(), 1) == 1) return container;
    const int added = kz_Group_addToContainerGroup(container.get(), id);
    return added == 1 ? std::move(container) : nullptr;
}

/// Takes a group from its old parent, with or without the groups below it.
int leaveParent(const kz_GroupId* child, const kz_GroupId* old_parent, int leave_children) {
    if (old_parent != nullptr && kz_Group_removeChildGroup(child, old_parent) != 1) return 0;
    return leave_children != 0 ? kz::handOverChildren(child, old_parent) : 1;
}

/// A tree is kept by names, which count in one drawing only. The name of an erased group can still
/// be read, and must not get into the tree.
bool mayBeJoined(const kz_GroupId* child, const kz_GroupId* parent) {
    AcDbObjectId below, above;
    if (kz_Group_getAcDbObjectId(&below, child) != 1) return false;
    if (kz_Group_getAcDbObjectId(&above, parent) != 1) return false;
    if (!kz::inSameDrawing(above, below)) return false;
    return kz_AcGroup_isErased(child, 0) == 0 && kz_AcGroup_isErased(parent, 0) == 0;
}

}  // namespace

// --- children -----------------------------------------------------------------------------------

int kz_AcGroup_makeChild(const kz_GroupId* child, const kz_GroupId* parent, int leaveChildren) {
    const kz::GroupTrace trace(KZ_T("kz_AcGroup_makeChild"));
    kz_Char name[kz::kNameSize] = {}, parent_name[kz::kNameSize] = {};
    kz_Char old_name[kz::kNameSize] = {};
    if (!areGiven(child, parent)) return 0;
    if (!mayBeJoined(child, parent)) return 0;
    if (kz_Group_getName(name, child) != 1 || kz_Group_getName(parent_name, parent) != 1) return 0;
    KZ_TRACEF(kz::kTraceEntry, kz::kTraceGroups, KZ_T("Group names--> Child = %s  Parent = %s"),
              name, parent_name);
    if (kz_Str_cmpi(name, parent_name) == 0) return refuseCycle();
    const kz::OwnedGroup old_parent(kz_Group_getParentGroup(child));
    if (old_parent != nullptr && kz_Group_getName(old_name, old_parent.get()) != 1) return 0;
    KZ_TRACEF(kz::kTraceEntry, kz::kTraceGroups,
              KZ_T("Group names--> Old parent = %s  New parent = %s"), old_name, parent_name);
    if (old_parent != nullptr && kz_Str_cmpi(old_name, parent_name) == 0) return 1;
    // Left behind, the groups below the child may hold the new parent.
    if (leaveChildren == 0 && kz_Group_isAChildOf(parent, child, 0) == 1) return refuseCycle();
    if (leaveParent(child, old_parent.get(), leaveChildren) != 1) return 0;
    if (leaveChildren != 0 && kz_Group_isAChildOf(parent, child, 0) == 1) return refuseCycle();
    return kz_Group_moveChildGroup(child, parent, leaveChildren);
}

int kz_Group_moveChildGroup(const kz_GroupId* child, const kz_GroupId* parent, int leaveChildren) {
    kz_Char name[kz::kNameSize], parent_name[kz::kNameSize];
    const kz::OwnedGroup container = needContainer(parent);
    if (container == nullptr) return 0;
    if (kz_Group_getName(name, child) != 1) return 0;
    if (kz_Group_getName(parent_name, parent) != 1) return 0;
    if (kz_Group_addChildGroupReference(parent, name, 1) != 1) return 0;
    if (kz_Group_setParentGroupReference(child, parent_name, 1) != 1) return 0;
    return kz_Group_moveToContainerGroup(child, container.get(), leaveChildren);
}

int kz_Group_removeChildGroup(const kz_GroupId* child, const kz_GroupId* parent) {
    kz_Char name[kz::kNameSize];
    const kz::OwnedGroup container(kz_Group_getContainerGroup(parent));
    if (container == nullptr) return 0;
    if (kz_Group_removeFromContainerGroup(container.get(), child) != 1) return 0;
    if (kz_Group_getName(name, child) != 1) return 0;
    if (kz_Group_removeChildGroupReference(parent, name) != 1) return 0;
    return kz_Group_removeParentGroupReference(child);
}

// --- roots --------------------------------------------------------------------------------------

namespace {

/// Takes a group from its parent, which may be gone, and out of the container.
int leaveParentAndContainer(const kz_GroupId* id, const kz_GroupId* parent) {
    kz_Char name[kz::kNameSize];
    int status = 1;
    if (parent != nullptr && kz_Group_getName(name, id) == 1) {
        kz_Group_removeChildGroupReference(parent, name);
    }
    if (kz_Group_removeParentGroupReference(id) != 1) status = 0;
    const kz::OwnedGroup container(kz_Group_getContainerGroup(id));
    if (container == nullptr) return status;
    if (kz_Group_removeFromContainerGroup(container.get(), id) != 1) status = 0;
    if (kz_Group_removeContainerGroupReference(id) != 1) status = 0;
    return status;
}

/// Gives a new root that has children a container for its tree.
int headTree(const kz_GroupId* root) {
    if (kz_Group_getNumChildren(root, nullptr) == 0) return 1;
    const kz::OwnedGroup container(kz_Group_createContainerGroup(root));
    return container != nullptr ? kz_Group_moveToContainerGroup(root, container.get(), 0) : 0;
}

}  // namespace

int kz_AcGroup_makeRootGroup(const kz_GroupId* id, int leaveChildren) {
    const kz::GroupTrace trace(KZ_T("kz_AcGroup_makeRootGroup"));
    if (kz_Group_isNull(id) == 1) {
        kz::submitGroupError(kz::kNoGroupId);
        return 0;
    }
    if (kz_Group_isARootGroup(id) == 1) {
        KZ_TRACE(kz::kTraceExit, kz::kTraceGroups,
                 KZ_T("kz_AcGroup_makeRootGroup: Group is already a root group."));
        return 1;
    }
    const kz::OwnedGroup parent(kz_Group_getParentGroup(id));
    const int left = leaveParentAndContainer(id, parent.get());
    const int status = leaveChildren != 0 ? kz::handOverChildren(id, parent.get()) : headTree(id);
    return left == 1 ? status : 0;
}

int kz::leaveTree(const kz_GroupId* id, bool from_parent) {
    kz_Char name[kNameSize];
    if (kz_Group_isNull(id) == 1 || kz_Group_getName(name, id) != 1) return 0;
    const OwnedGroup parent(kz_Group_getParentGroup(id));
    if (parent != nullptr) {
        kz_Group_removeParentGroupReference(id);
        if (from_parent) kz_Group_removeChildGroupReference(parent.get(), name);
    }
    handOverChildren(id, parent.get());
    kz_Group_removeContainerGroupReference(id);
    return 1;
}

int kz_Group_removeGroupRefs(const kz_GroupId* id) {
    const kz::GroupTrace trace(KZ_T("kz_Group_removeGroupRefs"));
    return kz::leaveTree(id, true);
}
