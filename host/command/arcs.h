/// Arcs in the plane, as ARC and PLINE build them from what the user gives.
#ifndef HOST_COMMAND_ARCS_H
#define HOST_COMMAND_ARCS_H

#include <optional>

#include "acad/ge.h"

namespace host {

/// An arc or, from 0 to a full turn, a circle. Angles in radians, counter-clockwise.
struct PlaneArc {
    AcGePoint2d centre;
    double radius = 0.0;
    double start = 0.0;
    double end = 0.0;
};

AcGePoint2d inPlane(const AcGePoint3d& point);
/// Direction from one point to another [radians].
double directionTo(const AcGePoint2d& from, const AcGePoint2d& to);
AcGePoint2d pointAlong(const AcGePoint2d& from, double direction, double distance);

/// The circle through three points; nothing for points on a line.
std::optional<PlaneArc> circleThrough(const AcGePoint2d& a, const AcGePoint2d& b,
                                      const AcGePoint2d& c);
/// The arc from one point to another that turns by an angle: positive counter-clockwise, negative
/// clockwise, less than a full turn. Nothing for no angle or equal points.
std::optional<PlaneArc> arcByAngle(const AcGePoint2d& from, const AcGePoint2d& to, double included);

/// The included angle of an arc from one point to another ...
/// ... through a third one; 0 for points on a line.
double includedThrough(const AcGePoint2d& from, const AcGePoint2d& by, const AcGePoint2d& to);
/// ... that starts in a direction.
double includedByDirection(const AcGePoint2d& from, const AcGePoint2d& to, double direction);
/// ... with a radius, counter-clockwise, the greater arc for a negative one. Nothing when the
/// points are too far apart.
std::optional<double> includedByRadius(const AcGePoint2d& from, const AcGePoint2d& to,
                                       double radius);
/// ... around a centre, from the direction of one to that of the other, counter-clockwise.
double includedAround(const AcGePoint2d& centre, const AcGePoint2d& from, const AcGePoint2d& to);
/// ... of a circle that has a chord of this length, the greater arc for a negative one. Nothing for
/// a chord longer than the diameter.
std::optional<double> includedByChord(double radius, double chord);

/// A direction from 0 to below a full turn.
double wholeDirection(double radians);

}  // namespace host

#endif
