/// The printer.
#include "lisp/printer.h"

#include <charconv>
#include <vector>

namespace host::lisp {

namespace {

void printAscii(std::u16string& out, std::string_view text) {
    out.append(text.begin(), text.end());
}

void printInteger(std::u16string& out, int64_t number) {
    printAscii(out, std::to_string(number));
}

void printHex(std::u16string& out, uint64_t number, size_t width) {
    char digits[16];
    const auto end = std::to_chars(digits, digits + sizeof digits, number, 16).ptr;
    const auto length = static_cast<size_t>(end - digits);
    if (length < width) out.append(width - length, u'0');
    printAscii(out, {digits, length});
}

bool isLoneSurrogate(std::u16string_view units, size_t at) {
    const char16_t unit = units[at];
    if (unit < 0xD800 || unit > 0xDFFF) return false;
    if (unit < 0xDC00) {
        return at + 1 == units.size() || units[at + 1] < 0xDC00 || units[at + 1] > 0xDFFF;
    }
    return at == 0 || units[at - 1] < 0xD800 || units[at - 1] > 0xDBFF;
}

void printEscaped(std::u16string& out, std::u16string_view units, size_t at) {
    const char16_t unit = units[at];
    static constexpr std::u16string_view kPlain = u"\"\\\n\r\t\x1B";
    static constexpr std::u16string_view kLetters = u"\"\\nrte";
    if (const size_t index = kPlain.find(unit); index != std::u16string_view::npos) {
        out.push_back(u'\\');
        out.push_back(kLetters[index]);
    } else if (unit < 0x20 || unit == 0x7F) {
        out.push_back(u'\\');
        for (int shift = 6; shift >= 0; shift -= 3) {
            out.push_back(static_cast<char16_t>(u'0' + ((unit >> shift) & 7)));
        }
    } else if (isLoneSurrogate(units, at)) {
        out.append(u"\\U+");
        printHex(out, unit, 4);
    } else {
        out.push_back(unit);
    }
}

void printText(std::u16string& out, std::u16string_view units, PrintForm form) {
    if (form == PrintForm::Plain) {
        out.append(units);
        return;
    }
    out.push_back(u'"');
    for (size_t i = 0; i < units.size(); ++i)
        printEscaped(out, units, i);
    out.push_back(u'"');
}

void printFunction(std::u16string& out, std::u16string_view kind, uint32_t number,
                   std::u16string_view name) {
    out.append(u"#<").append(kind).append(u" @");
    printHex(out, number, 16);
    out.append(u" ").append(name).append(u">");
}

void printObject(std::u16string& out, const Value& value, PrintForm form) {
    switch (static_cast<Kind>(value.object()->kind)) {
        case Kind::Cons:
            break;
        case Kind::Text:
            printText(out, value.text(), form);
            break;
        case Kind::Symbol:
            out.append(value.symbol()->name);
            break;
        case Kind::Subr:
            printFunction(out, u"SUBR", value.as<Subr>()->number, value.as<Subr>()->name->name);
            break;
        case Kind::UserFunction: {
            const auto* function = value.as<UserFunction>();
            printFunction(out, u"USUBR", function->number,
                          function->name ? function->name->name : u"-lambda-");
            break;
        }
        case Kind::External:
            printFunction(out, u"EXRXSUBR", value.as<External>()->number,
                          value.as<External>()->name->name);
            break;
        case Kind::EntityName:
            out.append(u"<Entity name: ");
            printHex(out, static_cast<uint64_t>(value.as<EntityName>()->name[0]), 1);
            out.append(u">");
            break;
        case Kind::SelectionSet:
            out.append(u"<Selection set: ");
            printInteger(out, value.as<SelectionSet>()->number);
            out.append(u">");
            break;
        case Kind::File:
            out.append(u"#<file ");
            printText(out, value.as<File>()->name, PrintForm::Readable);
            out.append(u">");
            break;
        case Kind::CaughtError:
            out.append(u"#<%catch-all-apply-error%>");
            break;
    }
}

void printAtom(std::u16string& out, const Value& value, PrintForm form) {
    if (value.isNil()) {
        out.append(u"nil");
    } else if (value.isInteger()) {
        printInteger(out, value.integer());
    } else if (value.isReal()) {
        printReal(out, value.real());
    } else {
        printObject(out, value, form);
    }
}

}  // namespace

void printReal(std::u16string& out, double number) {
    if (number != number) return printAscii(out, "1.#QNAN");
    if (number > std::numeric_limits<double>::max()) return printAscii(out, "1.#INF");
    if (number < std::numeric_limits<double>::lowest()) return printAscii(out, "-1.#INF");
    char digits[32];
    const auto end =
        std::to_chars(digits, digits + sizeof digits, number, std::chars_format::general, 6).ptr;
    const std::string_view text(digits, static_cast<size_t>(end - digits));
    const size_t exponent = std::min(text.find('e'), text.size());
    printAscii(out, text.substr(0, exponent));
    if (text.substr(0, exponent).find('.') == std::string_view::npos) out.append(u".0");
    printAscii(out, text.substr(exponent));
}

void print(std::u16string& out, const Value& value, PrintForm form, size_t limit) {
    const size_t start = out.size();
    std::vector<const Value*> rests;  // what is still to print of each list that is open
    const Value* current = &value;
    for (;;) {
        if (out.size() - start >= limit) {
            out.append(u"...");
            return;
        }
        if (current->isCons()) {
            out.push_back(u'(');
            rests.push_back(&current->cons()->cdr);
            current = &current->cons()->car;
            continue;
        }
        printAtom(out, *current, form);
        while (!rests.empty() && !rests.back()->isCons()) {
            if (rests.back()->isNil()) {
                out.push_back(u')');
            } else {
                out.append(u" . ");
                printAtom(out, *rests.back(), form);
                out.push_back(u')');
            }
            rests.pop_back();
        }
        if (rests.empty()) return;
        out.push_back(u' ');
        current = &rests.back()->cons()->car;
        rests.back() = &rests.back()->cons()->cdr;
    }
}

std::u16string printed(const Value& value, PrintForm form) {
    std::u16string out;
    print(out, value, form);
    return out;
}

}  // namespace host::lisp
