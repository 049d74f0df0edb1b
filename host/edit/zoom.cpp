/// Changes of the view: each works out a view and makes it the present one.
#include "edit/zoom.h"

#include <algorithm>

#include "base/angles.h"
#include "edit/drawing_state.h"
#include "edit/shapes.h"
#include "edit/tag_values.h"

namespace host {
namespace {

constexpr Refusal kNotFinite = u"A view needs numbers that are finite.";
constexpr Refusal kNoHeight = u"A view needs a height above zero.";
constexpr Refusal kNoSuchView = u"There is no view of this name.";

/// A point of the user in the coordinates of a view.
AcGePoint3d toDisplay(Database& database, const View& view, const AcGePoint3d& point) {
    return view.worldToDisplay() * (currentUcs(database).toWorld() * point);
}

/// Lets a view show a rectangle of its display, as large as it goes. False for one without a size.
bool showBox(Database& database, const AcGePoint3d& least, const AcGePoint3d& greatest,
             View& view) {
    const double width = greatest.x - least.x, height = greatest.y - least.y;
    const double needed = std::max(height, width / viewAspect(database));
    if (!(needed > 0.0) || !std::isfinite(needed)) return false;
    view.centre = {least.x + width / 2, least.y + height / 2};
    view.height = needed;
    return true;
}

AcDbExtents boxAround(const AcGePoint3d& a, const AcGePoint3d& b) {
    AcDbExtents box;
    box.addPoint(a);
    box.addPoint(b);
    return box;
}

/// The limits of the space that is worked in, in the display of a view.
AcDbExtents limitsBox(Database& database, const View& view) {
    const bool paper = inPaperSpace(database);
    const auto corner = [&](const char* name, const AcGePoint3d& otherwise) {
        const HeaderVariable* header = database.header((paper ? "$P" : "$") + std::string(name));
        return header == nullptr ? otherwise : pointOf(header->tags, 10, otherwise);
    };
    AcDbExtents box = boxAround(corner("LIMMIN", {}), corner("LIMMAX", {420.0, 297.0, 0.0}));
    box.transformBy(view.worldToDisplay());
    return box;
}

/// Lets a view show all that is drawn: all of a point of it, too. What is not drawn leaves it.
void showDrawn(Database& database, const AcDbExtents& box, View& view) {
    if (box.isEmpty()) return;
    if (!showBox(database, box.minPoint(), box.maxPoint(), view)) {
        view.centre = {box.minPoint().x, box.minPoint().y};
    }
}

AcDbExtents drawnBox(Database& database, const View& view) {
    return drawnExtents(database, currentSpace(database), view.worldToDisplay());
}

bool isPlan(const View& view) {
    return std::hypot(view.direction.x, view.direction.y) <=
               kGeTolerance * view.direction.length() &&
           view.direction.z > 0.0;
}

/// Codes of a record of the VIEW table.
constexpr int kFlags = 70, kHeight = 40, kWidth = 41, kLens = 42, kFront = 43, kBack = 44;
constexpr int kCentre = 10, kDirection = 11, kTarget = 12, kTwist = 50, kMode = 71;
constexpr int64_t kOfPaper = 1;

}  // namespace

Refusal zoomWindow(Database& database, const AcGePoint3d& corner, const AcGePoint3d& opposite) {
    if (!isFinite(corner) || !isFinite(opposite)) return kNotFinite;
    View view = currentView(database);
    const AcDbExtents box =
        boxAround(toDisplay(database, view, corner), toDisplay(database, view, opposite));
    if (!showBox(database, box.minPoint(), box.maxPoint(), view)) {
        return u"The window needs two different corners.";
    }
    return setView(database, view);
}

Refusal zoomCentre(Database& database, const AcGePoint3d& centre, std::optional<double> height) {
    if (!isFinite(centre)) return kNotFinite;
    View view = currentView(database);
    const AcGePoint3d middle = toDisplay(database, view, centre);
    view.centre = {middle.x, middle.y};
    view.height = height.value_or(view.height);
    return setView(database, view);
}

Refusal zoomLeft(Database& database, const AcGePoint3d& corner, std::optional<double> height) {
    if (!isFinite(corner)) return kNotFinite;
    View view = currentView(database);
    const AcGePoint3d left = toDisplay(database, view, corner);
    view.height = height.value_or(view.height);
    view.centre = {left.x + view.height * viewAspect(database) / 2, left.y + view.height / 2};
    return setView(database, view);
}

Refusal zoomScale(Database& database, double factor, ZoomBase base) {
    if (!(factor > 0.0) || !std::isfinite(factor)) return u"A magnification must be above zero.";
    View view = currentView(database);
    double whole = view.height;
    if (base == ZoomBase::Limits) {
        View all = view;
        const AcDbExtents box = limitsBox(database, view);
        if (!showBox(database, box.minPoint(), box.maxPoint(), all)) return kNoHeight;
        whole = all.height;
    } else if (base == ZoomBase::Paper) {
        const Slot viewport = inModelTiles(database) || inPaperSpace(database)
                                  ? kNoSlot
                                  : layoutViewport(database, currentViewport(database));
        if (viewport == kNoSlot) return u"This works in a viewport of a layout only.";
        whole = realOf(database.tags(viewport), 41, 0.0);
    }
    view.height = whole / factor;
    return setView(database, view);
}

Refusal zoomExtents(Database& database) {
    View view = currentView(database);
    const AcDbExtents drawn = drawnBox(database, view);
    showDrawn(database, drawn.isEmpty() ? limitsBox(database, view) : drawn, view);
    return setView(database, view);
}

Refusal zoomAll(Database& database) {
    View view = currentView(database);
    AcDbExtents box = drawnBox(database, view);
    if (isPlan(view) || box.isEmpty()) box.addExt(limitsBox(database, view));
    showDrawn(database, box, view);
    return setView(database, view);
}

Refusal zoomPrevious(Database& database) {
    History<View>& history = viewHistory(database);
    if (history.empty()) return u"There is no view before this one.";
    keepView(database, history.pop());
    return kDone;
}

Refusal panView(Database& database, const AcGePoint3d& from, const AcGePoint3d& to) {
    if (!isFinite(from) || !isFinite(to)) return kNotFinite;
    View view = currentView(database);
    const AcGeVector3d way = toDisplay(database, view, to) - toDisplay(database, view, from);
    view.centre = {view.centre.x - way.x, view.centre.y - way.y};
    return setView(database, view);
}

namespace {

/// Looks from a direction of the world and shows all that is drawn.
Refusal lookFrom(Database& database, const AcGeVector3d& direction, double twist) {
    View view = currentView(database);
    view.target = AcGePoint3d();
    view.direction = direction;
    view.twist = twist;
    if (!isFinite(direction)) return kNotFinite;
    if (direction.isZeroLength()) return u"A view needs a direction.";
    const AcDbExtents drawn = drawnBox(database, view);
    showDrawn(database, drawn.isEmpty() ? limitsBox(database, view) : drawn, view);
    return setView(database, view);
}

}  // namespace

Refusal setViewDirection(Database& database, const AcGeVector3d& direction) {
    return lookFrom(database, currentUcs(database).toWorld() * direction, 0.0);
}

Refusal planView(Database& database, const Ucs& ucs) {
    View straight;
    straight.direction = ucs.z();
    const AcGeVector3d x = straight.worldToDisplay() * ucs.x;
    // The picture is turned back by the angle at which the x axis would stand.
    return lookFrom(database, ucs.z(), -std::atan2(x.y, x.x));
}

// --- named views --------------------------------------------------------------------------------

Refusal saveView(Database& database, std::u16string_view name) {
    if (acdbSNValid(std::u16string(name).c_str(), 0) != RTNORM) {
        return u"This is no name for a view.";
    }
    const View view = currentView(database);
    Slot record = database.findSymbol("VIEW", name);
    if (record == kNoSlot) record = database.makeSymbol("VIEW", name, {});
    Tags& tags = database.changeTags(record);
    replaceTag(tags, Tag(kFlags, inPaperSpace(database) ? kOfPaper : 0));
    replaceTag(tags, Tag(kHeight, view.height));
    replacePoint(tags, kCentre, view.centre);
    replaceTag(tags, Tag(kWidth, view.height * viewAspect(database)));
    replacePoint(tags, kDirection, AcGePoint3d() + view.direction);
    replacePoint(tags, kTarget, view.target);
    replaceTag(tags, Tag(kLens, view.lens));
    replaceTag(tags, Tag(kFront, view.front));
    replaceTag(tags, Tag(kBack, view.back));
    replaceTag(tags, Tag(kTwist, view.twist / kDegree));
    replaceTag(tags, Tag(kMode, int64_t{view.mode}));
    database.touch(record);
    return kDone;
}

Refusal restoreView(Database& database, std::u16string_view name) {
    const Slot record = database.findSymbol("VIEW", name);
    if (record == kNoSlot) return kNoSuchView;
    const Tags& tags = database.tags(record);
    if (((integerOf(tags, kFlags, 0) & kOfPaper) != 0) != inPaperSpace(database)) {
        return u"This view is one of the other space.";
    }
    View view;
    const AcGePoint3d centre = pointOf(tags, kCentre);
    view.centre = {centre.x, centre.y};
    view.direction = vectorOf(tags, kDirection, view.direction);
    view.target = pointOf(tags, kTarget);
    view.height = std::max(realOf(tags, kHeight, view.height),
                           realOf(tags, kWidth, 0.0) / viewAspect(database));
    view.lens = realOf(tags, kLens, view.lens);
    view.front = realOf(tags, kFront, 0.0);
    view.back = realOf(tags, kBack, 0.0);
    view.twist = realOf(tags, kTwist, 0.0) * kDegree;
    view.mode = static_cast<int>(integerOf(tags, kMode, 0));
    return setView(database, view);
}

Refusal deleteView(Database& database, std::u16string_view name) {
    const Slot record = database.findSymbol("VIEW", name);
    if (record == kNoSlot) return kNoSuchView;
    database.setErased(record, true);
    return kDone;
}

}  // namespace host
