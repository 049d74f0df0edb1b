/// Files: opening, reading, loading. Files hold UTF-8; a line that is none is read in the drawing's
/// code page. The end of a line is read in either form.
#include <unistd.h>

#include <filesystem>
#include <system_error>

#include "base/search_path.h"
#include "host/input.h"
#include "kz_tls21an/text.h"
#include "lisp/builtin.h"
#include "lisp/interpreter.h"
#include "lisp/load.h"

namespace host::lisp {

namespace {

Value open(Interpreter& in, Args args) {
    const std::u16string_view name = textArg(in, args[0]);
    const std::u16string_view mode = textArg(in, args[1]);
    if (mode.size() != 1 ||
        std::u16string_view(u"rwaRWA").find(mode[0]) == std::u16string_view::npos) {
        in.failWith(u"bad argument value:", args[1]);
    }
    const char letter[] = {static_cast<char>(mode[0] | 0x20), 'b', 0};
    const std::string path = spelledPath(kz::toUtf8(name));
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored)) return Value();
    const Value& encoding = optionalArg(args, 2);
    const bool marked =
        !encoding.isNil() && kz::compareNoCase(textArg(in, encoding), u"utf8-bom") == 0;
    std::FILE* const stream = std::fopen(path.c_str(), letter);
    if (!stream) return Value();
    const bool new_file = letter[0] == 'w' || std::filesystem::file_size(path, ignored) == 0;
    if (marked && letter[0] != 'r' && new_file) std::fputs("\xEF\xBB\xBF", stream);
    return Value::adopt(new File(stream, name, letter[0] == 'r'));
}

Value close(Interpreter& in, Args args) {
    File* const file = fileArg(in, args[0]);
    if (!file->stream) in.badArgument(u"streamp", args[0]);
    file->close();
    return Value();
}

/// Reads the next line of a file, with its end, in UTF-16. False at the end of the file.
bool nextLine(File& file) {
    std::string bytes;
    int byte = 0;
    while (byte != '\n' && (byte = std::fgetc(file.stream)) != EOF) {
        bytes.push_back(static_cast<char>(byte));
    }
    if (bytes.size() > 1 && bytes.ends_with("\r\n")) bytes.erase(bytes.size() - 2, 1);
    file.line = decodeText(bytes);
    file.position = file.line.starts_with(u'\xFEFF') ? 1 : 0;
    return !bytes.empty();
}

bool hasMore(File& file) {
    return file.position < file.line.size() || nextLine(file);
}

File* inputArg(Interpreter& in, const Value& value) {
    File* const file = fileArg(in, value);
    if (!file->stream || !file->reads) in.badArgument(u"streamp", value);
    return file;
}

Value readLine(Interpreter& in, Args args) {
    if (optionalArg(args, 0).isNil()) {
        const InputLine line = readInputLine(u"");
        return line.kind == InputLine::Kind::Text ? makeText(line.text) : Value();
    }
    File* const file = inputArg(in, args[0]);
    if (!hasMore(*file)) return Value();
    std::u16string_view rest = std::u16string_view(file->line).substr(file->position);
    file->position = file->line.size();
    if (rest.ends_with(u'\n')) rest.remove_suffix(1);
    return makeText(rest);
}

Value readChar(Interpreter& in, Args args) {
    if (optionalArg(args, 0).isNil()) {
        const InputLine line = readInputLine(u"");
        if (line.kind != InputLine::Kind::Text) return Value();
        return Value::integer(line.text.empty() ? u'\n' : line.text.front());
    }
    File* const file = inputArg(in, args[0]);
    return hasMore(*file) ? Value::integer(file->line[file->position++]) : Value();
}

Value findFileOf(Interpreter& in, Args args) {
    const std::string path = findFile(kz::toUtf8(textArg(in, args[0])));
    return path.empty() ? Value() : makeText(kz::toUtf16(path));
}

bool isLambda(Interpreter& in, const Value& value) {
    return value.isCons() && value.cons()->car.isSymbol() &&
           value.cons()->car.symbol() == in.symbols.lambda;
}

Value deleteFile(Interpreter& in, Args args) {
    std::error_code error;
    const std::filesystem::path path = spelledPath(kz::toUtf8(textArg(in, args[0])));
    if (std::filesystem::is_directory(path, error)) return Value();
    return in.truth(std::filesystem::remove(path, error));
}

/// A name that no file has yet: the stem of the pattern with a number, its extension or another
/// one.
Value makeTempName(Interpreter& in, Args args) {
    namespace fs = std::filesystem;
    const auto text = [&](size_t index) {
        const Value& value = optionalArg(args, index);
        return value.isNil() ? std::string() : kz::toUtf8(textArg(in, value));
    };
    std::error_code error;
    const fs::path pattern = text(0).empty() ? fs::path("kz") : fs::path(text(0));
    fs::path folder = text(1);
    if (folder.empty()) folder = pattern.parent_path();
    if (folder.empty()) folder = fs::temp_directory_path(error);
    const std::string extension = text(2).empty() ? pattern.extension().string() : text(2);
    static int number = 0;
    for (;;) {
        const std::string name = pattern.stem().string() + std::to_string(::getpid()) + "_" +
                                 std::to_string(++number) + extension;
        if (!fs::exists(folder / name, error))
            return makeText(kz::toUtf16((folder / name).string()));
    }
}

/// What the second argument of load asks for when the file can't be loaded: a call, or its value.
Value onFailure(Interpreter& in, const Value& wanted) {
    const Value& meant = wanted.isSymbol() ? wanted.symbol()->value : wanted;
    const bool callable = meant.is(Kind::UserFunction) || meant.is(Kind::Subr) ||
                          meant.is(Kind::External) || isLambda(in, meant);
    return callable ? callWith(in, in.functionFor(wanted)) : wanted;
}

Value load(Interpreter& in, Args args) {
    const std::string path = findProgram(kz::toUtf8(textArg(in, args[0])));
    std::u16string text;
    std::string error;
    if (path.empty() || !readProgram(path, text, error)) {
        if (args.size() == 2) return onFailure(in, args[1]);
        in.fail(u"LOAD failed: \"" + std::u16string(args[0].text()) + u"\"");
    }
    return in.evalText(text, {kz::toUtf16(path)});
}

const Builtin kRows[] = {
    {"open", 2, 3, open, "(open name mode [encoding])",
     "Opens a file to read (r), write (w) or append (a); nil when it can't be opened. Encoding "
     "\"utf8-bom\" begins a new file with the mark of UTF-8."},
    {"close", 1, 1, close, "(close file)", "Closes a file."},
    {"read-line", 0, 1, readLine, "(read-line [file])", "Next line of a file; nil at its end."},
    {"read-char", 0, 1, readChar, "(read-char [file])",
     "Code of the next character of a file; nil at its end."},
    {"findfile", 1, 1, findFileOf, "(findfile name)",
     "Full path of a file; nil when there is none."},
    {"vl-file-delete", 1, 1, deleteFile, "(vl-file-delete name)",
     "Deletes a file; nil when it can't."},
    {"vl-filename-mktemp", 0, 3, makeTempName,
     "(vl-filename-mktemp [pattern [folder [extension]]])",
     "Name for a temporary file that does not exist yet."},
    {"load", 1, 2, load, "(load name [on-failure])",
     "Evaluates the expressions of a file, gives the last value."},
};

}  // namespace

std::span<const Builtin> fileBuiltins() {
    return kRows;
}

}  // namespace host::lisp
