// Drawings saved as another version: what becomes of each kind of group and object.
#include <gtest/gtest.h>

#include "dxf_text.h"
#include "host/drawing.h"
#include "temp_folder.h"

namespace {

using dxf_text::drawing;
using dxf_text::pairs;

class Convert : public testing::Test {
  protected:
    ~Convert() override { host::closeDrawing(); }

    /// The drawing as another version, without the blanks in front of group codes.
    std::string saved(const std::string& text, const std::string& version) {
        host::SaveOptions options;
        options.version = version;
        std::string error;
        EXPECT_TRUE(host::openDrawing(folder.write("in.dxf", text), error)) << error;
        host::SaveOutcome outcome = host::saveDrawing(folder.file("out.dxf"), options);
        EXPECT_TRUE(outcome.saved) << outcome.error;
        note = outcome.notes.empty() ? "" : outcome.notes.front();
        const std::string bytes = TempFolder::read(folder.file("out.dxf"));
        std::string out;
        for (size_t i = 0; i < bytes.size(); ++i) {
            const bool pad = bytes[i] == ' ' && (out.empty() || out.back() == '\n');
            if (!pad) out += bytes[i];
        }
        return out;
    }
    /// What stands between two texts of a drawing.
    static std::string between(const std::string& text, const std::string& from,
                               const std::string& to) {
        const size_t at = text.find(from);
        if (at == std::string::npos) return "no " + from;
        return text.substr(at + from.size(), text.find(to, at + from.size()) - at - from.size());
    }
    static std::string entities(const std::string& text) {
        return between(text, "2\nENTITIES\n", "0\nENDSEC\n");
    }

    TempFolder folder;
    std::string note;
};

TEST_F(Convert, groups_of_later_versions_go_and_all_else_stays) {
    const std::string circle = "0 CIRCLE | 5 30 | 330 1F | 100 AcDbEntity | 8 0";
    const std::string own = " | 100 AcDbCircle | 10 1.50 | 20 2 | 40 7.0";
    const std::string data = " | 1001 OTHER | 1070 420";
    const struct {
        const char* what;
        const char* from;
        const char* to;
        std::string given;
        std::string kept;
        const char* note;
    } kCases[] = {
        {"an index beside the true colour stays", "AC1032", "2000",
         circle + " | 62 3 | 420 255 | 430 A$B" + own + data, circle + " | 62 3" + own + data,
         "1 true colour became an index colour"},
        {"a true colour alone becomes the nearest index", "AC1032", "2000",
         circle + " | 420 16711680" + own, circle + " | 62 1" + own,
         "1 true colour became an index colour"},
        {"R2004 has true colours", "AC1032", "R2004", circle + " | 420 255 | 440 33554559" + own,
         circle + " | 420 255 | 440 33554559" + own, ""},
        {"opaque is no transparency", "AC1032", "2000",
         circle + " | 440 33554687 | 347 4D" + own + data, circle + own + data,
         "1 material is lost"},
        {"proxy graphics have a longer count since R2010", "AC1032", "AC1021",
         circle + " | 160 3 | 310 AABBCC" + own, circle + " | 92 3 | 310 AABBCC" + own, ""},
        {"and a shorter one before", "AC1021", "2013", circle + " | 92 3 | 310 AABBCC" + own,
         circle + " | 160 3 | 310 AABBCC" + own, ""},
        {"embedded texts of R2018", "AC1032", "2013",
         "0 MTEXT | 5 30 | 330 1F | 100 AcDbEntity | 8 0 | 100 AcDbMText | 1 x | 73 1 | "
         "101 Embedded Object | 70 1 | 71 2 | 72 3 | 1001 OTHER | 1000 kept",
         "0 MTEXT | 5 30 | 330 1F | 100 AcDbEntity | 8 0 | 100 AcDbMText | 1 x | 73 1 | "
         "1001 OTHER | 1000 kept",
         "1 text has no columns any more"},
        {"codes mean what their class says", "AC1032", "2000",
         "0 HATCH | 5 30 | 330 1F | 100 AcDbEntity | 8 0 | 62 4 | 100 AcDbHatch | 63 1 | 75 1 | "
         "450 1 | 460 0.5 | 470 LINEAR | 0 LWPOLYLINE | 5 31 | 330 1F | 100 AcDbEntity | 8 0 | "
         "100 AcDbPolyline | 90 2 | 91 7 | 10 0 | 20 0 | 91 8 | 10 1 | 20 1",
         "0 HATCH | 5 30 | 330 1F | 100 AcDbEntity | 8 0 | 62 4 | 100 AcDbHatch | 75 1 | "
         "0 LWPOLYLINE | 5 31 | 330 1F | 100 AcDbEntity | 8 0 | 100 AcDbPolyline | 90 2 | 10 0 | "
         "20 0 | 10 1 | 20 1",
         "1 gradient became a plain filling"},
        {"styles of views have another form since R2010", "AC1032", "2007",
         "0 VISUALSTYLE | 5 31 | 330 1F | 100 AcDbVisualStyle | 2 x | 0 VIEWPORT | 5 30 | 330 1F | "
         "100 AcDbEntity | 8 0 | 348 31 | 100 AcDbViewport | 10 0 | 348 31",
         "0 VIEWPORT | 5 30 | 330 1F | 100 AcDbEntity | 8 0 | 100 AcDbViewport | 10 0 | 348 0",
         "1 VISUALSTYLE left out"},
        {"an attribute's version number and lock", "AC1032", "2007",
         "0 ATTDEF | 5 30 | 330 1F | 100 AcDbEntity | 8 0 | 100 AcDbText | 1 v | "
         "100 AcDbAttributeDefinition | 280 0 | 3 p | 2 TAG | 70 0 | 280 1",
         "0 ATTDEF | 5 30 | 330 1F | 100 AcDbEntity | 8 0 | 100 AcDbText | 1 v | "
         "100 AcDbAttributeDefinition | 3 p | 2 TAG | 70 0 | 280 1",
         ""},
    };
    for (const auto& test : kCases) {
        EXPECT_EQ(entities(saved(drawing(pairs(test.given), test.from), test.to)), pairs(test.kept))
            << test.what;
        const bool said = *test.note == '\0' ? note.empty() : note.find(test.note) != note.npos;
        EXPECT_TRUE(said) << test.what << ": " << note;
    }
}

TEST_F(Convert, texts_change_between_code_page_and_utf8) {
    const auto text = [this](const std::string& value, const char* from, const char* to,
                             const char* page) {
        return between(saved(drawing(pairs("0 TEXT | 5 30 | 8 0 | 1 " + value), from, page), to),
                       "5\n30\n8\n0\n1\n", "\n");
    };
    EXPECT_EQ(text("Труба ^J \\U+2205 泵", "AC1032", "2000", "ANSI_1251"),
              "\xD2\xF0\xF3\xE1\xE0 ^J \\U+2205 \\U+6CF5");
    EXPECT_EQ(text("\xD2\xF0\xF3\xE1\xE0 ^J \\U+2205", "AC1015", "2018", "ANSI_1251"),
              "Труба ^J ∅");
    EXPECT_EQ(text("\\U+D83D\\U+DE00 \\U+DC81 \\U+0041 \\U+22 \\U+", "AC1015", "2018", "ANSI_1252"),
              "\xF0\x9F\x98\x80 \\U+DC81 \\U+0041 \\U+22 \\U+");
    // The second byte of these characters is a backslash, or another one of ASCII.
    EXPECT_EQ(text("\x83\x5C\x83\x65x\x94\x5C", "AC1015", "2018", "ANSI_932"), "ソテx能");
    EXPECT_EQ(text("ソテx能", "AC1032", "2004", "ANSI_932"), "\x83\x5C\x83\x65x\x94\x5C");
    EXPECT_EQ(text("a\xE4z", "AC1032", "2004", "ANSI_1252"), "a\xE4z");
    EXPECT_NE(note.find("1 text holds bytes that mean nothing"), std::string::npos);
    // Between versions of one encoding bytes stay, whatever they are.
    EXPECT_EQ(text("a\xE4z", "AC1032", "2010", "ANSI_1252"), "a\xE4z");
}

TEST_F(Convert, the_header_has_what_its_version_knows) {
    std::string text = drawing("", "AC1032");
    text.insert(text.find("9\n$CLAYER"),
                pairs("9 $ACADMAINTVER | 90 329 | 9 $LASTSAVEDBY | 1 me | 9 $DIMFXL | 40 1.0 | "
                      "9 $XCLIPFRAME | 280 2"));
    const auto header = [&](const char* version) {
        return between(saved(text, version), "HEADER\n", "9\n$CLAYER");
    };
    const std::string page = "9 $DWGCODEPAGE | 3 ANSI_1252";
    EXPECT_EQ(header("2000"),
              pairs("9 $ACADVER | 1 AC1015 | " + page + " | 9 $ACADMAINTVER | 70 0"));
    EXPECT_EQ(header("2007"),
              pairs("9 $ACADVER | 1 AC1021 | " + page +
                    " | 9 $ACADMAINTVER | 70 0 | "
                    "9 $LASTSAVEDBY | 1 me | 9 $DIMFXL | 40 1.0 | 9 $XCLIPFRAME | 290 1"));
    EXPECT_EQ(saved(text, "2018"), text);
}

TEST_F(Convert, an_object_that_is_left_out_takes_what_leads_to_it_along) {
    // A light, its dictionary with a record, a group and an order of drawing that name it.
    const std::string circle = "0 CIRCLE | 5 30 | 330 1F | 100 AcDbEntity | 8 0 | 100 AcDbCircle";
    std::string text =
        drawing(pairs("0 LIGHT | 5 40 | 102 {ACAD_XDICTIONARY | 360 41 | 102 } | 330 1F | "
                      "100 AcDbEntity | 8 0 | 100 AcDbLight | 90 1 | " +
                      circle),
                "AC1032");
    const std::string objects =
        "0 DICTIONARY | 5 41 | 330 40 | 100 AcDbDictionary | 280 1 | 3 R | 360 42 | "
        "0 XRECORD | 5 42 | 330 41 | 100 AcDbXrecord | 1 x | ";
    const std::string kept =
        "0 GROUP | 5 43 | 330 D | 100 AcDbGroup | 340 30 | "
        "0 SORTENTSTABLE | 5 44 | 330 C | 100 AcDbSortentsTable | 330 1F | 331 30 | 5 30 | "
        "0 XRECORD | 5 45 | 330 C | 100 AcDbXrecord | 330 0 | 102 {X | 101 y | 102 }";
    std::string given = kept;
    given.replace(given.find("340 30"), 0, "340 40 | ");
    given.replace(given.find("331 30"), 0, "331 40 | 5 40 | ");
    given.replace(given.find("330 0 | 102"), 5, "330 40");
    const size_t end = text.rfind("0\nENDSEC\n");
    text.insert(end, pairs(objects + given));
    const std::string out = saved(text, "2004");
    EXPECT_EQ(entities(out), pairs(circle));
    EXPECT_EQ(between(out, "350\nD\n0\nDICTIONARY\n5\nD\n330\nC\n100\nAcDbDictionary\n281\n1\n",
                      "0\nENDSEC\n"),
              pairs(kept));
    EXPECT_EQ(note, "saved as R2004: 1 DICTIONARY, 1 LIGHT, 1 XRECORD left out");
    // A class that is declared lets all versions keep the object.
    text.insert(text.find("0\nSECTION\n2\nTABLES"),
                pairs("0 SECTION | 2 CLASSES | 0 CLASS | 1 LIGHT | 2 AcDbLight | 3 S | 90 1 | "
                      "91 1 | 280 0 | 281 1 | 0 ENDSEC"));
    EXPECT_NE(saved(text, "2000").find("0\nLIGHT\n5\n40\n"), std::string::npos);
    EXPECT_EQ(note, "saved as R2000: 1 LIGHT shown by later programs only");
}

TEST_F(Convert, versions_are_named_in_several_ways_and_old_ones_refused) {
    const std::string text = drawing(dxf_text::line("30"), "AC1027");
    for (const char* name : {"R2004", "2004", "AC1018", "ac1018", "r2005", "2006"}) {
        EXPECT_NE(saved(text, name).find("$ACADVER\n1\nAC1018\n"), std::string::npos) << name;
    }
    EXPECT_EQ(saved(text, "2013"), text);
    const auto refusal = [this](const char* version) {
        host::SaveOptions options;
        options.version = version;
        const std::string path = folder.file("out.dxf");
        return host::saveDrawing(path, options).error.substr(path.size());
    };
    EXPECT_EQ(refusal("R12"), ": drawings can't be saved as R12, only as R2000 or later");
    EXPECT_EQ(refusal("AC1014"), ": drawings can't be saved as R14, only as R2000 or later");
    EXPECT_EQ(refusal("1999"),
              ": \"1999\" is no version of drawings; R2000, R2004, R2007, R2010, "
              "R2013 and R2018 are");
}

TEST_F(Convert, line_ends_and_changes_go_along) {
    std::string text;
    for (const char c : drawing(pairs("0 POINT | 5 30 | 330 1F | 100 AcDbEntity | 8 0 | "
                                      "100 AcDbPoint | 10 1 | 20 2"),
                                "AC1015")) {
        if (c == '\n') text += '\r';
        text += c;
    }
    const std::string out = saved(text, "2010");
    EXPECT_EQ(out.find('\n'), out.find("\r\n") + 1);
    size_t lone = 0;
    for (size_t i = 1; i < out.size(); ++i)
        lone += out[i] == '\n' && out[i - 1] != '\r' ? 1U : 0U;
    EXPECT_EQ(lone, 0U);
    EXPECT_EQ(out.size(), text.size());
}

}  // namespace
