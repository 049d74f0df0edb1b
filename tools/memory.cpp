/// The suite's heap over the runtime's, with a shortage on demand for tests.
#include "kz_tls21an/memory.h"

#include <cstdlib>

#include "record_count.h"

int64_t livingRecords = 0;

namespace {

/// Calls up to and with the first one that fails; 0 without a shortage. It stays at 1 once reached.
size_t callsToShortage = 0;

bool isShort() {
    if (callsToShortage == 0) return false;
    if (callsToShortage == 1) return true;
    --callsToShortage;
    return false;
}

}  // namespace

void* kz_Malloc(size_t size) {
    return isShort() ? nullptr : std::malloc(size ? size : 1);
}

void kz_Free(void* block) {
    std::free(block);
}

void kz_Malloc_failFrom(size_t count) {
    callsToShortage = count;
}

int64_t kz_Record_count(void) {
    return livingRecords;
}
