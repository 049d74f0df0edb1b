/// Arithmetic on the three doubles of points and vectors, shared by the geometry families. Here all
/// of them are Vec3, whatever they mean.
#ifndef KZ_TOOLS_GEOMETRY_INTERNAL_H
#define KZ_TOOLS_GEOMETRY_INTERNAL_H

#include <cmath>

#include "kz_tls21an/point.h"

namespace kz {

using Vec3 = kz_Vector;

inline Vec3 vec(const kz_Point& point) {
    return {point.x, point.y, point.z};
}

inline kz_Point asPoint(const Vec3& v) {
    return {v.x, v.y, v.z};
}

inline Vec3 sum(const Vec3& a, const Vec3& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}

inline Vec3 difference(const Vec3& a, const Vec3& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

inline Vec3 scaled(const Vec3& v, double factor) {
    return {v.x * factor, v.y * factor, v.z * factor};
}

inline double dot(const Vec3& a, const Vec3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

inline Vec3 cross(const Vec3& a, const Vec3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

inline double length(const Vec3& v) {
    return std::hypot(v.x, v.y, v.z);
}

inline bool isClose(double a, double b) {
    return std::fabs(a - b) < KZ_TOLERANCE;
}

inline bool isClose(const Vec3& a, const Vec3& b) {
    return isClose(a.x, b.x) && isClose(a.y, b.y) && isClose(a.z, b.z);
}

/// The direction of `v`; false for a vector without length or with one that is no number.
inline bool direction(const Vec3& v, Vec3& out) {
    const double size = length(v);
    if (!(size > 0.0) || std::isinf(size)) return false;
    out = {v.x / size, v.y / size, v.z / size};
    return true;
}

/// Stores a value through a pointer that may be NULL; 1 or 0.
template <class T>
int store(T* out, const T& value) {
    if (!out) return 0;
    *out = value;
    return 1;
}

}  // namespace kz

#endif
