// Result buffers, wildcards, distances, system variables and coordinate systems.
#include <gtest/gtest.h>

#include "dxf_text.h"
#include "entity_list.h"
#include "host/counters.h"
#include "host/drawing.h"
#include "host/output.h"
#include "temp_folder.h"

namespace {

TEST(Wildcards, items_sets_and_alternatives) {
    const auto matches = [](const char16_t* text, const char16_t* pattern) {
        return acutWcMatch(text, pattern) == RTNORM;
    };
    EXPECT_TRUE(matches(u"P-101", u"@-###"));
    EXPECT_FALSE(matches(u"P-101", u"@-##"));
    EXPECT_TRUE(matches(u"Насос", u"@@@@@"));
    EXPECT_TRUE(matches(u"WALL_ext", u"door*,WALL*"));
    EXPECT_TRUE(matches(u"b7", u"[a-c]#"));
    EXPECT_FALSE(matches(u"b7", u"[~a-c]#"));
    EXPECT_TRUE(matches(u"x", u"~y*"));
    EXPECT_TRUE(matches(u"a,b", u"a`,b"));
    EXPECT_TRUE(matches(u"*", u"`*"));
    EXPECT_FALSE(matches(u"ab", u"AB"));
    EXPECT_TRUE(matches(u"", u"*"));
    EXPECT_FALSE(matches(u"",
                         u""
                         u"?"));
    EXPECT_TRUE(matches(u"a[b", u"a[b"));
    const std::u16string text(5000, u'a');
    EXPECT_FALSE(matches(text.c_str(), u"*a*a*a*a*a*a*a*a*b"));
}

TEST(ResultBuffers, chains_own_their_texts_and_count) {
    const int64_t before = host::resbufCount();
    resbuf* chain = acutBuildList(RTSTR, u"abc", RTLB, 8, u"layer", RTSHORT, 5, RTLE, 0);
    EXPECT_EQ(host::resbufCount(), before + 5);
    EXPECT_EQ(acutBuildList(RTSHORT, 1, 4711, 0), nullptr);
    acutRelRb(chain);
    acutRelRb(chain);  // a second release finds nothing alive
    EXPECT_EQ(host::resbufCount(), before);
}

TEST(Distances, all_spellings_of_a_seat) {
    const auto distance = [](const char16_t* text) {
        double value = -777.0;
        acdbDisToF(text, -1, &value);
        return value;
    };
    EXPECT_EQ(distance(u"12.5"), 12.5);
    EXPECT_EQ(distance(u"-1.25E+01"), -12.5);
    EXPECT_EQ(distance(u"1'-5.50\""), 17.5);
    EXPECT_EQ(distance(u"1'-5 1/2\""), 17.5);
    EXPECT_EQ(distance(u"2'"), 24.0);
    EXPECT_EQ(distance(u"3/4"), 0.75);
    EXPECT_EQ(distance(u"5-1/2"), 5.5);
    EXPECT_EQ(distance(u"abc"), -777.0);
    EXPECT_EQ(distance(u"1/0"), -777.0);
    EXPECT_EQ(distance(u"12x"), -777.0);
}

TEST(SystemVariables, drawing_session_and_computed) {
    TempFolder folder;
    std::string error;
    ASSERT_TRUE(host::openDrawing(folder.write("in.dxf", dxf_text::drawing("")), error));
    resbuf value = {};
    ASSERT_EQ(acedGetVar(u"elevation", &value), RTNORM);
    EXPECT_EQ(value.restype, RTREAL);
    EXPECT_EQ(value.resval.rreal, 2.5);
    value.resval.rreal = 4.0;
    ASSERT_EQ(acedSetVar(u"ELEVATION", &value), RTNORM);
    ASSERT_TRUE(host::saveDrawing(folder.file("out.dxf"), error));
    EXPECT_NE(TempFolder::read(folder.file("out.dxf")).find("$ELEVATION\n 40\n4.0\n"),
              std::string::npos);
    ASSERT_EQ(acedGetVar(u"CLAYER", &value), RTNORM);
    EXPECT_EQ(value.resval.rstring, std::u16string(u"0"));
    free(value.resval.rstring);
    ACHAR missing[] = u"NoSuchLayer";
    value.resval.rstring = missing;
    EXPECT_NE(acedSetVar(u"CLAYER", &value), RTNORM);
    EXPECT_NE(acedSetVar(u"ACADVER", &value), RTNORM);
    EXPECT_NE(acedGetVar(u"NOSUCH", &value), RTNORM);
    acdbEntGet(Ename(u"FFFF").name);
    ASSERT_EQ(acedGetVar(u"ERRNO", &value), RTNORM);
    EXPECT_NE(value.resval.rint, 0);
    host::closeDrawing();
}

TEST(CoordinateSystems, user_system_and_extrusions) {
    host::newDrawing();
    resbuf world = {};
    world.restype = RTSHORT;
    resbuf direction = {};
    direction.restype = RT3DPOINT;
    direction.resval.rpoint[2] = -1.0;
    const ads_point point = {1, 2, 3};
    ads_point out;
    ASSERT_EQ(acedTrans(point, &direction, &world, 0, out), RTNORM);
    EXPECT_EQ(out[0], -1.0);
    EXPECT_EQ(out[1], 2.0);
    EXPECT_EQ(out[2], -3.0);
    resbuf user = world;
    user.resval.rint = 1;
    ASSERT_EQ(acedTrans(point, &user, &world, 0, out), RTNORM);
    EXPECT_EQ(out[2], 3.0);
    user.resval.rint = 9;
    EXPECT_NE(acedTrans(point, &user, &world, 0, out), RTNORM);
    host::closeDrawing();
}

TEST(CommandLine, any_text_can_be_a_format) {
    std::u16string said;
    host::setSink(host::Channel::Message, [&](std::u16string_view text) { said += text; });
    acutPrintf(u"50%, %s and %d%c", u"pipes", 7, u'\n');
    acutPrintf(u"%s %n %99999d|");
    host::setSink(host::Channel::Message, nullptr);
    EXPECT_EQ(said, u"50%, pipes and 7\n%s %n %99999d|");
}

}  // namespace
