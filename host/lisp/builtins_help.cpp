/// What tells people about functions and errors.
#include "host/lisp.h"
#include "host/output.h"
#include "lisp/builtin.h"
#include "lisp/interpreter.h"

namespace host::lisp {

namespace {

/// Prints lines on a fresh line.
Value show(const Interpreter& in, std::u16string_view lines) {
    if (!atLineStart(Channel::Lisp)) write(Channel::Lisp, u"\n");
    write(Channel::Lisp, lines);
    return in.nothing();
}

Value help(Interpreter& in, Args args) {
    std::u16string text;
    const Value& name = optionalArg(args, 0);
    lispHelp(name.isNil() ? u"" : nameArg(in, name), text);
    return show(in, text);
}

/// Gives the file as it was named; nil when nothing is known of the topic.
Value helpOnTopic(Interpreter& in, Args args) {
    for (const Value& arg : args)
        textArg(in, arg);
    std::u16string text;
    const bool known = lispHelp(args.size() > 1 ? args[1].text() : u"", text);
    show(in, text);
    return known ? (args.empty() ? makeText(u"") : args[0]) : Value();
}

/// Of the last error once it has happened; in the midst of an evaluation, of where it stands.
Value backtrace(Interpreter& in, Args) {
    const Backtrace present = in.presentTrace();
    const bool error = in.inHandler() || present.length() <= 1;
    return show(in, (error ? in.errorTrace() : present).text(in.sources));
}

Value switchBacktrace(Interpreter& in, bool on) {
    in.showsBacktrace = on;
    return in.truth(on);
}
Value backtraceOn(Interpreter& in, Args) {
    return switchBacktrace(in, true);
}
Value backtraceOff(Interpreter& in, Args) {
    return switchBacktrace(in, false);
}

const Builtin kRows[] = {
    {"kz_help", 0, 1, help, "(kz_help [name])",
     "Prints what the manual says of a function or command, given as a symbol or text; what has "
     "the "
     "word in its name or text when there is none of this name; a list of all without a name."},
    {"help", 0, 3, helpOnTopic, "(help [file [topic [command]]])",
     "Prints what the manual says of a topic, or a list of all. Files of help are not read. Gives "
     "the "
     "file, nil for an unknown topic."},
    {"vl-bt", 0, 0, backtrace, "(vl-bt)",
     "Prints the forms that were under evaluation when the last error happened, innermost first; "
     "within a function, those that are under evaluation now."},
    {"vl-bt-on", 0, 0, backtraceOn, "(vl-bt-on)",
     "From now on each error is shown with its chain of forms."},
    {"vl-bt-off", 0, 0, backtraceOff, "(vl-bt-off)", "Ends what vl-bt-on began."},
};

}  // namespace

std::span<const Builtin> helpBuiltins() {
    return kRows;
}

}  // namespace host::lisp
