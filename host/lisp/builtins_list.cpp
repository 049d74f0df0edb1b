/// Lists: taking apart, building, searching.
#include "lisp/builtin.h"
#include "lisp/compare.h"
#include "lisp/interpreter.h"

namespace host::lisp {

namespace {

const Value& carOf(Interpreter& in, const Value& value) {
    if (value.isNil()) return value;
    if (!value.isCons()) in.badArgument(u"consp", value);
    return value.cons()->car;
}

const Value& cdrOf(Interpreter& in, const Value& value) {
    if (value.isNil()) return value;
    if (!value.isCons()) in.badArgument(u"consp", value);
    return value.cons()->cdr;
}

/// car and cdr by the letters between c and r, the last one first.
template <char... Letters>
Value path(Interpreter& in, Args args) {
    static constexpr char kLetters[] = {Letters...};
    const Value* value = &args[0];
    for (size_t i = sizeof...(Letters); i-- > 0;) {
        value = kLetters[i] == 'a' ? &carOf(in, *value) : &cdrOf(in, *value);
    }
    return *value;
}

Value cons(Interpreter&, Args args) {
    return makeCons(args[0], args[1]);
}

Value list(Interpreter&, Args args) {
    Value result;
    for (size_t i = args.size(); i-- > 0;)
        result = makeCons(args[i], std::move(result));
    return result;
}

Value listStar(Interpreter&, Args args) {
    Value result = args.back();
    for (size_t i = args.size() - 1; i-- > 0;)
        result = makeCons(args[i], std::move(result));
    return result;
}

Value append(Interpreter& in, Args args) {
    ListBuilder joined;
    for (size_t i = 0; i + 1 < args.size(); ++i) {
        const Value* rest = &args[i];
        for (; rest->isCons(); rest = &rest->cons()->cdr)
            joined.add(rest->cons()->car);
        if (!rest->isNil()) in.badArgument(u"listp", args[i]);
    }
    return args.empty() ? Value() : joined.take(args.back());
}

Value reverse(Interpreter& in, Args args) {
    Value reversed;
    const Value* rest = &listArg(in, args[0]);
    for (; rest->isCons(); rest = &rest->cons()->cdr) {
        reversed = makeCons(rest->cons()->car, std::move(reversed));
    }
    if (!rest->isNil()) in.badArgument(u"listp", args[0]);
    return reversed;
}

Value length(Interpreter& in, Args args) {
    const int32_t count = listLength(args[0]);
    if (count < 0) in.badArgument(u"listp", args[0]);
    return Value::integer(count);
}

Value listLengthOrNil(Interpreter& in, Args args) {
    const int32_t count = listLength(listArg(in, args[0]));
    return count < 0 ? Value() : Value::integer(count);
}

Value last(Interpreter& in, Args args) {
    const Value* rest = &listArg(in, args[0]);
    if (rest->isNil()) return Value();
    while (rest->cons()->cdr.isCons())
        rest = &rest->cons()->cdr;
    return rest->cons()->car;
}

Value nth(Interpreter& in, Args args) {
    int32_t index = integerArg(in, args[0]);
    if (index < 0) in.failWith(u"bad argument value: non-negative:", args[0]);
    const Value* rest = &listArg(in, args[1]);
    for (; rest->isCons(); rest = &rest->cons()->cdr) {
        if (index-- == 0) return rest->cons()->car;
    }
    return Value();
}

/// The first link of a list that satisfies a condition, nil at its end.
template <class Condition>
Value findLink(const Value& from, Condition condition) {
    for (const Value* rest = &from; rest->isCons(); rest = &rest->cons()->cdr) {
        if (condition(rest->cons()->car)) return *rest;
    }
    return Value();
}

Value member(Interpreter& in, Args args) {
    return findLink(listArg(in, args[1]),
                    [&](const Value& element) { return isEqual(in, args[0], element); });
}

Value assoc(Interpreter& in, Args args) {
    const Value found = findLink(listArg(in, args[1]), [&](const Value& element) {
        if (!element.isList()) in.failWith(u"bad association list:", args[1]);
        return element.isCons() && isEqual(in, args[0], element.cons()->car);
    });
    return found ? found.cons()->car : Value();
}

Value substitute(Interpreter& in, Args args) {
    ListBuilder changed;
    const Value* rest = &listArg(in, args[2]);
    for (; rest->isCons(); rest = &rest->cons()->cdr) {
        const Value& element = rest->cons()->car;
        changed.add(isEqual(in, args[1], element) ? args[0] : element);
    }
    return changed.take(*rest);
}

const Builtin kRows[] = {
    {"car", 1, 1, path<'a'>, "(car list)", "First element of a list."},
    {"cdr", 1, 1, path<'d'>, "(cdr list)",
     "A list without its first element; second part of a dotted pair."},
    {"caar", 1, 1, path<'a', 'a'>, "(caar list)", "(car (car list))"},
    {"cadr", 1, 1, path<'a', 'd'>, "(cadr list)", "Second element of a list."},
    {"cdar", 1, 1, path<'d', 'a'>, "(cdar list)", "(cdr (car list))"},
    {"cddr", 1, 1, path<'d', 'd'>, "(cddr list)", "A list without its first two elements."},
    {"caaar", 1, 1, path<'a', 'a', 'a'>, "(caaar list)", "(car (caar list))"},
    {"caadr", 1, 1, path<'a', 'a', 'd'>, "(caadr list)", "(car (cadr list))"},
    {"cadar", 1, 1, path<'a', 'd', 'a'>, "(cadar list)", "(car (cdar list))"},
    {"caddr", 1, 1, path<'a', 'd', 'd'>, "(caddr list)", "Third element of a list."},
    {"cdaar", 1, 1, path<'d', 'a', 'a'>, "(cdaar list)", "(cdr (caar list))"},
    {"cdadr", 1, 1, path<'d', 'a', 'd'>, "(cdadr list)", "(cdr (cadr list))"},
    {"cddar", 1, 1, path<'d', 'd', 'a'>, "(cddar list)", "(cdr (cdar list))"},
    {"cdddr", 1, 1, path<'d', 'd', 'd'>, "(cdddr list)",
     "A list without its first three elements."},
    {"caaaar", 1, 1, path<'a', 'a', 'a', 'a'>, "(caaaar list)", "(car (caaar list))"},
    {"caaadr", 1, 1, path<'a', 'a', 'a', 'd'>, "(caaadr list)", "(car (caadr list))"},
    {"caadar", 1, 1, path<'a', 'a', 'd', 'a'>, "(caadar list)", "(car (cadar list))"},
    {"caaddr", 1, 1, path<'a', 'a', 'd', 'd'>, "(caaddr list)", "(car (caddr list))"},
    {"cadaar", 1, 1, path<'a', 'd', 'a', 'a'>, "(cadaar list)", "(car (cdaar list))"},
    {"cadadr", 1, 1, path<'a', 'd', 'a', 'd'>, "(cadadr list)", "(car (cdadr list))"},
    {"caddar", 1, 1, path<'a', 'd', 'd', 'a'>, "(caddar list)", "(car (cddar list))"},
    {"cadddr", 1, 1, path<'a', 'd', 'd', 'd'>, "(cadddr list)", "Fourth element of a list."},
    {"cdaaar", 1, 1, path<'d', 'a', 'a', 'a'>, "(cdaaar list)", "(cdr (caaar list))"},
    {"cdaadr", 1, 1, path<'d', 'a', 'a', 'd'>, "(cdaadr list)", "(cdr (caadr list))"},
    {"cdadar", 1, 1, path<'d', 'a', 'd', 'a'>, "(cdadar list)", "(cdr (cadar list))"},
    {"cdaddr", 1, 1, path<'d', 'a', 'd', 'd'>, "(cdaddr list)", "(cdr (caddr list))"},
    {"cddaar", 1, 1, path<'d', 'd', 'a', 'a'>, "(cddaar list)", "(cdr (cdaar list))"},
    {"cddadr", 1, 1, path<'d', 'd', 'a', 'd'>, "(cddadr list)", "(cdr (cdadr list))"},
    {"cdddar", 1, 1, path<'d', 'd', 'd', 'a'>, "(cdddar list)", "(cdr (cddar list))"},
    {"cddddr", 1, 1, path<'d', 'd', 'd', 'd'>, "(cddddr list)",
     "A list without its first four elements."},
    {"cons", 2, 2, cons, "(cons first rest)",
     "A list with one more element in front; a dotted pair when rest is no list."},
    {"list", 0, kAnyNumber, list, "(list [value ...])", "List of the values."},
    {"vl-list*", 1, kAnyNumber, listStar, "(vl-list* value ...)",
     "List of the values that ends in the last of them."},
    {"append", 0, kAnyNumber, append, "(append [list ...])", "One list of the elements of all."},
    {"reverse", 1, 1, reverse, "(reverse list)", "The list from its end to its beginning."},
    {"length", 1, 1, length, "(length list)", "Number of elements."},
    {"vl-list-length", 1, 1, listLengthOrNil, "(vl-list-length list)",
     "Number of elements; nil for a dotted list."},
    {"last", 1, 1, last, "(last list)", "Last element."},
    {"nth", 2, 2, nth, "(nth index list)",
     "Element at an index counted from 0; nil behind the end."},
    {"member", 2, 2, member, "(member value list)", "Rest of the list from the value on."},
    {"assoc", 2, 2, assoc, "(assoc key list)",
     "First element that is a list and begins with the key."},
    {"subst", 3, 3, substitute, "(subst new old list)",
     "The list with new in the place of each old."},
};

}  // namespace

std::span<const Builtin> listBuiltins() {
    return kRows;
}

}  // namespace host::lisp
