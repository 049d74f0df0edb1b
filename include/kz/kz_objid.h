/// Object ids and drawing ids: the records that stand for an object of a drawing and for a drawing.
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

#endif
