/// What the sources that change groups share: names of children, open groups, and the steps that
/// are no part of the library's interface.
#ifndef SRC_ACAD_KZ_ACGRP_GROUP_EDIT_H
#define SRC_ACAD_KZ_ACGRP_GROUP_EDIT_H

#include <string>
#include <vector>

#include "ACAD/kz_acgrp/kz_acgrp.h"
#include "kz/kz_group_edit.h"

namespace kz {

using Names = std::vector<std::u16string>;

/// The children that a group names, in order.
Names childNames(const kz_GroupId* id);
/// The group of this name; NULL when there is none, and for an empty name.
OwnedGroup groupNamed(const std::u16string& name);
/// A group and those below it, each once, children in front of their parents.
std::vector<OwnedGroup> branchOf(const kz_GroupId* id);
/// Takes names out of the children that a group names and adds others, in one writing. As the
/// writers of single references it refuses a group that counts as erased. @return 1 or 0
int changeChildren(const kz_GroupId* id, const Names& gone, const Names& added);
/// Gives the children of a group to another one or, without an heir, makes them roots. Children
/// that are gone, or refuse it, stay named where they are. @return 0 when a list of children could
/// not be written
int handOverChildren(const kz_GroupId* id, const kz_GroupId* heir);

/// What a member of the group with this master bears; NULL without memory.
OwnedFldList memberFields(const kz_Char* master_handle);
/// Number of entities of an open group that are not erased, counted up to `limit`.
int countLiving(const AcDbGroup& group, int limit);
/// True for objects of one drawing.
bool inSameDrawing(const AcDbObjectId& a, const AcDbObjectId& b);
/// kz_Group_removeGroupRefs. Unless `from_parent` is set the parent goes on naming the group: its
/// list is the caller's matter.
int leaveTree(const kz_GroupId* id, bool from_parent);
/// kz_Group_delete for an id that stays the caller's when it is invalid; `from_parent`
/// as above.
int deleteGroup(OwnedGroup& id, bool master, bool members, bool from_parent);
/// kz_Group_deleteAll; the id of a group that stays is the caller's.
int deleteTree(OwnedGroup& id, const kz_Char* type, bool master, bool members);

}  // namespace kz

extern "C" {

/// Enters a group and, without `leaveChildren`, those below it into a tree and its container.
int kz_Group_moveChildGroup(const kz_GroupId* child, const kz_GroupId* parent, int leaveChildren);
/// Takes a group from its parent and out of the container; it still names the container.
int kz_Group_removeChildGroup(const kz_GroupId* child, const kz_GroupId* parent);
/// Moves a group and, without `leaveChildren`, those below it from their container into another.
int kz_Group_moveToContainerGroup(const kz_GroupId* group, const kz_GroupId* container,
                                  int leaveChildren);
/// Takes a group out of its tree: the children go up, and the group names nobody any more.
int kz_Group_removeGroupRefs(const kz_GroupId* id);
/// Moves all extended data from a master to a new one.
int kz_AcGroup_moveMasterXdata(const kz_CADObjId* newMaster, const kz_CADObjId* oldMaster);
}

#endif
