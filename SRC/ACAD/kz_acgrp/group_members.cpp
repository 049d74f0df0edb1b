/// The entities of a group and of the groups below it.
#include <vector>

#include "ACAD/kz_acgrp/kz_acgrp.h"

namespace {

constexpr const char* kTraceSource = "SRC/ACAD/kz_acgrp";

/// What is fetched, and where it goes.
struct Fetch {
    kz_CADSelSet* set;      ///< may be NULL
    kz_CADObjIdList* list;  ///< may be NULL
    const kz_Char* type;
    const kz_Char* sub_group;
    bool with_master;
};

void add(const Fetch& fetch, const AcDbObjectId& entity) {
    kz::OwnedObject object(kz_CADObjId_fromAcDbObjectId(&entity));
    if (object == nullptr) return;
    if (kz_Group_isAMemberOfSubGroup(object.get(), fetch.sub_group) != 1) return;
    if (fetch.set != nullptr) acedSSAdd(object->ename, fetch.set->name, fetch.set->name);
    if (fetch.list == nullptr) return;
    if (kz_CADObjIdList_insEnd(fetch.list, object.get()) != nullptr)
        static_cast<void>(object.release());
}

/// The entities of one group. @return 1; 0 when it can't be opened
int addOwn(const Fetch& fetch, const kz_GroupId* id) {
    AcDbObjectId object;
    const kz::OwnedObject master(kz_Group_getMasterObject(id));
    if (master == nullptr) return 1;
    AcDbGroup* opened = nullptr;
    if (kz_Group_getAcDbObjectId(&object, id) == 1) {
        acdbOpenObject(opened, object, AcDb::kForRead);
    }
    const kz::Opened<AcDbGroup> group(opened);
    KZ_ASSERTION(opened != nullptr);
    if (!group) {
        kz::submitGroupError(kz::kInvalidGroup);
        return 0;
    }
    if (!kz::isAny(fetch.type) && kz_Str_cmpi(group->description(), fetch.type) != 0) return 1;
    const std::unique_ptr<AcDbGroupIterator> walk(group->newIterator());
    KZ_ASSERTION(walk != nullptr);
    if (walk == nullptr) return 0;
    if (!fetch.with_master) walk->next();
    for (; !walk->done(); walk->next())
        add(fetch, walk->objectId());
    return 1;
}

/// A group on the way down the tree.
struct Level {
    kz::OwnedGroup group;
    int child = 0;
    int children = 0;
    int status = 1;  ///< of the last child
};

/// The way through a tree, children before their parents. A tree may lead back into itself, so each
/// group is gone to once, and the way down is kept here and not on the stack.
class Descent {
  public:
    Descent(const Fetch& fetch, bool with_children) : fetch_(fetch), down_(with_children) {}

    int run(const kz_GroupId* id) {
        int status = enter(kz::OwnedGroup(kz_Group_dupId(id)));
        while (!levels_.empty()) {
            Level& level = levels_.back();
            if (level.child < level.children) {
                const int n = level.child++;
                kz::OwnedGroup child(kz_Group_getNthChild(level.group.get(), fetch_.type, n));
                const int entered = enter(std::move(child));
                if (entered >= 0) levels_.back().status = entered;
                continue;
            }
            const int own = addOwn(fetch_, level.group.get());
            status = own == 1 ? level.status : 0;
            levels_.pop_back();
            if (!levels_.empty()) levels_.back().status = status;
        }
        return status;
    }

  private:
    /// Goes down to a group. @return its status when there is nothing to go down to, else -1
    int enter(kz::OwnedGroup group) {
        if (kz_Group_isValid(group.get()) == 0) {
            kz::submitGroupError(kz::kInvalidGroup);
            return 1;
        }
        if (!visited_.enter(group->ename)) return -1;
        Level level;
        if (down_) level.children = kz_Group_getNumChildren(group.get(), fetch_.type);
        level.group = std::move(group);
        levels_.push_back(std::move(level));
        return -1;
    }

    const Fetch& fetch_;
    bool down_;
    kz::Visited visited_;
    std::vector<Level> levels_;
};

}  // namespace

int kz_AcGroup_getMembers(kz_CADSelSet* set, kz_CADObjIdList* list, const kz_GroupId* id,
                          const kz_Char* type, const kz_Char* subGroup, int noChildren,
                          int includeMaster) {
    const kz::GroupTrace trace(KZ_T("kz_AcGroup_getMembers"));
    const Fetch fetch{set, list, type, subGroup, includeMaster != 0};
    return Descent(fetch, noChildren == 0).run(id);
}

kz_CADSelSet* kz_AcGroup_getMemberSelSet(const kz_GroupId* id, const kz_Char* type,
                                         const kz_Char* subGroup, int noChildren,
                                         int includeMaster) {
    kz::OwnedSet set(kz_CADSelSet_create());
    if (set == nullptr) return nullptr;
    const int status =
        kz_AcGroup_getMembers(set.get(), nullptr, id, type, subGroup, noChildren, includeMaster);
    return status == 1 && kz_CADSelSet_length(set.get()) > 0 ? set.release() : nullptr;
}

kz_CADObjIdList* kz_AcGroup_getMemberList(const kz_GroupId* id, const kz_Char* type,
                                          const kz_Char* subGroup, int noChildren,
                                          int includeMaster) {
    kz::OwnedObjects list(kz_CADObjIdList_create(nullptr));
    if (list == nullptr) return nullptr;
    const int status =
        kz_AcGroup_getMembers(nullptr, list.get(), id, type, subGroup, noChildren, includeMaster);
    kz_CADObjIdList_start(list.get());
    return status == 1 && kz_CADObjIdList_length(list.get()) > 0 ? list.release() : nullptr;
}
