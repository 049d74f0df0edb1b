/// Copies of entities.
#ifndef HOST_EDIT_COPY_H
#define HOST_EDIT_COPY_H

#include "db/database.h"

namespace host {

/// Copies an entity with its sub-entities, XDATA and extension dictionary to the end of a block.
/// The copy belongs to no group; a hatch doesn't follow its boundary any more, a leader not its
/// text; a dimension gets a picture of its own, a viewport a number. @return the new entity
Slot copyEntity(Database& database, Slot entity, Slot block);

/// The groups that a copy of an entity of this type has, behind type, handle and owner.
/// @param paper  whether the copy lies in paper space
Tags copiedGroups(std::string_view type, const Tags& tags, bool paper);

}  // namespace host

#endif
