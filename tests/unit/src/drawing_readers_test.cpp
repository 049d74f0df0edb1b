/// Argument readers and conversions that ask the drawing.
#include "drawing_test.h"

namespace {

using test::Arguments;
using test::narrow;

class DrawingReaders : public test::DrawingTest {
  protected:
    void setVariable(const kz_Char* name, double value) {
        resbuf node{};
        node.restype = RTREAL;
        node.resval.rreal = value;
        ASSERT_EQ(acedSetVar(name, &node), RTNORM);
    }
    /// The line's name as the only argument.
    resbuf* nameNode() { return kz_Rb_create(RTENAME, line_); }
};

TEST_F(DrawingReaders, AFlatPointTakesItsHeightFromTheElevation) {
    setVariable(KZ_T("ELEVATION"), 2.5);
    Arguments arguments("<1,2>");
    double point[3] = {};
    EXPECT_EQ(kz_Rb_getNextPoint(point, &arguments.at, nullptr, 0), 1);
    EXPECT_EQ(point[2], 2.5);
}

TEST_F(DrawingReaders, ATextReadsAsADistance) {
    Arguments arguments("\"2.5\" \"abc\"");
    double value = 0.0;
    EXPECT_EQ(kz_Rb_getNextReal(&value, &arguments.at, nullptr, 0), 1);
    EXPECT_EQ(value, 2.5);
    EXPECT_EQ(kz_Rb_getNextReal(&value, &arguments.at, nullptr, 0), 1);
    EXPECT_EQ(value, 0.0);
}

TEST_F(DrawingReaders, AnEntityIsNamedByNameOrByHandle) {
    const std::string handle = handleOf(line_);
    for (const std::string& argument : {'"' + handle + '"', "5:" + handle}) {
        Arguments arguments(argument);
        ads_name name = {};
        EXPECT_EQ(kz_Rb_getNextADSName(name, &arguments.at, nullptr, 0), 1);
        EXPECT_TRUE(ads_name_equal(name, line_)) << argument;
    }
    traceAt(1);
    Arguments unknown("\"FFFF\"");
    ads_name name = {7, 7};
    EXPECT_EQ(kz_Rb_getNextADSName(name, &unknown.at, nullptr, 0), 1) << "no failure of the reader";
    EXPECT_TRUE(ads_name_nil(name));
    EXPECT_EQ(unknown.at, nullptr);
    EXPECT_EQ(traced(), "Invalid handle passed to kz_Rb_getNextADSName.");
}

TEST_F(DrawingReaders, AHandleComesFromAnEntityOrAsItStands) {
    kz_Char text[32];
    resbuf* name = nameNode();
    resbuf* cursor = name;
    EXPECT_EQ(kz_Rb_getNextHandle(text, &cursor, nullptr, 0), 1);
    EXPECT_EQ(narrow(text), handleOf(line_));
    Arguments any("\"no handle\"");
    EXPECT_EQ(kz_Rb_getNextHandle(text, &any.at, nullptr, 0), 1);
    EXPECT_EQ(narrow(text), "no handle");
    traceAt(1);
    acdbEntDel(line_);
    cursor = name;
    EXPECT_EQ(kz_Rb_getNextHandle(text, &cursor, nullptr, 0), 0);
    EXPECT_EQ(text[0], 0);
    EXPECT_EQ(cursor, name);
    EXPECT_EQ(traced(), "Invalid entname passed to kz_Rb_getNextHandle.");
    kz_ResBuf_release(name);
}

TEST_F(DrawingReaders, PointsGoBetweenTheUcsAndTheWorld) {
    const ads_point user = {1.0, 2.0, 3.0};
    kz_Point world{};
    ASSERT_EQ(kz_Point_transUCStoWorld(&world, user), 1);
    ads_point back = {};
    ASSERT_EQ(kz_Point_transWorldtoUCS(back, &world), 1);
    EXPECT_NEAR(acutDistance(user, back), 0.0, 1e-9);
    EXPECT_EQ(kz_Point_transUCStoWorld(nullptr, user), 0);
    EXPECT_EQ(kz_Point_transWorldtoUCS(back, nullptr), 0);
}

}  // namespace
