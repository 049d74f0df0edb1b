/// The evaluator: a tree walker with dynamic scope.
///
/// Variables are bound shallowly: a call swaps the new values of its parameters into the symbols'
/// cells and keeps the old ones in the argument slots on the value stack, where the swap back finds
/// them.
#ifndef HOST_LISP_INTERPRETER_H
#define HOST_LISP_INTERPRETER_H

#include <atomic>
#include <functional>
#include <optional>
#include <vector>

#include "host/lisp.h"
#include "lisp/backtrace.h"
#include "lisp/builtin.h"
#include "lisp/source_map.h"
#include "lisp/symbol_table.h"

namespace host::lisp {

/// A Lisp error on its way to the top level or to vl-catch-all-apply.
struct Failure {
    std::u16string message;
    Value expression;      ///< the form in which it happened; nil outside of any
    uint32_t place = 0;    ///< its number in the source map
    Value handler;         ///< an *error* function that waits for the bindings to be undone
    bool handled = false;  ///< an *error* function took it
};

class Interpreter {
  public:
    Interpreter();
    ~Interpreter();
    Interpreter(const Interpreter&) = delete;
    Interpreter& operator=(const Interpreter&) = delete;

    SymbolTable symbols;
    SourceMap sources;
    /// Values of symbols on the blackboard.
    std::unordered_map<Symbol*, Value> blackboard;
    /// True when the last native call gave no value at all, so that its nil is not shown.
    bool nativeGaveNothing = false;

    /// Value of a form.
    Value eval(const Value& form) {
        if (form.isCons()) return evalCall(form.cons());
        if (form.isSymbol()) return form.symbol()->value;
        return form;
    }
    /// Value of the last of several forms, nil for none.
    Value evalAll(const Value& forms);
    /// Reads and evaluates a whole text from a file or of a part of one. `afterEach` gets the value
    /// of each expression. @return value of the last expression
    Value evalText(std::u16string_view text, const LispSource& source,
                   const std::function<void(const Value&)>& afterEach = {});

    /// What can be called for a value in the place of a function: functions themselves, symbols
    /// that hold one, lists that define one.
    Value functionFor(const Value& designator);
    /// A function from (parameters body...).
    Value makeFunction(const Value& definition, Symbol* name);
    /// Calls a function. Its arguments are the topmost values of the value stack.
    Value call(const Value& function, Args args);

    [[noreturn]] void fail(std::u16string_view message);
    /// Error "bad argument type: TYPE VALUE".
    [[noreturn]] void badArgument(std::u16string_view type, const Value& value);
    /// Error "MESSAGE VALUE".
    [[noreturn]] void failWith(std::u16string_view message, const Value& value);
    /// Checks a number of arguments against a row or a function.
    void checkArity(size_t count, size_t minimum, int64_t maximum) {
        if (count < minimum) tooFew();
        if (maximum >= 0 && count > static_cast<size_t>(maximum)) tooMany();
    }
    [[noreturn]] void tooFew();
    [[noreturn]] void tooMany();

    /// The error that memory which does not suffice is.
    static Failure outOfSpace(const OutOfSpace& reason);

    /// The forms that were evaluated when the last error left for the top level, or for *error*.
    const Backtrace& errorTrace() const { return errorTrace_; }
    /// The forms under evaluation now.
    Backtrace presentTrace() const;
    /// True when errors are shown with their chain of forms.
    bool showsBacktrace = false;
    /// True while an *error* function runs.
    bool inHandler() const { return inHandler_; }

    /// Runs `*error*` for a failure that waits for it; called when all bindings are undone.
    void runDeferredHandler(Failure& failure);
    /// For evaluators that recurse over data: ends in an error before the stack does.
    void checkStack() {
        if (__builtin_frame_address(0) < stackLimit_) stackExhausted();
    }
    /// Ends in "Function cancelled" when an interrupt is waiting.
    void checkInterrupt() {
        if (interrupted.load(std::memory_order_relaxed)) cancel();
    }
    /// Set from a signal handler.
    static std::atomic<bool> interrupted;

    Value truth(bool condition) const { return condition ? t_ : Value(); }
    const Value& nothing() const { return nothing_; }

    /// Depth of vl-catch-all-apply; inside of it *error* is not called.
    class Catching {
      public:
        explicit Catching(Interpreter& in) : in_(in) { ++in_.catching_; }
        ~Catching() { --in_.catching_; }
        Catching(const Catching&) = delete;
        Catching& operator=(const Catching&) = delete;

      private:
        Interpreter& in_;
    };

    /// How *error* is to be called: true keeps the bindings of the failing functions for it.
    std::vector<bool> errorModes;

    /// Defines a symbol as a native function.
    void define(std::u16string_view name, int (*function)());
    /// Visits all rows of the language with the name of their family.
    static void forEachBuiltin(const std::function<void(const Builtin&, const char*)>& visit);

    uint32_t nextFunctionNumber() { return ++functionNumber_; }
    /// To be called before an evaluation from outside begins: measures the stack and forgets an
    /// interrupt.
    void beginTopLevel();

  private:
    friend class Arguments;

    /// One form under evaluation.
    struct Frame {
        Frame(Interpreter& in, const Cons* f) : interpreter(in), outer(in.frames_), form(f) {
            in.checkStack();
            in.checkInterrupt();
            in.frames_ = this;
        }
        ~Frame() { interpreter.frames_ = outer; }
        Frame(const Frame&) = delete;
        Frame& operator=(const Frame&) = delete;

        Interpreter& interpreter;
        const Frame* outer;
        const Cons* form;
    };
    class Binding;

    uint32_t placesOf(std::u16string_view text, const LispSource& source);
    Value evalWithin(const Value& form);
    Value evalCall(const Cons* form);
    Value callUser(const UserFunction& function, Args args);
    /// The same with a line on the message channel before and after it.
    Value callTraced(const UserFunction& function, Args args, Value* slots);
    Value callForm(const Builtin& row, const Symbol* name, Args args);
    Value callOther(const Cons* form);
    void defineBuiltin(const Builtin& row);
    uint32_t innermostPlace() const;
    /// What *error* is bound to when it is a function.
    Value errorHandler() const;
    void runHandler(const Value& handler, Failure& failure);
    [[noreturn]] void throwFailure(Failure failure);
    void measureStack();
    [[noreturn]] void stackExhausted();
    [[noreturn]] void cancel();

    Value t_, nothing_;
    Value* stack_;
    Value* top_;
    Value* stackEnd_;
    const Frame* frames_ = nullptr;
    const void* stackLimit_ = nullptr;
    int catching_ = 0;
    bool inHandler_ = false;
    Backtrace errorTrace_;
    uint32_t functionNumber_ = 0;
    size_t tracedDepth_ = 0;
};

/// Arguments of a call that is being prepared; they leave the value stack with this object.
class Arguments {
  public:
    explicit Arguments(Interpreter& in) : in_(in), base_(in.top_) {}
    ~Arguments() {
        while (in_.top_ != base_)
            std::destroy_at(--in_.top_);
    }
    Arguments(const Arguments&) = delete;
    Arguments& operator=(const Arguments&) = delete;

    void push(Value value) {
        if (in_.top_ == in_.stackEnd_) in_.stackExhausted();
        std::construct_at(in_.top_, std::move(value));
        ++in_.top_;
    }
    /// Evaluates forms and pushes their values.
    void evaluate(const Value& forms);
    Args all() const { return {base_, static_cast<size_t>(in_.top_ - base_)}; }

  private:
    Interpreter& in_;
    Value* base_;
};

/// Calls a function with values at hand.
template <class... Values>
Value callWith(Interpreter& in, const Value& function, const Values&... values) {
    Arguments arguments(in);
    (arguments.push(values), ...);
    return in.call(function, arguments.all());
}

}  // namespace host::lisp

#endif
