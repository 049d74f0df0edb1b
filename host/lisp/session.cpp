/// The interpreter of the program, behind the interface for programs around the host.
#include <algorithm>
#include <map>
#include <new>

#include "command/run.h"
#include "db/undo.h"
#include "edit/input.h"
#include "host/counters.h"
#include "host/lisp.h"
#include "host/output.h"
#include "host/undo.h"
#include "kz_tls21an/text.h"
#include "lisp/input_token.h"
#include "lisp/interpreter.h"
#include "lisp/load.h"
#include "lisp/printer.h"

namespace host {

namespace {

constexpr size_t kExpressionLimit = 500;

/// The interpreter and what outlives a reset. Never destroyed: values may stand in static storage
/// of others, and what hangs on them needs the host until the end.
struct Session {
    std::unique_ptr<lisp::Interpreter> interpreter;
    std::map<std::u16string, int (*)(), std::less<>> natives;
    std::span<const LispText> texts;  ///< the manual's

    Session() { renew(); }
    void renew() {
        interpreter.reset();
        interpreter = std::make_unique<lisp::Interpreter>();
        for (const auto& [name, function] : natives)
            interpreter->define(name, function);
    }
};

Session& session() {
    static auto& instance = *new Session;
    return instance;
}

std::u16string lowered(std::u16string text) {
    for (char16_t& unit : text)
        unit = kz::lowerUnit(unit);
    return text;
}

/// Warns when a count of the host rises over an expression.
class LeakWatch {
  public:
    LeakWatch() { note(); }
    void check() {
        const int64_t objects = openObjectCount() - objects_;
        const int64_t buffers = resbufCount() - buffers_;
        if (objects > 0) warn(objects, u" database objects left open");
        if (buffers > 0) warn(buffers, u" result buffers not released");
        note();
    }

  private:
    static void warn(int64_t count, std::u16string_view what) {
        std::u16string text(atLineStart(Channel::Message) ? u"" : u"\n");
        text.append(u"; warning: ").append(kz::toUtf16(std::to_string(count)));
        write(Channel::Message, text.append(what).append(u"\n"));
    }
    void note() {
        objects_ = openObjectCount();
        buffers_ = resbufCount();
    }

    int64_t objects_ = 0, buffers_ = 0;
};

LispOutcome failed(lisp::Interpreter& in, lisp::Failure& failure) {
    in.runDeferredHandler(failure);
    LispOutcome outcome;
    outcome.kind = LispOutcome::Kind::Failed;
    outcome.message = failure.message;
    outcome.handled = failure.handled;
    outcome.backtrace = in.errorTrace().text(in.sources);
    if (failure.expression) {
        lisp::print(outcome.expression, failure.expression, lisp::PrintForm::Readable,
                    kExpressionLimit);
        if (outcome.expression.size() > 2 * kExpressionLimit) {
            outcome.expression.resize(2 * kExpressionLimit);
            outcome.expression.append(u"...");
        }
    }
    auto place = in.sources.find(failure.place);
    outcome.file = std::move(place.file);
    outcome.line = place.line;
    return outcome;
}

LispOutcome withoutMemory(const std::bad_alloc& reason) {
    LispOutcome outcome;
    outcome.kind = LispOutcome::Kind::Failed;
    const auto* limited = dynamic_cast<const lisp::OutOfSpace*>(&reason);
    outcome.message = limited ? kz::toUtf16(limited->what()) : u"insufficient memory";
    return outcome;
}

LispOutcome evaluate(std::u16string_view text, const LispSource& source,
                     const LispValueSink& each) {
    lisp::Interpreter& in = *session().interpreter;
    in.beginTopLevel();
    LeakWatch watch;
    LispOutcome outcome;
    const auto shown = [&](const lisp::Value& value) {
        const bool nothing = value.isNil() && in.nativeGaveNothing;
        return nothing ? std::u16string() : lisp::printed(value, lisp::PrintForm::Readable);
    };
    const UndoStep step("LISP");
    const auto afterEach = [&](const lisp::Value& value) {
        // A command may rest between the expressions of a file.
        if (!RestingCommand::exists()) {
            watch.check();
            nextUndoBoundary();
        }
        if (!each) return;
        const std::u16string printed = shown(value);
        if (!printed.empty()) each(printed);
    };
    try {
        outcome.value = shown(in.evalText(text, source, afterEach));
        RestingCommand::finish();
    } catch (lisp::Failure& failure) {
        RestingCommand::cancel();
        outcome = failed(in, failure);
        watch.check();
    } catch (const std::bad_alloc& reason) {
        RestingCommand::cancel();
        outcome = withoutMemory(reason);
    }
    return outcome;
}

/// The answer that a Lisp expression typed at a prompt gives.
bool answerOf(std::u16string_view text, InputToken& token) {
    lisp::Interpreter& in = *session().interpreter;
    in.beginTopLevel();
    if (text.starts_with(u'!')) text.remove_prefix(1);
    try {
        const lisp::Value value = in.evalText(text, {});
        return lisp::answerToken(value, token);
    } catch (lisp::Failure& failure) {
        tell(u"; error: " + failed(in, failure).message);
        return false;
    } catch (const std::bad_alloc& reason) {
        tell(u"; error: " + withoutMemory(reason).message);
        return false;
    }
}

[[maybe_unused]] const bool kAnswersPrompts = [] {
    setExpressionEvaluator(answerOf);
    return true;
}();

}  // namespace

LispOutcome evalLisp(std::u16string_view text, const LispValueSink& each,
                     const LispSource& source) {
    return evaluate(text, source, each);
}

LispOutcome loadLisp(const std::string& name) {
    const std::string path = lisp::findProgram(name);
    std::u16string text;
    std::string error;
    if (lisp::readProgram(path.empty() ? name : path, text, error)) {
        return evaluate(text, {kz::toUtf16(path)}, {});
    }
    LispOutcome outcome;
    outcome.kind = LispOutcome::Kind::Unreadable;
    outcome.message = kz::toUtf16(name + ": " + error);
    return outcome;
}

std::u16string describeError(const LispOutcome& outcome) {
    std::u16string text = u"; error: " + outcome.message + u"\n";
    if (!outcome.expression.empty()) text += outcome.expression + u"\n";
    if (!outcome.file.empty()) {
        text +=
            u"; " + outcome.file + u", line " + kz::toUtf16(std::to_string(outcome.line)) + u"\n";
    }
    if (session().interpreter->showsBacktrace) text += outcome.backtrace;
    return text;
}

void showBacktraces(bool show) {
    session().interpreter->showsBacktrace = show;
}

void defineNative(std::u16string_view name, int (*function)()) {
    session().natives[std::u16string(name)] = function;
    session().interpreter->define(name, function);
}

bool interruptLisp() {
    return !lisp::Interpreter::interrupted.exchange(true, std::memory_order_relaxed);
}

void resetLisp() {
    session().renew();
}

namespace {

/// What is known of a user function: its parameters, and where it was loaded from.
LispFunction userFunction(const lisp::Symbol& symbol, const lisp::UserFunction& function) {
    LispFunction known;
    known.kind = LispFunction::Kind::User;
    known.name = symbol.name;
    known.usage = "(" + kz::toUtf8(lowered(symbol.name));
    for (uint32_t i = 0; i < function.parameters; ++i)
        known.usage += " " + kz::toUtf8(lowered(function.variables[i]->name));
    known.usage += ")";
    auto place = session().interpreter->sources.find(function.place);
    known.file = std::move(place.file);
    known.line = place.line;
    return known;
}

}  // namespace

void setLispTexts(std::span<const LispText> texts) {
    session().texts = texts;
}

std::vector<LispFunction> lispFunctions() {
    std::vector<LispFunction> functions;
    const lisp::SymbolTable& symbols = session().interpreter->symbols;
    std::map<std::u16string, const LispText*> texts;
    for (const LispText& text : session().texts)
        texts.emplace(kz::toUpper(kz::toUtf16(text.name)), &text);
    const auto add = [&](LispFunction function) {
        const auto found = texts.find(kz::toUpper(function.name));
        if (found != texts.end() && function.kind != LispFunction::Kind::User) {
            const LispText& text = *found->second;
            function.examples = text.examples;
            if (*text.usage != '\0') {
                function.family = text.family;
                function.usage = text.usage;
                function.result = text.result;
                function.help = text.help;
            }
        }
        functions.push_back(std::move(function));
    };
    lisp::Interpreter::forEachBuiltin([&](const lisp::Builtin& row, const char* family) {
        const lisp::Symbol* symbol = symbols.find(kz::toUtf16(row.name));
        const bool defined = symbol && symbol->value.is(lisp::Kind::Subr) &&
                             symbol->value.as<lisp::Subr>()->row == &row;
        if (!defined) return;
        LispFunction function;
        function.name = kz::toUtf16(row.name);
        function.family = family;
        function.usage = row.usage;
        function.help = row.help;
        add(std::move(function));
    });
    symbols.forEach([&](const lisp::Symbol* symbol) {
        if (symbol->value.is(lisp::Kind::UserFunction))
            add(userFunction(*symbol, *symbol->value.as<lisp::UserFunction>()));
    });
    for (const auto& [name, function] : session().natives) {
        const lisp::Symbol* symbol = symbols.find(name);
        const bool defined = symbol && symbol->value.is(lisp::Kind::External) &&
                             symbol->value.as<lisp::External>()->function == function;
        if (!defined) continue;
        LispFunction native;
        native.kind = LispFunction::Kind::Native;
        native.name = name;
        add(std::move(native));
    }
    std::sort(functions.begin(), functions.end(),
              [](const LispFunction& a, const LispFunction& b) { return a.name < b.name; });
    return functions;
}

bool isLispSymbol(std::u16string_view name) {
    const lisp::Symbol* symbol = session().interpreter->symbols.find(name);
    return symbol != nullptr && static_cast<bool>(symbol->value);
}

std::vector<std::u16string> lispSymbols() {
    std::vector<std::u16string> names;
    session().interpreter->symbols.forEach([&](const lisp::Symbol* symbol) {
        if (symbol->value) names.push_back(symbol->name);
    });
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace host
