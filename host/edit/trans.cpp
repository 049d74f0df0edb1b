/// acedTrans: points and displacements among coordinate systems. Each system is an origin and three
/// axes in world coordinates.
#include <cmath>
#include <cstring>
#include <string>

#include "acad/ads.h"
#include "base/faults.h"
#include "db/database.h"

namespace {

struct Frame {
    ads_point origin{0, 0, 0};
    ads_point axes[3]{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
};

void cross(const ads_point a, const ads_point b, ads_point out) {
    out[0] = a[1] * b[2] - a[2] * b[1];
    out[1] = a[2] * b[0] - a[0] * b[2];
    out[2] = a[0] * b[1] - a[1] * b[0];
}

bool normalize(ads_point vector) {
    const double length = std::hypot(vector[0], vector[1], vector[2]);
    if (length < 1e-12) return false;
    for (int i = 0; i < 3; ++i)
        vector[i] /= length;
    return true;
}

/// System of an extrusion direction by the arbitrary axis rule of the DXF reference.
bool extrusionFrame(const ads_point direction, Frame& frame) {
    std::memcpy(frame.axes[2], direction, sizeof(ads_point));
    if (!normalize(frame.axes[2])) return false;
    constexpr double kNearZ = 1.0 / 64.0;
    const ads_point world_y = {0, 1, 0};
    const ads_point world_z = {0, 0, 1};
    const bool near_z =
        std::fabs(frame.axes[2][0]) < kNearZ && std::fabs(frame.axes[2][1]) < kNearZ;
    cross(near_z ? world_y : world_z, frame.axes[2], frame.axes[0]);
    normalize(frame.axes[0]);
    cross(frame.axes[2], frame.axes[0], frame.axes[1]);
    return true;
}

void headerPoint(host::Database& database, const char* name, ads_point out) {
    const host::HeaderVariable* variable = database.header(name);
    if (variable == nullptr || variable->tags.size() < 3) return;
    for (size_t i = 0; i < 3; ++i)
        out[i] = variable->tags[i].real();
}

/// The user coordinate system of the current drawing.
void userFrame(Frame& frame) {
    host::Database* database = host::currentDatabase();
    if (database == nullptr) return;
    headerPoint(*database, "$UCSORG", frame.origin);
    headerPoint(*database, "$UCSXDIR", frame.axes[0]);
    headerPoint(*database, "$UCSYDIR", frame.axes[1]);
    cross(frame.axes[0], frame.axes[1], frame.axes[2]);
}

bool entityFrame(const ads_name name, Frame& frame) {
    const AcDbObjectId id = host::Database::idFromName(name);
    host::Database* database = host::Database::find(id);
    if (database == nullptr) return false;
    const host::Tags& tags = database->tags(database->slotOf(id));
    const size_t at = host::findTag(tags, 210);
    if (at + 2 >= tags.size()) return true;
    const ads_point direction = {tags[at].real(), tags[at + 1].real(), tags[at + 2].real()};
    return extrusionFrame(direction, frame);
}

bool frameOf(const resbuf* system, Frame& frame) {
    if (system == nullptr) return false;
    switch (system->restype) {
        case RTSHORT:
            if (system->resval.rint == 1) userFrame(frame);
            return system->resval.rint >= 0 && system->resval.rint <= 3;
        case RTENAME:
            return entityFrame(system->resval.rlname, frame);
        case RT3DPOINT:
            return extrusionFrame(system->resval.rpoint, frame);
        default:
            return false;
    }
}

}  // namespace

extern "C" int acedTrans(const ads_point point, const resbuf* from, const resbuf* to,
                         int displacement, ads_point result) {
    int status = 0;
    if (host::mustFail(host::Call::acedTrans, status)) return status;
    Frame source;
    Frame target;
    if (point == nullptr || result == nullptr) return RTERROR;
    if (!frameOf(from, source) || !frameOf(to, target)) return RTERROR;
    ads_point world = {0, 0, 0};
    for (int i = 0; i < 3; ++i) {
        for (int axis = 0; axis < 3; ++axis)
            world[i] += point[axis] * source.axes[axis][i];
        if (displacement == 0) world[i] += source.origin[i] - target.origin[i];
    }
    ads_point out = {0, 0, 0};
    for (int axis = 0; axis < 3; ++axis) {
        for (int i = 0; i < 3; ++i)
            out[axis] += world[i] * target.axes[axis][i];
    }
    std::memcpy(result, out, sizeof(ads_point));
    return RTNORM;
}
