// Object snaps and the shapes of entities that they stand on.
#include "edit/osnap.h"

#include <sstream>
#include "acad/ed.h"

#include "edit/shapes.h"
#include "edit/ucs.h"
#include "edit/zoom.h"
#include "editor_test.h"
#include "host/testing.h"
#include "temp_folder.h"

namespace {

using namespace host;

/// Coordinates to six decimals.
std::string rounded(const AcGePoint3d& point) {
    std::ostringstream out;
    const auto shown = [](double value) { return std::round(value * 1e6) / 1e6 + 0.0; };
    out << shown(point.x) << " " << shown(point.y) << " " << shown(point.z);
    return out.str();
}

/// A pixel is one drawing unit, so the aperture reaches ten units.
class Snaps : public EditorTest {
  protected:
    Snaps() {
        setScreenSize(1000, 1000);
        zoomCentre(drawing(), {0, 0, 0}, 1000.0);
    }

    /// The point found, to six decimals; "nil" for none.
    static std::string snap(double x, double y, const std::string& modes) {
        const ads_point point = {x, y, 0.0};
        ads_point out;
        if (acedOsnap(point, kz::toUtf16(modes).c_str(), out) != RTNORM) return "nil";
        return rounded({out[0], out[1], out[2]});
    }
    static void line(const std::string& from, const std::string& to) {
        make("(0 . \"LINE\") (8 . \"0\") (10 " + from + ") (11 " + to + ")");
    }
    static void circle(const std::string& centre, double radius) {
        make("(0 . \"CIRCLE\") (8 . \"0\") (10 " + centre + ") (40 . " + std::to_string(radius) +
             ")");
    }
};

TEST_F(Snaps, ends_and_middles_of_lines) {
    line("0 0 5", "100 0 5");
    EXPECT_EQ(snap(70, 3, "end"), "100 0 5");  // also when it is outside of the aperture
    EXPECT_EQ(snap(30, 3, "_END"), "0 0 5");
    EXPECT_EQ(snap(70, 3, "mid"), "50 0 5");
    EXPECT_EQ(snap(70, 3, "end,mid"), "50 0 5");
    EXPECT_EQ(snap(70, 3, "_endp , _midpoint"), "50 0 5");
    EXPECT_EQ(snap(70, 3, "nea"), "70 0 5");
    EXPECT_EQ(snap(70, 11, "end"), "nil");
    EXPECT_EQ(snap(70, 3, "non"), "nil");
    EXPECT_EQ(snap(70, 3, "cen"), "nil");
    eval("(setvar \"APERTURE\" 2)");
    EXPECT_EQ(snap(70, 3, "end"), "nil");
    eval("(setvar \"APERTURE\" 10)");
}

TEST_F(Snaps, wrong_modes_and_points_find_nothing) {
    line("0 0 0", "100 0 0");
    for (const char* modes : {"", "xyz", "en", "end,", "end;mid", "_"})
        EXPECT_EQ(snap(0, 0, modes), "nil") << modes;
    const ads_point nowhere = {std::nan(""), 0, 0};
    ads_point out = {7, 7, 7};
    EXPECT_NE(acedOsnap(nowhere, u"end", out), RTNORM);
    EXPECT_NE(acedOsnap(nullptr, u"end", out), RTNORM);
    const ads_point origin = {0, 0, 0};
    host::testing::failCall("acedOsnap", 1, RTCAN);
    EXPECT_EQ(acedOsnap(origin, u"end", out), RTCAN);
    host::testing::clearFault();
    EXPECT_EQ(out[0], 7.0);
}

TEST_F(Snaps, circles_and_arcs) {
    circle("0 0 0", 50);
    EXPECT_EQ(snap(36, 36, "cen"), "0 0 0");
    EXPECT_EQ(snap(10, 49, "qua"), "0 50 0");
    EXPECT_EQ(snap(0, 0, "cen"), "nil");  // the curve itself has to be near
    EXPECT_EQ(snap(30, 45, "end,mid"), "nil");
    eval("(setvar \"LASTPOINT\" '(130.0 0.0 0.0))");
    EXPECT_EQ(snap(20, 45, "tan"), "19.2308 46.1538 0");
    EXPECT_EQ(snap(-49, 5, "per"), "-50 0 0");
    make("(0 . \"ARC\") (8 . \"0\") (10 200 0 0) (40 . 50.0) (50 . 0.0) (51 . 0.0)");
    Tags& arc = drawing().changeTags(drawing().lastEntity(drawing().modelSpace()));
    arc[findTag(arc, 51)] = Tag(51, 90.0);
    EXPECT_EQ(snap(210, 48, "end"), "200 50 0");
    EXPECT_EQ(snap(151, 5, "nea"), "nil");
    EXPECT_EQ(snap(152, -2, "qua"), "nil");
}

TEST_F(Snaps, perpendiculars_of_lines_reach_beyond_their_ends) {
    line("0 0 0", "100 0 0");
    eval("(setvar \"LASTPOINT\" '(130.0 40.0 0.0))");
    EXPECT_EQ(snap(90, 2, "per"), "130 0 0");
}

TEST_F(Snaps, polylines_have_straight_and_round_parts) {
    make(
        "(0 . \"LWPOLYLINE\") (100 . \"AcDbEntity\") (100 . \"AcDbPolyline\") (90 . 3) (70 . 1) "
        "(10 0 0) (42 . 0.0) (10 100 0) (42 . 1.0) (10 100 100) (42 . 0.0)");
    EXPECT_EQ(snap(60, 2, "mid"), "50 0 0");
    EXPECT_EQ(snap(149, 55, "cen"), "100 50 0");
    EXPECT_EQ(snap(149, 55, "mid,qua"), "150 50 0");
    EXPECT_EQ(snap(52, 48, "mid"), "50 50 0");  // the part that closes it
    eval("(entmake '((0 . \"POLYLINE\") (8 . \"0\") (66 . 1) (10 0 0 0) (70 . 8)))");
    eval("(entmake '((0 . \"VERTEX\") (8 . \"0\") (10 200 0 7) (70 . 32)))");
    eval("(entmake '((0 . \"VERTEX\") (8 . \"0\") (10 300 0 9) (70 . 32)))");
    eval("(entmake '((0 . \"SEQEND\") (8 . \"0\")))");
    EXPECT_EQ(snap(240, 2, "mid"), "250 0 8");
}

TEST_F(Snaps, ellipses_splines_points_and_texts) {
    make(
        "(0 . \"ELLIPSE\") (100 . \"AcDbEntity\") (100 . \"AcDbEllipse\") (10 0 0 0) (11 0 80 0) "
        "(40 . 0.5) (41 . 0.0) (42 . 6.283185307179586)");
    EXPECT_EQ(snap(38, 8, "qua"), "40 0 0");
    EXPECT_EQ(snap(38, 8, "cen"), "0 0 0");
    make(
        "(0 . \"SPLINE\") (100 . \"AcDbEntity\") (100 . \"AcDbSpline\") (70 . 8) (71 . 2) "
        "(72 . 6) (73 . 3) (40 . 0.0) (40 . 0.0) (40 . 0.0) (40 . 1.0) (40 . 1.0) (40 . 1.0) "
        "(10 200 0 0) (10 250 100 0) (10 300 0 0)");
    EXPECT_EQ(snap(250, 49, "end"), "200 0 0");
    EXPECT_EQ(snap(250, 51, "nea"), "250 50 0");
    EXPECT_EQ(snap(250, 49, "mid"), "nil");
    make("(0 . \"POINT\") (8 . \"0\") (10 -200 5 3)");
    EXPECT_EQ(snap(-195, 0, "nod"), "-200 5 3");
    EXPECT_EQ(snap(-195, 0, "end,ins"), "nil");
    make("(0 . \"TEXT\") (8 . \"0\") (10 -300 -300 0) (40 . 20.0) (1 . \"valve\")");
    EXPECT_EQ(snap(-250, -290, "ins"), "-300 -300 0");
}

TEST_F(Snaps, crossings_need_the_same_depth) {
    line("0 -50 0", "0 50 0");
    line("-50 0 0", "50 0 0");
    circle("30 0 0", 30);
    EXPECT_EQ(snap(3, 3, "int"), "0 0 0");
    EXPECT_EQ(snap(57, 4, "int"), "nil");  // the circle ends its way beyond the line's end
    EXPECT_EQ(snap(0, 40, "int"), "nil");
    line("-50 30 8", "50 30 8");
    EXPECT_EQ(snap(3, 33, "int"), "nil");
    EXPECT_EQ(snap(4, 32, "app"), "0 30 8");
}

TEST_F(Snaps, the_system_of_the_user_counts) {
    line("0 0 0", "100 0 0");
    eval("(setq dir '(0 1 0))");
    setUcsByThreePoints(drawing(), {0, 50, 0}, {0, 60, 0}, {-10, 50, 0});
    EXPECT_EQ(snap(-48, -90, "end"), "-50 -100 0");
}

TEST_F(Snaps, hidden_entities_are_not_found) {
    line("0 0 0", "100 0 0");
    drawing().changeTags(drawing().lastEntity(drawing().modelSpace())).emplace_back(60, int64_t{1});
    EXPECT_EQ(snap(0, 0, "end"), "nil");
    eval(
        "(entmake '((0 . \"LAYER\") (100 . \"AcDbSymbolTableRecord\") "
        "(100 . \"AcDbLayerTableRecord\") (2 . \"OFF\") (70 . 0) (62 . -7) (6 . \"Continuous\")))");
    make("(0 . \"LINE\") (8 . \"OFF\") (10 0 0 0) (11 100 0 0)");
    EXPECT_EQ(snap(0, 0, "end"), "nil");
}

/// Blocks: INNER has a line and a circle about its base point, OUTER holds INNER twice as large.
class BlockSnaps : public Snaps {
  protected:
    BlockSnaps() {
        block("INNER", "10 10 0",
              {"(0 . \"LINE\") (8 . \"0\") (10 10 10 0) (11 30 10 0)",
               "(0 . \"CIRCLE\") (8 . \"0\") (10 10 10 0) (40 . 5.0)"});
        block("OUTER", "0 0 0",
              {"(0 . \"INSERT\") (8 . \"0\") (2 . \"INNER\") (10 100 0 0) (41 . 2.0) (42 . 2.0) "
               "(43 . 2.0)"});
    }
    static void block(const std::string& name, const std::string& base,
                      const std::vector<std::string>& contents) {
        eval("(entmake '((0 . \"BLOCK\") (8 . \"0\") (2 . \"" + name + "\") (70 . 0) (10 " + base +
             ")))");
        for (const std::string& entity : contents)
            EXPECT_NE(eval("(entmake '(" + entity + "))"), "nil") << entity;
        EXPECT_NE(eval("(entmake '((0 . \"ENDBLK\") (8 . \"0\")))"), "nil");
    }
    /// An insertion turned by degrees.
    static Slot insert(const std::string& name, const std::string& at, double degrees,
                       const std::string& more = "") {
        const Slot slot =
            make("(0 . \"INSERT\") (8 . \"0\") (2 . \"" + name + "\") (10 " + at + ") " + more);
        drawing().changeTags(slot).emplace_back(50, degrees);
        return slot;
    }
};

TEST_F(BlockSnaps, geometry_in_blocks_with_scale_and_rotation) {
    insert("INNER", "0 0 0", 90.0, "(41 . 3.0) (42 . 3.0)");
    EXPECT_EQ(snap(2, 50, "end"), "0 60 0");
    EXPECT_EQ(snap(-15, 2, "cen"), "0 0 0");
    EXPECT_EQ(snap(2, 50, "ins"), "0 0 0");
    EXPECT_EQ(snap(-14, 3, "qua"), "-15 0 0");
}

TEST_F(BlockSnaps, nested_blocks) {
    insert("OUTER", "0 0 0", 90.0);
    EXPECT_EQ(snap(2, 130, "end"), "0 140 0");
    // The insertion inside is the one whose line was picked.
    EXPECT_EQ(snap(2, 130, "ins"), "0 100 0");
    const AcDbExtents box = entityExtents(drawing(), drawing().lastEntity(drawing().modelSpace()));
    EXPECT_TRUE(near(box.minPoint(), AcGePoint3d(-10, 90, 0)));
    EXPECT_TRUE(near(box.maxPoint(), AcGePoint3d(10, 140, 0)));
}

TEST_F(BlockSnaps, unequal_scales_make_ellipses) {
    insert("INNER", "0 0 0", 0.0, "(41 . 4.0) (42 . 1.0)");
    EXPECT_EQ(snap(18, 2, "qua"), "20 0 0");
    const AcDbExtents box = entityExtents(drawing(), drawing().lastEntity(drawing().modelSpace()));
    EXPECT_TRUE(near(box.minPoint(), AcGePoint3d(-20, -5, 0)));
    EXPECT_TRUE(near(box.maxPoint(), AcGePoint3d(80, 5, 0)));
}

TEST_F(BlockSnaps, rows_and_columns) {
    insert("INNER", "0 0 0", 0.0, "(70 . 3) (71 . 2) (44 . 100.0) (45 . 50.0)");
    EXPECT_EQ(snap(203, 52, "cen"), "200 50 0");
    EXPECT_TRUE(
        near(entityExtents(drawing(), drawing().lastEntity(drawing().modelSpace())).maxPoint(),
             AcGePoint3d(220, 55, 0)));
    // Far too many to visit: the box is still right.
    insert("INNER", "0 0 0", 0.0, "(70 . 30000) (71 . 30000) (44 . 1.0) (45 . 1.0)");
    EXPECT_TRUE(
        near(entityExtents(drawing(), drawing().lastEntity(drawing().modelSpace())).maxPoint(),
             AcGePoint3d(29999 + 20, 29999 + 5, 0)));
}

TEST_F(BlockSnaps, a_block_in_itself_and_a_missing_one_do_no_harm) {
    block("LOOP", "0 0 0",
          {"(0 . \"LINE\") (8 . \"0\") (10 0 0 0) (11 7 0 0)",
           "(0 . \"INSERT\") (8 . \"0\") (2 . \"INNER\") (10 50 0 0)"});
    // Lets LOOP insert itself in the place of INNER.
    const Block* loop = drawing().findBlock(drawing().findSymbol("BLOCK_RECORD", u"LOOP"));
    Tags& inside = drawing().changeTags(loop->contents.back());
    inside[findTag(inside, 2)] = Tag(2, u"LOOP");
    const Slot insertion = insert("LOOP", "0 0 0", 0.0);
    EXPECT_TRUE(near(entityExtents(drawing(), insertion).maxPoint(), AcGePoint3d(7, 0, 0)));
    Tags& tags = drawing().changeTags(insertion);
    tags[findTag(tags, 2)] = Tag(2, u"GONE");
    EXPECT_TRUE(entityExtents(drawing(), insertion).isEmpty());
    EXPECT_EQ(snap(0, 0, "end"), "nil");
}

TEST_F(BlockSnaps, layer_0_of_a_block_is_the_insertion_s) {
    eval(
        "(entmake '((0 . \"LAYER\") (100 . \"AcDbSymbolTableRecord\") "
        "(100 . \"AcDbLayerTableRecord\") (2 . \"OFF\") (70 . 0) (62 . -7) (6 . \"Continuous\")))");
    block("MIXED", "0 0 0",
          {"(0 . \"LINE\") (8 . \"0\") (10 0 0 0) (11 50 0 0)",
           "(0 . \"LINE\") (8 . \"SHOWN\") (10 0 100 0) (11 50 100 0)"});
    make("(0 . \"INSERT\") (8 . \"OFF\") (2 . \"MIXED\") (10 0 0 0)");
    EXPECT_EQ(snap(0, 0, "end"), "nil");
    EXPECT_EQ(snap(0, 100, "end"), "0 100 0");
}

class Shapes : public EditorTest {
  protected:
    /// Box of an entity that a file has, as "least greatest".
    std::string box(const std::string& pairs) {
        std::string error;
        EXPECT_TRUE(
            openDrawing(folder_.write("one.dxf", dxf_text::drawing(dxf_text::pairs(pairs))), error))
            << error;
        const AcDbExtents found =
            entityExtents(drawing(), drawing().lastEntity(drawing().modelSpace()));
        if (found.isEmpty()) return "empty";
        return rounded(found.minPoint()) + " " + rounded(found.maxPoint());
    }
    TempFolder folder_;
};

TEST_F(Shapes, boxes_of_the_types) {
    const std::string head = " | 5 40 | 330 1F | 100 AcDbEntity | 8 0 | ";
    EXPECT_EQ(box("0 SOLID" + head +
                  "100 AcDbTrace | 10 0 | 20 0 | 30 0 | 11 4 | 21 0 | 31 0 | "
                  "12 0 | 22 3 | 32 0 | 13 4 | 23 5 | 33 0"),
              "0 0 0 4 5 0");
    EXPECT_EQ(box("0 3DFACE" + head +
                  "100 AcDbFace | 10 0 | 20 0 | 30 0 | 11 4 | 21 0 | 31 2 | "
                  "12 4 | 22 3 | 32 0"),
              "0 0 0 4 3 2");
    EXPECT_EQ(box("0 MTEXT" + head +
                  "100 AcDbMText | 10 10 | 20 10 | 30 0 | 40 2.5 | 41 20 | "
                  "71 5 | 72 1 | 42 12 | 43 6 | 1 words"),
              "4 7 0 16 13 0");
    EXPECT_EQ(box("0 TEXT" + head +
                  "100 AcDbText | 10 0 | 20 0 | 30 0 | 40 1 | 1 12345 | 72 2 | "
                  "11 10 | 21 0 | 31 0 | 100 AcDbText | 73 3"),
              "6 -1 0 10 0 0");
    EXPECT_EQ(box("0 LEADER" + head + "100 AcDbLeader | 10 0 | 20 0 | 30 0 | 10 5 | 20 5 | 30 0"),
              "0 0 0 5 5 0");
    EXPECT_EQ(box("0 HATCH" + head +
                  "100 AcDbHatch | 10 0 | 20 0 | 30 2 | 210 0 | 220 0 | "
                  "230 1 | 2 SOLID | 70 1 | 71 0 | 91 3 | 92 7 | 72 1 | 73 1 | 93 2 | 10 0 | "
                  "20 0 | 42 1 | 10 4 | 20 0 | 42 1 | 97 0 | 92 1 | 93 2 | 72 1 | 10 9 | 20 9 | "
                  "11 9 | 21 8 | 72 2 | 10 0 | 20 20 | 40 1 | 50 0 | 51 90 | 73 1 | 97 0 | 92 1 | "
                  "93 1 | 72 4 | 94 1 | 73 0 | 74 0 | 95 5 | 96 3 | 40 0 | 40 0 | 40 1 | 40 2 | "
                  "40 2 | 10 30 | 20 0 | 10 31 | 20 5 | 10 30 | 20 6 | 97 0 | 75 0 | 76 1 | 98 0"),
              "0 -2 2 31 21 2");
    EXPECT_EQ(box("0 XLINE" + head + "100 AcDbXline | 10 0 | 20 0 | 30 0 | 11 1 | 21 0 | 31 0"),
              "empty");
    EXPECT_EQ(box("0 UNHEARD_OF" + head + "100 AcDbUnheardOf | 10 0 | 20 0 | 30 0"), "empty");
    EXPECT_EQ(box("0 LINE" + head + "100 AcDbLine | 10 1e999 | 20 0 | 30 0 | 11 1 | 21 0 | 31 0"),
              "empty");
}

}  // namespace
