// Names, open modes, XDATA, entity lists, tables, dictionaries and selection sets.
#include "acad/db.h"

#include <gtest/gtest.h>

#include "dxf_text.h"
#include "entity_list.h"
#include "host/counters.h"
#include "host/drawing.h"
#include "temp_folder.h"

namespace {

using dxf_text::drawing;
using dxf_text::line;
using dxf_text::pairs;

class DatabaseTest : public testing::Test {
  protected:
    explicit DatabaseTest(const std::string& entities = line("30", "0", "62 3") +
                                                        line("31", "Locked") + line("32")) {
        std::string error;
        EXPECT_TRUE(host::openDrawing(folder_.write("in.dxf", drawing(entities)), error)) << error;
        nodes_before_ = host::resbufCount();
    }
    ~DatabaseTest() override {
        EXPECT_EQ(host::openObjectCount(), 0);
        EXPECT_EQ(host::resbufCount(), nodes_before_);
        host::closeDrawing();
    }

    static AcDbObjectId idOf(const char16_t* handle) {
        AcDbObjectId id;
        EXPECT_EQ(acdbGetObjectId(id, Ename(handle).name), Acad::eOk);
        return id;
    }

    static Acad::ErrorStatus write(const char16_t* handle, const resbuf* chain) {
        AcDbObject* object = nullptr;
        EXPECT_EQ(acdbOpenObject(object, idOf(handle), AcDb::kForWrite), Acad::eOk);
        const Acad::ErrorStatus status = object->setXData(chain);
        object->close();
        return status;
    }

    static resbuf* read(const char16_t* handle, const ACHAR* app = nullptr) {
        AcDbObject* object = nullptr;
        EXPECT_EQ(acdbOpenObject(object, idOf(handle), AcDb::kForRead, true), Acad::eOk);
        resbuf* chain = object->xData(app);
        object->close();
        return chain;
    }

    std::string save() {
        std::string error;
        EXPECT_TRUE(host::saveDrawing(folder_.file("out.dxf"), error)) << error;
        return TempFolder::read(folder_.file("out.dxf"));
    }

    TempFolder folder_;
    int64_t nodes_before_ = 0;
};

TEST_F(DatabaseTest, names_that_lead_nowhere_are_refused) {
    AcDbObjectId id;
    const Ename good(u"30");
    ads_name name = {good.name[0], good.name[1]};
    EXPECT_EQ(acdbGetObjectId(id, name), Acad::eOk);
    name[0] += 1000;
    EXPECT_EQ(acdbGetObjectId(id, name), Acad::eInvalidKey);
    const ads_name address = {reinterpret_cast<int64_t>(this), 0};
    EXPECT_EQ(acdbGetObjectId(id, address), Acad::eInvalidKey);
    EXPECT_EQ(acdbEntGet(address), nullptr);
    // A name of a closed drawing leads nowhere in the next one, though its slot is in use again.
    std::string error;
    ASSERT_TRUE(host::openDrawing(folder_.file("in.dxf"), error));
    EXPECT_EQ(acdbGetObjectId(id, good.name), Acad::eInvalidKey);
    EXPECT_FALSE(Ename(u"30").nil());
}

TEST_F(DatabaseTest, one_writer_or_many_readers) {
    const AcDbObjectId id = idOf(u"30");
    AcDbObject* first = nullptr;
    AcDbObject* second = nullptr;
    ASSERT_EQ(acdbOpenObject(first, id, AcDb::kForRead), Acad::eOk);
    ASSERT_EQ(acdbOpenObject(second, id, AcDb::kForRead), Acad::eOk);
    AcDbObject* third = nullptr;
    EXPECT_EQ(acdbOpenObject(third, id, AcDb::kForWrite), Acad::eWasOpenForRead);
    EXPECT_EQ(third, nullptr);
    EXPECT_EQ(first->upgradeOpen(), Acad::eWasOpenForRead);
    EXPECT_EQ(second->close(), Acad::eOk);
    EXPECT_EQ(first->upgradeOpen(), Acad::eOk);
    EXPECT_EQ(acdbOpenObject(third, id, AcDb::kForRead), Acad::eWasOpenForWrite);
    EXPECT_EQ(host::openObjectCount(), 1);
    EXPECT_EQ(first->downgradeOpen(), Acad::eOk);
    EXPECT_EQ(first->setXData(nullptr), Acad::eNotOpenForWrite);
    EXPECT_EQ(first->close(), Acad::eOk);
    EXPECT_EQ(first->close(), Acad::eNotOpenForRead);
    EXPECT_EQ(acdbOpenObject(third, AcDbObjectId(), AcDb::kForRead), Acad::eNullObjectId);
    EXPECT_EQ(acdbOpenObject(third, AcDbObjectId(~0ULL), AcDb::kForRead), Acad::ePermanentlyErased);
}

TEST_F(DatabaseTest, locked_layers_and_erased_objects_refuse) {
    AcDbObject* object = nullptr;
    EXPECT_EQ(acdbOpenObject(object, idOf(u"31"), AcDb::kForWrite), Acad::eOnLockedLayer);
    ASSERT_EQ(acdbOpenObject(object, idOf(u"31"), AcDb::kForRead), Acad::eOk);
    EXPECT_EQ(object->upgradeOpen(), Acad::eOnLockedLayer);
    object->close();
    EXPECT_NE(acdbEntDel(Ename(u"31").name), RTNORM);
    ASSERT_EQ(acdbEntDel(Ename(u"30").name), RTNORM);
    EXPECT_EQ(acdbOpenObject(object, idOf(u"30"), AcDb::kForRead), Acad::eWasErased);
    EXPECT_EQ(acdbEntGet(Ename(u"30").name), nullptr);
    ASSERT_EQ(acdbOpenObject(object, idOf(u"30"), AcDb::kForWrite, true), Acad::eOk);
    EXPECT_TRUE(object->isErased());
    EXPECT_EQ(object->erase(false), Acad::eOk);
    object->close();
    EXPECT_FALSE(Chain(acdbEntGet(Ename(u"30").name)) == nullptr);
}

TEST_F(DatabaseTest, xdata_is_replaced_by_application) {
    acdbRegApp(u"PLANT");
    const ads_point point = {1, 2, 3};
    const Chain both(acutBuildList(1001, u"OTHER", 1070, -5, 1001, u"plant", 1002, u"{", 1000, u"x",
                                   1010, point, 1040, 0.1, 1071, 70000, 1005, u"30", 1002, u"}",
                                   0));
    ASSERT_EQ(write(u"30", both.get()), Acad::eOk);
    EXPECT_EQ(length(Chain(read(u"30")).get()), 10);
    const Chain again(read(u"30", u"PLANT"));
    EXPECT_EQ(again->resval.rstring, std::u16string(u"plant"));
    EXPECT_EQ(find(again.get(), 1010)->resval.rpoint[2], 3.0);
    EXPECT_EQ(find(again.get(), 1040)->resval.rreal, 0.1);
    EXPECT_EQ(find(again.get(), 1071)->resval.rlong, 70000);
    const Chain other(acutBuildList(1001, u"OTHER", 1000, u"new", 0));
    ASSERT_EQ(write(u"30", other.get()), Acad::eOk);
    const Chain all(read(u"30"));
    EXPECT_EQ(textAt(all.get(), 1000), u"new");
    EXPECT_EQ(length(all.get()), 10);
    const Chain alone(acutBuildList(1001, u"PLANT", 0));
    ASSERT_EQ(write(u"30", alone.get()), Acad::eOk);
    EXPECT_EQ(length(Chain(read(u"30")).get()), 2);
}

TEST_F(DatabaseTest, xdata_that_breaks_a_rule_changes_nothing) {
    const Chain good(acutBuildList(1001, u"OTHER", 1070, 1, 0));
    ASSERT_EQ(write(u"30", good.get()), Acad::eOk);
    const std::string before = save();
    const Chain unknown(acutBuildList(1001, u"NOSUCH", 1070, 1, 0));
    EXPECT_EQ(write(u"30", unknown.get()), Acad::eRegappIdNotFound);
    const Chain open(acutBuildList(1001, u"OTHER", 1002, u"{", 0));
    EXPECT_EQ(write(u"30", open.get()), Acad::eBadDxfSequence);
    const Chain close(acutBuildList(1001, u"OTHER", 1002, u"}", 1002, u"{", 0));
    EXPECT_EQ(write(u"30", close.get()), Acad::eBadDxfSequence);
    const Chain wrong(acutBuildList(1001, u"OTHER", 40, 1.0, 0));
    EXPECT_EQ(write(u"30", wrong.get()), Acad::eBadDxfSequence);
    const Chain wide(acutBuildList(1001, u"OTHER", 1000, std::u16string(256, u'x').c_str(), 0));
    EXPECT_EQ(write(u"30", wide.get()), Acad::eBadDxfSequence);
    EXPECT_EQ(save(), before);
}

TEST_F(DatabaseTest, the_size_limit_counts_all_applications) {
    // A real takes 9 bytes: 1819 of them and the name are 16380 bytes, one more is too many.
    Chain chain(acutBuildList(1001, u"OTHER", 0));
    resbuf* tail = chain.get();
    for (int i = 0; i < 1819; ++i)
        tail = tail->rbnext = acutBuildList(1040, 1.0, 0);
    EXPECT_EQ(write(u"30", chain.get()), Acad::eOk);
    const Chain more(acutBuildList(1001, u"ACAD", 1070, 1, 0));
    EXPECT_EQ(write(u"30", more.get()), Acad::eXdataSizeExceeded);
    tail->rbnext = acutBuildList(1040, 1.0, 0);
    EXPECT_EQ(write(u"30", chain.get()), Acad::eXdataSizeExceeded);
    EXPECT_EQ(length(Chain(read(u"30")).get()), 1820);
}

TEST_F(DatabaseTest, entity_lists_show_names_points_and_data) {
    const Chain list(acdbEntGet(Ename(u"30").name));
    EXPECT_TRUE(ads_name_equal(list->resval.rlname, Ename(u"30").name));
    EXPECT_EQ(textAt(list.get(), 0), u"LINE");
    EXPECT_EQ(textAt(list.get(), 5), u"30");
    EXPECT_TRUE(ads_name_equal(find(list.get(), 330)->resval.rlname, Ename(u"1F").name));
    EXPECT_EQ(find(list.get(), 10)->resval.rpoint[0], 1.5);
    EXPECT_EQ(find(list.get(), 62)->resval.rint, 3);
    EXPECT_EQ(find(list.get(), -3), nullptr);
}

TEST_F(DatabaseTest, entmod_replaces_the_groups_it_names) {
    const Ename entity(u"30");
    const ads_point start = {7, 8, 9};
    const Chain change(acutBuildList(-1, entity.name, 10, start, 62, 1, 8, u"New", 0));
    ASSERT_EQ(acdbEntMod(change.get()), RTNORM);
    EXPECT_FALSE(Chain(acdbTblSearch(u"LAYER", u"NEW", 0)) == nullptr);
    const std::string saved = save();
    EXPECT_NE(
        saved.find(
            "0\nLINE\n5\n30\n330\n1F\n100\nAcDbEntity\n  8\nNew\n 62\n1\n100\nAcDbLine\n 10\n7.0\n"
            " 20\n8.0\n 30\n9.0\n11\n4.0\n"),
        std::string::npos)
        << saved.substr(saved.find("ENTITIES"), 300);
    const Chain other_type(acutBuildList(-1, entity.name, RTDXF0, u"CIRCLE", 62, 5, 0));
    EXPECT_NE(acdbEntMod(other_type.get()), RTNORM);
    const Chain locked(acutBuildList(-1, Ename(u"31").name, 62, 5, 0));
    EXPECT_NE(acdbEntMod(locked.get()), RTNORM);
    EXPECT_EQ(save(), saved);
}

TEST_F(DatabaseTest, entmod_with_the_list_as_read_changes_nothing) {
    const std::string before = save();
    const Chain list(acdbEntGet(Ename(u"30").name));
    ASSERT_EQ(acdbEntMod(list.get()), RTNORM);
    EXPECT_EQ(save(), before);
}

TEST_F(DatabaseTest, entmake_brings_lists_into_file_order) {
    const ads_point centre = {1, 2, 0};
    const Chain list(acutBuildList(RTDXF0, u"CIRCLE", 62, 2, 10, centre, 40, 2.5, 0));
    ads_name name;
    ASSERT_EQ(acdbEntMakeX(list.get(), name), RTNORM);
    const std::string made = save();
    EXPECT_NE(made.find("  0\nCIRCLE\n  5\n100\n330\n1F\n100\nAcDbEntity\n  8\n0\n 62\n2\n100\n"
                        "AcDbCircle\n 10\n1.0\n 20\n2.0\n 30\n0.0\n 40\n2.5\n0\nENDSEC"),
              std::string::npos)
        << made.substr(made.find("CIRCLE") - 4, 120);
    ads_name last;
    ASSERT_EQ(acdbEntLast(last), RTNORM);
    EXPECT_TRUE(ads_name_equal(last, name));
    const Chain short_list(acutBuildList(RTDXF0, u"CIRCLE", 10, centre, 0));
    EXPECT_NE(acdbEntMakeX(short_list.get(), name), RTNORM);
    const Chain unmarked(acutBuildList(RTDXF0, u"ELLIPSE", 10, centre, 0));
    EXPECT_NE(acdbEntMakeX(unmarked.get(), name), RTNORM);
    const Chain no_block(acutBuildList(RTDXF0, u"INSERT", 2, u"NOSUCH", 10, centre, 0));
    EXPECT_NE(acdbEntMakeX(no_block.get(), name), RTNORM);
}

TEST_F(DatabaseTest, a_polyline_enters_the_drawing_with_its_end) {
    const ads_point vertex = {1, 1, 0};
    const Chain head(acutBuildList(RTDXF0, u"POLYLINE", 66, 1, 70, 1, 0));
    const Chain corner(acutBuildList(RTDXF0, u"VERTEX", 10, vertex, 0));
    const Chain end(acutBuildList(RTDXF0, u"SEQEND", 0));
    ads_name before;
    acdbEntLast(before);
    ASSERT_EQ(acdbEntMakeX(head.get(), nullptr), RTNORM);
    ASSERT_EQ(acdbEntMakeX(corner.get(), nullptr), RTNORM);
    ads_name last;
    acdbEntLast(last);
    EXPECT_TRUE(ads_name_equal(last, before));
    ads_name made;
    ASSERT_EQ(acdbEntMakeX(end.get(), made), RTNORM);
    acdbEntLast(last);
    EXPECT_TRUE(ads_name_equal(last, made));
    ads_name part;
    ASSERT_EQ(acdbEntNext(made, part), RTNORM);
    EXPECT_EQ(textAt(Chain(acdbEntGet(part)).get(), 0), u"VERTEX");
    ASSERT_EQ(acdbEntNext(part, part), RTNORM);
    const Chain sequence_end(acdbEntGet(part));
    EXPECT_TRUE(ads_name_equal(find(sequence_end.get(), -2)->resval.rlname, made));
    // Erasing the polyline takes its parts along.
    ASSERT_EQ(acdbEntDel(made), RTNORM);
    EXPECT_EQ(acdbEntGet(part), nullptr);
    EXPECT_EQ(save().find("POLYLINE"), std::string::npos);
    EXPECT_NE(acdbEntMakeX(end.get(), made), RTNORM);
}

TEST_F(DatabaseTest, a_block_is_made_between_block_and_endblk) {
    const ads_point origin = {0, 0, 0};
    const Chain begin(acutBuildList(RTDXF0, u"BLOCK", 2, u"PUMP", 70, 0, 10, origin, 0));
    const Chain inside(acutBuildList(RTDXF0, u"POINT", 10, origin, 0));
    const Chain end(acutBuildList(RTDXF0, u"ENDBLK", 0));
    const Chain reference(acutBuildList(RTDXF0, u"INSERT", 2, u"pump", 10, origin, 0));
    ASSERT_EQ(acdbEntMakeX(begin.get(), nullptr), RTNORM);
    ASSERT_EQ(acdbEntMakeX(inside.get(), nullptr), RTNORM);
    ASSERT_EQ(acdbEntMakeX(end.get(), nullptr), RTNORM);
    ASSERT_EQ(acdbEntMakeX(reference.get(), nullptr), RTNORM);
    const Chain block(acdbTblSearch(u"BLOCK", u"PUMP", 0));
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(textAt(Chain(acdbEntGet(find(block.get(), -2)->resval.rlname)).get(), 0), u"POINT");
    const std::string saved = save();
    std::string error;
    ASSERT_TRUE(host::openDrawing(folder_.file("out.dxf"), error)) << error;
    EXPECT_FALSE(Chain(acdbTblSearch(u"BLOCK", u"pump", 0)) == nullptr);
    EXPECT_EQ(save(), saved);
}

TEST_F(DatabaseTest, the_walk_passes_over_erased_entities_and_finds_them_again) {
    const auto walk = [] {
        std::u16string handles;
        ads_name name = {0, 0};
        while (acdbEntNext(ads_name_nil(name) ? nullptr : name, name) == RTNORM) {
            handles += textAt(Chain(acdbEntGet(name)).get(), 5) + u" ";
        }
        return handles;
    };
    const auto last = [] {
        ads_name name = {0, 0};
        acdbEntLast(name);
        return ads_name_nil(name) ? u"" : textAt(Chain(acdbEntGet(name)).get(), 5);
    };
    EXPECT_EQ(walk(), u"30 31 32 ");
    acdbEntDel(Ename(u"30").name);
    acdbEntDel(Ename(u"32").name);
    EXPECT_EQ(walk(), u"31 ");
    EXPECT_EQ(last(), u"31");
    acdbEntDel(Ename(u"30").name);
    acdbEntDel(Ename(u"32").name);
    EXPECT_EQ(walk(), u"30 31 32 ");
    EXPECT_EQ(last(), u"32");
    const ads_point centre = {0, 0, 0};
    acdbEntDel(Ename(u"32").name);
    ads_name made;
    ASSERT_EQ(acdbEntMakeX(Chain(acutBuildList(RTDXF0, u"POINT", 10, centre, 0)).get(), made),
              RTNORM);
    EXPECT_EQ(walk(), u"30 31 100 ");
    EXPECT_EQ(last(), u"100");
}

TEST_F(DatabaseTest, tables_are_searched_and_walked) {
    const Chain layer(acdbTblSearch(u"layer", u"LOCKED", 1));
    EXPECT_EQ(textAt(layer.get(), 2), u"Locked");
    EXPECT_EQ(find(layer.get(), 5), nullptr);
    EXPECT_EQ(acdbTblNext(u"LAYER", 0), nullptr);
    EXPECT_EQ(textAt(Chain(acdbTblNext(u"LAYER", 1)).get(), 2), u"0");
    EXPECT_EQ(acdbTblSearch(u"NOSUCH", u"0", 0), nullptr);
    ads_name name;
    ASSERT_EQ(acdbTblObjName(u"LAYER", u"Locked", name), RTNORM);
    EXPECT_EQ(textAt(Chain(acdbEntGet(name)).get(), 5), u"11");
    // Unlocking through entmod lets writers in.
    const Chain unlock(acutBuildList(-1, name, 70, 0, 0));
    ASSERT_EQ(acdbEntMod(unlock.get()), RTNORM);
    AcDbObject* object = nullptr;
    ASSERT_EQ(acdbOpenObject(object, idOf(u"31"), AcDb::kForWrite), Acad::eOk);
    object->close();
}

TEST_F(DatabaseTest, dictionaries_keep_order_and_owners) {
    ads_name root;
    ASSERT_EQ(acdbNamedObjDict(root), RTNORM);
    const Chain record(acutBuildList(RTDXF0, u"XRECORD", 100, u"AcDbXrecord", 1, u"a", 70, 5, 0));
    ads_name object;
    ASSERT_EQ(acdbEntMakeX(record.get(), object), RTNORM);
    ASSERT_EQ(acdbDictAdd(root, u"MINE", object), RTNORM);
    EXPECT_EQ(acdbDictAdd(root, u"mine", object), RTREJ);
    const Chain found(acdbDictSearch(root, u"Mine", 0));
    EXPECT_EQ(find(found.get(), 70)->resval.rint, 5);
    EXPECT_TRUE(ads_name_equal(find(found.get(), 330)->resval.rlname, root));
    EXPECT_EQ(textAt(Chain(acdbDictNext(root, 1)).get(), 0), u"DICTIONARY");
    EXPECT_EQ(textAt(Chain(acdbDictNext(root, 0)).get(), 0), u"XRECORD");
    EXPECT_EQ(acdbDictNext(root, 0), nullptr);
    EXPECT_EQ(acdbDictRename(root, u"MINE", u"ACAD_GROUP"), RTREJ);
    EXPECT_EQ(acdbDictRename(root, u"MINE", u"OURS"), RTNORM);
    EXPECT_NE(save().find("3\nACAD_GROUP\n350\nD\n  3\nOURS\n350\n100\n"), std::string::npos);
    ASSERT_EQ(acdbEntDel(object), RTNORM);
    EXPECT_EQ(acdbDictSearch(root, u"OURS", 0), nullptr);
    EXPECT_EQ(save().find("OURS"), std::string::npos);
    ASSERT_EQ(acdbEntDel(object), RTNORM);
    EXPECT_EQ(acdbDictRemove(root, u"OURS"), RTNORM);
    EXPECT_EQ(acdbDictRemove(root, u"OURS"), RTREJ);
}

TEST_F(DatabaseTest, selection_sets_are_a_counted_resource) {
    const Ename first(u"30");
    const Ename second(u"32");
    ads_name set;
    ASSERT_EQ(acedSSAdd(first.name, nullptr, set), RTNORM);
    ASSERT_EQ(acedSSAdd(second.name, set, set), RTNORM);
    ASSERT_EQ(acedSSAdd(second.name, set, set), RTNORM);
    int32_t count = 0;
    ASSERT_EQ(acedSSLength(set, &count), RTNORM);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(acedSSMemb(first.name, set), RTNORM);
    EXPECT_EQ(acedSSDel(first.name, set), RTNORM);
    EXPECT_NE(acedSSDel(first.name, set), RTNORM);
    ads_name member;
    ASSERT_EQ(acedSSName(set, 0, member), RTNORM);
    EXPECT_TRUE(ads_name_equal(member, second.name));
    EXPECT_NE(acedSSName(set, 1, member), RTNORM);
    EXPECT_EQ(host::selectionSetCount(), 1);
    ASSERT_EQ(acedSSFree(set), RTNORM);
    EXPECT_NE(acedSSLength(set, &count), RTNORM);
    std::vector<std::pair<int64_t, int64_t>> all;
    while (acedSSAdd(nullptr, nullptr, set) == RTNORM)
        all.emplace_back(set[0], set[1]);
    EXPECT_EQ(all.size(), 128U);
    for (const auto& [word0, word1] : all) {
        const ads_name name = {word0, word1};
        EXPECT_EQ(acedSSFree(name), RTNORM);
    }
    EXPECT_EQ(host::selectionSetCount(), 0);
}

}  // namespace
