/// String lists to and from Lisp lists, and wildcards.
#include "chain_tail.h"
#include "guards.h"
#include "kz/kz_rb.h"

namespace {

/// Longest entry that goes back to Lisp [characters].
constexpr size_t kMaxLispText = 511;

/// Appends every entry as an RTSTR node. False without memory.
bool appendEntries(kz::ChainTail& tail, kz_StrList* list) {
    bool good = true;
    for (kz_StrList_start(list); good && kz_StrList_eol(list) == 0; kz_StrList_next(list)) {
        good = tail.append(RTSTR, kz_StrList_getCurr(list));
    }
    return good;
}

}  // namespace

kz_StrList* kz_StrList_fromLisp(resbuf** cursor) {
    kz_StrList* list = kz_StrList_create(nullptr);
    if (*cursor == nullptr || (*cursor)->restype == RTNIL) return list;
    if ((*cursor)->restype == RTLB) *cursor = (*cursor)->rbnext;
    for (; *cursor != nullptr; *cursor = (*cursor)->rbnext) {
        const resbuf* node = *cursor;
        if (node->restype == RTLE || node->restype == RTDOTE) break;
        if (kz_Rb_typeRb(node) == KZ_RB_STRING) kz_StrList_insEnd(list, node->resval.rstring);
    }
    return list;
}

void kz_StrList_toLisp(kz_StrList* list) {
    resbuf* texts = nullptr;
    kz::ChainTail tail(&texts);
    for (kz_StrList_start(list); kz_StrList_eol(list) == 0; kz_StrList_next(list)) {
        tail.appendText(RTSTR, kz_StrList_getCurr(list), kMaxLispText);
    }
    kz_Rb_returnList(texts);
}

resbuf* kz_StrList_toRb(kz_StrList* list) {
    if (list == nullptr) return nullptr;
    resbuf* head = nullptr;
    kz::ChainTail tail(&head);
    const bool complete =
        tail.append(RTLB, nullptr) && appendEntries(tail, list) && tail.append(RTLE, nullptr);
    kz::OwnedChain chain(head);
    return complete ? chain.release() : nullptr;
}

int kz_Str_wcMatch(const kz_Char* text, const kz_Char* pattern) {
    if (text == nullptr || pattern == nullptr) return 0;
    return acutWcMatch(text, pattern) == RTNORM;
}
