/// Vectors: between kz_Vector and the platform's points and vectors.
#include "kz/kz_point_cnv.h"
#include "trace.h"

namespace {

constexpr const char* kTraceSource = "SRC/ACAD/vec_rx";

}  // namespace

int kz_Vector_fromADSPoint(kz_Vector* out, const ads_point point) {
    KZ_TRACE(kz::kTraceEntry, kz::kTraceVectors, KZ_T("Entering kz_Vector_fromADSPoint."));
    if (out != nullptr) *out = {point[0], point[1], point[2]};
    KZ_TRACE(kz::kTraceEntry, kz::kTraceVectors, KZ_T("Leaving kz_Vector_fromADSPoint."));
    return out != nullptr;
}

int kz_Vector_toADSPoint(ads_point out, const kz_Vector* vector) {
    KZ_TRACE(kz::kTraceEntry, kz::kTraceVectors, KZ_T("Entering kz_Vector_toADSPoint."));
    if (vector != nullptr) kz_ADSPoint_set(out, vector->x, vector->y, vector->z);
    KZ_TRACE(kz::kTraceEntry, kz::kTraceVectors, KZ_T("Leaving kz_Vector_toADSPoint."));
    return vector != nullptr;
}

#if defined(__clang__)
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wreturn-type-c-linkage"
#endif
AcGeVector3d kz_Vector_asAcGeVector3d(const kz_Vector* vector) {
    return vector != nullptr ? AcGeVector3d(vector->x, vector->y, vector->z) : AcGeVector3d();
}
#if defined(__clang__)
#pragma clang diagnostic pop
#endif

kz_Vector kz_Vector_asKz_Vector(const AcGeVector3d& vector) {
    return {vector.x, vector.y, vector.z};
}
