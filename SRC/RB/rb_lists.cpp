/// Lists of nodes: inserting, removing, searching and copying. A position in a list is held as a
/// link, the address of the pointer that leads to the node, so that the first node is no special
/// case.
#include "chain_tail.h"
#include "kz/kz_rb.h"

namespace {

resbuf** lastLink(resbuf** link) {
    while (*link != nullptr)
        link = &(*link)->rbnext;
    return link;
}

/// The link to position `n`, or the last link of a list that is shorter.
resbuf** linkAt(resbuf** link, int n) {
    for (; n > 0 && *link != nullptr; --n)
        link = &(*link)->rbnext;
    return link;
}

/// Makes a node and puts it in at the link. NULL when it can't be made.
resbuf* insertAt(resbuf** link, int code, const void* value) {
    resbuf* node = kz_Rb_create(code, value);
    if (node == nullptr) return nullptr;
    node->rbnext = *link;
    *link = node;
    return node;
}

/// A node with the same bytes of value: a text is shared.
resbuf* shallowCopy(const resbuf* from) {
    resbuf* node = acutNewRb(from->restype);
    if (node != nullptr) node->resval = from->resval;
    return node;
}

/// Appends a copy of one element of a Lisp list; a node that can't be made is left out.
void appendElement(kz::ChainTail& tail, const resbuf* node) {
    switch (node->restype) {
        case RTSTR:
            tail.append(RTSTR, node->resval.rstring);
            break;
        case RTREAL:
        case RTPOINT:
        case RTSHORT:
        case RTANG:
        case RTENAME:
        case RTPICKS:
        case RTORINT:
        case RT3DPOINT:
        case RTLONG:
            tail.join(shallowCopy(node));
            break;
        default:
            tail.join(kz_ResBuf_new(node->restype));
            break;
    }
}

/// The elements up to the close of the list that was opened in front of the cursor, which ends
/// behind that close.
resbuf* copyListInside(resbuf** cursor) {
    resbuf* copies = nullptr;
    kz::ChainTail tail(&copies);
    int depth = 1;
    while (*cursor != nullptr && depth > 0) {
        const resbuf* node = *cursor;
        if (node->restype == RTLB) ++depth;
        if (node->restype == RTLE || node->restype == RTDOTE) --depth;
        if (depth > 0) appendElement(tail, node);
        *cursor = node->rbnext;
    }
    return copies;
}

resbuf* copyCoordinates(const resbuf* point, int count) {
    resbuf* copies = nullptr;
    kz::ChainTail tail(&copies);
    for (int i = 0; i < count; ++i)
        tail.append(RTREAL, &point->resval.rpoint[i]);
    return copies;
}

}  // namespace

resbuf* kz_Rb_insEnd(resbuf** list, int code, const void* value) {
    return list != nullptr ? insertAt(lastLink(list), code, value) : nullptr;
}

resbuf* kz_Rb_insStart(resbuf** list, int code, const void* value) {
    return list != nullptr ? insertAt(list, code, value) : nullptr;
}

resbuf* kz_Rb_insNth(resbuf** list, int n, int code, const void* value) {
    if (list == nullptr || n < 0) return nullptr;
    return insertAt(linkAt(list, n), code, value);
}

resbuf* kz_Rb_insSorted(resbuf** list, int code, const void* value) {
    if (list == nullptr) return nullptr;
    resbuf* node = kz_Rb_create(code, value);
    if (node == nullptr) return nullptr;
    resbuf** link = list;
    while (*link != nullptr && kz_Rb_cmp(*link, node) < 0)
        link = &(*link)->rbnext;
    node->rbnext = *link;
    *link = node;
    return node;
}

int kz_Rb_addIntToList(resbuf** list, int16_t value) {
    return kz_Rb_insEnd(list, RTSHORT, &value) != nullptr;
}

int kz_Rb_addRealToList(resbuf** list, double value) {
    return kz_Rb_insEnd(list, RTREAL, &value) != nullptr;
}

int kz_Rb_addStrToList(resbuf** list, const kz_Char* text) {
    return kz_Rb_insEnd(list, RTSTR, text) != nullptr;
}

int kz_Rb_addTagToList(resbuf** list, int code) {
    if (list == nullptr) return 0;
    resbuf* node = kz_ResBuf_new(code);
    if (node == nullptr) return 0;
    *lastLink(list) = node;
    return 1;
}

void kz_Rb_join(resbuf* list, resbuf* tail) {
    if (list != nullptr && tail != nullptr) *lastLink(&list->rbnext) = tail;
}

void kz_Rb_delNth(resbuf** list, int n) {
    if (list == nullptr || n < 0) return;
    resbuf** link = linkAt(list, n);
    resbuf* node = *link;
    if (node == nullptr) return;
    *link = node->rbnext;
    node->rbnext = nullptr;
    kz_ResBuf_release(node);
}

void kz_Rb_modNth(resbuf* list, int n, int code, const void* value) {
    if (n >= 0) kz_Rb_modify(*linkAt(&list, n), code, value);
}

int kz_Rb_length(const resbuf* list) {
    int length = 0;
    for (; list != nullptr; list = list->rbnext)
        ++length;
    return length;
}

resbuf* kz_Rb_getLast(resbuf* list) {
    while (list != nullptr && list->rbnext != nullptr)
        list = list->rbnext;
    return list;
}

resbuf* kz_Rb_entitem(resbuf* list, int code) {
    while (list != nullptr && list->restype != code)
        list = list->rbnext;
    return list;
}

resbuf* kz_Rb_searchType(resbuf* list, int16_t code) {
    return kz_Rb_entitem(list, code);
}

resbuf* kz_Rb_search(resbuf* list, int code, const void* value) {
    resbuf* wanted = kz_Rb_create(code, value);
    if (wanted == nullptr) return nullptr;
    while (list != nullptr && kz_Rb_cmp(list, wanted) != 0)
        list = list->rbnext;
    kz_ResBuf_release(wanted);
    return list;
}

resbuf* kz_Rb_sublst(const resbuf* list, int start, int count) {
    for (; start > 0 && list != nullptr; --start)
        list = list->rbnext;
    resbuf* copies = nullptr;
    kz::ChainTail tail(&copies);
    for (; list != nullptr && count != 0; list = list->rbnext) {
        resbuf* copy = shallowCopy(list);
        if (copy == nullptr) continue;
        tail.join(copy);
        if (count > 0) --count;
    }
    return copies;
}

resbuf* kz_Rb_fromRb(resbuf** cursor) {
    if (cursor == nullptr || *cursor == nullptr) return nullptr;
    switch ((*cursor)->restype) {
        case RTLB:
            *cursor = (*cursor)->rbnext;
            return copyListInside(cursor);
        case RTPOINT:
            return copyCoordinates(*cursor, 2);
        case RT3DPOINT:
            return copyCoordinates(*cursor, 3);
        default:
            return nullptr;
    }
}
