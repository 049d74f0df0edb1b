/// Object snaps. Everything is done in the display system, in which the aperture is a circle about
/// the picked point and depth is z.
#include "edit/osnap.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "acad/ed.h"
#include "base/faults.h"
#include "edit/drawing_state.h"
#include "edit/shapes.h"
#include "edit/tag_values.h"
#include "kz_tls21an/text.h"

namespace host {
namespace {

/// A curve that crosses the aperture.
struct Candidate {
    Curve curve;
    CurveRole role;
    CurvePlace place;  ///< next to the picked point
};

class SnapVisitor : public ShapeVisitor {
  public:
    SnapVisitor(const AcGePoint3d& picked, double aperture, int modes, const AcGePoint3d& from)
        : picked_(picked), aperture_(aperture), modes_(modes), from_(from) {}

    void curve(const Curve& curve, CurveRole role) override {
        const CurvePlace place = curve.nearest(picked_.x, picked_.y);
        if (place.distance > aperture_) return;
        touch();
        if (role == CurveRole::Frame) return;
        candidates_.push_back({curve, role, place});
        offerPlaces(candidates_.back());
    }

    void mark(MarkKind kind, const AcGePoint3d& point) override {
        const int mode = kind == MarkKind::Node  ? kSnapNode
                         : kind == MarkKind::End ? kSnapEnd
                                                 : kSnapInsertion;
        if (inAperture(point)) touch();
        if ((modes_ & mode) == 0 || open_.empty()) return;
        open_.back().marks.push_back(point);
    }

    void begin(Slot) override { open_.emplace_back(); }

    /// The marks of an entity count when any part of it crosses the aperture.
    void end(Slot) override {
        const Entity entity = std::move(open_.back());
        open_.pop_back();
        if (!entity.touched) return;
        if (!open_.empty()) open_.back().touched = true;
        for (const AcGePoint3d& mark : entity.marks)
            offer(mark);
    }

    bool enters(const AcDbExtents& box, int) override {
        return picked_.x >= box.minPoint().x - aperture_ &&
               picked_.x <= box.maxPoint().x + aperture_ &&
               picked_.y >= box.minPoint().y - aperture_ &&
               picked_.y <= box.maxPoint().y + aperture_;
    }

    /// The next point of all that were found.
    const std::optional<AcGePoint3d>& found() {
        if ((modes_ & (kSnapIntersection | kSnapApparent)) != 0) offerCrossings();
        return found_;
    }

  private:
    struct Entity {
        std::vector<AcGePoint3d> marks;
        bool touched = false;
    };

    void touch() {
        if (!open_.empty()) open_.back().touched = true;
    }

    double away(const AcGePoint3d& point) const {
        return std::hypot(point.x - picked_.x, point.y - picked_.y);
    }
    bool inAperture(const AcGePoint3d& point) const { return away(point) <= aperture_; }

    void offer(const AcGePoint3d& point) {
        if (found_ && away(*found_) <= away(point)) return;
        found_ = point;
    }

    void offerPlaces(const Candidate& candidate) {
        const Curve& curve = candidate.curve;
        const bool exact = candidate.role == CurveRole::Drawn;
        if (wants(kSnapEnd) && exact && !curve.isClosed()) {
            offer(curve.start());
            offer(curve.end());
        }
        if (wants(kSnapMiddle) && exact && !curve.isClosed()) offer(curve.at(0.5));
        if (wants(kSnapCentre) && !curve.isLine()) offer(curve.centre());
        if (wants(kSnapNearest)) offer(curve.at(candidate.place.t));
        const auto offerAll = [&](const std::vector<double>& places) {
            for (const double t : places)
                offer(curve.at(t));
        };
        if (wants(kSnapQuadrant)) offerAll(curve.quadrants());
        if (wants(kSnapPerpendicular)) offerAll(curve.perpendiculars(from_));
        if (wants(kSnapTangent)) offerAll(curve.tangents(from_));
    }

    bool wants(int mode) const { return (modes_ & mode) != 0; }

    /// Crossings of the curves next to the picked point. Far more of them cross a wide aperture
    /// than anyone can mean, and each pair costs.
    void offerCrossings() {
        constexpr size_t kMost = 64;
        const size_t count = std::min(candidates_.size(), kMost);
        std::partial_sort(candidates_.begin(), candidates_.begin() + static_cast<ptrdiff_t>(count),
                          candidates_.end(), [](const Candidate& a, const Candidate& b) {
                              return a.place.distance < b.place.distance;
                          });
        for (size_t i = 0; i < count; ++i) {
            for (size_t k = i + 1; k < count; ++k)
                offerCrossingsOf(candidates_[i].curve, candidates_[k].curve);
        }
    }

    void offerCrossingsOf(const Curve& a, const Curve& b) {
        for (const Curve::Crossing& crossing : a.crossings(b)) {
            const AcGePoint3d on_a = a.at(crossing.t), on_b = b.at(crossing.other);
            if (!inAperture(on_a)) continue;
            // Curves at different depths only seem to cross.
            const double size = std::fabs(on_a.x) + std::fabs(on_a.y) + std::fabs(on_a.z);
            const bool real = std::fabs(on_a.z - on_b.z) <= 1e-6 + 1e-9 * size;
            if (real || wants(kSnapApparent)) offer(on_a);
        }
    }

    AcGePoint3d picked_;
    double aperture_;
    int modes_;
    AcGePoint3d from_;
    std::vector<Entity> open_;
    std::vector<Candidate> candidates_;
    std::optional<AcGePoint3d> found_;
};

constexpr struct {
    std::string_view name;
    int mode;
} kModeNames[] = {{"endpoint", kSnapEnd},
                  {"midpoint", kSnapMiddle},
                  {"center", kSnapCentre},
                  {"centre", kSnapCentre},
                  {"node", kSnapNode},
                  {"quadrant", kSnapQuadrant},
                  {"intersection", kSnapIntersection},
                  {"insertion", kSnapInsertion},
                  {"perpendicular", kSnapPerpendicular},
                  {"tangent", kSnapTangent},
                  {"nearest", kSnapNearest},
                  {"quick", kSnapQuick},
                  {"appint", kSnapApparent},
                  {"none", 0}};

/// A mode by its name or the first letters of it.
std::optional<int> modeOf(std::string name) {
    for (char& c : name)
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    if (name.starts_with('_')) name.erase(0, 1);
    constexpr size_t kShortest = 3;
    if (name.size() < kShortest) return std::nullopt;
    for (const auto& row : kModeNames) {
        if (row.name.starts_with(name)) return row.mode;
    }
    return std::nullopt;
}

std::string withoutBlanks(std::string_view text) {
    const size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return std::string(text.substr(first, text.find_last_not_of(' ') + 1 - first));
}

/// The last entity of a space that the modes find a point of.
std::optional<AcGePoint3d> quickSnap(Database& database, const AcGeMatrix3d& to_display,
                                     const SnapVisitor& fresh) {
    const Block* space = database.findBlock(currentSpace(database));
    if (space == nullptr) return std::nullopt;
    ShapeWalker walker(database);
    for (size_t i = space->contents.size(); i-- > 0;) {
        const Slot slot = space->contents[i];
        if (database.record(slot).object_class != ObjectClass::Entity) continue;
        SnapVisitor visitor = fresh;
        walker.visit(slot, to_display, visitor);
        if (visitor.found()) return visitor.found();
    }
    return std::nullopt;
}

}  // namespace

std::optional<int> snapModes(std::string_view text) {
    int modes = 0;
    for (;;) {
        const size_t comma = text.find(',');
        const std::optional<int> mode = modeOf(withoutBlanks(text.substr(0, comma)));
        if (!mode) return std::nullopt;
        modes |= *mode;
        if (comma == std::string_view::npos) return modes;
        text.remove_prefix(comma + 1);
    }
}

std::optional<AcGePoint3d> snapPoint(Database& database, const AcGePoint3d& point, int modes) {
    if (!isFinite(point)) return std::nullopt;
    const AcGeMatrix3d to_display = currentView(database).worldToDisplay();
    const AcGeMatrix3d user_to_display = to_display * currentUcs(database).toWorld();
    const double aperture = integerVariable("APERTURE", 10) * pixelSize(database);
    SnapVisitor visitor(user_to_display * point, aperture, modes,
                        to_display * drawingState(database).last_point);
    std::optional<AcGePoint3d> found;
    if ((modes & kSnapQuick) != 0) {
        found = quickSnap(database, to_display, visitor);
    } else {
        ShapeWalker(database).visitBlock(currentSpace(database), to_display, visitor);
        found = visitor.found();
    }
    if (found) *found = user_to_display.inverse() * *found;
    return found;
}

}  // namespace host

extern "C" int acedOsnap(const ads_point point, const ACHAR* modes, ads_point result) {
    int status = 0;
    if (host::mustFail(host::Call::acedOsnap, status)) return status;
    host::Database* database = host::currentDatabase();
    if (point == nullptr || modes == nullptr || result == nullptr || database == nullptr) {
        return RTERROR;
    }
    const std::optional<int> wanted = host::snapModes(kz::toUtf8(modes));
    if (!wanted) return RTERROR;
    const auto found = host::snapPoint(*database, {point[0], point[1], point[2]}, *wanted);
    if (!found) return RTERROR;
    for (unsigned int i = 0; i < 3; ++i)
        result[i] = (*found)[i];
    return RTNORM;
}
