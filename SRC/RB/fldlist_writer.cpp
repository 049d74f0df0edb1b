/// Field lists to chains: one field at a time, in the Lisp or the XData form.
#include "RB/field_writer.h"
#include "kz/kz_fldcnv.h"
#include "kz/kz_point_cnv.h"

namespace kz {
namespace {

bool appendPoint(ChainTail& tail, int code, const kz_Point& value) {
    ads_point point{};
    kz_Point_toADSPoint(point, &value);
    return tail.append(code, point);
}

/// A vector is written through a point, too.
bool appendVector(ChainTail& tail, int code, const kz_Vector& value) {
    return appendPoint(tail, code, {value.x, value.y, value.z});
}

bool appendValue(ChainTail& tail, const kz_FldNode& cell, bool xdata);

/// The values of a V field in a row, up to the first that can't be written.
bool appendValues(ChainTail& tail, kz_LnkList* values, bool xdata) {
    for (kz_LnkList_start(values); kz_LnkList_eol(values) == 0; kz_LnkList_next(values)) {
        const auto* cell = static_cast<const kz_FldNode*>(kz_LnkList_getCurr(values));
        if (!appendValue(tail, *cell, xdata)) return false;
    }
    return true;
}

bool appendValue(ChainTail& tail, const kz_FldNode& cell, bool xdata) {
    const kz_FldValue& value = cell.value;
    switch (cell.type) {
        case KZ_FLD_CHAR:
            return tail.appendText(xdata ? 1000 : RTSTR, value.text, kMaxWrittenText);
        case KZ_FLD_HANDLE:
            return tail.appendText(xdata ? 1005 : RTSTR, value.text, kMaxWrittenText);
        case KZ_FLD_INT:
            return tail.append(xdata ? 1070 : RTSHORT, &value.integer);
        case KZ_FLD_LONG:
            return tail.append(xdata ? 1071 : RTLONG, &value.longInt);
        case KZ_FLD_REAL:
            return tail.append(xdata ? 1040 : RTREAL, &value.real);
        case KZ_FLD_POINT:
            return appendPoint(tail, xdata ? 1010 : RT3DPOINT, value.point);
        case KZ_FLD_MPOINT:
            return appendPoint(tail, xdata ? 1011 : RT3DPOINT, value.point);
        case KZ_FLD_DPOINT:
            return appendPoint(tail, xdata ? 1012 : RT3DPOINT, value.point);
        case KZ_FLD_VECTOR:
            return appendVector(tail, xdata ? 1013 : RT3DPOINT, value.vector);
        case KZ_FLD_UNKNOWN:
            return true;
        case KZ_FLD_LIST:
            return appendValues(tail, value.list, xdata);
        default:
            return !xdata && tail.append(RTNIL, nullptr);
    }
}

bool appendOpening(ChainTail& tail, const kz_Char* name, const FieldForm& form) {
    const bool brace = form.xdata && !form.list_markers;
    const bool good = brace ? tail.append(1002, KZ_T("{")) : tail.append(RTLB, nullptr);
    if (!good || name == nullptr || *name == 0) return good;
    return tail.appendText(form.xdata ? 1000 : RTSTR, name, kMaxWrittenText);
}

bool appendClosing(ChainTail& tail, const FieldForm& form) {
    const bool brace = form.xdata && !form.list_markers;
    return brace ? tail.append(1002, KZ_T("}")) : tail.append(RTLE, nullptr);
}

}  // namespace

bool appendField(ChainTail& tail, const kz_FldNode& field, const FieldForm& form) {
    bool good = !form.open || appendOpening(tail, field.name, form);
    good = good && appendValue(tail, field, form.xdata);
    if (form.close) good = appendClosing(tail, form) && good;
    return good;
}

}  // namespace kz

int kz_Rb_convertFldListToRb(resbuf** chain, kz_FldList* list, int xdataMode, int open, int close,
                             int wrap) {
    return kz_Rb_convertFldListToRbExt(chain, list, xdataMode, open, close, wrap, 0);
}

int kz_Rb_convertFldListToRbExt(resbuf** chain, kz_FldList* list, int xdataMode, int open,
                                int close, int wrap, int listMarkers) {
    const kz_FldNode* field = kz_FldList_curr(list);
    if (chain == nullptr || field == nullptr) return 0;
    kz::ChainTail tail(chain);
    return kz::appendField(
        tail, *field,
        {xdataMode != 0, wrap != 0 && open != 0, wrap != 0 && close != 0, listMarkers != 0});
}
