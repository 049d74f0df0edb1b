/// The packed tree: items in the order of a curve that fills the plane, so that neighbours share
/// their nodes.
#include "geom/packed_tree.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace host {
namespace {

float roundedDown(double value) {
    const auto rounded = static_cast<float>(value);
    constexpr float kLeast = -std::numeric_limits<float>::max();
    return rounded > value ? std::nextafter(rounded, kLeast) : rounded;
}

float roundedUp(double value) {
    return -roundedDown(-value);
}

/// Place of a cell of a 65536 by 65536 grid along Hilbert's curve.
uint32_t hilbertPlace(uint32_t x, uint32_t y) {
    uint32_t place = 0;
    for (uint32_t side = 1U << 15U; side > 0; side >>= 1U) {
        const bool right = (x & side) != 0, upper = (y & side) != 0;
        place = place << 2U | (right ? (upper ? 2U : 3U) : (upper ? 1U : 0U));
        if (upper) continue;
        if (right) {
            x = 0xFFFFU - x;
            y = 0xFFFFU - y;
        }
        std::swap(x, y);
    }
    return place;
}

/// Cell of a value in the range from `least` on.
uint32_t cellOf(float low, float high, float least, double width) {
    constexpr double kCells = 65535.0;
    const double middle = (static_cast<double>(low) + high) / 2 - least;
    return width > 0.0 ? static_cast<uint32_t>(std::clamp(middle / width, 0.0, 1.0) * kCells) : 0U;
}

}  // namespace

FloatBox FloatBox::around(const AcDbExtents& box, const AcGePoint3d& origin) {
    FloatBox out;
    for (unsigned int i = 0; i < 3; ++i) {
        out.least[i] = roundedDown(box.minPoint()[i] - origin[i]);
        out.greatest[i] = roundedUp(box.maxPoint()[i] - origin[i]);
    }
    return out;
}

void FloatBox::add(const FloatBox& other) {
    for (int i = 0; i < 3; ++i) {
        least[i] = std::min(least[i], other.least[i]);
        greatest[i] = std::max(greatest[i], other.greatest[i]);
    }
}

ScreenPrism::ScreenPrism(const AcGeMatrix3d& to_screen, const AcGePoint2d& least,
                         const AcGePoint2d& greatest)
    : axes_{
          {to_screen(0, 0), to_screen(0, 1), to_screen(0, 2), to_screen(0, 3), least.x, greatest.x},
          {to_screen(1, 0), to_screen(1, 1), to_screen(1, 2), to_screen(1, 3), least.y,
           greatest.y}} {}

bool ScreenPrism::meets(const FloatBox& box) const {
    for (const Axis& axis : axes_) {
        const double way[3] = {axis.x, axis.y, axis.z};
        double low = axis.shift, high = axis.shift;
        for (int i = 0; i < 3; ++i) {
            const double a = way[i] * box.least[i], b = way[i] * box.greatest[i];
            low += std::min(a, b);
            high += std::max(a, b);
        }
        if (high < axis.least || low > axis.greatest) return false;
    }
    return true;
}

void PackedTree::build(std::vector<Item>&& items) {
    boxes_.clear();
    levels_.clear();
    values_.clear();
    if (items.empty()) return;
    FloatBox all = items.front().box;
    for (const Item& item : items)
        all.add(item.box);
    const double width = static_cast<double>(all.greatest[0]) - all.least[0];
    const double height = static_cast<double>(all.greatest[1]) - all.least[1];
    std::vector<std::pair<uint32_t, uint32_t>> order(items.size());  // place, index
    for (uint32_t i = 0; i < items.size(); ++i) {
        const FloatBox& box = items[i].box;
        order[i] = {hilbertPlace(cellOf(box.least[0], box.greatest[0], all.least[0], width),
                                 cellOf(box.least[1], box.greatest[1], all.least[1], height)),
                    i};
    }
    std::sort(order.begin(), order.end());
    boxes_.reserve(items.size() + items.size() / (kFanOut - 1) + 8);
    values_.reserve(items.size());
    for (const auto& entry : order) {
        boxes_.push_back(items[entry.second].box);
        values_.push_back(items[entry.second].value);
    }
    std::vector<Item>().swap(items);
    levels_.push_back(0);
    for (size_t begin = 0, count = values_.size(); count > 1;) {
        const size_t above = boxes_.size();
        for (size_t i = 0; i < count; ++i) {
            const FloatBox box = boxes_[begin + i];
            if (i % kFanOut == 0) {
                boxes_.push_back(box);
            } else {
                boxes_.back().add(box);
            }
        }
        levels_.push_back(above);
        begin = above;
        count = boxes_.size() - above;
    }
}

}  // namespace host
