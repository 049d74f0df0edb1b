/// Field lists kept in a drawing itself: records (x-groups) in a dictionary of the drawing's named
/// objects dictionary, under the name of an application, and the code that tells drawings apart.
///
/// `dictName` is the application's dictionary, `xGroup` the key of a record in it. A drawing is
/// named by a kz_CADDwgId or by its database; NULL is the working database, while the id of a
/// drawing that was closed fails. Field names are matched without regard to case and hold at most
/// 255 characters. Lists, chains and texts that are passed in stay the caller's.
///
/// Failures give 0 or NULL and change nothing; they are not put on the error list. A NULL or empty
/// name is always one. The calls open objects only inside themselves and leave nothing open.
#ifndef KZ_DWGDATA_H
#define KZ_DWGDATA_H

#include "kz/kz_objid.h"

extern "C" {

// --- fields of a record -------------------------------------------------------------------------
//
// A value is its type letter and the text itself (C, H) or a pointer to the value.

/// Writes the list: each field replaces the field of that name, in its place, or is appended. With
/// `clearExisting` not 0 the list replaces all that the record has; an empty list then leaves an
/// empty record. Dictionary and record are made when they are missing.
/// @return 1; 0 also for a NULL list and when the host refuses the data
KZ_EXPORT int kz_DwgData_setFldList(const kz_CADDwgId* drawing, const kz_Char* dictName,
                                    const kz_Char* xGroup, kz_FldList* list, int clearExisting);
/// Reads. With a NULL list all fields, upper-cased, as a new list that the caller destroys;
/// otherwise fills the fields named in `list`, removes those that the record does not have, and
/// gives `list`. The result stands at its start.
/// @return NULL when there is no such record, or an empty one; `list` then keeps its content
KZ_EXPORT kz_FldList* kz_DwgData_getFldList(const kz_CADDwgId* drawing, const kz_Char* dictName,
                                            const kz_Char* xGroup, kz_FldList* list);
/// A new list with that field, or with all fields for a NULL or empty name; caller destroys.
/// @return NULL when there is no such field
KZ_EXPORT kz_FldList* kz_DwgData_getFld(const kz_CADDwgId* drawing, const kz_Char* dictName,
                                        const kz_Char* xGroup, const kz_Char* fieldName);
/// Adds a value to the field, which is made when it is missing. With `clearExisting` the value
/// replaces those of the field; other fields always stay. With `uniqueData` a value that the field
/// has already is not added again, which still gives 1.
/// @return 1; 0 without a type or value
KZ_EXPORT int kz_DwgData_setFld(const kz_CADDwgId* drawing, const kz_Char* dictName,
                                const kz_Char* xGroup, const kz_Char* fieldName, int16_t type,
                                const void* value, int clearExisting, int uniqueData);
/// Removes the record. @return 1; 0 also when there is none
KZ_EXPORT int kz_DwgData_deleteFldList(const kz_CADDwgId* drawing, const kz_Char* dictName,
                                       const kz_Char* xGroup);
/// Removes the field with all its values. @return 1; 0 also when there is no such field
KZ_EXPORT int kz_DwgData_deleteFld(const kz_CADDwgId* drawing, const kz_Char* dictName,
                                   const kz_Char* xGroup, const kz_Char* fieldName);
/// Removes the first value of the field that is equal, with `clearAll` all of them. A field of one
/// value goes with it; one of several values stays, perhaps with none.
/// @return 1; 0 when there is no such value
KZ_EXPORT int kz_DwgData_deleteFldValue(const kz_CADDwgId* drawing, const kz_Char* dictName,
                                        const kz_Char* xGroup, const kz_Char* fieldName,
                                        int16_t type, const void* value, int clearAll);
/// The keys of the application's dictionary in its order, as a new list that the caller destroys,
/// at its start; NULL for none.
KZ_EXPORT kz_StrList* kz_DwgData_getXGroups(const kz_CADDwgId* drawing, const kz_Char* dictName);
/// Keeps changes of the drawing out of its undo record while `disable` is not 0, until it is
/// switched back.
KZ_EXPORT void kz_DwgData_disableUndoRecording(const kz_CADDwgId* drawing, int disable);

// --- the drawing's code -------------------------------------------------------------------------
//
// A text of base-36 digits in the field DWGIDCODE of the record DWGINFO of KZ_MOVAR_APP.

/// A new code from the present time: two calls within a millisecond give the same. In a static
/// buffer that the next call overwrites. @return NULL when there is none
KZ_EXPORT const kz_Char* kz_DwgIdCode_create(void);
/// The drawing's code, cut at 8 characters, in a static buffer that the next call overwrites.
/// @return NULL when it has none
KZ_EXPORT const kz_Char* kz_DwgIdCode_get(const kz_CADDwgId* drawing);
/// Gives the drawing a code in the place of the one that it has. @return 1; 0 for a NULL code
KZ_EXPORT int kz_DwgIdCode_set(const kz_CADDwgId* drawing, const kz_Char* code);
/// Gives the drawing a new code unless it has one; with `force` not 0 in any case.
/// @return 1 when a new code was stored
KZ_EXPORT int kz_DwgIdCode_addToDrawing(const kz_CADDwgId* drawing, int force);

// --- by drawing and database --------------------------------------------------------------------

/// As kz_DwgData_setFldList.
KZ_EXPORT int kz_AcDwgData_setFldList(const kz_CADDwgId* drawing, const kz_Char* dictName,
                                      const kz_Char* xGroup, kz_FldList* list, int clearExisting);
/// As kz_DwgData_getFldList.
KZ_EXPORT kz_FldList* kz_AcDwgData_getFldList(const kz_CADDwgId* drawing, const kz_Char* dictName,
                                              const kz_Char* xGroup, kz_FldList* list);
/// The same for a database.
KZ_EXPORT kz_FldList* kz_AcDwgData_getFldListFromAcDbDatabase(AcDbDatabase* database,
                                                              const kz_Char* dictName,
                                                              const kz_Char* xGroup,
                                                              kz_FldList* list);
/// As kz_DwgData_getFld for a database.
KZ_EXPORT kz_FldList* kz_AcDwgData_getFldFromAcDbDatabase(AcDbDatabase* database,
                                                          const kz_Char* dictName,
                                                          const kz_Char* xGroup,
                                                          const kz_Char* fieldName);
/// As kz_DwgData_deleteFldList.
KZ_EXPORT int kz_AcDwgData_deleteFldList(const kz_CADDwgId* drawing, const kz_Char* dictName,
                                         const kz_Char* xGroup);
/// As kz_DwgData_getXGroups.
KZ_EXPORT kz_StrList* kz_AcDwgData_getXGroups(const kz_CADDwgId* drawing, const kz_Char* dictName);
/// A new list of one kz_FldList for each record of the application's dictionary, in its order, an
/// empty one for an empty record; the caller destroys the list with its elements. Entries that are
/// no record with fields are left out. @return NULL when there are no records
KZ_EXPORT kz_LnkList* kz_AcDwgData_getDict(AcDbDatabase* database, const kz_Char* dictName);
/// Removes the application's dictionary with all records. @return 1, also when there is none; 0
/// when the drawing can't be changed
KZ_EXPORT int kz_AcDwgData_delDict(AcDbDatabase* database, const kz_Char* dictName);

// --- chains -------------------------------------------------------------------------------------
//
// A record's chain has the form of the fields in extended data, without the application's node and
// in codes below 1000: 1 for names and texts, 2 braces, 6 handles, 40 reals, 70 and 90 integers, 10
// to 13 points. Other codes stand for themselves.

/// Writes the fields of the list into the chain at `*chain`, which may be empty; with
/// `clearExisting` in the place of all that it holds. In a chain that starts empty each field is a
/// new one, also when two have the same name.
/// @return 1; 0 for NULL and when a field can't be written: the chain then holds a part of the
/// list, in the codes of extended data
KZ_EXPORT int kz_AcDwgData_fromFldList(resbuf** chain, kz_FldList* list, int clearExisting);
/// The fields of the chain as a new list that the caller destroys, at its start. The chain has the
/// codes of extended data afterwards. @return NULL for a chain that holds something else
KZ_EXPORT kz_FldList* kz_AcDwgData_toFldList(resbuf* chain);
/// Fills the fields of `list` from the chain and removes those that the chain does not have. A
/// field that has no values in the chain keeps what it held. The list stands at its start.
/// @return 1; 0 for NULL
KZ_EXPORT int kz_AcDwgData_updateFldList(resbuf* chain, kz_FldList* list);

// --- records ------------------------------------------------------------------------------------

/// A copy of the record's chain; caller releases. @return NULL when there is none
KZ_EXPORT resbuf* kz_AcXrecord_getFromDict(AcDbDatabase* database, const kz_Char* dictName,
                                           const kz_Char* xGroup);
/// Puts a new record with a copy of the chain, which may be empty, in the place of the one that is
/// there. The dictionary is made when it is missing. @return 1 or 0
KZ_EXPORT int kz_AcXrecord_saveToDict(AcDbDatabase* database, const kz_Char* dictName,
                                      const kz_Char* xGroup, const resbuf* chain);
/// Removes the record. @return 1, also when there is none; 0 when the drawing can't be changed
KZ_EXPORT int kz_AcXrecord_removeFromDict(AcDbDatabase* database, const kz_Char* dictName,
                                          const kz_Char* xGroup);
/// As kz_DwgData_getXGroups for a database.
KZ_EXPORT kz_StrList* kz_AcXrecord_GetKeysFromDict(AcDbDatabase* database, const kz_Char* dictName);
}

#endif
