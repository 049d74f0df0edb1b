/// Fixture of the tests that make, change and end groups: entities and groups by short names, and a
/// picture of all groups of the drawing in which whatever contradicts itself is marked with "!!".
#ifndef TESTS_SUITE_GROUP_EDIT_TEST_H
#define TESTS_SUITE_GROUP_EDIT_TEST_H

#include <algorithm>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "acad/groups.h"
#include "host/output.h"
#include "kz/kz_zaglaid.h"
#include "suite_test.h"

namespace test {

template <auto Destroy>
struct Freed {
    template <class T>
    void operator()(T* record) const {
        Destroy(record);
    }
};
using Group = std::unique_ptr<kz_GroupId, Freed<kz_Group_destroyId>>;
using Object = std::unique_ptr<kz_CADObjId, Freed<kz_CADObjId_destroy>>;
using Set = std::unique_ptr<kz_CADSelSet, Freed<kz_CADSelSet_destroy>>;
/// Values of the fields of an application, by field.
using Fields = std::map<std::string, std::vector<std::string>>;

class GroupEditTest : public SuiteTest {
  protected:
    void TearDown() override {
        kz_Group_endGetNext();
        kz_Error_clearAll();
        SuiteTest::TearDown();
    }

    // --- entities -------------------------------------------------------------------------------

    /// Draws lines under these names.
    void draw(const std::vector<std::string>& names) {
        for (const std::string& name : names) {
            line("0");
            ads_name last = {};
            EXPECT_EQ(acdbEntLast(last), RTNORM);
            enter(name, last);
        }
    }
    void enter(const std::string& name, const ads_name entity) {
        const kz_Char* handle = kz_Ename_toHandle(entity);
        ASSERT_NE(handle, nullptr);
        handles_[name] = kz::toUtf8(handle);
        names_[handles_[name]] = name;
    }
    Object object(const std::string& name) const {
        const auto found = handles_.find(name);
        if (found == handles_.end()) return nullptr;
        return Object(kz_CADObjId_create(kz::toUtf16(found->second).c_str()));
    }
    Set set(const std::vector<std::string>& names) const {
        Set made(kz_CADSelSet_create());
        for (const std::string& name : names)
            EXPECT_EQ(kz_CADSelSet_addObject(made.get(), object(name).get()), 1) << name;
        return made;
    }
    std::string nameOf(const AcDbObjectId& entity) const {
        ads_name name = {};
        if (acdbGetAdsName(name, entity) != Acad::eOk) return "?";
        const kz_Char* handle = kz_Ename_toHandle(name);
        return handle != nullptr ? named(kz::toUtf8(handle)) : "?";
    }
    std::string named(const std::string& handle) const {
        const auto found = names_.find(handle);
        return found != names_.end() ? found->second : "#" + handle;
    }

    // --- groups ---------------------------------------------------------------------------------

    static Group group(const std::string& name) {
        return Group(name.empty() ? nullptr : kz_Group_getId(kz::toUtf16(name).c_str()));
    }
    /// Makes a group of these entities, the first one its master.
    int make(const std::string& name, const std::vector<std::string>& entities,
             const std::string& parent = "", const std::string& sub_group = "",
             const std::string& type = "PIPE") const {
        const Group made(kz_Group_createFromSelSet(
            kz::toUtf16(type).c_str(), kz::toUtf16(name).c_str(), kz::toUtf16(sub_group).c_str(),
            nullptr, set(entities).get(), group(parent).get()));
        return made != nullptr ? 1 : 0;
    }
    int makeChild(const std::string& child, const std::string& parent, int leave = 0) const {
        return kz_Group_makeChild(group(child).get(), group(parent).get(), leave);
    }
    int makeRoot(const std::string& name, int leave = 0) const {
        return kz_Group_makeRootGroup(group(name).get(), leave);
    }
    static int deleteGroup(const std::string& name, int master = 0, int members = 0) {
        // By its name: an id that a fault made invalid would stay the caller's.
        return kz_Group_deleteByName(kz::toUtf16(name).c_str(), master, members);
    }
    /// Erases an entity behind the library's back.
    void erase(const std::string& name) const {
        EXPECT_EQ(kz_CADObjId_erase(object(name).get(), 0), 1) << name;
    }
    /// Rows of the errors of groups that wait on the list, newest first; clears it.
    static std::string errors() {
        std::string out;
        host::setSink(host::Channel::Message,
                      [&out](std::u16string_view text) { out += kz::toUtf8(text); });
        kz_Error_outputAll(1);
        host::setSink(host::Channel::Message, {});
        kz_Error_clearAll();
        return out;
    }

    // --- fields ---------------------------------------------------------------------------------

    static Fields fieldsOf(const ads_name name, const kz_Char* app) {
        Fields fields;
        kz_FldList* list = kz_XData_getFldList(name, nullptr, app);
        for (kz_FldList_start(list); kz_FldList_eol(list) == 0; kz_FldList_next(list)) {
            kz_Char field[300];
            kz_FldList_currFldname(list, field);
            std::vector<std::string>& values = fields[kz::toUtf8(field)];
            const kz_FldNode* node = kz_FldList_curr(list);
            if (node->type != KZ_FLD_LIST) {
                values.push_back(textOf(node));
                continue;
            }
            for (kz_LnkList_start(node->value.list); kz_LnkList_eol(node->value.list) == 0;
                 kz_LnkList_next(node->value.list))
                values.push_back(
                    textOf(static_cast<const kz_FldNode*>(kz_LnkList_getCurr(node->value.list))));
        }
        kz_FldList_destroy(list);
        return fields;
    }
    static std::string textOf(const kz_FldNode* node) {
        const bool text = node->type == KZ_FLD_CHAR || node->type == KZ_FLD_HANDLE;
        return text ? kz::toUtf8(node->value.text) : "";
    }
    static std::string one(const Fields& fields, const std::string& field) {
        const auto found = fields.find(field);
        return found != fields.end() && !found->second.empty() ? found->second.front() : "";
    }
    static std::string joined(const std::vector<std::string>& texts) {
        std::string out;
        for (const std::string& text : texts)
            out += (out.empty() ? "" : " ") + text;
        return out;
    }

    // --- the picture ----------------------------------------------------------------------------

    struct Look {
        std::string name;
        std::vector<AcDbObjectId> entities;  ///< those that are not erased
        Fields fields;
        std::string description;
    };
    /// All groups of the drawing by their keys.
    static std::map<std::string, Look> look() {
        std::map<std::string, Look> groups;
        AcDbDictionary* dictionary = nullptr;
        EXPECT_EQ(editor()->getGroupDictionary(dictionary), Acad::eOk);
        const std::unique_ptr<AcDbDictionaryIterator> walk(dictionary->newIterator());
        dictionary->close();
        for (; !walk->done(); walk->next()) {
            AcDbGroup* group = nullptr;
            if (acdbOpenObject(group, walk->objectId(), AcDb::kForRead) != Acad::eOk) continue;
            Look found;
            found.name = kz::toUtf8(walk->name());
            found.description = kz::toUtf8(group->description());
            std::vector<AcDbObjectId> all;
            group->allEntityIds(all);
            ads_name name = {};
            acdbGetAdsName(name, group->objectId());
            group->close();
            for (const AcDbObjectId& id : all) {
                if (kz_AcGroup_isAcDbObjectErased(&id) == 0) found.entities.push_back(id);
            }
            found.fields = fieldsOf(name, KZ_T("KZ_GRP"));
            groups[found.name] = found;
        }
        return groups;
    }
    static bool isContainer(const std::string& name) { return name.starts_with("KZ_CN"); }

    /// One line a group: its entities in order, the master first, each with its sub-group; parent,
    /// children and what its container holds.
    std::string picture() const {
        const std::map<std::string, Look> groups = look();
        std::map<std::string, std::string> owners;
        std::set<std::string> used;
        std::string out;
        for (const auto& [name, group] : groups) {
            if (!isContainer(name)) out += lineOf(group, groups, owners, used);
        }
        for (const auto& [name, group] : groups) {
            if (!isContainer(name)) continue;
            if (used.count(name) == 0) out += "container " + content(group) + "\n";
            if (group.description != "KZ_CONTAINER") out += "!!description of " + name + "\n";
            if (one(group.fields, "GN") != name) out += "!!GN of " + name + "\n";
            if (group.entities.empty()) out += "!!empty " + name + "\n";
        }
        return out;
    }
    std::string content(const Look& group) const {
        std::vector<std::string> all;
        for (const AcDbObjectId& id : group.entities)
            all.push_back(nameOf(id));
        std::sort(all.begin(), all.end());
        return "[" + joined(all) + "]";
    }

  private:
    std::string lineOf(const Look& group, const std::map<std::string, Look>& groups,
                       std::map<std::string, std::string>& owners,
                       std::set<std::string>& used) const {
        std::string out = group.name + ":", wrong;
        std::map<std::string, std::set<std::string>> marked;  // members by sub-group
        Fields lists;
        for (size_t i = 0; i < group.entities.size(); ++i) {
            ads_name entity = {};
            acdbGetAdsName(entity, group.entities[i]);
            const std::string name = nameOf(group.entities[i]);
            const Fields fields = fieldsOf(entity, KZ_T("KZ_GRP"));
            const Fields marks = fieldsOf(entity, KZ_T("KZ_SUBGRP"));
            out += " " + name;
            if (!owners.emplace(name, group.name).second) wrong += " two groups of " + name;
            if (i == 0) {
                lists = marks;
                wrong += masterFaults(group, entity, fields);
                continue;
            }
            if (one(fields, "MT") != "MM") wrong += " role of " + name;
            if (one(fields, "MN") != one(group.fields, "MN")) wrong += " master of " + name;
            if (fields.size() != 2) wrong += " fields of " + name;
            if (marks.size() > 1) wrong += " sub-groups of " + name;
            if (marks.empty()) continue;
            out += "(" + marks.begin()->first + ")";
            marked[marks.begin()->first].insert(name);
        }
        if (group.entities.empty()) wrong += " no entities";
        for (const auto& [sub_group, handles] : lists) {
            std::set<std::string> listed;
            for (const std::string& handle : handles)
                listed.insert(named(handle));
            if (listed != marked[sub_group]) wrong += " list " + sub_group;
        }
        for (const auto& [sub_group, members] : marked) {
            if (lists.count(sub_group) == 0) wrong += " no list " + sub_group;
        }
        return out + treeOf(group, groups, used, wrong) + (wrong.empty() ? "" : " !!" + wrong) +
               "\n";
    }
    static std::string masterFaults(const Look& group, const ads_name master,
                                    const Fields& fields) {
        std::string wrong;
        const kz_Char* handle = kz_Ename_toHandle(master);
        if (handle == nullptr || kz::toUtf8(handle) != one(group.fields, "MN")) wrong += " MN";
        if (one(fields, "MT") != "MS") wrong += " MT";
        if (one(group.fields, "GN") != group.name) wrong += " GN";
        for (const char* field : {"GN", "PR", "CH", "CN"}) {
            const auto there = group.fields.find(field), here = fields.find(field);
            const bool same = (there == group.fields.end()) == (here == fields.end()) &&
                              (here == fields.end() || here->second == there->second);
            if (!same) wrong += std::string(" master's ") + field;
        }
        return wrong;
    }
    std::string treeOf(const Look& group, const std::map<std::string, Look>& groups,
                       std::set<std::string>& used, std::string& wrong) const {
        std::string out;
        const std::string parent = one(group.fields, "PR");
        if (!parent.empty()) {
            out += " <" + parent;
            const auto found = groups.find(parent);
            if (found == groups.end()) {
                wrong += " parent gone";
            } else {
                const std::vector<std::string> children = childrenOf(found->second);
                if (std::count(children.begin(), children.end(), group.name) != 1) {
                    wrong += " unknown to its parent";
                }
            }
        }
        const std::vector<std::string> children = childrenOf(group);
        if (!children.empty()) out += " >" + joined(children);
        for (const std::string& child : children) {
            const auto found = groups.find(child);
            const bool good =
                found != groups.end() && one(found->second.fields, "PR") == group.name;
            if (!good) wrong += " child " + child;
        }
        const auto container = groups.find(one(group.fields, "CN"));
        if (container == groups.end()) {
            if (!parent.empty() || !children.empty()) wrong += " no container";
            return out;
        }
        used.insert(container->first);
        for (const AcDbObjectId& id : group.entities) {
            const std::vector<AcDbObjectId>& inside = container->second.entities;
            if (std::count(inside.begin(), inside.end(), id) != 1) {
                wrong += " " + nameOf(id) + " not in container";
            }
        }
        return out + " " + content(container->second);
    }
    static std::vector<std::string> childrenOf(const Look& group) {
        const auto found = group.fields.find("CH");
        return found != group.fields.end() ? found->second : std::vector<std::string>();
    }

    std::map<std::string, std::string> handles_;  ///< by name
    std::map<std::string, std::string> names_;    ///< by handle
};

}  // namespace test

#endif
