/// The console: expressions from the terminal, or plainly from a pipe.
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <iostream>
#include <memory>
#include <optional>
#include <sstream>

#include "expression_scanner.h"
#include "host/command.h"
#include "host/drawing.h"
#include "host/input.h"
#include "host/output.h"
#include "kz_tls21an/text.h"
#include "line_editor.h"
#include "options.h"
#include "session.h"

namespace console {

namespace {

const char kPrompt[] = "kz> ";

/// Evaluates what was typed and shows each value.
host::LispOutcome evaluate(const std::string& text) {
    const Interruptible interruptible;
    // !name asks for the value of a variable.
    const std::string_view plain = std::string_view(text).substr(text.starts_with('!') ? 1 : 0);
    host::LispOutcome outcome = host::evalLisp(kz::toUtf16(plain), showValue);
    host::flush();
    return outcome;
}

/// Prompt of a line that goes on with an expression: one parenthesis for each list that is open.
std::string continuation(const ExpressionScanner& scanner) {
    const int open = std::max(scanner.openLists(), 0);
    return std::string(static_cast<size_t>(open), '(') + "_> ";
}

extern "C" void onCancel(int) {}

/// Lets Ctrl-C end the reading of a line, and nothing else, as long as this lives.
class CancelsReading {
  public:
    CancelsReading() {
        struct sigaction cancel {};
        cancel.sa_handler = onCancel;  // without SA_RESTART
        sigaction(SIGINT, &cancel, &before_);
    }
    ~CancelsReading() { sigaction(SIGINT, &before_, nullptr); }
    CancelsReading(const CancelsReading&) = delete;
    CancelsReading& operator=(const CancelsReading&) = delete;

  private:
    struct sigaction before_ {};
};

/// Reads an expression, on as many lines as it takes. Nothing at the end of the input.
std::optional<std::string> readExpression(LineEditor& editor) {
    std::string text, line;
    ExpressionScanner scanner;
    for (;;) {
        switch (editor.read(text.empty() ? kPrompt : continuation(scanner), line)) {
            case LineEditor::Event::End:
                return std::nullopt;
            case LineEditor::Event::Cancelled:
                return std::string();
            case LineEditor::Event::Line:
                break;
        }
        text += line;
        scanner.feed(line);
        if (scanner.complete()) return text;
    }
}

/// True for a line that names a command and no Lisp: a word that no Lisp value goes by, with or
/// without answers behind it.
bool isCommandLine(const std::string& text) {
    const std::u16string line = kz::toUtf16(text);
    const size_t start = line.find_first_not_of(u" \t");
    const size_t end = std::min(line.find_first_of(u" \t\r\n", start), line.size());
    const std::u16string_view word = std::u16string_view(line).substr(start, end - start);
    if (word.find_first_of(u"()\"!;") != std::u16string_view::npos) return false;
    if (host::isCommand(word)) return true;
    const bool named = word.find_first_not_of(u"0123456789.+-eE") != std::u16string_view::npos;
    return named && !word.starts_with(u'\'') && !host::isLispSymbol(word);
}

/// Shows the error of an expression. At a terminal one that an *error* function took is done with.
Status tellOutcome(const host::LispOutcome& outcome, bool terminal) {
    return terminal && outcome.handled ? kLispError : report(outcome);
}

/// Does what a line or an expression asks for and shows what comes of it.
Status perform(const std::string& text, bool terminal) {
    if (!isCommandLine(text)) return tellOutcome(evaluate(text), terminal);
    const Interruptible interruptible;
    const std::u16string line = kz::toUtf16(text);
    const std::u16string word = line.substr(0, line.find_first_of(u" \t\r\n"));
    // (defun c:NAME ...) makes a command of its own.
    if (!host::isCommand(word) && host::isLispSymbol(u"C:" + word)) {
        return tellOutcome(evaluate("(c:" + kz::toUtf8(word) + ")"), terminal);
    }
    const bool done = host::runCommandLine(line);
    host::flush();
    return done ? kDone : kLispError;
}

/// Ends a line that Lisp code left open, so that what comes next starts on a fresh one.
void freshLine() {
    if (!host::atLineStart(host::Channel::Lisp)) host::write(host::Channel::Lisp, u"\n");
    host::flush();
}

/// The word that leaves the console. A drawing with changes takes two of them.
class Leaving {
  public:
    /// True when the text is the word.
    bool take(const std::string& text) {
        std::istringstream words(text);
        std::string word, more;
        words >> word >> more;
        if (word != "quit" || !more.empty()) return false;
        done_ = !host::drawingIsUnsaved() || warned_;
        if (!done_) {
            complain("the drawing has unsaved changes: qsave keeps them, a second quit drops them");
        }
        warned_ = true;
        return true;
    }
    bool done() const { return done_; }

  private:
    bool warned_ = false;
    bool done_ = false;
};

/// The user's answers to prompts. What a prompt has in front of its last line is shown first.
host::InputLine readAnswer(LineEditor& editor, std::u16string_view prompt) {
    using Kind = host::InputLine::Kind;
    std::string line;
    freshLine();
    if (!host::atLineStart(host::Channel::Message)) host::write(host::Channel::Message, u"\n");
    const size_t last = prompt.rfind(u'\n') + 1;
    if (last > 1) host::write(host::Channel::Message, prompt.substr(0, last));
    host::flush();
    const CancelsReading cancels;
    switch (editor.read(kz::toUtf8(prompt.substr(last)), line)) {
        case LineEditor::Event::End:
            return {};
        case LineEditor::Event::Cancelled:
            return {Kind::Cancel, u"", true};
        case LineEditor::Event::Line:
            break;
    }
    while (line.ends_with('\n') || line.ends_with('\r'))
        line.pop_back();
    if (line == "\x1b" || line == "^C") return {Kind::Cancel, u"", true};
    return {Kind::Text, kz::toUtf16(line), true};
}

Status talk(bool scripted) {
    LineEditor editor;
    Leaving words;
    if (!scripted) {
        host::setInputReader(
            [&editor](std::u16string_view prompt) { return readAnswer(editor, prompt); });
    }
    std::string last_command;
    for (;;) {
        std::optional<std::string> text;
        {
            const CancelsReading cancels;
            text = readExpression(editor);
        }
        if (!text) break;
        const bool blank = text->find_first_not_of(" \t\r\n") == std::string::npos;
        // Enter alone does the last command again.
        if (blank && last_command.empty()) {
            freshLine();
            continue;
        }
        const std::string& wanted = blank ? last_command : *text;
        if (!blank) editor.remember(wanted);
        if (words.take(wanted)) {
            if (words.done()) break;
            continue;
        }
        const bool command = isCommandLine(wanted);
        perform(wanted, true);
        if (!blank) last_command = command ? wanted.substr(0, wanted.find_first_of(" \r\n")) : "";
        freshLine();
    }
    if (!words.done()) host::write(host::Channel::Lisp, u"\n");
    host::setInputReader({});
    return kDone;
}

/// Takes standard input expression by expression and command by command, up to its end or to the
/// first error. Its lines answer prompts, too.
Status readPlainly(bool scripted) {
    std::string text, line;
    ExpressionScanner scanner;
    if (!scripted) {
        host::setInputReader([](std::u16string_view) -> host::InputLine {
            std::string answer;
            if (!std::getline(std::cin, answer)) return {};
            if (answer.ends_with('\r')) answer.pop_back();
            return {host::InputLine::Kind::Text, kz::toUtf16(answer)};
        });
    }
    Status status = kDone;
    while (status == kDone && std::getline(std::cin, line)) {
        line += '\n';
        text += line;
        scanner.feed(line);
        if (!scanner.complete()) continue;
        if (text.find_first_not_of(" \t\r\n") != std::string::npos) status = perform(text, false);
        text.clear();
        scanner = {};
    }
    if (status == kDone && !text.empty()) status = perform(text, false);
    host::setInputReader({});
    return status;
}

Status start(const SessionOptions& options) {
    Status status = openSession(options);
    const bool scripted = !options.input.empty();
    if (status == kDone) {
        status = isatty(STDIN_FILENO) ? talk(scripted) : readPlainly(scripted);
    }
    host::flush();
    return status;
}

}  // namespace

Run defineConsole(Options& line) {
    const auto options = std::make_shared<SessionOptions>();
    line.argument("FILE", options->drawing, "Drawing to open; a new one without it");
    addSessionOptions(line, *options, false);
    return [options] { return start(*options); };
}

}  // namespace console
