/// Rotations, and transforms made of an origin and a rotation. A transform takes p to
/// rotation * p + origin; as a matrix of 4 by 4 it has the rotation in rows and columns 0 to 2, the
/// origin in column 3 and 0 0 0 1 in row 3. Rows and columns count from 0. NULL arguments give 0.
#ifndef KZ_TLS21AN_MATRIX_H
#define KZ_TLS21AN_MATRIX_H

#include "kz_tls21an/point.h"

/// 3 by 3 matrix, row by row. Nothing here demands that it is a pure rotation.
struct kz_RotMatrix {
    double element[3][3];
};

struct kz_TMatrix {
    kz_Point origin;
    kz_RotMatrix rotation;
};

extern "C" {

/// A new identity. @return NULL when there is no memory; caller destroys
KZ_TLS_API kz_RotMatrix* kz_RotMatrix_create(void);
/// Frees the matrix. NULL is ignored.
KZ_TLS_API void kz_RotMatrix_destroy(kz_RotMatrix* matrix);
/// Copies `source` to `destination`. @return 1 or 0
KZ_TLS_API int kz_RotMatrix_copy(kz_RotMatrix* destination, const kz_RotMatrix* source);
/// Makes it the identity. @return 1 or 0
KZ_TLS_API int kz_RotMatrix_setIdentity(kz_RotMatrix* matrix);
/// Sets one element, rows and columns 0 to 2. @return 1; 0 when out of range
KZ_TLS_API int kz_RotMatrix_setElement(kz_RotMatrix* matrix, int row, int column, double value);
/// Column `column`, 0 to 2, as a vector. @return 1; 0 with `out` untouched when out of range
KZ_TLS_API int kz_RotMatrix_getColumn(kz_Vector* out, const kz_RotMatrix* matrix, int column);
/// The matrix whose columns are the three vectors. @return 1 or 0
KZ_TLS_API int kz_RotMatrix_fromColumnVectors(kz_RotMatrix* out, const kz_Vector* x,
                                              const kz_Vector* y, const kz_Vector* z);
/// 1 when no element differs from the identity's by KZ_TOLERANCE or more.
KZ_TLS_API int kz_RotMatrix_isIdentity(const kz_RotMatrix* matrix);

/// A new identity: origin (0, 0, 0). @return NULL when there is no memory; caller destroys
KZ_TLS_API kz_TMatrix* kz_TMatrix_create(void);
/// Frees the transform. NULL is ignored.
KZ_TLS_API void kz_TMatrix_destroy(kz_TMatrix* matrix);
/// Copies of the parts out and in. @return 1 or 0
KZ_TLS_API int kz_TMatrix_getOrigin(kz_Point* out, const kz_TMatrix* matrix);
KZ_TLS_API int kz_TMatrix_getRMatrix(kz_RotMatrix* out, const kz_TMatrix* matrix);
KZ_TLS_API int kz_TMatrix_setOrigin(kz_TMatrix* matrix, const kz_Point* origin);
KZ_TLS_API int kz_TMatrix_setRMatrix(kz_TMatrix* matrix, const kz_RotMatrix* rotation);

/// Copies `source` to `destination`. @return 1 or 0
KZ_TLS_API int kz_Matrix_copy(kz_TMatrix* destination, const kz_TMatrix* source);
/// Sets one element of the 4 by 4 form. Row 3 can't hold anything but 0 0 0 1: such a value (within
/// KZ_TOLERANCE) gives 1, any other 0. @return 1; 0 when out of range, the matrix unchanged
KZ_TLS_API int kz_Matrix_setElement(kz_TMatrix* matrix, int row, int column, double value);
/// One element of the 4 by 4 form. @return 1; 0 with `out` untouched when out of range
KZ_TLS_API int kz_Matrix_getElement(double* out, const kz_TMatrix* matrix, int row, int column);
}

#endif
