/// Definitions of blocks.
#ifndef HOST_EDIT_BLOCK_DEFINITION_H
#define HOST_EDIT_BLOCK_DEFINITION_H

#include <string>
#include <string_view>

#include "acad/ge.h"
#include "db/database.h"

namespace host {

/// An empty block. One of this name loses its contents and gets the new base point. @return its
/// record; kNoSlot for a name that can't be one
Slot defineBlock(Database& database, std::u16string_view name, const AcGePoint3d& base);
/// Groups of a new block's record, and its BLOCK and ENDBLK.
Tags blockRecordTags(const Database& database);
void addBlockEnds(Database& database, Slot record, const AcGePoint3d& base);
/// Notes in the block whether it asks for attributes, once its contents are there.
void noteAttributes(Database& database, Slot block);
/// Base point of a block.
AcGePoint3d blockBase(Database& database, Slot block);
/// A free name for a block without one: "*D7".
std::u16string anonymousBlockName(Database& database, char16_t kind);
/// True when the block `outer`, or one that is inserted in it at any depth, is `inner`.
bool containsBlock(Database& database, Slot outer, Slot inner);
/// The block of an INSERT, or the picture of a DIMENSION; kNoSlot for none.
Slot blockOfReference(Database& database, Slot entity);

}  // namespace host

#endif
