/// What programs keep for the user beyond a run: texts by section and name, in a file of the user's
/// own. Names count in any case.
///
/// The file is $KZ_SETTINGS, or kz/settings in $XDG_CONFIG_HOME or ~/.config. It has a line for
/// each value: section, name and text, apart by tabs (tabs, line ends and backslashes in them
/// escaped with a backslash).
#ifndef HOST_BASE_SETTINGS_H
#define HOST_BASE_SETTINGS_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// The text of a name in a section; nothing when there is none.
std::optional<std::u16string> readSetting(std::u16string_view section, std::u16string_view name);
/// Keeps a text. @return false when the file can't be written
bool writeSetting(std::u16string_view section, std::u16string_view name, std::u16string_view text);
/// Removes a name, or with nothing for it the section and those below it.
/// @return false when there was none, or the file can't be written
bool removeSetting(std::u16string_view section, std::optional<std::u16string_view> name);
/// Names in a section, or the sections right below it (their last parts), as they were written
/// first. Parts of a section are apart by backslashes or slashes.
std::vector<std::u16string> settingNames(std::u16string_view section);
std::vector<std::u16string> settingSections(std::u16string_view section);

}  // namespace host

#endif
