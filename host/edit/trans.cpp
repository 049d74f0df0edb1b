/// acedTrans: points and displacements among coordinate systems.
#include <optional>

#include "acad/ads.h"
#include "base/faults.h"
#include "db/database.h"
#include "edit/entity_system.h"
#include "edit/tag_values.h"
#include "edit/ucs.h"
#include "edit/view.h"

namespace host {
namespace {

/// Codes of the systems that have one.
constexpr int kWorld = 0, kUser = 1, kDisplay = 2, kPaperDisplay = 3;

std::optional<AcGeMatrix3d> systemOfCode(Database& database, int code) {
    const View view = currentView(database);
    switch (code) {
        case kWorld:
            return AcGeMatrix3d();
        case kUser:
            return currentUcs(database).toWorld();
        case kDisplay:
            return view.displayToWorld();
        case kPaperDisplay: {
            const std::optional<AcGeMatrix3d> to_paper = displayToPaper(database);
            if (!to_paper) return std::nullopt;
            return view.displayToWorld() * to_paper->inverse();
        }
        default:
            return std::nullopt;
    }
}

/// From a system to the world; nothing for one that there is not.
std::optional<AcGeMatrix3d> systemOf(Database& database, const resbuf& system) {
    const ads_real* const at = system.resval.rpoint;
    switch (system.restype) {
        case RTSHORT:
            return systemOfCode(database, system.resval.rint);
        case RTENAME: {
            const AcDbObjectId id = Database::idFromName(system.resval.rlname);
            Database* owner = Database::find(id);
            if (owner == nullptr) return std::nullopt;
            return entityToWorld(*owner, owner->slotOf(id));
        }
        case RT3DPOINT: {
            const AcGeVector3d normal(at[0], at[1], at[2]);
            if (!isFinite(normal) || normal.isZeroLength()) return std::nullopt;
            return AcGeMatrix3d().setToPlaneToWorld(normal);
        }
        default:
            return std::nullopt;
    }
}

bool isPaperDisplay(const resbuf& system) {
    return system.restype == RTSHORT && system.resval.rint == kPaperDisplay;
}
bool isDisplay(const resbuf& system) {
    return system.restype == RTSHORT && system.resval.rint == kDisplay;
}

/// The paper is a picture of the display and of nothing else.
bool goTogether(const resbuf& a, const resbuf& b) {
    return !isPaperDisplay(a) || isDisplay(b) || isPaperDisplay(b);
}

}  // namespace
}  // namespace host

extern "C" int acedTrans(const ads_point point, const resbuf* from, const resbuf* to,
                         int displacement, ads_point result) {
    int status = 0;
    if (host::mustFail(host::Call::acedTrans, status)) return status;
    host::Database* database = host::currentDatabase();
    if (point == nullptr || result == nullptr || from == nullptr || to == nullptr) return RTERROR;
    if (database == nullptr || !host::goTogether(*from, *to) || !host::goTogether(*to, *from)) {
        return RTERROR;
    }
    const auto source = host::systemOf(*database, *from);
    const auto target = host::systemOf(*database, *to);
    if (!source || !target) return RTERROR;
    const AcGeMatrix3d matrix = target->inverse() * *source;
    AcGePoint3d out(point[0], point[1], point[2]);
    out = displacement == 0 ? matrix * out : AcGePoint3d() + matrix * out.asVector();
    for (unsigned int i = 0; i < 3; ++i)
        result[i] = out[i];
    return RTNORM;
}
