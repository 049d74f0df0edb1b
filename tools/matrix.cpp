/// Rotations and transforms.
#include "kz_tls21an/matrix.h"

#include "geometry_internal.h"
#include "kz_tls21an/memory.h"
#include "record_count.h"

namespace {

constexpr kz_RotMatrix identity{{{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}}};

bool isInRange(int row, int column, int limit) {
    return row >= 0 && row < limit && column >= 0 && column < limit;
}

double* originElement(kz_TMatrix& matrix, int row) {
    double* const elements[] = {&matrix.origin.x, &matrix.origin.y, &matrix.origin.z};
    return elements[row];
}

}  // namespace

kz_RotMatrix* kz_RotMatrix_create(void) {
    auto* matrix = static_cast<kz_RotMatrix*>(kz_Malloc(sizeof(kz_RotMatrix)));
    kz_RotMatrix_setIdentity(matrix);
    if (matrix) ++livingRecords;
    return matrix;
}

void kz_RotMatrix_destroy(kz_RotMatrix* matrix) {
    if (matrix) --livingRecords;
    kz_Free(matrix);
}

int kz_RotMatrix_copy(kz_RotMatrix* destination, const kz_RotMatrix* source) {
    return source ? kz::store(destination, *source) : 0;
}

int kz_RotMatrix_setIdentity(kz_RotMatrix* matrix) {
    return kz::store(matrix, identity);
}

int kz_RotMatrix_setElement(kz_RotMatrix* matrix, int row, int column, double value) {
    if (!matrix || !isInRange(row, column, 3)) return 0;
    matrix->element[row][column] = value;
    return 1;
}

int kz_RotMatrix_getColumn(kz_Vector* out, const kz_RotMatrix* matrix, int column) {
    if (!matrix || !isInRange(0, column, 3)) return 0;
    const auto& element = matrix->element;
    return kz::store(out, kz_Vector{element[0][column], element[1][column], element[2][column]});
}

int kz_RotMatrix_fromColumnVectors(kz_RotMatrix* out, const kz_Vector* x, const kz_Vector* y,
                                   const kz_Vector* z) {
    if (!x || !y || !z) return 0;
    return kz::store(out,
                     kz_RotMatrix{{{x->x, y->x, z->x}, {x->y, y->y, z->y}, {x->z, y->z, z->z}}});
}

int kz_RotMatrix_isIdentity(const kz_RotMatrix* matrix) {
    if (!matrix) return 0;
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            if (!kz::isClose(matrix->element[row][column], identity.element[row][column])) return 0;
        }
    }
    return 1;
}

kz_TMatrix* kz_TMatrix_create(void) {
    auto* matrix = static_cast<kz_TMatrix*>(kz_Malloc(sizeof(kz_TMatrix)));
    kz::store(matrix, kz_TMatrix{{0.0, 0.0, 0.0}, identity});
    if (matrix) ++livingRecords;
    return matrix;
}

void kz_TMatrix_destroy(kz_TMatrix* matrix) {
    if (matrix) --livingRecords;
    kz_Free(matrix);
}

int kz_TMatrix_getOrigin(kz_Point* out, const kz_TMatrix* matrix) {
    return matrix ? kz::store(out, matrix->origin) : 0;
}

int kz_TMatrix_getRMatrix(kz_RotMatrix* out, const kz_TMatrix* matrix) {
    return matrix ? kz::store(out, matrix->rotation) : 0;
}

int kz_TMatrix_setOrigin(kz_TMatrix* matrix, const kz_Point* origin) {
    return matrix && origin ? kz::store(&matrix->origin, *origin) : 0;
}

int kz_TMatrix_setRMatrix(kz_TMatrix* matrix, const kz_RotMatrix* rotation) {
    return matrix && rotation ? kz::store(&matrix->rotation, *rotation) : 0;
}

int kz_Matrix_copy(kz_TMatrix* destination, const kz_TMatrix* source) {
    return source ? kz::store(destination, *source) : 0;
}

int kz_Matrix_setElement(kz_TMatrix* matrix, int row, int column, double value) {
    if (!matrix || !isInRange(row, column, 4)) return 0;
    if (row == 3) return kz::isClose(value, column == 3 ? 1.0 : 0.0) ? 1 : 0;
    if (column == 3) return kz::store(originElement(*matrix, row), value);
    return kz_RotMatrix_setElement(&matrix->rotation, row, column, value);
}

int kz_Matrix_getElement(double* out, const kz_TMatrix* matrix, int row, int column) {
    if (!matrix || !isInRange(row, column, 4)) return 0;
    if (row == 3) return kz::store(out, column == 3 ? 1.0 : 0.0);
    const double origin[] = {matrix->origin.x, matrix->origin.y, matrix->origin.z};
    return kz::store(out, column == 3 ? origin[row] : matrix->rotation.element[row][column]);
}
