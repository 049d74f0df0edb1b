/// The rows of the system variables.
#ifndef HOST_EDIT_SYSVAR_TABLE_H
#define HOST_EDIT_SYSVAR_TABLE_H

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "db/database.h"
#include "edit/sysvars.h"

namespace host {

enum class VariableForm : uint8_t { Short, Long, Real, Text, Point2, Point3 };

/// Where a value is kept.
enum class VariableKept : uint8_t {
    Header,   ///< in the drawing's header, as "$NAME"
    View,     ///< in the record of the active view
    Drawing,  ///< beside the drawing, as long as it is open
    Session,  ///< as long as the program runs
    Computed  ///< nowhere: it follows from the state of the host
};

/// What a value has to be beside its range.
enum class VariableRule : uint8_t {
    None,
    Layer,       ///< one of the drawing that is thawed and its own
    LineType,    ///< one of the drawing, or ByLayer or ByBlock
    TextStyle,   ///< one of the drawing
    Color,       ///< a number or a name; the header keeps the number
    LineWeight,  ///< one that there is [1/100 mm], or -1 by layer, -2 by block, -3 default
    PointMode,   ///< 0 to 4, plus 32 a circle, plus 64 a square
    Character,   ///< a text of one character; the header keeps its code
    SplineType   ///< 5 or 6
};

struct Variable {
    std::string_view name;
    VariableForm form = VariableForm::Short;
    VariableKept kept = VariableKept::Session;
    int16_t code = 0;     ///< group code in the header or the view; a point's first one
    double number = 0.0;  ///< in a new drawing or session; of a point, its x
    double y = 0.0;
    double least = 0.0;  ///< what it may be; of a text `greatest` is the length
    double greatest = 0.0;
    std::u16string_view text{};
    VariableRule rule = VariableRule::None;
    bool read_only = false;
    bool by_space = false;  ///< paper space has one of its own, "$PNAME" in the header
    int16_t since = 1009;   ///< first file version (AC....) that has it; older ones keep it beside
};

/// How a computed variable is worked out, and taken in if it can be.
struct WorkedOut {
    std::string_view name;
    std::optional<VariableValue> (*get)(Database*);
    bool (*set)(Database&, const VariableValue&) = nullptr;
};
/// NULL for one that somebody else computes.
const WorkedOut* findWorkedOut(std::string_view name);

/// All rows, by name.
std::span<const Variable> systemVariables();
/// Row by name in upper case; NULL for an unknown one.
const Variable* findVariable(std::string_view name);

}  // namespace host

#endif
