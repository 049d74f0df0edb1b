/// Result buffers: this folder holds the kinds of values, nodes and lists, the readers and writers
/// of a Lisp call, printing, and both directions between field lists and chains. Here are the
/// kinds.
#include "kz/kz_rb.h"

namespace {

/// Kind of a DXF group code from 0 to 999; those of extended data fold to these.
int groupKind(int code) {
    if (code == 5) return KZ_RB_HANDLE;
    if (code < 10) return KZ_RB_STRING;
    if (code < 20) return KZ_RB_POINT;
    if (code < 60) return KZ_RB_REAL;
    if (code < 80) return KZ_RB_SHORT;
    if (code >= 210 && code < 240) return KZ_RB_POINT;
    if (code == 999) return KZ_RB_STRING;
    return RTNONE;
}

int negativeKind(int code) {
    switch (code) {
        case -1:
        case -2:
            return KZ_RB_ENAME;
        case -3:
            return KZ_RB_SHORT;
        case -4:
            return KZ_RB_STRING;
        default:
            return RTNONE;
    }
}

int resultKind(int code) {
    switch (code) {
        case RTREAL:
        case RTANG:
        case RTORINT:
            return KZ_RB_REAL;
        case RTPOINT:
        case RT3DPOINT:
            return KZ_RB_POINT;
        case RTSHORT:
            return KZ_RB_SHORT;
        case RTSTR:
            return KZ_RB_STRING;
        case RTENAME:
            return KZ_RB_ENAME;
        case RTPICKS:
            return KZ_RB_SELSET;
        case RTLONG:
            return KZ_RB_LONG;
        case RTLB:
            return KZ_RB_LISTBEGIN;
        case RTLE:
            return KZ_RB_LISTEND;
        case RTNIL:
            return KZ_RB_NIL;
        case RTT:
            return KZ_RB_T;
        default:
            return code;
    }
}

}  // namespace

int kz_Rb_type(int code) {
    if (code > 2000) return resultKind(code);
    if (code < 0) return negativeKind(code);
    if (code < 1000) return groupKind(code);
    if (code == 1002) return 1002;
    if (code == 1071) return KZ_RB_LONG;
    return code < 2000 ? groupKind(code % 1000) : RTNONE;
}

int kz_Rb_typeRb(const resbuf* node) {
    if (node == nullptr) return KZ_RB_NIL;
    const int kind = kz_Rb_type(node->restype);
    if (kind != 1002) return kind;
    const kz_Char* brace = node->resval.rstring;
    return brace != nullptr && *brace == KZ_T('{') ? KZ_RB_LISTBEGIN : KZ_RB_LISTEND;
}

int kz_Rb_typeString(const resbuf* node) {
    if (node == nullptr) return 0;
    const int kind = kz_Rb_type(node->restype);
    return kind == KZ_RB_STRING || kind == KZ_RB_HANDLE || kind == 1002;
}
