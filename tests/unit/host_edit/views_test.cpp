// The user coordinate system, views and displays.
#include "edit/drawing_state.h"
#include "edit/entity_system.h"
#include "edit/zoom.h"
#include "editor_test.h"
#include "host/undo.h"
#include "temp_folder.h"

namespace {

using namespace host;

class CoordinateSystems : public EditorTest {
  protected:
    static Ucs ucs() { return currentUcs(drawing()); }
    static AcGePoint3d point(const char* name) {
        const auto value = variable(name);
        return std::get<AcGePoint3d>(*value);
    }
};

TEST_F(CoordinateSystems, three_points_in_the_present_system) {
    EXPECT_TRUE(ucs().isWorld());
    EXPECT_EQ(setUcsByThreePoints(drawing(), {10, 20, 0}, {10, 25, 0}, {0, 30, 0}), kDone);
    EXPECT_TRUE(near(ucs().origin, AcGePoint3d(10, 20, 0)));
    EXPECT_TRUE(near(ucs().x, AcGeVector3d(0, 1, 0)) && near(ucs().y, AcGeVector3d(-1, 0, 0)));
    EXPECT_EQ(setUcsOrigin(drawing(), {5, 0, 1}), kDone);
    EXPECT_TRUE(near(ucs().origin, AcGePoint3d(10, 25, 1)));
    EXPECT_EQ(eval("(trans '(1 2 3) 1 0)"), "(8.0 26.0 4.0)");
    EXPECT_EQ(eval("(trans '(1 2 3) 1 0 t)"), "(-2.0 1.0 3.0)");
    EXPECT_EQ(eval("(getvar \"WORLDUCS\")"), "0");
}

TEST_F(CoordinateSystems, what_makes_no_system_is_refused) {
    const double nan = std::nan("");
    EXPECT_NE(setUcsByThreePoints(drawing(), {0, 0, 0}, {0, 0, 0}, {1, 0, 0}), kDone);
    EXPECT_NE(setUcsByThreePoints(drawing(), {0, 0, 0}, {1, 1, 1}, {-2, -2, -2}), kDone);
    EXPECT_NE(setUcsByThreePoints(drawing(), {0, 0, 0}, {1, nan, 0}, {0, 1, 0}), kDone);
    EXPECT_NE(setUcsByZAxis(drawing(), {1, 1, 1}, {1, 1, 1}), kDone);
    EXPECT_NE(rotateUcs(drawing(), 2, HUGE_VAL), kDone);
    EXPECT_NE(setUcsOrigin(drawing(), {nan, 0, 0}), kDone);
    EXPECT_NE(setPreviousUcs(drawing()), kDone);
    EXPECT_NE(restoreUcs(drawing(), u"nowhere"), kDone);
    EXPECT_NE(saveUcs(drawing(), u"a|b"), kDone);
    EXPECT_TRUE(ucs().isWorld());
    EXPECT_FALSE(drawingIsUnsaved());
}

TEST_F(CoordinateSystems, turns_and_the_z_axis) {
    EXPECT_EQ(rotateUcs(drawing(), 2, kPi / 2), kDone);
    EXPECT_EQ(rotateUcs(drawing(), 0, kPi / 2), kDone);  // about its own x axis
    EXPECT_TRUE(near(ucs().x, AcGeVector3d(0, 1, 0)) && near(ucs().y, AcGeVector3d(0, 0, 1)));
    EXPECT_EQ(setWorldUcs(drawing()), kDone);
    EXPECT_EQ(setUcsByZAxis(drawing(), {1, 2, 3}, {6, 2, 3}), kDone);
    EXPECT_TRUE(near(ucs().z(), AcGeVector3d(1, 0, 0)) && near(ucs().x, AcGeVector3d(0, 1, 0)));
}

TEST_F(CoordinateSystems, ten_steps_back) {
    for (int i = 1; i <= 12; ++i)
        EXPECT_EQ(setUcsOrigin(drawing(), {1, 0, 0}), kDone);
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ(setPreviousUcs(drawing()), kDone);
    EXPECT_TRUE(near(ucs().origin, AcGePoint3d(2, 0, 0)));
    EXPECT_NE(setPreviousUcs(drawing()), kDone);
    // The world counts as a step even from the world: who sets it and another goes back twice.
    newDrawing();
    EXPECT_EQ(setWorldUcs(drawing()), kDone);
    EXPECT_EQ(setUcsOrigin(drawing(), {1, 0, 0}), kDone);
    EXPECT_EQ(setPreviousUcs(drawing()), kDone);
    EXPECT_EQ(setPreviousUcs(drawing()), kDone);
    EXPECT_NE(setPreviousUcs(drawing()), kDone);
}

TEST_F(CoordinateSystems, named_ones_are_saved_with_the_drawing) {
    setUcsOrigin(drawing(), {7, 8, 9});
    EXPECT_EQ(saveUcs(drawing(), u"Plant"), kDone);
    EXPECT_EQ(eval("(getvar \"UCSNAME\")"), "\"Plant\"");
    setWorldUcs(drawing());
    EXPECT_EQ(eval("(getvar \"UCSNAME\")"), "\"\"");
    TempFolder folder;
    std::string error;
    ASSERT_TRUE(saveDrawing(folder.file("named.dxf"), error)) << error;
    ASSERT_TRUE(openDrawing(folder.file("named.dxf"), error)) << error;
    EXPECT_EQ(restoreUcs(drawing(), u"PLANT"), kDone);
    EXPECT_TRUE(near(ucs().origin, AcGePoint3d(7, 8, 9)));
    EXPECT_EQ(eval("(cdr (assoc 10 (tblsearch \"UCS\" \"plant\")))"), "(7.0 8.0 9.0)");
    EXPECT_EQ(deleteUcs(drawing(), u"plant"), kDone);
    EXPECT_EQ(eval("(list (getvar \"UCSNAME\") (tblsearch \"UCS\" \"plant\"))"), "(\"\" nil)");
}

TEST_F(CoordinateSystems, undo_takes_a_change_back) {
    eval("(setq marker 1)");
    {
        const UndoStep step("UCS");
        setUcsOrigin(drawing(), {7, 8, 9});
    }
    undo(1);
    EXPECT_TRUE(ucs().isWorld());
}

TEST_F(CoordinateSystems, of_objects) {
    const Slot line = make("(0 . \"LINE\") (8 . \"0\") (10 0 0 0) (11 10 10 0)");
    EXPECT_EQ(setUcsByEntity(drawing(), line, {9, 8, 0}), kDone);  // the far end is nearer
    EXPECT_TRUE(near(ucs().origin, AcGePoint3d(10, 10, 0)));
    EXPECT_TRUE(near(ucs().x, AcGeVector3d(-1, -1, 0).normal()));
    setWorldUcs(drawing());
    const Slot circle = make("(0 . \"CIRCLE\") (8 . \"0\") (10 5 5 0) (40 . 2.0)");
    EXPECT_EQ(setUcsByEntity(drawing(), circle, {5, 9, 3}), kDone);
    EXPECT_TRUE(near(ucs().x, AcGeVector3d(0, 1, 0)) && near(ucs().origin, AcGePoint3d(5, 5, 0)));
    setWorldUcs(drawing());
    const Slot text = make("(0 . \"TEXT\") (8 . \"0\") (10 1 2 0) (40 . 2.5) (1 . \"x\")");
    drawing().changeTags(text).emplace_back(50, 90.0);
    EXPECT_EQ(setUcsByEntity(drawing(), text, {}), kDone);
    EXPECT_TRUE(near(ucs().x, AcGeVector3d(0, 1, 0)));
    setWorldUcs(drawing());
    const Slot flat = make(
        "(0 . \"LWPOLYLINE\") (100 . \"AcDbEntity\") (100 . \"AcDbPolyline\") (90 . 2) (70 . 0) "
        "(38 . 4.0) (10 1 1) (10 1 5) (210 0 0 -1)");
    EXPECT_EQ(setUcsByEntity(drawing(), flat, {}), kDone);
    EXPECT_TRUE(near(ucs().origin, AcGePoint3d(-1, 1, -4)));
    EXPECT_TRUE(near(ucs().z(), AcGeVector3d(0, 0, -1)));
    const Slot spline = make(
        "(0 . \"SPLINE\") (100 . \"AcDbEntity\") (100 . \"AcDbSpline\") (70 . 8) (71 . 1) "
        "(72 . 4) (73 . 2) (40 . 0.0) (40 . 0.0) (40 . 1.0) (40 . 1.0) (10 0 0 0) (10 1 0 0)");
    EXPECT_NE(setUcsByEntity(drawing(), spline, {}), kDone);
}

TEST_F(CoordinateSystems, of_entities_for_trans) {
    make("(0 . \"CIRCLE\") (8 . \"0\") (10 1 2 3) (40 . 2.0) (210 0 0 -1)");
    EXPECT_EQ(eval("(trans '(1 2 3) (entlast) 0)"), "(-1.0 2.0 -3.0)");
    // A line has its points in the world, whatever its extrusion direction.
    make("(0 . \"LINE\") (8 . \"0\") (10 0 0 0) (11 1 0 0) (39 . 1.0) (210 0 0 -1)");
    EXPECT_EQ(eval("(trans '(1 2 3) (entlast) 0)"), "(1.0 2.0 3.0)");
}

class Views : public CoordinateSystems {
  protected:
    Views() { setScreenSize(1000, 500); }
    static View view() { return currentView(drawing()); }
    static void expectView(double x, double y, double height) {
        EXPECT_NEAR(view().centre.x, x, 1e-9);
        EXPECT_NEAR(view().centre.y, y, 1e-9);
        EXPECT_NEAR(view().height, height, 1e-9);
    }
};

TEST_F(Views, windows_fit_the_screen) {
    EXPECT_EQ(zoomWindow(drawing(), {0, 0, 0}, {10, 10, 0}), kDone);
    expectView(5, 5, 10);
    EXPECT_EQ(zoomWindow(drawing(), {40, 4, 0}, {0, 0, 0}), kDone);  // twice as wide as the screen
    expectView(20, 2, 20);
    EXPECT_EQ(zoomWindow(drawing(), {0, 0, 0}, {8, 0, 0}), kDone);
    expectView(4, 0, 4);
    EXPECT_NE(zoomWindow(drawing(), {3, 3, 0}, {3, 3, 9}), kDone);
    EXPECT_NE(zoomWindow(drawing(), {3, 3, 0}, {std::nan(""), 4, 0}), kDone);
    expectView(4, 0, 4);
    EXPECT_TRUE(near(point("VIEWCTR"), AcGePoint3d(4, 0, 0)));
    EXPECT_EQ(realVariable("VIEWSIZE", 0), 4.0);
    EXPECT_TRUE(near(point("VSMAX"), AcGePoint3d(8, 2, 0)));
}

TEST_F(Views, centres_scales_and_pans) {
    EXPECT_EQ(zoomCentre(drawing(), {50, 60, 0}, 30.0), kDone);
    expectView(50, 60, 30);
    EXPECT_EQ(zoomCentre(drawing(), {1, 2, 0}, std::nullopt), kDone);
    expectView(1, 2, 30);
    EXPECT_EQ(zoomScale(drawing(), 3.0, ZoomBase::View), kDone);
    expectView(1, 2, 10);
    EXPECT_EQ(zoomScale(drawing(), 0.5, ZoomBase::Limits), kDone);  // limits 420 x 297
    expectView(1, 2, 594);
    EXPECT_EQ(zoomLeft(drawing(), {0, 0, 0}, 10.0), kDone);
    expectView(10, 5, 10);
    EXPECT_EQ(panView(drawing(), {1, 1, 0}, {3, 0, 0}), kDone);
    expectView(8, 6, 10);
    for (const double factor : {0.0, -1.0, HUGE_VAL, 1e-320}) {
        EXPECT_NE(zoomScale(drawing(), factor, ZoomBase::View), kDone) << factor;
    }
    EXPECT_NE(zoomCentre(drawing(), {0, 0, 0}, 0.0), kDone);
    EXPECT_NE(zoomScale(drawing(), 1.0, ZoomBase::Paper), kDone);
    EXPECT_EQ(zoomPrevious(drawing()), kDone);
    expectView(10, 5, 10);
}

TEST_F(Views, what_is_drawn) {
    EXPECT_EQ(zoomExtents(drawing()), kDone);  // nothing: the limits
    expectView(210, 148.5, 297);
    make("(0 . \"CIRCLE\") (8 . \"0\") (10 100 50 0) (40 . 10.0)");
    EXPECT_TRUE(near(point("EXTMIN"), AcGePoint3d(90, 40, 0)));
    EXPECT_TRUE(near(point("EXTMAX"), AcGePoint3d(110, 60, 0)));
    EXPECT_EQ(zoomExtents(drawing()), kDone);
    expectView(100, 50, 20);
    EXPECT_EQ(zoomAll(drawing()), kDone);
    expectView(210, 148.5, 297);
    eval(
        "(entmake '((0 . \"LAYER\") (100 . \"AcDbSymbolTableRecord\") "
        "(100 . \"AcDbLayerTableRecord\") (2 . \"FAR\") (70 . 1) (62 . 7) (6 . \"Continuous\")))");
    make("(0 . \"POINT\") (8 . \"FAR\") (10 1e6 0 0)");  // frozen
    EXPECT_EQ(zoomExtents(drawing()), kDone);
    expectView(100, 50, 20);
}

TEST_F(Views, display_of_a_turned_view) {
    View turned;
    turned.direction = {1, 0, 0};  // from the right: y to the right, z up
    turned.target = {5, 5, 5};
    turned.height = 10;
    EXPECT_EQ(setView(drawing(), turned), kDone);
    EXPECT_EQ(eval("(trans '(7 8 9) 0 2)"), "(3.0 4.0 2.0)");
    EXPECT_EQ(eval("(trans '(3 4 2) 2 0)"), "(7.0 8.0 9.0)");
    // A flat point lies where the line of sight meets the plane that is drawn in; here it never
    // does.
    EXPECT_EQ(eval("(trans '(3 4) 2 0)"), "(5.0 8.0 9.0)");
    EXPECT_TRUE(near(point("VIEWDIR"), AcGePoint3d(1, 0, 0)));
    EXPECT_TRUE(near(point("TARGET"), AcGePoint3d(5, 5, 5)));
    EXPECT_EQ(setUcsByView(drawing()), kDone);
    EXPECT_TRUE(near(ucs().x, AcGeVector3d(0, 1, 0)) && near(ucs().y, AcGeVector3d(0, 0, 1)));
    EXPECT_TRUE(near(point("VIEWDIR"), AcGePoint3d(0, 0, 1)));
    turned.direction = {0, 0, 1};
    turned.twist = kPi / 2;  // the x axis of the world points up
    EXPECT_EQ(setView(drawing(), turned), kDone);
    EXPECT_EQ(eval("(trans '(7 5 5) 0 2)"), "(0.0 2.0 0.0)");
    EXPECT_NEAR(realVariable("VIEWTWIST", 0), kPi / 2, 1e-12);
    const Tags& record = drawing().tags(viewRecord(drawing()));
    EXPECT_EQ(record[findTag(record, 51)].real(), 90.0);  // degrees in the file
}

TEST_F(Views, flat_points_of_the_display_lie_in_the_plane_that_is_drawn_in) {
    View slanted;
    slanted.direction = {0, -1, 1};
    EXPECT_EQ(setView(drawing(), slanted), kDone);
    eval("(setvar \"ELEVATION\" 3.0)");
    EXPECT_EQ(eval("(rtos (caddr (trans '(5 6) 2 0)) 2 6)"), "\"3.000000\"");
    EXPECT_EQ(eval("(rtos (cadr (trans (trans '(5 6) 2 0) 0 2)) 2 6)"), "\"6.000000\"");
}

TEST_F(Views, plans_follow_a_system) {
    make("(0 . \"LINE\") (8 . \"0\") (10 0 0 0) (11 0 0 40)");
    EXPECT_EQ(setUcsByThreePoints(drawing(), {}, {0, 1, 0}, {0, 0, 1}), kDone);
    EXPECT_EQ(planView(drawing(), ucs()), kDone);
    EXPECT_EQ(eval("(trans '(3 4 0) 1 2)"), "(3.0 4.0 0.0)");
    expectView(0, 20, 40);
    EXPECT_EQ(eval("(setvar \"UCSFOLLOW\" 1)"), "1");
    EXPECT_EQ(rotateUcs(drawing(), 2, kPi / 6), kDone);
    const AcGeVector3d x = view().worldToDisplay() * ucs().x;
    EXPECT_TRUE(near(x, AcGeVector3d::kXAxis));
}

TEST_F(Views, named_views_and_ten_steps_back) {
    zoomCentre(drawing(), {50, 60, 0}, 30.0);
    EXPECT_EQ(saveView(drawing(), u"Detail"), kDone);
    for (int i = 0; i < 11; ++i)
        zoomScale(drawing(), 2.0, ZoomBase::View);
    EXPECT_EQ(restoreView(drawing(), u"DETAIL"), kDone);
    expectView(50, 60, 30);
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ(zoomPrevious(drawing()), kDone);
    EXPECT_NE(zoomPrevious(drawing()), kDone);
    expectView(50, 60, 7.5);
    EXPECT_EQ(deleteView(drawing(), u"detail"), kDone);
    EXPECT_NE(restoreView(drawing(), u"detail"), kDone);
    EXPECT_NE(saveView(drawing(), u""), kDone);
}

/// A layout with paper space itself, and a viewport at half size.
class Layouts : public Views {
  protected:
    Layouts() {
        using dxf_text::pairs;
        std::string error;
        EXPECT_TRUE(openDrawing(
            folder_.write("layout.dxf",
                          dxf_text::drawing(viewport("40", "1", 100, 50, 200, 100, 100, 100, 50) +
                                            viewport("41", "2", 30, 20, 20, 10, 20, 5, 6))),
            error))
            << error;
    }
    static std::string number(double value) { return std::to_string(value); }
    static std::string viewport(const char* handle, const char* id, double x, double y,
                                double width, double height, double view_height, double view_x,
                                double view_y) {
        return dxf_text::pairs(
            std::string("0 VIEWPORT | 5 ") + handle +
            " | 330 1B | 100 AcDbEntity | 67 1 | 8 0 | 100 AcDbViewport | 10 " + number(x) +
            " | 20 " + number(y) + " | 30 0.0 | 40 " + number(width) + " | 41 " + number(height) +
            " | 68 1 | 69 " + id + " | 12 " + number(view_x) + " | 22 " + number(view_y) +
            " | 16 0.0 | 26 0.0 | 36 1.0 | 17 0.0 | 27 0.0 | 37 0.0 | 42 50.0 | 45 " +
            number(view_height) + " | 51 0.0 | 90 0");
    }
    TempFolder folder_;
};

TEST_F(Layouts, spaces_and_viewports) {
    EXPECT_EQ(eval("(mapcar 'getvar '(TILEMODE CVPORT CTAB))"), "(1 2 \"Model\")");
    EXPECT_EQ(eval("(trans '(0 0 0) 2 3)"), "nil");  // no paper
    EXPECT_EQ(eval("(setvar \"TILEMODE\" 0)"), "0");
    EXPECT_EQ(eval("(mapcar 'getvar '(CVPORT CTAB VIEWSIZE))"), "(1 \"Layout1\" 100.0)");
    EXPECT_EQ(eval("(trans '(1 2 0) 2 3)"), "(1.0 2.0 0.0)");
    EXPECT_EQ(eval("(setvar \"CVPORT\" 2)"), "2");
    EXPECT_EQ(eval("(getvar \"VIEWSIZE\")"), "20.0");
    // The middle of its view, (5 6), is at (30 20) of the paper, at half size.
    EXPECT_EQ(eval("(trans '(7 6 0) 2 3)"), "(31.0 20.0 0.0)");
    EXPECT_EQ(eval("(trans '(31 20 0) 3 2)"), "(7.0 6.0 0.0)");
    EXPECT_EQ(eval("(trans '(2 0 0) 2 3 t)"), "(1.0 0.0 0.0)");
    EXPECT_EQ(eval("(trans '(7 6 0) 0 3)"), "nil");  // only from the display
    EXPECT_EQ(zoomScale(drawing(), 2.0, ZoomBase::Paper), kDone);
    expectView(5, 6, 5);
    EXPECT_EQ(eval("(vl-catch-all-error-message (vl-catch-all-apply 'setvar '(\"CVPORT\" 7)))"),
              "\"AutoCAD variable setting rejected: \\\"CVPORT\\\" 7\"");
    EXPECT_EQ(eval("(setvar \"CTAB\" \"model\")"), "\"model\"");
    EXPECT_EQ(eval("(list (getvar \"TILEMODE\") (getvar \"CVPORT\"))"), "(1 2)");
}

TEST_F(Views, paper_without_a_viewport_has_a_view_all_the_same) {
    zoomCentre(drawing(), {1, 2, 0}, 10.0);
    eval("(setvar \"TILEMODE\" 0)");
    EXPECT_EQ(zoomCentre(drawing(), {3, 4, 0}, 20.0), kDone);
    expectView(3, 4, 20);
    eval("(setvar \"TILEMODE\" 1)");
    expectView(1, 2, 10);
}

TEST_F(Layouts, paper_has_a_system_of_its_own) {
    setUcsOrigin(drawing(), {1, 2, 3});
    eval("(setvar \"TILEMODE\" 0)");
    EXPECT_TRUE(ucs().isWorld());
    setUcsOrigin(drawing(), {9, 9, 0});
    eval("(setvar \"ELEVATION\" 7.0)");
    eval("(setvar \"TILEMODE\" 1)");
    EXPECT_TRUE(near(ucs().origin, AcGePoint3d(1, 2, 3)));
    EXPECT_EQ(eval("(getvar \"ELEVATION\")"), "2.5");
    AcDbDatabase* facade = acdbHostApplicationServices()->workingDatabase();
    EXPECT_TRUE(near(facade->ucsorg(), AcGePoint3d(1, 2, 3)));
    EXPECT_TRUE(near(facade->ucsxdir(), AcGeVector3d::kXAxis));
}

}  // namespace
