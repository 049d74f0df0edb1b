/// Texts: joining, cutting, searching. substr counts from 1, the vl-string functions from 0.
#include <algorithm>

#include "kz_tls21an/text.h"
#include "lisp/builtin.h"
#include "lisp/interpreter.h"

namespace host::lisp {

namespace {

using View = std::u16string_view;

Value indexOrNil(size_t index) {
    return index == View::npos ? Value() : Value::integer(static_cast<int32_t>(index));
}

/// A position within a text counted from 0, 0 where the argument is missing.
size_t startArg(Interpreter& in, Args args, size_t index, View text) {
    const Value& value = optionalArg(args, index);
    if (value.isNil()) return 0;
    const int32_t start = integerArg(in, value);
    if (start < 0 || static_cast<size_t>(start) > text.size()) {
        in.failWith(u"bad argument value:", value);
    }
    return static_cast<size_t>(start);
}

char16_t codeArg(Interpreter& in, const Value& value) {
    const int32_t code = integerArg(in, value);
    if (code < 0 || code > 0xFFFF) in.failWith(u"bad argument value:", value);
    return static_cast<char16_t>(code);
}

Value strcat(Interpreter& in, Args args) {
    size_t length = 0;
    for (const Value& arg : args)
        length += textArg(in, arg).size();
    Value joined = makeBlankText(length);
    char16_t* units = joined.as<Text>()->units();
    for (const Value& arg : args)
        units += arg.text().copy(units, arg.text().size());
    return joined;
}

Value strlen(Interpreter& in, Args args) {
    size_t length = 0;
    for (const Value& arg : args)
        length += textArg(in, arg).size();
    return Value::integer(static_cast<int32_t>(length));
}

Value substr(Interpreter& in, Args args) {
    const View text = textArg(in, args[0]);
    const int32_t start = integerArg(in, args[1]);
    if (start < 1) in.failWith(u"bad argument value: positive", args[1]);
    size_t length = View::npos;
    if (const Value& wanted = optionalArg(args, 2); !wanted.isNil()) {
        if (integerArg(in, wanted) < 0) in.failWith(u"bad argument value: non-negative:", wanted);
        length = static_cast<size_t>(wanted.integer());
    }
    const auto from = static_cast<size_t>(start - 1);
    return makeText(from >= text.size() ? View() : text.substr(from, length));
}

Value strcase(Interpreter& in, Args args) {
    const View text = textArg(in, args[0]);
    const bool lower = bool(optionalArg(args, 1));
    Value changed = makeBlankText(text.size());
    std::transform(text.begin(), text.end(), changed.as<Text>()->units(),
                   lower ? kz::lowerUnit : kz::upperUnit);
    return changed;
}

Value ascii(Interpreter& in, Args args) {
    const View text = textArg(in, args[0]);
    return Value::integer(text.empty() ? 0 : text[0]);
}

Value chr(Interpreter& in, Args args) {
    const char16_t code = codeArg(in, args[0]);
    return makeText(code == 0 ? View() : View(&code, 1));
}

Value wcmatch(Interpreter& in, Args args) {
    const std::u16string text(textArg(in, args[0])), pattern(textArg(in, args[1]));
    return in.truth(acutWcMatch(text.c_str(), pattern.c_str()) == RTNORM);
}

Value search(Interpreter& in, Args args) {
    const View pattern = textArg(in, args[0]), text = textArg(in, args[1]);
    return indexOrNil(text.find(pattern, startArg(in, args, 2, text)));
}

Value positionOf(Interpreter& in, Args args) {
    const char16_t code = codeArg(in, args[0]);
    const View text = textArg(in, args[1]);
    const size_t start = startArg(in, args, 2, text);
    return indexOrNil(optionalArg(args, 3) ? text.rfind(code) : text.find(code, start));
}

Value elementOf(Interpreter& in, Args args) {
    const View text = textArg(in, args[0]);
    const int32_t index = integerArg(in, args[1]);
    if (index < 0 || static_cast<size_t>(index) >= text.size()) {
        in.failWith(u"bad argument value:", args[1]);
    }
    return Value::integer(text[static_cast<size_t>(index)]);
}

Value trimmed(Interpreter& in, Args args, bool left, bool right) {
    const View units = textArg(in, args[0]), text = textArg(in, args[1]);
    const size_t from = left ? text.find_first_not_of(units) : 0;
    if (from == View::npos) return makeText(View());
    const size_t to = right ? text.find_last_not_of(units) + 1 : text.size();
    return makeText(text.substr(from, to - from));
}

Value trimLeft(Interpreter& in, Args args) {
    return trimmed(in, args, true, false);
}
Value trimRight(Interpreter& in, Args args) {
    return trimmed(in, args, false, true);
}
Value trimBoth(Interpreter& in, Args args) {
    return trimmed(in, args, true, true);
}

Value substitute(Interpreter& in, Args args) {
    const View fresh = textArg(in, args[0]), pattern = textArg(in, args[1]);
    const View text = textArg(in, args[2]);
    const size_t at = text.find(pattern, startArg(in, args, 3, text));
    if (at == View::npos) return args[2];
    std::u16string changed(text.substr(0, at));
    changed.append(fresh).append(text.substr(at + pattern.size()));
    return makeText(changed);
}

/// Units that stand in the first set become those at the same place of the second one.
Value translate(Interpreter& in, Args args) {
    const View from = textArg(in, args[0]), to = textArg(in, args[1]), text = textArg(in, args[2]);
    std::u16string changed(text);
    for (char16_t& unit : changed) {
        const size_t index = from.find(unit);
        if (index < to.size()) unit = to[index];
    }
    return makeText(changed);
}

Value mismatch(Interpreter& in, Args args) {
    const View first = textArg(in, args[0]), second = textArg(in, args[1]);
    const View left = first.substr(startArg(in, args, 2, first));
    const View right = second.substr(startArg(in, args, 3, second));
    const bool fold = bool(optionalArg(args, 4));
    const size_t shorter = std::min(left.size(), right.size());
    size_t count = 0;
    while (count < shorter && (fold ? kz::upperUnit(left[count]) == kz::upperUnit(right[count])
                                    : left[count] == right[count])) {
        ++count;
    }
    return Value::integer(static_cast<int32_t>(count));
}

Value toList(Interpreter& in, Args args) {
    ListBuilder codes;
    for (const char16_t unit : textArg(in, args[0]))
        codes.add(Value::integer(unit));
    return codes.take();
}

Value fromList(Interpreter& in, Args args) {
    std::u16string text;
    for (const Value* rest = &listArg(in, args[0]); rest->isCons(); rest = &rest->cons()->cdr) {
        text.push_back(codeArg(in, rest->cons()->car));
    }
    return makeText(text);
}

const Builtin kRows[] = {
    {"strcat", 0, kAnyNumber, strcat, "(strcat [text ...])", "One text of all."},
    {"strlen", 0, kAnyNumber, strlen, "(strlen [text ...])", "Number of characters of all texts."},
    {"substr", 2, 3, substr, "(substr text start [length])",
     "Part of a text from a position counted from 1."},
    {"strcase", 1, 2, strcase, "(strcase text [lower])",
     "Text in upper case; in lower case when lower is not nil."},
    {"ascii", 1, 1, ascii, "(ascii text)", "Code of the first character."},
    {"chr", 1, 1, chr, "(chr code)", "Text of one character."},
    {"wcmatch", 2, 2, wcmatch, "(wcmatch text pattern)",
     "T when the text matches the wildcard pattern."},
    {"vl-string-search", 2, 3, search, "(vl-string-search pattern text [start])",
     "Position of a text within another, counted from 0."},
    {"vl-string-position", 2, 4, positionOf, "(vl-string-position code text [start [from-end]])",
     "Position of a character, counted from 0."},
    {"vl-string-elt", 2, 2, elementOf, "(vl-string-elt text position)",
     "Code of the character at a position counted from 0."},
    {"vl-string-left-trim", 2, 2, trimLeft, "(vl-string-left-trim characters text)",
     "Text without these characters at its beginning."},
    {"vl-string-right-trim", 2, 2, trimRight, "(vl-string-right-trim characters text)",
     "Text without these characters at its end."},
    {"vl-string-trim", 2, 2, trimBoth, "(vl-string-trim characters text)",
     "Text without these characters at both ends."},
    {"vl-string-subst", 3, 4, substitute, "(vl-string-subst new pattern text [start])",
     "Text with the first pattern replaced."},
    {"vl-string-translate", 3, 3, translate, "(vl-string-translate from to text)",
     "Text with characters replaced one by one."},
    {"vl-string-mismatch", 2, 5, mismatch,
     "(vl-string-mismatch text text [start [start [ignore-case]]])",
     "Number of characters that two texts have in common at their beginning."},
    {"vl-string->list", 1, 1, toList, "(vl-string->list text)", "Codes of all characters."},
    {"vl-list->string", 1, 1, fromList, "(vl-list->string codes)", "Text from character codes."},
};

}  // namespace

std::span<const Builtin> textBuiltins() {
    return kRows;
}

}  // namespace host::lisp
