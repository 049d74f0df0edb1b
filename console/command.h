/// The commands of the program: each names its options and says what runs.
#ifndef CONSOLE_COMMAND_H
#define CONSOLE_COMMAND_H

#include <functional>

namespace CLI {
class App;
}

namespace console {

/// Exit status of the program.
enum Status : int {
    kDone = 0,
    kLispError = 1,
    kWrongUsage = 2,
    kFileError = 3  ///< a file that can't be read or written
};

/// What a command does once its options are read.
using Run = std::function<Status()>;

/// Each adds the options of a command to its parser and gives what runs.
Run defineConsole(CLI::App& app);
Run defineEval(CLI::App& app);
Run defineRun(CLI::App& app);

}  // namespace console

#endif
