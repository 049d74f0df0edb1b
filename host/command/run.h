/// Runs commands: at once from a list of answers, or piece by piece as Lisp hands the answers over.
#ifndef HOST_COMMAND_RUN_H
#define HOST_COMMAND_RUN_H

#include <memory>
#include <vector>

#include "edit/input.h"

namespace host {

struct Command;

/// How a command ended.
enum class CommandEnd {
    Done,
    Cancelled,
    TooFew,  ///< it asked for more answers than there were
    Unknown  ///< there is no such command
};

/// Runs one command with the present source's answers.
CommandEnd runCommand(const Command& command);
/// Runs a list of commands with their answers; nothing is asked of the user but at a pause.
CommandEnd runCommands(std::vector<InputToken> tokens);

/// A command that gets its answers one by one and rests between them. There is at most one.
class RestingCommand {
  public:
    /// Hands a token over: to the resting command, or as the name of a new one.
    static CommandEnd feed(const InputToken& token);
    /// True when a command rests.
    static bool exists();
    /// Cancels the resting command.
    static void cancel();
    /// Lets the user answer until the command is done; a command that gets no answers is cancelled.
    static void finish();
};

/// Name of the command that runs or rests; empty for none.
const std::u16string& runningCommand();

}  // namespace host

#endif
