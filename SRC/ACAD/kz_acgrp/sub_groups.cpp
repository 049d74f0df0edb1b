/// Sub-groups: a member bears the name of its sub-group as a field, the master a field of handles
/// for each.
#include "ACAD/kz_acgrp/kz_acgrp.h"
#include "kz/kz_xdata.h"

namespace {

/// A sub-group's name as it is kept: longer ones are cut wherever they are used, so that they are
/// found again.
class SubGroupName {
  public:
    explicit SubGroupName(const kz_Char* name) { kz_Str_ncpy(text_, name, kz::kLongestName); }
    operator const kz_Char*() const { return text_; }

  private:
    kz_Char text_[kz::kNameSize];
};

}  // namespace

// --- members ------------------------------------------------------------------------------------

int kz_Group_enameGetSubGroupName(kz_Char* out, const ads_name name) {
    if (out == nullptr) return 0;
    *out = 0;
    if (kz::isNull(name)) return 0;
    const kz::OwnedFldList list(kz_XData_getFldList(name, nullptr, kz::kSubGroupApp));
    kz_FldList_start(list.get());
    const kz_FldNode* first = kz_FldList_curr(list.get());
    if (first == nullptr || kz::isEmpty(first->name)) return 0;
    kz_Str_ncpy(out, first->name, kz::kLongestName);
    return 1;
}

int kz_AcGroup_getSubGroupName(kz_Char* out, const kz_CADObjId* object) {
    return kz_Group_enameGetSubGroupName(out, object != nullptr ? object->ename : nullptr);
}

int kz_Group_isAMemberOfSubGroup(const kz_CADObjId* object, const kz_Char* subGroup) {
    if (kz::isAny(subGroup)) return 1;
    kz_Char name[kz::kNameSize];
    const SubGroupName wanted(subGroup);
    return kz_Group_getSubGroupName(name, object) == 1 && kz_Str_cmpi(name, wanted) == 0 ? 1 : 0;
}

int kz_Group_setSubGroupRef(const ads_name member, const kz_Char* subGroup) {
    const SubGroupName name(subGroup);
    return kz_Ename_setCharFieldReference(member, name, KZ_T(""), 0, kz::kSubGroupApp);
}

int kz_Group_removeSubGroupRef(const ads_name member) {
    return member != nullptr ? kz_XData_deleteFldList(member, kz::kSubGroupApp) : 0;
}

// --- masters ------------------------------------------------------------------------------------

int kz_Group_removeSubGroupRefs(const ads_name master) {
    return kz_Group_removeSubGroupRef(master);
}

int kz_SubGroup_setMemberRef(const ads_name master, const kz_Char* subGroup,
                             const ads_name member) {
    kz_Char handle[kz::kHandleSize];
    if (kz_Group_getHandleFromEname(handle, member) != 1) return 0;
    return kz_XData_setHandle(master, handle, SubGroupName(subGroup), kz::kSubGroupApp, 0);
}

int kz_SubGroup_setMemberRefs(const ads_name master, const kz_Char* subGroup, kz_LnkList* handles) {
    if (kz::isNull(master) || kz_LnkList_length(handles) == 0) return 0;
    const SubGroupName name(subGroup);
    const kz::OwnedFldList list(kz_FldList_create(nullptr, 0, nullptr, 0));
    if (*name == 0 || list == nullptr) return 0;
    int status = 1;
    for (kz_LnkList_start(handles); kz_LnkList_eol(handles) == 0; kz_LnkList_next(handles)) {
        const auto* handle = static_cast<const kz_Char*>(kz_LnkList_getCurr(handles));
        const bool added =
            handle != nullptr && kz_FldList_addHandleVal(list.get(), name, handle) == 1;
        if (!added) status = 0;
    }
    const int written = kz_XData_setFldList(master, list.get(), kz::kSubGroupApp, 0);
    return written == 1 ? status : 0;
}

int kz_SubGroup_removeMemberRef(const ads_name master, const kz_Char* subGroup,
                                const ads_name member) {
    kz_Char own[kz::kNameSize], handle[kz::kHandleSize];
    const bool given = !kz::isAny(subGroup);
    if (!given && kz_Group_enameGetSubGroupName(own, member) != 1) return 0;
    if (kz_Group_getHandleFromEname(handle, member) != 1) return 0;
    const SubGroupName name(given ? subGroup : own);
    return kz_XData_deleteHandle(master, handle, name, kz::kSubGroupApp);
}

int kz_SubGroup_addEnameToHandleList(kz_LnkList* handles, const ads_name name) {
    kz_Char handle[kz::kHandleSize];
    if (handles == nullptr || kz_Group_getHandleFromEname(handle, name) != 1) return 0;
    kz::OwnedText copy(kz_Str_dup(handle));
    if (copy == nullptr || kz_LnkList_insEnd(handles, copy.get()) == nullptr) return 0;
    static_cast<void>(copy.release());
    return 1;
}
