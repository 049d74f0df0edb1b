/// Commands that draw one thing: points, lines, circles, ellipses, faces, rectangles.
#include <cmath>
#include <numbers>

#include "command/arcs.h"
#include "command/drafting.h"
#include "edit/input.h"
#include "edit/sysvars.h"
#include "edit/typed_points.h"

namespace host {
namespace {

constexpr int kPositive = RSG_NONULL | RSG_NOZERO | RSG_NONEG;

// --- points and lines ---------------------------------------------------------------------------

void drawPoint(CommandPrompt& prompt) {
    const Drafting drafting(prompt);
    const AcGePoint3d place = askPoint(prompt, u"Specify a point: ");
    NewGroups groups;
    drafting.thicken(groups.mark(u"AcDbPoint").point(10, drafting.world(place)));
    drafting.direct(groups);
    drafting.add("POINT", groups);
}

Slot addLine(const Drafting& drafting, const AcGePoint3d& from, const AcGePoint3d& to) {
    NewGroups groups;
    drafting.thicken(groups.mark(u"AcDbLine"));
    groups.point(10, drafting.world(from)).point(11, drafting.world(to));
    // A line without thickness has no side that it could be extruded to.
    if (groups.has(39)) drafting.direct(groups);
    return drafting.add("LINE", groups);
}

void drawLine(CommandPrompt& prompt) {
    const Drafting drafting(prompt);
    ads_point given;
    if (prompt.point({u"Specify first point: ", 0, u"", nullptr}, given) == Answered::Nothing)
        lastPoint(given);
    std::vector<AcGePoint3d> points = {toPoint(given)};
    std::vector<Slot> lines;
    for (;;) {
        const bool can_close = lines.size() > 1;
        const BasePoint base(points.back());
        const Answered answer = prompt.point({can_close ? u"Specify next point or [Close/Undo]: "
                                                        : u"Specify next point or [Undo]: ",
                                              0, can_close ? u"Close Undo" : u"Undo", base},
                                             given);
        if (answer == Answered::Nothing) return;
        if (answer == Answered::Value) {
            lines.push_back(addLine(drafting, points.back(), toPoint(given)));
            points.push_back(toPoint(given));
        } else if (prompt.given(u"Close")) {
            addLine(drafting, points.back(), points.front());
            return;
        } else if (lines.empty()) {
            prompt.say(u"All segments already undone.");
        } else {
            drafting.takeBack(lines.back());
            lines.pop_back();
            points.pop_back();
        }
    }
}

// --- circles ------------------------------------------------------------------------------------

void addCircle(const Drafting& drafting, const AcGePoint3d& centre, double radius) {
    NewGroups groups;
    drafting.thicken(groups.mark(u"AcDbCircle"));
    drafting.direct(groups.point(10, drafting.flat(centre)).real(40, radius));
    drafting.add("CIRCLE", groups);
}

void circleByThreePoints(CommandPrompt& prompt, const Drafting& drafting) {
    const AcGePoint3d a = askPoint(prompt, u"Specify first point on circle: ");
    const AcGePoint3d b = askPoint(prompt, u"Specify second point on circle: ", a);
    const AcGePoint3d c = askPoint(prompt, u"Specify third point on circle: ", b);
    const auto circle = circleThrough(inPlane(a), inPlane(b), inPlane(c));
    if (!circle) prompt.refuse(u"the points lie on a line.");
    addCircle(drafting, {circle->centre.x, circle->centre.y, a.z}, circle->radius);
}

void circleByTwoPoints(CommandPrompt& prompt, const Drafting& drafting) {
    const AcGePoint3d a = askPoint(prompt, u"Specify first end point of circle's diameter: ");
    const AcGePoint3d b = askPoint(prompt, u"Specify second end point of circle's diameter: ", a);
    const double diameter = inPlane(a).distanceTo(inPlane(b));
    if (diameter == 0.0) prompt.refuse(u"the points are the same.");
    addCircle(drafting, {(a.x + b.x) / 2.0, (a.y + b.y) / 2.0, a.z}, diameter / 2.0);
}

void drawCircle(CommandPrompt& prompt) {
    const Drafting drafting(prompt);
    ads_point given;
    const Answered answer =
        prompt.point({u"Specify center point for circle or [3P/2P/Ttr (tan tan radius)]: ",
                      RSG_NONULL, u"3P 2P Ttr", nullptr},
                     given);
    if (answer == Answered::Keyword) {
        if (prompt.given(u"3P")) return circleByThreePoints(prompt, drafting);
        if (prompt.given(u"2P")) return circleByTwoPoints(prompt, drafting);
        prompt.refuse(u"circles by tangents are not available.");
    }
    const AcGePoint3d centre = toPoint(given);
    const BasePoint base(centre);
    const double last = realVariable("CIRCLERAD", 0.0);
    const std::u16string presents = last > 0.0 ? u" <" + shown(last) + u">: " : u": ";
    const int flags = last > 0.0 ? RSG_NOZERO | RSG_NONEG : kPositive;
    double radius = last;
    const Answered size = prompt.distance(
        {u"Specify radius of circle or [Diameter]" + presents, flags, u"Diameter", base}, radius);
    if (size == Answered::Keyword) {
        double diameter = 2.0 * last;
        prompt.distance({u"Specify diameter of circle: ", flags, u"", base}, diameter);
        radius = diameter / 2.0;
    }
    addCircle(drafting, centre, radius);
    setVariable("CIRCLERAD", radius);
}

// --- ellipses -----------------------------------------------------------------------------------

/// Asks for the other axis of an ellipse. @return its half length
double otherAxis(CommandPrompt& prompt, const AcGePoint3d& centre, double half) {
    const BasePoint base(centre);
    double other = 0.0;
    const Answered answer = prompt.distance(
        {u"Specify distance to other axis or [Rotation]: ", kPositive, u"Rotation", base}, other);
    if (answer == Answered::Value) return other;
    double turn = 0.0;
    constexpr double kFlattest = 89.4 / 180.0 * std::numbers::pi;
    prompt.angle({u"Specify rotation around major axis: ", RSG_NONULL, u"", base}, turn);
    const double flat = std::fabs(std::cos(turn));
    if (flat < std::cos(kFlattest)) prompt.refuse(u"the rotation is to be below 89.4 degrees.");
    return half * flat;
}

void drawEllipse(CommandPrompt& prompt) {
    const Drafting drafting(prompt);
    ads_point given;
    const Answered answer = prompt.point(
        {u"Specify axis endpoint of ellipse or [Arc/Center]: ", RSG_NONULL, u"Arc Center", nullptr},
        given);
    AcGePoint3d centre, end;
    if (answer == Answered::Keyword) {
        if (prompt.given(u"Arc")) prompt.refuse(u"elliptical arcs are not available.");
        centre = askPoint(prompt, u"Specify center of ellipse: ");
        end = askPoint(prompt, u"Specify endpoint of axis: ", centre);
    } else {
        const AcGePoint3d first = toPoint(given);
        end = askPoint(prompt, u"Specify other endpoint of axis: ", first);
        centre = first + (end - first) * 0.5;
    }
    // Flat in the plane of the coordinate system, at the height of its centre.
    AcGeVector3d axis = end - centre;
    axis.z = 0.0;
    if (axis.isZeroLength()) prompt.refuse(u"the axis has no length.");
    const double half = axis.length();
    double ratio = otherAxis(prompt, centre, half) / half;
    if (ratio > 1.0) {
        axis = AcGeVector3d(-axis.y, axis.x, 0.0) * ratio;
        ratio = 1.0 / ratio;
    }
    NewGroups groups;
    groups.mark(u"AcDbEllipse").point(10, drafting.world(centre));
    groups.vector(11, drafting.world(axis)).vector(210, drafting.normal()).real(40, ratio);
    drafting.add("ELLIPSE", groups.real(41, 0.0).real(42, 2.0 * std::numbers::pi));
}

// --- faces --------------------------------------------------------------------------------------

using Corners = std::vector<AcGePoint3d>;

void addSolid(const Drafting& drafting, const Corners& corners) {
    NewGroups groups;
    groups.mark(u"AcDbTrace");
    for (size_t i = 0; i < corners.size(); ++i)
        groups.point(10 + static_cast<int>(i), drafting.flat(corners[i]));
    drafting.thicken(groups);
    drafting.direct(groups);
    drafting.add("SOLID", groups);
}

void addFace(const Drafting& drafting, const Corners& corners) {
    NewGroups groups;
    groups.mark(u"AcDbFace");
    for (size_t i = 0; i < corners.size(); ++i)
        groups.point(10 + static_cast<int>(i), drafting.world(corners[i]));
    drafting.add("3DFACE", groups);
}

/// A point, or Enter. @return false for Enter
bool nextCorner(CommandPrompt& prompt, std::u16string_view text, const AcGePoint3d& from,
                AcGePoint3d& out) {
    const BasePoint base(from);
    ads_point given;
    if (prompt.point({std::u16string(text), 0, u"", base}, given) == Answered::Nothing) {
        return false;
    }
    out = toPoint(given);
    return true;
}

/// SOLID and 3DFACE: the first corners, then two more for each face that goes on. The names of the
/// corners differ by nothing but what Enter does.
void drawFaces(CommandPrompt& prompt, std::u16string_view third, std::u16string_view fourth,
               void (*add)(const Drafting&, const Corners&), bool crosses) {
    const Drafting drafting(prompt);
    Corners corners(4);
    corners[0] = askPoint(prompt, u"Specify first point: ");
    corners[1] = askPoint(prompt, u"Specify second point: ", corners[0]);
    while (nextCorner(prompt, third, corners[1], corners[2])) {
        const bool four = nextCorner(prompt, fourth, corners[2], corners[3]);
        if (!four) corners[3] = corners[2];
        add(drafting, corners);
        // The next face starts at the edge where this one ends. Corners of a solid go in a Z.
        const AcGePoint3d a = crosses ? corners[2] : corners[3];
        const AcGePoint3d b = crosses ? corners[3] : corners[2];
        corners[0] = a;
        corners[1] = b;
    }
}

void drawSolid(CommandPrompt& prompt) {
    drawFaces(prompt, u"Specify third point: ", u"Specify fourth point or <exit>: ", addSolid,
              true);
}

void draw3dFace(CommandPrompt& prompt) {
    drawFaces(prompt, u"Specify third point or <exit>: ",
              u"Specify fourth point or <create three-sided face>: ", addFace, false);
}

// --- rectangles ---------------------------------------------------------------------------------

void drawRectangle(CommandPrompt& prompt) {
    const Drafting drafting(prompt);
    const AcGePoint3d a = askPoint(prompt, u"Specify first corner point: ");
    const BasePoint base(a);
    ads_point b;
    prompt.corner({u"Specify other corner point: ", RSG_NONULL, u"", base}, b);
    if (a.x == b[0] || a.y == b[1]) prompt.refuse(u"the corners span no rectangle.");
    NewGroups groups;
    groups.mark(u"AcDbPolyline").integer(90, 4).integer(70, 1);
    groups.real(43, realVariable("PLINEWID", 0.0));
    const AcGePoint3d corners[] = {drafting.flat(a), drafting.flat({b[0], a.y, a.z}),
                                   drafting.flat({b[0], b[1], a.z}),
                                   drafting.flat({a.x, b[1], a.z})};
    if (corners[0].z != 0.0) groups.real(38, corners[0].z);
    drafting.thicken(groups);
    for (const AcGePoint3d& corner : corners)
        groups.flatPoint(10, corner);
    drafting.direct(groups);
    drafting.add("LWPOLYLINE", groups);
}

const Command kCommands[] = {
    {u"POINT", u"PO", drawPoint, true, "Draws a point."},
    {u"LINE", u"L", drawLine, true, "Draws lines from point to point."},
    {u"CIRCLE", u"C", drawCircle, true, "Draws a circle by its centre, or by two or three points."},
    {u"ELLIPSE", u"EL", drawEllipse, true, "Draws an ellipse by its axes."},
    {u"SOLID", u"SO", drawSolid, true, "Draws filled triangles and quadrilaterals."},
    {u"3DFACE", u"3F", draw3dFace, true, "Draws triangles and quadrilaterals in space."},
    {u"RECTANG", u"REC", drawRectangle, true, "Draws a rectangle between two corners."},
};

}  // namespace

std::span<const Command> drawCommands() {
    return kCommands;
}

}  // namespace host
