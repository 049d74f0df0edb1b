/// Call frames, acedGetArgs and the acedRet family.
#include "base/call_frame.h"

#include <cstring>
#include <vector>

#include "base/resbuf.h"

namespace host {
namespace {

/// An argument node with the stamp that it had when the call began.
struct Kept {
    resbuf* node;
    uint32_t stamp;
};

/// The argument nodes of all running calls, innermost last.
std::vector<Kept>& keptNodes() {
    static std::vector<Kept> nodes;
    return nodes;
}

CallFrame* innermost = nullptr;

/// Gives the running call its value; `node` may be NULL (no memory).
int answer(resbuf* node) {
    if (node == nullptr) return RTERROR;
    if (innermost == nullptr) {
        acutRelRb(node);
        return RTERROR;
    }
    innermost->setResult(node);
    return RTNORM;
}

resbuf* copyNode(const resbuf* from) {
    if (valueKind(from->restype) == ValueKind::Text) {
        const ACHAR* text = from->resval.rstring;
        return newTextNode(from->restype, text == nullptr ? std::u16string_view{} : text);
    }
    resbuf* node = acutNewRb(from->restype);
    if (node != nullptr) node->resval = from->resval;
    return node;
}

/// The markers of a chain. A dotted pair is closed by RTDOTE, or has it in front of its last value
/// and is closed by RTLE: then there are as many RTLE as RTLB.
struct Markers {
    explicit Markers(const resbuf* chain) {
        int opens = 0;
        int ends = 0;
        for (const resbuf* node = chain; node != nullptr; node = node->rbnext) {
            if (node->restype == RTLB) ++opens;
            if (node->restype == RTLE) ++ends;
        }
        dot_closes = opens != ends;
    }
    int change(const resbuf* node) const {
        if (node->restype == RTLB) return 1;
        return node->restype == RTLE || (dot_closes && node->restype == RTDOTE) ? -1 : 0;
    }
    bool dot_closes = false;
};

/// The depth of list markers never falls below 0 and ends at 0.
bool markersMatch(const resbuf* chain) {
    const Markers markers(chain);
    int depth = 0;
    for (const resbuf* node = chain; node != nullptr && depth >= 0; node = node->rbnext) {
        depth += markers.change(node);
    }
    return depth == 0;
}

/// True when the chain is one list from its first node to its last.
bool isOneList(const resbuf* chain) {
    if (chain->restype != RTLB) return false;
    const Markers markers(chain);
    int depth = 0;
    for (const resbuf* node = chain; node != nullptr; node = node->rbnext) {
        depth += markers.change(node);
        if (depth == 0) return node->rbnext == nullptr;
    }
    return true;
}

}  // namespace

CallFrame::CallFrame(resbuf* args)
    : args_(args), kept_begin_(keptNodes().size()), outer_(innermost) {
    for (resbuf* node = args; node != nullptr; node = node->rbnext) {
        keptNodes().push_back({node, stampOf(node)});
    }
    innermost = this;
}

CallFrame::~CallFrame() {
    std::vector<Kept>& nodes = keptNodes();
    for (size_t i = kept_begin_; i < nodes.size(); ++i) {
        if (stampOf(nodes[i].node) != nodes[i].stamp) continue;
        nodes[i].node->rbnext = nullptr;
        acutRelRb(nodes[i].node);
    }
    nodes.resize(kept_begin_);
    acutRelRb(result_);
    innermost = outer_;
}

CallFrame* CallFrame::current() {
    return innermost;
}

void CallFrame::setResult(resbuf* chain) {
    acutRelRb(result_);
    result_ = chain;
}

}  // namespace host

extern "C" {

resbuf* acedGetArgs(void) {
    return host::innermost == nullptr ? nullptr : host::innermost->args();
}

int acedRetList(const resbuf* chain) {
    if (host::innermost == nullptr || chain == nullptr || !host::markersMatch(chain))
        return RTERROR;
    const bool wrap = !host::isOneList(chain);
    resbuf* head = nullptr;
    resbuf** tail = &head;
    bool good = true;
    const auto append = [&](resbuf* node) {
        good = good && node != nullptr;
        if (node == nullptr) return;
        *tail = node;
        tail = &node->rbnext;
    };
    if (wrap) append(acutNewRb(RTLB));
    for (const resbuf* node = chain; good && node != nullptr; node = node->rbnext) {
        append(host::copyNode(node));
    }
    if (wrap) append(acutNewRb(RTLE));
    if (good) return host::answer(head);
    acutRelRb(head);
    return RTERROR;
}

int acedRetNil(void) {
    return host::answer(acutNewRb(RTNIL));
}
int acedRetT(void) {
    return host::answer(acutNewRb(RTT));
}
int acedRetVoid(void) {
    return host::answer(acutNewRb(RTVOID));
}

int acedRetInt(int value) {
    resbuf* node = acutNewRb(RTLONG);
    if (node != nullptr) node->resval.rlong = value;
    return host::answer(node);
}

int acedRetReal(ads_real value) {
    resbuf* node = acutNewRb(RTREAL);
    if (node != nullptr) node->resval.rreal = value;
    return host::answer(node);
}

int acedRetStr(const ACHAR* value) {
    if (value == nullptr) return RTERROR;
    return host::answer(host::newTextNode(RTSTR, value));
}

int acedRetName(const ads_name name, int type) {
    if (name == nullptr || (type != RTENAME && type != RTPICKS)) return RTERROR;
    resbuf* node = acutNewRb(type);
    if (node != nullptr) ads_name_set(name, node->resval.rlname);
    return host::answer(node);
}

int acedRetPoint(const ads_point value) {
    if (value == nullptr) return RTERROR;
    resbuf* node = acutNewRb(RT3DPOINT);
    if (node != nullptr) std::memcpy(node->resval.rpoint, value, sizeof(ads_point));
    return host::answer(node);
}

int acedRetVal(const resbuf* node) {
    if (node == nullptr) return RTERROR;
    return host::answer(host::copyNode(node));
}
}
