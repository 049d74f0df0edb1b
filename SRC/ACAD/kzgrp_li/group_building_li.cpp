/// Lisp twins that make groups and end them.
#include "ACAD/kzgrp_li/group_call.h"

using kz::groupTwin;

namespace {

/// kz_Group_end with the mark as an entity; without one the whole drawing is meant.
kz_GroupId* endAt(const kz_CADObjId* last, const kz_Char* type, const kz_Char* name,
                  const kz_Char* sub_group, const kz_CADObjId* master, const kz_GroupId* parent) {
    kz_CADSelSetMarker* mark = nullptr;
    if (last != nullptr) {
        mark = static_cast<kz_CADSelSetMarker*>(kz_Malloc(sizeof(kz_CADSelSetMarker)));
        if (mark == nullptr) return nullptr;
        *mark = {};
        ads_name_set(last->ename, mark->last);
    }
    return kz_Group_end(mark, type, name, sub_group, master, parent);
}

/// The id of a group that is not deleted is freed here, too.
int deleteOne(const kz_GroupId* id, int master, int members) {
    if (kz_Group_isNull(id) == 1) return 1;
    kz::OwnedGroup owned(kz_Group_dupId(id));
    return owned != nullptr ? kz::deleteGroup(owned, master != 0, members != 0, true) : 0;
}

int deleteAll(const kz_GroupId* id, const kz_Char* type, int master, int members) {
    kz::OwnedGroup owned(kz_Group_dupId(id));
    return owned != nullptr ? kz::deleteTree(owned, type, master != 0, members != 0) : 0;
}

}  // namespace

/// (kz_Group_createFromSelSet [type [name [subGroup [master [set [parent]]]]]]) -> group | nil
/// A new group of a master and the entities of a set; one of the two may be missing. The first
/// entity of the set is the master when there is no other. A name that is taken gives way to a new
/// one.
KZ_TWIN kz_Group_createFromSelSet_li(void) {
    return groupTwin<kz_Group_createFromSelSet, kz::kToGroup, kz::kType, kz::kNameOrNil,
                     kz::kNameOrNil, kz::kObjectOrNil, kz::kSetOrNil, kz::kGroupOrNil>();
}

/// (kz_Group_begin) -> mark | nil
/// Marks where the drawing ends: its last entity, nil in an empty drawing.
KZ_TWIN kz_Group_begin_li(void) {
    kz::GroupCall call;
    kz_CADSelSetMarker* mark = kz_Group_begin();
    if (mark != nullptr) call.answerName(mark->last);
    kz_CADSelSet_destroyMarker(mark);
    return 1;
}

/// (kz_Group_end [mark [type [name [subGroup [master [parent]]]]]]) -> group | nil
/// A new group of what has been drawn behind the mark, of the whole drawing without one.
KZ_TWIN kz_Group_end_li(void) {
    return groupTwin<endAt, kz::kToGroup, kz::kObjectOrNil, kz::kType, kz::kNameOrNil,
                     kz::kNameOrNil, kz::kObjectOrNil, kz::kGroupOrNil>();
}

/// (kz_Group_delete group [deleteMaster [deleteMembers]]) -> integer
/// Erases the group, and its entities if they are asked for. 1 when all is done, -1 when the group
/// is still there, -2 the master, -3 members; 0 without a group.
KZ_TWIN kz_Group_delete_li(void) {
    return groupTwin<deleteOne, kz::kInteger, kz::kGroup, kz::kFlag, kz::kFlag>();
}

/// (kz_Group_deleteByName name [deleteMaster [deleteMembers]]) -> T | nil
/// The same for a group by its name.
KZ_TWIN kz_Group_deleteByName_li(void) {
    return groupTwin<kz_Group_deleteByName, kz::kStatus, kz::kSomeName, kz::kFlag, kz::kFlag>();
}

/// (kz_Group_deleteAll group [type [deleteMaster [deleteMembers]]]) -> integer
/// Erases the group and those below it, through groups of the type. Results as those of
/// kz_Group_delete.
KZ_TWIN kz_Group_deleteAll_li(void) {
    return groupTwin<deleteAll, kz::kInteger, kz::kSomeGroup, kz::kType, kz::kFlag, kz::kFlag>();
}

/// (kz_Group_deleteMembers group [type [subGroup [includeChildren]]]) -> T | nil
/// Erases the members of a group, of one sub-group if it is named, and those of the groups below if
/// they are included. Masters stay.
KZ_TWIN kz_Group_deleteMembers_li(void) {
    return groupTwin<kz_Group_deleteMembers, kz::kStatus, kz::kGroup, kz::kType, kz::kNameOrNil,
                     kz::kFlag>();
}

/// (kz_Group_purge) -> T | nil
/// Deletes the groups of which the object or the master is erased.
KZ_TWIN kz_Group_purge_li(void) {
    return groupTwin<kz_Group_purge, kz::kStatus>();
}

/// (kz_Group_purgeAllEmptyGroups) -> T | nil
/// Erases every group without entities, those of other programs, too.
KZ_TWIN kz_Group_purgeAllEmptyGroups_li(void) {
    return groupTwin<kz_Group_purgeAllEmptyGroups, kz::kStatus>();
}
