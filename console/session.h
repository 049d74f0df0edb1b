/// What all commands that evaluate share: the library, the drawing, the outputs and Ctrl-C.
#ifndef CONSOLE_SESSION_H
#define CONSOLE_SESSION_H

#include <string>
#include <string_view>

#include "command.h"
#include "host/drawing.h"
#include "host/lisp.h"

namespace console {

/// Options of a command that works on a drawing.
struct SessionOptions {
    std::string drawing;     ///< empty for a new one
    std::string target;      ///< where the drawing is saved; empty for nowhere
    std::string input;       ///< file with the answers to prompts; empty for none
    std::string trace;       ///< LEVEL[:MASK]; empty for silence
    std::string version;     ///< that is saved; empty for the drawing's
    bool backup = false;     ///< a file that is replaced stays as NAME.bak
    bool force = false;      ///< save over what others changed
    bool recover = false;    ///< read what can be read of a damaged drawing
    bool backtrace = false;  ///< errors are shown with their chain of forms
    bool noSuite = false;
};

/// Adds --recover, --input, --trace, --backtrace and --no-suite to a command, and with `withFiles`
/// -d, -s and how it saves.
void addSessionOptions(Options& line, SessionOptions& options, bool withFiles);
/// Adds --recover to a command that opens a drawing.
void addRecoverOption(Options& line, bool& recover);
/// Adds --version, --backup and --force to a command that saves.
void addSaveOptions(Options& line, SessionOptions& options);

/// Loads the library and opens the drawing. What fails is said on standard error.
Status openSession(const SessionOptions& options);
/// Saves the drawing where the options want it, unless something has failed, and shows what is on
/// the error list. @return the status, or that of the save
Status closeSession(const SessionOptions& options, Status status);

/// Saves the drawing; what its version can't hold, and what failed, is said on standard error.
Status saveSession(const SessionOptions& options);

/// Prints a value on a fresh line of standard output; nothing for an empty text.
void showValue(std::u16string_view value);
/// Says on standard error what was done to a damaged drawing, or why one wasn't opened.
Status report(const std::string& drawing, const host::OpenOutcome& outcome);
/// Says on standard error what went wrong.
/// @return the exit status that it stands for; kDone for an outcome with a value
Status report(const host::LispOutcome& outcome);
/// "kz: TEXT" on standard error.
void complain(const std::string& text);

/// While it lives, Ctrl-C ends the running evaluation with an error, and a second one that comes
/// before the first was noticed ends the program.
class Interruptible {
  public:
    Interruptible();
    ~Interruptible();
    Interruptible(const Interruptible&) = delete;
    Interruptible& operator=(const Interruptible&) = delete;
};

}  // namespace console

#endif
