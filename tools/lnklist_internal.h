/// The record behind kz_LnkList, for the families of this library that are such lists and walk them
/// without moving the current position. current is NULL at the end of the list.
#ifndef KZ_TOOLS_LNKLIST_INTERNAL_H
#define KZ_TOOLS_LNKLIST_INTERNAL_H

#include "kz_tls21an/lnklist.h"
#include "kz_tls21an/memory.h"

namespace kz {

struct LnkNode {
    LnkNode* prev;
    LnkNode* next;
    void* element;
};

}  // namespace kz

struct kz_LnkList {
    kz::LnkNode* first;
    kz::LnkNode* last;
    kz::LnkNode* current;
    int length;
};

namespace kz {

/// Links a new node in front of `next`, at the end when that is NULL. @return NULL without memory
inline LnkNode* insertNode(kz_LnkList& list, LnkNode* next, void* element) {
    auto* node = static_cast<LnkNode*>(kz_Malloc(sizeof(LnkNode)));
    if (!node) return nullptr;
    LnkNode* const prev = next ? next->prev : list.last;
    *node = {prev, next, element};
    (prev ? prev->next : list.first) = node;
    (next ? next->prev : list.last) = node;
    ++list.length;
    return node;
}

}  // namespace kz

#endif
