/// acedSSGet: its modes, and the choice that stands before a prompt.
#include <algorithm>
#include <cmath>
#include <optional>

#include "base/faults.h"
#include "db/groups.h"
#include "edit/choose.h"
#include "edit/documents.h"
#include "edit/drawing_state.h"
#include "edit/input.h"
#include "edit/tag_values.h"
#include "kz_tls21an/text.h"

namespace host {
namespace {

enum class Mode {
    Ask,
    Whole,
    All,
    Window,
    Crossing,
    Box,
    InPolygon,
    CrossPolygon,
    Fence,
    Last,
    Previous,
    Implied
};

struct ModeName {
    std::u16string_view name;
    Mode mode;
};

constexpr ModeName kModes[] = {
    {u"", Mode::Ask},     {u".", Mode::Ask},        {u"X", Mode::Whole},
    {u"A", Mode::All},    {u"W", Mode::Window},     {u"C", Mode::Crossing},
    {u"B", Mode::Box},    {u"WP", Mode::InPolygon}, {u"CP", Mode::CrossPolygon},
    {u"F", Mode::Fence},  {u"L", Mode::Last},       {u"P", Mode::Previous},
    {u"I", Mode::Implied}};

/// Sets the rule of a letter behind a colon. @return false for a letter that none has
bool setRule(char16_t letter, ChooseRules& rules) {
    switch (letter) {
        case u'S':
            return rules.single = true;
        case u'E':
            return rules.everything = true;
        case u'L':
            return rules.no_locked = true;
        case u'N':
            return rules.nested = true;
        case u'D':
            return rules.duplicates = true;
        default:
            return false;
    }
}

/// Reads a mode: "_x", "_+.:E:S", ":n". Nothing for one that does not exist.
std::optional<Mode> readMode(const ACHAR* text, ChooseRules& rules) {
    std::u16string rest = kz::toUpper(text == nullptr ? u"" : text);
    std::erase(rest, u'_');
    if (rest.starts_with(u'+')) rest.erase(0, 1);
    const size_t colon = std::min(rest.find(u':'), rest.size());
    for (size_t i = colon; i < rest.size(); i += 2) {
        if (rest[i] != u':' || i + 1 >= rest.size() || !setRule(rest[i + 1], rules)) {
            return std::nullopt;
        }
    }
    for (const ModeName& row : kModes) {
        if (std::u16string_view(rest).substr(0, colon) == row.name) return row.mode;
    }
    return std::nullopt;
}

std::optional<AcGePoint3d> pointAt(const void* argument) {
    if (argument == nullptr) return std::nullopt;
    const auto* values = static_cast<const double*>(argument);
    const AcGePoint3d point(values[0], values[1], values[2]);
    return isFinite(point) ? std::optional(point) : std::nullopt;
}

/// The points of a chain; none when there is anything else in it.
std::vector<AcGePoint3d> pointsAt(const void* argument) {
    std::vector<AcGePoint3d> points;
    for (const auto* node = static_cast<const resbuf*>(argument); node != nullptr;
         node = node->rbnext) {
        if (node->restype == RTLB || node->restype == RTLE) continue;
        const bool flat_point = node->restype == RTPOINT;
        if (!flat_point && node->restype != RT3DPOINT) return {};
        const double* values = node->resval.rpoint;
        const AcGePoint3d point(values[0], values[1], flat_point ? 0.0 : values[2]);
        if (!isFinite(point)) return {};
        points.push_back(point);
    }
    return points;
}

/// True for the record of a block that is drawn: model space and the layouts.
bool isSpace(Database& drawing, Slot record) {
    const std::u16string name = kz::toUpper(drawing.symbolName(record));
    return name.starts_with(u"*MODEL_SPACE") || name.starts_with(u"*PAPER_SPACE");
}

/// The entities of all spaces that the rules let through, in drawing order.
void selectWhole(Database& drawing, const ChooseRules& rules, Selection& out) {
    for (const Slot record : drawing.blockRecords()) {
        const Block* block = drawing.findBlock(record);
        if (block == nullptr || !isSpace(drawing, record)) continue;
        for (const Slot slot : block->contents) {
            const ObjectRecord& object = drawing.record(slot);
            if (object.erased || object.object_class != ObjectClass::Entity) continue;
            if (rules.filter != nullptr && !rules.filter->matches(drawing, slot)) continue;
            if (rules.no_locked && drawing.isOnLockedLayer(slot)) continue;
            out.add(drawing.idOf(slot));
        }
    }
}

/// One request of acedSSGet.
class Request {
  public:
    Request(Database& drawing, const ChooseRules& rules, const void* first, const void* second)
        : drawing_(drawing),
          rules_(rules),
          choice_(drawing, rules),
          first_(first),
          second_(second) {}

    int run(Mode mode, Selection& out) {
        if (mode == Mode::Ask && first_ == nullptr) {
            return chooseObjects(drawing_, rules_, u"Select objects: ", tell, out);
        }
        if (mode == Mode::Whole) {
            selectWhole(drawing_, rules_, out);
            return RTNORM;
        }
        if (!choose(mode)) return RTERROR;
        out = std::move(choice_.selection());
        return RTNORM;
    }

  private:
    bool choose(Mode mode) {
        using Kind = ScreenRegion::Kind;
        switch (mode) {
            case Mode::All:
                choice_.addAll();
                return true;
            case Mode::Last:
                choice_.addLast();
                return true;
            case Mode::Previous:
                choice_.addIds(drawingState(drawing_).previous_choice);
                return true;
            case Mode::Implied:
                choice_.addIds(drawingState(drawing_).implied_choice);
                return true;
            case Mode::InPolygon:
                return choice_.addPath(pointsAt(first_), Kind::Inside) == kDone;
            case Mode::CrossPolygon:
                return choice_.addPath(pointsAt(first_), Kind::Touching) == kDone;
            case Mode::Fence:
                return choice_.addPath(pointsAt(first_), Kind::Fence) == kDone;
            case Mode::Ask:
                return pick();
            default:
                return window(mode);
        }
    }

    bool pick() {
        const std::optional<AcGePoint3d> point = pointAt(first_);
        if (point) choice_.addPoint(*point);
        return point.has_value();
    }

    bool window(Mode mode) {
        using Kind = ScreenRegion::Kind;
        const std::optional<AcGePoint3d> first = pointAt(first_), second = pointAt(second_);
        if (!first || !second) return false;
        const AcGeMatrix3d to_display = userToDisplay(drawing_);
        const bool leftward = (to_display * *second).x < (to_display * *first).x;
        const bool crossing = mode == Mode::Crossing || (mode == Mode::Box && leftward);
        choice_.addWindow(*first, *second, crossing ? Kind::Touching : Kind::Inside);
        return true;
    }

    Database& drawing_;
    const ChooseRules& rules_;
    Choice choice_;
    const void* first_;
    const void* second_;
};

}  // namespace
}  // namespace host

extern "C" {

int acedSSGet(const ACHAR* mode, const void* first, const void* second, const resbuf* filter,
              ads_name result) {
    int status = 0;
    if (host::mustFail(host::Call::acedSSGet, status)) return status;
    if (result == nullptr) return RTERROR;
    host::SelectFilter wanted;
    host::ChooseRules rules;
    const auto kind = host::readMode(mode, rules);
    if (!kind) return RTREJ;
    host::Database* drawing = host::currentDatabase();
    if (drawing == nullptr || !wanted.read(filter)) return RTERROR;
    if (filter != nullptr) rules.filter = &wanted;
    if (rules.nested && host::duplicatesAllowed()) rules.duplicates = true;
    host::Selection selection;
    status = host::Request(*drawing, rules, first, second).run(*kind, selection);
    if (status != RTNORM) return status;
    if (selection.empty()) return RTERROR;
    return host::makeSelectionSet(std::move(selection), result) ? RTNORM : RTERROR;
}

int acedSSSetFirst(const ads_name set, const ads_name) {
    int status = 0;
    if (host::mustFail(host::Call::acedSSSetFirst, status)) return status;
    host::Database* drawing = host::currentDatabase();
    const bool none = set == nullptr || ads_name_nil(set);
    host::Selection* selection = none ? nullptr : host::selectionOf(set);
    if (drawing == nullptr || (!none && selection == nullptr)) return RTERROR;
    if (host::integerVariable("PICKFIRST", 1) == 0) return RTERROR;
    std::vector<AcDbObjectId>& chosen = host::drawingState(*drawing).implied_choice;
    chosen.clear();
    const host::Slot space = host::currentSpace(*drawing);
    for (size_t i = 0; selection != nullptr && i < selection->size(); ++i) {
        const AcDbObjectId id = selection->at(i);
        if (host::Database::find(id) != drawing) continue;
        const host::ObjectRecord& record = drawing->record(drawing->slotOf(id));
        if (!record.erased && record.owner == space) chosen.push_back(id);
    }
    return RTNORM;
}

int acedSSGetFirst(resbuf** grips, resbuf** chosen) {
    int status = 0;
    if (host::mustFail(host::Call::acedSSGetFirst, status)) return status;
    host::Database* drawing = host::currentDatabase();
    if (drawing == nullptr || grips == nullptr || chosen == nullptr) return RTERROR;
    host::Choice choice(*drawing, {});
    choice.addIds(host::drawingState(*drawing).implied_choice);
    resbuf* node = nullptr;
    if (!choice.selection().empty()) {
        node = acutNewRb(RTPICKS);
        if (node == nullptr) return RTERROR;
        if (!host::makeSelectionSet(std::move(choice.selection()), node->resval.rlname)) {
            acutRelRb(node);
            return RTERROR;
        }
    }
    *grips = nullptr;
    *chosen = node;
    return RTNORM;
}
}
