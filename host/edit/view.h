/// The view of the viewport that is worked in, and the display coordinate system: its origin is the
/// target, x and y lie in the screen, z points toward the camera. In model space the view is kept
/// in the table record *ACTIVE, in a layout in the VIEWPORT entities.
#ifndef HOST_EDIT_VIEW_H
#define HOST_EDIT_VIEW_H

#include <optional>
#include <string_view>

#include "acad/extents.h"
#include "db/database.h"
#include "edit/refusal.h"

namespace host {

struct View {
    AcGePoint3d target;
    AcGeVector3d direction = AcGeVector3d::kZAxis;  ///< from the target to the camera
    double twist = 0.0;     ///< turns the picture, counter-clockwise [radians]
    AcGePoint2d centre;     ///< of the screen, in display coordinates
    double height = 297.0;  ///< of the screen [drawing units]
    double lens = 50.0;     ///< [mm]
    double front = 0.0;     ///< clipping planes, from the target
    double back = 0.0;
    int mode = 0;  ///< as VIEWMODE; 8: the view follows the UCS

    AcGeMatrix3d displayToWorld() const;
    AcGeMatrix3d worldToDisplay() const { return displayToWorld().inverse(); }
};

/// The table record of the tiled viewport; kNoSlot in a drawing that has none.
Slot viewRecord(Database& database);
/// The same, made when there is none.
Slot needViewRecord(Database& database);

/// The view of the viewport that is worked in; that of a new drawing where there is none.
View currentView(Database& database);
/// Width of that viewport by its height.
double viewAspect(Database& database);
/// Size of the screen [pixels]; set by setScreenSize (host/variables.h).
AcGePoint2d screenSize();
/// Drawing units that a pixel shows.
double pixelSize(Database& database);

/// From the display of a layout's viewport to the paper. Nothing when the work is not in a layout,
/// the identity when it is in paper space itself.
std::optional<AcGeMatrix3d> displayToPaper(Database& database);

/// Makes a view the present one, which is remembered; see zoom.h for ways to say which one.
Refusal setView(Database& database, const View& view);
/// The same without remembering, and for views that are known to be good.
void keepView(Database& database, const View& view);

}  // namespace host

#endif
