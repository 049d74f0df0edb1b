/// The local coordinate system that the suite's callers speak, and those before it.
#include <cmath>
#include <deque>
#include <utility>

#include "cadservice.h"

namespace {

/// How many systems back the way is remembered.
constexpr size_t kHistory = 1000;
constexpr double kSmallest = 1e-12;
constexpr int16_t kWorld = 0;
constexpr int16_t kUser = 1;

/// A system in world coordinates; its axes are of length 1 and at right angles.
struct System {
    kz_Point origin{0, 0, 0};
    kz_Vector x{1, 0, 0};
    kz_Vector y{0, 1, 0};
    kz_Vector z{0, 0, 1};
};

struct Service {
    System local;
    std::deque<System> before;
};

Service& service() {
    static Service state;
    return state;
}

/// Makes a system the local one and remembers the one before.
int enter(const System& system) {
    return suite::guarded(0, [&] {
        Service& state = service();
        state.before.push_back(state.local);
        if (state.before.size() > kHistory) state.before.pop_front();
        state.local = system;
        return 1;
    });
}

double dot(const kz_Vector& a, const kz_Vector& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

/// Makes the length 1. False for a vector that has none, or no finite one.
bool normalize(kz_Vector& vector) {
    const double length = std::hypot(vector.x, vector.y, vector.z);
    if (!std::isfinite(length) || length < kSmallest) return false;
    vector = {vector.x / length, vector.y / length, vector.z / length};
    return true;
}

/// Axes from the x direction and a vector on the side of y.
bool setAxes(System& system, kz_Vector x, kz_Vector y) {
    if (!normalize(x) || !normalize(y)) return false;
    kz_Vector z;
    kz_Vector_crossProduct(&z, &x, &y);
    if (!normalize(z)) return false;
    system.x = x;
    system.z = z;
    kz_Vector_crossProduct(&system.y, &z, &x);
    return true;
}

kz_Vector rotateToWorld(const kz_Vector& v) {
    const System& s = service().local;
    return {v.x * s.x.x + v.y * s.y.x + v.z * s.z.x, v.x * s.x.y + v.y * s.y.y + v.z * s.z.y,
            v.x * s.x.z + v.y * s.y.z + v.z * s.z.z};
}

kz_Vector rotateToLocal(const kz_Vector& v) {
    const System& s = service().local;
    return {dot(v, s.x), dot(v, s.y), dot(v, s.z)};
}

kz_Point toWorld(const kz_Point& point) {
    const kz_Point& origin = service().local.origin;
    const kz_Vector v = rotateToWorld({point.x, point.y, point.z});
    return {origin.x + v.x, origin.y + v.y, origin.z + v.z};
}

kz_Point toLocal(const kz_Point& point) {
    const kz_Point& origin = service().local.origin;
    const kz_Vector v = rotateToLocal({point.x - origin.x, point.y - origin.y, point.z - origin.z});
    return {v.x, v.y, v.z};
}

/// Between the world and the user's system. False when the host refuses.
bool trans(double (&values)[3], int16_t from, int16_t to, bool isVector) {
    resbuf source{};
    source.restype = RTSHORT;
    source.resval.rint = from;
    resbuf target = source;
    target.resval.rint = to;
    ads_point out;
    if (acedTrans(values, &source, &target, isVector ? 1 : 0, out) != RTNORM) return false;
    for (int i = 0; i < 3; ++i)
        values[i] = out[i];
    return true;
}

bool localToUser(kz_Point& point) {
    const kz_Point world = toWorld(point);
    double values[3] = {world.x, world.y, world.z};
    if (!trans(values, kWorld, kUser, false)) return false;
    point = {values[0], values[1], values[2]};
    return true;
}

/// Direction and twist [radians] of the active view; the plan of the world when there is none.
void readView(kz_Vector& direction, double& twist) {
    direction = {0, 0, 1};
    twist = 0.0;
    resbuf* const view = acdbTblSearch(KZ_T("VPORT"), KZ_T("*ACTIVE"), 0);
    for (const resbuf* node = view; node != nullptr; node = node->rbnext) {
        const ads_real* const at = node->resval.rpoint;
        if (node->restype == 16) direction = {at[0], at[1], at[2]};
        if (node->restype == 51) twist = node->resval.rreal;
    }
    acutRelRb(view);
}

}  // namespace

int kz_CoordSys_transPointLocaltoUCS(kz_Point* out, const kz_Point* point) {
    if (out == nullptr || point == nullptr) return 0;
    kz_Point moved = *point;
    if (!localToUser(moved)) return 0;
    *out = moved;
    return 1;
}

int kz_CoordSys_transPointUCStoLocal(kz_Point* out, const kz_Point* point) {
    if (out == nullptr || point == nullptr) return 0;
    double values[3] = {point->x, point->y, point->z};
    if (!trans(values, kUser, kWorld, false)) return 0;
    *out = toLocal({values[0], values[1], values[2]});
    return 1;
}

int kz_CoordSys_transformPointWorld(kz_Point* out, const kz_Point* point) {
    if (out == nullptr || point == nullptr) return 0;
    *out = toWorld(*point);
    return 1;
}

int kz_CoordSys_rotateVectorUCStoLocal(kz_Vector* out, const kz_Vector* vector) {
    if (out == nullptr || vector == nullptr) return 0;
    double values[3] = {vector->x, vector->y, vector->z};
    if (!trans(values, kUser, kWorld, true)) return 0;
    *out = rotateToLocal({values[0], values[1], values[2]});
    return 1;
}

resbuf* kz_CoordSys_transPointListLocaltoUCS(kz_PointList* points) {
    resbuf* head = nullptr;
    resbuf** tail = &head;
    kz_PointList_start(points);
    for (; kz_PointList_eol(points) == 0; kz_PointList_next(points)) {
        kz_Point point = *kz_PointList_getCurr(points);
        *tail = localToUser(point) ? acutNewRb(RT3DPOINT) : nullptr;
        if (*tail == nullptr) {
            acutRelRb(head);
            return nullptr;
        }
        ads_real* const to = (*tail)->resval.rpoint;
        to[0] = point.x;
        to[1] = point.y;
        to[2] = point.z;
        tail = &(*tail)->rbnext;
    }
    return head;
}

int kz_CoordSys_fromVectorsXY(const kz_Vector* origin, const kz_Vector* x, const kz_Vector* y) {
    if (x == nullptr || y == nullptr) return 0;
    System system;
    system.origin = service().local.origin;
    if (origin != nullptr) system.origin = {origin->x, origin->y, origin->z};
    return setAxes(system, *x, *y) ? enter(system) : 0;
}

int kz_CoordSys_fromView(const kz_Point* point) {
    if (point == nullptr) return 0;
    kz_Vector z;
    double twist = 0.0;
    readView(z, twist);
    if (!normalize(z)) return 0;
    // Seen from straight above or below the x axis of the world points to the right.
    kz_Vector right{-z.y, z.x, 0.0};
    if (!normalize(right)) right = {1, 0, 0};
    kz_Vector up;
    kz_Vector_crossProduct(&up, &z, &right);
    // The picture is turned by the twist, so the screen's axes turn the other way.
    const double cosine = std::cos(twist), sine = std::sin(twist);
    const kz_Vector x{right.x * cosine - up.x * sine, right.y * cosine - up.y * sine,
                      right.z * cosine - up.z * sine};
    const kz_Vector y{up.x * cosine + right.x * sine, up.y * cosine + right.y * sine,
                      up.z * cosine + right.z * sine};
    System system;
    system.origin = toWorld(*point);
    return setAxes(system, x, y) ? enter(system) : 0;
}

int kz_CoordSys_world(void) {
    return enter({});
}

int kz_CoordSys_previous(void) {
    Service& state = service();
    if (state.before.empty()) return 0;
    state.local = state.before.back();
    state.before.pop_back();
    return 1;
}
