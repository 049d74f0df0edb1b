/// Commands that change what is seen: ZOOM, PAN, VIEW, PLAN, VPOINT, and the space that is worked
/// in: MSPACE, PSPACE, MODEL.
#include <cmath>
#include <numbers>

#include "command/drafting.h"
#include "edit/drawing_state.h"
#include "edit/input.h"
#include "edit/keywords.h"
#include "edit/sysvars.h"
#include "edit/tag_values.h"
#include "edit/typed_points.h"
#include "edit/ucs.h"
#include "edit/view.h"
#include "edit/zoom.h"
#include "kz_tls21an/text.h"

namespace host {
namespace {

void tell(const CommandPrompt& prompt, Refusal refusal) {
    if (!refusal.empty()) prompt.refuse(refusal);
}

// --- ZOOM ---------------------------------------------------------------------------------------

/// A number as ZOOM takes it: with an x or xp behind it, or alone.
struct Magnification {
    double number = 0.0;
    ZoomBase base = ZoomBase::Limits;
};

std::optional<Magnification> magnificationOf(const InputToken& token) {
    using Kind = InputToken::Kind;
    if (token.kind == Kind::Real) return Magnification{token.real, ZoomBase::Limits};
    if (token.kind == Kind::Integer) {
        return Magnification{static_cast<double>(token.integer), ZoomBase::Limits};
    }
    if (token.kind != Kind::Text) return std::nullopt;
    Magnification out;
    std::u16string text = kz::toUpper(token.text);
    if (text.ends_with(u"XP")) {
        out.base = ZoomBase::Paper;
        text.erase(text.size() - 2);
    } else if (text.ends_with(u'X')) {
        out.base = ZoomBase::View;
        text.pop_back();
    }
    const auto number = typedDistance(text);
    if (!number) return std::nullopt;
    out.number = *number;
    return out;
}

class ZoomCommand {
  public:
    explicit ZoomCommand(CommandPrompt& prompt)
        : prompt_(prompt), drawing_(commandDrawing(prompt)) {}

    /// One answer may be a corner, a magnification or a word, so it is read here and not by the
    /// prompts, of which each takes one kind.
    void run() {
        const Keywords words(u"All Center Dynamic Extents Left Object Previous Scale Window");
        for (;;) {
            const InputToken token = next(
                u"Specify corner of window, enter a scale factor (nX or nXP), or "
                u"[All/Center/Extents/Left/Object/Previous/Scale/Window]: ");
            if (token.kind == InputToken::Kind::Enter) return;
            const std::u16string word =
                token.kind == InputToken::Kind::Text ? words.match(token.text) : u"";
            if (!word.empty()) return byWord(word);
            if (const auto scale = magnificationOf(token)) return zoomBy(*scale);
            ads_point corner;
            if (pointOf(token, corner)) return toCorner(toPoint(corner));
            prompt_.say(u"Requires a point, a scale factor or an option keyword.");
        }
    }

  private:
    InputToken next(std::u16string_view text) {
        for (;;) {
            InputToken token;
            const InputRequest request = {std::u16string(text), false};
            const bool got = inputSource().next(request, token);
            if (!got || token.kind == InputToken::Kind::Cancel) throw Cancelled{};
            const bool expression = token.kind == InputToken::Kind::Text &&
                                    (token.text.starts_with(u'(') || token.text.starts_with(u'!'));
            if (!expression) return token;
            const std::u16string typed = token.text;
            if (evaluateExpression(typed, token)) return token;
        }
    }

    static bool pointOf(const InputToken& token, ads_point out) {
        if (token.kind == InputToken::Kind::Point) {
            handedPoint(token, out);
            return true;
        }
        ads_point from;
        lastPoint(from);
        return token.kind == InputToken::Kind::Text && typedPoint(token.text, from, out);
    }

    void byWord(const std::u16string& word) {
        if (word == u"All") {
            tell(prompt_, zoomAll(drawing_));
        } else if (word == u"Extents") {
            tell(prompt_, zoomExtents(drawing_));
        } else if (word == u"Previous") {
            tell(prompt_, zoomPrevious(drawing_));
        } else if (word == u"Window") {
            toCorner(askPoint(prompt_, u"Specify first corner: "));
        } else if (word == u"Center") {
            byCentre();
        } else if (word == u"Left") {
            const AcGePoint3d corner = askPoint(prompt_, u"Specify lower left corner point: ");
            tell(prompt_, zoomLeft(drawing_, corner, askHeight()));
        } else if (word == u"Object") {
            byObjects();
        } else if (word == u"Scale") {
            zoomBy(askMagnification(u"Enter a scale factor (nX or nXP): "));
        } else {
            prompt_.refuse(u"the dynamic view is not available.");
        }
    }

    void zoomBy(const Magnification& scale) {
        tell(prompt_, zoomScale(drawing_, scale.number, scale.base));
    }

    void toCorner(const AcGePoint3d& corner) {
        const BasePoint base(corner);
        ads_point opposite;
        prompt_.corner({u"Specify opposite corner: ", RSG_NONULL, u"", base}, opposite);
        tell(prompt_, zoomWindow(drawing_, corner, toPoint(opposite)));
    }

    /// Middle of the present view, in the user coordinate system.
    AcGePoint3d middle() {
        const View view = currentView(drawing_);
        const AcGePoint3d world =
            view.displayToWorld() * AcGePoint3d(view.centre.x, view.centre.y, 0.0);
        return currentUcs(drawing_).toWorld().inverse() * world;
    }

    void byCentre() {
        ads_point given;
        const Answered answer = prompt_.point({u"Specify center point: ", 0, u"", nullptr}, given);
        const AcGePoint3d centre = answer == Answered::Value ? toPoint(given) : middle();
        tell(prompt_, zoomCentre(drawing_, centre, askHeight()));
    }

    Magnification askMagnification(std::u16string_view text) {
        for (;;) {
            if (const auto scale = magnificationOf(next(text))) return *scale;
            prompt_.say(u"Requires a scale factor.");
        }
    }

    /// The height of the new view, given as it is or by a magnification of the present one.
    std::optional<double> askHeight() {
        const double present = currentView(drawing_).height;
        const std::u16string text = u"Enter magnification or height <" + shown(present) + u">: ";
        for (;;) {
            const InputToken token = next(text);
            if (token.kind == InputToken::Kind::Enter) return std::nullopt;
            const auto scale = magnificationOf(token);
            if (!scale || !(scale->number > 0.0)) {
                prompt_.say(u"Requires a height or a magnification above zero.");
            } else {
                return scale->base == ZoomBase::Limits ? scale->number : present / scale->number;
            }
        }
    }

    /// The boxes of the objects, as they are seen.
    void byObjects() {
        AcDbExtents box;
        for (const AcDbObjectId id : prompt_.entities())
            box.addExt(entityExtents(drawing_, drawing_.slotOf(id)));
        if (box.isEmpty()) return;
        const View view = currentView(drawing_);
        box.transformBy(view.worldToDisplay());
        const AcGeMatrix3d to_user =
            currentUcs(drawing_).toWorld().inverse() * view.displayToWorld();
        tell(prompt_, zoomWindow(drawing_, to_user * box.minPoint(), to_user * box.maxPoint()));
    }

    CommandPrompt& prompt_;
    Database& drawing_;
};

void zoom(CommandPrompt& prompt) {
    ZoomCommand(prompt).run();
}

// --- PAN, PLAN, VPOINT --------------------------------------------------------------------------

void pan(CommandPrompt& prompt) {
    Database& drawing = commandDrawing(prompt);
    const AcGePoint3d from = askPoint(prompt, u"Specify base point or displacement: ");
    const BasePoint base(from);
    ads_point to;
    const Answered answer = prompt.point({u"Specify second point: ", 0, u"", base}, to);
    tell(prompt, answer == Answered::Nothing ? panView(drawing, AcGePoint3d(), from)
                                             : panView(drawing, from, toPoint(to)));
}

/// A coordinate system with a name, read without making it the present one.
Ucs namedSystem(CommandPrompt& prompt, Database& drawing) {
    const std::u16string name = askName(prompt, u"Enter name of UCS: ");
    const Slot record = drawing.findSymbol("UCS", name);
    if (record == kNoSlot) prompt.refuse(u"there is no coordinate system of this name.");
    const Tags& tags = drawing.tags(record);
    Ucs ucs;
    ucs.origin = pointOf(tags, 10);
    ucs.x = vectorOf(tags, 11, ucs.x);
    ucs.y = vectorOf(tags, 12, ucs.y);
    return ucs;
}

void plan(CommandPrompt& prompt) {
    Database& drawing = commandDrawing(prompt);
    const Answered answer = prompt.keyword(
        {u"Enter an option [Current ucs/Ucs/World] <Current>: ", 0, u"Current Ucs World", nullptr});
    Ucs ucs;
    if (answer == Answered::Nothing || prompt.given(u"Current")) {
        ucs = currentUcs(drawing);
    } else if (prompt.given(u"Ucs")) {
        ucs = namedSystem(prompt, drawing);
    }
    tell(prompt, planView(drawing, ucs));
}

void viewpoint(CommandPrompt& prompt) {
    Database& drawing = commandDrawing(prompt);
    ads_point given;
    const Answered answer = prompt.point(
        {u"Specify a view point or [Rotate]: ", RSG_NONULL, u"Rotate", nullptr}, given);
    if (answer == Answered::Value) {
        return tell(prompt, setViewDirection(drawing, toPoint(given).asVector()));
    }
    double around = 0.0, above = 0.0;
    prompt.angle({u"Enter angle in XY plane from X axis: ", RSG_NONULL, u"", nullptr}, around);
    prompt.relativeAngle({u"Enter angle from XY plane: ", RSG_NONULL, u"", nullptr}, above);
    tell(prompt, setViewDirection(drawing, {std::cos(above) * std::cos(around),
                                            std::cos(above) * std::sin(around), std::sin(above)}));
}

// --- VIEW ---------------------------------------------------------------------------------------

void listViews(const CommandPrompt& prompt, Database& drawing) {
    const SymbolTable* table = drawing.table("VIEW");
    if (table == nullptr) return;
    for (const Slot record : table->records) {
        if (!drawing.record(record).erased) prompt.say(drawing.symbolName(record));
    }
}

/// The six views along the axes of the coordinate system.
void orthographic(CommandPrompt& prompt, Database& drawing) {
    const Answered answer =
        prompt.keyword({u"Enter an option [Top/Bottom/Front/BAck/Left/Right] <Top>: ", 0,
                        u"Top Bottom Front BAck Left Right", nullptr});
    struct Side {
        std::u16string_view word;
        AcGeVector3d direction;
    };
    const Side sides[] = {{u"Bottom", {0, 0, -1}},
                          {u"Front", {0, -1, 0}},
                          {u"BAck", {0, 1, 0}},
                          {u"Left", {-1, 0, 0}},
                          {u"Right", {1, 0, 0}}};
    AcGeVector3d direction = AcGeVector3d::kZAxis;
    for (const Side& side : sides) {
        if (answer == Answered::Keyword && prompt.given(side.word)) direction = side.direction;
    }
    tell(prompt, setViewDirection(drawing, direction));
}

/// Keeps a part of the present view under a name. The view itself stays.
void saveWindow(CommandPrompt& prompt, Database& drawing, const std::u16string& name) {
    const AcGePoint3d corner = askPoint(prompt, u"Specify first corner: ");
    const BasePoint base(corner);
    ads_point opposite;
    prompt.corner({u"Specify opposite corner: ", RSG_NONULL, u"", base}, opposite);
    tell(prompt, zoomWindow(drawing, corner, toPoint(opposite)));
    const Refusal saved = saveView(drawing, name);
    zoomPrevious(drawing);
    tell(prompt, saved);
}

void view(CommandPrompt& prompt) {
    Database& drawing = commandDrawing(prompt);
    const Answered answer = prompt.keyword(
        {u"Enter an option [?/Delete/Orthographic/Previous/Restore/Save/Ucs/Window]: ", 0,
         u"? Delete Orthographic Previous Restore Save Ucs Window", nullptr});
    if (answer == Answered::Nothing) return;
    if (prompt.given(u"?")) return listViews(prompt, drawing);
    if (prompt.given(u"Orthographic")) return orthographic(prompt, drawing);
    if (prompt.given(u"Previous")) return tell(prompt, zoomPrevious(drawing));
    if (prompt.given(u"Ucs")) return tell(prompt, planView(drawing, currentUcs(drawing)));
    const std::u16string option = prompt.keywordGiven();
    const std::u16string name =
        askName(prompt, option == u"Delete"    ? u"Enter view name to delete: "
                        : option == u"Restore" ? u"Enter view name to restore: "
                                               : u"Enter view name to save: ");
    if (name.empty()) return;
    if (option == u"Window") return saveWindow(prompt, drawing, name);
    tell(prompt, option == u"Delete"    ? deleteView(drawing, name)
                 : option == u"Restore" ? restoreView(drawing, name)
                                        : saveView(drawing, name));
}

// --- spaces -------------------------------------------------------------------------------------

Database& layoutDrawing(const CommandPrompt& prompt) {
    Database& drawing = commandDrawing(prompt);
    if (inModelTiles(drawing)) prompt.refuse(u"this works in a layout only.");
    return drawing;
}

/// The first viewport of the layout that is a window into model space; 0 for none.
int firstViewport(Database& drawing) {
    constexpr int kPaperItself = 1;
    const Block* paper = drawing.findBlock(drawing.paperSpace());
    for (size_t i = 0; paper != nullptr && i < paper->contents.size(); ++i) {
        const Slot slot = paper->contents[i];
        if (drawing.record(slot).erased || drawing.typeName(slot) != "VIEWPORT") continue;
        const auto number = static_cast<int>(integerOf(drawing.tags(slot), 69, 0));
        if (number > kPaperItself) return number;
    }
    return 0;
}

void modelSpace(CommandPrompt& prompt) {
    Database& drawing = layoutDrawing(prompt);
    if (!inPaperSpace(drawing)) return prompt.say(u"Already in model space.");
    const int number = firstViewport(drawing);
    if (number == 0 || !setCurrentViewport(drawing, number)) {
        prompt.refuse(u"the layout has no viewport.");
    }
}

void paperSpace(CommandPrompt& prompt) {
    Database& drawing = layoutDrawing(prompt);
    if (inPaperSpace(drawing)) return prompt.say(u"Already in paper space.");
    constexpr int kPaperItself = 1;
    setCurrentViewport(drawing, kPaperItself);
}

void modelTiles(CommandPrompt& prompt) {
    commandDrawing(prompt);
    setVariable("TILEMODE", 1);
}

const Command kCommands[] = {
    {u"ZOOM", u"Z", zoom, true, "Shows more or less of the drawing, or another part of it."},
    {u"PAN", u"P", pan, true, "Moves the picture."},
    {u"VIEW", u"V", view, true, "Keeps views under names and brings them back."},
    {u"PLAN", nullptr, plan, true, "Looks straight at the plane of a coordinate system."},
    {u"VPOINT", u"VP", viewpoint, true, "Looks at the drawing from a direction."},
    {u"MSPACE", u"MS", modelSpace, true, "Works in model space, through a viewport of the layout."},
    {u"PSPACE", u"PS", paperSpace, true, "Works in the layout itself."},
    {u"MODEL", nullptr, modelTiles, true, "Leaves the layout for model space."},
};

}  // namespace

std::span<const Command> viewCommands() {
    return kCommands;
}

}  // namespace host
