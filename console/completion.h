/// What the Tab key may put in the place of a half-typed word.
#ifndef CONSOLE_COMPLETION_H
#define CONSOLE_COMPLETION_H

#include <string>
#include <vector>

#include "expression_scanner.h"

namespace console {

struct Completion {
    size_t length = 0;               ///< of the word in front of the cursor [bytes]
    std::vector<std::string> names;  ///< that begin with it, sorted
    std::string behind;              ///< what stands behind the one name that is left
};

/// Completes the last word of a line: in a text a file name, behind a parenthesis a function,
/// behind a quote or within a list a symbol, at the beginning of a line a command.
/// @param open  what the lines before have left open
/// @param line  the line up to the cursor
Completion completeExpression(const ExpressionScanner& open, const std::string& line);
/// Completes an answer by the keywords that a prompt shows in brackets, "[Yes/No]"; one that is
/// asked for a file by its name.
Completion completeAnswer(const std::string& prompt, const std::string& line);

/// The longest text that all names begin with.
std::string commonPrefix(const std::vector<std::string>& names);

}  // namespace console

#endif
