/// What the library does in the callers' own coordinates: input, snapping, views, and setting the
/// user coordinate system together with the local one.
#include <gtest/gtest.h>

#include "host/input.h"
#include "host/output.h"
#include "host/testing.h"
#include "kz/kz_zaglaid.h"
#include "suite_test.h"

namespace {

class LocalCoordinates : public test::SuiteTest {
  protected:
    void SetUp() override {
        SuiteTest::SetUp();
        host::setSink(host::Channel::Message, [](std::u16string_view) {});
        lisp("(setvar \"OSMODE\" 0)");
        SUITE(kz_CoordSys_world)();
    }
    void TearDown() override {
        host::testing::clearFault();
        SUITE(kz_CoordSys_world)();
        EXPECT_FALSE(host::answersWait());
        host::clearAnswers();
        host::setSink(host::Channel::Message, {});
        SuiteTest::TearDown();
    }

    /// A local system at (100, 0, 0) of the world, turned by a quarter.
    static void turnLocal() {
        const kz_Vector origin = {100.0, 0.0, 0.0};
        const kz_Vector x = {0.0, 1.0, 0.0};
        const kz_Vector y = {-1.0, 0.0, 0.0};
        ASSERT_EQ(SUITE(kz_CoordSys_fromVectorsXY)(&origin, &x, &y), 1);
    }
    static std::string at(const kz_Point& point) {
        kz_Char text[100];
        kz_Str_format(text, 100, KZ_T("%.6g %.6g %.6g"), point.x + 0.0, point.y + 0.0,
                      point.z + 0.0);
        return kz::toUtf8(text);
    }
    /// Where a local point lies in the world.
    static std::string inWorld(double x, double y, double z = 0.0) {
        const kz_Point point = {x, y, z};
        kz_Point world = {};
        EXPECT_EQ(SUITE(kz_CoordSys_transformPointWorld)(&world, &point), 1);
        return at(world);
    }
    static std::string ucs() {
        return lisp(
            "(mapcar '(lambda (v) (mapcar 'fix (getvar v))) '(\"UCSORG\" \"UCSXDIR\" "
            "\"UCSYDIR\"))");
    }
};

TEST_F(LocalCoordinates, PointsComeAndGoInTheCallersSystem) {
    turnLocal();
    kz_Point point = {};
    host::queuePoint(100.0, 5.0);
    EXPECT_EQ(kz_CAD_getPoint(&point, nullptr, nullptr, nullptr, 1), KZ_INPUT_VALUE);
    EXPECT_EQ(at(point), "5 0 0");
    // The base is local, too: the answer counts from (100, 5) of the UCS.
    host::queueText(u"@1,0");
    EXPECT_EQ(kz_CAD_getPoint(&point, nullptr, nullptr, &point, 1), KZ_INPUT_VALUE);
    EXPECT_EQ(at(point), "5 -1 0");
    double value = 0.0;
    const kz_Point base = {0.0, 0.0, 0.0};
    host::queuePoint(103.0, 4.0);
    EXPECT_EQ(kz_CAD_getDistance(&value, nullptr, nullptr, &base, 1), KZ_INPUT_VALUE);
    EXPECT_EQ(value, 5.0);
    host::queuePoint(100.0, 4.0);
    EXPECT_EQ(kz_CAD_getAngle(&value, nullptr, nullptr, &base, 1), KZ_INPUT_VALUE);
    EXPECT_EQ(value, 90.0);
    kz_Vector vector = {};
    host::queuePoint(100.0, 7.0);
    EXPECT_EQ(kz_CAD_getVector(&vector, &base, nullptr), 1);
    EXPECT_EQ(vector.x, 7.0);
}

TEST_F(LocalCoordinates, AWindowWithoutAPointStartsAtTheLocalOrigin) {
    turnLocal();
    kz_Point first = {1.0, 0.0, 0.0};
    kz_Point second = {};
    host::queueText(u"@0,3");
    EXPECT_EQ(kz_CAD_getWindow(nullptr, &second, 0, nullptr, nullptr, nullptr, 1), KZ_INPUT_VALUE);
    EXPECT_EQ(at(second), "3 0 0");
    host::queueText(u"@0,3");
    EXPECT_EQ(kz_CAD_getWindow(&first, &second, 0, nullptr, nullptr, nullptr, 1), KZ_INPUT_VALUE);
    EXPECT_EQ(at(second), "4 0 0");
    host::queuePoint(100.0, 2.0);
    host::queueText(u"@0,3");
    EXPECT_EQ(kz_CAD_getWindow(&first, &second, 1, nullptr, nullptr, nullptr, 1), KZ_INPUT_VALUE);
    EXPECT_EQ(at(first) + " / " + at(second), "2 0 0 / 5 0 0");
}

TEST_F(LocalCoordinates, SnapsAreTriedInTheirOrder) {
    lisp("(entmake '((0 . \"LINE\") (10 100.0 0.0 0.0) (11 100.0 8.0 0.0)))");
    lisp("(command \"_.zoom\" \"_c\" '(100 4) 100)");
    turnLocal();
    const kz_Point near_end = {7.9, 0.05, 0.0};
    kz_Point out = {};
    EXPECT_EQ(kz_CAD_snapPoint(&out, &near_end, KZ_T("_end")), 1);
    EXPECT_EQ(at(out), "8 0 0");
    EXPECT_EQ(kz_CAD_snapPoint(&out, &near_end, KZ_T("_cen;_end,_mid")), 1);
    EXPECT_EQ(at(out), "8 0 0");
    EXPECT_EQ(kz_CAD_snapPoint(&out, &near_end, KZ_T("_mid _end")), 1);
    EXPECT_EQ(at(out), "4 0 0");
    EXPECT_EQ(kz_CAD_snapPoint(&out, &near_end, KZ_T("_cen,_qua")), 0);
    EXPECT_EQ(kz_Point_equal(&out, &near_end), 1);
    host::testing::failCall("acedOsnap", 1, RTERROR);
    out = near_end;
    EXPECT_EQ(kz_CAD_snapPoint(&out, &out, KZ_T("_mid,_end")), 1);
    EXPECT_EQ(at(out), "8 0 0");
}

TEST_F(LocalCoordinates, TheViewIsToldInTheCallersSystem) {
    lisp("(entmake '((0 . \"LINE\") (10 100.0 0.0 0.0) (11 140.0 20.0 0.0)))");
    lisp("(command \"_.zoom\" \"_c\" '(100 5) 30)");
    turnLocal();
    kz_Point point = {};
    kz_Vector direction = {};
    EXPECT_EQ(kz_CAD_getViewCenter(&point), 1);
    EXPECT_EQ(at(point), "5 0 0");
    EXPECT_EQ(kz_CAD_getDrawingExtentsMax(&point), 1);
    EXPECT_EQ(at(point), "20 -40 0");
    EXPECT_EQ(kz_CAD_getDrawingExtentsMin(&point), 1);
    EXPECT_EQ(at(point), "0 0 0");
    EXPECT_EQ(kz_CAD_getViewDir(&direction), 1);
    EXPECT_EQ(direction.z, 1.0);
    const kz_Point mark = {5.0, 0.0, 0.0};
    kz_CAD_highlightPosition(&mark, KZ_T("KZ_MARK"));
    EXPECT_EQ(lisp("(mapcar 'fix (cdr (assoc 10 (entget (entlast)))))"), "(100 5 0)");
}

TEST_F(LocalCoordinates, TheLocalSystemGoesAlongWithTheUcsAndBack) {
    turnLocal();
    lisp("(command \"_.ucs\" \"_o\" '(7 0 0))");
    const std::string before = ucs();
    const kz_Point origin = {10.0, 20.0, 0.0};
    const kz_RotMatrix turned = {{{0, -1, 0}, {1, 0, 0}, {0, 0, 1}}};
    EXPECT_EQ(kz_CAD_setUCS(&origin, &turned, 1), 1);
    EXPECT_EQ(ucs(), "((10 20 0) (0 1 0) (-1 0 0))");
    EXPECT_EQ(inWorld(1.0, 2.0), "8 21 0");
    EXPECT_EQ(kz_CAD_setPrevUCS(), 1);
    EXPECT_EQ(ucs(), before);
    EXPECT_EQ(inWorld(1.0, 0.0), "100 1 0");
}

TEST_F(LocalCoordinates, WhatIsNotGivenIsThePresentOne) {
    lisp("(command \"_.ucs\" \"_o\" '(7 8 9))");
    const kz_RotMatrix turned = {{{0, -1, 0}, {1, 0, 0}, {0, 0, 1}}};
    EXPECT_EQ(kz_CAD_setUCS(nullptr, &turned, 1), 1);
    EXPECT_EQ(ucs(), "((7 8 9) (0 1 0) (-1 0 0))");
    EXPECT_EQ(inWorld(1.0, 0.0), "7 9 9");
    const kz_Point origin = {1.0, 1.0, 1.0};
    EXPECT_EQ(kz_CAD_setUCS(&origin, nullptr, 1), 1);
    EXPECT_EQ(inWorld(1.0, 0.0), "1 2 1");
    EXPECT_EQ(kz_CAD_setPrevUCS(), 1);
    EXPECT_EQ(inWorld(1.0, 0.0), "7 9 9");
    EXPECT_EQ(ucs(), "((7 8 9) (0 1 0) (-1 0 0))");
    EXPECT_EQ(kz_CAD_setPrevUCS(), 1);
    EXPECT_EQ(ucs(), "((7 8 9) (1 0 0) (0 1 0))");
}

TEST_F(LocalCoordinates, AWayBackThatFailsSaysSo) {
    const kz_Point origin = {1.0, 1.0, 1.0};
    EXPECT_EQ(kz_CAD_setUCS(&origin, nullptr, 1), 1);
    host::testing::failCall("acedCommandS", 2, RTCAN);
    EXPECT_EQ(kz_CAD_setPrevUCS(), 0);
    EXPECT_EQ(kz_CAD_setUCS(&origin, nullptr, 1), 1);
    host::testing::failCall("acedCommandS", 1, RTCAN);
    EXPECT_EQ(kz_CAD_setPrevUCS(), 1);
    // A command that fails leaves the local system where the UCS should be.
    host::testing::failCall("acedCommandS", 1, RTCAN);
    EXPECT_EQ(kz_CAD_setUCS(&origin, nullptr, 1), 0);
    EXPECT_EQ(inWorld(0.0, 0.0), "1 1 1");
}

}  // namespace
