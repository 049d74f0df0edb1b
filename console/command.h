/// The commands of the program: each names its options and says what runs.
#ifndef CONSOLE_COMMAND_H
#define CONSOLE_COMMAND_H

#include <functional>
#include <vector>

namespace console {

class Options;

/// Exit status of the program.
enum Status : int {
    kDone = 0,
    kLispError = 1,  ///< or something wrong in a drawing
    kWrongUsage = 2,
    kFileError = 3  ///< a file that can't be read or written
};

/// What a command does once its options are read.
using Run = std::function<Status()>;

/// Each adds the options of a command to its parser and gives what runs.
Run defineConsole(Options& options);
Run defineEval(Options& options);
Run defineRun(Options& options);
Run defineInfo(Options& options);
Run defineConvert(Options& options);
Run definePlot(Options& options);
Run defineGroups(Options& options);
Run defineFields(Options& options);
Run defineCheck(Options& options);
Run defineHelp(Options& options);

/// A row of the table of commands.
struct Command {
    const char* name;
    const char* help;
    Run (*define)(Options&);
};

/// The program as its command line shows it.
struct Program {
    const char* name;
    const char* about;
    const char* version;
    const char* details;      ///< behind the list of options, of the program only
    const char* footer;       ///< at the end of each help text
    Run (*define)(Options&);  ///< without a command
    std::vector<Command> commands;
};

/// Parses the command line and runs what it asks for. @return the exit status
int parseAndRun(int argc, char** argv, const Program& program);

}  // namespace console

#endif
