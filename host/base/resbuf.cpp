/// The pool of result-buffer nodes. Nodes come from chunks that live as long as the process; a
/// released node keeps its stamp at 0 and, under the address sanitizer, its visible part is
/// poisoned.
#include "base/resbuf.h"
#include "base/faults.h"

#include <cstring>
#include <new>

#include "host/counters.h"
#include "kz_tls21an/memory.h"

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define HOST_ASAN 1
#endif
#endif
#if defined(__SANITIZE_ADDRESS__)
#define HOST_ASAN 1
#endif
#if defined(HOST_ASAN)
#include <sanitizer/asan_interface.h>
#define HOST_POISON(address, size) ASAN_POISON_MEMORY_REGION(address, size)
#define HOST_UNPOISON(address, size) ASAN_UNPOISON_MEMORY_REGION(address, size)
#else
#define HOST_POISON(address, size) ((void)0)
#define HOST_UNPOISON(address, size) ((void)0)
#endif

namespace host {
namespace {

struct Node {
    resbuf visible;
    Node* next_free;
    uint32_t stamp;
    bool is_point_2d;
};

constexpr size_t kChunkNodes = 1024;

class Pool {
  public:
    Node* take() {
        if (free_ == nullptr && !grow()) return nullptr;
        Node* node = free_;
        free_ = node->next_free;
        HOST_UNPOISON(&node->visible, sizeof node->visible);
        node->stamp = ++last_stamp_;
        if (last_stamp_ == 0) node->stamp = ++last_stamp_;
        node->is_point_2d = false;
        ++out_;
        return node;
    }

    void giveBack(Node* node) {
        node->stamp = 0;
        node->next_free = free_;
        free_ = node;
        HOST_POISON(&node->visible, sizeof node->visible);
        --out_;
    }

    int64_t out() const { return out_; }

  private:
    bool grow() {
        auto* chunk = new (std::nothrow) Chunk;
        if (chunk == nullptr) return false;
        chunk->next = chunks_;
        chunks_ = chunk;
        for (size_t i = kChunkNodes; i-- > 0;) {
            Node* node = &chunk->nodes[i];
            node->stamp = 0;
            node->next_free = free_;
            free_ = node;
            HOST_POISON(&node->visible, sizeof node->visible);
        }
        return true;
    }

    struct Chunk {
        Chunk* next;
        Node nodes[kChunkNodes];
    };
    Chunk* chunks_ = nullptr;  // live as long as the process: static objects may still release
    Node* free_ = nullptr;
    uint32_t last_stamp_ = 0;
    int64_t out_ = 0;
};

constinit Pool the_pool;

Node* nodeOf(resbuf* visible) {
    return reinterpret_cast<Node*>(visible);
}
const Node* nodeOf(const resbuf* visible) {
    return reinterpret_cast<const Node*>(visible);
}

}  // namespace

uint32_t stampOf(const resbuf* node) {
    return nodeOf(node)->stamp;
}

resbuf* newTextNode(int restype, std::u16string_view text) {
    auto* copy = static_cast<ACHAR*>(kz_Malloc((text.size() + 1) * sizeof(ACHAR)));
    if (copy == nullptr) return nullptr;
    resbuf* node = acutNewRb(restype);
    if (node == nullptr) {
        kz_Free(copy);
        return nullptr;
    }
    if (!text.empty()) std::memcpy(copy, text.data(), text.size() * sizeof(ACHAR));
    copy[text.size()] = 0;
    node->resval.rstring = copy;
    return node;
}

void markPoint2d(resbuf* node) {
    nodeOf(node)->is_point_2d = true;
}
bool isPoint2d(const resbuf* node) {
    return nodeOf(node)->is_point_2d;
}

int64_t resbufCount() {
    return the_pool.out();
}

}  // namespace host

extern "C" {

resbuf* acutNewRb(int restype) {
    if (host::mustFail(host::Call::acutNewRb)) return nullptr;
    host::Node* node = host::the_pool.take();
    if (node == nullptr) return nullptr;
    std::memset(&node->visible, 0, sizeof node->visible);
    node->visible.restype = static_cast<int16_t>(restype);
    return &node->visible;
}

int acutRelRb(resbuf* chain) {
    while (chain != nullptr) {
        host::Node* node = host::nodeOf(chain);
        if (node->stamp == 0) break;
        resbuf* next = chain->rbnext;
        if (host::valueKind(chain->restype) == host::ValueKind::Text) {
            kz_Free(chain->resval.rstring);
        }
        host::the_pool.giveBack(node);
        chain = next;
    }
    return RTNORM;
}
}
