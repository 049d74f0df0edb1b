/// Object ids: the records, and their way from handles and names.
#include "checks.h"
#include "kz/kz_objid.h"

namespace {

/// Modes of acedRedraw that are passed on; any other one is no mode there.
constexpr int kRedraw = 1;
constexpr int kEndHighlight = 4;
constexpr int kNoMode = 0;

/// A null id; NULL without memory.
kz_CADObjId* newId() {
    auto* id = static_cast<kz_CADObjId*>(kz_Malloc(sizeof(kz_CADObjId)));
    kz_CADObjId_init(id);
    return id;
}

/// The transform, made when there is none; NULL for a NULL id and without memory.
kz_TMatrix* needTMatrix(kz_CADObjId* id) {
    if (id != nullptr && id->tMatrix == nullptr) id->tMatrix = kz_TMatrix_create();
    return kz_CADObjId_getTMatrix(id);
}

}  // namespace

void kz_CADObjId_init(kz_CADObjId* id) {
    if (id != nullptr) *id = {};
}

kz_CADObjId* kz_CADObjId_create(const kz_Char* handle) {
    kz_CADObjId* id = newId();
    kz_CADObjId_set(id, handle);
    return id;
}

kz_CADObjId* kz_CADObjId_createFromDwgId(const kz_Char* handle, const kz_CADDwgId* drawing) {
    kz_CADObjId* id = newId();
    kz_CADObjId_setFromDwgId(id, handle, drawing);
    return id;
}

kz_CADObjId* kz_CADObjId_fromADSEname(const ads_name name) {
    kz_CADObjId* id = name != nullptr ? newId() : nullptr;
    if (id != nullptr) ads_name_set(name, id->ename);
    return id;
}

kz_CADObjId* kz_CADObjId_fromAcDbObjectId(const AcDbObjectId* object) {
    ads_name name = {};
    if (object == nullptr || acdbGetAdsName(name, *object) != Acad::eOk) return nullptr;
    return kz_CADObjId_fromADSEname(name);
}

kz_CADObjId* kz_CADObjId_copy(const kz_CADObjId* id) {
    if (id == nullptr) return nullptr;
    kz_CADObjId* copy = kz_CADObjId_fromADSEname(id->ename);
    kz_CADObjId_cloneTMatrixAndState(copy, id);
    // A copy that there was no memory to give the transform would place its object wrongly.
    const bool lacks_transform = copy != nullptr && copy->tMatrix == nullptr && id->tMatrix;
    if (!lacks_transform) return copy;
    kz_CADObjId_destroy(copy);
    return nullptr;
}

void kz_CADObjId_cloneTMatrixAndState(kz_CADObjId* target, const kz_CADObjId* source) {
    if (target == nullptr || source == nullptr) return;
    kz_TMatrix* transform = kz_CADObjId_getTMatrixCopy(source);
    if (transform == nullptr && source->tMatrix != nullptr) return;
    kz_CADObjId_setTMatrix(target, transform);
    target->nestedState = source->nestedState;
}

void kz_CADObjId_destroy(kz_CADObjId* id) {
    if (id == nullptr) return;
    kz_TMatrix_destroy(id->tMatrix);
    kz_Free(id);
}

int kz_CADObjId_isNull(const kz_CADObjId* id) {
    return kz::isNull(reinterpret_cast<const int64_t*>(id)) ? 1 : 0;
}

int kz_CADObjId_isEqual(const kz_CADObjId* a, const kz_CADObjId* b) {
    if (a == b) return 1;
    return a != nullptr && b != nullptr && ads_name_equal(a->ename, b->ename) ? 1 : 0;
}

int kz_CADObjId_set(kz_CADObjId* id, const kz_Char* handle) {
    if (id == nullptr) return 0;
    if (handle == nullptr) return 1;
    ads_name name = {};
    if (acdbHandEnt(handle, name) != RTNORM) return 0;
    ads_name_set(name, id->ename);
    return 1;
}

int kz_CADObjId_setFromDwgId(kz_CADObjId* id, const kz_Char* handle, const kz_CADDwgId* drawing) {
    if (id == nullptr) return 0;
    return kz::isEmpty(handle) ? 1 : kz_Ename_fromHandleInDwgId(id->ename, handle, drawing);
}

int kz_CADObjId_getNestedState(const kz_CADObjId* id) {
    return id != nullptr ? id->nestedState : 0;
}

void kz_CADObjId_setNestedState(kz_CADObjId* id, int state) {
    if (id != nullptr) id->nestedState = state;
}

kz_TMatrix* kz_CADObjId_getTMatrix(const kz_CADObjId* id) {
    return id != nullptr ? id->tMatrix : nullptr;
}

kz_TMatrix* kz_CADObjId_getTMatrixCopy(const kz_CADObjId* id) {
    const kz_TMatrix* transform = kz_CADObjId_getTMatrix(id);
    if (transform == nullptr) return nullptr;
    kz_TMatrix* copy = kz_TMatrix_create();
    if (kz_Matrix_copy(copy, transform) == 1) return copy;
    kz_TMatrix_destroy(copy);
    return nullptr;
}

int kz_CADObjId_setTMatrix(kz_CADObjId* id, kz_TMatrix* transform) {
    if (id == nullptr) return 0;
    if (id->tMatrix != transform) kz_TMatrix_destroy(id->tMatrix);
    id->tMatrix = transform;
    return 1;
}

int kz_CADObjId_getOrigin(kz_Point* out, const kz_CADObjId* id) {
    return kz_TMatrix_getOrigin(out, kz_CADObjId_getTMatrix(id));
}

int kz_CADObjId_getRMatrix(kz_RotMatrix* out, const kz_CADObjId* id) {
    return kz_TMatrix_getRMatrix(out, kz_CADObjId_getTMatrix(id));
}

int kz_CADObjId_setOrigin(kz_CADObjId* id, const kz_Point* origin) {
    return kz_TMatrix_setOrigin(needTMatrix(id), origin);
}

int kz_CADObjId_setRMatrix(kz_CADObjId* id, const kz_RotMatrix* rotation) {
    return kz_TMatrix_setRMatrix(needTMatrix(id), rotation);
}

void kz_CADObjId_redrawObject(const kz_CADObjId* id, int mode) {
    // Without a name the platform would redraw everything.
    if (kz_CADObjId_isNull(id) == 1) return;
    acedRedraw(id->ename, mode >= kRedraw && mode <= kEndHighlight ? mode : kNoMode);
}
