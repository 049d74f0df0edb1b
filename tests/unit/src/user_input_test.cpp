/// Input from the user: keywords, their actions, the loops around the platform's input functions.
/// No coordinate service is there, so local points are those of the UCS.
#include <functional>

#include "host/drawing.h"
#include "host/input.h"
#include "host/testing.h"
#include "printed_test.h"

namespace {

using test::narrow;

/// Status of an action that only these tests know.
constexpr int kOwnStatus = 7;

int32_t storeFive(void* result, void*) {
    *static_cast<double*>(result) = 5.0;
    return KZ_INPUT_VALUE;
}

/// Counts its calls and asks again, but for the third time ends the question.
int32_t endAtThird(void*, void* calls) {
    return ++*static_cast<int*>(calls) < 3 ? KZ_INPUT_AGAIN : kOwnStatus;
}

int32_t pointAtTen(void* result, void*) {
    kz_Point_set(static_cast<kz_Point*>(result), 10.0, 20.0, 0.0);
    return KZ_INPUT_AGAIN;
}

int32_t writeText(void* result, void* text) {
    kz_Str_ncpy(static_cast<kz_Char*>(result), static_cast<const kz_Char*>(text), 255);
    return KZ_INPUT_VALUE;
}

struct ListDestroyer {
    void operator()(kz_KeyActionsList* list) const { kz_KeyActionsList_destroy(list); }
};
using Keys = std::unique_ptr<kz_KeyActionsList, ListDestroyer>;

class UserInput : public test::PrintedTest {
  protected:
    void SetUp() override {
        PrintedTest::SetUp();
        host::newDrawing();
        records_ = kz_Record_count();
    }
    void TearDown() override {
        EXPECT_FALSE(host::answersWait()) << "a question was not put";
        host::testing::clearFault();
        host::clearAnswers();
        EXPECT_EQ(kz_Record_count(), records_);
        host::closeDrawing();
        PrintedTest::TearDown();
    }

    /// Keywords that give a status and have no function.
    static Keys keys(std::initializer_list<std::pair<const kz_Char*, int>> nodes) {
        Keys list(kz_KeyActionsList_create());
        for (const auto& [key, status] : nodes)
            EXPECT_EQ(kz_KeyActionsList_append(list.get(), key, nullptr, nullptr, status, 0), 1);
        return list;
    }
    static std::string keyString(kz_KeyActionsList* list) {
        kz_Char* keys = kz_KeyActionsList_generateKeyString(list);
        const std::string text = keys != nullptr ? narrow(keys) : "<none>";
        kz_Free(keys);
        return text;
    }
    static void answer(std::initializer_list<std::u16string_view> texts) {
        for (const std::u16string_view text : texts)
            host::queueText(text);
    }
    /// A number asked for with these keywords, `status` as text in front.
    static std::string real(kz_KeyActionsList* list, int allow_none = 1) {
        double value = -1.0;
        const int status = kz_CAD_getReal(&value, KZ_T("Number: "), list, allow_none);
        return std::to_string(status) + " " + std::to_string(value);
    }
    static std::string at(const kz_Point& point) {
        return std::to_string(static_cast<int>(point.x)) + "," +
               std::to_string(static_cast<int>(point.y));
    }
    static size_t count(const std::string& text, const std::string& part) {
        size_t found = 0;
        for (size_t i = text.find(part); i != std::string::npos; i = text.find(part, i + 1))
            ++found;
        return found;
    }

    int64_t records_ = 0;
};

// --- lists ---------------------------------------------------------------------------------------

TEST_F(UserInput, ANodeOwnsItsKeyAndKnowsOneDefault) {
    std::u16string key = u"Side";
    int argument = 0;
    kz_KeyActionsNode* node =
        kz_KeyActionsNode_create(key.c_str(), storeFive, &argument, kOwnStatus, -12);
    key = u"gone";
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(narrow(node->key), "Side");
    EXPECT_EQ(node->func, storeFive);
    EXPECT_EQ(node->args, &argument);
    EXPECT_EQ(node->status, kOwnStatus);
    EXPECT_EQ(node->isDefault, 1);
    kz_KeyActionsNode_destroy(node);
    kz_KeyActionsNode_destroy(nullptr);
    EXPECT_EQ(kz_KeyActionsNode_create(nullptr, storeFive, nullptr, 0, 0), nullptr);
}

TEST_F(UserInput, SearchesLookFromTheStartAndLeaveThePositionThere) {
    const Keys list = keys({{KZ_T("Yes"), 1}, {KZ_T("No"), 2}, {KZ_T("yes"), 3}});
    kz_KeyActionsList_end(list.get());
    EXPECT_EQ(kz_KeyActionsList_find(list.get(), KZ_T("YES"))->status, 1);
    EXPECT_EQ(kz_KeyActionsList_search(list.get(), KZ_T("no")), 1);
    EXPECT_EQ(narrow(kz_KeyActionsList_getCurrKey(list.get())), "No");
    EXPECT_EQ(kz_KeyActionsList_getCurrFunc(list.get()), nullptr);
    EXPECT_EQ(kz_KeyActionsList_getCurrArgs(list.get()), nullptr);
    for (const kz_Char* unknown : {KZ_T("N"), static_cast<const kz_Char*>(nullptr)}) {
        EXPECT_EQ(kz_KeyActionsList_find(list.get(), unknown), nullptr);
        EXPECT_EQ(kz_KeyActionsList_search(list.get(), unknown), -1);
        EXPECT_EQ(kz_KeyActionsList_eol(list.get()), 1);
        EXPECT_EQ(kz_KeyActionsList_getCurrKey(list.get()), nullptr);
    }
    EXPECT_EQ(kz_KeyActionsList_getDefault(list.get()), nullptr);
    kz_KeyActionsList_append(list.get(), KZ_T("A"), nullptr, nullptr, 4, 5);
    kz_KeyActionsList_append(list.get(), KZ_T("B"), nullptr, nullptr, 5, 1);
    EXPECT_EQ(kz_KeyActionsList_getDefault(list.get())->status, 4);
    EXPECT_EQ(narrow(kz_KeyActionsList_getCurrKey(list.get())), "A");
}

TEST_F(UserInput, ACopySurvivesItsOriginal) {
    Keys list = keys({{KZ_T("Yes"), 1}, {KZ_T("No"), 2}});
    kz_KeyActionsList_start(list.get());
    const Keys copy(kz_KeyActionsList_copy(list.get()));
    EXPECT_EQ(kz_KeyActionsList_eol(list.get()), 1);
    EXPECT_EQ(kz_KeyActionsList_start(list.get()), 1);
    EXPECT_EQ(kz_KeyActionsList_delCurr(list.get()), 1);
    EXPECT_EQ(keyString(list.get()), "No ");
    EXPECT_EQ(kz_KeyActionsList_delAll(list.get()), 1);
    EXPECT_EQ(keyString(list.get()), "");
    list.reset();
    EXPECT_EQ(keyString(copy.get()), "Yes No ");
    EXPECT_EQ(kz_KeyActionsList_length(copy.get()), 2);
    EXPECT_EQ(kz_KeyActionsList_end(copy.get()), 1);
    EXPECT_EQ(kz_KeyActionsList_getCurr(copy.get())->status, 2);
    EXPECT_EQ(kz_KeyActionsList_prev(copy.get()), 1);
    EXPECT_EQ(kz_KeyActionsList_next(copy.get()), 1);
    EXPECT_EQ(kz_KeyActionsList_next(copy.get()), 0);
}

TEST_F(UserInput, NoListHasNoKeywordsAndCannotBeChanged) {
    EXPECT_EQ(kz_KeyActionsList_append(nullptr, KZ_T("A"), nullptr, nullptr, 0, 0), 0);
    EXPECT_EQ(kz_KeyActionsList_copy(nullptr), nullptr);
    EXPECT_EQ(kz_KeyActionsList_destroy(nullptr), 0);
    EXPECT_EQ(kz_KeyActionsList_delAll(nullptr), 0);
    EXPECT_EQ(kz_KeyActionsList_find(nullptr, KZ_T("A")), nullptr);
    EXPECT_EQ(kz_KeyActionsList_search(nullptr, KZ_T("A")), -1);
    EXPECT_EQ(kz_KeyActionsList_getDefault(nullptr), nullptr);
    EXPECT_EQ(kz_KeyActionsList_generateKeyString(nullptr), nullptr);
    EXPECT_EQ(kz_KeyActionsList_executeDefaultAction(nullptr, nullptr), KZ_INPUT_ENTER);
    EXPECT_EQ(kz_KeyActionsList_executeAction(nullptr, KZ_T("A"), nullptr), KZ_INPUT_AGAIN);
    EXPECT_EQ(printed(), "\nInvalid keyword.");
}

TEST_F(UserInput, AKeyStringEndsInABlankAndFitsItsBuffer) {
    const std::u16string longest(255, u'K');
    const Keys list = keys({{longest.c_str(), 1}, {KZ_T("Y"), 1}});
    EXPECT_EQ(keyString(list.get()).size(), 258U);
    // 511 with the blanks fit, 512 don't.
    const std::u16string rest(252, u'L');
    kz_KeyActionsList_append(list.get(), rest.c_str(), nullptr, nullptr, 0, 0);
    EXPECT_EQ(keyString(list.get()).size(), 511U);
    kz_KeyActionsList_end(list.get());
    kz_KeyActionsList_delCurr(list.get());
    kz_KeyActionsList_append(list.get(), (rest + u"L").c_str(), nullptr, nullptr, 0, 0);
    traceAt(0);
    EXPECT_EQ(keyString(list.get()), "<none>");
    EXPECT_NE(traced().find("The keywords are too long."), std::string::npos);
    const Keys too_long = keys({{(longest + u"K").c_str(), 1}});
    EXPECT_EQ(keyString(too_long.get()), "<none>");
    EXPECT_EQ(kz_KeyActionsList_initKeywords(too_long.get(), 0), RTERROR);
}

TEST_F(UserInput, KeywordsCanBePreparedForTheCallersOwnInput) {
    const Keys list = keys({{KZ_T("Yes"), 1}, {KZ_T("No"), 2}});
    kz_Char text[133] = KZ_T("");
    EXPECT_EQ(kz_KeyActionsList_initKeywords(list.get(), RSG_NONULL), RTNORM);
    answer({u"", u"n"});
    EXPECT_EQ(acedGetKword(KZ_T(""), text), RTNORM);
    EXPECT_EQ(narrow(text), "No");
    EXPECT_EQ(kz_KeyActionsList_initKeywords(nullptr, 0), RTNORM);
    EXPECT_EQ(kz_KeyActionsList_initKeywords(list.get(), 1 << 14), RTERROR);
}

// --- values --------------------------------------------------------------------------------------

TEST_F(UserInput, ValuesAreStoredAsTheirKindWantsThem) {
    double value = 0.0;
    answer({u"90"});
    EXPECT_EQ(kz_CAD_getAngle(&value, KZ_T("Angle: "), nullptr, nullptr, 1), KZ_INPUT_VALUE);
    EXPECT_EQ(value, 90.0);
    EXPECT_NE(printed().find("Angle: 90"), std::string::npos);
    const kz_Point base = {10.0, 0.0, 0.0};
    host::queuePoint(10.0, 4.0);
    EXPECT_EQ(kz_CAD_getAngle(&value, nullptr, nullptr, &base, 1), KZ_INPUT_VALUE);
    EXPECT_EQ(value, 90.0);
    host::queuePoint(13.0, 4.0);
    EXPECT_EQ(kz_CAD_getDistance(&value, nullptr, nullptr, &base, 1), KZ_INPUT_VALUE);
    EXPECT_EQ(value, 5.0);
    answer({u"2.5"});
    EXPECT_EQ(real(nullptr), "-4 2.500000");
    kz_Point point = {};
    answer({u"@3,4"});
    EXPECT_EQ(kz_CAD_getPoint(&point, nullptr, nullptr, &base, 1), KZ_INPUT_VALUE);
    EXPECT_EQ(at(point), "13,4");
    answer({u"@1,1"});
    EXPECT_EQ(kz_CAD_getPoint(nullptr, nullptr, nullptr, &point, 1), KZ_INPUT_VALUE);
}

TEST_F(UserInput, EnterRunsTheFirstDefaultWhereverItStands) {
    const Keys list = keys({{KZ_T("Yes"), 1}});
    answer({u""});
    EXPECT_EQ(real(list.get()), "-5 -1.000000");
    kz_KeyActionsList_append(list.get(), KZ_T("Five"), storeFive, nullptr, 0, 1);
    kz_KeyActionsList_append(list.get(), KZ_T("Never"), nullptr, nullptr, 1, 1);
    EXPECT_EQ(keyString(list.get()), "Yes Five Never ");
    answer({u""});
    EXPECT_EQ(real(list.get()), "-4 5.000000");
    // Where Enter alone is refused the platform asks again.
    answer({u"", u"3"});
    EXPECT_EQ(real(list.get(), 0), "-4 3.000000");
    answer({u""});
    EXPECT_EQ(real(nullptr), "-5 -1.000000");
}

TEST_F(UserInput, AnActionAsksAgainOrEndsTheQuestionWithItsStatus) {
    int calls = 0;
    const Keys list = keys({{KZ_T("Cancel"), KZ_INPUT_CANCEL}, {KZ_T("Own"), kOwnStatus}});
    kz_KeyActionsList_append(list.get(), KZ_T("Count"), endAtThird, &calls, 0, 0);
    answer({u"c", u"c", u"C", u"count"});
    EXPECT_EQ(real(list.get()), "-2 -1.000000");
    host::clearAnswers();
    printed();
    answer({u"count", u"COUNT", u"Count"});
    EXPECT_EQ(real(list.get()), "7 -1.000000");
    EXPECT_EQ(calls, 3);
    EXPECT_EQ(count(printed(), "Number: "), 3U);
    answer({u"own"});
    EXPECT_EQ(real(list.get()), "7 -1.000000");
}

TEST_F(UserInput, EveryInputFunctionRunsTheSameLoop) {
    const Keys list = keys({{KZ_T("Again"), KZ_INPUT_AGAIN}, {KZ_T("Own"), kOwnStatus}});
    const std::pair<const char*, std::function<int()>> functions[] = {
        {"acedGetPoint",
         [&] { return kz_CAD_getPoint(nullptr, KZ_T("Q"), list.get(), nullptr, 1); }},
        {"acedGetAngle",
         [&] { return kz_CAD_getAngle(nullptr, KZ_T("Q"), list.get(), nullptr, 1); }},
        {"acedGetDist",
         [&] { return kz_CAD_getDistance(nullptr, KZ_T("Q"), list.get(), nullptr, 1); }},
        {"acedGetReal", [&] { return kz_CAD_getReal(nullptr, KZ_T("Q"), list.get(), 1); }},
    };
    for (const auto& [call, ask] : functions) {
        answer({u"again", u"own"});
        EXPECT_EQ(ask(), kOwnStatus) << call;
        // A status that means nothing here asks again, an error ends the question.
        host::testing::failCall(call, 1, RTREJ);
        answer({u"own"});
        EXPECT_EQ(ask(), kOwnStatus) << call;
        host::testing::failCall(call, 1, RTERROR);
        EXPECT_EQ(ask(), KZ_INPUT_CANCEL) << call;
        host::queueCancel();
        EXPECT_EQ(ask(), KZ_INPUT_CANCEL) << call;
        host::testing::failCall("acedGetInput", 1, RTERROR);
        printed();
        answer({u"own", u"own"});
        EXPECT_EQ(ask(), kOwnStatus) << call;
        EXPECT_EQ(count(printed(), "\nInvalid keyword."), 1U) << call;
        host::testing::clearFault();
    }
}

TEST_F(UserInput, OnlyThePointFunctionLooksAtTheAnswerOfInitGet) {
    host::testing::failCall("acedInitGet", 1, RTERROR);
    EXPECT_EQ(kz_CAD_getPoint(nullptr, nullptr, nullptr, nullptr, 1), KZ_INPUT_CANCEL);
    host::testing::failCall("acedInitGet", 1, RTREJ);
    answer({u"1,1"});
    EXPECT_EQ(kz_CAD_getPoint(nullptr, nullptr, nullptr, nullptr, 1), KZ_INPUT_VALUE);
    host::testing::failCall("acedInitGet", 1, RTERROR);
    answer({u"1"});
    EXPECT_EQ(real(nullptr), "-4 1.000000");
}

TEST_F(UserInput, TheKeyStringOfAPointIsTraced) {
    const Keys list = keys({{KZ_T("100%s"), 1}, {KZ_T("No"), kOwnStatus}});
    traceAt(2, 0x1000);
    answer({u"no"});
    EXPECT_EQ(kz_CAD_getPoint(nullptr, nullptr, list.get(), nullptr, 1), kOwnStatus);
    EXPECT_NE(traced().find("100%s No "), std::string::npos);
    traceAt(1, 0x1000);
    answer({u"no"});
    EXPECT_EQ(kz_CAD_getPoint(nullptr, nullptr, list.get(), nullptr, 1), kOwnStatus);
    EXPECT_EQ(traced(), "");
}

TEST_F(UserInput, WhatDoesNotFitIsRefusedBeforeAnythingIsAsked) {
    const std::u16string fits(255, u'p');
    const std::u16string prompt(256, u'p');
    const Keys too_long = keys({{std::u16string(256, u'k').c_str(), 1}});
    kz_Char text[256] = KZ_T("untouched");
    traceAt(0, 0x1000);
    for (const bool by_prompt : {true, false}) {
        const kz_Char* question = by_prompt ? prompt.c_str() : KZ_T("");
        kz_KeyActionsList* list = by_prompt ? nullptr : too_long.get();
        EXPECT_EQ(kz_CAD_getPoint(nullptr, question, list, nullptr, 1), KZ_INPUT_CANCEL);
        EXPECT_EQ(kz_CAD_getAngle(nullptr, question, list, nullptr, 1), KZ_INPUT_CANCEL);
        EXPECT_EQ(kz_CAD_getDistance(nullptr, question, list, nullptr, 1), KZ_INPUT_CANCEL);
        EXPECT_EQ(kz_CAD_getReal(nullptr, question, list, 1), KZ_INPUT_CANCEL);
        EXPECT_EQ(kz_CAD_getWindow(nullptr, nullptr, 1, question, nullptr, list, 1),
                  KZ_INPUT_CANCEL);
        EXPECT_EQ(kz_CAD_getWindow(nullptr, nullptr, 1, nullptr, question, list, 1),
                  KZ_INPUT_CANCEL);
        EXPECT_EQ(kz_CAD_getString(text, question, list, 1), 0);
        const std::string why =
            by_prompt ? "The prompt is too long." : "The keywords are too long.";
        EXPECT_EQ(count(traced(), why), 7U);
    }
    EXPECT_EQ(narrow(text), "untouched");
    EXPECT_EQ(printed(), "");
    answer({u"x"});
    EXPECT_EQ(kz_CAD_getString(text, fits.c_str(), nullptr, 1), 1);
    EXPECT_EQ(count(printed(), narrow(fits.c_str())), 1U);
}

// --- windows -------------------------------------------------------------------------------------

TEST_F(UserInput, AWindowStartsAtTheGivenPointOrAtTheOrigin) {
    kz_Point first = {10.0, 20.0, 0.0};
    kz_Point second = {};
    answer({u"@3,4"});
    EXPECT_EQ(kz_CAD_getWindow(&first, &second, 0, nullptr, KZ_T("Q"), nullptr, 1), KZ_INPUT_VALUE);
    EXPECT_EQ(at(second), "13,24");
    answer({u"@3,4"});
    EXPECT_EQ(kz_CAD_getWindow(nullptr, &second, 0, nullptr, KZ_T("Q"), nullptr, 1),
              KZ_INPUT_VALUE);
    EXPECT_EQ(at(second), "3,4");
    answer({u"1,1", u"@2,2"});
    EXPECT_EQ(kz_CAD_getWindow(&first, &second, 1, KZ_T("A"), KZ_T("B"), nullptr, 1),
              KZ_INPUT_VALUE);
    EXPECT_EQ(at(first) + " " + at(second), "1,1 3,3");
    answer({u"5,5", u"@2,2"});
    EXPECT_EQ(kz_CAD_getWindow(nullptr, &second, 1, KZ_T("A"), KZ_T("B"), nullptr, 1),
              KZ_INPUT_VALUE);
    EXPECT_EQ(at(second), "7,7");
}

TEST_F(UserInput, ACancelOfAWindowLeadsToItsFirstPromptAndThereOut) {
    kz_Point second = {};
    answer({u"1,1"});
    host::queueCancel();
    answer({u"2,2", u"@1,1"});
    EXPECT_EQ(kz_CAD_getWindow(nullptr, &second, 1, KZ_T("A: "), KZ_T("B: "), nullptr, 1),
              KZ_INPUT_VALUE);
    EXPECT_EQ(at(second), "3,3");
    EXPECT_EQ(count(printed(), "A: "), 2U);
    host::queueCancel();
    EXPECT_EQ(kz_CAD_getWindow(nullptr, &second, 1, nullptr, nullptr, nullptr, 1), KZ_INPUT_CANCEL);
    // Without a first prompt the second one is put once more.
    host::queueCancel();
    answer({u"4,4"});
    EXPECT_EQ(kz_CAD_getWindow(nullptr, &second, 0, nullptr, nullptr, nullptr, 1), KZ_INPUT_VALUE);
    EXPECT_EQ(at(second), "4,4");
    host::queueCancel();
    EXPECT_EQ(kz_CAD_getWindow(nullptr, &second, 0, nullptr, nullptr, nullptr, 1), KZ_INPUT_CANCEL);
    host::queueCancel();
    EXPECT_EQ(kz_CAD_getWindow(nullptr, nullptr, 0, nullptr, nullptr, nullptr, 1), KZ_INPUT_VALUE);
}

TEST_F(UserInput, ActionsOfAWindowRunOnThePointThatWasAskedFor) {
    const Keys list = keys({{KZ_T("Own"), kOwnStatus}, {KZ_T("Cancel"), KZ_INPUT_CANCEL}});
    kz_KeyActionsList_append(list.get(), KZ_T("Ten"), pointAtTen, nullptr, 0, 1);
    kz_Point first = {1.0, 1.0, 0.0};
    kz_Point second = {2.0, 2.0, 0.0};
    // What the action writes is the corner; its asking again stands until there is an answer.
    answer({u"ten", u"@3,4"});
    EXPECT_EQ(kz_CAD_getWindow(&first, &second, 1, nullptr, nullptr, list.get(), 1),
              KZ_INPUT_VALUE);
    EXPECT_EQ(at(first) + " " + at(second), "10,20 13,24");
    answer({u"own"});
    host::queueCancel();
    EXPECT_EQ(kz_CAD_getWindow(&first, &second, 1, nullptr, nullptr, list.get(), 1), kOwnStatus);
    answer({u"own", u"1,1"});
    EXPECT_EQ(kz_CAD_getWindow(&first, &second, 1, nullptr, nullptr, list.get(), 1),
              KZ_INPUT_VALUE);
    // At the second prompt keywords are known only where it is the first one put.
    answer({u"cancel"});
    EXPECT_EQ(kz_CAD_getWindow(&first, &second, 0, nullptr, nullptr, list.get(), 1),
              KZ_INPUT_CANCEL);
    answer({u"1,1", u"cancel", u"5,5"});
    printed();
    EXPECT_EQ(kz_CAD_getWindow(&first, &second, 1, nullptr, nullptr, list.get(), 1),
              KZ_INPUT_VALUE);
    EXPECT_EQ(count(printed(), "Invalid point."), 1U);
    // Without a first point there is nothing that an action could run on.
    answer({u"own", u"5,5"});
    EXPECT_EQ(kz_CAD_getWindow(nullptr, &second, 1, nullptr, nullptr, list.get(), 1),
              KZ_INPUT_VALUE);
}

// --- texts ---------------------------------------------------------------------------------------

TEST_F(UserInput, ATextKeepsItsBlanksAndIsCutAtTheLength) {
    struct {
        kz_Char text[6] = KZ_T("-----");
        kz_Char behind = 'X';
    } buffer;
    kz_Char text[256] = KZ_T("");
    answer({u"two words", u"two words", u"two words", u""});
    EXPECT_EQ(kz_CAD_getString(text, KZ_T("Q"), nullptr, 1), 1);
    EXPECT_EQ(narrow(text), "two words");
    EXPECT_EQ(kz_CAD_getStringWithLength(buffer.text, 6, nullptr, nullptr, 1), 1);
    EXPECT_EQ(narrow(buffer.text), "two w");
    EXPECT_EQ(buffer.behind, 'X');
    EXPECT_EQ(kz_CAD_getStringWithLength(buffer.text, 0, nullptr, nullptr, 1), 1);
    EXPECT_EQ(narrow(buffer.text), "two w");
    EXPECT_EQ(kz_CAD_getString(text, nullptr, nullptr, 0), 1);
    EXPECT_EQ(narrow(text), "");
    const std::u16string longer(200, u'x');
    answer({longer, longer});
    EXPECT_EQ(kz_CAD_getString(text, nullptr, nullptr, 1), 1);
    EXPECT_EQ(kz_Str_len(text), 132U);
    EXPECT_EQ(kz_CAD_getString(nullptr, nullptr, nullptr, 1), 1);
    host::queueCancel();
    EXPECT_EQ(kz_CAD_getString(text, nullptr, nullptr, 1), 0);
    host::testing::failCall("acedGetString", 1, RTREJ);
    answer({u"again"});
    EXPECT_EQ(kz_CAD_getString(text, nullptr, nullptr, 1), 1);
}

TEST_F(UserInput, WithKeywordsATextIsOneOfThem) {
    kz_Char text[256] = KZ_T("untouched");
    const Keys list = keys({{KZ_T("One"), 1}, {KZ_T("Value"), KZ_INPUT_VALUE}});
    answer({u"free text", u"one"});
    EXPECT_EQ(kz_CAD_getString(text, nullptr, list.get(), 1), 1);
    EXPECT_NE(printed().find("Invalid option keyword."), std::string::npos);
    answer({u"value"});
    EXPECT_EQ(kz_CAD_getString(text, nullptr, list.get(), 1), KZ_INPUT_VALUE);
    answer({u""});
    EXPECT_EQ(kz_CAD_getString(text, nullptr, list.get(), 1), KZ_INPUT_ENTER);
    EXPECT_EQ(narrow(text), "untouched");
    kz_Char written[] = KZ_T("written");
    kz_KeyActionsList_append(list.get(), KZ_T("Two"), writeText, written, 0, 1);
    answer({u"", u"one"});
    EXPECT_EQ(kz_CAD_getString(text, nullptr, list.get(), 1), KZ_INPUT_VALUE);
    EXPECT_EQ(narrow(text), "written");
    EXPECT_EQ(kz_CAD_getString(text, nullptr, list.get(), 0), 1);
    host::testing::failCall("acedGetKword", 1, RTREJ);
    answer({u"one"});
    EXPECT_EQ(kz_CAD_getString(text, nullptr, list.get(), 1), 1);
    host::queueCancel();
    EXPECT_EQ(kz_CAD_getString(text, nullptr, list.get(), 1), 0);
    // A list without keywords does not keep anybody from typing.
    const Keys empty = keys({});
    answer({u"free text"});
    EXPECT_EQ(kz_CAD_getString(text, nullptr, empty.get(), 1), 1);
    EXPECT_EQ(narrow(text), "free text");
}

// --- what is made of points ----------------------------------------------------------------------

TEST_F(UserInput, VectorsComeFromAPickedPoint) {
    const kz_Point base = {1.0, 1.0, 0.0};
    const kz_Vector reference = {5.0, 0.0, 0.0};
    const kz_Vector none = {};
    kz_Vector vector = {};
    host::queuePoint(4.0, 5.0);
    EXPECT_EQ(kz_CAD_getVector(&vector, &base, KZ_T("Q")), 1);
    EXPECT_EQ(vector.x * 10 + vector.y, 34.0);
    host::queuePoint(4.0, -5.0);
    EXPECT_EQ(kz_CAD_getOrthoVector(&vector, &base, &reference, KZ_T("Q")), 1);
    EXPECT_NEAR(vector.x, 0.0, 1e-12);
    EXPECT_NEAR(vector.y, -1.0, 1e-12);
    host::queuePoint(4.0, 1.0);
    EXPECT_EQ(kz_CAD_getOrthoVector(&vector, &base, &reference, KZ_T("Q")), 0);
    host::queuePoint(4.0, 5.0);
    EXPECT_EQ(kz_CAD_getOrthoVector(&vector, &base, &none, KZ_T("Q")), 0);
    host::queueCancel();
    EXPECT_EQ(kz_CAD_getOrthoVector(&vector, &base, &reference, KZ_T("Q")), 0);
    host::queueCancel();
    EXPECT_EQ(kz_CAD_getVector(&vector, &base, KZ_T("Q")), 0);
    answer({u"", u"1,2"});  // Enter alone is refused
    EXPECT_EQ(kz_CAD_getVector(&vector, &base, KZ_T("Q")), 1);
    EXPECT_EQ(kz_CAD_getVector(&vector, nullptr, KZ_T("Q")), 0);
    EXPECT_EQ(kz_CAD_getOrthoVector(&vector, nullptr, &reference, KZ_T("Q")), 0);
    EXPECT_EQ(kz_CAD_getOrthoVector(&vector, &base, nullptr, KZ_T("Q")), 0);
}

TEST_F(UserInput, APointThatNothingCatchesStays) {
    const kz_Point point = {3.0, 4.0, 5.0};
    kz_Point out = {};
    for (const kz_Char* modes : {KZ_T("_end,_mid"), KZ_T(""), KZ_T(" ;,")}) {
        out = {};
        EXPECT_EQ(kz_CAD_snapPoint(&out, &point, modes), 0);
        EXPECT_EQ(kz_Point_equal(&out, &point), 1);
    }
    EXPECT_EQ(kz_CAD_snapPoint(nullptr, &point, KZ_T("_end")), 0);
    EXPECT_EQ(kz_CAD_snapPoint(&out, nullptr, KZ_T("_end")), 0);
    EXPECT_EQ(kz_CAD_snapPoint(&out, &point, nullptr), 0);
}

TEST_F(UserInput, TextsAreShownAsFormatsOrAsTheyStand) {
    kz_CAD_print(KZ_T("100%% of %s\n"));
    EXPECT_EQ(printed(), "100% of %s\n");
    kz_CAD_prompt(KZ_T("100%% of %s\n"));
    EXPECT_EQ(printed(), "100%% of %s\n");
    kz_CAD_print(nullptr);
    kz_CAD_prompt(nullptr);
    EXPECT_EQ(printed(), "");
    EXPECT_EQ(kz_CAD_displayGraphicsScreen(), 1);
    EXPECT_EQ(kz_CAD_displayTextScreen(), 1);
}

TEST_F(UserInput, WithoutMemoryNothingIsAskedAndNothingIsLost) {
    const Keys list = keys({{KZ_T("Yes"), 1}, {KZ_T("No"), 2}});
    for (size_t nth = 1; nth < 20; ++nth) {
        kz_Malloc_failFrom(nth);
        const Keys copy(kz_KeyActionsList_copy(list.get()));
        kz_Malloc_failFrom(0);
        if (copy == nullptr) continue;
        EXPECT_EQ(keyString(copy.get()), "Yes No ");
        EXPECT_GT(nth, 4U);
        break;
    }
    kz_Malloc_failFrom(1);
    EXPECT_EQ(kz_CAD_getReal(nullptr, nullptr, list.get(), 1), KZ_INPUT_CANCEL);
    EXPECT_EQ(kz_KeyActionsList_initKeywords(list.get(), 0), RTERROR);
    const kz_Point point = {};
    kz_Point out = {};
    EXPECT_EQ(kz_CAD_snapPoint(&out, &point, KZ_T("_end")), 0);
    kz_Malloc_failFrom(0);
}

}  // namespace
