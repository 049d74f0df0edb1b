/// Wide strings and base 36 numbers.
#include "kz_tls21an/str.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>

#include "kz_tls21an/base36.h"
#include "kz_tls21an/memory.h"
#include "kz_tls21an/text.h"

namespace {

/// What a function that works in place makes of a text, in a buffer that shows any write behind it.
std::string inPlace(const std::u16string& text, const std::function<void(kz_Char*)>& change) {
    kz_Char buffer[24];
    std::fill(buffer, buffer + 24, u'#');
    kz_Str_ncpy(buffer, text.c_str(), 20);
    change(buffer);
    std::string result = kz::toUtf8(buffer);
    EXPECT_EQ(buffer[23], '#');
    return result;
}

TEST(Str, copiesAreOneHeap) {
    std::free(kz_Str_dup(KZ_T("a")));
    kz_Char* copy = kz_Str_dupW(KZ_T("text"));
    EXPECT_EQ(kz::toUtf8(copy), "text");
    kz_Free(copy);
    EXPECT_EQ(kz_Str_dup(nullptr), nullptr);
    kz_Malloc_failFrom(1);
    EXPECT_EQ(kz_Str_dup(KZ_T("a")), nullptr);
    kz_Malloc_failFrom(0);
}

TEST(Str, ncpyWritesAtMostOneUnitMoreThanItsBound) {
    kz_Char buffer[] = u"------";
    EXPECT_EQ(kz::toUtf8(kz_Str_ncpy(buffer, KZ_T("abcdef"), 3)), "abc");
    EXPECT_EQ(buffer[4], '-');
    EXPECT_EQ(kz::toUtf8(kz_Str_ncpy(buffer, nullptr, 3)), "");
}

TEST(Str, comparisonIsThreeWayWithoutRegardToCase) {
    EXPECT_EQ(kz_Str_cmpi(KZ_T("Kz_Grp"), KZ_T("kz_GRP")), 0);
    EXPECT_LT(kz_Str_cmpi(KZ_T("abc"), KZ_T("ABCD")), 0);
    EXPECT_GT(kz_Str_cmpi(KZ_T("b"), KZ_T("ABC")), 0);
    EXPECT_LT(kz_Str_cmpi(nullptr, KZ_T("")), 0);
    EXPECT_EQ(kz_Str_cmpi(nullptr, nullptr), 0);
    EXPECT_EQ(kz_Str_ncmpi(KZ_T("KZ_CN_1"), KZ_T("kz_cn_2"), 6), 0);
    EXPECT_NE(kz_Str_ncmpi(KZ_T("KZ"), KZ_T("kz_cn_2"), 6), 0);
}

TEST(Str, trimsBlanksWhereItsNameSays) {
    EXPECT_EQ(inPlace(u" \ta b ", kz_Str_rlb), "a b ");
    EXPECT_EQ(inPlace(u" a b \t", kz_Str_rtb), " a b");
    EXPECT_EQ(inPlace(u"  a \t b  c ", kz_Str_delBlks), "a b c");
    EXPECT_EQ(inPlace(u"   ", kz_Str_delBlks), "");
    EXPECT_EQ(inPlace(u"   ", kz_Str_rtb), "");
}

TEST(Str, justifiesInTheWidthAndNeverCuts) {
    const auto with = [](kz_Char* (*function)(kz_Char*, int), int width) {
        return [=](kz_Char* text) { function(text, width); };
    };
    EXPECT_EQ(inPlace(u" ab ", with(kz_Str_cj, 5)), " ab  ");
    EXPECT_EQ(inPlace(u" ab ", with(kz_Str_lj, 5)), "ab   ");
    EXPECT_EQ(inPlace(u" ab ", with(kz_Str_rj, 5)), "   ab");
    EXPECT_EQ(inPlace(u" ab ", with(kz_Str_pad, 6)), " ab   ");
    EXPECT_EQ(inPlace(u" abcdef ", with(kz_Str_rj, 3)), "abcdef");
    EXPECT_EQ(inPlace(u" ab", with(kz_Str_pad, 2)), " ab");
    EXPECT_EQ(inPlace(u" ab ", with(kz_Str_cj, 0)), " ab ");
    EXPECT_EQ(inPlace(u" ab ", with(kz_Str_lj, -3)), " ab ");
    EXPECT_EQ(kz_Str_cj(nullptr, 4), nullptr);
}

TEST(Str, substrCountsFromOneAndStaysInTheText) {
    const auto part = [](int start, int length) {
        return inPlace(u"abcdef", [=](kz_Char* text) { kz_Str_substr(text, text, start, length); });
    };
    EXPECT_EQ(part(1, 2), "ab");
    EXPECT_EQ(part(3, 99), "cdef");
    EXPECT_EQ(part(-5, 2), "ab");
    EXPECT_EQ(part(7, 2), "");
    EXPECT_EQ(part(INT32_MAX, INT32_MAX), "");
    EXPECT_EQ(part(2, -1), "");
}

TEST(Str, replaceCharTakesItsOwnLastResult) {
    EXPECT_EQ(kz::toUtf8(kz_Str_replaceChar(KZ_T("C:\\a\\b"), KZ_T("\\"), KZ_T("\\\\"))),
              "C:\\\\a\\\\b");
    const kz_Char* last = kz_Str_replaceChar(KZ_T("aXbX"), KZ_T("X"), KZ_T("YY"));
    EXPECT_EQ(kz::toUtf8(kz_Str_replaceChar(last, KZ_T("YY"), nullptr)), "ab");
    EXPECT_EQ(kz::toUtf8(kz_Str_replaceChar(KZ_T("aaa"), KZ_T("aa"), KZ_T("b"))), "ba");
    EXPECT_EQ(kz::toUtf8(kz_Str_replaceChar(KZ_T("abc"), KZ_T(""), KZ_T("x"))), "abc");
    EXPECT_EQ(kz::toUtf8(kz_Str_replaceChar(nullptr, KZ_T("a"), KZ_T("b"))), "");
}

TEST(Str, indexFindsTheFirstOccurrence) {
    EXPECT_EQ(kz_Str_index(KZ_T("Pipe and pipe"), KZ_T("pipe"), 0), 9);
    EXPECT_EQ(kz_Str_index(KZ_T("Pipe and pipe"), KZ_T("pipe"), 1), 0);
    EXPECT_EQ(kz_Str_index(KZ_T("pip"), KZ_T("PIPE"), 1), -1);
    EXPECT_EQ(kz_Str_index(KZ_T("a"), KZ_T(""), 0), 0);
    EXPECT_EQ(kz_Str_index(KZ_T("a"), KZ_T(""), 1), 0);
    EXPECT_EQ(kz_Str_index(nullptr, KZ_T("a"), 0), -1);
}

std::string wrap(const kz_Char* text, int width) {
    kz_StrList* list = kz_Str_wrapText(text, width);
    std::string out;
    for (int n = 0; n < kz_StrList_length(list); ++n) {
        out += "[" + kz::toUtf8(kz_StrList_getNth(list, n)) + "]";
    }
    kz_StrList_destroy(list);
    return out;
}

TEST(Str, wrapTextBreaksAtBlanksAndLineEnds) {
    EXPECT_EQ(wrap(KZ_T("the pump is  off"), 8), "[the pump][is  off]");
    EXPECT_EQ(wrap(KZ_T("the pump   is off"), 8), "[the pump][is off]");
    EXPECT_EQ(wrap(KZ_T("abcdefghij kl"), 4), "[abcd][efgh][ij][kl]");
    EXPECT_EQ(wrap(KZ_T("a\r\n\nb\n"), 4), "[a][][b]");
    EXPECT_EQ(wrap(KZ_T("a long line\nend"), 0), "[a long line][end]");
    EXPECT_EQ(wrap(KZ_T("a\U0001F527b"), 2), "[a][\xF0\x9F\x94\xA7][b]") << "pairs stay whole";
    EXPECT_EQ(wrap(KZ_T(""), 10), "");
    EXPECT_EQ(kz_Str_wrapText(nullptr, 10), nullptr);
}

TEST(Base36, writesTheIntegerPart) {
    EXPECT_EQ(kz::toUtf8(kz_Base36_fromBase10(0.9)), "0");
    EXPECT_EQ(kz::toUtf8(kz_Base36_fromBase10(1700000000000.0)), "LOYW3V28");
    EXPECT_EQ(kz::toUtf8(kz_Base36_fromBase10(18446744073709549568.0)), "3W5E11264SF7K");
    for (const double value : {-1.0, 18446744073709551616.0, std::nan(""), HUGE_VAL}) {
        EXPECT_EQ(kz::toUtf8(kz_Base36_fromBase10(value)), "");
    }
}

TEST(Base36, comparesNumbersNotTexts) {
    EXPECT_GT(kz_Base36_compare(KZ_T("10"), KZ_T("Z")), 0);
    EXPECT_EQ(kz_Base36_compare(KZ_T("00a"), KZ_T("A")), 0);
    EXPECT_LT(kz_Base36_compare(KZ_T("A1_7"), KZ_T("A2")), 0);
    EXPECT_EQ(kz_Base36_compare(nullptr, KZ_T("0")), 0);
}

TEST(Base36, incrementCarriesAndGrowsUpToEightDigits) {
    const auto add = [](const char16_t* text, int step, int expected) {
        return inPlace(
            text, [=](kz_Char* number) { EXPECT_EQ(kz_Base36_increment(number, step), expected); });
    };
    EXPECT_EQ(add(u"0", 1, 1), "1");
    EXPECT_EQ(add(u"az", 1, 1), "B0");
    EXPECT_EQ(add(u"ZZ", 1, 1), "100");
    EXPECT_EQ(add(u"", 1296, 1), "100");
    EXPECT_EQ(add(u"", 0, 1), "0");
    EXPECT_EQ(add(u"100", -1, 1), "0ZZ");
    EXPECT_EQ(add(u"1", -2, 0), "1");
    EXPECT_EQ(add(u"ZZZZZZZZ", 1, 0), "ZZZZZZZZ");
    EXPECT_EQ(add(u"0ZZZZZZZZ", 1, 1), "100000000") << "a long text may fill its own zeros";
    EXPECT_EQ(add(u"1-2", 1, 0), "1-2");
    EXPECT_EQ(kz_Base36_increment(nullptr, 1), 0);
}

}  // namespace
