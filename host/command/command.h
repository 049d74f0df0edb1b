/// Commands of the host: their table, their prompts and how they run.
///
/// A command is a function that asks through its CommandPrompt. It needn't care for cancels: a
/// prompt that gets one throws Cancelled, which ends the command, and what it did until then stays
/// as one undo step. A command says why it can't do something with `say` and goes on, or with
/// `refuse` and ends.
#ifndef HOST_COMMAND_COMMAND_H
#define HOST_COMMAND_COMMAND_H

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "acad/db.h"
#include "acad/ed.h"

namespace host {

class Database;

/// How a prompt was answered.
enum class Answered { Value, Keyword, Nothing };

/// What goes with a prompt.
struct Prompt {
    std::u16string text;
    int flags = 0;                 ///< of acedInitGet; without RSG_NONULL Enter gives Nothing
    std::u16string keywords;       ///< as acedInitGet takes them
    const double* base = nullptr;  ///< point that relative points and distances start from
};

/// The end of a command that was cancelled, or that refuses to go on.
struct Cancelled {};

class CommandPrompt {
  public:
    /// `name` is the command's.
    explicit CommandPrompt(std::u16string name) : name_(std::move(name)) {}

    Answered point(const Prompt& prompt, ads_point out);
    Answered corner(const Prompt& prompt, ads_point out);
    Answered distance(const Prompt& prompt, double& out);
    Answered angle(const Prompt& prompt, double& out);  ///< a direction [radians]
    /// An angle with its sign, which counts from no direction [radians].
    Answered relativeAngle(const Prompt& prompt, double& out);
    Answered real(const Prompt& prompt, double& out);
    Answered integer(const Prompt& prompt, int& out);
    /// One of the keywords.
    Answered keyword(const Prompt& prompt);
    /// A text; an empty one for Enter.
    std::u16string text(std::u16string_view prompt, bool blanks = false);
    /// Entities for a command, see chooseObjects. Those on locked layers are left out, with a
    /// message.
    std::vector<AcDbObjectId> entities(std::u16string_view prompt = u"Select objects: ");
    /// One entity, by its name or by a point on it; nothing for Enter.
    AcDbObjectId entity(std::u16string_view prompt);

    /// The keyword that was answered, as it stands in the prompt's list.
    const std::u16string& keywordGiven() const { return keyword_; }
    bool given(std::u16string_view keyword) const { return keyword_ == keyword; }

    const std::u16string& name() const { return name_; }
    void say(std::u16string_view message) const;
    /// Says what the command couldn't do, also when programs run it silently.
    void warn(std::u16string_view message) const;
    [[noreturn]] void refuse(std::u16string_view message) const;

  private:
    Answered take(int status);

    std::u16string name_;
    std::u16string keyword_;
};

/// A row of the table of commands.
struct Command {
    const char16_t* name;   ///< upper case
    const char16_t* alias;  ///< short form, or NULL
    void (*run)(CommandPrompt&);
    bool changes;      ///< false: it makes no undo step of its own
    const char* help;  ///< one sentence
};

/// The families' tables, in host/command/<family>.cpp.
std::span<const Command> fileCommands();
std::span<const Command> undoCommands();
std::span<const Command> systemCommands();
std::span<const Command> drawCommands();
std::span<const Command> arcCommands();
std::span<const Command> polylineCommands();
std::span<const Command> textCommands();
std::span<const Command> blockCommands();
std::span<const Command> xrefCommands();
std::span<const Command> modifyCommands();
std::span<const Command> propertyCommands();
std::span<const Command> layerCommands();
std::span<const Command> inquiryCommands();
std::span<const Command> ucsCommands();
std::span<const Command> viewCommands();
/// A command that asks for a value of the system variable with this name, as SETVAR does. NULL:
/// there is no such variable.
const Command* variableCommand(std::u16string_view name);

/// The command of a typed name: in any case, "_" and "." in front of it don't count. NULL: none.
const Command* findCommand(std::u16string_view name);

/// The drawing that the running command works on. Throws Cancelled without one.
Database& commandDrawing(const CommandPrompt& prompt);

}  // namespace host

#endif
