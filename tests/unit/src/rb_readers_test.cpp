/// Readers of a Lisp call's arguments, on chains without a drawing.
#include <functional>
#include <vector>

#include "chain_text.h"

namespace {

using test::Arguments;
using test::ChainTest;

class RbReaders : public ChainTest {};

TEST_F(RbReaders, IntegersConvertWhatLispHas) {
    struct Case {
        const char* argument;
        int16_t narrow;
        int32_t wide;
    };
    const Case cases[] = {
        {"7", 7, 7},
        {"70000L", 4464, 70000},
        {"-1.9", -1, -1},
        {"T", 1, 1},
        {"\" 12abc\"", 12, 12},
        {"\"abc\"", 0, 0},
        {"\"-70000\"", -4464, -70000},
        {"\"99999999999\"", -1, INT32_MAX},
    };
    for (const Case& c : cases) {
        Arguments narrow(c.argument);
        int16_t value = 99;
        EXPECT_EQ(kz_Rb_getNextInt(&value, &narrow.at, nullptr, 0), 1) << c.argument;
        EXPECT_EQ(value, c.narrow) << c.argument;
        EXPECT_EQ(narrow.at, nullptr);
        Arguments wide(c.argument);
        int32_t long_value = 99;
        EXPECT_EQ(kz_Rb_getNextLong(&long_value, &wide.at, nullptr, 0), 1) << c.argument;
        EXPECT_EQ(long_value, c.wide) << c.argument;
    }
}

TEST_F(RbReaders, AListOfNumbersReadsNumberByNumber) {
    Arguments arguments("( 1 2.5 ) 3L");
    double sum = 0.0;
    double value = 0.0;
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(kz_Rb_getNextReal(&value, &arguments.at, nullptr, 0), 1);
        sum += value;
    }
    EXPECT_EQ(sum, 6.5);
    EXPECT_EQ(arguments.at, nullptr);
}

TEST_F(RbReaders, NilAndTheEndAreAlikeAndTakenOnlyWhereAllowed) {
    for (const char* text : {"", "nil"}) {
        traceAt(0);
        Arguments arguments(text);
        int16_t value = 99;
        int is_nil = 99;
        EXPECT_EQ(kz_Rb_getNextInt(&value, &arguments.at, &is_nil, 0), 0);
        EXPECT_EQ(is_nil, 1);
        EXPECT_EQ(value, 0);
        EXPECT_EQ(arguments.rest(), text) << "a refused nil stays";
        EXPECT_EQ(traced(), "Argument required in kz_Rb_getNextInt.");
        EXPECT_EQ(kz_Rb_getNextInt(&value, &arguments.at, &is_nil, 1), 1);
        EXPECT_EQ(is_nil, 1);
        EXPECT_EQ(arguments.at, nullptr) << "an allowed nil is consumed";
    }
}

TEST_F(RbReaders, EveryReaderNamesItselfAndStopsOnTheWrongKind) {
    kz_Char text[8];
    kz_Char* copy = nullptr;
    double number = 0.0;
    double point[3];
    ads_name name;
    int16_t narrow = 0;
    int32_t wide = 0;
    kz_FldList* list = nullptr;
    struct Case {
        const char* name;
        const char* wrong;
        std::function<int(resbuf**, int*)> read;
    };
    const std::vector<Case> cases = {
        {"kz_Rb_getNextInt", "set:3",
         [&](resbuf** at, int* nil) { return kz_Rb_getNextInt(&narrow, at, nil, 1); }},
        {"kz_Rb_getNextLong", "<1,2,3>",
         [&](resbuf** at, int* nil) { return kz_Rb_getNextLong(&wide, at, nil, 1); }},
        {"kz_Rb_getNextReal", "5:2F",
         [&](resbuf** at, int* nil) { return kz_Rb_getNextReal(&number, at, nil, 1); }},
        {"kz_Rb_getNextPoint", "5L",
         [&](resbuf** at, int* nil) { return kz_Rb_getNextPoint(point, at, nil, 1); }},
        {"kz_Rb_getNextString", "ename:3",
         [&](resbuf** at, int* nil) { return kz_Rb_getNextString(text, 8, at, nil, 1); }},
        {"kz_Rb_getNextStringPtr", "T",
         [&](resbuf** at, int* nil) { return kz_Rb_getNextStringPtr(&copy, at, nil, 1); }},
        {"kz_Rb_getNextHandle", "5",
         [&](resbuf** at, int* nil) { return kz_Rb_getNextHandle(text, at, nil, 1); }},
        {"kz_Rb_getNextADSName", "set:3",
         [&](resbuf** at, int* nil) { return kz_Rb_getNextADSName(name, at, nil, 1); }},
        {"kz_Rb_getNextSelSet", "ename:3",
         [&](resbuf** at, int* nil) { return kz_Rb_getNextSelSet(name, at, nil, 1); }},
        {"kz_Rb_getNextUnknown", "ename:3",
         [&](resbuf** at, int* nil) { return kz_Rb_getNextUnknown(&list, at, nil, 1); }},
    };
    traceAt(0);
    for (const Case& c : cases) {
        Arguments arguments(std::string("( ") + c.wrong + " 1");
        int is_nil = 99;
        EXPECT_EQ(c.read(&arguments.at, &is_nil), 0) << c.name;
        EXPECT_EQ(is_nil, 0) << c.name;
        EXPECT_EQ(arguments.rest(), c.wrong + std::string(" 1")) << c.name;
        EXPECT_EQ(traced(), std::string("Incorrect argument passed to ") + c.name + ".");
    }
    EXPECT_EQ(list, nullptr);
}

TEST_F(RbReaders, TracingIsSilentBelowItsLevelAndWithoutItsBit) {
    int16_t value = 0;
    for (const auto& [level, mask] : {std::pair<int16_t, int32_t>{-1, 0x400}, {3, 0x800}, {3, 0}}) {
        traceAt(level, mask);
        Arguments arguments("set:1");
        kz_Rb_getNextInt(&value, &arguments.at, nullptr, 0);
        EXPECT_EQ(traced(), "") << level << ' ' << mask;
    }
    traceAt(0, 0x400);
    Arguments arguments("set:1");
    kz_Rb_getNextInt(&value, &arguments.at, nullptr, 0);
    EXPECT_NE(traced(), "");
}

TEST_F(RbReaders, PointsComeAsPointsOrAsThreeNumbers) {
    for (const char* text :
         {"<1,2,3>", "1010:1,2,3", "1013:1,2,3", "( 1 2 3 )", "1.0 2L 3", "( <1,2,3> )"}) {
        Arguments arguments(text);
        double point[3] = {};
        EXPECT_EQ(kz_Rb_getNextPoint(point, &arguments.at, nullptr, 0), 1) << text;
        EXPECT_EQ(point[0] * 100 + point[1] * 10 + point[2], 123.0) << text;
    }
}

TEST_F(RbReaders, TwoNumbersAreNoPointAndTheCursorGoesBackToTheFirst) {
    traceAt(0);
    Arguments arguments("( 1 2 )");
    double point[3];
    EXPECT_EQ(kz_Rb_getNextPoint(point, &arguments.at, nullptr, 0), 0);
    EXPECT_EQ(arguments.rest(), "1 2 )");
    EXPECT_EQ(traced(),
              "Argument required in kz_Rb_getNextReal.\n"
              "Incorrect argument passed to kz_Rb_getNextPoint.");
}

TEST_F(RbReaders, ATextMayBeTheThirdNumberOfAPoint) {
    Arguments arguments("( 1 2 ) \"no distance\"");
    double point[3];
    EXPECT_EQ(kz_Rb_getNextPoint(point, &arguments.at, nullptr, 0), 1);
    EXPECT_EQ(point[2], 0.0);
    EXPECT_EQ(arguments.at, nullptr);
}

TEST_F(RbReaders, TextsAreBoundedByTheirBuffer) {
    Arguments bounded("\"abcdef\"");
    kz_Char text[8] = u"#######";
    EXPECT_EQ(kz_Rb_getNextString(text, 4, &bounded.at, nullptr, 0), 1);
    EXPECT_EQ(test::narrow(text), "abc");
    EXPECT_EQ(text[4], u'#');
    Arguments unbounded("5:abcdef");
    EXPECT_EQ(kz_Rb_getNextString(text, 0, &unbounded.at, nullptr, 0), 1);
    EXPECT_EQ(test::narrow(text), "abcdef");
    Arguments copied("\"abc\" nil");
    kz_Char* copy = nullptr;
    EXPECT_EQ(kz_Rb_getNextStringPtr(&copy, &copied.at, nullptr, 0), 1);
    EXPECT_EQ(test::narrow(copy), "abc");
    free(copy);
    EXPECT_EQ(kz_Rb_getNextStringPtr(&copy, &copied.at, nullptr, 1), 1);
    EXPECT_EQ(copy, nullptr);
}

TEST_F(RbReaders, AnUnknownValueComesAsAListOfOneField) {
    const std::pair<const char*, const char*> cases[] = {
        {"\"abc\"", "Unknown:C=abc"},   {"5:2F", "Unknown:H=2F"}, {"T", "Unknown:I=1"},
        {"7", "Unknown:I=7"},           {"7L", "Unknown:L=7"},    {"2.5", "Unknown:N=2.5"},
        {"<1,2,3>", "Unknown:P=1,2,3"},
    };
    for (const auto& [argument, expected] : cases) {
        Arguments arguments(argument);
        kz_FldList* list = nullptr;
        EXPECT_EQ(kz_Rb_getNextUnknown(&list, &arguments.at, nullptr, 0), 1);
        EXPECT_EQ(test::take(list), expected);
    }
    Arguments nil("nil");
    kz_FldList* list = nullptr;
    EXPECT_EQ(kz_Rb_getNextUnknown(&list, &nil.at, nullptr, 1), 1);
    EXPECT_EQ(list, nullptr);
}

TEST_F(RbReaders, RawReadingTakesMarkersAndStepsOverARefusedNil) {
    traceAt(0);
    Arguments arguments("( 5 nil");
    int16_t type = 0;
    int is_nil = 99;
    EXPECT_EQ(kz_Rb_getNextType(&type, &arguments.at, &is_nil, 0), 1);
    EXPECT_EQ(type, RTLB);
    EXPECT_EQ(is_nil, 0);
    int64_t value = 0;
    EXPECT_EQ(kz_Rb_getNextValue(&type, 256, &value, &arguments.at, &is_nil, 0), 1);
    EXPECT_EQ(type, RTSHORT);
    int16_t number = 0;
    memcpy(&number, &value, sizeof number);
    EXPECT_EQ(number, 5);
    EXPECT_EQ(kz_Rb_getNextType(&type, &arguments.at, &is_nil, 0), 0);
    EXPECT_EQ(is_nil, 1);
    EXPECT_EQ(arguments.at, nullptr);
    EXPECT_EQ(traced(), "Non-NIL type is required in kz_Rb_getNextType.");
    EXPECT_EQ(kz_Rb_getNextValue(&type, 256, &value, &arguments.at, &is_nil, 0), 0);
    EXPECT_EQ(type, 0);
    EXPECT_EQ(traced(), "");
}

}  // namespace
