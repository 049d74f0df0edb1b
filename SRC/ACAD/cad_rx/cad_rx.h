/// What the operations on objects and drawings share.
#ifndef SRC_ACAD_CAD_RX_H
#define SRC_ACAD_CAD_RX_H

#include "kz/kz_objid.h"

namespace kz {

/// The working database; NULL when there is none.
AcDbDatabase* workingDatabase();

/// The drawing that a drawing id stands for, the working database for NULL. NULL when there is no
/// such drawing, which must not be taken for the working database: an id whose drawing was closed.
AcDbDatabase* databaseOf(const kz_CADDwgId* drawing);

}  // namespace kz

#endif
