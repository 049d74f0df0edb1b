/// Functions that call functions, and errors.
#include "lisp/builtin.h"
#include "lisp/interpreter.h"

namespace host::lisp {

namespace {

Value evalOf(Interpreter& in, Args args) {
    return in.eval(args[0]);
}

Value apply(Interpreter& in, Args args) {
    const Value function = in.functionFor(args[0]);
    Arguments arguments(in);
    for (const Value* rest = &listArg(in, args[1]); rest->isCons(); rest = &rest->cons()->cdr) {
        arguments.push(rest->cons()->car);
    }
    return in.call(function, arguments.all());
}

/// Pushes the first element of each list and steps the lists on; false when one has come to its
/// end.
bool pushFirsts(Arguments& arguments, std::vector<const Value*>& lists) {
    for (const Value*& list : lists) {
        if (!list->isCons()) return false;
        arguments.push(list->cons()->car);
        list = &list->cons()->cdr;
    }
    return true;
}

Value mapcar(Interpreter& in, Args args) {
    const Value function = in.functionFor(args[0]);
    std::vector<const Value*> lists;
    for (const Value& list : args.subspan(1))
        lists.push_back(&listArg(in, list));
    ListBuilder results;
    for (;;) {
        Arguments arguments(in);
        if (!pushFirsts(arguments, lists)) return results.take();
        in.checkInterrupt();
        results.add(in.call(function, arguments.all()));
    }
}

Value exitOf(Interpreter& in, Args) {
    in.fail(u"quit / exit abort");
}

Value catchAllApply(Interpreter& in, Args args) {
    const Interpreter::Catching catching(in);
    try {
        if (args.size() == 2) return apply(in, args);
        return callWith(in, in.functionFor(args[0]));
    } catch (const Failure& failure) {
        return Value::adopt(new CaughtError(failure.message));
    } catch (const OutOfSpace& reason) {
        return Value::adopt(new CaughtError(Interpreter::outOfSpace(reason).message));
    }
}

Value catchAllErrorP(Interpreter& in, Args args) {
    return in.truth(args[0].is(Kind::CaughtError));
}

Value catchAllErrorMessage(Interpreter& in, Args args) {
    if (!args[0].is(Kind::CaughtError)) in.badArgument(u"catch-all-error-p", args[0]);
    return makeText(args[0].as<CaughtError>()->message);
}

Value pushErrorUsingStack(Interpreter& in, Args) {
    in.errorModes.push_back(true);
    return in.truth(true);
}

Value pushErrorUsingCommand(Interpreter& in, Args) {
    in.errorModes.push_back(false);
    return in.truth(true);
}

Value popErrorMode(Interpreter& in, Args) {
    if (in.errorModes.empty()) return Value();
    in.errorModes.pop_back();
    return in.truth(true);
}

Value defunqListRef(Interpreter& in, Args args) {
    const Value& value = symbolArg(in, args[0])->value;
    return value.isCons() ? value : Value();
}

Value defunqListSet(Interpreter& in, Args args) {
    symbolArg(in, args[0])->value = listArg(in, args[1]);
    return args[0];
}

/// Marks the functions that symbols hold; gives the last one marked.
Value markTraced(Interpreter& in, const Cons* form, bool traced) {
    Value last;
    for (const Value* rest = &form->cdr; rest->isCons(); rest = &rest->cons()->cdr) {
        const Value& name = rest->cons()->car;
        const Value& function = symbolArg(in, name)->value;
        if (!function.is(Kind::UserFunction)) continue;
        function.as<UserFunction>()->traced = traced;
        last = name;
    }
    return last;
}

Value traceForm(Interpreter& in, const Cons* form) {
    return markTraced(in, form, true);
}
Value untraceForm(Interpreter& in, const Cons* form) {
    return markTraced(in, form, false);
}

const Builtin kRows[] = {
    {"eval", 1, 1, evalOf, "(eval expression)", "Value of an expression that is data."},
    {"apply", 2, 2, apply, "(apply function list)",
     "Calls a function with the elements of a list."},
    {"mapcar", 2, kAnyNumber, mapcar, "(mapcar function list ...)",
     "List of the values of a function over the elements of one or more lists."},
    {"trace", Operands::Raw, traceForm, "(trace function ...)",
     "Shows calls of functions made by defun, and what they give; gives the last name."},
    {"untrace", Operands::Raw, untraceForm, "(untrace function ...)",
     "Ends what trace began; gives the last name."},
    {"exit", 0, 0, exitOf, "(exit)", "Ends the running evaluation as an error does."},
    {"quit", 0, 0, exitOf, "(quit)", "Ends the running evaluation as an error does."},
    {"vl-catch-all-apply", 1, 2, catchAllApply, "(vl-catch-all-apply function [list])",
     "As apply; an error comes back as an error object."},
    {"vl-catch-all-error-p", 1, 1, catchAllErrorP, "(vl-catch-all-error-p value)",
     "T for an error object."},
    {"vl-catch-all-error-message", 1, 1, catchAllErrorMessage, "(vl-catch-all-error-message error)",
     "Message of an error object."},
    {"*push-error-using-stack*", 0, 0, pushErrorUsingStack, "(*push-error-using-stack*)",
     "From now on *error* sees the variables of the failing functions."},
    {"*push-error-using-command*", 0, 0, pushErrorUsingCommand, "(*push-error-using-command*)",
     "From now on *error* is called when all variables have their outer values back."},
    {"*pop-error-mode*", 0, 0, popErrorMode, "(*pop-error-mode*)",
     "Ends what the last *push-error-using-...* began."},
    {"defun-q-list-ref", 1, 1, defunqListRef, "(defun-q-list-ref symbol)",
     "Definition of a function made by defun-q."},
    {"defun-q-list-set", 2, 2, defunqListSet, "(defun-q-list-set symbol list)",
     "Defines a symbol as the function that the list holds."},
};

}  // namespace

std::span<const Builtin> functionBuiltins() {
    return kRows;
}

}  // namespace host::lisp
