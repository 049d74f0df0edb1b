/// Field lists to and from Lisp: whole lists in the Lisp form.
#include "RB/field_writer.h"
#include "guards.h"
#include "kz/kz_fldcnv.h"
#include "trace.h"

namespace {

constexpr const char* kTraceSource = "SRC/FLD_LI";

resbuf* toLispForm(kz_FldList* list, bool with_values, bool outer_list) {
    if (list == nullptr) return nullptr;
    constexpr kz::FieldForm kLispField = {false, true, true, false};
    resbuf* chain = nullptr;
    kz::ChainTail tail(&chain);
    if (outer_list) tail.append(RTLB, nullptr);
    for (kz_FldList_start(list); kz_FldList_eol(list) == 0; kz_FldList_next(list)) {
        const kz_FldNode* field = kz_FldList_curr(list);
        if (field->name == nullptr) continue;
        if (with_values) {
            kz::appendField(tail, *field, kLispField);
        } else {
            tail.appendText(RTSTR, field->name, kz::kMaxWrittenText);
        }
    }
    if (outer_list) tail.append(RTLE, nullptr);
    return chain;
}

}  // namespace

resbuf* kz_FldList_toRb(kz_FldList* list, int withValues, int outerList) {
    return toLispForm(list, withValues != 0, outerList != 0);
}

resbuf* kz_FldList_toRbForInvoke(kz_FldList* list, int withValues, int outerList) {
    return toLispForm(list, withValues != 0, outerList != 0);
}

kz_FldList* kz_FldList_fromRb(resbuf** cursor, int keepBegin) {
    const int kind = kz_Rb_typeRb(*cursor);
    if (*cursor != nullptr && kind == KZ_RB_LISTBEGIN) {
        if (keepBegin == 0) *cursor = (*cursor)->rbnext;
        kz_FldList* list = nullptr;
        if (kz_Rb_convertRbToFldList(&list, cursor, 0) == 1) return list;
        KZ_TRACE(kz::kTraceArgument, kz::kTraceData, KZ_T("Argument error in kz_FldList_fromRb."));
        return nullptr;
    }
    if (*cursor != nullptr && kind == KZ_RB_NIL) {
        *cursor = (*cursor)->rbnext;
        return nullptr;
    }
    KZ_TRACE(kz::kTraceArgument, kz::kTraceData,
             KZ_T("Incorrect argument passed to kz_FldList_fromRb."));
    return nullptr;
}

void kz_FldList_returnList(kz_FldList* list) {
    resbuf* chain = kz_FldList_toRb(list, 1, 0);
    if (chain != nullptr) {
        kz_Rb_returnList(chain);
    } else {
        acedRetNil();
    }
}
