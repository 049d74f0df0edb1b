/// Lines from the terminal, with editing, history and completion.
#ifndef CONSOLE_LINE_EDITOR_H
#define CONSOLE_LINE_EDITOR_H

#include <optional>
#include <string>
#include <vector>

struct editline;
struct history;

namespace console {

class LineEditor {
  public:
    /// Reads the history of earlier sessions.
    LineEditor();
    /// Writes it back.
    ~LineEditor();
    LineEditor(const LineEditor&) = delete;
    LineEditor& operator=(const LineEditor&) = delete;

    enum class Event { Line, Cancelled, End };
    /// The next line with its end.
    Event read(const std::string& prompt, std::string& line);
    /// Keeps an expression for the history.
    void remember(const std::string& expression);

    const std::string& prompt() const { return prompt_; }

  private:
    editline* editor_;
    history* history_;
    std::string prompt_;
    std::string historyFile_;
};

/// Names that complete `prefix`, in the spelling of the user where it has no other; sorted.
std::vector<std::string> completions(const std::string& prefix);

}  // namespace console

#endif
