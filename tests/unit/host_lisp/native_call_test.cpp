// How values cross between Lisp and native functions.
#include <gtest/gtest.h>

#include "host/counters.h"
#include "host/lisp.h"
#include "host/module.h"
#include "lisp_fixture.h"
#include "temp_folder.h"

namespace {

std::u16string seen;      // what the last call got, one word for each node
std::vector<int> answer;  // restypes of the chain that Answer gives back
bool releases = false;

std::u16string word(const resbuf& node) {
    switch (node.restype) {
        case RTSHORT:
            return u"S" + kz::toUtf16(std::to_string(node.resval.rint));
        case RTLONG:
            return u"L" + kz::toUtf16(std::to_string(node.resval.rlong));
        case RTREAL:
            return u"R";
        case RTSTR:
            return node.resval.rstring;
        case RTPOINT:
            return u"P2";
        case RT3DPOINT:
            return u"P3";
        case RTLB:
            return u"(";
        case RTLE:
            return u")";
        case RTDOTE:
            return u".)";
        case RTNIL:
            return u"nil";
        case RTT:
            return u"T";
        case RTENAME:
            return u"E";
        case RTPICKS:
            return u"SS";
        default:
            return u"?";
    }
}

int look() {
    seen.clear();
    resbuf* const args = acedGetArgs();
    for (const resbuf* node = args; node; node = node->rbnext) {
        seen += (seen.empty() ? u"" : u" ") + word(*node);
    }
    if (!args) seen = u"none";
    if (releases) acutRelRb(args);
    return 1;
}

int echo() {
    acedRetList(acedGetArgs());
    return 1;
}

int giveBack() {
    resbuf* head = nullptr;
    resbuf** tail = &head;
    for (const int type : answer) {
        *tail = acutNewRb(type);
        if (type == RTSHORT) (*tail)->resval.rint = 7;
        tail = &(*tail)->rbnext;
    }
    acedRetList(head);
    acutRelRb(head);
    return 1;
}

int leak() {
    acutNewRb(RTSHORT);
    acedRetNil();
    acedRetT();
    return 1;
}

class NativeCall : public Lisp {
  protected:
    NativeCall() {
        host::defineNative(u"Look", look);
        host::defineNative(u"Echo", echo);
        host::defineNative(u"GiveBack", giveBack);
        host::defineNative(u"Leak", leak);
        host::defineNative(u"Refuse", [] { return static_cast<int>(RTERROR); });
        host::defineNative(u"Void", [] { return acedRetVoid() == RTNORM ? 1 : 0; });
        releases = false;
    }

    static std::u16string arrives(const std::u16string& arguments) {
        eval(u"(look " + arguments + u")");
        return seen;
    }
    static std::u16string comesBack(std::vector<int> types) {
        answer = std::move(types);
        return eval(u"(giveback)");
    }
};

TEST_F(NativeCall, arguments_arrive_by_their_kind) {
    EXPECT_EQ(arrives(u""), u"none");
    EXPECT_EQ(arrives(u"1 -32768 32768 2.5 \"abc\""), u"S1 S-32768 L32768 R abc");
    EXPECT_EQ(arrives(u"nil '() t 'name"), u"nil nil T NAME");
    EXPECT_EQ(arrives(u"'(1.0 2.0) '(1.0 2.0 3.0) '(1.0) '(1.0 2.0 3.0 4.0)"),
              u"P2 P3 ( R ) ( R R R R )");
    EXPECT_EQ(arrives(u"'(1 2) '(1.0 2 3.0) '((0.0 0.0) \"a\" ())"),
              u"( S1 S2 ) ( R S2 R ) ( P2 a nil )");
    EXPECT_EQ(arrives(u"'(1 . 2) '(1.0 . 2.0) '(1 2 . \"c\")"),
              u"( S1 S2 .) ( R R .) ( S1 S2 c .)");
    EXPECT_EQ(arrives(u"(namedobjdict) (ssadd)"), u"E SS");
}

TEST_F(NativeCall, the_chain_may_be_released_or_left) {
    const int64_t before = host::resbufCount();
    for (const bool released : {false, true}) {
        releases = released;
        arrives(u"1 '(\"a\" (\"b\"))");
        EXPECT_EQ(host::resbufCount(), before);
    }
    EXPECT_EQ(messages, u"");
}

TEST_F(NativeCall, values_survive_the_way_there_and_back) {
    for (const char16_t* list : {u"(1 70000 2.5 \"a\\\"b\" nil T)", u"((1.0 2.0) (1.0 2.0 3.0))",
                                 u"((1 . 2) ((\"x\" 1 2 . 3)))", u"((((1)) nil) (2))"}) {
        EXPECT_EQ(eval(u"(apply 'echo '" + std::u16string(list) + u")"), list);
    }
    EXPECT_EQ(eval(u"(setq s (ssadd) e (namedobjdict)) (equal (list s e) (echo s e))"), u"T");
}

TEST_F(NativeCall, returned_lists_in_all_spellings) {
    EXPECT_EQ(comesBack({RTLB, RTSHORT, RTSHORT, RTLE}), u"(7 7)");
    EXPECT_EQ(comesBack({RTSHORT, RTSHORT}), u"(7 7)");
    EXPECT_EQ(comesBack({RTLB, RTLB, RTSHORT, RTLE, RTLE}), u"((7))");
    EXPECT_EQ(comesBack({RTLB, RTSHORT, RTSHORT, RTDOTE}), u"(7 . 7)");
    EXPECT_EQ(comesBack({RTLB, RTSHORT, RTDOTE, RTSHORT, RTLE}), u"(7 . 7)");
    EXPECT_EQ(comesBack({RTSHORT, RTLB, RTSHORT, RTDOTE, RTSHORT, RTLE}), u"(7 (7 . 7))");
    EXPECT_EQ(comesBack({RTLB, RTLB, RTSHORT, RTSHORT, RTDOTE, RTLB, RTT, RTNIL, RTDOTE, RTLE}),
              u"((7 . 7) (T))");
    EXPECT_EQ(comesBack({RTLB, RTLE}), u"nil");
}

TEST_F(NativeCall, nothing_is_shown_for_void_and_for_no_value) {
    EXPECT_EQ(eval(u"(void)"), u"");
    EXPECT_EQ(eval(u"(look)"), u"");
    EXPECT_EQ(eval(u"(list (look))"), u"(nil)");
    EXPECT_EQ(eval(u"(progn (look) nil)"), u"nil");
}

TEST_F(NativeCall, what_is_left_behind_is_told_once) {
    EXPECT_EQ(eval(u"(leak) 1"), u"1");
    EXPECT_EQ(messages, u"; warning: 1 result buffers not released\n");
}

TEST_F(NativeCall, a_failing_function_is_an_error) {
    EXPECT_EQ(eval(u"(refuse)"), u"error: ADS request error");
}

TEST_F(NativeCall, native_functions_have_their_own_type_and_spelling) {
    EXPECT_EQ(eval(u"(type LOOK)"), u"EXRXSUBR");
    const auto functions = host::lispFunctions();
    const bool spelled = std::any_of(functions.begin(), functions.end(), [](const auto& function) {
        return function.name == u"GiveBack";
    });
    EXPECT_TRUE(spelled);
}

TEST_F(NativeCall, deep_arguments_end_in_an_error) {
    const int64_t before = host::resbufCount();
    eval(u"(setq deep nil) (repeat 1000000 (setq deep (list deep)))");
    EXPECT_EQ(eval(u"(look deep)"), u"error: internal stack limit reached");
    EXPECT_EQ(host::resbufCount(), before);
}

TEST_F(NativeCall, what_is_no_library_is_refused) {
    const TempFolder folder;
    std::string error;
    EXPECT_FALSE(host::loadModule(folder.write("not.so", "text"), error));
    EXPECT_NE(error.find("not.so"), std::string::npos);
    int count = -1;
    EXPECT_TRUE(host::loadModule(std::string(KZ_BUILD_DIR) + "/libkz_host.so", error, &count));
    EXPECT_EQ(count, 0);
}

}  // namespace
