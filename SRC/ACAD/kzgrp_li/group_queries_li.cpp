/// Lisp twins that tell of groups and of their entities, and the walk over all groups.
#include "ACAD/kzgrp_li/group_call.h"

using kz::groupTextTwin;
using kz::groupTwin;

namespace {

/// Room for the file of a drawing [characters]; no path that the system opens is longer.
constexpr int kFileSize = 4097;

/// The list (group erased) of a step of the walk.
void answerStep(kz_GroupId* id, int erased) {
    const kz::OwnedGroup owned(id);
    if (id == nullptr) return;
    const int flag = erased != 0 ? RTT : RTNIL;
    const kz::OwnedChain list(acutBuildList(RTENAME, id->ename, flag, 0));
    if (list != nullptr) kz_ResBuf_returnList(list.get());
}

}  // namespace

/// (kz_Group_getId name) -> group | nil
/// The group of a name, in the drawing in the editor, in those attached to it, and in all others
/// that are known.
KZ_TWIN kz_Group_getId_li(void) {
    return groupTwin<kz_Group_getId, kz::kToGroup, kz::kName>();
}

/// (kz_Group_getName group) -> string | nil
/// The name of a group.
KZ_TWIN kz_Group_getName_li(void) {
    return groupTextTwin<kz_Group_getName, kz::kNameSize, kz::kGroup>();
}

/// (kz_Group_getType group) -> string | nil
/// The type of a group.
KZ_TWIN kz_Group_getType_li(void) {
    return groupTextTwin<kz_Group_getType, kz::kTypeSize, kz::kGroup>();
}

/// (kz_Group_getDrawingName group) -> string | nil
/// The file of the drawing that a group lies in.
KZ_TWIN kz_Group_getDrawingName_li(void) {
    return groupTextTwin<kz_Group_getDrawingName, kFileSize, kz::kGroup>();
}

/// (kz_Group_getQualifiedName group) -> (drawing name) | nil
/// That file, and the name of the group.
KZ_TWIN kz_Group_getQualifiedName_li(void) {
    kz::GroupCall call;
    const kz_GroupId* id = call.group();
    kz_Char drawing[kFileSize] = {}, name[kz::kNameSize] = {};
    if (!call.readAll() || kz_Group_getQualifiedName(drawing, name, id) != 1) return 1;
    const kz::OwnedChain list(acutBuildList(RTSTR, drawing, RTSTR, name, 0));
    if (list != nullptr) kz_ResBuf_returnList(list.get());
    return 1;
}

/// (kz_Group_getMemberList group [type [subGroup [noChildren [includeMaster]]]])
/// -> (entity ...) | nil
/// The entities of a group and of those below it: of a type, of a sub-group.
KZ_TWIN kz_Group_getMemberList_li(void) {
    return groupTwin<kz_Group_getMemberList, kz::kToObjects, kz::kGroup, kz::kType, kz::kNameOrNil,
                     kz::kFlag, kz::kFlag>();
}

/// (kz_Group_getMemberSelSet group [type [subGroup [noChildren [includeMaster]]]]) -> set | nil
/// The same as a selection set.
KZ_TWIN kz_Group_getMemberSelSet_li(void) {
    return groupTwin<kz_Group_getMemberSelSet, kz::kToSet, kz::kGroup, kz::kType, kz::kNameOrNil,
                     kz::kFlag, kz::kFlag>();
}

/// (kz_Group_setVisibility group [type [subGroup [noChildren [includeMaster [visible]]]]])
/// -> T | nil
/// Shows these entities, or hides them.
KZ_TWIN kz_Group_setVisibility_li(void) {
    return groupTwin<kz_Group_setVisibility, kz::kStatus, kz::kGroup, kz::kType, kz::kNameOrNil,
                     kz::kFlag, kz::kFlag, kz::kFlag>();
}

/// (kz_Group_setSelectable group [queryOnly [selectable]]) -> T | nil
/// Sets whether the entities of a group are picked together, unless it is only asked for. T when
/// they were before.
KZ_TWIN kz_Group_setSelectable_li(void) {
    return groupTwin<kz_Group_setSelectable, kz::kStatus, kz::kGroup, kz::kFlag, kz::kFlag>();
}

// --- walk ---------------------------------------------------------------------------------------

/// (kz_Group_beginGetNext [drawing]) -> T | nil
/// Begins a walk over the groups of a drawing: kz_Group_getNext gives one after the other, and
/// kz_Group_endGetNext ends it. No group can be made meanwhile.
KZ_TWIN kz_Group_beginGetNext_li(void) {
    kz::GroupCall call(KZ_T("kz_Group_beginGetNext_li"), KZ_T(": Invalid drawing id parameter."));
    const kz_CADDwgId* drawing = call.drawingOrWorking();
    if (call.readAll()) call.answerStatus(kz_Group_beginGetNext(drawing));
    return 1;
}

/// (kz_Group_endGetNext) -> void
/// Ends the walk.
KZ_TWIN kz_Group_endGetNext_li(void) {
    kz_Group_endGetNext();
    return 1;
}

/// (kz_Group_getNext [type [restart]]) -> (group erased) | nil
/// The next group of the type, or the first one again; `erased` is T for one that is erased, or
/// whose master is.
KZ_TWIN kz_Group_getNext_li(void) {
    kz::GroupCall call;
    const kz_Char* type = call.type();
    const int restart = call.truth();
    int erased = 0;
    kz_GroupId* id = call.readAll() ? kz_Group_getNext(&erased, type, restart) : nullptr;
    answerStep(id, erased);
    return 1;
}

/// (kz_Group_getCurr [type]) -> (group erased) | nil
/// The group that the walk stands on. After a group has been deleted that is the following one.
KZ_TWIN kz_Group_getCurr_li(void) {
    kz::GroupCall call;
    const kz_Char* type = call.type();
    int erased = 0;
    kz_GroupId* id = call.readAll() ? kz_Group_getCurr(&erased, type) : nullptr;
    answerStep(id, erased);
    return 1;
}
