/// The reader.
#include "lisp/reader.h"

#include <charconv>

namespace host::lisp {

namespace {

bool isBlank(char16_t unit) {
    return unit <= 0x20 || unit == 0xFEFF;
}
bool isDigit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}
bool endsToken(char16_t unit) {
    return isBlank(unit) || unit == u'(' || unit == u')' || unit == u'\'' || unit == u'"' ||
           unit == u';';
}

int hexDigit(char16_t unit) {
    if (isDigit(unit)) return unit - u'0';
    if (unit >= u'A' && unit <= u'F') return unit - u'A' + 10;
    if (unit >= u'a' && unit <= u'f') return unit - u'a' + 10;
    return -1;
}

/// Length of the digits at `from`.
size_t digits(std::u16string_view text, size_t from) {
    size_t end = from;
    while (end < text.size() && isDigit(text[end]))
        ++end;
    return end - from;
}

/// True for digits with a point or an exponent, and at least one digit before the exponent.
bool isRealToken(std::u16string_view token) {
    size_t at = 0;
    size_t count = digits(token, at);
    at += count;
    if (at < token.size() && token[at] == u'.') {
        const size_t fraction = digits(token, ++at);
        count += fraction;
        at += fraction;
    }
    if (count == 0) return false;
    if (at == token.size()) return true;
    if (token[at] != u'e' && token[at] != u'E') return false;
    if (++at < token.size() && (token[at] == u'+' || token[at] == u'-')) ++at;
    const size_t exponent = digits(token, at);
    return exponent > 0 && at + exponent == token.size();
}

}  // namespace

std::optional<Value> parseNumber(std::u16string_view token) {
    const bool negative = !token.empty() && token[0] == u'-';
    const std::u16string_view body =
        token.substr(negative || (!token.empty() && token[0] == u'+') ? 1 : 0);
    if (body.empty() || !(isDigit(body[0]) || body[0] == u'.') || !isRealToken(body)) return {};
    const std::string narrow(body.begin(), body.end());
    const char* const end = narrow.data() + narrow.size();
    if (digits(body, 0) == body.size()) {
        int32_t number = 0;
        const auto result = std::from_chars(narrow.data(), end, number);
        if (result.ec == std::errc()) return Value::integer(negative ? -number : number);
    }
    double number = 0;
    const auto result = std::from_chars(narrow.data(), end, number);
    if (result.ec == std::errc::result_out_of_range) {
        // The exponent says which end of the range was left.
        const bool tiny = narrow.find("e-") != std::string::npos ||
                          narrow.find("E-") != std::string::npos || narrow.front() == '.';
        number = tiny ? 0.0 : std::numeric_limits<double>::infinity();
    }
    return Value::real(negative ? -number : number);
}

Reader::Status Reader::read(Value& datum) {
    open_.clear();
    bool complete = false;
    while (!complete) {
        skipBlanks();
        if (atEnd()) {
            if (open_.empty()) return Status::End;
            fail(u"malformed list on input", open_.front().line, true);
            return Status::Failed;
        }
        const char16_t unit = text_[position_];
        if (unit == u'(' || unit == u'\'') {
            ++position_;
            open_.push_back({unit == u'\'', line_});
            continue;
        }
        Value value;
        const bool dot =
            unit == u'.' && (position_ + 1 == text_.size() || endsToken(text_[position_ + 1]));
        if (dot) {
            if (!noteDot()) return Status::Failed;
            continue;
        }
        const bool read = unit == u')'   ? closeList(value)
                          : unit == u'"' ? readText(value)
                                         : readAtom(value);
        if (!read || !deliver(value, complete)) return Status::Failed;
        if (complete) datum = std::move(value);
    }
    return Status::Datum;
}

void Reader::skipBlanks() {
    while (!atEnd()) {
        const char16_t unit = text_[position_];
        if (unit == u';') {
            if (position_ + 1 < text_.size() && text_[position_ + 1] == u'|') {
                skipBlockComment();
            } else {
                position_ = std::min(text_.find(u'\n', position_), text_.size());
            }
        } else if (isBlank(unit)) {
            if (unit == u'\n') ++line_;
            ++position_;
        } else {
            return;
        }
    }
}

void Reader::skipBlockComment() {
    const size_t end = text_.find(u"|;", position_ + 2);
    const size_t stop = end == std::u16string_view::npos ? text_.size() : end + 2;
    for (; position_ < stop; ++position_) {
        if (text_[position_] == u'\n') ++line_;
    }
}

bool Reader::readAtom(Value& value) {
    const size_t start = position_;
    while (!atEnd() && !endsToken(text_[position_]))
        ++position_;
    const std::u16string_view token = text_.substr(start, position_ - start);
    if (auto number = parseNumber(token)) {
        value = std::move(*number);
        return true;
    }
    Symbol* symbol = symbols_.intern(token);
    if (symbol->name != u"NIL") value = Value::share(symbol);
    return true;
}

bool Reader::readText(Value& value) {
    const int32_t start = line_;
    std::u16string units;
    for (++position_; !atEnd(); ++position_) {
        char16_t unit = text_[position_];
        if (unit == u'"') {
            ++position_;
            value = makeText(units);
            return true;
        }
        if (unit == u'\n') ++line_;
        if (unit == u'\\') {
            ++position_;
            if (atEnd()) break;
            unit = readEscape();
        }
        units.push_back(unit);
    }
    return fail(u"malformed string on input", open_.empty() ? start : open_.front().line, true);
}

/// Stands on the unit behind the backslash, and afterwards on the last one of the escape.
char16_t Reader::readEscape() {
    const char16_t unit = text_[position_];
    switch (unit) {
        case u'n':
            return u'\n';
        case u'r':
            return u'\r';
        case u't':
            return u'\t';
        case u'e':
            return 0x1B;
        case u'\n':
            ++line_;
            return unit;
        default:
            break;
    }
    if (unit >= u'0' && unit <= u'7') return readOctal(unit);
    if (unit == u'U' && position_ + 5 < text_.size() && text_[position_ + 1] == u'+') {
        int code = 0;
        for (size_t i = 2; i < 6 && code >= 0; ++i) {
            const int digit = hexDigit(text_[position_ + i]);
            code = digit < 0 ? -1 : code * 16 + digit;
        }
        if (code >= 0) {
            position_ += 5;
            return static_cast<char16_t>(code);
        }
    }
    return unit;
}

char16_t Reader::readOctal(char16_t first) {
    int code = first - u'0';
    for (int i = 0; i < 2 && position_ + 1 < text_.size(); ++i) {
        const char16_t next = text_[position_ + 1];
        if (next < u'0' || next > u'7') break;
        code = code * 8 + (next - u'0');
        ++position_;
    }
    return static_cast<char16_t>(code);
}

bool Reader::noteDot() {
    ++position_;
    if (open_.empty() || open_.back().quote || open_.back().items.empty()) {
        return fail(u"misplaced dot on input", line_);
    }
    Open& list = open_.back();
    if (list.dot != Dot::None) return fail(u"extra cdrs in dotted pair on input", line_);
    list.dot = Dot::Seen;
    return true;
}

bool Reader::closeList(Value& value) {
    ++position_;
    if (open_.empty()) return fail(u"extra right paren on input", line_);
    Open& list = open_.back();
    if (list.quote) return fail(u"malformed list on input", line_);
    if (list.dot == Dot::Seen) return fail(u"misplaced dot on input", line_);
    value = list.items.take(std::move(list.tail));
    if (placeBase_ != 0 && value.isCons()) {
        value.object()->place = placeBase_ + static_cast<uint32_t>(list.line);
    }
    open_.pop_back();
    return true;
}

/// Puts a datum where it belongs: into the innermost open list, or out as the result.
bool Reader::deliver(Value& value, bool& complete) {
    while (!open_.empty() && open_.back().quote) {
        value = makeList(Value::share(symbols_.quote), std::move(value));
        open_.pop_back();
    }
    complete = open_.empty();
    if (complete) return true;
    Open& list = open_.back();
    if (list.dot == Dot::Filled) return fail(u"extra cdrs in dotted pair on input", line_);
    if (list.dot == Dot::Seen) {
        list.tail = std::move(value);
        list.dot = Dot::Filled;
    } else {
        list.items.add(std::move(value));
    }
    return true;
}

bool Reader::fail(const char16_t* message, int32_t line, bool incomplete) {
    error_ = message;
    errorLine_ = line;
    incomplete_ = incomplete;
    position_ = text_.size();
    open_.clear();
    return false;
}

}  // namespace host::lisp
