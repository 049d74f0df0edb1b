/// Conversions of text: nothing is lost between bytes and units, case is one to one.
#include "kz_tls21an/text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>

namespace {

TEST(Text, utf8ComesBackAfterItsWayThroughUtf16) {
    const std::string text = "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x94\xA7";
    EXPECT_EQ(kz::toUtf16(text), u"a\u00E4\u20AC\U0001F527");
    EXPECT_EQ(kz::toUtf8(kz::toUtf16(text)), text);
}

TEST(Text, bytesThatAreNoUtf8AreKeptAsLoneSurrogates) {
    EXPECT_EQ(kz::toUtf16("\x80z"), std::u16string({0xDC80, u'z'}));
    EXPECT_EQ(kz::toUtf16("\xC0\xAF"), std::u16string({0xDCC0, 0xDCAF})) << "overlong form";
    EXPECT_EQ(kz::toUtf16("\xE2\x82"), std::u16string({0xDCE2, 0xDC82})) << "cut sequence";
    EXPECT_EQ(kz::toUtf16("\xED\xA0\x80").size(), 3U) << "surrogate";
    EXPECT_EQ(kz::toUtf16("\xF4\x90\x80\x80").size(), 4U) << "beyond the last character";
}

TEST(Text, everyByteSequenceComesBackExactly) {
    std::mt19937 random(11);
    for (int round = 0; round < 5000; ++round) {
        std::string bytes(random() % 12, ' ');
        // mostly lead and continuation bytes, where the decoder can go wrong
        for (char& byte : bytes)
            byte = static_cast<char>(random() % 3 ? 0x80 + random() % 128 : random());
        EXPECT_EQ(kz::toUtf8(kz::toUtf16(bytes)), bytes);
    }
}

TEST(Text, caseMapsOneToOne) {
    int pairs = 0;
    for (unsigned value = 0; value < 0x10000; ++value) {
        const auto unit = static_cast<kz_Char>(value);
        const kz_Char upper = kz::upperUnit(unit);
        const kz_Char lower = kz::lowerUnit(unit);
        if (upper != unit) {
            ++pairs;
            EXPECT_EQ(kz::lowerUnit(upper), unit) << value;
            EXPECT_EQ(kz::upperUnit(upper), upper) << value;
        }
        if (lower != unit) {
            EXPECT_EQ(kz::upperUnit(lower), unit) << value;
        }
    }
    EXPECT_GT(pairs, 300);
    EXPECT_EQ(kz::toUpper(u"az\u00E9\u00FF\u017E\u03B1\u03CE\u044F\u0451\u04CF\u0561"),
              u"AZ\u00C9\u0178\u017D\u0391\u038F\u042F\u0401\u04C0\u0531");
    EXPECT_EQ(kz::toUpper(u"\u00DF\u00F7\u0131\u0138\u03C2"), u"\u00DF\u00F7\u0131\u0138\u03C2");
}

TEST(Text, comparisonIgnoresCaseAndPutsPrefixesFirst) {
    EXPECT_EQ(kz::compareNoCase(u"stra\u00C4e", u"STRA\u00E4E"), 0);
    EXPECT_LT(kz::compareNoCase(u"pipe", u"Pipes"), 0);
    EXPECT_GT(kz::compareNoCase(u"b", u"ABC"), 0);
}

TEST(Text, integersStopAtRubbishAndAtTheirRange) {
    EXPECT_EQ(kz::parseInteger(u" \t-12x"), -12);
    EXPECT_EQ(kz::parseInteger(u"+7"), 7);
    EXPECT_EQ(kz::parseInteger(u"- 7"), 0);
    EXPECT_EQ(kz::parseInteger(u"abc"), 0);
    EXPECT_EQ(kz::parseInteger(u"2147483647"), INT32_MAX);
    EXPECT_EQ(kz::parseInteger(u"99999999999999999999999"), INT32_MAX);
    EXPECT_EQ(kz::parseInteger(u"-2147483648"), INT32_MIN);
    EXPECT_EQ(kz::parseInteger(u"-99999999999"), INT32_MIN);
}

TEST(Text, realsTakeTheLongestNumber) {
    EXPECT_EQ(kz::parseReal(u" -2.5e2mm"), -250.0);
    EXPECT_EQ(kz::parseReal(u"+.5"), 0.5);
    EXPECT_EQ(kz::parseReal(u"5."), 5.0);
    EXPECT_EQ(kz::parseReal(u"1e"), 1.0);
    EXPECT_EQ(kz::parseReal(u"1e+"), 1.0);
    EXPECT_EQ(kz::parseReal(u"1,5"), 1.0);
    for (const char16_t* rubbish : {u"", u".", u"-", u"e5", u"inf", u"nan", u"+-1"}) {
        EXPECT_EQ(kz::parseReal(rubbish), 0.0);
    }
}

TEST(Text, realsOutOfRangeBecomeInfiniteOrZero) {
    EXPECT_EQ(kz::parseReal(u"1e999"), HUGE_VAL);
    EXPECT_EQ(kz::parseReal(u"-1e99999999999999999999"), -HUGE_VAL);
    EXPECT_EQ(kz::parseReal(u"1e-999"), 0.0);
    const std::u16string zeros(500, u'0');
    EXPECT_EQ(kz::parseReal(u"1" + zeros), HUGE_VAL);
    EXPECT_EQ(kz::parseReal(u"1" + zeros + u"e-50"), HUGE_VAL);
    EXPECT_EQ(kz::parseReal(u"0." + zeros + u"1e50"), 0.0);
    EXPECT_EQ(kz::parseReal(u"1" + zeros + u"e-500"), 1.0);
}

}  // namespace
