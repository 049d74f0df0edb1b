/// Where the answers come from that a user would give: a terminal, a script, or a test's queue.
#ifndef HOST_INPUT_H
#define HOST_INPUT_H

#include <functional>
#include <string>
#include <string_view>

#include "acad/ads.h"
#include "host/export.h"

namespace host {

/// What a reader of lines gives.
struct InputLine {
    enum class Kind {
        Text,
        Cancel,  ///< Esc or Ctrl-C
        End      ///< there are no more lines; what asks is cancelled
    };
    Kind kind = Kind::End;
    std::u16string text;
    /// True when the reader has shown the prompt and the text himself, as a terminal does.
    bool shown = false;
};

/// Lets the lines come from `reader`, which gets the prompt. An empty function: there are none.
using InputReader = std::function<InputLine(std::u16string_view prompt)>;
HOST_API void setInputReader(InputReader reader);
/// The next line of the reader as it is; what is left of a line that answered a prompt goes first.
HOST_API InputLine readInputLine(std::u16string_view prompt);

/// Answers that are given before the reader is asked, in the order of queueing.
HOST_API void queueText(std::u16string_view text);
HOST_API void queuePoint(double x, double y, double z = 0.0);
HOST_API void queueEntity(const ads_name entity);
HOST_API void queueEnter();
HOST_API void queueCancel();
/// Drops what is queued and what is left of a line.
HOST_API void clearAnswers();
/// True when an answer is queued, or a part of a line left.
HOST_API bool answersWait();

}  // namespace host

#endif
