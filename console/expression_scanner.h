/// Tells whether typed lines make complete expressions, in one pass over the text.
#ifndef CONSOLE_EXPRESSION_SCANNER_H
#define CONSOLE_EXPRESSION_SCANNER_H

#include <string_view>

namespace console {

class ExpressionScanner {
  public:
    /// Goes on with a line, which includes its end.
    void feed(std::string_view line);
    /// True when no list, text, comment or quote is open.
    bool complete() const { return depth_ <= 0 && state_ == State::Between && !quoted_; }
    int openLists() const { return depth_; }

  private:
    enum class State { Between, Text, Escape, Semicolon, Comment, Block };
    void step(char unit, char previous);

    State state_ = State::Between;
    int depth_ = 0;
    bool quoted_ = false;  ///< a quote waits for its expression
};

}  // namespace console

#endif
