/// ARC in its forms: three points; start, centre and something; start, end and something.
#include <cmath>
#include <numbers>

#include "command/arcs.h"
#include "command/drafting.h"

namespace host {
namespace {

constexpr const char16_t* kNoArc = u"these points make no arc.";

/// The forms of ARC work on an included angle between two ends, all in the plane of the coordinate
/// system at the height of the first point.
class ArcCommand {
  public:
    explicit ArcCommand(CommandPrompt& prompt) : prompt_(prompt), drafting_(prompt) {}

    void run() {
        ads_point given;
        const Answered answer = prompt_.point(
            {u"Specify start point of arc or [Center]: ", RSG_NONULL, u"Center", nullptr}, given);
        if (answer == Answered::Keyword) {
            const AcGePoint3d centre = askPoint(prompt_, u"Specify center point of arc: ");
            start_ = askPoint(prompt_, u"Specify start point of arc: ", centre);
            return byCentre(centre);
        }
        start_ = toPoint(given);
        const BasePoint base(start_);
        const Answered second = prompt_.point(
            {u"Specify second point of arc or [Center/End]: ", RSG_NONULL, u"Center End", base},
            given);
        if (second == Answered::Value) return byThreePoints(toPoint(given));
        if (prompt_.given(u"Center")) {
            byCentre(askPoint(prompt_, u"Specify center point of arc: ", start_));
        } else {
            byEnd(askPoint(prompt_, u"Specify end point of arc: ", start_));
        }
    }

  private:
    void byThreePoints(const AcGePoint3d& second) {
        const AcGePoint2d end = inPlane(askPoint(prompt_, u"Specify end point of arc: ", second));
        const auto circle = circleThrough(inPlane(start_), inPlane(second), end);
        if (!circle) prompt_.refuse(kNoArc);
        const double from = directionTo(circle->centre, inPlane(start_));
        const double to = directionTo(circle->centre, end);
        const bool clockwise = includedThrough(inPlane(start_), inPlane(second), end) < 0.0;
        add({circle->centre, circle->radius, clockwise ? to : from, clockwise ? from : to});
    }

    void byCentre(const AcGePoint3d& centre) {
        const AcGePoint2d middle = inPlane(centre);
        const double radius = middle.distanceTo(inPlane(start_));
        if (radius == 0.0) prompt_.refuse(kNoArc);
        const BasePoint base(centre);
        ads_point given;
        const Answered answer =
            prompt_.point({u"Specify end point of arc or [Angle/chord Length]: ", RSG_NONULL,
                           u"Angle Length", base},
                          given);
        double included = 0.0;
        if (answer == Answered::Value) {
            included = includedAround(middle, inPlane(start_), inPlane(toPoint(given)));
        } else if (prompt_.given(u"Angle")) {
            included = askIncluded(base);
        } else {
            double chord = 0.0;
            prompt_.distance(
                {u"Specify length of chord: ", RSG_NONULL | RSG_NOZERO, u"", BasePoint(start_)},
                chord);
            const auto by_chord = includedByChord(radius, chord);
            if (!by_chord) prompt_.refuse(u"the chord is longer than the diameter.");
            included = *by_chord;
        }
        const double from = directionTo(middle, inPlane(start_));
        if (std::fabs(included) >= 2.0 * std::numbers::pi) prompt_.refuse(kNoArc);
        const double to = from + included;
        add({middle, radius, included < 0.0 ? to : from, included < 0.0 ? from : to});
    }

    void byEnd(const AcGePoint3d& end) {
        const BasePoint base(start_);
        ads_point given;
        const Answered answer =
            prompt_.point({u"Specify center point of arc or [Angle/Direction/Radius]: ", RSG_NONULL,
                           u"Angle Direction Radius", base},
                          given);
        if (answer == Answered::Value) return byCentreAndEnd(toPoint(given), end);
        if (prompt_.given(u"Angle")) return draw(end, askIncluded(base));
        if (prompt_.given(u"Direction")) {
            double direction = 0.0;
            prompt_.angle(
                {u"Specify tangent direction for the start point of arc: ", RSG_NONULL, u"", base},
                direction);
            return draw(end, includedByDirection(inPlane(start_), inPlane(end), direction));
        }
        double radius = 0.0;
        const BasePoint from_end(end);
        prompt_.distance({u"Specify radius of arc: ", RSG_NONULL | RSG_NOZERO, u"", from_end},
                         radius);
        const auto included = includedByRadius(inPlane(start_), inPlane(end), radius);
        if (!included) prompt_.refuse(u"the radius is too small.");
        draw(end, *included);
    }

    /// The end point gives no more than the direction in which the arc ends.
    void byCentreAndEnd(const AcGePoint3d& centre, const AcGePoint3d& end) {
        const AcGePoint2d middle = inPlane(centre);
        const double radius = middle.distanceTo(inPlane(start_));
        if (radius == 0.0) prompt_.refuse(kNoArc);
        const double from = directionTo(middle, inPlane(start_));
        add({middle, radius, from, from + includedAround(middle, inPlane(start_), inPlane(end))});
    }

    double askIncluded(const double* base) {
        double included = 0.0;
        prompt_.relativeAngle({u"Specify included angle: ", RSG_NONULL | RSG_NOZERO, u"", base},
                              included);
        return included;
    }

    void draw(const AcGePoint3d& end, double included) {
        const auto arc = arcByAngle(inPlane(start_), inPlane(end), included);
        if (!arc) prompt_.refuse(kNoArc);
        add(*arc);
    }

    void add(const PlaneArc& arc) {
        NewGroups groups;
        drafting_.thicken(groups.mark(u"AcDbCircle"));
        groups.point(10, drafting_.flat({arc.centre.x, arc.centre.y, start_.z}));
        groups.real(40, arc.radius);
        drafting_.direct(groups);
        groups.mark(u"AcDbArc").real(50, drafting_.flatAngle(arc.start));
        drafting_.add("ARC", groups.real(51, drafting_.flatAngle(arc.end)));
    }

    CommandPrompt& prompt_;
    Drafting drafting_;
    AcGePoint3d start_;
};

void drawArc(CommandPrompt& prompt) {
    ArcCommand(prompt).run();
}

const Command kCommands[] = {
    {u"ARC", u"A", drawArc, true,
     "Draws an arc by three points, or by two of start, centre and end and an angle or length."},
};

}  // namespace

std::span<const Command> arcCommands() {
    return kCommands;
}

}  // namespace host
