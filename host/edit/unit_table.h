/// Units of measurement by their names, and what one is in another.
#ifndef HOST_EDIT_UNIT_TABLE_H
#define HOST_EDIT_UNIT_TABLE_H

#include <optional>
#include <string_view>

namespace host {

/// How a number of one unit becomes one of another: value * factor + offset.
struct UnitChange {
    double factor = 1.0;
    double offset = 0.0;  ///< of temperatures only
};

/// The change from one unit to another. Names count in any case unless both cases mean different
/// units; they may stand in the singular, the plural or short ("inch", "inches", "in"), with the
/// metric prefixes ("mm", "kilometer"), with powers, as products and as quotients ("sq ft", "ft^2",
/// "kg/m^3", "m/sec^2").
/// @return nothing for an unknown unit, and for units of different kinds
std::optional<UnitChange> unitChange(std::u16string_view from, std::u16string_view to);

}  // namespace host

#endif
