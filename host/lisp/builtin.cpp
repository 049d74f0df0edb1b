/// Readers of the arguments of builtins.
#include "lisp/builtin.h"

#include "lisp/interpreter.h"

namespace host::lisp {

// "numberp:" and "fixnump:" stand with a colon in the messages, all others without.

int32_t integerArg(Interpreter& in, const Value& value) {
    if (!value.isInteger()) in.badArgument(u"fixnump:", value);
    return value.integer();
}

double numberArg(Interpreter& in, const Value& value) {
    if (!value.isNumber()) in.badArgument(u"numberp:", value);
    return value.number();
}

std::u16string_view textArg(Interpreter& in, const Value& value) {
    if (!value.isText()) in.badArgument(u"stringp", value);
    return value.text();
}

Symbol* symbolArg(Interpreter& in, const Value& value) {
    if (!value.isSymbol()) in.badArgument(u"symbolp", value);
    return value.symbol();
}

const Value& listArg(Interpreter& in, const Value& value) {
    if (!value.isList()) in.badArgument(u"listp", value);
    return value;
}

EntityName* entityArg(Interpreter& in, const Value& value) {
    if (!value.is(Kind::EntityName)) in.badArgument(u"lentityp", value);
    return value.as<EntityName>();
}

SelectionSet* setArg(Interpreter& in, const Value& value) {
    if (!value.is(Kind::SelectionSet)) in.badArgument(u"lselsetp", value);
    return value.as<SelectionSet>();
}

File* fileArg(Interpreter& in, const Value& value) {
    if (!value.is(Kind::File)) in.badArgument(u"FILE", value);
    return value.as<File>();
}

std::u16string_view nameArg(Interpreter& in, const Value& value) {
    return value.isSymbol() ? std::u16string_view(value.symbol()->name) : textArg(in, value);
}

bool pointOf(const Value& value, ads_point out) {
    const Value* rest = &value;
    int count = 0;
    for (; rest->isCons() && count < 3; rest = &rest->cons()->cdr, ++count) {
        if (!rest->cons()->car.isNumber()) return false;
        out[count] = rest->cons()->car.number();
    }
    if (count == 2) out[2] = 0.0;
    return count >= 2 && rest->isNil();
}

}  // namespace host::lisp
