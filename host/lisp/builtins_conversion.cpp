/// Values to texts and texts to values.
#include "kz_tls21an/text.h"
#include "lisp/builtin.h"
#include "lisp/interpreter.h"
#include "lisp/printer.h"
#include "lisp/reader.h"

namespace host::lisp {

namespace {

Value itoa(Interpreter& in, Args args) {
    integerArg(in, args[0]);
    return makeText(printed(args[0], PrintForm::Plain));
}

Value atoi(Interpreter& in, Args args) {
    return Value::integer(kz::parseInteger(textArg(in, args[0])));
}
Value atof(Interpreter& in, Args args) {
    return Value::real(kz::parseReal(textArg(in, args[0])));
}

Value readText(Interpreter& in, Args args) {
    if (args.empty() || args[0].isNil()) return Value();
    Reader reader(in.symbols, textArg(in, args[0]));
    Value datum;
    if (reader.read(datum) == Reader::Status::Failed) in.fail(reader.error());
    return datum;
}

Value princToText(Interpreter&, Args args) {
    return makeText(printed(args[0], PrintForm::Plain));
}
Value prin1ToText(Interpreter&, Args args) {
    return makeText(printed(args[0], PrintForm::Readable));
}

const Builtin kRows[] = {
    {"itoa", 1, 1, itoa, "(itoa integer)", "Integer as a text."},
    {"atoi", 1, 1, atoi, "(atoi text)", "Integer at the beginning of a text; 0 for none."},
    {"atof", 1, 1, atof, "(atof text)", "Real at the beginning of a text; 0.0 for none."},
    {"read", 0, 1, readText, "(read [text])", "First expression of a text as data."},
    {"vl-princ-to-string", 1, 1, princToText, "(vl-princ-to-string value)",
     "Value as princ prints it."},
    {"vl-prin1-to-string", 1, 1, prin1ToText, "(vl-prin1-to-string value)",
     "Value as prin1 prints it."},
};

}  // namespace

std::span<const Builtin> conversionBuiltins() {
    return kRows;
}

}  // namespace host::lisp
