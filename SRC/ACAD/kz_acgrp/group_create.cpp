/// New groups, from a master and a selection set or from what has been drawn since a mark.
#include "ACAD/cad_rx/cad_rx.h"
#include "ACAD/kz_acgrp/group_edit.h"
#include "APP/services.h"
#include "kz/kz_xdata.h"

namespace {

constexpr const char* kTraceSource = "SRC/ACAD/kz_acgrp";

constexpr const kz_Char* kPrefix = KZ_T("KZ_");
constexpr int kHandleInName = 25;
constexpr const kz_Char* kAnyType = KZ_T("*");

void destroyTexts(kz_LnkList* texts) {
    kz_LnkList_destroy(texts, kz_Free);
}

/// A list of texts that it owns.
using OwnedTexts = std::unique_ptr<kz_LnkList, kz::Destroyer<destroyTexts>>;

/// What a group is made of.
struct Parts {
    kz::OwnedObject master;
    kz_Char handle[kz::kHandleSize] = {};  ///< of the master
    const kz_CADSelSet* set = nullptr;     ///< NULL when there is nobody but the master
    int32_t master_index = -1;             ///< of the master in the set
    const kz_Char* sub_group = nullptr;    ///< NULL: none
};

/// Chooses the master. False when there is no entity, or the master has no handle.
bool choose(Parts& parts, const kz_CADObjId* master, const kz_CADSelSet* set,
            const kz_Char* sub_group) {
    const int length = kz_CADSelSet_length(set);
    if (length > 0) parts.set = set;
    if (!kz::isAny(sub_group)) parts.sub_group = sub_group;
    if (master != nullptr) {
        parts.master.reset(kz_CADObjId_copy(master));
        if (kz_CADSelSet_getIndex(&parts.master_index, set, master) != 1) parts.master_index = -1;
    } else if (length > 0) {
        parts.master.reset(kz_CADSelSet_getNth(set, 0));
        parts.master_index = 0;
        if (length < 2) {
            parts.set = nullptr;
            parts.sub_group = nullptr;
        }
    }
    if (parts.master == nullptr) return false;
    return kz_Group_getHandleFromEname(parts.handle, parts.master->ename) == 1;
}

void chooseName(kz_Char* out, const kz_Char* name, const kz_Char* master_handle) {
    if (!kz::isAny(name) && *name != u'*') {
        kz_Str_ncpy(out, name, kz::kLongestName);
        return;
    }
    if (kz_Group_getUniqueName(out, kPrefix) == 1) return;
    kz_Char handle[kHandleInName + 1];
    kz_Str_ncpy(handle, master_handle, kHandleInName);
    kz_Str_format(out, kz::kNameRead, KZ_T("%s%s"), kPrefix, handle);
}

/// Changes the name until no group has it. False when no other name can be had, which is told on
/// the console.
bool makeNameFree(const AcDbDictionary& groups, kz_Char* name) {
    while (groups.has(name)) {
        kz_Char taken[kz::kNameSize];
        kz_Str_ncpy(taken, name, kz::kLongestName);
        kz_Group_getUniqueName(name, kPrefix);
        if (kz_Str_cmpi(taken, name) != 0) continue;
        acutPrintf(KZ_T("%s"), kz_Msg("Severe Error! Cannot create unique group name.", "TOOL", 3));
        acutPrintf(KZ_T("%s"), kz_Msg("Contact Movar support.", "TOOL", 7));
        return false;
    }
    return true;
}

/// Enters a new group into the working database. @return the group, open for write; nothing when
/// there can't be one, and nothing is left behind then
kz::Opened<AcDbGroup> enterGroup(kz_Char* name, const kz_Char* type) {
    std::unique_ptr<AcDbGroup> group(new AcDbGroup(type, true));
    KZ_ASSERTION(group != nullptr);
    AcDbDatabase* const working = kz::workingDatabase();
    AcDbDictionary* opened = nullptr;
    AcDbObjectId object;
    if (group == nullptr || working == nullptr) return {};
    if (working->getGroupDictionary(opened, AcDb::kForWrite) != Acad::eOk) return {};
    const kz::Opened<AcDbDictionary> groups(opened);
    if (!makeNameFree(*groups.get(), name)) return {};
    if (groups->setAt(name, group.get(), object) != Acad::eOk) return {};
    return kz::Opened<AcDbGroup>(group.release());
}

// --- entities -----------------------------------------------------------------------------------

/// The extended data of an entity that enters a group: these fields, and no mark of a sub-group
/// that it was in elsewhere. Made once for all members, so that each is opened but once.
kz::OwnedChain entityData(kz_FldList* fields) {
    constexpr int kAppName = 1001;
    acdbRegApp(kz::kGroupApp);
    acdbRegApp(kz::kSubGroupApp);
    kz::OwnedChain chain(acutBuildList(kAppName, kz::kGroupApp, 0));
    resbuf* const no_marks = acutBuildList(kAppName, kz::kSubGroupApp, 0);
    if (no_marks == nullptr || kz_XData_fromFldList(chain.get(), fields, 1) != 1) {
        acutRelRb(no_marks);
        return nullptr;
    }
    resbuf* last = chain.get();
    while (last->rbnext != nullptr)
        last = last->rbnext;
    last->rbnext = no_marks;
    return chain;
}

/// Appends an entity to the open group and gives it its data.
bool append(AcDbGroup& group, const kz_CADObjId* object, const resbuf* data) {
    AcDbObjectId entity;
    const Acad::ErrorStatus known = acdbGetObjectId(entity, object->ename);
    KZ_ASSERTION(known == Acad::eOk);
    if (known != Acad::eOk || group.append(entity) != Acad::eOk) return false;
    const kz::Opened<AcDbObject> opened(object->ename, AcDb::kForWrite, false);
    return opened && data != nullptr && opened->setXData(data) == Acad::eOk;
}

bool appendMaster(AcDbGroup& group, const kz_CADObjId* master) {
    const kz::OwnedFldList fields(kz_FldList_create(nullptr, 0, nullptr, 0));
    kz_FldList_addCharVal(fields.get(), kz::kRoleField, kz::kMasterRole);
    return append(group, master, entityData(fields.get()).get());
}

/// Appends the members. `handles` gets those of the sub-group. False at the first that can't be
/// taken in.
bool appendMembers(AcDbGroup& group, const Parts& parts, kz_LnkList* handles) {
    const int length = kz_CADSelSet_length(parts.set);
    if (length == 0) return true;
    const kz::OwnedFldList fields = kz::memberFields(parts.handle);
    const kz::OwnedChain data = entityData(fields.get());
    for (int i = 0; i < length; ++i) {
        if (i == parts.master_index) continue;
        const kz::OwnedObject member(kz_CADSelSet_getNth(parts.set, i));
        if (member == nullptr) return false;
        if (!append(group, member.get(), data.get())) return false;
        if (parts.sub_group == nullptr) continue;
        kz_SubGroup_addEnameToHandleList(handles, member->ename);
        kz_Group_setSubGroupRef(member->ename, parts.sub_group);
    }
    return true;
}

// --- the tree -----------------------------------------------------------------------------------

/// Enters the new group into the tree of its parent.
void join(const kz_GroupId* id, const kz_Char* name, const kz_GroupId* parent,
          const kz_Char* parent_name) {
    kz_Char container_name[kz::kNameSize];
    if (kz_Group_addChildGroupReference(parent, name, 1) != 1) return;
    if (kz_Group_setParentGroupReference(id, parent_name, 1) != 1) return;
    const kz::OwnedGroup container(kz_Group_isARootGroup(parent) == 1
                                       ? kz_Group_createContainerGroup(parent)
                                       : kz_Group_getContainerGroup(parent));
    if (container == nullptr) return;
    if (kz_Group_getName(container_name, container.get()) == 1) {
        kz_Group_setContainerGroupReference(id, container_name, 1);
    }
    kz_Group_addToContainerGroup(container.get(), id);
}

/// The last steps, which need the group closed.
int finish(const kz_GroupId* id, const kz_Char* name, const kz_CADObjId* master) {
    kz_Group_setOldName(id, name);
    const int status = kz_Group_attachMasterEntReactor(id, master);
    if (status != 1) {
        KZ_TRACE(kz::kTraceFailure, kz::kTraceGroups, KZ_T("kz_Group_attachEntityReactor failed"));
    }
    return status;
}

}  // namespace

int kz_AcGroup_create(kz_GroupId* id, const kz_Char* type, const kz_Char* name,
                      const kz_Char* subGroup, const kz_CADObjId* master, const kz_CADSelSet* set,
                      const kz_GroupId* parent) {
    const kz::GroupTrace trace(KZ_T("kz_AcGroup_create"));
    KZ_ASSERTION(id != nullptr);
    Parts parts;
    kz_Char used_name[kz::kNameSize] = {}, parent_name[kz::kNameSize] = {};
    if (id == nullptr || !choose(parts, master, set, subGroup)) return 0;
    chooseName(used_name, name, parts.handle);
    const bool has_parent =
        kz_Group_isNull(parent) == 0 && kz_Group_getName(parent_name, parent) == 1;
    const kz_Char* const description = kz::isAny(type) ? kAnyType : type;
    kz::Opened<AcDbGroup> group = enterGroup(used_name, description);
    if (!group || acdbGetAdsName(id->ename, group->objectId()) != Acad::eOk) return 0;

    const OwnedTexts handles(kz_LnkList_create());
    const bool whole = appendMaster(*group.get(), parts.master.get()) &&
                       appendMembers(*group.get(), parts, handles.get());
    // The fields of the group object can't be written while it is open.
    group.close();
    kz_Group_setXdata(id, 0, used_name, description, parts.handle);
    if (parts.sub_group != nullptr) {
        kz_SubGroup_setMemberRefs(parts.master->ename, parts.sub_group, handles.get());
    }
    if (has_parent) join(id, used_name, parent, parent_name);
    return whole ? finish(id, used_name, parts.master.get()) : 0;
}

kz_GroupId* kz_Group_createFromSelSet(const kz_Char* type, const kz_Char* name,
                                      const kz_Char* subGroup, const kz_CADObjId* master,
                                      const kz_CADSelSet* set, const kz_GroupId* parent) {
    kz::OwnedGroup id(kz_Group_createId(nullptr));
    if (id == nullptr) return nullptr;
    const int status = kz_AcGroup_create(id.get(), type, name, subGroup, master, set, parent);
    return status == 1 ? id.release() : nullptr;
}

kz_CADSelSetMarker* kz_Group_begin(void) {
    return kz_CADSelSet_begin();
}

kz_GroupId* kz_Group_end(kz_CADSelSetMarker* mark, const kz_Char* type, const kz_Char* name,
                         const kz_Char* subGroup, const kz_CADObjId* master,
                         const kz_GroupId* parent) {
    const kz::OwnedSet set(kz_CADSelSet_end(mark, 1));
    if (set == nullptr) return nullptr;
    return kz_Group_createFromSelSet(type, name, subGroup, master, set.get(), parent);
}
