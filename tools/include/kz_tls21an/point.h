/// Points of the suite: three doubles x, y, z [drawing units unless the caller says otherwise].
/// Two values closer than KZ_TOLERANCE count as equal in every test of this family.
///
/// Unless a line says otherwise, the functions give 1, or 0 for a NULL argument with `out`
/// untouched. `out` may be one of the other arguments.
#ifndef KZ_TLS21AN_POINT_H
#define KZ_TLS21AN_POINT_H

#include "kz_tls21an/types.h"

/// Tolerance of all geometric tests [drawing units].
#define KZ_TOLERANCE 1.0e-6

struct kz_Point {
    double x;
    double y;
    double z;
};

struct kz_Vector {
    double x;
    double y;
    double z;
};

extern "C" {

/// Stores the three coordinates.
KZ_TLS_API int kz_Point_set(kz_Point* out, double x, double y, double z);
KZ_TLS_API int kz_Point_setX(kz_Point* out, double value);
KZ_TLS_API int kz_Point_setY(kz_Point* out, double value);
KZ_TLS_API int kz_Point_setZ(kz_Point* out, double value);
/// Reads one coordinate.
KZ_TLS_API int kz_Point_getX(double* out, const kz_Point* point);
KZ_TLS_API int kz_Point_getY(double* out, const kz_Point* point);
KZ_TLS_API int kz_Point_getZ(double* out, const kz_Point* point);
/// Copies a point. A NULL `point` sets `out` to (0, 0, 0) and gives 0, so that a caller who does
/// not test the result still holds a point.
KZ_TLS_API int kz_Point_copy(kz_Point* out, const kz_Point* point);

/// a + b, a - b and the point halfway, coordinate by coordinate.
KZ_TLS_API int kz_Point_add(kz_Point* out, const kz_Point* a, const kz_Point* b);
KZ_TLS_API int kz_Point_subtract(kz_Point* out, const kz_Point* a, const kz_Point* b);
KZ_TLS_API int kz_Point_midpoint(kz_Point* out, const kz_Point* a, const kz_Point* b);
/// Distance of two points.
KZ_TLS_API int kz_Point_distance(double* out, const kz_Point* a, const kz_Point* b);

/// 1 when no coordinate of the two differs by KZ_TOLERANCE or more; else 0, also for NULL.
KZ_TLS_API int kz_Point_equal(const kz_Point* a, const kz_Point* b);
/// 1 when the three points lie on one line: the point opposite to the longest side of their
/// triangle is nearer to that side than KZ_TOLERANCE. Coinciding points are colinear with any
/// third.
KZ_TLS_API int kz_Point_colinear(const kz_Point* a, const kz_Point* b, const kz_Point* c);
/// 1 when `middle` lies on the straight line from `first` to `last`. With `excludeEnds` 0 a point
/// equal to an end counts as between, otherwise it does not.
KZ_TLS_API int kz_Point_between(const kz_Point* first, const kz_Point* middle, const kz_Point* last,
                                int excludeEnds);

/// Intersection of the lines a-b and c-d, both taken as infinite.
/// @return 1; 0 with `out` untouched when the lines are parallel, pass each other at KZ_TOLERANCE
/// or more, or one of them is given by two equal points
KZ_TLS_API int kz_Point_intersectPoint(kz_Point* out, const kz_Point* a, const kz_Point* b,
                                       const kz_Point* c, const kz_Point* d);
/// Moves `point` in its XY plane by `distance` [drawing units] in the direction `angle` [radians,
/// counter-clockwise from the X axis].
KZ_TLS_API int kz_Point_translateByAngle(kz_Point* out, const kz_Point* point, double angle,
                                         double distance);
/// Moves `point` by `distance` [drawing units] in the direction of `direction`, whose length does
/// not matter. @return also 0 for a direction without length
KZ_TLS_API int kz_Point_translateByVector(kz_Point* out, const kz_Point* point,
                                          const kz_Vector* direction, double distance);
/// Unit vector at right angles to the line from `base` to `second`, in the plane of the three
/// points and to the side of `picked`.
/// @return also 0 when base and second are equal or `picked` lies on their line
KZ_TLS_API int kz_Point_getOrthoVector(kz_Vector* out, const kz_Point* base, const kz_Point* second,
                                       const kz_Point* picked);
/// Rounds the coordinates to multiples of KZ_TOLERANCE, in place; -0.0 becomes 0.0. Values too
/// large to have digits at that place stay.
KZ_TLS_API int kz_Point_setToTolerance(kz_Point* point);

/// Degrees to radians.
KZ_TLS_API double kz_Cnv_dtor(double degrees);
/// Radians to degrees.
KZ_TLS_API double kz_Cnv_rtod(double radians);
}

/// The same rounding for a vector.
inline int kz_Point_setToTolerance(kz_Vector* vector) {
    if (!vector) return 0;
    kz_Point point{vector->x, vector->y, vector->z};
    kz_Point_setToTolerance(&point);
    *vector = {point.x, point.y, point.z};
    return 1;
}

#endif
