// Input functions: what people type, keywords, refusals, and where the answers come from.
#include <gtest/gtest.h>

#include <cmath>

#include "acad/ed.h"
#include "host/command.h"
#include "host/drawing.h"
#include "host/input.h"
#include "host/lisp.h"
#include "host/output.h"

namespace {

class InputTest : public testing::Test {
  protected:
    InputTest() {
        host::newDrawing();
        setNumber(u"OSMODE", 0);
        host::setSink(host::Channel::Message, [this](std::u16string_view text) { said_ += text; });
    }
    ~InputTest() override {
        host::clearAnswers();
        host::setInputReader({});
        host::setSink(host::Channel::Message, {});
        host::closeDrawing();
    }

    /// The point that a typed text gives from a base; NaN when it is refused (the queue then ends).
    static std::array<double, 3> point(std::u16string_view typed, const double* base = nullptr) {
        ads_point out = {0, 0, 0};
        host::queueText(typed);
        if (acedGetPoint(base, u"P: ", out) != RTNORM) return {NAN, NAN, NAN};
        return {out[0], out[1], out[2]};
    }
    static void expectPoint(std::u16string_view typed, double x, double y, double z,
                            const double* base = nullptr) {
        const auto got = point(typed, base);
        EXPECT_NEAR(got[0], x, 1e-12);
        EXPECT_NEAR(got[1], y, 1e-12);
        EXPECT_NEAR(got[2], z, 1e-12);
    }
    static std::u16string keyword(const char16_t* words, std::u16string_view typed) {
        ACHAR text[133];
        acedInitGet(0, words);
        host::queueText(typed);
        return acedGetKword(u"K: ", text) == RTNORM ? text : u"<none>";
    }
    static void setNumber(const ACHAR* name, double value) {
        resbuf node = {nullptr, RTREAL, {value}};
        if (acedSetVar(name, &node) == RTNORM) return;
        node.restype = RTSHORT;
        node.resval.rint = static_cast<int16_t>(value);
        EXPECT_EQ(acedSetVar(name, &node), RTNORM);
    }
    bool told(std::u16string_view text) const { return said_.find(text) != std::u16string::npos; }

    std::u16string said_;
};

TEST_F(InputTest, points_as_people_type_them) {
    setNumber(u"ELEVATION", 7.0);
    expectPoint(u"1,2", 1, 2, 7);
    expectPoint(u"1,-2.5,3e1", 1, -2.5, 30);
    expectPoint(u"1'6,1/2", 18, 0.5, 7);
    expectPoint(u"5<90", 0, 5, 7);
    expectPoint(u"5<90,2", 0, 5, 2);
    expectPoint(u"10<0<30", 10 * std::sqrt(0.75), 0, 5);
    const ads_point base = {10, 20, 1};
    expectPoint(u"@3,4", 13, 24, 1, base);
    expectPoint(u"@3,4,5", 13, 24, 6, base);
    expectPoint(u"@5<180", 5, 20, 1, base);
    expectPoint(u"@", 10, 20, 1, base);
    expectPoint(u"*1,2", 1, 2, 0);
    for (const char16_t* bad : {u"1", u"1,", u"1,2,3,4", u"a,b", u"1<", u"1,2<3", u"@@1,2", u"*",
                                u"nan,1", u"1e999,0", u"1,2,", u"1<2<3<4"}) {
        EXPECT_TRUE(std::isnan(point(bad)[0])) << std::string(bad, bad + 3);
    }
    EXPECT_TRUE(told(u"Invalid point."));
}

TEST_F(InputTest, keywords_and_their_abbreviations) {
    EXPECT_EQ(keyword(u"Yes No", u"y"), u"Yes");
    EXPECT_EQ(keyword(u"Yes No", u"_NO"), u"No");
    EXPECT_EQ(keyword(u"LType LAyer", u"lt"), u"LType");
    EXPECT_EQ(keyword(u"LType LAyer", u"la"), u"LAyer");
    EXPECT_EQ(keyword(u"LType LAyer", u"l"), u"<none>");
    EXPECT_EQ(keyword(u"eXit", u"x"), u"eXit");
    EXPECT_EQ(keyword(u"eXit", u"exi"), u"eXit");
    EXPECT_EQ(keyword(u"eXit", u"e"), u"<none>");
    EXPECT_EQ(keyword(u"LTYPE,LT", u"lty"), u"LTYPE");
    EXPECT_EQ(keyword(u"LTYPE,LT", u"l"), u"<none>");
    EXPECT_EQ(keyword(u"Ja Nein _Yes No", u"j"), u"Yes");
    EXPECT_EQ(keyword(u"Ja Nein _Yes No", u"_n"), u"No");
    EXPECT_EQ(keyword(u"Ja Nein _Yes No", u"_ja"), u"<none>");
    // Of keywords that collide the first one goes; a whole word goes before an abbreviation.
    EXPECT_EQ(keyword(u"Red Remove", u"r"), u"Red");
    EXPECT_EQ(keyword(u"Polyline POly", u"poly"), u"POly");
    EXPECT_TRUE(told(u"Invalid option keyword."));
}

TEST_F(InputTest, keywords_hold_for_one_input_and_come_before_points) {
    ads_point out;
    acedInitGet(0, u"Close");
    host::queueText(u"C");
    EXPECT_EQ(acedGetPoint(nullptr, u"", out), RTKWORD);
    ACHAR text[256];
    EXPECT_EQ(acedGetInput(text), RTNORM);
    EXPECT_EQ(std::u16string(text), u"Close");
    host::queueText(u"C");
    EXPECT_EQ(acedGetPoint(nullptr, u"", out), RTCAN);  // refused, and then the queue is empty

    acedInitGet(RSG_OTHER, nullptr);
    host::queueText(u"anything");
    EXPECT_EQ(acedGetReal(u"", out), RTKWORD);
    acedGetInput(text);
    EXPECT_EQ(std::u16string(text), u"anything");
    EXPECT_EQ(acedInitGet(1024, u""), RTERROR);
}

TEST_F(InputTest, wrong_answers_are_told_and_asked_again) {
    int number = 0;
    acedInitGet(RSG_NONULL | RSG_NOZERO | RSG_NONEG, nullptr);
    for (const char16_t* answer : {u"", u"abc", u"1.5", u"0", u"-3", u"99999999999", u"7"})
        host::queueText(answer);
    EXPECT_EQ(acedGetInt(u"N: ", &number), RTNORM);
    EXPECT_EQ(number, 7);
    EXPECT_TRUE(told(u"Requires an integer value."));
    EXPECT_TRUE(told(u"Value must be positive and nonzero."));

    double real = 0.0;
    acedInitGet(RSG_NOZERO, nullptr);
    for (const char16_t* answer : {u"0", u"-2'6"})
        host::queueText(answer);
    EXPECT_EQ(acedGetReal(u"", &real), RTNORM);
    EXPECT_DOUBLE_EQ(real, -30.0);
    EXPECT_TRUE(told(u"Value must be nonzero."));
    host::queueEnter();
    EXPECT_EQ(acedGetReal(u"", &real), RTNONE);
    host::queueCancel();
    EXPECT_EQ(acedGetReal(u"", &real), RTCAN);
    EXPECT_EQ(acedGetReal(u"", &real), RTCAN);
}

TEST_F(InputTest, distances_and_angles_by_number_and_by_points) {
    double value = 0.0;
    const ads_point base = {1, 1, 0};
    host::queueText(u"4,5");
    EXPECT_EQ(acedGetDist(base, u"", &value), RTNORM);
    EXPECT_DOUBLE_EQ(value, 5.0);
    host::queueText(u"0,0");
    host::queueText(u"@3,4");
    EXPECT_EQ(acedGetDist(nullptr, u"", &value), RTNORM);
    EXPECT_DOUBLE_EQ(value, 5.0);
    host::queueText(u"1'");
    EXPECT_EQ(acedGetDist(nullptr, u"", &value), RTNORM);
    EXPECT_DOUBLE_EQ(value, 12.0);
    constexpr double kQuarter = 1.5707963267948966;
    for (const char16_t* typed : {u"90", u"90d0'0\"", u"100g", u"n", u"1.5707963267948966r"}) {
        host::queueText(typed);
        EXPECT_EQ(acedGetAngle(nullptr, u"", &value), RTNORM);
        EXPECT_NEAR(value, kQuarter, 1e-12);
    }
    host::queueText(u"1,3");
    EXPECT_EQ(acedGetAngle(base, u"", &value), RTNORM);
    EXPECT_NEAR(value, kQuarter, 1e-12);
}

TEST_F(InputTest, a_line_holds_several_answers_and_a_text_its_blanks) {
    std::vector<std::u16string> lines = {u"1,1 2,2  ", u"one two", u"three four", u"(list 1 2)"};
    size_t at = 0;
    host::setInputReader([&](std::u16string_view) -> host::InputLine {
        if (at == lines.size()) return {};
        return {host::InputLine::Kind::Text, lines[at++]};
    });
    ads_point out;
    EXPECT_EQ(acedGetPoint(nullptr, u"A: ", out), RTNORM);
    EXPECT_EQ(acedGetPoint(nullptr, u"B: ", out), RTNORM);
    EXPECT_EQ(out[0], 2.0);
    ACHAR text[133];
    EXPECT_EQ(acedGetString(1, u"", text), RTNORM);
    EXPECT_EQ(std::u16string(text), u"one two");
    EXPECT_EQ(acedGetString(0, u"", text), RTNORM);
    EXPECT_EQ(std::u16string(text), u"three");
    EXPECT_EQ(acedGetString(0, u"", text), RTNORM);
    EXPECT_EQ(std::u16string(text), u"four");
    EXPECT_EQ(acedGetPoint(nullptr, u"", out), RTNORM);  // Lisp may answer
    EXPECT_EQ(out[1], 2.0);
    EXPECT_EQ(acedGetString(0, u"", text), RTCAN);
    EXPECT_TRUE(told(u"A: 1,1\nB: 2,2\n"));
}

TEST_F(InputTest, a_long_text_is_cut_to_the_room_of_the_platform) {
    ACHAR text[133];
    host::queueText(std::u16string(500, u'x'));
    EXPECT_EQ(acedGetString(1, u"", text), RTNORM);
    EXPECT_EQ(std::u16string(text).size(), 132U);
}

// --- commands -----------------------------------------------------------------------------------

TEST_F(InputTest, commands_from_chains) {
    EXPECT_EQ(acedCommandS(RTSTR, u"_.SETVAR", RTSTR, u"OSMODE", RTSHORT, 5, RTNONE), RTNORM);
    resbuf value{};
    acedGetVar(u"OSMODE", &value);
    EXPECT_EQ(value.resval.rint, 5);
    EXPECT_EQ(acedCommandS(RTSTR, u"._setvar", RTSTR, u"OSMODE 6", RTNONE), RTNORM);
    acedGetVar(u"OSMODE", &value);
    EXPECT_EQ(value.resval.rint, 6);

    EXPECT_EQ(acedCommandS(RTSTR, u"nonsense", RTNONE), RTERROR);
    EXPECT_TRUE(told(u"Unknown command \"nonsense\"."));
    EXPECT_EQ(acedCommandS(RTSTR, u"setvar", RTNONE), RTCAN);
    EXPECT_TRUE(told(u"SETVAR: cancelled, it asked for more answers."));
    EXPECT_EQ(acedCommandS(RTSTR, u"u", RTSTR, u"1,1", RTNONE), RTERROR);
    EXPECT_TRUE(told(u"U: an answer too many: \"1,1\"."));
    EXPECT_EQ(acedCommandS(RTSTR, u"setvar", RTSTR, u"NOSUCHVAR", RTSTR, u"1", RTNONE), RTCAN);
    EXPECT_EQ(acedCommandS(9999, u"u", RTNONE), RTERROR);
}

TEST_F(InputTest, lisp_may_hand_the_answers_over_in_pieces) {
    const auto eval = [](const char16_t* text) { return host::evalLisp(text).value; };
    EXPECT_EQ(eval(u"(progn (command \"_.setvar\") (command \"OSMODE\")"
                   u"       (setq before (getvar \"OSMODE\")) (command (+ before 3))"
                   u"       (list before (getvar \"OSMODE\")))"),
              u"(0 3)");
    // What is left at the end of an expression asks the user.
    host::queueText(u"4");
    eval(u"(command \"_.setvar\" \"OSMODE\")");
    EXPECT_EQ(eval(u"(getvar \"OSMODE\")"), u"4");
    eval(u"(command \"_.setvar\" \"OSMODE\")");
    EXPECT_TRUE(told(u"SETVAR: cancelled, it asked for more answers."));
    // An error in the midst of it cancels the command.
    EXPECT_FALSE(host::evalLisp(u"(command \"_.setvar\" (car 1) 5)").ok());
    eval(u"(command \"_.setvar\" \"OSMODE\" pause)");
    host::queueText(u"6");
    eval(u"(command \"_.setvar\" \"OSMODE\" pause)");
    EXPECT_EQ(eval(u"(getvar \"OSMODE\")"), u"6");
    EXPECT_EQ(eval(u"(apply 'command (list \"_.setvar\" \"OSMODE\" 7))"), u"nil");
    EXPECT_EQ(eval(u"(mapcar 'command (list \"_.setvar\" \"OSMODE\" 8))"), u"(nil nil nil)");
    EXPECT_EQ(eval(u"(getvar \"OSMODE\")"), u"8");
}

TEST_F(InputTest, a_typed_line_is_a_command_with_its_first_answers) {
    host::queueText(u"9");
    EXPECT_TRUE(host::runCommandLine(u"setvar osmode"));
    EXPECT_TRUE(told(u"<0>: 9"));
    EXPECT_FALSE(host::runCommandLine(u"'setvar osmode"));
    EXPECT_TRUE(told(u"*Cancel*"));
    EXPECT_FALSE(host::runCommandLine(u"notthere 1"));
    EXPECT_TRUE(host::isCommand(u"_.UnDo"));
    EXPECT_FALSE(host::isCommand(u""));
}

}  // namespace
