/// Commands that erase, move, turn, scale, mirror and copy entities.
#include <cmath>
#include <map>
#include <numbers>

#include "command/arcs.h"
#include "command/drafting.h"
#include "command/erased.h"
#include "edit/copy.h"
#include "edit/plane_map.h"
#include "edit/transform.h"
#include "kz_tls21an/text.h"

namespace host {
namespace {

// --- erasing ------------------------------------------------------------------------------------

void erase(CommandPrompt& prompt) {
    Database& drawing = commandDrawing(prompt);
    const std::vector<AcDbObjectId> chosen = prompt.entities();
    for (const AcDbObjectId id : chosen)
        drawing.setErased(drawing.slotOf(id), true);
    if (!chosen.empty()) rememberErased(chosen);
}

void oops(CommandPrompt& prompt) {
    Database& drawing = commandDrawing(prompt);
    bool any = false;
    for (const AcDbObjectId id : takeErased()) {
        if (Database::find(id) != &drawing) continue;
        const Slot slot = drawing.slotOf(id);
        any = any || drawing.record(slot).erased;
        drawing.setErased(slot, false);
    }
    if (!any) prompt.say(u"There is nothing to bring back.");
}

// --- moving by a matrix -------------------------------------------------------------------------

/// Entities of a command, which it moves or copies by matrices. What can't be moved is told by
/// type.
class Chosen {
  public:
    explicit Chosen(CommandPrompt& prompt) : prompt_(prompt), drafting_(prompt) {
        for (const AcDbObjectId id : prompt.entities())
            slots_.push_back(drafting_.drawing().slotOf(id));
    }
    bool empty() const { return slots_.empty(); }

    /// @param matrix  in the user coordinate system
    void transform(const AcGeMatrix3d& matrix) {
        const AcGeMatrix3d in_world = inWorld(matrix);
        for (const Slot slot : slots_)
            note(slot, transformEntity(drafting_.drawing(), slot, in_world));
        tellRefused();
    }

    void copy(const AcGeMatrix3d& matrix) {
        const AcGeMatrix3d in_world = inWorld(matrix);
        Database& drawing = drafting_.drawing();
        for (const Slot slot : slots_) {
            const Slot made = copyEntity(drawing, slot, drawing.record(slot).owner);
            const TransformEnd end = transformEntity(drawing, made, in_world);
            if (end != TransformEnd::Done) drafting_.takeBack(made);
            note(slot, end);
        }
        tellRefused();
    }

  private:
    AcGeMatrix3d inWorld(const AcGeMatrix3d& matrix) const {
        // A way stays as exact as it was given.
        const AcGeMatrix3d& to_world = drafting_.toWorld();
        return to_world.isEqualTo(AcGeMatrix3d(), 0.0) ? matrix
                                                       : to_world * matrix * to_world.inverse();
    }

    void note(Slot slot, TransformEnd end) {
        if (end == TransformEnd::Done) return;
        ++refused_[{drafting_.drawing().typeName(slot), end}];
    }

    void tellRefused() {
        for (const auto& [what, count] : refused_) {
            std::u16string line = kz::toUtf16(std::to_string(count) + " " + what.first);
            line += what.second == TransformEnd::Unknown
                        ? u": the geometry of this type is not known; left as it is."
                        : u": can't be changed in this way; left as it is.";
            prompt_.warn(line);
        }
        refused_.clear();
    }

    CommandPrompt& prompt_;
    Drafting drafting_;
    std::vector<Slot> slots_;
    std::map<std::pair<std::string, TransformEnd>, int> refused_;
};

/// A turn about a point of the x-y plane, exact for quarter turns.
AcGeMatrix3d turnAbout(const AcGePoint3d& base, double radians) {
    const AcGeVector3d x = directionAt(toDegrees(radians));
    const AcGeVector3d y(-x.y, x.x, 0.0);
    AcGeMatrix3d turn;
    turn.setCoordSystem(AcGePoint3d(), x, y, AcGeVector3d::kZAxis);
    return turn.setTranslation(base - turn * base);
}

AcGeMatrix3d mirrorAt(const AcGePoint3d& a, const AcGePoint3d& b) {
    const AcGeVector3d line = AcGeVector3d(b.x - a.x, b.y - a.y, 0.0).normal();
    const double cosine = line.x * line.x - line.y * line.y, sine = 2.0 * line.x * line.y;
    AcGeMatrix3d mirror;
    mirror.setCoordSystem(AcGePoint3d(), {cosine, sine, 0.0}, {sine, -cosine, 0.0},
                          AcGeVector3d::kZAxis);
    return mirror.setTranslation(a - mirror * a);
}

/// A base point, or the way itself. @return false for the way
bool askBase(CommandPrompt& prompt, std::u16string_view text, std::u16string_view words,
             AcGePoint3d& base) {
    ads_point given;
    const Answered answer =
        prompt.point({std::u16string(text), 0, std::u16string(words), nullptr}, given);
    if (answer == Answered::Value) {
        base = toPoint(given);
        return true;
    }
    return false;
}

AcGeVector3d askDisplacement(CommandPrompt& prompt) {
    ads_point given = {0, 0, 0};
    prompt.point({u"Specify displacement <0,0,0>: ", 0, u"", nullptr}, given);
    return toPoint(given).asVector();
}

/// The second point of a way; Enter takes the first point for the way.
AcGeVector3d askSecond(CommandPrompt& prompt, const AcGePoint3d& base) {
    const BasePoint from(base);
    ads_point given;
    const Answered answer = prompt.point(
        {u"Specify second point or <use first point as displacement>: ", 0, u"", from}, given);
    return answer == Answered::Nothing ? base.asVector() : toPoint(given) - base;
}

void move(CommandPrompt& prompt) {
    Chosen chosen(prompt);
    if (chosen.empty()) return;
    AcGePoint3d base;
    const bool by_points = askBase(prompt, u"Specify base point or [Displacement] <Displacement>: ",
                                   u"Displacement", base);
    const AcGeVector3d way = by_points ? askSecond(prompt, base) : askDisplacement(prompt);
    chosen.transform(AcGeMatrix3d().setToTranslation(way));
}

void copyMany(CommandPrompt& prompt, Chosen& chosen, const AcGePoint3d& base) {
    const BasePoint from(base);
    ads_point given;
    const Prompt next = {u"Specify second point or <exit>: ", 0, u"", from};
    while (prompt.point(next, given) == Answered::Value)
        chosen.copy(AcGeMatrix3d().setToTranslation(toPoint(given) - base));
}

void copy(CommandPrompt& prompt) {
    Chosen chosen(prompt);
    if (chosen.empty()) return;
    AcGePoint3d base;
    if (askBase(prompt, u"Specify base point or [Displacement/Multiple] <Displacement>: ",
                u"Displacement Multiple", base)) {
        chosen.copy(AcGeMatrix3d().setToTranslation(askSecond(prompt, base)));
    } else if (prompt.given(u"Multiple")) {
        copyMany(prompt, chosen, askPoint(prompt, u"Specify base point: "));
    } else {
        chosen.copy(AcGeMatrix3d().setToTranslation(askDisplacement(prompt)));
    }
}

// --- turning and scaling ------------------------------------------------------------------------

void rotate(CommandPrompt& prompt) {
    Chosen chosen(prompt);
    if (chosen.empty()) return;
    const AcGePoint3d centre = askPoint(prompt, u"Specify base point: ");
    const BasePoint base(centre);
    bool copies = false;
    double angle = 0.0;
    Answered answer = Answered::Keyword;
    while (answer == Answered::Keyword) {
        answer = prompt.relativeAngle(
            {u"Specify rotation angle or [Copy/Reference] <" + shownAngle(0.0) + u">: ", 0,
             u"Copy Reference", base},
            angle);
        if (answer != Answered::Keyword) break;
        if (prompt.given(u"Copy")) {
            copies = true;
            continue;
        }
        double before = 0.0, after = 0.0;
        prompt.angle({u"Specify the reference angle <0>: ", 0, u"", nullptr}, before);
        prompt.angle({u"Specify the new angle: ", RSG_NONULL, u"", base}, after);
        angle = after - before;
        break;
    }
    const AcGeMatrix3d turn = turnAbout(centre, angle);
    copies ? chosen.copy(turn) : chosen.transform(turn);
}

void scale(CommandPrompt& prompt) {
    Chosen chosen(prompt);
    if (chosen.empty()) return;
    const AcGePoint3d centre = askPoint(prompt, u"Specify base point: ");
    const BasePoint base(centre);
    constexpr int kPositive = RSG_NOZERO | RSG_NONEG;
    bool copies = false;
    double factor = 1.0;
    for (;;) {
        const Answered answer = prompt.distance(
            {u"Specify scale factor or [Copy/Reference] <1>: ", kPositive, u"Copy Reference", base},
            factor);
        if (answer != Answered::Keyword) break;
        if (prompt.given(u"Copy")) {
            copies = true;
            continue;
        }
        double before = 1.0, after = 1.0;
        prompt.distance({u"Specify reference length <1>: ", kPositive, u"", nullptr}, before);
        prompt.distance({u"Specify new length: ", kPositive | RSG_NONULL, u"", base}, after);
        factor = after / before;
        break;
    }
    const AcGeMatrix3d scaling = AcGeMatrix3d().setToScaling(factor, centre);
    copies ? chosen.copy(scaling) : chosen.transform(scaling);
}

void mirror(CommandPrompt& prompt) {
    Chosen chosen(prompt);
    if (chosen.empty()) return;
    const AcGePoint3d a = askPoint(prompt, u"Specify first point of mirror line: ");
    const AcGePoint3d b = askPoint(prompt, u"Specify second point of mirror line: ", a);
    if (inPlane(a).distanceTo(inPlane(b)) == 0.0) prompt.refuse(u"the points make no line.");
    const Answered answer =
        prompt.keyword({u"Erase source objects? [Yes/No] <No>: ", 0, u"Yes No", nullptr});
    const bool replaces = answer == Answered::Keyword && prompt.given(u"Yes");
    const AcGeMatrix3d matrix = mirrorAt(a, b);
    replaces ? chosen.transform(matrix) : chosen.copy(matrix);
}

const Command kCommands[] = {
    {u"ERASE", u"E", erase, true, "Erases entities."},
    {u"OOPS", nullptr, oops, true, "Brings back what was erased last."},
    {u"MOVE", u"M", move, true, "Moves entities by a way."},
    {u"COPY", u"CO", copy, true, "Copies entities to another place, or to several."},
    {u"ROTATE", u"RO", rotate, true, "Turns entities about a point."},
    {u"SCALE", u"SC", scale, true, "Makes entities larger or smaller, as seen from a point."},
    {u"MIRROR", u"MI", mirror, true, "Mirrors entities at a line, in place or as copies."},
};

}  // namespace

std::span<const Command> modifyCommands() {
    return kCommands;
}

}  // namespace host
