/// The field store by object id. An id begins with the entity name, so a pointer to one is a
/// pointer to the other.
#include "kz/kz_xdata.h"

namespace {

const int64_t* nameOf(const kz_CADObjId* id) {
    return reinterpret_cast<const int64_t*>(id);
}

}  // namespace

int kz_XData_objInitFldList(const kz_CADObjId* id, kz_FldList* list, const kz_Char* app) {
    return kz_XData_initFldList(nameOf(id), list, app);
}

int kz_XData_objModFldList(const kz_CADObjId* id, kz_FldList* list, const kz_Char* app) {
    return kz_XData_modFldList(nameOf(id), list, app);
}

int kz_XData_objSetFldList(const kz_CADObjId* id, kz_FldList* list, const kz_Char* app,
                           int clearExisting) {
    return kz_XData_setFldList(nameOf(id), list, app, clearExisting);
}

int kz_XData_objDeleteFldList(const kz_CADObjId* id, const kz_Char* app) {
    return kz_XData_deleteFldList(nameOf(id), app);
}

kz_FldList* kz_XData_objGetFldList(const kz_CADObjId* id, kz_FldList* list, const kz_Char* app) {
    return kz_XData_getFldList(nameOf(id), list, app);
}

kz_FldList* kz_XData_objGetFld(const kz_CADObjId* id, const kz_Char* fieldName,
                               const kz_Char* app) {
    return kz_XData_getFld(nameOf(id), fieldName, app);
}

int kz_XData_objSetFld(const kz_CADObjId* id, int16_t type, const void* value,
                       const kz_Char* fieldName, const kz_Char* app, int clearExisting,
                       int uniqueData) {
    return kz_XData_setFld(nameOf(id), type, value, fieldName, app, clearExisting, uniqueData);
}

int kz_XData_objDeleteFld(const kz_CADObjId* id, const kz_Char* fieldName, const kz_Char* app) {
    return kz_XData_deleteFld(nameOf(id), fieldName, app);
}

int kz_XData_objDeleteFldValue(const kz_CADObjId* id, int16_t type, const void* value,
                               const kz_Char* fieldName, const kz_Char* app, int clearAll) {
    return kz_XData_deleteFldValue(nameOf(id), type, value, fieldName, app, clearAll);
}

kz_FldList* kz_XData_objGetHandle(const kz_CADObjId* id, const kz_Char* fieldName,
                                  const kz_Char* app) {
    return kz_XData_getHandle(nameOf(id), fieldName, app);
}

int kz_XData_objSetHandle(const kz_CADObjId* id, const kz_Char* handle, const kz_Char* fieldName,
                          const kz_Char* app, int clearExisting) {
    return kz_XData_setHandle(nameOf(id), handle, fieldName, app, clearExisting);
}

int kz_XData_objDeleteHandle(const kz_CADObjId* id, const kz_Char* handle, const kz_Char* fieldName,
                             const kz_Char* app) {
    return kz_XData_deleteHandle(nameOf(id), handle, fieldName, app);
}
