/// Single nodes: making, changing and releasing them.
#include <cstdlib>
#include <cstring>

#include "chain_tail.h"
#include "kz/kz_rb.h"

namespace {

bool isTextKind(int kind) {
    return kind == KZ_RB_STRING || kind == KZ_RB_HANDLE || kind == 1002;
}

/// Copies a value that is no text into the node.
void storeValue(resbuf* node, int kind, const void* value) {
    if (value == nullptr) return;
    switch (kind) {
        case KZ_RB_SHORT:
            std::memcpy(&node->resval.rint, value, sizeof node->resval.rint);
            break;
        case KZ_RB_LONG:
            std::memcpy(&node->resval.rlong, value, sizeof node->resval.rlong);
            break;
        case KZ_RB_REAL:
            std::memcpy(&node->resval.rreal, value, sizeof node->resval.rreal);
            break;
        case KZ_RB_POINT:
            std::memcpy(node->resval.rpoint, value, sizeof node->resval.rpoint);
            break;
        case KZ_RB_ENAME:
        case KZ_RB_SELSET:
            std::memcpy(node->resval.rlname, value, sizeof node->resval.rlname);
            break;
        default:
            break;
    }
}

/// A node that owns a copy of the first `length` characters.
resbuf* newTextNode(int code, const kz_Char* text, size_t length) {
    auto* copy = static_cast<kz_Char*>(kz_Malloc((length + 1) * sizeof(kz_Char)));
    if (copy == nullptr) return nullptr;
    resbuf* node = acutNewRb(code);
    if (node == nullptr) {
        kz_Free(copy);
        return nullptr;
    }
    if (length > 0) std::memcpy(copy, text, length * sizeof(kz_Char));
    copy[length] = 0;
    node->resval.rstring = copy;
    return node;
}

}  // namespace

resbuf* kz_ResBuf_new(int code) {
    return acutNewRb(code);
}

void kz_ResBuf_release(resbuf* chain) {
    if (chain != nullptr) acutRelRb(chain);
}

resbuf* kz_Rb_create(int code, const void* value) {
    const int kind = kz_Rb_type(code);
    if (isTextKind(kind)) {
        const auto* text = static_cast<const kz_Char*>(value);
        return newTextNode(code, text, kz_Str_len(text));
    }
    resbuf* node = acutNewRb(code);
    if (node != nullptr) storeValue(node, kind, value);
    return node;
}

bool kz::ChainTail::appendText(int code, const kz_Char* text, size_t max_chars) {
    size_t length = 0;
    while (text != nullptr && length < max_chars && text[length] != 0)
        ++length;
    return link(newTextNode(code, text, length));
}

void kz_Rb_modify(resbuf* node, int code, const void* value) {
    if (node == nullptr) return;
    // The value is taken in before the old text goes: it may be that text.
    resbuf fresh{};
    const int kind = kz_Rb_type(code);
    if (isTextKind(kind)) {
        const auto* text = static_cast<const kz_Char*>(value);
        fresh.resval.rstring = kz_Str_dup(text != nullptr ? text : KZ_T(""));
        if (fresh.resval.rstring == nullptr) return;
    } else {
        storeValue(&fresh, kind, value);
    }
    if (kz_Rb_typeString(node) == 1) kz_Free(node->resval.rstring);
    node->restype = static_cast<int16_t>(code);
    node->resval = fresh.resval;
}

void kz_Rb_free(resbuf* chain) {
    while (chain != nullptr) {
        resbuf* next = chain->rbnext;
        if (kz_Rb_typeString(chain) == 1) std::free(chain->resval.rstring);
        std::free(chain);
        chain = next;
    }
}
