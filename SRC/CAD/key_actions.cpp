/// Keywords with their actions: lists of the tools library whose elements are key-action nodes.
#include "guards.h"
#include "kz/kz_input.h"
#include "trace.h"

namespace {

constexpr const char* kTraceSource = "SRC/CAD";

/// Sizes of a keyword and of all keywords with the blanks behind them, with the terminator.
constexpr size_t kKeySize = 256;
constexpr size_t kKeyStringSize = 512;

void destroyElement(void* element) {
    kz_KeyActionsNode_destroy(static_cast<kz_KeyActionsNode*>(element));
}

/// Stands the list on its first node that the test accepts. @return the node; NULL at the end
template <class Accepts>
kz_KeyActionsNode* seek(kz_KeyActionsList* list, Accepts accepts) {
    for (kz_LnkList_start(list); kz_LnkList_eol(list) == 0; kz_LnkList_next(list)) {
        kz_KeyActionsNode* node = kz_KeyActionsList_getCurr(list);
        if (accepts(node)) return node;
    }
    return nullptr;
}

int execute(const kz_KeyActionsNode* node, void* result) {
    return node->func != nullptr ? node->func(result, node->args) : node->status;
}

kz_Char* refuseKeys() {
    KZ_TRACE(kz::kTraceArgument, kz::kTraceCad, KZ_T("The keywords are too long."));
    return nullptr;
}

}  // namespace

kz_KeyActionsList* kz_KeyActionsList_create(void) {
    return kz_LnkList_create();
}

kz_KeyActionsNode* kz_KeyActionsNode_create(const kz_Char* key, kz_KeyActionFunc func, void* args,
                                            int status, int isDefault) {
    kz::OwnedText copy(kz_Str_dup(key));
    if (copy == nullptr) return nullptr;
    auto* node = static_cast<kz_KeyActionsNode*>(kz_Malloc(sizeof(kz_KeyActionsNode)));
    if (node != nullptr) *node = {copy.release(), func, args, status, isDefault != 0 ? 1 : 0};
    return node;
}

void kz_KeyActionsNode_destroy(kz_KeyActionsNode* node) {
    if (node == nullptr) return;
    kz_Free(node->key);
    kz_Free(node);
}

int kz_KeyActionsList_append(kz_KeyActionsList* list, const kz_Char* key, kz_KeyActionFunc func,
                             void* args, int status, int isDefault) {
    if (list == nullptr) return 0;
    kz_KeyActionsNode* node = kz_KeyActionsNode_create(key, func, args, status, isDefault);
    if (node == nullptr) return 0;
    if (kz_LnkList_insEnd(list, node) != nullptr) return 1;
    kz_KeyActionsNode_destroy(node);
    return 0;
}

kz_KeyActionsList* kz_KeyActionsList_copy(kz_KeyActionsList* list) {
    kz_KeyActionsList* copy = list != nullptr ? kz_KeyActionsList_create() : nullptr;
    if (copy == nullptr) return nullptr;
    const kz_KeyActionsNode* lost = seek(list, [copy](const kz_KeyActionsNode* node) {
        return kz_KeyActionsList_append(copy, node->key, node->func, node->args, node->status,
                                        node->isDefault) != 1;
    });
    if (lost == nullptr) return copy;
    kz_KeyActionsList_destroy(copy);
    return nullptr;
}

int kz_KeyActionsList_destroy(kz_KeyActionsList* list) {
    return kz_LnkList_destroy(list, destroyElement);
}

int kz_KeyActionsList_delAll(kz_KeyActionsList* list) {
    return kz_LnkList_delAll(list, destroyElement);
}

int kz_KeyActionsList_delCurr(kz_KeyActionsList* list) {
    return kz_LnkList_delCurr(list, destroyElement);
}

int kz_KeyActionsList_start(kz_KeyActionsList* list) {
    return kz_LnkList_start(list);
}

int kz_KeyActionsList_end(kz_KeyActionsList* list) {
    return kz_LnkList_end(list);
}

int kz_KeyActionsList_next(kz_KeyActionsList* list) {
    return kz_LnkList_next(list);
}

int kz_KeyActionsList_prev(kz_KeyActionsList* list) {
    return kz_LnkList_prev(list);
}

int kz_KeyActionsList_eol(const kz_KeyActionsList* list) {
    return kz_LnkList_eol(list);
}

int kz_KeyActionsList_length(const kz_KeyActionsList* list) {
    return kz_LnkList_length(list);
}

kz_KeyActionsNode* kz_KeyActionsList_getCurr(const kz_KeyActionsList* list) {
    return static_cast<kz_KeyActionsNode*>(kz_LnkList_getCurr(list));
}

const kz_Char* kz_KeyActionsList_getCurrKey(const kz_KeyActionsList* list) {
    const kz_KeyActionsNode* node = kz_KeyActionsList_getCurr(list);
    return node != nullptr ? node->key : nullptr;
}

kz_KeyActionFunc kz_KeyActionsList_getCurrFunc(const kz_KeyActionsList* list) {
    const kz_KeyActionsNode* node = kz_KeyActionsList_getCurr(list);
    return node != nullptr ? node->func : nullptr;
}

void* kz_KeyActionsList_getCurrArgs(const kz_KeyActionsList* list) {
    const kz_KeyActionsNode* node = kz_KeyActionsList_getCurr(list);
    return node != nullptr ? node->args : nullptr;
}

kz_KeyActionsNode* kz_KeyActionsList_find(kz_KeyActionsList* list, const kz_Char* key) {
    return seek(list,
                [key](const kz_KeyActionsNode* node) { return kz_Str_cmpi(node->key, key) == 0; });
}

int kz_KeyActionsList_search(kz_KeyActionsList* list, const kz_Char* key) {
    int index = -1;
    const kz_KeyActionsNode* found = seek(list, [key, &index](const kz_KeyActionsNode* node) {
        ++index;
        return kz_Str_cmpi(node->key, key) == 0;
    });
    return found != nullptr ? index : -1;
}

kz_KeyActionsNode* kz_KeyActionsList_getDefault(kz_KeyActionsList* list) {
    return seek(list, [](const kz_KeyActionsNode* node) { return node->isDefault != 0; });
}

kz_Char* kz_KeyActionsList_generateKeyString(kz_KeyActionsList* list) {
    if (list == nullptr) return nullptr;
    kz_Char keys[kKeyStringSize];
    size_t length = 0;
    const kz_KeyActionsNode* misfit = seek(list, [&](const kz_KeyActionsNode* node) {
        const size_t key_length = kz_Str_len(node->key);
        if (key_length >= kKeySize || length + key_length + 1 >= kKeyStringSize) return true;
        kz_Str_ncpy(keys + length, node->key, key_length);
        length += key_length;
        keys[length++] = ' ';
        return false;
    });
    if (misfit != nullptr) return refuseKeys();
    keys[length] = 0;
    return kz_Str_dup(keys);
}

int kz_KeyActionsList_initKeywords(kz_KeyActionsList* list, int flags) {
    if (list == nullptr) return acedInitGet(flags, KZ_T(""));
    const kz::OwnedText keys(kz_KeyActionsList_generateKeyString(list));
    return keys != nullptr ? acedInitGet(flags, keys.get()) : static_cast<int>(RTERROR);
}

int kz_KeyActionsList_executeAction(kz_KeyActionsList* list, const kz_Char* key, void* result) {
    const kz_KeyActionsNode* node = kz_KeyActionsList_find(list, key);
    if (node != nullptr) return execute(node, result);
    acedPrompt(kz_Msg("Invalid keyword.", "TOOL", 3));
    return KZ_INPUT_AGAIN;
}

int kz_KeyActionsList_executeDefaultAction(kz_KeyActionsList* list, void* result) {
    const kz_KeyActionsNode* node = kz_KeyActionsList_getDefault(list);
    return node != nullptr ? execute(node, result) : static_cast<int>(KZ_INPUT_ENTER);
}
