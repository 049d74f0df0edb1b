/// List of strings in an array that doubles as it grows.
#include "kz_tls21an/strlist.h"

#include <cstring>
#include <string_view>

#include "kz_tls21an/memory.h"
#include "kz_tls21an/str.h"
#include "record_count.h"
#include "strlist_internal.h"

struct kz_StrList {
    kz_Char** entries;
    int length;
    int capacity;
    int current;  // -1 at the end
};

namespace {

bool reserveOne(kz_StrList& list) {
    if (list.length < list.capacity) return true;
    const int capacity = list.capacity == 0 ? 8 : 2 * list.capacity;
    const size_t size = sizeof(kz_Char*);
    auto** entries = static_cast<kz_Char**>(kz_Malloc(static_cast<size_t>(capacity) * size));
    if (!entries) return false;
    if (list.length > 0) {
        std::memcpy(entries, list.entries, static_cast<size_t>(list.length) * size);
    }
    kz_Free(list.entries);
    list.entries = entries;
    list.capacity = capacity;
    return true;
}

void moveEntries(kz_StrList& list, int from, int to) {
    const auto count = static_cast<size_t>(list.length - from);
    std::memmove(list.entries + to, list.entries + from, count * sizeof(kz_Char*));
}

int insertAt(kz_StrList& list, int index, std::u16string_view text) {
    if (!reserveOne(list)) return 0;
    kz_Char* copy = kz::copyText(text);
    if (!copy) return 0;
    moveEntries(list, index, index + 1);
    list.entries[index] = copy;
    ++list.length;
    if (list.current >= index) ++list.current;
    return 1;
}

/// Index behind the last entry that is not greater than `text`.
int sortedIndex(const kz_StrList& list, const kz_Char* text) {
    int low = 0;
    int high = list.length;
    while (low < high) {
        const int middle = low + (high - low) / 2;
        if (kz_Str_cmpi(list.entries[middle], text) <= 0) {
            low = middle + 1;
        } else {
            high = middle;
        }
    }
    return low;
}

int moveTo(kz_StrList* list, int index) {
    list->current = index < list->length ? index : -1;
    return list->current >= 0 ? 1 : 0;
}

}  // namespace

kz_Char* kz::copyText(std::u16string_view text) {
    auto* copy = static_cast<kz_Char*>(kz_Malloc((text.size() + 1) * sizeof(kz_Char)));
    if (!copy) return nullptr;
    if (!text.empty()) std::memcpy(copy, text.data(), text.size() * sizeof(kz_Char));
    copy[text.size()] = 0;
    return copy;
}

bool kz::appendEntry(kz_StrList* list, std::u16string_view text) {
    return insertAt(*list, list->length, text) == 1;
}

kz_StrList* kz_StrList_create(const kz_Char* first, const kz_Char* /*end*/) {
    auto* list = static_cast<kz_StrList*>(kz_Malloc(sizeof(kz_StrList)));
    if (!list) return nullptr;
    *list = {nullptr, 0, 0, -1};
    ++livingRecords;
    if (first && !kz_StrList_insEnd(list, first)) {
        kz_StrList_destroy(list);
        return nullptr;
    }
    return list;
}

int kz_StrList_destroy(kz_StrList* list) {
    if (!kz_StrList_delAll(list)) return 0;
    kz_Free(list->entries);
    kz_Free(list);
    --livingRecords;
    return 1;
}

kz_StrList* kz_StrList_copy(const kz_StrList* list) {
    kz_StrList* copy = list ? kz_StrList_create() : nullptr;
    if (!copy) return nullptr;
    for (int index = 0; index < list->length; ++index) {
        if (!kz_StrList_insEnd(copy, list->entries[index])) {
            kz_StrList_destroy(copy);
            return nullptr;
        }
    }
    kz_StrList_start(copy);
    return copy;
}

int kz_StrList_insEnd(kz_StrList* list, const kz_Char* text) {
    return list && text ? insertAt(*list, list->length, text) : 0;
}

int kz_StrList_insStart(kz_StrList* list, const kz_Char* text) {
    return list && text ? insertAt(*list, 0, text) : 0;
}

int kz_StrList_insSorted(kz_StrList* list, const kz_Char* text) {
    return list && text ? insertAt(*list, sortedIndex(*list, text), text) : 0;
}

int kz_StrList_delNth(kz_StrList* list, int n) {
    if (!kz_StrList_getNth(list, n)) return 0;
    kz_Free(list->entries[n]);
    moveEntries(*list, n + 1, n);
    --list->length;
    if (list->current > n) --list->current;
    if (list->current >= list->length) list->current = -1;
    return 1;
}

int kz_StrList_delAll(kz_StrList* list) {
    if (!list) return 0;
    for (int index = 0; index < list->length; ++index)
        kz_Free(list->entries[index]);
    list->length = 0;
    list->current = -1;
    return 1;
}

int kz_StrList_start(kz_StrList* list) {
    return list ? moveTo(list, 0) : 0;
}

int kz_StrList_next(kz_StrList* list) {
    return kz_StrList_eol(list) ? 0 : moveTo(list, list->current + 1);
}

int kz_StrList_eol(const kz_StrList* list) {
    return list && list->current >= 0 ? 0 : 1;
}

const kz_Char* kz_StrList_getCurr(const kz_StrList* list) {
    return list ? kz_StrList_getNth(list, list->current) : nullptr;
}

int kz_StrList_length(const kz_StrList* list) {
    return list ? list->length : 0;
}

const kz_Char* kz_StrList_getNth(const kz_StrList* list, int n) {
    return list && n >= 0 && n < list->length ? list->entries[n] : nullptr;
}

int kz_StrList_search(const kz_StrList* list, const kz_Char* text, int ignoreCase) {
    if (!text) return -1;
    const std::u16string_view wanted(text);
    for (int index = 0; index < kz_StrList_length(list); ++index) {
        const kz_Char* entry = list->entries[index];
        if (ignoreCase ? kz_Str_cmpi(entry, text) == 0 : wanted == entry) return index;
    }
    return -1;
}

kz_StrList* kz_StrList_fromDelimitedString(const kz_Char* text, const kz_Char* separators) {
    kz_StrList* list = text ? kz_StrList_create() : nullptr;
    if (!list) return nullptr;
    const std::u16string_view delimiters(separators ? separators : KZ_T(""));
    std::u16string_view rest(text);
    while (!rest.empty()) {
        const std::u16string_view piece = rest.substr(0, rest.find_first_of(delimiters));
        rest.remove_prefix(piece.size() < rest.size() ? piece.size() + 1 : rest.size());
        if (!piece.empty() && !kz::appendEntry(list, piece)) {
            kz_StrList_destroy(list);
            return nullptr;
        }
    }
    kz_StrList_start(list);
    return list;
}
