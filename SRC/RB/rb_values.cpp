/// Values of nodes as texts and numbers, and what a Lisp function returned.
#include <cstring>

#include "RB/number_text.h"
#include "kz/kz_rb.h"

namespace {

/// Size of the static buffers [characters].
constexpr size_t kBufferSize = 512;

bool isNumberKind(int kind) {
    return kind == KZ_RB_REAL || kind == KZ_RB_LONG || kind == KZ_RB_SHORT;
}

void formatPoint(kz_Char* out, const resbuf* node) {
    const double* at = node->resval.rpoint;
    if (node->restype == RTPOINT) {
        kz_Str_format(out, kBufferSize, KZ_T("%f %f"), at[0], at[1]);
    } else {
        kz_Str_format(out, kBufferSize, KZ_T("%f %f %f"), at[0], at[1], at[2]);
    }
}

/// Copies the name of a node of this type.
int copyName(ads_name out, const resbuf* rb, int restype) {
    if (out == nullptr) return 0;
    ads_name_clear(out);
    if (rb == nullptr || rb->restype != restype) return 0;
    ads_name_set(rb->resval.rlname, out);
    return 1;
}

}  // namespace

const kz_Char* kz_Rb_toString(resbuf* list, int code) {
    static kz_Char buffer[kBufferSize];
    const resbuf* node = kz_Rb_entitem(list, code);
    if (node == nullptr) return nullptr;
    return kz_Str_ncpy(buffer, node->resval.rstring, kBufferSize - 1);
}

const kz_Char* kz_Rb_getString(const resbuf* node) {
    static kz_Char buffer[kBufferSize];
    buffer[0] = 0;
    if (node == nullptr) return buffer;
    switch (kz_Rb_type(node->restype)) {
        case KZ_RB_STRING:
        case KZ_RB_HANDLE:
        case 1002:
            return kz_Str_ncpy(buffer, node->resval.rstring, kBufferSize - 1);
        case KZ_RB_SHORT:
            kz_Str_format(buffer, kBufferSize, KZ_T("%d"), node->resval.rint);
            break;
        case KZ_RB_LONG:
            kz_Str_format(buffer, kBufferSize, KZ_T("%ld"), node->resval.rlong);
            break;
        case KZ_RB_REAL:
            kz_Str_format(buffer, kBufferSize, KZ_T("%f"), node->resval.rreal);
            break;
        case KZ_RB_POINT:
            formatPoint(buffer, node);
            break;
        default:
            break;
    }
    return buffer;
}

double kz_Rb_num(const resbuf* node) {
    if (node == nullptr) return 0.0;
    switch (kz_Rb_type(node->restype)) {
        case KZ_RB_REAL:
            return node->resval.rreal;
        case KZ_RB_LONG:
            return node->resval.rlong;
        case KZ_RB_SHORT:
            return node->resval.rint;
        default:
            return 0.0;
    }
}

double kz_Rb_getDouble(const resbuf* node) {
    if (node != nullptr && kz_Rb_type(node->restype) == KZ_RB_STRING) {
        return kz::parseReal(node->resval.rstring);
    }
    return kz_Rb_num(node);
}

int kz_Rb_getInt(const resbuf* node) {
    if (node != nullptr && kz_Rb_type(node->restype) == KZ_RB_STRING) {
        return kz::parseLong(node->resval.rstring);
    }
    return kz::truncateToLong(kz_Rb_num(node));
}

int kz_Rb_getPoint(const resbuf* list, int code, double out[3]) {
    for (const resbuf* node = list; node != nullptr; node = node->rbnext) {
        if (node->restype != code) continue;
        std::memcpy(out, node->resval.rpoint, sizeof node->resval.rpoint);
        return 1;
    }
    for (; list != nullptr; list = list->rbnext)
        *out++ = kz_Rb_getDouble(list);
    return 1;
}

int kz_Resbuf_getRetStat(const resbuf* rb) {
    if (rb == nullptr) return 0;
    return rb->restype == RTT || (rb->restype == RTSHORT && rb->resval.rint != 0);
}

int kz_Resbuf_getRetErrStat(const resbuf* rb) {
    if (rb == nullptr) return 0;
    if (rb->restype == RTT) return 1;
    return rb->restype == RTSHORT ? rb->resval.rint : 0;
}

int kz_Resbuf_getRetInteger(const resbuf* rb) {
    return kz_Rb_typeRb(rb) == KZ_RB_SHORT ? rb->resval.rint : 0;
}

int kz_Resbuf_getRetReal(double* out, const resbuf* rb) {
    if (out == nullptr) return 0;
    *out = kz_Rb_num(rb);
    return isNumberKind(kz_Rb_typeRb(rb));
}

int kz_Resbuf_getRetPoint(double out[3], const resbuf* rb) {
    if (out == nullptr) return 0;
    out[0] = out[1] = out[2] = 0.0;
    if (kz_Rb_typeRb(rb) == KZ_RB_POINT) {
        std::memcpy(out, rb->resval.rpoint, sizeof rb->resval.rpoint);
        return 1;
    }
    double numbers[3];
    for (double& number : numbers) {
        if (!isNumberKind(kz_Rb_typeRb(rb))) return 0;
        number = kz_Rb_num(rb);
        rb = rb->rbnext;
    }
    std::memcpy(out, numbers, sizeof numbers);
    return 1;
}

int kz_Resbuf_getRetName(ads_name out, const resbuf* rb) {
    return copyName(out, rb, RTENAME);
}

int kz_Resbuf_getRetSelSet(ads_name out, const resbuf* rb) {
    return copyName(out, rb, RTPICKS);
}

int kz_Resbuf_getRetString(kz_Char* out, const resbuf* rb) {
    if (out == nullptr) return 0;
    *out = 0;
    if (rb == nullptr || rb->restype != RTSTR) return 0;
    kz_Str_ncpy(out, rb->resval.rstring, kz_Str_len(rb->resval.rstring));
    return 1;
}
