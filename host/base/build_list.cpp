/// acutBuildList: a chain from pairs of code and value.
#include <cstdarg>
#include <cstring>

#include "base/faults.h"
#include "base/resbuf.h"

namespace {

/// Reads the value that belongs to `restype` from the arguments. NULL without memory.
resbuf* nodeFromArgs(int restype, va_list& args) {
    using host::ValueKind;
    const ValueKind kind = host::valueKind(restype);
    if (kind == ValueKind::Text) {
        const ACHAR* text = va_arg(args, const ACHAR*);
        return host::newTextNode(restype, text == nullptr ? std::u16string_view{} : text);
    }
    resbuf* node = acutNewRb(restype);
    if (node == nullptr) return nullptr;
    switch (kind) {
        case ValueKind::Short:
            node->resval.rint = static_cast<int16_t>(va_arg(args, int));
            break;
        case ValueKind::Long:
            node->resval.rlong = va_arg(args, int);
            break;
        case ValueKind::Int64:
            node->resval.mnInt64 = va_arg(args, int64_t);
            break;
        case ValueKind::Real:
            node->resval.rreal = va_arg(args, double);
            break;
        case ValueKind::Point:
            std::memcpy(node->resval.rpoint, va_arg(args, const double*), sizeof(ads_point));
            break;
        case ValueKind::Name:
            std::memcpy(node->resval.rlname, va_arg(args, const int64_t*), sizeof(ads_name));
            break;
        default:
            break;
    }
    return node;
}

bool isKnownCode(int restype) {
    if (host::valueKind(restype) != host::ValueKind::None) return true;
    switch (restype) {
        case RTLB:
        case RTLE:
        case RTDOTE:
        case RTNIL:
        case RTT:
        case RTVOID:
        case -3:
            return true;
        default:
            return false;
    }
}

}  // namespace

extern "C" resbuf* acutBuildList(int restype, ...) {
    if (host::mustFail(host::Call::acutBuildList)) return nullptr;
    va_list args;
    va_start(args, restype);
    resbuf* head = nullptr;
    resbuf** tail = &head;
    bool good = true;
    for (int code = restype; good && code != 0 && code != RTNONE; code = va_arg(args, int)) {
        resbuf* node = isKnownCode(code) ? nodeFromArgs(code, args) : nullptr;
        good = node != nullptr;
        if (!good) break;
        *tail = node;
        tail = &node->rbnext;
    }
    va_end(args);
    if (good) return head;
    acutRelRb(head);
    return nullptr;
}
