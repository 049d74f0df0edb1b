/// The user coordinate system of a drawing. It is kept in the header, apart for model and paper
/// space. Points that come from the user are in the system that is current.
#ifndef HOST_EDIT_UCS_H
#define HOST_EDIT_UCS_H

#include <string>
#include <string_view>

#include "acad/ge.h"
#include "db/database.h"
#include "edit/refusal.h"

namespace host {

struct Ucs {
    AcGePoint3d origin;
    AcGeVector3d x = AcGeVector3d::kXAxis;  ///< axes have length 1 and are perpendicular
    AcGeVector3d y = AcGeVector3d::kYAxis;
    std::u16string name;  ///< empty for a system without one

    AcGeVector3d z() const { return x.crossProduct(y); }
    AcGeMatrix3d toWorld() const { return AcGeMatrix3d().setCoordSystem(origin, x, y, z()); }
    bool isWorld() const;
};

/// The system of the space that is worked in; the world where the header has none, or axes that
/// make no system.
Ucs currentUcs(Database& database);
/// That of model space, whatever space is worked in.
Ucs modelSpaceUcs(Database& database);

/// Each of the following remembers the system before, of which the last ten can be had back, and
/// turns the view after the new one when UCSFOLLOW asks for it.
Refusal setUcs(Database& database, Ucs wanted);
Refusal setWorldUcs(Database& database);
/// Moves the origin and keeps the directions.
Refusal setUcsOrigin(Database& database, const AcGePoint3d& origin);
/// @param on_x   on the positive x axis
/// @param in_xy  in the plane of x and y, where y is positive
Refusal setUcsByThreePoints(Database& database, const AcGePoint3d& origin, const AcGePoint3d& on_x,
                            const AcGePoint3d& in_xy);
/// The x and y axis follow from z by the arbitrary axis rule.
Refusal setUcsByZAxis(Database& database, const AcGePoint3d& origin, const AcGePoint3d& on_z);
/// Turns about one of its own axes: 0 x, 1 y, 2 z. @param angle  radians, counter-clockwise
Refusal rotateUcs(Database& database, int axis, double angle);
/// The system of an entity as it lies in the drawing. @param pick  where it was picked; says which
/// end is nearer
Refusal setUcsByEntity(Database& database, Slot entity, const AcGePoint3d& pick);
/// Parallel to the screen, at the present origin.
Refusal setUcsByView(Database& database);
/// Back to the system before the last change.
Refusal setPreviousUcs(Database& database);

/// Keeps the present system under a name, in the place of one that has it.
Refusal saveUcs(Database& database, std::u16string_view name);
Refusal restoreUcs(Database& database, std::u16string_view name);
Refusal deleteUcs(Database& database, std::u16string_view name);

}  // namespace host

#endif
