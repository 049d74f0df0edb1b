/// The formatter: conventions of wide text, and formats that do not fit their arguments.
#include "kz_tls21an/format.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <random>
#include <string>

#include "kz_tls21an/text.h"

namespace {

template <class... Args>
std::string format(const kz_Char* text, Args... args) {
    kz_Char buffer[512];
    const int count = kz_Str_format(buffer, 512, text, args...);
    return kz::toUtf8({buffer, static_cast<size_t>(count)});
}

TEST(Format, printsIntegersInTheSizeOfTheConversion) {
    const int64_t name = 0x123456789ABCDEF0;
    EXPECT_EQ(format(KZ_T("%lx|%8lx|%I64x|%llX"), name, name, name, name),
              "9abcdef0|9abcdef0|123456789abcdef0|123456789ABCDEF0");
    EXPECT_EQ(format(KZ_T("%d %i %ld"), -5, 6, 7L), "-5 6 7");
    EXPECT_EQ(format(KZ_T("%x %lx %hx"), int16_t{-1}, -1, -1), "ffff ffffffff ffff");
    EXPECT_EQ(format(KZ_T("%u %hd %hhd"), -1, 70000, 255), "4294967295 4464 -1");
    EXPECT_EQ(format(KZ_T("%I64d %llu"), INT64_MIN, UINT64_MAX),
              "-9223372036854775808 18446744073709551615");
}

TEST(Format, laysNumbersOutInTheirField) {
    EXPECT_EQ(format(KZ_T("[%5d][%-5d][%05d][%+d][% d]"), 42, 42, -42, 42, 42),
              "[   42][42   ][-0042][+42][ 42]");
    EXPECT_EQ(format(KZ_T("[%*d][%*d][%-*d]"), 5, 1, -5, 1, 4, 1), "[    1][1    ][1   ]");
    EXPECT_EQ(format(KZ_T("[%.4d][%8.4d][%08.4d][%.0d]"), 7, 7, 7, 0),
              "[0007][    0007][    0007][]");
    EXPECT_EQ(format(KZ_T("%#x %#X %#o %#x %#o"), 255, 255, 8, 0, 0), "0xff 0XFF 010 0 0");
}

TEST(Format, printsTextInItsField) {
    EXPECT_EQ(format(KZ_T("[%-20s]"), KZ_T("Xcontrol(1002)")), "[Xcontrol(1002)      ]");
    EXPECT_EQ(format(KZ_T("[%5s][%.2s][%.*s]"), KZ_T("abc"), KZ_T("abc"), 1, KZ_T("abc")),
              "[  abc][ab][a]");
    EXPECT_EQ(format(KZ_T("%hs %S %ls"), "8-bit", "\xC3\xA4", KZ_T("wide")), "8-bit \xC3\xA4 wide");
    EXPECT_EQ(format(KZ_T("%s"), static_cast<const kz_Char*>(nullptr)), "(null)");
    EXPECT_EQ(format(KZ_T("%S"), static_cast<const char*>(nullptr)), "(null)");
    const kz_Char open[] = {'a', 'b'};  // no terminator: the precision bounds the reading
    EXPECT_EQ(format(KZ_T("%.2s"), static_cast<const kz_Char*>(open)), "ab");
}

TEST(Format, aZeroCharacterIsWrittenAndCounted) {
    kz_Char buffer[16];
    EXPECT_EQ(kz_Str_format(buffer, 16, KZ_T("ab%cd"), 0), 4);
    EXPECT_EQ(std::u16string(buffer, 5), std::u16string(u"ab\0d\0", 5));
}

TEST(Format, aConversionThatDoesNotFitPrintsAsItStands) {
    EXPECT_EQ(format(KZ_T("%s %d"), 5, 6), "%s 6") << "the misfit uses its argument up";
    EXPECT_EQ(format(KZ_T("%d %s"), KZ_T("a"), KZ_T("b")), "%d b");
    EXPECT_EQ(format(KZ_T("%f %-8.3ld %c"), 1, 2.0, 3.0), "%f %-8.3ld %c");
    EXPECT_EQ(format(KZ_T("%s"), "narrow"), "%s");
    EXPECT_EQ(format(KZ_T("%*d %d"), 2.0, 1, 3), "%*d 3");
    EXPECT_EQ(format(KZ_T("C:\\temp\\50%stock %d %")), "C:\\temp\\50%stock %d %");
    EXPECT_EQ(format(KZ_T("%y %-+ %n %d"), 7), "%y %-+ %n 7");
    EXPECT_EQ(format(KZ_T("%*d"), 7), "%*d");
    EXPECT_EQ(format(KZ_T("100%% %5% % %%")), "100% %5% % %");
    EXPECT_EQ(format(nullptr), "");
}

TEST(Format, realsMatchTheRuntimesInTheCLocale) {
    std::mt19937_64 random(7);
    for (int round = 0; round < 2000; ++round) {
        const int exponent = static_cast<int>(random() % 60) - 30;
        const double value =
            std::ldexp(static_cast<double>(static_cast<int64_t>(random())), exponent - 63);
        const int precision = static_cast<int>(random() % 20);
        const auto same = [&](const char* narrow, const kz_Char* wide) {
            char expected[512];
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
            std::snprintf(expected, sizeof(expected), narrow, precision, value);
#pragma GCC diagnostic pop
            EXPECT_EQ(format(wide, precision, value), expected);
        };
        same("%.*f", KZ_T("%.*f"));
        same("%12.*e", KZ_T("%12.*e"));
        same("%+.*g", KZ_T("%+.*g"));
        same("%#.*g", KZ_T("%#.*g"));
        same("%020.*G", KZ_T("%020.*G"));
    }
    EXPECT_EQ(format(KZ_T("%10.5f|%f|%e|%g"), 3.14159265, 2.5, 0.0, 1e300),
              "   3.14159|2.500000|0.000000e+00|1e+300");
    EXPECT_EQ(format(KZ_T("%#.0f %#.0e %f"), 3.0, 3.0, -0.0), "3. 3.e+00 -0.000000");
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(format(KZ_T("%f %E %05f %#g"), infinity, -infinity, infinity, std::nan("")),
              "inf -INF   inf nan");
}

TEST(Format, theBufferBoundsEveryText) {
    kz_Char buffer[8];
    buffer[7] = 'x';
    EXPECT_EQ(kz_Str_format(buffer, 7, KZ_T("%s%s"), KZ_T("abcd"), KZ_T("efgh")), 6);
    EXPECT_EQ(kz::toUtf8(buffer), "abcdef");
    EXPECT_EQ(kz_Str_format(buffer, 7, KZ_T("%2147483647d"), 1), 6);
    EXPECT_EQ(kz_Str_format(buffer, 7, KZ_T("%.99999999999f"), 1.0), 6);
    EXPECT_EQ(kz_Str_format(buffer, 7, KZ_T("%-*s"), INT32_MIN, KZ_T("")), 6);
    EXPECT_EQ(kz_Str_format(buffer, 1, KZ_T("%d"), 1), 0);
    EXPECT_EQ(kz_Str_format(buffer, 0, KZ_T("%d"), 1), 0);
    EXPECT_EQ(buffer[7], 'x');
}

TEST(Format, aLongPrecisionEndsInZeros) {
    const kz_FormatArg args[] = {kz_formatArg(0.1), kz_formatArg(5e-324)};
    const std::u16string fixed = kz_Str_formatText(KZ_T("%.2000f"), args, 1);
    EXPECT_EQ(fixed.size(), 2002U);
    EXPECT_EQ(fixed.substr(0, 20), u"0.100000000000000005");
    EXPECT_EQ(fixed.substr(1900).find_first_not_of(u'0'), fixed.npos);
    const std::u16string scientific = kz_Str_formatText(KZ_T("%.2000e"), args + 1, 1);
    EXPECT_EQ(scientific.size(), 2007U);
    EXPECT_EQ(scientific.substr(2002), u"e-324");
}

TEST(Format, pointersHaveAllTheirDigits) {
    const int object = 0;
    const auto address = reinterpret_cast<uintptr_t>(&object);
    EXPECT_EQ(format(KZ_T("%p"), static_cast<const void*>(&object)),
              format(KZ_T("%.*I64X"), 2 * static_cast<int>(sizeof(void*)), address));
}

}  // namespace
