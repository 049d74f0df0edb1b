/// Printing, to the screen or to a file. The screen of Lisp code is the Lisp channel; prompt speaks
/// to the user and goes to the message channel.
#include "host/output.h"
#include "kz_tls21an/text.h"
#include "lisp/builtin.h"
#include "lisp/interpreter.h"
#include "lisp/printer.h"

namespace host::lisp {

namespace {

void writeTo(Interpreter& in, const Value& destination, std::u16string_view text) {
    if (destination.isNil()) return host::write(Channel::Lisp, text);
    const File* file = fileArg(in, destination);
    if (!file->stream || file->reads) in.badArgument(u"streamp", destination);
    const std::string bytes = kz::toUtf8(text);
    std::fwrite(bytes.data(), 1, bytes.size(), file->stream);
}

Value printWith(Interpreter& in, Args args, PrintForm form) {
    if (args.empty()) return in.nothing();
    writeTo(in, optionalArg(args, 1), printed(args[0], form));
    return args[0];
}

Value princ(Interpreter& in, Args args) {
    return printWith(in, args, PrintForm::Plain);
}
Value prin1(Interpreter& in, Args args) {
    return printWith(in, args, PrintForm::Readable);
}

Value printLine(Interpreter& in, Args args) {
    if (args.empty()) {
        writeTo(in, Value(), u"\n");
        return in.nothing();
    }
    writeTo(in, optionalArg(args, 1), u"\n" + printed(args[0], PrintForm::Readable) + u" ");
    return args[0];
}

Value terpri(Interpreter&, Args) {
    host::write(Channel::Lisp, u"\n");
    return Value();
}

Value prompt(Interpreter& in, Args args) {
    host::write(Channel::Message, textArg(in, args[0]));
    return Value();
}

Value writeLine(Interpreter& in, Args args) {
    writeTo(in, optionalArg(args, 1), std::u16string(textArg(in, args[0])) + u"\n");
    return args[0];
}

Value writeChar(Interpreter& in, Args args) {
    const auto unit = static_cast<char16_t>(integerArg(in, args[0]));
    writeTo(in, optionalArg(args, 1), {&unit, 1});
    return args[0];
}

const Builtin kRows[] = {
    {"princ", 0, 2, princ, "(princ [value [file]])",
     "Prints a value, texts as they stand; without arguments gives nothing."},
    {"prin1", 0, 2, prin1, "(prin1 [value [file]])",
     "Prints a value so that it can be read again."},
    {"print", 0, 2, printLine, "(print [value [file]])",
     "As prin1, on a new line and with a blank behind."},
    {"terpri", 0, 0, terpri, "(terpri)", "Ends the line on the screen."},
    {"prompt", 1, 1, prompt, "(prompt text)", "Shows a text to the user."},
    {"write-line", 1, 2, writeLine, "(write-line text [file])", "Prints a text and ends the line."},
    {"write-char", 1, 2, writeChar, "(write-char code [file])", "Prints one character."},
};

}  // namespace

std::span<const Builtin> printBuiltins() {
    return kRows;
}

}  // namespace host::lisp
