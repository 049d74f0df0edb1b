/// The list toolkit over chains: building, changing, comparing, sorting, copying.
#include <algorithm>
#include <cstdlib>
#include <random>

#include "chain_text.h"

namespace {

using test::Arguments;
using test::chain;
using test::ChainTest;
using test::show;
using test::take;

class RbLists : public ChainTest {};

const int16_t kNine = 9;

TEST_F(RbLists, NodesGoInWhereTheyAreWanted) {
    resbuf* list = nullptr;
    EXPECT_EQ(kz_Rb_insEnd(&list, RTSHORT, &kNine), list);
    kz_Rb_insStart(&list, RTSTR, nullptr);
    kz_Rb_insNth(&list, 1, RTT, nullptr);
    kz_Rb_insNth(&list, 1000, RTNIL, nullptr);
    EXPECT_EQ(kz_Rb_insNth(&list, -1, RTT, nullptr), nullptr);
    EXPECT_EQ(show(list), "\"\" T 9 nil");
    kz_Rb_insNth(&list, 0, RTLB, nullptr);
    EXPECT_EQ(kz_Rb_addTagToList(&list, RTLE), 1);
    EXPECT_EQ(kz_Rb_addIntToList(&list, 4), 1);
    EXPECT_EQ(kz_Rb_addRealToList(&list, 0.5), 1);
    EXPECT_EQ(kz_Rb_addStrToList(&list, nullptr), 1);
    EXPECT_EQ(take(list), "( \"\" T 9 nil ) 4 0.5 \"\"");
}

TEST_F(RbLists, SortedInsertionPutsAnEqualValueInFront) {
    resbuf* list = chain("1.0 2.0 3.0");
    const double value = 2.0005;
    const resbuf* node = kz_Rb_insSorted(&list, RTREAL, &value);
    EXPECT_EQ(list->rbnext, node);
    EXPECT_EQ(take(list), "1.0 2.0005 2.0 3.0");
}

TEST_F(RbLists, PositionsThatAreNotThereChangeNothing) {
    resbuf* list = chain("1 \"b\" 3");
    kz_Rb_delNth(&list, 3);
    kz_Rb_delNth(&list, -1);
    kz_Rb_modNth(list, 3, RTT, nullptr);
    kz_Rb_modNth(list, -1, RTT, nullptr);
    kz_Rb_join(list, nullptr);
    kz_Rb_join(nullptr, list);
    EXPECT_EQ(show(list), "1 \"b\" 3");
    kz_Rb_delNth(&list, 0);
    kz_Rb_modNth(list, 0, RTSHORT, &kNine);
    kz_Rb_modNth(list, 1, RTSTR, u"c");
    kz_Rb_join(list, chain("4"));
    EXPECT_EQ(kz_Rb_length(list), 3);
    EXPECT_EQ(show(kz_Rb_getLast(list)), "4");
    EXPECT_EQ(take(list), "9 \"c\" 4");
}

TEST_F(RbLists, ANodeMayBeChangedToItsOwnText) {
    resbuf* node = chain("\"abc\"");
    kz_Rb_modify(node, 1000, node->resval.rstring + 1);
    EXPECT_EQ(take(node), "1000:bc");
    kz_Rb_modify(nullptr, RTT, nullptr);
}

TEST_F(RbLists, AChainOfTheRuntimesHeapIsFreedNodeByNode) {
    auto* first = static_cast<resbuf*>(std::calloc(1, sizeof(resbuf)));
    auto* second = static_cast<resbuf*>(std::calloc(1, sizeof(resbuf)));
    first->rbnext = second;
    first->restype = 1002;
    first->resval.rstring = kz_Str_dup(u"{");
    second->restype = RTSHORT;
    kz_Rb_free(first);
}

TEST_F(RbLists, ComparisonGoesByCodeThenByValueWithATolerance) {
    struct Case {
        const char* pair;
        int order;
    };
    const Case cases[] = {
        {"1.0 1.0005", 0},
        {"1.0 1.002", -1},
        {"1.002 1.0", 1},
        {"5 5L", -1},
        {"5 4", 1},
        {"<0,0,0> <0,0,0.0005>", 0},
        {"<0,0,0> <1,0,0>", 1},
        {"<1,0,0> <0,0,0>", 1},
        {"ename:1 ename:1", 0},
        {"ename:1 ename:2", -1},
        {"ename:2 ename:1", -1},
        {"( (", 0},
        {"\"a\" \"b\"", -1},
        {"\"b\" \"B\"", 1},
        {"1002:{ 1002:}", -1},
    };
    for (const Case& c : cases) {
        const Arguments pair(c.pair);
        const int order = kz_Rb_cmp(pair.at, pair.at->rbnext);
        EXPECT_EQ((order > 0) - (order < 0), c.order) << c.pair;
    }
    const Arguments one("1");
    EXPECT_EQ(kz_Rb_cmp(one.at, nullptr), -2);
    EXPECT_EQ(kz_Rb_cmp(nullptr, one.at), -2);
}

TEST_F(RbLists, SortingIsStableAndByType) {
    resbuf* list = chain("\"b\" 3 1.0 \"a\" 1.0004 2 0.5");
    const resbuf* one = list->rbnext->rbnext;
    kz_Rb_sort(&list);
    EXPECT_EQ(list->rbnext, one) << "nodes are moved, and 1.0 stays before its equal 1.0004";
    EXPECT_EQ(take(list), "0.5 1.0 1.0004 2 3 \"a\" \"b\"");
    resbuf* empty = nullptr;
    kz_Rb_sort(&empty);
    EXPECT_EQ(empty, nullptr);
}

TEST_F(RbLists, ShortListsWithoutOrderSortAsBySelection) {
    // Each differing name is smaller than the one before it, so the last one is taken first.
    resbuf* names = chain("ename:1 ename:2 ename:3");
    kz_Rb_sort(&names);
    EXPECT_EQ(take(names), "ename:3 ename:2 ename:1");
    resbuf* points = chain("<3,0,0> <1,0,0> <2,0,0>");
    kz_Rb_sort(&points);
    EXPECT_EQ(take(points), "<3,0,0> <1,0,0> <2,0,0>");
}

TEST_F(RbLists, AHundredThousandNodesSortStablyAndSoon) {
    std::mt19937 random(7);
    std::vector<int16_t> values(100000);
    resbuf* list = nullptr;
    for (int16_t& value : values) {
        value = static_cast<int16_t>(random() % 1000);
        kz_Rb_insStart(&list, RTSHORT, &value);
    }
    std::vector<const resbuf*> expected;
    for (const resbuf* node = list; node != nullptr; node = node->rbnext)
        expected.push_back(node);
    std::stable_sort(expected.begin(), expected.end(), [](const resbuf* a, const resbuf* b) {
        return a->resval.rint < b->resval.rint;
    });
    kz_Rb_sort(&list);
    const resbuf* node = list;
    for (const resbuf* wanted : expected) {
        ASSERT_EQ(node, wanted);
        node = node->rbnext;
    }
    kz_ResBuf_release(list);
}

TEST_F(RbLists, SearchingFindsByCodeAndByValue) {
    const Arguments list("1 \"a\" 2.5 \"b\"");
    EXPECT_EQ(show(kz_Rb_entitem(list.at, RTREAL)), "2.5 \"b\"");
    EXPECT_EQ(kz_Rb_searchType(list.at, RTSTR), list.at->rbnext);
    EXPECT_EQ(kz_Rb_entitem(list.at, 1000), nullptr);
    EXPECT_EQ(show(kz_Rb_search(list.at, RTSTR, u"b")), "\"b\"");
    EXPECT_EQ(kz_Rb_search(list.at, RTSTR, u"c"), nullptr);
    EXPECT_EQ(test::narrow(kz_Rb_toString(list.at, RTSTR)), "a");
    EXPECT_EQ(kz_Rb_toString(list.at, 1000), nullptr);
}

TEST_F(RbLists, APartIsCopiedWithSharedTexts) {
    const Arguments list("1 \"a\" 2.5 T");
    resbuf* part = kz_Rb_sublst(list.at, 1, 2);
    ASSERT_EQ(show(part), "\"a\" 2.5");
    EXPECT_EQ(part->resval.rstring, list.at->rbnext->resval.rstring);
    part->resval.rstring = nullptr;  // shared, so not to be released with the copy
    kz_ResBuf_release(part);
    EXPECT_EQ(take(kz_Rb_sublst(list.at, 2, -1)), "2.5 T");
    EXPECT_EQ(kz_Rb_sublst(list.at, 9, -1), nullptr);
    EXPECT_EQ(kz_Rb_sublst(list.at, 0, 0), nullptr);
}

TEST_F(RbLists, ALispValueComesOutFlat) {
    Arguments nested("( 1 ( 2 \"x\" ) ( \"k\" 5 .) 4 ) T");
    EXPECT_EQ(take(kz_Rb_fromRb(&nested.at)), "1 ( 2 \"x\" ) ( \"k\" 5 .) 4");
    EXPECT_EQ(nested.rest(), "T");
    EXPECT_EQ(kz_Rb_fromRb(&nested.at), nullptr);
    Arguments point("<1,2>");
    EXPECT_EQ(take(kz_Rb_fromRb(&point.at)), "1.0 2.0");
    EXPECT_EQ(point.rest(), "<1,2>");
    Arguments open("( 1 2");
    EXPECT_EQ(take(kz_Rb_fromRb(&open.at)), "1 2");
    EXPECT_EQ(open.at, nullptr);
    EXPECT_EQ(kz_Rb_fromRb(&open.at), nullptr);
}

TEST_F(RbLists, ValuesReadAsTextAndNumber) {
    struct Case {
        const char* node;
        const char* text;
        double number;
        int integer;
        double numeric;
    };
    const Case cases[] = {
        {"\" 2.75x\"", " 2.75x", 2.75, 2, 0.0},
        {"\"+1e2\"", "+1e2", 100.0, 1, 0.0},
        {"-7", "-7", -7.0, -7, -7.0},
        {"70000L", "70000", 70000.0, 70000, 70000.0},
        {"-2.75", "-2.750000", -2.75, -2, -2.75},
        {"<1,2>", "1.000000 2.000000", 0.0, 0, 0.0},
        {"1010:1,2,3", "1.000000 2.000000 3.000000", 0.0, 0, 0.0},
        {"T", "", 0.0, 0, 0.0},
    };
    for (const Case& c : cases) {
        const Arguments node(c.node);
        EXPECT_EQ(test::narrow(kz_Rb_getString(node.at)), c.text);
        EXPECT_EQ(kz_Rb_getDouble(node.at), c.number) << c.node;
        EXPECT_EQ(kz_Rb_getInt(node.at), c.integer) << c.node;
        EXPECT_EQ(kz_Rb_num(node.at), c.numeric) << c.node;
    }
    EXPECT_EQ(test::narrow(kz_Rb_getString(nullptr)), "");
    EXPECT_EQ(kz_Rb_getDouble(nullptr), 0.0);
}

TEST_F(RbLists, APointComesFromItsGroupOrFromNumbers) {
    double point[3] = {9.0, 9.0, 9.0};
    const Arguments group("0:LINE 10:1,2,3 11:4,5,6");
    EXPECT_EQ(kz_Rb_getPoint(group.at, 11, point), 1);
    EXPECT_EQ(point[0] + point[2], 10.0);
    const Arguments numbers("1 2.5");
    EXPECT_EQ(kz_Rb_getPoint(numbers.at, 11, point), 1);
    EXPECT_EQ(point[0] + point[1], 3.5);
    EXPECT_EQ(point[2], 6.0) << "elements beyond the list stay";
}

TEST_F(RbLists, WhatALispFunctionReturnedIsReadByKind) {
    const Arguments none("nil");
    const Arguments two("2");
    const Arguments zero("0");
    const Arguments yes("T");
    EXPECT_EQ(kz_Resbuf_getRetStat(zero.at), 0);
    EXPECT_EQ(kz_Resbuf_getRetStat(two.at), 1);
    EXPECT_EQ(kz_Resbuf_getRetStat(yes.at), 1);
    EXPECT_EQ(kz_Resbuf_getRetStat(nullptr), 0);
    EXPECT_EQ(kz_Resbuf_getRetErrStat(two.at), 2);
    EXPECT_EQ(kz_Resbuf_getRetErrStat(yes.at), 1);
    EXPECT_EQ(kz_Resbuf_getRetErrStat(none.at), 0);
    EXPECT_EQ(kz_Resbuf_getRetInteger(two.at), 2);
    EXPECT_EQ(kz_Resbuf_getRetInteger(yes.at), 0);
    double real = 9.0;
    EXPECT_EQ(kz_Resbuf_getRetReal(&real, none.at), 0);
    EXPECT_EQ(real, 0.0);
    EXPECT_EQ(kz_Resbuf_getRetReal(&real, two.at), 1);
    EXPECT_EQ(real, 2.0);
    EXPECT_EQ(kz_Resbuf_getRetReal(nullptr, two.at), 0);
    kz_Char text[8] = u"old";
    EXPECT_EQ(kz_Resbuf_getRetString(text, two.at), 0);
    EXPECT_EQ(text[0], 0);
    const Arguments name("ename:7");
    ads_name out = {1, 1};
    EXPECT_EQ(kz_Resbuf_getRetSelSet(out, name.at), 0);
    EXPECT_TRUE(ads_name_nil(out));
    EXPECT_EQ(kz_Resbuf_getRetName(out, name.at), 1);
    EXPECT_EQ(out[0], 7);
}

TEST_F(RbLists, AReturnedPointMayBeThreeNumbers) {
    double point[3] = {9.0, 9.0, 9.0};
    const Arguments numbers("1 2.0 3L");
    EXPECT_EQ(kz_Resbuf_getRetPoint(point, numbers.at), 1);
    EXPECT_EQ(point[0] * 100 + point[1] * 10 + point[2], 123.0);
    const Arguments few("1 2.0");
    EXPECT_EQ(kz_Resbuf_getRetPoint(point, few.at), 0);
    EXPECT_EQ(point[0], 0.0) << "cleared, not half filled";
    const Arguments real_point("<4,5,6>");
    EXPECT_EQ(kz_Resbuf_getRetPoint(point, real_point.at), 1);
    EXPECT_EQ(point[2], 6.0);
}

TEST_F(RbLists, StringListsComeFromLispAndGoToChains) {
    Arguments arguments("( \"a\" 5 \"b\" ) T");
    kz_StrList* list = kz_StrList_fromLisp(&arguments.at);
    EXPECT_EQ(arguments.rest(), ") T") << "the closing marker is left to the caller";
    EXPECT_EQ(take(kz_StrList_toRb(list)), "( \"a\" \"b\" )");
    kz_StrList_destroy(list);
    Arguments nil("nil");
    kz_StrList* empty = kz_StrList_fromLisp(&nil.at);
    ASSERT_NE(empty, nullptr);
    EXPECT_EQ(nil.rest(), "nil");
    EXPECT_EQ(take(kz_StrList_toRb(empty)), "( )");
    kz_StrList_destroy(empty);
    EXPECT_EQ(kz_StrList_toRb(nullptr), nullptr);
    EXPECT_EQ(kz_Str_wcMatch(u"PIPE-1", u"PIPE*"), 1);
    EXPECT_EQ(kz_Str_wcMatch(u"PIPE-1", u"VALVE*"), 0);
    EXPECT_EQ(kz_Str_wcMatch(nullptr, u"*"), 0);
}

TEST_F(RbLists, NodesPrintWithTheirLabels) {
    const std::pair<const char*, const char*> cases[] = {
        {"1002:{", "Xcontrol(1002)        {"},
        {"1000:FLAG", "Xstring(1000)         FLAG"},
        {"\"50%d\"", "RTSTR                 50%d"},
        {"11:1,2,3", "Point(11)             1.000000,2.000000,3.000000"},
        {"-1:255", "EntName(-1)           <Entity Name:       ff>"},
        {"set:5", "RTPICKS               <Selection Set:        5>"},
        {"1071:70000", "Xlong(1071)           70000"},
        {"62:7", "62                    7"},
        {"2.5", "RTREAL                2.500000"},
        {"(", "("},
        {".)", ") dotted pair"},
        {"nil", "NIL symbol"},
        {"90:", "90  Unknown Type."},
    };
    for (const auto& [node, line] : cases) {
        const Arguments list(node);
        EXPECT_EQ(test::narrow(kz_Rb_printBuffer(list.at, 0)), line);
        EXPECT_EQ(test::narrow(kz_Rb_printBuffer(list.at, 1)), line + std::string("\n"));
    }
    EXPECT_EQ(test::narrow(kz_Rb_printBuffer(nullptr, 1)), "");
    const std::u16string longer(2000, u'x');
    resbuf* node = kz_Rb_create(1000, longer.c_str());
    EXPECT_EQ(kz_Str_len(kz_Rb_printBuffer(node, 1)), 511U);
    kz_ResBuf_release(node);
}

TEST_F(RbLists, DumpsGoThroughTheGate) {
    const Arguments list("1 T");
    traceAt(3, 0x400);
    kz_Rb_printListDiag(list.at, 3, 0x8);
    kz_Rb_printListDiag(list.at, 4, 0x400);
    EXPECT_EQ(traced(), "");
    kz_Rb_printListDiag(list.at, 3, 0x408);
    EXPECT_EQ(traced(), "RTSHORT               1\nT symbol");
}

}  // namespace
