/// The error list itself. It grows by one entry for each error until somebody clears it.
#include "kzerror/kzerror.h"

#include <new>

#include "trace.h"

namespace {

constexpr const char* kTraceSource = "SRC/kzerror";

kz_LnkList* entries = nullptr;

void destroyEntry(void* element) {
    KZ_TRACE(kz::kTraceEntry, kz::kTraceErrors, KZ_T("Entering kz_ErrorEntry_destroy..."));
    auto* entry = static_cast<kz::ErrorEntry*>(element);
    kz_Free(entry->help_file);
    kz_Free(entry->help_topic);
    kz_Free(entry->custom_text);
    kz_Free(entry);
}

/// A text that can't be copied is left out.
kz::ErrorEntry* createEntry(const kz_ErrorMsg* group, int code, const kz_Char* help_file,
                            const kz_Char* help_topic, const kz_Char* text) {
    // A fixed message: formatting would overwrite a text that lies in the shared buffer.
    KZ_TRACE(kz::kTraceEntry, kz::kTraceErrors, KZ_T("Entering kz_ErrorEntry_create..."));
    void* block = kz_Malloc(sizeof(kz::ErrorEntry));
    KZ_ASSERTION(block != nullptr);
    if (block == nullptr) return nullptr;
    return new (block) kz::ErrorEntry{group, code, kz_Str_dup(help_file), kz_Str_dup(help_topic),
                                      kz_Str_dup(text)};
}

kz_LnkPos submit(const kz_ErrorMsg* group, int code, const kz_Char* help_file,
                 const kz_Char* help_topic, const kz_Char* text) {
    if (entries == nullptr) entries = kz_LnkList_create();
    if (entries == nullptr) return nullptr;
    kz::ErrorEntry* entry = createEntry(group, code, help_file, help_topic, text);
    if (entry == nullptr) return nullptr;
    const kz_LnkPos place = kz_LnkList_insStart(entries, entry);
    if (place == nullptr) destroyEntry(entry);
    return place;
}

}  // namespace

kz_LnkList* kz::errorList() {
    return entries;
}

kz_LnkPos kz_Error_submit(const kz_ErrorMsg* group, int code, const kz_Char* helpFile,
                          const kz_Char* helpTopic) {
    return submit(group, code, helpFile, helpTopic, nullptr);
}

kz_LnkPos kz_Error_submitCustomError(const kz_Char* text, int code, const kz_Char* helpFile,
                                     const kz_Char* helpTopic) {
    return submit(nullptr, code, helpFile, helpTopic, text);
}

int kz_Error_isOk(void) {
    return kz_LnkList_length(entries) == 0;
}

void kz_Error_clearAll(void) {
    kz_LnkList_destroy(entries, destroyEntry);
    entries = nullptr;
}
