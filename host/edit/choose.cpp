/// Choices and the prompt for them.
#include "edit/choose.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "acad/ed.h"
#include "edit/ask.h"
#include "edit/documents.h"
#include "edit/drawing_state.h"
#include "edit/input.h"
#include "edit/keywords.h"
#include "edit/pick.h"
#include "edit/sysvars.h"
#include "edit/tag_values.h"
#include "edit/typed_points.h"
#include "kz_tls21an/text.h"

namespace host {
namespace {

using Kind = ScreenRegion::Kind;

/// The viewport that stands for the sheet of a layout is no object to choose.
bool isPaperItself(Database& database, Slot slot) {
    return database.typeName(slot) == "VIEWPORT" && integerOf(database.tags(slot), 69, 0) == 1;
}

AcGePoint3d pointFrom(const ads_point point) {
    return {point[0], point[1], point[2]};
}

ChosenBy chosenBy(Kind kind) {
    return kind == Kind::Inside     ? ChosenBy::Window
           : kind == Kind::Touching ? ChosenBy::Crossing
                                    : ChosenBy::Fence;
}

std::u16string number(size_t count) {
    return kz::toUtf16(std::to_string(count));
}

/// "1 was <rest>", "2 were <rest>".
std::u16string wasText(size_t count, std::u16string_view rest) {
    return number(count) + (count == 1 ? u" was " : u" were ") + std::u16string(rest);
}

}  // namespace

// --- one choice ---------------------------------------------------------------------------------

void Choice::add(Slot entity, uint32_t how) {
    const Slot main = database_.mainEntity(entity);
    const ObjectRecord& record = database_.record(main);
    if (record.object_class != ObjectClass::Entity || record.erased) return;
    if (isPaperItself(database_, main)) return;
    const AcDbObjectId id = database_.idOf(main);
    if (!rules_.duplicates && selection_.has(id)) return;
    ++found_;
    if (rules_.filter != nullptr && !rules_.filter->matches(database_, main)) {
        ++filtered_;
    } else if (rules_.no_locked && database_.isOnLockedLayer(main)) {
        ++locked_;
    } else {
        selection_.addAgain(id, how);
    }
}

std::vector<Located> Choice::search(const ScreenRegion& region) const {
    SearchDepth depth;
    depth.nested = rules_.nested && windowsChooseNested();
    depth.all_nested = depth.nested && rules_.duplicates;
    return entitiesInRegion(database_, region, depth);
}

size_t Choice::notePolygon(const std::vector<AcGePoint2d>& corners, double depth) {
    const AcGeMatrix3d to_world = currentView(database_).displayToWorld();
    std::vector<AcGePoint3d> polygon;
    polygon.reserve(corners.size());
    for (const AcGePoint2d& corner : corners)
        polygon.push_back(to_world * AcGePoint3d(corner.x, corner.y, depth));
    return selection_.addPolygon(std::move(polygon));
}

/// Adds what was found by one region. Members that came the same way share its note.
void Choice::addLocated(const std::vector<Located>& located, ChosenBy by, size_t polygon,
                        const AcGePoint3d* picked) {
    HowChosen plain;
    plain.by = by;
    plain.polygon = polygon;
    plain.direction = currentView(database_).direction.normal();
    if (picked != nullptr) plain.points.push_back(*picked);
    uint32_t shared = 0;
    for (const Located& place : located) {
        if (place.path.empty() && place.places.empty()) {
            if (shared == 0) shared = selection_.addHow(plain);
            add(place.entity, shared);
            continue;
        }
        HowChosen own = plain;
        if (by == ChosenBy::Fence) own.points = place.places;
        own.path = place.path;
        add(place.entity, selection_.addHow(std::move(own)));
    }
}

void Choice::addWindow(const AcGePoint3d& corner, const AcGePoint3d& opposite, Kind kind) {
    const AcGeMatrix3d to_display = userToDisplay(database_);
    const AcGePoint3d first = to_display * corner, second = to_display * opposite;
    const size_t polygon =
        notePolygon({flat(first), {second.x, first.y}, flat(second), {first.x, second.y}}, first.z);
    const ScreenRegion region = ScreenRegion::rectangle(flat(first), flat(second), kind);
    addLocated(search(region), chosenBy(kind), polygon, nullptr);
}

Refusal Choice::addPath(const std::vector<AcGePoint3d>& points, Kind kind) {
    const AcGeMatrix3d to_display = userToDisplay(database_);
    std::vector<AcGePoint2d> corners;
    corners.reserve(points.size());
    for (const AcGePoint3d& point : points)
        corners.push_back(flat(to_display * point));
    const double depth = points.empty() ? 0.0 : (to_display * points.front()).z;
    ScreenRegion region;
    const Refusal refusal = ScreenRegion::path(corners, kind, region);
    if (refusal != kDone) return refusal;
    const size_t polygon = kind == Kind::Fence ? 0 : notePolygon(corners, depth);
    addLocated(search(region), chosenBy(kind), polygon, nullptr);
    return kDone;
}

bool Choice::addPoint(const AcGePoint3d& point) {
    const ScreenRegion region = pickRegion(database_, point);
    SearchDepth depth;
    depth.nested = rules_.nested;
    std::vector<Located> located;
    if (rules_.everything) {
        located = entitiesInRegion(database_, region, depth);
    } else if (!rules_.nested) {
        if (const std::optional<Picked> picked = pickAt(database_, point)) {
            located.push_back({picked->main, {}, {}});
        }
    } else if (std::optional<Located> topmost = topmostInRegion(database_, region, depth)) {
        located.push_back(std::move(*topmost));
    }
    const AcGePoint3d world = currentUcs(database_).toWorld() * point;
    addLocated(located, ChosenBy::Pick, 0, &world);
    return !located.empty();
}

void Choice::addAll() {
    const Block* space = database_.findBlock(currentSpace(database_));
    ShapeWalker walker(database_, true);
    for (size_t i = 0; space != nullptr && i < space->contents.size(); ++i) {
        const Slot slot = space->contents[i];
        const ObjectRecord& record = database_.record(slot);
        if (record.erased || record.object_class != ObjectClass::Entity) continue;
        if (walker.shows(slot)) add(slot);
    }
}

void Choice::addLast() {
    const Block* space = database_.findBlock(currentSpace(database_));
    ShapeWalker walker(database_);
    for (size_t i = space == nullptr ? 0 : space->living_end; i-- > 0;) {
        const Slot slot = space->contents[i];
        const ObjectRecord& record = database_.record(slot);
        if (record.erased || record.object_class != ObjectClass::Entity) continue;
        if (isPaperItself(database_, slot) || !walker.shows(slot)) continue;
        return add(slot);
    }
}

void Choice::addIds(const std::vector<AcDbObjectId>& ids) {
    for (const AcDbObjectId id : ids) {
        if (Database::find(id) == &database_) add(database_.slotOf(id));
    }
}

void Choice::addName(const ads_name entity) {
    addIds({Database::idFromName(entity)});
}

void Choice::addSet(const ads_name set) {
    Selection* given = selectionOf(set);
    for (size_t i = 0; given != nullptr && i < given->size(); ++i)
        addIds({given->at(i)});
}

bool Choice::addGroup(std::u16string_view name) {
    const Slot root = database_.namedObjects();
    const Slot groups = root == kNoSlot ? kNoSlot : database_.dictionaryEntry(root, u"ACAD_GROUP");
    const Slot group = groups == kNoSlot ? kNoSlot : database_.dictionaryEntry(groups, name);
    if (group == kNoSlot) return false;
    const Tags& tags = database_.tags(group);
    for (size_t at = findTag(tags, 340); at < tags.size(); at = findTag(tags, 340, at + 1)) {
        const Slot member = database_.findHandle(tags[at].handleValue());
        if (member != kNoSlot) add(member);
    }
    return true;
}

// --- the prompt ---------------------------------------------------------------------------------

namespace {

/// How a prompt for a point or an option ended.
enum class Asked { Good, Wrong, Cancelled };

constexpr const char16_t* kOptions =
    u"Window Last Crossing BOX ALL Fence WPolygon CPolygon Group Add Remove Multiple Previous Undo "
    u"AUto SIngle _Window Last Crossing BOX ALL Fence WPolygon CPolygon Group Add Remove Multiple "
    u"Previous Undo AUto SIngle";

class ObjectPrompt {
  public:
    ObjectPrompt(Database& database, const ChooseRules& rules, std::u16string_view prompt,
                 const std::function<void(std::u16string_view)>& say)
        : database_(database), rules_(rules), prompt_(prompt), say_(say) {}

    /// @return false for a cancel
    bool run() {
        if (takeImplied()) return true;
        for (;;) {
            InputToken token;
            const InputRequest request = {removing_ ? u"Remove objects: " : prompt_, false};
            if (!inputSource().next(request, token)) return false;
            if (!resolveExpression(token)) continue;
            if (token.kind == InputToken::Kind::Cancel) return false;
            if (token.kind == InputToken::Kind::Enter) return true;
            Choice choice(database_, rules_);
            tried_ = false;
            const Asked asked = answer(token, choice);
            if (asked == Asked::Cancelled) return false;
            if (asked == Asked::Wrong) {
                say_(u"*Invalid selection*");
                say_(
                    u"Expects a point or Window/Last/Crossing/BOX/ALL/Fence/WPolygon/CPolygon/"
                    u"Group/Add/Remove/Multiple/Previous/Undo/AUto/SIngle");
                continue;
            }
            if (!tried_) continue;
            take(choice);
            if (rules_.single) return true;
        }
    }

    Selection& selection() { return selection_; }

  private:
    struct Step {
        std::vector<AcDbObjectId> ids;
        bool removed;
    };

    /// What was chosen before the question.
    bool takeImplied() {
        const std::vector<AcDbObjectId> ids =
            std::exchange(drawingState(database_).implied_choice, {});
        if (ids.empty() || rules_.nested || integerVariable("PICKFIRST", 1) == 0) return false;
        Choice choice(database_, rules_);
        choice.addIds(ids);
        take(choice);
        return true;
    }

    Asked answer(const InputToken& token, Choice& choice) {
        switch (token.kind) {
            case InputToken::Kind::Entity:
                tried_ = true;
                choice.addName(token.name);
                return Asked::Good;
            case InputToken::Kind::Set:
                tried_ = true;
                choice.addSet(token.name);
                return Asked::Good;
            case InputToken::Kind::Text:
                return typed(token, choice);
            default:
                return picked(token, choice);
        }
    }

    Asked typed(const InputToken& token, Choice& choice) {
        static const Keywords kKeywords(kOptions);
        const std::u16string keyword = kKeywords.match(token.text);
        return keyword.empty() ? picked(token, choice) : option(keyword, choice);
    }

    Asked picked(const InputToken& token, Choice& choice) {
        ads_point from, point;
        lastPoint(from);
        if (readPoint(token, from, point) != RTNORM) return Asked::Wrong;
        return pick(pointFrom(point), choice);
    }

    Asked option(std::u16string_view keyword, Choice& choice) {
        if (keyword == u"Window") return window(choice, Kind::Inside);
        if (keyword == u"Crossing") return window(choice, Kind::Touching);
        if (keyword == u"BOX") return box(choice);
        if (keyword == u"WPolygon") return path(choice, Kind::Inside);
        if (keyword == u"CPolygon") return path(choice, Kind::Touching);
        if (keyword == u"Fence") return path(choice, Kind::Fence);
        if (keyword == u"Group") return group(choice);
        if (keyword == u"Add" || keyword == u"Remove") {
            removing_ = keyword == u"Remove";
        } else if (keyword == u"Undo") {
            undo();
        } else if (keyword == u"SIngle") {
            rules_.single = true;
        } else if (keyword != u"Multiple" && keyword != u"AUto") {
            tried_ = true;
            if (keyword == u"Last") choice.addLast();
            if (keyword == u"ALL") choice.addAll();
            if (keyword == u"Previous") choice.addIds(drawingState(database_).previous_choice);
        }
        return Asked::Good;
    }

    /// Asks for a point; `option` is a keyword that may be given in its place.
    int ask(const char16_t* prompt, const AcGePoint3d* base, AcGePoint3d& point,
            const char16_t* option = u"") const {
        const bool needed = *option == 0;
        acedInitGet(needed ? RSG_NONULL : 0, option);
        const ads_point from = {base != nullptr ? base->x : 0.0, base != nullptr ? base->y : 0.0,
                                base != nullptr ? base->z : 0.0};
        ads_point got;
        const int status = acedGetPoint(base != nullptr ? from : nullptr, prompt, got);
        if (status == RTNORM) point = pointFrom(got);
        return status;
    }

    Asked corners(AcGePoint3d& first, AcGePoint3d& second) const {
        if (ask(u"Specify first corner: ", nullptr, first) != RTNORM) return Asked::Cancelled;
        return opposite(first, second);
    }
    Asked opposite(const AcGePoint3d& first, AcGePoint3d& second) const {
        const int status = ask(u"Specify opposite corner: ", &first, second);
        return status == RTNORM ? Asked::Good : Asked::Cancelled;
    }

    Asked window(Choice& choice, Kind kind) {
        AcGePoint3d first, second;
        const Asked asked = corners(first, second);
        tried_ = asked == Asked::Good;
        if (tried_) choice.addWindow(first, second, kind);
        return asked;
    }

    Asked box(Choice& choice) {
        AcGePoint3d first, second;
        const Asked asked = corners(first, second);
        tried_ = asked == Asked::Good;
        if (tried_) choice.addWindow(first, second, boxKind(first, second));
        return asked;
    }

    /// From right to left a box takes what it touches.
    Kind boxKind(const AcGePoint3d& first, const AcGePoint3d& second) const {
        const AcGeMatrix3d to_display = userToDisplay(database_);
        return (to_display * second).x < (to_display * first).x ? Kind::Touching : Kind::Inside;
    }

    /// What is seen at a point; a point on nothing is the first corner of a box.
    Asked pick(const AcGePoint3d& point, Choice& choice) {
        const ads_point given = {point.x, point.y, point.z};
        setLastPoint(given);
        tried_ = true;
        if (choice.addPoint(point) || integerVariable("PICKAUTO", 1) == 0) return Asked::Good;
        AcGePoint3d second;
        const Asked asked = opposite(point, second);
        if (asked == Asked::Good) choice.addWindow(point, second, boxKind(point, second));
        return asked;
    }

    Asked path(Choice& choice, Kind kind) {
        const bool fence = kind == Kind::Fence;
        std::vector<AcGePoint3d> points(1);
        if (ask(fence ? u"Specify first fence point: " : u"First polygon point: ", nullptr,
                points.front()) != RTNORM) {
            return Asked::Cancelled;
        }
        for (;;) {
            AcGePoint3d next;
            const int status = ask(fence ? u"Specify next fence point or [Undo]: "
                                         : u"Specify endpoint of line or [Undo]: ",
                                   &points.back(), next, u"Undo");
            if (status == RTNONE) break;
            if (status == RTNORM) {
                points.push_back(next);
            } else if (status != RTKWORD) {
                return Asked::Cancelled;
            } else if (points.size() > 1) {
                points.pop_back();
            }
        }
        const Refusal refusal = choice.addPath(points, kind);
        tried_ = refusal == kDone;
        if (!tried_) say_(refusal);
        return Asked::Good;
    }

    Asked group(Choice& choice) {
        const InputRequest request = {u"Enter group name: ", false};
        InputToken token;
        if (!inputSource().next(request, token) || token.kind == InputToken::Kind::Cancel) {
            return Asked::Cancelled;
        }
        tried_ = choice.addGroup(token.typed());
        if (!tried_) say_(u"There is no group " + token.typed() + u".");
        return Asked::Good;
    }

    void take(Choice& choice) {
        filterChoice(selection_, choice.selection());
        const size_t before = selection_.size();
        Step step{{}, removing_};
        const size_t same = removing_ ? removeChosen(choice, step) : addChosen(choice, step);
        std::u16string text = number(choice.found()) + u" found";
        if (removing_) {
            text += u", " + number(step.ids.size()) + u" removed";
        } else if (same > 0) {
            text += u" (" + number(same) + (same == 1 ? u" duplicate)" : u" duplicates)");
        }
        if (before > 0) text += u", " + number(selection_.size()) + u" total";
        say_(text);
        if (choice.filtered() > 0) say_(wasText(choice.filtered(), u"filtered out."));
        if (choice.locked() > 0) say_(wasText(choice.locked(), u"on a locked layer."));
        steps_.push_back(std::move(step));
    }

    /// @return how many were selected before
    size_t addChosen(Choice& choice, Step& step) {
        Selection& chosen = choice.selection();
        size_t same = 0;
        const SelectionMap map(chosen, selection_);
        for (size_t i = 0; i < chosen.size(); ++i) {
            const AcDbObjectId id = chosen.at(i);
            if (!rules_.duplicates && selection_.has(id)) {
                ++same;
                continue;
            }
            selection_.addAgain(id, map.how(chosen.howIndexAt(i)));
            step.ids.push_back(id);
        }
        return same;
    }

    size_t removeChosen(Choice& choice, Step& step) {
        Selection& chosen = choice.selection();
        for (size_t i = 0; i < chosen.size(); ++i) {
            if (selection_.remove(chosen.at(i))) step.ids.push_back(chosen.at(i));
        }
        return 0;
    }

    void undo() {
        if (steps_.empty()) return say_(u"Nothing to undo.");
        const Step step = std::move(steps_.back());
        steps_.pop_back();
        for (const AcDbObjectId id : step.ids) {
            if (step.removed) {
                selection_.add(id);
            } else {
                selection_.remove(id);
            }
        }
    }

    Database& database_;
    ChooseRules rules_;
    std::u16string prompt_;
    const std::function<void(std::u16string_view)>& say_;
    Selection selection_;
    std::vector<Step> steps_;
    bool removing_ = false;
    bool tried_ = false;  ///< the answer was a choice, if only of nothing
};

}  // namespace

int chooseObjects(Database& database, const ChooseRules& rules, std::u16string_view prompt,
                  const std::function<void(std::u16string_view)>& say, Selection& out) {
    ObjectPrompt asking(database, rules, prompt, say);
    if (!asking.run()) return RTCAN;
    out = std::move(asking.selection());
    if (!out.empty()) drawingState(database).previous_choice = out.ids();
    return RTNORM;
}

int chooseObject(Database& database, std::u16string_view prompt,
                 const std::function<void(std::u16string_view)>& say, AcDbObjectId& out) {
    const InputRequest request = {std::u16string(prompt), false};
    for (;;) {
        InputToken token;
        if (!inputSource().next(request, token)) return RTCAN;
        if (!resolveExpression(token)) continue;
        if (token.kind == InputToken::Kind::Cancel) return RTCAN;
        if (token.kind == InputToken::Kind::Enter) return RTNONE;
        AcDbObjectId id;
        ads_point from, point;
        lastPoint(from);
        if (token.kind == InputToken::Kind::Entity) {
            id = Database::idFromName(token.name);
        } else if (readPoint(token, from, point) == RTNORM) {
            const std::optional<Picked> picked = pickAt(database, pointFrom(point));
            if (picked) id = database.idOf(picked->main);
        }
        if (!id.isNull() && Database::find(id) == &database) {
            out = id;
            return RTNORM;
        }
        say(u"Expects an entity.");
    }
}

}  // namespace host
