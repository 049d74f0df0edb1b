/// Fixture of the tests that look at what is said on the command line, and of those that call Lisp.
#ifndef TESTS_PRINTED_TEST_H
#define TESTS_PRINTED_TEST_H

#include "chain_text.h"
#include "host/lisp.h"
#include "host/module.h"
#include "host/output.h"
#include "kz_tls21an/text.h"

namespace test {

class PrintedTest : public ChainTest {
  protected:
    void SetUp() override {
        ChainTest::SetUp();
        host::setSink(host::Channel::Message,
                      [this](std::u16string_view text) { printed_ += kz::toUtf8(text); });
    }
    void TearDown() override {
        host::setSink(host::Channel::Message, {});
        ChainTest::TearDown();
    }

    /// What was printed since the last call.
    std::string printed() {
        std::string text;
        text.swap(printed_);
        return text;
    }
    /// Makes the library's twins Lisp functions; a second time changes nothing.
    static void loadTwins() {
        std::string error;
        ASSERT_TRUE(host::loadModule(KZ_BUILD_DIR "/libkz_zaglaid.so", error)) << error;
    }
    /// Value of a Lisp expression.
    static std::string eval(const std::string& expression) {
        const host::LispOutcome outcome = host::evalLisp(wide(expression));
        EXPECT_TRUE(outcome.ok()) << expression << ": " << kz::toUtf8(outcome.message);
        return kz::toUtf8(outcome.value);
    }

  private:
    std::string printed_;
};

}  // namespace test

#endif
