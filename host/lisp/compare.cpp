/// Equality and order of values.
#include "lisp/compare.h"

#include <cmath>

namespace host::lisp {

namespace {

int rankOf(const Value& value) {
    if (value.isNil()) return 0;
    if (value.isNumber()) return 1;
    return value.isText() ? 2 : 3;
}

bool equalAtoms(const Value& a, const Value& b, double fuzz) {
    if (a.isNumber() && b.isNumber()) {
        return a.number() == b.number() || std::fabs(a.number() - b.number()) <= fuzz;
    }
    return isEq(a, b);
}

}  // namespace

bool isEqual(Interpreter& in, const Value& a, const Value& b, double fuzz) {
    const Value* left = &a;
    const Value* right = &b;
    while (left->isCons() && right->isCons()) {
        if (left->same(*right)) return true;
        const Value& first = left->cons()->car;
        const Value& second = right->cons()->car;
        if (first.isCons()) {
            in.checkStack();
            if (!isEqual(in, first, second, fuzz)) return false;
        } else if (!equalAtoms(first, second, fuzz)) {
            return false;
        }
        left = &left->cons()->cdr;
        right = &right->cons()->cdr;
    }
    return equalAtoms(*left, *right, fuzz);
}

bool isSameValue(const Value& a, const Value& b) {
    if (a.isNumber() && b.isNumber()) return a.number() == b.number();
    return isEq(a, b);
}

std::partial_ordering orderOf(const Value& a, const Value& b) {
    if (a.isNumber() && b.isNumber()) return a.number() <=> b.number();
    if (a.isText() && b.isText()) return a.text() <=> b.text();
    return rankOf(a) <=> rankOf(b);
}

}  // namespace host::lisp
