/// Drawings and the platform's names of their objects: entity name, object id, handle.
#include "ACAD/cad_rx/cad_rx.h"

#include "checks.h"
#include "guards.h"
#include "trace.h"

namespace {

constexpr const char* kTraceSource = "SRC/ACAD/cad_rx";

constexpr int kHandleGroup = 5;
/// Size of the buffer of kz_Ename_toHandle, and of the buffers that it is copied to [characters].
constexpr size_t kHandleSize = 256;

}  // namespace

AcDbDatabase* kz::workingDatabase() {
    return acdbHostApplicationServices()->workingDatabase();
}

AcDbDatabase* kz::databaseOf(const kz_CADDwgId* drawing) {
    return drawing != nullptr ? kz_AcCADDwgId_getAcDbDatabase(drawing) : workingDatabase();
}

AcDbDatabase* kz_AcCADDwgId_getAcDbDatabase(const kz_CADDwgId* drawing) {
    return drawing != nullptr ? drawing->database : nullptr;
}

int kz_AcCAD_getAcDbObjIdFromHandle(AcDbObjectId* out, const kz_Char* handle,
                                    AcDbDatabase* database) {
    if (out == nullptr || handle == nullptr) return 0;
    const AcDbDatabase* drawing = database != nullptr ? database : kz::workingDatabase();
    if (drawing == nullptr) return 0;
    return drawing->getAcDbObjectId(*out, false, AcDbHandle(handle)) == Acad::eOk;
}

int kz_AcCAD_getEntNameFromHandle(ads_name out, const kz_Char* handle, AcDbDatabase* database) {
    AcDbObjectId object;
    if (out == nullptr || kz_AcCAD_getAcDbObjIdFromHandle(&object, handle, database) != 1) return 0;
    return acdbGetAdsName(out, object) == Acad::eOk;
}

int kz_AcCAD_getHandleFromAcDbObjectId(kz_Char* out, const AcDbObjectId* object) {
    ads_name name = {};
    if (out == nullptr || object == nullptr) return 0;
    if (acdbGetAdsName(name, *object) != Acad::eOk) return 0;
    const kz_Char* handle = kz_Ename_toHandle(name);
    if (handle == nullptr) return 0;
    kz_Str_ncpy(out, handle, kHandleSize - 1);
    return 1;
}

AcDbDatabase* kz_AcCAD_getAcDbDatabaseFromAcDbObjectId(const AcDbObjectId* object) {
    if (object == nullptr) return nullptr;
    AcDbObject* opened = nullptr;
    if (acdbOpenObject(opened, *object, AcDb::kForRead) != Acad::eOk) return nullptr;
    AcDbDatabase* database = opened->database();
    opened->close();
    return database;
}

AcDbDatabase* kz_AcCAD_getAcDbDatabaseFromEname(const ads_name name) {
    if (kz::isNull(name)) return nullptr;
    AcDbObjectId object;
    const Acad::ErrorStatus status = acdbGetObjectId(object, name);
    KZ_ASSERTION(status == Acad::eOk);
    return status == Acad::eOk ? kz_AcCAD_getAcDbDatabaseFromAcDbObjectId(&object) : nullptr;
}

int kz_Ename_fromHandle(ads_name out, const kz_Char* handle) {
    if (out == nullptr || handle == nullptr) return 0;
    ads_name name = {};
    ads_name_clear(out);
    if (acdbHandEnt(handle, name) != RTNORM) return 0;
    const kz::OwnedChain entity(acdbEntGet(name));
    if (entity == nullptr) return 0;
    ads_name_set(name, out);
    return 1;
}

int kz_Ename_fromHandleInDwgId(ads_name out, const kz_Char* handle, const kz_CADDwgId* drawing) {
    AcDbDatabase* database = kz::databaseOf(drawing);
    return database != nullptr ? kz_AcCAD_getEntNameFromHandle(out, handle, database) : 0;
}

const kz_Char* kz_Ename_toHandle(const ads_name name) {
    static kz_Char text[kHandleSize];
    if (kz::isNull(name)) return nullptr;
    const kz::OwnedChain entity(acdbEntGet(name));
    const resbuf* handle = kz_Rb_entitem(entity.get(), kHandleGroup);
    if (handle == nullptr || handle->resval.rstring == nullptr) return nullptr;
    return kz_Str_ncpy(text, handle->resval.rstring, kHandleSize - 1);
}
