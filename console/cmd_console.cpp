/// The console: expressions from the terminal, or plainly from a pipe.
#include <unistd.h>

#include <csignal>
#include <iostream>
#include <memory>
#include <optional>
#include <sstream>

#include "expression_scanner.h"
#include "host/drawing.h"
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

/// Ends a line that Lisp code left open, so that what comes next starts on a fresh one.
void freshLine() {
    if (!host::atLineStart(host::Channel::Lisp)) host::write(host::Channel::Lisp, u"\n");
    host::flush();
}

/// Words that are typed plainly: saving and leaving.
class PlainWords {
  public:
    explicit PlainWords(std::string path) : path_(std::move(path)) {}

    /// Does what the text asks for. False for a text that is Lisp.
    bool take(const std::string& text) {
        std::istringstream words(text);
        std::string word, argument;
        words >> word >> std::ws;
        std::getline(words, argument);
        if (word == "qsave" && argument.empty()) {
            save(path_);
        } else if (word == "saveas") {
            save(argument);
        } else if (word == "quit" && argument.empty()) {
            quit();
        } else {
            return false;
        }
        return true;
    }
    bool done() const { return done_; }

  private:
    void save(const std::string& path) {
        std::string error;
        if (path.empty()) {
            complain("the drawing has no name yet: saveas FILE");
        } else if (!host::saveDrawing(path, error)) {
            complain(error);
        } else {
            path_ = path;
            host::write(host::Channel::Message, kz::toUtf16("saved as " + path + "\n"));
        }
    }

    void quit() {
        done_ = !host::drawingIsUnsaved() || warned_;
        if (!done_) {
            complain("the drawing has unsaved changes: qsave keeps them, a second quit drops them");
        }
        warned_ = true;
    }

    std::string path_;
    bool warned_ = false;
    bool done_ = false;
};

Status talk(const std::string& path) {
    LineEditor editor;
    PlainWords words(path);
    host::setLispLineSource([&editor]() -> std::optional<std::u16string> {
        std::string line;
        freshLine();
        if (editor.read("", line) != LineEditor::Event::Line) return std::nullopt;
        while (line.ends_with('\n') || line.ends_with('\r'))
            line.pop_back();
        return kz::toUtf16(line);
    });
    struct sigaction cancel {};
    cancel.sa_handler = onCancel;  // without SA_RESTART, so that it ends the reading of a line
    for (;;) {
        sigaction(SIGINT, &cancel, nullptr);
        const auto text = readExpression(editor);
        if (!text) break;
        if (text->find_first_not_of(" \t\r\n") == std::string::npos) {
            freshLine();
            continue;
        }
        editor.remember(*text);
        if (words.take(*text)) {
            if (words.done()) break;
            continue;
        }
        const host::LispOutcome outcome = evaluate(*text);
        freshLine();
        if (!outcome.handled) report(outcome);
        host::flush();
    }
    if (!words.done()) host::write(host::Channel::Lisp, u"\n");
    host::setLispLineSource({});
    return kDone;
}

/// Evaluates standard input expression by expression up to its end or to the first error.
Status readPlainly() {
    std::string text, line;
    ExpressionScanner scanner;
    Status status = kDone;
    while (status == kDone && std::getline(std::cin, line)) {
        line += '\n';
        text += line;
        scanner.feed(line);
        if (!scanner.complete()) continue;
        status = report(evaluate(text));
        text.clear();
        scanner = {};
    }
    if (status == kDone && !text.empty()) status = report(evaluate(text));
    return status;
}

Status start(const SessionOptions& options) {
    Status status = openSession(options);
    if (status == kDone) status = isatty(STDIN_FILENO) ? talk(options.drawing) : readPlainly();
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
