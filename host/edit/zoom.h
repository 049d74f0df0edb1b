/// Ways to change the view. Points and directions are in the user coordinate system; each change
/// remembers the view before it, of which the last ten can be had back.
#ifndef HOST_EDIT_ZOOM_H
#define HOST_EDIT_ZOOM_H

#include <optional>
#include <string_view>

#include "db/database.h"
#include "edit/refusal.h"

namespace host {

struct Ucs;

Refusal zoomWindow(Database& database, const AcGePoint3d& corner, const AcGePoint3d& opposite);
/// @param height  of the new view; nothing keeps the present one
Refusal zoomCentre(Database& database, const AcGePoint3d& centre, std::optional<double> height);
/// The same by the lower left corner of the new view.
Refusal zoomLeft(Database& database, const AcGePoint3d& corner, std::optional<double> height);
/// What a magnification counts from.
enum class ZoomBase {
    Limits,  ///< the view of the whole limits (2)
    View,    ///< the present view (2x)
    Paper    ///< sizes on the paper (2xp); in a layout's viewport only
};
Refusal zoomScale(Database& database, double factor, ZoomBase base);
/// What is drawn; the limits in an empty drawing.
Refusal zoomExtents(Database& database);
/// What is drawn and the limits; seen from the side only what is drawn.
Refusal zoomAll(Database& database);
/// Back to the view before the last change.
Refusal zoomPrevious(Database& database);
/// Moves the picture by the way from one point to the other.
Refusal panView(Database& database, const AcGePoint3d& from, const AcGePoint3d& to);
/// Looks from a direction, given in the UCS, and shows all that is drawn.
Refusal setViewDirection(Database& database, const AcGeVector3d& direction);
/// Looks at the x-y plane of a system and shows all that is drawn.
Refusal planView(Database& database, const Ucs& ucs);

/// Keeps the present view under a name, in the place of one that has it.
Refusal saveView(Database& database, std::u16string_view name);
Refusal restoreView(Database& database, std::u16string_view name);
Refusal deleteView(Database& database, std::u16string_view name);

}  // namespace host

#endif
