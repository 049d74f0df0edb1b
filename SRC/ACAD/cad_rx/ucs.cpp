/// The user coordinate system, in the drawing and at the coordinate service.
#include "kz/kz_ucs.h"

#include <array>
#include <cmath>

#include "ACAD/cad_rx/cad_rx.h"
#include "APP/services.h"
#include "kz/kz_point_cnv.h"

namespace {

/// Coordinate systems as acedTrans takes them.
constexpr int16_t kWorld = 0;
constexpr int16_t kUser = 1;

/// Boxes are at least this large.
constexpr double kSmallestSide = 1e-5;
/// Room for the text of any factor.
constexpr size_t kFactorSize = 400;

/// Origin and axes, in the world.
struct System {
    kz_Point origin{};
    kz_Vector x{};
    kz_Vector y{};
    kz_Vector z{};
};

/// The present system. @return false without a drawing
bool readSystem(System& system) {
    const AcDbDatabase* drawing = kz::workingDatabase();
    if (drawing == nullptr) return false;
    system.origin = kz_Point_asKz_Point(drawing->ucsorg());
    system.x = kz_Vector_asKz_Vector(drawing->ucsxdir());
    system.y = kz_Vector_asKz_Vector(drawing->ucsydir());
    kz_Vector_crossProduct(&system.z, &system.x, &system.y);
    return true;
}

/// A point or a direction of the world in the UCS; as it is when the platform refuses.
std::array<double, 3> toUcs(const std::array<double, 3>& world, bool is_direction) {
    resbuf from{};
    from.restype = RTSHORT;
    from.resval.rint = kWorld;
    resbuf to = from;
    to.resval.rint = kUser;
    ads_point out = {world[0], world[1], world[2]};
    acedTrans(world.data(), &from, &to, is_direction ? 1 : 0, out);
    return {out[0], out[1], out[2]};
}

AcGeVector3d directionInUcs(double x, double y, double z) {
    const std::array<double, 3> ucs = toUcs({x, y, z}, true);
    return {ucs[0], ucs[1], ucs[2]};
}

/// The system that begins where the vector ends, as the service takes it.
int enterService(const System& system) {
    const kz_Vector origin = {system.origin.x, system.origin.y, system.origin.z};
    return kz_CoordSys_fromVectorsXY(&origin, &system.x, &system.y);
}

/// The point that lies from the origin as far as the axis is long.
void pointOnAxis(const System& system, const kz_Vector& axis, ads_point out) {
    kz_ADSPoint_set(out, system.origin.x + axis.x, system.origin.y + axis.y,
                    system.origin.z + axis.z);
}

int runUcs(const System& system) {
    if (acedCommandS(RTSTR, KZ_T("_.ucs"), RTSTR, KZ_T("_world"), RTNONE) != RTNORM) return 0;
    ads_point origin = {};
    ads_point on_x = {};
    ads_point on_y = {};
    kz_Point_toADSPoint(origin, &system.origin);
    pointOnAxis(system, system.x, on_x);
    pointOnAxis(system, system.y, on_y);
    const int status = acedCommandS(RTSTR, KZ_T("_.ucs"), RTSTR, KZ_T("_3point"), RT3DPOINT, origin,
                                    RT3DPOINT, on_x, RT3DPOINT, on_y, RTNONE);
    return status == RTNORM ? 1 : 0;
}

int runPrevious() {
    const int status = acedCommandS(RTSTR, KZ_T("_.ucs"), RTSTR, KZ_T("_prev"), RTNONE);
    return status == RTNORM ? 1 : 0;
}

/// Pulls the corners apart where they meet.
AcDbExtents withSides(const AcDbExtents& extents) {
    const AcGePoint3d least = extents.minPoint();
    AcGePoint3d greatest = extents.maxPoint();
    for (unsigned int axis = 0; axis < 3; ++axis) {
        if (std::fabs(greatest[axis] - least[axis]) < kSmallestSide) {
            greatest[axis] = least[axis] + kSmallestSide;
        }
    }
    return {least, greatest};
}

int zoomWindow(const AcGePoint3d& least, const AcGePoint3d& greatest, double factor) {
    const ads_point from = {least.x, least.y, least.z};
    const ads_point to = {greatest.x, greatest.y, greatest.z};
    const int status = acedCommandS(RTSTR, KZ_T("._zoom"), RTSTR, KZ_T("_w"), RT3DPOINT, from,
                                    RT3DPOINT, to, RTNONE);
    const bool again = factor != 1.0 && factor < 1e9 && factor > 1e-10;
    if (status != RTNORM || !again) return status;
    kz_Char text[kFactorSize];
    kz_Str_format(text, kFactorSize, KZ_T("%lf%s"), factor, KZ_T("x"));
    return acedCommandS(RTSTR, KZ_T("._zoom"), RTSTR, text, RTNONE);
}

int zoomCenter(const AcGePoint3d& least, const AcGePoint3d& greatest) {
    const ads_point center = {(least.x + greatest.x) / 2.0, (least.y + greatest.y) / 2.0,
                              (least.z + greatest.z) / 2.0};
    return acedCommandS(RTSTR, KZ_T("._zoom"), RTSTR, KZ_T("_c"), RT3DPOINT, center, RTSTR,
                        KZ_T(""), RTNONE);
}

}  // namespace

void kz_AcCAD_getUcsTransform(AcGeMatrix3d* out) {
    if (out == nullptr) return;
    const std::array<double, 3> origin = toUcs({0.0, 0.0, 0.0}, false);
    out->setCoordSystem({origin[0], origin[1], origin[2]}, directionInUcs(1.0, 0.0, 0.0),
                        directionInUcs(0.0, 1.0, 0.0), directionInUcs(0.0, 0.0, 1.0));
}

void kz_CAD_getUCS(kz_Point* origin, kz_RotMatrix* axes) {
    System system;
    if ((origin == nullptr && axes == nullptr) || !readSystem(system)) return;
    kz_Point_setToTolerance(&system.x);
    kz_Point_setToTolerance(&system.y);
    kz_Vector_crossProduct(&system.z, &system.x, &system.y);
    kz_Vector_normalize(&system.z);
    if (origin != nullptr) *origin = system.origin;
    kz_RotMatrix_fromColumnVectors(axes, &system.x, &system.y, &system.z);
}

int kz_CAD_setUCS(const kz_Point* origin, const kz_RotMatrix* axes, int coordinateService) {
    System system;
    if ((origin == nullptr && axes == nullptr) || !readSystem(system)) return 0;
    if (coordinateService != 0) enterService(system);
    if (origin != nullptr) system.origin = *origin;
    if (axes != nullptr) {
        kz_RotMatrix_getColumn(&system.x, axes, 0);
        kz_RotMatrix_getColumn(&system.y, axes, 1);
        kz_RotMatrix_getColumn(&system.z, axes, 2);
    }
    const int status = runUcs(system);
    if (coordinateService != 0) {
        // The service wants directions, so it gets the axes and not the points on them.
        kz_CoordSys_world();
        enterService(system);
    }
    return status;
}

int kz_CAD_setPrevUCS(void) {
    int status = kz_CoordSys_previous();
    if (status == 1) status = kz_CoordSys_previous();
    if (status != 1) return status;
    runPrevious();
    status = runPrevious();
    kz_CoordSys_previous();
    return status;
}

int kz_AcCAD_zoom(const AcDbExtents* extents, double factor, int useUCS) {
    if (extents == nullptr) return 0;
    AcDbExtents box = *extents;
    if (useUCS != 0) {
        AcGeMatrix3d matrix;
        kz_AcCAD_getUcsTransform(&matrix);
        box.transformBy(matrix);
    }
    box = withSides(box);
    const int status = factor != 0.0 ? zoomWindow(box.minPoint(), box.maxPoint(), factor)
                                     : zoomCenter(box.minPoint(), box.maxPoint());
    return status == RTNORM ? 1 : 0;
}
