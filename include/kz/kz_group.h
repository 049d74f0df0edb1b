/// Groups: named sets of entities that last with the drawing. Here are their identity, their names
/// and codes, how they are found, their attributes, the walk over all groups of a drawing, and the
/// fetching of their entities. kz_group_fields.h has what stands in their fields.
///
/// A group is an AcDbGroup in the dictionary of groups of a drawing; its key there is its name, its
/// description its type. The first entity is the master, the others are members; an erased entity
/// keeps its place. What else is known of a group lies in fields (kz_xdata.h) of the group object,
/// of the master and of the members: docs/formats/groups.md. Groups name each other by their names,
/// so a tree may be damaged: names that lead nowhere or back to where they came from. Every walk
/// here ends on such a tree; it goes to each group at most once.
///
/// Unless a line says otherwise a function gives 1, or 0 or NULL on failure. A group id that is
/// returned is a new record, which the caller destroys; ids that are passed in are only read. Names
/// have at most 28 characters, longer ones are cut; buffers for names hold 32, those for types 256.
/// A type that is NULL, empty or "*" is every type.
#ifndef KZ_GROUP_H
#define KZ_GROUP_H

#include "kz/kz_objid.h"
#include "kz/kz_selset.h"

/// A group, by the platform's name of its object; as long as the drawing is open. Allocated with
/// kz_Malloc.
struct kz_GroupId {
    ads_name ename;  ///< both words 0: no group
};

/// List of kz_GroupId records that the list owns.
typedef kz_LnkList kz_GroupIdList;

extern "C" {

// --- group ids ----------------------------------------------------------------------------------

/// A copy of an id, or for NULL a null id. @return NULL without memory
KZ_EXPORT kz_GroupId* kz_Group_createId(const kz_GroupId* source);
/// A copy. @return NULL for NULL, and without memory
KZ_EXPORT kz_GroupId* kz_Group_dupId(const kz_GroupId* id);
/// Copies into a record; a NULL source makes it a null id. @return 0 for a NULL destination
KZ_EXPORT int kz_Group_copyId(kz_GroupId* destination, const kz_GroupId* source);
KZ_EXPORT void kz_Group_destroyId(kz_GroupId* id);
/// 1 for NULL and for a null id.
KZ_EXPORT int kz_Group_isNull(const kz_GroupId* id);
/// 1 for the same record and for equal names; 0 when one is NULL.
KZ_EXPORT int kz_Group_isEqual(const kz_GroupId* a, const kz_GroupId* b);
/// A new id with this name, which is not looked at. @return NULL for NULL, and without memory
KZ_EXPORT kz_GroupId* kz_GroupId_fromADSEname(const ads_name name);
/// @return 0 for a null id, `out` untouched
KZ_EXPORT int kz_GroupId_toADSEname(ads_name out, const kz_GroupId* id);
/// @return NULL also when the platform has no name for the object
KZ_EXPORT kz_GroupId* kz_GroupId_fromAcDbObjectId(const AcDbObjectId* object);
/// The platform's id of the group object, also of an erased one. @return 0 for a name that the
/// platform refuses, `out` untouched
KZ_EXPORT int kz_Group_getAcDbObjectId(AcDbObjectId* out, const kz_GroupId* id);
/// 1 for an id that leads to an object, also to an erased one.
KZ_EXPORT int kz_Group_isValid(const kz_GroupId* id);
KZ_EXPORT int kz_AcGroup_isValid(const kz_GroupId* id);

/// A list of the ids, which end in a null pointer, standing at its start. @return NULL without
/// memory, the ids then stay the caller's
KZ_EXPORT kz_GroupIdList* kz_GroupIdList_create(kz_GroupId* first, ...);
/// @return 1; 0 for NULL
KZ_EXPORT int kz_GroupIdList_destroy(kz_GroupIdList* list);
/// Appends an id, which belongs to the list from then on. @return the new place; NULL without
/// memory or list, the id then stays the caller's
KZ_EXPORT kz_LnkPos kz_GroupIdList_insEnd(kz_GroupIdList* list, kz_GroupId* id);
/// The current id, or the one at a position from 0, lent; NULL when there is none.
KZ_EXPORT kz_GroupId* kz_GroupIdList_getCurr(const kz_GroupIdList* list);
KZ_EXPORT kz_GroupId* kz_GroupIdList_getNth(const kz_GroupIdList* list, int n);

// --- names and codes ----------------------------------------------------------------------------
//
// A name has the form KZ_<drawing code>_<group code>. Other kinds of groups have another beginning,
// and those of a drawing without a code the code 0. Case doesn't count unless a line says so.

/// Kind of a group by its name: 0 "KZ_0...", 1 with codes, 2 container "KZ_CN0_...", 3 container
/// "KZ_CN_...", 4 "KZ_ANNOT..0..." annotation, 5 annotation with codes, -1 anything else.
KZ_EXPORT int kz_Group_getGroupNameType(const kz_Char* name);
/// 1 for the kinds 0 to 3.
KZ_EXPORT int kz_Group_isAMovarGroupName(const kz_Char* name);
/// 1 for "KZ_CN_..." and "KZ_CN0_...", in upper case only.
KZ_EXPORT int kz_Group_isAContainerGroupName(const kz_Char* name);
/// Makes a name for a new group of the working database: the prefix (NULL: "KZ_"), the drawing's
/// code, which is made when there is none, and the next group code, which is used up. Whether a
/// group has that name isn't looked at. @return 0 when there is no code, `out` untouched
KZ_EXPORT int kz_Group_getUniqueName(kz_Char* out, const kz_Char* prefix);
/// Puts a prefix in front of a name that hasn't got it; "*A", as anonymous groups have it, gives
/// way to it ("KZ_X" for the prefix "KZ_"). A NULL prefix copies. `out` may be `name`. @return
/// `out`
KZ_EXPORT kz_Char* kz_Group_prefixName(kz_Char* out, const kz_Char* name, const kz_Char* prefix);
/// The codes in a name, each in a static buffer that the next call overwrites. @return NULL for
/// kinds other than 1, 3 and 5, and for a name without the code
KZ_EXPORT const kz_Char* kz_Group_getDwgIdCode(const kz_Char* name);
KZ_EXPORT const kz_Char* kz_Group_getGroupCode(const kz_Char* name);
/// The code that the drawing's next group gets, as stored, in a static buffer that the next call
/// overwrites. @return NULL when none is stored
KZ_EXPORT const kz_Char* kz_Group_getCachedGroupCode(const kz_CADDwgId* drawing);
/// Stores it, in no undo step. @return 0 for NULL
KZ_EXPORT int kz_Group_setCachedGroupCode(const kz_CADDwgId* drawing, const kz_Char* code);
/// Does nothing. @return 0
KZ_EXPORT int kz_Group_rebuild(void);

// --- finding a group by its name ----------------------------------------------------------------
//
// The search begins in one drawing, goes on through the drawings attached to the working database,
// and then through all that the service KZ_CADSERVICE knows. A name that nobody has gives NULL and
// no entry on the error list; a NULL or empty one, and "*", add group error 2.

/// Everywhere, from the working database on.
KZ_EXPORT kz_GroupId* kz_Group_getId(const kz_Char* name);
KZ_EXPORT kz_GroupId* kz_AcGroup_getId(const kz_Char* name);
/// In the drawing of this name alone, and when it isn't there as kz_Group_getId.
KZ_EXPORT kz_GroupId* kz_Group_getIdFromDoc(const kz_Char* name, const kz_Char* drawing);
/// From a database on, NULL for the working one; with `searchXrefs` 0 in that one alone.
KZ_EXPORT kz_GroupId* kz_AcGroup_getIdFromAcDbDatabase(const kz_Char* name, AcDbDatabase* database,
                                                       int searchXrefs);
/// 1 for the name of a group.
KZ_EXPORT int kz_Group_isValidByName(const kz_Char* name);

// --- attributes ---------------------------------------------------------------------------------
//
// A null id adds group error 3, an object that can't be opened group error 5.

/// The group's name as its object has it.
KZ_EXPORT int kz_Group_getName(kz_Char* out, const kz_GroupId* id);
KZ_EXPORT int kz_AcGroup_getName(kz_Char* out, const kz_GroupId* id);
/// The name as the dictionary of groups has it.
KZ_EXPORT int kz_Group_getNameFromDict(kz_Char* out, const kz_GroupId* id);
/// At most 255 characters.
KZ_EXPORT int kz_Group_getType(kz_Char* out, const kz_GroupId* id);
KZ_EXPORT int kz_AcGroup_getType(kz_Char* out, const kz_GroupId* id);
/// 1 for a group of the type, in any case; for every type also without a group.
KZ_EXPORT int kz_Group_isTypeOf(const kz_GroupId* id, const kz_Char* type);
/// The name that the group had before it got its present one.
KZ_EXPORT int kz_Group_getOldName(kz_Char* out, const kz_GroupId* id);
KZ_EXPORT int kz_AcGroup_getOldName(kz_Char* out, const kz_GroupId* id);
KZ_EXPORT int kz_Group_setOldName(const kz_GroupId* id, const kz_Char* name);
KZ_EXPORT int kz_AcGroup_setOldName(const kz_GroupId* id, const kz_Char* name);
/// 1 for an object with the fields of a master or a member.
KZ_EXPORT int kz_Group_isAMember(const kz_CADObjId* object);
KZ_EXPORT int kz_AcGroup_isAMember(const kz_CADObjId* object);
/// A text field of an entity or a group object, by application KZ_GRP; `size` is that of the buffer
/// with the terminator. @return 0 when there is none, `out` is then empty
KZ_EXPORT int kz_AcGroup_getCharFieldValFromEname(kz_Char* out, int size, const kz_Char* fieldName,
                                                  const ads_name name);
/// The same from a chain whose head is the application's node.
KZ_EXPORT int kz_AcGroup_getCharFieldValFromXdataFlds(kz_Char* out, int size,
                                                      const kz_Char* fieldName, resbuf* chain);

// --- walk over the groups of a drawing ----------------------------------------------------------
//
// There is one walk, which keeps the dictionary of groups open for reading, so that no group can be
// made meanwhile. After the group just fetched has been deleted the walk stands on the following
// one, which the getCurr forms fetch. `erased`, which may be NULL, gets 1 for a group of which the
// object or the master is erased. Groups of other programs and annotations are passed over.

/// Begins a walk and ends the one before; NULL is the working database. The drawing id must stay as
/// long as the walk does.
KZ_EXPORT int kz_Group_beginGetNext(const kz_CADDwgId* drawing);
KZ_EXPORT int kz_AcGroup_beginGetNext(const kz_CADDwgId* drawing);
/// The next group that is no container, of a type; with `restart` the first one again. Begins a
/// walk when there is none. @return NULL at the end
KZ_EXPORT kz_GroupId* kz_Group_getNext(int* erased, const kz_Char* type, int restart);
/// The same, with `includeContainers` containers too.
KZ_EXPORT kz_GroupId* kz_AcGroup_getNext(int* erased, const kz_Char* type, int includeContainers,
                                         int restart);
/// The group that the walk stands on, or the first behind it that fits. Begins a walk over the
/// working database when there is none.
KZ_EXPORT kz_GroupId* kz_Group_getCurr(int* erased, const kz_Char* type);
KZ_EXPORT kz_GroupId* kz_AcGroup_getCurr(int* erased, const kz_Char* type, int includeContainers);
/// Ends the walk, if there is one.
KZ_EXPORT void kz_Group_endGetNext(void);
KZ_EXPORT void kz_AcGroup_endGetNext(void);

// --- entities of a group ------------------------------------------------------------------------
//
// Of a group with a master, its entities in their order; unless `noChildren` is set those of its
// child groups of the type come first, the deepest ones in front. With a type only groups of it
// count, with a sub-group name (NULL, empty and "*": none) only members of that sub-group, and
// unless `includeMaster` is set not the masters; a master counts as in the first of its sub-groups.
// An invalid group adds group error 1.

/// As a new selection set, or list, that the caller destroys. @return NULL when there is nothing
KZ_EXPORT kz_CADSelSet* kz_Group_getMemberSelSet(const kz_GroupId* id, const kz_Char* type,
                                                 const kz_Char* subGroup, int noChildren,
                                                 int includeMaster);
KZ_EXPORT kz_CADSelSet* kz_AcGroup_getMemberSelSet(const kz_GroupId* id, const kz_Char* type,
                                                   const kz_Char* subGroup, int noChildren,
                                                   int includeMaster);
KZ_EXPORT kz_CADObjIdList* kz_Group_getMemberList(const kz_GroupId* id, const kz_Char* type,
                                                  const kz_Char* subGroup, int noChildren,
                                                  int includeMaster);
KZ_EXPORT kz_CADObjIdList* kz_AcGroup_getMemberList(const kz_GroupId* id, const kz_Char* type,
                                                    const kz_Char* subGroup, int noChildren,
                                                    int includeMaster);
/// The masters of the entities of a list, each once, as a new list that the caller destroys. Moves
/// the list's position. @return NULL when there are none
KZ_EXPORT kz_CADObjIdList* kz_Group_getMasters(kz_CADObjIdList* entities);
/// The same for the entities of a set; with `nested` 1 for those inside that were chosen.
KZ_EXPORT kz_CADObjIdList* kz_Group_getMastersFromCADSelSetId(const kz_CADSelSetId* set,
                                                              int nested);
/// Shows the entities, or with `visible` 0 hides them. @return 0 also when there are none
KZ_EXPORT int kz_Group_setVisibility(const kz_GroupId* id, const kz_Char* type,
                                     const kz_Char* subGroup, int noChildren, int includeMaster,
                                     int visible);

// --- where a group lives, and its state ---------------------------------------------------------

/// File of the group's drawing; the buffer takes the whole path, at least 256 characters.
KZ_EXPORT int kz_Group_getDrawingName(kz_Char* out, const kz_GroupId* id);
KZ_EXPORT int kz_AcGroup_getDrawingName(kz_Char* out, const kz_GroupId* id);
/// The group's name and its drawing's. @return as kz_Group_getDrawingName
KZ_EXPORT int kz_Group_getQualifiedName(kz_Char* drawing, kz_Char* name, const kz_GroupId* id);
/// Drawing of the group's master, as an id that the caller destroys through the service.
KZ_EXPORT kz_CADDwgId* kz_Group_getDwgId(const kz_GroupId* id);
/// How that drawing lies in the current one, as the service KZ_CADSERVICE tells; `attached` gets 1
/// for one that is attached.
KZ_EXPORT int kz_Group_getDwgTransform(int* attached, kz_Point* origin, kz_RotMatrix* rotation,
                                       const kz_GroupId* id);

/// 1 for a group whose entities are picked together; 0 also for one that can't be opened to be
/// written.
KZ_EXPORT int kz_Group_isSelectable(const kz_GroupId* id);
KZ_EXPORT int kz_AcGroup_isSelectable(const kz_GroupId* id);
/// Sets it unless `queryOnly` is set. The container of the group's tree stays as it is. @return the
/// state before, 1 or 0; 0 also for a null id, which adds group error 3
KZ_EXPORT int kz_Group_setSelectable(const kz_GroupId* id, int queryOnly, int value);
KZ_EXPORT int kz_AcGroup_setSelectable(const kz_GroupId* id, int queryOnly, int value);
}

#endif
