/// What the operations on objects and drawings share.
#ifndef SRC_ACAD_CAD_RX_H
#define SRC_ACAD_CAD_RX_H

#include <functional>

#include "guards.h"
#include "kz/kz_objid.h"

namespace kz {

/// Opens an object as a class of its own; nothing is open when that can't be.
template <class T>
Opened<T> openObject(AcDbObjectId object, AcDb::OpenMode mode) {
    T* opened = nullptr;
    acdbOpenObject(opened, object, mode);
    return Opened<T>(opened);
}

/// The same by an object id of the suite; a name that the platform refuses is told on the error
/// list.
template <class T>
Opened<T> openObject(const kz_CADObjId* id, AcDb::OpenMode mode) {
    AcDbObjectId object;
    if (kz_CADObjId_getAcDbObjectId(&object, id) != 1) return {};
    return openObject<T>(object, mode);
}

/// Puts what a function of the platform gave on the error list, as the custom error 11.
void submitStatus(const kz_Char* function, Acad::ErrorStatus status);

/// True for the block of an attached drawing.
bool isAttachment(const AcDbBlockTableRecord& block);

/// The working database; NULL when there is none.
AcDbDatabase* workingDatabase();

/// The drawing that a drawing id stands for, the working database for NULL. NULL when there is no
/// such drawing, which must not be taken for the working database: an id whose drawing was closed.
AcDbDatabase* databaseOf(const kz_CADDwgId* drawing);

/// True when `test` is, for one of the drawings attached to the working database; the others behind
/// it are not asked for.
bool anyAttachedDrawing(const std::function<bool(AcDbDatabase*)>& test);

}  // namespace kz

#endif
