/// Options on CLI11, and the parsing of the command line.
#include "options.h"

#include <CLI/CLI.hpp>
#include <utility>

#include "command.h"

namespace console {

void Options::file(const std::string& names, std::string& target, const std::string& help) {
    app_.add_option(names, target, help)->type_name("FILE");
}

void Options::value(const std::string& names, std::string& target, const std::string& form,
                    const std::string& help) {
    app_.add_option(names, target, help)->type_name(form);
}

void Options::flag(const std::string& names, bool& target, const std::string& help) {
    app_.add_flag(names, target, help);
}

void Options::argument(const std::string& name, std::string& target, const std::string& help) {
    app_.add_option(name, target, help)->type_name("");
}

void Options::arguments(const std::string& name, std::vector<std::string>& target,
                        const std::string& help) {
    app_.add_option(name, target, help)->required()->type_name("");
}

int parseAndRun(int argc, char** argv, const Program& program) {
    CLI::App app(program.about, program.name);
    app.set_version_flag("--version", program.version);
    app.set_help_flag("-h,--help", "Print this help and exit");
    app.require_subcommand(0, 1);
    app.footer(std::string(program.details) + program.footer);
    Options own(app);
    Run run = program.define(own);
    std::vector<std::pair<CLI::App*, Run>> commands;
    for (const Command& command : program.commands) {
        CLI::App* sub = app.add_subcommand(command.name, command.help);
        sub->footer(program.footer);
        Options options(*sub);
        commands.emplace_back(sub, command.define(options));
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? kDone : kWrongUsage;
    }
    for (const auto& [sub, what] : commands) {
        if (sub->parsed()) run = what;
    }
    return run();
}

}  // namespace console
