/// Properties of single objects: colour, layer, line style, line weight, visibility, highlight,
/// place, the flag of hidden lines, and the state of layers.
///
/// Values are texts in the forms of kz_cad_env.h, scales are numbers. KZ_CAD_DEFAULT in the place
/// of a value to be set is the editor's current one. Where a text is handed out, the buffer holds
/// 256 characters. A line weight is what polylines with vertices have for a width; nothing else has
/// one.
///
/// Unless a line says otherwise a function gives 1, or 0 for a null id, for an object that can't be
/// opened (erased, open elsewhere, to be changed on a locked layer), for an object that is no
/// entity, and when the platform refuses; outs and objects are then as they were.
#ifndef KZ_OBJPROPS_H
#define KZ_OBJPROPS_H

#include "kz/kz_objid.h"
#include "kz/kz_selset.h"

/// A layer and its state, as it is to be brought back. Allocated with kz_Malloc.
struct kz_LayerStateNode {
    kz_Char name[256];
    int32_t frozen;  ///< not 0: frozen; the others alike
    int32_t locked;
    int32_t off;
};

/// List of kz_LayerStateNode records; kz_LayerStateNode_destroy frees an element.
typedef kz_LnkList kz_LayerStateList;

extern "C" {

// --- reading ------------------------------------------------------------------------------------

/// The colour's index as a number, also where it has a name: "256" by layer, "0" by block.
KZ_EXPORT int kz_CADObjId_getColor(kz_Char* out, const kz_CADObjId* id);
KZ_EXPORT int kz_CADObjId_getLayer(kz_Char* out, const kz_CADObjId* id);
/// Name of the line type.
KZ_EXPORT int kz_CADObjId_getLineStyle(kz_Char* out, const kz_CADObjId* id);
KZ_EXPORT int kz_CADObjId_getLineStyleScale(double* out, const kz_CADObjId* id);
/// "0.000000" for everything but a polyline with vertices in a plane.
KZ_EXPORT int kz_CADObjId_getLineWeight(kz_Char* out, const kz_CADObjId* id);
/// 1 for an entity that is visible; 0 for one that isn't, and where there is none.
KZ_EXPORT int kz_CADObjId_isVisible(const kz_CADObjId* id);
/// The same as a value. @return 0 only for a null id and without `out`
KZ_EXPORT int kz_CADObjId_getVisibility(int32_t* out, const kz_CADObjId* id);
/// 1 when the object is on the layer, in any case; a NULL or empty name and "*" are every layer.
/// @return 0 for a null id
KZ_EXPORT int kz_CADObjId_isOnLayer(const kz_CADObjId* id, const kz_Char* layer);
/// 1 when one of the ids is on the layer. For a name that is every layer 1, also for an empty list.
/// Moves the list's position. @return 0 for a NULL list
KZ_EXPORT int kz_CADObjIdList_isOnLayer(kz_CADObjIdList* list, const kz_Char* layer);
/// 1 for a circle, or an ellipse by the length of its major axis in x and y, with this radius
/// (within 1e-5) and centre [drawing units, WCS]. Of a circle's centre z counts as 0.
KZ_EXPORT int kz_CADObjId_isMatchingCircle(const kz_CADObjId* id, const kz_Point* centre,
                                           double radius);

// --- changing -----------------------------------------------------------------------------------
//
// Vertices and attributes follow. A NULL or empty text gives 0.

/// A name of the table of colours or an index; any other name counts as 0, by block.
KZ_EXPORT int kz_CADObjId_setColor(const kz_CADObjId* id, const kz_Char* color);
/// The layer must exist.
KZ_EXPORT int kz_CADObjId_setLayer(const kz_CADObjId* id, const kz_Char* layer);
/// The line type must exist.
KZ_EXPORT int kz_CADObjId_setLineStyle(const kz_CADObjId* id, const kz_Char* style);
/// @return 0 also for 0.0
KZ_EXPORT int kz_CADObjId_setLineStyleScale(const kz_CADObjId* id, double scale);
/// @return 0 also for everything but a polyline with vertices in a plane
KZ_EXPORT int kz_CADObjId_setLineWeight(const kz_CADObjId* id, const kz_Char* weight);
/// Shows the object, with 0 hides it. @return whether it was visible before: 1 or 0
KZ_EXPORT int kz_CADObjId_setVisibility(const kz_CADObjId* id, int visible);
/// The same for each member of a set. @return 0 for a NULL set, and when a member can't be fetched;
/// the others are done all the same
KZ_EXPORT int kz_CADSelSet_setVisibility(const kz_CADSelSetId* set, int visible);
/// Shows the object highlighted, with 0 ends that.
KZ_EXPORT int kz_CADObjId_highlight(const kz_CADObjId* id, int on);
/// Moves the object by the way between two points [drawing units, local].
KZ_EXPORT int kz_CADObjId_move(const kz_CADObjId* id, const kz_Point* from, const kz_Point* to);

/// Change a polyline that the caller has open for write, with its vertices. What the platform
/// answers is not looked at. @return 1; 0 for NULL
KZ_EXPORT int kz_AcCAD_setPolylineColor(AcDbEntity* polyline, int index);
KZ_EXPORT int kz_AcCAD_setPolylineLayer(AcDbEntity* polyline, const kz_Char* layer);

/// Puts a new entity into the model space of the working database, which owns it from then on; it
/// stays open for write. A failure adds the custom error 6 to the error list.
KZ_EXPORT int kz_AcCAD_addToModelSpace(AcDbObjectId* out, AcDbEntity* entity);
/// Takes away what was drawn on the screen and is no object. The argument is of no account.
KZ_EXPORT void kz_AcCAD_removeAnonymousGraphics(int viewport);

// --- hidden lines -------------------------------------------------------------------------------
//
// Whether an object counts as hidden when hidden lines are removed is kept in its XDATA, as the
// integer HIDDEN of the application KZ_HLR. An object without it is not hidden.

/// 1 for a hidden object; 0 for any other, and where there is none.
KZ_EXPORT int kz_CADObjId_isHLRHidden(const kz_CADObjId* id);
/// @return 1; 7 for a null id, 4 for an id that leads nowhere, 5 without memory, 0 when the
/// platform refuses
KZ_EXPORT int kz_CADObjId_setHLRHidden(const kz_CADObjId* id, int hidden);
/// The same for an entity that the caller has open, for reading or, when it is to be changed, for
/// either: one open for read is raised to write for the time of the call.
KZ_EXPORT int kz_AcCADEntity_isHLRHidden(const AcDbEntity* entity);
KZ_EXPORT int kz_AcCADEntity_setHLRHidden(AcDbEntity* entity, int hidden);

// --- layers opened for work ---------------------------------------------------------------------

/// Thaws, unlocks and switches on the object's layer, as the working database has it, and tells
/// what it was called and how it was. Every argument must be given.
KZ_EXPORT int kz_CADObjId_unlockThawOnLayer(kz_Char* layer, int32_t* frozen, int32_t* locked,
                                            int32_t* off, const kz_CADObjId* id);
/// A record of a state; caller destroys. @return NULL for a NULL name or one of more than 255
/// characters, and without memory
KZ_EXPORT kz_LayerStateNode* kz_LayerStateNode_create(const kz_Char* name, int32_t frozen,
                                                      int32_t locked, int32_t off);
KZ_EXPORT void kz_LayerStateNode_destroy(kz_LayerStateNode* node);
/// Three-way comparison of the names without regard to case. @return -1 also when one is NULL
KZ_EXPORT int kz_LayerStateNode_compare(const kz_LayerStateNode* a, const kz_LayerStateNode* b);
/// Gives each layer of the working database that the list names its state. Moves the list's
/// position. @return 1 when at least one of them is there
KZ_EXPORT int kz_LayerStateList_setLayerStates(kz_LayerStateList* list);

// --- the drawing of an object -------------------------------------------------------------------

/// How the object's drawing lies in the current one: from the id's own transform when it was found
/// by a pick, otherwise as the service KZ_CADSERVICE tells. `attached`, which may be NULL, gets 1
/// for an object inside an attached drawing. @return 0 also when the service has no answer
KZ_EXPORT int kz_CADObjId_getDwgTransform(int* attached, kz_Point* origin, kz_RotMatrix* rotation,
                                          const kz_CADObjId* id);
/// The object's drawing, as an id that the caller destroys through the service. @return NULL
KZ_EXPORT kz_CADDwgId* kz_CADObjId_getDwgId(const kz_CADObjId* id);
/// File of the object's drawing; the buffer takes the whole path. @return 0 also for a drawing
/// without a file
KZ_EXPORT int kz_CADObjId_getDrawingName(kz_Char* out, const kz_CADObjId* id);
/// File of an entity's drawing as a new text that the caller frees: of the drawing in the editor,
/// of one attached to it (`attached` gets 1), or with `search` of one that is known otherwise
/// (`foundOpen` gets 1). Both flags are 0 else, and must be given. @return NULL when there is none
KZ_EXPORT kz_Char* kz_AcCAD_getDwgNameFromEnt(const AcDbEntity* entity, int* attached,
                                              int* foundOpen, int search);
KZ_EXPORT kz_Char* kz_AcCAD_getDwgNameFromEntObjId(const AcDbObjectId* object, int* attached,
                                                   int* foundOpen, int search);

// --- picks --------------------------------------------------------------------------------------

/// Lets the user pick an object, as a new id that the caller destroys. Of an attached drawing it is
/// the innermost object at the point, or the first around it that has data of its own and, where
/// there is one, that is a member of a group; its id has state 2 and the way from its block to the
/// current drawing. All other ids have state 1. `point`, which may be NULL, gets the picked point
/// [local]. @return NULL for a miss, a cancel and an object that can't be opened
KZ_EXPORT kz_CADObjId* kz_CADObjId_select(const kz_Char* prompt, kz_Point* point);
/// The object at a point [local], looked for in blocks, too, without asking: the innermost one, or
/// the first around it that has data of its own. States as above, by whether it lies in an attached
/// drawing. @return NULL; a miss adds the custom error 11 to the error list
KZ_EXPORT kz_CADObjId* kz_CADObjId_getAtPoint(const kz_Point* point);
/// The object that a pick means: a vertex or an attribute gives way to the entity that it is part
/// of, and an object without XDATA to the first one around it that has some. `containers` is the
/// chain of acedNEntSelP, or NULL. `hasData`, which may be NULL, gets 1 when there is XDATA.
/// @return 0 for an entity that can't be read; the name is null then
KZ_EXPORT int kz_AcCAD_resolvePickedEntity(ads_name out, const ads_name picked,
                                           const resbuf* containers, int* hasData);
}

#endif
