// Pictures: what reaches the canvas, with a page on which a drawing unit is a millimetre: (x y) of
// the drawing is at (10 + x, 287 - y).
#include <sstream>

#include "editor_test.h"
#include "host/display.h"
#include "host/plot.h"
#include "plot/text_content.h"

namespace {

std::string show(double value) {
    std::ostringstream out;
    out << std::round(value * 100.0) / 100.0 + 0.0;
    return out.str();
}

std::string show(const host::PlotColor& color) {
    return std::to_string(color.red) + "/" + std::to_string(color.green) + "/" +
           std::to_string(color.blue);
}

std::string show(const host::PlotPaths& paths) {
    std::string text;
    for (const host::PlotPath& path : paths) {
        text += text.empty() ? "" : " |";
        for (const host::PlotPoint& point : path.points)
            text += " " + show(point.x) + "," + show(point.y);
        if (path.closed) text += " close";
    }
    return text;
}

/// Writes down what is drawn. Every letter is as wide as a capital is high.
class Notes : public host::PlotCanvas {
  public:
    void stroke(const host::PlotPaths& paths, const host::PlotPen& pen) override {
        std::string line = "stroke " + show(pen.color) + " " + show(pen.width);
        for (const double length : pen.dashes)
            line += " -" + show(length);
        lines.push_back(line + ":" + show(paths));
    }
    void fill(const host::PlotPaths& paths, host::PlotColor color) override {
        lines.push_back("fill " + show(color) + ":" + show(paths));
    }
    void clip(const host::PlotPaths& paths) override {
        if (++clips > 1) lines.push_back("clip:" + show(paths));
    }
    void unclip() override { --clips; }
    void text(const std::string& utf8, const host::PlotText& place,
              host::PlotColor color) override {
        lines.push_back("text " + show(color) + " " + utf8 + ": " + show(place.origin.x) + "," +
                        show(place.origin.y) + " along " + show(place.along.x - place.origin.x) +
                        "," + show(place.along.y - place.origin.y) + " up " +
                        show(place.up.x - place.origin.x) + "," +
                        show(place.up.y - place.origin.y));
    }
    double textWidth(const std::string& utf8) override { return static_cast<double>(utf8.size()); }

    std::vector<std::string> lines;
    int clips = 0;
};

class Plots : public EditorTest {
  protected:
    Plots() {
        request_.has_window = true;
        request_.window[2] = 400;
        request_.window[3] = 277;
    }

    /// What is drawn, line by line.
    std::string plot() {
        Notes notes;
        std::string error;
        EXPECT_TRUE(host::plotDrawing(request_, notes, report_, error)) << error;
        EXPECT_EQ(notes.clips, 0);
        std::string all;
        for (const std::string& line : notes.lines)
            all += (all.empty() ? "" : "\n") + line;
        return all;
    }
    std::string refusal() {
        Notes notes;
        std::string error;
        EXPECT_FALSE(host::plotDrawing(request_, notes, report_, error));
        EXPECT_EQ(notes.lines.size(), 0u);
        return error;
    }
    static void line(const std::string& more, double y = 0) {
        const std::string height = std::to_string(y);
        make("(0 . \"LINE\") " + more + " (10 0.0 " + height + ") (11 20.0 " + height + ")");
    }
    static void layer(const std::string& name, const std::string& groups) {
        eval(
            "(entmake '((0 . \"LAYER\") (100 . \"AcDbSymbolTableRecord\") "
            "(100 . \"AcDbLayerTableRecord\") (2 . \"" +
            name + "\") " + groups + "))");
    }
    static void block(const std::string& name, const std::string& entity) {
        eval("(entmake '((0 . \"BLOCK\") (2 . \"" + name + "\") (70 . 0) (10 0.0 0.0 0.0)))");
        eval("(entmake '(" + entity + "))");
        eval("(entmake '((0 . \"ENDBLK\")))");
    }

    host::PlotRequest request_;
    host::PlotReport report_;
};

TEST_F(Plots, LinesLookAsTheirLayerAndTheirOwnGroupsSay) {
    eval(
        "(entmake '((0 . \"LTYPE\") (100 . \"AcDbSymbolTableRecord\") "
        "(100 . \"AcDbLinetypeTableRecord\") (2 . \"DASHED\") (70 . 0) (3 . \"\") (72 . 65) "
        "(73 . 3) (40 . 4.0) (49 . 2.0) (74 . 0) (49 . -1.0) (74 . 0) (49 . -1.0) (74 . 0)))");
    layer("PIPE", "(70 . 0) (62 . 3) (6 . \"DASHED\") (370 . 50)");
    line("(8 . \"PIPE\")");
    line("(8 . \"PIPE\") (62 . 1) (6 . \"CONTINUOUS\") (370 . 100)", 1);
    line("(8 . \"0\") (6 . \"DASHED\") (48 . 2.0)", 2);
    line("(8 . \"0\") (62 . 1) (420 . 1193046)", 3);
    line("(8 . \"0\") (62 . 15)", 4);
    EXPECT_EQ(plot(),
              "stroke 0/255/0 0.5 -2 -2: 10,287 30,287\n"
              "stroke 255/0/0 1: 10,286 30,286\n"
              "stroke 0/0/0 0.25 -4 -4: 10,285 30,285\n"
              "stroke 18/52/86 0.25: 10,284 30,284\n"
              "stroke 127/63/63 0.25: 10,283 30,283");
    EXPECT_EQ(report_.drawn, 5u);
    EXPECT_EQ(show(report_.scale), "1");
    request_.dark = true;
    EXPECT_NE(plot().find("stroke 255/255/255 0.25 -4"), std::string::npos);
}

TEST_F(Plots, ABlockShowsWhatItInheritsFromItsInsertion) {
    layer("PUMP", "(70 . 0) (62 . 5) (370 . 70)");
    block("B", "(0 . \"LINE\") (8 . \"0\") (10 0.0 0.0) (11 1.0 0.0)");
    block("C", "(0 . \"LINE\") (8 . \"PUMP\") (62 . 0) (370 . -2) (10 0.0 0.0) (11 1.0 0.0)");
    const std::string placed = "(10 5.0 0.0 0.0) (41 . 10.0) (42 . 10.0) (50 . 1.5707963267948966)";
    make("(0 . \"INSERT\") (8 . \"PUMP\") (62 . 1) (2 . \"B\") " + placed);
    make("(0 . \"INSERT\") (8 . \"0\") (62 . 2) (370 . 30) (2 . \"C\") " + placed);
    EXPECT_EQ(plot(),
              "stroke 0/0/255 0.7: 15,287 15,277\n"
              "stroke 255/255/0 0.3: 15,287 15,277");
}

TEST_F(Plots, WhatIsHiddenOrForTheScreenOnlyIsLeftOut) {
    layer("FROZEN", "(70 . 1) (62 . 7)");
    layer("OFF", "(70 . 0) (62 . -7)");
    layer("SCREEN", "(70 . 0) (62 . 7) (290 . 0)");
    layer("DefPoints", "(70 . 0) (62 . 7)");
    for (const char* name : {"FROZEN", "OFF", "SCREEN", "DEFPOINTS"})
        line("(8 . \"" + std::string(name) + "\")");
    line("(8 . \"0\") (60 . 1)");
    EXPECT_EQ(plot(), "");
    line("(8 . \"0\")");
    EXPECT_NE(plot(), "");
    EXPECT_EQ(eval("(redraw (entlast) 2)"), "nil");
    EXPECT_EQ(plot(), "");
    eval("(redraw)");
    EXPECT_NE(plot(), "");
}

TEST_F(Plots, TheWindowIsThePartOfThePageThatIsDrawnOn) {
    line("(8 . \"0\")");
    line("(8 . \"0\")", 300);
    EXPECT_EQ(plot(), "stroke 0/0/0 0.25: 10,287 30,287") << "what is outside is left out";
    request_.window[0] = 10, request_.window[1] = -100, request_.window[2] = 20,
    request_.window[3] = 100;
    plot();
    EXPECT_EQ(show(report_.scale), "1.39") << "277 mm for 200 units";
    request_.has_window = false;
    EXPECT_EQ(plot(),
              "stroke 0/0/0 0.25: 200.77,287 219.23,287\nstroke 0/0/0 0.25: 200.77,10 219.23,10");
    make(
        "(0 . \"XLINE\") (100 . \"AcDbEntity\") (8 . \"0\") (100 . \"AcDbXline\") (10 0.0 0.0 0.0) "
        "(11 1.0 0.0 0.0)");
    EXPECT_NE(plot().find("stroke 0/0/0 0.25: -1000,287 1420,287"), std::string::npos)
        << "the far ends of an endless line are cut";
}

TEST_F(Plots, PolylinesKeepTheirWidthsAndAreasTheirHoles) {
    make(
        "(0 . \"LWPOLYLINE\") (100 . \"AcDbEntity\") (8 . \"0\") (100 . \"AcDbPolyline\") "
        "(90 . 3) (70 . 1) (43 . 2.0) (10 0.0 0.0) (10 10.0 0.0) (10 0.0 10.0)");
    make(
        "(0 . \"LWPOLYLINE\") (100 . \"AcDbEntity\") (8 . \"0\") (100 . \"AcDbPolyline\") "
        "(90 . 2) (70 . 0) (10 0.0 0.0) (40 . 4.0) (41 . 0.0) (10 10.0 0.0)");
    make(
        "(0 . \"SOLID\") (8 . \"0\") (62 . 1) (10 0.0 0.0 0.0) (11 10.0 0.0 0.0) "
        "(12 0.0 10.0 0.0) (13 10.0 10.0 0.0)");
    EXPECT_EQ(plot(),
              "stroke 0/0/0 2: 10,287 20,287 10,277 close\n"
              "stroke 0/0/0 0.25: 10,287 20,287\n"
              "fill 0/0/0: 10,289 20,287 20,287 10,285 close\n"
              "fill 255/0/0: 10,287 20,287 20,277 10,277 10,287");
    request_.window[0] = request_.window[1] = 1000;
    request_.window[2] = 1400, request_.window[3] = 1277;
    make(
        "(0 . \"LWPOLYLINE\") (100 . \"AcDbEntity\") (8 . \"0\") (100 . \"AcDbPolyline\") "
        "(90 . 4) (70 . 0) (43 . 2.0) (10 1000.0 1000.0) (10 2000.0 1000.0) (10 2000.0 900.0) "
        "(10 1000.0 1100.0)");
    make(
        "(0 . \"SOLID\") (8 . \"0\") (62 . 1) (10 -9000.0 -9000.0 0.0) "
        "(11 9000.0 -9000.0 0.0) (12 -9000.0 9000.0 0.0) (13 9000.0 9000.0 0.0)");
    EXPECT_EQ(plot(),
              "stroke 0/0/0 2: 10,287 1010,287 | 1010,387 10,187\n"
              "fill 255/0/0: -9990,10287 8010,10287 8010,-7713 -9990,-7713 -9990,10287")
        << "a line is broken outside of the page, an area is not";
    eval("(setvar \"FILLMODE\" 0)");
    EXPECT_EQ(plot().find("fill"), std::string::npos);
}

TEST_F(Plots, HatchesAreFilledOrDrawnWithTheirLines) {
    const std::string boundary =
        "(91 . 1) (92 . 3) (72 . 0) (73 . 1) (93 . 4) (10 0.0 0.0) (10 10.0 0.0) "
        "(10 10.0 10.0) (10 0.0 10.0) (97 . 0) (75 . 0) (76 . 1) ";
    const std::string head =
        "(0 . \"HATCH\") (100 . \"AcDbEntity\") (8 . \"0\") "
        "(100 . \"AcDbHatch\") (10 0.0 0.0 0.0) (210 0.0 0.0 1.0) ";
    make(head + "(2 . \"SOLID\") (70 . 1) (71 . 0) " + boundary + "(98 . 0)");
    EXPECT_EQ(plot(), "fill 0/0/0: 10,287 20,287 20,277 10,277 10,287");
    eval("(entdel (entlast))");
    make(head + "(2 . \"LINE\") (70 . 0) (71 . 0) " + boundary +
         "(52 . 0.0) (41 . 1.0) (77 . 0) (78 . 1) (53 . 0.0) (43 . 0.0) (44 . 0.0) (45 . 0.0) "
         "(46 . 4.0) (79 . 0) (98 . 0)");
    const std::string lines = plot();
    EXPECT_TRUE(lines.starts_with("clip: 10,287 20,287 20,277 10,277 10,287\nstroke 0/0/0 0.25:"))
        << lines;
    for (const char* y : {",287", ",283", ",279"})
        EXPECT_NE(lines.find(y), std::string::npos) << y << " in " << lines;
    EXPECT_EQ(lines.find(",275"), std::string::npos) << lines;
}

TEST_F(Plots, TextsStandWhereTheirJustificationPutsThem) {
    const auto text = [](const std::string& more) {
        make("(0 . \"TEXT\") (8 . \"0\") (40 . 2.0) (1 . \"P%%d1\") (10 10.0 20.0 0.0) " + more);
    };
    text("");
    text("(72 . 2) (11 30.0 20.0 0.0) (73 . 3)");
    text("(50 . 1.5707963267948966) (41 . 0.5)");
    text("(72 . 5) (11 18.0 20.0 0.0)");
    // The degree sign has two bytes, so the text is four letters wide here.
    EXPECT_EQ(plot(),
              "text 0/0/0 P\u00b01: 20,267 along 2,0 up 0,-2\n"
              "text 0/0/0 P\u00b01: 32,269 along 2,0 up 0,-2\n"
              "text 0/0/0 P\u00b01: 20,267 along 0,-1 up -2,0\n"
              "text 0/0/0 P\u00b01: 20,267 along 2,0 up 0,-2");
}

TEST_F(Plots, ParagraphsAreBrokenAtTheirWidth) {
    make(
        "(0 . \"MTEXT\") (100 . \"AcDbEntity\") (8 . \"0\") (100 . \"AcDbMText\") "
        "(10 0.0 100.0 0.0) (40 . 3.0) (41 . 20.0) (71 . 1) (72 . 1) "
        "(1 . \"one two three\\\\Pfour\")");
    EXPECT_EQ(plot(),
              "text 0/0/0 one: 10,190 along 3,0 up 0,-3\n"
              "text 0/0/0 two: 10,195 along 3,0 up 0,-3\n"
              "text 0/0/0 three: 10,200 along 3,0 up 0,-3\n"
              "text 0/0/0 four: 10,205 along 3,0 up 0,-3");
}

TEST(PlotTexts, CodesAreReadAndLeftOut) {
    const auto plain = [](std::u16string_view text) {
        std::string all;
        for (const std::u16string& paragraph : host::paragraphs(text))
            all += (all.empty() ? "" : "|") + kz::toUtf8(paragraph);
        return all;
    };
    EXPECT_EQ(plain(u"{\\fArial|b0;\\H2.5;Pump \\LA\\l}\\PNo.\\~1"), "Pump A|No.\u00a01");
    EXPECT_EQ(plain(u"\\S1/2; \\S+0.1^-0.2; a\\\\b \\{c\\}"), "1/2 +0.1/-0.2 a\\b {c}");
    EXPECT_EQ(plain(u"%%c5 %%p1 %%065 %%z^Ib"), "\u00d85 \u00b11 A %%z b");
    EXPECT_EQ(plain(u"\\f"), "") << "a code without its end";
    EXPECT_EQ(plain(u"\\S1"), "1");
    EXPECT_EQ(plain(u"\\"), "\\");
    EXPECT_EQ(plain(u""), "");
}

TEST_F(Plots, ChosenEntitiesStandOut) {
    line("(8 . \"0\") (62 . 5)");
    line("(8 . \"0\") (62 . 3)", 1);
    request_.stressed = {drawing().idOf(drawing().lastEntity(drawing().modelSpace()))};
    EXPECT_EQ(plot(),
              "stroke 200/200/200 0.25: 10,287 30,287\n"
              "stroke 230/0/0 0.6: 10,286 30,286");
    host::setHighlighted(request_.stressed.front(), true);
    request_.stressed.clear();
    EXPECT_EQ(plot(),
              "stroke 0/0/255 0.25: 10,287 30,287\n"
              "stroke 230/0/0 0.6: 10,286 30,286");
    host::setHighlighted(drawing().idOf(drawing().lastEntity(drawing().modelSpace())), false);
    request_.colored[0xFFFFFF] = {1, 2, 3};
    EXPECT_EQ(plot(),
              "stroke 200/200/200 0.25: 10,287 30,287\n"
              "stroke 200/200/200 0.25: 10,286 30,286");
    request_.colored.clear();
    request_.handles = true;
    const std::string handle = eval("(cdr (assoc 5 (entget (entlast))))");
    EXPECT_NE(plot().find("text 0/70/200 " + handle.substr(1, handle.size() - 2) + ": 10.5,285.5"),
              std::string::npos);
}

TEST_F(Plots, TypesWithoutAPictureAreCounted) {
    make(
        "(0 . \"3DSOLID\") (100 . \"AcDbEntity\") (8 . \"0\") (100 . \"AcDbModelerGeometry\") "
        "(70 . 1)");
    EXPECT_EQ(plot(), "");
    EXPECT_EQ(report_.not_drawn, (std::map<std::string, size_t>{{"3DSOLID", 1}}));
}

TEST_F(Plots, APageOrWindowWithoutAnAreaIsRefused) {
    request_.window[2] = 0;
    EXPECT_EQ(refusal(), "the window has no area");
    request_.page_width = 20;
    EXPECT_EQ(refusal(), "the page has no room for a picture");
    host::closeDrawing();
    EXPECT_EQ(refusal(), "there is no drawing");
    host::newDrawing();
}

TEST_F(Plots, AnEmptyDrawingIsAnEmptyPage) {
    request_.has_window = false;
    EXPECT_EQ(plot(), "");
}

}  // namespace
