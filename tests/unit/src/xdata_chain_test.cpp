/// The XDATA field store on chains, without a drawing.
#include "chain_text.h"

namespace {

using test::Arguments;
using test::chain;
using test::ChainTest;
using test::show;
using test::take;

class XDataChain : public ChainTest {
  protected:
    static constexpr const char* kTwoFields =
        "1001:APP 1002:{ 1000:FLAG 1070:2 1002:} 1002:{ 1000:ENDS 1010:0,0,0 1010:5,0,0 1002:}";

    static kz_FldList* listOf(const std::string& form) {
        Arguments arguments(form);
        return kz_FldList_fromRb(&arguments.at, 0);
    }

    /// Writes the fields of a Lisp form into a chain and shows it.
    static std::string write(const std::string& nodes, const std::string& form, int clear = 0,
                             int expected = 1) {
        resbuf* data = chain(nodes);
        kz_FldList* list = listOf(form);
        EXPECT_EQ(kz_XData_fromFldList(data, list, clear), expected);
        kz_FldList_destroy(list);
        return take(data);
    }

    /// Fills a request with the values of a chain and shows it.
    static std::string update(const std::string& nodes, const std::string& request) {
        const Arguments data(nodes);
        kz_FldList* list = listOf(request);
        EXPECT_EQ(kz_XData_updateFldList(data.at, list), 1);
        return take(list);
    }

    static std::string part(const std::string& nodes, const kz_Char* app, int expected) {
        resbuf* data = chain(nodes);
        EXPECT_EQ(kz_XData_getAppXData(&data, app), expected);
        return take(data);
    }
};

TEST_F(XDataChain, FieldsAreFoundByNameWithoutRegardToCase) {
    const Arguments data("1001:APP 1002:{ 1000:A 1000:B 1002:} 1002:{ 1070:1 1002:} 1002:{ 1000:b");
    resbuf* found = nullptr;
    EXPECT_EQ(kz_Xdata_findField(&found, u"B", data.at), 1);
    EXPECT_EQ(show(found), "1000:b") << "a value is no name";
    EXPECT_EQ(kz_Xdata_findField(&found, u"C", data.at), 0);
    EXPECT_EQ(kz_Xdata_findField(&found, nullptr, data.at), 0);
    EXPECT_EQ(kz_Xdata_findField(&found, u"B", nullptr), 0);
}

TEST_F(XDataChain, ANewFieldGoesLastAndAnOldOneKeepsItsPlace) {
    EXPECT_EQ(write("1001:APP", "( ( \"flag\" 2 ) ( \"ends\" <0,0,0> <5,0,0> ) )"), kTwoFields);
    EXPECT_EQ(write(kTwoFields, "( ( \"new\" \"x\" ) ( \"flag\" 7L 8 ) )"),
              "1001:APP 1002:{ 1000:FLAG 1071:7 1070:8 1002:} "
              "1002:{ 1000:ENDS 1010:0,0,0 1010:5,0,0 1002:} 1002:{ 1000:NEW 1000:x 1002:}");
    EXPECT_EQ(write(kTwoFields, "( ( \"ends\" 1 ) ( \"new\" 2 ) )"),
              "1001:APP 1002:{ 1000:FLAG 1070:2 1002:} 1002:{ 1000:ENDS 1070:1 1002:} "
              "1002:{ 1000:NEW 1070:2 1002:}");
    EXPECT_EQ(write(kTwoFields, "( \"u\" )", 1), "1001:APP 1002:{ 1000:U 1002:}");
    EXPECT_EQ(write(kTwoFields, "( )", 1), "1001:APP");
}

TEST_F(XDataChain, ADamagedGroupIsRepairedOrRefused) {
    EXPECT_EQ(write("1001:APP 1002:{ 1000:A 1070:1", "( ( \"a\" 2 ) )"),
              "1001:APP 1002:{ 1000:A 1070:2 1002:}");
    EXPECT_EQ(write("1001:APP 1002:{ 1000:A", "( ( \"a\" 2 ) ( \"b\" 3 ) )", 0, 0),
              "1001:APP 1002:{ 1000:A");
    EXPECT_EQ(kz_XData_fromFldList(nullptr, nullptr, 0), 0);
}

TEST_F(XDataChain, AnUnwritableFieldFailsAndKeepsTheRestOfTheChainTogether) {
    resbuf* data = chain(kTwoFields);
    kz_FldList* list = listOf("( ( \"flag\" 1 ) ( \"new\" 1 ) )");
    kz_FldList_start(list);
    kz_FldList_curr(list)->type = 'Q';
    EXPECT_EQ(kz_XData_fromFldList(data, list, 0), 0);
    kz_FldList_start(list);
    kz_FldList_curr(list)->type = 'I';
    kz_FldList_destroy(list);
    EXPECT_EQ(take(data),
              "1001:APP 1002:{ 1000:FLAG 1002:} "
              "1002:{ 1000:ENDS 1010:0,0,0 1010:5,0,0 1002:}");
}

TEST_F(XDataChain, ARequestIsFilledAndLosesWhatIsMissing) {
    traceAt(2);
    EXPECT_EQ(update(kTwoFields, "( \"ends\" \"nosuch\" ( \"flag\" \"old\" ) )"),
              "ENDS:V[P=0,0,0 P=5,0,0] FLAG:I=2");
    EXPECT_EQ(traced(), "kz_XData_updateFldList - field 'NOSUCH' not found.");
    EXPECT_EQ(update("1001:APP 1002:{ 1000:A 1002:}", "( ( \"a\" 9 ) )"), "A:I=9")
        << "a field without values keeps what the request held";
    EXPECT_EQ(update("1001:APP 1002:{ 1000:A 1011:1,0,0 1012:2,0,0 1013:3,0,0 1014:4,0,0 1002:}",
                     "( \"a\" )"),
              "A:V[M=1,0,0 D=2,0,0 O=3,0,0]");
    EXPECT_EQ(
        update("1001:APP 1002:{ 1000:A 1070:1 1002:} 1002:{ 1000:A 1070:2 1002:}", "( \"a\" )"),
        "A:I=1")
        << "by name the first group counts";
}

TEST_F(XDataChain, ARequestThatNamesAFieldTwiceComesToItsEnd) {
    kz_FldList* list = kz_FldList_create(nullptr, 0, nullptr, 0);
    kz_FldList_appInt(list, u"FLAG", 1);
    kz_FldList_appInt(list, u"FLAG", 1);
    const Arguments data(kTwoFields);
    EXPECT_EQ(kz_XData_updateFldList(data.at, list), 1);
    EXPECT_EQ(take(list), "FLAG:I=2 FLAG:I=1");
}

TEST_F(XDataChain, OneApplicationIsCutOut) {
    const std::string all =
        "0:LINE 5:2F -3: 1001:ONE 1070:1 1001:TWO 1070:2 1070:3 1001:THREE 1070:4";
    EXPECT_EQ(part(all, u"two", 1), "1001:TWO 1070:2 1070:3");
    EXPECT_EQ(part(all, u"ONE", 1), "1001:ONE 1070:1");
    EXPECT_EQ(part(all, u"THREE", 1), "1001:THREE 1070:4");
    EXPECT_EQ(part(all, u"FOUR", 0), "");
    EXPECT_EQ(part("", u"ONE", 1), "");
    EXPECT_EQ(part(all, nullptr, 1), "1001:ONE 1070:1 1001:TWO 1070:2 1070:3 1001:THREE 1070:4");
    EXPECT_EQ(part("0:LINE 5:2F", nullptr, 0), "");
    EXPECT_EQ(kz_XData_getAppXData(nullptr, u"ONE"), 0);
}

TEST_F(XDataChain, TheApplicationIsPointedAtBehindTheMarker) {
    const Arguments entity("0:LINE 1001:APP -3: 1001:OTHER 1001:APP 1070:1 1001:LAST");
    EXPECT_EQ(show(kz_XData_getPointer(entity.at, u"app", 0)), "1001:APP 1070:1 1001:LAST");
    EXPECT_EQ(kz_XData_getPointer(entity.at, u"LAST", 0), nullptr) << "the last node never counts";
    EXPECT_EQ(kz_XData_getPointer(entity.at, u"", 0), nullptr);
    EXPECT_EQ(kz_XData_getPointer(nullptr, u"APP", 1), nullptr);
    const Arguments bare("1001:APP 1070:1");
    EXPECT_EQ(kz_XData_getPointer(bare.at, u"APP", 0), nullptr) << "no marker";
}

TEST_F(XDataChain, AWholeEntityListReadsToItsEnd) {
    const Arguments entity("0:LINE -3: 1001:APP 1002:{ 1000:A 1070:1 1002:}");
    EXPECT_EQ(take(kz_XData_toFldList(entity.at, u"APP")), "A:I=1");
    EXPECT_EQ(kz_XData_toFldList(entity.at, u"OTHER"), nullptr);
    const Arguments two(
        "-3: 1001:APP 1002:{ 1000:A 1070:1 1002:} 1001:OTHER 1002:{ 1000:B 1070:2 1002:}");
    EXPECT_EQ(take(kz_XData_toFldList(two.at, u"APP")), "A:I=1 OTHER:U B:I=2");
}

}  // namespace
