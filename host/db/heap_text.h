/// Texts that the platform hands to its callers, who free them.
#ifndef HOST_DB_HEAP_TEXT_H
#define HOST_DB_HEAP_TEXT_H

#include <cstring>
#include <string_view>

#include "acad/adesk.h"
#include "kz_tls21an/memory.h"

namespace host {

/// A copy on the heap of the suite; NULL without memory.
inline ACHAR* heapText(std::u16string_view text) {
    auto* copy = static_cast<ACHAR*>(kz_Malloc((text.size() + 1) * sizeof(ACHAR)));
    if (copy == nullptr) return nullptr;
    std::memcpy(copy, text.data(), text.size() * sizeof(ACHAR));
    copy[text.size()] = 0;
    return copy;
}

}  // namespace host

#endif
