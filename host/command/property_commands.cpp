/// Properties of entities that are there (CHPROP, CHANGE), and those that new ones will get (COLOR,
/// LINETYPE, LWEIGHT, ELEV).
#include <algorithm>

#include "command/drafting.h"
#include "command/property_values.h"
#include "edit/sysvars.h"
#include "edit/tag_values.h"
#include "edit/transform.h"

namespace host {
namespace {

// --- of entities that are there -----------------------------------------------------------------

/// Takes a common group away, or gives it a value. `tags` are those of an entity.
void setCommonGroup(Tags& tags, int code, const Tag* value) {
    // The same codes may stand for other things in the entity's own class.
    const size_t own_class = findTag(tags, 100, findTag(tags, 100) + 1);
    const size_t at = findTag(tags, code);
    if (at < own_class) {
        if (value != nullptr) {
            tags[at] = *value;
        } else {
            tags.erase(tags.begin() + static_cast<std::ptrdiff_t>(at));
        }
    } else if (value != nullptr) {
        const size_t layer = findTag(tags, 8);
        const size_t place = layer < own_class ? layer + 1 : own_class;
        tags.insert(tags.begin() + static_cast<std::ptrdiff_t>(place), *value);
    }
}

class PropertyCommand {
  public:
    explicit PropertyCommand(CommandPrompt& prompt)
        : prompt_(prompt), drawing_(commandDrawing(prompt)) {
        for (const AcDbObjectId id : prompt.entities()) {
            const Slot main = drawing_.slotOf(id);
            slots_.push_back(main);
            // Vertices go with their polyline; attributes have properties of their own.
            if (drawing_.typeName(main) != "POLYLINE") continue;
            for (const Slot part : partsOf(drawing_, main))
                slots_.push_back(part);
        }
    }
    bool empty() const { return slots_.empty(); }

    void run() {
        const Prompt what = {
            u"Enter property to change [Color/LAyer/LType/ltScale/LWeight/Thickness]: ", 0,
            u"Color LAyer LType ltScale LWeight Thickness", nullptr};
        while (prompt_.keyword(what) == Answered::Keyword) {
            if (prompt_.given(u"Color")) {
                colour();
            } else if (prompt_.given(u"LAyer")) {
                layer();
            } else if (prompt_.given(u"LType")) {
                linetype();
            } else if (prompt_.given(u"ltScale")) {
                scale();
            } else if (prompt_.given(u"LWeight")) {
                weight();
            } else {
                thickness();
            }
        }
    }

  private:
    const Tags& first() { return drawing_.tags(slots_.front()); }

    void set(int code, const Tag* value) {
        for (const Slot slot : slots_) {
            setCommonGroup(drawing_.changeTags(slot), code, value);
            drawing_.touch(slot);
        }
    }
    /// Sets a group, or takes it away where the value is the one that goes without saying.
    void set(const Tag& value, bool usual) { set(value.code(), usual ? nullptr : &value); }

    void colour() {
        const int present = static_cast<int>(integerOf(first(), 62, kColourByLayer));
        const int index = askColour(prompt_, u"Enter new color", present);
        set(Tag(62, static_cast<int64_t>(index)), index == kColourByLayer);
        // A true colour would go before the index.
        set(420, nullptr);
        set(430, nullptr);
    }

    void layer() {
        const size_t at = findTag(first(), 8);
        const std::u16string present =
            at < first().size() ? first()[at].text(drawing_.codec()) : u"0";
        for (;;) {
            const std::u16string typed =
                askName(prompt_, u"Enter new layer name <" + present + u">: ");
            if (typed.empty()) return;
            const Slot record = drawing_.findSymbol("LAYER", typed);
            if (record != kNoSlot) return set(Tag(8, drawing_.symbolName(record)), false);
            prompt_.say(u"Cannot find layer \"" + typed + u"\".");
        }
    }

    void linetype() {
        const size_t at = findTag(first(), 6);
        const std::u16string present =
            at < first().size() ? first()[at].text(drawing_.codec()) : u"ByLayer";
        const std::u16string name = askLinetype(prompt_, u"Enter new linetype name", present);
        set(Tag(6, name), name == u"ByLayer");
    }

    void scale() {
        double value = realOf(first(), 48, 1.0);
        prompt_.distance({u"Specify new linetype scale <" + shown(value) + u">: ",
                          RSG_NOZERO | RSG_NONEG, u"", nullptr},
                         value);
        set(Tag(48, value), value == 1.0);
    }

    void weight() {
        const int present = static_cast<int>(integerOf(first(), 370, kWeightByLayer));
        const int value = askWeight(prompt_, u"Enter new lineweight", present);
        if (!hasWeights(prompt_)) return;
        set(Tag(370, static_cast<int64_t>(value)), value == kWeightByLayer);
    }

    void thickness() {
        double value = realOf(first(), 39, 0.0);
        prompt_.distance({u"Specify new thickness <" + shown(value) + u">: ", 0, u"", nullptr},
                         value);
        for (const Slot slot : slots_) {
            if (drawing_.record(slot).object_class != ObjectClass::Entity) continue;
            if (!setThickness(slot, value)) {
                prompt_.say(u"A " + drawing_.tags(slot)[0].text(drawing_.codec()) +
                            u" has no thickness.");
            }
        }
    }

    bool setThickness(Slot slot, double value) {
        static constexpr std::string_view kTypes[] = {"LINE",       "POINT",    "CIRCLE", "ARC",
                                                      "SOLID",      "TRACE",    "TEXT",   "ATTDEF",
                                                      "LWPOLYLINE", "POLYLINE", "SHAPE"};
        const std::string& type = drawing_.typeName(slot);
        if (std::find(std::begin(kTypes), std::end(kTypes), type) == std::end(kTypes)) return false;
        Tags& tags = drawing_.changeTags(slot);
        const size_t at = findTag(tags, 39);
        if (at < tags.size()) {
            tags[at] = Tag(39, value);
        } else if (value != 0.0) {
            // In front of the first point, as it is written by others.
            const size_t place = findTag(tags, 10);
            tags.emplace(tags.begin() + static_cast<std::ptrdiff_t>(place), 39, value);
        }
        drawing_.touch(slot);
        return true;
    }

    CommandPrompt& prompt_;
    Database& drawing_;
    std::vector<Slot> slots_;
};

void chprop(CommandPrompt& prompt) {
    PropertyCommand command(prompt);
    if (!command.empty()) command.run();
}

void change(CommandPrompt& prompt) {
    PropertyCommand command(prompt);
    if (command.empty()) return;
    ads_point given;
    const Answered answer = prompt.point(
        {u"Specify change point or [Properties]: ", RSG_NONULL, u"Properties", nullptr}, given);
    if (answer == Answered::Value) prompt.refuse(u"entities change their properties only.");
    command.run();
}

// --- of new entities ----------------------------------------------------------------------------

void colour(CommandPrompt& prompt) {
    commandDrawing(prompt);
    const int present = colourOf(textVariable("CECOLOR")).value_or(kColourByLayer);
    setVariable("CECOLOR", colourName(askColour(prompt, u"Enter default object color", present)));
}

void lineweight(CommandPrompt& prompt) {
    commandDrawing(prompt);
    const int present = integerVariable("CELWEIGHT", kWeightByLayer);
    setVariable("CELWEIGHT",
                askWeight(prompt, u"Enter default lineweight for new objects", present));
}

void listLinetypes(const CommandPrompt& prompt, Database& drawing) {
    const SymbolTable* table = drawing.table("LTYPE");
    if (table == nullptr) return;
    for (const Slot record : table->records) {
        if (drawing.record(record).erased) continue;
        const Tags& tags = drawing.tags(record);
        const size_t about = findTag(tags, 3);
        prompt.say(drawing.symbolName(record) + u"  " +
                   (about < tags.size() ? tags[about].text(drawing.codec()) : std::u16string()));
    }
}

void linetype(CommandPrompt& prompt) {
    Database& drawing = commandDrawing(prompt);
    while (prompt.keyword({u"Enter an option [?/Set]: ", 0, u"? Set", nullptr}) ==
           Answered::Keyword) {
        if (prompt.given(u"?")) {
            listLinetypes(prompt, drawing);
            continue;
        }
        const std::u16string present = textVariable("CELTYPE");
        setVariable("CELTYPE", askLinetype(prompt, u"Specify linetype name", present));
    }
}

void elevation(CommandPrompt& prompt) {
    commandDrawing(prompt);
    double height = realVariable("ELEVATION", 0.0);
    double thickness = realVariable("THICKNESS", 0.0);
    prompt.distance({u"Specify new default elevation <" + shown(height) + u">: ", 0, u"", nullptr},
                    height);
    prompt.distance(
        {u"Specify new default thickness <" + shown(thickness) + u">: ", 0, u"", nullptr},
        thickness);
    setVariable("ELEVATION", height);
    setVariable("THICKNESS", thickness);
}

const Command kCommands[] = {
    {u"CHPROP", nullptr, chprop, true,
     "Changes colour, layer, line type, its scale, line weight and thickness of entities."},
    {u"CHANGE", u"CH", change, true, "Changes properties of entities."},
    {u"COLOR", u"COLOUR", colour, true, "Sets the colour of new entities."},
    {u"LINETYPE", u"LT", linetype, true, "Sets the line type of new entities."},
    {u"LWEIGHT", u"LW", lineweight, true, "Sets the line weight of new entities."},
    {u"ELEV", nullptr, elevation, true, "Sets elevation and thickness of new entities."},
};

}  // namespace

std::span<const Command> propertyCommands() {
    return kCommands;
}

}  // namespace host
