/// Lists of names and wildcards, as commands take them: "A,B*".
#ifndef HOST_COMMAND_NAME_LISTS_H
#define HOST_COMMAND_NAME_LISTS_H

#include <functional>
#include <string_view>
#include <vector>

#include "db/database.h"

namespace host {

/// Records of a table that a list means, each once, in the order of the list.
/// @param counts   which records there are to mean; an empty function: all living ones
/// @param unknown  hears of each item that means none
std::vector<Slot> listedRecords(Database& drawing, std::string_view table, std::u16string_view list,
                                const std::function<bool(Slot)>& counts,
                                const std::function<void(const std::u16string&)>& unknown);

}  // namespace host

#endif
