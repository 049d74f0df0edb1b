// Distances and angles as texts: forms by units, rounding, and the way back.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <random>

#include "acad/ads.h"
#include "host/drawing.h"
#include "kz_tls21an/text.h"

namespace {

constexpr double kPi = std::numbers::pi;
constexpr int kZeroSuppressions[] = {0, 1, 2, 3, 4, 8, 12};

void set(const char16_t* variable, int value) {
    resbuf node = {};
    node.restype = RTSHORT;
    node.resval.rint = static_cast<int16_t>(value);
    EXPECT_EQ(acedSetVar(variable, &node), RTNORM);
}

class Units : public testing::Test {
  protected:
    Units() {
        host::newDrawing();
        set(u"DIMZIN", 0);
    }
    ~Units() override { host::closeDrawing(); }

    static std::string distance(double value, int units, int precision) {
        ACHAR text[64] = u"";
        const int status = acdbRToS(value, units, precision, text, std::size(text));
        return status == RTNORM ? kz::toUtf8(text) : "refused";
    }
    static std::string angle(double radians, int units, int precision) {
        ACHAR text[64] = u"";
        const int status = acdbAngToS(radians, units, precision, text, std::size(text));
        return status == RTNORM ? kz::toUtf8(text) : "refused";
    }
    static double toDistance(const char* text) {
        double value = -777.0;
        acdbDisToF(kz::toUtf16(text).c_str(), -1, &value);
        return value;
    }
    /// In degrees.
    static double toAngle(const char* text, int units = 0) {
        double value = -777.0 * kPi / 180.0;
        acdbAngToF(kz::toUtf16(text).c_str(), units, &value);
        return value * 180.0 / kPi;
    }
};

TEST_F(Units, each_linear_unit_has_its_form) {
    EXPECT_EQ(distance(17.5, 1, 4), "1.7500E+01");
    EXPECT_EQ(distance(17.5, 2, 2), "17.50");
    EXPECT_EQ(distance(17.5, 3, 2), "1'-5.50\"");
    EXPECT_EQ(distance(17.5, 4, 2), "1'-5 1/2\"");
    EXPECT_EQ(distance(17.5, 5, 2), "17 1/2");
    EXPECT_EQ(distance(-17.5, 4, 2), "-1'-5 1/2\"");
    EXPECT_EQ(distance(-0.00025, 1, 1), "-2.5E-04");
    EXPECT_EQ(distance(1e-120, 1, 0), "1E-120");
    set(u"LUNITS", 5);
    set(u"LUPREC", 3);
    EXPECT_EQ(distance(0.875, -1, -1), "7/8");
}

TEST_F(Units, input_form_leaves_out_the_dash_behind_feet) {
    set(u"UNITMODE", 1);
    EXPECT_EQ(distance(15.5, 4, 1), "1'3-1/2\"");
    EXPECT_EQ(distance(15.5, 3, 1), "1'3.5\"");
    EXPECT_EQ(distance(17.5, 5, 1), "17-1/2");
    EXPECT_EQ(distance(12.5, 4, 1), "1'0-1/2\"");
}

TEST_F(Units, ties_go_away_from_zero_and_carries_run_through) {
    EXPECT_EQ(distance(0.125, 2, 2), "0.13");
    EXPECT_EQ(distance(2.5, 2, 0), "3");
    EXPECT_EQ(distance(1.005, 2, 2), "1.01");  // a hair below the tie as a double
    EXPECT_EQ(distance(-1.005, 2, 2), "-1.01");
    EXPECT_EQ(distance(0.1 + 0.2, 2, 16), "0.3000000000000000");
    EXPECT_EQ(distance(kPi, 2, 15), "3.141592653589793");
    EXPECT_EQ(distance(9.996, 1, 2), "1.00E+01");
    EXPECT_EQ(distance(11.999, 3, 2), "1'");
    EXPECT_EQ(distance(11.999, 4, 4), "1'");
    EXPECT_EQ(distance(0.06, 2, 0), "0");
    EXPECT_EQ(distance(0.6, 2, 0), "1");
    EXPECT_EQ(distance(-0.001, 2, 2), "0.00");  // nothing that shows zero has a sign
    EXPECT_EQ(distance(-0.01, 5, 2), "0");
}

TEST_F(Units, zero_suppression_of_feet_and_inches) {
    const double values[] = {0.0, 0.5, 6.0, 12.0, 12.75};
    const char* expected[4][5] = {{"0\"", "1/2\"", "6\"", "1'", "1'-0 3/4\""},
                                  {"0'-0\"", "0'-0 1/2\"", "0'-6\"", "1'-0\"", "1'-0 3/4\""},
                                  {"0'", "0'-0 1/2\"", "0'-6\"", "1'", "1'-0 3/4\""},
                                  {"0\"", "1/2\"", "6\"", "1'-0\"", "1'-0 3/4\""}};
    for (int suppression = 0; suppression < 4; ++suppression) {
        set(u"DIMZIN", suppression);
        for (int i = 0; i < 5; ++i)
            EXPECT_EQ(distance(values[i], 4, 2), expected[suppression][i]) << suppression;
    }
}

TEST_F(Units, zero_suppression_of_decimals) {
    const auto all = [](int suppression) {
        set(u"DIMZIN", suppression);
        return distance(0.5, 2, 2) + " " + distance(12.0, 2, 2) + " " + distance(0.0, 2, 1) + " " +
               distance(0.5, 3, 2) + " " + distance(12.5, 3, 2) + " " + distance(20.0, 1, 3) + " " +
               angle(kPi / 360, 0, 2);
    };
    EXPECT_EQ(all(0), "0.50 12.00 0.0 0.50\" 1'-0.50\" 2.000E+01 0.50");
    EXPECT_EQ(all(4), ".50 12.00 .0 .50\" 1'-0.50\" 2.000E+01 .50");
    EXPECT_EQ(all(8), "0.5 12 0 0.5\" 1'-0.5\" 2E+01 0.5");
    EXPECT_EQ(all(12), ".5 12 0 .5\" 1'-0.5\" 2E+01 .5");
}

TEST_F(Units, each_angular_unit_has_its_form) {
    EXPECT_EQ(angle(kPi, 0, 0), "180");
    EXPECT_EQ(angle(kPi, 1, 4), "180d0'0\"");
    EXPECT_EQ(angle(kPi, 2, 4), "200.0000g");
    EXPECT_EQ(angle(kPi, 3, 4), "3.1416r");
    EXPECT_EQ(angle(kPi, 4, 2), "W");
    EXPECT_EQ(angle(-0.785398, 0, 4), "315.0000");
    const double value = (45.0 + 30.0 / 60 + 15.5 / 3600) * kPi / 180;
    EXPECT_EQ(angle(value, 1, 0), "46d");
    EXPECT_EQ(angle(value, 1, 2), "45d30'");
    EXPECT_EQ(angle(value, 1, 3), "45d30'16\"");
    EXPECT_EQ(angle(value, 1, 6), "45d30'15.50\"");
    EXPECT_EQ(angle(2 * kPi - 1e-9, 1, 4), "0d0'0\"");
    EXPECT_EQ(angle(2 * kPi - 1e-9, 0, 2), "0.00");
    EXPECT_EQ(angle(-1e-300, 3, 2), "0.00r");
}

TEST_F(Units, bearings) {
    const auto bearing = [](double degrees, int precision) {
        return angle(degrees * kPi / 180, 4, precision);
    };
    EXPECT_EQ(bearing(45, 0), "N 45d E");
    EXPECT_EQ(bearing(135.5, 2), "N 45d30' W");
    EXPECT_EQ(bearing(200, 4), "S 70d0'0\" W");
    EXPECT_EQ(bearing(300, 1), "S 30d0' E");
    EXPECT_EQ(bearing(0, 4) + bearing(90, 4) + bearing(180, 4) + bearing(270, 4), "ENWS");
    EXPECT_EQ(bearing(89.999999, 4) + bearing(359.999999, 4), "NE");
    set(u"UNITMODE", 1);
    EXPECT_EQ(bearing(45, 2), "N45d0'E");
}

TEST_F(Units, angles_count_from_the_base_in_their_sense) {
    resbuf base = {};
    base.restype = RTREAL;
    base.resval.rreal = kPi / 2;
    ASSERT_EQ(acedSetVar(u"ANGBASE", &base), RTNORM);
    EXPECT_EQ(angle(kPi, 0, 0), "90");
    EXPECT_NEAR(toAngle("90"), 180.0, 1e-12);
    set(u"ANGDIR", 1);
    EXPECT_EQ(angle(kPi, 0, 0), "270");
    EXPECT_NEAR(toAngle("270"), 180.0, 1e-12);
}

TEST_F(Units, distances_in_all_spellings) {
    EXPECT_EQ(toDistance("1'-3 1/2\""), 15.5);
    EXPECT_EQ(toDistance("1'3-1/2\""), 15.5);
    EXPECT_EQ(toDistance(" 1'3.5 "), 15.5);
    EXPECT_EQ(toDistance("-1'-1/2\""), -12.5);
    EXPECT_EQ(toDistance("2.5'"), 30.0);
    EXPECT_EQ(toDistance("17 1/2"), 17.5);
    EXPECT_EQ(toDistance("3/4\""), 0.75);
    EXPECT_EQ(toDistance("+1.75e+01"), 17.5);
    EXPECT_EQ(toDistance(".5"), 0.5);
    EXPECT_EQ(toDistance("1e-999"), 0.0);
    for (const char* text :
         {"",    " ",     "-",     "1'-", "abc",  "12x",  "1/0", "1/2/3", "5 .5",
          "5-3", "5 3/2", "1.5/2", "1''", "1\"2", "- 5",  "--5", "1e999", "1'1e999",
          "E5",  "'",     "\"",    "nan", "inf",  "0x10", "1,5"})
        EXPECT_EQ(toDistance(text), -777.0) << text;
}

TEST_F(Units, angles_in_all_spellings) {
    EXPECT_NEAR(toAngle("45.0000", 0), 45.0, 1e-12);
    EXPECT_NEAR(toAngle("45.0000", 3) * kPi / 180, 1.0177, 1e-4);  // turns are taken off
    EXPECT_NEAR(toAngle("45d30'15.5\"", 3), 45.504305555556, 1e-10);
    EXPECT_NEAR(toAngle("45D", 2), 45.0, 1e-12);
    EXPECT_NEAR(toAngle("45d36\""), 45.01, 1e-12);
    EXPECT_NEAR(toAngle("50g"), 45.0, 1e-12);
    EXPECT_NEAR(toAngle("0.5r"), 28.64788975654, 1e-10);
    EXPECT_NEAR(toAngle("-90"), 270.0, 1e-12);
    EXPECT_NEAR(toAngle("N 45d E"), 45.0, 1e-12);
    EXPECT_NEAR(toAngle("n45d30'w"), 135.5, 1e-12);
    EXPECT_NEAR(toAngle("S 10 E"), 280.0, 1e-12);
    EXPECT_NEAR(toAngle("S90dE"), 0.0, 1e-12);
    EXPECT_NEAR(toAngle("w"), 180.0, 1e-12);
    for (const char* text : {"", "x", "45x", "45d30", "45d30'15'", "N 95d E", "N 45d", "NE45", "EE",
                             "N 45d E 3", "- 5", "d", "1e999", "45g5", "-N 45d E"})
        EXPECT_NEAR(toAngle(text), -777.0, 1e-9) << text;
}

TEST_F(Units, what_cannot_be_shown_is_refused_and_leaves_the_buffer) {
    for (const double value : {std::nan(""), HUGE_VAL, -HUGE_VAL}) {
        EXPECT_EQ(distance(value, 2, 2), "refused");
        EXPECT_EQ(angle(value, 0, 2), "refused");
    }
    EXPECT_EQ(distance(1.0, 0, 2), "refused");
    EXPECT_EQ(distance(1.0, 6, 2), "refused");
    EXPECT_EQ(distance(1.0, 2, -2), "refused");
    EXPECT_EQ(angle(1.0, 5, 2), "refused");
    double value = 5.0;
    EXPECT_NE(acdbDisToF(u"1", 0, &value), RTNORM);
    EXPECT_NE(acdbAngToF(u"1", 5, &value), RTNORM);
    EXPECT_NE(acdbDisToF(nullptr, 2, &value), RTNORM);
    EXPECT_EQ(value, 5.0);
    ACHAR text[6] = u"kept!";
    EXPECT_NE(acdbRToS(12345.0, 2, 0, text, 5), RTNORM);
    EXPECT_EQ(text, std::u16string(u"kept!"));
    EXPECT_EQ(acdbRToS(12345.0, 2, 0, text, 6), RTNORM);
    EXPECT_NE(acdbRToS(1.0, 2, 0, nullptr, 6), RTNORM);
}

TEST_F(Units, huge_tiny_and_very_precise_numbers) {
    EXPECT_EQ(distance(1e20, 2, 4), "1.0000E+20");
    EXPECT_EQ(distance(1e20, 4, 4), "1.0000E+20");
    EXPECT_EQ(distance(std::numeric_limits<double>::max(), 5, 2), "1.80E+308");
    EXPECT_EQ(distance(9999999999999998.0, 2, 0), "9999999999999998");
    EXPECT_EQ(distance(1e-300, 2, 4), "0.0000");
    EXPECT_EQ(distance(1e-300, 4, 8), "0\"");
    EXPECT_EQ(distance(1.0 / 256, 5, 99), "1/256");
    EXPECT_EQ(distance(0.5, 2, 99), "0.50000000000000000000000000000000");
}

TEST_F(Units, texts_read_back_as_the_rounded_number) {
    std::mt19937_64 random(4711);
    std::uniform_real_distribution<double> mantissa(-1.0, 1.0);
    std::uniform_int_distribution<int> exponent(-3, 9);
    for (int i = 0; i < 20000; ++i) {
        const double value = mantissa(random) * std::pow(10.0, exponent(random));
        set(u"DIMZIN", kZeroSuppressions[i % 7]);
        set(u"UNITMODE", i % 2);
        const int precision = i % 9;
        for (int units = 1; units <= 5; ++units) {
            const double step =
                units >= 4   ? std::pow(0.5, precision)
                : units == 1 ? std::pow(10.0, std::floor(std::log10(std::fabs(value))) - precision)
                             : std::pow(0.1, precision);
            const std::string text = distance(value, units, precision);
            EXPECT_NEAR(toDistance(text.c_str()), value, step * 0.5000001 + 1e-15 * 1e9) << text;
        }
        const double radians = std::fabs(mantissa(random)) * 2 * kPi;
        const double steps[] = {1.0, 1.0 / 60, 1.0 / 60, 1.0 / 3600, 1.0 / 3600};
        for (const int units : {0, 1, 2, 3, 4}) {
            const double sixty =
                precision < 5 ? steps[precision] : std::pow(0.1, precision - 4) / 3600;
            const double step = units == 1 || units == 4 ? sixty
                                : units == 3             ? std::pow(0.1, precision) * 180 / kPi
                                                         : std::pow(0.1, precision);
            const std::string text = angle(radians, units, precision);
            const double off = std::fabs(toAngle(text.c_str(), units) - radians * 180 / kPi);
            EXPECT_LE(std::min(off, 360 - off), step * 0.5000001 + 1e-10) << text;
        }
        if (testing::Test::HasFailure()) break;
    }
}

}  // namespace
