/// Writers of a Lisp call's result.
#include "guards.h"
#include "kz/kz_rb.h"

int kz_ResBuf_returnList(resbuf* list) {
    if (list == nullptr) return acedRetNil() == RTNORM;
    const kz::OwnedChain opening(kz_ResBuf_new(RTLB));
    if (opening == nullptr || kz_Rb_addTagToList(&list, RTLE) != 1) return 0;
    opening->rbnext = list;
    const int status = acedRetList(opening.get());
    opening->rbnext = nullptr;  // the list stays the caller's
    return status == RTNORM;
}

int kz_Rb_returnList(resbuf* list) {
    const int status = kz_ResBuf_returnList(list);
    kz_ResBuf_release(list);
    return status;
}

void kz_Rb_returnValue(const resbuf* node) {
    switch (kz_Rb_typeRb(node)) {
        case KZ_RB_STRING:
        case KZ_RB_HANDLE:
            acedRetStr(node->resval.rstring);
            break;
        case KZ_RB_SELSET:
            acedRetName(node->resval.rlname, RTPICKS);
            break;
        case KZ_RB_ENAME:
            acedRetName(node->resval.rlname, RTENAME);
            break;
        case KZ_RB_POINT:
            acedRetPoint(node->resval.rpoint);
            break;
        case KZ_RB_REAL:
            acedRetReal(node->resval.rreal);
            break;
        case KZ_RB_LONG:
            acedRetReal(node->resval.rlong);
            break;
        case KZ_RB_SHORT:
            acedRetInt(node->resval.rint);
            break;
        default:
            acedRetNil();
            break;
    }
}
