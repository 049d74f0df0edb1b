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

/// Units or precision: what was given, or those of the drawing.
int settingArg(Interpreter& in, const Value& value) {
    constexpr int kOfDrawing = -1;
    return value.isNil() ? kOfDrawing : integerArg(in, value);
}

using ToText = int (*)(ads_real, int, int, ACHAR*, size_t);
using ToNumber = int (*)(const ACHAR*, int, ads_real*);

Value unitText(Interpreter& in, Args args, ToText convert) {
    constexpr size_t kSize = 128;
    ACHAR text[kSize];
    const double number = numberArg(in, args[0]);
    const int unit = settingArg(in, optionalArg(args, 1));
    const int precision = settingArg(in, optionalArg(args, 2));
    if (convert(number, unit, precision, text, kSize) != RTNORM) return Value();
    return makeText(text);
}

Value unitNumber(Interpreter& in, Args args, ToNumber convert) {
    const std::u16string text(textArg(in, args[0]));
    ads_real number = 0.0;
    const int unit = settingArg(in, optionalArg(args, 1));
    return convert(text.c_str(), unit, &number) == RTNORM ? Value::real(number) : Value();
}

Value rtos(Interpreter& in, Args args) {
    return unitText(in, args, acdbRToS);
}
Value angtos(Interpreter& in, Args args) {
    return unitText(in, args, acdbAngToS);
}
Value distof(Interpreter& in, Args args) {
    return unitNumber(in, args, acdbDisToF);
}
Value angtof(Interpreter& in, Args args) {
    return unitNumber(in, args, acdbAngToF);
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
    {"rtos", 1, 3, rtos, "(rtos number [units [precision]])",
     "Distance as a text; nil for unknown units."},
    {"distof", 1, 2, distof, "(distof text [units])", "Distance of a text; nil for none."},
    {"angtos", 1, 3, angtos, "(angtos radians [units [precision]])",
     "Angle as a text; nil for unknown units."},
    {"angtof", 1, 2, angtof, "(angtof text [units])", "Angle of a text, in radians; nil for none."},
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
