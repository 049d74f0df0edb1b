/// Where objects are: moving them, circles in a place, and the way of a new entity into the
/// drawing.
#include <cmath>

#include "ACAD/cad_rx/cad_rx.h"
#include "APP/services.h"
#include "guards.h"
#include "kz/kz_error.h"
#include "kz/kz_objprops.h"
#include "trace.h"

namespace {

constexpr const char* kTraceSource = "SRC/ACAD/cad_rx";

/// Code of the entry for an entity that the drawing refuses.
constexpr int kNotAdded = 6;

/// Local to world. The service may leave its target alone, so that starts as the point itself.
AcGePoint3d toWorld(const kz_Point& point) {
    kz_Point world = point;
    kz_CoordSys_transformPointWorld(&world, &point);
    return {world.x, world.y, world.z};
}

bool isRound(double found, double wanted) {
    constexpr double kTolerance = 1e-5;
    return std::fabs(found - wanted) < kTolerance;
}

kz_Point pointOf(const AcGePoint3d& point) {
    kz_Point out;
    kz_Point_set(&out, point.x, point.y, point.z);
    return out;
}

bool matches(const AcDbCircle& circle, const kz_Point& centre, double radius) {
    kz_Point found = pointOf(circle.center());
    kz_Point_setZ(&found, 0.0);
    return isRound(circle.radius(), radius) && kz_Point_equal(&found, &centre) == 1;
}

bool matches(const AcDbEllipse& ellipse, const kz_Point& centre, double radius) {
    const kz_Point found = pointOf(ellipse.center());
    const AcGeVector3d axis = ellipse.majorAxis();
    return isRound(std::sqrt(axis.x * axis.x + axis.y * axis.y), radius) &&
           kz_Point_equal(&found, &centre) == 1;
}

/// The model space of the working database, open for write.
Acad::ErrorStatus openModelSpace(kz::Opened<AcDbBlockTableRecord>& out) {
    const AcDbDatabase* drawing = kz::workingDatabase();
    if (drawing == nullptr) return Acad::eNoDatabase;
    AcDbBlockTable* table = nullptr;
    Acad::ErrorStatus status = drawing->getSymbolTable(table, AcDb::kForRead);
    if (status != Acad::eOk) return status;
    AcDbBlockTableRecord* space = nullptr;
    status = table->getAt(ACDB_MODEL_SPACE, space, AcDb::kForWrite);
    table->close();
    if (status == Acad::eOk) out = kz::Opened<AcDbBlockTableRecord>(space);
    return status;
}

}  // namespace

int kz_CADObjId_move(const kz_CADObjId* id, const kz_Point* from, const kz_Point* to) {
    if (kz_CADObjId_isNull(id) == 1 || from == nullptr || to == nullptr) return 0;
    AcGeMatrix3d way;
    way.setToTranslation(toWorld(*to) - toWorld(*from));
    const kz::Opened<AcDbEntity> entity = kz::openObject<AcDbEntity>(id, AcDb::kForWrite);
    return entity && entity->transformBy(way) == Acad::eOk ? 1 : 0;
}

int kz_CADObjId_isMatchingCircle(const kz_CADObjId* id, const kz_Point* centre, double radius) {
    if (centre == nullptr) return 0;
    const kz::Opened<AcDbEntity> entity = kz::openObject<AcDbEntity>(id, AcDb::kForRead);
    if (!entity) return 0;
    if (const AcDbCircle* circle = AcDbCircle::cast(entity.get())) {
        return matches(*circle, *centre, radius) ? 1 : 0;
    }
    const AcDbEllipse* ellipse = AcDbEllipse::cast(entity.get());
    return ellipse != nullptr && matches(*ellipse, *centre, radius) ? 1 : 0;
}

int kz_AcCAD_addToModelSpace(AcDbObjectId* out, AcDbEntity* entity) {
    AcDbObjectId id;
    kz::Opened<AcDbBlockTableRecord> space;
    Acad::ErrorStatus status = openModelSpace(space);
    if (status == Acad::eOk) status = space->appendAcDbEntity(id, entity);
    if (status == Acad::eOk) {
        if (out != nullptr) *out = id;
        return 1;
    }
    kz_Char* text = kz_Diag_getDiagMsgBuf();
    kz_Error_getARXErrorMsg(text, KZ_T("kz_AcCAD_AddToModelSpace"), status);
    kz_Error_submitCustomError(text, kNotAdded, nullptr, nullptr);
    KZ_TRACE(kz::kTraceFailure, kz::kTraceCad, text);
    return 0;
}

void kz_AcCAD_removeAnonymousGraphics(int) {
    acgsRemoveAnonymousGraphics(0);
}
