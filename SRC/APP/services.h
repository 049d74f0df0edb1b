/// The forwarded functions that only the library calls. What they do is told by the modules that
/// register them; each gives 0 or NULL while its service is missing.
#ifndef SRC_APP_SERVICES_H
#define SRC_APP_SERVICES_H

#include "kz/kz_services.h"

struct kz_CADDwgId;
struct kz_CADDwgIdList;
struct kz_CADObject;
struct kz_CADObjId;
struct kz_GroupId;

extern "C" {

// --- drawings -----------------------------------------------------------------------------------

/// NULL is the drawing in the editor. Mode 3 is a drawing that is open, attached or unknown, 2 a
/// file that was just written.
kz_CADDwgId* kz_CADDwgId_create(const kz_Char* name, int mode);
void kz_CADDwgId_destroy(kz_CADDwgId* drawing);
void kz_CADDwgId_destroyAll(void);
int kz_CADDwgId_getName(kz_Char* out, const kz_CADDwgId* drawing);
int kz_CADDwgId_getRefCount(const kz_CADDwgId* drawing);
/// Transform into the current drawing; the flag tells whether the drawing is attached.
int kz_CADDwgId_getTransform(int* flag, kz_Point* origin, kz_RotMatrix* rotation, double* angle,
                             const kz_CADDwgId* drawing);
int kz_CADDwgId_isAttached(const kz_CADDwgId* drawing);
int kz_CADDwgId_isEqual(const kz_CADDwgId* a, const kz_CADDwgId* b);
int kz_CADDwgId_isInEditor(const kz_CADDwgId* drawing);
int kz_CADDwgId_isValid(const kz_CADDwgId* drawing);
int kz_CADDwgId_save(kz_CADDwgId* drawing);
/// 64 bits wide; 1 is success.
int64_t kz_CADDwgId_saveAs(kz_CADDwgId* drawing, const kz_Char* file);
/// New lists of object ids, or NULL.
kz_LnkList* kz_CADDwgId_getCADObjIdListFromAttributes(const kz_CADDwgId* drawing,
                                                      kz_FldList* fields, int any);
kz_LnkList* kz_CADDwgId_getCADObjIdListFromColor(const kz_CADDwgId* drawing, const kz_Char* color);
kz_LnkList* kz_CADDwgId_getCADObjIdListFromLayer(const kz_CADDwgId* drawing, const kz_Char* layer);

/// The known drawings: (0, 0, 1). An absent service makes eol 0, too: test the list for NULL before
/// walking it.
kz_CADDwgIdList* kz_CADDwgIdList_create(int first, int second, int third);
int kz_CADDwgIdList_destroy(kz_CADDwgIdList* list);
int kz_CADDwgIdList_start(kz_CADDwgIdList* list);
int kz_CADDwgIdList_next(kz_CADDwgIdList* list);
int kz_CADDwgIdList_eol(kz_CADDwgIdList* list);
kz_CADDwgId* kz_CADDwgIdList_getCurr(kz_CADDwgIdList* list);

/// An insertion of a block, which is not in the drawing yet.
kz_CADObject* kz_CADBlockIns3d_create(const kz_Char* block, const kz_Char* text, const kz_Point* at,
                                      double scale_x, double scale_y, double scale_z,
                                      const kz_Char* last);
int kz_CADObject_addToDrawing(kz_CADObject* object);

// --- coordinate systems: the callers' own ("local"), the UCS and the world -----------------------

int kz_CoordSys_transPointLocaltoUCS(kz_Point* out, const kz_Point* point);
int kz_CoordSys_transPointUCStoLocal(kz_Point* out, const kz_Point* point);
/// Local to world.
int kz_CoordSys_transformPointWorld(kz_Point* out, const kz_Point* point);
/// A new chain of points in the UCS, or NULL.
resbuf* kz_CoordSys_transPointListLocaltoUCS(kz_PointList* points);
int kz_CoordSys_rotateVectorUCStoLocal(kz_Vector* out, const kz_Vector* vector);
/// Make another system the local one and remember the one before.
int kz_CoordSys_fromVectorsXY(const kz_Vector* origin, const kz_Vector* x, const kz_Vector* y);
int kz_CoordSys_fromView(const kz_Point* point);
int kz_CoordSys_world(void);
/// Goes back one step.
int kz_CoordSys_previous(void);

// --- reactors -----------------------------------------------------------------------------------

int kz_Group_attachMasterEntReactor(const kz_GroupId* group, const kz_CADObjId* master);
int kz_Group_detachMasterEntReactor(const kz_GroupId* group, const kz_CADObjId* master);
}

#endif
