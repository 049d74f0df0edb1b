/// Writers of a Lisp call's result, through native functions of the test that hand their arguments
/// back.
#include "drawing_test.h"
#include "host/lisp.h"
#include "kz_tls21an/text.h"

namespace {

int returnFirst() {
    kz_Rb_returnValue(acedGetArgs());
    return 1;
}

int returnOwnList() {
    resbuf* list = test::chain("1 ( \"a\" 2.5 ) <1,2,3>");
    const std::string before = test::show(list);
    EXPECT_EQ(kz_ResBuf_returnList(list), 1);
    EXPECT_EQ(test::take(list), before + " )") << "the list stays, with its closing marker";
    return 1;
}

int returnNoList() {
    return kz_Rb_returnList(nullptr);
}

int returnStrings() {
    resbuf* cursor = acedGetArgs();
    kz_StrList* list = kz_StrList_fromLisp(&cursor);
    kz_StrList_toLisp(list);
    kz_StrList_destroy(list);
    return 1;
}

int returnFields() {
    resbuf* cursor = acedGetArgs();
    kz_FldList* list = kz_FldList_fromRb(&cursor, 0);
    kz_FldList_returnList(list);
    kz_FldList_destroy(list);
    return 1;
}

class RbReturn : public test::DrawingTest {
  protected:
    void SetUp() override {
        DrawingTest::SetUp();
        host::defineNative(u"first", returnFirst);
        host::defineNative(u"own-list", returnOwnList);
        host::defineNative(u"no-list", returnNoList);
        host::defineNative(u"strings", returnStrings);
        host::defineNative(u"fields", returnFields);
    }
    static std::string eval(const std::string& expression) {
        return kz::toUtf8(host::evalLisp(test::wide(expression)).value);
    }
};

TEST_F(RbReturn, ANodeGoesBackByItsKind) {
    const std::pair<const char*, const char*> cases[] = {
        {"(first \"a\")", "\"a\""},
        {"(first 5)", "5"},
        {"(first 2.5)", "2.5"},
        {"(first 70000)", "70000.0"},
        {"(first nil)", "nil"},
        {"(first T)", "nil"},
        {"(first)", "nil"},
        {"(first '(1.0 2.0 3.0))", "(1.0 2.0 3.0)"},
        {"(first '(1 2))", "nil"},
        {"(equal (first (entlast)) (entlast))", "T"},
        {"(sslength (first (ssadd)))", "0"},
    };
    for (const auto& [expression, value] : cases)
        EXPECT_EQ(eval(expression), value) << expression;
}

TEST_F(RbReturn, AChainGoesBackAsOneList) {
    EXPECT_EQ(eval("(own-list)"), "(1 (\"a\" 2.5) (1.0 2.0 3.0))");
    EXPECT_EQ(eval("(no-list)"), "nil");
}

TEST_F(RbReturn, StringAndFieldListsGoBack) {
    EXPECT_EQ(eval("(strings '(\"a\" 5 \"b\"))"), "(\"a\" \"b\")");
    EXPECT_EQ(eval("(strings nil)"), "nil");
    EXPECT_EQ(eval("(fields '((\"a\" 1 2) \"b\"))"), "((\"A\" 1 2) (\"B\"))");
    EXPECT_EQ(eval("(fields nil)"), "nil");
    const std::string longer(600, 'x');
    EXPECT_EQ(eval("(strlen (car (strings (list \"" + longer + "\"))))"), "511");
}

}  // namespace
