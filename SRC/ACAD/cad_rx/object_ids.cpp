/// Object ids that open their objects, and the platform's id behind them.
#include "ACAD/cad_rx/cad_rx.h"
#include "kz/kz_error.h"
#include "kz/kz_objid.h"
#include "trace.h"

namespace {

constexpr const char* kTraceSource = "SRC/ACAD/cad_rx";
/// Code of the entry for a name that the platform refuses.
constexpr int kRefused = 11;

int eraseObject(const kz_CADObjId* id) {
    AcDbObjectId object;
    AcDbObject* opened = nullptr;
    if (kz_CADObjId_getAcDbObjectId(&object, id) != 1) return 0;
    if (acdbOpenObject(opened, object, AcDb::kForWrite) != Acad::eOk) return 0;
    const bool erased = opened->erase(true) == Acad::eOk;
    opened->close();
    return erased ? 1 : 0;
}

}  // namespace

void kz::submitStatus(const kz_Char* function, Acad::ErrorStatus status) {
    kz_Char* text = kz_Diag_getDiagMsgBuf();
    kz_Error_getARXErrorMsg(text, function, status);
    kz_Error_submitCustomError(text, kRefused, nullptr, nullptr);
}

int kz_CADObjId_getAcDbObjectId(AcDbObjectId* out, const kz_CADObjId* id) {
    if (out == nullptr || kz_CADObjId_isNull(id) == 1) return 0;
    const Acad::ErrorStatus status = acdbGetObjectId(*out, id->ename);
    KZ_ASSERTION(status == Acad::eOk);
    if (status != Acad::eOk) kz::submitStatus(KZ_T("acdbGetObjectId"), status);
    return status == Acad::eOk ? 1 : 0;
}

int kz_CADObjId_erase(kz_CADObjId* id, int destroy) {
    const int status = eraseObject(id);
    if (destroy != 0) kz_CADObjId_destroy(id);
    return status;
}

int kz_CADObjId_delete(kz_CADObjId* id) {
    return kz_CADObjId_erase(id, 1);
}
