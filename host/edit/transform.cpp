/// Transformation of entities: the types whose groups each follow by themselves are rows of a
/// table, the others have a function.
#include "edit/transform.h"

#include <algorithm>
#include <array>
#include <numbers>
#include <span>

#include "base/resbuf.h"
#include "edit/plane_map.h"
#include "edit/tag_values.h"
#include "edit/transform_parts.h"

namespace host {
namespace {

// --- types by table -----------------------------------------------------------------------------

/// What a group is to its entity.
enum class Role : uint8_t {
    World,      ///< point in world coordinates
    Plane,      ///< point in the system of the extrusion direction
    Way,        ///< vector in world coordinates
    Direction,  ///< vector of length 1 in world coordinates
    Length,
    Angle,      ///< direction in the plane [degrees]
    BackAngle,  ///< the same, counted clockwise
    Bulge
};

struct GroupRole {
    int code;
    Role role;
};

/// How a type says where it stands.
enum class Stand : uint8_t {
    Free,       ///< in space, without an extrusion direction
    Direction,  ///< with an extrusion direction
    OwnOnly,    ///< the same, but it may be missing and then stays so
    Extruded    ///< with a thickness in an extrusion direction
};

struct TypeRow {
    std::string_view type;
    Stand stand;
    std::span<const GroupRole> groups;
};

constexpr GroupRole kLine[] = {{10, Role::World}, {11, Role::World}};
constexpr GroupRole kPoint[] = {{10, Role::World}, {50, Role::Angle}};
constexpr GroupRole kCircle[] = {{10, Role::Plane}, {40, Role::Length}};
constexpr GroupRole kArc[] = {
    {10, Role::Plane}, {40, Role::Length}, {50, Role::Angle}, {51, Role::Angle}};
constexpr GroupRole kSolid[] = {
    {10, Role::Plane}, {11, Role::Plane}, {12, Role::Plane}, {13, Role::Plane}};
constexpr GroupRole kFace[] = {
    {10, Role::World}, {11, Role::World}, {12, Role::World}, {13, Role::World}};
constexpr GroupRole kRay[] = {{10, Role::World}, {11, Role::Direction}};
constexpr GroupRole kSpline[] = {
    {10, Role::World}, {11, Role::World}, {12, Role::Way}, {13, Role::Way}};
constexpr GroupRole kLeader[] = {{10, Role::World}, {211, Role::Direction}, {212, Role::Way},
                                 {213, Role::Way},  {40, Role::Length},     {41, Role::Length}};
constexpr GroupRole kDimension[] = {{10, Role::World},  {13, Role::World},     {14, Role::World},
                                    {15, Role::World},  {11, Role::Plane},     {16, Role::Plane},
                                    {50, Role::Angle},  {51, Role::BackAngle}, {53, Role::Angle},
                                    {40, Role::Length}, {42, Role::Length}};
constexpr GroupRole kViewport[] = {{10, Role::World}, {40, Role::Length}, {41, Role::Length}};
constexpr GroupRole kTolerance[] = {{10, Role::World}, {11, Role::Direction}};
constexpr GroupRole kImage[] = {{10, Role::World}, {11, Role::Way}, {12, Role::Way}};
constexpr GroupRole kMline[] = {{10, Role::World},     {11, Role::World},  {12, Role::Direction},
                                {13, Role::Direction}, {40, Role::Length}, {41, Role::Length}};
constexpr GroupRole kFlatPolyline[] = {{10, Role::Plane},
                                       {40, Role::Length},
                                       {41, Role::Length},
                                       {43, Role::Length},
                                       {42, Role::Bulge}};
constexpr GroupRole kPolylineHead[] = {{40, Role::Length}, {41, Role::Length}};
constexpr GroupRole kFlatVertex[] = {{10, Role::Plane},
                                     {40, Role::Length},
                                     {41, Role::Length},
                                     {42, Role::Bulge},
                                     {50, Role::Angle}};
constexpr GroupRole kSpaceVertex[] = {{10, Role::World}};

constexpr TypeRow kRows[] = {
    {"LINE", Stand::Extruded, kLine},      {"POINT", Stand::Extruded, kPoint},
    {"CIRCLE", Stand::Extruded, kCircle},  {"ARC", Stand::Extruded, kArc},
    {"SOLID", Stand::Extruded, kSolid},    {"TRACE", Stand::Extruded, kSolid},
    {"3DFACE", Stand::Free, kFace},        {"RAY", Stand::Free, kRay},
    {"XLINE", Stand::Free, kRay},          {"SPLINE", Stand::OwnOnly, kSpline},
    {"LEADER", Stand::Direction, kLeader}, {"DIMENSION", Stand::Direction, kDimension},
    {"VIEWPORT", Stand::Free, kViewport},  {"TOLERANCE", Stand::Direction, kTolerance},
    {"IMAGE", Stand::Free, kImage},        {"WIPEOUT", Stand::Free, kImage},
    {"MLINE", Stand::Direction, kMline},   {"LWPOLYLINE", Stand::Extruded, kFlatPolyline}};

const TypeRow* rowOf(std::string_view type) {
    for (const TypeRow& row : kRows) {
        if (row.type == type) return &row;
    }
    return nullptr;
}

/// Changes one group by its role. False when the entity can't take it.
bool transformGroup(Tags& tags, size_t at, Role role, const AcGeMatrix3d& matrix,
                    const PlaneMap& plane, double flat_z) {
    const double value = tags[at].real();
    switch (role) {
        case Role::World:
            setPointAt(tags, at, matrix * pointAt(tags, at, 0.0));
            return true;
        case Role::Plane:
            setPointAt(tags, at, plane.map * pointAt(tags, at, flat_z));
            return true;
        case Role::Way:
            setPointAt(tags, at, AcGePoint3d() + matrix * pointAt(tags, at, 0.0).asVector());
            return true;
        case Role::Direction:
            setPointAt(tags, at,
                       AcGePoint3d() + (matrix * pointAt(tags, at, 0.0).asVector()).normal());
            return true;
        default:
            break;
    }
    if (value != 0.0 && !plane.similar) return false;
    switch (role) {
        case Role::Length:
            setRealAt(tags, at, value * plane.scale);
            break;
        case Role::Angle:
            setRealAt(tags, at, plane.angle(value));
            break;
        case Role::BackAngle:
            if (plane.angle(-value) != -value) {
                setRealAt(tags, at, wholeTurn(-plane.angle(-value)));
            }
            break;
        default:
            if (plane.mirrored) setRealAt(tags, at, -value);
            break;
    }
    return true;
}

bool transformGroups(Tags& tags, std::span<const GroupRole> roles, const AcGeMatrix3d& matrix,
                     const PlaneMap& plane, double flat_z = 0.0) {
    for (size_t i = 0; i < tags.size(); ++i) {
        for (const GroupRole& group : roles) {
            if (group.code != tags[i].code()) continue;
            if (!transformGroup(tags, i, group.role, matrix, plane, flat_z)) return false;
            break;
        }
    }
    return true;
}

/// The flat vertices of a LWPOLYLINE lie at one height, which has a group of its own.
void moveElevation(Tags& tags, const PlaneMap& plane, double elevation) {
    const double moved = plane.point(0.0, 0.0, elevation).z;
    const size_t at = findTag(tags, 38);
    if (at < tags.size()) {
        setRealAt(tags, at, moved);
    } else if (moved != 0.0) {
        tags.emplace(tags.begin() + static_cast<std::ptrdiff_t>(findTag(tags, 10)), 38, moved);
    }
}

bool transformRow(const TypeRow& row, Tags& tags, const AcGeMatrix3d& matrix) {
    const PlaneMap plane(normalOf(tags), matrix);
    const double elevation = realOf(tags, 38, 0.0);
    if (!transformGroups(tags, row.groups, matrix, plane, elevation)) return false;
    if (row.type == "LWPOLYLINE") moveElevation(tags, plane, elevation);
    if (row.type == "ARC" && plane.mirrored) swapReals(tags, 50, 51);
    if (row.stand == Stand::Extruded && !transformThickness(tags, plane)) return false;
    const bool has_normal = row.stand != Stand::Free &&
                            (row.stand != Stand::OwnOnly || findTag(tags, 210) < tags.size());
    if (has_normal) setNormal(tags, plane.normal);
    return true;
}

// --- polylines with vertices --------------------------------------------------------------------

/// Flags of a POLYLINE, of which each means vertices in space: 3D, mesh, faces.
constexpr int64_t kInSpace = 8 | 16 | 64;

bool transformPolyline(Tags& tags, const AcGeMatrix3d& matrix) {
    if ((integerOf(tags, 70, 0) & kInSpace) != 0) return true;
    const PlaneMap plane(normalOf(tags), matrix);
    if (!transformGroups(tags, kPolylineHead, matrix, plane)) return false;
    const size_t at = findTag(tags, 10);
    if (at < tags.size()) {
        const double elevation = pointAt(tags, at, 0.0).z;
        setPointAt(tags, at, {0.0, 0.0, plane.point(0.0, 0.0, elevation).z});
    }
    if (!transformThickness(tags, plane)) return false;
    setNormal(tags, plane.normal);
    return true;
}

bool transformVertex(Tags& tags, const AcGeMatrix3d& matrix, const TransformRules& rules) {
    constexpr int64_t kSpaceVertexFlags = 32 | 64;
    constexpr int64_t kFaceFlag = 128;
    const int64_t flags = integerOf(tags, 70, 0);
    const PlaneMap plane(rules.vertex_normal, matrix);
    if ((flags & kSpaceVertexFlags) != 0) {
        return transformGroups(tags, kSpaceVertex, matrix, plane);
    }
    if ((flags & kFaceFlag) != 0) return true;  // names corners, has no place
    return transformGroups(tags, kFlatVertex, matrix, plane);
}

// --- ellipses -----------------------------------------------------------------------------------

/// Brings the ends of an elliptical arc into form: the start within the first turn, the end behind
/// it.
void setArcEnds(Tags& tags, double start, double end) {
    const double turns = std::floor(start / kTurn) * kTurn;
    start -= turns;
    end -= turns;
    if (end <= start) end = start + sweepBetween(start, end);
    setRealAt(tags, findTag(tags, 41), start);
    setRealAt(tags, findTag(tags, 42), end);
}

/// An ellipse goes over into an ellipse under every matrix: its axes become conjugate diameters, of
/// which the greatest and the least are the new axes.
bool transformEllipse(Tags& tags, const AcGeMatrix3d& matrix) {
    const size_t centre = findTag(tags, 10), axis = findTag(tags, 11), ratio = findTag(tags, 40);
    if (axis >= tags.size() || centre >= tags.size() || ratio >= tags.size()) return false;
    const AcGeVector3d old_normal = normalOf(tags).normal();
    const AcGeVector3d old_major = pointAt(tags, axis, 0.0).asVector();
    const PlaneMap plane(old_normal, matrix);
    const AcGeVector3d a = matrix * old_major;
    const AcGeVector3d b = matrix * (old_normal.crossProduct(old_major) * tags[ratio].real());
    const double shift =
        plane.similar ? 0.0
                      : 0.5 * std::atan2(2.0 * a.dotProduct(b), a.lengthSqrd() - b.lengthSqrd());
    const AcGeVector3d major = a * std::cos(shift) + b * std::sin(shift);
    const AcGeVector3d minor = b * std::cos(shift) - a * std::sin(shift);
    const bool turned = major.crossProduct(minor).dotProduct(plane.normal) < 0.0;

    setPointAt(tags, centre, matrix * pointAt(tags, centre, 0.0));
    setPointAt(tags, axis, AcGePoint3d() + major);
    if (!plane.similar) setRealAt(tags, ratio, minor.length() / major.length());
    const double start = realOf(tags, 41, 0.0);
    const double end = realOf(tags, 42, 2.0 * std::numbers::pi);
    const bool full = std::fabs(end - start) > 2.0 * std::numbers::pi - 1e-9;
    if (!full && (turned || shift != 0.0)) {
        setArcEnds(tags, turned ? shift - end : start - shift,
                   turned ? shift - start : end - shift);
    }
    setNormal(tags, plane.normal);
    return true;
}

// --- inserts ------------------------------------------------------------------------------------

void scaleGroup(Tags& tags, int code, double factor, bool needed) {
    if (factor == 1.0) return;
    const size_t at = findTag(tags, code);
    if (at < tags.size()) {
        setRealAt(tags, at, tags[at].real() * factor);
    } else if (needed) {
        insertInClass(tags, {Tag(code, factor)});
    }
}

/// An insert takes unequal scales along its axes. A mirrored one has a negative x scale.
bool transformInsert(Tags& tags, const AcGeMatrix3d& matrix) {
    const PlaneMap plane(normalOf(tags), matrix);
    const double rotation = realOf(tags, 50, 0.0);
    const AcGeVector3d x = plane.map * directionAt(rotation);
    const AcGeVector3d y = plane.map * directionAt(rotation + 90.0);
    const double x_scale = x.length(), y_scale = y.length();
    const bool square = std::fabs(x.dotProduct(y)) <= 1e-9 * x_scale * y_scale;
    if (!square || !plane.upright) return false;

    const size_t at = findTag(tags, 10);
    if (at < tags.size()) setPointAt(tags, at, plane.map * pointAt(tags, at, 0.0));
    // Scales that only differ by noise are one scale.
    const double x_factor = plane.similar ? plane.scale : x_scale;
    const double y_factor = plane.similar ? plane.scale : y_scale;
    const bool even = plane.similar && std::fabs(x_factor - plane.lift) <= 1e-9 * x_factor;
    const double side = plane.mirrored ? -1.0 : 1.0;
    scaleGroup(tags, 41, side * x_factor, true);
    scaleGroup(tags, 42, y_factor, true);
    scaleGroup(tags, 43, even ? x_factor : plane.lift, true);
    scaleGroup(tags, 44, side * x_factor, false);
    scaleGroup(tags, 45, y_factor, false);
    const double direction =
        plane.similar ? plane.angle(rotation) : toDegrees(std::atan2(x.y, x.x));
    const double turned = wholeTurn(plane.mirrored ? direction + 180.0 : direction);
    const size_t angle = findTag(tags, 50);
    if (angle < tags.size()) {
        setRealAt(tags, angle, turned);
    } else if (turned != 0.0) {
        insertInClass(tags, {Tag(50, turned)});
    }
    setNormal(tags, plane.normal);
    return true;
}

// --- all types ----------------------------------------------------------------------------------

bool isSingular(const AcGeMatrix3d& matrix) {
    AcGePoint3d origin;
    AcGeVector3d x, y, z;
    matrix.getCoordSystem(origin, x, y, z);
    const double size = x.length() * y.length() * z.length();
    return !isFinite(origin) || !std::isfinite(size) || !(std::fabs(matrix.det()) > 1e-9 * size);
}

TransformEnd endOf(bool done) {
    return done ? TransformEnd::Done : TransformEnd::CannotTake;
}

TransformEnd transformByType(std::string_view type, Tags& tags, const AcGeMatrix3d& matrix,
                             const TransformRules& rules) {
    if (const TypeRow* row = rowOf(type)) return endOf(transformRow(*row, tags, matrix));
    if (type == "ELLIPSE") return endOf(transformEllipse(tags, matrix));
    if (type == "INSERT") return endOf(transformInsert(tags, matrix));
    if (type == "TEXT" || type == "ATTRIB" || type == "ATTDEF") {
        return endOf(transformText(type, tags, matrix, rules.mirror_text));
    }
    if (type == "MTEXT") return endOf(transformMText(tags, matrix));
    if (type == "HATCH") return endOf(transformHatch(tags, matrix));
    if (type == "POLYLINE") return endOf(transformPolyline(tags, matrix));
    if (type == "VERTEX") return endOf(transformVertex(tags, matrix, rules));
    if (type == "SEQEND") return TransformEnd::Done;
    return TransformEnd::Unknown;
}

}  // namespace

TransformEnd transformTags(std::string_view type, Tags& tags, const AcGeMatrix3d& matrix,
                           const TransformRules& rules) {
    if (isSingular(matrix)) return TransformEnd::CannotTake;
    Tags changed = tags;
    const TransformEnd end = transformByType(type, changed, matrix, rules);
    if (end == TransformEnd::Done) tags = std::move(changed);
    return end;
}

// --- XDATA --------------------------------------------------------------------------------------

namespace {

bool transformNode(resbuf& node, const AcGeMatrix3d& matrix) {
    const double* p = node.resval.rpoint;
    AcGePoint3d moved;
    switch (node.restype) {
        case 1011:
            moved = matrix * AcGePoint3d(p[0], p[1], p[2]);
            break;
        case 1012:
            moved = AcGePoint3d() + matrix * AcGeVector3d(p[0], p[1], p[2]);
            break;
        case 1013:
            moved = AcGePoint3d() + (matrix * AcGeVector3d(p[0], p[1], p[2])).normal();
            break;
        case 1041:
        case 1042:
            node.resval.rreal *= std::cbrt(std::fabs(matrix.det()));
            return true;
        default:
            return false;
    }
    for (unsigned int i = 0; i < 3; ++i)
        node.resval.rpoint[i] = moved[i];
    return true;
}

/// One application's data; false when nothing of it is a place or a length.
bool transformApp(AppData& app, const AcGeMatrix3d& matrix) {
    resbuf* chain = nullptr;
    bool changes = false;
    if (appendXDataChain(app, &chain) != nullptr) {
        for (resbuf* node = chain; node != nullptr; node = node->rbnext)
            changes |= transformNode(*node, matrix);
    }
    XData packed;
    // The data was good before, so it packs again.
    changes = changes && packXData(chain, dxf::TextCodec(), packed) == Acad::eOk;
    acutRelRb(chain);
    if (changes) app = std::move(packed.front());
    return changes;
}

}  // namespace

bool transformXData(XData& data, const AcGeMatrix3d& matrix) {
    bool changes = false;
    for (AppData& app : data)
        changes |= transformApp(app, matrix);
    return changes;
}

// --- entities of the drawing --------------------------------------------------------------------

std::vector<Slot> partsOf(Database& database, Slot main) {
    std::vector<Slot> parts;
    const Block* block = database.blockOfEntity(main);
    if (block == nullptr || database.record(main).object_class != ObjectClass::Entity) return parts;
    for (size_t i = database.record(main).position + 1; i < block->contents.size(); ++i) {
        const Slot part = block->contents[i];
        if (database.record(part).object_class != ObjectClass::SubEntity) break;
        if (!database.record(part).erased) parts.push_back(part);
    }
    return parts;
}

namespace {

/// What a transformation is going to change.
struct Changed {
    Slot slot;
    Tags tags;
    XData xdata;
    bool has_xdata;
};

class Transformation {
  public:
    Transformation(Database& database, const AcGeMatrix3d& matrix)
        : database_(database), matrix_(matrix) {}

    TransformEnd collect(Slot entity, bool mirror_text) {
        TransformRules rules;
        rules.mirror_text = mirror_text;
        rules.vertex_normal = normalOf(database_.tags(entity));
        TransformEnd end = add(entity, rules);
        if (end != TransformEnd::Done) return end;
        for (const Slot part : partsOf(database_, entity)) {
            end = add(part, rules);
            if (end != TransformEnd::Done) return end;
        }
        return database_.typeName(entity) == "DIMENSION" ? collectPicture(entity) : end;
    }

    void apply() {
        for (Changed& change : changes_) {
            database_.changeTags(change.slot) = std::move(change.tags);
            if (change.has_xdata) database_.changeXData(change.slot) = std::move(change.xdata);
            database_.touch(change.slot);
        }
    }

  private:
    TransformEnd add(Slot slot, const TransformRules& rules) {
        Changed change{slot, database_.tags(slot), database_.xdata(slot), false};
        const TransformEnd end =
            transformTags(database_.typeName(slot), change.tags, matrix_, rules);
        if (end != TransformEnd::Done) return end;
        change.has_xdata = transformXData(change.xdata, matrix_);
        changes_.push_back(std::move(change));
        return end;
    }

    /// A dimension is drawn by a block of its own, in world coordinates.
    TransformEnd collectPicture(Slot dimension) {
        const Tags& tags = database_.tags(dimension);
        const size_t at = findTag(tags, 2);
        if (at >= tags.size()) return TransformEnd::Done;
        const std::u16string name = tags[at].text(database_.codec());
        const Block* block = database_.findBlock(database_.findSymbol("BLOCK_RECORD", name));
        if (block == nullptr || !name.starts_with(u'*')) return TransformEnd::Done;
        for (const Slot slot : block->contents) {
            const ObjectRecord& record = database_.record(slot);
            if (record.erased || record.object_class != ObjectClass::Entity) continue;
            const TransformEnd end = collect(slot, false);
            if (end != TransformEnd::Done) return end;
        }
        return TransformEnd::Done;
    }

    Database& database_;
    const AcGeMatrix3d& matrix_;
    std::vector<Changed> changes_;
};

}  // namespace

TransformEnd transformEntity(Database& database, Slot entity, const AcGeMatrix3d& matrix) {
    const HeaderVariable* mirror = database.header("$MIRRTEXT");
    const bool mirror_text = mirror != nullptr && mirror->tags.front().integer() != 0;
    Transformation transformation(database, matrix);
    const TransformEnd end = transformation.collect(entity, mirror_text);
    if (end == TransformEnd::Done) transformation.apply();
    return end;
}

}  // namespace host
