// Commands as the library calls them: the exact strings, with points, reals, names and sets; what
// users answer; and what is said.
#include <gtest/gtest.h>

#include <numbers>
#include <set>

#include "acad/ed.h"
#include "entity_list.h"
#include "host/command.h"
#include "host/drawing.h"
#include "host/input.h"
#include "host/output.h"
#include "host/undo.h"

namespace {

class CommandTest : public testing::Test {
  protected:
    CommandTest() {
        host::newDrawing();
        host::setSink(host::Channel::Message, [this](std::u16string_view text) { said_ += text; });
    }
    ~CommandTest() override {
        host::clearAnswers();
        host::setInputReader({});
        host::setSink(host::Channel::Message, {});
        host::closeDrawing();
    }

    struct Last {
        ads_name name = {0, 0};
        Last() { acdbEntLast(name); }
    };
    static std::u16string lastType() {
        const Chain list(acdbEntGet(Last().name));
        return textAt(list.get(), 0);
    }
    static const resbuf* group(const Chain& list, int code) {
        const resbuf* node = find(list.get(), code);
        EXPECT_NE(node, nullptr) << code;
        return node;
    }
    static int layerFlags(const char16_t* name) {
        const Chain list(acdbTblSearch(u"LAYER", name, 0));
        return list == nullptr ? -1 : group(list, 70)->resval.rint;
    }
    static std::u16string textOf(const ACHAR* variable) {
        Chain value(acutNewRb(RTSTR));
        EXPECT_EQ(acedGetVar(variable, value.get()), RTNORM);
        return value->resval.rstring;
    }
    static int integerOf(const ACHAR* variable) {
        resbuf value{};
        EXPECT_EQ(acedGetVar(variable, &value), RTNORM);
        return value.resval.rint;
    }
    bool told(std::u16string_view text) const { return said_.find(text) != std::u16string::npos; }

    std::u16string said_;
};

TEST_F(CommandTest, a_position_is_marked_by_a_block_and_the_mark_taken_away) {
    const ads_point origin = {0, 0, 0}, place = {3, 4, 5};
    EXPECT_EQ(acedCommandS(RTSTR, u"_.point", RT3DPOINT, origin, RTNONE), RTNORM);
    EXPECT_EQ(acedCommandS(RTSTR, u"_.block", RTSTR, u"KZ_MARK", RT3DPOINT, origin, RTENAME,
                           Last().name, RTSTR, u"", RTNONE),
              RTNORM);
    EXPECT_EQ(acedCommandS(RTSTR, u"_.insert", RTSTR, u"KZ_MARK", RT3DPOINT, place, RTSTR, u"",
                           RTSTR, u"", RTSTR, u"", RTNONE),
              RTNORM);
    const Chain insert(acdbEntGet(Last().name));
    EXPECT_EQ(textAt(insert.get(), 2), u"KZ_MARK");
    EXPECT_EQ(group(insert, 10)->resval.rpoint[2], 5.0);
    ads_name set = {0, 0};
    ASSERT_EQ(acedSSAdd(Last().name, nullptr, set), RTNORM);
    EXPECT_EQ(acedCommandS(RTSTR, u"_.erase", RTPICKS, set, RTSTR, u"", RTNONE), RTNORM);
    acedSSFree(set);
    ads_name none;
    EXPECT_EQ(acdbEntLast(none), RTERROR);
}

TEST_F(CommandTest, an_insert_takes_reals_for_scales_and_degrees) {
    const ads_point origin = {0, 0, 0}, place = {1, 2, 0};
    acedCommandS(RTSTR, u"_.point", RT3DPOINT, origin, RTNONE);
    acedCommandS(RTSTR, u"_.block", RTSTR, u"B", RT3DPOINT, origin, RTENAME, Last().name, RTSTR,
                 u"", RTNONE);
    EXPECT_EQ(acedCommandS(RTSTR, u"._insert", RTSTR, u"B", RT3DPOINT, place, RTREAL, 2.5, RTREAL,
                           -1.0, RTREAL, 30.0, RTNONE),
              RTNORM);
    const Chain insert(acdbEntGet(Last().name));
    EXPECT_EQ(group(insert, 41)->resval.rreal, 2.5);
    EXPECT_EQ(group(insert, 42)->resval.rreal, -1.0);
    EXPECT_NEAR(group(insert, 50)->resval.rreal, std::numbers::pi / 6, 1e-15);
    EXPECT_EQ(acedCommandS(RTSTR, u"._insert", RTSTR, u"NOT THERE", RTNONE), RTCAN);
    EXPECT_TRUE(told(u"INSERT: there is no block and no file \"NOT THERE\"."));
}

TEST_F(CommandTest, layers_of_attachments_are_made_and_their_state_brought_back) {
    EXPECT_EQ(acedCommandS(RTSTR, u"_.layer", RTSTR, u"_make", RTSTR, u"REF", RTSTR, u"", RTNONE),
              RTNORM);
    EXPECT_EQ(textOf(u"CLAYER"), u"REF");
    acedCommandS(RTSTR, u"_.layer", RTSTR, u"_set", RTSTR, u"0", RTSTR, u"", RTNONE);
    EXPECT_EQ(acedCommandS(RTSTR, u"_.layer", RTSTR, u"_freeze", RTSTR, u"REF", RTSTR, u"", RTNONE),
              RTNORM);
    EXPECT_EQ(acedCommandS(RTSTR, u"_.layer", RTSTR, u"_lock", RTSTR, u"REF", RTSTR, u"", RTNONE),
              RTNORM);
    EXPECT_EQ(layerFlags(u"REF"), 5);
    EXPECT_EQ(acedCommandS(RTSTR, u"._layer", RTSTR, u"_thaw", RTSTR, u"REF", RTSTR, u"_unlock",
                           RTSTR, u"REF", RTSTR, u"_set", RTSTR, u"REF", RTSTR, u"", RTNONE),
              RTNORM);
    EXPECT_EQ(layerFlags(u"REF"), 0);
    EXPECT_EQ(textOf(u"CLAYER"), u"REF");
}

TEST_F(CommandTest, coordinate_systems_and_views_answer_with_a_status) {
    const ads_point a = {1, 1, 0}, b = {1, 2, 0}, c = {0, 1, 0};
    EXPECT_EQ(acedCommandS(RTSTR, u"_.ucs", RTSTR, u"_world", RTNONE), RTNORM);
    EXPECT_EQ(acedCommandS(RTSTR, u"_.ucs", RTSTR, u"_3point", RT3DPOINT, a, RT3DPOINT, b,
                           RT3DPOINT, c, RTNONE),
              RTNORM);
    EXPECT_EQ(acedCommandS(RTSTR, u"_.ucs", RTSTR, u"_prev", RTNONE), RTNORM);
    EXPECT_EQ(acedCommandS(RTSTR, u"_.ucs", RTSTR, u"_prev", RTNONE), RTNORM);
    EXPECT_EQ(acedCommandS(RTSTR, u"_.ucs", RTSTR, u"_prev", RTNONE), RTCAN);
    EXPECT_EQ(acedCommandS(RTSTR, u"_.ucs", RTSTR, u"_New", RTSTR, u"_3point", RTSTR, u"",
                           RT3DPOINT, b, RTSTR, u"", RTNONE),
              RTNORM);
    EXPECT_EQ(acedCommandS(RTSTR, u"._zoom", RTSTR, u"_w", RT3DPOINT, a, RT3DPOINT, c, RTNONE),
              RTNORM);
    EXPECT_EQ(acedCommandS(RTSTR, u"._zoom", RTSTR, u"1.500000x", RTNONE), RTNORM);
    EXPECT_EQ(acedCommandS(RTSTR, u"._zoom", RTSTR, u"_e", RTNONE), RTNORM);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(acedCommandS(RTSTR, u"_.zoom", RTSTR, u"_prev", RTNONE), RTNORM);
    EXPECT_EQ(acedCommandS(RTSTR, u"._zoom", RTSTR, u"_p", RTNONE), RTCAN);
    EXPECT_EQ(acedCommandS(RTSTR, u"._view", RTSTR, u"_ucs", RTNONE), RTNORM);
    EXPECT_EQ(acedCommandS(RTSTR, u"_.view", RTSTR, u"_prev", RTNONE), RTNORM);
    EXPECT_EQ(acedCommandS(RTSTR, u"_.mspace", RTNONE), RTCAN);
    EXPECT_EQ(integerOf(u"CVPORT"), 2);
}

TEST_F(CommandTest, a_command_that_lacks_answers_does_nothing_and_says_so) {
    const ads_point origin = {0, 0, 0};
    EXPECT_EQ(acedCommandS(RTSTR, u"_.circle", RT3DPOINT, origin, RTNONE), RTCAN);
    EXPECT_TRUE(told(u"CIRCLE: cancelled, it asked for more answers."));
    EXPECT_EQ(acedCommandS(RTSTR, u"_.circle", RT3DPOINT, origin, RTREAL, 2.0, RTSTR, u"too many",
                           RTNONE),
              RTERROR);
    EXPECT_TRUE(told(u"CIRCLE: an answer too many: \"too\"."));
    EXPECT_EQ(lastType(), u"CIRCLE");
    EXPECT_EQ(host::undoStepCount(), 1U);
}

TEST_F(CommandTest, a_user_is_asked_until_his_answers_fit) {
    for (const char16_t* answer : {u"nowhere", u"1,1", u"-3", u"x", u"d", u"4"})
        host::queueText(answer);
    EXPECT_TRUE(host::runCommandLine(u"circle"));
    EXPECT_TRUE(told(u"Invalid point."));
    EXPECT_TRUE(told(u"Value must be positive and nonzero."));
    EXPECT_TRUE(told(u"Requires numeric distance or two points."));
    const Chain circle(acdbEntGet(Last().name));
    EXPECT_EQ(group(circle, 40)->resval.rreal, 2.0);
    // The radius is offered the next time.
    host::queueEnter();
    said_.clear();
    EXPECT_TRUE(host::runCommandLine(u"c 5,5"));
    EXPECT_TRUE(told(u"<2.0000>: "));
    // A cancel, and the end of all answers.
    host::queueCancel();
    EXPECT_FALSE(host::runCommandLine(u"line 0,0"));
    EXPECT_FALSE(host::runCommandLine(u"line 0,0 1,1"));
    EXPECT_EQ(lastType(), u"LINE");
}

TEST_F(CommandTest, a_typed_line_answers_prompts_and_names_variables) {
    host::queueEnter();
    EXPECT_TRUE(host::runCommandLine(u"line 0,0 3,4 @1,0"));
    EXPECT_EQ(lastType(), u"LINE");
    EXPECT_TRUE(host::runCommandLine(u"text 0,0 2.5 0 two words"));
    EXPECT_EQ(textAt(Chain(acdbEntGet(Last().name)).get(), 1), u"two words");
    EXPECT_TRUE(host::runCommandLine(u"orthomode 1"));
    EXPECT_EQ(integerOf(u"ORTHOMODE"), 1);
    EXPECT_FALSE(host::runCommandLine(u"orthomode many"));
    EXPECT_TRUE(told(u"ORTHOMODE: ORTHOMODE can't be set to many."));
    EXPECT_TRUE(host::isCommand(u"osmode"));
    EXPECT_FALSE(host::isCommand(u"nosuchmode"));
}

TEST_F(CommandTest, silent_commands_still_say_what_they_leave_undone) {
    host::runCommandLine(u"cmdecho 0");
    said_.clear();
    const Chain proxy(acutBuildList(RTDXF0, u"ACAD_PROXY_ENTITY", 100, u"AcDbEntity", 8, u"0", 100,
                                    u"AcDbProxyEntity", 90, 498, 0));
    ads_name name;
    ASSERT_EQ(acdbEntMakeX(proxy.get(), name), RTNORM);
    const ads_point a = {0, 0, 0}, b = {1, 0, 0};
    EXPECT_EQ(acedCommandS(RTSTR, u"_.move", RTENAME, name, RTSTR, u"", RT3DPOINT, a, RT3DPOINT, b,
                           RTNONE),
              RTNORM);
    EXPECT_EQ(said_,
              u"MOVE: 1 ACAD_PROXY_ENTITY: the geometry of this type is not known; left as it "
              u"is.\n");
}

TEST_F(CommandTest, every_command_has_a_name_and_a_sentence_of_help) {
    const std::vector<host::CommandInfo> all = host::commands();
    EXPECT_GT(all.size(), 40U);
    std::set<std::u16string> names;
    for (const host::CommandInfo& command : all) {
        EXPECT_TRUE(names.insert(command.name).second);
        if (!command.alias.empty()) {
            EXPECT_TRUE(names.insert(command.alias).second);
        }
        EXPECT_GT(command.help.size(), 10U);
        EXPECT_EQ(command.help.back(), '.');
        EXPECT_TRUE(host::isCommand(u"_." + command.name));
    }
}

}  // namespace
