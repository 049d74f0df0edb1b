/// Field lists kept on drawing objects as extended data (XDATA), each under the name of an
/// application. An object's data for one application is a chain: the application's name (1001),
/// then each field between braces (1002): its name (1000) and its values.
///
/// Field and application names are matched without regard to case; field names hold at most 255
/// characters. An object is named by its entity name, which is also the first member of a
/// kz_CADObjId; NULL and a name of two zero words are no object. Lists, chains and texts that are
/// passed in stay the caller's.
///
/// The calls open objects only inside themselves, erased ones too, and leave nothing open.
#ifndef KZ_XDATA_H
#define KZ_XDATA_H

#include "kz/kz_platform.h"

struct kz_CADObjId;

extern "C" {

// --- whole lists --------------------------------------------------------------------------------
//
// Writing gives 1, or 0 without an object, a list or an application, and when the host refuses the
// data (a trace at level 0 names its error number); the object's data is then as it was.

/// Replaces all fields of the application by those of the list. An empty list removes the data.
KZ_EXPORT int kz_XData_initFldList(const ads_name id, kz_FldList* list, const kz_Char* app);
/// Each field of the list replaces the field of that name, in its place, or is appended; other
/// fields stay.
KZ_EXPORT int kz_XData_modFldList(const ads_name id, kz_FldList* list, const kz_Char* app);
/// The first when `clearExisting` is not 0, the second otherwise.
KZ_EXPORT int kz_XData_setFldList(const ads_name id, kz_FldList* list, const kz_Char* app,
                                  int clearExisting);
/// Removes the application's data from the object. @return 0 also when it has none
KZ_EXPORT int kz_XData_deleteFldList(const ads_name id, const kz_Char* app);
/// Reads. With a NULL list all fields, upper-cased, as a new list that the caller destroys;
/// otherwise fills the fields named in `list`, removes those that the object does not have, and
/// gives `list`.
/// @return NULL without an object, an application or any data; `list` then keeps its content
KZ_EXPORT kz_FldList* kz_XData_getFldList(const ads_name id, kz_FldList* list, const kz_Char* app);
/// The same for an erased entity too, which is brought back for the time of the call.
KZ_EXPORT kz_FldList* kz_XData_getFldListAlways(const ads_name id, kz_FldList* list,
                                                const kz_Char* app);

// --- one field ----------------------------------------------------------------------------------
//
// A value is its type letter and the text itself (C, H) or a pointer to the value.

/// A new list with that field, or with all fields for a NULL or empty name; caller destroys.
/// @return NULL when there is no such field
KZ_EXPORT kz_FldList* kz_XData_getFld(const ads_name id, const kz_Char* fieldName,
                                      const kz_Char* app);
/// Adds a value to the field, which is made when it is missing. With `clearExisting` the value
/// replaces those of the field; other fields always stay. With `uniqueData` a value that the field
/// has already is not added again, which still gives 1.
/// @return 1; 0 without a type, value, field name, object or application, or when the host refuses
KZ_EXPORT int kz_XData_setFld(const ads_name id, int16_t type, const void* value,
                              const kz_Char* fieldName, const kz_Char* app, int clearExisting,
                              int uniqueData);
/// Removes the field with all its values. @return 1, also when there is no such field; 0 when the
/// host refuses
KZ_EXPORT int kz_XData_deleteFld(const ads_name id, const kz_Char* fieldName, const kz_Char* app);
/// Removes the first value of the field that is equal, with `clearAll` all of them. A field of one
/// value goes with it; one of several values stays, perhaps with none.
/// @return 1; 0 when there is no such value, or when the host refuses
KZ_EXPORT int kz_XData_deleteFldValue(const ads_name id, int16_t type, const void* value,
                                      const kz_Char* fieldName, const kz_Char* app, int clearAll);
/// The operations above for a field that refers to an object by its handle (type H), which holds
/// each handle once.
KZ_EXPORT kz_FldList* kz_XData_getHandle(const ads_name id, const kz_Char* fieldName,
                                         const kz_Char* app);
KZ_EXPORT int kz_XData_setHandle(const ads_name id, const kz_Char* handle, const kz_Char* fieldName,
                                 const kz_Char* app, int clearExisting);
KZ_EXPORT int kz_XData_deleteHandle(const ads_name id, const kz_Char* handle,
                                    const kz_Char* fieldName, const kz_Char* app);

// --- the same by object id ----------------------------------------------------------------------

KZ_EXPORT int kz_XData_objInitFldList(const kz_CADObjId* id, kz_FldList* list, const kz_Char* app);
KZ_EXPORT int kz_XData_objModFldList(const kz_CADObjId* id, kz_FldList* list, const kz_Char* app);
KZ_EXPORT int kz_XData_objSetFldList(const kz_CADObjId* id, kz_FldList* list, const kz_Char* app,
                                     int clearExisting);
KZ_EXPORT int kz_XData_objDeleteFldList(const kz_CADObjId* id, const kz_Char* app);
KZ_EXPORT kz_FldList* kz_XData_objGetFldList(const kz_CADObjId* id, kz_FldList* list,
                                             const kz_Char* app);
KZ_EXPORT kz_FldList* kz_XData_objGetFld(const kz_CADObjId* id, const kz_Char* fieldName,
                                         const kz_Char* app);
KZ_EXPORT int kz_XData_objSetFld(const kz_CADObjId* id, int16_t type, const void* value,
                                 const kz_Char* fieldName, const kz_Char* app, int clearExisting,
                                 int uniqueData);
KZ_EXPORT int kz_XData_objDeleteFld(const kz_CADObjId* id, const kz_Char* fieldName,
                                    const kz_Char* app);
KZ_EXPORT int kz_XData_objDeleteFldValue(const kz_CADObjId* id, int16_t type, const void* value,
                                         const kz_Char* fieldName, const kz_Char* app,
                                         int clearAll);
KZ_EXPORT kz_FldList* kz_XData_objGetHandle(const kz_CADObjId* id, const kz_Char* fieldName,
                                            const kz_Char* app);
KZ_EXPORT int kz_XData_objSetHandle(const kz_CADObjId* id, const kz_Char* handle,
                                    const kz_Char* fieldName, const kz_Char* app,
                                    int clearExisting);
KZ_EXPORT int kz_XData_objDeleteHandle(const kz_CADObjId* id, const kz_Char* handle,
                                       const kz_Char* fieldName, const kz_Char* app);

// --- chains -------------------------------------------------------------------------------------

/// Writes the fields of the list into the chain, whose first node is the 1001 node; with
/// `clearExisting` in the place of all that follows it.
/// @return 1; 0 for NULL and when a field can't be written, the chain then holds a part of it
KZ_EXPORT int kz_XData_fromFldList(resbuf* chain, kz_FldList* list, int clearExisting);
/// The application's fields of a full entity list as a new list that the caller destroys. Reads to
/// the end of the chain: the data of an application behind it is taken in. NULL when the
/// application is not there.
KZ_EXPORT kz_FldList* kz_XData_toFldList(resbuf* chain, const kz_Char* app);
/// Fills the fields of `list` from the chain and removes those that the chain does not have. A
/// field that has no values in the chain keeps what it held. The position ends behind the last
/// field.
/// @return 1; 0 for NULL
KZ_EXPORT int kz_XData_updateFldList(resbuf* chain, kz_FldList* list);
/// Finds a field's name node, lent. @return 1; 0 when there is none, `out` untouched
KZ_EXPORT int kz_Xdata_findField(resbuf** out, const kz_Char* fieldName, resbuf* chain);
/// Cuts a chain (a full entity list, or XDATA alone) down to the part of one application, from its
/// 1001 node on; what is cut away is released. A NULL `app` keeps the XDATA of all applications:
/// the chain then starts with the first 1001 node behind the -3 marker, if there is a marker.
/// @return 1, also for an empty chain; 0 for a NULL address, and when there is no such part: the
/// chain is then released and NULL
KZ_EXPORT int kz_XData_getAppXData(resbuf** chain, const kz_Char* app);
/// The application's 1001 node behind the -3 marker of a full entity list, lent. The last node of
/// the chain is never found. With `create` a missing node, and a missing marker, is appended, and
/// the application registered.
/// @return NULL when there is none, or for a NULL chain or a NULL or empty `app`
KZ_EXPORT resbuf* kz_XData_getPointer(resbuf* chain, const kz_Char* app, int create);

// --- database -----------------------------------------------------------------------------------

/// The host's last error number (system variable ERRNO).
KZ_EXPORT int kz_Diag_acadErrorNo(void);
/// The application's chain on the object, or all its XDATA for a NULL `app`; caller releases.
/// @return NULL when there is none
KZ_EXPORT resbuf* kz_Xdata_getFromEnt(const ads_name id, const kz_Char* app);
/// Writes back the XDATA held in a full entity list to the entity named in it, from the node of
/// `app` on. @return 1; 0 without a name or such a node, or when the host refuses
KZ_EXPORT int kz_Xdata_setFromEntList(const kz_Char* app, resbuf* list);
}

#endif
