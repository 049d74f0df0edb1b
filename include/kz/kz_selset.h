/// Selection sets of the platform, as records of the library: every way to choose objects, the
/// members of a set, and what a run of commands has added to the drawing.
///
/// The platform has 128 sets. A record owns its set, and kz_CADSelSet_destroy frees both. A choice
/// that comes out empty is no set: the functions that make one then give NULL, and the platform's
/// set is free again. NULL for a set, and a record whose name is two zero words, are accepted
/// everywhere and give 0 or NULL. Nothing is put on the error list.
#ifndef KZ_SELSET_H
#define KZ_SELSET_H

#include "kz/kz_objid.h"

/// A selection set by the platform's name for it, so that the record passes wherever the platform
/// wants an ads_name. Allocated with kz_Malloc.
struct kz_CADSelSet {
    ads_name name;  ///< both words 0: no set
};

/// The same as a value that may be NULL.
typedef kz_CADSelSet kz_CADSelSetId;

/// A place in the drawing: behind its last entity. A block of 66 bytes from kz_Malloc; what lies
/// behind the name is not used.
struct kz_CADSelSetMarker {
    ads_name last;
};

extern "C" {

// --- life ---------------------------------------------------------------------------------------

/// A new empty set. @return NULL without memory, and when the platform has no set left
KZ_EXPORT kz_CADSelSet* kz_CADSelSet_create(void);
/// A record for a set that exists; it owns the set from then on. The name is not looked at.
/// @return NULL without memory and for NULL, the set then stays the caller's
KZ_EXPORT kz_CADSelSet* kz_CADSelSet_fromADSSS(const ads_name set);
/// A second set of the platform with the same members, which the caller frees. A member that can't
/// be read is left out. @return 1; 0 when no set can be made, `out` is then as it was
KZ_EXPORT int kz_CADSelSet_toADSSS(ads_name out, const kz_CADSelSetId* set);
/// Frees the platform's set and the record; NULL is ignored.
KZ_EXPORT void kz_CADSelSet_destroy(kz_CADSelSet* set);
/// 1 for NULL and for a name of two zero words.
KZ_EXPORT int kz_CADSelSetId_isNull(const kz_CADSelSetId* set);
/// How many sets could still be made, up to 128. Makes and frees them.
KZ_EXPORT int kz_CADSelSet_getNumRemaining(void);

// --- members ------------------------------------------------------------------------------------

KZ_EXPORT int kz_CADSelSet_length(const kz_CADSelSetId* set);
/// A new id of member `index`, counted from 0, that the caller destroys; NULL beyond the end.
KZ_EXPORT kz_CADObjId* kz_CADSelSet_getNth(const kz_CADSelSetId* set, int index);
/// The same; for an object that was chosen inside of a block the object itself, where getNth gives
/// the insertion that shows it.
KZ_EXPORT kz_CADObjId* kz_CADSelSet_getNthX(const kz_CADSelSetId* set, int index);
/// Index of a member. @return 1; 0 when it is none: `out` is then 0, too. A NULL `out` gives 0
KZ_EXPORT int kz_CADSelSet_getIndex(int32_t* out, const kz_CADSelSetId* set, const kz_CADObjId* id);
KZ_EXPORT int kz_CADSelSet_isMember(const kz_CADSelSetId* set, const kz_CADObjId* id);
/// @return 1, also for a member; 0 when the platform refuses the object
KZ_EXPORT int kz_CADSelSet_addObject(kz_CADSelSetId* set, const kz_CADObjId* id);
/// @return 1; 0 for an object that is no member
KZ_EXPORT int kz_CADSelSet_delObject(kz_CADSelSetId* set, const kz_CADObjId* id);
/// Adds the members of `source`, which stays. @return 1; 0 when one could not be added: the others
/// are
KZ_EXPORT int kz_CADSelSet_append(kz_CADSelSetId* destination, const kz_CADSelSetId* source);
/// Transforms the members [WCS]. @return 1; 0 when the platform refuses (see acedXformSS)
KZ_EXPORT int kz_CADSelSet_transform(const kz_CADSelSetId* set, const kz_TMatrix* matrix);
/// kz_CADObjId_redrawObject on each member.
KZ_EXPORT void kz_CADSelSet_redraw(const kz_CADSelSetId* set, int mode);
/// Where a set is dragged from: (0, 0, 0), since nothing here is ever dragged. @return 1; 0 for
/// NULL
KZ_EXPORT int kz_CADSelSet_getDragOrigin(kz_Point* out);
/// Direction of the drag's x axis. There is none, so `out` becomes (0, 0, 0), which a caller who
/// does not test the result can go on with, and the result is that of kz_Point_copy from NULL: 0.
KZ_EXPORT int kz_CADSelSet_getDragXAxis(kz_Point* out);
/// New ids of the members as a new list that the caller destroys; with `nested` 1 those of
/// kz_CADSelSet_getNthX. @return NULL for an empty set and without memory
KZ_EXPORT kz_CADObjIdList* kz_CADObjIdList_fromCADSelSetId(const kz_CADSelSetId* set, int nested);

// --- choosing -----------------------------------------------------------------------------------
//
// Each gives a new set that the caller destroys, or NULL. Points are in the callers' own ("local")
// coordinates and go through the service of coordinate systems; without it there is no set. A place
// counts as it is seen in the present view.

/// Asks the user. `prompt` (may be NULL) is shown first. With `nested` 1 objects in blocks are
/// chosen one by one, also by windows, and the same insertion may come in more than once.
KZ_EXPORT kz_CADSelSet* kz_CADSelSet_get(const kz_Char* prompt, int nested);
/// All entities of the drawing, hidden ones too.
KZ_EXPORT kz_CADSelSet* kz_CADSelSet_getAll(void);
/// What lies inside of a window or, with `crossing` not 0, has a part inside.
KZ_EXPORT kz_CADSelSet* kz_CADSelSet_fromWindow(const kz_Point* corner, const kz_Point* opposite,
                                                int crossing);
/// The same for a polygon of three points or more, whose sides must not cross.
KZ_EXPORT kz_CADSelSet* kz_CADSelSet_fromPolygon(kz_PointList* points, int crossing);
/// What crosses an open path of two points or more.
KZ_EXPORT kz_CADSelSet* kz_CADSelSet_fromFence(kz_PointList* points);
/// What touches a square about a point, parallel to the screen. @param size  its side [drawing
/// units]; up to 0.001 it is the point itself
KZ_EXPORT kz_CADSelSet* kz_CADSelSet_fromPoint(const kz_Point* point, double size);
/// The objects on a layer, hidden ones too; the name may hold wildcards.
KZ_EXPORT kz_CADSelSet* kz_CADSelSet_fromLayer(const kz_Char* layer);
/// The objects of a colour, by name or number as in kz_cad_env.h: "BYLAYER" gives those without a
/// colour of their own.
KZ_EXPORT kz_CADSelSet* kz_CADSelSet_fromColor(const kz_Char* color);
/// The objects that meet all fields "COLOR" and "LAYER" of a list, or with `any` not 0 one of them.
/// Names in any case; each text of a field with several counts, other fields are passed over. Moves
/// the list's position. @return NULL also when there is no such field
KZ_EXPORT kz_CADSelSet* kz_CADSelSet_fromAttributes(kz_FldList* attributes, int any);

// --- what is new --------------------------------------------------------------------------------

/// Notes where the drawing ends. @return a new marker, freed by kz_CADSelSet_end or
/// kz_CADSelSet_destroyMarker; NULL in an empty drawing, which stands for its beginning
KZ_EXPORT kz_CADSelSetMarker* kz_CADSelSet_begin(void);
/// The entities of the drawing that came behind the marker; for NULL all of them. Vertices and
/// attributes are not counted. With `free` not 0 the marker is freed in any case.
/// @return NULL also when the marker's entity was erased
KZ_EXPORT kz_CADSelSet* kz_CADSelSet_end(kz_CADSelSetMarker* marker, int free);
/// Frees a marker; NULL is ignored.
KZ_EXPORT void kz_CADSelSet_destroyMarker(kz_CADSelSetMarker* marker);
/// The entity behind `previous`, or the first one for NULL and the name of two zero words. With
/// `skip` not 0 vertices, sequence ends and attributes are stepped over. @return 1; 0 at the end of
/// the drawing, and with `skip` for an entity that can't be read
KZ_EXPORT int kz_AcCAD_nextMainEntity(const ads_name previous, ads_name out, int skip);
}

#endif
