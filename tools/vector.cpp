/// Vectors.
#include "kz_tls21an/vector.h"

#include <cmath>

#include "geometry_internal.h"

namespace {

using kz::store;
using kz::Vec3;

/// Directions of two vectors; false when one is NULL or has none.
bool directions(const kz_Vector* a, const kz_Vector* b, Vec3& first, Vec3& second) {
    return a && b && kz::direction(*a, first) && kz::direction(*b, second);
}

}  // namespace

int kz_Vector_set(kz_Vector* out, double x, double y, double z) {
    return store(out, kz_Vector{x, y, z});
}

int kz_Vector_setX(kz_Vector* out, double value) {
    return out ? store(&out->x, value) : 0;
}

int kz_Vector_setY(kz_Vector* out, double value) {
    return out ? store(&out->y, value) : 0;
}

int kz_Vector_setZ(kz_Vector* out, double value) {
    return out ? store(&out->z, value) : 0;
}

int kz_Vector_getX(double* out, const kz_Vector* vector) {
    return vector ? store(out, vector->x) : 0;
}

int kz_Vector_getY(double* out, const kz_Vector* vector) {
    return vector ? store(out, vector->y) : 0;
}

int kz_Vector_getZ(double* out, const kz_Vector* vector) {
    return vector ? store(out, vector->z) : 0;
}

int kz_Vector_copy(kz_Vector* out, const kz_Vector* vector) {
    return vector ? store(out, *vector) : 0;
}

int kz_Vector_computeVector(kz_Vector* out, const kz_Point* a, const kz_Point* b) {
    return a && b ? store(out, kz::difference(kz::vec(*b), kz::vec(*a))) : 0;
}

int kz_Vector_computeNormal(kz_Vector* out, const kz_Point* a, const kz_Point* b) {
    constexpr kz_Point origin{0.0, 0.0, 0.0};
    if (!out || !a || !b || kz_Point_colinear(&origin, a, b)) return 0;
    return kz::direction(kz::cross(kz::vec(*a), kz::vec(*b)), *out) ? 1 : 0;
}

int kz_Vector_add(kz_Vector* out, const kz_Vector* a, const kz_Vector* b) {
    return a && b ? store(out, kz::sum(*a, *b)) : 0;
}

int kz_Vector_subtract(kz_Vector* out, const kz_Vector* a, const kz_Vector* b) {
    return a && b ? store(out, kz::difference(*a, *b)) : 0;
}

int kz_Vector_crossProduct(kz_Vector* out, const kz_Vector* a, const kz_Vector* b) {
    return a && b ? store(out, kz::cross(*a, *b)) : 0;
}

int kz_Vector_dotProduct(double* out, const kz_Vector* a, const kz_Vector* b) {
    return a && b ? store(out, kz::dot(*a, *b)) : 0;
}

int kz_Vector_scale(kz_Vector* out, const kz_Vector* vector, double factor) {
    return vector ? store(out, kz::scaled(*vector, factor)) : 0;
}

int kz_Vector_negate(kz_Vector* out, const kz_Vector* vector) {
    return vector ? store(out, kz_Vector{-vector->x, -vector->y, -vector->z}) : 0;
}

int kz_Vector_magnitude(double* out, const kz_Vector* vector) {
    return vector ? store(out, kz::length(*vector)) : 0;
}

int kz_Vector_normalize(kz_Vector* vector) {
    return kz_Vector_copyNormalize(vector, vector);
}

int kz_Vector_copyNormalize(kz_Vector* out, const kz_Vector* vector) {
    return out && vector && kz::direction(*vector, *out) ? 1 : 0;
}

int kz_Vector_equal(const kz_Vector* a, const kz_Vector* b) {
    return a && b && kz::isClose(*a, *b) ? 1 : 0;
}

int kz_Vector_orthogonal(const kz_Vector* a, const kz_Vector* b) {
    return kz_Vector_orthogonalWithinTolerance(a, b, KZ_TOLERANCE);
}

int kz_Vector_parallel(const kz_Vector* a, const kz_Vector* b) {
    return kz_Vector_parallelWithinTolerance(a, b, KZ_TOLERANCE);
}

int kz_Vector_orthogonalWithinTolerance(const kz_Vector* a, const kz_Vector* b, double tolerance) {
    Vec3 first{};
    Vec3 second{};
    if (!directions(a, b, first, second)) return 0;
    return std::fabs(kz::dot(first, second)) < tolerance ? 1 : 0;
}

int kz_Vector_parallelWithinTolerance(const kz_Vector* a, const kz_Vector* b, double tolerance) {
    Vec3 first{};
    Vec3 second{};
    if (!directions(a, b, first, second)) return 0;
    return kz::length(kz::cross(first, second)) < tolerance ? 1 : 0;
}
