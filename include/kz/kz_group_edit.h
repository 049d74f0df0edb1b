/// What makes groups, changes them and ends them: creation and deletion, the purges, membership,
/// the master, the tree with its containers, and sub-groups. kz_group.h tells what a group is and
/// what holds for all functions here.
///
/// After each call that succeeds this holds: a group that is no container has a master, which is
/// its first entity; master and group object bear the same references; a parent names its child as
/// the child names its parent; each group of a tree of two or more names the container, which holds
/// the entities of all of them; and the lists of sub-groups hold what bears their names. A call
/// that fails keeps what it had already written.
#ifndef KZ_GROUP_EDIT_H
#define KZ_GROUP_EDIT_H

#include "kz/kz_group.h"

class AcDbGroup;

extern "C" {

// --- creation -----------------------------------------------------------------------------------
//
// In the working database. A type, a name or a sub-group name that is NULL, empty or "*" is none.

/// A new group of a master and the entities of a set, which may hold the master; one of the two may
/// be missing. Without a master the first entity of the set is it. The other entities become
/// members, in the sub-group when there is one; the groups that they are in already keep them. A
/// name that is missing, begins with "*" or is taken gives way to a new one, a longer one is cut.
/// With a parent the group joins its tree.
/// @return a new id; NULL without an entity, when the platform refuses, and when no reactor can be
/// tied to the master (kz_services.h): the group then stays in the drawing
KZ_EXPORT kz_GroupId* kz_Group_createFromSelSet(const kz_Char* type, const kz_Char* name,
                                                const kz_Char* subGroup, const kz_CADObjId* master,
                                                const kz_CADSelSet* set, const kz_GroupId* parent);
/// The same into an id of the caller's, which is the group's also when a later step failed.
KZ_EXPORT int kz_AcGroup_create(kz_GroupId* id, const kz_Char* type, const kz_Char* name,
                                const kz_Char* subGroup, const kz_CADObjId* master,
                                const kz_CADSelSet* set, const kz_GroupId* parent);
/// Notes where the drawing ends: kz_CADSelSet_begin.
KZ_EXPORT kz_CADSelSetMarker* kz_Group_begin(void);
/// kz_Group_createFromSelSet of what has been drawn since, for NULL of the whole drawing. Frees the
/// mark.
KZ_EXPORT kz_GroupId* kz_Group_end(kz_CADSelSetMarker* mark, const kz_Char* type,
                                   const kz_Char* name, const kz_Char* subGroup,
                                   const kz_CADObjId* master, const kz_GroupId* parent);

// --- deletion -----------------------------------------------------------------------------------
//
// 1 when all is done; -1 when there is no such group or it is still there, -2 when the master that
// was to go is still there, -3 when members that were to go are, or there were none. The id is
// freed, unless it leads to no object: that adds group error 1, and the id stays the caller's.

/// Erases the group object and, if they are asked for, the entities; the others keep their fields.
/// The group leaves its tree: its children move up to its parent, or become roots. A group object
/// that can't be erased adds group error 12.
KZ_EXPORT int kz_Group_delete(kz_GroupId* id, int deleteMaster, int deleteMembers);
KZ_EXPORT int kz_AcGroup_delete(kz_GroupId* id, int deleteMaster, int deleteMembers);
KZ_EXPORT int kz_Group_deleteByName(const kz_Char* name, int deleteMaster, int deleteMembers);
/// The same with the groups below, through those of the type, the deepest ones first. A group of
/// another type stays, and its id, too. @return the first result below the group that isn't 1, or
/// that of the group itself if it isn't
KZ_EXPORT int kz_Group_deleteAll(kz_GroupId* id, const kz_Char* type, int deleteMaster,
                                 int deleteMembers);
KZ_EXPORT int kz_AcGroup_deleteAll(kz_GroupId* id, const kz_Char* type, int deleteMaster,
                                   int deleteMembers);
/// Erases members, of a sub-group if there is a name, and those of the groups below with
/// `includeChildren`; never the master. @return 0 also when there are none
KZ_EXPORT int kz_Group_deleteMembers(const kz_GroupId* id, const kz_Char* type,
                                     const kz_Char* subGroup, int includeChildren);
KZ_EXPORT int kz_AcGroup_deleteMembers(const kz_GroupId* id, const kz_Char* type,
                                       const kz_Char* subGroup, int includeChildren);
/// Deletes the groups of which the object or the master is erased (kz_Group_isErased). Ends the
/// walk that kz_Group_beginGetNext began. @return 1, or the last other result of a deletion
KZ_EXPORT int kz_Group_purge(void);
KZ_EXPORT int kz_AcGroup_purge(void);
/// Erases every group without entities, those of other programs, too.
KZ_EXPORT int kz_Group_purgeAllEmptyGroups(void);
KZ_EXPORT int kz_AcGroup_purgeAllEmptyGroups(void);

// --- membership ---------------------------------------------------------------------------------
//
// A null id adds group error 3.

/// Takes an entity into a group, at its end, and into a sub-group of it if there is a name; from
/// the group that it was in it is removed. A master of a group, of this one too, is refused with
/// group error 11 unless it is alone in another one. A group without a master adds group error 8.
KZ_EXPORT int kz_Group_add(const kz_GroupId* id, const kz_CADObjId* object,
                           const kz_Char* subGroup);
KZ_EXPORT int kz_AcGroup_add(const kz_GroupId* id, const kz_CADObjId* object,
                             const kz_Char* subGroup);
/// Takes in all entities of a set. @return 1; 0 for an empty set, and when one could not be taken
/// in: the others are
KZ_EXPORT int kz_Group_addSelSet(const kz_GroupId* id, const kz_CADSelSet* set,
                                 const kz_Char* subGroup);
KZ_EXPORT int kz_AcGroup_addSelSet(const kz_GroupId* id, const kz_CADSelSet* set,
                                   const kz_Char* subGroup);
/// The same; a sub-group without a name gives 0.
KZ_EXPORT int kz_Group_createSubGroup(const kz_GroupId* id, const kz_CADSelSet* set,
                                      const kz_Char* subGroup);
/// Takes an entity out of its group, the group's container and its sub-group. The master can go
/// only when it is alone, which ends the group: `groupErased` (may be NULL) gets 1, else 0. A group
/// without a master adds group error 8, one without entities 9, an entity that is not in it 10, a
/// master that is not alone 11.
KZ_EXPORT int kz_Group_removeMember(int* groupErased, const kz_GroupId* id,
                                    const kz_CADObjId* object);
KZ_EXPORT int kz_AcGroup_removeMember(int* groupErased, const kz_GroupId* id,
                                      const kz_CADObjId* object);
/// The same for the group that the entity is in; 1 when there is none.
KZ_EXPORT int kz_Group_removeMemberFromGroup(int* groupErased, const kz_CADObjId* object);
KZ_EXPORT int kz_AcGroup_removeMemberFromGroup(int* groupErased, const kz_CADObjId* object);
/// 1 for an entity of the group or, unless `thisGroupOnly` is set, of one below it.
KZ_EXPORT int kz_Group_isAMemberOf(const kz_CADObjId* object, const kz_GroupId* id,
                                   int thisGroupOnly);
KZ_EXPORT int kz_AcGroup_isAMemberOf(const kz_CADObjId* object, const kz_GroupId* id,
                                     int thisGroupOnly);

// --- the master ---------------------------------------------------------------------------------

/// Makes an entity the group's master, one that is not in the group too; the one before becomes a
/// member. What applications keep on the master as extended data goes over to the new one, in the
/// drawing's coordinates. The present master gives 1 and changes nothing.
KZ_EXPORT int kz_Group_setMasterObject(const kz_GroupId* id, const kz_CADObjId* master);
KZ_EXPORT int kz_AcGroup_setMasterObject(const kz_GroupId* id, const kz_CADObjId* master);
/// Writes the master's handle, as the group object has it, on all members. @return 0 only when the
/// group object has none
KZ_EXPORT int kz_Group_updateMasterHandleInMembers(const kz_GroupId* id);

/// 1 for an open object that is a group of this system, by its key or else by the name that its
/// first entity bears.
KZ_EXPORT int kz_AcDbGroup_isAMovarGroupObject(AcDbObject* object);
/// 1 for an open entity that is the master of a group.
KZ_EXPORT int kz_AcDbGroup_isAMovarMasterEntity(AcDbObject* object);

/// A block of this name that holds a point, for masters that draw nothing of note, unless there is
/// a block of the name. In the working database.
KZ_EXPORT int kz_CAD_MasterEntityBlock_create(const kz_Char* block);
/// Inserts it [WCS], and makes it before when it is missing. The service KZ_CADSERVICE draws.
KZ_EXPORT int kz_CAD_MasterEntityBlock_insert(const kz_Char* block, const kz_Point* point);
/// Both.
KZ_EXPORT int kz_CAD_MasterEntity_create(const kz_Char* block, const kz_Point* point);

// --- the tree -----------------------------------------------------------------------------------
//
// With `leaveChildren` a group goes without its children: they are handed to its former parent, or
// become roots when it had none.

/// Makes a group a child of another, with the groups below it. A group that is to be its own parent
/// or the child of one below itself adds group error 4, a null id group error 3. The parent that it
/// has already gives 1 and changes nothing.
KZ_EXPORT int kz_Group_makeChild(const kz_GroupId* child, const kz_GroupId* parent,
                                 int leaveChildren);
KZ_EXPORT int kz_AcGroup_makeChild(const kz_GroupId* child, const kz_GroupId* parent,
                                   int leaveChildren);
/// Takes a group out of its tree; with children it heads a tree of its own. 1 for a root.
KZ_EXPORT int kz_Group_makeRootGroup(const kz_GroupId* id, int leaveChildren);
KZ_EXPORT int kz_AcGroup_makeRootGroup(const kz_GroupId* id, int leaveChildren);

// --- containers ---------------------------------------------------------------------------------
//
// The group that holds the entities of all groups of a tree, so that they are picked together. It
// has no master, no type and no references. The functions that open a group object add group error
// 5 when they can't.

/// A new container with the entities of a group; its name, at most 28 characters, goes to `name`.
KZ_EXPORT kz_GroupId* kz_AcContainerGroup_create(kz_Char* name, const kz_GroupId* first);
/// The container of a root group, made with the group's entities when there is none, as a new id.
/// @return NULL also for a group that is no root
KZ_EXPORT kz_GroupId* kz_Group_createContainerGroup(const kz_GroupId* root);
/// Add the entities of a group, or one object, which may be there already.
KZ_EXPORT int kz_Group_addToContainerGroup(const kz_GroupId* container, const kz_GroupId* group);
KZ_EXPORT int kz_Group_addMemberToContainerGroup(const kz_GroupId* container,
                                                 const kz_CADObjId* object);
/// Takes the entities of a group out of a container, and erases one that is empty then. @return 0
/// also when the last entity of the group was not in it
KZ_EXPORT int kz_Group_removeFromContainerGroup(const kz_GroupId* container,
                                                const kz_GroupId* group);
/// The same for open group objects; the target is open for write.
KZ_EXPORT int kz_AcDbGroup_append(AcDbGroup* target, const AcDbGroup* source);
KZ_EXPORT int kz_AcDbGroup_remove(AcDbGroup* target, const AcDbGroup* source);

// --- sub-groups ---------------------------------------------------------------------------------

/// Makes the lists of the master new from the names that the members bear. @return 1 when the
/// members could be read, of which there must be one
KZ_EXPORT int kz_Group_updateSubGroupRefs(const kz_GroupId* id);
}

#endif
