/// Special forms: definitions, assignments and control. Each gets its own form and evaluates what
/// it wants of it.
#include "lisp/builtin.h"
#include "lisp/interpreter.h"

namespace host::lisp {

namespace {

/// The list behind the first `count` elements of a form.
const Value& behind(const Cons* form, int count) {
    const Value* rest = &form->cdr;
    for (; count > 1 && rest->isCons(); --count)
        rest = &rest->cons()->cdr;
    return *rest;
}

const Value& operand(const Cons* form, int index) {
    return behind(form, index).cons()->car;
}

void checkOperands(Interpreter& in, const Cons* form, size_t minimum, int maximum) {
    const int32_t count = listLength(form->cdr);
    if (count < 0) in.fail(u"syntax error");
    in.checkArity(static_cast<size_t>(count), minimum, maximum);
}

Value quoteForm(Interpreter& in, const Cons* form) {
    checkOperands(in, form, 1, 1);
    return operand(form, 1);
}

Value prognForm(Interpreter& in, const Cons* form) {
    return in.evalAll(form->cdr);
}

Value ifForm(Interpreter& in, const Cons* form) {
    checkOperands(in, form, 2, 3);
    if (in.eval(operand(form, 1))) return in.eval(operand(form, 2));
    const Value& otherwise = behind(form, 3);
    return otherwise.isCons() ? in.eval(otherwise.cons()->car) : Value();
}

Value condForm(Interpreter& in, const Cons* form) {
    for (const Value* rest = &form->cdr; rest->isCons(); rest = &rest->cons()->cdr) {
        const Value& clause = rest->cons()->car;
        if (!clause.isCons()) in.failWith(u"bad argument type: listp", clause);
        Value test = in.eval(clause.cons()->car);
        if (!test) continue;
        const Value& body = clause.cons()->cdr;
        return body.isCons() ? in.evalAll(body) : test;
    }
    return Value();
}

Value andForm(Interpreter& in, const Cons* form) {
    for (const Value* rest = &form->cdr; rest->isCons(); rest = &rest->cons()->cdr) {
        if (!in.eval(rest->cons()->car)) return Value();
    }
    return in.truth(true);
}

Value orForm(Interpreter& in, const Cons* form) {
    for (const Value* rest = &form->cdr; rest->isCons(); rest = &rest->cons()->cdr) {
        if (in.eval(rest->cons()->car)) return in.truth(true);
    }
    return Value();
}

Value whileForm(Interpreter& in, const Cons* form) {
    checkOperands(in, form, 1, kAnyNumber);
    Value result;
    while (in.eval(operand(form, 1))) {
        in.checkInterrupt();
        result = in.evalAll(behind(form, 2));
    }
    return result;
}

Value repeatForm(Interpreter& in, const Cons* form) {
    checkOperands(in, form, 1, kAnyNumber);
    Value result;
    for (int32_t count = integerArg(in, in.eval(operand(form, 1))); count > 0; --count) {
        in.checkInterrupt();
        result = in.evalAll(behind(form, 2));
    }
    return result;
}

/// Gives a symbol its old value back.
class Restored {
  public:
    explicit Restored(Symbol* symbol) : symbol_(symbol), old_(symbol->value) {}
    ~Restored() { symbol_->value = std::move(old_); }
    Restored(const Restored&) = delete;
    Restored& operator=(const Restored&) = delete;

  private:
    Symbol* symbol_;
    Value old_;
};

Value foreachForm(Interpreter& in, const Cons* form) {
    checkOperands(in, form, 2, kAnyNumber);
    Symbol* const variable = symbolArg(in, operand(form, 1));
    const Value list = in.eval(operand(form, 2));
    listArg(in, list);
    const Restored restored(variable);
    Value result;
    for (const Value* rest = &list; rest->isCons(); rest = &rest->cons()->cdr) {
        in.checkInterrupt();
        variable->value = rest->cons()->car;
        result = in.evalAll(behind(form, 3));
    }
    return result;
}

Value setqForm(Interpreter& in, const Cons* form) {
    const Value* last = nullptr;
    for (const Value* rest = &form->cdr; rest->isCons(); rest = &rest->cons()->cdr) {
        Symbol* const symbol = symbolArg(in, rest->cons()->car);
        rest = &rest->cons()->cdr;
        if (!rest->isCons()) in.tooFew();
        symbol->value = in.eval(rest->cons()->car);
        last = &symbol->value;
    }
    return last ? *last : Value();
}

Value defunForm(Interpreter& in, const Cons* form) {
    checkOperands(in, form, 2, kAnyNumber);
    Symbol* const name = symbolArg(in, operand(form, 1));
    name->value = in.makeFunction(behind(form, 2), name);
    name->value.object()->place = form->place;
    return operand(form, 1);
}

Value defunqForm(Interpreter& in, const Cons* form) {
    checkOperands(in, form, 2, kAnyNumber);
    Symbol* const name = symbolArg(in, operand(form, 1));
    listArg(in, operand(form, 2));
    name->value = behind(form, 2);
    return operand(form, 1);
}

Value lambdaForm(Interpreter& in, const Cons* form) {
    checkOperands(in, form, 1, kAnyNumber);
    return in.makeFunction(form->cdr, nullptr);
}

constexpr Operands kRaw = Operands::Raw;
constexpr Operands kEvaluated = Operands::Evaluated;

const Builtin kRows[] = {
    {"quote", kRaw, quoteForm, "(quote expression)", "The expression as it stands, not evaluated."},
    {"function", kRaw, quoteForm, "(function symbol-or-lambda)", "The same as quote."},
    {"progn", kEvaluated, prognForm, "(progn [expression ...])",
     "Evaluates in order, gives the last value."},
    {"if", kEvaluated, ifForm, "(if test then [else])", "Evaluates one of two expressions."},
    {"cond", kRaw, condForm, "(cond [(test [expression ...]) ...])",
     "Evaluates the expressions of the first clause whose test is not nil."},
    {"and", kEvaluated, andForm, "(and [expression ...])", "T when no expression is nil."},
    {"or", kEvaluated, orForm, "(or [expression ...])", "T when an expression is not nil."},
    {"while", kEvaluated, whileForm, "(while test [expression ...])",
     "Repeats the expressions as long as the test is not nil."},
    {"repeat", kEvaluated, repeatForm, "(repeat count [expression ...])",
     "Repeats the expressions a number of times."},
    {"foreach", kRaw, foreachForm, "(foreach symbol list [expression ...])",
     "Evaluates the expressions for each element of a list."},
    {"setq", kRaw, setqForm, "(setq [symbol expression ...])", "Gives symbols their values."},
    {"defun", kRaw, defunForm, "(defun symbol ([parameter ...] [/ local ...]) [expression ...])",
     "Defines a function."},
    {"defun-q", kRaw, defunqForm,
     "(defun-q symbol ([parameter ...] [/ local ...]) [expression ...])",
     "Defines a function that stays a list."},
    {"lambda", kRaw, lambdaForm, "(lambda ([parameter ...] [/ local ...]) [expression ...])",
     "A function without a name."},
};

}  // namespace

std::span<const Builtin> controlBuiltins() {
    return kRows;
}

}  // namespace host::lisp
