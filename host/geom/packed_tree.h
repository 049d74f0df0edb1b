/// A tree over boxes that is built in one go and does not change. Boxes are floats, rounded outward
/// and counted from a point near them, so that a million take 30 MB; who needs more precision looks
/// at what the box stands for.
#ifndef HOST_GEOM_PACKED_TREE_H
#define HOST_GEOM_PACKED_TREE_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "acad/extents.h"

namespace host {

/// A box along the axes, from the tree's origin.
struct FloatBox {
    float least[3];
    float greatest[3];

    static FloatBox around(const AcDbExtents& box, const AcGePoint3d& origin);
    void add(const FloatBox& other);
};

/// What is seen through a rectangle of the screen, however deep it lies.
class ScreenPrism {
  public:
    /// @param to_screen  from the coordinates of the boxes to those of the rectangle
    ScreenPrism(const AcGeMatrix3d& to_screen, const AcGePoint2d& least,
                const AcGePoint2d& greatest);
    /// Whether a box, or at least the rectangle around it on the screen, is seen.
    bool meets(const FloatBox& box) const;

  private:
    struct Axis {
        double x, y, z, shift, least, greatest;
    };
    Axis axes_[2];
};

class PackedTree {
  public:
    struct Item {
        FloatBox box;
        uint32_t value;
    };
    /// Takes the items over.
    void build(std::vector<Item>&& items);
    bool empty() const { return values_.empty(); }
    size_t size() const { return values_.size(); }
    /// All items, in the tree's order.
    Item item(size_t index) const { return {boxes_[index], values_[index]}; }

    /// Calls `found` with the value of each item that the prism meets.
    template <class Found>
    void search(const ScreenPrism& prism, const Found& found) const {
        if (!values_.empty()) searchNode(levels_.size() - 1, 0, prism, found);
    }

  private:
    static constexpr size_t kFanOut = 16;

    template <class Found>
    void searchNode(size_t level, size_t index, const ScreenPrism& prism,
                    const Found& found) const {
        if (!prism.meets(boxes_[levels_[level] + index])) return;
        if (level == 0) return found(values_[index]);
        const size_t begin = index * kFanOut;
        const size_t count = levels_[level] - levels_[level - 1];
        for (size_t i = begin; i < begin + kFanOut && i < count; ++i)
            searchNode(level - 1, i, prism, found);
    }

    std::vector<FloatBox> boxes_;  ///< of the items, then of each level above them
    std::vector<size_t> levels_;   ///< where the boxes of a level begin
    std::vector<uint32_t> values_;
};

}  // namespace host

#endif
