/// How objects are shown, beside what their drawing says of them: highlighted, or taken off the
/// screen. Nothing of it is saved; it ends when the object is erased or its drawing closes.
#ifndef HOST_DISPLAY_H
#define HOST_DISPLAY_H

#include "acad/db.h"
#include "host/export.h"

namespace host {

/// True for an object that is highlighted; false for an id that leads nowhere.
HOST_API bool isHighlighted(AcDbObjectId id);
/// Highlights an object, or ends that. An id that leads nowhere is ignored.
HOST_API void setHighlighted(AcDbObjectId id, bool on);
/// True for an object that was taken off the screen and has not been redrawn since.
HOST_API bool isOffScreen(AcDbObjectId id);

}  // namespace host

#endif
