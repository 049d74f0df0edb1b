/// Containers: the groups that hold the entities of whole trees, so that these are picked as one.
#include "ACAD/cad_rx/cad_rx.h"
#include "ACAD/kz_acgrp/group_edit.h"

namespace {

constexpr const char* kTraceSource = "SRC/ACAD/kz_acgrp";

constexpr const kz_Char* kDescription = KZ_T("KZ_CONTAINER");
constexpr const kz_Char* kPrefix = KZ_T("KZ_CN_");
/// The key under which a dictionary makes a name of its own.
constexpr const kz_Char* kAnonymous = KZ_T("*A");

/// Enters a new container into the working database under a name of its own, or at least one that
/// the dictionary makes. @return its object; null when it can't be entered
AcDbObjectId enterContainer(kz_Char* name) {
    AcDbObjectId object;
    std::unique_ptr<AcDbGroup> group(new AcDbGroup(kDescription, true));
    KZ_ASSERTION(group != nullptr);
    AcDbDatabase* const working = kz::workingDatabase();
    AcDbDictionary* opened = nullptr;
    if (group == nullptr || working == nullptr) return {};
    if (working->getGroupDictionary(opened, AcDb::kForWrite) != Acad::eOk) return {};
    const kz::Opened<AcDbDictionary> groups(opened);
    if (groups->setAt(kAnonymous, group.get(), object) != Acad::eOk) return {};
    const kz::Opened<AcDbGroup> entered(group.release());
    kz_Char* key = nullptr;
    groups->nameAt(object, key);
    const kz::OwnedText anonymous(key);
    if (anonymous == nullptr) return object;
    if (kz_Group_getUniqueName(name, kPrefix) != 1) {
        kz_Group_prefixName(name, anonymous.get(), kPrefix);
    }
    if (!groups->setName(anonymous.get(), name)) {
        kz_Str_ncpy(name, anonymous.get(), kz::kLongestName);
    }
    return object;
}

/// Opens a container to be written and a group to be read, or neither.
struct Pair {
    Pair(const kz_GroupId* container, const kz_GroupId* group) {
        AcDbObjectId target_id, source_id;
        if (kz_Group_getAcDbObjectId(&target_id, container) != 1) return;
        if (kz_Group_getAcDbObjectId(&source_id, group) != 1) return;
        target = kz::openGroup(target_id, AcDb::kForWrite);
        if (target) source = kz::openGroup(source_id, AcDb::kForRead);
    }
    bool isOpen() const { return target && source; }

    kz::Opened<AcDbGroup> target;
    kz::Opened<AcDbGroup> source;
};

bool areGiven(const kz_GroupId* a, const kz_GroupId* b) {
    return kz_Group_isNull(a) == 0 && kz_Group_isNull(b) == 0;
}

}  // namespace

// --- making -------------------------------------------------------------------------------------

kz_GroupId* kz_AcContainerGroup_create(kz_Char* name, const kz_GroupId* first) {
    const kz::GroupTrace trace(KZ_T("kz_AcContainerGroup_create"));
    if (name == nullptr) return nullptr;
    *name = 0;
    const AcDbObjectId object = enterContainer(name);
    if (object.isNull()) return nullptr;
    kz::OwnedGroup id(kz_GroupId_fromAcDbObjectId(&object));
    const bool filled =
        id != nullptr && *name != 0 && kz_Group_addToContainerGroup(id.get(), first) == 1;
    KZ_ASSERTION(filled);
    if (!filled) {
        // An empty group that nobody knows must not stay in the drawing.
        kz_AcDbGroup_delete(&object);
        return nullptr;
    }
    kz_Group_setXdata(id.get(), 1, name, nullptr, nullptr);
    return id.release();
}

kz_GroupId* kz_Group_createContainerGroup(const kz_GroupId* root) {
    const kz::GroupTrace trace(KZ_T("kz_Group_createContainerGroup"));
    kz_Char name[kz::kNameSize];
    if (kz_Group_isNull(root) == 1 || kz_Group_isARootGroup(root) == 0) return nullptr;
    kz_GroupId* container = kz_Group_getContainerGroup(root);
    if (container != nullptr) return container;
    container = kz_AcContainerGroup_create(name, root);
    if (container == nullptr) return nullptr;
    if (kz_Group_setContainerGroupReference(root, name, 1) == 1) return container;
    kz_AcGroup_deleteByGroupObjId(&container);
    return nullptr;
}

// --- entities -----------------------------------------------------------------------------------

int kz_AcDbGroup_append(AcDbGroup* target, const AcDbGroup* source) {
    const std::unique_ptr<AcDbGroupIterator> walk(source != nullptr ? source->newIterator()
                                                                    : nullptr);
    KZ_ASSERTION(walk != nullptr);
    if (walk == nullptr || target == nullptr) return 0;
    for (; !walk->done(); walk->next()) {
        const Acad::ErrorStatus status = target->append(walk->objectId());
        if (status != Acad::eOk && status != Acad::eAlreadyInGroup) return 0;
    }
    return 1;
}

int kz_AcDbGroup_remove(AcDbGroup* target, const AcDbGroup* source) {
    KZ_ASSERTION(target != nullptr && source != nullptr);
    if (target == nullptr || source == nullptr) return 0;
    const std::unique_ptr<AcDbGroupIterator> walk(source->newIterator());
    KZ_ASSERTION(walk != nullptr);
    Acad::ErrorStatus status = walk != nullptr ? Acad::eOk : Acad::eOutOfMemory;
    for (; walk != nullptr && !walk->done(); walk->next())
        status = target->remove(walk->objectId());
    if (target->numEntities() == 0) target->erase(true);
    return status == Acad::eOk ? 1 : 0;
}

int kz_Group_addToContainerGroup(const kz_GroupId* container, const kz_GroupId* group) {
    const kz::GroupTrace trace(KZ_T("kz_Group_addToContainerGroup"));
    if (!areGiven(container, group)) return 0;
    const Pair pair(container, group);
    return pair.isOpen() ? kz_AcDbGroup_append(pair.target.get(), pair.source.get()) : 0;
}

int kz_Group_addMemberToContainerGroup(const kz_GroupId* container, const kz_CADObjId* object) {
    const kz::GroupTrace trace(KZ_T("kz_Group_addMemberToContainerGroup"));
    AcDbObjectId target_id, entity;
    if (kz_Group_isNull(container) == 1 || kz_CADObjId_isNull(object) == 1) return 0;
    if (kz_Group_getAcDbObjectId(&target_id, container) != 1) return 0;
    if (kz_CADObjId_getAcDbObjectId(&entity, object) != 1) return 0;
    const kz::Opened<AcDbGroup> target = kz::openGroup(target_id, AcDb::kForWrite);
    if (!target) return 0;
    const Acad::ErrorStatus status = target->append(entity);
    const bool inside = status == Acad::eOk || status == Acad::eAlreadyInGroup;
    KZ_ASSERTION(inside);
    return inside ? 1 : 0;
}

int kz_Group_removeFromContainerGroup(const kz_GroupId* container, const kz_GroupId* group) {
    const kz::GroupTrace trace(KZ_T("kz_Group_removeFromContainerGroup"));
    if (!areGiven(container, group)) return 0;
    const Pair pair(container, group);
    return pair.isOpen() ? kz_AcDbGroup_remove(pair.target.get(), pair.source.get()) : 0;
}

int kz_Group_moveToContainerGroup(const kz_GroupId* group, const kz_GroupId* container,
                                  int leaveChildren) {
    const kz::GroupTrace trace(KZ_T("kz_Group_moveToContainerGroup"));
    kz_Char name[kz::kNameSize];
    if (!areGiven(group, container) || kz_Group_getName(name, container) != 1) return 0;
    const auto move = [&](const kz_GroupId* moved) {
        const kz::OwnedGroup old(kz_Group_getContainerGroup(moved));
        // Out of its own container it would take the entities for nothing, perhaps the last ones.
        const bool other = old != nullptr && kz_Group_isEqual(old.get(), container) == 0;
        if (other) kz_Group_removeFromContainerGroup(old.get(), moved);
        if (kz_Group_addToContainerGroup(container, moved) != 1) return 0;
        return kz_Group_setContainerGroupReference(moved, name, 1);
    };
    if (leaveChildren != 0) return move(group);
    int status = 0;
    for (const kz::OwnedGroup& moved : kz::branchOf(group))
        status = move(moved.get());
    return status;
}
