/// What the module offers under the services KZ_START and KZ_CADSERVICE. Nothing of it is exported:
/// callers get the addresses from the service registry by the names below.
///
/// A function that gets a record of the module (drawing id, list, block insertion) knows the living
/// ones by their address and refuses every other pointer without looking behind it.
#ifndef SUITE_CADSERVICE_H
#define SUITE_CADSERVICE_H

#include "kz/kz_objid.h"

struct kz_CADDwgIdList;
struct kz_CADObject;

/// What the reactor of a group's master has seen since it was attached.
struct kz_MasterEvents {
    int32_t changed;   ///< writings of the master
    int32_t erased;    ///< erasures
    int32_t restored;  ///< masters brought back
};

extern "C" {

// --- KZ_START: session values -------------------------------------------------------------------
//
// Texts by name, without regard to case, until the program ends.

/// The value, lent until it is set again or reset; NULL when there is none.
const kz_Char* kz_Env_getSes(const kz_Char* name);
/// A NULL or empty value removes. @return 1; 0 without a name
int kz_Env_setSes(const kz_Char* name, const kz_Char* value);
/// Removes all values.
void kz_Env_resetSes(void);

// --- drawing ids --------------------------------------------------------------------------------

/// The record of a drawing; each call adds a use that kz_CADDwgId_destroy ends, and a drawing has
/// one record however often it is asked for. A NULL or empty name is the drawing in the editor.
/// Mode 3 looks in the editor, among the drawings attached to it and among the records, and then
/// reads the file; mode 2 passes over the attached ones, so that the drawing can be changed and
/// saved on its own. A name without a folder is met by the file's name too.
/// @return NULL for another mode, and for a drawing that isn't there or can't be read
kz_CADDwgId* kz_CADDwgId_create(const kz_Char* name, int mode);
/// Ends one use; the last one frees the record, and the drawing that was read for it.
void kz_CADDwgId_destroy(kz_CADDwgId* id);
/// Frees every record and empties every list of them.
void kz_CADDwgId_destroyAll(void);
/// Copies the file's name, unbounded. @return 1; 0 and an empty text for a drawing without one
int kz_CADDwgId_getName(kz_Char* out, const kz_CADDwgId* id);
/// Uses of the record, those of lists too; 0 for none.
int kz_CADDwgId_getRefCount(const kz_CADDwgId* id);
/// How the drawing lies in the one in the editor; each out may be NULL. For an attached drawing by
/// the first reference to it, through all drawings between; the rotation with its scale, the
/// angle [radians] added up. Any other drawing, and an attached one without a reference: identity.
/// @param attached  1 for an attached drawing, else 0
/// @return 1; 0 with nothing written for no valid record
int kz_CADDwgId_getTransform(int* attached, kz_Point* origin, kz_RotMatrix* rotation, double* angle,
                             const kz_CADDwgId* id);
int kz_CADDwgId_isAttached(const kz_CADDwgId* id);
int kz_CADDwgId_isInEditor(const kz_CADDwgId* id);
/// 1 when both stand for one drawing: the same one here, or the same file.
int kz_CADDwgId_isEqual(const kz_CADDwgId* a, const kz_CADDwgId* b);
/// 1 for a living record whose drawing was not closed.
int kz_CADDwgId_isValid(const kz_CADDwgId* id);
/// Saves to the drawing's own file. @return 1; 0 without a file, or when it can't be written
int kz_CADDwgId_save(kz_CADDwgId* id);
/// Saves to another file; the drawing keeps its own name if it has one. @return 1 or 0
int64_t kz_CADDwgId_saveAs(kz_CADDwgId* id, const kz_Char* fileName);

/// List of the known drawings: the one in the editor, those attached to it at any depth, and those
/// that records were made for. It holds a use of each record. The numbers are of no account. It
/// stands at its start. @return NULL without memory; caller destroys
kz_CADDwgIdList* kz_CADDwgIdList_create(int first, int second, int third);
/// @return 1; 0 for no list. The others answer as those of kz_LnkList do; no list is at its end.
int kz_CADDwgIdList_destroy(kz_CADDwgIdList* list);
int kz_CADDwgIdList_start(kz_CADDwgIdList* list);
int kz_CADDwgIdList_next(kz_CADDwgIdList* list);
int kz_CADDwgIdList_eol(const kz_CADDwgIdList* list);
kz_CADDwgId* kz_CADDwgIdList_getCurr(const kz_CADDwgIdList* list);

/// Files of the drawings attached to a drawing (NULL or empty: the one in the editor), at any
/// depth, each once. Attachments whose file can't be read are left out.
/// @return NULL when there is none; caller destroys
kz_StrList* kz_CAD_getAttachedDrawings(const kz_Char* drawingName);

// --- objects ------------------------------------------------------------------------------------
//
// Entities of model and paper space, as a new list in drawing order that stands at its start; the
// caller destroys list and records. NULL when there is none. A NULL record is the drawing in the
// editor.

/// By the texts of the fields "COLOR" and "LAYER" of the list; fields of other names don't count,
/// of a field with several values each one counts. All must hold, with `any` not 0 one of them.
kz_CADObjIdList* kz_CADDwgId_getCADObjIdListFromAttributes(const kz_CADDwgId* id,
                                                           kz_FldList* attributes, int any);
/// By their own colour: a name of the standard table in any case, or 0 (by block) to 256 (by
/// layer).
kz_CADObjIdList* kz_CADDwgId_getCADObjIdListFromColor(const kz_CADDwgId* id, const kz_Char* color);
/// By their layer, whose name is compared without regard to case and without wildcards.
kz_CADObjIdList* kz_CADDwgId_getCADObjIdListFromLayer(const kz_CADDwgId* id, const kz_Char* layer);

/// An insertion of a block that is not in the drawing yet, at a point [drawing units, world] on the
/// layer `layer` (NULL or empty: the current one). `source` must be NULL or empty: blocks come from
/// the drawing itself.
/// @return NULL without a block name or point, for a source, and for a factor that is 0 or no
/// number
kz_CADObject* kz_CADBlockIns3d_create(const kz_Char* block, const kz_Char* source,
                                      const kz_Point* point, double xScale, double yScale,
                                      double zScale, const kz_Char* layer);
/// Adds the object to the model space of the drawing in the editor, and frees it whatever comes of
/// it. @return 1; 0 for no living object, or when the drawing has no such block
int kz_CADObject_addToDrawing(kz_CADObject* object);

// --- coordinates --------------------------------------------------------------------------------
//
// The module keeps one local system, the world at first, and those before it. Points are in drawing
// units. All give 1, or 0 for NULL and when the host refuses, `out` is then untouched; it may be
// the point itself.

int kz_CoordSys_transPointLocaltoUCS(kz_Point* out, const kz_Point* point);
int kz_CoordSys_transPointUCStoLocal(kz_Point* out, const kz_Point* point);
int kz_CoordSys_transformPointWorld(kz_Point* out, const kz_Point* point);
int kz_CoordSys_rotateVectorUCStoLocal(kz_Vector* out, const kz_Vector* vector);
/// A new chain of RT3DPOINT nodes in the UCS that the caller releases; NULL for an empty list. The
/// list's position moves.
resbuf* kz_CoordSys_transPointListLocaltoUCS(kz_PointList* points);
/// Origin (NULL: the present one), x direction and a vector on the side of y, in the world: they
/// become the local system. @return also 0 for directions that span no plane; nothing changes then
int kz_CoordSys_fromVectorsXY(const kz_Vector* origin, const kz_Vector* x, const kz_Vector* y);
/// The plane of the active view through the point, which is given in the local system: x to the
/// right, y up, z to the viewer.
int kz_CoordSys_fromView(const kz_Point* point);
int kz_CoordSys_world(void);
/// Back to the system before. @return 0 when there is none
int kz_CoordSys_previous(void);

// --- reactors -----------------------------------------------------------------------------------

/// Ties a reactor to the master of a group; both are named by records that begin with an entity
/// name. A master has one reactor: another group takes it over, the same one keeps it.
/// @return 1; 0 when one of the two names leads nowhere
int kz_Group_attachMasterEntReactor(const kz_CADObjId* group, const kz_CADObjId* master);
/// @return 1; 0 when the master has no reactor of this group
int kz_Group_detachMasterEntReactor(const kz_CADObjId* group, const kz_CADObjId* master);
/// From here to the matching restore the reactors see nothing.
void kz_Group_disableMasterEntReactor(void);
void kz_Group_restoreMasterEntReactor(void);
/// What the reactor of this group's master has seen. @return 1; 0 as detach, `out` untouched
int kz_Group_getMasterEntEvents(kz_MasterEvents* out, const kz_CADObjId* group,
                                const kz_CADObjId* master);

/// Reactors that other modules declare. A reactor is known by its first argument, a key that is
/// compared as an address and never looked behind; it is enabled when it is made, and its other
/// arguments are kept for it. @return 1; 0 for a NULL key or one in use
int kz_CommandReactor_create(void* key, void* command, int when, void* action, int flags);
int kz_Group_createReactor(void* key, int when, void* action, int flags);
int kz_TagsReactor_create(void* key);
/// The drawing that commands outside of the editor work on; a copy is kept. NULL: none.
void kz_CommandReactor_setExternalDwgPath(const kz_Char* path);
/// @return 1; 0 for an unknown key
int kz_Reactor_disable(void* key);
int kz_Reactor_enable(void* key);
/// 1 for a known key that is enabled.
int kz_Reactor_isEnabled(void* key);
int kz_Reactor_remove(void* key);
void kz_Reactor_removeAll(void);
}

namespace suite {

/// The drawing behind a record, NULL for the one in the editor; NULL when there is none.
AcDbDatabase* databaseOf(const kz_CADDwgId* id);

/// Runs a body and gives `otherwise` when memory runs out in it.
template <class Result, class Body>
Result guarded(Result otherwise, Body body) noexcept {
    try {
        return body();
    } catch (...) {
        return otherwise;
    }
}

}  // namespace suite

#endif
