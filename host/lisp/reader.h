/// Text to data. Works without recursion, so that no nesting of parentheses is too deep for it.
#ifndef HOST_LISP_READER_H
#define HOST_LISP_READER_H

#include <optional>
#include <vector>

#include "lisp/symbol_table.h"

namespace host::lisp {

/// The number that a token spells: 32-bit integers, integers beyond as reals, reals; nothing for a
/// symbol.
std::optional<Value> parseNumber(std::u16string_view token);

class Reader {
  public:
    enum class Status { Datum, End, Failed };

    /// `text` must outlive the reader. Lists are marked with `placeBase` plus their line when it is
    /// not 0.
    Reader(SymbolTable& symbols, std::u16string_view text, uint32_t placeBase = 0)
        : symbols_(symbols), text_(text), placeBase_(placeBase) {}
    /// The next datum. After a failure the text is not read on.
    Status read(Value& datum);

    /// Message of the failure, and the line where it was met (for an end that came too early: where
    /// the outermost open list begins).
    const char16_t* error() const { return error_; }
    int32_t errorLine() const { return errorLine_; }
    /// True when more text could mend the failure.
    bool incomplete() const { return incomplete_; }
    /// Line, counted from 1, that the reader stands on.
    int32_t line() const { return line_; }

  private:
    enum class Dot { None, Seen, Filled };
    struct Open {
        bool quote;
        int32_t line;
        Dot dot = Dot::None;
        ListBuilder items = {};
        Value tail = {};
    };

    void skipBlanks();
    void skipBlockComment();
    bool readAtom(Value& value);
    bool readText(Value& value);
    char16_t readEscape();
    char16_t readOctal(char16_t first);
    bool noteDot();
    bool closeList(Value& value);
    bool deliver(Value& value, bool& complete);
    bool fail(const char16_t* message, int32_t line, bool incomplete = false);
    bool atEnd() const { return position_ >= text_.size(); }

    SymbolTable& symbols_;
    std::u16string_view text_;
    uint32_t placeBase_;
    size_t position_ = 0;
    int32_t line_ = 1;
    std::vector<Open> open_;
    const char16_t* error_ = u"";
    int32_t errorLine_ = 0;
    bool incomplete_ = false;
};

}  // namespace host::lisp

#endif
