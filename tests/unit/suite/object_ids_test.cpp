/// The library's side of drawing ids, with the service there: which of them it takes, the objects
/// that it finds through them, and what their twins trace and put on the error list. The values of
/// the twins stand in tests/lisp/objid.lsp.
#include <filesystem>
#include <utility>

#include "host/output.h"
#include "kz/kz_zaglaid.h"
#include "suite_test.h"

namespace {

std::string traced_lines;

void collect(const kz_Char* message, const char* /*source*/, int /*line*/) {
    traced_lines += kz::toUtf8(message) + '\n';
}

class DrawingIdUse : public test::SuiteTest {
  protected:
    void SetUp() override {
        SuiteTest::SetUp();
        std::string error;
        ASSERT_TRUE(host::loadModule(KZ_BUILD_DIR "/libkz_zaglaid.so", error)) << error;
        host::setSink(host::Channel::Message,
                      [this](std::u16string_view text) { printed_ += kz::toUtf8(text); });
        kz_Diag_setHandler(collect);
        kz_Diag_setOutput(KZ_DIAG_OUTPUT_HANDLER, KZ_T(""));
    }
    void TearDown() override {
        kz_Diag_disable();
        kz_Error_clearAll();
        host::resetLisp();
        host::setSink(host::Channel::Message, {});
        SuiteTest::TearDown();
    }

    /// What was traced since the last call.
    static std::string traced() { return std::exchange(traced_lines, {}); }
    /// The errors since the last call, newest first.
    std::string errors() {
        printed_.clear();
        kz_Error_outputAllToStdErr();
        kz_Error_clearAll();
        return std::exchange(printed_, {});
    }
    static kz_CADDwgId* passed(const ads_name name) { return kz_CADDwgId_fromADSName(name, 1); }
    /// Sets a Lisp variable to the id of a new use of a drawing.
    static kz_CADDwgId* bind(const std::string& variable, const std::string& file) {
        lisp("(setq " + variable + " (kz_CADDwgId_create \"" + file + "\"))");
        kz_CADDwgId* const id = drawing(file);
        SUITE(kz_CADDwgId_destroy)(id);
        return id;
    }
    static std::string handleOf(const kz_CADObjId* id) {
        const kz_Char* text = kz_Ename_toHandle(id->ename);
        return text != nullptr ? kz::toUtf8(text) : "";
    }
    /// Handles of the objects of a list, which is destroyed.
    static std::string take(kz_CADObjIdList* list) {
        std::string text;
        for (; kz_CADObjIdList_eol(list) == 0; kz_CADObjIdList_next(list))
            text += handleOf(kz_CADObjIdList_getCurr(list)) + ' ';
        kz_CADObjIdList_destroy(list);
        return text;
    }
    static std::string lastHandle() { return lisp("(cdr (assoc 5 (entget (entlast))))"); }

  private:
    std::string printed_;
};

// --- which pointers are taken --------------------------------------------------------------------

TEST_F(DrawingIdUse, ALivingRecordComesBackFromItsName) {
    kz_CADDwgId* const id = drawing("");
    ads_name name = {};
    kz_CADDwgId_toADSName(name, id);
    EXPECT_EQ(passed(name), id);
    EXPECT_EQ(kz_AcCADDwgId_getAcDbDatabase(id), editor());
    for (const size_t at : {0, 1}) {
        std::swap(id->signature[at], id->signature[2]);
        EXPECT_EQ(passed(name), nullptr);
        EXPECT_EQ(kz_CADDwgId_fromADSName(name, 0), id);
        std::swap(id->signature[at], id->signature[2]);
    }
    // Two characters of the signature count.
    id->signature[2] = id->signature[3] = 0;
    EXPECT_EQ(passed(name), id);
}

TEST_F(DrawingIdUse, NoOtherWordIsLookedBehind) {
    line("A");
    kz_CADObjId entity = {};
    ASSERT_EQ(acdbEntLast(entity.ename), RTNORM);
    EXPECT_EQ(passed(entity.ename), nullptr);
    for (const int64_t word : {int64_t{0}, int64_t{1}, int64_t{8}, int64_t{-1}, INT64_MIN}) {
        const ads_name name = {word, 0};
        EXPECT_EQ(passed(name), nullptr) << word;
    }
    kz_CADDwgId* const id = drawing("");
    ads_name name = {};
    kz_CADDwgId_toADSName(name, id);
    ++name[0];
    EXPECT_EQ(passed(name), nullptr);
    --name[0];
    SUITE(kz_CADDwgId_destroy)(id);
    EXPECT_EQ(passed(name), nullptr);
}

TEST_F(DrawingIdUse, AnIdOfAClosedDrawingHasNoObjectsButCanBeDestroyed) {
    line("A");
    saved("part.dxf");
    open("part.dxf");
    const std::string handle = lastHandle();
    const kz_CADDwgId* const id = bind("id", folder_.file("part.dxf"));
    open("part.dxf");
    EXPECT_EQ(lastHandle(), handle);
    ads_name name = {};
    kz_CADDwgId_toADSName(name, id);
    EXPECT_EQ(passed(name), id);
    EXPECT_EQ(lisp("(kz_CADDwgId_isValid id)"), "nil");
    EXPECT_EQ(lisp("(kz_CADDwgId_save id)"), "nil");
    EXPECT_EQ(lisp("(kz_CADDwgId_getRefCount id)"), "1");
    EXPECT_EQ(lisp("(kz_CADDwgId_getName id)"), '"' + folder_.file("part.dxf") + '"');
    EXPECT_EQ(lisp("(kz_CADObjId_createFromDwgId " + handle + " id)"), "nil");
    EXPECT_EQ(lisp("(kz_Ename_fromHandleInDwgId " + handle + " id)"), "nil");
    EXPECT_EQ(errors(), "");
    lisp("(kz_CADDwgId_destroy id)");
    EXPECT_EQ(passed(name), nullptr);
    EXPECT_EQ(errors(), "");
}

TEST_F(DrawingIdUse, ANameOfAnyLengthIsGiven) {
    std::filesystem::path deep = folder_.file("deep");
    for (int level = 0; level < 4; ++level)
        deep /= std::string(200, static_cast<char>('a' + level));
    std::filesystem::create_directories(deep);
    const std::string path = (deep / "long.dxf").string();
    std::string error;
    ASSERT_TRUE(host::saveDrawing(path, error)) << error;
    ASSERT_TRUE(host::openDrawing(path, error)) << error;
    EXPECT_EQ(lisp("(kz_CADDwgId_getName (kz_CADDwgId_create))"), '"' + path + '"');
}

// --- objects -------------------------------------------------------------------------------------

TEST_F(DrawingIdUse, ObjectsAreFoundInADrawingByName) {
    line("PIPES", 1);
    saved("part.dxf");
    attach("PART", "part.dxf");
    line("PIPES", 3);
    const std::string pipe = lastHandle();
    line("OTHER", 1);
    const std::string other = lastHandle();
    const auto listed = [](const std::string& handle) {
        return handle.substr(1, handle.size() - 2) + ' ';
    };
    saved("host.dxf");
    open("host.dxf");
    EXPECT_EQ(take(kz_CADObjIdList_fromLayer(nullptr, KZ_T("pipes"))), listed(pipe));
    EXPECT_EQ(take(kz_CADObjIdList_fromColor(KZ_T(""), KZ_T("RED"))), listed(other));
    EXPECT_EQ(kz_CADObjIdList_fromLayer(nullptr, KZ_T("NONE")), nullptr);
    kz_FldList* const wanted = kz_FldList_create(nullptr, 0, nullptr, 0);
    kz_FldList_addCharVal(wanted, KZ_T("LAYER"), KZ_T("PIPES"));
    kz_FldList_addCharVal(wanted, KZ_T("COLOR"), KZ_T("RED"));
    EXPECT_EQ(kz_CADObjIdList_fromAttributes(nullptr, wanted, 0), nullptr);
    EXPECT_EQ(take(kz_CADObjIdList_fromAttributes(nullptr, wanted, 1)),
              listed(pipe) + listed(other));
    // In an attached drawing, which stays open when the id has gone.
    kz_CADObjIdList* const attached = kz_CADObjIdList_fromAttributes(KZ_T("part.dxf"), wanted, 0);
    kz_FldList_destroy(wanted);
    ASSERT_EQ(kz_CADObjIdList_length(attached), 1);
    const AcDbDatabase* const part =
        kz_AcCAD_getAcDbDatabaseFromEname(kz_CADObjIdList_getCurr(attached)->ename);
    EXPECT_EQ(fileOf(part), "part.dxf");
    kz_CADObjIdList_destroy(attached);
    EXPECT_EQ(kz_CADObjIdList_fromLayer(KZ_T("missing.dxf"), KZ_T("PIPES")), nullptr);
    // No use is left behind.
    kz_CADDwgIdList* const known = SUITE(kz_CADDwgIdList_create)(0, 0, 1);
    for (; SUITE(kz_CADDwgIdList_eol)(known) == 0; SUITE(kz_CADDwgIdList_next)(known))
        EXPECT_EQ(SUITE(kz_CADDwgId_getRefCount)(SUITE(kz_CADDwgIdList_getCurr)(known)), 1);
    SUITE(kz_CADDwgIdList_destroy)(known);
}

// --- twins ---------------------------------------------------------------------------------------

/// A twin, the arguments that it must have, and what it traces without them.
struct Twin {
    const char* name;
    int drawings;
    const char* text;
    const char* refusal;
    const char* refused;  ///< its value then
};

constexpr const char* kNoDrawing = ": Invalid or missing drawing id parameter.";
constexpr const char* kNoParameters = ": Invalid or missing parameters.";

const Twin kTwins[] = {
    {"kz_CADDwgId_getName", 1, "", kNoDrawing, "nil"},
    {"kz_CADDwgId_getRefCount", 1, "", kNoDrawing, "0"},
    {"kz_CADDwgId_isAttached", 1, "", kNoDrawing, "nil"},
    {"kz_CADDwgId_isInEditor", 1, "", kNoDrawing, "nil"},
    {"kz_CADDwgId_isValid", 1, "", kNoDrawing, "nil"},
    {"kz_CADDwgId_save", 1, "", kNoDrawing, "nil"},
    {"kz_CADDwgId_isEqual", 2, "", ": Invalid or missing drawing id parameter(s).", "nil"},
    {"kz_CADDwgId_saveAs", 1, " \"/no/such/folder/x.dxf\"", kNoParameters, "nil"},
    {"kz_CADDwgId_destroy", 1, "", ": Drawing id parameter missing.", "nil"},
};

/// The call with an expression for each drawing id.
std::string call(const Twin& twin, const std::string& drawing, int drawings) {
    std::string text = "(" + std::string(twin.name);
    for (int i = 0; i < drawings; ++i)
        text += ' ' + drawing;
    return text + twin.text + ")";
}

TEST_F(DrawingIdUse, AWrongArgumentIsAnErrorAndATrace) {
    const std::string error = "12, Invalid or missing parameter(s)\n";
    line("A");
    kz_Diag_setLevel(2);
    kz_Diag_setCondition(0x1000);
    for (const Twin& twin : kTwins) {
        const std::string name = std::string(twin.name) + "_li";
        const std::string trace = name + twin.refusal + "\n" + name + " exiting...error" + "\n";
        for (const std::string& expression :
             {"(" + std::string(twin.name) + ")", call(twin, "nil", 2), call(twin, "5", 1),
              call(twin, "'(1.0 2.0)", 1)}) {
            EXPECT_EQ(lisp(expression), twin.refused) << expression;
            EXPECT_EQ(traced(), trace) << expression;
            EXPECT_EQ(errors(), error) << expression;
        }
    }
    const std::pair<const char*, const char*> others[] = {
        {"(kz_CADDwgId_create 5)", ": Drawing name parameter missing."},
        {"(kz_CADDwgId_create nil (entlast))", ": Drawing name parameter missing."},
        {"(kz_CADObjId_createFromDwgId 5)", kNoParameters},
        {"(kz_CADObjId_createFromDwgId nil 5)", kNoParameters},
        {"(kz_Ename_fromHandleInDwgId)", kNoParameters},
        {"(kz_Ename_fromHandleInDwgId \"2F\" 5)", kNoParameters},
        {"(kz_CADDwgId_saveAs (kz_CADDwgId_create))", kNoParameters}};
    for (const auto& [expression, refusal] : others) {
        lisp(expression);
        EXPECT_NE(traced().find("_li" + std::string(refusal) + "\n"), std::string::npos)
            << expression;
        EXPECT_EQ(errors(), error) << expression;
    }
}

TEST_F(DrawingIdUse, GoodArgumentsPutNothingOnTheErrorList) {
    kz_Diag_setLevel(2);
    kz_Diag_setCondition(0x1000);
    for (const Twin& twin : kTwins) {
        lisp("(setq id (kz_CADDwgId_create))");
        traced();
        lisp(call(twin, "id", twin.drawings));
        EXPECT_EQ(traced().find(twin.refusal), std::string::npos) << twin.name;
        EXPECT_EQ(errors(), "") << twin.name;
    }
    lisp("(kz_CADObjId_createFromDwgId)");
    lisp("(kz_Ename_fromHandleInDwgId \"FFFF\")");
    lisp("(kz_CADDwgId_create \"missing.dxf\")");
    lisp("(kz_CADDwgId_destroy (kz_CADDwgId_create \"missing.dxf\"))");
    lisp("(kz_CADDwgId_destroyAll)");
    EXPECT_EQ(errors(), "");
}

TEST_F(DrawingIdUse, WhatIsNoDrawingIsAWrongArgumentToo) {
    line("A");
    lisp("(setq gone (kz_CADDwgId_create))");
    lisp("(kz_CADDwgId_destroy gone)");
    for (const char* value : {"(entlast)", "\"2F\"", "\"FFFF\"", "gone"}) {
        for (const Twin& twin : kTwins) {
            const bool passes = std::string(twin.name) == "kz_CADDwgId_destroy";
            lisp(call(twin, value, twin.drawings));
            EXPECT_EQ(errors().empty(), passes) << twin.name << ' ' << value;
        }
    }
}

TEST_F(DrawingIdUse, NoMemoryIsNoDrawingAndNoObject) {
    line("A");
    const std::string handle = lastHandle();
    lisp("(setq id (kz_CADDwgId_create))");
    for (size_t nth = 1; nth < 4; ++nth) {
        for (const std::string& expression : {std::string("(kz_CADDwgId_getName id)"),
                                              "(kz_CADObjId_createFromDwgId " + handle + " id)",
                                              std::string("(kz_CADDwgId_create)")}) {
            const int64_t nodes = host::resbufCount();
            kz_Malloc_failFrom(nth);
            host::evalLisp(kz::toUtf16(expression));
            kz_Malloc_failFrom(0);
            EXPECT_EQ(host::resbufCount(), nodes) << expression;
        }
    }
}

}  // namespace
