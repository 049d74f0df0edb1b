/// PLINE: lines and arcs that make one flat polyline.
#include <cmath>
#include <numbers>

#include "acad/ads.h"
#include "command/arcs.h"
#include "command/drafting.h"
#include "edit/sysvars.h"

namespace host {
namespace {

constexpr const char16_t* kNoArc = u"These points make no arc.";

class PolylineCommand {
  public:
    explicit PolylineCommand(CommandPrompt& prompt) : prompt_(prompt), drafting_(prompt) {}

    void run() {
        const AcGePoint3d start = askPoint(prompt_, u"Specify start point: ");
        start_ = inPlane(start);
        z_ = start.z;
        start_width_ = end_width_ = realVariable("PLINEWID", 0.0);
        prompt_.say(u"Current line-width is " + shown(end_width_));
        try {
            while (arcs_ ? arcStep() : lineStep()) {
            }
        } catch (const Cancelled&) {
            // What was drawn until the cancel stays.
            add();
            throw;
        }
        add();
    }

  private:
    struct Segment {
        AcGePoint2d to;
        double bulge = 0.0;
        double start_width = 0.0;
        double end_width = 0.0;
    };

    const AcGePoint2d& last() const { return segments_.empty() ? start_ : segments_.back().to; }
    const AcGePoint2d& fromOf(size_t segment) const {
        return segment == 0 ? start_ : segments_[segment - 1].to;
    }
    BasePoint base() const { return BasePoint({last().x, last().y, z_}); }

    /// Direction in which the last segment ends.
    double direction() const {
        if (segments_.empty()) return 0.0;
        const Segment& segment = segments_.back();
        const double chord = directionTo(fromOf(segments_.size() - 1), segment.to);
        return chord + 2.0 * std::atan(segment.bulge);
    }

    void append(const AcGePoint2d& to, double bulge = 0.0) {
        segments_.push_back({to, bulge, start_width_, end_width_});
        start_width_ = end_width_;
    }

    void appendArc(const AcGePoint2d& to, double included) {
        if (!arcByAngle(last(), to, included)) {
            // What is tangent to a line and ends on it is a line.
            prompt_.say(kNoArc);
        } else {
            append(to, std::tan(included / 4.0));
        }
    }

    AcGePoint2d ask(std::u16string_view text) const {
        return inPlane(askPoint(prompt_, text, {last().x, last().y, z_}));
    }

    // --- lines ----------------------------------------------------------------------------------

    /// @return false at the end of the polyline
    bool lineStep() {
        const bool can_close = segments_.size() > 1;
        ads_point given;
        const Answered answer = prompt_.point(
            {can_close ? u"Specify next point or [Arc/Close/Halfwidth/Length/Undo/Width]: "
                       : u"Specify next point or [Arc/Halfwidth/Length/Undo/Width]: ",
             0,
             can_close ? u"Arc Close Halfwidth Length Undo Width"
                       : u"Arc Halfwidth Length Undo Width",
             base()},
            given);
        if (answer == Answered::Nothing) return false;
        if (answer == Answered::Value) {
            append(inPlane(toPoint(given)));
        } else if (prompt_.given(u"Close")) {
            append(start_);
            closed_ = true;
        } else if (prompt_.given(u"Arc")) {
            arcs_ = true;
        } else if (prompt_.given(u"Length")) {
            double length = 0.0;
            prompt_.distance({u"Specify length of line: ", RSG_NONULL, u"", base()}, length);
            append(pointAlong(last(), direction(), length));
        } else {
            common();
        }
        return !closed_;
    }

    // --- arcs -----------------------------------------------------------------------------------

    bool arcStep() {
        ads_point given;
        const Answered answer = prompt_.point(
            {u"Specify endpoint of arc or [Angle/CEnter/CLose/Direction/Halfwidth/"
             u"Line/Radius/Second pt/Undo/Width]: ",
             0, u"Angle CEnter CLose Direction Halfwidth Line Radius Second Undo Width", base()},
            given);
        if (answer == Answered::Nothing) return false;
        if (answer == Answered::Value) {
            const AcGePoint2d to = inPlane(toPoint(given));
            appendArc(to, includedByDirection(last(), to, direction()));
        } else if (prompt_.given(u"CLose")) {
            closeByArc();
        } else if (prompt_.given(u"Line")) {
            arcs_ = false;
        } else if (prompt_.given(u"Angle")) {
            double included = 0.0;
            prompt_.relativeAngle({u"Specify included angle: ", RSG_NONULL, u"", base()}, included);
            appendArc(ask(u"Specify endpoint of arc: "), included);
        } else if (prompt_.given(u"CEnter")) {
            const AcGePoint2d centre = ask(u"Specify center point of arc: ");
            arcAround(centre);
        } else if (prompt_.given(u"Direction")) {
            double tangent = 0.0;
            prompt_.angle({u"Specify the tangent direction for the start point of arc: ",
                           RSG_NONULL, u"", base()},
                          tangent);
            const AcGePoint2d to = ask(u"Specify endpoint of the arc: ");
            appendArc(to, includedByDirection(last(), to, tangent));
        } else if (prompt_.given(u"Radius")) {
            arcByRadius();
        } else if (prompt_.given(u"Second")) {
            const AcGePoint2d second = ask(u"Specify second point on arc: ");
            const AcGePoint2d to = ask(u"Specify end point of arc: ");
            appendArc(to, includedThrough(last(), second, to));
        } else {
            common();
        }
        return !closed_;
    }

    void closeByArc() {
        if (segments_.empty()) return prompt_.say(u"There is nothing to close.");
        const size_t before = segments_.size();
        appendArc(start_, includedByDirection(last(), start_, direction()));
        closed_ = segments_.size() > before;
    }

    void arcAround(const AcGePoint2d& centre) {
        const double radius = centre.distanceTo(last());
        ads_point given;
        const Answered answer =
            prompt_.point({u"Specify endpoint of arc or [Angle/Length]: ", RSG_NONULL,
                           u"Angle Length", BasePoint({centre.x, centre.y, z_})},
                          given);
        double included = 0.0;
        if (answer == Answered::Value) {
            included = includedAround(centre, last(), inPlane(toPoint(given)));
        } else if (prompt_.given(u"Angle")) {
            prompt_.relativeAngle({u"Specify included angle: ", RSG_NONULL, u"", base()}, included);
        } else {
            double chord = 0.0;
            prompt_.distance({u"Specify length of chord: ", RSG_NONULL, u"", base()}, chord);
            included = includedByChord(radius, chord).value_or(0.0);
        }
        appendArc(pointAlong(centre, directionTo(centre, last()) + included, radius), included);
    }

    void arcByRadius() {
        double radius = 0.0;
        prompt_.distance({u"Specify radius of arc: ", RSG_NONULL | RSG_NOZERO, u"", base()},
                         radius);
        const AcGePoint2d to = ask(u"Specify endpoint of arc: ");
        const auto included = includedByRadius(last(), to, radius);
        if (!included) return prompt_.say(u"The radius is too small.");
        appendArc(to, *included);
    }

    // --- what lines and arcs have in common -----------------------------------------------------

    void common() {
        if (prompt_.given(u"Undo")) {
            if (segments_.empty()) return prompt_.say(u"All segments already undone.");
            segments_.pop_back();
        } else {
            askWidth(prompt_.given(u"Halfwidth") ? 2.0 : 1.0);
        }
    }

    void askWidth(double factor) {
        const std::u16string what = factor == 2.0 ? u"half-width <" : u"width <";
        double start = end_width_ / factor;
        prompt_.distance(
            {u"Specify starting " + what + shown(start) + u">: ", RSG_NONEG, u"", base()}, start);
        double end = start;
        prompt_.distance({u"Specify ending " + what + shown(end) + u">: ", RSG_NONEG, u"", base()},
                         end);
        start_width_ = start * factor;
        end_width_ = end * factor;
        setVariable("PLINEWID", end_width_);
    }

    bool hasOneWidth() const {
        for (const Segment& segment : segments_) {
            if (segment.start_width != segments_[0].start_width ||
                segment.end_width != segments_[0].start_width) {
                return false;
            }
        }
        return true;
    }

    void addVertex(NewGroups& groups, const AcGePoint2d& at, const Segment* next,
                   bool one_width) const {
        groups.flatPoint(10, drafting_.flat({at.x, at.y, z_}));
        if (next == nullptr) return;
        if (!one_width) groups.real(40, next->start_width).real(41, next->end_width);
        if (next->bulge != 0.0) groups.real(42, next->bulge);
    }

    void add() const {
        if (segments_.empty()) return;
        const size_t count = segments_.size() + (closed_ ? 0 : 1);
        const int64_t generated = integerVariable("PLINEGEN", 0) != 0 ? 128 : 0;
        const bool one_width = hasOneWidth();
        NewGroups groups;
        groups.mark(u"AcDbPolyline").integer(90, static_cast<int64_t>(count));
        groups.integer(70, generated | (closed_ ? 1 : 0));
        if (one_width) groups.real(43, segments_[0].start_width);
        const double elevation = drafting_.flat({start_.x, start_.y, z_}).z;
        if (elevation != 0.0) groups.real(38, elevation);
        drafting_.thicken(groups);
        for (size_t i = 0; i < count; ++i) {
            const Segment* next = i < segments_.size() ? &segments_[i] : nullptr;
            addVertex(groups, fromOf(i), next, one_width);
        }
        drafting_.direct(groups);
        drafting_.add("LWPOLYLINE", groups);
    }

    CommandPrompt& prompt_;
    Drafting drafting_;
    AcGePoint2d start_;
    double z_ = 0.0;
    std::vector<Segment> segments_;
    double start_width_ = 0.0;
    double end_width_ = 0.0;
    bool arcs_ = false;
    bool closed_ = false;
};

void drawPolyline(CommandPrompt& prompt) {
    PolylineCommand(prompt).run();
}

const Command kCommands[] = {
    {u"PLINE", u"PL", drawPolyline, true, "Draws a polyline of lines and arcs, with widths."},
};

}  // namespace

std::span<const Command> polylineCommands() {
    return kCommands;
}

}  // namespace host
