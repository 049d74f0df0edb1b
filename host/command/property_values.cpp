/// Colours, line types and line weights as people type them.
#include "command/property_values.h"

#include <array>
#include <cmath>

#include "acad/ads.h"
#include "base/wildcard.h"
#include "command/drafting.h"
#include "edit/typed_points.h"
#include "kz_tls21an/format.h"
#include "kz_tls21an/text.h"

namespace host {
namespace {

constexpr std::u16string_view kColours[] = {u"ByBlock", u"red",  u"yellow",  u"green",
                                            u"cyan",    u"blue", u"magenta", u"white"};

constexpr int kWeights[] = {0,  5,  9,  13, 15, 18,  20,  25,  30,  35,  40,  50,
                            53, 60, 70, 80, 90, 100, 106, 120, 140, 158, 200, 211};

bool same(std::u16string_view a, std::u16string_view b) {
    return kz::compareNoCase(a, b) == 0;
}

/// Names that programs put an underscore in front of.
std::u16string_view plain(std::u16string_view text) {
    while (text.starts_with(u'_') || text.starts_with(u'.'))
        text.remove_prefix(1);
    return text;
}

}  // namespace

std::optional<int> colourOf(std::u16string_view text) {
    text = plain(text);
    if (same(text, u"ByLayer")) return kColourByLayer;
    for (size_t i = 0; i < std::size(kColours); ++i) {
        if (same(text, kColours[i])) return static_cast<int>(i);
    }
    // The seven colours also go by their first letters.
    for (size_t i = 1; text.size() == 1 && i < std::size(kColours); ++i) {
        if (same(text, kColours[i].substr(0, 1))) return static_cast<int>(i);
    }
    const auto number = typedInteger(text);
    return number && *number >= kColourByBlock && *number <= kColourByLayer ? number : std::nullopt;
}

std::u16string colourName(int index) {
    if (index == kColourByLayer) return u"ByLayer";
    if (index >= 0 && static_cast<size_t>(index) < std::size(kColours)) {
        return std::u16string(kColours[index]);
    }
    return kz::toUtf16(std::to_string(index));
}

bool hasWeights(const CommandPrompt& prompt) {
    const bool known = commandDrawing(prompt).version() >= "AC1015";
    if (!known) prompt.warn(u"drawings of this version have no lineweights and plot flags.");
    return known;
}

std::optional<int> weightOf(std::u16string_view text) {
    text = plain(text);
    if (same(text, u"ByLayer")) return kWeightByLayer;
    if (same(text, u"ByBlock")) return kWeightByBlock;
    if (same(text, u"Default")) return kWeightDefault;
    const auto millimetres = typedReal(text);
    if (!millimetres || *millimetres < 0.0 || *millimetres > 2.11) return std::nullopt;
    int nearest = 0;
    for (const int weight : kWeights) {
        if (std::fabs(weight - *millimetres * 100.0) < std::fabs(nearest - *millimetres * 100.0)) {
            nearest = weight;
        }
    }
    return nearest;
}

std::u16string weightName(int weight) {
    switch (weight) {
        case kWeightByLayer:
            return u"ByLayer";
        case kWeightByBlock:
            return u"ByBlock";
        case kWeightDefault:
            return u"Default";
        default:
            kz_Char text[32];
            kz_Str_format(text, 32, u"%.2f mm", weight / 100.0);
            return text;
    }
}

std::u16string linetypeOf(Database& drawing, std::u16string_view name) {
    if (same(plain(name), u"ByLayer")) return u"ByLayer";
    if (same(plain(name), u"ByBlock")) return u"ByBlock";
    const Slot record = drawing.findSymbol("LTYPE", name);
    return record == kNoSlot ? std::u16string() : drawing.symbolName(record);
}

int askColour(CommandPrompt& prompt, std::u16string_view text, int present) {
    for (;;) {
        const std::u16string typed =
            prompt.text(std::u16string(text) + u" <" + colourName(present) + u">: ");
        if (typed.empty()) return present;
        if (const auto colour = colourOf(typed)) return *colour;
        prompt.say(u"A color number (0 to 256) or the name of a color is needed.");
    }
}

int askWeight(CommandPrompt& prompt, std::u16string_view text, int present) {
    for (;;) {
        const std::u16string typed =
            prompt.text(std::u16string(text) + u" <" + weightName(present) + u">: ");
        if (typed.empty()) return present;
        if (const auto weight = weightOf(typed)) return *weight;
        prompt.say(u"A lineweight from 0.0 to 2.11 mm, ByLayer, ByBlock or Default is needed.");
    }
}

std::u16string askLinetype(CommandPrompt& prompt, std::u16string_view text,
                           std::u16string_view present) {
    Database& drawing = commandDrawing(prompt);
    for (;;) {
        const std::u16string typed =
            askName(prompt, std::u16string(text) + u" <" + std::u16string(present) + u">: ");
        if (typed.empty()) return std::u16string(present);
        std::u16string name = linetypeOf(drawing, typed);
        if (!name.empty()) return name;
        prompt.say(u"There is no linetype " + typed + u" in the drawing.");
    }
}

}  // namespace host
