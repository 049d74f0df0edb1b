/// Views as they are kept, and the display coordinate system.
#include "edit/view.h"

#include "base/angles.h"
#include "edit/drawing_state.h"
#include "edit/tag_values.h"

namespace host {
namespace {

constexpr std::u16string_view kActive = u"*Active";
constexpr int kPaperItself = 1;

AcGePoint2d& screen() {
    static AcGePoint2d size(1920.0, 1080.0);
    return size;
}

/// The VIEWPORT that is worked in; kNoSlot for the tiles, and where the layout has none.
Slot currentLayoutViewport(Database& database) {
    if (inModelTiles(database)) return kNoSlot;
    return layoutViewport(database, currentViewport(database));
}

/// Code of the height in either of the two places.
constexpr int kRecordHeight = 40, kViewportHeight = 45;
constexpr int kRecordMode = 71, kViewportMode = 90;

View viewFrom(const Tags& tags, bool of_layout) {
    View view;
    view.target = pointOf(tags, 17);
    view.direction = vectorOf(tags, 16, view.direction);
    if (view.direction.isZeroLength() || !isFinite(view.direction)) {
        view.direction = AcGeVector3d::kZAxis;
    }
    view.twist = realOf(tags, 51, 0.0) * kDegree;
    const AcGePoint3d centre = pointOf(tags, 12);
    view.centre = {centre.x, centre.y};
    const double height = realOf(tags, of_layout ? kViewportHeight : kRecordHeight, view.height);
    if (height > 0.0) view.height = height;
    view.lens = realOf(tags, 42, view.lens);
    view.front = realOf(tags, 43, 0.0);
    view.back = realOf(tags, 44, 0.0);
    constexpr int64_t kModes = 31;
    view.mode =
        static_cast<int>(integerOf(tags, of_layout ? kViewportMode : kRecordMode, 0) & kModes);
    return view;
}

void writeView(Database& database, Slot slot, const View& view, bool of_layout) {
    Tags& tags = database.changeTags(slot);
    replacePoint(tags, 12, view.centre);
    replacePoint(tags, 16, AcGePoint3d() + view.direction);
    replacePoint(tags, 17, view.target);
    replaceTag(tags, Tag(of_layout ? kViewportHeight : kRecordHeight, view.height));
    replaceTag(tags, Tag(51, view.twist / kDegree));
    replaceTag(tags, Tag(42, view.lens));
    replaceTag(tags, Tag(43, view.front));
    replaceTag(tags, Tag(44, view.back));
    if (!of_layout) {
        replaceTag(tags, Tag(41, viewAspect(database)));
        replaceTag(tags, Tag(kRecordMode, int64_t{view.mode}));
    }
    database.touch(slot);
}

Tags recordTags() {
    Tags tags;
    const auto addPoint = [&](int code, double x, double y) {
        tags.emplace_back(code, x);
        tags.emplace_back(code + 10, y);
    };
    const View view;
    tags.emplace_back(70, int64_t{0});
    addPoint(10, 0.0, 0.0);
    addPoint(11, 1.0, 1.0);
    addPoint(12, 0.0, 0.0);
    addPoint(13, 0.0, 0.0);
    addPoint(14, 10.0, 10.0);
    addPoint(15, 10.0, 10.0);
    for (Tag& tag : pointTags(16, AcGePoint3d(0.0, 0.0, 1.0)))
        tags.push_back(std::move(tag));
    for (Tag& tag : pointTags(17, AcGePoint3d()))
        tags.push_back(std::move(tag));
    tags.emplace_back(40, view.height);
    tags.emplace_back(41, screenSize().x / screenSize().y);
    tags.emplace_back(42, view.lens);
    for (const int code : {43, 44, 50, 51})
        tags.emplace_back(code, 0.0);
    constexpr struct {
        int code;
        int64_t value;
    } kSettings[] = {{71, 0}, {72, 1000}, {73, 1}, {74, 3}, {75, 0}, {76, 0}, {77, 0}, {78, 0}};
    for (const auto& setting : kSettings)
        tags.emplace_back(setting.code, setting.value);
    return tags;
}

}  // namespace

AcGeMatrix3d View::displayToWorld() const {
    const AcGeVector3d z = direction.normal();
    AcGeVector3d x = AcGeVector3d::kZAxis.crossProduct(z);
    // From straight above or below the y axis of the world points up.
    if (x.isZeroLength()) x = AcGeVector3d::kYAxis.crossProduct(z);
    x.normalize().rotateBy(-twist, z);
    return AcGeMatrix3d().setCoordSystem(target, x, z.crossProduct(x), z);
}

AcGePoint2d screenSize() {
    return screen();
}

bool setScreenSize(double width, double height) {
    if (!(width >= 1.0 && height >= 1.0) || !std::isfinite(width) || !std::isfinite(height)) {
        return false;
    }
    screen() = {width, height};
    return true;
}

Slot viewRecord(Database& database) {
    return database.findSymbol("VPORT", kActive);
}

Slot needViewRecord(Database& database) {
    const Slot present = viewRecord(database);
    return present != kNoSlot ? present : database.makeSymbol("VPORT", kActive, recordTags());
}

View currentView(Database& database) {
    const Slot viewport = currentLayoutViewport(database);
    if (viewport != kNoSlot) return viewFrom(database.tags(viewport), true);
    if (!inModelTiles(database)) return drawingState(database).paper_view;
    const Slot record = viewRecord(database);
    return record == kNoSlot ? View() : viewFrom(database.tags(record), false);
}

double viewAspect(Database& database) {
    const Slot viewport = currentLayoutViewport(database);
    if (viewport != kNoSlot && currentViewport(database) != kPaperItself) {
        const Tags& tags = database.tags(viewport);
        const double width = realOf(tags, 40, 0.0), height = realOf(tags, 41, 0.0);
        if (width > 0.0 && height > 0.0) return width / height;
    }
    return screenSize().x / screenSize().y;
}

double pixelSize(Database& database) {
    return currentView(database).height / screenSize().y;
}

std::optional<AcGeMatrix3d> displayToPaper(Database& database) {
    if (inModelTiles(database)) return std::nullopt;
    const Slot viewport = currentLayoutViewport(database);
    if (inPaperSpace(database)) return AcGeMatrix3d();
    const Tags& tags = database.tags(viewport);
    const View view = viewFrom(tags, true);
    const double scale = realOf(tags, 41, 0.0) / view.height;
    if (!(scale > 0.0)) return std::nullopt;
    const AcGePoint3d centre = pointOf(tags, 10);
    AcGeMatrix3d out;
    out.setToScaling(scale);
    return out.setTranslation(
        AcGeVector3d(centre.x - scale * view.centre.x, centre.y - scale * view.centre.y, 0.0));
}

void keepView(Database& database, const View& view) {
    const Slot viewport = currentLayoutViewport(database);
    if (viewport != kNoSlot) {
        writeView(database, viewport, view, true);
    } else if (inModelTiles(database)) {
        writeView(database, needViewRecord(database), view, false);
    } else {
        drawingState(database).paper_view = view;
    }
}

Refusal setView(Database& database, const View& view) {
    if (!isFinite(view.target) || !isFinite(view.direction) || !std::isfinite(view.twist) ||
        !isFinite(AcGePoint3d(view.centre.x, view.centre.y, view.height))) {
        return u"A view needs numbers that are finite.";
    }
    if (!(view.height > 0.0)) return u"A view needs a height above zero.";
    if (view.direction.isZeroLength()) return u"A view needs a direction.";
    viewHistory(database).push(currentView(database));
    keepView(database, view);
    return kDone;
}

}  // namespace host
