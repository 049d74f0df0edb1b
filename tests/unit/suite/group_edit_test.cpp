// Groups made, changed and ended: what each operation leaves in the drawing, told as a picture of
// all groups; damaged trees; and every operation with each platform call failing.
#include <functional>

#include "acad/blocks.h"
#include "group_edit_test.h"
#include "host/testing.h"
#include "host/undo.h"

namespace {

using test::Fields;
using test::Group;
using test::Object;
using test::Set;

class GroupEdit : public test::GroupEditTest {
  protected:
    int add(const std::string& name, const std::string& entity, const kz_Char* sub = nullptr) {
        return kz_Group_add(group(name).get(), object(entity).get(), sub);
    }
    int remove(const std::string& name, const std::string& entity) {
        int erased = 7;
        const int status = kz_Group_removeMember(&erased, group(name).get(), object(entity).get());
        return erased == 1 ? -status : status;
    }
    int setMaster(const std::string& name, const std::string& entity) {
        return kz_Group_setMasterObject(group(name).get(), object(entity).get());
    }
    static int deleteAll(const std::string& name, const kz_Char* type) {
        Group id = group(name);
        const bool goes = kz_Group_isTypeOf(id.get(), type) == 1;
        const int result = kz_Group_deleteAll(id.get(), type, 0, 0);
        if (goes) id.release();
        return result;
    }
    /// Writes a reference of a group object and its master, as damage does.
    static void refer(const std::string& name, const kz_Char* field, const kz_Char* value) {
        EXPECT_EQ(kz_Group_setCharFieldReference(group(name).get(), 0, 1, field, value, 0), 1);
    }
    void lock(const std::string& entity) {
        lisp(
            "(if (not (tblsearch \"LAYER\" \"LOCKED\")) (entmake '((0 . \"LAYER\") (100 . "
            "\"AcDbSymbolTableRecord\") (100 . \"AcDbLayerTableRecord\") (2 . \"LOCKED\") (70 . "
            "4) (62 . 7) (6 . \"CONTINUOUS\"))))");
        const Object id = object(entity);
        AcDbEntity* opened = nullptr;
        AcDbObjectId object_id;
        ASSERT_EQ(kz_CADObjId_getAcDbObjectId(&object_id, id.get()), 1);
        ASSERT_EQ(acdbOpenObject(opened, object_id, AcDb::kForWrite), Acad::eOk);
        EXPECT_EQ(opened->setLayer(u"LOCKED"), Acad::eOk);
        opened->close();
    }
    Fields fields(const std::string& entity, const kz_Char* app) const {
        return fieldsOf(object(entity)->ename, app);
    }
};

// --- creation -----------------------------------------------------------------------------------

TEST_F(GroupEdit, a_group_has_its_master_first_whoever_chose_it) {
    draw({"a", "b", "c", "d", "e", "f"});
    const auto create = [&](const kz_Char* name, const kz_Char* sub, const char* master,
                            const std::vector<std::string>& all) {
        const Set chosen = all.empty() ? nullptr : set(all);
        const Group made(kz_Group_createFromSelSet(
            KZ_T("*"), name, sub, master ? object(master).get() : nullptr, chosen.get(), nullptr));
        return made != nullptr;
    };
    EXPECT_TRUE(create(KZ_T("ALONE"), KZ_T("S"), "a", {}));
    EXPECT_TRUE(create(KZ_T("SET_OF_ONE"), KZ_T("S"), nullptr, {"b"}));
    EXPECT_EQ(picture(), "ALONE: a\nSET_OF_ONE: b\n");
    deleteGroup("ALONE");
    deleteGroup("SET_OF_ONE");
    EXPECT_TRUE(create(KZ_T("INSIDE"), KZ_T("s"), "b", {"a", "b", "c"}));
    EXPECT_TRUE(create(KZ_T("OUTSIDE"), KZ_T("*"), "d", {"e", "f"}));
    EXPECT_EQ(picture(), "INSIDE: b a(S) c(S)\nOUTSIDE: d e f\n");
    kz_Char type[256], old_name[32];
    EXPECT_EQ(kz_Group_getType(type, group("INSIDE").get()), 1);
    EXPECT_EQ(kz_Group_getOldName(old_name, group("INSIDE").get()), 1);
    EXPECT_EQ(kz::toUtf8(type) + kz::toUtf8(old_name), "*INSIDE");
    EXPECT_FALSE(create(nullptr, nullptr, nullptr, {}));
    EXPECT_EQ(errors(), "");
}

TEST_F(GroupEdit, names_that_are_too_long_taken_or_anonymous) {
    draw({"a", "b", "c"});
    EXPECT_EQ(make("A234567890123456789012345678XX", {"a"}), 1);
    EXPECT_EQ(make("A234567890123456789012345678", {"b"}), 1);
    EXPECT_EQ(make("*FREE", {"c"}), 1);
    std::vector<std::string> names;
    for (const auto& [name, group] : look())
        names.push_back(name);
    ASSERT_EQ(names.size(), 3u);
    EXPECT_EQ(names[0], "A234567890123456789012345678");
    for (size_t i = 1; i < names.size(); ++i)
        EXPECT_EQ(kz_Group_getGroupNameType(kz::toUtf16(names[i]).c_str()), 1) << names[i];
}

TEST_F(GroupEdit, what_copies_bring_along_is_no_bond) {
    draw({"a", "b", "c"});
    make("P", {"c"});
    make("G", {"a", "b"}, "P", "S");
    lisp("(setq e (ssname (ssget \"_X\") 0))");
    for (const char* name : {"a", "b"}) {
        // A copy has all extended data of its source.
        ads_name copied = {};
        const Object source = object(name);
        resbuf* list = acdbEntGet(source->ename);
        resbuf* data = kz_Xdata_getFromEnt(source->ename, nullptr);
        ASSERT_EQ(acdbEntMakeX(list, copied), RTNORM);
        enter(std::string(name) + "2", copied);
        AcDbObject* opened = nullptr;
        AcDbObjectId id;
        acdbGetObjectId(id, copied);
        ASSERT_EQ(acdbOpenObject(opened, id, AcDb::kForWrite), Acad::eOk);
        EXPECT_EQ(opened->setXData(data), Acad::eOk);
        opened->close();
        acutRelRb(list);
        acutRelRb(data);
    }
    EXPECT_EQ(make("COPY", {"a2", "b2"}), 1);
    const std::string before = "G: a b(S) <P [a b c]\nP: c >G [a b c]\n";
    EXPECT_EQ(picture(), "COPY: a2 b2\n" + before);
    EXPECT_EQ(deleteGroup("COPY"), 1);
    EXPECT_EQ(add("P", "a2"), 1);
    EXPECT_EQ(setMaster("P", "b2"), 1);
    EXPECT_EQ(picture(), "G: a b(S) <P [a a2 b b2 c]\nP: b2 c a2 >G [a a2 b b2 c]\n");
}

TEST_F(GroupEdit, a_mark_makes_a_group_of_what_came_behind_it) {
    draw({"a"});
    kz_CADSelSetMarker* mark = kz_Group_begin();
    draw({"b", "c"});
    const Group made(kz_Group_end(mark, nullptr, KZ_T("NEW"), nullptr, nullptr, nullptr));
    EXPECT_NE(made, nullptr);
    EXPECT_EQ(picture(), "NEW: b c\n");
    EXPECT_EQ(kz_Group_end(kz_Group_begin(), nullptr, nullptr, nullptr, nullptr, nullptr), nullptr);
}

TEST_F(GroupEdit, a_parent_takes_a_new_group_into_its_tree) {
    draw({"a", "b", "c"});
    make("R", {"a"});
    make("C", {"b"}, "R");
    make("D", {"c"}, "C");
    EXPECT_EQ(picture(), "C: b <R >D [a b c]\nD: c <C [a b c]\nR: a >C [a b c]\n");
}

TEST_F(GroupEdit, the_master_has_a_reactor_that_moves_with_it) {
    draw({"a", "b"});
    make("G", {"a", "b"});
    kz_MasterEvents events{};
    const auto sees = [&](const char* entity) {
        // A group's id begins with a name as an object's does.
        const Group id = group("G");
        const Object as_object(kz_CADObjId_fromADSEname(id->ename));
        return SUITE(kz_Group_getMasterEntEvents)(&events, as_object.get(), object(entity).get());
    };
    EXPECT_EQ(sees("a"), 1);
    EXPECT_EQ(setMaster("G", "b"), 1);
    EXPECT_EQ(sees("a"), 0);
    EXPECT_EQ(sees("b"), 1);
}

// --- deletion -----------------------------------------------------------------------------------

TEST_F(GroupEdit, deletion_tells_what_stayed) {
    draw({"a", "b", "c", "d", "e", "f"});
    make("M", {"a", "b"});
    make("N", {"c", "d"});
    make("O", {"e", "f"});
    lock("a");
    lock("d");
    EXPECT_EQ(deleteGroup("M", 1, 0), -2);
    EXPECT_EQ(deleteGroup("N", 1, 1), -3);
    EXPECT_EQ(deleteGroup("O", 0, 1), 1);
    EXPECT_EQ(picture(), "");
    // The fields of what stays are left.
    EXPECT_EQ(one(fields("b", KZ_T("KZ_GRP")), "MT"), "MM");
    EXPECT_EQ(object("c") != nullptr && kz_AcGroup_isAdsNameErased(object("c")->ename) == 1, true);
    EXPECT_EQ(kz_AcGroup_isAdsNameErased(object("e")->ename), 0);
    errors();
    EXPECT_EQ(kz_Group_delete(nullptr, 0, 0), -1);
    EXPECT_NE(errors().find("Invalid group identifier"), std::string::npos);
    EXPECT_EQ(kz_Group_deleteByName(KZ_T("NOBODY"), 0, 0), -1);
    EXPECT_EQ(errors(), "");
    EXPECT_EQ(kz_Group_deleteAll(nullptr, nullptr, 0, 0), -1);
}

TEST_F(GroupEdit, children_of_a_deleted_group_move_up) {
    draw({"a", "b", "c", "d", "e"});
    make("R", {"a"});
    make("M", {"b"}, "R");
    for (const char* child : {"c", "d", "e"})
        make("C" + std::string(child), {child}, "M");
    EXPECT_EQ(deleteGroup("M"), 1);
    EXPECT_EQ(picture(),
              "Cc: c <R [a c d e]\nCd: d <R [a c d e]\nCe: e <R [a c d e]\nR: a >Cc Cd Ce [a c d "
              "e]\n");
    EXPECT_EQ(deleteGroup("R"), 1);
    EXPECT_EQ(picture(), "Cc: c [c d e]\nCd: d [c d e]\nCe: e [c d e]\n");
    // The last of those that share a container takes it along.
    for (const char* name : {"Cc", "Cd", "Ce"})
        EXPECT_EQ(deleteGroup(name), 1);
    EXPECT_EQ(look().size(), 0u);
}

TEST_F(GroupEdit, a_tree_is_deleted_through_the_groups_of_a_type) {
    draw({"a", "b", "c", "d", "e"});
    make("R", {"a"}, "", "", "WALL");
    make("P", {"b"}, "R", "", "PIPE");
    make("PP", {"c"}, "P", "", "PIPE");
    make("PW", {"d"}, "P", "", "WALL");
    make("PPW", {"e"}, "PP", "", "WALL");
    EXPECT_EQ(deleteAll("R", KZ_T("pipe")), 1);
    EXPECT_EQ(picture(), "PPW: e <R [a d e]\nPW: d <R [a d e]\nR: a >PW PPW [a d e]\n");
    EXPECT_EQ(deleteAll("R", KZ_T("*")), 1);
    EXPECT_EQ(look().size(), 0u);
}

TEST_F(GroupEdit, members_are_erased_by_sub_group_and_never_the_master) {
    draw({"a", "b", "c", "d", "e", "f"});
    make("R", {"a", "b", "c"}, "", "S");
    make("C", {"d", "e", "f"}, "R", "S");
    add("R", "c", KZ_T("T"));
    const auto erased = [&](const kz_Char* sub, int children) {
        return kz_Group_deleteMembers(group("R").get(), nullptr, sub, children);
    };
    EXPECT_EQ(erased(KZ_T("NOBODY"), 1), 0);
    EXPECT_EQ(erased(KZ_T("S"), 0), 1);
    EXPECT_EQ(picture(), "C: d e(S) f(S) <R [a c d e f]\nR: a c(T) >C [a c d e f]\n");
    lock("f");
    EXPECT_EQ(erased(nullptr, 1), 1);  // what came of the last one
    EXPECT_EQ(picture(), "C: d f(S) <R [a d f]\nR: a >C [a d f]\n");
    EXPECT_EQ(erased(nullptr, 0), 0);
    EXPECT_EQ(kz_Group_deleteMembers(nullptr, nullptr, nullptr, 0), 0);
    EXPECT_NE(errors().find("No group id specified"), std::string::npos);
}

TEST_F(GroupEdit, the_purges) {
    draw({"a", "b", "c", "d"});
    make("R", {"a"});
    make("LOST", {"b", "c"}, "R");
    make("KZ_0_1", {"b", "c"});  // the walk knows groups of the system by their names only
    EXPECT_EQ(kz_Group_purge(), 1);
    EXPECT_EQ(group("KZ_0_1") != nullptr, true);
    erase("b");
    EXPECT_EQ(kz_Group_purge(), 1);
    EXPECT_EQ(group("KZ_0_1"), nullptr);
    EXPECT_NE(group("LOST"), nullptr);
    EXPECT_EQ(kz_Group_deleteByName(KZ_T("LOST"), 0, 0), 1);

    // A group that nobody of this system made.
    AcDbDictionary* groups = nullptr;
    AcDbObjectId id;
    ASSERT_EQ(editor()->getGroupDictionary(groups, AcDb::kForWrite), Acad::eOk);
    auto* empty = new AcDbGroup(u"empty", true);
    ASSERT_EQ(groups->setAt(u"OTHERS", empty, id), Acad::eOk);
    empty->close();
    groups->close();
    make("KEPT", {"d"});
    EXPECT_EQ(kz_Group_purgeAllEmptyGroups(), 1);
    EXPECT_EQ(picture(), "KEPT: d\nR: a [a]\n");
}

TEST_F(GroupEdit, purging_deletes_every_lost_group_in_one_go) {
    for (int i = 0; i < 5; ++i) {
        const std::string entity = "e" + std::to_string(i);
        draw({entity});
        make("KZ_0_" + std::to_string(i), {entity}, i > 0 ? "KZ_0_0" : "");
    }
    for (const char* name : {"e0", "e1", "e2", "e4"})
        erase(name);
    EXPECT_EQ(kz_Group_purge(), 1);
    EXPECT_EQ(picture(), "KZ_0_3: e3 [e3]\n");
}

// --- membership ---------------------------------------------------------------------------------

TEST_F(GroupEdit, adding_moves_an_entity_with_all_that_binds_it) {
    draw({"a", "b", "c", "d", "e"});
    make("R", {"a"});
    make("OLD", {"b", "c", "d"}, "R", "S");
    make("NEW", {"e"});
    EXPECT_EQ(add("NEW", "c", KZ_T("a sub-group name of 35 characters!!")), 1);
    EXPECT_EQ(
        picture(),
        "NEW: e c(A SUB-GROUP NAME OF 35 CHARA)\nOLD: b d(S) <R [a b d]\nR: a >OLD [a b d]\n");
    // To its own group: to the end.
    EXPECT_EQ(add("OLD", "c"), 1);
    EXPECT_EQ(add("OLD", "d"), 1);
    EXPECT_EQ(picture(), "NEW: e\nOLD: b c d <R [a b c d]\nR: a >OLD [a b c d]\n");
    // The last of its group takes the group along.
    EXPECT_EQ(add("OLD", "e"), 1);
    EXPECT_EQ(picture(), "OLD: b c d e <R [a b c d e]\nR: a >OLD [a b c d e]\n");
    EXPECT_EQ(errors(), "");
}

TEST_F(GroupEdit, masters_are_not_moved_away) {
    draw({"a", "b", "c", "d"});
    make("G", {"a", "b"});
    make("H", {"c", "d"});
    make("ALONE", {"d"});
    const std::string before = "G: a b\nH: c\n";
    EXPECT_EQ(kz_Group_deleteByName(KZ_T("ALONE"), 0, 0), 1);
    remove("H", "d");
    kz_Error_clearAll();
    EXPECT_EQ(add("H", "a"), 0);
    EXPECT_NE(errors().find("Cannot delete master from populated group"), std::string::npos);
    EXPECT_EQ(add("G", "a"), 0);
    EXPECT_EQ(add("H", "c"), 0);  // also when it is alone
    EXPECT_NE(errors().find("Cannot delete master from populated group"), std::string::npos);
    EXPECT_EQ(remove("G", "a"), 0);
    EXPECT_NE(errors().find("Cannot delete master from populated group"), std::string::npos);
    EXPECT_EQ(setMaster("H", "a"), 0);
    EXPECT_EQ(remove("G", "c"), 0);
    EXPECT_NE(errors().find("CAD object is not a member"), std::string::npos);
    EXPECT_EQ(kz_Group_add(nullptr, object("b").get(), nullptr), 0);
    EXPECT_NE(errors().find("No group id specified"), std::string::npos);
}

TEST_F(GroupEdit, a_group_without_a_readable_master_takes_nobody_in) {
    draw({"a", "b", "c"});
    make("G", {"a", "b"});
    make("H", {"c"});
    kz_XData_deleteFld(group("G")->ename, KZ_T("MN"), KZ_T("KZ_GRP"));
    EXPECT_EQ(add("G", "c"), 0);
    EXPECT_NE(errors().find("No master object exists"), std::string::npos);
    EXPECT_EQ(remove("G", "b"), 0);
    EXPECT_NE(errors().find("No master object exists"), std::string::npos);
    EXPECT_EQ(setMaster("G", "b"), 0);
    EXPECT_EQ(kz_Group_isAMemberOf(object("c").get(), group("H").get(), 1), 1);
}

TEST_F(GroupEdit, the_last_entity_ends_its_group_and_mends_the_tree) {
    draw({"a", "b", "c", "d"});
    make("R", {"a"});
    make("M", {"b", "d"}, "R");
    make("C", {"c"}, "M");
    EXPECT_EQ(remove("M", "d"), 1);
    EXPECT_EQ(remove("M", "b"), -1);
    EXPECT_EQ(picture(), "C: c <R [a c]\nR: a >C [a c]\n");
    EXPECT_EQ(fields("b", KZ_T("KZ_GRP")).size(), 0u);
    EXPECT_EQ(remove("C", "c"), -1);
    EXPECT_EQ(remove("R", "a"), -1);
    EXPECT_EQ(look().size(), 0u);
    int erased = 7;
    EXPECT_EQ(kz_Group_removeMemberFromGroup(&erased, object("a").get()), 1);
    EXPECT_EQ(erased, 7);
    EXPECT_EQ(kz_Group_removeMemberFromGroup(&erased, nullptr), 0);
}

TEST_F(GroupEdit, erased_members_hold_no_master_back) {
    draw({"a", "b", "c"});
    make("R", {"c"});
    make("G", {"a", "b"}, "R");
    erase("b");
    const host::UndoStep step("REMOVE");
    EXPECT_EQ(remove("G", "a"), -1);
    EXPECT_EQ(picture(), "R: c [c]\n");
}

TEST_F(GroupEdit, sets_and_sub_groups) {
    draw({"a", "b", "c", "d"});
    make("G", {"a", "b"});
    const Group id = group("G");
    EXPECT_EQ(kz_Group_createSubGroup(id.get(), set({"b", "c"}).get(), KZ_T("*")), 0);
    EXPECT_EQ(kz_Group_createSubGroup(id.get(), nullptr, KZ_T("S")), 0);
    EXPECT_EQ(kz_Group_createSubGroup(id.get(), set({"b", "c"}).get(), KZ_T("S")), 1);
    EXPECT_EQ(picture(), "G: a b(S) c(S)\n");
    // One that is refused keeps nobody else out.
    EXPECT_EQ(kz_Group_addSelSet(id.get(), set({"a", "b", "d"}).get(), nullptr), 0);
    EXPECT_EQ(picture(), "G: a c(S) b d\n");
    EXPECT_EQ(kz_Group_addSelSet(id.get(), set({}).get(), nullptr), 0);
    // Lists that don't fit the marks are made new.
    kz_SubGroup_removeMemberRef(object("a")->ename, KZ_T("S"), object("c")->ename);
    kz_SubGroup_setMemberRef(object("a")->ename, KZ_T("WRONG"), object("d")->ename);
    EXPECT_NE(picture(), "G: a c(S) b d\n");
    EXPECT_EQ(kz_Group_updateSubGroupRefs(id.get()), 1);
    EXPECT_EQ(picture(), "G: a c(S) b d\n");
    EXPECT_EQ(kz_Group_updateSubGroupRefs(nullptr), 0);
}

TEST_F(GroupEdit, membership_reaches_down_the_tree) {
    draw({"a", "b", "c"});
    make("R", {"a"});
    make("M", {"b"}, "R");
    make("C", {"c"}, "M");
    const auto is = [&](const char* entity, const char* name, int only) {
        return kz_Group_isAMemberOf(object(entity).get(), group(name).get(), only);
    };
    EXPECT_EQ(is("c", "R", 0), 1);
    EXPECT_EQ(is("c", "R", 1), 0);
    EXPECT_EQ(is("a", "M", 0), 0);
    EXPECT_EQ(kz_Group_isAMemberOf(nullptr, group("R").get(), 0), 0);
    EXPECT_EQ(errors(), "");
    EXPECT_EQ(kz_Group_isAMemberOf(object("a").get(), nullptr, 0), 0);
    EXPECT_NE(errors().find("No group id specified"), std::string::npos);
}

// --- masters ------------------------------------------------------------------------------------

TEST_F(GroupEdit, data_of_applications_follows_the_master) {
    draw({"a", "b", "c", "d"});
    make("R", {"d"});
    make("G", {"a", "b", "c"}, "R", "S");
    kz_Ename_setCharFieldReference(object("a")->ename, KZ_T("NOTE"), KZ_T("kept"), 0,
                                   KZ_T("THIRD"));
    lisp("(regapp \"RAW\")");
    lisp("(entmod (append (entget (handent \"" + kz::toUtf8(kz_Ename_toHandle(object("a")->ename)) +
         "\")) '((-3 (\"RAW\" (1000 . \"no field\") (1070 . 5))))))");
    EXPECT_EQ(setMaster("G", "b"), 1);
    EXPECT_EQ(picture(), "G: b a c(S) <R [a b c d]\nR: d >G [a b c d]\n");
    EXPECT_EQ(one(fields("b", KZ_T("THIRD")), "NOTE"), "kept");
    EXPECT_EQ(fields("a", KZ_T("THIRD")).size(), 0u);
    resbuf* raw = kz_Xdata_getFromEnt(object("b")->ename, KZ_T("RAW"));
    EXPECT_NE(raw, nullptr);
    acutRelRb(raw);
    kz_CADObjId* master = kz_Group_getMasterFromMember(object("c").get());
    EXPECT_EQ(kz_CADObjId_isEqual(master, object("b").get()), 1);
    kz_CADObjId_destroy(master);
    // The present one changes nothing, one from outside joins.
    const std::string before = picture();
    EXPECT_EQ(setMaster("G", "b"), 1);
    EXPECT_EQ(picture(), before);
    draw({"x"});
    EXPECT_EQ(setMaster("G", "x"), 1);
    EXPECT_EQ(picture(), "G: x b a c(S) <R [a b c d x]\nR: d >G [a b c d x]\n");
    EXPECT_EQ(one(fields("x", KZ_T("THIRD")), "NOTE"), "kept");
    EXPECT_EQ(kz_Group_setMasterObject(nullptr, object("a").get()), 0);
    EXPECT_EQ(kz_Group_setMasterObject(group("G").get(), nullptr), 0);
}

TEST_F(GroupEdit, a_wrong_master_handle_in_members_is_mended) {
    draw({"a", "b", "c"});
    make("G", {"a", "b", "c"});
    const std::string before = picture();
    kz_CADObjId_setCharFieldReference(object("c").get(), KZ_T("MN"), KZ_T("FFFF"), 1,
                                      KZ_T("KZ_GRP"));
    EXPECT_NE(picture(), before);
    EXPECT_EQ(kz_Group_updateMasterHandleInMembers(group("G").get()), 1);
    EXPECT_EQ(picture(), before);
    EXPECT_EQ(kz_Group_updateMasterHandleInMembers(nullptr), 0);
}

TEST_F(GroupEdit, open_objects_are_told_apart) {
    draw({"a", "b", "c"});
    make("KZ_AB_1", {"a", "b"});
    make("PLAIN", {"c"});
    const auto ask = [](const ads_name name, int (*question)(AcDbObject*)) {
        AcDbObject* opened = nullptr;
        AcDbObjectId id;
        acdbGetObjectId(id, name);
        EXPECT_EQ(acdbOpenObject(opened, id, AcDb::kForRead), Acad::eOk);
        const int answer = question(opened);
        opened->close();
        return answer;
    };
    const Group plain = group("PLAIN");
    EXPECT_EQ(ask(group("KZ_AB_1")->ename, kz_AcDbGroup_isAMovarGroupObject), 1);
    EXPECT_EQ(ask(plain->ename, kz_AcDbGroup_isAMovarGroupObject), 0);
    EXPECT_EQ(ask(object("a")->ename, kz_AcDbGroup_isAMovarGroupObject), 0);
    // A key of another form counts when the first entity bears a name of the system.
    kz_Ename_setCharFieldReference(object("c")->ename, KZ_T("GN"), KZ_T("KZ_AB_2"), 0,
                                   KZ_T("KZ_GRP"));
    EXPECT_EQ(ask(plain->ename, kz_AcDbGroup_isAMovarGroupObject), 1);
    EXPECT_EQ(ask(object("a")->ename, kz_AcDbGroup_isAMovarMasterEntity), 1);
    EXPECT_EQ(ask(object("b")->ename, kz_AcDbGroup_isAMovarMasterEntity), 0);
    EXPECT_EQ(ask(plain->ename, kz_AcDbGroup_isAMovarMasterEntity), 0);
    EXPECT_EQ(kz_AcDbGroup_isAMovarGroupObject(nullptr), 0);
    EXPECT_EQ(kz_AcDbGroup_isAMovarMasterEntity(nullptr), 0);
}

TEST_F(GroupEdit, a_master_that_draws_a_point) {
    const kz_Point at = {1, 2, 3};
    EXPECT_EQ(kz_CAD_MasterEntity_create(KZ_T("MASTER"), &at), 1);
    EXPECT_EQ(kz_CAD_MasterEntityBlock_create(KZ_T("master")), 1);
    EXPECT_EQ(lisp("(mapcar '(lambda (c) (cdr (assoc c (entget (entlast))))) '(0 2 10))"),
              "(\"INSERT\" \"MASTER\" (1.0 2.0 3.0))");
    EXPECT_EQ(lisp("(mapcar '(lambda (c) (cdr (assoc c (entget (tblobjname \"BLOCK\" "
                   "\"MASTER\"))))) '(2))"),
              "(\"MASTER\")");
    EXPECT_EQ(lisp("(mapcar '(lambda (c) (cdr (assoc c (entget (cdr (assoc -2 (tblsearch \"BLOCK\" "
                   "\"MASTER\"))))))) '(0 62 10))"),
              "(\"POINT\" 0 (0.0 0.0 0.0))");
    EXPECT_EQ(kz_CAD_MasterEntity_create(nullptr, &at), 0);
    EXPECT_EQ(kz_CAD_MasterEntity_create(KZ_T("MASTER"), nullptr), 0);
    EXPECT_EQ(kz_CAD_MasterEntityBlock_create(KZ_T("no|name")), 0);
}

// --- the tree -----------------------------------------------------------------------------------

TEST_F(GroupEdit, branches_move_between_trees_with_their_containers) {
    draw({"a", "b", "c", "d"});
    make("R", {"a"});
    make("B", {"b"});
    make("C", {"c"});
    make("D", {"d"});
    EXPECT_EQ(makeChild("C", "B"), 1);
    EXPECT_EQ(makeChild("B", "R"), 1);
    EXPECT_EQ(picture(), "B: b <R >C [a b c]\nC: c <B [a b c]\nD: d\nR: a >B [a b c]\n");
    EXPECT_EQ(look().size(), 5u);  // the container of B's own tree is gone
    EXPECT_EQ(makeChild("B", "R", 1), 1);
    EXPECT_EQ(picture(), "B: b <R >C [a b c]\nC: c <B [a b c]\nD: d\nR: a >B [a b c]\n");
    EXPECT_EQ(makeChild("B", "D", 1), 1);
    EXPECT_EQ(picture(), "B: b <D [b d]\nC: c <R [a c]\nD: d >B [b d]\nR: a >C [a c]\n");
    // A root that leaves its children leaves them as roots, in their container.
    EXPECT_EQ(makeChild("R", "D", 1), 1);
    EXPECT_EQ(picture(), "B: b <D [a b d]\nC: c [c]\nD: d >B R [a b d]\nR: a <D [a b d]\n");
}

TEST_F(GroupEdit, a_new_root_heads_its_own_tree_or_leaves_it) {
    draw({"a", "b", "c"});
    make("R", {"a"});
    make("B", {"b"}, "R");
    make("C", {"c"}, "B");
    EXPECT_EQ(makeRoot("B"), 1);
    EXPECT_EQ(picture(), "B: b >C [b c]\nC: c <B [b c]\nR: a [a]\n");
    EXPECT_EQ(makeRoot("B"), 1);
    EXPECT_EQ(makeChild("B", "R"), 1);
    EXPECT_EQ(makeRoot("B", 1), 1);
    EXPECT_EQ(picture(), "B: b\nC: c <R [a c]\nR: a >C [a c]\n");
    EXPECT_EQ(kz_Group_makeRootGroup(nullptr, 0), 0);
    EXPECT_NE(errors().find("No group id specified"), std::string::npos);
}

TEST_F(GroupEdit, no_group_comes_to_stand_below_itself) {
    draw({"a", "b", "c"});
    make("A", {"a"});
    make("B", {"b"}, "A");
    make("C", {"c"}, "B");
    const std::string before = picture();
    for (const char* parent : {"A", "B", "C"}) {
        EXPECT_EQ(makeChild("A", parent), 0);
        EXPECT_NE(errors().find("Parent and child groups are the same"), std::string::npos);
    }
    EXPECT_EQ(makeChild("A", "A", 1), 0);
    EXPECT_EQ(picture(), before);
    EXPECT_EQ(kz_Group_makeChild(nullptr, group("A").get(), 0), 0);
    EXPECT_NE(errors().find("No group id specified"), std::string::npos);
    EXPECT_EQ(kz_Group_makeChild(group("A").get(), nullptr, 0), 0);
    // Without the groups below it, it can go below one of them.
    EXPECT_EQ(makeChild("A", "C", 1), 1);
    EXPECT_EQ(picture(), "A: a <C [a b c]\nB: b >C [a b c]\nC: c <B >A [a b c]\n");
}

TEST_F(GroupEdit, containers_by_hand) {
    draw({"a", "b", "c"});
    make("R", {"a"});
    make("G", {"b"});
    kz_Char name[32];
    const Group container(kz_AcContainerGroup_create(name, group("R").get()));
    ASSERT_NE(container, nullptr);
    EXPECT_EQ(kz_Group_isAContainerGroupName(name), 1);
    const Group r = group("R"), g = group("G");
    EXPECT_EQ(kz_Group_addToContainerGroup(container.get(), g.get()), 1);
    EXPECT_EQ(kz_Group_addToContainerGroup(container.get(), g.get()), 1);
    EXPECT_EQ(kz_Group_addMemberToContainerGroup(container.get(), object("c").get()), 1);
    EXPECT_EQ(picture(), "G: b\nR: a\ncontainer [a b c]\n");
    EXPECT_EQ(kz_Group_removeFromContainerGroup(container.get(), r.get()), 1);
    EXPECT_EQ(kz_Group_removeFromContainerGroup(container.get(), r.get()), 0);
    EXPECT_EQ(kz_Group_addToContainerGroup(container.get(), container.get()), 0);
    EXPECT_NE(errors().find("Attempt to open group object failed"), std::string::npos);
    EXPECT_EQ(kz_Group_addToContainerGroup(nullptr, r.get()), 0);
    EXPECT_EQ(kz_Group_addMemberToContainerGroup(container.get(), nullptr), 0);
    EXPECT_EQ(kz_AcDbGroup_append(nullptr, nullptr), 0);
    EXPECT_EQ(kz_AcDbGroup_remove(nullptr, nullptr), 0);
    // One for a group that can't be opened doesn't stay behind.
    const size_t before = look().size();
    Group gone = group("G");
    EXPECT_EQ(deleteGroup("G"), 1);
    EXPECT_EQ(kz_AcContainerGroup_create(name, gone.get()), nullptr);
    EXPECT_EQ(look().size(), before - 1);
    EXPECT_EQ(kz_Group_createContainerGroup(nullptr), nullptr);
}

// --- damage -------------------------------------------------------------------------------------

class DamagedTree : public GroupEdit {
  protected:
    void SetUp() override {
        GroupEdit::SetUp();
        draw({"a", "b", "c", "x"});
        make("A", {"a"});
        make("B", {"b"}, "A");
        make("C", {"c"}, "B");
        make("X", {"x"});
    }
    /// Every operation on every group: each ends, and undo brings the damage back as it was.
    void endureAll() {
        const std::string before = picture();
        for (const char* name : {"A", "B", "C", "X"}) {
            for (const char* other : {"A", "B", "C", "X"}) {
                for (const int leave : {0, 1})
                    undone(before, [&] { makeChild(name, other, leave); });
            }
            for (const int leave : {0, 1})
                undone(before, [&] { makeRoot(name, leave); });
            undone(before, [&] { deleteGroup(name); });
            undone(before, [&] { deleteAll(name, KZ_T("PIPE")); });
            undone(before, [&] { kz_Group_deleteMembers(group(name).get(), nullptr, nullptr, 1); });
            undone(before, [&] { remove(name, "x"); });
            undone(before, [&] { add(name, "x"); });
            undone(before, [&] { setMaster(name, "x"); });
            undone(before, [&] {
                EXPECT_EQ(kz_Group_isAMemberOf(object("x").get(), group(name).get(), 0),
                          std::string(name) == "X" ? 1 : 0);
            });
        }
        undone(before, [] { kz_Group_purgeAllEmptyGroups(); });
    }
    void undone(const std::string& before, const std::function<void()>& operation) {
        const size_t steps = host::undoStepCount();
        {
            const host::UndoStep step("OPERATION");
            operation();
        }
        host::undo(host::undoStepCount() - steps);
        kz_Error_clearAll();
        EXPECT_EQ(picture(), before);
    }
};

TEST_F(DamagedTree, a_child_that_is_gone) {
    refer("C", KZ_T("CH"), KZ_T("NOBODY"));
    refer("A", KZ_T("CH"), KZ_T("NOBODY"));
    EXPECT_EQ(makeRoot("C"), 1);
    endureAll();
}

TEST_F(DamagedTree, a_parent_that_is_gone) {
    refer("C", KZ_T("PR"), KZ_T("NOBODY"));
    refer("X", KZ_T("PR"), KZ_T("NOBODY"));
    endureAll();
    EXPECT_EQ(makeRoot("C"), 1);
    EXPECT_EQ(kz_Group_isARootGroup(group("C").get()), 1);
}

TEST_F(DamagedTree, a_parent_that_does_not_know_its_child) {
    kz_Group_removeChildGroupReference(group("A").get(), KZ_T("B"));
    EXPECT_EQ(makeChild("A", "C"), 0);  // still above it
    EXPECT_EQ(makeChild("A", "C", 1), 0);
    endureAll();
}

TEST_F(DamagedTree, cycles) {
    refer("A", KZ_T("PR"), KZ_T("C"));
    kz_Group_addChildGroupReference(group("C").get(), KZ_T("A"), 1);
    endureAll();
    refer("X", KZ_T("PR"), KZ_T("X"));
    refer("X", KZ_T("CH"), KZ_T("X"));
    endureAll();
}

TEST_F(DamagedTree, a_container_that_is_gone) {
    for (const char* name : {"A", "B", "C"})
        refer(name, KZ_T("CN"), KZ_T("KZ_CN_GONE_1"));
    EXPECT_EQ(makeChild("B", "X"), 0);
    EXPECT_EQ(makeChild("X", "B"), 0);  // only a root gets a new one
    endureAll();
}

TEST_F(DamagedTree, a_master_that_is_erased) {
    erase("b");
    endureAll();
}

// --- faults -------------------------------------------------------------------------------------

class GroupFaults : public DamagedTree {
  protected:
    void SetUp() override {
        DamagedTree::SetUp();
        draw({"y", "z", "v", "w"});
        chosen_ = set({"v", "w"});
        add("B", "y", KZ_T("S"));
        add("X", "z", KZ_T("S"));
        kz_Ename_setCharFieldReference(object("b")->ename, KZ_T("NOTE"), KZ_T("kept"), 0,
                                       KZ_T("THIRD"));
    }
    void TearDown() override {
        chosen_.reset();
        DamagedTree::TearDown();
    }
    std::vector<std::function<void()>> operations() {
        return {
            [this] {
                kz_Group_destroyId(kz_Group_createFromSelSet(nullptr, nullptr, KZ_T("S"), nullptr,
                                                             chosen_.get(), group("B").get()));
            },
            [this] { makeChild("B", "X"); },
            [this] { makeChild("B", "X", 1); },
            [this] { makeRoot("B"); },
            [this] { makeRoot("B", 1); },
            [this] { add("X", "y", KZ_T("T")); },
            [this] { remove("B", "y"); },
            [this] { setMaster("B", "y"); },
            [this] { setMaster("B", "z"); },
            [] { deleteGroup("B", 1, 1); },
            [] { deleteAll("A", nullptr); },
            [] { kz_Group_deleteMembers(group("A").get(), nullptr, nullptr, 1); },
            [] { kz_Group_updateSubGroupRefs(group("B").get()); },
            [] { kz_Group_purge(); },
            [] { kz_Group_purgeAllEmptyGroups(); },
            [] {
                const kz_Point at = {};
                kz_CAD_MasterEntity_create(KZ_T("M"), &at);
            },
        };
    }
    /// Runs an operation under a fault, which must leave nothing open or alive. @return whether the
    /// fault came
    bool endure(const std::function<void()>& operation, const std::string& where,
                const std::function<void()>& arm, const std::function<bool()>& disarm) {
        const int64_t nodes = host::resbufCount(), records = kz_Record_count();
        bool fired = false;
        undone(before_, [&] {
            arm();
            operation();
            fired = disarm();
        });
        EXPECT_EQ(host::openObjectCount(), 0) << where;
        EXPECT_EQ(host::resbufCount(), nodes) << where;
        EXPECT_EQ(kz_Record_count(), records) << where;
        return fired && !HasFailure();
    }
    void endureCalls(size_t number, const std::function<void()>& operation) {
        for (const std::string_view call : host::testing::platformCalls()) {
            bool fired = true;
            for (int nth = 1; fired && nth < 60; ++nth) {
                fired = endure(
                    operation,
                    std::to_string(number) + " " + std::string(call) + " " + std::to_string(nth),
                    [&] {
                        host::testing::failCall(call, nth, call.starts_with("aced") ? RTERROR : 6);
                    },
                    [] {
                        const bool came = host::testing::faultFired();
                        host::testing::clearFault();
                        return came;
                    });
            }
        }
    }

    Set chosen_;
    std::string before_;
};

TEST_F(GroupFaults, every_platform_call_may_fail) {
    before_ = picture();
    size_t number = 0;
    for (const std::function<void()>& operation : operations()) {
        undone(before_, operation);
        endureCalls(number++, operation);
    }
}

TEST_F(GroupFaults, memory_may_end_at_each_allocation) {
    before_ = picture();
    size_t number = 0;
    for (const std::function<void()>& operation : operations()) {
        undone(before_, operation);
        for (size_t nth = 1; nth < 150 && !HasFailure(); ++nth) {
            endure(
                operation, std::to_string(number) + " allocation " + std::to_string(nth),
                [&] { kz_Malloc_failFrom(nth); },
                [] {
                    kz_Malloc_failFrom(0);
                    return true;
                });
        }
        ++number;
    }
}

}  // namespace
