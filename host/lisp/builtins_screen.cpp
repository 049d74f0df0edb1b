/// The screen, menus and help of a seat. Here nobody looks at one: what would only be shown is
/// checked and passed over, what a user has to see goes to the message channel.
#include "edit/input.h"
#include "edit/typed_points.h"
#include "host/input.h"
#include "host/output.h"
#include "lisp/builtin.h"
#include "lisp/interpreter.h"

namespace host::lisp {

namespace {

Value nothingShown(Interpreter&, Args) {
    return {};
}

Value alert(Interpreter& in, Args args) {
    tell(textArg(in, args[0]));
    return {};
}

void checkPoint(Interpreter& in, const Value& value) {
    ads_point point;
    if (!pointOf(value, point)) in.fail(u"bad argument type: 2D/3D point");
}

Value drawVector(Interpreter& in, Args args) {
    checkPoint(in, args[0]);
    checkPoint(in, args[1]);
    integerArg(in, args[2]);
    return {};
}

/// Colours and pairs of points.
Value drawVectors(Interpreter& in, Args args) {
    const Value* rest = &listArg(in, args[0]);
    for (; rest->isCons(); rest = &rest->cons()->cdr) {
        if (rest->cons()->car.isInteger()) continue;
        checkPoint(in, rest->cons()->car);
        rest = &rest->cons()->cdr;
        if (!rest->isCons()) in.failWith(u"bad grvecs list value", Value());
        checkPoint(in, rest->cons()->car);
    }
    return {};
}

/// Gives the text that it would show.
Value showText(Interpreter& in, Args args) {
    if (args.empty()) return {};
    integerArg(in, args[0]);
    if (args.size() == 1) return {};
    textArg(in, args[1]);
    return args[1];
}

/// Devices are the lines of the input: a point is a pick (3), another text the code of its first
/// character (2), an empty line Enter; the end of the input is Esc.
Value readDevice(Interpreter& in, Args) {
    const InputLine line = readInputLine(u"");
    if (line.kind != InputLine::Kind::Text) in.fail(u"Function cancelled");
    ads_point last;
    ads_point point;
    lastPoint(last);
    if (typedPoint(line.text, last, point)) {
        return makeList(Value::integer(3), makeList(Value::real(point[0]), Value::real(point[1]),
                                                    Value::real(point[2])));
    }
    constexpr int32_t kEnter = 13;
    return makeList(Value::integer(2),
                    Value::integer(line.text.empty() ? kEnter : line.text.front()));
}

Value helpOfFunction(Interpreter& in, Args args) {
    for (const Value& arg : args)
        textArg(in, arg);
    return args[0];
}

/// There are no menus; an expression of one gives an empty text.
Value menuCommand(Interpreter& in, Args args) {
    return textArg(in, args[0]).starts_with(u"M=") ? makeText(u"") : Value();
}

const Builtin kRows[] = {
    {"textscr", 0, 0, nothingShown, "(textscr)", "Shows the text screen of a seat; here nothing."},
    {"graphscr", 0, 0, nothingShown, "(graphscr)",
     "Shows the drawing screen of a seat; here nothing."},
    {"textpage", 0, 0, nothingShown, "(textpage)",
     "Shows an empty text screen on a seat; here nothing."},
    {"alert", 1, 1, alert, "(alert text)", "Shows a message to the user."},
    {"grdraw", 3, 4, drawVector, "(grdraw from to colour [highlight])",
     "Draws a passing line on a seat's screen; here nothing."},
    {"grvecs", 1, 2, drawVectors, "(grvecs vectors [matrix])",
     "Draws passing lines on a seat's screen; here nothing."},
    {"grtext", 0, 3, showText, "(grtext [box text [highlight]])",
     "Shows a text in a seat's status line; gives the text."},
    {"grclear", 0, 0, nothingShown, "(grclear)", "Clears a seat's screen; here nothing."},
    {"grread", 0, 3, readDevice, "(grread [track [bits [cursor]]])",
     "Next input: (3 point) for a point, (2 code) for a character, (2 13) for Enter."},
    {"menucmd", 1, 1, menuCommand, "(menucmd text)", "Calls a menu of a seat; here nothing."},
    {"menugroup", 1, 1, nothingShown, "(menugroup name)",
     "Name of a loaded menu; nil, since there are none."},
    {"initdia", 0, 1, nothingShown, "(initdia [flag])",
     "Lets the next command show its dialog on a seat; here commands always ask."},
    {"setfunhelp", 1, 4, helpOfFunction, "(setfunhelp name [file [topic [command]]])",
     "Names the help of a command; gives the command's name."},
    {"tablet", 1, 5, nothingShown, "(tablet code [row1 row2 row3 direction])",
     "Calibration of a tablet; nil, since there is none."},
};

}  // namespace

std::span<const Builtin> screenBuiltins() {
    return kRows;
}

}  // namespace host::lisp
