// Selections from chains: filters of drawings that nobody has decoded, modes, and faults. What
// filters mean stands in tests/lisp/selection.lsp.
#include <gtest/gtest.h>

#include "dxf_text.h"
#include "entity_list.h"
#include "host/counters.h"
#include "host/drawing.h"
#include "host/testing.h"
#include "temp_folder.h"

namespace {

using dxf_text::drawing;
using dxf_text::line;

class SelectFilter : public testing::Test {
  protected:
    ~SelectFilter() override {
        host::testing::clearFault();
        host::closeDrawing();
        EXPECT_EQ(host::resbufCount(), 0);
        EXPECT_EQ(host::selectionSetCount(), 0);
    }

    void open(const std::string& entities) const {
        std::string error;
        ASSERT_TRUE(host::openDrawing(folder_.write("in.dxf", drawing(entities)), error)) << error;
    }
    /// How many entities are selected; -1 for a refusal. The chain is released.
    static int count(const ACHAR* mode, resbuf* filter) {
        ads_name set = {0, 0};
        int32_t length = -1;
        if (acedSSGet(mode, nullptr, nullptr, filter, set) == RTNORM) {
            acedSSLength(set, &length);
            acedSSFree(set);
        }
        acutRelRb(filter);
        return length;
    }

    TempFolder folder_;
};

TEST_F(SelectFilter, drawings_are_searched_as_they_were_read) {
    open(line("30", "0", "") + line("31", "PIPES", "62 3") +
         line("32", "0", "1001 OTHER | 1070 5"));
    EXPECT_EQ(count(u"X", nullptr), 3);
    EXPECT_EQ(count(u"_x", acutBuildList(8, u"pipes", 0)), 1);
    EXPECT_EQ(count(u"X", acutBuildList(RTDXF0, u"LINE", 62, 256, RTNONE)), 2);
    EXPECT_EQ(count(u"X", acutBuildList(-3, 1001, u"OTHER", 0)), 1);
    // A change counts, though the object is still as its file has it otherwise.
    const Ename second(u"31");
    resbuf* change = acutBuildList(-1, second.name, 8, u"0", 0);
    EXPECT_EQ(acdbEntMod(change), RTNORM);
    acutRelRb(change);
    EXPECT_EQ(count(u"X", acutBuildList(8, u"PIPES", 0)), -1);
}

TEST_F(SelectFilter, names_are_those_of_objects) {
    open(line("30", "0", ""));
    const Ename entity(u"30");
    resbuf* list = acdbEntGet(entity.name);
    ads_name owner = {0, 0};
    for (const resbuf* node = list; node != nullptr; node = node->rbnext) {
        if (node->restype == 330) ads_name_set(node->resval.rlname, owner);
    }
    acutRelRb(list);
    EXPECT_EQ(count(u"X", acutBuildList(330, owner, 0)), 1);
    EXPECT_EQ(count(u"X", acutBuildList(330, entity.name, 0)), -1);
}

TEST_F(SelectFilter, what_can_not_be_done_is_refused) {
    open(line("30", "0", ""));
    ads_name set = {1, 2};
    EXPECT_EQ(acedSSGet(u"XX", nullptr, nullptr, nullptr, set), RTREJ);
    EXPECT_EQ(acedSSGet(u"W", nullptr, nullptr, nullptr, set), RTERROR);
    // Nobody answers the prompt.
    for (const ACHAR* mode : {static_cast<const ACHAR*>(nullptr), u"", u"_"}) {
        EXPECT_EQ(acedSSGet(mode, nullptr, nullptr, nullptr, set), RTCAN);
    }
    EXPECT_EQ(acedSSGet(u"X", nullptr, nullptr, nullptr, nullptr), RTERROR);
    EXPECT_EQ(count(u"X", acutBuildList(RTLB, 8, u"0", RTLE, 0)), -1);
    EXPECT_EQ(count(u"X", acutBuildList(-3, 8, u"0", 0)), -1);
    EXPECT_EQ(set[0] + set[1], 3);
    host::closeDrawing();
    EXPECT_EQ(count(u"X", nullptr), -1);
}

TEST_F(SelectFilter, a_selection_that_fails_leaves_no_set) {
    open(line("30", "0", "") + line("31", "0", ""));
    host::testing::failCall("acedSSGet", 1, RTCAN);
    ads_name set;
    EXPECT_EQ(acedSSGet(u"X", nullptr, nullptr, nullptr, set), RTCAN);
}

}  // namespace
