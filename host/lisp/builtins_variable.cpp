/// System variables of the drawing and the editor.
#include <cstdlib>

#include "lisp/builtin.h"
#include "lisp/chain.h"
#include "lisp/interpreter.h"
#include "lisp/native_call.h"
#include "lisp/printer.h"

namespace host::lisp {

namespace {

Value getvar(Interpreter& in, Args args) {
    const std::u16string name(nameArg(in, args[0]));
    resbuf value{};
    if (acedGetVar(name.c_str(), &value) != RTNORM) return Value();
    Value result = nodeValue(in, value);
    if (value.restype == RTSTR) std::free(value.resval.rstring);
    return result;
}

/// A node with the value for a system variable. False for a value that no variable has.
bool fillNode(ChainBuilder& chain, const Value& value) {
    if (value.isInteger()) {
        const int32_t number = value.integer();
        if (number == static_cast<int16_t>(number)) {
            chain.add(RTSHORT).resval.rint = static_cast<int16_t>(number);
        } else {
            chain.add(RTLONG).resval.rlong = number;
        }
        return true;
    }
    if (value.isReal()) {
        chain.add(RTREAL).resval.rreal = value.real();
        return true;
    }
    if (value.isText()) {
        chain.addText(RTSTR, value.text());
        return true;
    }
    const int32_t count = value.isCons() ? listLength(value) : 0;
    if (count != 2 && count != 3) return false;
    resbuf& node = chain.add(count == 2 ? RTPOINT : RT3DPOINT);
    node.resval.rpoint[2] = 0.0;
    const Value* rest = &value;
    for (int32_t i = 0; i < count; ++i, rest = &rest->cons()->cdr) {
        if (!rest->cons()->car.isNumber()) return false;
        node.resval.rpoint[i] = rest->cons()->car.number();
    }
    return true;
}

Value setvar(Interpreter& in, Args args) {
    const std::u16string name(nameArg(in, args[0]));
    ChainBuilder chain(in);
    if (fillNode(chain, args[1]) && acedSetVar(name.c_str(), chain.get()) == RTNORM) return args[1];
    in.failWith(u"AutoCAD variable setting rejected: \"" + name + u"\"", args[1]);
}

const Builtin kRows[] = {
    {"getvar", 1, 1, getvar, "(getvar name)",
     "Value of a system variable; nil for an unknown one."},
    {"setvar", 2, 2, setvar, "(setvar name value)", "Sets a system variable; gives the value."},
};

}  // namespace

std::span<const Builtin> variableBuiltins() {
    return kRows;
}

}  // namespace host::lisp
