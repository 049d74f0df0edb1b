/// Completeness of expressions.
#include "expression_scanner.h"

#include <algorithm>
#include <utility>

namespace console {

void ExpressionScanner::feed(std::string_view line) {
    for (const char unit : line)
        step(unit);
}

std::string ExpressionScanner::prompt() const {
    constexpr size_t kShown = 12;
    const auto open = static_cast<size_t>(std::max(depth_, 0));
    std::string text(std::min(open, kShown), '(');
    if (open > kShown) text += "..." + std::to_string(open);
    if (state_ == State::Text || state_ == State::Escape) text += '"';
    if (state_ == State::Block) text += ";|";
    if (quoted_) text += '\'';
    return text + "_> ";
}

void ExpressionScanner::step(char unit) {
    const char previous = std::exchange(previous_, unit);
    switch (state_) {
        case State::Text:
            if (unit == '\\') state_ = State::Escape;
            if (unit == '"') state_ = State::Between;
            return;
        case State::Escape:
            state_ = State::Text;
            return;
        case State::Semicolon:
            state_ = unit == '|' ? State::Block : State::Comment;
            [[fallthrough]];
        case State::Comment:
            if (unit == '\n') state_ = State::Between;
            return;
        case State::Block:
            if (unit == ';' && previous == '|') state_ = State::Between;
            return;
        case State::Between:
            break;
    }
    if (unit == ';') {
        state_ = State::Semicolon;
        return;
    }
    if (static_cast<unsigned char>(unit) <= ' ') return;
    quoted_ = unit == '\'';
    if (unit == '"') state_ = State::Text;
    if (unit == '(') ++depth_;
    if (unit == ')') --depth_;
}

}  // namespace console
