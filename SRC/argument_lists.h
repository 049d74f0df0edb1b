/// Lists of what a caller names one by one.
#ifndef SRC_ARGUMENT_LISTS_H
#define SRC_ARGUMENT_LISTS_H

#include <cstdarg>

#include "kz/kz_platform.h"

namespace kz {

/// A new list of `first` and the arguments behind it up to NULL. The records stay the caller's when
/// it can't be made. @return NULL without memory
template <class Record>
kz_LnkList* listOfArguments(Record* first, std::va_list rest) {
    kz_LnkList* list = kz_LnkList_create();
    bool whole = list != nullptr;
    for (Record* record = first; whole && record != nullptr; record = va_arg(rest, Record*))
        whole = kz_LnkList_insEnd(list, record) != nullptr;
    if (whole) {
        kz_LnkList_start(list);
        return list;
    }
    kz_LnkList_destroy(list, nullptr);
    return nullptr;
}

}  // namespace kz

#endif
