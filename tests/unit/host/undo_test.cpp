// The undo journal: what a step changed comes back, and an undone drawing is the file again.
#include "host/undo.h"

#include <gtest/gtest.h>

#include "acad/db.h"
#include "dxf_text.h"
#include "entity_list.h"
#include "host/drawing.h"
#include "temp_folder.h"

namespace {

using dxf_text::drawing;
using dxf_text::line;

class UndoTest : public testing::Test {
  protected:
    UndoTest() {
        const std::string text = drawing(line("30", "0", "62 3") + line("31") + line("32"));
        std::string error;
        EXPECT_TRUE(host::openDrawing(folder_.write("in.dxf", text), error)) << error;
        acdbRegApp(u"KZ");
    }
    ~UndoTest() override { host::closeDrawing(); }

    static void setField(const char16_t* handle, int value) {
        AcDbObjectId id;
        ASSERT_EQ(acdbGetObjectId(id, Ename(handle).name), Acad::eOk);
        AcDbObject* object = nullptr;
        ASSERT_EQ(acdbOpenObject(object, id, AcDb::kForWrite), Acad::eOk);
        resbuf* chain = acutBuildList(1001, u"KZ", 1070, value, 0);
        EXPECT_EQ(object->setXData(chain), Acad::eOk);
        acutRelRb(chain);
        object->close();
    }
    /// Value of the field; -1 for none, -2 for an erased object.
    static int field(const char16_t* handle) {
        AcDbObjectId id;
        acdbGetObjectId(id, Ename(handle).name);
        AcDbObject* object = nullptr;
        if (acdbOpenObject(object, id, AcDb::kForRead) != Acad::eOk) return -2;
        resbuf* chain = object->xData(u"KZ");
        object->close();
        const int value = chain == nullptr ? -1 : chain->rbnext->resval.rint;
        acutRelRb(chain);
        return value;
    }
    static void erase(const char16_t* handle) { EXPECT_EQ(acdbEntDel(Ename(handle).name), RTNORM); }
    static bool hasLayer(const char16_t* name) { return !ads_name_nil(Named(u"LAYER", name).name); }
    struct Named {
        ads_name name = {0, 0};
        Named(const char16_t* table, const char16_t* symbol) {
            acdbTblObjName(table, symbol, name);
        }
        bool operator==(const Named& other) const { return ads_name_equal(name, other.name); }
    };
    static void makeLayer(const char16_t* name) {
        const Chain list(acutBuildList(RTDXF0, u"LAYER", 100, u"AcDbSymbolTableRecord", 100,
                                       u"AcDbLayerTableRecord", 2, name, 70, 0, RTNONE));
        ads_name made = {0, 0};
        EXPECT_EQ(acdbEntMakeX(list.get(), made), RTNORM);
    }
    static size_t undoOne() { return host::undo(1).names.size(); }

    std::string saved() {
        std::string error;
        EXPECT_TRUE(host::saveDrawing(folder_.file("out.dxf"), error)) << error;
        return TempFolder::read(folder_.file("out.dxf"));
    }

    TempFolder folder_;
};

TEST_F(UndoTest, steps_come_back_one_by_one_and_go_again) {
    for (int value = 1; value <= 3; ++value) {
        const host::UndoStep step("FIELD");
        setField(u"30", value);
        setField(u"30", value * 10);
    }
    {
        const host::UndoStep step("ERASE");
        erase(u"30");
    }
    EXPECT_EQ(field(u"30"), -2);
    EXPECT_EQ(undoOne(), 1U);
    EXPECT_EQ(field(u"30"), 30);
    EXPECT_EQ(undoOne(), 1U);
    EXPECT_EQ(field(u"30"), 20);
    EXPECT_EQ(host::redo().names, std::vector<std::string>{"FIELD"});
    EXPECT_EQ(field(u"30"), 30);
    EXPECT_EQ(host::redo().names, std::vector<std::string>{"ERASE"});
    EXPECT_EQ(field(u"30"), -2);
    EXPECT_TRUE(host::redo().names.empty());
    EXPECT_EQ(host::undo(100).names.size(), 4U);
    EXPECT_EQ(field(u"30"), -1);
    EXPECT_EQ(undoOne(), 0U);
}

TEST_F(UndoTest, a_change_ends_what_could_be_redone_and_nothing_is_kept_outside_of_steps) {
    {
        const host::UndoStep step("A");
        setField(u"30", 1);
    }
    undoOne();
    {
        const host::UndoStep step("B");
        setField(u"31", 2);
    }
    EXPECT_TRUE(host::redo().names.empty());
    setField(u"32", 3);
    EXPECT_EQ(host::undo(9).names, std::vector<std::string>{"B"});
    EXPECT_EQ(field(u"32"), 3);
}

TEST_F(UndoTest, an_undone_drawing_is_its_file_again_but_for_the_next_handle) {
    const std::string original = saved();
    {
        const host::UndoStep step("ALL");
        setField(u"30", 1);
        erase(u"31");
        ads_name made = {0, 0};
        const double start[3] = {0, 0, 0};
        const double end[3] = {1, 1, 0};
        const Chain list(
            acutBuildList(RTDXF0, u"LINE", 8, u"New layer", 10, start, 11, end, RTNONE));
        EXPECT_EQ(acdbEntMakeX(list.get(), made), RTNORM);
        resbuf elevation = {nullptr, RTREAL, {5.0}};
        EXPECT_EQ(acedSetVar(u"ELEVATION", &elevation), RTNORM);
    }
    EXPECT_TRUE(hasLayer(u"New layer"));
    const std::string changed = saved();
    EXPECT_NE(changed.find("New layer"), std::string::npos);
    undoOne();
    EXPECT_FALSE(hasLayer(u"New layer"));
    const std::string undone = saved();
    // All but the variable with the next handle is as it was.
    const auto withoutSeed = [](std::string text) {
        const size_t at = text.find("$HANDSEED");
        const size_t start = text.rfind('\n', at - 2) + 1;
        size_t end = at;
        for (int lines = 0; lines < 3; ++lines)
            end = text.find('\n', end) + 1;
        return text.erase(start, end - start);
    };
    EXPECT_EQ(withoutSeed(undone), withoutSeed(original));
    host::redo();
    EXPECT_EQ(saved(), changed);
}

TEST_F(UndoTest, names_lead_to_the_layer_that_lives) {
    {
        const host::UndoStep step("MAKE");
        makeLayer(u"PIPE");
    }
    const Named first(u"LAYER", u"PIPE");
    {
        const host::UndoStep step("RENAME");
        const Chain list(acutBuildList(-1, first.name, 2, u"DUCT", 0));
        EXPECT_EQ(acdbEntMod(list.get()), RTNORM);
    }
    {
        const host::UndoStep step("MAKE");
        makeLayer(u"pipe");
    }
    const Named second(u"LAYER", u"PIPE");
    EXPECT_FALSE(first == second);
    undoOne();
    EXPECT_FALSE(hasLayer(u"PIPE"));
    EXPECT_TRUE(Named(u"LAYER", u"DUCT") == first);
    undoOne();
    EXPECT_TRUE(Named(u"LAYER", u"PIPE") == first);
    EXPECT_FALSE(hasLayer(u"DUCT"));
    host::redo();
    host::redo();
    EXPECT_TRUE(Named(u"LAYER", u"PIPE") == second);
}

TEST_F(UndoTest, dictionaries_get_their_entries_back_in_order) {
    ads_name root = {0, 0};
    ASSERT_EQ(acdbNamedObjDict(root), RTNORM);
    const auto add = [&](const char16_t* key) {
        const Chain list(acutBuildList(RTDXF0, u"XRECORD", 100, u"AcDbXrecord", 1, key, RTNONE));
        ads_name made = {0, 0};
        EXPECT_EQ(acdbEntMakeX(list.get(), made), RTNORM);
        EXPECT_EQ(acdbDictAdd(root, key, made), RTNORM);
    };
    /// The text in the record of an entry: empty for no entry.
    const auto entry = [&](const char16_t* key) {
        const Chain list(acdbDictSearch(root, key, 0));
        return list == nullptr ? std::u16string() : textAt(list.get(), 1);
    };
    add(u"FIRST");
    {
        const host::UndoStep step("ADD");
        add(u"A");
        add(u"B");
    }
    {
        const host::UndoStep step("REPLACE");
        const Chain old(acdbDictSearch(root, u"A", 0));
        EXPECT_EQ(acdbEntDel(find(old.get(), -1)->resval.rlname), RTNORM);
        EXPECT_EQ(acdbDictRename(root, u"B", u"C"), RTNORM);
        add(u"a");
    }
    EXPECT_EQ(entry(u"A"), u"a");
    undoOne();
    EXPECT_EQ(entry(u"A"), u"A");
    EXPECT_EQ(entry(u"B"), u"B");
    EXPECT_EQ(entry(u"C"), u"");
    undoOne();
    EXPECT_EQ(entry(u"A"), u"");
    EXPECT_EQ(entry(u"FIRST"), u"FIRST");
    host::redo();
    host::redo();
    EXPECT_EQ(entry(u"A"), u"a");
    EXPECT_EQ(entry(u"C"), u"B");
    const std::string text = saved();
    EXPECT_LT(text.find("  3\nFIRST\n"), text.find("  3\nC\n"));
    EXPECT_LT(text.find("  3\nC\n"), text.find("  3\na\n"));
    EXPECT_EQ(text.find("  3\nB\n"), std::string::npos);
}

TEST_F(UndoTest, groups_count_as_one_and_end_where_they_began) {
    const auto step = [](int value) {
        const host::UndoStep made("S");
        setField(u"30", value);
    };
    step(1);
    host::beginUndoGroup();
    EXPECT_EQ(host::undoControlBits(), 1 | 8);
    step(2);
    step(3);
    host::UndoResult result = host::undo(5);
    EXPECT_EQ(result.names.size(), 2U);
    EXPECT_TRUE(result.groupStartMet);
    EXPECT_EQ(field(u"30"), 1);
    step(4);
    step(5);
    EXPECT_TRUE(host::endUndoGroup());
    EXPECT_FALSE(host::endUndoGroup());
    step(6);
    undoOne();
    EXPECT_EQ(field(u"30"), 5);
    EXPECT_EQ(host::undo(1).names.size(), 2U);
    EXPECT_EQ(field(u"30"), 1);
    host::redo();
    EXPECT_EQ(field(u"30"), 5);
}

TEST_F(UndoTest, marks_and_modes) {
    const auto step = [](int value) {
        const host::UndoStep made("S");
        setField(u"30", value);
    };
    step(1);
    host::setUndoMark();
    step(2);
    step(3);
    host::setUndoMark();
    step(4);
    host::undoToMark();
    EXPECT_EQ(field(u"30"), 3);
    host::undoToMark();
    EXPECT_EQ(field(u"30"), 1);
    EXPECT_FALSE(host::hasUndoMark());
    host::setUndoMark();
    step(5);
    EXPECT_FALSE(host::undo(1).markMet);
    EXPECT_TRUE(host::undo(1).markMet);
    EXPECT_EQ(field(u"30"), -1);

    step(6);
    step(7);
    host::setUndoMode(host::UndoMode::One);
    EXPECT_EQ(host::undoControlBits(), 1 | 2);
    step(8);
    EXPECT_EQ(host::undo(9).names.size(), 1U);
    EXPECT_EQ(field(u"30"), 7);
    host::setUndoMode(host::UndoMode::None);
    EXPECT_EQ(host::undoControlBits(), 0);
    step(9);
    EXPECT_EQ(undoOne(), 0U);
    host::setUndoMode(host::UndoMode::All);
    step(10);
    EXPECT_EQ(undoOne(), 1U);
    EXPECT_EQ(field(u"30"), 9);
}

TEST_F(UndoTest, recording_can_be_switched_off) {
    AcDbDatabase* drawing = acdbHostApplicationServices()->workingDatabase();
    const host::UndoStep step("S");
    setField(u"30", 1);
    drawing->disableUndoRecording(true);
    setField(u"31", 2);
    EXPECT_FALSE(drawing->undoRecording());
    drawing->disableUndoRecording(false);
    undoOne();
    EXPECT_EQ(field(u"30"), -1);
    EXPECT_EQ(field(u"31"), 2);
}

}  // namespace
