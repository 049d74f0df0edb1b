/// Where the entities of a space are: which of them can show something in a rectangle of the
/// screen, without a look at all of them.
///
/// The first question about a space measures its entities once. From then on the drawing's changes
/// are noted, and the next question measures what has changed.
#ifndef HOST_EDIT_SPATIAL_INDEX_H
#define HOST_EDIT_SPATIAL_INDEX_H

#include <vector>

#include "acad/extents.h"
#include "db/database.h"

namespace host {

/// Living main entities of a space whose boxes meet a rectangle of the screen, however deep they
/// lie, latest drawn first. What is hidden or on a layer that is not shown is among them; so is
/// what comes near the rectangle without touching it.
/// @param to_screen  from the world to the coordinates of the rectangle; for the present view
///                   currentView(database).worldToDisplay()
std::vector<Slot> entitiesIn(Database& database, Slot space, const AcGeMatrix3d& to_screen,
                             const AcGePoint2d& least, const AcGePoint2d& greatest);

}  // namespace host

#endif
