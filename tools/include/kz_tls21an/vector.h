/// Vectors of the suite: three doubles x, y, z [drawing units unless the caller says otherwise].
/// Functions that give a number or a vector return 1, or 0 for a NULL argument with `out`
/// untouched; the tests return their outcome, 0 for NULL. `out` may be one of the other arguments.
#ifndef KZ_TLS21AN_VECTOR_H
#define KZ_TLS21AN_VECTOR_H

#include "kz_tls21an/point.h"

extern "C" {

/// Stores the three components.
KZ_TLS_API int kz_Vector_set(kz_Vector* out, double x, double y, double z);
KZ_TLS_API int kz_Vector_setX(kz_Vector* out, double value);
KZ_TLS_API int kz_Vector_setY(kz_Vector* out, double value);
KZ_TLS_API int kz_Vector_setZ(kz_Vector* out, double value);
/// Reads one component.
KZ_TLS_API int kz_Vector_getX(double* out, const kz_Vector* vector);
KZ_TLS_API int kz_Vector_getY(double* out, const kz_Vector* vector);
KZ_TLS_API int kz_Vector_getZ(double* out, const kz_Vector* vector);
KZ_TLS_API int kz_Vector_copy(kz_Vector* out, const kz_Vector* vector);

/// The vector from point `a` to point `b`.
KZ_TLS_API int kz_Vector_computeVector(kz_Vector* out, const kz_Point* a, const kz_Point* b);
/// Unit normal of the plane through the origin and the points a and b, by the right-hand rule from
/// a to b. @return also 0 when the three points lie on one line
KZ_TLS_API int kz_Vector_computeNormal(kz_Vector* out, const kz_Point* a, const kz_Point* b);

/// Sum, difference, products.
KZ_TLS_API int kz_Vector_add(kz_Vector* out, const kz_Vector* a, const kz_Vector* b);
KZ_TLS_API int kz_Vector_subtract(kz_Vector* out, const kz_Vector* a, const kz_Vector* b);
KZ_TLS_API int kz_Vector_crossProduct(kz_Vector* out, const kz_Vector* a, const kz_Vector* b);
KZ_TLS_API int kz_Vector_dotProduct(double* out, const kz_Vector* a, const kz_Vector* b);
KZ_TLS_API int kz_Vector_scale(kz_Vector* out, const kz_Vector* vector, double factor);
KZ_TLS_API int kz_Vector_negate(kz_Vector* out, const kz_Vector* vector);
/// Length.
KZ_TLS_API int kz_Vector_magnitude(double* out, const kz_Vector* vector);
/// Makes the length 1, in place. @return also 0 for a vector without length, which stays
KZ_TLS_API int kz_Vector_normalize(kz_Vector* vector);
/// The unit vector of the same direction. @return also 0 for a vector without length
KZ_TLS_API int kz_Vector_copyNormalize(kz_Vector* out, const kz_Vector* vector);

/// 1 when no component of the two differs by KZ_TOLERANCE or more.
KZ_TLS_API int kz_Vector_equal(const kz_Vector* a, const kz_Vector* b);
/// The two tests below with KZ_TOLERANCE.
KZ_TLS_API int kz_Vector_orthogonal(const kz_Vector* a, const kz_Vector* b);
KZ_TLS_API int kz_Vector_parallel(const kz_Vector* a, const kz_Vector* b);
/// 1 when the cosine of the angle between the two is smaller than `tolerance`, sign aside.
/// A vector without length is orthogonal to none.
KZ_TLS_API int kz_Vector_orthogonalWithinTolerance(const kz_Vector* a, const kz_Vector* b,
                                                   double tolerance);
/// 1 when the sine of the angle between the two is smaller than `tolerance`: opposite directions
/// are parallel. A vector without length is parallel to none.
KZ_TLS_API int kz_Vector_parallelWithinTolerance(const kz_Vector* a, const kz_Vector* b,
                                                 double tolerance);
}

#endif
