/// Reading of result-buffer lists in tests, and a chain that frees itself.
#ifndef TESTS_SUPPORT_ENTITY_LIST_H
#define TESTS_SUPPORT_ENTITY_LIST_H

#include <memory>
#include <string>

#include "acad/ads.h"

struct ChainRelease {
    void operator()(resbuf* chain) const { acutRelRb(chain); }
};
using Chain = std::unique_ptr<resbuf, ChainRelease>;

/// The first node with this code; NULL when there is none.
inline const resbuf* find(const resbuf* chain, int code) {
    while (chain != nullptr && chain->restype != code)
        chain = chain->rbnext;
    return chain;
}

inline int length(const resbuf* chain) {
    int count = 0;
    for (; chain != nullptr; chain = chain->rbnext)
        ++count;
    return count;
}

inline std::u16string textAt(const resbuf* chain, int code) {
    const resbuf* node = find(chain, code);
    return node == nullptr ? u"<none>" : std::u16string(node->resval.rstring);
}

/// Entity name of a handle in the current drawing; a nil name when there is none.
struct Ename {
    ads_name name = {0, 0};
    explicit Ename(const char16_t* handle) { acdbHandEnt(handle, name); }
    bool nil() const { return ads_name_nil(name); }
};

#endif
