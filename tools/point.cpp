/// Points and angles. Every function computes before it stores, since `out` may be an argument.
#include "kz_tls21an/point.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "geometry_internal.h"

namespace {

using kz::store;
using kz::vec;
using kz::Vec3;

/// The nearest multiple of the tolerance. It is divided by 1/tolerance, a whole number, so that 0.3
/// comes out as 0.3.
double roundToTolerance(double value) {
    constexpr double steps = 1.0 / KZ_TOLERANCE;
    constexpr double limit = 9007199254740992.0 / steps;  // above it, doubles are coarser than that
    if (!(std::fabs(value) < limit)) return value;
    return std::round(value * steps) / steps + 0.0;
}

}  // namespace

int kz_Point_set(kz_Point* out, double x, double y, double z) {
    return store(out, kz_Point{x, y, z});
}

int kz_Point_setX(kz_Point* out, double value) {
    return out ? store(&out->x, value) : 0;
}

int kz_Point_setY(kz_Point* out, double value) {
    return out ? store(&out->y, value) : 0;
}

int kz_Point_setZ(kz_Point* out, double value) {
    return out ? store(&out->z, value) : 0;
}

int kz_Point_getX(double* out, const kz_Point* point) {
    return point ? store(out, point->x) : 0;
}

int kz_Point_getY(double* out, const kz_Point* point) {
    return point ? store(out, point->y) : 0;
}

int kz_Point_getZ(double* out, const kz_Point* point) {
    return point ? store(out, point->z) : 0;
}

int kz_Point_copy(kz_Point* out, const kz_Point* point) {
    if (point) return store(out, *point);
    store(out, kz_Point{0.0, 0.0, 0.0});
    return 0;
}

int kz_Point_add(kz_Point* out, const kz_Point* a, const kz_Point* b) {
    return a && b ? store(out, kz::asPoint(kz::sum(vec(*a), vec(*b)))) : 0;
}

int kz_Point_subtract(kz_Point* out, const kz_Point* a, const kz_Point* b) {
    return a && b ? store(out, kz::asPoint(kz::difference(vec(*a), vec(*b)))) : 0;
}

int kz_Point_midpoint(kz_Point* out, const kz_Point* a, const kz_Point* b) {
    return a && b ? store(out, kz::asPoint(kz::scaled(kz::sum(vec(*a), vec(*b)), 0.5))) : 0;
}

int kz_Point_distance(double* out, const kz_Point* a, const kz_Point* b) {
    return a && b ? store(out, kz::length(kz::difference(vec(*a), vec(*b)))) : 0;
}

int kz_Point_equal(const kz_Point* a, const kz_Point* b) {
    return a && b && kz::isClose(vec(*a), vec(*b)) ? 1 : 0;
}

int kz_Point_colinear(const kz_Point* a, const kz_Point* b, const kz_Point* c) {
    if (!a || !b || !c) return 0;
    const Vec3 ab = kz::difference(vec(*b), vec(*a));
    const Vec3 ac = kz::difference(vec(*c), vec(*a));
    const double longest =
        std::max({kz::length(ab), kz::length(ac), kz::length(kz::difference(ac, ab))});
    if (longest < KZ_TOLERANCE) return 1;
    return kz::length(kz::cross(ab, ac)) / longest < KZ_TOLERANCE ? 1 : 0;
}

int kz_Point_between(const kz_Point* first, const kz_Point* middle, const kz_Point* last,
                     int excludeEnds) {
    if (!first || !middle || !last) return 0;
    if (kz_Point_equal(first, middle) || kz_Point_equal(middle, last)) return excludeEnds ? 0 : 1;
    if (!kz_Point_colinear(first, middle, last)) return 0;
    const Vec3 toFirst = kz::difference(vec(*first), vec(*middle));
    const Vec3 toLast = kz::difference(vec(*last), vec(*middle));
    return kz::dot(toFirst, toLast) < 0.0 ? 1 : 0;
}

int kz_Point_intersectPoint(kz_Point* out, const kz_Point* a, const kz_Point* b, const kz_Point* c,
                            const kz_Point* d) {
    if (!out || !a || !b || !c || !d || kz_Point_equal(a, b) || kz_Point_equal(c, d)) return 0;
    Vec3 first{};
    Vec3 second{};
    if (!kz::direction(kz::difference(vec(*b), vec(*a)), first)) return 0;
    if (!kz::direction(kz::difference(vec(*d), vec(*c)), second)) return 0;
    const Vec3 normal = kz::cross(first, second);
    const double sine = kz::length(normal);
    if (!(sine >= KZ_TOLERANCE)) return 0;

    const Vec3 between = kz::difference(vec(*c), vec(*a));
    if (!(std::fabs(kz::dot(between, normal)) / sine < KZ_TOLERANCE)) return 0;
    const double distance = kz::dot(kz::cross(between, second), normal) / (sine * sine);
    return store(out, kz::asPoint(kz::sum(vec(*a), kz::scaled(first, distance))));
}

int kz_Point_translateByAngle(kz_Point* out, const kz_Point* point, double angle, double distance) {
    if (!point) return 0;
    const Vec3 step{distance * std::cos(angle), distance * std::sin(angle), 0.0};
    return store(out, kz::asPoint(kz::sum(vec(*point), step)));
}

int kz_Point_translateByVector(kz_Point* out, const kz_Point* point, const kz_Vector* direction,
                               double distance) {
    Vec3 unit{};
    if (!point || !direction || !kz::direction(*direction, unit)) return 0;
    return store(out, kz::asPoint(kz::sum(vec(*point), kz::scaled(unit, distance))));
}

int kz_Point_getOrthoVector(kz_Vector* out, const kz_Point* base, const kz_Point* second,
                            const kz_Point* picked) {
    Vec3 axis{};
    if (!out || !base || !second || !picked || kz_Point_equal(base, second)) return 0;
    if (!kz::direction(kz::difference(vec(*second), vec(*base)), axis)) return 0;
    const Vec3 toPicked = kz::difference(vec(*picked), vec(*base));
    const Vec3 ortho = kz::difference(toPicked, kz::scaled(axis, kz::dot(toPicked, axis)));
    if (!(kz::length(ortho) >= KZ_TOLERANCE)) return 0;
    return kz::direction(ortho, *out) ? 1 : 0;
}

int kz_Point_setToTolerance(kz_Point* point) {
    if (!point) return 0;
    *point = {roundToTolerance(point->x), roundToTolerance(point->y), roundToTolerance(point->z)};
    return 1;
}

double kz_Cnv_dtor(double degrees) {
    return degrees * (std::numbers::pi / 180.0);
}

double kz_Cnv_rtod(double radians) {
    return radians * (180.0 / std::numbers::pi);
}
