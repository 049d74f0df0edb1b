/// kz: opens drawings and evaluates AutoLISP. One row for each command; without a command the
/// console starts.
#include <CLI/CLI.hpp>
#include <iterator>

#include "command.h"

namespace {

struct Command {
    const char* name;
    const char* help;
    console::Run (*define)(CLI::App&);
};

constexpr Command kCommands[] = {
    {"eval", "Evaluate expressions on a drawing and print the value of each", console::defineEval},
    {"run", "Load Lisp scripts on a drawing", console::defineRun},
};

const char kConsole[] =
    "Without a command: a console on FILE, or on a new drawing. When standard input is no "
    "terminal,\n"
    "expressions are read from it, and the first error ends the program.\n";
const char kStatus[] =
    "Exit status: 0 done, 1 a Lisp error, 2 wrong usage, 3 a file that can't be read or written.";

}  // namespace

int main(int argc, char** argv) {
    CLI::App app("kz - AutoLISP and the kz_zaglaid library on DXF drawings", "kz");
    app.set_version_flag("--version", "kz " KZ_VERSION);
    app.set_help_flag("-h,--help", "Print this help and exit");
    app.require_subcommand(0, 1);
    app.footer(std::string(kConsole) + kStatus);
    console::Run run = console::defineConsole(app);
    std::vector<std::pair<CLI::App*, console::Run>> commands;
    for (const Command& command : kCommands) {
        CLI::App* sub = app.add_subcommand(command.name, command.help);
        sub->footer(kStatus);
        commands.emplace_back(sub, command.define(*sub));
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? console::kDone : console::kWrongUsage;
    }
    for (const auto& [sub, what] : commands) {
        if (sub->parsed()) run = what;
    }
    return run();
}
