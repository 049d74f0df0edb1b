/// The pool of result-buffer nodes. Nodes come from chunks that live as long as the process; a
/// released node keeps its stamp at 0 and, under the address sanitizer, its visible part is
/// poisoned.
#include "base/resbuf.h"

#include <array>
#include <cstring>
#include <memory>
#include <new>
#include <vector>

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
        auto chunk = std::unique_ptr<Node[]>(new (std::nothrow) Node[kChunkNodes]);
        if (chunk == nullptr) return false;
        for (size_t i = kChunkNodes; i-- > 0;) {
            Node* node = &chunk[i];
            node->stamp = 0;
            node->next_free = free_;
            free_ = node;
            HOST_POISON(&node->visible, sizeof node->visible);
        }
        chunks_.push_back(std::move(chunk));
        return true;
    }

    std::vector<std::unique_ptr<Node[]>> chunks_;
    Node* free_ = nullptr;
    uint32_t last_stamp_ = 0;
    int64_t out_ = 0;
};

Pool& pool() {
    static Pool* const the_pool = new Pool;  // outlives every static object that may still release
    return *the_pool;
}

Node* nodeOf(resbuf* visible) {
    return reinterpret_cast<Node*>(visible);
}
const Node* nodeOf(const resbuf* visible) {
    return reinterpret_cast<const Node*>(visible);
}

constexpr int kFirstKind = -4;
constexpr int kLastKind = 1071;

ValueKind groupKind(int code) {
    if (code == -4) return ValueKind::Text;
    if (code == -1 || code == -2) return ValueKind::Name;
    if (code < 0) return ValueKind::None;
    if (code >= 1000) {
        if (code == 1071) return ValueKind::Long;
        code -= 1000;
        if (code >= 80) return ValueKind::None;
        if (code >= 60) return ValueKind::Short;
    }
    struct Range {
        int first;
        int last;
        ValueKind kind;
    };
    static constexpr Range kRanges[] = {
        {0, 9, ValueKind::Text},      {10, 19, ValueKind::Point},   {20, 59, ValueKind::Real},
        {60, 79, ValueKind::Short},   {90, 99, ValueKind::Long},    {100, 109, ValueKind::Text},
        {110, 112, ValueKind::Point}, {113, 149, ValueKind::Real},  {160, 169, ValueKind::Int64},
        {170, 179, ValueKind::Short}, {210, 219, ValueKind::Point}, {220, 239, ValueKind::Real},
        {270, 299, ValueKind::Short}, {300, 319, ValueKind::Text},  {320, 369, ValueKind::Name},
        {370, 389, ValueKind::Short}, {390, 399, ValueKind::Name},  {400, 409, ValueKind::Short},
        {410, 419, ValueKind::Text},  {420, 429, ValueKind::Long},  {430, 439, ValueKind::Text},
        {440, 459, ValueKind::Long},  {460, 469, ValueKind::Real},  {470, 479, ValueKind::Text},
        {480, 481, ValueKind::Name},  {999, 999, ValueKind::Text},
    };
    for (const Range& range : kRanges) {
        if (code >= range.first && code <= range.last) return range.kind;
    }
    return ValueKind::None;
}

std::array<ValueKind, kLastKind - kFirstKind + 1> makeGroupKinds() {
    std::array<ValueKind, kLastKind - kFirstKind + 1> kinds{};
    for (int code = kFirstKind; code <= kLastKind; ++code) {
        kinds[static_cast<size_t>(code - kFirstKind)] = groupKind(code);
    }
    return kinds;
}

ValueKind resultKind(int restype) {
    switch (restype) {
        case RTREAL:
        case RTANG:
        case RTORINT:
            return ValueKind::Real;
        case RTPOINT:
        case RT3DPOINT:
            return ValueKind::Point;
        case RTSHORT:
            return ValueKind::Short;
        case RTLONG:
            return ValueKind::Long;
        case RTSTR:
        case RTDXF0:
            return ValueKind::Text;
        case RTENAME:
        case RTPICKS:
            return ValueKind::Name;
        default:
            return ValueKind::None;
    }
}

}  // namespace

ValueKind valueKind(int restype) {
    static const auto kGroupKinds = makeGroupKinds();
    if (restype >= kFirstKind && restype <= kLastKind) {
        return kGroupKinds[static_cast<size_t>(restype - kFirstKind)];
    }
    return resultKind(restype);
}

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
    return pool().out();
}

}  // namespace host

extern "C" {

resbuf* acutNewRb(int restype) {
    host::Node* node = host::pool().take();
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
        host::pool().giveBack(node);
        chain = next;
    }
    return RTNORM;
}
}
