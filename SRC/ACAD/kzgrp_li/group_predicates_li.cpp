/// Lisp twins that answer yes or no about groups.
#include "ACAD/kzgrp_li/group_call.h"

using kz::groupTwin;

/// (kz_Group_isAMember entity) -> T | nil
/// T for a master or member of a group.
KZ_TWIN kz_Group_isAMember_li(void) {
    return groupTwin<kz_Group_isAMember, kz::kTruth, kz::kSomeObject>();
}

/// (kz_Group_isAMemberOf entity group [thisGroupOnly]) -> T | nil
/// T for an entity of a group or of one below it.
KZ_TWIN kz_Group_isAMemberOf_li(void) {
    return groupTwin<kz_Group_isAMemberOf, kz::kTruth, kz::kSomeObject, kz::kSomeGroup,
                     kz::kFlag>();
}

/// (kz_Group_isARootGroup group) -> T | nil
/// T for a group without a parent.
KZ_TWIN kz_Group_isARootGroup_li(void) {
    return groupTwin<kz_Group_isARootGroup, kz::kTruth, kz::kSomeGroup>();
}

/// (kz_Group_isErased group) -> T | nil
/// T for a group that is erased, or whose master is.
KZ_TWIN kz_Group_isErased_li(void) {
    return groupTwin<kz_Group_isErased, kz::kTruth, kz::kSomeGroup>();
}

/// (kz_Group_isValid group) -> T | nil
/// T for an id that leads to an object, also to an erased one.
KZ_TWIN kz_Group_isValid_li(void) {
    return groupTwin<kz_Group_isValid, kz::kTruth, kz::kGroup>();
}

/// (kz_Group_isSelectable group) -> T | nil
/// T for a group whose entities are picked together.
KZ_TWIN kz_Group_isSelectable_li(void) {
    return groupTwin<kz_Group_isSelectable, kz::kTruth, kz::kGroup>();
}

/// (kz_Group_isNull group) -> T | nil
/// T for the name of two zero words, and for what is no name.
KZ_TWIN kz_Group_isNull_li(void) {
    kz::GroupCall call;
    // What could not be read left the id null.
    call.answerTruth(kz_Group_isNull(call.group()));
    return 1;
}

/// (kz_Group_isEqual group group) -> T | nil
/// T for twice the same name.
KZ_TWIN kz_Group_isEqual_li(void) {
    return groupTwin<kz_Group_isEqual, kz::kTruth, kz::kGroup, kz::kGroup>();
}

/// (kz_Group_isTypeOf group [type]) -> T | nil
/// T for a group of the type; "*" and nil are every type.
KZ_TWIN kz_Group_isTypeOf_li(void) {
    return groupTwin<kz_Group_isTypeOf, kz::kTruth, kz::kGroup, kz::kType>();
}

/// (kz_Group_isValidByName name) -> T | nil
/// T for the name of a group.
KZ_TWIN kz_Group_isValidByName_li(void) {
    return groupTwin<kz_Group_isValidByName, kz::kTruth, kz::kName>();
}
