/// Views and viewports.
#include "db/database.h"
#include "edit/drawing_state.h"
#include "edit/tag_values.h"
#include "edit/zoom.h"
#include "kz_tls21an/text.h"
#include "lisp/builtin.h"
#include "lisp/interpreter.h"

namespace host::lisp {

namespace {

Value viewport(int32_t number, double x, double y, double right, double top) {
    return makeList(Value::integer(number), makeList(Value::real(x), Value::real(y)),
                    makeList(Value::real(right), Value::real(top)));
}

/// The tiled viewports of model space, by parts of the screen.
void addTiles(Database& drawing, ListBuilder& list) {
    constexpr int32_t kFirst = 2;
    const host::SymbolTable* table = drawing.table("VPORT");
    int32_t number = kFirst;
    if (table != nullptr) {
        for (const Slot slot : table->records) {
            if (drawing.record(slot).erased ||
                kz::compareNoCase(drawing.symbolName(slot), u"*ACTIVE") != 0)
                continue;
            const AcGePoint3d low = pointOf(drawing.tags(slot), 10);
            const AcGePoint3d high = pointOf(drawing.tags(slot), 11, {1, 1, 0});
            list.add(viewport(number++, low.x, low.y, high.x, high.y));
        }
    }
    if (number == kFirst) list.add(viewport(kFirst, 0, 0, 1, 1));
}

/// The viewports of the present layout, by places on the paper.
void addViewports(Database& drawing, ListBuilder& list) {
    const Block* paper = drawing.findBlock(drawing.paperSpace());
    if (paper == nullptr) return;
    for (const Slot slot : paper->contents) {
        if (drawing.record(slot).erased || drawing.typeName(slot) != "VIEWPORT") continue;
        const Tags& tags = drawing.tags(slot);
        const AcGePoint3d centre = pointOf(tags, 10);
        const double right = realOf(tags, 40, 0.0) / 2, up = realOf(tags, 41, 0.0) / 2;
        list.add(viewport(static_cast<int32_t>(integerOf(tags, 69, 0)), centre.x - right,
                          centre.y - up, centre.x + right, centre.y + up));
    }
}

Value viewports(Interpreter&, Args) {
    Database* drawing = currentDatabase();
    if (drawing == nullptr) return {};
    ListBuilder list;
    if (inModelTiles(*drawing)) {
        addTiles(*drawing, list);
    } else {
        addViewports(*drawing, list);
    }
    return list.take();
}

/// Takes what tblsearch gives for a view, of which the name counts.
Value setNamedView(Interpreter& in, Args args) {
    for (const Value* rest = &listArg(in, args[0]); rest->isCons(); rest = &rest->cons()->cdr) {
        const Value& pair = rest->cons()->car;
        const bool is_name = pair.isCons() && pair.cons()->car.isInteger() &&
                             pair.cons()->car.integer() == 2 && pair.cons()->cdr.isText();
        Database* drawing = is_name ? currentDatabase() : nullptr;
        if (drawing != nullptr && restoreView(*drawing, pair.cons()->cdr.text()) == kDone)
            return args[0];
    }
    return {};
}

const Builtin kRows[] = {
    {"vports", 0, 0, viewports, "(vports)",
     "Number and corners of each viewport: in model space parts of the screen, in a layout places "
     "on the paper."},
    {"setview", 1, 2, setNamedView, "(setview view [viewport])",
     "Makes a named view, as tblsearch gives it, the present one; nil when there is none of its "
     "name."},
};

}  // namespace

std::span<const Builtin> viewBuiltins() {
    return kRows;
}

}  // namespace host::lisp
