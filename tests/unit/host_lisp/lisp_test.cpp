// The interface around the interpreter: outcomes, error places, handlers, interrupts, lists of
// functions.
#include "host/lisp.h"
#include "host/input.h"

#include <gtest/gtest.h>

#include <thread>

#include "host/counters.h"
#include "host/drawing.h"
#include "host/output.h"
#include "lisp_fixture.h"
#include "temp_folder.h"

namespace {

using host::LispOutcome;
using Kind = LispOutcome::Kind;

TEST_F(Lisp, gives_the_last_value_and_each_of_them) {
    std::vector<std::u16string> values;
    const auto outcome =
        host::evalLisp(u"1 \"two\" (princ) (list 3 'c)",
                       [&](std::u16string_view value) { values.emplace_back(value); });
    EXPECT_EQ(outcome.value, u"(3 C)");
    EXPECT_EQ(values, (std::vector<std::u16string>{u"1", u"\"two\"", u"(3 C)"}));
    EXPECT_EQ(host::evalLisp(u"").value, u"nil");
}

TEST_F(Lisp, prints_on_the_channel_that_was_meant) {
    eval(u"(princ \"out\") (prompt \"to the user\") (terpri) (print \"again\")");
    EXPECT_EQ(printed, u"out\n\n\"again\" ");
    EXPECT_EQ(messages, u"to the user");
}

TEST_F(Lisp, an_error_names_the_innermost_form) {
    const auto outcome = host::evalLisp(u"(defun f (x) (if x (+ 1 (car x))))\n(list (f '(a)))");
    EXPECT_EQ(outcome.kind, Kind::Failed);
    EXPECT_EQ(host::describeError(outcome),
              u"; error: bad argument type: numberp: A\n(+ 1 (CAR X))\n");
}

TEST_F(Lisp, a_long_form_is_cut_in_the_message) {
    const auto outcome = host::evalLisp(
        u"(setq long nil) (repeat 100000 (setq long (cons 1 long)))"
        u"(eval (list 'car long))");
    EXPECT_EQ(outcome.message.substr(0, 40), u"bad function: 1");
    const auto quoted = host::evalLisp(u"(eval (cons 'no-such long))");
    EXPECT_LT(quoted.expression.size(), 1100u);
    EXPECT_TRUE(quoted.expression.ends_with(u"..."));
}

TEST_F(Lisp, an_error_names_file_and_line_also_when_it_comes_later) {
    const TempFolder folder;
    const std::string file =
        folder.write("lib.lsp", "; line 1\n(defun later (x)\n  (list x\n    (/ x 0)))\n");
    EXPECT_TRUE(host::loadLisp(file).ok());
    const auto outcome = host::evalLisp(u"(later 1)");
    EXPECT_EQ(std::string(outcome.file.begin(), outcome.file.end()), file);
    EXPECT_EQ(outcome.line, 4);
    EXPECT_EQ(outcome.expression, u"(/ X 0)");
}

TEST_F(Lisp, a_file_with_an_open_list_names_where_it_begins) {
    const TempFolder folder;
    const std::string file =
        folder.write("open.lsp", "(setq before 1)\n\n(defun f ()\n  (car 1)\n");
    const auto outcome = host::loadLisp(file);
    EXPECT_EQ(outcome.message, u"malformed list on input");
    EXPECT_EQ(outcome.line, 3);
    EXPECT_EQ(eval(u"before"), u"1");
}

TEST_F(Lisp, files_with_mark_or_foreign_line_ends_load) {
    const TempFolder folder;
    folder.write("dos.lsp", "\xEF\xBB\xBF(setq dos \"a\")\r\n; end\r\n(strcat dos \"b\")\r\n");
    EXPECT_EQ(host::loadLisp(folder.file("dos")).value, u"\"ab\"");
}

TEST_F(Lisp, what_is_no_file_is_unreadable) {
    const TempFolder folder;
    for (const std::string& name : {folder.file("none.lsp"), folder.file("")}) {
        const auto outcome = host::loadLisp(name);
        EXPECT_EQ(outcome.kind, Kind::Unreadable);
        EXPECT_NE(outcome.message.find(u": "), std::u16string::npos);
    }
}

TEST_F(Lisp, the_error_function_sees_the_failing_variables) {
    eval(
        u"(defun fails (/ *error* inner) (setq inner 5)"
        u"  (defun *error* (m) (princ (list m inner))) (car inner))");
    const auto outcome = host::evalLisp(u"(fails)");
    EXPECT_TRUE(outcome.handled);
    EXPECT_EQ(printed, u"(bad argument type: consp 5 5)");
    EXPECT_EQ(eval(u"(list inner *error*)"), u"(nil nil)");
}

TEST_F(Lisp, the_other_mode_calls_it_after_the_bindings_are_undone) {
    const auto outcome = host::evalLisp(
        u"(defun fails (/ *error* inner) (*push-error-using-command*) (setq inner 5)"
        u"  (defun *error* (m) (*pop-error-mode*) (princ inner)) (car inner)) (fails)");
    EXPECT_TRUE(outcome.handled);
    EXPECT_EQ(printed, u"nil");
    EXPECT_EQ(eval(u"(*pop-error-mode*)"), u"nil");
}

TEST_F(Lisp, an_error_in_the_error_function_ends_there) {
    const auto outcome = host::evalLisp(u"(defun *error* (m) (no-such m)) (car 1)");
    EXPECT_TRUE(outcome.handled);
    EXPECT_EQ(outcome.message, u"bad argument type: consp 1");
    EXPECT_EQ(
        messages,
        u"; error: An error has occurred inside the *error* function: no function definition: "
        u"NO-SUCH\n");
}

TEST_F(Lisp, exhausted_recursion_still_leaves_room_for_the_error_function) {
    eval(
        u"(defun deep (n) (if (= n 0) 0 (1+ (deep (1- n)))))"
        u"(defun *error* (m) (princ (list (deep 20) m)))");
    EXPECT_EQ(host::evalLisp(u"(deep 100000000)").message, u"internal stack limit reached");
    EXPECT_EQ(printed, u"(20 internal stack limit reached)");
}

TEST_F(Lisp, an_interrupt_ends_an_endless_loop_and_nothing_after_it) {
    for (const char16_t* loop :
         {u"(while t)", u"(repeat 2000000000)", u"(defun f () (while t (car nil))) (f)",
          u"(while t (vl-catch-all-apply 'car '(1)))"}) {
        std::thread watcher([] {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            host::interruptLisp();
        });
        const auto outcome = host::evalLisp(loop);
        watcher.join();
        EXPECT_EQ(outcome.message, u"Function cancelled");
        EXPECT_EQ(eval(u"(+ 1 1)"), u"2");
    }
}

TEST_F(Lisp, a_reset_forgets_symbols_and_keeps_native_functions) {
    host::defineNative(u"kz_Keep", [] { return acedRetT() == RTNORM ? 1 : RTERROR; });
    eval(u"(setq gone 1 car 2)");
    host::resetLisp();
    EXPECT_EQ(eval(u"(list gone (car '(1)) (kz_keep))"), u"(nil 1 T)");
}

TEST_F(Lisp, lines_for_read_line_come_from_the_source) {
    int left = 2;
    host::setInputReader([&](std::u16string_view) -> host::InputLine {
        if (left-- == 0) return {};
        return {host::InputLine::Kind::Text, u"answer"};
    });
    EXPECT_EQ(eval(u"(list (read-line) (read-char) (read-line))"), u"(\"answer\" 97 nil)");
    host::setInputReader({});
}

TEST_F(Lisp, every_function_of_the_language_explains_itself) {
    size_t explained = 0;
    for (const host::LispFunction& function : host::lispFunctions()) {
        if (function.usage.empty()) continue;
        const std::string name(function.name.begin(), function.name.end());
        EXPECT_EQ(function.usage.rfind("(" + name, 0), 0u) << function.usage;
        EXPECT_TRUE(function.usage.ends_with(')')) << function.usage;
        EXPECT_FALSE(function.help.empty()) << name;
        ++explained;
    }
    EXPECT_GT(explained, 150u);
}

TEST_F(Lisp, an_error_keeps_the_chain_of_forms_that_led_there) {
    eval(u"(defun down (n) (if (= n 0) (car 1) (1+ (down (1- n)))))");
    EXPECT_EQ(host::evalLisp(u"(down 0)").backtrace,
              u"; 0: (CAR 1) in DOWN\n; 1: (IF (= N 0) (CAR 1) (1+ (DOWN (1- N)))) in DOWN\n"
              u"; 2: (DOWN 0)\n");
    const host::LispOutcome deep = host::evalLisp(u"(down 1000)");
    EXPECT_NE(deep.backtrace.find(u"; 19: (IF (= N 0) (CAR 1) (1+ (DOWN (1- N)))) in DOWN\n"
                                  u"; ... 2,978 more ...\n; 2,998: (IF "),
              std::u16string::npos);
    EXPECT_TRUE(deep.backtrace.ends_with(u"; 3,002: (DOWN 1000)\n"));
    EXPECT_EQ(host::describeError(deep).find(u"; 0: "), std::u16string::npos);
    eval(u"(vl-bt-on)");
    EXPECT_NE(host::describeError(deep).find(u"; 0: (CAR 1)"), std::u16string::npos);
}

TEST_F(Lisp, a_backtrace_is_that_of_the_failing_functions) {
    // What was caught since, and what an error function does, changes nothing.
    eval(u"(defun bad (x) (car x)) (bad 7)");
    eval(u"(vl-catch-all-apply 'strlen '(5))");
    eval(u"(vl-bt)");
    EXPECT_EQ(printed, u"; 0: (CAR X) in BAD\n; 1: (BAD 7)\n");
    for (const char16_t* mode : {u"(*push-error-using-stack*)", u"(*push-error-using-command*)"}) {
        printed.clear();
        eval(std::u16string(u"(defun *error* (m) (vl-bt) (car 8)) ") + mode);
        eval(u"(bad 9)");
        EXPECT_EQ(printed, u"; 0: (CAR X) in BAD\n; 1: (BAD 9)\n");
    }
    printed.clear();
    eval(u"(defun where () (vl-bt) 1) (list (where))");
    EXPECT_EQ(printed, u"; 0: (VL-BT) in WHERE\n; 1: (WHERE)\n; 2: (LIST (WHERE))\n");
}

TEST_F(Lisp, a_dropped_selection_set_is_freed_and_one_that_is_held_is_not) {
    const int64_t before = host::selectionSetCount();
    eval(u"(setq held (ssadd) twice (list held held)) (repeat 500 (ssadd))");
    EXPECT_EQ(host::selectionSetCount(), before + 1);
    eval(u"(setq held nil)");
    EXPECT_EQ(host::selectionSetCount(), before + 1);
    eval(u"(setq twice nil)");
    EXPECT_EQ(host::selectionSetCount(), before);
}

TEST_F(Lisp, refused_lists_leave_no_buffer_behind) {
    const int64_t before = host::resbufCount();
    for (const char16_t* form :
         {u"(entmod '((0 . \"LINE\") (8 . 5)))", u"(entmake '((0 . \"LINE\") 7))",
          u"(entget (entlast) '(1))", u"(setvar \"OSMODE\" '(1 x))",
          u"(entmake '((0 . \"LINE\") (-3 (1))))"}) {
        EXPECT_EQ(host::evalLisp(form).kind, Kind::Failed);
    }
    EXPECT_EQ(host::resbufCount(), before);
}

}  // namespace
