/// ID and DIST: what points say.
#include <cmath>

#include "command/arcs.h"
#include "command/drafting.h"
#include "edit/sysvars.h"

namespace host {
namespace {

void showPoint(CommandPrompt& prompt) {
    const AcGePoint3d point = askPoint(prompt, u"Specify point: ");
    prompt.say(u"X = " + shown(point.x) + u"     Y = " + shown(point.y) + u"     Z = " +
               shown(point.z));
}

void showDistance(CommandPrompt& prompt) {
    const AcGePoint3d from = askPoint(prompt, u"Specify first point: ");
    const AcGePoint3d to = askPoint(prompt, u"Specify second point: ", from);
    const AcGeVector3d way = to - from;
    const double flat = std::hypot(way.x, way.y);
    keepVariable("DISTANCE", way.length());
    prompt.say(u"Distance = " + shown(way.length()) + u",  Angle in XY Plane = " +
               shownAngle(directionTo(inPlane(from), inPlane(to))) + u",  Angle from XY Plane = " +
               shownAngle(std::atan2(way.z, flat)));
    prompt.say(u"Delta X = " + shown(way.x) + u",  Delta Y = " + shown(way.y) + u",  Delta Z = " +
               shown(way.z));
}

const Command kCommands[] = {
    {u"ID", nullptr, showPoint, false, "Shows the coordinates of a point."},
    {u"DIST", u"DI", showDistance, false, "Shows distance and direction between two points."},
};

}  // namespace

std::span<const Command> inquiryCommands() {
    return kCommands;
}

}  // namespace host
