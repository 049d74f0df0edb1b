/// The rows that register functions of the language, and the readers of their arguments.
///
/// Each builtins_<family>.cpp ends in one table of rows. A row is all there is to know about a
/// function: its name, how many arguments it takes, what runs, and what the manual says.
#ifndef HOST_LISP_BUILTIN_H
#define HOST_LISP_BUILTIN_H

#include <span>

#include "lisp/value.h"

namespace host::lisp {

class Interpreter;

/// Evaluated arguments; they live on the value stack for the time of the call.
using Args = std::span<const Value>;

/// As the greatest number of arguments: there is none.
constexpr int kAnyNumber = -1;

/// What a special form does with its operands. apply and mapcar hand values over: a form that
/// evaluates its operands must find them quoted.
enum class Operands { Evaluated, Raw };

struct Builtin {
    using Function = Value (*)(Interpreter&, Args);
    using Form = Value (*)(Interpreter&, const Cons*);

    /// A function: its arguments are evaluated and counted before it runs.
    constexpr Builtin(const char* n, int least, int most, Function f, const char* u, const char* h)
        : name(n), minimum(least), maximum(most), function(f), usage(u), help(h) {}
    /// A special form: it gets the whole form and evaluates what it wants.
    constexpr Builtin(const char* n, Operands o, Form f, const char* u, const char* h)
        : name(n), form(f), operands(o), usage(u), help(h) {}

    const char* name;
    int minimum = 0, maximum = kAnyNumber;
    Function function = nullptr;
    Form form = nullptr;
    Operands operands = Operands::Evaluated;
    const char* usage;  ///< the form with its arguments, optional ones in brackets
    const char* help;   ///< one sentence
};

/// Arguments as the C++ type that a function needs. Anything else ends in a "bad argument type"
/// error.
int32_t integerArg(Interpreter& in, const Value& value);
double numberArg(Interpreter& in, const Value& value);
std::u16string_view textArg(Interpreter& in, const Value& value);
Symbol* symbolArg(Interpreter& in, const Value& value);
/// nil or a list.
const Value& listArg(Interpreter& in, const Value& value);
EntityName* entityArg(Interpreter& in, const Value& value);
SelectionSet* setArg(Interpreter& in, const Value& value);
File* fileArg(Interpreter& in, const Value& value);
/// A text or the name of a symbol.
std::u16string_view nameArg(Interpreter& in, const Value& value);

/// A list of two or three numbers as a point, with z 0 where there is none. @return false for
/// anything else
bool pointOf(const Value& value, ads_point out);

/// The argument at `index`, nil where fewer were given.
inline const Value& optionalArg(Args args, size_t index) {
    static const Value nothing;
    return index < args.size() ? args[index] : nothing;
}

std::span<const Builtin> controlBuiltins();
std::span<const Builtin> functionBuiltins();
std::span<const Builtin> symbolBuiltins();
std::span<const Builtin> numberBuiltins();
std::span<const Builtin> listBuiltins();
std::span<const Builtin> sequenceBuiltins();
std::span<const Builtin> textBuiltins();
std::span<const Builtin> conversionBuiltins();
std::span<const Builtin> printBuiltins();
std::span<const Builtin> fileBuiltins();
std::span<const Builtin> geometryBuiltins();
std::span<const Builtin> entityBuiltins();
std::span<const Builtin> tableBuiltins();
std::span<const Builtin> selectionBuiltins();
std::span<const Builtin> variableBuiltins();
std::span<const Builtin> inputBuiltins();
std::span<const Builtin> pathBuiltins();
std::span<const Builtin> environmentBuiltins();
std::span<const Builtin> screenBuiltins();
std::span<const Builtin> viewBuiltins();
std::span<const Builtin> dialogBuiltins();
std::span<const Builtin> ldataBuiltins();
std::span<const Builtin> curveBuiltins();
std::span<const Builtin> moduleBuiltins();
std::span<const Builtin> helpBuiltins();

}  // namespace host::lisp

#endif
