/// What a transformation does to a flat entity, whose points are in the system of its extrusion
/// direction.
#ifndef HOST_EDIT_PLANE_MAP_H
#define HOST_EDIT_PLANE_MAP_H

#include "acad/ge.h"
#include "base/angles.h"

namespace host {

struct PlaneMap {
    /// @param old_normal  extrusion direction before
    /// @param matrix      in world coordinates, not singular
    PlaneMap(const AcGeVector3d& old_normal, const AcGeMatrix3d& matrix);

    AcGeMatrix3d map;       ///< from the entity's coordinates to those that it has afterwards
    AcGeVector3d normal;    ///< extrusion direction afterwards
    double scale = 1.0;     ///< of lengths in the plane
    double lift = 1.0;      ///< of lengths across it
    double turn = 0.0;      ///< direction that the x axis takes [degrees]
    bool similar = true;    ///< figures in the plane keep their form
    bool upright = true;    ///< what is perpendicular to the plane stays so
    bool mirrored = false;  ///< figures in the plane change their sense

    /// The direction that a direction takes, when `similar`. @return degrees from 0 to below 360
    double angle(double degrees) const;
    /// A point of the plane.
    AcGePoint3d point(double x, double y, double z) const { return map * AcGePoint3d(x, y, z); }
};

/// From 0 to below 360.
double wholeTurn(double degrees);
/// Vector of length 1 in the x-y plane; exact at quarter turns.
AcGeVector3d directionAt(double degrees);
/// 1 or -1 for a scale that is so but for noise.
double cleanScale(double scale);

}  // namespace host

#endif
