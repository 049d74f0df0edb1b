/// Arcs in the plane.
#include "command/arcs.h"

#include <cmath>
#include <numbers>
#include <utility>

namespace host {
namespace {

constexpr double kTurn = 2.0 * std::numbers::pi;
constexpr double kNone = 1e-12;

}  // namespace

double wholeDirection(double radians) {
    const double rest = std::fmod(radians, kTurn);
    return rest < 0.0 ? rest + kTurn : rest;
}

AcGePoint2d inPlane(const AcGePoint3d& point) {
    return {point.x, point.y};
}

double directionTo(const AcGePoint2d& from, const AcGePoint2d& to) {
    return wholeDirection(std::atan2(to.y - from.y, to.x - from.x));
}

AcGePoint2d pointAlong(const AcGePoint2d& from, double direction, double distance) {
    return {from.x + distance * std::cos(direction), from.y + distance * std::sin(direction)};
}

std::optional<PlaneArc> circleThrough(const AcGePoint2d& a, const AcGePoint2d& b,
                                      const AcGePoint2d& c) {
    const AcGeVector2d ab = b - a, ac = c - a;
    const double cross = ab.x * ac.y - ab.y * ac.x;
    if (std::fabs(cross) <= kNone * ab.length() * ac.length()) return std::nullopt;
    const double ab2 = ab.dotProduct(ab), ac2 = ac.dotProduct(ac);
    const AcGeVector2d to_centre((ac.y * ab2 - ab.y * ac2) / (2.0 * cross),
                                 (ab.x * ac2 - ac.x * ab2) / (2.0 * cross));
    return PlaneArc{a + to_centre, to_centre.length(), 0.0, kTurn};
}

std::optional<PlaneArc> arcByAngle(const AcGePoint2d& from, const AcGePoint2d& to,
                                   double included) {
    const double chord = from.distanceTo(to);
    const double half = included / 2.0;
    if (chord <= kNone || std::fabs(std::sin(half)) <= kNone || std::fabs(included) >= kTurn) {
        return std::nullopt;
    }
    PlaneArc arc;
    arc.radius = std::fabs(chord / (2.0 * std::sin(half)));
    // The centre lies left of the chord for a counter-clockwise arc below half a turn.
    const AcGePoint2d middle((from.x + to.x) / 2.0, (from.y + to.y) / 2.0);
    const double across = chord / (2.0 * std::tan(half));
    arc.centre = {middle.x - across * (to.y - from.y) / chord,
                  middle.y + across * (to.x - from.x) / chord};
    arc.start = directionTo(arc.centre, from);
    arc.end = directionTo(arc.centre, to);
    if (included < 0.0) std::swap(arc.start, arc.end);
    return arc;
}

double includedThrough(const AcGePoint2d& from, const AcGePoint2d& by, const AcGePoint2d& to) {
    const auto circle = circleThrough(from, by, to);
    if (!circle) return 0.0;
    const double around = includedAround(circle->centre, from, to);
    const bool on_it = includedAround(circle->centre, from, by) < around;
    return on_it ? around : around - kTurn;
}

double includedByDirection(const AcGePoint2d& from, const AcGePoint2d& to, double direction) {
    const double beside = std::remainder(directionTo(from, to) - direction, kTurn);
    return 2.0 * beside;
}

std::optional<double> includedByRadius(const AcGePoint2d& from, const AcGePoint2d& to,
                                       double radius) {
    const auto included = includedByChord(std::fabs(radius), from.distanceTo(to));
    if (!included) return std::nullopt;
    return radius < 0.0 ? kTurn - *included : *included;
}

double includedAround(const AcGePoint2d& centre, const AcGePoint2d& from, const AcGePoint2d& to) {
    const double included = wholeDirection(directionTo(centre, to) - directionTo(centre, from));
    return included <= kNone ? kTurn : included;
}

std::optional<double> includedByChord(double radius, double chord) {
    const double sine = std::fabs(chord) / (2.0 * radius);
    constexpr double kRounding = 1e-9;
    if (!(sine <= 1.0 + kRounding) || sine == 0.0) return std::nullopt;
    const double included = 2.0 * std::asin(std::min(sine, 1.0));
    return chord < 0.0 ? kTurn - included : included;
}

}  // namespace host
