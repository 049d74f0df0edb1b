/// What groups keep in fields, without any change of how groups stand to each other: attributes,
/// masters, the way from an entity to its group, the tree, references, sub-groups; and whether a
/// group is erased. kz_group.h tells what a group is, and what holds for all functions here.
///
/// References stand on the group object and on its master alike: "GN" the name, "PR" the parent,
/// "CH" the children, "CN" the container. Members have the handle of their master.
#ifndef KZ_GROUP_FIELDS_H
#define KZ_GROUP_FIELDS_H

#include "kz/kz_group.h"

extern "C" {

// --- attributes ---------------------------------------------------------------------------------

/// Writes name, type and master handle, those that are not NULL, on the group object, and unless
/// `skipMaster` is set the name on the master, too. @return 0 only for a null id and without memory
KZ_EXPORT int kz_Group_setXdata(const kz_GroupId* id, int skipMaster, const kz_Char* name,
                                const kz_Char* type, const kz_Char* masterHandle);
/// The values of a field of the group object, or of the master, each a nameless field of a new list
/// that the caller destroys, at its start. @return NULL when there is no such field
KZ_EXPORT kz_FldList* kz_Group_getXDataFld(const kz_GroupId* id, int fromMaster,
                                           const kz_Char* fieldName);
/// All fields of the group object, or of the master, as a new list that the caller destroys.
KZ_EXPORT kz_FldList* kz_Group_getXDataFldList(const kz_GroupId* id, int fromMaster);
/// A text field of the master; `size` is that of the buffer with the terminator.
KZ_EXPORT int kz_Group_getCharFieldValFromMaster(kz_Char* out, int size, const kz_Char* fieldName,
                                                 const kz_GroupId* id);

// --- masters ------------------------------------------------------------------------------------
//
// The handle of the master stands in a field of the group object, which is the usual way to it;
// with `fromField` 0 the first entity of the group counts as its master instead. Buffers for
// handles hold 33 characters. A null id adds group error 1 where a handle is asked for.

KZ_EXPORT int kz_Group_getMasterHandle(kz_Char* out, const kz_GroupId* id);
KZ_EXPORT int kz_AcGroup_getMasterHandle(kz_Char* out, const AcDbObjectId* group);
/// @return 0 also for a group without entities and for a first one that is erased
KZ_EXPORT int kz_AcGroup_getMasterHandleAsFirstMember(kz_Char* out, const AcDbObjectId* group);
KZ_EXPORT int kz_AcGroup_getMasterHandleX(kz_Char* out, const kz_GroupId* id, int fromField);
/// The master, an erased one too, in the group's own drawing. @return 0, `out` is then a null name
KZ_EXPORT int kz_AcGroup_getMasterEntName(ads_name out, const kz_GroupId* id, int fromField);
/// The same as a new id that the caller destroys. A null id adds group error 3, a group without a
/// master general error 9.
KZ_EXPORT kz_CADObjId* kz_Group_getMasterObject(const kz_GroupId* id);
KZ_EXPORT kz_CADObjId* kz_AcGroup_getMasterObject(const kz_GroupId* id);
KZ_EXPORT kz_CADObjId* kz_AcGroup_getMasterObjectX(const kz_GroupId* id, int fromField);
/// The master of a member, of a master itself, as a new id that the caller destroys. @return NULL
/// for an object in no group
KZ_EXPORT kz_CADObjId* kz_Group_getMasterFromMember(const kz_CADObjId* object);
KZ_EXPORT kz_CADObjId* kz_AcGroup_getMasterFromMember(const kz_CADObjId* object);

// --- from an entity to its group ----------------------------------------------------------------
//
// The group by the name that its master bears, or with `toRoot` the top of its tree. A member
// without a master handle adds general error 10, a handle that nobody has general error 8.

KZ_EXPORT kz_GroupId* kz_Group_getFromMember(const kz_CADObjId* object, int toRoot);
KZ_EXPORT kz_GroupId* kz_Group_getFromEntityName(const ads_name name, int toRoot);
/// From a chain of extended data, with the entity's groups in front or without.
KZ_EXPORT kz_GroupId* kz_Group_getFromXdata(resbuf* chain, int toRoot);
/// From the fields of an entity, whose handles are those of a drawing (NULL: the working one).
KZ_EXPORT kz_GroupId* kz_Group_getFromFldList(kz_FldList* list, int toRoot, AcDbDatabase* database);
/// From the handle of an object of a drawing.
KZ_EXPORT kz_GroupId* kz_Group_getFromPersistObjId(const kz_Char* object,
                                                   const kz_CADDwgId* drawing, int toRoot);

// --- tree ---------------------------------------------------------------------------------------
//
// A null id adds group error 3 unless a line says otherwise.

KZ_EXPORT kz_GroupId* kz_Group_getParentGroup(const kz_GroupId* id);
KZ_EXPORT kz_GroupId* kz_AcGroup_getParentGroup(const kz_GroupId* id);
/// The top of the tree, for a root group itself. @return NULL also when a parent on the way is
/// missing or the way leads back into itself
KZ_EXPORT kz_GroupId* kz_Group_getRootGroup(const kz_GroupId* id);
KZ_EXPORT kz_GroupId* kz_AcGroup_getRootGroup(const kz_GroupId* id);
/// 1 for a group that names no parent, and for a null id.
KZ_EXPORT int kz_Group_isARootGroup(const kz_GroupId* id);
KZ_EXPORT int kz_AcGroup_isARootGroup(const kz_GroupId* id);
/// Number of children; without a type of those that the group names, with one of those that exist.
KZ_EXPORT int kz_Group_getNumChildren(const kz_GroupId* id, const kz_Char* type);
KZ_EXPORT int kz_AcGroup_getNumChildren(const kz_GroupId* id, const kz_Char* type);
/// The child at an index from 0 among those that count. @return NULL also for one that is gone
KZ_EXPORT kz_GroupId* kz_Group_getNthChild(const kz_GroupId* id, const kz_Char* type, int n);
KZ_EXPORT kz_GroupId* kz_AcGroup_getNthChild(const kz_GroupId* id, const kz_Char* type, int n);
/// 1 for a group below another, with `directOnly` right below. A null id adds no error.
KZ_EXPORT int kz_Group_isAChildOf(const kz_GroupId* id, const kz_GroupId* ancestor, int directOnly);
/// The container of the group's tree. A null id adds no error.
KZ_EXPORT kz_GroupId* kz_Group_getContainerGroup(const kz_GroupId* id);

// --- references ---------------------------------------------------------------------------------
//
// Written on the group object, then on its master, when there is one and `skipMaster` isn't set.
// `masterByField` finds the master by the field and not as the first entity. @return the status of
// the writing on the master, or 1; 0 when the group object could not be written, for a null id, a
// missing field name, and a group that counts as erased (kz_Group_isErased)

KZ_EXPORT int kz_Group_addChildGroupReference(const kz_GroupId* parent, const kz_Char* child,
                                              int masterByField);
KZ_EXPORT int kz_Group_removeChildGroupReference(const kz_GroupId* parent, const kz_Char* child);
KZ_EXPORT int kz_Group_setParentGroupReference(const kz_GroupId* child, const kz_Char* parent,
                                               int masterByField);
KZ_EXPORT int kz_Group_removeParentGroupReference(const kz_GroupId* child);
KZ_EXPORT int kz_Group_setContainerGroupReference(const kz_GroupId* id, const kz_Char* container,
                                                  int masterByField);
KZ_EXPORT int kz_Group_removeContainerGroupReference(const kz_GroupId* id);
/// Gives a field one value, as a text or a handle.
KZ_EXPORT int kz_Group_setCharFieldReference(const kz_GroupId* id, int skipMaster,
                                             int masterByField, const kz_Char* fieldName,
                                             const kz_Char* value, int asHandle);
/// Adds a value unless the field has it.
KZ_EXPORT int kz_Group_addCharFieldReference(const kz_GroupId* id, int skipMaster,
                                             int masterByField, const kz_Char* fieldName,
                                             const kz_Char* value, int asHandle);
/// Removes a value wherever it occurs, or for NULL the field. @return 0 also when it is not there
KZ_EXPORT int kz_Group_delCharFieldReference(const kz_GroupId* id, int skipMaster,
                                             int masterByField, const kz_Char* fieldName,
                                             const kz_Char* value, int asHandle);
/// The same for one entity or group object, as its store gives it (kz_xdata.h). @return 0 for a
/// NULL name or field name
KZ_EXPORT int kz_Ename_setCharFieldReference(const ads_name name, const kz_Char* fieldName,
                                             const kz_Char* value, int asHandle,
                                             const kz_Char* app);
KZ_EXPORT int kz_CADObjId_setCharFieldReference(const kz_CADObjId* object, const kz_Char* fieldName,
                                                const kz_Char* value, int asHandle,
                                                const kz_Char* app);
KZ_EXPORT int kz_Ename_addCharFieldReference(const ads_name name, const kz_Char* fieldName,
                                             const kz_Char* value, int asHandle);
KZ_EXPORT int kz_Ename_delCharFieldReference(const ads_name name, const kz_Char* fieldName,
                                             const kz_Char* value, int asHandle);

// --- sub-groups ---------------------------------------------------------------------------------
//
// A named part of the members of one group. A member bears the name, the master a list of the
// members' handles for each name. Names come back in upper case.

KZ_EXPORT int kz_Group_getSubGroupName(kz_Char* out, const kz_CADObjId* object);
KZ_EXPORT int kz_AcGroup_getSubGroupName(kz_Char* out, const kz_CADObjId* object);
/// @return 0 for an object in no sub-group, `out` is then empty
KZ_EXPORT int kz_Group_enameGetSubGroupName(kz_Char* out, const ads_name name);
/// 1 for an object in the sub-group, in any case; for no name ("*", empty, NULL) for any object.
KZ_EXPORT int kz_Group_isAMemberOfSubGroup(const kz_CADObjId* object, const kz_Char* subGroup);
/// Marks a member. One that is in another sub-group has two names then: callers unmark it before.
KZ_EXPORT int kz_Group_setSubGroupRef(const ads_name member, const kz_Char* subGroup);
KZ_EXPORT int kz_Group_removeSubGroupRef(const ads_name member);
/// Removes all lists of a master.
KZ_EXPORT int kz_Group_removeSubGroupRefs(const ads_name master);
/// Enters a member into a list of the master, once.
KZ_EXPORT int kz_SubGroup_setMemberRef(const ads_name master, const kz_Char* subGroup,
                                       const ads_name member);
/// Gives the master this list of handle texts. @return 0 also for an empty one, and when a handle
/// could not be taken in; the others are
KZ_EXPORT int kz_SubGroup_setMemberRefs(const ads_name master, const kz_Char* subGroup,
                                        kz_LnkList* handles);
/// Takes a member out of a list; without a name out of that of the member's own sub-group.
KZ_EXPORT int kz_SubGroup_removeMemberRef(const ads_name master, const kz_Char* subGroup,
                                          const ads_name member);
/// Appends the object's handle, a text that the list owns and kz_Free frees. @return 1 or 0
KZ_EXPORT int kz_SubGroup_addEnameToHandleList(kz_LnkList* handles, const ads_name name);

// --- erasure ------------------------------------------------------------------------------------

/// 1 when the group object or its master is erased; a group without a readable master is not. 1 for
/// a null id.
KZ_EXPORT int kz_Group_isErased(const kz_GroupId* id);
/// The same, without `checkMaster` for the group object alone.
KZ_EXPORT int kz_AcGroup_isErased(const kz_GroupId* id, int checkMaster);
/// 1 for an object that is erased, that can't be opened to be read, or that isn't there.
KZ_EXPORT int kz_AcGroup_isAdsNameErased(const ads_name name);
KZ_EXPORT int kz_AcGroup_isAcDbObjectErased(const AcDbObjectId* object);
/// Erases the group object, frees the id and clears the pointer, whatever comes of it. @return 1
/// when it was erased
KZ_EXPORT int kz_AcGroup_deleteByGroupObjId(kz_GroupId** id);
/// Erases a group object. One that can't be opened adds group error 5.
KZ_EXPORT int kz_AcDbGroup_delete(const AcDbObjectId* group);
}

#endif
