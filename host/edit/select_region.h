/// Selection by place: a window, a polygon or a fence on the screen, and what of the current space
/// lies in it or touches it. All that is seen through it counts, however deep it lies.
#ifndef HOST_EDIT_SELECT_REGION_H
#define HOST_EDIT_SELECT_REGION_H

#include <optional>
#include <string_view>
#include <vector>

#include "edit/refusal.h"
#include "edit/shapes.h"

namespace host {

/// A figure in display coordinates (edit/view.h). Its border belongs to it.
class ScreenRegion {
  public:
    enum class Kind {
        Inside,    ///< takes what lies wholly inside
        Touching,  ///< takes what has a point inside
        Fence      ///< takes what crosses an open path
    };
    static ScreenRegion rectangle(const AcGePoint2d& corner, const AcGePoint2d& opposite,
                                  Kind kind);
    /// A closed polygon or, for Kind::Fence, an open path. @return a sentence for one with too few
    /// points, and for sides of a polygon that meet each other; `out` is then as it was
    static Refusal path(std::vector<AcGePoint2d> points, Kind kind, ScreenRegion& out);

    Kind kind() const { return kind_; }
    const AcGePoint2d& least() const { return least_; }
    const AcGePoint2d& greatest() const { return greatest_; }
    /// The first corner.
    const AcGePoint2d& corner() const { return points_.front(); }
    /// The rectangle around it, a hair wider.
    bool meetsBounds(const AcDbExtents& box) const;

    /// Of Kind::Inside: true for a curve that lies wholly inside.
    bool contains(const Curve& curve) const;
    bool contains(const AcGePoint3d& point) const;
    /// True for a curve that touches the region, or crosses the fence.
    bool touches(const Curve& curve) const;
    /// A point is on a fence when it is on its path.
    bool touches(const AcGePoint3d& point) const;
    /// Where a curve crosses the path.
    void addCrossings(const Curve& curve, std::vector<AcGePoint3d>& places) const;

  private:
    void setPoints(std::vector<AcGePoint2d> points, bool closed);
    bool containsFlat(double x, double y) const;
    bool onPath(double x, double y) const;
    size_t sideCount() const { return points_.size() - (closed_ ? 0U : 1U); }
    Curve side(size_t i) const;
    /// Whether the boxes of a side and of a curve meet.
    bool sideMeets(size_t i, const AcDbExtents& box) const;

    Kind kind_ = Kind::Touching;
    bool closed_ = true;
    bool rectangle_ = false;
    std::vector<AcGePoint2d> points_;
    AcGePoint2d least_, greatest_;
    double hair_ = 0.0;  ///< points this near to each other are the same
};

/// What was found.
struct Located {
    Slot entity = kNoSlot;  ///< main entity of the current space
    /// From the entity inward to what was met inside of it, which may lie in an attached drawing;
    /// empty when nobody asked for it.
    std::vector<AcDbObjectId> path;
    std::vector<AcGePoint3d> places;  ///< where a fence crosses it, WCS
};

/// How far a search goes.
struct SearchDepth {
    bool nested = false;  ///< looks for single objects in blocks
    /// One result for each object in a block; otherwise the first one stands for the entity.
    bool all_nested = false;
};

/// Entities of the current space in a region, in drawing order. Entities that are hidden, or on a
/// layer that is frozen or off, are left out.
std::vector<Located> entitiesInRegion(Database& database, const ScreenRegion& region,
                                      SearchDepth depth = {});
/// The topmost entity that touches a region; nothing where there is none.
std::optional<Located> topmostInRegion(Database& database, const ScreenRegion& region,
                                       SearchDepth depth = {});
/// The pick box around a point of the current user coordinate system.
ScreenRegion pickRegion(Database& database, const AcGePoint3d& point);
/// From the current user coordinate system to the present view's display.
AcGeMatrix3d userToDisplay(Database& database);
AcGePoint2d flat(const AcGePoint3d& point);

}  // namespace host

#endif
