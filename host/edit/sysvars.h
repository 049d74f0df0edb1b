/// System variables. One table (sysvar_table.cpp) says of each what kind of value it has, what it
/// is in a new drawing, what it may be, and where it is kept; here are the values.
#ifndef HOST_EDIT_SYSVARS_H
#define HOST_EDIT_SYSVARS_H

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "acad/ge.h"
#include "host/variables.h"

namespace host {

/// Value of a system variable.
using VariableValue = std::variant<int32_t, double, std::u16string, AcGePoint2d, AcGePoint3d>;

/// Value by name in any case; nothing for an unknown variable, and for one of the drawing when
/// there is none.
std::optional<VariableValue> variable(std::string_view name);
/// Sets a variable as setvar does. @return false for an unknown or read-only one, and a value that
/// it can't have; it is then as it was
bool setVariable(std::string_view name, const VariableValue& value);
/// The same for the host itself, which sets read-only variables that are kept; see also
/// host/variables.h.
bool keepVariable(std::string_view name, const VariableValue& value);

/// A variable's value for the host itself; `otherwise` when it has none of this kind.
int integerVariable(std::string_view name, int otherwise);
double realVariable(std::string_view name, double otherwise);
std::u16string textVariable(std::string_view name);

/// Lets a variable of the table have a value that the host works out when it is asked for, such as
/// the names of running commands. The value is of the kind that the table says.
void computeVariable(const char* name, std::function<VariableValue()> compute);

/// Values of the ERRNO variable that the host sets.
enum class HostErrno : int {
    None = 0,
    BadEntityName = 2,
    NoEntity = 6,
    PickFailed = 7,
    BadEntityList = 25,
    NullResponse = 52,
    BadXData = 66,
    LayerLocked = 68,
};

/// Remembers why a call failed; success never clears it.
void setErrno(HostErrno value);

}  // namespace host

#endif
