/// The string list, seen as a text of its entries with the current one in brackets.
#include "kz_tls21an/strlist.h"

#include <gtest/gtest.h>

#include <string>

#include "kz_tls21an/memory.h"
#include "kz_tls21an/text.h"

namespace {

std::string show(const kz_StrList* list) {
    std::string out;
    for (int n = 0; n < kz_StrList_length(list); ++n) {
        const kz_Char* entry = kz_StrList_getNth(list, n);
        const bool isCurrent = entry == kz_StrList_getCurr(list);
        out += (n > 0 ? " " : "") + std::string(isCurrent ? "[" : "") + kz::toUtf8(entry);
        if (isCurrent) out += "]";
    }
    return out;
}

class StrList : public testing::Test {
  protected:
    ~StrList() override { kz_StrList_destroy(list_); }

    void split(const kz_Char* text) { list_ = kz_StrList_fromDelimitedString(text, KZ_T(" ,;")); }

    kz_StrList* list_ = nullptr;
};

TEST_F(StrList, createTakesAFirstEntryOrNone) {
    list_ = kz_StrList_create(KZ_T("one"), 0);  // NOLINT(modernize-use-nullptr): the form in use
    EXPECT_EQ(show(list_), "one");
    EXPECT_EQ(kz_StrList_eol(list_), 1);
    kz_StrList* empty = kz_StrList_create(nullptr);
    EXPECT_EQ(kz_StrList_length(empty), 0);
    kz_StrList_destroy(empty);
}

TEST_F(StrList, insertingLeavesThePositionOnItsEntry) {
    split(KZ_T("b c"));
    kz_StrList_next(list_);
    kz_StrList_insStart(list_, KZ_T("a"));
    kz_StrList_insEnd(list_, KZ_T("d"));
    EXPECT_EQ(show(list_), "a b [c] d");
    EXPECT_EQ(kz_StrList_insEnd(list_, nullptr), 0);
}

TEST_F(StrList, anEntryOfTheListItselfMayBeInserted) {
    split(KZ_T("1 2 3 4 5 6 7 8"));
    EXPECT_EQ(kz_StrList_insStart(list_, kz_StrList_getNth(list_, 7)), 1);
    EXPECT_EQ(show(list_), "8 [1] 2 3 4 5 6 7 8");
}

TEST_F(StrList, insSortedKeepsTheOrderWithoutRegardToCase) {
    list_ = kz_StrList_create();
    for (const kz_Char* text : {u"pump", u"Valve", u"elbow", u"PUMP", u"tee", u"Axis"}) {
        kz_StrList_insSorted(list_, text);
    }
    EXPECT_EQ(show(list_), "Axis elbow pump PUMP tee Valve");
}

TEST_F(StrList, removingMovesThePositionToTheFollowingEntry) {
    split(KZ_T("a b c"));
    kz_StrList_next(list_);
    EXPECT_EQ(kz_StrList_delNth(list_, 0), 1);
    EXPECT_EQ(show(list_), "[b] c");
    EXPECT_EQ(kz_StrList_delNth(list_, 0), 1);
    EXPECT_EQ(show(list_), "[c]");
    EXPECT_EQ(kz_StrList_delNth(list_, 0), 1);
    EXPECT_EQ(kz_StrList_eol(list_), 1);
    EXPECT_EQ(kz_StrList_delNth(list_, 0), 0);
}

TEST_F(StrList, searchFindsTheFirstEqualEntry) {
    split(KZ_T("pipe Pipe tee"));
    EXPECT_EQ(kz_StrList_search(list_, KZ_T("Pipe"), 0), 1);
    EXPECT_EQ(kz_StrList_search(list_, KZ_T("PIPE"), 1), 0);
    EXPECT_EQ(kz_StrList_search(list_, KZ_T("PIPE"), 0), -1);
    EXPECT_EQ(kz_StrList_search(list_, nullptr, 0), -1);
}

TEST_F(StrList, splittingLeavesOutEmptyPieces) {
    split(KZ_T("; Yes, No;;Maybe "));
    EXPECT_EQ(show(list_), "[Yes] No Maybe");
    kz_StrList_destroy(list_);
    list_ = kz_StrList_fromDelimitedString(KZ_T("a b"), nullptr);
    EXPECT_EQ(show(list_), "[a b]");
    EXPECT_EQ(kz_StrList_fromDelimitedString(nullptr, KZ_T(" ")), nullptr);
}

TEST_F(StrList, aCopySurvivesItsOriginal) {
    split(KZ_T("a b"));
    kz_StrList* copy = kz_StrList_copy(list_);
    kz_StrList_delAll(list_);
    EXPECT_EQ(show(copy), "[a] b");
    kz_StrList_destroy(copy);
    EXPECT_EQ(kz_StrList_copy(nullptr), nullptr);
}

TEST_F(StrList, aNullListIsEmpty) {
    EXPECT_EQ(kz_StrList_length(nullptr), 0);
    EXPECT_EQ(kz_StrList_getNth(nullptr, 0), nullptr);
    EXPECT_EQ(kz_StrList_getCurr(nullptr), nullptr);
    EXPECT_EQ(kz_StrList_eol(nullptr), 1);
    EXPECT_EQ(kz_StrList_next(nullptr), 0);
    EXPECT_EQ(kz_StrList_search(nullptr, KZ_T("a"), 0), -1);
    EXPECT_EQ(kz_StrList_delAll(nullptr), 0);
    EXPECT_EQ(kz_StrList_insSorted(nullptr, KZ_T("a")), 0);
}

TEST_F(StrList, everyShortageEndsInFailureAndNothingLeaks) {
    split(KZ_T("1 2 3 4 5 6 7 8"));  // the array is full: one more entry needs two blocks
    for (size_t call = 1; call <= 2; ++call) {
        kz_Malloc_failFrom(call);
        EXPECT_EQ(kz_StrList_insEnd(list_, KZ_T("9")), 0);
        kz_Malloc_failFrom(0);
        EXPECT_EQ(show(list_), "[1] 2 3 4 5 6 7 8");
    }
    for (size_t call = 1; call <= 10; ++call) {
        kz_Malloc_failFrom(call);
        EXPECT_EQ(kz_StrList_copy(list_), nullptr) << call;
        kz_Malloc_failFrom(0);
    }
}

}  // namespace
