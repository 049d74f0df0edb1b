// How entities are shown: acedRedraw, and when what it did comes to an end.
#include <gtest/gtest.h>

#include <climits>

#include "dxf_text.h"
#include "entity_list.h"
#include "host/display.h"
#include "host/drawing.h"
#include "host/testing.h"
#include "temp_folder.h"

namespace {

class Redraw : public testing::Test {
  protected:
    void SetUp() override {
        open();
        id_ = idOf(u"30");
    }
    void TearDown() override { host::closeDrawing(); }

    void open() {
        const std::string lines = dxf_text::line("30", "0") + dxf_text::line("31", "0");
        std::string error;
        ASSERT_TRUE(host::openDrawing(folder_.write("in.dxf", dxf_text::drawing(lines)), error))
            << error;
    }
    static AcDbObjectId idOf(const char16_t* handle) {
        AcDbObjectId id;
        EXPECT_EQ(acdbGetObjectId(id, Ename(handle).name), Acad::eOk);
        return id;
    }
    static int redraw(int mode, const char16_t* handle = u"30") {
        return acedRedraw(Ename(handle).name, mode);
    }
    /// "h" for a highlighted entity, "o" for one off the screen.
    static std::string shown(AcDbObjectId id) {
        return std::string(host::isHighlighted(id) ? "h" : "") + (host::isOffScreen(id) ? "o" : "");
    }

    TempFolder folder_;
    AcDbObjectId id_;
};

TEST_F(Redraw, EachModeChangesOneThingOfOneEntity) {
    const std::pair<int, const char*> steps[] = {{3, "h"},  {2, "ho"}, {4, "o"},  {3, "ho"},
                                                 {1, "h"},  {4, ""},   {-2, "o"}, {-3, "ho"},
                                                 {-4, "o"}, {-1, ""}};
    for (const auto& [mode, expected] : steps) {
        EXPECT_EQ(redraw(mode), RTNORM);
        EXPECT_EQ(shown(id_), expected) << "after mode " << mode;
    }
    redraw(3);
    EXPECT_EQ(shown(idOf(u"31")), "");
}

TEST_F(Redraw, WhatIsNoLivingEntityIsRefused) {
    for (const int mode : {0, 5, -5, INT_MIN})
        EXPECT_EQ(redraw(mode), RTERROR);
    const ads_name nonsense = {17, 4};
    EXPECT_EQ(acedRedraw(nonsense, 3), RTERROR);
    ads_name dictionary = {};
    ASSERT_EQ(acdbNamedObjDict(dictionary), RTNORM);
    EXPECT_EQ(acedRedraw(dictionary, 3), RTERROR);
    acdbEntDel(Ename(u"30").name);
    EXPECT_EQ(redraw(3), RTERROR);
    host::testing::failCall("acedRedraw", 1, RTREJ);
    EXPECT_EQ(redraw(3, u"31"), RTREJ);
    host::testing::clearFault();
    EXPECT_EQ(shown(idOf(u"31")), "");
}

TEST_F(Redraw, WithoutANameAllIsShownAgain) {
    redraw(2);
    redraw(3);
    redraw(2, u"31");
    const ads_name none = {};
    EXPECT_EQ(acedRedraw(none, 3), RTNORM);
    EXPECT_EQ(shown(id_), "h");
    EXPECT_EQ(shown(idOf(u"31")), "");
    host::closeDrawing();
    EXPECT_EQ(acedRedraw(nullptr, 1), RTERROR);
}

TEST_F(Redraw, ErasingEndsItAndBringingBackDoesNotRenewIt) {
    host::setHighlighted(id_, true);
    EXPECT_EQ(shown(id_), "h");
    acdbEntDel(Ename(u"30").name);
    EXPECT_EQ(shown(id_), "");
    acdbEntDel(Ename(u"30").name);
    EXPECT_EQ(shown(id_), "");
    EXPECT_EQ(redraw(2), RTNORM);
    EXPECT_EQ(shown(id_), "o");
}

TEST_F(Redraw, ClosingTheDrawingEndsIt) {
    redraw(3);
    redraw(2);
    open();
    EXPECT_EQ(shown(id_), "");
    EXPECT_EQ(shown(idOf(u"30")), "");
    host::setHighlighted(id_, true);
    EXPECT_EQ(shown(id_), "");
}

}  // namespace
