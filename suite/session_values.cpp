/// Session values: texts by name that live as long as the program.
#include <map>
#include <string>

#include "cadservice.h"
#include "kz_tls21an/text.h"

namespace {

std::map<std::u16string, std::u16string>& values() {
    static std::map<std::u16string, std::u16string> all;
    return all;
}

}  // namespace

const kz_Char* kz_Env_getSes(const kz_Char* name) {
    return suite::guarded<const kz_Char*>(nullptr, [&]() -> const kz_Char* {
        if (name == nullptr) return nullptr;
        const auto found = values().find(kz::toUpper(name));
        return found == values().end() ? nullptr : found->second.c_str();
    });
}

int kz_Env_setSes(const kz_Char* name, const kz_Char* value) {
    return suite::guarded(0, [&] {
        if (name == nullptr || *name == 0) return 0;
        const std::u16string key = kz::toUpper(name);
        if (value == nullptr || *value == 0) {
            values().erase(key);
        } else {
            // A value may be set to the text that was lent out for it.
            std::u16string copy = value;
            values().insert_or_assign(key, std::move(copy));
        }
        return 1;
    });
}

void kz_Env_resetSes(void) {
    values().clear();
}
