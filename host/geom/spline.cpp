/// Points along B-splines.
#include <algorithm>

#include "geom/curve.h"

namespace host {
namespace {

/// A control point times its weight, and the weight.
struct Weighted {
    AcGeVector3d point;
    double weight = 1.0;
};

/// Value at a parameter in the span [knots[span], knots[span + 1]], by repeated interpolation.
AcGePoint3d pointAt(double parameter, size_t span, size_t degree, const std::vector<double>& knots,
                    const std::vector<Weighted>& control) {
    std::vector<Weighted> local(control.begin() + static_cast<ptrdiff_t>(span - degree),
                                control.begin() + static_cast<ptrdiff_t>(span + 1));
    for (size_t level = 1; level <= degree; ++level) {
        for (size_t i = degree; i >= level; --i) {
            const double low = knots[span - degree + i], high = knots[span + 1 + i - level];
            const double part = high > low ? (parameter - low) / (high - low) : 0.0;
            local[i].point = local[i - 1].point * (1.0 - part) + local[i].point * part;
            local[i].weight = local[i - 1].weight * (1.0 - part) + local[i].weight * part;
        }
    }
    const Weighted& last = local[degree];
    return AcGePoint3d() + (last.weight == 0.0 ? last.point : last.point / last.weight);
}

bool fits(int degree, const std::vector<double>& knots, size_t points) {
    constexpr int kMostDegree = 25;
    return degree >= 1 && degree <= kMostDegree && points > static_cast<size_t>(degree) &&
           knots.size() == points + static_cast<size_t>(degree) + 1 &&
           std::is_sorted(knots.begin(), knots.end());
}

}  // namespace

std::vector<AcGePoint3d> splinePoints(int degree, const std::vector<double>& knots,
                                      const std::vector<AcGePoint3d>& control,
                                      const std::vector<double>& weights, int chords,
                                      std::vector<double>* parameters) {
    if (!fits(degree, knots, control.size())) return control;
    std::vector<Weighted> points(control.size());
    for (size_t i = 0; i < control.size(); ++i) {
        const double weight = weights.size() == control.size() ? weights[i] : 1.0;
        points[i] = {control[i].asVector() * weight, weight};
    }
    const auto order = static_cast<size_t>(degree);
    std::vector<AcGePoint3d> out;
    const auto add = [&](double parameter, size_t span) {
        out.push_back(pointAt(parameter, span, order, knots, points));
        if (parameters != nullptr) parameters->push_back(parameter);
    };
    for (size_t span = order; span < control.size(); ++span) {
        const double low = knots[span], high = knots[span + 1];
        if (high <= low) continue;
        if (out.empty()) add(low, span);
        for (int i = 1; i <= chords; ++i)
            add(low + (high - low) * i / chords, span);
    }
    return out.empty() ? control : out;
}

}  // namespace host
