/// Answers to prompts: what they are made of and where they come from.
#ifndef HOST_EDIT_INPUT_H
#define HOST_EDIT_INPUT_H

#include <functional>
#include <string>
#include <string_view>

#include "acad/ads.h"

namespace host {

/// One answer.
struct InputToken {
    enum class Kind { Text, Point, Real, Integer, Entity, Set, Enter, Cancel, Pause };
    Kind kind = Kind::Enter;
    std::u16string text;
    ads_point point = {0, 0, 0};
    bool flat = false;  ///< the point came without z: it lies at the current elevation
    double real = 0.0;
    int32_t integer = 0;
    ads_name name = {0, 0};

    static InputToken ofText(std::u16string_view text);
    static InputToken ofPoint(const ads_point point, bool flat = false);
    static InputToken ofReal(double value);
    static InputToken ofInteger(int32_t value);
    static InputToken ofName(Kind kind, const ads_name name);
    static InputToken of(Kind kind);
    /// The answer of one node of a chain; false for a node that is none.
    static bool ofNode(const resbuf& node, InputToken& out);

    /// As it would be typed; a number in the shortest form that reads back the same.
    std::u16string typed() const;
};

/// What is asked for.
struct InputRequest {
    std::u16string prompt;
    bool blanks = false;  ///< blanks belong to the answer; otherwise the first one ends it
};

/// Gives answers.
class InputSource {
  public:
    virtual ~InputSource() = default;
    /// The next answer; false at the end. Cancel is an answer.
    virtual bool next(const InputRequest& request, InputToken& token) = 0;
};

/// The queue of tests, then the reader of lines.
InputSource& userInput();
/// Who answers at the moment.
InputSource& inputSource();

/// Lets another source answer for a while.
class InputScope {
  public:
    explicit InputScope(InputSource& source);
    ~InputScope();
    InputScope(const InputScope&) = delete;
    InputScope& operator=(const InputScope&) = delete;

  private:
    InputSource* outer_;
};

/// Shows a message on a line of its own.
void tell(std::u16string_view text);

/// Evaluates a typed "(...)" or "!name" to an answer; false with a message of its own when it has
/// none. Set by the Lisp side.
using ExpressionEvaluator = std::function<bool(std::u16string_view text, InputToken& token)>;
void setExpressionEvaluator(ExpressionEvaluator evaluator);
bool evaluateExpression(std::u16string_view text, InputToken& token);

/// Takes a typed "(...)" or "!name" for what it gives; any other answer stays. @return false when
/// it gave nothing
bool resolveExpression(InputToken& token);

/// Length of the first answer of a typed line: up to a blank, a Lisp expression up to its last
/// parenthesis, a quoted text up to its quote.
size_t firstAnswerLength(std::u16string_view line);

}  // namespace host

#endif
