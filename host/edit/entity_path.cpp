/// Parameters as each type of curve has them.
#include "edit/entity_path.h"

#include <cmath>

#include "base/angles.h"
#include "edit/shape_rules.h"
#include "edit/tag_values.h"

namespace host {
namespace {

constexpr int kChordsOfSpan = 200;

/// Gathers the curves of an entity.
class Gatherer : public ShapeVisitor {
  public:
    void curve(const Curve& curve, CurveRole role) override {
        if (role == CurveRole::Drawn) curves.push_back(curve);
    }
    std::vector<Curve> curves;
};

/// An angle from 0 up to a turn.
double withinTurn(double angle) {
    const double rest = std::fmod(angle, kTurn);
    return rest < 0.0 ? rest + kTurn : rest;
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
        if (type == "ARC") {
            from = withinTurn(realOf(tags, 50, 0.0) * kDegree);
            to = from + sweepBetween(from, realOf(tags, 51, 0.0) * kDegree);
        }
        if (type == "ELLIPSE") {
            from = withinTurn(realOf(tags, 41, 0.0));
            to = from + sweepBetween(from, realOf(tags, 42, kTurn));
        }
        path.add(curve, from, to);
    }
    return path;
}

}  // namespace host
