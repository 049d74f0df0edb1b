/// Completeness of expressions.
#include "expression_scanner.h"

namespace console {

void ExpressionScanner::feed(std::string_view line) {
    char previous = '\n';
    for (const char unit : line) {
        step(unit, previous);
        previous = unit;
    }
}

void ExpressionScanner::step(char unit, char previous) {
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
