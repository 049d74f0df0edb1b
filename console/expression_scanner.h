/// Tells whether typed lines make complete expressions, and what is open, in one pass over the
/// text.
#ifndef CONSOLE_EXPRESSION_SCANNER_H
#define CONSOLE_EXPRESSION_SCANNER_H

#include <string>
#include <string_view>

namespace console {

class ExpressionScanner {
  public:
    /// Goes on with a line, which includes its end.
    void feed(std::string_view line);
    /// Goes on with one unit.
    void step(char unit);

    /// True when no list, text, comment or quote is open.
    bool complete() const { return depth_ <= 0 && state_ == State::Between && !quoted_; }
    int openLists() const { return depth_; }
    bool inText() const { return state_ == State::Text || state_ == State::Escape; }
    bool inComment() const {
        return state_ == State::Semicolon || state_ == State::Comment || state_ == State::Block;
    }
    /// Prompt of a line that goes on with what is open: a parenthesis for each list, a quotation
    /// mark for a text, ";|" for a comment.
    std::string prompt() const;

  private:
    enum class State { Between, Text, Escape, Semicolon, Comment, Block };

    State state_ = State::Between;
    int depth_ = 0;
    char previous_ = '\n';
    bool quoted_ = false;  ///< a quote waits for its expression
};

}  // namespace console

#endif
