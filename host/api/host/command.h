/// Commands of the host, for programs around it.
#ifndef HOST_COMMAND_H
#define HOST_COMMAND_H

#include <string>
#include <string_view>
#include <vector>

#include "host/export.h"

namespace host {

struct CommandInfo {
    std::u16string name;   ///< upper case
    std::u16string alias;  ///< short form, may be empty
    std::string help;      ///< one sentence
};
/// All commands, by name.
HOST_API std::vector<CommandInfo> commands();
/// True for a typed word that names a command.
HOST_API bool isCommand(std::u16string_view word);
/// Runs the command that a typed line names; the rest of the line answers its first prompts, the
/// input reader the others. @return false for an unknown command, which is told, and for one that
/// was cancelled
HOST_API bool runCommandLine(std::u16string_view line);

}  // namespace host

#endif
