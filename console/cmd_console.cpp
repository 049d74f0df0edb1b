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

/// What was typed or piped.
struct Entry {
    std::string text;
    int line = 0;  ///< where it begins in a script; 0 at a terminal
    bool typed() const { return line == 0; }
};

/// Evaluates an entry and shows each value.
host::LispOutcome evaluate(const Entry& entry) {
    const Interruptible interruptible;
    // !name asks for the value of a variable.
    const std::string_view all = entry.text;
    const std::string_view plain = all.substr(all.starts_with('!') ? 1 : 0);
    host::LispSource source;
    if (!entry.typed()) source = {u"standard input", entry.line};
    host::LispOutcome outcome = host::evalLisp(kz::toUtf16(plain), showValue, source);
    host::flush();
    return outcome;
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

/// The first word of a line.
std::u16string_view firstWord(std::u16string_view line) {
    const size_t start = std::min(line.find_first_not_of(u" \t"), line.size());
    line.remove_prefix(start);
    return line.substr(0, line.find_first_of(u" \t\r\n"));
}

/// True for a line that asks for help: "?" or the word, with or without what about.
bool asksForHelp(const std::string& text) {
    const std::u16string line = kz::toUtf16(text);
    const std::u16string_view word = firstWord(line);
    if (word.starts_with(u'?')) return true;
    return kz::compareNoCase(word, u"help") == 0 && !host::isCommand(word) &&
           !host::isLispSymbol(u"C:HELP");
}

/// True for a line that names a command and no Lisp: a word that no Lisp value goes by, with or
/// without answers behind it.
bool isCommandLine(const std::string& text) {
    const std::u16string line = kz::toUtf16(text);
    const std::u16string_view word = firstWord(line);
    if (word.empty() || word.find_first_of(u"()\"!;") != std::u16string_view::npos) return false;
    if (host::isCommand(word)) return true;
    const bool named = word.find_first_not_of(u"0123456789.+-eE") != std::u16string_view::npos;
    return named && !word.starts_with(u'\'') && !host::isLispSymbol(word);
}

/// True for a line that is complete as it stands, whatever quotation marks it holds.
bool isPlainLine(const std::string& line) {
    return isCommandLine(line) || asksForHelp(line);
}

/// Reads an expression, on as many lines as it takes. Nothing at the end of the input.
std::optional<std::string> readExpression(LineEditor& editor) {
    std::string text, line;
    ExpressionScanner scanner;
    for (;;) {
        switch (editor.readExpression(text.empty() ? kPrompt : scanner.prompt(), scanner, line)) {
            case LineEditor::Event::End:
                return std::nullopt;
            case LineEditor::Event::Cancelled:
                return std::string();
            case LineEditor::Event::Line:
                break;
        }
        if (text.empty() && isPlainLine(line)) return line;
        text += line;
        scanner.feed(line);
        if (scanner.complete()) return text;
    }
}

/// Says which names are spelled like one that nothing goes by.
void tellNearNames(std::u16string_view word) {
    std::u16string text;
    for (const std::u16string& name : host::nearLispNames(word))
        text.append(u" ").append(name);
    if (!text.empty()) host::write(host::Channel::Message, u"; near are:" + text + u"\n");
}

/// Shows the error of an expression. At a terminal one that an *error* function took is done with.
Status tellOutcome(const host::LispOutcome& outcome, bool terminal) {
    if (terminal && outcome.handled) return kLispError;
    const Status status = report(outcome);
    static constexpr std::u16string_view kUndefined = u"no function definition: ";
    if (terminal && outcome.message.starts_with(kUndefined))
        tellNearNames(std::u16string_view(outcome.message).substr(kUndefined.size()));
    return status;
}

Status tellHelp(const std::u16string& line) {
    const std::u16string_view word = firstWord(line);
    const size_t begin = line.find(word) + (word.starts_with(u'?') ? 1 : word.size());
    std::u16string text;
    const bool known = host::lispHelp(firstWord(std::u16string_view(line).substr(begin)), text);
    host::write(host::Channel::Lisp, text);
    host::flush();
    return known ? kDone : kLispError;
}

/// Does what a line or an expression asks for and shows what comes of it.
Status perform(const Entry& entry) {
    if (asksForHelp(entry.text)) return tellHelp(kz::toUtf16(entry.text));
    if (!isCommandLine(entry.text)) return tellOutcome(evaluate(entry), entry.typed());
    const Interruptible interruptible;
    const std::u16string line = kz::toUtf16(entry.text);
    const std::u16string word(firstWord(line));
    // (defun c:NAME ...) makes a command of its own.
    if (!host::isCommand(word) && host::isLispSymbol(u"C:" + word)) {
        const std::string call = "(c:" + kz::toUtf8(word) + ")";
        return tellOutcome(evaluate({call, entry.line}), entry.typed());
    }
    const bool known = host::isCommand(word);
    const bool done = host::runCommandLine(line);
    if (!known && entry.typed()) tellNearNames(word);
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
        leave();
        return true;
    }
    /// Leaves, or says what keeps from it.
    void leave() {
        done_ = !host::drawingIsUnsaved() || warned_;
        if (!done_) {
            complain("the drawing has unsaved changes: qsave keeps them, a second quit drops them");
        }
        warned_ = true;
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
    switch (editor.readAnswer(kz::toUtf8(prompt.substr(last)), line)) {
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
        if (!text) {
            host::write(host::Channel::Lisp, u"\n");
            words.leave();
            if (words.done()) break;
            continue;
        }
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
        perform({wanted});
        if (!blank) last_command = command ? wanted.substr(0, wanted.find_first_of(" \r\n")) : "";
        freshLine();
    }
    host::setInputReader({});
    return kDone;
}

/// Lines of standard input, counted.
class ScriptLines {
  public:
    /// The next line without its end.
    bool next(std::string& line) {
        if (!std::getline(std::cin, line)) return false;
        ++count_;
        if (line.ends_with('\r')) line.pop_back();
        return true;
    }
    int count() const { return count_; }

  private:
    int count_ = 0;
};

/// Takes standard input expression by expression and command by command, up to its end or to the
/// first error. Its lines answer prompts, too.
Status readPlainly(bool scripted) {
    ScriptLines lines;
    if (!scripted) {
        host::setInputReader([&lines](std::u16string_view) -> host::InputLine {
            std::string answer;
            if (!lines.next(answer)) return {};
            return {host::InputLine::Kind::Text, kz::toUtf16(answer)};
        });
    }
    Status status = kDone;
    Entry entry;
    ExpressionScanner scanner;
    for (std::string line; status == kDone && lines.next(line);) {
        if (line.find('\0') != std::string::npos) {
            complain("standard input, line " + std::to_string(lines.count()) + ": is no text");
            status = kFileError;
            break;
        }
        line += '\n';
        if (entry.text.empty()) entry.line = lines.count();
        const bool plain = entry.text.empty() && isPlainLine(line);
        entry.text += line;
        if (!plain) scanner.feed(line);
        if (!plain && !scanner.complete()) continue;
        if (entry.text.find_first_not_of(" \t\r\n") != std::string::npos) status = perform(entry);
        entry.text.clear();
        scanner = {};
    }
    if (status == kDone && !entry.text.empty()) status = perform(entry);
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
