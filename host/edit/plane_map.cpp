/// The map of a flat entity's coordinates.
#include "edit/plane_map.h"

#include <algorithm>

namespace host {
namespace {

constexpr double kSame = 1e-9;

bool nearly(double a, double b, double size) {
    return std::fabs(a - b) <= kSame * size;
}

}  // namespace

double wholeTurn(double degrees) {
    const double rest = std::fmod(degrees, 360.0);
    return (rest < 0.0 ? rest + 360.0 : rest) + 0.0;
}

AcGeVector3d directionAt(double degrees) {
    const double turn = wholeTurn(degrees);
    if (turn == 0.0) return {1, 0, 0};
    if (turn == 90.0) return {0, 1, 0};
    if (turn == 180.0) return {-1, 0, 0};
    if (turn == 270.0) return {0, -1, 0};
    return {std::cos(toRadians(turn)), std::sin(toRadians(turn)), 0.0};
}

double cleanScale(double scale) {
    return std::fabs(std::fabs(scale) - 1.0) <= 1e-12 ? std::copysign(1.0, scale) : scale;
}

PlaneMap::PlaneMap(const AcGeVector3d& old_normal, const AcGeMatrix3d& matrix) {
    const AcGeVector3d unit =
        old_normal.isZeroLength() ? AcGeVector3d::kZAxis : old_normal.normal();
    const AcGeMatrix3d to_world = AcGeMatrix3d().setToPlaneToWorld(unit);
    const AcGeMatrix3d moved = matrix * to_world;
    AcGePoint3d origin;
    AcGeVector3d x, y, z;
    moved.getCoordSystem(origin, x, y, z);
    // The normal keeps its side, so a mirror that stands on the plane leaves it as it is.
    normal = x.crossProduct(y).normal();
    if (normal.dotProduct(z) < 0.0) normal.negate();
    constexpr double kNoise = 1e-12;
    if (normal.isEqualTo(unit, kNoise)) normal = unit;
    map = AcGeMatrix3d().setToWorldToPlane(normal) * moved;

    const double xx = map(0, 0), xy = map(1, 0), yx = map(0, 1), yy = map(1, 1);
    const double x_length = std::hypot(xx, xy), y_length = std::hypot(yx, yy);
    const double size = std::max(x_length, y_length);
    scale = cleanScale(x_length);
    lift = cleanScale(map(2, 2));
    turn = toDegrees(std::atan2(xy, xx));
    similar = nearly(x_length, y_length, size) && nearly(xx * yx + xy * yy, 0.0, size * size);
    upright = nearly(std::hypot(map(0, 2), map(1, 2)), 0.0, std::fabs(lift));
    mirrored = xx * yy - xy * yx < 0.0;
}

double PlaneMap::angle(double degrees) const {
    if (turn == 0.0 && !mirrored) return degrees;
    return wholeTurn(mirrored ? turn - degrees : turn + degrees);
}

}  // namespace host
