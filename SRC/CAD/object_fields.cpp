/// Field lists on objects that may lie in an attached drawing.
#include "CAD/attached_points.h"
#include "kz/kz_appdata.h"
#include "kz/kz_xdata.h"
#include "trace.h"

namespace {

constexpr const char* kTraceSource = "SRC/CAD";

void traceCall(const kz_Char* name) {
    KZ_TRACEF(kz::kTraceExit, kz::kTraceCadFields, KZ_T("%s..."), name);
}

const int64_t* nameOf(const kz_CADObjId* id) {
    return kz_CADObjId_isNull(id) == 1 ? nullptr : id->ename;
}

}  // namespace

kz::DrawingTransform::DrawingTransform(const kz_CADObjId* id) {
    kz_RotMatrix_setIdentity(&rotation_);
    int attached = 0;
    if (kz_CADObjId_getDwgTransform(&attached, &origin_, &rotation_, id) != 1) return;
    const kz_Point none = {};
    const bool identity =
        kz_Point_equal(&origin_, &none) == 1 && kz_RotMatrix_isIdentity(&rotation_) == 1;
    moves_ = attached != 0 && !identity;
}

int kz_CADObj_initXDataFldList(const kz_CADObjId* id, kz_FldList* list, const kz_Char* app) {
    traceCall(KZ_T("kz_CADObj_initXDataFldList"));
    return kz_XData_initFldList(nameOf(id), list, app);
}

int kz_CADObj_modXDataFldList(const kz_CADObjId* id, kz_FldList* list, const kz_Char* app) {
    traceCall(KZ_T("kz_CADObj_modXDataFldList"));
    return kz_XData_modFldList(nameOf(id), list, app);
}

int kz_CADObj_deleteXDataFldList(const kz_CADObjId* id, const kz_Char* app) {
    traceCall(KZ_T("kz_CADObj_deleteXDataFldList"));
    return kz_XData_deleteFldList(nameOf(id), app);
}

kz_FldList* kz_CADObj_getXDataFldList(const kz_CADObjId* id, kz_FldList* list, const kz_Char* app) {
    traceCall(KZ_T("kz_CADObj_getXDataFldList"));
    if (kz_CADObjId_isNull(id) == 1) return nullptr;
    kz_FldList* read = kz_XData_getFldList(id->ename, list, app);
    if (read == nullptr) return nullptr;
    const kz::DrawingTransform transform(id);
    if (transform.moves()) {
        kz_FldList_applyTransform(read, transform.origin(), transform.rotation(),
                                  kz::DrawingTransform::letters());
    }
    return read;
}
