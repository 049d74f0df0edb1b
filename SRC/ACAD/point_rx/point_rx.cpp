/// Points: between kz_Point and the platform's points, lists and coordinate systems.
#include "chain_tail.h"
#include "guards.h"
#include "kz/kz_point_cnv.h"
#include "kz/kz_rb.h"
#include "trace.h"

namespace {

constexpr const char* kTraceSource = "SRC/ACAD/point_rx";

/// Coordinate systems as acedTrans takes them.
constexpr int16_t kWorld = 0;
constexpr int16_t kUser = 1;

/// A node on the stack that names a coordinate system.
resbuf systemNode(int16_t system) {
    resbuf node{};
    node.restype = RTSHORT;
    node.resval.rint = system;
    return node;
}

bool transform(const ads_point point, int16_t from, int16_t to, ads_point result) {
    const resbuf source = systemNode(from);
    const resbuf target = systemNode(to);
    return acedTrans(point, &source, &target, 0, result) == RTNORM;
}

}  // namespace

void kz_ADSPoint_set(ads_point out, double x, double y, double z) {
    out[0] = x;
    out[1] = y;
    out[2] = z;
}

int kz_Point_fromADSPoint(kz_Point* out, const ads_point point) {
    KZ_TRACE(kz::kTraceEntry, kz::kTracePoints, KZ_T("Entering kz_Point_fromADSPoint."));
    if (out != nullptr) *out = {point[0], point[1], point[2]};
    KZ_TRACE(kz::kTraceEntry, kz::kTracePoints, KZ_T("Leaving kz_Point_fromADSPoint."));
    return out != nullptr;
}

int kz_Point_toADSPoint(ads_point out, const kz_Point* point) {
    KZ_TRACE(kz::kTraceEntry, kz::kTracePoints, KZ_T("Entering kz_Point_toADSPoint."));
    if (point != nullptr) kz_ADSPoint_set(out, point->x, point->y, point->z);
    KZ_TRACE(kz::kTraceEntry, kz::kTracePoints, KZ_T("Leaving kz_Point_toADSPoint."));
    return point != nullptr;
}

int kz_Point_transUCStoWorld(kz_Point* out, const ads_point point) {
    ads_point world;
    if (out == nullptr || !transform(point, kUser, kWorld, world)) return 0;
    return kz_Point_fromADSPoint(out, world);
}

int kz_Point_transWorldtoUCS(ads_point out, const kz_Point* point) {
    ads_point world;
    if (kz_Point_toADSPoint(world, point) != 1) return 0;
    return transform(world, kWorld, kUser, out);
}

kz_PointList* kz_PointList_fromRb(resbuf** cursor) {
    if (*cursor != nullptr && (*cursor)->restype == RTLB) *cursor = (*cursor)->rbnext;
    kz_PointList* list = nullptr;
    for (; *cursor != nullptr && (*cursor)->restype != RTLE; *cursor = (*cursor)->rbnext) {
        if (kz_Rb_typeRb(*cursor) != KZ_RB_POINT) continue;
        kz_Point point{};
        kz_Point_fromADSPoint(&point, (*cursor)->resval.rpoint);
        if (list == nullptr) list = kz_PointList_create();
        kz_PointList_insEnd(list, &point);
    }
    if (*cursor != nullptr) *cursor = (*cursor)->rbnext;
    return list;
}

resbuf* kz_PointList_toRb(kz_PointList* list) {
    resbuf* chain = nullptr;
    kz::ChainTail tail(&chain);
    for (kz_PointList_start(list); kz_PointList_eol(list) == 0; kz_PointList_next(list)) {
        ads_point point{};
        kz_Point_toADSPoint(point, kz_PointList_getCurr(list));
        tail.append(RT3DPOINT, point);
    }
    return chain;
}

#if defined(__clang__)
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wreturn-type-c-linkage"
#endif
AcGePoint3d kz_Point_asAcGePoint3d(const kz_Point* point) {
    return point != nullptr ? AcGePoint3d(point->x, point->y, point->z) : AcGePoint3d();
}
#if defined(__clang__)
#pragma clang diagnostic pop
#endif

kz_Point kz_Point_asKz_Point(const AcGePoint3d& point) {
    return {point.x, point.y, point.z};
}
