/// What programs and tests set that no command can: read-only system variables, the screen, the
/// clock.
#ifndef HOST_VARIABLES_H
#define HOST_VARIABLES_H

#include <cstdint>
#include <functional>
#include <string_view>

#include "host/export.h"

namespace host {

/// Sets a system variable that is kept, read-only ones too. @return false for an unknown one, one
/// that the host works out, and a value that it can't have
HOST_API bool presetVariable(std::string_view name, int32_t value);
HOST_API bool presetVariable(std::string_view name, double value);
HOST_API bool presetVariable(std::string_view name, std::u16string_view value);

/// Size of the screen in pixels, 1920 x 1080 at first. @return false for a side below 1
HOST_API bool setScreenSize(double width, double height);

/// Lets the host take the time from a function: milliseconds since 1970, UTC. An empty one gives
/// it back to the system's clock.
HOST_API void setClock(std::function<int64_t()> clock);

}  // namespace host

#endif
