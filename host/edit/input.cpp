/// Answers to prompts: the user's source and what programs and tests put into it.
#include "edit/input.h"

#include <charconv>
#include <deque>
#include <iterator>
#include <utility>

#include "host/input.h"
#include "host/output.h"
#include "kz_tls21an/text.h"

namespace host {
namespace {

/// The user at the terminal, his script, or the queue that a test fills.
class UserInput : public InputSource {
  public:
    bool next(const InputRequest& request, InputToken& token) override {
        if (!queue_.empty()) {
            token = std::move(queue_.front());
            queue_.pop_front();
            show(request.prompt, token.typed());
            return true;
        }
        InputLine line = read(request.prompt);
        if (line.kind == InputLine::Kind::End) return false;
        if (line.kind == InputLine::Kind::Cancel) {
            token = InputToken::of(InputToken::Kind::Cancel);
            return true;
        }
        while (!request.blanks && line.text.ends_with(u' '))
            line.text.pop_back();
        size_t length = line.text.size();
        if (!request.blanks) {
            const size_t start = line.text.find_first_not_of(u' ');
            if (start != std::u16string::npos) line.text.erase(0, start);
            length = firstAnswerLength(line.text);
            if (length < line.text.size()) rest_ = line.text.substr(length + 1);
        }
        token = InputToken::ofText(std::u16string_view(line.text).substr(0, length));
        if (!line.shown) show(request.prompt, token.text);
        return true;
    }

    InputLine read(std::u16string_view prompt) {
        InputLine line;
        if (!rest_.empty()) {
            line.kind = InputLine::Kind::Text;
            line.text = std::exchange(rest_, {});
        } else if (reader_) {
            line = reader_(prompt);
        }
        return line;
    }

    void setReader(InputReader reader) {
        reader_ = std::move(reader);
        rest_.clear();
    }
    void push(InputToken token) { queue_.push_back(std::move(token)); }
    void clear() {
        queue_.clear();
        rest_.clear();
    }
    bool isWaiting() const { return !queue_.empty() || !rest_.empty(); }

  private:
    static void show(std::u16string_view prompt, std::u16string_view answer) {
        const bool fresh = atLineStart(Channel::Message);
        if (fresh && prompt.starts_with(u'\n')) prompt.remove_prefix(1);
        if (!fresh && !prompt.starts_with(u'\n')) write(Channel::Message, u"\n");
        write(Channel::Message, prompt);
        write(Channel::Message, answer);
        write(Channel::Message, u"\n");
    }

    std::deque<InputToken> queue_;
    std::u16string rest_;  ///< of a line that held several answers
    InputReader reader_;
};

UserInput& user() {
    static auto* const instance = new UserInput;  // readers may live as long as the program
    return *instance;
}

InputSource*& source() {
    static InputSource* present = nullptr;
    return present;
}

ExpressionEvaluator& evaluator() {
    static auto* const instance = new ExpressionEvaluator;
    return *instance;
}

std::u16string numberText(double value) {
    char buffer[32];
    const std::to_chars_result end = std::to_chars(buffer, std::end(buffer), value);
    return kz::toUtf16(std::string_view(buffer, end.ptr));
}

}  // namespace

InputToken InputToken::of(Kind kind) {
    InputToken token;
    token.kind = kind;
    return token;
}

InputToken InputToken::ofText(std::u16string_view text) {
    InputToken token = of(text.empty() ? Kind::Enter : Kind::Text);
    token.text = text;
    return token;
}

InputToken InputToken::ofPoint(const ads_point point, bool flat) {
    InputToken token = of(Kind::Point);
    for (int i = 0; i < 3; ++i)
        token.point[i] = point[i];
    token.flat = flat;
    return token;
}

InputToken InputToken::ofReal(double value) {
    InputToken token = of(Kind::Real);
    token.real = value;
    return token;
}

InputToken InputToken::ofInteger(int32_t value) {
    InputToken token = of(Kind::Integer);
    token.integer = value;
    return token;
}

InputToken InputToken::ofName(Kind kind, const ads_name name) {
    InputToken token = of(kind);
    ads_name_set(name, token.name);
    return token;
}

bool InputToken::ofNode(const resbuf& node, InputToken& out) {
    switch (node.restype) {
        case RTSTR:
            out = ofText(node.resval.rstring == nullptr ? u"" : node.resval.rstring);
            return true;
        case RTPOINT: {
            const ads_point flat = {node.resval.rpoint[0], node.resval.rpoint[1], 0.0};
            out = ofPoint(flat, true);
            return true;
        }
        case RT3DPOINT:
            out = ofPoint(node.resval.rpoint);
            return true;
        case RTREAL:
        case RTANG:
        case RTORINT:
            out = ofReal(node.resval.rreal);
            return true;
        case RTSHORT:
            out = ofInteger(node.resval.rint);
            return true;
        case RTLONG:
            out = ofInteger(node.resval.rlong);
            return true;
        case RTENAME:
            out = ofName(Kind::Entity, node.resval.rlname);
            return true;
        case RTPICKS:
            out = ofName(Kind::Set, node.resval.rlname);
            return true;
        default:
            return false;
    }
}

std::u16string InputToken::typed() const {
    switch (kind) {
        case Kind::Text:
            return text;
        case Kind::Point:
            return numberText(point[0]) + u',' + numberText(point[1]) +
                   (flat ? u"" : u',' + numberText(point[2]));
        case Kind::Real:
            return numberText(real);
        case Kind::Integer:
            return kz::toUtf16(std::to_string(integer));
        case Kind::Entity:
            return u"<entity>";
        case Kind::Set:
            return u"<selection set>";
        case Kind::Cancel:
            return u"*Cancel*";
        default:
            return u"";
    }
}

size_t firstAnswerLength(std::u16string_view line) {
    const bool expression = line.starts_with(u'(') || line.starts_with(u"!(");
    int depth = 0;
    bool quoted = line.starts_with(u'"');
    for (size_t i = quoted ? 1 : 0; i < line.size(); ++i) {
        const char16_t unit = line[i];
        if (quoted) {
            if (unit == u'\\' && expression) ++i;
            quoted = unit != u'"';
        } else if (expression && unit == u'"') {
            quoted = true;
        } else if (expression && unit == u'(') {
            ++depth;
        } else if (expression && unit == u')') {
            --depth;
        } else if (unit == u' ' && depth == 0) {
            return i;
        }
    }
    return line.size();
}

InputSource& userInput() {
    return user();
}

InputSource& inputSource() {
    return source() == nullptr ? user() : *source();
}

InputScope::InputScope(InputSource& next) : outer_(std::exchange(source(), &next)) {}

InputScope::~InputScope() {
    source() = outer_;
}

void tell(std::u16string_view text) {
    if (!atLineStart(Channel::Message)) write(Channel::Message, u"\n");
    write(Channel::Message, text);
    write(Channel::Message, u"\n");
}

void setExpressionEvaluator(ExpressionEvaluator evaluate) {
    evaluator() = std::move(evaluate);
}

bool evaluateExpression(std::u16string_view text, InputToken& token) {
    return evaluator() && evaluator()(text, token);
}

bool resolveExpression(InputToken& token) {
    const bool expression = token.kind == InputToken::Kind::Text &&
                            (token.text.starts_with(u'(') || token.text.starts_with(u'!'));
    if (!expression) return true;
    const std::u16string text = std::move(token.text);
    return evaluateExpression(text, token);
}

void setInputReader(InputReader reader) {
    user().setReader(std::move(reader));
}

InputLine readInputLine(std::u16string_view prompt) {
    return user().read(prompt);
}

void queueText(std::u16string_view text) {
    user().push(InputToken::ofText(text));
}

void queuePoint(double x, double y, double z) {
    const ads_point point = {x, y, z};
    user().push(InputToken::ofPoint(point));
}

void queueEntity(const ads_name entity) {
    user().push(InputToken::ofName(InputToken::Kind::Entity, entity));
}

void queueEnter() {
    user().push(InputToken::of(InputToken::Kind::Enter));
}

void queueCancel() {
    user().push(InputToken::of(InputToken::Kind::Cancel));
}

void clearAnswers() {
    user().clear();
}

bool answersWait() {
    return user().isWaiting();
}

}  // namespace host
