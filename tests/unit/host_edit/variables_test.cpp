// Where system variables are kept, and the doors that tests and the host have to them.
#include <set>

#include "edit/drawing_state.h"
#include "edit/sysvar_table.h"
#include "editor_test.h"
#include "host/testing.h"
#include "host/undo.h"
#include "temp_folder.h"

namespace {

using namespace host;

class Variables : public EditorTest {
  protected:
    Variables() { open("AC1032"); }

    /// A drawing of a version, with hardly a variable in its header.
    void open(const std::string& version) {
        std::string error;
        ASSERT_TRUE(openDrawing(folder_.write("in.dxf", dxf_text::drawing("", version)), error))
            << error;
    }
    std::string save() {
        std::string error;
        EXPECT_TRUE(saveDrawing(folder_.file("out.dxf"), error)) << error;
        return TempFolder::read(folder_.file("out.dxf"));
    }
    TempFolder folder_;
};

TEST_F(Variables, every_default_is_a_value_that_can_be_set) {
    std::set<std::string> refused;
    for (const Variable& row : systemVariables()) {
        const auto value = variable(row.name);
        ASSERT_TRUE(value) << row.name;
        if (row.read_only) {
            EXPECT_FALSE(setVariable(row.name, *value)) << row.name;
        } else if (!setVariable(row.name, *value)) {
            refused.emplace(row.name);
        }
    }
    // This drawing has no text styles.
    EXPECT_EQ(refused, (std::set<std::string>{"DIMTXSTY", "TEXTSTYLE"}));
}

TEST_F(Variables, what_the_header_lacks_is_added_when_it_is_set) {
    EXPECT_EQ(eval("(list (getvar \"LTSCALE\") (getvar \"LIMMAX\"))"), "(1.0 (420.0 297.0))");
    EXPECT_EQ(save().find("$LTSCALE"), std::string::npos);
    eval("(setvar \"LTSCALE\" 2.5) (setvar \"LIMMAX\" '(10.0 20.0)) (setvar \"ANGBASE\" pi)");
    const std::string text = save();
    EXPECT_NE(text.find("  9\n$LTSCALE\n 40\n2.5\n"), std::string::npos);
    EXPECT_NE(text.find("  9\n$LIMMAX\n 10\n10.0\n 20\n20.0\n"), std::string::npos);
    EXPECT_NE(text.find("  9\n$ANGBASE\n 50\n180.0\n"), std::string::npos);
}

TEST_F(Variables, versions_keep_beside_the_file_what_they_do_not_know) {
    open("AC1015");
    EXPECT_EQ(eval("(list (setvar \"DIMFXL\" 3.0) (setvar \"CELWEIGHT\" 25))"), "(3.0 25)");
    EXPECT_EQ(eval("(getvar \"DIMFXL\")"), "3.0");
    const std::string text = save();
    EXPECT_EQ(text.find("$DIMFXL"), std::string::npos);
    EXPECT_NE(text.find("$CELWEIGHT\n370\n25\n"), std::string::npos);
    open("AC1015");
    EXPECT_EQ(eval("(getvar \"DIMFXL\")"), "1.0");
}

TEST_F(Variables, the_drawing_s_own_end_with_it) {
    eval("(setvar \"USERS1\" \"mine\") (setvar \"OSMODE\" 5)");
    open("AC1032");
    EXPECT_EQ(eval("(list (getvar \"USERS1\") (getvar \"OSMODE\"))"), "(\"\" 5)");
    eval("(setvar \"OSMODE\" 0)");
}

TEST_F(Variables, a_setting_of_the_drawing_can_be_undone) {
    {
        const UndoStep step("SETVAR");
        setVariable("LTSCALE", 4.0);
        setVariable("SNAPMODE", int32_t{1});
    }
    undo(1);
    EXPECT_EQ(realVariable("LTSCALE", 0), 1.0);
    EXPECT_EQ(integerVariable("SNAPMODE", -1), 0);
}

TEST_F(Variables, without_a_drawing_only_the_session_s_are_there) {
    closeDrawing();
    EXPECT_TRUE(variable("CMDECHO"));
    EXPECT_TRUE(variable("DWGNAME"));
    for (const char* name : {"LTSCALE", "USERS1", "VIEWSIZE", "SNAPMODE", "EXTMIN", "CLAYER"}) {
        EXPECT_FALSE(variable(name)) << name;
        EXPECT_FALSE(setVariable(name, 1.0)) << name;
    }
    newDrawing();
}

TEST_F(Variables, the_host_sets_what_users_can_not) {
    EXPECT_FALSE(setVariable("CPROFILE", u"Quillmont_Piping"));
    EXPECT_TRUE(presetVariable("CPROFILE", u"Quillmont_Piping"));
    EXPECT_TRUE(presetVariable("PERIMETER", 12.5));
    EXPECT_FALSE(presetVariable("DWGNAME", u"x.dwg"));
    EXPECT_FALSE(presetVariable("PERIMETER", u"12"));
    EXPECT_FALSE(presetVariable("NO_SUCH", 1));
    EXPECT_EQ(eval("(list (getvar \"CPROFILE\") (getvar \"PERIMETER\"))"),
              "(\"Quillmont_Piping\" 12.5)");
    presetVariable("CPROFILE", u"");
}

TEST_F(Variables, the_host_computes) {
    EXPECT_EQ(eval("(list (getvar \"CMDACTIVE\") (getvar \"CMDNAMES\"))"), "(0 \"\")");
    int active = 4;
    computeVariable("CMDACTIVE", [&active] { return VariableValue(active); });
    EXPECT_EQ(eval("(getvar \"cmdactive\")"), "4");
    computeVariable("CMDACTIVE", [] { return VariableValue(0); });
}

TEST_F(Variables, one_can_be_made_to_fail) {
    resbuf value = {};
    host::testing::failVariable("DWGPREFIX", RTREJ);
    EXPECT_EQ(acedGetVar(u"dwgprefix", &value), RTREJ);
    EXPECT_EQ(acedGetVar(u"ORTHOMODE", &value), RTNORM);
    host::testing::failVariable("ORTHOMODE", RTERROR);
    EXPECT_EQ(acedSetVar(u"orthomode", &value), RTERROR);
    host::testing::clearFault();
    EXPECT_EQ(acedGetVar(u"ORTHOMODE", &value), RTNORM);
}

TEST_F(Variables, kinds_of_result_buffers) {
    const auto kind = [](const char16_t* name) {
        resbuf value = {};
        EXPECT_EQ(acedGetVar(name, &value), RTNORM);
        if (value.restype == RTSTR) free(value.resval.rstring);
        return value.restype;
    };
    EXPECT_EQ(kind(u"SCREENSIZE"), RTPOINT);
    EXPECT_EQ(kind(u"ExtMin"), RT3DPOINT);
    EXPECT_EQ(kind(u"viewdir"), RT3DPOINT);
    EXPECT_EQ(kind(u"VIEWSIZE"), RTREAL);
    EXPECT_EQ(kind(u"PICKBOX"), RTSHORT);
    EXPECT_EQ(kind(u"MILLISECS"), RTLONG);
    EXPECT_EQ(kind(u"_VERNUM"), RTSTR);
    resbuf value = {};
    value.restype = RTSTR;
    EXPECT_NE(acedSetVar(u"USERS1", &value), RTNORM);  // no text
    EXPECT_NE(acedSetVar(u"USERS1", nullptr), RTNORM);
    EXPECT_NE(acedGetVar(nullptr, &value), RTNORM);
}

TEST_F(Variables, dates_by_the_clock_of_a_test) {
    const char* zone = getenv("TZ");
    const std::string before = zone == nullptr ? "" : zone;
    setenv("TZ", "UTC-2", 1);  // two hours ahead
    tzset();
    setClock([] { return int64_t{507385736250}; });  // 1986-01-29 12:28:56.25 UTC
    EXPECT_NEAR(realVariable("DATE", 0), 2446460.603428819, 1e-9);
    EXPECT_NEAR(realVariable("CDATE", 0), 19860129.14285625, 1e-8);
    setClock({});
    zone == nullptr ? unsetenv("TZ") : setenv("TZ", before.c_str(), 1);
    tzset();
}

TEST_F(Variables, settings_by_the_database) {
    AcDbDatabase* database = acdbHostApplicationServices()->workingDatabase();
    AcCmColor color;
    EXPECT_EQ(color.setColorIndex(300), Acad::eInvalidInput);
    EXPECT_EQ(color.setColorIndex(5), Acad::eOk);
    EXPECT_EQ(database->setCecolor(color), Acad::eOk);
    EXPECT_EQ(textVariable("CECOLOR"), u"5");
    EXPECT_EQ(database->cecolor().colorIndex(), 5);
    const AcDbObjectId locked = drawing().idOf(drawing().findSymbol("LAYER", u"locked"));
    EXPECT_EQ(database->setClayer(locked), Acad::eOk);
    EXPECT_EQ(textVariable("CLAYER"), u"Locked");
    EXPECT_EQ(database->clayer(), locked);
    EXPECT_EQ(database->setClayer({}), Acad::eNullObjectId);
    EXPECT_EQ(database->setClayer(drawing().idOf(drawing().modelSpace())),
              Acad::eNotThatKindOfClass);
    Tags& tags = drawing().changeTags(drawing().findSymbol("LAYER", u"0"));
    tags[findTag(tags, 70)] = Tag(70, int64_t{1});
    const AcDbObjectId frozen = drawing().idOf(drawing().findSymbol("LAYER", u"0"));
    EXPECT_EQ(database->setClayer(frozen), Acad::eInvalidInput);
    AcDbDatabase none(false);
    EXPECT_EQ(none.setCecolor(color), Acad::eNoDatabase);
    EXPECT_TRUE(none.clayer().isNull());
    EXPECT_EQ(none.ucsxdir().x, 1.0);
}

}  // namespace
