/// Symbols, types and the questions about them.
#include "lisp/builtin.h"
#include "lisp/interpreter.h"
#include "lisp/printer.h"

namespace host::lisp {

namespace {

const char* typeName(const Value& value) {
    if (value.isInteger()) return "INT";
    if (value.isReal()) return "REAL";
    switch (static_cast<Kind>(value.object()->kind)) {
        case Kind::Cons:
            return "LIST";
        case Kind::Text:
            return "STR";
        case Kind::Symbol:
            return "SYM";
        case Kind::Subr:
            return "SUBR";
        case Kind::UserFunction:
            return "USUBR";
        case Kind::External:
            return "EXRXSUBR";
        case Kind::EntityName:
            return "ENAME";
        case Kind::SelectionSet:
            return "PICKSET";
        case Kind::File:
            return "FILE";
        case Kind::CaughtError:
            break;
    }
    return "VL-CATCH-ALL-APPLY-ERROR";
}

Value typeOf(Interpreter& in, Args args) {
    if (args[0].isNil()) return Value();
    return Value::share(in.symbols.intern(typeName(args[0])));
}

Value setOf(Interpreter& in, Args args) {
    symbolArg(in, args[0])->value = args[1];
    return args[1];
}

Value isAtom(Interpreter& in, Args args) {
    return in.truth(!args[0].isCons());
}
Value isListp(Interpreter& in, Args args) {
    return in.truth(args[0].isList());
}
Value isConsp(Interpreter& in, Args args) {
    return in.truth(args[0].isCons());
}
Value isNull(Interpreter& in, Args args) {
    return in.truth(args[0].isNil());
}

Value isBound(Interpreter& in, Args args) {
    return in.truth(args[0].isSymbol() && !args[0].symbol()->value.isNil());
}

Value isSymbolp(Interpreter& in, Args args) {
    return in.truth(args[0].isSymbol());
}

Value symbolName(Interpreter& in, Args args) {
    return makeText(symbolArg(in, args[0])->name);
}
Value symbolValue(Interpreter& in, Args args) {
    return symbolArg(in, args[0])->value;
}

/// As a symbol for form 0, else as a text.
Value asAtom(Symbol* symbol, int32_t form) {
    return form == 0 ? Value::share(symbol) : makeText(symbol->name);
}

Value atomsFamily(Interpreter& in, Args args) {
    const int32_t form = integerArg(in, args[0]);
    ListBuilder atoms;
    if (args.size() == 1) {
        in.symbols.forEach([&](Symbol* symbol) {
            if (symbol->value) atoms.add(asAtom(symbol, form));
        });
        return atoms.take();
    }
    for (const Value* rest = &listArg(in, args[1]); rest->isCons(); rest = &rest->cons()->cdr) {
        Symbol* const symbol = in.symbols.find(nameArg(in, rest->cons()->car));
        atoms.add(symbol && symbol->value ? asAtom(symbol, form) : Value());
    }
    return atoms.take();
}

const Builtin kRows[] = {
    {"type", 1, 1, typeOf, "(type value)", "Type of a value as a symbol; nil for nil."},
    {"set", 2, 2, setOf, "(set symbol value)", "Gives a symbol its value; both are evaluated."},
    {"atom", 1, 1, isAtom, "(atom value)", "T for everything but a list with elements."},
    {"listp", 1, 1, isListp, "(listp value)", "T for a list and for nil."},
    {"vl-consp", 1, 1, isConsp, "(vl-consp value)", "T for a list with elements or a dotted pair."},
    {"null", 1, 1, isNull, "(null value)", "T for nil."},
    {"not", 1, 1, isNull, "(not value)", "T for nil."},
    {"boundp", 1, 1, isBound, "(boundp symbol)", "T for a symbol with a value other than nil."},
    {"vl-symbolp", 1, 1, isSymbolp, "(vl-symbolp value)", "T for a symbol."},
    {"vl-symbol-name", 1, 1, symbolName, "(vl-symbol-name symbol)", "Name of a symbol as a text."},
    {"vl-symbol-value", 1, 1, symbolValue, "(vl-symbol-value symbol)", "Value of a symbol."},
    {"atoms-family", 1, 2, atomsFamily, "(atoms-family form [names])",
     "Symbols with a value, as symbols (form 0) or texts (form 1), all or those of a list."},
};

}  // namespace

std::span<const Builtin> symbolBuiltins() {
    return kRows;
}

}  // namespace host::lisp
