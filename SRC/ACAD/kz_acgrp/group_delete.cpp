/// The end of groups: one, a tree, members only, and what is to be purged.
#include "ACAD/cad_rx/cad_rx.h"
#include "ACAD/kz_acgrp/group_edit.h"

namespace {

constexpr const char* kTraceSource = "SRC/ACAD/kz_acgrp";

constexpr int kGroupStays = -1;
constexpr int kMasterStays = -2;
constexpr int kMembersStay = -3;

// --- entities -----------------------------------------------------------------------------------

/// The entities of a set that are not erased.
std::vector<kz::OwnedObject> livingOf(const kz_CADSelSet* set) {
    std::vector<kz::OwnedObject> living;
    const int length = kz_CADSelSet_length(set);
    for (int i = 0; i < length; ++i) {
        kz::OwnedObject object(kz_CADSelSet_getNth(set, i));
        const bool there = object != nullptr && kz_AcGroup_isAdsNameErased(object->ename) == 0;
        if (there) living.push_back(std::move(object));
    }
    return living;
}

int eraseEntities(const kz_GroupId* id, bool with_master) {
    const kz::OwnedSet set(kz_Group_getMemberSelSet(id, nullptr, nullptr, 1, with_master ? 1 : 0));
    const std::vector<kz::OwnedObject> entities = livingOf(set.get());
    int result = entities.empty() ? kMembersStay : 1;
    for (const kz::OwnedObject& entity : entities) {
        if (kz_CADObjId_erase(entity.get(), 0) != 1) result = kMembersStay;
    }
    return result;
}

int eraseMaster(const kz_GroupId* id) {
    kz_CADObjId* master = kz_Group_getMasterObject(id);
    return master != nullptr && kz_CADObjId_delete(master) == 1 ? 1 : kMasterStays;
}

}  // namespace

// --- one group ----------------------------------------------------------------------------------

int kz::deleteGroup(OwnedGroup& id, bool master, bool members, bool from_parent) {
    if (kz_Group_isValid(id.get()) == 0) {
        submitGroupError(kInvalidGroup);
        return kGroupStays;
    }
    const OwnedGroup container(kz_Group_getContainerGroup(id.get()));
    if (container != nullptr) kz_Group_removeFromContainerGroup(container.get(), id.get());
    leaveTree(id.get(), from_parent);
    int entities = 1;
    if (members) {
        entities = eraseEntities(id.get(), master);
    } else if (master) {
        entities = eraseMaster(id.get());
    }
    KZ_ASSERTION(entities == 1);
    kz_GroupId* group = id.release();
    if (kz_AcGroup_deleteByGroupObjId(&group) == 1) return entities;
    submitGroupError(kNotDeleted);
    return kGroupStays;
}

int kz_AcGroup_delete(kz_GroupId* id, int deleteMaster, int deleteMembers) {
    const kz::GroupTrace trace(KZ_T("kz_AcGroup_delete"));
    kz::OwnedGroup owned(id);
    const int result = kz::deleteGroup(owned, deleteMaster != 0, deleteMembers != 0, true);
    static_cast<void>(owned.release());  // an invalid one stays the caller's
    return result;
}

int kz_Group_deleteByName(const kz_Char* name, int deleteMaster, int deleteMembers) {
    kz::OwnedGroup id(kz_Group_getId(name));
    return id != nullptr ? kz::deleteGroup(id, deleteMaster != 0, deleteMembers != 0, true)
                         : kGroupStays;
}

// --- a tree -------------------------------------------------------------------------------------

namespace {

/// A group on the way down, with the children that it had when it was met.
struct Level {
    kz::OwnedGroup group;
    kz::Names children;
    size_t next = 0;
    int result = 1;
    kz::Names deleted;  ///< children that it still names
};

/// The deletion of a tree. The way down is kept here and not on the stack, and each group is gone
/// to once, since a damaged tree may lead back into itself. A group's list of children is written
/// once for all that are deleted.
class TreeDeletion {
  public:
    TreeDeletion(const kz_Char* type, bool master, bool members)
        : type_(type), master_(master), members_(members) {}

    /// The id of the top is in `top` again when it was not freed.
    int run(kz::OwnedGroup& top) {
        enter(std::move(top));
        while (levels_.size() > 1 || hasMore(levels_.back())) {
            if (hasMore(levels_.back())) {
                goDown();
            } else {
                goUp();
            }
        }
        const int result = finish(levels_.back());
        top = std::move(levels_.back().group);
        return result;
    }

  private:
    static bool hasMore(const Level& level) { return level.next < level.children.size(); }

    void enter(kz::OwnedGroup group) {
        if (!visited_.enter(group->ename)) return;
        Level level;
        level.children = kz::childNames(group.get());
        level.group = std::move(group);
        levels_.push_back(std::move(level));
    }
    void goDown() {
        Level& level = levels_.back();
        kz::OwnedGroup child = kz::groupNamed(level.children[level.next++]);
        const bool counts = child != nullptr && kz_Group_isTypeOf(child.get(), type_) == 1;
        if (counts) enter(std::move(child));
    }
    void goUp() {
        Level& level = levels_.back();
        kz_Char name[kz::kNameSize] = {};
        kz_Group_getName(name, level.group.get());
        const int result = finish(level);
        const bool left = level.group == nullptr;  // even if it could not be erased in the end
        levels_.pop_back();
        Level& parent = levels_.back();
        if (left) parent.deleted.emplace_back(name);
        if (parent.result == 1) parent.result = result;
    }
    /// Deletes the group of a level whose children are done. @return what comes of all of them
    int finish(Level& level) {
        kz::changeChildren(level.group.get(), level.deleted, {});
        if (kz_Group_isTypeOf(level.group.get(), type_) == 0) return level.result;
        const bool from_parent = levels_.size() == 1;
        const int result = kz::deleteGroup(level.group, master_, members_, from_parent);
        return result != 1 ? result : level.result;
    }

    const kz_Char* type_;
    bool master_;
    bool members_;
    kz::Visited visited_;
    std::vector<Level> levels_;
};

}  // namespace

int kz::deleteTree(OwnedGroup& id, const kz_Char* type, bool master, bool members) {
    if (kz_Group_isNull(id.get()) == 1) return kGroupStays;
    return TreeDeletion(type, master, members).run(id);
}

int kz_AcGroup_deleteAll(kz_GroupId* id, const kz_Char* type, int deleteMaster, int deleteMembers) {
    const kz::GroupTrace trace(KZ_T("kz_AcGroup_deleteAll"));
    kz::OwnedGroup top(id);
    const int result = kz::deleteTree(top, type, deleteMaster != 0, deleteMembers != 0);
    static_cast<void>(top.release());  // one of another type stays the caller's
    return result;
}

// --- members ------------------------------------------------------------------------------------

namespace {

/// Erases a member and takes it from the list of its sub-group.
int eraseMember(kz_CADObjId* member) {
    kz_Char name[kz::kNameSize];
    const kz::OwnedObject master(kz_Group_getMasterFromMember(member));
    const bool listed = kz_Group_getSubGroupName(name, member) == 1 && master != nullptr;
    // Once erased it has no handle any more that could be looked for.
    if (listed) kz_SubGroup_removeMemberRef(master->ename, name, member->ename);
    const int status = kz_CADObjId_erase(member, 0);
    if (listed && status != 1) kz_SubGroup_setMemberRef(master->ename, name, member->ename);
    return status;
}

}  // namespace

int kz_AcGroup_deleteMembers(const kz_GroupId* id, const kz_Char* type, const kz_Char* subGroup,
                             int includeChildren) {
    const kz::GroupTrace trace(KZ_T("kz_AcGroup_deleteMembers"));
    if (kz_Group_isNull(id) == 1) {
        kz::submitGroupError(kz::kNoGroupId);
        return 0;
    }
    const kz::OwnedSet members(
        kz_Group_getMemberSelSet(id, type, subGroup, includeChildren != 0 ? 0 : 1, 0));
    int status = 0;
    for (const kz::OwnedObject& member : livingOf(members.get()))
        status = eraseMember(member.get());
    KZ_ASSERTION(status == 1);
    return status;
}

// --- purges -------------------------------------------------------------------------------------

int kz_AcGroup_purge(void) {
    const kz::GroupTrace trace(KZ_T("kz_AcGroup_purge"));
    int result = 1, erased = 0;
    kz_Group_beginGetNext(nullptr);
    kz::OwnedGroup group(kz_Group_getNext(&erased, nullptr, 0));
    while (group != nullptr) {
        bool gone = false;
        if (erased != 0) {
            const int deleted = kz::deleteGroup(group, false, false, true);
            if (deleted != 1) result = deleted;
            gone = deleted != kGroupStays;
        }
        // The walk stands on the following group already when this one is gone.
        group.reset(gone ? kz_Group_getCurr(&erased, nullptr)
                         : kz_Group_getNext(&erased, nullptr, 0));
    }
    kz_Group_endGetNext();
    return result;
}

namespace {

/// Erases a group without entities. One of this system leaves its tree before. @return 0 when it
/// can't be erased
int eraseIfEmpty(const AcDbObjectId& object) {
    AcDbGroup* opened = nullptr;
    if (acdbOpenObject(opened, object, AcDb::kForWrite) != Acad::eOk) return 1;
    kz::Opened<AcDbGroup> group(opened);
    if (group->numEntities() != 0) return 1;
    const bool ours = kz_AcDbGroup_isAMovarGroupObject(group.get()) == 1;
    group.close();
    const kz::OwnedGroup id(ours ? kz_GroupId_fromAcDbObjectId(&object) : nullptr);
    kz_Group_removeGroupRefs(id.get());
    return kz_AcDbGroup_delete(&object);
}

}  // namespace

int kz_AcGroup_purgeAllEmptyGroups(void) {
    const kz::GroupTrace trace(KZ_T("kz_AcGroup_purgeAllEmptyGroups"));
    const AcDbDatabase* const working = kz::workingDatabase();
    AcDbDictionary* opened = nullptr;
    if (working == nullptr || working->getGroupDictionary(opened) != Acad::eOk) return 0;
    kz::Opened<AcDbDictionary> groups(opened);
    const std::unique_ptr<AcDbDictionaryIterator> walk(groups->newIterator());
    groups.close();
    int status = walk != nullptr ? 1 : 0;
    while (walk != nullptr && !walk->done()) {
        const AcDbObjectId object = walk->objectId();
        if (!object.isNull() && eraseIfEmpty(object) != 1) status = 0;
        // One that was erased has let the walk stand on the following one.
        if (walk->objectId() == object) walk->next();
    }
    return status;
}
