/// Reading the tree of groups, which hangs together by names.
#include "ACAD/kz_acgrp/kz_acgrp.h"

namespace {

/// A name that a group object has in a field. False when it names nothing.
bool readName(kz_Char* out, const kz_GroupId* id, const kz_Char* field) {
    return kz_AcGroup_getCharFieldValFromEname(out, kz::kNameRead, field, id->ename) == 1 &&
           *out != 0;
}

bool isGiven(const kz_GroupId* id) {
    if (kz_Group_isNull(id) == 0) return true;
    kz::submitGroupError(kz::kNoGroupId);
    return false;
}

/// The child of this name when it is of the type.
kz::OwnedGroup childOfType(const kz_Char* name, const kz_Char* type) {
    kz::OwnedGroup child(*name != 0 ? kz_Group_getId(name) : nullptr);
    const bool fits = child != nullptr && kz_Group_isTypeOf(child.get(), type) == 1;
    return fits ? std::move(child) : nullptr;
}

}  // namespace

kz_GroupId* kz_AcGroup_getParentGroup(const kz_GroupId* id) {
    const kz::GroupTrace trace(KZ_T("kz_AcGroup_getParentGroup"));
    kz_Char name[kz::kNameSize];
    return isGiven(id) && readName(name, id, kz::kParentField) ? kz_Group_getId(name) : nullptr;
}

int kz_AcGroup_isARootGroup(const kz_GroupId* id) {
    kz_Char name[kz::kNameSize];
    return isGiven(id) && readName(name, id, kz::kParentField) ? 0 : 1;
}

kz_GroupId* kz_AcGroup_getRootGroup(const kz_GroupId* id) {
    const kz::GroupTrace trace(KZ_T("kz_AcGroup_getRootGroup"));
    if (!isGiven(id)) return nullptr;
    kz::Visited visited;
    kz::OwnedGroup at(kz_Group_dupId(id));
    while (at != nullptr && kz_Group_isARootGroup(at.get()) == 0)
        at.reset(visited.enter(at->ename) ? kz_Group_getParentGroup(at.get()) : nullptr);
    return at.release();
}

int kz_Group_isAChildOf(const kz_GroupId* id, const kz_GroupId* ancestor, int directOnly) {
    if (kz_Group_isNull(id) == 1 || kz_Group_isNull(ancestor) == 1) return 0;
    kz::Visited visited;
    kz::OwnedGroup parent(kz_Group_getParentGroup(id));
    while (parent != nullptr && visited.enter(parent->ename)) {
        if (kz_Group_isEqual(parent.get(), ancestor) == 1) return 1;
        if (directOnly != 0) return 0;
        parent.reset(kz_Group_getParentGroup(parent.get()));
    }
    return 0;
}

kz_GroupId* kz_Group_getContainerGroup(const kz_GroupId* id) {
    kz_Char name[kz::kNameSize];
    if (kz_Group_isNull(id) == 1 || !readName(name, id, kz::kContainerField)) return nullptr;
    return kz_Group_getId(name);
}

// --- children -----------------------------------------------------------------------------------

int kz_AcGroup_getNumChildren(const kz_GroupId* id, const kz_Char* type) {
    const kz::GroupTrace trace(KZ_T("kz_AcGroup_getNumChildren"));
    if (!isGiven(id)) return 0;
    const kz::OwnedFldList names(kz_Group_getXDataFld(id, 0, kz::kChildField));
    int count = 0;
    for (; names != nullptr && kz_FldList_eol(names.get()) == 0; kz_FldList_next(names.get())) {
        kz_Char name[kz::kNameSize];
        if (kz_FldList_currChar(names.get(), name, kz::kNameRead) != 1) continue;
        if (kz::isAny(type) || childOfType(name, type) != nullptr) ++count;
    }
    return count;
}

kz_GroupId* kz_AcGroup_getNthChild(const kz_GroupId* id, const kz_Char* type, int n) {
    const kz::GroupTrace trace(KZ_T("kz_AcGroup_getNthChild"));
    if (!isGiven(id) || n < 0) return nullptr;
    const kz::OwnedFldList names(kz_Group_getXDataFld(id, 0, kz::kChildField));
    for (; names != nullptr && kz_FldList_eol(names.get()) == 0; kz_FldList_next(names.get())) {
        kz_Char name[kz::kNameSize];
        if (kz_FldList_currChar(names.get(), name, kz::kNameRead) != 1) continue;
        if (kz::isAny(type)) {
            if (n-- == 0) return *name != 0 ? kz_Group_getId(name) : nullptr;
            continue;
        }
        kz::OwnedGroup child = childOfType(name, type);
        if (child != nullptr && n-- == 0) return child.release();
    }
    return nullptr;
}
