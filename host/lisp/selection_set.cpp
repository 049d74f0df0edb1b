/// Selection sets as Lisp values.
#include "lisp/selection_set.h"

#include <map>
#include <utility>

namespace host::lisp {

namespace {

using Key = std::pair<int64_t, int64_t>;

// Never destroyed: objects may be freed after this file's statics.
std::map<Key, SelectionSet*>& livingSets() {
    static auto& sets = *new std::map<Key, SelectionSet*>;
    return sets;
}

Key keyOf(const ads_name name) {
    return {name[0], name[1]};
}

}  // namespace

SelectionSet::~SelectionSet() {
    livingSets().erase(keyOf(name));
    acedSSFree(name);
}

Value selectionSetValue(const ads_name name) {
    static uint32_t lastNumber = 0;
    const auto known = livingSets().find(keyOf(name));
    if (known != livingSets().end()) return Value::share(known->second);
    auto* set = new SelectionSet(name, ++lastNumber);
    livingSets().emplace(keyOf(name), set);
    return Value::adopt(set);
}

}  // namespace host::lisp
