/// The trace gate: what speaks at which level and bit, that a silent statement does nothing, and
/// the trace twins. The program stands in front of the formatter of the tools library, for its own
/// calls and the library's, to count how often it is called.
#include "../../../SRC/trace.h"

#include <dlfcn.h>

#include <cstring>
#include <functional>

#include "drawing_test.h"
#include "host/lisp.h"
#include "printed_test.h"
#include "support/temp_folder.h"

namespace {

int formatted = 0;

}  // namespace

int kz_Str_formatArgs(kz_Char* out, size_t size, const kz_Char* format, const kz_FormatArg* args,
                      size_t count) {
    using Function = decltype(kz_Str_formatArgs);
    static const auto next = reinterpret_cast<Function*>(
        dlsym(RTLD_NEXT, "_Z17kz_Str_formatArgsPDsmPKDsPK12kz_FormatArgm"));
    ++formatted;
    return next(out, size, format, args, count);
}

namespace {

constexpr const char* kTraceSource = "tests/trace";

/// What the last statement said, "source: message".
std::string spoken;

void listen(const kz_Char* message, const char* source, int line) {
    EXPECT_GE(line, 0);
    spoken = std::string(source) + ": " + test::narrow(message);
}

class Trace : public test::DrawingTest {
  protected:
    static void listenAt(int16_t level, int32_t mask) {
        traceAt(level, mask);
        kz_Diag_setHandler(listen);
        spoken.clear();
        formatted = 0;
    }
};

TEST_F(Trace, ASilentStatementEvaluatesAndFormatsNothing) {
    int evaluated = 0;
    const auto statement = [&evaluated] { KZ_TRACEF(2, 0x400, KZ_T("%d"), ++evaluated); };
    listenAt(1, -1);
    statement();
    listenAt(2, ~0x400);
    statement();
    listenAt(-1, -1);
    KZ_TRACE(0, 0x400, (++evaluated, KZ_T("text")));
    EXPECT_EQ(evaluated, 0);
    EXPECT_EQ(formatted, 0);
    EXPECT_EQ(spoken, "");
    listenAt(2, 0x400);
    statement();
    EXPECT_EQ(spoken, "tests/trace: 1");
    EXPECT_EQ(formatted, 1);
}

TEST_F(Trace, TheLibraryFormatsNothingWhileSilent) {
    const auto work = [this] {
        kz_FldList* list = kz_FldList_create(KZ_T("SIZE"), KZ_FLD_UNKNOWN, nullptr, 0);
        kz_XData_initFldList(line_, list, KZ_T("APP"));
        resbuf* chain = test::chain("1001:APP 1002:{ 1000:OTHER 1002:}");
        kz_XData_updateFldList(chain, list);
        kz_Rb_printListDiag(chain, 3, 0x400);
        kz_ResBuf_release(chain);
        kz_FldList_destroy(list);
    };
    listenAt(-1, -1);
    work();
    EXPECT_EQ(formatted, 0);
    listenAt(3, ~0x400);
    work();
    EXPECT_EQ(formatted, 0);
    listenAt(3, 0x400);
    work();
    EXPECT_GT(formatted, 3);
}

TEST_F(Trace, AssertionsSpeakFromLevelOneUnderAnyBitAndGoOn) {
    int evaluated = 0;
    const auto statement = [&evaluated](bool holds) { KZ_ASSERTION((++evaluated, holds)); };
    for (const int32_t mask : {1, 0x8000, INT32_MIN}) {
        listenAt(1, mask);
        statement(false);
        EXPECT_EQ(spoken, "tests/trace: KZ_Assertion failed") << mask;
    }
    listenAt(3, 0);
    statement(false);
    listenAt(0, -1);
    statement(false);
    listenAt(3, -1);
    statement(true);
    EXPECT_EQ(spoken, "");
    EXPECT_EQ(evaluated, 6);
}

/// A statement: where it stands, when it speaks, and what makes it do so.
struct Statement {
    const char* text;  ///< source and message
    int16_t level;
    int32_t bit;
    std::function<void()> provoke;
};

TEST_F(Trace, StatementsSpeakFromTheirLevelUnderTheirBit) {
    resbuf* const none = nullptr;
    resbuf* cursor = nullptr;
    const ads_point origin = {};
    ads_point out = {};
    ads_matrix matrix = {};
    kz_Point point = {};
    kz_Vector vector = {};
    kz_TMatrix transform = {};
    ads_name name = {};
    const Statement statements[] = {
        {"SRC/RB: Argument required in kz_Rb_getNextInt.", 0, 0x400,
         [&] {
             int16_t value = 0;
             cursor = none;
             kz_Rb_getNextInt(&value, &cursor, nullptr, 0);
         }},
        {"SRC/RB: Invalid handle passed to kz_Rb_getNextADSName.", 1, 0x400,
         [&] {
             test::Arguments arguments("\"FFFF\"");
             kz_Rb_getNextADSName(name, &arguments.at, nullptr, 0);
         }},
        {"SRC/FLD_LI: Incorrect argument passed to kz_FldList_fromRb.", 0, 0x400,
         [&] {
             cursor = none;
             kz_FldList_fromRb(&cursor, 0);
         }},
        {"SRC/XD: kz_XData_updateFldList - field 'SIZE' not found.", 2, 0x400,
         [&] {
             resbuf* chain = test::chain("1001:APP");
             kz_FldList* list = kz_FldList_create(KZ_T("SIZE"), KZ_FLD_UNKNOWN, nullptr, 0);
             kz_XData_updateFldList(chain, list);
             kz_FldList_destroy(list);
             kz_ResBuf_release(chain);
         }},
        {"SRC/ACAD/xd_rx: Entering kz_XData_modFldList...", 3, 0x400,
         [&] { kz_XData_modFldList(line_, nullptr, KZ_T("APP")); }},
        {"SRC/ACAD/point_rx: Leaving kz_Point_fromADSPoint.", 3, 0x8,
         [&] { kz_Point_fromADSPoint(&point, origin); }},
        {"SRC/ACAD/point_rx: Leaving kz_Point_toADSPoint.", 3, 0x8,
         [&] { kz_Point_toADSPoint(out, &point); }},
        {"SRC/ACAD/mat_rx: Leaving kz_TMatrix_toADSMatrix.", 3, 0x10,
         [&] { kz_TMatrix_toADSMatrix(matrix, &transform); }},
        {"SRC/ACAD/vec_rx: Leaving kz_Vector_fromADSPoint.", 3, 0x20,
         [&] { kz_Vector_fromADSPoint(&vector, origin); }},
        {"SRC/ACAD/vec_rx: Leaving kz_Vector_toADSPoint.", 3, 0x20,
         [&] { kz_Vector_toADSPoint(out, &vector); }},
        {"SRC/kzerror: Entering kz_ErrorEntry_create...", 3, 0x100,
         [&] { kz_Error_submit(kz_ErrorGroupGeneral, 1, nullptr, nullptr); }},
        {"SRC/kzerror: Entering kz_ErrorEntry_destroy...", 3, 0x100,
         [&] {
             const int16_t level = kz_Diag_setLevel(-1);
             kz_Error_submit(kz_ErrorGroupGeneral, 1, nullptr, nullptr);
             kz_Diag_setLevel(level);
             kz_Error_clearAll();
         }},
    };
    for (const Statement& statement : statements) {
        listenAt(statement.level, statement.bit);
        statement.provoke();
        EXPECT_EQ(spoken, statement.text);
        listenAt(static_cast<int16_t>(statement.level - 1), -1);
        statement.provoke();
        EXPECT_NE(spoken, statement.text) << "below its level";
        listenAt(3, ~statement.bit);
        statement.provoke();
        EXPECT_EQ(spoken, "") << statement.text << " under another bit";
    }
    kz_Error_clearAll();
}

/// A name of the trace output as one library exports it.
template <class Function>
Function* exportOf(const char* library, const char* name, Function* /*type*/) {
    void* handle = dlopen(library, RTLD_NOW | RTLD_NOLOAD);
    EXPECT_NE(handle, nullptr) << library;
    void* address = dlsym(handle, name);
    dlclose(handle);
    Dl_info image;
    EXPECT_NE(dladdr(address, &image), 0);
    EXPECT_NE(std::strstr(image.dli_fname, library), nullptr) << name;
    return reinterpret_cast<Function*>(address);
}

TEST_F(Trace, BothLibrariesExportTheOutputAndLeadToOnePlace) {
    const TempFolder folder;
    const std::string path = folder.file("trace");
    std::string wanted;
    for (const char* library : {"libkz_zaglaid.so", "libkz_tls21an.so"}) {
        const auto select = exportOf(library, "kz_Diag_setOutput", &kz_Diag_setOutput);
        const auto put = exportOf(library, "kz_Diag_putOutput", &kz_Diag_putOutput);
        const auto putMsg = exportOf(library, "kz_Diag_putOutputMsg", &kz_Diag_putOutputMsg);
        EXPECT_EQ(select(KZ_DIAG_OUTPUT_FILE, KZ_T("")), 0);
        EXPECT_EQ(select(KZ_DIAG_OUTPUT_APPEND, test::wide(path).c_str()), 1);
        put(3, KZ_T("one and more"), "SRC/RB", 1);
        putMsg(KZ_T("two"), "SRC/RB", 2);
        wanted += "SRC/RB(1): one\nSRC/RB(2): two\n";
        EXPECT_EQ(TempFolder::read(path), wanted) << library;
    }
}

// --- the twins -----------------------------------------------------------------------------------

class DiagTwins : public test::PrintedTest {
  protected:
    static void SetUpTestSuite() { loadTwins(); }
};

TEST_F(DiagTwins, WrongAndMissingArgumentsPrintTheErrorAndTheForm) {
    struct Case {
        const char* expression;
        const char* printed;
    };
    const char* const condition = "\nERROR:  Incorrect arguments\n(kz_Diag_setCondition CondCode)";
    const char* const output =
        "\nERROR:  Incorrect arguments\n(kz_Diag_setOutput OptionCode [filename] )";
    const char* const put =
        "\nERROR:  Incorrect arguments\n(kz_Diag_putOutput   Message  [source_filename] )";
    const Case cases[] = {
        {"(kz_Diag_setCondition nil)", condition},
        {"(kz_Diag_setCondition '(1 2))", condition},
        {"(kz_Diag_setOutput \"2\")", output},
        {"(kz_Diag_setOutput 2.0 \"file\")", output},
        {"(kz_Diag_setOutput nil)", output},
        {"(kz_Diag_setOutput)",
         "\nERROR:  Insufficient arguments\n(kz_Diag_setOutput OptionCode [filename] )"},
        {"(kz_Diag_putOutput 5)", put},
        {"(kz_Diag_putOutput nil \"source\")", put},
        {"(kz_Diag_putOutput)",
         "\nERROR:  Insufficient arguments\n(kz_Diag_putOutput   Message  [source_filename] )"},
        {"(kz_Diag_setOutput 2 5)", ""},
        {"(kz_Diag_setLevel '(1))", ""},
    };
    for (const Case& c : cases) {
        traceAt(-1, 0x400);
        const std::string value = eval(c.expression);
        EXPECT_EQ(printed(), c.printed) << c.expression;
        if (std::strstr(c.expression, "setLevel") != nullptr) continue;
        EXPECT_TRUE(value == "nil" || value.empty()) << c.expression << " gave " << value;
        EXPECT_EQ(kz_Diag_getCondition(), 0x400);
        EXPECT_EQ(kz_Diag_getOutput(nullptr), KZ_DIAG_OUTPUT_HANDLER);
    }
}

TEST_F(DiagTwins, OutputIsCutAt255CharactersAndHasItsSource) {
    traceAt(-1, 0);
    kz_Diag_setHandler(listen);
    eval("(kz_Diag_putOutput \"100%s\")");
    EXPECT_EQ(spoken, "<none>: 100%s");
    eval("(kz_Diag_putOutput \"message\" 5)");
    EXPECT_EQ(spoken, "<none>: message");
    const std::string longest(255, 'x');
    eval("(kz_Diag_putOutput \"" + longest + "y\" \"" + longest + "z\")");
    EXPECT_EQ(spoken, longest + ": " + longest);
}

}  // namespace
