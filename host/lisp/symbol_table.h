/// The symbols of the language by name, and those that the evaluator itself has to know.
#ifndef HOST_LISP_SYMBOL_TABLE_H
#define HOST_LISP_SYMBOL_TABLE_H

#include <unordered_map>

#include "lisp/value.h"

namespace host::lisp {

class SymbolTable {
    struct Hash {
        size_t operator()(std::u16string_view name) const;
    };
    // Stands first because the members below are interned in it.
    std::unordered_map<std::u16string_view, Symbol*, Hash> symbols_;

  public:
    SymbolTable();
    ~SymbolTable();
    SymbolTable(const SymbolTable&) = delete;
    SymbolTable& operator=(const SymbolTable&) = delete;

    /// The symbol of this name in upper case. It lives as long as the table.
    Symbol* intern(std::u16string_view name);
    /// The same for a name from the program text.
    Symbol* intern(const char* asciiName);
    /// The symbol when it is known already, else NULL.
    Symbol* find(std::u16string_view name) const;
    /// Empties every value cell.
    void clearValues();
    template <class Visitor>
    void forEach(Visitor visit) const {
        for (const auto& entry : symbols_)
            visit(entry.second);
    }

    Symbol* const t;
    Symbol* const quote;
    Symbol* const lambda;
    Symbol* const slash;
    Symbol* const error;
    /// What (princ) gives: a symbol whose name is empty. Nothing is shown for it.
    Symbol* const nothing;
};

}  // namespace host::lisp

#endif
