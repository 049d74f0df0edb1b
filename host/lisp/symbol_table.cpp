/// Interning of symbols.
#include "lisp/symbol_table.h"

#include "kz_tls21an/text.h"

namespace host::lisp {

namespace {

char16_t upper(char16_t unit) {
    if (unit < 0x80) {
        return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - 0x20) : unit;
    }
    return kz::upperUnit(unit);
}

}  // namespace

// FNV-1a: names are short.
size_t SymbolTable::Hash::operator()(std::u16string_view name) const {
    uint64_t hash = 14695981039346656037u;
    for (const char16_t unit : name)
        hash = (hash ^ unit) * 1099511628211u;
    return static_cast<size_t>(hash);
}

SymbolTable::SymbolTable()
    : t(intern("T")),
      quote(intern("QUOTE")),
      lambda(intern("LAMBDA")),
      slash(intern("/")),
      error(intern("*ERROR*")),
      nothing(new Symbol(u"")) {}

SymbolTable::~SymbolTable() {
    clearValues();
    for (const auto& entry : symbols_)
        Value::adopt(entry.second);
    Value::adopt(nothing);
}

Symbol* SymbolTable::intern(std::u16string_view name) {
    std::u16string folded(name);
    for (char16_t& unit : folded)
        unit = upper(unit);
    const auto known = symbols_.find(folded);
    if (known != symbols_.end()) return known->second;
    auto* symbol = new Symbol(folded);
    symbols_.emplace(symbol->name, symbol);
    return symbol;
}

Symbol* SymbolTable::intern(const char* asciiName) {
    return intern(kz::toUtf16(asciiName));
}

Symbol* SymbolTable::find(std::u16string_view name) const {
    const auto known = symbols_.find(kz::toUpper(name));
    return known == symbols_.end() ? nullptr : known->second;
}

void SymbolTable::clearValues() {
    nothing->value = Value();
    for (const auto& entry : symbols_)
        entry.second->value = Value();
}

}  // namespace host::lisp
