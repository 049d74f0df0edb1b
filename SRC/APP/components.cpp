/// The component table: a chain of records, newest first.
#include <new>
#include <string_view>

#include "kz/kz_services.h"

namespace {

constexpr size_t kNameSize = 260;

struct Component {
    kz_Char name[kNameSize];
    void* value;
    Component* next;
};

Component* components = nullptr;

}  // namespace

void TableInitialize(void) {
    components = nullptr;
}

void AddComponent(void* value, const kz_Char* name) {
    void* block = kz_Malloc(sizeof(Component));
    if (block == nullptr) return;
    auto* added = new (block) Component{{}, value, components};
    kz_Str_ncpy(added->name, name, kNameSize - 1);
    components = added;
}

void GetComponent(void** out, const kz_Char* name) {
    if (out == nullptr) return;
    // All bits set is the interface's word for "not there".
    *out = reinterpret_cast<void*>(intptr_t{-1});  // NOLINT(performance-no-int-to-ptr)
    if (name == nullptr) return;
    using Name = std::basic_string_view<kz_Char>;
    for (const Component* component = components; component != nullptr;
         component = component->next) {
        if (Name(component->name) != Name(name)) continue;
        *out = component->value;
        return;
    }
}

void TableFinalize(void) {
    while (components != nullptr) {
        Component* first = components;
        components = first->next;
        kz_Free(first);
    }
}
