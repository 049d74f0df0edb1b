/// Parameters as each type of curve has them.
#include "edit/entity_path.h"

#include <numbers>

#include "edit/shape_rules.h"
#include "edit/tag_values.h"

namespace host {
namespace {

constexpr double kTurn = 2 * std::numbers::pi;
constexpr int kChordsOfSpan = 200;

/// Gathers the curves of an entity.
class Gatherer : public ShapeVisitor {
  public:
    void curve(const Curve& curve, CurveRole role) override {
        if (role == CurveRole::Drawn) curves.push_back(curve);
    }
    std::vector<Curve> curves;
};

/// Where the angles of an arc begin and end, the end behind the start.
void angles(const Tags& tags, int first, double scale, double& from, double& to) {
    from = realOf(tags, first, 0.0) * scale;
    to = realOf(tags, first + 1, scale == 1.0 ? kTurn : 360.0) * scale;
    while (to <= from + 1e-12)
        to += kTurn;
}

CurvePath splinePath(const Tags& tags) {
    CurvePath path;
    std::vector<double> parameters;
    const std::vector<AcGePoint3d> points =
        splinePoints(static_cast<int>(integerOf(tags, 71, 3)), realsOf(tags, 40),
                     pointsOf(tags, 10), realsOf(tags, 41), kChordsOfSpan, &parameters);
    if (parameters.size() != points.size()) return path;
    for (size_t i = 0; i + 1 < points.size(); ++i)
        path.add(Curve::line(points[i], points[i + 1]), parameters[i], parameters[i + 1]);
    return path;
}

}  // namespace

CurvePath pathOf(Database& database, Slot entity) {
    const std::string& type = database.typeName(entity);
    const Tags& tags = database.tags(entity);
    if (type == "SPLINE") return splinePath(tags);
    const bool single = type == "LINE" || type == "CIRCLE" || type == "ARC" || type == "ELLIPSE";
    constexpr int64_t kMeshOrFaces = 16 + 64;
    const bool chain = type == "LWPOLYLINE" || type == "LEADER" ||
                       (type == "POLYLINE" && (integerOf(tags, 70, 0) & kMeshOrFaces) == 0);
    CurvePath path;
    if (!single && !chain) return path;
    Gatherer gatherer;
    EntityShape(database, entity, AcGeMatrix3d(), gatherer).show();
    double from = 0.0, to = 0.0;
    for (const Curve& curve : gatherer.curves) {
        to += 1.0;
        if (type == "LINE") to = (curve.end() - curve.start()).length();
        if (type == "CIRCLE") to = kTurn;
        if (type == "ARC") angles(tags, 50, std::numbers::pi / 180.0, from, to);
        if (type == "ELLIPSE") angles(tags, 41, 1.0, from, to);
        path.add(curve, from, to);
    }
    return path;
}

}  // namespace host
