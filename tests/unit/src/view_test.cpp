/// Views, marks and the user coordinate system of the drawing in the editor, by the commands that
/// the library runs. No coordinate service is there.
#include <functional>

#include "host/drawing.h"
#include "host/testing.h"
#include "host/variables.h"
#include "printed_test.h"

namespace {

class Views : public test::PrintedTest {
  protected:
    void SetUp() override {
        PrintedTest::SetUp();
        host::newDrawing();
        host::setScreenSize(200, 100);
        eval("(entmake '((0 . \"LINE\") (10 0.0 0.0 0.0) (11 40.0 20.0 0.0)))");
        view(10.0, 10.0, 50.0);
    }
    void TearDown() override {
        host::testing::clearFault();
        EXPECT_EQ(host::openObjectCount(), 0) << "objects were left open";
        EXPECT_EQ(host::selectionSetCount(), 0);
        host::setScreenSize(1920, 1080);
        host::closeDrawing();
        PrintedTest::TearDown();
    }

    static void view(double x, double y, double height) {
        const kz_Point center = {x, y, 0.0};
        EXPECT_EQ(kz_CAD_zoomCenter(&center, height), 1);
    }
    /// Centre and height of the view, rounded to a thousandth.
    static std::string view() {
        return eval(
            "(setvar \"DIMZIN\" 8)"
            "(strcat (rtos (car (getvar \"VIEWCTR\")) 2 3) \" \" (rtos (cadr (getvar "
            "\"VIEWCTR\")) 2 3) \" \" (rtos (getvar \"VIEWSIZE\") 2 3))");
    }
    static std::string count(const std::string& filter) {
        return eval("((lambda (s) (if s (sslength s) 0)) (ssget \"X\" '(" + filter + ")))");
    }
    static std::string at(const kz_Point& point) {
        kz_Char text[100];
        kz_Str_format(text, 100, KZ_T("%g %g %g"), point.x, point.y, point.z);
        return test::narrow(text);
    }
    /// The system as Lisp sees it.
    static std::string ucs() {
        return eval("(list (getvar \"UCSORG\") (getvar \"UCSXDIR\") (getvar \"UCSYDIR\"))");
    }
    /// Every command fails once.
    static void expectFailure(const std::function<int()>& function) {
        host::testing::failCall("acedCommandS", 1, RTCAN);
        EXPECT_EQ(function(), 0);
        EXPECT_TRUE(host::testing::faultFired());
        host::testing::clearFault();
    }
};

TEST_F(Views, ZoomsShowWhatTheyName) {
    EXPECT_EQ(view(), "\"10 10 50\"");
    EXPECT_EQ(kz_CAD_zoom(2.0), 1);
    EXPECT_EQ(view(), "\"10 10 25\"");
    EXPECT_EQ(kz_CAD_zoomPrevious(), 1);
    EXPECT_EQ(view(), "\"10 10 50\"");
    const kz_Point first = {0.0, 0.0, 0.0};
    const kz_Point second = {4.0, 6.0, 0.0};
    EXPECT_EQ(kz_CAD_zoomWindow(&first, &second), 1);
    EXPECT_EQ(view(), "\"2 3 6\"");
    EXPECT_EQ(kz_CAD_zoomCenter(&second, 1e-6), 1);
    EXPECT_EQ(view(), "\"4 6 6\"");
    EXPECT_EQ(kz_CAD_zoomExtents(), 1);
    EXPECT_EQ(view().substr(0, 6), "\"20 10");
    EXPECT_EQ(kz_CAD_zoomWindow(&first, nullptr) + kz_CAD_zoomWindow(nullptr, &first) +
                  kz_CAD_zoomCenter(nullptr, 1.0),
              0);
    for (const auto& function : {std::function<int()>(kz_CAD_zoomExtents),
                                 {kz_CAD_zoomPrevious},
                                 {[] { return kz_CAD_zoom(2.0); }},
                                 {[&] { return kz_CAD_zoomWindow(&first, &second); }},
                                 {[&] { return kz_CAD_zoomCenter(&first, 1.0); }},
                                 {[&] { return kz_CAD_zoomCenter(&first, 0.0); }}}) {
        expectFailure(function);
    }
}

TEST_F(Views, BoxesAreShownWithAFactor) {
    const AcDbExtents box({2, 2, 0}, {6, 4, 0});
    EXPECT_EQ(kz_AcCAD_zoom(&box, 1.0, 0), 1);
    EXPECT_EQ(view(), "\"4 3 2\"");
    EXPECT_EQ(kz_AcCAD_zoom(&box, 0.5, 0), 1);
    EXPECT_EQ(view(), "\"4 3 4\"");
    EXPECT_EQ(kz_AcCAD_zoom(&box, 1e-11, 0), 1);
    EXPECT_EQ(view(), "\"4 3 2\"");
    view(0.0, 0.0, 8.0);
    EXPECT_EQ(kz_AcCAD_zoom(&box, 0.0, 0), 1);
    EXPECT_EQ(view(), "\"4 3 8\"");
    // A box without a width is shown, too.
    const AcDbExtents point({5, 5, 0}, {5, 5, 0});
    EXPECT_EQ(kz_AcCAD_zoom(&point, 1.0, 0), 1);
    EXPECT_EQ(view().substr(0, 5), "\"5 5 ");
    EXPECT_EQ(kz_AcCAD_zoom(nullptr, 1.0, 0), 0);
    for (const double factor : {0.0, 1.0}) {
        expectFailure([&] { return kz_AcCAD_zoom(&box, factor, 0); });
    }
    host::testing::failCall("acedCommandS", 2, RTCAN);
    EXPECT_EQ(kz_AcCAD_zoom(&box, 2.0, 0), 0);
}

TEST_F(Views, ABoxInTheWorldIsShownInTheUcs) {
    const kz_Point origin = {100.0, 0.0, 0.0};
    EXPECT_EQ(kz_CAD_setUCS(&origin, nullptr, 0), 1);
    const AcDbExtents box({102, 2, 0}, {106, 4, 0});
    EXPECT_EQ(kz_AcCAD_zoom(&box, 1.0, 1), 1);
    EXPECT_EQ(view(), "\"4 3 2\"");  // VIEWCTR is in the UCS
    EXPECT_EQ(kz_AcCAD_zoom(&box, 1.0, 0), 1);
    EXPECT_EQ(view(), "\"104 3 2\"");
}

TEST_F(Views, WhatTheViewSaysOfItself) {
    kz_Point point = {7.0, 7.0, 7.0};
    kz_Vector direction = {};
    eval("(command \"_.zoom\" \"_e\")");
    view(10.0, 12.0, 50.0);
    // Without a coordinate service the result is 0, and the point is that of the UCS.
    EXPECT_EQ(kz_CAD_getDrawingExtentsMax(&point), 0);
    EXPECT_EQ(at(point), "40 20 0");
    EXPECT_EQ(kz_CAD_getDrawingExtentsMin(&point), 0);
    EXPECT_EQ(at(point), "0 0 0");
    EXPECT_EQ(kz_CAD_getViewCenter(&point), 0);
    EXPECT_EQ(at(point), "10 12 0");
    EXPECT_EQ(kz_CAD_getViewDir(&direction), 0);
    EXPECT_EQ(direction.z, 1.0);
    EXPECT_EQ(kz_CAD_getDrawingExtentsMin(nullptr) + kz_CAD_getDrawingExtentsMax(nullptr) +
                  kz_CAD_getViewCenter(nullptr) + kz_CAD_getViewDir(nullptr),
              0);
    point = {7.0, 7.0, 7.0};
    host::testing::failCall("acedGetVar", 1, RTERROR);
    EXPECT_EQ(kz_CAD_getDrawingExtentsMax(&point), 0);
    EXPECT_EQ(at(point), "7 7 7");
    host::testing::failCall("acedGetVar", 1, RTERROR);
    EXPECT_EQ(kz_CAD_getViewCenter(&point), 0);
    EXPECT_EQ(at(point), "0 0 0");
}

TEST_F(Views, ThePickBoxIsMeasuredInTheDrawing) {
    eval("(setvar \"PICKBOX\" 4)");
    EXPECT_EQ(kz_CAD_getPickBoxSizeInDwgUnits(), 2.0);
    for (int nth = 1; nth <= 3; ++nth) {
        host::testing::failCall("acedGetVar", nth, RTERROR);
        EXPECT_EQ(kz_CAD_getPickBoxSizeInDwgUnits(), 0.0);
    }
}

TEST_F(Views, MarksAreInsertedAndTakenAway) {
    const kz_Point point = {3.0, 4.0, 5.0};
    kz_CAD_highlightPosition(nullptr, KZ_T("KZ_MARK"));
    EXPECT_EQ(eval("(cdr (assoc 2 (tblsearch \"BLOCK\" \"KZ_MARK\")))"), "\"KZ_MARK\"");
    EXPECT_EQ(count("(2 . \"KZ_MARK\")") + count("(0 . \"POINT\")"), "00");
    kz_CAD_highlightPosition(&point, KZ_T("KZ_MARK"));
    kz_CAD_highlightPosition(&point, KZ_T("KZ_MARK"));
    EXPECT_EQ(count("(2 . \"KZ_MARK\") (10 3.0 4.0 5.0)"), "2");
    kz_CAD_dehighlightPosition(KZ_T("KZ_OTHER"));
    EXPECT_EQ(count("(2 . \"KZ_MARK\")"), "2");
    kz_CAD_dehighlightPosition(KZ_T("KZ_MARK"));
    EXPECT_EQ(count("(2 . \"KZ_MARK\")"), "0");
    EXPECT_EQ(count("(0 . \"LINE\")"), "1");
    for (const kz_Char* none : {KZ_T(""), static_cast<const kz_Char*>(nullptr)}) {
        kz_CAD_highlightPosition(&point, none);
        kz_CAD_dehighlightPosition(none);
    }
    EXPECT_EQ(count("(0 . \"INSERT\")"), "0");
}

TEST_F(Views, AMarkThatCannotBeMadeLeavesTheDrawingAsItIs) {
    const kz_Point point = {3.0, 4.0, 0.0};
    // The last entity must not get into the block in the place of the point.
    host::testing::failCall("acedCommandS", 1, RTCAN);
    kz_CAD_highlightPosition(&point, KZ_T("KZ_MARK"));
    EXPECT_EQ(count("(0 . \"LINE\")"), "1");
    EXPECT_EQ(eval("(tblsearch \"BLOCK\" \"KZ_MARK\")"), "nil");
    kz_CAD_highlightPosition(&point, KZ_T("KZ_MARK"));
    for (const char* call : {"acutBuildList", "acedSSGet", "acedCommandS"}) {
        host::testing::failCall(call, 1, RTERROR);
        kz_CAD_dehighlightPosition(KZ_T("KZ_MARK"));
        EXPECT_EQ(count("(2 . \"KZ_MARK\")"), "1") << call;
    }
}

// --- coordinate systems --------------------------------------------------------------------------

TEST_F(Views, TheUcsIsReadAsOriginAndColumns) {
    AcGeMatrix3d matrix;
    matrix(0, 3) = 5.0;
    kz_AcCAD_getUcsTransform(&matrix);
    EXPECT_TRUE(matrix.isEqualTo(AcGeMatrix3d()));
    kz_AcCAD_getUcsTransform(nullptr);
    eval("(command \"_.ucs\" \"_3point\" '(10 20 30) '(10 21 30) '(9 20 30))");
    kz_Point origin = {};
    kz_RotMatrix axes = {};
    kz_CAD_getUCS(&origin, nullptr);
    EXPECT_EQ(at(origin), "10 20 30");
    kz_CAD_getUCS(nullptr, &axes);
    EXPECT_EQ(axes.element[1][0], 1.0);
    EXPECT_EQ(axes.element[0][1], -1.0);
    EXPECT_EQ(axes.element[2][2], 1.0);
    EXPECT_EQ(axes.element[0][0], 0.0);
    kz_AcCAD_getUcsTransform(&matrix);
    EXPECT_TRUE((matrix * AcGePoint3d(10, 21, 30)).isEqualTo({1, 0, 0}));
    EXPECT_TRUE((matrix * AcGePoint3d(9, 20, 31)).isEqualTo({0, 1, 1}));
    kz_CAD_getUCS(nullptr, nullptr);
    host::closeDrawing();
    kz_CAD_getUCS(&origin, &axes);
    EXPECT_EQ(at(origin), "10 20 30");
    EXPECT_EQ(kz_CAD_setUCS(&origin, &axes, 0), 0);
}

TEST_F(Views, TheUcsIsSetByOriginByAxesOrByBoth) {
    const kz_Point origin = {10.0, 20.0, 30.0};
    const kz_RotMatrix turned = {{{0, -1, 0}, {1, 0, 0}, {0, 0, 1}}};
    EXPECT_EQ(kz_CAD_setUCS(nullptr, nullptr, 1), 0);
    EXPECT_EQ(kz_CAD_setUCS(&origin, nullptr, 0), 1);
    EXPECT_EQ(ucs(), "((10.0 20.0 30.0) (1.0 0.0 0.0) (0.0 1.0 0.0))");
    EXPECT_EQ(kz_CAD_setUCS(nullptr, &turned, 0), 1);
    EXPECT_EQ(ucs(), "((10.0 20.0 30.0) (0.0 1.0 0.0) (-1.0 0.0 0.0))");
    // The origin is a world point whatever system is set.
    const kz_Point second = {1.0, 2.0, 3.0};
    EXPECT_EQ(kz_CAD_setUCS(&second, nullptr, 0), 1);
    EXPECT_EQ(ucs(), "((1.0 2.0 3.0) (0.0 1.0 0.0) (-1.0 0.0 0.0))");
    const kz_RotMatrix identity = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
    const kz_Point zero = {};
    EXPECT_EQ(kz_CAD_setUCS(&zero, &identity, 0), 1);
    EXPECT_EQ(ucs(), "((0.0 0.0 0.0) (1.0 0.0 0.0) (0.0 1.0 0.0))");
    for (int nth = 1; nth <= 2; ++nth) {
        host::testing::failCall("acedCommandS", nth, RTCAN);
        EXPECT_EQ(kz_CAD_setUCS(&origin, nullptr, 0), 0);
    }
    const kz_RotMatrix flat = {};
    EXPECT_EQ(kz_CAD_setUCS(nullptr, &flat, 0), 0);
}

TEST_F(Views, WithoutTheServiceThereIsNoWayBack) {
    const kz_Point origin = {10.0, 20.0, 30.0};
    EXPECT_EQ(kz_CAD_setUCS(&origin, nullptr, 1), 1);
    EXPECT_EQ(kz_CAD_setPrevUCS(), 0);
    EXPECT_EQ(ucs(), "((10.0 20.0 30.0) (1.0 0.0 0.0) (0.0 1.0 0.0))");
}

}  // namespace
