/// Lisp twins of the tree of groups.
#include "ACAD/kzgrp_li/group_call.h"

using kz::groupTwin;

/// (kz_Group_makeChild child parent [leaveChildren]) -> T | nil
/// Makes a group a child of another, with the groups below it unless they are left.
KZ_TWIN kz_Group_makeChild_li(void) {
    return groupTwin<kz_Group_makeChild, kz::kStatus, kz::kSomeGroup, kz::kSomeGroup, kz::kFlag>();
}

/// (kz_Group_makeRootGroup group [leaveChildren]) -> T | nil
/// Takes a group out of its tree.
KZ_TWIN kz_Group_makeRootGroup_li(void) {
    return groupTwin<kz_Group_makeRootGroup, kz::kStatus, kz::kGroup, kz::kFlag>();
}

/// (kz_Group_isAChildOf group ancestor [directOnly]) -> T | nil
/// T for a group below another, or right below it.
KZ_TWIN kz_Group_isAChildOf_li(void) {
    return groupTwin<kz_Group_isAChildOf, kz::kStatus, kz::kGroup, kz::kGroup, kz::kFlag>();
}

/// (kz_Group_getParentGroup group) -> group | nil
/// The parent.
KZ_TWIN kz_Group_getParentGroup_li(void) {
    return groupTwin<kz_Group_getParentGroup, kz::kToGroup, kz::kSomeGroup>();
}

/// (kz_Group_getRootGroup group) -> group | nil
/// The top of the tree, the group itself when it has no parent.
KZ_TWIN kz_Group_getRootGroup_li(void) {
    return groupTwin<kz_Group_getRootGroup, kz::kToGroup, kz::kSomeGroup>();
}

/// (kz_Group_getNthChild group [type [index]]) -> group | nil
/// The child at an index from 0, which is taken when there is none, among those of the type.
KZ_TWIN kz_Group_getNthChild_li(void) {
    return groupTwin<kz_Group_getNthChild, kz::kToGroup, kz::kGroup, kz::kType, kz::kIndex>();
}

/// (kz_Group_getNumChildren group [type]) -> integer
/// How many children a group has, of the type.
KZ_TWIN kz_Group_getNumChildren_li(void) {
    return groupTwin<kz_Group_getNumChildren, kz::kInteger, kz::kGroup, kz::kType>();
}
