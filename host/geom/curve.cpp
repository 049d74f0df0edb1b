/// Straight and elliptic pieces.
#include "geom/curve.h"

#include <algorithm>
#include <numbers>

namespace host {
namespace {

constexpr double kTurn = 2 * std::numbers::pi;
/// Parameters this far beyond an end count as the end.
constexpr double kEndTolerance = 1e-9;

bool withinPiece(double t) {
    return t >= -kEndTolerance && t <= 1.0 + kEndTolerance;
}

double dotFlat(const AcGeVector3d& a, const AcGeVector3d& b) {
    return a.x * b.x + a.y * b.y;
}
double crossFlat(const AcGeVector3d& a, const AcGeVector3d& b) {
    return a.x * b.y - a.y * b.x;
}

/// Where a function changes its sign between two values of different sign.
template <class Function>
double signChange(const Function& f, double low, double high) {
    const bool rising = f(low) < 0.0;
    for (int i = 0; i < 60; ++i) {
        const double middle = (low + high) / 2;
        (f(middle) < 0.0) == rising ? low = middle : high = middle;
    }
    return (low + high) / 2;
}

/// Calls `found` for each sign change of a function over [0, 1].
template <class Function, class Found>
void signChanges(const Function& f, const Found& found) {
    constexpr int kSteps = 96;
    double before = f(0.0);
    for (int i = 1; i <= kSteps; ++i) {
        const double t = static_cast<double>(i) / kSteps;
        const double value = f(t);
        if (before == 0.0) {
            found(t - 1.0 / kSteps);
        } else if (value != 0.0 && (before < 0.0) != (value < 0.0)) {
            found(signChange(f, t - 1.0 / kSteps, t));
        }
        before = value;
    }
    if (before == 0.0) found(1.0);
}

}  // namespace

// --- making -------------------------------------------------------------------------------------

Curve Curve::line(const AcGePoint3d& from, const AcGePoint3d& to) {
    Curve curve;
    curve.origin_ = from;
    curve.u_ = to - from;
    return curve;
}

Curve Curve::arc(const AcGePoint3d& centre, const AcGeVector3d& u, const AcGeVector3d& v,
                 double from, double sweep) {
    Curve curve;
    curve.line_ = false;
    curve.origin_ = centre;
    curve.u_ = u;
    curve.v_ = v;
    curve.from_ = from;
    curve.sweep_ = sweep;
    return curve;
}

Curve Curve::circle(const AcGePoint3d& centre, const AcGeVector3d& u, const AcGeVector3d& v) {
    return arc(centre, u, v, 0.0, kTurn);
}

Curve Curve::bulge(const AcGePoint3d& from, const AcGePoint3d& to, double bulge) {
    const AcGeVector3d chord = to - from;
    constexpr double kStraight = 1e-12;
    if (std::fabs(bulge) < kStraight || chord.isZeroLength(0.0)) return line(from, to);
    // The centre lies on the perpendicular of the chord, to its left for small positive bulges.
    const AcGeVector3d left(-chord.y, chord.x, 0.0);
    const AcGePoint3d centre = from + chord * 0.5 + left * ((1.0 - bulge * bulge) / (4.0 * bulge));
    const AcGeVector3d u = from - centre;
    return arc(centre, u, {-u.y, u.x, 0.0}, 0.0, 4.0 * std::atan(bulge));
}

// --- form ---------------------------------------------------------------------------------------

bool Curve::isClosed() const {
    return !line_ && std::fabs(sweep_) >= kTurn - kEndTolerance;
}

bool Curve::isFinite() const {
    const double sum = origin_.x + origin_.y + origin_.z + u_.x + u_.y + u_.z + v_.x + v_.y + v_.z +
                       from_ + sweep_;
    return std::isfinite(sum);
}

double Curve::axisAngle() const {
    const double along = 2.0 * u_.dotProduct(v_), excess = u_.lengthSqrd() - v_.lengthSqrd();
    const double size = u_.lengthSqrd() + v_.lengthSqrd();
    const bool circle = std::hypot(along, excess) <= kEndTolerance * size;
    return circle ? 0.0 : std::atan2(along, excess) / 2.0;
}

void Curve::axes(AcGeVector3d& major, AcGeVector3d& minor) const {
    const double angle = axisAngle();
    major = u_ * std::cos(angle) + v_ * std::sin(angle);
    minor = v_ * std::cos(angle) - u_ * std::sin(angle);
}

AcGePoint3d Curve::at(double t) const {
    if (line_) return origin_ + u_ * t;
    const double angle = angleAt(t);
    return origin_ + (u_ * std::cos(angle) + v_ * std::sin(angle));
}

AcGeVector3d Curve::tangentAt(double t) const {
    if (line_) return u_;
    const double angle = angleAt(t);
    return (v_ * std::cos(angle) - u_ * std::sin(angle)) * sweep_;
}

void Curve::transformBy(const AcGeMatrix3d& matrix) {
    origin_.transformBy(matrix);
    u_.transformBy(matrix);
    v_.transformBy(matrix);
}

AcDbExtents Curve::extents() const {
    AcDbExtents box;
    box.addPoint(start());
    box.addPoint(end());
    if (line_) return box;
    // In each coordinate the curve turns where its derivative vanishes.
    for (unsigned int axis = 0; axis < 3; ++axis) {
        const double angle = std::atan2(v_[axis], u_[axis]);
        for (const double turning : {angle, angle + std::numbers::pi}) {
            const double t = parameterOf(turning);
            if (t <= 1.0) box.addPoint(at(t));
        }
    }
    return box;
}

double Curve::parameterOf(double angle) const {
    if (sweep_ == 0.0) return 2.0;
    double way = std::fmod(angle - from_, kTurn);
    if (sweep_ > 0.0 && way < 0.0) way += kTurn;
    if (sweep_ < 0.0 && way > 0.0) way -= kTurn;
    const double turn = std::copysign(kTurn, sweep_);
    // A hair before the start is the start.
    if (std::fabs(turn - way) < kEndTolerance) way = 0.0;
    const double t = way / sweep_;
    return t > 1.0 && t <= 1.0 + kEndTolerance ? 1.0 : t;
}

void Curve::addAngle(double angle, std::vector<double>& places) const {
    const double t = parameterOf(angle);
    if (t <= 1.0) places.push_back(t);
}

// --- nearest ------------------------------------------------------------------------------------

bool Curve::isCircleInPlane() const {
    const double size = dotFlat(u_, u_) + dotFlat(v_, v_);
    return std::fabs(dotFlat(u_, v_)) <= kEndTolerance * size &&
           std::fabs(dotFlat(u_, u_) - dotFlat(v_, v_)) <= kEndTolerance * size;
}

CurvePlace Curve::nearest(double x, double y) const {
    if (line_) return nearestOnLine(x, y);
    return isCircleInPlane() ? nearestOnCircle(x, y) : nearestBySearch(x, y);
}

CurvePlace Curve::nearestOnLine(double x, double y) const {
    const AcGeVector3d way(x - origin_.x, y - origin_.y, 0.0);
    const double length = dotFlat(u_, u_);
    const double t = length == 0.0 ? 0.0 : std::clamp(dotFlat(way, u_) / length, 0.0, 1.0);
    return {t, std::hypot(way.x - u_.x * t, way.y - u_.y * t)};
}

CurvePlace Curve::nearestOnCircle(double x, double y) const {
    const AcGeVector3d way(x - origin_.x, y - origin_.y, 0.0);
    const auto distance = [&](double t) {
        const AcGePoint3d point = at(t);
        return std::hypot(x - point.x, y - point.y);
    };
    const double t = parameterOf(std::atan2(dotFlat(way, v_), dotFlat(way, u_)));
    if (t <= 1.0) return {t, distance(t)};
    const CurvePlace first{0.0, distance(0.0)}, last{1.0, distance(1.0)};
    return last.distance < first.distance ? last : first;
}

CurvePlace Curve::nearestBySearch(double x, double y) const {
    const auto distance = [&](double t) {
        const AcGePoint3d point = at(t);
        return std::hypot(x - point.x, y - point.y);
    };
    constexpr int kSteps = 48;
    CurvePlace best{0.0, distance(0.0)};
    for (int i = 1; i <= kSteps; ++i) {
        const double t = static_cast<double>(i) / kSteps;
        if (const double away = distance(t); away < best.distance) best = {t, away};
    }
    double low = std::max(0.0, best.t - 1.0 / kSteps), high = std::min(1.0, best.t + 1.0 / kSteps);
    for (int i = 0; i < 60; ++i) {
        const double third = (high - low) / 3;
        distance(low + third) < distance(high - third) ? high -= third : low += third;
    }
    best.t = (low + high) / 2;
    best.distance = distance(best.t);
    return best;
}

// --- places by their direction ------------------------------------------------------------------

std::vector<double> Curve::perpendiculars(const AcGePoint3d& from) const {
    if (line_) {
        if (u_.isZeroLength(0.0)) return {};
        return {(from - origin_).dotProduct(u_) / u_.lengthSqrd()};
    }
    std::vector<double> places;
    signChanges([&](double t) { return (at(t) - from).dotProduct(tangentAt(t)); },
                [&](double t) { places.push_back(t); });
    return places;
}

std::vector<double> Curve::tangents(const AcGePoint3d& from) const {
    if (line_) return {};
    // In the arc's own coordinates it is the unit circle.
    const AcGeVector3d way = from - origin_;
    const double uu = u_.lengthSqrd(), vv = v_.lengthSqrd(), uv = u_.dotProduct(v_);
    const double size = uu * vv - uv * uv;
    if (size <= 0.0) return {};
    const double a = (way.dotProduct(u_) * vv - way.dotProduct(v_) * uv) / size;
    const double b = (way.dotProduct(v_) * uu - way.dotProduct(u_) * uv) / size;
    const double away = std::hypot(a, b);
    if (away < 1.0) return {};
    std::vector<double> places;
    const double half = std::acos(1.0 / away);
    addAngle(std::atan2(b, a) + half, places);
    if (half > 0.0) addAngle(std::atan2(b, a) - half, places);
    return places;
}

std::vector<double> Curve::quadrants() const {
    std::vector<double> places;
    for (int i = 0; i < 4 && !line_; ++i)
        addAngle(axisAngle() + i * kTurn / 4, places);
    return places;
}

// --- crossings ----------------------------------------------------------------------------------

std::vector<Curve::Crossing> Curve::crossings(const Curve& other) const {
    std::vector<Crossing> out;
    if (line_ && other.line_) {
        crossLines(other, out);
    } else if (line_) {
        crossLineAndArc(other, false, out);
    } else if (other.line_) {
        other.crossLineAndArc(*this, true, out);
    } else if (isCircleInPlane() && other.isCircleInPlane()) {
        crossCircles(other, out);
    } else {
        crossArcs(other, out);
    }
    return out;
}

void Curve::crossLines(const Curve& other, std::vector<Crossing>& out) const {
    const double size = crossFlat(u_, other.u_);
    const double lengths = std::sqrt(dotFlat(u_, u_) * dotFlat(other.u_, other.u_));
    if (std::fabs(size) <= 1e-12 * lengths) return;
    const AcGeVector3d way = other.origin_ - origin_;
    const double t = crossFlat(way, other.u_) / size, s = crossFlat(way, u_) / size;
    if (withinPiece(t) && withinPiece(s)) out.push_back({t, s});
}

void Curve::crossLineAndArc(const Curve& arc, bool swapped, std::vector<Crossing>& out) const {
    const AcGeVector3d normal(-u_.y, u_.x, 0.0);
    const double a = dotFlat(normal, arc.u_), b = dotFlat(normal, arc.v_);
    const double c = dotFlat(normal, origin_ - arc.origin_);
    const double reach = std::hypot(a, b);
    const double length = dotFlat(u_, u_);
    if (length == 0.0 || reach == 0.0 || std::fabs(c) > reach * (1.0 + kEndTolerance)) return;
    const double half = std::acos(std::clamp(c / reach, -1.0, 1.0));
    const double middle = std::atan2(b, a);
    for (const double angle : {middle + half, middle - half}) {
        const double on_arc = arc.parameterOf(angle);
        if (on_arc > 1.0) continue;
        const double t = dotFlat(arc.at(on_arc) - origin_, u_) / length;
        if (!withinPiece(t)) continue;
        out.push_back(swapped ? Crossing{on_arc, t} : Crossing{t, on_arc});
        if (half == 0.0) break;
    }
}

void Curve::addCrossing(const Curve& other, double angle, std::vector<Crossing>& out) const {
    const double t = parameterOf(angle);
    if (t > 1.0) return;
    const AcGePoint3d point = at(t);
    const CurvePlace place = other.nearest(point.x, point.y);
    const double size = std::sqrt(dotFlat(u_, u_) + dotFlat(other.u_, other.u_));
    if (place.distance <= 1e-6 * size) out.push_back({t, place.t});
}

void Curve::crossCircles(const Curve& other, std::vector<Crossing>& out) const {
    const AcGeVector3d way = other.origin_ - origin_;
    const double apart = std::hypot(way.x, way.y);
    const double radius = std::sqrt(dotFlat(u_, u_));
    const double other_radius = std::sqrt(dotFlat(other.u_, other.u_));
    if (apart == 0.0 || radius == 0.0 || other_radius == 0.0) return;
    const double cosine =
        (radius * radius - other_radius * other_radius + apart * apart) / (2.0 * radius * apart);
    if (std::fabs(cosine) > 1.0 + kEndTolerance) return;
    const double half = std::acos(std::clamp(cosine, -1.0, 1.0));
    const double middle = std::atan2(dotFlat(way, v_), dotFlat(way, u_));
    addCrossing(other, middle + half, out);
    if (half > kEndTolerance) addCrossing(other, middle - half, out);
}

void Curve::crossArcs(const Curve& other, std::vector<Crossing>& out) const {
    const double size = crossFlat(other.u_, other.v_);
    if (size == 0.0) return;  // seen from its edge
    // In the other's own coordinates it is the unit circle: inside is negative.
    const auto outside = [&](double t) {
        const AcGeVector3d way = at(t) - other.origin_;
        const double a = crossFlat(way, other.v_) / size, b = crossFlat(other.u_, way) / size;
        return a * a + b * b - 1.0;
    };
    signChanges(outside, [&](double t) { addCrossing(other, angleAt(t), out); });
}

}  // namespace host
