/// The view of the drawing in the editor: where it looks, what it shows, marks in it.
#include "CAD/variables.h"
#include "checks.h"
#include "guards.h"
#include "kz/kz_cad_env.h"
#include "kz/kz_point_cnv.h"
#include "local_points.h"

namespace {

/// Heights of views up to this one count as none.
constexpr double kSmallestHeight = 1e-5;
/// Room for the text of any factor.
constexpr size_t kFactorSize = 400;

constexpr int kNameGroup = 2;

int succeeded(int status) {
    return status == RTNORM ? 1 : 0;
}

/// The point of a variable in local coordinates. @return what the coordinate service gives
int getLocalPoint(kz_Point* out, const ads_real* ucs) {
    kz_Point point{};
    if (out == nullptr || ucs == nullptr) return 0;
    kz_Point_fromADSPoint(&point, ucs);
    *out = point;
    return kz_CoordSys_transPointUCStoLocal(out, &point);
}

/// Makes the block of a new point at the origin.
int makeMark(const kz_Char* block) {
    const ads_point origin = {0.0, 0.0, 0.0};
    ads_name point = {};
    // Without its own point the command would take in somebody else's entity.
    if (acedCommandS(RTSTR, KZ_T("_.point"), RT3DPOINT, origin, RTNONE) != RTNORM) return 0;
    if (acdbEntLast(point) != RTNORM) return 0;
    return succeeded(acedCommandS(RTSTR, KZ_T("_.block"), RTSTR, block, RT3DPOINT, origin, RTENAME,
                                  point, RTSTR, KZ_T(""), RTNONE));
}

}  // namespace

int kz_CAD_getDrawingExtentsMin(kz_Point* out) {
    return getLocalPoint(out, kz::Variable(KZ_T("ExtMin")).point3d());
}

int kz_CAD_getDrawingExtentsMax(kz_Point* out) {
    return getLocalPoint(out, kz::Variable(KZ_T("ExtMax")).point3d());
}

int kz_CAD_getViewCenter(kz_Point* out) {
    if (kz_Point_set(out, 0.0, 0.0, 0.0) != 1) return 0;
    const int status = getLocalPoint(out, kz::Variable(KZ_T("VIEWCTR")).point3d());
    out->z = 0.0;
    return status;
}

int kz_CAD_getViewDir(kz_Vector* out) {
    const kz::Variable variable(KZ_T("viewdir"));
    kz_Vector direction{};
    if (out == nullptr || variable.point3d() == nullptr) return 0;
    kz_Vector_fromADSPoint(&direction, variable.point3d());
    *out = direction;
    return kz_CoordSys_rotateVectorUCStoLocal(out, &direction);
}

double kz_CAD_getPickBoxSizeInDwgUnits(void) {
    const kz::Variable box(KZ_T("PICKBOX"));
    const kz::Variable height(KZ_T("VIEWSIZE"));
    const kz::Variable screen(KZ_T("SCREENSIZE"));
    if (!box.isNumber() || !height.isNumber() || screen.point2d() == nullptr) return 0.0;
    const double pixels = screen.point2d()[1];
    return pixels != 0.0 ? height.number() / pixels * box.number() : 0.0;
}

int kz_CAD_zoom(double factor) {
    kz_Char text[kFactorSize];
    kz_Str_format(text, kFactorSize, KZ_T("%lfx"), factor);
    return succeeded(acedCommandS(RTSTR, KZ_T("._zoom"), RTSTR, text, RTNONE));
}

int kz_CAD_zoomCenter(const kz_Point* center, double height) {
    ads_point at = {};
    if (kz_Point_toADSPoint(at, center) != 1) return 0;
    if (height > kSmallestHeight) {
        return succeeded(acedCommandS(RTSTR, KZ_T("._zoom"), RTSTR, KZ_T("_c"), RT3DPOINT, at,
                                      RTREAL, height, RTNONE));
    }
    return succeeded(acedCommandS(RTSTR, KZ_T("._zoom"), RTSTR, KZ_T("_c"), RT3DPOINT, at, RTSTR,
                                  KZ_T(""), RTNONE));
}

int kz_CAD_zoomExtents(void) {
    return succeeded(acedCommandS(RTSTR, KZ_T("._zoom"), RTSTR, KZ_T("_e"), RTNONE));
}

int kz_CAD_zoomPrevious(void) {
    return succeeded(acedCommandS(RTSTR, KZ_T("._zoom"), RTSTR, KZ_T("_p"), RTNONE));
}

int kz_CAD_zoomWindow(const kz_Point* first, const kz_Point* second) {
    ads_point from = {};
    ads_point to = {};
    if (kz_Point_toADSPoint(from, first) != 1 || kz_Point_toADSPoint(to, second) != 1) return 0;
    return succeeded(acedCommandS(RTSTR, KZ_T("._zoom"), RTSTR, KZ_T("_w"), RT3DPOINT, from,
                                  RT3DPOINT, to, RTNONE));
}

void kz_CAD_highlightPosition(const kz_Point* point, const kz_Char* block) {
    if (kz::isEmpty(block)) return;
    const kz::OwnedChain present(acdbTblSearch(KZ_T("BLOCK"), block, 0));
    if (present == nullptr && makeMark(block) != 1) return;
    if (point == nullptr) return;
    const kz_Point ucs = kz::localToUcs(*point);
    ads_point at = {};
    kz_Point_toADSPoint(at, &ucs);
    acedCommandS(RTSTR, KZ_T("_.insert"), RTSTR, block, RT3DPOINT, at, RTSTR, KZ_T(""), RTSTR,
                 KZ_T(""), RTSTR, KZ_T(""), RTNONE);
}

void kz_CAD_dehighlightPosition(const kz_Char* block) {
    if (kz::isEmpty(block)) return;
    const kz::OwnedChain filter(acutBuildList(kNameGroup, block, 0));
    ads_name marks = {};
    if (filter == nullptr) return;
    if (acedSSGet(KZ_T("_x"), nullptr, nullptr, filter.get(), marks) != RTNORM) return;
    acedCommandS(RTSTR, KZ_T("_.erase"), RTPICKS, marks, RTSTR, KZ_T(""), RTNONE);
    acedSSFree(marks);
}
