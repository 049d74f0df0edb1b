/// Transforms: between kz_TMatrix and the platform's 4 by 4 matrices.
#include "kz/kz_point_cnv.h"
#include "trace.h"

namespace {

constexpr const char* kTraceSource = "SRC/ACAD/mat_rx";
constexpr int kSize = 4;

}  // namespace

int kz_TMatrix_fromADSMatrix(kz_TMatrix* out, const ads_matrix matrix) {
    if (out == nullptr) return 0;
    for (int row = 0; row < kSize; ++row) {
        for (int column = 0; column < kSize; ++column) {
            const int status = kz_Matrix_setElement(out, row, column, matrix[row][column]);
            if (status != 1) return status;
        }
    }
    return 1;
}

int kz_TMatrix_toADSMatrix(ads_matrix out, const kz_TMatrix* matrix) {
    KZ_TRACE(kz::kTraceEntry, kz::kTraceMatrices, KZ_T("Entering kz_TMatrix_toADSMatrix."));
    for (int row = 0; matrix != nullptr && row < kSize; ++row) {
        for (int column = 0; column < kSize; ++column) {
            kz_Matrix_getElement(&out[row][column], matrix, row, column);
        }
    }
    KZ_TRACE(kz::kTraceEntry, kz::kTraceMatrices, KZ_T("Leaving kz_TMatrix_toADSMatrix."));
    return matrix != nullptr;
}
