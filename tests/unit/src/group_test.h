/// Fixture of the tests of groups: makes them the way that the library keeps them, without the
/// operations that make groups, so that trees may be damaged in any way.
#ifndef TESTS_GROUP_TEST_H
#define TESTS_GROUP_TEST_H

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "drawing_test.h"
#include "host/output.h"
#include "kz/kz_zaglaid.h"

namespace test {

struct DestroyGroup {
    void operator()(kz_GroupId* id) const { kz_Group_destroyId(id); }
};
using Group = std::unique_ptr<kz_GroupId, DestroyGroup>;
struct DestroyObject {
    void operator()(kz_CADObjId* id) const { kz_CADObjId_destroy(id); }
};
using Object = std::unique_ptr<kz_CADObjId, DestroyObject>;

class GroupTest : public DrawingTest {
  protected:
    void TearDown() override {
        kz_Group_endGetNext();
        kz_Error_clearAll();
        DrawingTest::TearDown();
    }

    struct Entity {
        ads_name name = {};
    };
    /// A new line.
    static Entity entity() {
        Entity made;
        makeLine(made.name);
        return made;
    }
    static Object objectOf(const Entity& entity) {
        return Object(kz_CADObjId_fromADSEname(entity.name));
    }
    static AcDbDatabase* database() { return acdbHostApplicationServices()->workingDatabase(); }

    /// Enters a group object with a master and `count` members, all with their fields.
    Group make(const kz_Char* name, const kz_Char* type = KZ_T("PIPE"), int count = 1) {
        AcDbDictionary* groups = nullptr;
        EXPECT_EQ(database()->getGroupDictionary(groups, AcDb::kForWrite), Acad::eOk);
        auto* group = new AcDbGroup(type, true);
        AcDbObjectId id, member;
        EXPECT_EQ(groups->setAt(name, group, id), Acad::eOk);
        groups->close();
        std::vector<Entity>& all = entities_[kz::toUtf8(name)];
        for (int i = 0; i <= count; ++i) {
            all.push_back(entity());
            EXPECT_EQ(acdbGetObjectId(member, all.back().name), Acad::eOk);
            EXPECT_EQ(group->append(member), Acad::eOk);
        }
        group->close();
        Group made(kz_GroupId_fromAcDbObjectId(&id));
        writeFields(made.get(), name, type, all);
        return made;
    }
    static void writeFields(const kz_GroupId* id, const kz_Char* name, const kz_Char* type,
                            const std::vector<Entity>& all) {
        const std::u16string handle = kz::toUtf16(handleOf(all.front().name));
        for (const Entity& member : all) {
            const bool master = &member == &all.front();
            setField(member, KZ_T("MT"), master ? KZ_T("MS") : KZ_T("MM"));
            if (!master) {
                kz_Ename_setCharFieldReference(member.name, KZ_T("MN"), handle.c_str(), 1,
                                               KZ_T("KZ_GRP"));
            }
        }
        EXPECT_EQ(kz_Group_setXdata(id, 0, name, type, handle.c_str()), 1);
    }
    static void setField(const Entity& entity, const kz_Char* field, const kz_Char* value) {
        EXPECT_EQ(kz_Ename_setCharFieldReference(entity.name, field, value, 0, KZ_T("KZ_GRP")), 1);
    }
    /// Makes one group the child of another.
    static void tie(const Group& child, const kz_Char* child_name, const Group& parent,
                    const kz_Char* parent_name) {
        EXPECT_EQ(kz_Group_addChildGroupReference(parent.get(), child_name, 1), 1);
        EXPECT_EQ(kz_Group_setParentGroupReference(child.get(), parent_name, 1), 1);
    }
    /// Name of a group; destroys the id.
    static std::string nameOf(kz_GroupId* id) {
        const Group owned(id);
        return id != nullptr ? nameOf(owned) : "(null)";
    }
    static std::string nameOf(const Group& id) {
        kz_Char name[32] = {};
        return kz_Group_getName(name, id.get()) == 1 ? kz::toUtf8(name) : "(none)";
    }
    static void erase(const ads_name name) {
        Object id(kz_CADObjId_fromADSEname(name));
        EXPECT_EQ(kz_CADObjId_erase(id.get(), 0), 1);
    }
    /// The entries of the error list, newest first; clears it.
    static std::string errors() {
        std::string out;
        host::setSink(host::Channel::Message,
                      [&out](std::u16string_view text) { out += kz::toUtf8(text); });
        kz_Error_outputAll(1);
        host::setSink(host::Channel::Message, {});
        kz_Error_clearAll();
        return out;
    }
    /// Which entities a list holds, as group name and index; destroys it.
    std::string show(kz_CADObjIdList* list) {
        std::string out = list == nullptr ? "(null)" : "";
        for (kz_CADObjIdList_start(list); kz_CADObjIdList_eol(list) == 0;
             kz_CADObjIdList_next(list))
            out += (out.empty() ? "" : " ") + which(kz_CADObjIdList_getCurr(list)->ename);
        kz_CADObjIdList_destroy(list);
        return out;
    }
    /// The same for a set.
    std::string show(kz_CADSelSet* set) {
        if (set == nullptr) return "(null)";
        std::string out;
        ads_name name = {};
        for (int32_t i = 0; acedSSName(set->name, i, name) == RTNORM; ++i)
            out += (out.empty() ? "" : " ") + which(name);
        acedSSFree(set->name);
        kz_Free(set);
        return out;
    }
    std::string which(const ads_name name) const {
        for (const auto& [group, all] : entities_) {
            for (size_t i = 0; i < all.size(); ++i) {
                if (ads_name_equal(all[i].name, name)) return group + "." + std::to_string(i);
            }
        }
        return "?";
    }

    std::map<std::string, std::vector<Entity>> entities_;
};

}  // namespace test

#endif
