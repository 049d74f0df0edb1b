/// The drawing in the editor and its settings. No coordinate service is there, so points that are
/// read stay those of the UCS.
#include <functional>

#include "host/drawing.h"
#include "host/testing.h"
#include "host/variables.h"
#include "printed_test.h"
#include "temp_folder.h"

namespace {

using test::narrow;
using test::wide;

class Environment : public test::PrintedTest {
  protected:
    void SetUp() override {
        PrintedTest::SetUp();
        host::newDrawing();
        records_ = kz_Record_count();
    }
    void TearDown() override {
        host::testing::clearFault();
        EXPECT_EQ(kz_Record_count(), records_);
        EXPECT_EQ(host::openObjectCount(), 0) << "objects were left open";
        EXPECT_EQ(host::selectionSetCount(), 0);
        host::setScreenSize(1920, 1080);
        host::presetVariable("CPROFILE", u"");
        host::closeDrawing();
        PrintedTest::TearDown();
    }

    static void set(const std::string& variable, const std::string& value) {
        eval("(setvar \"" + variable + "\" " + value + ")");
    }
    static std::string get(const std::string& variable) {
        return eval("(getvar \"" + variable + "\")");
    }
    /// Value of a function while a variable can't be read.
    template <class Function>
    static auto without(Function function) {
        host::testing::failCall("acedGetVar", 1, RTERROR);
        const auto value = function();
        host::testing::clearFault();
        return value;
    }
    /// What a function writes into its buffer of 256 or 512 characters; "-" when it gives 0 and
    /// leaves the buffer as it was.
    static std::string textOf(const std::function<int(kz_Char*)>& function) {
        kz_Char text[513];
        std::fill(text, text + 512, u'#');
        text[512] = 0;
        const int status = function(text);
        if (status == 0 && text[0] == '#' && text[511] == '#') return "-";
        EXPECT_EQ(status, 1);
        return narrow(text);
    }
    static std::string shown(double value, int units, int precision, int expected_ok = 1) {
        int ok = -1;
        std::string text = narrow(kz_CAD_strFromDouble(value, units, precision, &ok));
        EXPECT_EQ(ok, expected_ok) << text;
        return text;
    }
    static std::string translated(const kz_Char* color) {
        kz_Char number[256] = KZ_T("untouched");
        kz_CAD_translateColor(number, color);
        return narrow(number);
    }
    static std::string layerGroups(const std::string& name) {
        return eval("(mapcar '(lambda (c) (cdr (assoc c (tblsearch \"LAYER\" \"" + name +
                    "\")))) '(70 62 6))");
    }

    TempFolder folder_;
    int64_t records_ = 0;
};

// --- settings ------------------------------------------------------------------------------------

TEST_F(Environment, SettingsAreReadAsTheirKind) {
    const std::pair<const char*, int (*)(kz_Char*)> texts[] = {
        {"CECOLOR", kz_AcCADEngine_getColor},
        {"CECOLOR", kz_CAD_ColorGet},
        {"CLAYER", kz_AcCADEngine_getCurrLayer},
        {"CLAYER", kz_CAD_LayerGet},
        {"CELTYPE", kz_AcCADEngine_getLineStyle}};
    for (const auto& [variable, function] : texts) {
        EXPECT_EQ('"' + textOf(function) + '"', get(variable));
        EXPECT_EQ(without([read = function] { return textOf(read); }), "-") << variable;
        EXPECT_EQ(function(nullptr), 0);
    }
    double value = 0.0;
    set("LTSCALE", "2.5");
    set("PLINEWID", "0.125");
    EXPECT_EQ(kz_AcCADEngine_getLineStyleScale(&value), 1);
    EXPECT_EQ(value, 2.5);
    EXPECT_EQ(kz_AcCADEngine_getPlineWid(&value), 1);
    EXPECT_EQ(value, 0.125);
    EXPECT_EQ(textOf(kz_AcCADEngine_getLineWeight), "0.125000");
    for (const auto function : {kz_AcCADEngine_getLineStyleScale, kz_AcCADEngine_getPlineWid}) {
        EXPECT_EQ(function(nullptr), 0);
        EXPECT_EQ(without([&] { return function(&value); }), 0);
    }
    EXPECT_EQ(kz_AcCADEngine_getLineWeight(nullptr), 0);
    EXPECT_EQ(without([] { return textOf(kz_AcCADEngine_getLineWeight); }), "-");
    EXPECT_EQ(value, 0.125);
}

TEST_F(Environment, NumbersFallBackWhereAVariableGivesNothing) {
    set("OSMODE", "35");
    set("ORTHOMODE", "1");
    set("DIMZIN", "3");
    EXPECT_EQ(kz_CAD_getObjectSnapMode(), 35);
    EXPECT_EQ(kz_CAD_getOrthoMode(), 1);
    EXPECT_EQ(kz_CAD_getTileMode(), 1);
    EXPECT_EQ(kz_CAD_getCurrViewPort(), 2);
    EXPECT_EQ(kz_CAD_isDrawingTitled(), 0);
    EXPECT_EQ(kz_CAD_getFeetInchSuppression(), 3);
    for (const auto zero : {kz_CAD_getObjectSnapMode, kz_CAD_getOrthoMode, kz_CAD_getTileMode,
                            kz_CAD_getFeetInchSuppression, kz_CAD_getUnitsPrec}) {
        EXPECT_EQ(without(zero), 0);
    }
    EXPECT_EQ(without(kz_CAD_getCurrViewPort), 1);
    EXPECT_EQ(without(kz_CAD_isDrawingTitled), 1);
    EXPECT_EQ(without(kz_CAD_getUnits), 2);
    EXPECT_EQ(kz_CAD_setObjectSnapMode(5), 1);
    EXPECT_EQ(get("OSMODE"), "5");
    EXPECT_EQ(kz_CAD_setObjectSnapMode(-1), 0);
    EXPECT_EQ(kz_CAD_setObjectSnapMode(0x10000), 0);
    EXPECT_EQ(kz_CAD_setTileMode(0), 1);
    EXPECT_EQ(kz_CAD_getTileMode(), 0);
}

TEST_F(Environment, SpacesAreSwitchedOnlyWhenTheyDiffer) {
    EXPECT_EQ(kz_CAD_inModelSpace(), 1);
    EXPECT_EQ(kz_CAD_setModelSpace(), 1);
    EXPECT_EQ(get("TILEMODE"), "1");
    EXPECT_EQ(kz_CAD_setPaperSpace(), 1);
    EXPECT_EQ(kz_CAD_inPaperSpace(), 1);
    EXPECT_EQ(kz_CAD_inModelSpace(), 0);
    printed();
    EXPECT_EQ(kz_CAD_setPaperSpace(), 1);
    EXPECT_EQ(printed(), "");  // no command
    // A layout without a viewport leads back to the model's own space.
    EXPECT_EQ(kz_CAD_setModelSpace(), 1);
    EXPECT_EQ(get("TILEMODE"), "1");
    // With one there is a model space in the layout.
    set("TILEMODE", "0");
    eval(
        "(entmakex '((0 . \"VIEWPORT\") (100 . \"AcDbEntity\") (67 . 1) (100 . \"AcDbViewport\") "
        "(10 5.0 5.0 0.0) (40 . 10.0) (41 . 10.0) (68 . 2) (69 . 2) (12 0.0 0.0) (45 . 10.0)))");
    EXPECT_EQ(kz_CAD_setModelSpace(), 1);
    EXPECT_EQ(get("TILEMODE") + get("CVPORT"), "02");
    EXPECT_EQ(kz_CAD_inModelSpace(), 1);
    EXPECT_EQ(kz_CAD_setPaperSpace(), 1);
    EXPECT_EQ(kz_CAD_inPaperSpace(), 1);
}

TEST_F(Environment, TheProfileIsTheSuitesWhenItsNameIsInIt) {
    EXPECT_EQ(kz_CAD_IsQuillmontPipingProfile(), 0);
    host::presetVariable("CPROFILE", u"My Quillmont_Piping 2");
    EXPECT_EQ(kz_CAD_IsQuillmontPipingProfile(), 1);
    host::presetVariable("CPROFILE", u"quillmont_piping");
    EXPECT_EQ(kz_CAD_IsQuillmontPipingProfile(), 0);
    EXPECT_EQ(kz_CAD_isHlrAvailable(), 1);
    EXPECT_EQ(kz_CAD_propertiesLoad() + kz_CAD_propertiesUnload(), 0);
}

// --- colours -------------------------------------------------------------------------------------

TEST_F(Environment, ColourNamesHaveNumbersAndOtherTextsStay) {
    EXPECT_EQ(translated(KZ_T("Red")), "1");
    EXPECT_EQ(translated(KZ_T("BYLAYER")), "256");
    EXPECT_EQ(translated(KZ_T("17")), "17");
    EXPECT_EQ(translated(KZ_T("Mauve")), "Mauve");
    EXPECT_EQ(translated(KZ_T("")), "");
    EXPECT_EQ(translated(nullptr), "untouched");
    kz_Char same[256] = KZ_T("cyan");
    kz_CAD_translateColor(same, same);
    EXPECT_EQ(narrow(same), "4");
    EXPECT_EQ(translated(std::u16string(300, u'c').c_str()).size(), 255U);
    for (const int numbers : {0, 1}) {
        kz_StrList* list = kz_CAD_getStandardColors(numbers);
        EXPECT_EQ(kz_StrList_length(list), 11);
        EXPECT_EQ(narrow(kz_StrList_getNth(list, 0)), numbers ? "0" : "BYBLOCK");
        EXPECT_EQ(narrow(kz_StrList_getNth(list, 10)), numbers ? "256" : "BYLAYER");
        kz_StrList_destroy(list);
    }
    for (size_t nth = 1; nth < 5; ++nth) {
        kz_Malloc_failFrom(nth);
        EXPECT_EQ(kz_CAD_getStandardColors(1), nullptr);
    }
    kz_Malloc_failFrom(0);
}

TEST_F(Environment, AnIndexIsOfANumberByLayerOrByBlock) {
    const std::pair<const kz_Char*, int> cases[] = {
        {KZ_T("ByLayer"), 256}, {KZ_T("byblock"), 0},
        {KZ_T("3"), 3},         {KZ_T(" 12x"), 12},
        {KZ_T("RED"), 0},       {KZ_T("Mauve"), 0},
        {KZ_T(""), 0},          {KZ_T("use_cadengine_default"), 256}};
    for (const auto& [text, index] : cases) {
        EXPECT_EQ(kz_AcCAD_xlatedColorToACADColorIndex(text), index) << narrow(text);
        EXPECT_EQ(kz_AsAcDbColorIndex(text), index) << narrow(text);
    }
    set("CECOLOR", "\"5\"");
    EXPECT_EQ(kz_AcCAD_xlatedColorToACADColorIndex(KZ_CAD_DEFAULT), 5);
    EXPECT_EQ(without([] { return kz_AsAcDbColorIndex(KZ_CAD_DEFAULT); }), 0);
    traceAt(1);
    EXPECT_EQ(kz_AcCAD_xlatedColorToACADColorIndex(nullptr), 0);
    EXPECT_NE(traced().find("KZ_Assertion failed"), std::string::npos);
}

TEST_F(Environment, TheCurrentColourTakesNamesAndNumbers) {
    const std::pair<const kz_Char*, const char*> cases[] = {{KZ_T("red"), "1"},
                                                            {KZ_T("bylayer"), "BYLAYER"},
                                                            {KZ_T("0"), "BYBLOCK"},
                                                            {KZ_T("77"), "77"}};
    for (const auto& [text, color] : cases) {
        EXPECT_EQ(kz_CAD_ColorSet(text), 1);
        EXPECT_EQ(textOf(kz_CAD_ColorGet), color);
    }
    EXPECT_EQ(kz_CAD_ColorSet(KZ_CAD_DEFAULT), 1);
    for (const kz_Char* none : {KZ_T("257"), KZ_T("-1"), KZ_T("65537"), KZ_T("99999999999"),
                                static_cast<const kz_Char*>(nullptr)}) {
        EXPECT_EQ(kz_CAD_ColorSet(none), 0);
    }
    EXPECT_EQ(textOf(kz_CAD_ColorGet), "77");
    EXPECT_EQ(kz_CAD_ColorSet(KZ_T("Mauve")), 1);
    EXPECT_EQ(textOf(kz_CAD_ColorGet), "BYBLOCK");
}

// --- layers --------------------------------------------------------------------------------------

TEST_F(Environment, ALayerIsMadeOnceAndMadeCurrent) {
    EXPECT_EQ(kz_CAD_LayerExists(KZ_T("Pipes")), 0);
    EXPECT_EQ(kz_CAD_LayerCreate(KZ_T("Pipes")), 1);
    EXPECT_EQ(kz_CAD_LayerExists(KZ_T("PIPES")), 1);
    EXPECT_EQ(layerGroups("Pipes"), "(0 7 \"Continuous\")");
    traceAt(1);
    EXPECT_EQ(kz_CAD_LayerCreate(KZ_T("pipes")), 0);
    EXPECT_NE(traced().find("KZ_Assertion failed"), std::string::npos);
    EXPECT_EQ(kz_CAD_LayerCreate(KZ_T("a*b")), 0);
    EXPECT_NE(traced().find("KZ_Assertion failed"), std::string::npos);
    for (const kz_Char* none : {KZ_T(""), static_cast<const kz_Char*>(nullptr)}) {
        EXPECT_EQ(kz_CAD_LayerExists(none) + kz_CAD_LayerCreate(none) + kz_CAD_LayerSet(none), 0);
    }
    EXPECT_EQ(kz_CAD_LayerSet(KZ_T("PIPES")), 1);
    EXPECT_EQ(textOf(kz_CAD_LayerGet), "Pipes");
    EXPECT_EQ(kz_CAD_LayerSet(KZ_T("Valves")), 0);
    EXPECT_EQ(textOf(kz_CAD_LayerGet), "Pipes");
    eval("(entdel (tblobjname \"LTYPE\" \"Continuous\"))");
    kz_CADDwgId closed{};
    EXPECT_EQ(kz_CAD_createLayer(&closed, KZ_T("More")), 0);
    EXPECT_EQ(kz_CAD_setLayer(&closed, KZ_T("Pipes")), 0);
    host::closeDrawing();
    EXPECT_EQ(kz_CAD_LayerCreate(KZ_T("More")) + kz_CAD_LayerSet(KZ_T("0")), 0);
    EXPECT_EQ(kz_CAD_ColorSet(KZ_T("1")), 0);
}

TEST_F(Environment, ALayerNeedsItsLineType) {
    std::string error;
    const std::string bare =
        "  0\nSECTION\n  2\nHEADER\n  9\n$ACADVER\n  1\nAC1032\n  0\nENDSEC\n  0\nEOF\n";
    ASSERT_TRUE(host::openDrawing(folder_.write("bare.dxf", bare), error)) << error;
    EXPECT_EQ(kz_CAD_LayerCreate(KZ_T("Pipes")), 0);
    EXPECT_EQ(kz_CAD_LayerExists(KZ_T("Pipes")), 0);
}

TEST_F(Environment, LayersTellTheirState) {
    kz_CAD_LayerCreate(KZ_T("Pipes"));
    const auto state = [] {
        return std::to_string(kz_CAD_LayerIsFrozen(KZ_T("pipes"))) +
               std::to_string(kz_CAD_LayerIsLocked(KZ_T("pipes"))) +
               std::to_string(kz_CAD_LayerIsOff(KZ_T("pipes"))) + " " +
               std::to_string(kz_AcCAD_getLayerFlags(KZ_T("pipes")));
    };
    const auto change = [](const std::string& from, const std::string& to) {
        eval("(entmod (subst '(" + to + ") '(" + from +
             ") (entget (tblobjname \"LAYER\" \"Pipes\"))))");
    };
    EXPECT_EQ(state(), "000 0");
    change("70 . 0", "70 . 1");
    EXPECT_EQ(state(), "100 1");
    change("70 . 1", "70 . 4");
    change("62 . 7", "62 . -7");
    EXPECT_EQ(state(), "011 4");
    for (const kz_Char* none : {KZ_T(""), KZ_T("Valves"), static_cast<const kz_Char*>(nullptr)}) {
        EXPECT_EQ(kz_CAD_LayerIsFrozen(none) + kz_CAD_LayerIsLocked(none) +
                      kz_CAD_LayerIsOff(none) + kz_AcCAD_getLayerFlags(none),
                  0);
    }
}

TEST_F(Environment, ALayerTakesOnlyAColourOfItsOwn) {
    kz_CAD_LayerCreate(KZ_T("Pipes"));
    EXPECT_EQ(kz_CAD_LayerSetColor(nullptr, KZ_T("PIPES"), KZ_T("Red")), 1);
    EXPECT_EQ(layerGroups("Pipes"), "(0 1 \"Continuous\")");
    for (const kz_Char* none : {KZ_T("BYLAYER"), KZ_T("BYBLOCK"), KZ_T("256"), KZ_T("0"),
                                KZ_T("Mauve"), KZ_T(""), static_cast<const kz_Char*>(nullptr)}) {
        EXPECT_EQ(kz_CAD_LayerSetColor(nullptr, KZ_T("Pipes"), none), 0);
    }
    EXPECT_EQ(kz_CAD_LayerSetColor(nullptr, KZ_T("Valves"), KZ_T("1")), 0);
    EXPECT_EQ(kz_CAD_LayerSetColor(nullptr, nullptr, KZ_T("1")), 0);
    EXPECT_EQ(kz_CAD_LayerSetColor(nullptr, KZ_T("Pipes"), KZ_T("255")), 1);
    EXPECT_EQ(layerGroups("Pipes"), "(0 255 \"Continuous\")");
}

TEST_F(Environment, LayerNamesCompareWithAndWithoutTheirReference) {
    EXPECT_EQ(kz_CAD_LayerIsEqual(KZ_T("PLANT|Pipes"), KZ_T("pipes"), 0, 1), 1);
    EXPECT_EQ(kz_CAD_LayerIsEqual(KZ_T("PLANT|Pipes"), KZ_T("pipes"), 0, 0), 0);
    EXPECT_EQ(kz_CAD_LayerIsEqual(KZ_T("A|B|Pipes"), KZ_T("C|PIPES"), 0, 1), 1);
    EXPECT_EQ(kz_CAD_LayerIsEqual(KZ_T("Pipes"), KZ_T("P*"), 1, 0), 1);
    EXPECT_EQ(kz_CAD_LayerIsEqual(KZ_T("P*"), KZ_T("Pipes"), 1, 0), 0);
    EXPECT_EQ(kz_CAD_LayerIsEqual(KZ_T("PLANT|Pipes"), KZ_T("P*s"), 1, 1), 1);
    EXPECT_EQ(kz_CAD_LayerIsEqual(KZ_T("Pipes"), KZ_T("P*"), 0, 0), 0);
    EXPECT_EQ(kz_CAD_LayerIsEqual(nullptr, nullptr, 0, 0), 0);
    EXPECT_EQ(kz_CAD_LayerIsEqual(KZ_T("A"), nullptr, 1, 1), 0);
}

TEST_F(Environment, NamesAreRepaired) {
    const auto fixed = [](const kz_Char* text, kz_Char replacement, int limit) {
        kz_Char out[20] = KZ_T("###############");
        EXPECT_EQ(kz_CAD_fixLayerName(out, text, replacement, limit), 1);
        return narrow(out);
    };
    EXPECT_EQ(fixed(KZ_T("Pump 7/a$-_"), '_', 15), "Pump_7_a$-_");
    EXPECT_EQ(fixed(KZ_T("Pump 7/a"), 0, 15), "Pump7a");
    EXPECT_EQ(fixed(KZ_T("Größe*"), '#', 15), narrow(u"Größe#"));
    EXPECT_EQ(fixed(KZ_T("Pump 7"), '_', 5), "Pump_");
    EXPECT_EQ(fixed(KZ_T("Pump"), '_', 0) + fixed(KZ_T("Pump"), '_', -1), "");
    kz_Char same[] = KZ_T("a b");
    EXPECT_EQ(kz_CAD_fixLayerName(same, same, 0, 3), 1);
    EXPECT_EQ(narrow(same), "ab");
    EXPECT_EQ(
        kz_CAD_fixLayerName(nullptr, KZ_T("a"), 0, 3) + kz_CAD_fixLayerName(same, nullptr, 0, 3),
        0);

    const auto valid = [](const kz_Char* name) {
        return narrow(kz_CAD_validateSymbolName(name, 0));
    };
    EXPECT_EQ(valid(KZ_T("  Pump \t 7 ")), "Pump 7");
    EXPECT_EQ(valid(KZ_T("Pump")), "Pump");
    // A new code where nothing helps.
    const std::u16string names[] = {u"a*b", u"", u"   ", std::u16string(300, u'n')};
    for (const std::u16string& name : names) {
        EXPECT_EQ(kz_CAD_isValidSymbolName(wide(valid(name.c_str())).c_str(), 0), 1);
        EXPECT_EQ(valid(name.c_str()).find(' '), std::string::npos);
        EXPECT_LT(valid(name.c_str()).size(), 12U);
    }
    EXPECT_EQ(valid(nullptr).empty(), false);
    EXPECT_EQ(kz_CAD_isValidSymbolName(KZ_T("A|B"), 0), 0);
    EXPECT_EQ(kz_CAD_isValidSymbolName(KZ_T("A|B"), 1), 1);
    EXPECT_EQ(kz_CAD_isValidSymbolName(KZ_T(""), 1) + kz_CAD_isValidSymbolName(nullptr, 1), 0);
}

// --- names ---------------------------------------------------------------------------------------

TEST_F(Environment, TheDrawingsNameIsFolderFileAndDwg) {
    std::string error;
    ASSERT_TRUE(host::saveDrawing(folder_.file("area.1.dxf"), error)) << error;
    ASSERT_TRUE(host::openDrawing(folder_.file("area.1.dxf"), error)) << error;
    const std::string name = folder_.file("area.1.dwg");
    EXPECT_EQ(textOf(kz_CAD_getDrawingName), name);
    EXPECT_EQ(kz_CAD_getDrawingName(nullptr), 0);
    const auto is_current = [](const std::string& text, int ignore) {
        return kz_CAD_isCurrentDrawing(wide(text).c_str(), ignore);
    };
    std::string upper = name;
    for (char& c : upper)
        c = static_cast<char>(std::toupper(c));
    EXPECT_EQ(is_current(name, 0), 1);
    EXPECT_EQ(is_current(upper, 0), 1);
    EXPECT_EQ(is_current(folder_.file("area.1.dxf"), 0), 0);
    EXPECT_EQ(is_current(folder_.file("area.1.dxf"), 1), 1);
    EXPECT_EQ(is_current(folder_.file("area.1"), 0), 0);
    EXPECT_EQ(is_current("area.1.dwg", 0), 0);
    EXPECT_EQ(is_current("area.1.dwg", 1), 0);
    EXPECT_EQ(kz_CAD_isCurrentDrawing(nullptr, 0), 0);
    EXPECT_EQ('"' + textOf(kz_CAD_getSaveName) + '"', get("SAVENAME"));
    EXPECT_EQ('"' + textOf(kz_CAD_getTemporaryPathName) + '"', get("TEMPPREFIX"));
    EXPECT_EQ('"' + textOf(kz_CAD_getVersion) + '"', get("ACADVER"));
    EXPECT_EQ('"' + textOf(kz_CAD_getTVersion) + '"', get("_VERNUM"));
}

TEST_F(Environment, AVariableThatCannotBeReadIsToldAndTraced) {
    const std::pair<const char*, int (*)(kz_Char*)> readers[] = {
        {"SAVENAME", kz_CAD_getSaveName},
        {"TEMPPREFIX", kz_CAD_getTemporaryPathName},
        {"ACADVER", kz_CAD_getVersion},
        {"_VERNUM", kz_CAD_getTVersion}};
    traceAt(1, 0x1000);
    for (const auto& [variable, reader] : readers) {
        const std::string told = "acedGetVar(\"" + std::string(variable) + "\")";
        EXPECT_EQ(without([read = reader] { return textOf(read); }), "-");
        const std::string text = printed();
        EXPECT_NE(text.find(told), std::string::npos) << text;
        EXPECT_NE(traced().find(text), std::string::npos) << text;
    }
    // Without its folder the file's name is good still; without its file there is none.
    EXPECT_EQ(without([] { return textOf(kz_CAD_getDrawingName); }), "Drawing1.dwg");
    EXPECT_NE(printed().find("acedGetVar(\"DWGPREFIX\")"), std::string::npos);
    host::testing::failCall("acedGetVar", 2, RTERROR);
    EXPECT_EQ(textOf(kz_CAD_getDrawingName), "-");
    EXPECT_NE(printed().find("acedGetVar(\"DWGNAME\")"), std::string::npos);
    host::testing::failCall("acedGetVar", 2, RTERROR);
    EXPECT_EQ(kz_CAD_isCurrentDrawing(KZ_T("Drawing1.dwg"), 0), 0);
}

TEST_F(Environment, AnUnnamedDrawingIsKnownByItsFile) {
    for (const kz_Char* name : {KZ_T("UNNAMED"), KZ_T("unnamed.dwg"),
                                KZ_T("C:\\plant\\Unnamed.dxf"), KZ_T("/plant/unnamed.x")}) {
        EXPECT_EQ(kz_CAD_isUnnamedDwg(name), 1) << narrow(name);
    }
    const std::u16string deep(600, u'/');
    EXPECT_EQ(kz_CAD_isUnnamedDwg((deep + u"UNNAMED.dwg").c_str()), 1);
    for (const kz_Char* name : {KZ_T(""), KZ_T("unnamed/area.dwg"), KZ_T("unnamed2.dwg"),
                                static_cast<const kz_Char*>(nullptr)}) {
        EXPECT_EQ(kz_CAD_isUnnamedDwg(name), 0);
    }
}

// --- units ---------------------------------------------------------------------------------------

TEST_F(Environment, DistancesAsTexts) {
    EXPECT_EQ(shown(150.25, 2, 3), "150.250");
    EXPECT_EQ(shown(150.25, 3, 2), "12'-6.25\"");
    EXPECT_EQ(shown(-30.0, 3, 2), "-2'-6.00\"");
    EXPECT_EQ(shown(-6.5, 3, 1), "-0'-6.5\"");
    EXPECT_EQ(shown(0.0, 3, 0), "0'-0\"");
    EXPECT_EQ(shown(1e12, 3, 0), "83333333333'-4\"");
    EXPECT_EQ(shown(18.5, 4, 2), "1'-6 1/2\"");
    EXPECT_EQ(shown(18.5, 5, 2), "18 1/2");
    EXPECT_EQ(shown(1.25, 1, 2), "1.250000");
    EXPECT_EQ(shown(1.25, 9, 2), "1.250000");
    // What does not fit has no text.
    EXPECT_EQ(shown(1e60, 2, 2, 0), "");
    EXPECT_EQ(shown(1.0, 2, 60, 0), "");
    EXPECT_EQ(shown(1.0, 2, 37), "1." + std::string(37, '0'));
    EXPECT_EQ(shown(1.0, 2, 38, 0), "");
    host::testing::failCall("acdbRToS", 1, RTERROR);
    EXPECT_EQ(shown(1.0, 4, 2, 0), "");
    host::testing::clearFault();
    EXPECT_EQ(narrow(kz_CAD_strFromDouble(1.0, 2, 1, nullptr)), "1.0");
}

TEST_F(Environment, TheDrawingSaysUnitsAndPrecisionOfDistances) {
    set("LUPREC", "3");
    for (const auto& [lunits, units, default_text, fine_text] :
         {std::tuple{"1", 2, "30.000", "30.000"},
          {"2", 2, "30.000", "30.000"},
          {"3", 3, "2'-6.000\"", "2'-6.000000\""},
          {"5", 5, "30", "30"}}) {
        set("LUNITS", lunits);
        EXPECT_EQ(kz_CAD_getUnits(), units);
        EXPECT_EQ(shown(30.0, 0, -1), default_text);
        EXPECT_EQ(shown(30.0, 0, -2), fine_text);
    }
    EXPECT_EQ(kz_CAD_getUnitsPrec(), 3);
    set("LUNITS", "4");
    EXPECT_EQ(shown(30.0, 2, -2), "30.000000");
    EXPECT_EQ(shown(30.0, 2, -1), "30.000");
    set("LUNITS", "2");
    EXPECT_EQ(shown(30.0, 3, -2), "2'-6.000\"");
}

TEST_F(Environment, TextsAsDistances) {
    int ok = -1;
    EXPECT_EQ(kz_CAD_strToDouble(KZ_T("12'-6.25\""), 3, &ok), 150.25);
    EXPECT_EQ(ok, 1);
    EXPECT_EQ(kz_CAD_strToDouble(KZ_T("-2'-6.00\""), 0, &ok), -30.0);
    EXPECT_EQ(kz_CAD_strToDouble(KZ_T("1.5"), 0, nullptr), 1.5);
    for (const kz_Char* none : {KZ_T(""), KZ_T("x"), static_cast<const kz_Char*>(nullptr)}) {
        ok = -1;
        kz_CAD_strToDouble(none, 0, &ok);
        EXPECT_EQ(ok, 0);
    }
    kz_CAD_strToDouble(KZ_T("1"), 9, &ok);
    EXPECT_EQ(ok, 0);
}

TEST_F(Environment, DirectionsAndTheirTexts) {
    const double right = kz_Cnv_dtor(90.0);
    set("DIMZIN", "0");
    const auto angle = [](double radians, int units, int precision) {
        int ok = -1;
        const std::string text = narrow(kz_CAD_strFromAngle(radians, units, precision, &ok));
        EXPECT_EQ(ok, 1);
        return text;
    };
    EXPECT_EQ(angle(right, 0, 2), "90.00");
    EXPECT_EQ(angle(right, 2, 1), "100.0g");
    EXPECT_EQ(angle(right, 7, 2), "90.00");
    EXPECT_EQ(angle(right / 2, 4, 0), "N 45d E");
    set("AUNITS", "2");
    set("AUPREC", "3");
    EXPECT_EQ(angle(right, -1, -1), "100.000g");
    int ok = -1;
    EXPECT_NEAR(kz_CAD_strToAngle(KZ_T("100"), -1, &ok), right, 1e-12);
    EXPECT_NEAR(kz_CAD_strToAngle(KZ_T("90"), 9, nullptr), right, 1e-12);
    EXPECT_EQ(ok, 1);
    kz_CAD_strToAngle(KZ_T("x"), -1, &ok);
    EXPECT_EQ(ok, 0);
    host::testing::failCall("acdbAngToS", 1, RTERROR);
    EXPECT_EQ(narrow(kz_CAD_strFromAngle(right, 0, 2, &ok)), "");
    EXPECT_EQ(ok, 0);
}

}  // namespace
