// Picks at points worked out by hand. A pixel is 0.1 here and PICKBOX 3, so the pick box reaches
// 0.3 to all sides.
#include "edit/pick.h"

#include "acad/ed.h"
#include "edit/view.h"
#include "editor_test.h"
#include "host/input.h"

namespace {

using host::Slot;

class Picks : public EditorTest {
  protected:
    Picks() {
        host::setScreenSize(1080, 1080);
        eval("(setvar \"CMDECHO\" 0)");
        eval("(command \"_.zoom\" \"_c\" '(0.0 0.0) 108.0)");
        eval("(defun mat () (mapcar '(lambda (r) (mapcar 'fix r)) (caddr pick)))");
    }
    ~Picks() override { host::clearAnswers(); }

    static std::string layer(const std::string& options) {
        return eval("(command \"_.layer\" " + options + " \"\")");
    }
    /// The type of the innermost entity at a point, with its containers; "nil" for a miss.
    static std::string at(double x, double y, double z = 0.0) {
        eval("(setq pick (nentselp (list " + std::to_string(x) + " " + std::to_string(y) + " " +
             std::to_string(z) + ")))");
        return eval(
            "(if pick (mapcar '(lambda (e) (cdr (assoc 0 (entget e)))) "
            "(cons (car pick) (cadddr pick))))");
    }
    static std::string block(const std::string& name, const std::string& base,
                             const std::vector<std::string>& contents) {
        eval("(entmake '((0 . \"BLOCK\") (2 . \"" + name + "\") (70 . 0) (10 " + base + ")))");
        for (const std::string& groups : contents)
            eval("(entmake '(" + groups + "))");
        return eval("(entmake '((0 . \"ENDBLK\")))");
    }
    static void clear() { eval("(command \"_.erase\" \"_all\" \"\")"); }
};

constexpr const char* kHorizontal = "(0 . \"LINE\") (8 . \"0\") (10 0.0 0.0 0.0) (11 10.0 0.0 0.0)";

TEST_F(Picks, EveryTypeIsPickedWhereItShowsSomething) {
    const struct {
        const char* type;
        const char* groups;
        double hit[2], miss[2];
    } kCases[] = {
        {"LINE", "(10 0.0 0.0 0.0) (11 10.0 0.0 0.0)", {5, 0.29}, {5, 0.31}},
        {"LINE", "(10 0.0 0.0 0.0) (11 10.0 0.0 0.0)", {10.29, 0}, {10.31, 0}},
        // The pick box is a square: its corner (5.3 5.2) is beyond the line, (5.3 5.31) is not.
        {"LINE", "(10 0.0 0.0 0.0) (11 10.0 10.0 0.0)", {5, 5.5}, {5, 5.61}},
        {"CIRCLE", "(10 0.0 0.0 0.0) (40 . 5.0)", {5.29, 0}, {4.69, 0}},
        {"ARC",
         "(10 0.0 0.0 0.0) (40 . 5.0) (50 . 0.0) (51 . 1.5707963267948966)",
         {3.54, 3.54},
         {-5, 0}},
        {"POINT", "(10 0.0 0.0 0.0)", {0.29, -0.29}, {0, 0.31}},
        {"TEXT", "(10 0.0 0.0 0.0) (40 . 2.0) (1 . \"AB\")", {1.6, 1}, {1.6, 2.31}},
        {"SOLID",
         "(10 0.0 0.0 0.0) (11 4.0 0.0 0.0) (12 0.0 4.0 0.0) (13 4.0 4.0 0.0)",
         {2, 0.2},
         {2, -2}},
        {"3DFACE",
         "(10 0.0 0.0 0.0) (11 4.0 0.0 0.0) (12 4.0 4.0 9.0) (13 0.0 4.0 9.0)",
         {4.2, 2},
         {2, 2}},
        {"LWPOLYLINE",
         "(100 . \"AcDbEntity\") (100 . \"AcDbPolyline\") (90 . 2) (10 0.0 0.0) (42 . 1.0) "
         "(10 10.0 0.0)",
         {5, -5.2},
         {5, 0}},
        {"ELLIPSE",
         "(100 . \"AcDbEntity\") (100 . \"AcDbEllipse\") (10 0.0 0.0 0.0) (11 5.0 0.0 0.0) "
         "(40 . 0.5) (41 . 0.0) (42 . 6.283185307179586)",
         {0, 2.79},
         {0, 2.81}},
        {"XLINE",
         "(100 . \"AcDbEntity\") (100 . \"AcDbXline\") (10 0.0 0.0 0.0) (11 0.6 0.8 0.0)",
         {-600.2, -800},
         {-600.8, -800}},
        {"MTEXT",
         "(100 . \"AcDbEntity\") (100 . \"AcDbMText\") (10 0.0 0.0 0.0) (40 . 2.0) (41 . 4.0) "
         "(71 . 7) (1 . \"AB\")",
         {2, 1},
         {-0.31, 1}},
        {"HATCH",
         "(100 . \"AcDbEntity\") (100 . \"AcDbHatch\") (10 0.0 0.0 0.0) (210 0.0 0.0 1.0) "
         "(2 . \"SOLID\") (70 . 1) (71 . 0) (91 . 1) (92 . 2) (72 . 0) (73 . 1) (93 . 4) "
         "(10 0.0 0.0) (10 4.0 0.0) (10 4.0 4.0) (10 0.0 4.0) (97 . 0) (75 . 0) (76 . 1) (98 . 0)",
         {2, 1},
         {4.31, 2}},
    };
    for (const auto& row : kCases) {
        make("(0 . \"" + std::string(row.type) + "\") (8 . \"0\") " + row.groups);
        EXPECT_EQ(at(row.hit[0], row.hit[1]), "(\"" + std::string(row.type) + "\")");
        EXPECT_EQ(at(row.miss[0], row.miss[1]), "nil") << row.type;
        clear();
    }
}

TEST_F(Picks, TheLatestDrawnLiesOnTop) {
    const Slot first = make(kHorizontal), second = make(kHorizontal);
    EXPECT_EQ(host::pickAt(drawing(), {5, 0, 0})->main, second);
    eval("(entdel (entlast))");
    EXPECT_EQ(host::pickAt(drawing(), {5, 0, 0})->main, first);
    eval("(setvar \"PICKBOX\" 0)");
    EXPECT_FALSE(host::pickAt(drawing(), {5, 0.06, 0}));
    EXPECT_TRUE(host::pickAt(drawing(), {5, 0.04, 0}));
    eval("(setvar \"PICKBOX\" 3)");
    EXPECT_FALSE(host::pickAt(drawing(), {std::nan(""), 0, 0}));
}

TEST_F(Picks, APointIsOfTheUserSystemAndSeenInTheView) {
    make("(0 . \"LINE\") (8 . \"0\") (10 5.0 0.0 0.0) (11 5.0 0.0 10.0)");
    eval("(command \"_.ucs\" \"_z\" 90.0)");
    EXPECT_EQ(at(0, -5), "(\"LINE\")") << "a line on end is a point";
    EXPECT_EQ(at(5, 0), "nil");
    eval("(command \"_.ucs\" \"_world\")");
    host::View front = host::currentView(drawing());
    front.direction = {0, -1, 0};
    host::keepView(drawing(), front);
    EXPECT_EQ(at(5.2, 77, 4), "(\"LINE\")");
    EXPECT_EQ(at(5.2, 77, 10.4), "nil");
}

// A point of IN goes to the world: less its base point (1 0), by 2, turned by 90 degrees, to (10
// 0); then by (2 3), to (100 0). So (x y) is at (120 - 4y, 6x - 6), and the line (1 0) to (3 0)
// goes from (120 0) to (120 12).
TEST_F(Picks, BlocksAreLookedIntoWithScaleRotationAndBasePoint) {
    block("IN", "1.0 0.0 0.0", {"(0 . \"LINE\") (8 . \"0\") (10 1.0 0.0 0.0) (11 3.0 0.0 0.0)"});
    block("OUT", "0.0 0.0 0.0",
          {"(0 . \"INSERT\") (8 . \"0\") (2 . \"IN\") (10 10.0 0.0 0.0) (41 . 2.0) (42 . 2.0) "
           "(43 . 2.0) (50 . 1.5707963267948966)"});
    const std::string placed =
        "(0 . \"INSERT\") (8 . \"0\") (2 . \"OUT\") (10 100.0 0.0 0.0) (41 . 2.0) (42 . 3.0)";
    const Slot outer = make(placed);
    EXPECT_EQ(at(120.2, 6), "(\"LINE\" \"INSERT\" \"INSERT\")");
    EXPECT_EQ(eval("(cdr (assoc 2 (entget (car (cadddr pick)))))"), "\"IN\"");
    EXPECT_EQ(eval("(eq (last (cadddr pick)) (entlast))"), "T");
    EXPECT_EQ(eval("(equal (caddr pick) '((0.0 -4.0 0.0 120.0) (6.0 0.0 0.0 -6.0) "
                   "(0.0 0.0 2.0 0.0) (0.0 0.0 0.0 1.0)) 1e-9)"),
              "T");
    EXPECT_EQ(at(119.6, 6), "nil");
    EXPECT_EQ(at(100, 0), "nil") << "an insertion with contents is no point";
    host::queuePoint(120, 1);
    EXPECT_EQ(eval("(equal (caddr (nentsel)) '((0.0 6.0 0.0) (-4.0 0.0 0.0) (0.0 0.0 2.0) "
                   "(120.0 -6.0 0.0)) 1e-9)"),
              "T");
    EXPECT_EQ(host::pickAt(drawing(), {120, 6, 0})->main, outer);

    // Three columns 50 apart, two rows 20 apart.
    make(placed + " (70 . 3) (71 . 2) (44 . 50.0) (45 . 20.0)");
    EXPECT_EQ(at(220, 26), "(\"LINE\" \"INSERT\" \"INSERT\")");
    EXPECT_EQ(eval("(equal (mapcar 'last (caddr pick)) '(220.0 14.0 0.0 1.0) 1e-9)"), "T");
    EXPECT_EQ(at(270, 26), "nil");
}

// Seen from below x runs to the left: (12 y) of the insertion's plane is (-12 y).
TEST_F(Picks, AnInsertionMayLookDown) {
    block("B", "0.0 0.0 0.0", {"(0 . \"LINE\") (8 . \"0\") (10 2.0 0.0 0.0) (11 2.0 5.0 0.0)"});
    make("(0 . \"INSERT\") (8 . \"0\") (2 . \"B\") (10 10.0 0.0 0.0) (210 0.0 0.0 -1.0)");
    EXPECT_EQ(at(-12, 3), "(\"LINE\" \"INSERT\")");
    EXPECT_EQ(eval("(equal (mapcar 'last (caddr pick)) '(-10.0 0.0 0.0 1.0) 1e-9)"), "T");
    EXPECT_EQ(at(12, 3), "nil");
}

TEST_F(Picks, OnLayerZeroOfABlockTheInsertionsLayerCounts) {
    eval(
        "(foreach n '(\"A\" \"B\") (entmake (list '(0 . \"LAYER\") '(100 . "
        "\"AcDbSymbolTableRecord\")"
        " '(100 . \"AcDbLayerTableRecord\") (cons 2 n) '(70 . 0))))");
    block("B", "0.0 0.0 0.0",
          {kHorizontal, "(0 . \"LINE\") (8 . \"A\") (10 0.0 5.0 0.0) (11 10.0 5.0 0.0)"});
    make("(0 . \"INSERT\") (8 . \"B\") (2 . \"B\") (10 0.0 0.0 0.0)");
    const std::string line = "(\"LINE\" \"INSERT\")";
    EXPECT_EQ(at(5, 0) + at(5, 5), line + line);
    layer("\"_off\" \"B\"");
    EXPECT_EQ(at(5, 0) + at(5, 5), "nil" + line);
    layer("\"_on\" \"B\" \"_freeze\" \"A\"");
    EXPECT_EQ(at(5, 0) + at(5, 5), line + "nil");
    layer("\"_thaw\" \"A\" \"_freeze\" \"B\"");
    EXPECT_EQ(at(5, 0) + at(5, 5), "nilnil");
    layer("\"_thaw\" \"B\" \"_lock\" \"B\"");
    EXPECT_EQ(at(5, 0), line) << "a locked layer can be picked on";
}

TEST_F(Picks, PartsOfEntitiesAreFound) {
    eval("(entmake '((0 . \"POLYLINE\") (8 . \"0\") (66 . 1) (70 . 1)))");
    for (const char* corner : {"0.0 0.0", "10.0 0.0", "10.0 10.0"})
        eval(std::string("(entmake '((0 . \"VERTEX\") (8 . \"0\") (10 ") + corner + " 0.0)))");
    eval("(entmake '((0 . \"SEQEND\")))");
    const auto corner = [] { return eval("(cdr (assoc 10 (entget (car pick))))"); };
    EXPECT_EQ(at(5, 0), "(\"VERTEX\")");
    EXPECT_EQ(corner(), "(0.0 0.0 0.0)");
    at(10, 5);
    EXPECT_EQ(corner(), "(10.0 0.0 0.0)");
    at(5, 5);
    EXPECT_EQ(corner(), "(10.0 10.0 0.0)") << "the segment that closes it";
    EXPECT_EQ(eval("(length pick)"), "2");
    host::queuePoint(5, 5);
    EXPECT_EQ(eval("(eq (car (entsel)) (entlast))"), "T");
    clear();

    block("B", "0.0 0.0 0.0", {kHorizontal});
    eval("(entmake '((0 . \"INSERT\") (8 . \"0\") (66 . 1) (2 . \"B\") (10 0.0 0.0 0.0)))");
    eval(
        "(entmake '((0 . \"ATTRIB\") (8 . \"0\") (10 0.0 20.0 0.0) (40 . 2.0) (1 . \"AB\") "
        "(2 . \"T\") (70 . 0)))");
    eval("(entmake '((0 . \"SEQEND\")))");
    EXPECT_EQ(at(1.6, 21), "(\"ATTRIB\")");
    host::queuePoint(1.6, 21);
    EXPECT_EQ(eval("(cdr (assoc 0 (entget (car (entsel)))))"), "\"INSERT\"");
    EXPECT_EQ(at(5, 0), "(\"LINE\" \"INSERT\")");
}

TEST_F(Picks, AnInsertionThatShowsNothingIsPickedAtItsPlace) {
    eval(
        "(entmake '((0 . \"BLOCK\") (2 . \"GONE\") (70 . 4) (10 0.0 0.0 0.0) (1 . \"gone.dxf\")))");
    eval("(entmake '((0 . \"ENDBLK\")))");
    make("(0 . \"INSERT\") (8 . \"0\") (2 . \"GONE\") (10 7.0 7.0 0.0)");
    EXPECT_EQ(at(7.2, 7), "(\"INSERT\")");
    EXPECT_EQ(at(7.4, 7), "nil");
}

TEST_F(Picks, EntselTakesPointsNamesLastAndKeywords) {
    make(kHorizontal);
    eval("(setq l (entlast))");
    host::queueText(u"5,0.2");
    EXPECT_EQ(eval("(equal (entsel) (list l '(5.0 0.2 0.0)))"), "T");
    host::queueText(u"nonsense");
    host::queueText(u"Last");
    EXPECT_EQ(eval("(eq (car (entsel \"\\nWhich? \")) l)"), "T");
    ads_name name = {0, 0};
    acdbEntLast(name);
    host::queueEntity(name);
    EXPECT_EQ(eval("(eq (car (nentsel)) l)"), "T");
    host::queueText(u"g");
    EXPECT_EQ(eval("(progn (initget \"Go Last\") (entsel))"), "\"Go\"");
    eval("(setvar \"ERRNO\" 0)");
    host::queuePoint(5, 9);
    EXPECT_EQ(eval("(list (entsel) (getvar \"ERRNO\"))"), "(nil 7)");
    host::queueEnter();
    EXPECT_EQ(eval("(progn (initget 1) (list (nentsel) (getvar \"ERRNO\")))"), "(nil 52)");
    EXPECT_EQ(eval("(list (nentselp '(5 9)) (getvar \"ERRNO\"))"), "(nil 7)");
    host::queueCancel();
    EXPECT_EQ(eval("(entsel)"), "error: Function cancelled");
    host::queuePoint(5, 0);
    EXPECT_EQ(eval("(eq (car (nentselp \"Which? \")) l)"), "T");
}

TEST_F(Picks, WithoutDrawingOrRoomForTheAnswerThereIsNone) {
    make(kHorizontal);
    ads_name name = {42, 42};
    ads_point point = {5, 0, 0};
    EXPECT_EQ(acedNEntSelP(nullptr, name, point, 1, nullptr, nullptr), RTNORM);
    EXPECT_EQ(acedNEntSelP(nullptr, nullptr, point, 1, nullptr, nullptr), RTERROR);
    EXPECT_EQ(acedEntSel(nullptr, name, nullptr), RTERROR);
    host::closeDrawing();
    EXPECT_EQ(acedNEntSelP(nullptr, name, point, 1, nullptr, nullptr), RTERROR);
    host::newDrawing();
}

}  // namespace
