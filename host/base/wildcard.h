/// Wildcard match of the platform: # digit, @ letter, . neither, * any run, ? any one, [..] one of,
/// [~..] none of, ~ in front of a pattern negates it, ',' separates alternatives, ` takes the next
/// character as it is.
#ifndef HOST_BASE_WILDCARD_H
#define HOST_BASE_WILDCARD_H

#include <string_view>

namespace host {

/// True when `text` matches one of the alternatives of `pattern`; letters as they are.
bool wildcardMatch(std::u16string_view text, std::u16string_view pattern);
/// The same without regard to case, as symbol names are matched.
bool wildcardMatchNoCase(std::u16string_view text, std::u16string_view pattern);
/// True when a pattern holds a character that is not taken literally.
bool hasWildcard(std::u16string_view pattern);

}  // namespace host

#endif
