/// The command line's options as the commands declare them. Only options.cpp knows the parser
/// library, whose header takes longer to compile than the rest of the program.
#ifndef CONSOLE_OPTIONS_H
#define CONSOLE_OPTIONS_H

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace console {

/// Declares the options of one command; the targets get their values when the line is parsed.
class Options {
  public:
    explicit Options(CLI::App& app) : app_(app) {}

    /// An option with a file name, as "-d,--drawing".
    void file(const std::string& names, std::string& target, const std::string& help);
    /// An option with another value, shown as `form` in the help.
    void value(const std::string& names, std::string& target, const std::string& form,
               const std::string& help);
    /// A flag without a value.
    void flag(const std::string& names, bool& target, const std::string& help);
    /// One argument that may be missing.
    void argument(const std::string& name, std::string& target, const std::string& help);
    /// All remaining arguments, at least one.
    void arguments(const std::string& name, std::vector<std::string>& target,
                   const std::string& help);

  private:
    CLI::App& app_;
};

}  // namespace console

#endif
