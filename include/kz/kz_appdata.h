/// The XDATA of an object as a list with one record an application: its name and its fields. And
/// field lists on objects that may lie in an attached drawing.
///
/// Points that come from an attached drawing are in the coordinates of the current one; what is
/// stored stays as it is.
#ifndef KZ_APPDATA_H
#define KZ_APPDATA_H

#include "kz/kz_objid.h"

/// The data of one application. Allocated with kz_Malloc.
struct kz_AppData {
    kz_Char* name;       ///< as the data has it; owned
    kz_FldList* fields;  ///< owned, or NULL
};

/// List of kz_AppData records that the list owns, in the order of the data.
typedef kz_LnkList kz_AppDataList;

extern "C" {

// --- records ------------------------------------------------------------------------------------

/// A new record with a copy of the name, which takes the list (it may be NULL) over.
/// @return NULL for a NULL name and without memory; the list then stays the caller's
KZ_EXPORT kz_AppData* kz_AppData_create(const kz_Char* name, kz_FldList* fields);
/// Frees the record with its name and its fields. NULL is ignored.
KZ_EXPORT void kz_AppData_destroy(kz_AppData* data);
/// A deep copy; NULL for NULL and without memory. Caller destroys
KZ_EXPORT kz_AppData* kz_AppData_dup(const kz_AppData* data);

// --- reading ------------------------------------------------------------------------------------

/// Everything on the object as a new list that the caller destroys, in the coordinates of the
/// current drawing. @return NULL for a null id, when there is no data, and when the data of the
/// last application can't be read as fields
KZ_EXPORT kz_AppDataList* kz_AppDataList_getFromCADObjId(const kz_CADObjId* id);
/// The same from a chain of XDATA, which stays as it is, into a new list at `list`. An application
/// whose data can't be read as fields has no record.
/// @return what came of the last application: 1 or 0; 0 also for NULL, without memory, and for a
/// chain without an application. The list is there unless an argument is NULL or memory lacks
KZ_EXPORT int kz_AppDataList_fromXdata(kz_AppDataList** list, resbuf* chain);

/// The record of an application, in any case of its name, lent; the list then stands on it.
/// @return NULL when there is none; the list then stands at its end
KZ_EXPORT kz_AppData* kz_AppDataList_search(kz_AppDataList* list, const kz_Char* name);
/// The fields of an application, lent; NULL when there are none.
KZ_EXPORT kz_FldList* kz_AppDataList_getFldList(kz_AppDataList* list, const kz_Char* name);
/// A deep copy that stands at its start; a record that can't be copied is left out. @return NULL
/// for NULL and without memory; caller destroys
KZ_EXPORT kz_AppDataList* kz_AppDataList_dup(kz_AppDataList* list);
/// Transforms the values of all records as kz_FldList_applyTransform does; a record without fields
/// counts as done. The list then stands at its start.
/// @return 1, or the first other result; 0 for NULL
KZ_EXPORT int kz_AppData_applyTransform(kz_AppDataList* list, const kz_Point* origin,
                                        const kz_RotMatrix* rotation, const kz_Char* letters);

// --- the list -----------------------------------------------------------------------------------
//
// As the operations of kz_LnkList; what is removed is destroyed.

KZ_EXPORT kz_AppDataList* kz_AppDataList_create(void);
KZ_EXPORT int kz_AppDataList_destroy(kz_AppDataList* list);
KZ_EXPORT int kz_AppDataList_delAll(kz_AppDataList* list);
KZ_EXPORT int kz_AppDataList_delCurr(kz_AppDataList* list);
KZ_EXPORT int kz_AppDataList_delNth(kz_AppDataList* list, int n);
KZ_EXPORT int kz_AppDataList_start(kz_AppDataList* list);
KZ_EXPORT int kz_AppDataList_end(kz_AppDataList* list);
KZ_EXPORT int kz_AppDataList_next(kz_AppDataList* list);
KZ_EXPORT int kz_AppDataList_prev(kz_AppDataList* list);
KZ_EXPORT int kz_AppDataList_skip(kz_AppDataList* list, int n);
KZ_EXPORT int kz_AppDataList_eol(const kz_AppDataList* list);
KZ_EXPORT int kz_AppDataList_isLast(const kz_AppDataList* list);
KZ_EXPORT int kz_AppDataList_length(const kz_AppDataList* list);
KZ_EXPORT kz_AppData* kz_AppDataList_getCurr(const kz_AppDataList* list);
KZ_EXPORT kz_AppData* kz_AppDataList_getNth(const kz_AppDataList* list, int n);
KZ_EXPORT kz_LnkPos kz_AppDataList_insEnd(kz_AppDataList* list, kz_AppData* data);
KZ_EXPORT kz_LnkPos kz_AppDataList_insStart(kz_AppDataList* list, kz_AppData* data);
KZ_EXPORT int kz_AppDataList_join(kz_AppDataList* list, kz_AppDataList* tail);

// --- field lists on objects ---------------------------------------------------------------------
//
// As kz_XData_initFldList and its sisters.

KZ_EXPORT int kz_CADObj_initXDataFldList(const kz_CADObjId* id, kz_FldList* list,
                                         const kz_Char* app);
KZ_EXPORT int kz_CADObj_modXDataFldList(const kz_CADObjId* id, kz_FldList* list,
                                        const kz_Char* app);
KZ_EXPORT int kz_CADObj_deleteXDataFldList(const kz_CADObjId* id, const kz_Char* app);
/// Reads, in the coordinates of the current drawing. @return also NULL for a null id
KZ_EXPORT kz_FldList* kz_CADObj_getXDataFldList(const kz_CADObjId* id, kz_FldList* list,
                                                const kz_Char* app);
}

#endif
