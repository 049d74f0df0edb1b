/// Taking another drawing in as a block.
#ifndef HOST_EDIT_IMPORT_DRAWING_H
#define HOST_EDIT_IMPORT_DRAWING_H

#include <map>
#include <string>
#include <string_view>

#include "db/database.h"

namespace host {

/// Makes a block of what lies in the model space of another drawing, with the layers, line types,
/// styles and blocks that it names. What this drawing has of the same name goes before. A block of
/// this name gets the new contents.
/// @param[out] left_out  entities by type that could not be taken along
/// @return the block; kNoSlot for a name that can't be one
Slot importDrawing(Database& database, Database& source, std::u16string_view name,
                   std::map<std::string, size_t>& left_out);

}  // namespace host

#endif
