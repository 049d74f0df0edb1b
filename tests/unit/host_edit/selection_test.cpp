// Selection by place: what of each type of entity lies in or touches a window, a polygon, a fence;
// the index of places under edits; sets as a resource; and the prompt.
#include "edit/selection.h"

#include "acad/documents.h"
#include "acad/ed.h"
#include "edit/select_region.h"
#include "edit/spatial_index.h"
#include "edit/view.h"
#include "edit/zoom.h"
#include "editor_test.h"
#include "host/counters.h"
#include "host/input.h"
#include "host/output.h"
#include "host/selection.h"
#include "host/testing.h"
#include "host/undo.h"

namespace {

using namespace host;

/// A pixel is one drawing unit, so the pick box reaches three units.
class Selections : public EditorTest {
  protected:
    Selections() {
        setScreenSize(1000, 1000);
        zoomCentre(drawing(), {0, 0, 0}, 1000.0);
        setSink(Channel::Message, [this](std::u16string_view text) { shown_ += kz::toUtf8(text); });
    }
    ~Selections() override {
        setSink(Channel::Message, nullptr);
        host::testing::clearFault();
        clearAnswers();
        host::resetLisp();
        EXPECT_EQ(selectionSetCount(), 0);
    }

    /// How many entities (ssget <arguments>) selects.
    static std::string count(const std::string& arguments) {
        return eval("((lambda (s) (if s (sslength s) 0)) (ssget " + arguments + "))");
    }
    /// The handles of what it selects, in order, as indexes of the entities in the drawing.
    static std::string members(const std::string& arguments) {
        return eval(
            "((lambda (s / i out) (setq i 0) (repeat (if s (sslength s) 0) (setq out (cons "
            "(cdr (assoc 8 (entget (ssname s i)))) out) i (1+ i))) (reverse out)) (ssget " +
            arguments + "))");
    }
    /// Entities of the model space in a window, by the index, from the latest to the first.
    static std::vector<Slot> indexed(double x0, double y0, double x1, double y1) {
        return entitiesIn(drawing(), drawing().modelSpace(),
                          currentView(drawing()).worldToDisplay(), {x0, y0}, {x1, y1});
    }

    std::string shown_;
};

struct Place {
    const char* request;
    bool selected;
};
struct Shape {
    const char* name;
    const char* groups;
    std::vector<Place> places;
};

void PrintTo(const Shape& shape, std::ostream* out) {
    *out << shape.name;
}

class Shapes : public Selections, public ::testing::WithParamInterface<Shape> {};

TEST_P(Shapes, are_selected_where_they_are) {
    ASSERT_NE(eval(std::string("(mapcar 'entmake '(") + GetParam().groups + "))"), "nil");
    for (const Place& place : GetParam().places)
        EXPECT_EQ(count(place.request), place.selected ? "1" : "0") << place.request;
}

const Shape kShapes[] = {
    {"line",
     "((0 . \"LINE\") (10 0.0 0.0 0.0) (11 10.0 10.0 5.0))",
     {{"\"W\" '(-1 -1) '(11 11)", true},
      {"\"W\" '(0 0) '(10 10)", true},
      {"\"W\" '(0 0) '(9.99 10)", false},
      {"\"C\" '(4 6) '(5 9)", false},
      {"\"C\" '(4 4) '(5 9)", true},
      {"\"C\" '(5 5) '(5 5)", true},
      {"\"C\" '(5 5.01) '(5 5.01)", false},
      {"\"C\" '(10 10) '(20 20)", true},
      {"\"F\" '((0 10) (10 0))", true},
      {"\"F\" '((0 10) (4 5))", false},
      {"\"F\" '((0 10) (4 5) (5 4))", true},
      {"\"F\" '((2 2) (3 3))", true},
      {"\"WP\" '((-1 -1) (12 -1) (12 12))", true},
      {"\"WP\" '((-1 -1) (12 -1) (12 11))", false},
      {"\"CP\" '((0 9) (5 5) (0 4))", true},
      {"\"CP\" '((0 9) (4.9 5) (0 4))", false}}},
    // A polygon that leaves out what lies between its horns.
    {"line_between_horns",
     "((0 . \"LINE\") (10 1.0 5.0 0.0) (11 9.0 5.0 0.0))",
     {{"\"WP\" '((0 0) (10 0) (10 10) (5 2) (0 10))", false},
      {"\"CP\" '((0 0) (10 0) (10 10) (5 2) (0 10))", true},
      {"\"WP\" '((0 0) (10 0) (10 10) (5 6) (0 10))", true}}},
    {"circle",
     "((0 . \"CIRCLE\") (10 0.0 0.0 0.0) (40 . 10.0))",
     {{"\"W\" '(-10 -10) '(10 10)", true},
      {"\"W\" '(-10 -10) '(10 9.9)", false},
      {"\"C\" '(-5 -5) '(5 5)", false},
      {"\"C\" '(7 7) '(20 20)", true},
      {"\"C\" '(7.1 7.1) '(20 20)", false},
      {"\"C\" '(-1 9) '(1 11)", true},
      {"\"F\" '((-20 0) (20 0))", true},
      {"\"F\" '((-9 0) (9 0))", false},
      {"'(0 0)", false},
      {"'(0 12)", true},
      {"'(0 14)", false}}},
    {"arc",
     "((0 . \"ARC\") (10 0.0 0.0 0.0) (40 . 10.0) (50 . 0.0) (51 . 1.5707963267948966))",
     {{"\"W\" '(0 0) '(10 10)", true},
      {"\"C\" '(-11 -11) '(-6 -6)", false},
      {"\"C\" '(7 7) '(8 8)", true},
      {"\"F\" '((0 0) (20 20))", true},
      {"\"F\" '((0 0) (-20 -20))", false}}},
    {"ellipse",
     "((0 . \"ELLIPSE\") (100 . \"AcDbEntity\") (100 . \"AcDbEllipse\") (10 0.0 0.0 0.0) (11 20.0 "
     "0.0 0.0) (40 . 0.5) (41 . 0.0) (42 . 6.283185307179586))",
     {{"\"W\" '(-20 -10) '(20 10)", true},
      {"\"W\" '(-20 -9.9) '(20 10)", false},
      {"\"C\" '(-5 -5) '(5 5)", false},
      {"\"C\" '(19 -1) '(30 1)", true},
      {"\"C\" '(14.2 7.1) '(30 30)", false}}},
    {"polyline_with_bulge",
     "((0 . \"LWPOLYLINE\") (100 . \"AcDbEntity\") (100 . \"AcDbPolyline\") (90 . 2) (70 . 0) (10 "
     "0.0 0.0) (42 . 1.0) (10 10.0 0.0))",
     {{"\"W\" '(0 -5) '(10 0)", true},
      {"\"W\" '(0 -4) '(10 0)", false},
      {"\"C\" '(4 -6) '(6 -4)", true},
      {"\"C\" '(4 -1) '(6 1)", false}}},
    {"old_polyline",
     "((0 . \"POLYLINE\") (66 . 1) (70 . 1)) ((0 . \"VERTEX\") (10 0.0 0.0 0.0)) ((0 . \"VERTEX\") "
     "(10 10.0 0.0 0.0)) ((0 . \"VERTEX\") (10 10.0 10.0 0.0)) ((0 . \"SEQEND\"))",
     {{"\"C\" '(4 4) '(6 6)", true},
      {"\"C\" '(1 4) '(2 6)", false},
      {"\"W\" '(0 0) '(10 10)", true}}},
    {"text",
     "((0 . \"TEXT\") (10 0.0 0.0 0.0) (40 . 10.0) (1 . \"ABCD\") (50 . 1.5707963267948966))",
     {{"\"C\" '(-6 4) '(-4 6)", true},
      {"\"C\" '(4 4) '(6 6)", false},
      {"\"W\" '(-10 0) '(0 32)", true},
      {"\"W\" '(-10 0) '(0 31)", false}}},
    {"point",
     "((0 . \"POINT\") (10 5.0 5.0 0.0))",
     {{"\"W\" '(5 5) '(6 6)", true},
      {"\"C\" '(0 0) '(4.9 9)", false},
      {"\"F\" '((0 0) (9 9))", true},
      {"'(7 7)", true}}},
    {"solid",
     "((0 . \"SOLID\") (10 0.0 0.0 0.0) (11 10.0 0.0 0.0) (12 0.0 10.0 0.0) (13 10.0 10.0 0.0))",
     {{"\"C\" '(4 4) '(6 6)", true},
      {"\"F\" '((4 4) (6 6))", true},
      {"\"C\" '(11 4) '(16 6)", false},
      {"\"W\" '(0 0) '(10 10)", true},
      {"'(5 5)", true}}},
    {"face",
     "((0 . \"3DFACE\") (10 0.0 0.0 0.0) (11 20.0 0.0 0.0) (12 20.0 20.0 0.0) (13 0.0 20.0 0.0) "
     "(70 "
     ". 1))",
     {{"\"C\" '(9 9) '(11 11)", false},
      {"\"C\" '(9 -1) '(11 1)", false},
      {"\"C\" '(9 19) '(11 21)", true}}},
    {"insert_turned_and_scaled",
     "((0 . \"BLOCK\") (2 . \"IN\") (70 . 0) (10 0.0 0.0 0.0)) ((0 . \"LINE\") (10 0.0 0.0 0.0) "
     "(11 "
     "10.0 0.0 0.0)) ((0 . \"ENDBLK\")) ((0 . \"BLOCK\") (2 . \"OUT\") (70 . 0) (10 0.0 0.0 0.0)) "
     "((0 . \"INSERT\") (2 . \"IN\") (10 0.0 0.0 0.0) (50 . 1.5707963267948966)) ((0 . "
     "\"ENDBLK\")) ((0 . "
     "\"INSERT\") (2 . \"OUT\") (10 100.0 0.0 0.0) (41 . 2.0) (42 . 3.0) (43 . 1.0))",
     {{"\"C\" '(99 29) '(101 31)", true},
      {"\"C\" '(99 31) '(101 33)", false},
      {"\"C\" '(105 -1) '(120 1)", false},
      {"\"W\" '(99 -1) '(101 30)", true},
      {"\"W\" '(99 -1) '(101 29)", false},
      {"'(102 15)", true},
      {"\"F\" '((90 15) (110 15))", true}}},
    {"attribute",
     "((0 . \"BLOCK\") (2 . \"B\") (70 . 2) (10 0.0 0.0 0.0)) ((0 . \"POINT\") (10 0.0 0.0 0.0)) "
     "((0 . \"ENDBLK\")) ((0 . \"INSERT\") (2 . \"B\") (66 . 1) (10 0.0 0.0 0.0)) ((0 . "
     "\"ATTRIB\") "
     "(10 50.0 50.0 0.0) (40 . 10.0) (1 . \"A\") (2 . \"T\") (70 . 0)) ((0 . \"SEQEND\"))",
     {{"\"C\" '(52 52) '(54 54)", true},
      {"\"W\" '(-1 -1) '(1 1)", false},
      {"\"W\" '(-1 -1) '(60 60)", true}}},
    {"endless_line",
     "((0 . \"XLINE\") (100 . \"AcDbEntity\") (100 . \"AcDbXline\") (10 0.0 5.0 0.0) (11 1.0 0.0 "
     "0.0))",
     {{"\"C\" '(5000 0) '(5001 10)", true},
      {"\"W\" '(-9999 0) '(9999 10)", false},
      {"\"C\" '(0 6) '(1 7)", false}}},
    {"spline",
     "((0 . \"SPLINE\") (100 . \"AcDbEntity\") (100 . \"AcDbSpline\") (70 . 8) (71 . 3) (72 . 8) "
     "(73 "
     ". 4) (74 . 0) (40 . 0.0) (40 . 0.0) (40 . 0.0) (40 . 0.0) (40 . 1.0) (40 . 1.0) (40 . 1.0) "
     "(40 . 1.0) (10 0.0 0.0 0.0) (10 0.0 10.0 0.0) (10 10.0 10.0 0.0) (10 10.0 0.0 0.0))",
     {{"\"W\" '(0 0) '(10 7.6)", true},
      {"\"W\" '(0 0) '(10 7.4)", false},
      {"\"C\" '(4 7) '(6 8)", true},
      {"\"C\" '(4 8) '(6 11)", false}}},
    {"hatch",
     "((0 . \"HATCH\") (100 . \"AcDbEntity\") (100 . \"AcDbHatch\") (10 0.0 0.0 0.0) (210 0.0 0.0 "
     "1.0) (2 . \"SOLID\") (70 . 1) (71 . 0) (91 . 2) (92 . 2) (72 . 0) (73 . 1) (93 . 4) (10 0.0 "
     "0.0) (10 30.0 0.0) (10 30.0 30.0) (10 0.0 30.0) (97 . 0) (92 . 2) (72 . 0) (73 . 1) (93 . 4) "
     "(10 10.0 10.0) (10 20.0 10.0) (10 20.0 20.0) (10 10.0 20.0) (97 . 0) (75 . 0) (76 . 1) (98 . "
     "0))",
     {{"\"C\" '(4 4) '(6 6)", true},
      {"\"C\" '(14 14) '(16 16)", false},
      {"'(5 5)", true},
      {"\"W\" '(0 0) '(30 30)", true}}},
};

INSTANTIATE_TEST_SUITE_P(Types, Shapes, ::testing::ValuesIn(kShapes),
                         [](const auto& shape) { return std::string(shape.param.name); });

TEST_F(Selections, what_is_not_shown_is_not_seen) {
    eval(
        "(entmake '((0 . \"LAYER\") (100 . \"AcDbSymbolTableRecord\") (100 . "
        "\"AcDbLayerTableRecord\") (2 . \"Off\") (70 . 0) (62 . -7) (6 . \"Continuous\")))");
    eval(
        "(entmake '((0 . \"LAYER\") (100 . \"AcDbSymbolTableRecord\") (100 . "
        "\"AcDbLayerTableRecord\") (2 . \"Cold\") (70 . 1) (62 . 7) (6 . \"Continuous\")))");
    eval(
        "(entmake '((0 . \"LAYER\") (100 . \"AcDbSymbolTableRecord\") (100 . "
        "\"AcDbLayerTableRecord\") (2 . \"Locked\") (70 . 4) (62 . 7) (6 . \"Continuous\")))");
    for (const char* layer : {"Off", "Cold", "Locked", "0"}) {
        make("(0 . \"LINE\") (8 . \"" + std::string(layer) +
             "\") (10 0.0 0.0 0.0) (11 9.0 9.0 0.0)");
    }
    make("(0 . \"LINE\") (8 . \"Hidden\") (60 . 1) (10 0.0 0.0 0.0) (11 9.0 9.0 0.0)");
    EXPECT_EQ(members("\"C\" '(0 0) '(9 9)"), "(\"Locked\" \"0\")");
    EXPECT_EQ(members("'(5 5)"), "(\"0\")");
    EXPECT_EQ(members("\"_:E\" '(5 5)"), "(\"Locked\" \"0\")");
    EXPECT_EQ(members("\"_C:L\" '(0 0) '(9 9)"), "(\"0\")");
    EXPECT_EQ(members("\"_A\""), "(\"Off\" \"Locked\" \"0\")");
    EXPECT_EQ(members("\"_L\""), "(\"0\")");
    EXPECT_EQ(count("\"_X\""), "5");
    EXPECT_EQ(members("\"_C\" '(0 0) '(9 9) '((8 . \"Lock*\"))"), "(\"Locked\")");
    // A layer's state counts when the question is asked.
    eval(
        "(setq e (tblobjname \"LAYER\" \"Off\"))"
        "(entmod (subst '(62 . 7) '(62 . -7) (entget e)))");
    EXPECT_EQ(members("\"_C\" '(0 0) '(9 9)"), "(\"Off\" \"Locked\" \"0\")");
}

TEST_F(Selections, places_are_compared_as_they_are_seen) {
    make("(0 . \"LINE\") (10 0.0 100.0 7.0) (11 10.0 100.0 9.0)");
    eval("(command \"_.ucs\" \"_o\" '(0 90 0))");
    EXPECT_EQ(count("\"W\" '(0 9) '(10 11)"), "1");
    EXPECT_EQ(count("\"W\" '(0 99) '(10 101)"), "0");
    eval("(command \"_.ucs\" \"_w\")");
    // From the front, x stays and z is up.
    setViewDirection(drawing(), {0, -1, 0});
    EXPECT_EQ(count("\"W\" '(0 0 7) '(10 0 9)"), "1");
    EXPECT_EQ(count("\"W\" '(0 0 7.5) '(10 0 9)"), "0");
    EXPECT_EQ(count("\"C\" '(0 -500 8) '(10 -500 8.5)"), "1");
}

TEST_F(Selections, bad_regions_select_nothing) {
    make("(0 . \"LINE\") (10 0.0 0.0 0.0) (11 10.0 10.0 0.0)");
    EXPECT_EQ(count("\"CP\" '((0 0) (10 10) (10 0) (0 10))"), "0");
    EXPECT_EQ(count("\"CP\" '((0 0) (10 10) (5 5))"), "0");
    EXPECT_EQ(count("\"CP\" '((0 0) (10 10))"), "0");
    EXPECT_EQ(count("\"F\" '((0 0))"), "0");
    EXPECT_EQ(count("\"CP\" '((0 0) (10 0) (10 0) (0 10) (0 0))"), "1");
    ads_name set;
    const ads_point bad = {NAN, 0, 0}, good = {0, 0, 0};
    EXPECT_EQ(acedSSGet(u"_C", bad, good, nullptr, set), RTERROR);
    EXPECT_EQ(acedSSGet(u"_C", good, nullptr, nullptr, set), RTERROR);
    for (const char16_t* mode : {u"Q", u"_X:", u"_X:Z", u"C:N:", u"WX"})
        EXPECT_EQ(acedSSGet(mode, good, good, nullptr, set), RTREJ);
    resbuf* chain = acutBuildList(RTSTR, u"no point", RTNONE);
    EXPECT_EQ(acedSSGet(u"_F", chain, nullptr, nullptr, set), RTERROR);
    acutRelRb(chain);
}

TEST_F(Selections, the_index_follows_edits_and_undo) {
    std::vector<Slot> lines;
    for (int i = 0; i < 500; ++i) {
        const std::string x = std::to_string(i * 10) + ".0";
        lines.push_back(make("(0 . \"LINE\") (10 " + x + " 0.0 0.0) (11 " + x + " 5.0 0.0)"));
    }
    EXPECT_EQ(indexed(-1, 0, 21, 1), (std::vector<Slot>{lines[2], lines[1], lines[0]}));
    const auto move = [&](Slot slot, const AcGeVector3d& way) {
        ads_name set = {}, name = {};
        drawing().nameOf(slot, name);
        ads_matrix matrix = {{1, 0, 0, way.x}, {0, 1, 0, way.y}, {0, 0, 1, way.z}, {0, 0, 0, 1}};
        EXPECT_EQ(acedSSAdd(name, nullptr, set), RTNORM);
        EXPECT_EQ(acedXformSS(set, matrix), RTNORM);
        acedSSFree(set);
    };
    {
        const UndoStep step("MOVE");
        move(lines[1], {0, 100, 0});
        drawing().setErased(lines[2], true);
    }
    EXPECT_EQ(indexed(-1, 0, 21, 1), std::vector<Slot>{lines[0]});
    EXPECT_EQ(indexed(9, 100, 11, 101), std::vector<Slot>{lines[1]});
    undo(1);
    EXPECT_EQ(indexed(-1, 0, 21, 1), (std::vector<Slot>{lines[2], lines[1], lines[0]}));
    EXPECT_TRUE(indexed(9, 100, 11, 101).empty());
    redo();
    EXPECT_EQ(indexed(9, 100, 11, 101), std::vector<Slot>{lines[1]});
    // More changes than are kept beside the tree.
    for (int i = 0; i < 3000; ++i) {
        move(lines[static_cast<size_t>(i) % 400 + 50], {0, 1, 0});
        if (i % 100 == 0) indexed(0, 0, 1, 1);
    }
    EXPECT_EQ(indexed(499, 0, 511, 20), (std::vector<Slot>{lines[51], lines[50]}));
    EXPECT_TRUE(indexed(499, 0, 511, 6).empty());
}

TEST_F(Selections, an_insertion_is_where_its_block_is) {
    eval(
        "(mapcar 'entmake '(((0 . \"BLOCK\") (2 . \"B\") (70 . 0) (10 0.0 0.0 0.0)) ((0 . "
        "\"LINE\") (10 0.0 0.0 0.0) (11 1.0 0.0 0.0)) ((0 . \"ENDBLK\"))))");
    const Slot insert = make("(0 . \"INSERT\") (2 . \"B\") (10 100.0 0.0 0.0)");
    EXPECT_EQ(indexed(90, -5, 110, 5), std::vector<Slot>{insert});
    EXPECT_TRUE(indexed(190, -5, 210, 5).empty());
    eval(
        "(setq l (cdr (assoc -2 (tblsearch \"BLOCK\" \"B\"))))"
        "(entmod (subst '(11 100.0 0.0 0.0) (assoc 11 (entget l)) (entget l)))");
    EXPECT_EQ(indexed(190, -5, 210, 5), std::vector<Slot>{insert});
    EXPECT_EQ(count("\"C\" '(190 -5) '(210 5)"), "1");
}

TEST_F(Selections, sets_come_back) {
    make("(0 . \"LINE\") (10 0.0 0.0 0.0) (11 10.0 10.0 0.0)");
    std::vector<std::array<int64_t, 2>> sets;
    ads_name set = {};
    while (acedSSGet(u"X", nullptr, nullptr, nullptr, set) == RTNORM)
        sets.push_back({set[0], set[1]});
    EXPECT_EQ(sets.size(), 128U);
    EXPECT_EQ(acedSSGet(u"C", nullptr, nullptr, nullptr, set), RTERROR);
    for (const auto& made : sets)
        EXPECT_EQ(acedSSFree(made.data()), RTNORM);
    EXPECT_EQ(acedSSFree(sets.front().data()), RTERROR);
    int32_t length = 7;
    EXPECT_EQ(acedSSLength(sets.front().data(), &length), RTERROR);
    resbuf* chain = nullptr;
    EXPECT_EQ(acedSSNameX(&chain, sets.front().data(), 0), RTERROR);
    EXPECT_EQ(length, 7);
    // What Lisp drops is free again.
    EXPECT_EQ(eval("(repeat 1000 (ssget \"X\")) (sslength (ssget \"X\"))"), "1");
}

TEST_F(Selections, members_can_be_transformed) {
    const Slot line = make("(0 . \"LINE\") (10 1.0 0.0 0.0) (11 2.0 0.0 0.0)");
    ads_name set = {}, name = {};
    drawing().nameOf(line, name);
    EXPECT_EQ(acedSSAdd(name, nullptr, set), RTNORM);
    ads_matrix turn = {{0, -1, 0, 5}, {1, 0, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
    EXPECT_EQ(acedXformSS(set, turn), RTNORM);
    EXPECT_EQ(count("\"W\" '(5 1) '(5 2)"), "1");
    ads_matrix flat_matrix = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 0, 0}, {0, 0, 0, 1}};
    EXPECT_EQ(acedXformSS(set, flat_matrix), RTERROR);
    drawing().setErased(line, true);
    EXPECT_EQ(acedXformSS(set, turn), RTERROR);
    EXPECT_EQ(acedSSFree(set), RTNORM);
    EXPECT_EQ(acedXformSS(set, turn), RTERROR);
}

// --- the prompt ---------------------------------------------------------------------------------

class Prompts : public Selections {
  protected:
    Prompts() {
        for (int i = 0; i < 4; ++i) {
            const std::string y = std::to_string(i * 20) + ".0";
            lines_[i] = make("(0 . \"LINE\") (8 . \"L" + std::to_string(i) + "\") (10 0.0 " + y +
                             " 0.0) (11 10.0 " + y + " 0.0)");
        }
        shown_.clear();
    }
    /// The layers of what is selected when the user answers so.
    std::string answered(const std::vector<std::string>& answers, const std::string& mode = "") {
        for (const std::string& answer : answers)
            queueText(kz::toUtf16(answer));
        queueEnter();
        std::string got = members(mode);
        EXPECT_FALSE(answersWait());
        clearAnswers();
        return got;
    }
    bool says(const std::string& text) const { return shown_.find(text) != std::string::npos; }

    Slot lines_[4];
};

TEST_F(Prompts, points_pick_and_open_boxes) {
    EXPECT_EQ(answered({"5,1", "5,21"}), "(\"L0\" \"L1\")");
    EXPECT_TRUE(says("1 found\n")) << shown_;
    EXPECT_TRUE(says("1 found, 2 total")) << shown_;
    // To the right: what is inside. To the left: what is touched.
    EXPECT_EQ(answered({"-5,-5", "5,100"}), "nil");
    EXPECT_EQ(answered({"-5,-5", "15,25"}), "(\"L0\" \"L1\")");
    EXPECT_EQ(answered({"5,25", "4,-5"}), "(\"L0\" \"L1\")");
    EXPECT_TRUE(says("Specify opposite corner: ")) << shown_;
}

TEST_F(Prompts, options_choose_add_and_remove) {
    EXPECT_EQ(answered({"_W", "-1,-1", "11,21"}), "(\"L0\" \"L1\")");
    EXPECT_EQ(answered({"c", "4,-1", "5,1", "F", "5,30", "5,70", ""}), "(\"L0\" \"L2\" \"L3\")");
    EXPECT_EQ(answered({"P", "l"}), "(\"L0\" \"L2\" \"L3\")");
    EXPECT_TRUE(says("1 found (1 duplicate), 3 total")) << shown_;
    EXPECT_EQ(answered({"all", "remove", "5,20", "P", "add", "5,0", "U", "U"}),
              "(\"L0\" \"L2\" \"L3\")");
    EXPECT_TRUE(says("Remove objects: ")) << shown_;
    EXPECT_TRUE(says("1 found, 1 removed, 3 total")) << shown_;
    EXPECT_EQ(answered({"WP", "-1,-1", "90,90", "u", "11,-1", "11,21", "-1,21", ""}),
              "(\"L0\" \"L1\")");
}

TEST_F(Prompts, wrong_answers_are_told) {
    EXPECT_EQ(answered({"nonsense", "5,0"}), "(\"L0\")");
    EXPECT_TRUE(says("*Invalid selection*")) << shown_;
    EXPECT_EQ(answered({"CP", "0,0", "10,10", "10,0", "0,10", "", "5,0"}), "(\"L0\")");
    EXPECT_TRUE(says("must not cross")) << shown_;
    EXPECT_EQ(answered({"G", "NOSUCH", "5,0"}), "(\"L0\")");
    EXPECT_TRUE(says("There is no group NOSUCH.")) << shown_;
    queueCancel();
    EXPECT_EQ(eval("(ssget)"), "error: Function cancelled");
    queueText(u"200,200");
    queueCancel();
    EXPECT_EQ(eval("(ssget)"), "error: Function cancelled");
}

TEST_F(Prompts, filters_and_single_choices) {
    EXPECT_EQ(answered({"all"}, "'((8 . \"~L2\"))"), "(\"L0\" \"L1\" \"L3\")");
    EXPECT_TRUE(says("4 found")) << shown_;
    EXPECT_TRUE(says("1 was filtered out.")) << shown_;
    queueText(u"5,20");
    EXPECT_EQ(members("\"_:S\""), "(\"L1\")");
    EXPECT_EQ(count("\"_P\""), "1");
}

TEST_F(Prompts, what_was_chosen_before_answers) {
    eval("(sssetfirst nil (ssadd (entlast)))");
    EXPECT_EQ(eval("(sslength (cadr (ssgetfirst)))"), "1");
    EXPECT_EQ(members("\"_I\""), "(\"L3\")");
    EXPECT_EQ(members(""), "(\"L3\")");
    EXPECT_EQ(eval("(ssgetfirst)"), "(nil nil)");
    eval("(setvar \"PICKFIRST\" 0)");
    EXPECT_EQ(eval("(sssetfirst nil (ssadd (entlast)))"), "nil");
    eval("(setvar \"PICKFIRST\" 1)");
}

TEST_F(Prompts, commands_share_the_prompt) {
    eval("(setvar \"CMDECHO\" 1)");
    eval("(command \"_.erase\" \"_C\" '(-1 -1) '(11 21) \"\")");
    EXPECT_EQ(count("\"X\""), "2");
    eval("(command \"_.erase\" '(5 40) \"\")");
    EXPECT_EQ(members("\"X\""), "(\"L3\")");
    eval("(entmod (subst '(70 . 4) '(70 . 0) (entget (tblobjname \"LAYER\" \"L3\"))))");
    shown_.clear();
    eval("(command \"_.erase\" \"_all\" \"\")");
    EXPECT_TRUE(says("1 was on a locked layer.")) << shown_;
    EXPECT_EQ(count("\"X\""), "1");
}

TEST_F(Prompts, sets_tell_how_members_came) {
    queueText(u"5,20");
    queueText(u"_C");
    queueText(u"4,39");
    queueText(u"6,41");
    queueEnter();
    EXPECT_EQ(eval("(setq s (ssget)) (mapcar 'car (ssnamex s))"), "(1 3 -1)");
    EXPECT_EQ(eval("(cdddr (car (ssnamex s 0)))"), "((0 (5.0 20.0 0.0)))");
    EXPECT_EQ(eval("(cdddr (car (ssnamex s 1)))"), "(-1)");
    EXPECT_EQ(eval("(cadr (ssnamex s 1))"),
              "(-1 (0 (4.0 39.0 0.0)) (0 (6.0 39.0 0.0)) (0 (6.0 41.0 0.0)) (0 (4.0 41.0 0.0)))");
    EXPECT_EQ(eval("(ssnamex s 2)"), "nil");
    EXPECT_EQ(eval("(caar (ssnamex (ssadd (entlast)) 0))"), "0");
    EXPECT_EQ(eval("(cdddr (car (ssnamex (ssget \"F\" '((3 -1) (3 1))) 0)))"),
              "((0 (3.0 0.0 0.0)))");
}

/// Notes what it is shown.
class Watcher : public AcEdSSGetFilter {
  public:
    void ssgetAddFilter(int, AcEdSelectionSetService& service, const AcDbObjectIdArray& selection,
                        const AcDbObjectIdArray& chosen) override {
        seen += std::to_string(selection.length()) + "+" + std::to_string(chosen.length()) + " ";
        if (removes) service.remove(0);
    }
    std::string seen;
    bool removes = false;
};

TEST_F(Prompts, filters_of_programs_see_each_choice) {
    Watcher watcher;
    AcApDocument* document = acDocManagerPtr()->curDocument();
    ASSERT_TRUE(addSSgetFilterInputContextReactor(document, &watcher));
    EXPECT_FALSE(addSSgetFilterInputContextReactor(document, &watcher));
    EXPECT_EQ(answered({"5,0", "C", "4,19", "6,41"}), "(\"L0\" \"L1\" \"L2\")");
    EXPECT_EQ(watcher.seen, "0+1 1+2 ");
    watcher.removes = true;
    EXPECT_EQ(answered({"C", "4,-1", "6,21"}), "(\"L1\")");
    EXPECT_TRUE(removeSSgetFilterInputContextReactor(document, &watcher));
    EXPECT_FALSE(removeSSgetFilterInputContextReactor(document, &watcher));
    EXPECT_EQ(selectionFilterCount(), 0);
}

TEST_F(Prompts, objects_in_blocks_are_found_with_their_path) {
    eval(
        "(mapcar 'entmake '(((0 . \"BLOCK\") (2 . \"IN\") (70 . 0) (10 0.0 0.0 0.0)) ((0 . "
        "\"CIRCLE\") (10 0.0 0.0 0.0) (40 . 5.0)) ((0 . \"ENDBLK\")) ((0 . \"BLOCK\") (2 . "
        "\"OUT\") (70 . 0) (10 0.0 0.0 0.0)) ((0 . \"INSERT\") (2 . \"IN\") (10 100.0 0.0 0.0)) "
        "((0 . \"ENDBLK\")) ((0 . \"INSERT\") (2 . \"OUT\") (10 0.0 0.0 0.0))))");
    queueText(u"105,0");
    queueEnter();
    EXPECT_EQ(eval("(setq s (ssget \"_:N\") e (car (ssnamex s 0))) (cdr (assoc 0 (entget (cadr "
                   "e))))"),
              "\"CIRCLE\"");
    EXPECT_EQ(eval("(mapcar '(lambda (n) (cdr (assoc 2 (entget n)))) (car (reverse e)))"),
              "(\"IN\" \"OUT\")");
    EXPECT_EQ(eval("(eq (ssname s 0) (entlast))"), "T");
}

}  // namespace
