/// Modules and name spaces. All code shares one name space here, which is that of the drawing; the
/// blackboard stands beside it. What a seat has to load is always there.
#include <algorithm>
#include <filesystem>

#include "base/search_path.h"
#include "edit/input.h"
#include "host/module.h"
#include "kz_tls21an/text.h"
#include "lisp/builtin.h"
#include "lisp/interpreter.h"
#include "lisp/load.h"
#include "rx/module.h"

namespace host::lisp {

namespace {

Value nothingDone(Interpreter&, Args) {
    return {};
}

Value given(Interpreter&, Args args) {
    return optionalArg(args, 0);
}

Value blackboardSet(Interpreter& in, Args args) {
    in.blackboard[symbolArg(in, args[0])] = args[1];
    return args[1];
}

Value blackboardRef(Interpreter& in, Args args) {
    const auto found = in.blackboard.find(symbolArg(in, args[0]));
    return found == in.blackboard.end() ? Value() : found->second;
}

Value documentSet(Interpreter& in, Args args) {
    symbolArg(in, args[0])->value = args[1];
    return args[1];
}

Value documentRef(Interpreter& in, Args args) {
    return symbolArg(in, args[0])->value;
}

Value propagate(Interpreter& in, Args args) {
    symbolArg(in, args[0]);
    return {};
}

/// Functions that load the file when they are called first, and are then what it defines.
Value autoload(Interpreter& in, Args args) {
    const std::u16string file(textArg(in, args[0]));
    for (const Value* rest = &listArg(in, args[1]); rest->isCons(); rest = &rest->cons()->cdr) {
        const std::u16string name = u"C:" + std::u16string(textArg(in, rest->cons()->car));
        const Value symbol = Value::share(in.symbols.intern(name));
        const auto form = [&in](const char* head, auto... items) {
            return makeList(Value::share(in.symbols.intern(head)), items...);
        };
        in.eval(form("DEFUN", symbol, Value(), form("SETQ", symbol, Value()),
                     form("LOAD", makeText(file)), makeList(symbol)));
    }
    return {};
}

// --- native modules -----------------------------------------------------------------------------

/// Modules as a seat names their files.
Value nativeModules(Interpreter&, Args) {
    ListBuilder list;
    for (const std::string& name : loadedModules())
        list.add(makeText(kz::toUtf16(name + ".arx")));
    return list.take();
}

/// The file of a module: as it is named, or as modules are called here.
std::string moduleFile(const std::string& name) {
    namespace fs = std::filesystem;
    const fs::path folder = fs::path(plainPath(name)).parent_path();
    for (const std::string& file : {name, (folder / ("lib" + moduleName(name) + ".so")).string(),
                                    (folder / (moduleName(name) + ".so")).string()}) {
        std::string found = findFile(file);
        if (!found.empty()) return found;
    }
    return {};
}

/// One that is loaded already is good.
Value loadNative(Interpreter& in, Args args) {
    const std::string name = kz::toUtf8(textArg(in, args[0]));
    const std::vector<std::string>& modules = loadedModules();
    if (std::find(modules.begin(), modules.end(), moduleName(name)) != modules.end())
        return args[0];
    const std::string file = moduleFile(name);
    std::string error;
    if (!file.empty() && loadModule(file, error)) return args[0];
    if (args.size() == 2) return args[1];
    if (!error.empty()) tell(kz::toUtf16(error));
    in.fail(u"ARXLOAD failed: \"" + std::u16string(args[0].text()) + u"\"");
}

/// Modules stay.
Value unloadNative(Interpreter& in, Args args) {
    if (args.size() == 2) return args[1];
    in.fail(u"ARXUNLOAD failed: \"" + std::u16string(textArg(in, args[0])) + u"\"");
}

Value exitWithError(Interpreter& in, Args args) {
    in.fail(textArg(in, args[0]));
}

Value exitWithValue(Interpreter& in, Args) {
    in.fail(u"quit / exit abort");
}

Value settingAccepted(Interpreter& in, Args args) {
    return Value::integer(integerArg(in, args[0]));
}

const Builtin kRows[] = {
    {"vl-load-com", 0, 0, nothingDone, "(vl-load-com)",
     "Loads the functions for objects of other programs on a seat; here nothing."},
    {"vl-load-reactors", 0, 0, nothingDone, "(vl-load-reactors)",
     "Loads the functions for reactors on a seat; here nothing."},
    {"vl-load-all", 1, 1, nothingDone, "(vl-load-all file)",
     "Loads a file into drawings that are opened later on a seat; here nothing."},
    {"vl-bb-set", 2, 2, blackboardSet, "(vl-bb-set symbol value)",
     "Puts a value on the blackboard; gives it."},
    {"vl-bb-ref", 1, 1, blackboardRef, "(vl-bb-ref symbol)",
     "Value on the blackboard; nil when there is none."},
    {"vl-doc-set", 2, 2, documentSet, "(vl-doc-set symbol value)",
     "Sets a variable of the drawing; gives the value."},
    {"vl-doc-ref", 1, 1, documentRef, "(vl-doc-ref symbol)", "Value of a variable of the drawing."},
    {"vl-doc-export", 1, 1, given, "(vl-doc-export function)",
     "Makes a function known to the drawing, which all are here; gives its name."},
    {"vl-doc-import", 1, kAnyNumber, nothingDone, "(vl-doc-import module [function ...])",
     "Makes functions of a module known, which all are here."},
    {"vl-list-loaded-vlx", 0, 0, nothingDone, "(vl-list-loaded-vlx)",
     "Compiled programs with a name space of their own on a seat; nil, since there are none."},
    {"vl-vlx-loaded-p", 1, 1, nothingDone, "(vl-vlx-loaded-p program)",
     "T for a compiled program that is loaded on a seat; here nil."},
    {"vl-list-exported-functions", 0, 1, nothingDone, "(vl-list-exported-functions [program])",
     "Functions that compiled programs export on a seat; nil, since there are none."},
    {"vl-propagate", 1, 1, propagate, "(vl-propagate symbol)",
     "Copies a variable to all open drawings, which share it here."},
    {"vl-arx-import", 1, kAnyNumber, nothingDone, "(vl-arx-import module [function ...])",
     "Makes functions of a native module known, which all are here."},
    {"arx", 0, 0, nativeModules, "(arx)", "Names of the native modules that are loaded."},
    {"arxload", 1, 2, loadNative, "(arxload name [on-failure])",
     "Loads a native module, which is found as NAME or libNAME.so, and gives its name; that of one "
     "that is loaded already, too."},
    {"arxunload", 1, 2, unloadNative, "(arxunload name [on-failure])",
     "Unloads a native module on a seat; here they stay, and this fails."},
    {"vl-acad-defun", 1, 1, given, "(vl-acad-defun function)",
     "Lets native programs call a function, which all can be here; gives its name."},
    {"vl-acad-undefun", 1, 1, given, "(vl-acad-undefun function)",
     "Takes back vl-acad-defun; gives the function's name."},
    {"autoload", 2, 2, autoload, "(autoload file commands)",
     "Lets commands load the file that defines them when they are called first."},
    {"vl-exit-with-error", 1, 1, exitWithError, "(vl-exit-with-error text)",
     "Ends in an error with this text."},
    {"vl-exit-with-value", 1, 1, exitWithValue, "(vl-exit-with-value value)",
     "Ends all that runs, as exit does."},
    {"mem", 0, 0, nothingDone, "(mem)", "Memory of Lisp on a seat; here nothing."},
    {"gc", 0, 0, nothingDone, "(gc)",
     "Collects what nobody refers to; here it goes as soon as that is so."},
    {"alloc", 1, 1, settingAccepted, "(alloc number)",
     "Sets how memory grows on a seat; gives the number."},
    {"expand", 1, 1, settingAccepted, "(expand number)",
     "Makes memory ready on a seat; gives the number."},
};

}  // namespace

std::span<const Builtin> moduleBuiltins() {
    return kRows;
}

}  // namespace host::lisp
