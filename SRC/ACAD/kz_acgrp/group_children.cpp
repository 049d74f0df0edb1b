/// The children of groups: their names, the groups below a group, and children that change hands.
#include <algorithm>
#include <unordered_set>

#include "ACAD/kz_acgrp/group_edit.h"
#include "kz/kz_xdata.h"

namespace kz {
namespace {

/// The texts of a list of nameless fields, from its position on.
Names textsOf(kz_FldList* values) {
    Names names;
    for (; values != nullptr && kz_FldList_eol(values) == 0; kz_FldList_next(values)) {
        kz_Char name[kNameSize];
        if (kz_FldList_currChar(values, name, kNameRead) == 1 && *name != 0) {
            names.emplace_back(name);
        }
    }
    return names;
}

/// The children that an entity or a group object names.
Names childNamesAt(const ads_name name) {
    const OwnedFldList field(kz_XData_getFld(name, kChildField, kGroupApp));
    kz_LnkList* values = nullptr;
    kz_FldList_start(field.get());
    if (kz_FldList_currList(field.get(), &values) != 1) return textsOf(field.get());
    kz_FldList_start(values);
    return textsOf(values);
}

/// Gives an entity or a group object these children.
int writeChildren(const ads_name name, const Names& children) {
    if (children.empty()) return kz_XData_deleteFld(name, kChildField, kGroupApp);
    const OwnedFldList list(kz_FldList_create(nullptr, 0, nullptr, 0));
    for (const std::u16string& child : children) {
        if (kz_FldList_addCharVal(list.get(), kChildField, child.c_str()) != 1) return 0;
    }
    return kz_XData_modFldList(name, list.get(), kGroupApp);
}

int changeChildrenAt(const ads_name name, const Names& gone, const Names& added) {
    std::unordered_set<std::u16string> done(gone.begin(), gone.end());
    Names children;
    const auto take = [&](const Names& names) {
        for (const std::u16string& child : names) {
            if (done.insert(child).second) children.push_back(child);
        }
    };
    take(childNamesAt(name));
    take(added);
    return writeChildren(name, children);
}

}  // namespace

Names childNames(const kz_GroupId* id) {
    const OwnedFldList values(kz_Group_getXDataFld(id, 0, kChildField));
    return textsOf(values.get());
}

OwnedGroup groupNamed(const std::u16string& name) {
    return OwnedGroup(name.empty() ? nullptr : kz_Group_getId(name.c_str()));
}

std::vector<OwnedGroup> branchOf(const kz_GroupId* id) {
    std::vector<OwnedGroup> branch, waiting;
    Visited visited;
    waiting.emplace_back(kz_Group_dupId(id));
    while (!waiting.empty()) {
        OwnedGroup group = std::move(waiting.back());
        waiting.pop_back();
        if (kz_Group_isValid(group.get()) == 0 || !visited.enter(group->ename)) continue;
        for (const std::u16string& name : childNames(group.get()))
            waiting.push_back(groupNamed(name));
        branch.push_back(std::move(group));
    }
    // Each group was met in front of those below it.
    std::reverse(branch.begin(), branch.end());
    return branch;
}

int changeChildren(const kz_GroupId* id, const Names& gone, const Names& added) {
    if (gone.empty() && added.empty()) return 1;
    if (kz_Group_isErased(id) == 1) return 0;
    ads_name master = {};
    const int status = changeChildrenAt(id->ename, gone, added);
    if (kz_AcGroup_getMasterEntName(master, id, 1) != 1) return status;
    return changeChildrenAt(master, gone, added) == 1 ? status : 0;
}

int handOverChildren(const kz_GroupId* id, const kz_GroupId* heir) {
    kz_Char heir_name[kNameSize] = {};
    if (heir != nullptr && kz_Group_getName(heir_name, heir) != 1) return 0;
    Names moved;
    for (const std::u16string& name : childNames(id)) {
        const OwnedGroup child = groupNamed(name);
        const bool takes = child != nullptr && kz_Group_isEqual(child.get(), heir) == 0 &&
                           kz_Group_isEqual(child.get(), id) == 0;
        if (!takes) continue;
        const int status = heir != nullptr
                               ? kz_Group_setParentGroupReference(child.get(), heir_name, 1)
                               : kz_Group_removeParentGroupReference(child.get());
        if (status == 1) moved.push_back(name);
    }
    const int status = heir != nullptr ? changeChildren(heir, {}, moved) : 1;
    return changeChildren(id, moved, {}) == 1 ? status : 0;
}

}  // namespace kz
