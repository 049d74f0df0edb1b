/// Highlighting, for the calls that do it through an open entity.
#ifndef HOST_EDIT_REDRAW_H
#define HOST_EDIT_REDRAW_H

#include "host/display.h"

namespace host {

/// Highlights an object, or ends that. An id that leads nowhere is ignored.
void setHighlighted(AcDbObjectId id, bool on);

}  // namespace host

#endif
