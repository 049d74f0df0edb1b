/// The XDATA twins as Lisp calls: what they print and trace. Their values stand in
/// tests/lisp/xdata.lsp.
#include "drawing_test.h"
#include "host/lisp.h"
#include "host/module.h"
#include "host/output.h"
#include "kz_tls21an/text.h"

namespace {

class XDataTwins : public test::DrawingTest {
  protected:
    static void SetUpTestSuite() {
        std::string error;
        ASSERT_TRUE(host::loadModule(KZ_BUILD_DIR "/libkz_zaglaid.so", error)) << error;
    }
    void SetUp() override {
        DrawingTest::SetUp();
        host::setSink(host::Channel::Message,
                      [this](std::u16string_view text) { printed_ += kz::toUtf8(text); });
    }
    void TearDown() override {
        host::setSink(host::Channel::Message, {});
        DrawingTest::TearDown();
    }

    /// Value of a Lisp expression.
    static std::string eval(const std::string& expression) {
        const host::LispOutcome outcome = host::evalLisp(test::wide(expression));
        EXPECT_TRUE(outcome.ok()) << expression << ": " << kz::toUtf8(outcome.message);
        return kz::toUtf8(outcome.value);
    }
    /// What was printed since the last call, without the line ends around it.
    std::string printed() {
        std::string text;
        text.swap(printed_);
        const size_t first = text.find_first_not_of('\n');
        if (first == std::string::npos) return "";
        return text.substr(first, text.find_last_not_of('\n') + 1 - first);
    }

  private:
    std::string printed_;
};

/// Each twin, arguments that it takes, and the line that others make it print.
struct Twin {
    const char* name;
    const char* arguments;
    const char* usage;
};

const Twin kTwins[] = {
    {"kz_XData_initFldList", "(entlast) '((\"A\" 1)) \"APP\"",
     "ERROR  (kz_XData_initFldList  { handle | entname }  (fldlst)  apname )"},
    {"kz_XData_modFldList", "(entlast) '((\"A\" 1)) \"APP\"",
     "ERROR  (kz_XData_modFldList  { handle | entname }  (fldlst)  apname)"},
    {"kz_XData_setFldList", "(entlast) '((\"A\" 1)) \"APP\"",
     "ERROR  (kz_XData_setFldList  { handle | entname }  (fldlst)  apname  [clearExisting] )"},
    {"kz_XData_getFldList", "(entlast) nil \"APP\"",
     "ERROR  (kz_XData_getFldList  { handle | entname }  (fldlst)  apname )"},
    {"kz_XData_getFldListAlways", "(entlast) nil \"APP\"",
     "ERROR  (kz_XData_getFldListAlways  { handle | entname }  (fldlst)  apname )"},
    {"kz_XData_getFld", "(entlast) \"A\" \"APP\"",
     "ERROR  (kz_XData_getFld  { handle | entname }  [fldname]  apname )"},
    {"kz_XData_getHandle", "(entlast) \"A\" \"APP\"",
     "ERROR  (kz_XData_getFld  { handle | entname }  [fldname]  apname )"},
    {"kz_XData_setFld", "(entlast) 1 \"A\" \"APP\"",
     "ERROR  (kz_XData_setFld  { handle | entname }  value  fldname  apname  [clearExisting] "
     "[uniqueData] )"},
    {"kz_XData_deleteFldValue", "(entlast) 1 \"A\" \"APP\"",
     "ERROR  (kz_XData_deleteFldValue  { handle | entname }  value  fldname  apname  [clearAll] )"},
    {"kz_XData_setHandle", "(entlast) \"2F\" \"A\" \"APP\"",
     "ERROR  (kz_XData_setHandle  { handle | entname }  handle  fldname  apname  [clearExisting] "
     ")"},
    {"kz_XData_deleteHandle", "(entlast) \"2F\" \"A\" \"APP\"",
     "ERROR  (kz_XData_deleteHandle  { handle | entname }  handle  fldname  apname )"},
    {"kz_XData_deleteFld", "(entlast) \"A\" \"APP\"",
     "ERROR  (kz_XData_deleteFld  { handle | entname }  fldname  apname )"},
    {"kz_XData_deleteFldList", "(entlast) \"APP\"",
     "ERROR  (kz_XData_deleteFldList  { handle | entname }  apname )"},
};

TEST_F(XDataTwins, MissingAndWrongArgumentsPrintTheUsageLineOnce) {
    for (const Twin& twin : kTwins) {
        const std::string open = "(" + std::string(twin.name) + " ";
        for (const char* arguments :
             {"", "(entlast)", "5 5 5 5", "nil nil nil nil", "(entlast) (entlast) (entlast)"}) {
            EXPECT_EQ(eval(open + arguments + ")"), "nil") << twin.name << ' ' << arguments;
            EXPECT_EQ(printed(), twin.usage) << arguments;
        }
    }
    EXPECT_EQ(eval("(kz_Xdata_setFromEntList)"), "nil");
    EXPECT_EQ(printed(), "");
}

TEST_F(XDataTwins, GoodAndSurplusArgumentsPrintNothing) {
    for (const Twin& twin : kTwins) {
        const std::string open = "(" + std::string(twin.name) + " " + twin.arguments;
        eval(open + ")");
        eval(open + " nil nil 5 \"surplus\")");
        EXPECT_EQ(printed(), "") << twin.name;
    }
}

TEST_F(XDataTwins, AnEntityThatDoesNotExistGivesNilAndATraceAlone) {
    traceAt(1, 0x400);
    EXPECT_EQ(eval("(kz_XData_setFld \"FFFF\" 1 \"A\" \"APP\")"), "nil");
    EXPECT_EQ(traced(),
              "Invalid handle passed to kz_Rb_getNextADSName.\n"
              "Entity not found in kz_XData_setFld_li.");
    EXPECT_EQ(printed(), "");
}

TEST_F(XDataTwins, AHandleMustBeAText) {
    EXPECT_EQ(eval("(kz_XData_setHandle (entlast) 5 \"A\" \"APP\")"), "nil");
    EXPECT_EQ(printed(),
              "ERROR  kz_XData_setHandleFld requires a handle for the second paramater.");
    EXPECT_EQ(eval("(kz_XData_deleteHandle (entlast) 2.5 \"A\" \"APP\")"), "nil");
    EXPECT_EQ(printed(),
              "ERROR  kz_XData_deleteHandleFld requires a handle for the second paramater.");
}

TEST_F(XDataTwins, EntryArgumentsAndExitAreTraced) {
    traceAt(3, 0x400);
    eval("(kz_XData_deleteFldList (entlast) \"50%s\")");
    const std::string lines = traced();
    EXPECT_EQ(lines.find("Entering kz_XData_deleteFldList_li\nRTENAME  "), 0U) << lines;
    EXPECT_NE(lines.find("\nRTSTR                 50%s\n"), std::string::npos) << lines;
    EXPECT_NE(lines.find("\nkz_XData_deleteFldList_li exiting...error"), std::string::npos);
    traceAt(2, 0x400);
    eval("(kz_XData_setFld (entlast) 1 \"A\" \"APP\" 1)");
    EXPECT_EQ(traced(), "kz_XData_setFld_li exiting...successful");
    eval("(kz_XData_getHandle (entlast) \"A\" \"APP\")");
    EXPECT_EQ(traced(), "kz_XData_getFld_li exiting...successful");
}

}  // namespace
