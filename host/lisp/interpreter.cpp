/// The evaluator: forms, calls, bindings and errors.
#include "lisp/interpreter.h"

#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <new>

#include "host/output.h"
#include "kz_tls21an/text.h"
#include "lisp/native_call.h"
#include "lisp/printer.h"
#include "lisp/reader.h"

namespace host::lisp {

namespace {

constexpr size_t kValueStackSize = size_t{1} << 22;
constexpr size_t kCulpritLimit = 1000;
/// What the evaluator leaves of the machine's stack: room for native functions, for undoing the
/// calls, and for an *error* function, which gets half of it.
constexpr size_t kStackReserve = size_t{512} * 1024;
/// What the evaluator uses of the machine's stack at most. The system keeps more than this free
/// below the stack of the main thread, whatever limit the program was started with.
constexpr size_t kLargestStack = size_t{64} * 1024 * 1024;

struct Family {
    const char* name;
    std::span<const Builtin> (*rows)();
};
const Family kFamilies[] = {
    {"control", controlBuiltins},   {"function", functionBuiltins},
    {"symbol", symbolBuiltins},     {"number", numberBuiltins},
    {"list", listBuiltins},         {"sequence", sequenceBuiltins},
    {"text", textBuiltins},         {"conversion", conversionBuiltins},
    {"print", printBuiltins},       {"file", fileBuiltins},
    {"geometry", geometryBuiltins}, {"entity", entityBuiltins},
    {"table", tableBuiltins},       {"selection", selectionBuiltins},
    {"variable", variableBuiltins}, {"input", inputBuiltins},
    {"path", pathBuiltins},         {"environment", environmentBuiltins},
    {"screen", screenBuiltins},     {"module", moduleBuiltins},
    {"view", viewBuiltins},         {"dialog", dialogBuiltins},
    {"curve", curveBuiltins},       {"ldata", ldataBuiltins},
    {"help", helpBuiltins},
};

bool isFunction(const Value& value) {
    return value.is(Kind::UserFunction) || value.is(Kind::Subr) || value.is(Kind::External);
}

/// Lets the main thread's stack grow as far as the evaluator uses it, so that deep recursion works.
void raiseStackLimit() {
    rlimit limit{};
    if (::getrlimit(RLIMIT_STACK, &limit) != 0 || limit.rlim_cur >= kLargestStack) return;
    limit.rlim_cur = std::min<rlim_t>(limit.rlim_max, kLargestStack);
    ::setrlimit(RLIMIT_STACK, &limit);
}

/// True for a form that calls a native function itself.
bool callsNative(const Value& form) {
    return form.isCons() && form.cons()->car.isSymbol() &&
           form.cons()->car.symbol()->value.is(Kind::External);
}

}  // namespace

std::atomic<bool> Interpreter::interrupted = false;

/// Swaps values into the cells of a function's variables, and the old ones back at the end. The
/// last variable goes first: of two with one name the first one counts.
class Interpreter::Binding {
  public:
    Binding(const UserFunction& function, Value* slots)
        : variables_(function.variables.get()),
          count_(function.parameters + function.locals),
          slots_(slots) {
        for (size_t i = count_; i-- > 0;)
            variables_[i]->value.swap(slots_[i]);
    }
    ~Binding() {
        for (size_t i = 0; i < count_; ++i)
            variables_[i]->value.swap(slots_[i]);
    }
    Binding(const Binding&) = delete;
    Binding& operator=(const Binding&) = delete;

  private:
    Symbol* const* variables_;
    size_t count_;
    Value* slots_;
};

Interpreter::Interpreter()
    : t_(Value::share(symbols.t)),
      nothing_(Value::share(symbols.nothing)),
      // The system maps pages of so large a block only when they are used.
      stack_(static_cast<Value*>(::operator new(kValueStackSize * sizeof(Value)))),
      top_(stack_),
      stackEnd_(stack_ + kValueStackSize) {
    symbols.t->value = t_;
    symbols.nothing->value = nothing_;
    symbols.intern("PI")->value = Value::real(3.14159265358979323846);
    symbols.intern("PAUSE")->value = makeText(u"\\");
    forEachBuiltin([this](const Builtin& row, const char*) { defineBuiltin(row); });
}

Interpreter::~Interpreter() {
    symbols.clearValues();
    ::operator delete(stack_);
}

void Interpreter::forEachBuiltin(const std::function<void(const Builtin&, const char*)>& visit) {
    for (const Family& family : kFamilies) {
        for (const Builtin& row : family.rows())
            visit(row, family.name);
    }
}

void Interpreter::defineBuiltin(const Builtin& row) {
    Symbol* symbol = symbols.intern(row.name);
    symbol->value = Value::adopt(new Subr(&row, symbol, nextFunctionNumber()));
}

void Interpreter::define(std::u16string_view name, int (*function)()) {
    Symbol* symbol = symbols.intern(name);
    symbol->value = Value::adopt(new External(function, symbol, nextFunctionNumber()));
}

Value Interpreter::evalAll(const Value& forms) {
    Value result;
    for (const Value* rest = &forms; rest->isCons(); rest = &rest->cons()->cdr) {
        result = eval(rest->cons()->car);
    }
    return result;
}

/// Number of the line before a text, for the places of its lists; 0 for none.
uint32_t Interpreter::placesOf(std::u16string_view text, const LispSource& source) {
    if (source.name.empty()) return 0;
    const auto before = static_cast<uint32_t>(source.firstLine - 1);
    auto lines = static_cast<uint32_t>(std::count(text.begin(), text.end(), u'\n')) + 1;
    // What comes part by part gets numbers in ever larger lots.
    if (before > 0) lines = std::bit_ceil(before + lines);
    const uint32_t base = sources.enter(source.name, lines);
    return base == 0 ? 0 : base + before;
}

Value Interpreter::evalText(std::u16string_view text, const LispSource& source,
                            const std::function<void(const Value&)>& afterEach) {
    const uint32_t base = placesOf(text, source);
    Reader reader(symbols, text, base);
    Value datum, result;
    for (;;) {
        const Reader::Status status = reader.read(datum);
        if (status == Reader::Status::End) return result;
        if (status == Reader::Status::Failed) {
            Failure failure;
            failure.message = reader.error();
            failure.place = base == 0 ? 0 : base + static_cast<uint32_t>(reader.errorLine());
            throwFailure(std::move(failure));
        }
        nativeGaveNothing = false;
        result = evalWithin(datum);
        nativeGaveNothing = nativeGaveNothing && callsNative(datum);
        if (afterEach) afterEach(result);
    }
}

/// Value of a form; memory that does not suffice ends in an error as all others do, once what the
/// form held has been given back.
Value Interpreter::evalWithin(const Value& form) {
    try {
        return eval(form);
    } catch (const OutOfSpace& reason) {
        Failure failure = outOfSpace(reason);
        failure.place = form.isCons() ? form.cons()->place : 0;
        if (catching_ == 0 && !inHandler_) {
            failure.handler = errorHandler();
            errorTrace_ = presentTrace();  // the form's own frames are gone
        }
        throw Failure(failure);
    }
}

Failure Interpreter::outOfSpace(const OutOfSpace& reason) {
    Failure failure;
    failure.message = kz::toUtf16(reason.what());
    return failure;
}

Value Interpreter::evalCall(const Cons* form) {
    const Frame frame(*this, form);
    const Value& head = form->car;
    if (!head.isSymbol()) return callOther(form);
    const Value& cell = head.symbol()->value;
    if (cell.is(Kind::Subr)) {
        const Builtin& row = *cell.as<Subr>()->row;
        if (row.form) return row.form(*this, form);
        Arguments arguments(*this);
        arguments.evaluate(form->cdr);
        const Args args = arguments.all();
        checkArity(args.size(), static_cast<size_t>(row.minimum), row.maximum);
        return row.function(*this, args);
    }
    if (!isFunction(cell)) return callOther(form);
    const Value function = cell;  // its symbol may get another value while it runs
    Arguments arguments(*this);
    arguments.evaluate(form->cdr);
    return call(function, arguments.all());
}

/// Calls of what is no symbol with a function in it: lambda forms, functions as lists, and
/// mistakes.
Value Interpreter::callOther(const Cons* form) {
    const Value& head = form->car;
    const bool evaluated = head.isCons() && !(head.cons()->car.isSymbol() &&
                                              head.cons()->car.symbol() == symbols.lambda);
    const Value function = functionFor(evaluated ? eval(head) : head);
    Arguments arguments(*this);
    arguments.evaluate(form->cdr);
    return call(function, arguments.all());
}

void Arguments::evaluate(const Value& forms) {
    const Value* rest = &forms;
    for (; rest->isCons(); rest = &rest->cons()->cdr)
        push(in_.eval(rest->cons()->car));
    if (!rest->isNil()) in_.fail(u"syntax error");
}

Value Interpreter::call(const Value& function, Args args) {
    if (function.is(Kind::UserFunction)) return callUser(*function.as<UserFunction>(), args);
    if (function.is(Kind::External)) return callNative(*this, *function.as<External>(), args);
    const Subr& subr = *function.as<Subr>();
    if (subr.row->form) return callForm(*subr.row, subr.name, args);
    checkArity(args.size(), static_cast<size_t>(subr.row->minimum), subr.row->maximum);
    return subr.row->function(*this, args);
}

Value Interpreter::callUser(const UserFunction& function, Args args) {
    checkArity(args.size(), function.parameters, function.parameters);
    checkStack();
    Arguments locals(*this);  // they stand right behind the parameters
    for (uint32_t i = 0; i < function.locals; ++i)
        locals.push(Value());
    Value* const slots = top_ - (function.parameters + function.locals);
    if (function.traced) return callTraced(function, args, slots);
    const Binding binding(function, slots);
    return evalAll(function.body);
}

Value Interpreter::callTraced(const UserFunction& function, Args args, Value* slots) {
    const auto show = [this](std::u16string_view text, const Value& value) {
        std::u16string line(atLineStart(Channel::Message) ? u"" : u"\n");
        line.append(2 * tracedDepth_, u' ').append(text).append(u" ");
        write(Channel::Message, line.append(printed(value, PrintForm::Readable)).append(u"\n"));
    };
    ListBuilder call;
    if (function.name) call.add(Value::share(function.name));
    for (const Value& arg : args)
        call.add(arg);
    show(u"Entering", call.take());
    struct Deeper {
        explicit Deeper(size_t& d) : depth(++d) {}
        ~Deeper() { --depth; }
        size_t& depth;
    };
    Value result;
    {
        const Deeper deeper(tracedDepth_);
        const Binding binding(function, slots);
        result = evalAll(function.body);
    }
    show(u"Result: ", result);
    return result;
}

/// A special form that is called with values, as by apply.
Value Interpreter::callForm(const Builtin& row, const Symbol* name, Args args) {
    ListBuilder form;
    form.add(Value::share(const_cast<Symbol*>(name)));
    for (const Value& arg : args) {
        const bool quoted = row.operands == Operands::Evaluated && (arg.isCons() || arg.isSymbol());
        form.add(quoted ? makeList(Value::share(symbols.quote), arg) : arg);
    }
    const Value whole = form.take();
    return row.form(*this, whole.cons());
}

Value Interpreter::functionFor(const Value& designator) {
    const bool named = designator.isSymbol();
    const Value& candidate = named ? designator.symbol()->value : designator;
    if (isFunction(candidate)) return candidate;
    if (named && candidate.isNil()) {
        fail(u"no function definition: " + designator.symbol()->name);
    }
    if (candidate.isCons()) {
        const Cons* list = candidate.cons();
        if (list->car.isSymbol() && list->car.symbol() == symbols.lambda) {
            return makeFunction(list->cdr, nullptr);
        }
        if (list->car.isList()) return makeFunction(candidate, nullptr);
    }
    failWith(u"bad function:", candidate);
}

Value Interpreter::makeFunction(const Value& definition, Symbol* name) {
    if (!definition.isCons()) tooFew();
    const Value& list = definition.cons()->car;
    const int32_t length = listLength(list);
    if (length < 0) failWith(u"bad formal argument list:", list);
    auto* function = new UserFunction;
    Value result = Value::adopt(function);
    function->variables = std::make_unique<Symbol*[]>(static_cast<size_t>(length));
    bool afterSlash = false;
    uint32_t count = 0;
    for (const Value* rest = &list; rest->isCons(); rest = &rest->cons()->cdr) {
        const Value& variable = rest->cons()->car;
        if (!variable.isSymbol()) failWith(u"bad formal argument list:", list);
        if (variable.symbol() == symbols.slash) {
            afterSlash = true;
            continue;
        }
        function->variables[count++] = variable.symbol();
        ++(afterSlash ? function->locals : function->parameters);
    }
    function->parameterList = list;
    function->body = definition.cons()->cdr;
    function->name = name;
    function->number = nextFunctionNumber();
    return result;
}

void Interpreter::fail(std::u16string_view message) {
    Failure failure;
    failure.message = message;
    if (frames_) failure.expression = Value::share(const_cast<Cons*>(frames_->form));
    failure.place = innermostPlace();
    throwFailure(std::move(failure));
}

void Interpreter::badArgument(std::u16string_view type, const Value& value) {
    failWith(std::u16string(u"bad argument type: ").append(type), value);
}

void Interpreter::failWith(std::u16string_view message, const Value& value) {
    std::u16string text(message);
    text.push_back(u' ');
    print(text, value, PrintForm::Readable, kCulpritLimit);
    fail(text);
}

void Interpreter::tooFew() {
    fail(u"too few arguments");
}
void Interpreter::tooMany() {
    fail(u"too many arguments");
}
void Interpreter::stackExhausted() {
    fail(u"internal stack limit reached");
}

void Interpreter::cancel() {
    interrupted.store(false, std::memory_order_relaxed);
    fail(u"Function cancelled");
}

uint32_t Interpreter::innermostPlace() const {
    for (const Frame* frame = frames_; frame; frame = frame->outer) {
        if (frame->form->place != 0) return frame->form->place;
    }
    return 0;
}

Value Interpreter::errorHandler() const {
    const Value& handler = symbols.error->value;
    const bool listed =
        handler.isCons() &&
        (handler.cons()->car.isList() || handler.cons()->car.same(Value::share(symbols.lambda)));
    return isFunction(handler) || listed ? handler : Value();
}

/// The default is to call *error* while the bindings of the failing functions still stand; the
/// other mode leaves it to the top level.
void Interpreter::throwFailure(Failure failure) {
    if (catching_ == 0 && !inHandler_) {
        errorTrace_ = presentTrace();
        Value handler = errorHandler();
        if (!handler.isNil() && (errorModes.empty() || errorModes.back())) {
            runHandler(handler, failure);
        } else {
            failure.handler = std::move(handler);
        }
    }
    throw failure;
}

Backtrace Interpreter::presentTrace() const {
    Backtrace trace;
    for (const Frame* frame = frames_; frame; frame = frame->outer)
        trace.add(frame->form);
    return trace;
}

void Interpreter::runDeferredHandler(Failure& failure) {
    if (!failure.handler.isNil()) runHandler(failure.handler, failure);
}

void Interpreter::runHandler(const Value& handler, Failure& failure) {
    const void* const limit = stackLimit_;
    stackLimit_ = static_cast<const char*>(limit) - kStackReserve / 2;
    inHandler_ = true;
    try {
        callWith(*this, functionFor(handler), makeText(failure.message));
    } catch (const Failure& second) {
        std::u16string text(atLineStart(Channel::Message) ? u"" : u"\n");
        text.append(u"; error: An error has occurred inside the *error* function: ");
        write(Channel::Message, text.append(second.message).append(u"\n"));
    }
    inHandler_ = false;
    stackLimit_ = limit;
    failure.handled = true;
    failure.handler = Value();
}

void Interpreter::beginTopLevel() {
    if (frames_) return;  // called from inside of an evaluation
    interrupted.store(false, std::memory_order_relaxed);
    nativeGaveNothing = false;
    inHandler_ = false;
    if (!stackLimit_) measureStack();
}

void Interpreter::measureStack() {
    if (::getpid() == ::gettid()) raiseStackLimit();
    pthread_attr_t attributes;
    void* lowest = nullptr;
    size_t size = 0;
    if (pthread_getattr_np(pthread_self(), &attributes) != 0) return;
    pthread_attr_getstack(&attributes, &lowest, &size);
    pthread_attr_destroy(&attributes);
    const char* const highest = static_cast<char*>(lowest) + size;
    stackLimit_ = highest - std::min(size, kLargestStack) + kStackReserve;
}

}  // namespace host::lisp
