/// Conversions between the geometry of the suite (points, vectors, transforms, point lists) and the
/// forms of the platform. Coordinates keep their unit and frame unless the function's name says
/// otherwise.
#ifndef KZ_POINT_CNV_H
#define KZ_POINT_CNV_H

#include "kz/kz_platform.h"

extern "C" {

/// Stores the three coordinates.
KZ_EXPORT void kz_ADSPoint_set(ads_point out, double x, double y, double z);
/// Copy the three doubles. @return 1; 0 when the kz_Point or kz_Vector is NULL
KZ_EXPORT int kz_Point_fromADSPoint(kz_Point* out, const ads_point point);
KZ_EXPORT int kz_Point_toADSPoint(ads_point out, const kz_Point* point);
KZ_EXPORT int kz_Vector_fromADSPoint(kz_Vector* out, const ads_point point);
KZ_EXPORT int kz_Vector_toADSPoint(ads_point out, const kz_Vector* vector);

/// From the current UCS to the world system. @return 1; 0 when the host refuses or for a NULL `out`
KZ_EXPORT int kz_Point_transUCStoWorld(kz_Point* out, const ads_point point);
/// From the world system to the current UCS. @return 1; 0 when the host refuses or for NULL
KZ_EXPORT int kz_Point_transWorldtoUCS(ads_point out, const kz_Point* point);

/// Copies the 4 by 4 matrix into the transform, row by row.
/// @return 1; the first other status of kz_Matrix_setElement; 0 for a NULL transform
KZ_EXPORT int kz_TMatrix_fromADSMatrix(kz_TMatrix* out, const ads_matrix matrix);
/// Copies the transform into the 4 by 4 matrix. @return 1; 0 for a NULL transform
KZ_EXPORT int kz_TMatrix_toADSMatrix(ads_matrix out, const kz_TMatrix* matrix);

/// The points of the list at the cursor; other values are passed over. The cursor ends behind the
/// list. @return a new list that the caller destroys; NULL when there is no point
KZ_EXPORT kz_PointList* kz_PointList_fromRb(resbuf** cursor);
/// A new chain of RT3DPOINT nodes that the caller releases; NULL for NULL and for an empty list.
/// The position ends behind the last point.
KZ_EXPORT resbuf* kz_PointList_toRb(kz_PointList* list);

#if defined(__clang__)
#pragma clang diagnostic push
// The platform's points have constructors; they still travel by value under C names.
#pragma clang diagnostic ignored "-Wreturn-type-c-linkage"
#endif
/// By value; the origin or the null vector for NULL.
KZ_EXPORT AcGePoint3d kz_Point_asAcGePoint3d(const kz_Point* point);
KZ_EXPORT AcGeVector3d kz_Vector_asAcGeVector3d(const kz_Vector* vector);
#if defined(__clang__)
#pragma clang diagnostic pop
#endif
/// By value.
KZ_EXPORT kz_Point kz_Point_asKz_Point(const AcGePoint3d& point);
KZ_EXPORT kz_Vector kz_Vector_asKz_Vector(const AcGeVector3d& vector);
}

#endif
