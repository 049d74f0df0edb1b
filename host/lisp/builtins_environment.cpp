/// The program's surroundings: environment variables, what is kept for the user beyond a run, and
/// other programs.
#include <cstdlib>

#include "base/settings.h"
#include "kz_tls21an/text.h"
#include "lisp/builtin.h"
#include "lisp/interpreter.h"
#include "lisp/printer.h"
#include "lisp/reader.h"

namespace host::lisp {

namespace {

Value getEnvironment(Interpreter& in, Args args) {
    const char* value = std::getenv(kz::toUtf8(textArg(in, args[0])).c_str());
    return value == nullptr ? Value() : makeText(kz::toUtf16(value));
}

Value setEnvironment(Interpreter& in, Args args) {
    const std::string name = kz::toUtf8(textArg(in, args[0]));
    const std::string value = kz::toUtf8(textArg(in, args[1]));
    return ::setenv(name.c_str(), value.c_str(), 1) == 0 ? args[1] : Value();
}

/// A path "AppData/application/section/.../name" as section and name.
struct ConfigPath {
    ConfigPath(Interpreter& in, const Value& value) {
        const std::u16string_view path = textArg(in, value);
        const size_t separator = path.find_last_of(u"/\\");
        if (separator == std::u16string_view::npos) in.failWith(u"bad argument value:", value);
        section = path.substr(0, separator);
        name = path.substr(separator + 1);
    }
    std::u16string_view section, name;
};

Value getConfig(Interpreter& in, Args args) {
    const ConfigPath path(in, args[0]);
    const auto text = readSetting(path.section, path.name);
    return text ? makeText(*text) : Value();
}

Value setConfig(Interpreter& in, Args args) {
    const ConfigPath path(in, args[0]);
    return writeSetting(path.section, path.name, textArg(in, args[1])) ? args[1] : Value();
}

// --- registry -----------------------------------------------------------------------------------
// Keys are sections of the settings; a value is kept in the form that prin1 gives it, so that
// numbers and lists come back as what they were.

std::u16string_view nameOr(Interpreter& in, Args args, size_t index) {
    const Value& name = optionalArg(args, index);
    return name.isNil() ? std::u16string_view() : textArg(in, name);
}

Value registryRead(Interpreter& in, Args args) {
    const auto text = readSetting(textArg(in, args[0]), nameOr(in, args, 1));
    Value value;
    if (text) Reader(in.symbols, *text).read(value);
    return value;
}

Value registryWrite(Interpreter& in, Args args) {
    const std::u16string_view key = textArg(in, args[0]);
    const Value& data = args.size() == 3 ? args[2] : optionalArg(args, 1);
    const std::u16string_view name = args.size() == 3 ? nameOr(in, args, 1) : u"";
    const bool written =
        writeSetting(key, name, data.isNil() ? u"\"\"" : printed(data, PrintForm::Readable));
    return !written ? Value() : data.isNil() ? in.truth(true) : data;
}

Value registryDelete(Interpreter& in, Args args) {
    const std::u16string_view key = textArg(in, args[0]);
    if (args.size() == 1) return in.truth(removeSetting(key, std::nullopt));
    return in.truth(removeSetting(key, nameOr(in, args, 1)));
}

Value registryDescendents(Interpreter& in, Args args) {
    const std::u16string_view key = textArg(in, args[0]);
    ListBuilder list;
    for (const std::u16string& name :
         optionalArg(args, 1) ? settingNames(key) : settingSections(key)) {
        list.add(makeText(name));
    }
    return list.take();
}

// --- programs -----------------------------------------------------------------------------------

Value version(Interpreter&, Args) {
    return makeText(u"AutoLISP in kz (en)");
}

/// Code that runs on a server must not start what it likes.
Value startProgram(Interpreter& in, Args args) {
    for (const Value& arg : args)
        textArg(in, arg);
    return {};
}

const Builtin kRows[] = {
    {"getenv", 1, 1, getEnvironment, "(getenv name)",
     "Value of an environment variable; nil when there is none."},
    {"setenv", 2, 2, setEnvironment, "(setenv name value)",
     "Sets an environment variable of this run; gives the value."},
    {"getcfg", 1, 1, getConfig, "(getcfg path)",
     "Text kept under a path \"AppData/application/.../name\"; nil when there is none."},
    {"setcfg", 2, 2, setConfig, "(setcfg path text)",
     "Keeps a text for later runs; gives it, nil when it can't be written."},
    {"vl-registry-read", 1, 2, registryRead, "(vl-registry-read key [name])",
     "Value kept under a key; nil when there is none."},
    {"vl-registry-write", 1, 3, registryWrite, "(vl-registry-write key [name] value)",
     "Keeps a value for later runs; gives it, nil when it can't be written."},
    {"vl-registry-delete", 1, 2, registryDelete, "(vl-registry-delete key [name])",
     "Removes a value, or a key with all below it; nil when there was none."},
    {"vl-registry-descendents", 1, 2, registryDescendents, "(vl-registry-descendents key [names])",
     "Keys right below a key, or with names not nil the names of its values."},
    {"ver", 0, 0, version, "(ver)", "Name of the AutoLISP that runs."},
    {"startapp", 1, 2, startProgram, "(startapp program [file])",
     "Starts no program here; gives nil, as for one that can't be started."},
};

}  // namespace

std::span<const Builtin> environmentBuiltins() {
    return kRows;
}

}  // namespace host::lisp
