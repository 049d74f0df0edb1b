/// Dialogs of a seat that ask for one thing. Here each is a question on the command line, whose
/// answer is the next line of the input; Esc and the end of the input are Cancel.
#include <filesystem>
#include <optional>
#include <system_error>

#include "base/search_path.h"
#include "edit/input.h"
#include "host/input.h"
#include "host/output.h"
#include "kz_tls21an/text.h"
#include "lisp/builtin.h"
#include "lisp/interpreter.h"
#include "lisp/load.h"
#include "lisp/reader.h"

namespace host::lisp {

namespace {

namespace fs = std::filesystem;

/// The next line without blanks around it; nothing for Cancel. What nobody typed is shown.
std::optional<std::u16string> ask(const std::u16string& prompt) {
    const InputLine line = readInputLine(prompt);
    if (!line.shown) write(Channel::Message, prompt + line.text + u"\n");
    if (line.kind != InputLine::Kind::Text) return {};
    const size_t first = line.text.find_first_not_of(u" \t");
    if (first == std::u16string::npos) return u"";
    return line.text.substr(first, line.text.find_last_not_of(u" \t") - first + 1);
}

// --- files --------------------------------------------------------------------------------------

enum FileFlags : int32_t { kNewFile = 1, kAnyExtension = 4, kSearch = 8 };

/// The first of "dwg;dxf".
std::u16string_view firstExtension(std::u16string_view extensions) {
    extensions = extensions.substr(0, extensions.find(u';'));
    return extensions == u"*" ? std::u16string_view() : extensions;
}

std::string fullName(const std::string& name) {
    std::error_code error;
    const fs::path full = fs::absolute(spelledPath(name), error);
    return error ? name : full.lexically_normal().string();
}

/// The file that an answer means; empty when it has to be there and isn't.
std::string chosenFile(const std::string& name, int32_t flags) {
    if ((flags & kSearch) != 0) return findFile(name).empty() ? std::string() : name;
    std::string full = fullName(name);
    std::error_code error;
    if ((flags & kNewFile) == 0 && !fs::is_regular_file(full, error)) full.clear();
    return full;
}

Value askFile(Interpreter& in, Args args) {
    const std::u16string title(textArg(in, args[0]));
    const std::u16string given(textArg(in, args[1]));
    const std::u16string_view extension = firstExtension(textArg(in, args[2]));
    const int32_t flags = integerArg(in, args[3]);
    // A folder is where the dialog begins, no answer.
    const bool is_answer = !given.empty() && given.back() != u'/' && given.back() != u'\\';
    const std::u16string prompt = title + (is_answer ? u" <" + given + u">: " : u": ");
    for (;;) {
        const std::optional<std::u16string> answer = ask(prompt);
        if (!answer || (answer->empty() && !is_answer)) return {};
        std::string name = kz::toUtf8(answer->empty() ? given : *answer);
        const bool bare = fs::path(plainPath(name)).extension().empty();
        if (bare && (flags & kAnyExtension) == 0 && !extension.empty())
            name += "." + kz::toUtf8(extension);
        const std::string file = chosenFile(name, flags);
        if (!file.empty()) return makeText(kz::toUtf16(file));
        tell(kz::toUtf16(name + ": there is no such file."));
    }
}

// --- colours ------------------------------------------------------------------------------------

constexpr int32_t kByBlock = 0, kByLayer = 256;

/// The number of a colour; nothing for a text that is none.
std::optional<int32_t> colourOf(std::u16string_view text) {
    static constexpr std::u16string_view kNames[] = {u"BYBLOCK", u"RED",  u"YELLOW",  u"GREEN",
                                                     u"CYAN",    u"BLUE", u"MAGENTA", u"WHITE"};
    const std::optional<Value> number = parseNumber(text);
    if (number && number->isInteger()) {
        const int32_t colour = number->integer();
        return colour >= kByBlock && colour <= kByLayer ? std::optional(colour) : std::nullopt;
    }
    if (kz::compareNoCase(text, u"BYLAYER") == 0) return kByLayer;
    for (int32_t i = 0; i < static_cast<int32_t>(std::size(kNames)); ++i) {
        if (kz::compareNoCase(text, kNames[i]) == 0) return i;
    }
    return {};
}

Value askColour(Interpreter& in, Args args) {
    const int32_t present = integerArg(in, args[0]);
    const bool any = args.size() < 2 || static_cast<bool>(args[1]);
    const std::u16string prompt = u"Colour <" + kz::toUtf16(std::to_string(present)) + u">: ";
    for (;;) {
        const std::optional<std::u16string> answer = ask(prompt);
        if (!answer) return {};
        if (answer->empty()) return Value::integer(present);
        const std::optional<int32_t> colour = colourOf(*answer);
        if (colour && (any || (*colour != kByBlock && *colour != kByLayer)))
            return Value::integer(*colour);
        tell(any ? u"A colour is a number from 0 to 256 or a name, as red or bylayer."
                 : u"A colour is a number from 1 to 255 or a name, as red.");
    }
}

const Builtin kRows[] = {
    {"getfiled", 4, 4, askFile, "(getfiled title default extensions flags)",
     "Asks for a file, gives its full path; nil when nobody answers. Flags: 1 a new file, 4 any "
     "extension, 8 the file is searched for and its name given as typed."},
    {"acad_colordlg", 1, 3, askColour, "(acad_colordlg colour [bylayer [default]])",
     "Asks for a colour by number or name; nil when nobody answers. With bylayer nil ByBlock (0) "
     "and "
     "ByLayer (256) are refused."},
};

}  // namespace

std::span<const Builtin> dialogBuiltins() {
    return kRows;
}

}  // namespace host::lisp
