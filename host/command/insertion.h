/// The part of INSERT that commands share which put a block somewhere.
#ifndef HOST_COMMAND_INSERTION_H
#define HOST_COMMAND_INSERTION_H

#include "command/command.h"
#include "db/database.h"

namespace host {

/// Asks for insertion point, scales, rotation and the values of attributes, and inserts the block.
void askAndInsert(CommandPrompt& prompt, Slot block);
/// The name of a block that a path stands for: of the file, without folder and extension.
std::u16string blockNameOf(const std::u16string& path);

}  // namespace host

#endif
