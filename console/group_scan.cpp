/// The groups of the drawing in the editor, read once.
#include "group_scan.h"

#include <memory>

#include "acad/dict.h"
#include "acad/groups.h"
#include "kz/kz_group.h"
#include "kz/kz_xdata.h"
#include "kz_tls21an/text.h"

namespace console {

namespace {

constexpr const kz_Char* kGroupApp = KZ_T("KZ_GRP");
constexpr const kz_Char* kPartApp = KZ_T("KZ_SUBGRP");

/// The texts of a list of nodes, those of a field of several values too.
void takeTexts(kz_LnkList* list, std::vector<std::u16string>& texts) {
    for (kz_LnkList_start(list); kz_LnkList_eol(list) != 1; kz_LnkList_next(list)) {
        const auto* node = static_cast<const kz_FldNode*>(kz_LnkList_getCurr(list));
        if (node == nullptr) continue;
        const bool text = node->type == KZ_FLD_CHAR || node->type == KZ_FLD_HANDLE;
        if (text && node->value.text != nullptr) texts.emplace_back(node->value.text);
    }
}

FieldTexts fieldsOf(const ads_name name, const kz_Char* app) {
    FieldTexts fields;
    kz_FldList* list = kz_XData_getFldList(name, nullptr, app);
    if (list == nullptr) return fields;
    for (kz_FldList_start(list); kz_FldList_eol(list) != 1; kz_FldList_next(list)) {
        kz_FldNode* node = kz_FldList_curr(list);
        if (node == nullptr || node->name == nullptr) continue;
        std::vector<std::u16string>& texts = fields[kz::toUpper(node->name)];
        const bool text = node->type == KZ_FLD_CHAR || node->type == KZ_FLD_HANDLE;
        if (text && node->value.text != nullptr) texts.emplace_back(node->value.text);
        if (node->type == KZ_FLD_LIST) takeTexts(node->value.list, texts);
    }
    kz_FldList_destroy(list);
    return fields;
}

std::u16string oneOf(const FieldTexts& fields, const kz_Char* name) {
    const auto found = fields.find(name);
    return found == fields.end() || found->second.empty() ? std::u16string() : found->second[0];
}

GroupReferences referencesOf(const FieldTexts& fields) {
    GroupReferences references;
    references.name = oneOf(fields, u"GN");
    references.parent = oneOf(fields, u"PR");
    references.container = oneOf(fields, u"CN");
    const auto children = fields.find(u"CH");
    if (children != fields.end()) references.children = children->second;
    return references;
}

/// Reads the group object; false for another program's group.
bool readGroup(ScannedGroup& group, std::vector<AcDbObjectId>& listed) {
    ads_name name;
    if (acdbGetAdsName(name, group.id) != Acad::eOk) return false;
    const FieldTexts fields = fieldsOf(name, kGroupApp);
    if (fields.empty() && kz_Group_isAMovarGroupName(group.key.c_str()) != 1) return false;
    group.references = referencesOf(fields);
    group.master = kz::toUpper(oneOf(fields, u"MN"));
    group.handle = handleOf(group.id);
    AcDbGroup* object = nullptr;
    if (acdbOpenObject(object, group.id, AcDb::kForRead) != Acad::eOk) return false;
    const ACHAR* type = object->description();
    group.type = type != nullptr ? type : u"";
    object->allEntityIds(listed);
    object->close();
    group.is_container =
        group.type == u"KZ_CONTAINER" || kz_Group_isAContainerGroupName(group.key.c_str()) == 1;
    return true;
}

ScannedEntity readEntity(AcDbObjectId id, const std::u16string& handle) {
    ScannedEntity entity;
    entity.id = id;
    entity.handle = handle;
    ads_name name;
    if (acdbGetAdsName(name, id) != Acad::eOk) return entity;
    const FieldTexts fields = fieldsOf(name, kGroupApp);
    entity.role = oneOf(fields, u"MT");
    entity.master = kz::toUpper(oneOf(fields, u"MN"));
    entity.references = referencesOf(fields);
    entity.parts = fieldsOf(name, kPartApp);
    return entity;
}

}  // namespace

std::u16string handleOf(AcDbObjectId id) {
    kz_Char handle[256] = {};
    if (id.isNull() || kz_AcCAD_getHandleFromAcDbObjectId(handle, &id) != 1) return {};
    return kz::toUpper(handle);
}

bool isThere(const std::u16string& handle) {
    AcDbObjectId id;
    return kz_AcCAD_getAcDbObjIdFromHandle(&id, handle.c_str(), nullptr) == 1 &&
           !handleOf(id).empty();
}

size_t GroupScan::groupNamed(const std::u16string& name) const {
    const auto found = by_key.find(kz::toUpper(name));
    return found == by_key.end() ? kNobody : found->second;
}

size_t GroupScan::entityOf(const std::u16string& handle) const {
    const auto found = by_handle.find(handle);
    return found == by_handle.end() ? kNobody : found->second;
}

size_t GroupScan::add(AcDbObjectId id, const std::u16string& handle) {
    const auto [place, fresh] = by_handle.emplace(handle, entities.size());
    if (fresh) entities.push_back(readEntity(id, handle));
    return place->second;
}

std::vector<size_t> GroupScan::roots() const {
    enum : size_t { kUnknown = kNobody - 1, kOnWay = kNobody - 2 };
    std::vector<size_t> roots(groups.size(), kUnknown);
    std::vector<size_t> way;
    for (size_t start = 0; start < groups.size(); ++start) {
        size_t at = start;
        way.clear();
        while (at != kNobody && roots[at] == kUnknown && !groups[at].is_container) {
            roots[at] = kOnWay;
            way.push_back(at);
            at = groupNamed(groups[at].references.parent);
            if (at != kNobody && groups[at].is_container) at = kNobody;
        }
        size_t root = kNobody;
        if (at != kNobody && !way.empty() && roots[at] != kOnWay) root = roots[at];
        if (at == kNobody && !way.empty()) root = way.back();
        for (const size_t group : way)
            roots[group] = root;
        if (groups[start].is_container) roots[start] = kNobody;
    }
    return roots;
}

GroupScan scanGroups() {
    GroupScan scan;
    const AcDbDatabase* database = acdbHostApplicationServices()->workingDatabase();
    AcDbDictionary* dictionary = nullptr;
    if (database == nullptr || database->getGroupDictionary(dictionary) != Acad::eOk) return scan;
    const std::unique_ptr<AcDbDictionaryIterator> walk(dictionary->newIterator());
    for (; walk != nullptr && !walk->done(); walk->next()) {
        ScannedGroup group;
        group.key = walk->name();
        group.id = walk->objectId();
        std::vector<AcDbObjectId> listed;
        if (!readGroup(group, listed)) continue;
        for (const AcDbObjectId& id : listed) {
            const std::u16string handle = handleOf(id);
            if (handle.empty()) {
                ++group.gone;
            } else {
                group.entities.push_back(scan.add(id, handle));
            }
        }
        scan.by_key.emplace(kz::toUpper(group.key), scan.groups.size());
        scan.groups.push_back(std::move(group));
    }
    dictionary->close();
    return scan;
}

}  // namespace console
