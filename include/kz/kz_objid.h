/// Object ids and drawing ids: the records that stand for an object of a drawing and for a drawing,
/// lists of object ids, and the ways between the platform's names of an object: entity name, object
/// id and handle.
///
/// An entity name is good for as long as its drawing is open; the handle is what lasts. A record
/// whose name is two zero words is a null id. Where a drawing id is taken, NULL is the working
/// database; an id whose drawing was closed has no objects.
#ifndef KZ_OBJID_H
#define KZ_OBJID_H

#include "kz/kz_platform.h"

/// An object, by its entity name. The name comes first, so that the record passes wherever the
/// platform wants an ads_name. Allocated with kz_Malloc.
struct kz_CADObjId {
    ads_name ename;       ///< both words 0: no object
    kz_TMatrix* tMatrix;  ///< from the object's drawing to the current one; owned, or NULL
    int32_t nestedState;  ///< 0 not determined, 1 picked, 2 picked inside an attached drawing
};

/// List of kz_CADObjId records that the list owns.
typedef kz_LnkList kz_CADObjIdList;

/// A drawing. The records are made and freed by the service KZ_CADSERVICE only, which knows the
/// living ones: nobody else can tell one from a stale pointer.
struct kz_CADDwgId {
    kz_Char signature[4];    ///< "KZ_D"
    kz_Char* name;           ///< the drawing's file, or NULL
    AcDbDatabase* database;  ///< NULL from the moment that the drawing is closed
};

extern "C" {

// --- object ids ---------------------------------------------------------------------------------
//
// A new id is NULL without memory; the caller destroys it. NULL for an id is accepted everywhere.

/// Makes the record a null id without a transform. What it held is not freed.
KZ_EXPORT void kz_CADObjId_init(kz_CADObjId* id);
/// A new id of the object with this handle in the current drawing. A handle that is NULL or that
/// nobody has gives a null id, not NULL.
KZ_EXPORT kz_CADObjId* kz_CADObjId_create(const kz_Char* handle);
/// The same in another drawing.
KZ_EXPORT kz_CADObjId* kz_CADObjId_createFromDwgId(const kz_Char* handle,
                                                   const kz_CADDwgId* drawing);
/// A new id with this name, which is not looked at. @return also NULL for NULL
KZ_EXPORT kz_CADObjId* kz_CADObjId_fromADSEname(const ads_name name);
/// A new id of an object. @return also NULL when the platform has no name for it
KZ_EXPORT kz_CADObjId* kz_CADObjId_fromAcDbObjectId(const AcDbObjectId* object);
/// A new id with copies of the name, the transform and the state. @return also NULL for NULL
KZ_EXPORT kz_CADObjId* kz_CADObjId_copy(const kz_CADObjId* id);
/// Gives `target` a copy of the source's transform (none if the source has none) and its state.
/// Without memory, and when either is NULL, `target` stays as it was.
KZ_EXPORT void kz_CADObjId_cloneTMatrixAndState(kz_CADObjId* target, const kz_CADObjId* source);
/// Frees the transform and the record.
KZ_EXPORT void kz_CADObjId_destroy(kz_CADObjId* id);

/// 1 for NULL and for a name of two zero words, else 0. Looks at nothing but the two words, so it
/// answers for any record that begins with a name.
KZ_EXPORT int kz_CADObjId_isNull(const kz_CADObjId* id);
/// 1 for the same record and for equal names, whatever transform and state are; 0 when one is NULL.
KZ_EXPORT int kz_CADObjId_isEqual(const kz_CADObjId* a, const kz_CADObjId* b);
/// Names the object with this handle in the current drawing, also an erased one; transform and
/// state stay. A NULL handle changes nothing.
/// @return 1; 0 for a NULL id, and for a handle that nobody has: the id is then as it was
KZ_EXPORT int kz_CADObjId_set(kz_CADObjId* id, const kz_Char* handle);
/// The same in another drawing; an empty handle, too, changes nothing.
KZ_EXPORT int kz_CADObjId_setFromDwgId(kz_CADObjId* id, const kz_Char* handle,
                                       const kz_CADDwgId* drawing);

/// How the object was found; 0 for NULL.
KZ_EXPORT int kz_CADObjId_getNestedState(const kz_CADObjId* id);
KZ_EXPORT void kz_CADObjId_setNestedState(kz_CADObjId* id, int state);
/// The id's own transform, lent; NULL when it has none.
KZ_EXPORT kz_TMatrix* kz_CADObjId_getTMatrix(const kz_CADObjId* id);
/// A copy of the transform that the caller destroys. @return NULL also when there is none
KZ_EXPORT kz_TMatrix* kz_CADObjId_getTMatrixCopy(const kz_CADObjId* id);
/// Hands a transform, or NULL, over to the id; the one before is destroyed.
/// @return 1; 0 for a NULL id, the transform then stays the caller's
KZ_EXPORT int kz_CADObjId_setTMatrix(kz_CADObjId* id, kz_TMatrix* transform);
/// Copies of the parts of the transform out. @return 1; 0 for NULL and when there is none
KZ_EXPORT int kz_CADObjId_getOrigin(kz_Point* out, const kz_CADObjId* id);
KZ_EXPORT int kz_CADObjId_getRMatrix(kz_RotMatrix* out, const kz_CADObjId* id);
/// Set one part of the transform, which starts as the identity when there is none. @return 1 or 0
KZ_EXPORT int kz_CADObjId_setOrigin(kz_CADObjId* id, const kz_Point* origin);
KZ_EXPORT int kz_CADObjId_setRMatrix(kz_CADObjId* id, const kz_RotMatrix* rotation);

/// Erases the object. With `destroy` not 0 the id is destroyed whatever comes of it.
/// @return 1; 0 for a null id and when the platform refuses (a locked layer, an open or an erased
/// object)
KZ_EXPORT int kz_CADObjId_erase(kz_CADObjId* id, int destroy);
/// Erases the object and destroys the id. @return as kz_CADObjId_erase
KZ_EXPORT int kz_CADObjId_delete(kz_CADObjId* id);
/// Redraws the object (mode 1), takes it off the screen (2), highlights it (3) or ends that (4).
/// Does nothing for a null id.
KZ_EXPORT void kz_CADObjId_redrawObject(const kz_CADObjId* id, int mode);
/// The platform's id of the object, also of an erased one. A name that the platform refuses adds
/// the custom error 11 to the error list.
/// @return 1; 0 for a null id, and for such a name, `out` untouched
KZ_EXPORT int kz_CADObjId_getAcDbObjectId(AcDbObjectId* out, const kz_CADObjId* id);

// --- names of an object -------------------------------------------------------------------------
//
// Erased objects are found, too, unless something else is said. NULL gives 0 or NULL, except that a
// NULL database is the working one.

/// The object with this handle. @return 1; 0 for a handle that nobody has, `out` untouched
KZ_EXPORT int kz_AcCAD_getAcDbObjIdFromHandle(AcDbObjectId* out, const kz_Char* handle,
                                              AcDbDatabase* database);
KZ_EXPORT int kz_AcCAD_getEntNameFromHandle(ads_name out, const kz_Char* handle,
                                            AcDbDatabase* database);
/// The handle of an object that is not erased, at most 255 characters.
/// @return 1; 0 when there is none, `out` untouched
KZ_EXPORT int kz_AcCAD_getHandleFromAcDbObjectId(kz_Char* out, const AcDbObjectId* object);
/// The drawing that holds the object, which must be open to nobody for write and not erased; lent.
KZ_EXPORT AcDbDatabase* kz_AcCAD_getAcDbDatabaseFromAcDbObjectId(const AcDbObjectId* object);
KZ_EXPORT AcDbDatabase* kz_AcCAD_getAcDbDatabaseFromEname(const ads_name name);
/// The drawing of a living drawing id, lent; NULL for NULL and when it was closed.
KZ_EXPORT AcDbDatabase* kz_AcCADDwgId_getAcDbDatabase(const kz_CADDwgId* drawing);

/// The entity with this handle in the current drawing. @return 1; 0 when there is none or it is
/// erased: `out` is then a null name, but untouched for a NULL handle
KZ_EXPORT int kz_Ename_fromHandle(ads_name out, const kz_Char* handle);
/// The object with this handle in another drawing. @return 1; 0 when there is none, `out` untouched
KZ_EXPORT int kz_Ename_fromHandleInDwgId(ads_name out, const kz_Char* handle,
                                         const kz_CADDwgId* drawing);
/// Handle of an object that is not erased, cut at 255 characters, in a static buffer that the next
/// call overwrites. @return NULL when there is none
KZ_EXPORT const kz_Char* kz_Ename_toHandle(const ads_name name);

// --- drawing ids in Lisp ------------------------------------------------------------------------
//
// In Lisp a drawing id is an entity name that is no entity: its first word is the record's address,
// its second word 0. It is good until the record is destroyed.

/// Makes the name that stands for a record; for NULL `out` stays as it was.
KZ_EXPORT void kz_CADDwgId_toADSName(ads_name out, const kz_CADDwgId* drawing);
/// The record behind a name, through kz_CADDwgId_check.
KZ_EXPORT kz_CADDwgId* kz_CADDwgId_fromADSName(const ads_name name, int check);
/// `drawing` itself; with `check` not 0 only when it is a record that the service KZ_CADSERVICE
/// knows and that bears the signature, else NULL. An address that the service doesn't know is never
/// read. A record whose drawing was closed passes.
KZ_EXPORT kz_CADDwgId* kz_CADDwgId_check(kz_CADDwgId* drawing, int check);

// --- lists of object ids ------------------------------------------------------------------------
//
// Lists of the tools library whose elements the list destroys. NULL is an empty list that can't be
// changed.

/// A list of the ids, which end in a null pointer, standing at its start.
/// @return NULL without memory, the ids then stay the caller's
KZ_EXPORT kz_CADObjIdList* kz_CADObjIdList_create(kz_CADObjId* first, ...);
/// @return 1; 0 for NULL
KZ_EXPORT int kz_CADObjIdList_destroy(kz_CADObjIdList* list);
/// Empties the list. @return 1; 0 for NULL
KZ_EXPORT int kz_CADObjIdList_delAll(kz_CADObjIdList* list);
/// Removes the current id; the following one becomes current. @return 1; 0 when there is none
KZ_EXPORT int kz_CADObjIdList_delCurr(kz_CADObjIdList* list);
/// Removes the id at position `n`, counted from 0. @return 1; 0 when there is none
KZ_EXPORT int kz_CADObjIdList_delNth(kz_CADObjIdList* list, int n);
/// Appends an id, which belongs to the list from then on. The position stays.
/// @return the new place; NULL without memory or list, the id then stays the caller's
KZ_EXPORT kz_LnkPos kz_CADObjIdList_insEnd(kz_CADObjIdList* list, kz_CADObjId* id);
/// Moves the ids of `tail` behind those of `list` and destroys `tail`. @return 1; 0 when either is
/// NULL or both are the same
KZ_EXPORT int kz_CADObjIdList_join(kz_CADObjIdList* list, kz_CADObjIdList* tail);
/// To the first id. @return 1; 0 when there is none
KZ_EXPORT int kz_CADObjIdList_start(kz_CADObjIdList* list);
/// One step forward. @return 1; 0 at the end
KZ_EXPORT int kz_CADObjIdList_next(kz_CADObjIdList* list);
/// 1 behind the last id, and for NULL.
KZ_EXPORT int kz_CADObjIdList_eol(const kz_CADObjIdList* list);
KZ_EXPORT int kz_CADObjIdList_length(const kz_CADObjIdList* list);
/// The current id, lent; NULL at the end.
KZ_EXPORT kz_CADObjId* kz_CADObjIdList_getCurr(const kz_CADObjIdList* list);
/// Position of the first equal id (kz_CADObjId_isEqual), counted from 0, -1 when there is none. The
/// list then stands at it, or at the end.
KZ_EXPORT int kz_CADObjIdList_search(kz_CADObjIdList* list, const kz_CADObjId* id);

/// The objects of a drawing on a layer, of a colour, or with the properties that a field list names
/// (with `any` not 0 one of them is enough), found by the service KZ_CADSERVICE, as a new list that
/// the caller destroys. A drawing without a name is the one in the editor.
/// @return NULL for a NULL or empty text, a NULL list, an unknown drawing, and when there is none
KZ_EXPORT kz_CADObjIdList* kz_CADObjIdList_fromLayer(const kz_Char* drawingName,
                                                     const kz_Char* layer);
KZ_EXPORT kz_CADObjIdList* kz_CADObjIdList_fromColor(const kz_Char* drawingName,
                                                     const kz_Char* color);
KZ_EXPORT kz_CADObjIdList* kz_CADObjIdList_fromAttributes(const kz_Char* drawingName,
                                                          kz_FldList* attributes, int any);
}

#endif
