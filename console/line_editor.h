/// Lines from the terminal, with editing, history and completion.
#ifndef CONSOLE_LINE_EDITOR_H
#define CONSOLE_LINE_EDITOR_H

#include <string>
#include <utility>

#include "completion.h"
#include "expression_scanner.h"
#include "history.h"

struct editline;
struct history;

namespace console {

class LineEditor {
  public:
    /// Reads the history of earlier consoles.
    LineEditor();
    ~LineEditor();
    LineEditor(const LineEditor&) = delete;
    LineEditor& operator=(const LineEditor&) = delete;

    enum class Event { Line, Cancelled, End };
    /// The next line of an expression, with its end. `open` is what the lines before have left
    /// open.
    Event readExpression(const std::string& prompt, const ExpressionScanner& open,
                         std::string& line);
    /// The answer to a prompt, with its end.
    Event readAnswer(const std::string& prompt, std::string& line);
    /// Keeps an expression for the history.
    void remember(const std::string& expression);

    // For the functions of keys:

    const std::string& prompt() const { return prompt_; }
    /// What may stand for the last word of `line`.
    Completion complete(const std::string& line) const {
        return answers_ ? completeAnswer(prompt_, line) : completeExpression(open_, line);
    }
    /// Text that was pasted behind the present line: whole lines are the next to be read, what is
    /// left is the beginning of the one behind them.
    void paste(std::string text) { pasted_ = std::move(text); }
    bool pasteWaits() const { return !pasted_.empty(); }
    std::string takePasted() { return std::exchange(pasted_, {}); }
    /// Where the parenthesis stands in `line` that its last one closes; npos for none in this line.
    size_t opening(const std::string& line) const;

  private:
    Event read(std::string& line);

    editline* editor_;
    history* history_;
    HistoryFile file_;
    std::string prompt_;
    std::string pasted_;
    ExpressionScanner open_;
    bool answers_ = false;  ///< a prompt is answered, no expression typed
};

}  // namespace console

#endif
