/// Linked list. Doubly linked, so that removing at a position and stepping back need no walk.
#include "kz_tls21an/lnklist.h"

#include "lnklist_internal.h"
#include "record_count.h"

namespace {

using kz::LnkNode;

void destroyElement(const LnkNode* node, kz_Destructor destructor) {
    if (destructor && node->element) destructor(node->element);
}

/// Takes the node out before its element is destroyed: a destructor that looks at the list finds it
/// whole.
void removeNode(kz_LnkList& list, LnkNode* node, kz_Destructor destructor) {
    (node->prev ? node->prev->next : list.first) = node->next;
    (node->next ? node->next->prev : list.last) = node->prev;
    if (list.current == node) list.current = node->next;
    --list.length;
    destroyElement(node, destructor);
    kz_Free(node);
}

/// Node n, reached from the nearer end; NULL when there is none.
LnkNode* nodeAt(const kz_LnkList& list, int n) {
    if (n < 0 || n >= list.length) return nullptr;
    if (n <= list.length / 2) {
        LnkNode* node = list.first;
        for (; n > 0; --n)
            node = node->next;
        return node;
    }
    LnkNode* node = list.last;
    for (n = list.length - 1 - n; n > 0; --n)
        node = node->prev;
    return node;
}

int moveTo(kz_LnkList* list, LnkNode* node) {
    list->current = node;
    return node ? 1 : 0;
}

}  // namespace

kz_LnkList* kz_LnkList_create(void) {
    auto* list = static_cast<kz_LnkList*>(kz_Malloc(sizeof(kz_LnkList)));
    if (!list) return nullptr;
    *list = {nullptr, nullptr, nullptr, 0};
    ++livingRecords;
    return list;
}

int kz_LnkList_destroy(kz_LnkList* list, kz_Destructor destructor) {
    if (!kz_LnkList_delAll(list, destructor)) return 0;
    kz_Free(list);
    --livingRecords;
    return 1;
}

int kz_LnkList_delAll(kz_LnkList* list, kz_Destructor destructor) {
    if (!list) return 0;
    LnkNode* node = list->first;
    *list = {nullptr, nullptr, nullptr, 0};
    while (node) {
        LnkNode* const next = node->next;
        destroyElement(node, destructor);
        kz_Free(node);
        node = next;
    }
    return 1;
}

int kz_LnkList_delCurr(kz_LnkList* list, kz_Destructor destructor) {
    if (!list || !list->current) return 0;
    removeNode(*list, list->current, destructor);
    return 1;
}

int kz_LnkList_delNth(kz_LnkList* list, int n, kz_Destructor destructor) {
    LnkNode* node = list ? nodeAt(*list, n) : nullptr;
    if (!node) return 0;
    removeNode(*list, node, destructor);
    return 1;
}

kz_LnkPos kz_LnkList_insEnd(kz_LnkList* list, void* element) {
    return list ? kz::insertNode(*list, nullptr, element) : nullptr;
}

kz_LnkPos kz_LnkList_insStart(kz_LnkList* list, void* element) {
    return list ? kz::insertNode(*list, list->first, element) : nullptr;
}

kz_LnkPos kz_LnkList_insBefore(kz_LnkList* list, void* element) {
    return list ? kz::insertNode(*list, list->current, element) : nullptr;
}

int kz_LnkList_join(kz_LnkList* list, kz_LnkList* tail) {
    if (!list || !tail || list == tail) return 0;
    if (tail->first) {
        tail->first->prev = list->last;
        (list->last ? list->last->next : list->first) = tail->first;
        list->last = tail->last;
        list->length += tail->length;
    }
    kz_Free(tail);
    --livingRecords;
    return 1;
}

int kz_LnkList_start(kz_LnkList* list) {
    return list ? moveTo(list, list->first) : 0;
}

int kz_LnkList_end(kz_LnkList* list) {
    return list ? moveTo(list, list->last) : 0;
}

int kz_LnkList_next(kz_LnkList* list) {
    return list && list->current ? moveTo(list, list->current->next) : 0;
}

int kz_LnkList_prev(kz_LnkList* list) {
    return list && list->current ? moveTo(list, list->current->prev) : 0;
}

int kz_LnkList_skip(kz_LnkList* list, int n) {
    if (!list || n < 0) return 0;
    LnkNode* node = list->current;
    for (; node && n > 0; --n)
        node = node->next;
    return moveTo(list, node);
}

int kz_LnkList_eol(const kz_LnkList* list) {
    return list && list->current ? 0 : 1;
}

int kz_LnkList_isLast(const kz_LnkList* list) {
    return list && list->current && list->current == list->last ? 1 : 0;
}

int kz_LnkList_length(const kz_LnkList* list) {
    return list ? list->length : 0;
}

void* kz_LnkList_getCurr(const kz_LnkList* list) {
    return list && list->current ? list->current->element : nullptr;
}

void* kz_LnkList_getNth(const kz_LnkList* list, int n) {
    const LnkNode* node = list ? nodeAt(*list, n) : nullptr;
    return node ? node->element : nullptr;
}

kz_LnkPos kz_LnkList_getPos(const kz_LnkList* list) {
    return list ? list->current : nullptr;
}

void kz_LnkList_setPos(kz_LnkList* list, kz_LnkPos position) {
    if (list) list->current = static_cast<LnkNode*>(position);
}
