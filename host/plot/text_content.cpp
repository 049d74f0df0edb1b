/// Reading of the codes in texts. Formats: "%%" codes of TEXT, backslash codes of MTEXT.
#include "plot/text_content.h"

#include <algorithm>

namespace host {
namespace {

char16_t lower(char16_t unit) {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
}

bool isDigit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}

/// Reads formatted text, front to back.
class ParagraphReader {
  public:
    explicit ParagraphReader(std::u16string_view text) : text_(text) {}

    std::vector<std::u16string> read() {
        while (at_ < text_.size()) {
            const char16_t unit = text_[at_++];
            if (unit == u'\\' && at_ < text_.size()) {
                readCode(text_[at_++]);
            } else if (unit == u'^' && at_ < text_.size()) {
                readCaret(text_[at_++]);
            } else if (unit != u'{' && unit != u'}') {
                line() += unit;
            }
        }
        for (std::u16string& text : lines_)
            text = plainText(text);
        return std::move(lines_);
    }

  private:
    std::u16string& line() { return lines_.back(); }

    void readCaret(char16_t unit) {
        if (unit == u'I') {
            line() += u' ';
        } else if (unit == u'J') {
            lines_.emplace_back();
        } else if (unit != u'M') {
            line() += u'^';
            if (unit != u' ') line() += unit;
        }
    }

    void readCode(char16_t code) {
        switch (code) {
            case u'P':
            case u'N':
            case u'X':
                lines_.emplace_back();
                return;
            case u'~':
                line() += u'\u00a0';
                return;
            case u'\\':
            case u'{':
            case u'}':
                line() += code;
                return;
            case u'L':
            case u'l':
            case u'O':
            case u'o':
            case u'K':
            case u'k':
                return;
            case u'S':
                readStack();
                return;
            case u'f':
            case u'F':
            case u'H':
            case u'W':
            case u'Q':
            case u'T':
            case u'A':
            case u'C':
            case u'c':
            case u'p':
                at_ = std::min(text_.find(u';', at_), text_.size() - 1) + 1;
                return;
            default:
                line() += u'\\';
                line() += code;
        }
    }

    /// "a^b;", "a/b;" and "a#b;" up to the semicolon.
    void readStack() {
        while (at_ < text_.size() && text_[at_] != u';') {
            char16_t unit = text_[at_++];
            if (unit == u'\\' && at_ < text_.size()) {
                unit = text_[at_++];
            } else if (unit == u'^' || unit == u'#') {
                unit = u'/';
            }
            line() += unit;
        }
        if (at_ < text_.size()) ++at_;
    }

    std::u16string_view text_;
    size_t at_ = 0;
    std::vector<std::u16string> lines_{1};
};

}  // namespace

std::u16string plainText(std::u16string_view text) {
    std::u16string plain;
    for (size_t i = 0; i < text.size(); ++i) {
        const bool code = text[i] == u'%' && i + 2 < text.size() && text[i + 1] == u'%';
        if (!code) {
            plain += text[i];
            continue;
        }
        const char16_t letter = lower(text[i + 2]);
        i += 2;
        if (letter == u'd') {
            plain += u'\u00b0';
        } else if (letter == u'p') {
            plain += u'\u00b1';
        } else if (letter == u'c') {
            plain += u'\u00d8';
        } else if (letter == u'%') {
            plain += u'%';
        } else if (isDigit(letter)) {
            char16_t number = static_cast<char16_t>(letter - u'0');
            for (int more = 0; more < 2 && i + 1 < text.size() && isDigit(text[i + 1]); ++more)
                number = static_cast<char16_t>(number * 10 + (text[++i] - u'0'));
            if (number >= 32) plain += number;
        } else if (letter != u'u' && letter != u'o' && letter != u'k') {
            plain += text.substr(i - 2, 3);
        }
    }
    return plain;
}

std::vector<std::u16string> paragraphs(std::u16string_view text) {
    return ParagraphReader(text).read();
}

}  // namespace host
