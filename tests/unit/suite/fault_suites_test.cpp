// Every form of every Lisp suite is run with the first, second ... call of each platform function
// failing. What a form answers then is its own affair; nothing may stay open or unreleased. A new
// twin comes under this test with the suite that states its facts. The suite's module is there, as
// it is in the program.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "host/output.h"
#include "host/testing.h"
#include "kz/kz_error.h"
#include "suite_test.h"

namespace {

/// The top-level forms of a program text.
std::vector<std::string> formsOf(const std::string& text) {
    std::vector<std::string> forms;
    std::string form;
    int depth = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == ';') {
            i = text.find('\n', i);
            if (i == std::string::npos) break;
            continue;
        }
        form += text[i];
        if (text[i] == '"') {
            const size_t start = i;
            while (text[++i] != '"')
                i += text[i] == '\\' ? 1 : 0;
            form.append(text, start + 1, i - start);
        }
        if (text[i] == '(') ++depth;
        if (text[i] == ')' && --depth == 0) {
            forms.push_back(std::move(form));
            form.clear();
        }
    }
    return forms;
}

std::vector<std::string> suites() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(KZ_SOURCE_DIR "/tests/lisp")) {
        const std::string name = entry.path().stem().string();
        if (entry.path().extension() == ".lsp" && name != "support") names.push_back(name);
    }
    return names;
}

class FaultSuites : public test::SuiteTest, public testing::WithParamInterface<std::string> {
  protected:
    void SetUp() override {
        SuiteTest::SetUp();
        for (const auto channel : {host::Channel::Lisp, host::Channel::Message}) {
            host::setSink(channel, [](std::u16string_view) {});
        }
        std::string error;
        ASSERT_TRUE(host::loadModule(KZ_BUILD_DIR "/libkz_zaglaid.so", error)) << error;
        ASSERT_TRUE(host::loadLisp(KZ_SOURCE_DIR "/tests/lisp/support.lsp").ok());
        // The error list is made for its first entry and then stays.
        kz_Error_submit(kz_ErrorGroupGeneral, 12, nullptr, nullptr);
    }
    void TearDown() override {
        host::resetLisp();
        kz_Diag_disable();
        kz_Error_clearAll();
        for (const auto channel : {host::Channel::Lisp, host::Channel::Message}) {
            host::setSink(channel, {});
        }
        SuiteTest::TearDown();
    }

    /// Runs a form with the n-th call of a function failing. @return whether it got that far
    static bool survives(const std::string& form, std::string_view call, int nth) {
        const int64_t open = host::openObjectCount();
        const int64_t nodes = host::resbufCount();
        const int64_t records = kz_Record_count();
        host::testing::failCall(call, nth, call.starts_with("aced") ? RTERROR : 6);
        host::evalLisp(kz::toUtf16(form));
        const bool fired = host::testing::faultFired();
        host::testing::clearFault();
        EXPECT_EQ(host::openObjectCount(), open) << call << " number " << nth << " in " << form;
        EXPECT_EQ(host::resbufCount(), nodes) << call << " number " << nth << " in " << form;
        EXPECT_EQ(kz_Record_count(), records) << call << " number " << nth << " in " << form;
        return fired;
    }
};

TEST_P(FaultSuites, leave_nothing_behind) {
    const std::string path = KZ_SOURCE_DIR "/tests/lisp/" + GetParam() + ".lsp";
    const std::vector<std::string> forms = formsOf(TempFolder::read(path));
    ASSERT_GT(forms.size(), 5U);
    int failures = 0;
    for (const std::string& form : forms) {
        if (form.find("(finish)") != std::string::npos) continue;
        host::testing::countCalls();
        host::evalLisp(kz::toUtf16(form));
        const std::vector<host::testing::CallCount> called = host::testing::countedCalls();
        host::testing::clearFault();
        for (const auto& [call, calls] : called) {
            // One more than there were: a failure may lead to a second try.
            for (int nth = 1; nth < 50 && nth <= calls + 1 && survives(form, call, nth); ++nth)
                ++failures;
        }
    }
    // The suites about drawings call the platform all the time, those about the language never.
    const std::vector<std::string> callers = {"xdata",       "drawing",    "objid",     "dwgdata",
                                              "environment", "properties", "selection", "groups"};
    if (std::find(callers.begin(), callers.end(), GetParam()) != callers.end()) {
        EXPECT_GT(failures, 100);
    }
}

INSTANTIATE_TEST_SUITE_P(EverySuite, FaultSuites, testing::ValuesIn(suites()),
                         [](const auto& suite) { return suite.param; });

}  // namespace
