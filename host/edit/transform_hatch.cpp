/// Transformation of a HATCH: its boundary paths, the lines of its pattern, its seed points. The
/// same codes stand for different things along the list, so it is walked in order.
#include "edit/plane_map.h"
#include "edit/tag_values.h"
#include "edit/transform_parts.h"

namespace host {
namespace {

class HatchTransform {
  public:
    HatchTransform(Tags& tags, const PlaneMap& plane) : tags_(tags), plane_(plane) {}

    void run() {
        size_t at = moveElevation();
        for (; at < tags_.size(); ++at)
            step(at);
    }

  private:
    enum class Place { Head, PolylinePath, EdgePath, Pattern };
    enum Edge : int64_t { kNone = 0, kLine = 1, kArc = 2, kEllipse = 3, kSpline = 4 };

    /// The first point has the height of the hatch as its z, and no place. @return the index behind
    /// it
    size_t moveElevation() {
        const size_t at = findTag(tags_, 10);
        if (at >= tags_.size()) return at;
        elevation_ = pointAt(tags_, at, 0.0).z;
        setPointAt(tags_, at, {0.0, 0.0, plane_.point(0.0, 0.0, elevation_).z});
        return at + 1;
    }

    void step(size_t at) {
        constexpr int64_t kPolylineFlag = 2;
        const int code = tags_[at].code();
        if (code == 92 && place_ != Place::Pattern) {
            const bool polyline = (tags_[at].integer() & kPolylineFlag) != 0;
            place_ = polyline ? Place::PolylinePath : Place::EdgePath;
            edge_ = kNone;
        } else if (code == 75) {
            place_ = Place::Pattern;
        } else if (place_ == Place::PolylinePath) {
            polylineGroup(at);
        } else if (place_ == Place::EdgePath) {
            edgeGroup(at);
        } else if (place_ == Place::Pattern) {
            patternGroup(at);
        }
    }

    void movePoint(size_t at) {
        setPointAt(tags_, at, plane_.map * pointAt(tags_, at, elevation_));
    }
    void turnWay(size_t at) {
        const AcGeVector3d way = pointAt(tags_, at, 0.0).asVector();
        setPointAt(tags_, at, AcGePoint3d() + plane_.map * way);
    }
    void scaleLength(size_t at) { setRealAt(tags_, at, tags_[at].real() * plane_.scale); }

    void polylineGroup(size_t at) {
        if (tags_[at].code() == 10) movePoint(at);
        if (tags_[at].code() == 42 && plane_.mirrored) setRealAt(tags_, at, -tags_[at].real());
    }

    void edgeGroup(size_t at) {
        const int code = tags_[at].code();
        if (code == 72) {
            edge_ = tags_[at].integer();
        } else if (code == 10 || (code == 11 && edge_ != kEllipse)) {
            movePoint(at);
        } else if (code == 11 || code == 12 || code == 13) {
            turnWay(at);
        } else if (code == 40 && edge_ == kArc) {
            scaleLength(at);
        } else if (code == 50 && edge_ == kArc) {
            turnArc(at);
        } else if (code == 73 && (edge_ == kArc || edge_ == kEllipse) && plane_.mirrored) {
            tags_[at] = Tag(73, tags_[at].integer() == 0 ? int64_t{1} : int64_t{0});
        }
    }

    /// Angles 50 and 51 of an arc with its sense 73 behind them. Those of a clockwise arc are
    /// counted clockwise. The arc keeps its length, so that a full circle stays one. (The angles of
    /// an ellipse count from its axis and its sense, which both go along.)
    void turnArc(size_t at) {
        if (at + 2 >= tags_.size() || (plane_.turn == 0.0 && !plane_.mirrored)) return;
        const bool counter = tags_[at + 2].integer() != 0;
        const double start = tags_[at].real(), length = tags_[at + 1].real() - start;
        const double turned = plane_.angle(counter ? start : -start);
        const double kept = wholeTurn(counter != plane_.mirrored ? turned : -turned);
        setRealAt(tags_, at, kept);
        setRealAt(tags_, at + 1, kept + length);
    }

    void patternGroup(size_t at) {
        switch (tags_[at].code()) {
            case 10:
                movePoint(at);
                break;
            case 52:
            case 53:
                setRealAt(tags_, at, plane_.angle(tags_[at].real()));
                break;
            case 41:
            case 49:
                scaleLength(at);
                break;
            case 43:
            case 45:
                patternPair(at);
                break;
            default:
                break;
        }
    }

    /// Base point (43, 44) or offset (45, 46) of a pattern line; y has the code behind that of x.
    void patternPair(size_t at) {
        const int code = tags_[at].code();
        if (at + 1 >= tags_.size() || tags_[at + 1].code() != code + 1) return;
        const double x = tags_[at].real(), y = tags_[at + 1].real();
        const AcGePoint3d moved = code == 43 ? plane_.point(x, y, elevation_)
                                             : AcGePoint3d() + plane_.map * AcGeVector3d(x, y, 0.0);
        setRealAt(tags_, at, moved.x);
        setRealAt(tags_, at + 1, moved.y);
    }

    Tags& tags_;
    const PlaneMap& plane_;
    double elevation_ = 0.0;
    Place place_ = Place::Head;
    int64_t edge_ = kNone;
};

}  // namespace

bool transformHatch(Tags& tags, const AcGeMatrix3d& matrix) {
    const PlaneMap plane(normalOf(tags), matrix);
    if (!plane.similar) return false;
    HatchTransform(tags, plane).run();
    setNormal(tags, plane.normal);
    return true;
}

}  // namespace host
