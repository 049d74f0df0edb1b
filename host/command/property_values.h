/// Colours, line types and line weights as people type them.
#ifndef HOST_COMMAND_PROPERTY_VALUES_H
#define HOST_COMMAND_PROPERTY_VALUES_H

#include <optional>
#include <string>
#include <string_view>

#include "command/command.h"
#include "db/database.h"

namespace host {

constexpr int kColourByBlock = 0;
constexpr int kColourByLayer = 256;
constexpr int kWeightByLayer = -1;
constexpr int kWeightByBlock = -2;
constexpr int kWeightDefault = -3;

/// Index of a colour by its number or name, from 0 (ByBlock) to 256 (ByLayer).
std::optional<int> colourOf(std::u16string_view text);
/// "red", "ByLayer", "42".
std::u16string colourName(int index);

/// True for a drawing whose version knows line weights; the user of another is told.
bool hasWeights(const CommandPrompt& prompt);
/// The nearest line weight that there is [1/100 mm] to one typed in millimetres, or one of the
/// three that follow others.
std::optional<int> weightOf(std::u16string_view text);
/// "0.25 mm", "ByLayer".
std::u16string weightName(int weight);

/// The line type of this name as the drawing spells it. Empty when it has none; ByLayer and ByBlock
/// it always has.
std::u16string linetypeOf(Database& drawing, std::u16string_view name);

/// Ask until an answer fits; Enter gives the value that is there.
int askColour(CommandPrompt& prompt, std::u16string_view text, int present);
int askWeight(CommandPrompt& prompt, std::u16string_view text, int present);
std::u16string askLinetype(CommandPrompt& prompt, std::u16string_view text,
                           std::u16string_view present);

}  // namespace host

#endif
