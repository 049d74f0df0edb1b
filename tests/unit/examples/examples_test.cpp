/// The manual's examples hold, and every function has one.
///
/// A line of an example is a form and what comes of it:
///     FORM ; => VALUE            its value as the console shows it; nothing behind "=>" for none
///     FORM ; error: MESSAGE      the error that it ends in
///     FORM ; prints "TEXT"       what it prints, as a text of Lisp; "=> VALUE" may follow
///     FORM                       a preparation, which succeeds
///     ;< ANSWER                  what the user answers to the next form
/// "..." in a value stands for anything. The lines of a function share a new drawing, a fresh
/// interpreter and an empty folder.
#include <gtest/gtest.h>

#include <deque>
#include <filesystem>
#include <set>
#include <sstream>

#include "host/drawing.h"
#include "host/input.h"
#include "host/lisp.h"
#include "host/module.h"
#include "host/output.h"
#include "kz_tls21an/text.h"
#include "lisp_texts.h"
#include "temp_folder.h"

namespace {

namespace fs = std::filesystem;

/// A line, taken apart.
struct Example {
    std::string form, value, error, printed;
    bool checksValue = false, checksPrinted = false;

    explicit Example(const std::string& line) : form(line) {
        if (cut(form, " ; error: ", error)) return;
        checksValue =
            cut(form, " ; =>", value) || cut(form, " => ", value, form.find(" ; prints "));
        checksPrinted = cut(form, " ; prints ", printed);
        if (value.starts_with(' ')) value.erase(0, 1);
    }

  private:
    /// Moves what stands behind the last `mark` out of a text.
    static bool cut(std::string& text, std::string_view mark, std::string& behind,
                    size_t from = 0) {
        const size_t at = from == std::string::npos ? from : text.rfind(mark);
        if (at == std::string::npos || at < from) return false;
        behind = text.substr(at + mark.size());
        text.resize(at);
        return true;
    }
};

/// True when the text is the wanted one, in which "..." stands for anything.
bool matches(std::string_view wanted, std::string_view text) {
    const size_t dots = wanted.find("...");
    if (dots == std::string_view::npos) return wanted == text;
    if (text.substr(0, dots) != wanted.substr(0, dots)) return false;
    for (size_t at = dots; at <= text.size(); ++at)
        if (matches(wanted.substr(dots + 3), text.substr(at))) return true;
    return false;
}

class Examples : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        std::string error;
        for (const char* name : {"/libkz_zaglaid.so", "/libkz_cadservice.so"})
            ASSERT_TRUE(host::loadModule(KZ_BUILD_DIR + std::string(name), error)) << error;
        host::setLispTexts(console::lispTexts());
    }

    Examples() : before_(fs::current_path()) {
        host::setSink(host::Channel::Lisp, [this](std::u16string_view text) { printed_ += text; });
        host::setSink(host::Channel::Message,
                      [this](std::u16string_view text) { messages_ += text; });
        host::setInputReader([this](std::u16string_view) -> host::InputLine {
            if (answers_.empty()) return {};
            const std::string answer = answers_.front();
            answers_.pop_front();
            return {host::InputLine::Kind::Text, kz::toUtf16(answer)};
        });
    }
    ~Examples() override {
        fs::current_path(before_);
        host::setInputReader({});
        host::setSink(host::Channel::Lisp, {});
        host::setSink(host::Channel::Message, {});
        host::resetLisp();
    }

    void run(const host::LispText& row) {
        const TempFolder folder;
        fs::current_path(folder.path());
        host::newDrawing();
        host::resetLisp();
        messages_.clear();
        std::istringstream lines(row.examples);
        for (std::string line; std::getline(lines, line);) {
            SCOPED_TRACE(std::string(row.name) + ": " + line);
            if (line.starts_with(";<")) {
                answers_.push_back(line.substr(std::min<size_t>(line.size(), 3)));
            } else {
                check(Example(line));
            }
        }
        EXPECT_EQ(messages_.find(u"; warning:"), std::u16string::npos)
            << row.name << ": " << kz::toUtf8(messages_);
        fs::current_path(before_);
    }

  private:
    void check(const Example& example) {
        printed_.clear();
        const host::LispOutcome outcome = host::evalLisp(kz::toUtf16(example.form));
        const std::string printed = kz::toUtf8(printed_);
        const std::string message = outcome.ok() ? "" : kz::toUtf8(outcome.message);
        EXPECT_EQ(outcome.ok(), example.error.empty());
        EXPECT_TRUE(matches(example.error, message))
            << "error: " << message << "\nmessages: " << kz::toUtf8(messages_);
        if (example.checksValue && outcome.ok()) {
            const std::string value = kz::toUtf8(outcome.value);
            EXPECT_TRUE(matches(example.value, value)) << "value: " << value;
        }
        if (example.checksPrinted) {
            const host::LispOutcome wanted =
                host::evalLisp(u"(princ " + kz::toUtf16(example.printed) + u")");
            EXPECT_TRUE(matches(kz::toUtf8(printed_.substr(printed.size())), printed))
                << "printed: " << printed;
            EXPECT_TRUE(wanted.ok());
        }
        EXPECT_TRUE(answers_.empty()) << "an answer that nothing asks for";
        answers_.clear();
    }

    fs::path before_;
    std::deque<std::string> answers_;
    std::u16string printed_, messages_;
};

TEST_F(Examples, hold) {
    for (const host::LispText& row : console::lispTexts())
        if (*row.examples != '\0') run(row);
}

TEST_F(Examples, are_there_for_every_function_of_the_language) {
    host::resetLisp();
    std::set<std::string, std::less<>> shown;
    for (const host::LispText& row : console::lispTexts())
        if (*row.examples != '\0') shown.insert(row.name);
    std::string missing;
    for (const host::LispFunction& function : host::lispFunctions()) {
        const bool native = function.kind == host::LispFunction::Kind::Native;
        const std::string name = kz::toUtf8(function.name);
        if (!native && !shown.contains(name)) missing += name + " ";
    }
    EXPECT_EQ(missing, "") << "have no example in tests/lisp/examples";
}

TEST_F(Examples, are_of_functions_that_exist) {
    for (const host::LispText& row : console::lispTexts())
        EXPECT_TRUE(host::isLispSymbol(kz::toUtf16(row.name))) << row.name;
}

}  // namespace
