/// Places on the page.
#include "plot/page.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace host {
namespace {

/// Greatest distance of a drawn arc from the true one [mm].
constexpr double kChordError = 0.02;

int stepsOf(const Curve& arc) {
    AcGeVector3d major, minor;
    arc.axes(major, minor);
    const double radius = std::max(major.length(), 1e-9);
    const double sweep = arc.tangentAt(0.5).length() / std::max(minor.length(), radius * 0.05);
    const double step = std::sqrt(8.0 * kChordError / radius);
    return std::clamp(static_cast<int>(std::ceil(std::min(sweep, 8.0) / step)), 4, 720);
}

PlotPoint flat(const AcGePoint3d& point) {
    return {point.x, point.y};
}

}  // namespace

Page::Page(const AcDbExtents& shown, const PlotRequest& request) {
    const AcGePoint3d least = shown.minPoint(), greatest = shown.maxPoint();
    const double room_x = request.page_width - 2 * request.margin;
    const double room_y = request.page_height - 2 * request.margin;
    const double width = greatest.x - least.x, height = greatest.y - least.y;
    // A single point or a line along an axis has no size to fill the page with.
    constexpr double kLargest = 1e6;
    const double by_x = width > 0 ? room_x / width : kLargest;
    const double by_y = height > 0 ? room_y / height : kLargest;
    scale_ = std::min(by_x, by_y);
    if (scale_ == kLargest) scale_ = 1.0;
    const double middle_x = (least.x + greatest.x) / 2, middle_y = (least.y + greatest.y) / 2;
    const double page_x = request.page_width / 2, page_y = request.page_height / 2;
    AcGeMatrix3d move, turn;
    move.setToTranslation({-middle_x, -middle_y, 0});
    turn.entry[0][0] = scale_;
    turn.entry[1][1] = -scale_;
    turn.entry[2][2] = 0.0;
    turn.entry[0][3] = page_x;
    turn.entry[1][3] = page_y;
    to_page_ = turn * move;
    // The margin around all that is drawn takes the half of each line that reaches out.
    const double half_x = request.has_window ? width * scale_ / 2 : page_x;
    const double half_y = request.has_window ? height * scale_ / 2 : page_y;
    least_x_ = page_x - half_x;
    greatest_x_ = page_x + half_x;
    least_y_ = page_y - half_y;
    greatest_y_ = page_y + half_y;
}

PlotPath Page::frame() const {
    return {{{least_x_, least_y_},
             {greatest_x_, least_y_},
             {greatest_x_, greatest_y_},
             {least_x_, greatest_y_}},
            true};
}

bool Page::sees(const AcDbExtents& box) const {
    constexpr double kNoise = 1e-6;
    return box.minPoint().x <= greatest_x_ + kNoise && box.maxPoint().x >= least_x_ - kNoise &&
           box.minPoint().y <= greatest_y_ + kNoise && box.maxPoint().y >= least_y_ - kNoise;
}

bool cutLine(PlotPoint& from, PlotPoint& to, const PlotPoint& least, const PlotPoint& greatest) {
    const double way_x = to.x - from.x, way_y = to.y - from.y;
    const double against[] = {-way_x, way_x, -way_y, way_y};
    const double room[] = {from.x - least.x, greatest.x - from.x, from.y - least.y,
                           greatest.y - from.y};
    double first = 0.0, last = 1.0;
    for (int side = 0; side < 4; ++side) {
        if (against[side] == 0.0) {
            if (room[side] < 0.0) return false;
            continue;
        }
        const double at = room[side] / against[side];
        if (against[side] < 0.0) {
            first = std::max(first, at);
        } else {
            last = std::min(last, at);
        }
    }
    if (first > last) return false;
    const PlotPoint start = from;
    from = {start.x + first * way_x, start.y + first * way_y};
    to = {start.x + last * way_x, start.y + last * way_y};
    return true;
}

bool Page::cut(PlotPoint& from, PlotPoint& to) const {
    // Lines that end near the page keep their ends, so that dashes begin where they should.
    constexpr double kNear = 1000.0;
    const PlotPoint least = {least_x_ - kNear, least_y_ - kNear};
    const PlotPoint greatest = {greatest_x_ + kNear, greatest_y_ + kNear};
    return cutLine(from, to, least, greatest);
}

void Page::addBoundary(const Curve& curve, bool on, std::vector<PlotPoint>& points) const {
    if (!curve.isLine() && add(curve, on, points)) return;
    // The canvas can't go further.
    constexpr double kFar = 1e6;
    for (const AcGePoint3d& end : {curve.start(), curve.end()}) {
        if (std::exchange(on, false)) continue;
        points.push_back({std::clamp(end.x, -kFar, kFar), std::clamp(end.y, -kFar, kFar)});
    }
}

bool Page::add(const Curve& curve, bool on, std::vector<PlotPoint>& points) const {
    if (!sees(curve.extents())) return false;
    if (curve.isLine()) {
        PlotPoint from = flat(curve.start()), to = flat(curve.end());
        if (!cut(from, to)) return false;
        if (!on) points.push_back(from);
        points.push_back(to);
        return true;
    }
    const int steps = stepsOf(curve);
    for (int i = on ? 1 : 0; i <= steps; ++i)
        points.push_back(flat(curve.at(static_cast<double>(i) / steps)));
    return true;
}

}  // namespace host
