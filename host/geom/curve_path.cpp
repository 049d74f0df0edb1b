/// Lengths and areas by integration where there is no formula.
#include "geom/curve_path.h"

#include <algorithm>
#include <cmath>

namespace host {
namespace {

/// Integral over [from, to] by Gauss's formula of five places in each of some parts.
template <class Function>
auto integral(const Function& function, double from, double to) {
    static constexpr double kPlaces[] = {0.0, 0.5384693101056831, 0.9061798459386640};
    static constexpr double kWeights[] = {0.5688888888888889, 0.4786286704993665,
                                          0.2369268850561891};
    constexpr int kParts = 16;
    const double half = (to - from) / (2 * kParts);
    auto sum = function(from) * 0.0;
    for (int part = 0; part < kParts; ++part) {
        const double middle = from + half * (2 * part + 1);
        sum += function(middle) * (kWeights[0] * half);
        for (int i = 1; i < 3; ++i) {
            sum += function(middle - half * kPlaces[i]) * (kWeights[i] * half);
            sum += function(middle + half * kPlaces[i]) * (kWeights[i] * half);
        }
    }
    return sum;
}

/// Length of the part of a curve in front of t.
double arcLength(const Curve& curve, double t) {
    if (curve.isLine()) return curve.tangentAt(0).length() * t;
    return integral([&](double at) { return curve.tangentAt(at).length(); }, 0.0, t);
}

/// The place on a curve that is a length behind its start.
double placeAt(const Curve& curve, double size, double length) {
    if (size <= 0.0) return 0.0;
    double t = length / size;
    // Even on lines and circles; Newton's way on ellipses.
    for (int step = 0; step < 20 && !curve.isLine(); ++step) {
        const double speed = curve.tangentAt(t).length();
        const double change = speed > 0.0 ? (length - arcLength(curve, t)) / speed : 0.0;
        t = std::clamp(t + change, 0.0, 1.0);
        if (std::fabs(change) < 1e-14) break;
    }
    return t;
}

}  // namespace

void CurvePath::add(const Curve& curve, double from, double to) {
    const double before = length();
    const double first = pieces_.empty() ? from : pieces_.back().to;
    pieces_.push_back({curve, first, to, before, arcLength(curve, 1.0)});
}

double CurvePath::length() const {
    return pieces_.empty() ? 0.0 : pieces_.back().before + pieces_.back().size;
}

bool CurvePath::has(double parameter) const {
    constexpr double kEnd = 1e-9;
    return parameter >= startParameter() - kEnd && parameter <= endParameter() + kEnd;
}

bool CurvePath::isClosed() const {
    const AcGeVector3d gap = pieces_.back().curve.end() - pieces_.front().curve.start();
    return gap.length() <= 1e-9 * std::max(1.0, length());
}

const CurvePath::Piece& CurvePath::pieceAt(double parameter) const {
    const auto behind =
        std::upper_bound(pieces_.begin(), pieces_.end(), parameter,
                         [](double wanted, const Piece& piece) { return wanted < piece.from; });
    return behind == pieces_.begin() ? pieces_.front() : *(behind - 1);
}

AcGePoint3d CurvePath::at(double parameter) const {
    const Piece& piece = pieceAt(parameter);
    const double range = piece.to - piece.from;
    return piece.curve.at(range == 0.0 ? 0.0 : (parameter - piece.from) / range);
}

AcGeVector3d CurvePath::derivativeAt(double parameter) const {
    const Piece& piece = pieceAt(parameter);
    const double range = piece.to - piece.from;
    if (range == 0.0) return {};
    return piece.curve.tangentAt((parameter - piece.from) / range) / range;
}

double CurvePath::lengthTo(double parameter) const {
    const Piece& piece = pieceAt(parameter);
    const double range = piece.to - piece.from;
    const double t = range == 0.0 ? 0.0 : std::clamp((parameter - piece.from) / range, 0.0, 1.0);
    return piece.before + arcLength(piece.curve, t);
}

double CurvePath::parameterAtLength(double length) const {
    const auto behind =
        std::upper_bound(pieces_.begin(), pieces_.end(), length,
                         [](double wanted, const Piece& piece) { return wanted < piece.before; });
    const Piece& piece = behind == pieces_.begin() ? pieces_.front() : *(behind - 1);
    const double within = std::clamp(length - piece.before, 0.0, piece.size);
    return piece.from + placeAt(piece.curve, piece.size, within) * (piece.to - piece.from);
}

double CurvePath::nearest(const AcGePoint3d& point) const {
    double best = startParameter(), least = (point - pieces_.front().curve.start()).length();
    for (const Piece& piece : pieces_) {
        const auto consider = [&](double t) {
            const double distance = (point - piece.curve.at(t)).length();
            if (distance >= least) return;
            least = distance;
            best = piece.from + t * (piece.to - piece.from);
        };
        consider(0.0);
        consider(1.0);
        for (const double t : piece.curve.perpendiculars(point)) {
            if (t >= 0.0 && t <= 1.0) consider(t);
        }
    }
    return best;
}

AcGePoint3d CurvePath::nearestBeyond(const AcGePoint3d& point) const {
    if (pieces_.size() > 1) return at(nearest(point));
    const Curve& curve = pieces_.front().curve;
    if (curve.isLine()) {
        const std::vector<double> feet = curve.perpendiculars(point);
        return feet.empty() ? curve.start() : curve.at(feet.front());
    }
    AcGeVector3d major, minor;
    curve.axes(major, minor);
    CurvePath whole;
    whole.add(Curve::circle(curve.centre(), major, minor), 0.0, 1.0);
    return whole.at(whole.nearest(point));
}

AcGeVector3d CurvePath::doubleArea() const {
    const AcGePoint3d base = pieces_.front().curve.start();
    AcGeVector3d sum;
    for (const Piece& piece : pieces_) {
        const auto part = [&](double t) {
            return (piece.curve.at(t) - base).crossProduct(piece.curve.tangentAt(t));
        };
        sum += piece.curve.isLine() ? part(0.0) : integral(part, 0.0, 1.0);
    }
    return sum;
}

}  // namespace host
