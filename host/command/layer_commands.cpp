/// LAYER. It repeats its prompt up to Enter; each option has its effect at once.
#include <array>

#include "acad/ads.h"
#include "command/drafting.h"
#include "command/name_lists.h"
#include "command/property_values.h"
#include "edit/drawing_state.h"
#include "edit/sysvars.h"
#include "edit/tag_values.h"
#include "kz_tls21an/text.h"

namespace host {
namespace {

/// Bits of group 70.
constexpr int64_t kFrozen = 1;
constexpr int64_t kLocked = 4;

std::u16string quoted(const std::u16string& name) {
    return u"\"" + name + u"\"";
}

class LayerCommand {
  public:
    explicit LayerCommand(CommandPrompt& prompt)
        : prompt_(prompt), drawing_(commandDrawing(prompt)) {}

    void run() {
        prompt_.say(u"Current layer: " + quoted(current()));
        const Prompt options = {
            u"Enter an option [?/Make/Set/New/Rename/ON/OFF/Color/Ltype/LWeight/Plot/Freeze/Thaw/"
            u"LOck/Unlock]: ",
            0, u"? Make Set New Rename ON OFf Color Ltype LWeight Plot Freeze Thaw LOck Unlock",
            nullptr};
        while (prompt_.keyword(options) == Answered::Keyword) {
            for (const Option& option : kOptions) {
                if (prompt_.given(option.keyword)) {
                    (this->*option.run)();
                    break;
                }
            }
        }
    }

  private:
    struct Option {
        std::u16string_view keyword;
        void (LayerCommand::*run)();
    };
    static const std::array<Option, 15> kOptions;

    static std::u16string current() { return textVariable("CLAYER"); }
    bool isCurrent(Slot layer) {
        return kz::compareNoCase(drawing_.symbolName(layer), current()) == 0;
    }
    int64_t flags(Slot layer) { return integerOf(drawing_.tags(layer), 70, 0); }

    // --- names ----------------------------------------------------------------------------------

    Slot find(std::u16string_view name) { return drawing_.findSymbol("LAYER", name); }

    /// Layers that a list of names and wildcards means, each once. What means none is told.
    std::vector<Slot> listed(std::u16string_view list) {
        return listedRecords(drawing_, "LAYER", list, {}, [this](const std::u16string& item) {
            prompt_.say(u"Cannot find layer " + quoted(item) + u".");
        });
    }

    /// Asks for layers; Enter means the current one where `or_current` is set, otherwise none.
    std::vector<Slot> askLayers(std::u16string_view what, bool or_current) {
        std::u16string text = u"Enter name list of layer(s) " + std::u16string(what);
        if (or_current) text += u" <" + current() + u">";
        const std::u16string list = askName(prompt_, text + u": ");
        return listed(list.empty() && or_current ? current() : list);
    }

    // --- changes --------------------------------------------------------------------------------

    void set(Slot layer, Tag tag) {
        replaceTag(drawing_.changeTags(layer), std::move(tag));
        drawing_.touch(layer);
    }

    void setFlag(Slot layer, int64_t flag, bool on) {
        const int64_t before = flags(layer);
        const int64_t after = on ? before | flag : before & ~flag;
        if (before != after) set(layer, Tag(70, after));
    }

    /// A layer that is off has its colour negative.
    void setOn(Slot layer, bool on) {
        const int64_t colour = integerOf(drawing_.tags(layer), 62, 7);
        if ((colour < 0) == on) set(layer, Tag(62, -colour));
    }

    Slot makeLayer(const std::u16string& name) {
        if (acdbSNValid(name.c_str(), 0) != RTNORM) {
            prompt_.say(quoted(name) + u" can't be the name of a layer.");
            return kNoSlot;
        }
        return drawing_.needLayer(name);
    }

    void makeCurrent(Slot layer) {
        const std::u16string name = drawing_.symbolName(layer);
        if (canBeCurrentLayer(drawing_, layer)) {
            setVariable("CLAYER", name);
        } else if ((flags(layer) & kFrozen) != 0) {
            prompt_.say(u"Layer " + quoted(name) + u" is frozen and can't become the current one.");
        } else {
            prompt_.say(u"Layer " + quoted(name) +
                        u" is of an attached drawing and can't become the current one.");
        }
    }

    // --- options --------------------------------------------------------------------------------

    void make() {
        const std::u16string name =
            askName(prompt_,
                    u"Enter name for new layer (becomes the current layer) <" + current() + u">: ");
        if (name.empty()) return;
        const Slot layer = makeLayer(name);
        if (layer == kNoSlot) return;
        setOn(layer, true);
        makeCurrent(layer);
    }

    void makeNew() {
        const std::u16string list = askName(prompt_, u"Enter name list for new layer(s): ");
        for (size_t at = 0; at < list.size();) {
            const size_t end = std::min(list.find(u',', at), list.size());
            const std::u16string name = list.substr(at, end - at);
            at = end + 1;
            if (name.empty()) continue;
            if (find(name) != kNoSlot) {
                prompt_.say(u"Layer " + quoted(name) + u" already exists.");
            } else {
                makeLayer(name);
            }
        }
    }

    void setCurrent() {
        const std::u16string name =
            askName(prompt_, u"Enter layer name to make current or <select object>: ");
        Slot layer = kNoSlot;
        if (name.empty()) {
            const AcDbObjectId id =
                prompt_.entity(u"Select object whose layer will become current: ");
            if (id.isNull()) return;
            const Tags& tags = drawing_.tags(drawing_.slotOf(id));
            layer = find(tags[findTag(tags, 8)].text(drawing_.codec()));
        } else {
            layer = find(name);
        }
        if (layer == kNoSlot) {
            prompt_.say(u"Cannot find layer " + quoted(name) + u".");
        } else {
            makeCurrent(layer);
        }
    }

    void rename() {
        const std::u16string old_name = askName(prompt_, u"Enter old layer name: ");
        const Slot layer = find(old_name);
        if (layer == kNoSlot) {
            return prompt_.say(u"Cannot find layer " + quoted(old_name) + u".");
        }
        const std::u16string new_name = askName(prompt_, u"Enter new layer name: ");
        const std::u16string present = drawing_.symbolName(layer);
        if (new_name.empty()) return;
        if (present == u"0" || acdbSNValid(new_name.c_str(), 0) != RTNORM) {
            return prompt_.say(u"Layer " + quoted(present) + u" can't be renamed to " +
                               quoted(new_name) + u".");
        }
        if (find(new_name) != kNoSlot && find(new_name) != layer) {
            return prompt_.say(u"Layer " + quoted(new_name) + u" already exists.");
        }
        renameLayer(layer, present, new_name);
    }

    /// What lies on a layer names it, so all of it is renamed with it.
    void renameLayer(Slot layer, const std::u16string& old_name, const std::u16string& new_name) {
        if (isCurrent(layer)) drawing_.setHeader("$CLAYER", Tag(8, new_name));
        for (Slot slot = 1; slot < drawing_.slotCount(); ++slot) {
            const ObjectClass kind = drawing_.record(slot).object_class;
            if (kind != ObjectClass::Entity && kind != ObjectClass::SubEntity) continue;
            const Tags& tags = drawing_.tags(slot);
            const size_t at = findTag(tags, 8);
            if (at >= tags.size() ||
                kz::compareNoCase(tags[at].text(drawing_.codec()), old_name) != 0) {
                continue;
            }
            drawing_.changeTags(slot)[at] = Tag(8, new_name);
            drawing_.touch(slot);
        }
        replaceTag(drawing_.changeTags(layer), Tag(2, new_name));
        drawing_.renameSymbol(layer, old_name, new_name);
        drawing_.touch(layer);
    }

    void turnOn() {
        for (const Slot layer : askLayers(u"to turn on", false))
            setOn(layer, true);
    }

    void turnOff() {
        for (const Slot layer : askLayers(u"to turn off", false)) {
            if (isCurrent(layer)) {
                const Answered answer = prompt_.keyword({u"Really want layer " + quoted(current()) +
                                                             u" (the CURRENT layer) off? "
                                                             u"[Yes/No] <No>: ",
                                                         0, u"Yes No", nullptr});
                if (answer == Answered::Nothing || prompt_.given(u"No")) continue;
            }
            setOn(layer, false);
        }
    }

    void colour() {
        for (;;) {
            const std::u16string typed = prompt_.text(u"New color: ");
            if (typed.empty()) return;
            const bool off = typed.starts_with(u'-');
            const auto index = colourOf(off ? typed.substr(1) : typed);
            if (!index || *index == kColourByBlock || *index == kColourByLayer) {
                prompt_.say(u"A color number (1 to 255) or the name of a color is needed.");
                continue;
            }
            const int64_t value = off ? -*index : *index;
            for (const Slot layer : askLayers(u"for color " + colourName(*index), true)) {
                const bool was_off = integerOf(drawing_.tags(layer), 62, 7) < 0;
                std::erase_if(drawing_.changeTags(layer), [](const Tag& tag) {
                    return tag.code() == 420 || tag.code() == 430;
                });
                set(layer, Tag(62, was_off ? -*index : value));
            }
            return;
        }
    }

    void linetype() {
        const std::u16string name =
            askLinetype(prompt_, u"Enter loaded linetype name", u"Continuous");
        for (const Slot layer : askLayers(u"for linetype " + quoted(name), true))
            set(layer, Tag(6, name));
    }

    void weight() {
        const int value = askWeight(prompt_, u"Enter lineweight (0.0mm - 2.11mm)", kWeightDefault);
        const std::vector<Slot> layers = askLayers(u"for lineweight " + weightName(value), true);
        if (!hasWeights(prompt_)) return;
        for (const Slot layer : layers)
            set(layer, Tag(370, static_cast<int64_t>(value)));
    }

    void plot() {
        const Answered answer = prompt_.keyword(
            {u"Enter a plotting preference [Plot/No plot] <Plot>: ", 0, u"Plot No", nullptr});
        const bool plots = answer == Answered::Nothing || prompt_.given(u"Plot");
        const std::vector<Slot> layers = askLayers(u"for this plot preference", true);
        if (!hasWeights(prompt_)) return;
        for (const Slot layer : layers)
            set(layer, Tag(290, static_cast<int64_t>(plots ? 1 : 0)));
    }

    void freeze() {
        for (const Slot layer : askLayers(u"to freeze", false)) {
            if (isCurrent(layer)) {
                prompt_.say(u"Cannot freeze layer " + quoted(current()) +
                            u": it is the current one.");
            } else {
                setFlag(layer, kFrozen, true);
            }
        }
    }

    void thaw() {
        for (const Slot layer : askLayers(u"to thaw", false))
            setFlag(layer, kFrozen, false);
    }

    void setLocked(std::u16string_view what, bool locked) {
        for (const Slot layer : askLayers(what, false))
            setFlag(layer, kLocked, locked);
        drawing_.recountLockedLayers();
    }
    void lock() { setLocked(u"to lock", true); }
    void unlock() { setLocked(u"to unlock", false); }

    void list() {
        const std::u16string pattern = askName(prompt_, u"Enter layer name(s) to list <*>: ");
        for (const Slot layer : listed(pattern.empty() ? u"*" : pattern)) {
            const Tags& tags = drawing_.tags(layer);
            const int64_t colour = integerOf(tags, 62, 7);
            const size_t linetype = findTag(tags, 6);
            std::u16string line = quoted(drawing_.symbolName(layer));
            line += colour < 0 ? u" off" : u" on";
            if ((flags(layer) & kFrozen) != 0) line += u", frozen";
            if ((flags(layer) & kLocked) != 0) line += u", locked";
            line += u", color " + colourName(static_cast<int>(std::abs(colour)));
            if (linetype < tags.size()) line += u", " + tags[linetype].text(drawing_.codec());
            if (isCurrent(layer)) line += u", current";
            prompt_.say(line);
        }
    }

    CommandPrompt& prompt_;
    Database& drawing_;
};

const std::array<LayerCommand::Option, 15> LayerCommand::kOptions = {{
    {u"?", &LayerCommand::list},
    {u"Make", &LayerCommand::make},
    {u"Set", &LayerCommand::setCurrent},
    {u"New", &LayerCommand::makeNew},
    {u"Rename", &LayerCommand::rename},
    {u"ON", &LayerCommand::turnOn},
    {u"OFf", &LayerCommand::turnOff},
    {u"Color", &LayerCommand::colour},
    {u"Ltype", &LayerCommand::linetype},
    {u"LWeight", &LayerCommand::weight},
    {u"Plot", &LayerCommand::plot},
    {u"Freeze", &LayerCommand::freeze},
    {u"Thaw", &LayerCommand::thaw},
    {u"LOck", &LayerCommand::lock},
    {u"Unlock", &LayerCommand::unlock},
}};

void layer(CommandPrompt& prompt) {
    LayerCommand(prompt).run();
}

const Command kCommands[] = {
    {u"LAYER", u"LA", layer, true,
     "Makes layers, sets the current one, and turns on, off, freezes, locks and colours them."},
};

}  // namespace

std::span<const Command> layerCommands() {
    return kCommands;
}

}  // namespace host
