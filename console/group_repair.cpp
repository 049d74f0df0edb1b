/// Writes what a check has mended: each group and entity once, then what is derived from them.
#include "acad/groups.h"
#include "group_check.h"
#include "kz/kz_group_edit.h"
#include "kz/kz_group_fields.h"
#include "kz/kz_xdata.h"
#include "kz_tls21an/text.h"

namespace console {

namespace {

constexpr const kz_Char* kGroupApp = KZ_T("KZ_GRP");

/// The fields of one object: those with a value are set, the others removed.
class FieldWriter {
  public:
    FieldWriter() : list_(kz_FldList_create(nullptr, 0, nullptr, 0)) {}
    ~FieldWriter() { kz_FldList_destroy(list_); }
    FieldWriter(const FieldWriter&) = delete;
    FieldWriter& operator=(const FieldWriter&) = delete;

    void text(const kz_Char* field, const std::u16string& value) {
        if (value.empty()) {
            gone_.push_back(field);
        } else {
            good_ = kz_FldList_modChar(list_, field, value.c_str()) == 1 && good_;
        }
    }
    void handle(const kz_Char* field, const std::u16string& value) {
        good_ = kz_FldList_modHandle(list_, field, value.c_str()) == 1 && good_;
    }
    void references(const GroupReferences& references) {
        text(u"GN", references.name);
        text(u"PR", references.parent);
        text(u"CN", references.container);
        if (references.children.empty()) gone_.push_back(u"CH");
        for (const std::u16string& child : references.children)
            good_ = kz_FldList_addCharVal(list_, u"CH", child.c_str()) == 1 && good_;
    }
    bool write(AcDbObjectId id) {
        ads_name name;
        if (!good_ || acdbGetAdsName(name, id) != Acad::eOk) return false;
        if (kz_XData_modFldList(name, list_, kGroupApp) != 1) return false;
        for (const kz_Char* field : gone_) {
            if (kz_XData_deleteFld(name, field, kGroupApp) != 1) return false;
        }
        return true;
    }

  private:
    kz_FldList* list_;
    std::vector<const kz_Char*> gone_;
    bool good_ = true;
};

/// Gives a group object this list of entities, and a type.
bool writeList(const ScannedGroup& group, const std::vector<AcDbObjectId>& entities) {
    AcDbGroup* object = nullptr;
    if (acdbOpenObject(object, group.id, AcDb::kForWrite) != Acad::eOk) return false;
    bool good = object->setDescription(group.type.c_str()) == Acad::eOk;
    good = object->clear() == Acad::eOk && good;
    for (const AcDbObjectId& entity : entities)
        good = object->append(entity) == Acad::eOk && good;
    object->close();
    return good;
}

}  // namespace

void GroupCheck::writeGroup(size_t index, std::vector<Finding>& failed) {
    const ScannedGroup& one = group(index);
    bool good = true;
    if (isErased(index)) {
        good = kz_AcDbGroup_delete(&one.id) == 1;
    } else {
        if ((changes_[index] & kFields) != 0) {
            FieldWriter fields;
            fields.references(one.references);
            fields.text(u"MN", one.master);
            if (!one.other_name.empty()) fields.text(u"OL", one.other_name);
            good = fields.write(one.id);
        }
        if ((changes_[index] & (kList | kType)) != 0) {
            std::vector<AcDbObjectId> entities;
            for (const size_t at : one.entities)
                entities.push_back(entity(at).id);
            good = writeList(one, entities) && good;
        }
    }
    if (!good) failed.push_back({one.key, "could not be written", {}});
}

void GroupCheck::writeEntity(size_t index, std::vector<Finding>& failed) {
    const ScannedEntity& one = entity(index);
    FieldWriter fields;
    fields.references(one.references);
    fields.text(u"MT", one.role);
    if (one.master.empty()) {
        fields.text(u"MN", {});
    } else {
        fields.handle(u"MN", one.master);
    }
    if (!fields.write(one.id)) failed.push_back({one.handle, "could not be written", {}});
}

/// A tree without a container gets one with the entities of all its groups.
void GroupCheck::writeNewContainers(std::vector<Finding>& failed) {
    for (const std::vector<size_t>& tree : without_container_) {
        ads_name name;
        bool good = acdbGetAdsName(name, group(tree.front()).id) == Acad::eOk;
        kz_GroupId* root = good ? kz_GroupId_fromADSEname(name) : nullptr;
        kz_GroupId* container = kz_Group_createContainerGroup(root);
        kz_Char key[32] = {};
        good = kz_Group_getName(key, container) == 1;
        for (size_t i = 1; good && i < tree.size(); ++i) {
            good = acdbGetAdsName(name, group(tree[i]).id) == Acad::eOk;
            kz_GroupId* member = good ? kz_GroupId_fromADSEname(name) : nullptr;
            good = kz_Group_addToContainerGroup(container, member) == 1 &&
                   kz_Group_setContainerGroupReference(member, key, 1) == 1;
            kz_Group_destroyId(member);
        }
        kz_Group_destroyId(container);
        kz_Group_destroyId(root);
        if (!good) failed.push_back({group(tree.front()).key, "has got no container", {}});
    }
}

std::vector<Finding> GroupCheck::write() {
    std::vector<Finding> failed;
    for (size_t i = 0; i < scan_.entities.size(); ++i) {
        if (entity_changed_[i]) writeEntity(i, failed);
    }
    for (size_t i = 0; i < scan_.groups.size(); ++i) {
        if (changes_[i] != 0) writeGroup(i, failed);
    }
    for (size_t i = 0; i < scan_.groups.size(); ++i) {
        if ((changes_[i] & kParts) == 0) continue;
        ads_name name;
        const bool there = acdbGetAdsName(name, group(i).id) == Acad::eOk;
        kz_GroupId* id = there ? kz_GroupId_fromADSEname(name) : nullptr;
        // Without members there is nothing to list, which the library tells as 0.
        const bool good = kz_Group_updateSubGroupRefs(id) == 1 || group(i).entities.size() == 1;
        kz_Group_destroyId(id);
        if (!good) failed.push_back({group(i).key, "has got no lists of sub-groups", {}});
    }
    writeNewContainers(failed);
    return failed;
}

}  // namespace console
