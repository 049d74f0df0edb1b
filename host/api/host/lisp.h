/// AutoLISP, for programs and tests around the host. There is one interpreter; its symbols stay
/// from one call to the next.
#ifndef HOST_LISP_H
#define HOST_LISP_H

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/export.h"

namespace host {

/// How an evaluation ended.
struct LispOutcome {
    enum class Kind {
        Value,      ///< it has a value
        Failed,     ///< a Lisp error
        Unreadable  ///< the file could not be read; `message` says why
    };
    Kind kind = Kind::Value;
    /// The value of the last expression in prin1 form; empty when there is nothing to show, which
    /// is so for the value of (princ) and for a native function that gives none.
    std::u16string value;
    /// Of a Lisp error: its message, the form in which it happened (may be empty), file and line
    /// where the form was loaded from (empty and 0 for none).
    std::u16string message;
    std::u16string expression;
    std::u16string file;
    int line = 0;
    /// The chain of forms that led there, innermost first, a line each; of a long chain both ends.
    std::u16string backtrace;
    /// True when an *error* function has been called for the error.
    bool handled = false;

    bool ok() const { return kind == Kind::Value; }
};

/// What a text is a part of; errors name it, and the line.
struct LispSource {
    std::u16string_view name;  ///< empty for nothing
    int firstLine = 1;         ///< of the text, counted from 1
};

/// Takes the printed value of an expression; not called for one with nothing to show.
using LispValueSink = std::function<void(std::u16string_view value)>;

/// Evaluates a text that holds any number of expressions. Behind each of them the host warns on the
/// message channel when database objects were left open or result buffers not released.
/// @param each    gets the value of every expression as soon as it is there; may be empty
/// @param source  where the text comes from
HOST_API LispOutcome evalLisp(std::u16string_view text, const LispValueSink& each = {},
                              const LispSource& source = {});
/// Loads a program file in the same way. The name may lack ".lsp".
HOST_API LispOutcome loadLisp(const std::string& path);
/// The error of an outcome as people read it: "; error: MESSAGE", the form, file and line, each on
/// a line of its own; then the chain of forms when backtraces are shown.
HOST_API std::u16string describeError(const LispOutcome& outcome);
/// Shows errors with their chain of forms from now on, as (vl-bt-on) does, or ends that.
HOST_API void showBacktraces(bool show);

/// Defines a Lisp function that calls a native one; an earlier meaning of the name is replaced. The
/// native function takes its arguments with acedGetArgs and answers with acedRet.
HOST_API void defineNative(std::u16string_view name, int (*function)());

/// Makes the running evaluation end in "Function cancelled". May be called from a signal handler.
/// @return false when an earlier interrupt was not noticed yet
HOST_API bool interruptLisp();
/// Starts afresh: all symbols lose their values, native functions stay defined.
HOST_API void resetLisp();

/// What the manual says of a function beyond its row.
struct LispText {
    const char* name;
    const char* family;    ///< folder or file that the function comes from
    const char* usage;     ///< the form with its arguments; empty for what has a row of its own
    const char* result;    ///< what it gives; may be empty
    const char* help;      ///< sentences; empty for what has a row of its own
    const char* examples;  ///< lines "FORM ; => VALUE"; may be empty
};
/// Gives the texts that the manual has of native functions, and the examples of all. They must
/// stay where they are.
HOST_API void setLispTexts(std::span<const LispText> texts);

struct LispFunction {
    enum class Kind { Language, Native, User };
    Kind kind = Kind::Language;
    std::u16string name;   ///< lower case for the language's own functions, else as it was defined
    std::string family;    ///< what it belongs to; empty for user functions and unknown texts
    std::string usage;     ///< the form with its arguments; empty for an unknown text
    std::string result;    ///< what a native function gives; may be empty
    std::string help;      ///< sentences; may be empty
    std::string examples;  ///< lines; may be empty
    std::u16string file;   ///< where a user function was loaded from, and its line; may be empty, 0
    int line = 0;
};
/// All functions that can be called now, by name.
HOST_API std::vector<LispFunction> lispFunctions();
/// What the manual says of a word: the page of each function and command of this name, else a line
/// for each that has the word in its name or text, else names that are spelled alike. Without a
/// word a list of all. In any case a text of whole lines. @return true when the word is known
HOST_API bool lispHelp(std::u16string_view word, std::u16string& text);
/// Names of functions and commands that are spelled like a word, the nearest first; a few of them.
HOST_API std::vector<std::u16string> nearLispNames(std::u16string_view word);
/// True for the name of a symbol that has a value, in any case.
HOST_API bool isLispSymbol(std::u16string_view name);
/// Names of all symbols that have a value, in upper case.
HOST_API std::vector<std::u16string> lispSymbols();

}  // namespace host

#endif
