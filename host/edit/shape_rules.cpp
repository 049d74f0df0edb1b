/// The parts of entities by type. Flat entities keep their points in the plane of their extrusion
/// direction, all others in the coordinates of their block.
#include "edit/shape_rules.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>

#include "base/angles.h"
#include "edit/entity_system.h"
#include "edit/tag_values.h"

namespace host {
namespace {

constexpr CurveRole kDrawn = CurveRole::Drawn;

/// A vertex with the bulge of the part behind it.
struct Vertex {
    AcGePoint3d point;
    double bulge = 0.0;
};

std::vector<Vertex> lightVertices(const Tags& tags) {
    std::vector<Vertex> vertices;
    const double elevation = realOf(tags, 38, 0.0);
    for (size_t i = 0; i < tags.size(); ++i) {
        if (tags[i].code() == 10) {
            AcGePoint3d point = pointOf(tags, 10, {}, i);
            point.z = elevation;
            vertices.push_back({point, 0.0});
        } else if (tags[i].code() == 42 && !vertices.empty()) {
            vertices.back().bulge = tags[i].real();
        }
    }
    return vertices;
}

/// The parts of a path with bulges.
template <class Add>
void bulgedPath(const std::vector<Vertex>& vertices, bool closed, const Add& add) {
    for (size_t i = 0; i + 1 < vertices.size(); ++i)
        add(Curve::bulge(vertices[i].point, vertices[i + 1].point, vertices[i].bulge));
    if (closed && vertices.size() > 1) {
        add(Curve::bulge(vertices.back().point, vertices.front().point, vertices.back().bulge));
    }
}

// --- texts --------------------------------------------------------------------------------------

/// A box: its lower left corner and its sides.
struct TextBox {
    AcGePoint3d corner;
    AcGeVector3d along, up;

    void show(const std::function<void(const AcGePoint3d&, const AcGePoint3d&)>& side) const {
        const AcGePoint3d corners[] = {corner, corner + along, corner + along + up, corner + up};
        for (int i = 0; i < 4; ++i)
            side(corners[i], corners[(i + 1) % 4]);
    }
};

/// Horizontal justification of a text, as its group 72.
enum Justified : int64_t { kLeft, kCentre, kRight, kAligned, kMiddle, kFit };

TextBox textBox(const Tags& tags, const dxf::TextCodec& codec) {
    const double height = realOf(tags, 40, 1.0);
    const size_t at = findTag(tags, 1);
    const auto letters = static_cast<double>(at < tags.size() ? tags[at].text(codec).size() : 1);
    double width = textWidth(letters, height) * realOf(tags, 41, 1.0);
    double angle = realOf(tags, 50, 0.0) * kDegree;
    const int64_t across = integerOf(tags, 72, kLeft), above = integerOf(tags, 73, 0);
    const AcGePoint3d first = pointOf(tags, 10), second = pointOf(tags, 11, first);
    if (across == kAligned || across == kFit) {
        const AcGeVector3d way = second - first;
        width = way.length();
        angle = std::atan2(way.y, way.x);
    }
    const AcGeVector3d x(std::cos(angle), std::sin(angle), 0.0), y(-x.y, x.x, 0.0);
    TextBox box{first, x * width, y * height};
    const bool by_second = (across != kLeft || above != 0) && across != kAligned && across != kFit;
    if (!by_second) return box;
    const double left = across == kCentre || across == kMiddle ? 0.5 : across == kRight ? 1.0 : 0.0;
    const double down = across == kMiddle || above == 2 ? 0.5 : above == 3 ? 1.0 : 0.0;
    box.corner = second - box.along * left - box.up * down;
    return box;
}

AcGePoint3d textAnchor(const Tags& tags) {
    const int64_t across = integerOf(tags, 72, kLeft), above = integerOf(tags, 73, 0);
    const bool by_second = (across != kLeft || above != 0) && across != kAligned && across != kFit;
    const AcGePoint3d first = pointOf(tags, 10);
    return by_second ? pointOf(tags, 11, first) : first;
}

TextBox paragraphBox(const Tags& tags, const AcGeVector3d& normal) {
    const double height = realOf(tags, 43, realOf(tags, 40, 1.0));
    const double width = realOf(tags, 42, realOf(tags, 41, 0.0));
    const double angle = realOf(tags, 50, 0.0) * kDegree;
    const AcGeMatrix3d plane = AcGeMatrix3d().setToPlaneToWorld(normal);
    const AcGeVector3d turned = plane * AcGeVector3d(std::cos(angle), std::sin(angle), 0.0);
    const AcGeVector3d x = vectorOf(tags, 11, turned).normal();
    TextBox box{pointOf(tags, 10), x * width, normal.crossProduct(x) * height};
    // The point of insertion is one of nine, counted from the upper left one.
    const int64_t place = std::clamp<int64_t>(integerOf(tags, 71, 1), 1, 9) - 1;
    const int64_t row = place / 3;
    const double left = static_cast<double>(place % 3) / 2;
    const double down = 1.0 - static_cast<double>(row) / 2;
    box.corner = box.corner - box.along * left - box.up * down;
    return box;
}

// --- boundaries of hatches ----------------------------------------------------------------------

/// Reads the boundary of a hatch from its tags, front to back.
class HatchReader {
  public:
    explicit HatchReader(const Tags& tags) : tags_(tags) { at_ = findTag(tags, 91); }

    template <class Add>
    void read(const Add& add) {
        const int64_t paths = integer(91, 0);
        for (int64_t i = 0; i < paths && at_ < tags_.size(); ++i) {
            constexpr int64_t kPolyline = 2;
            if ((integer(92, 0) & kPolyline) != 0) {
                readPolyline(add);
            } else {
                readEdges(add);
            }
        }
    }

  private:
    /// Goes to the next tag of this code. False at the end.
    bool seek(int code) {
        at_ = findTag(tags_, code, at_);
        return at_ < tags_.size();
    }
    int64_t integer(int code, int64_t otherwise) {
        return seek(code) ? tags_[at_++].integer() : otherwise;
    }
    double real(int code) { return seek(code) ? tags_[at_++].real() : 0.0; }
    AcGePoint3d point(int code) {
        const double x = real(code);
        return {x, real(code + 10), elevation_};
    }

    template <class Add>
    void readPolyline(const Add& add) {
        const bool bulges = integer(72, 0) != 0, closed = integer(73, 0) != 0;
        const int64_t count = integer(93, 0);
        std::vector<Vertex> vertices;
        for (int64_t i = 0; i < count && at_ < tags_.size(); ++i) {
            const AcGePoint3d place = point(10);
            vertices.push_back({place, bulges ? real(42) : 0.0});
        }
        bulgedPath(vertices, closed, add);
    }

    template <class Add>
    void readEdges(const Add& add) {
        enum Edge : int64_t { kLine = 1, kArc, kEllipse, kSpline };
        const int64_t count = integer(93, 0);
        for (int64_t i = 0; i < count && at_ < tags_.size(); ++i) {
            switch (integer(72, 0)) {
                case kLine: {
                    const AcGePoint3d from = point(10);
                    add(Curve::line(from, point(11)));
                    break;
                }
                case kArc: {
                    const AcGePoint3d centre = point(10);
                    const double radius = real(40);
                    addArc(centre, {radius, 0.0, 0.0}, 1.0, add);
                    break;
                }
                case kEllipse: {
                    const AcGePoint3d centre = point(10);
                    AcGePoint3d major = point(11);
                    major.z = 0.0;
                    addArc(centre, major.asVector(), real(40), add);
                    break;
                }
                case kSpline:
                    readSpline(add);
                    break;
                default:
                    return;
            }
        }
    }

    /// Fit points and tangents may follow; they are passed over when the next edge is looked for.
    template <class Add>
    void readSpline(const Add& add) {
        const auto degree = static_cast<int>(std::clamp<int64_t>(integer(94, 3), 1, 25));
        const bool rational = integer(73, 0) != 0;
        const int64_t knot_count = integer(95, 0), control_count = integer(96, 0);
        std::vector<double> knots, weights;
        std::vector<AcGePoint3d> control;
        for (int64_t i = 0; i < knot_count && at_ < tags_.size(); ++i)
            knots.push_back(real(40));
        for (int64_t i = 0; i < control_count && at_ < tags_.size(); ++i) {
            control.push_back(point(10));
            if (rational) weights.push_back(real(42));
        }
        const std::vector<AcGePoint3d> points = splinePoints(degree, knots, control, weights);
        for (size_t i = 0; i + 1 < points.size(); ++i)
            add(Curve::line(points[i], points[i + 1]));
    }

    template <class Add>
    void addArc(const AcGePoint3d& centre, const AcGeVector3d& major, double ratio,
                const Add& add) {
        const double from = real(50) * kDegree, to = real(51) * kDegree;
        const double side = integer(73, 1) != 0 ? 1.0 : -1.0;
        const AcGeVector3d minor = AcGeVector3d(-major.y, major.x, 0.0) * (ratio * side);
        add(Curve::arc(centre, major, minor, from, sweepBetween(from, to)));
    }

    const Tags& tags_;
    size_t at_ = 0;
    double elevation_ = pointOf(tags_, 10).z;
};

}  // namespace

// --- what all types share -----------------------------------------------------------------------

AcGeMatrix3d EntityShape::entityPlane() {
    return entityToWorld(database_, entity_);
}

void EntityShape::curve(Curve curve, CurveRole role, const AcGeMatrix3d& plane) {
    curve.transformBy(to_ * plane);
    if (curve.isFinite()) visitor_.curve(curve, role);
}

void EntityShape::mark(MarkKind kind, const AcGePoint3d& point, const AcGeMatrix3d& plane) {
    const AcGePoint3d place = to_ * plane * point;
    if (isFinite(place)) visitor_.mark(kind, place);
}

void EntityShape::path(const std::vector<AcGePoint3d>& points, bool closed, CurveRole role,
                       const AcGeMatrix3d& plane) {
    for (size_t i = 0; i + 1 < points.size(); ++i)
        curve(Curve::line(points[i], points[i + 1]), role, plane);
    if (closed && points.size() > 2) {
        curve(Curve::line(points.back(), points.front()), role, plane);
    }
}

// --- lines and curves ---------------------------------------------------------------------------

void EntityShape::line() {
    curve(Curve::line(pointOf(tags(), 10), pointOf(tags(), 11)), kDrawn);
}

void EntityShape::circle() {
    const double radius = realOf(tags(), 40, 0.0);
    curve(Curve::circle(pointOf(tags(), 10), {radius, 0, 0}, {0, radius, 0}), kDrawn,
          entityPlane());
}

void EntityShape::arc() {
    const double radius = realOf(tags(), 40, 0.0);
    const double from = realOf(tags(), 50, 0.0) * kDegree, to = realOf(tags(), 51, 0.0) * kDegree;
    curve(Curve::arc(pointOf(tags(), 10), {radius, 0, 0}, {0, radius, 0}, from,
                     sweepBetween(from, to)),
          kDrawn, entityPlane());
}

void EntityShape::ellipse() {
    const AcGeVector3d normal = vectorOf(tags(), 210, AcGeVector3d::kZAxis).normal();
    const AcGeVector3d major = vectorOf(tags(), 11, AcGeVector3d::kXAxis);
    const AcGeVector3d minor = normal.crossProduct(major) * realOf(tags(), 40, 1.0);
    const double from = realOf(tags(), 41, 0.0);
    curve(Curve::arc(pointOf(tags(), 10), major, minor, from,
                     sweepBetween(from, realOf(tags(), 42, kTurn))),
          kDrawn);
}

void EntityShape::lightPolyline() {
    const bool closed = (integerOf(tags(), 70, 0) & 1) != 0;
    const AcGeMatrix3d plane = entityPlane();
    bulgedPath(lightVertices(tags()), closed,
               [&](const Curve& part) { curve(part, kDrawn, plane); });
}

void EntityShape::polyline() {
    enum Flags : int64_t { kClosed = 1, kMesh = 16, kFaces = 64 };
    const int64_t flags = integerOf(tags(), 70, 0);
    const std::vector<Slot> slots = drawnVertices(database_, entity_);
    if ((flags & kFaces) != 0) return faces(slots);
    std::vector<Vertex> vertices;
    std::vector<AcGePoint3d> points;
    for (const Slot slot : slots) {
        const Tags& vertex = database_.tags(slot);
        vertices.push_back({pointOf(vertex, 10), realOf(vertex, 42, 0.0)});
        points.push_back(vertices.back().point);
    }
    if ((flags & kMesh) != 0) return mesh(points);
    const AcGeMatrix3d plane = entityPlane();
    bulgedPath(vertices, (flags & kClosed) != 0,
               [&](const Curve& part) { curve(part, kDrawn, plane); });
}

/// The lines of a net of M by N points.
void EntityShape::mesh(const std::vector<AcGePoint3d>& points) {
    enum Flags : int64_t { kClosedM = 1, kClosedN = 32 };
    const int64_t flags = integerOf(tags(), 70, 0);
    const auto rows = static_cast<size_t>(std::max<int64_t>(0, integerOf(tags(), 71, 0)));
    const auto columns = static_cast<size_t>(std::max<int64_t>(0, integerOf(tags(), 72, 0)));
    if (rows == 0 || columns == 0 || points.size() / columns < rows) return;
    for (size_t row = 0; row < rows; ++row) {
        const auto begin = points.begin() + static_cast<ptrdiff_t>(row * columns);
        path({begin, begin + static_cast<ptrdiff_t>(columns)}, (flags & kClosedN) != 0, kDrawn);
    }
    for (size_t column = 0; column < columns; ++column) {
        std::vector<AcGePoint3d> across;
        for (size_t row = 0; row < rows; ++row)
            across.push_back(points[row * columns + column]);
        path(across, (flags & kClosedM) != 0, kDrawn);
    }
}

/// The edges of faces, whose vertices are numbered from 1; negative numbers begin hidden edges.
void EntityShape::faces(const std::vector<Slot>& vertices) {
    constexpr int64_t kPoint = 64;
    std::vector<AcGePoint3d> points;
    for (const Slot slot : vertices) {
        const Tags& vertex = database_.tags(slot);
        if ((integerOf(vertex, 70, 0) & kPoint) != 0) {
            points.push_back(pointOf(vertex, 10));
            continue;
        }
        std::vector<int64_t> corners;
        for (int code = 71; code <= 74; ++code) {
            const int64_t corner = integerOf(vertex, code, 0);
            if (corner != 0) corners.push_back(corner);
        }
        for (size_t i = 0; i < corners.size(); ++i) {
            const auto from = static_cast<size_t>(std::abs(corners[i]));
            const auto to = static_cast<size_t>(std::abs(corners[(i + 1) % corners.size()]));
            if (corners[i] < 0 || from > points.size() || to > points.size()) continue;
            curve(Curve::line(points[from - 1], points[to - 1]), kDrawn);
        }
    }
}

void EntityShape::spline() {
    std::vector<AcGePoint3d> points =
        splinePoints(static_cast<int>(integerOf(tags(), 71, 3)), realsOf(tags(), 40),
                     pointsOf(tags(), 10), realsOf(tags(), 41));
    if (points.empty()) points = pointsOf(tags(), 11);
    if (points.empty()) return;
    path(points, false, CurveRole::Approximate);
    mark(MarkKind::End, points.front());
    mark(MarkKind::End, points.back());
}

void EntityShape::leader() {
    path(pointsOf(tags(), 10), false, kDrawn);
}

void EntityShape::multiline() {
    constexpr int64_t kClosed = 2;
    path(pointsOf(tags(), 11), (integerOf(tags(), 71, 0) & kClosed) != 0, kDrawn);
}

void EntityShape::endless() {
    constexpr double kReach = 1e7;
    const AcGePoint3d base = pointOf(tags(), 10);
    const AcGeVector3d way = vectorOf(tags(), 11, AcGeVector3d::kXAxis).normal() * kReach;
    const bool both_ways = database_.typeName(entity_) == "XLINE";
    curve(Curve::line(both_ways ? base - way : base, base + way), CurveRole::Endless);
    mark(MarkKind::End, base);
}

// --- surfaces and frames ------------------------------------------------------------------------

void EntityShape::solid() {
    std::vector<AcGePoint3d> corners;
    // The third and the fourth corner lie across from each other.
    for (const int code : {10, 11, 13, 12})
        corners.push_back(pointOf(tags(), code, pointOf(tags(), 12)));
    path(corners, true, kDrawn, entityPlane());
}

void EntityShape::face() {
    const int64_t hidden = integerOf(tags(), 70, 0);
    for (int i = 0; i < 4; ++i) {
        if ((hidden >> i & 1) != 0) continue;
        const AcGePoint3d last = pointOf(tags(), 12);
        curve(Curve::line(pointOf(tags(), 10 + i, last), pointOf(tags(), 10 + (i + 1) % 4, last)),
              kDrawn);
    }
}

void EntityShape::viewport() {
    constexpr int64_t kPaperItself = 1;
    if (integerOf(tags(), 69, 0) == kPaperItself) return;
    const AcGePoint3d centre = pointOf(tags(), 10);
    const AcGeVector3d x(realOf(tags(), 40, 0.0) / 2, 0, 0), y(0, realOf(tags(), 41, 0.0) / 2, 0);
    path({centre - x - y, centre + x - y, centre + x + y, centre - x + y}, true, kDrawn);
}

void EntityShape::image() {
    const AcGePoint3d corner = pointOf(tags(), 10), pixels = pointOf(tags(), 13);
    const AcGeVector3d x = vectorOf(tags(), 11, {}) * pixels.x;
    const AcGeVector3d y = vectorOf(tags(), 12, {}) * pixels.y;
    path({corner, corner + x, corner + x + y, corner + y}, true, CurveRole::Frame);
    mark(MarkKind::Insertion, corner);
}

void EntityShape::hatch() {
    const AcGeMatrix3d plane = entityPlane();
    HatchReader(tags()).read([&](const Curve& part) { curve(part, CurveRole::Frame, plane); });
}

// --- points, insertions, texts ------------------------------------------------------------------

void EntityShape::point() {
    mark(MarkKind::Node, pointOf(tags(), 10));
}

void EntityShape::insertion() {
    mark(MarkKind::Insertion, pointOf(tags(), 10), entityPlane());
}

void EntityShape::text() {
    const AcGeMatrix3d plane = entityPlane();
    textBox(ownTags(tags()), database_.codec())
        .show([&](const AcGePoint3d& from, const AcGePoint3d& to) {
            curve(Curve::line(from, to), CurveRole::Frame, plane);
        });
    mark(MarkKind::Insertion, textAnchor(ownTags(tags())), plane);
}

void EntityShape::paragraph() {
    const AcGeVector3d normal = vectorOf(tags(), 210, AcGeVector3d::kZAxis).normal();
    paragraphBox(ownTags(tags()), normal).show([&](const AcGePoint3d& from, const AcGePoint3d& to) {
        curve(Curve::line(from, to), CurveRole::Frame);
    });
    mark(MarkKind::Insertion, pointOf(tags(), 10));
}

namespace {

bool isDimension(std::string_view type) {
    return type == "DIMENSION" || type == "ARC_DIMENSION";
}

}  // namespace

bool EntityShape::isInserting(std::string_view type) {
    return type == "INSERT" || type == "ACAD_TABLE" || isDimension(type);
}

bool EntityShape::inserts(Inserted& out) {
    const std::string& type = database_.typeName(entity_);
    if (!isInserting(type)) return false;
    const size_t at = findTag(tags(), 2);
    if (at >= tags().size()) return false;
    out.name = tags()[at].text(database_.codec());
    if (isDimension(type)) {  // the picture of a dimension stands where it was drawn
        out.ways.emplace_back();
        return true;
    }
    out.ways = insertionWays(database_, entity_);
    return true;
}

// --- types --------------------------------------------------------------------------------------

struct EntityShape::Row {
    std::string_view type;
    void (EntityShape::*show)();
};

const EntityShape::Row EntityShape::kRows[] = {
    {"LINE", &EntityShape::line},
    {"CIRCLE", &EntityShape::circle},
    {"ARC", &EntityShape::arc},
    {"LWPOLYLINE", &EntityShape::lightPolyline},
    {"POLYLINE", &EntityShape::polyline},
    {"ELLIPSE", &EntityShape::ellipse},
    {"SPLINE", &EntityShape::spline},
    {"POINT", &EntityShape::point},
    {"INSERT", &EntityShape::insertion},
    {"ACAD_TABLE", &EntityShape::insertion},
    {"TEXT", &EntityShape::text},
    {"ATTRIB", &EntityShape::text},
    {"ATTDEF", &EntityShape::text},
    {"MTEXT", &EntityShape::paragraph},
    {"SOLID", &EntityShape::solid},
    {"TRACE", &EntityShape::solid},
    {"3DFACE", &EntityShape::face},
    {"LEADER", &EntityShape::leader},
    {"MLINE", &EntityShape::multiline},
    {"RAY", &EntityShape::endless},
    {"XLINE", &EntityShape::endless},
    {"VIEWPORT", &EntityShape::viewport},
    {"IMAGE", &EntityShape::image},
    {"WIPEOUT", &EntityShape::image},
    {"HATCH", &EntityShape::hatch},
    {"SHAPE", &EntityShape::insertion},
    {"TOLERANCE", &EntityShape::insertion},
};

void EntityShape::show() {
    const std::string& type = database_.typeName(entity_);
    for (const Row& row : kRows) {
        if (row.type == type) return (this->*row.show)();
    }
}

}  // namespace host
