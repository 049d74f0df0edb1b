/// Coordinate systems of entities. The rules of what an object's system is are one function each.
#include "edit/entity_system.h"

#include <algorithm>

#include "base/angles.h"
#include "edit/tag_values.h"
#include "edit/ucs.h"

namespace host {
namespace {

constexpr int64_t k3dPolyline = 8, kMesh = 16, kFaces = 64;

/// Types whose points are in the system of their extrusion direction.
bool isFlat(std::string_view type) {
    static constexpr std::string_view kTypes[] = {
        "ARC",        "ATTDEF", "ATTRIB", "CIRCLE", "DIMENSION", "HATCH", "INSERT",
        "LWPOLYLINE", "SHAPE",  "SOLID",  "TEXT",   "TOLERANCE", "TRACE"};
    return std::find(std::begin(kTypes), std::end(kTypes), type) != std::end(kTypes);
}

bool isFlatPolyline(const Tags& tags) {
    return (integerOf(tags, 70, 0) & (k3dPolyline | kMesh | kFaces)) == 0;
}

/// An entity and the way from its coordinates to the world.
struct Placed {
    const Tags& tags;
    AcGeMatrix3d to_world;
    AcGeVector3d normal;

    AcGePoint3d point(int code) const { return to_world * pointOf(tags, code); }
    /// Direction at an angle in the entity's plane.
    AcGeVector3d direction(double angle) const {
        return to_world * AcGeVector3d(std::cos(angle), std::sin(angle), 0.0);
    }
};

AcGeVector3d normalOf(const Tags& tags) {
    const AcGeVector3d normal = vectorOf(tags, 210, AcGeVector3d::kZAxis);
    return normal.isZeroLength() || !isFinite(normal) ? AcGeVector3d::kZAxis : normal.normal();
}

/// The system with this z axis whose x axis is as near to `x` as can be.
void setAxes(Ucs& ucs, const AcGeVector3d& x, const AcGeVector3d& z) {
    const AcGeVector3d flat = x - z * x.dotProduct(z);
    ucs.x = flat.isZeroLength() ? z.perpVector() : flat.normal();
    ucs.y = z.crossProduct(ucs.x);
}

bool ofLine(const Placed& line, const AcGePoint3d& pick, Ucs& ucs) {
    AcGePoint3d from = pointOf(line.tags, 10), to = pointOf(line.tags, 11);
    if (pick.distanceTo(to) < pick.distanceTo(from)) std::swap(from, to);
    ucs.origin = from;
    setAxes(ucs, to - from, line.normal);
    return true;
}

bool ofCircle(const Placed& circle, const AcGePoint3d& pick, Ucs& ucs) {
    ucs.origin = circle.point(10);
    setAxes(ucs, pick - ucs.origin, circle.normal);
    return true;
}

bool ofArc(const Placed& arc, const AcGePoint3d& pick, Ucs& ucs) {
    ucs.origin = arc.point(10);
    const double radius = realOf(arc.tags, 40, 0.0);
    AcGeVector3d start = arc.direction(realOf(arc.tags, 50, 0.0) * kDegree);
    const AcGeVector3d end = arc.direction(realOf(arc.tags, 51, 0.0) * kDegree);
    const auto away = [&](const AcGeVector3d& v) {
        return pick.distanceTo(ucs.origin + v * radius);
    };
    setAxes(ucs, away(end) < away(start) ? end : start, arc.normal);
    return true;
}

/// Texts and insertions, turned as they are.
bool ofInsertion(const Placed& inserted, const AcGePoint3d&, Ucs& ucs) {
    ucs.origin = inserted.point(10);
    setAxes(ucs, inserted.direction(realOf(inserted.tags, 50, 0.0) * kDegree), inserted.normal);
    return true;
}

bool ofPoint(const Placed& point, const AcGePoint3d&, Ucs& ucs) {
    ucs.origin = pointOf(point.tags, 10);
    setAxes(ucs, point.normal.perpVector(), point.normal);
    return true;
}

bool ofSolid(const Placed& solid, const AcGePoint3d&, Ucs& ucs) {
    ucs.origin = solid.point(10);
    setAxes(ucs, solid.point(11) - ucs.origin, solid.normal);
    return true;
}

bool ofFace(const Placed& face, const AcGePoint3d&, Ucs& ucs) {
    ucs.origin = pointOf(face.tags, 10);
    ucs.x = pointOf(face.tags, 11) - ucs.origin;
    ucs.y = pointOf(face.tags, 13) - ucs.origin;
    return !ucs.x.isZeroLength() && !ucs.x.isParallelTo(ucs.y);
}

bool ofDimension(const Placed& dimension, const AcGePoint3d&, Ucs& ucs) {
    ucs.origin = dimension.point(11);
    setAxes(ucs, dimension.direction(-realOf(dimension.tags, 51, 0.0) * kDegree), dimension.normal);
    return true;
}

bool ofLightPolyline(const Placed& polyline, const AcGePoint3d&, Ucs& ucs) {
    const size_t first = findTag(polyline.tags, 10);
    const size_t second = findTag(polyline.tags, 10, first + 1);
    if (second >= polyline.tags.size()) return false;
    const AcGeVector3d lift(0.0, 0.0, realOf(polyline.tags, 38, 0.0));
    const auto vertex = [&](size_t at) {
        return polyline.to_world * (pointOf(polyline.tags, 10, {}, at) + lift);
    };
    ucs.origin = vertex(first);
    setAxes(ucs, vertex(second) - ucs.origin, polyline.normal);
    return true;
}

bool ofPolyline(Database& database, Slot slot, const Placed& polyline, Ucs& ucs) {
    const std::vector<Slot> vertices = subEntities(database, slot, "VERTEX");
    if (vertices.size() < 2 || !isFlatPolyline(polyline.tags)) return false;
    const auto vertex = [&](size_t i) {
        return polyline.to_world * pointOf(database.tags(vertices[i]), 10);
    };
    ucs.origin = vertex(0);
    setAxes(ucs, vertex(1) - ucs.origin, polyline.normal);
    return true;
}

using Rule = bool (*)(const Placed&, const AcGePoint3d&, Ucs&);

constexpr struct {
    std::string_view type;
    Rule rule;
} kRules[] = {{"LINE", ofLine},
              {"CIRCLE", ofCircle},
              {"ARC", ofArc},
              {"TEXT", ofInsertion},
              {"ATTRIB", ofInsertion},
              {"ATTDEF", ofInsertion},
              {"INSERT", ofInsertion},
              {"SHAPE", ofInsertion},
              {"POINT", ofPoint},
              {"SOLID", ofSolid},
              {"TRACE", ofSolid},
              {"3DFACE", ofFace},
              {"DIMENSION", ofDimension},
              {"LWPOLYLINE", ofLightPolyline}};

}  // namespace

AcGeMatrix3d entityToWorld(Database& database, Slot entity) {
    const Slot main = database.mainEntity(entity);
    const std::string& type = database.typeName(entity);
    // The vertices of a polyline are in its system, attributes in one of their own.
    const bool of_main = type == "VERTEX" || type == "POLYLINE" || type == "SEQEND";
    const Tags& tags = database.tags(of_main ? main : entity);
    const bool flat =
        of_main ? database.typeName(main) == "POLYLINE" && isFlatPolyline(tags) : isFlat(type);
    if (!flat) return {};
    return AcGeMatrix3d().setToPlaneToWorld(normalOf(tags));
}

bool entitySystem(Database& database, Slot entity, const AcGePoint3d& pick, Ucs& out) {
    if (entity == kNoSlot || database.record(entity).erased) return false;
    const Tags& tags = database.tags(entity);
    const Placed placed{tags, entityToWorld(database, entity), normalOf(tags)};
    const std::string& type = database.typeName(entity);
    Ucs ucs;
    bool found = type == "POLYLINE" && ofPolyline(database, entity, placed, ucs);
    for (const auto& row : kRules) {
        if (row.type == type) found = row.rule(placed, pick, ucs);
    }
    if (found) out = ucs;
    return found;
}

std::vector<AcGeMatrix3d> insertionWays(Database& database, Slot insert) {
    const Tags& tags = database.tags(insert);
    AcGePoint3d base;
    const size_t name = findTag(tags, 2);
    if (name < tags.size()) {
        const Slot record = database.findSymbol("BLOCK_RECORD", tags[name].text(database.codec()));
        const Block* block = record == kNoSlot ? nullptr : database.findBlock(record);
        if (block != nullptr && block->begin != kNoSlot) {
            base = pointOf(database.tags(block->begin), 10);
        }
    }
    AcGeMatrix3d scale;
    for (unsigned int axis = 0; axis < 3; ++axis)
        scale(axis, axis) = realOf(tags, 41 + static_cast<int>(axis), 1.0);
    const AcGeMatrix3d turn =
        AcGeMatrix3d().setToRotation(realOf(tags, 50, 0.0) * kDegree, AcGeVector3d::kZAxis);
    const AcGeMatrix3d place = entityToWorld(database, insert) *
                               AcGeMatrix3d().setToTranslation(pointOf(tags, 10).asVector()) * turn;
    const AcGeMatrix3d block_part = scale * AcGeMatrix3d().setToTranslation(-base.asVector());
    const int64_t columns = std::max<int64_t>(1, integerOf(tags, 70, 1));
    const int64_t rows = std::max<int64_t>(1, integerOf(tags, 71, 1));
    constexpr int64_t kMost = 65536;
    const bool all = columns * rows <= kMost;
    const int64_t column_step = all ? 1 : std::max<int64_t>(1, columns - 1);
    const int64_t row_step = all ? 1 : std::max<int64_t>(1, rows - 1);
    std::vector<AcGeMatrix3d> ways;
    for (int64_t row = 0; row < rows; row += row_step) {
        for (int64_t column = 0; column < columns; column += column_step) {
            const AcGeVector3d shift(static_cast<double>(column) * realOf(tags, 44, 0.0),
                                     static_cast<double>(row) * realOf(tags, 45, 0.0), 0.0);
            ways.push_back(place * AcGeMatrix3d().setToTranslation(shift) * block_part);
        }
    }
    return ways;
}

std::vector<Slot> drawnVertices(Database& database, Slot polyline) {
    constexpr int64_t kSplined = 4;
    constexpr int64_t kControlPoint = 16;
    std::vector<Slot> vertices = subEntities(database, polyline, "VERTEX");
    const int64_t flags = integerOf(database.tags(polyline), 70, 0);
    if ((flags & (kSplined | kMesh)) == kSplined) {
        std::erase_if(vertices, [&](Slot vertex) {
            return (integerOf(database.tags(vertex), 70, 0) & kControlPoint) != 0;
        });
    }
    return vertices;
}

std::vector<Slot> subEntities(Database& database, Slot main, std::string_view type) {
    std::vector<Slot> found;
    const Block* block = database.blockOfEntity(main);
    if (block == nullptr) return found;
    for (size_t i = database.record(main).position + 1; i < block->contents.size(); ++i) {
        const Slot slot = block->contents[i];
        if (database.record(slot).object_class != ObjectClass::SubEntity) break;
        if (!database.record(slot).erased && database.typeName(slot) == type) found.push_back(slot);
    }
    return found;
}

}  // namespace host
