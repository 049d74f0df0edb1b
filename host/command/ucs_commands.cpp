/// UCS: the user coordinate system, new ones, earlier ones, and those with a name.
#include <numbers>

#include "command/drafting.h"
#include "edit/typed_points.h"
#include "edit/ucs.h"

namespace host {
namespace {

class UcsCommand {
  public:
    explicit UcsCommand(CommandPrompt& prompt)
        : prompt_(prompt), drawing_(commandDrawing(prompt)) {}

    void run() {
        ads_point given;
        const Answered answer = prompt_.point(
            {u"Specify origin of UCS or [NAmed/New/Move/Origin/OBject/Previous/Restore/Save/Delete/"
             u"View/World/X/Y/Z/ZAxis/3point/?] <World>: ",
             0,
             u"NAmed New Move Origin OBject Previous Restore Save Delete View World X Y Z ZAxis "
             u"3point,3 ?",
             nullptr},
            given);
        if (answer == Answered::Nothing) return tell(setWorldUcs(drawing_));
        if (answer == Answered::Value) return tell(setUcsOrigin(drawing_, toPoint(given)));
        if (prompt_.given(u"New")) return makeNew();
        if (prompt_.given(u"Move") || prompt_.given(u"Origin")) return moveOrigin();
        if (prompt_.given(u"Previous")) return tell(setPreviousUcs(drawing_));
        if (prompt_.given(u"World")) return tell(setWorldUcs(drawing_));
        if (prompt_.given(u"NAmed")) {
            prompt_.keyword({u"Enter an option [Restore/Save/Delete/?]: ", RSG_NONULL,
                             u"Restore Save Delete ?", nullptr});
        }
        if (!byName()) byForm();
    }

  private:
    /// Ends the command with what the change answered.
    void tell(Refusal refusal) {
        if (!refusal.empty()) prompt_.refuse(refusal);
    }

    // --- by name --------------------------------------------------------------------------------

    bool byName() {
        if (prompt_.given(u"?")) {
            list();
        } else if (prompt_.given(u"Save")) {
            withName(u"Enter name to save current UCS or [?]: ", saveUcs);
        } else if (prompt_.given(u"Restore")) {
            withName(u"Enter name of UCS to restore or [?]: ", restoreUcs);
        } else if (prompt_.given(u"Delete")) {
            withName(u"Enter UCS name to delete or [?]: ", deleteUcs);
        } else {
            return false;
        }
        return true;
    }

    void withName(std::u16string_view text, Refusal (*change)(Database&, std::u16string_view)) {
        std::u16string name = askName(prompt_, text);
        while (name == u"?") {
            list();
            name = askName(prompt_, text);
        }
        if (!name.empty()) tell(change(drawing_, name));
    }

    void list() {
        const Ucs present = currentUcs(drawing_);
        prompt_.say(u"Current UCS: " + (present.isWorld()      ? u"*WORLD*"
                                        : present.name.empty() ? u"*NO NAME*"
                                                               : present.name));
        const SymbolTable* table = drawing_.table("UCS");
        if (table == nullptr) return;
        for (const Slot record : table->records) {
            if (!drawing_.record(record).erased) prompt_.say(drawing_.symbolName(record));
        }
    }

    // --- by form --------------------------------------------------------------------------------

    void makeNew() {
        ads_point given;
        const Answered answer = prompt_.point(
            {u"Specify origin of new UCS or [ZAxis/3point/OBject/View/X/Y/Z] <0,0,0>: ", 0,
             u"ZAxis 3point,3 OBject View X Y Z", nullptr},
            given);
        if (answer == Answered::Value) return tell(setUcsOrigin(drawing_, toPoint(given)));
        if (answer == Answered::Keyword) byForm();
    }

    void byForm() {
        if (prompt_.given(u"View")) {
            tell(setUcsByView(drawing_));
        } else if (prompt_.given(u"OBject")) {
            byObject();
        } else if (prompt_.given(u"ZAxis")) {
            const AcGePoint3d origin = ask(u"Specify new origin point <0,0,0>: ", {});
            const AcGePoint3d above = origin + AcGeVector3d::kZAxis;
            const AcGePoint3d on_z = ask(
                u"Specify point on positive portion of Z-axis <" + shown(above) + u">: ", above);
            tell(setUcsByZAxis(drawing_, origin, on_z));
        } else if (prompt_.given(u"3point")) {
            byThreePoints();
        } else {
            turn();
        }
    }

    /// A point; Enter gives the other one.
    AcGePoint3d ask(std::u16string_view text, const AcGePoint3d& otherwise) {
        ads_point given;
        const Answered answer = prompt_.point({std::u16string(text), 0, u"", nullptr}, given);
        return answer == Answered::Value ? toPoint(given) : otherwise;
    }

    void moveOrigin() {
        tell(setUcsOrigin(drawing_, ask(u"Specify new origin point <0,0,0>: ", {})));
    }

    void byThreePoints() {
        const AcGePoint3d origin = ask(u"Specify new origin point <0,0,0>: ", {});
        const AcGePoint3d right = origin + AcGeVector3d::kXAxis;
        const AcGePoint3d on_x =
            ask(u"Specify point on positive portion of X-axis <" + shown(right) + u">: ", right);
        const AcGePoint3d up = origin + AcGeVector3d::kYAxis;
        const AcGePoint3d in_xy = ask(
            u"Specify point on positive-Y portion of the UCS XY plane <" + shown(up) + u">: ", up);
        tell(setUcsByThreePoints(drawing_, origin, on_x, in_xy));
    }

    void byObject() {
        const AcDbObjectId id = prompt_.entity(u"Select object to align UCS: ");
        if (id.isNull()) return;
        // An entity that is handed over has no pick; the last point says which end is meant.
        ads_point pick;
        lastPoint(pick);
        tell(setUcsByEntity(drawing_, drawing_.slotOf(id), toPoint(pick)));
    }

    void turn() {
        const std::u16string axis = prompt_.keywordGiven();
        double angle = std::numbers::pi / 2.0;
        prompt_.relativeAngle(
            {u"Specify rotation angle about " + axis + u" axis <90>: ", 0, u"", nullptr}, angle);
        tell(rotateUcs(drawing_, axis == u"X" ? 0 : axis == u"Y" ? 1 : 2, angle));
    }

    CommandPrompt& prompt_;
    Database& drawing_;
};

void ucs(CommandPrompt& prompt) {
    UcsCommand(prompt).run();
}

const Command kCommands[] = {
    {u"UCS", nullptr, ucs, true,
     "Sets the user coordinate system: a new one, an earlier one, or one with a name."},
};

}  // namespace

std::span<const Command> ucsCommands() {
    return kCommands;
}

}  // namespace host
