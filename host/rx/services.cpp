/// The service registry. Modules and callers meet here by name only, so nothing is known about the
/// addresses but that they aren't NULL.
#include <string>
#include <unordered_map>

#include "acad/rx.h"

namespace {

using Text = std::basic_string<ACHAR>;
using Symbols = std::unordered_map<Text, void*>;

std::unordered_map<Text, Symbols>& services() {
    static std::unordered_map<Text, Symbols> registered;
    return registered;
}

bool isEmpty(const ACHAR* name) {
    return name == nullptr || *name == 0;
}

/// Symbols of a registered service; NULL for another one.
Symbols* findService(const ACHAR* name) {
    if (isEmpty(name)) return nullptr;
    const auto found = services().find(name);
    return found != services().end() ? &found->second : nullptr;
}

}  // namespace

bool acrxServiceIsRegistered(const ACHAR* service) {
    return findService(service) != nullptr;
}

void* acrxGetServiceSymbolAddr(const ACHAR* service, const ACHAR* symbol) {
    const Symbols* symbols = findService(service);
    if (symbols == nullptr || isEmpty(symbol)) return nullptr;
    const auto found = symbols->find(symbol);
    return found != symbols->end() ? found->second : nullptr;
}

bool acrxRegisterService(const ACHAR* service) {
    return !isEmpty(service) && services().try_emplace(service).second;
}

bool acrxRegisterSymbol(const ACHAR* service, const ACHAR* symbol, void* address) {
    Symbols* symbols = findService(service);
    if (symbols == nullptr || isEmpty(symbol) || address == nullptr) return false;
    symbols->insert_or_assign(symbol, address);
    return true;
}

bool acrxUnregisterService(const ACHAR* service) {
    return !isEmpty(service) && services().erase(service) > 0;
}
