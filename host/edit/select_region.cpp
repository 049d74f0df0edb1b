/// Figures on the screen, and the visitor that holds what entities show against them. Curves are
/// compared in display coordinates, in which depth is z.
#include "edit/select_region.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "edit/spatial_index.h"
#include "edit/sysvars.h"
#include "edit/ucs.h"
#include "edit/view.h"

namespace host {
namespace {

double crossOf(const AcGePoint2d& origin, const AcGePoint2d& a, const AcGePoint2d& b) {
    return (a.x - origin.x) * (b.y - origin.y) - (a.y - origin.y) * (b.x - origin.x);
}

bool withinBox(const AcGePoint2d& a, const AcGePoint2d& b, const AcGePoint2d& p) {
    return p.x >= std::min(a.x, b.x) && p.x <= std::max(a.x, b.x) && p.y >= std::min(a.y, b.y) &&
           p.y <= std::max(a.y, b.y);
}

/// True for segments that have a point in common.
bool segmentsMeet(const AcGePoint2d& a, const AcGePoint2d& b, const AcGePoint2d& c,
                  const AcGePoint2d& d) {
    const double c_side = crossOf(a, b, c), d_side = crossOf(a, b, d);
    const double a_side = crossOf(c, d, a), b_side = crossOf(c, d, b);
    if (((c_side > 0) != (d_side > 0)) && ((a_side > 0) != (b_side > 0)) && c_side != 0 &&
        d_side != 0 && a_side != 0 && b_side != 0) {
        return true;
    }
    return (c_side == 0 && withinBox(a, b, c)) || (d_side == 0 && withinBox(a, b, d)) ||
           (a_side == 0 && withinBox(c, d, a)) || (b_side == 0 && withinBox(c, d, b));
}

/// True for a polygon of which two sides that are no neighbours meet, or a side runs back along
/// the one before. Sides are taken from left to right, so that only those are compared that lie
/// above each other.
bool crossesItself(const std::vector<AcGePoint2d>& points) {
    const size_t count = points.size();
    if (count == 0) return false;
    const auto end = [&](size_t i) { return points[(i + 1) % count]; };
    const auto left = [&](size_t i) { return std::min(points[i].x, end(i).x); };
    std::vector<size_t> order(count);
    for (size_t i = 0; i < count; ++i)
        order[i] = i;
    std::sort(order.begin(), order.end(), [&](size_t a, size_t b) { return left(a) < left(b); });
    std::vector<size_t> open;
    for (const size_t side : order) {
        std::erase_if(open, [&](size_t other) {
            return std::max(points[other].x, end(other).x) < left(side);
        });
        for (const size_t other : open) {
            const bool follows = (other + 1) % count == side, leads = (side + 1) % count == other;
            if (follows || leads) {
                const AcGePoint2d& first = follows ? points[other] : points[side];
                const AcGePoint2d& middle = follows ? points[side] : points[other];
                const AcGePoint2d last = follows ? end(side) : end(other);
                const bool back = (middle - first).dotProduct(last - middle) < 0;
                if (back && crossOf(first, middle, last) == 0) return true;
            } else if (segmentsMeet(points[side], end(side), points[other], end(other))) {
                return true;
            }
        }
        open.push_back(side);
    }
    return false;
}

double distanceToSegment(const AcGePoint2d& a, const AcGePoint2d& b, double x, double y) {
    return Curve::line({a.x, a.y, 0}, {b.x, b.y, 0}).nearest(x, y).distance;
}

/// Types whose inside belongs to them.
bool isFilled(std::string_view type) {
    static constexpr std::string_view kTypes[] = {"HATCH", "SOLID",  "TRACE", "TEXT",
                                                  "MTEXT", "ATTRIB", "ATTDEF"};
    return std::find(std::begin(kTypes), std::end(kTypes), type) != std::end(kTypes);
}

/// Types that show nothing but the point that they stand at.
bool isMarkOnly(std::string_view type) {
    return type == "SHAPE" || type == "TOLERANCE";
}

/// How often a ray from a point to the right meets a curve, as far as its being odd goes.
bool rayMeetsOddly(const Curve& curve, double x, double y) {
    const int steps = curve.isLine() ? 1 : 96;
    bool odd = false;
    AcGePoint3d from = curve.start();
    for (int i = 1; i <= steps; ++i) {
        const AcGePoint3d to = curve.at(static_cast<double>(i) / steps);
        if ((from.y > y) != (to.y > y)) {
            odd ^= x < from.x + (y - from.y) * (to.x - from.x) / (to.y - from.y);
        }
        from = to;
    }
    return odd;
}

/// Holds what a walk meets against a region. Used for one entity after the other.
class RegionVisitor : public ShapeVisitor {
  public:
    RegionVisitor(Database& database, const ScreenRegion& region, SearchDepth depth)
        : database_(database), region_(region), depth_(depth) {}

    /// What was met of the entity visited last; empty for one that isn't selected.
    std::vector<Located> take(Slot entity) {
        std::vector<Located> found;
        if (depth_.nested) {
            for (std::vector<AcDbObjectId>& path : paths_) {
                if (!found.empty() && (!depth_.all_nested || found.back().path == path)) continue;
                found.push_back({entity, std::move(path), {}});
            }
        } else if (selected_) {
            found.push_back({entity, {}, std::move(places_)});
        }
        paths_.clear();
        places_.clear();
        selected_ = false;
        return found;
    }

    void begin(Slot slot) override {
        if (!open_.empty()) open_.back().has_parts = true;
        Database& drawing = inside_.empty() ? database_ : *inside_.back();
        const std::string& type = drawing.typeName(slot);
        open_.push_back({drawing.idOf(slot), isFilled(type), isMarkOnly(type)});
    }
    void enterBlock(Database& inner, const AcGeMatrix3d&) override { inside_.push_back(&inner); }
    void leaveBlock() override { inside_.pop_back(); }

    void curve(const Curve& curve, CurveRole role) override {
        Frame& frame = open_.back();
        frame.seen = true;
        if (isInsideSearch()) {
            const bool out = role == CurveRole::Endless || !region_.contains(curve);
            frame.outside = frame.outside || out;
            return;
        }
        const bool fence = region_.kind() == ScreenRegion::Kind::Fence;
        if (fence && !depth_.nested) region_.addCrossings(curve, places_);
        frame.touched = frame.touched || region_.touches(curve);
        const AcGePoint2d& inner = region_.corner();
        if (frame.filled && rayMeetsOddly(curve, inner.x, inner.y)) frame.around = !frame.around;
    }

    void mark(MarkKind kind, const AcGePoint3d& point) override {
        Frame& frame = open_.back();
        if (kind != MarkKind::Node && !(kind == MarkKind::Insertion && frame.mark_only)) return;
        frame.seen = true;
        if (isInsideSearch()) {
            frame.outside = frame.outside || !region_.contains(point);
        } else {
            frame.touched = frame.touched || region_.touches(point);
        }
    }

    void end(Slot) override {
        Frame frame = open_.back();
        frame.touched = frame.touched || frame.around;
        const bool met = isInsideSearch() ? frame.seen && !frame.outside : frame.touched;
        if (depth_.nested && met && !frame.has_parts) {
            paths_.emplace_back();
            for (const Frame& part : open_)
                paths_.back().push_back(part.id);
        }
        open_.pop_back();
        if (open_.empty()) {
            selected_ = met;
            return;
        }
        Frame& outer = open_.back();
        outer.seen = outer.seen || frame.seen;
        outer.outside = outer.outside || frame.outside;
        outer.touched = outer.touched || frame.touched;
    }

    bool enters(const AcDbExtents& box, int) override {
        if (depth_.nested) return region_.meetsBounds(box);
        if (isInsideSearch()) return !open_.back().outside;
        const bool wants_places = region_.kind() == ScreenRegion::Kind::Fence;
        return (wants_places || !open_.back().touched) && region_.meetsBounds(box);
    }

  private:
    struct Frame {
        AcDbObjectId id;
        bool filled;
        bool mark_only;
        bool has_parts = false;
        bool seen = false;     ///< something is shown
        bool outside = false;  ///< some of it is not wholly inside
        bool touched = false;
        bool around = false;  ///< the region's first corner is inside of its border
    };

    bool isInsideSearch() const { return region_.kind() == ScreenRegion::Kind::Inside; }

    Database& database_;
    const ScreenRegion& region_;
    SearchDepth depth_;
    std::vector<Frame> open_;
    std::vector<Database*> inside_;  ///< drawings of the blocks that are open
    std::vector<std::vector<AcDbObjectId>> paths_;
    std::vector<AcGePoint3d> places_;
    bool selected_ = false;
};

/// Calls `found` for the entities in a region, latest drawn first, until it gives false.
template <class Found>
void searchRegion(Database& database, const ScreenRegion& region, SearchDepth depth,
                  const Found& found) {
    const AcGeMatrix3d to_display = currentView(database).worldToDisplay();
    const AcGeMatrix3d to_world = to_display.inverse();
    RegionVisitor visitor(database, region, depth);
    ShapeWalker walker(database);
    for (const Slot slot : entitiesIn(database, currentSpace(database), to_display, region.least(),
                                      region.greatest())) {
        walker.visit(slot, to_display, visitor);
        std::vector<Located> met = visitor.take(slot);
        for (Located& place : met) {
            for (AcGePoint3d& point : place.places)
                point = to_world * point;
        }
        if (!met.empty() && !found(std::move(met))) return;
    }
}

}  // namespace

// --- regions ------------------------------------------------------------------------------------

void ScreenRegion::setPoints(std::vector<AcGePoint2d> points, bool closed) {
    closed_ = closed;
    points_ = std::move(points);
    least_ = greatest_ = points_.front();
    double size = 1.0;
    for (const AcGePoint2d& point : points_) {
        least_ = {std::min(least_.x, point.x), std::min(least_.y, point.y)};
        greatest_ = {std::max(greatest_.x, point.x), std::max(greatest_.y, point.y)};
        size = std::max({size, std::fabs(point.x), std::fabs(point.y)});
    }
    hair_ = size * 1e-10;
    least_ = {least_.x - hair_, least_.y - hair_};
    greatest_ = {greatest_.x + hair_, greatest_.y + hair_};
}

ScreenRegion ScreenRegion::rectangle(const AcGePoint2d& corner, const AcGePoint2d& opposite,
                                     Kind kind) {
    ScreenRegion region;
    region.kind_ = kind;
    region.rectangle_ = true;
    region.setPoints({corner, {opposite.x, corner.y}, opposite, {corner.x, opposite.y}}, true);
    return region;
}

Refusal ScreenRegion::path(std::vector<AcGePoint2d> points, Kind kind, ScreenRegion& out) {
    const bool closed = kind != Kind::Fence;
    const auto same = [](const AcGePoint2d& a, const AcGePoint2d& b) {
        return a.x == b.x && a.y == b.y;
    };
    points.erase(std::unique(points.begin(), points.end(), same), points.end());
    while (closed && points.size() > 1 && same(points.front(), points.back()))
        points.pop_back();
    if (points.size() < (closed ? 3U : 2U)) {
        return closed ? u"A polygon has three corners at least." : u"A fence has two points.";
    }
    if (closed && crossesItself(points)) {
        return u"The sides of a selection polygon must not cross each other.";
    }
    ScreenRegion region;
    region.kind_ = kind;
    region.setPoints(std::move(points), closed);
    out = std::move(region);
    return kDone;
}

Curve ScreenRegion::side(size_t i) const {
    const AcGePoint2d& a = points_[i];
    const AcGePoint2d& b = points_[(i + 1) % points_.size()];
    return Curve::line({a.x, a.y, 0.0}, {b.x, b.y, 0.0});
}

bool ScreenRegion::sideMeets(size_t i, const AcDbExtents& box) const {
    const AcGePoint2d& a = points_[i];
    const AcGePoint2d& b = points_[(i + 1) % points_.size()];
    return std::max(a.x, b.x) >= box.minPoint().x - hair_ &&
           std::min(a.x, b.x) <= box.maxPoint().x + hair_ &&
           std::max(a.y, b.y) >= box.minPoint().y - hair_ &&
           std::min(a.y, b.y) <= box.maxPoint().y + hair_;
}

bool ScreenRegion::meetsBounds(const AcDbExtents& box) const {
    return box.maxPoint().x >= least_.x && box.minPoint().x <= greatest_.x &&
           box.maxPoint().y >= least_.y && box.minPoint().y <= greatest_.y;
}

bool ScreenRegion::onPath(double x, double y) const {
    for (size_t i = 0; i < sideCount(); ++i) {
        if (distanceToSegment(points_[i], points_[(i + 1) % points_.size()], x, y) <= hair_) {
            return true;
        }
    }
    return false;
}

bool ScreenRegion::containsFlat(double x, double y) const {
    if (x < least_.x || x > greatest_.x || y < least_.y || y > greatest_.y) return false;
    if (rectangle_) return true;
    if (onPath(x, y)) return true;
    bool inside = false;
    for (size_t i = 0; closed_ && i < points_.size(); ++i)
        inside ^= rayMeetsOddly(side(i), x, y);
    return inside;
}

bool ScreenRegion::contains(const AcGePoint3d& point) const {
    return containsFlat(point.x, point.y);
}

bool ScreenRegion::touches(const AcGePoint3d& point) const {
    return containsFlat(point.x, point.y);
}

bool ScreenRegion::contains(const Curve& curve) const {
    const AcDbExtents box = curve.extents();
    if (box.minPoint().x < least_.x || box.maxPoint().x > greatest_.x ||
        box.minPoint().y < least_.y || box.maxPoint().y > greatest_.y) {
        return false;
    }
    if (rectangle_) return true;
    // Between two crossings of the border a curve is wholly inside or wholly outside.
    std::vector<double> places = {0.0, 1.0};
    for (size_t i = 0; i < points_.size(); ++i) {
        if (!sideMeets(i, box)) continue;
        for (const Curve::Crossing& crossing : curve.crossings(side(i)))
            places.push_back(std::clamp(crossing.t, 0.0, 1.0));
    }
    std::sort(places.begin(), places.end());
    if (!contains(curve.start()) || !contains(curve.end())) return false;
    for (size_t i = 0; i + 1 < places.size(); ++i) {
        if (!contains(curve.at((places[i] + places[i + 1]) / 2))) return false;
    }
    return true;
}

bool ScreenRegion::touches(const Curve& curve) const {
    const AcDbExtents box = curve.extents();
    if (!meetsBounds(box)) return false;
    if (containsFlat(curve.start().x, curve.start().y)) return true;
    if (containsFlat(curve.end().x, curve.end().y)) return true;
    for (size_t i = 0; i < sideCount(); ++i) {
        if (sideMeets(i, box) && !curve.crossings(side(i)).empty()) return true;
    }
    // What runs along a side, or through a region without a size, crosses nothing.
    for (const AcGePoint2d& point : points_) {
        const bool near =
            point.x >= box.minPoint().x - hair_ && point.x <= box.maxPoint().x + hair_ &&
            point.y >= box.minPoint().y - hair_ && point.y <= box.maxPoint().y + hair_;
        if (near && curve.nearest(point.x, point.y).distance <= hair_) return true;
    }
    return false;
}

void ScreenRegion::addCrossings(const Curve& curve, std::vector<AcGePoint3d>& places) const {
    const AcDbExtents box = curve.extents();
    if (!meetsBounds(box)) return;
    for (size_t i = 0; i < sideCount(); ++i) {
        if (!sideMeets(i, box)) continue;
        for (const Curve::Crossing& crossing : curve.crossings(side(i)))
            places.push_back(curve.at(crossing.t));
    }
}

// --- searching ----------------------------------------------------------------------------------

AcGePoint2d flat(const AcGePoint3d& point) {
    return {point.x, point.y};
}

AcGeMatrix3d userToDisplay(Database& database) {
    return currentView(database).worldToDisplay() * currentUcs(database).toWorld();
}

ScreenRegion pickRegion(Database& database, const AcGePoint3d& point) {
    constexpr int kUsual = 3;
    const double half = integerVariable("PICKBOX", kUsual) * pixelSize(database);
    const AcGePoint2d centre = flat(userToDisplay(database) * point);
    return ScreenRegion::rectangle({centre.x - half, centre.y - half},
                                   {centre.x + half, centre.y + half},
                                   ScreenRegion::Kind::Touching);
}

std::vector<Located> entitiesInRegion(Database& database, const ScreenRegion& region,
                                      SearchDepth depth) {
    std::vector<Located> all;
    searchRegion(database, region, depth, [&](std::vector<Located> met) {
        // The parts of one entity come in drawing order; the entities in that of their picking.
        std::move(met.rbegin(), met.rend(), std::back_inserter(all));
        return true;
    });
    std::reverse(all.begin(), all.end());
    return all;
}

std::optional<Located> topmostInRegion(Database& database, const ScreenRegion& region,
                                       SearchDepth depth) {
    std::optional<Located> topmost;
    searchRegion(database, region, depth, [&](std::vector<Located> met) {
        topmost = std::move(met.front());
        return false;
    });
    return topmost;
}

}  // namespace host
