/// Field lists, compared through a text form: NAME:letter=value for each field.
#include "kz_tls21an/fldlist.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "kz_tls21an/diag.h"
#include "kz_tls21an/format.h"
#include "kz_tls21an/matrix.h"
#include "kz_tls21an/memory.h"
#include "kz_tls21an/str.h"
#include "kz_tls21an/text.h"

namespace {

std::string showNumbers(double x, double y, double z) {
    kz_Char text[64];
    kz_Str_format(text, 64, KZ_T("%g/%g/%g"), x, y, z);
    return kz::toUtf8(text);
}

std::string showCells(kz_LnkList* list);

std::string showCurrent(kz_FldList* list) {
    int16_t type = 0;
    if (!kz_FldList_currFldtype(list, &type)) return "-";
    std::string letter(1, static_cast<char>(type));
    kz_Char text[64];
    int16_t integer = 0;
    int32_t longInt = 0;
    double real = 0.0;
    kz_Point point{};
    kz_Vector vector{};
    kz_LnkList* cells = nullptr;
    if (kz_FldList_currChar(list, text, 64) || kz_FldList_currHandle(list, text, 64)) {
        return letter + "=" + kz::toUtf8(text);
    }
    if (kz_FldList_currInt(list, &integer)) return letter + "=" + std::to_string(integer);
    if (kz_FldList_currLong(list, &longInt)) return letter + "=" + std::to_string(longInt);
    if (kz_FldList_currReal(list, &real)) return letter + "=" + showNumbers(real, 0, 0);
    if (kz_FldList_currPoint(list, &point)) {
        return letter + "=" + showNumbers(point.x, point.y, point.z);
    }
    if (kz_FldList_currVector(list, &vector)) {
        return letter + "=" + showNumbers(vector.x, vector.y, vector.z);
    }
    if (kz_FldList_currList(list, &cells)) return letter + "=" + showCells(cells);
    return letter;
}

std::string showCells(kz_LnkList* list) {
    std::string out = "(";
    for (kz_LnkList_start(list); !kz_LnkList_eol(list); kz_LnkList_next(list)) {
        out += (out.size() > 1 ? " " : "") + showCurrent(list);
    }
    return out + ")";
}

std::string show(kz_FldList* list) {
    std::string out;
    for (kz_FldList_start(list); !kz_FldList_eol(list); kz_FldList_next(list)) {
        kz_Char name[64];
        EXPECT_EQ(kz_FldList_currFldname(list, name), 1);
        out += (out.empty() ? "" : " ") + kz::toUtf8(name) + ":" + showCurrent(list);
    }
    return out;
}

constexpr kz_Point point{1.0, 2.0, 3.0};
constexpr kz_Vector axis{1.0, 0.0, 0.0};

class FldList : public testing::Test {
  protected:
    ~FldList() override { kz_FldList_destroy(list_); }

    void fillWithAllTypes() {
        kz_FldList_modChar(list_, KZ_T("C"), KZ_T("text"));
        kz_FldList_modHandle(list_, KZ_T("H"), KZ_T("2F"));
        kz_FldList_modInt(list_, KZ_T("I"), -7);
        kz_FldList_modLong(list_, KZ_T("L"), 70000);
        kz_FldList_modReal(list_, KZ_T("N"), 2.5);
        kz_FldList_modPoint(list_, KZ_T("P"), &point);
        kz_FldList_modMpoint(list_, KZ_T("M"), &point);
        kz_FldList_modDpoint(list_, KZ_T("D"), &point);
        kz_FldList_modVector(list_, KZ_T("O"), &axis);
        kz_FldList_modUnknown(list_, KZ_T("U"));
        kz_FldList_addPointVal(list_, KZ_T("V"), &point);
        kz_FldList_addCharVal(list_, KZ_T("V"), nullptr);
        kz_FldList_addVectorVal(list_, KZ_T("V"), &axis);
    }

    static constexpr const char* allTypes =
        "C:C=text H:H=2F I:I=-7 L:L=70000 N:N=2.5/0/0 P:P=1/2/3 M:M=1/2/3 D:D=1/2/3 O:O=1/0/0 U:U "
        "V:V=(P=1/2/3 C= O=1/0/0)";

    kz_FldList* list_ = kz_FldList_create(nullptr, 0, nullptr, 0);
};

TEST_F(FldList, holdsEveryTypeAndItsCopySurvivesIt) {
    fillWithAllTypes();
    EXPECT_EQ(show(list_), allTypes);
    kz_FldList* copy = kz_FldList_copy(list_);
    kz_FldList_destroy(list_);
    list_ = copy;
    kz_Char name[8];
    EXPECT_EQ(kz_FldList_currFldname(copy, name), 1) << "a copy stands at its start";
    EXPECT_EQ(show(copy), allTypes);
}

TEST_F(FldList, createMakesAFieldThatIsCurrent) {
    kz_FldList* one = kz_FldList_create(KZ_T("FLAG"), 'U', nullptr, 0);
    EXPECT_EQ(showCurrent(one), "U");
    kz_FldList_destroy(one);
    const int32_t value = 5;
    one = kz_FldList_create(KZ_T("FLAG"), 'L', &value, 0);
    EXPECT_EQ(showCurrent(one), "L=5");
    kz_FldList_destroy(one);
    EXPECT_EQ(kz_FldList_create(KZ_T("FLAG"), 'V', &value, 0), nullptr);
}

TEST_F(FldList, modReplacesWhateverTheFieldHeld) {
    kz_FldList_addIntVal(list_, KZ_T("Size"), 1);
    kz_FldList_addIntVal(list_, KZ_T("SIZE"), 2);
    kz_FldList_addIntVal(list_, KZ_T("other"), 3);
    EXPECT_EQ(kz_FldList_modChar(list_, KZ_T("size"), KZ_T("big")), 1);
    EXPECT_EQ(showCurrent(list_), "C=big");
    EXPECT_EQ(show(list_), "Size:C=big other:I=3");
    kz_FldList_modUnknown(list_, KZ_T("SIZE"));
    EXPECT_EQ(show(list_), "Size:C=big other:I=3") << "modUnknown keeps values";
}

TEST_F(FldList, aValueMayComeFromTheFieldItReplaces) {
    kz_FldList_modChar(list_, KZ_T("A"), KZ_T("text"));
    const kz_FldNode* node = kz_FldList_curr(list_);
    EXPECT_EQ(kz_FldList_modHandle(list_, node->name, node->value.text), 1);
    EXPECT_EQ(show(list_), "A:H=text");
}

TEST_F(FldList, addTurnsOneValueIntoManyOfAnyType) {
    kz_FldList_modUnknown(list_, KZ_T("A"));
    kz_FldList_addRealVal(list_, KZ_T("a"), 1.5);
    EXPECT_EQ(show(list_), "A:N=1.5/0/0") << "a U field gets its only value";
    kz_FldList_addHandleVal(list_, KZ_T("A"), KZ_T("1F"));
    kz_FldList_addMpointVal(list_, KZ_T("A"), &point);
    kz_FldList_addDpointVal(list_, KZ_T("A"), &point);
    kz_FldList_addLongVal(list_, KZ_T("A"), 9);
    EXPECT_EQ(show(list_), "A:V=(N=1.5/0/0 H=1F M=1/2/3 D=1/2/3 L=9)");
    EXPECT_EQ(kz_FldList_count(list_), 1);
}

TEST_F(FldList, refusesWhatCannotBeStored) {
    const int16_t value = 1;
    EXPECT_EQ(kz_FldList_addVal(list_, KZ_T("A"), 'V', &value), 0);
    EXPECT_EQ(kz_FldList_addVal(list_, KZ_T("A"), 'x', &value), 0);
    EXPECT_EQ(kz_FldList_addVal(list_, KZ_T("A"), 'I', nullptr), 0);
    EXPECT_EQ(kz_FldList_addVal(list_, nullptr, 'I', &value), 0);
    EXPECT_EQ(kz_FldList_addVal(nullptr, KZ_T("A"), 'I', &value), 0);
    EXPECT_EQ(kz_FldList_modPoint(list_, KZ_T("A"), nullptr), 0);
    EXPECT_EQ(kz_FldList_count(list_), 0);
}

TEST_F(FldList, findMovesThePositionAndDelCurrGoesOn) {
    for (const kz_Char* name : {u"A", u"B", u"C"})
        kz_FldList_modUnknown(list_, name);
    EXPECT_EQ(kz_FldList_find(list_, KZ_T("b")), kz_LnkList_getNth(list_, 1));
    EXPECT_EQ(kz_FldList_delCurr(list_), 1);
    EXPECT_EQ(kz_FldList_curr(list_)->name, std::u16string_view(u"C"));
    EXPECT_EQ(kz_FldList_find(list_, KZ_T("B")), nullptr);
    EXPECT_EQ(kz_FldList_eol(list_), 1);
    EXPECT_EQ(kz_FldList_delCurr(list_), 0);
}

TEST_F(FldList, readersRefuseOtherTypesAndCutTexts) {
    kz_FldList_modChar(list_, KZ_T("A"), KZ_T("abcdef"));
    kz_Char text[8] = u"-------";
    EXPECT_EQ(kz_FldList_currHandle(list_, text, 8), 0);
    EXPECT_EQ(kz::toUtf8(text), "");
    EXPECT_EQ(kz_FldList_currChar(list_, text, 4), 1);
    EXPECT_EQ(kz::toUtf8(text), "abc");
    EXPECT_EQ(text[4], '-') << "nothing is written behind the bound";
    EXPECT_EQ(kz_FldList_currChar(list_, text, 0), 0);
    double real = 4.0;
    EXPECT_EQ(kz_FldList_currReal(list_, &real), 0);
    EXPECT_EQ(real, 4.0);
}

TEST_F(FldList, readingByNameLeavesThePosition) {
    kz_FldList_modLong(list_, KZ_T("FITS"), -32768);
    kz_FldList_modLong(list_, KZ_T("LARGE"), 32768);
    kz_FldList_modHandle(list_, KZ_T("H"), KZ_T("2F"));
    kz_Char text[8];
    int16_t value = 1;
    EXPECT_EQ(kz_FldList_getInt(list_, KZ_T("large"), &value), 0);
    EXPECT_EQ(value, 1);
    EXPECT_EQ(kz_FldList_getInt(list_, KZ_T("fits"), &value), 1);
    EXPECT_EQ(value, -32768);
    EXPECT_EQ(kz_FldList_getChar(list_, KZ_T("FITS"), text, 8), 0);
    EXPECT_EQ(kz_FldList_getChar(list_, KZ_T("h"), text, 8), 1);
    EXPECT_EQ(kz::toUtf8(text), "2F");
    EXPECT_EQ(kz_FldList_appInt(list_, KZ_T("H"), 3), 1);
    EXPECT_EQ(show(list_), "FITS:L=-32768 LARGE:L=32768 H:H=2F H:I=3");
}

TEST_F(FldList, comparisonLooksAtTypeAndValueOnly) {
    fillWithAllTypes();
    kz_FldList* copy = kz_FldList_copy(list_);
    for (int n = 0; n < kz_FldList_count(list_); ++n) {
        const auto* node = static_cast<kz_FldNode*>(kz_LnkList_getNth(list_, n));
        for (int other = 0; other < kz_FldList_count(copy); ++other) {
            const auto* second = static_cast<kz_FldNode*>(kz_LnkList_getNth(copy, other));
            EXPECT_EQ(kz_FldList_compareNode(node, second) == 0, n == other) << n << " " << other;
        }
    }
    kz_FldList_addIntVal(copy, KZ_T("V"), 1);
    EXPECT_NE(kz_FldList_compareNode(kz_FldList_find(list_, KZ_T("V")), kz_FldList_curr(copy)), 0);
    EXPECT_NE(kz_FldList_compareNode(kz_FldList_curr(list_), nullptr), 0);
    kz_FldList_destroy(copy);
}

TEST_F(FldList, aTransformTurnsDirectionsAndMovesPositions) {
    fillWithAllTypes();
    kz_RotMatrix quarterTurn{{{0, -1, 0}, {1, 0, 0}, {0, 0, 1}}};
    const kz_Point origin{10, 0, 0};
    EXPECT_EQ(kz_FldList_applyTransform(list_, &origin, &quarterTurn, KZ_T("PDO")), 1);
    EXPECT_EQ(show(list_),
              "C:C=text H:H=2F I:I=-7 L:L=70000 N:N=2.5/0/0 P:P=8/1/3 M:M=1/2/3 D:D=-2/1/3 "
              "O:O=0/1/0 U:U V:V=(P=8/1/3 C= O=0/1/0)");
    EXPECT_EQ(kz_FldList_applyTransform(list_, &origin, nullptr, nullptr), 1);
    kz_FldList_find(list_, KZ_T("M"));
    EXPECT_EQ(showCurrent(list_), "M=11/2/3");
    EXPECT_EQ(kz_FldList_applyTransform(nullptr, &origin, nullptr, nullptr), 0);
}

TEST_F(FldList, everyShortageLeavesTheListAsItWas) {
    const std::function<int(kz_FldList*)> changes[] = {
        [](kz_FldList* list) { return kz_FldList_modChar(list, KZ_T("NEW"), KZ_T("text")); },
        [](kz_FldList* list) { return kz_FldList_modChar(list, KZ_T("C"), KZ_T("other")); },
        [](kz_FldList* list) { return kz_FldList_addCharVal(list, KZ_T("C"), KZ_T("more")); },
        [](kz_FldList* list) { return kz_FldList_addCharVal(list, KZ_T("V"), KZ_T("more")); },
        [](kz_FldList* list) { return kz_FldList_modUnknown(list, KZ_T("NEW2")); },
        [](kz_FldList* list) { return kz_FldList_appInt(list, KZ_T("NEW3"), 1); },
        [](kz_FldList* list) {
            kz_FldList* copy = kz_FldList_copy(list);
            return kz_FldList_destroy(copy);
        },
    };
    fillWithAllTypes();
    for (const auto& change : changes) {
        const std::string before = show(list_);
        size_t call = 1;
        for (;; ++call) {
            kz_Malloc_failFrom(call);
            const int result = change(list_);
            kz_Malloc_failFrom(0);
            if (result == 1) break;
            EXPECT_EQ(show(list_), before);
        }
        EXPECT_GT(call, 1U) << "the shortage was never met";
    }
}

std::string dump;

void takeLine(const kz_Char* message, const char* /*source*/, int /*line*/) {
    dump += kz::toUtf8(message) + "\n";
}

TEST_F(FldList, theDumpObeysLevelAndMask) {
    kz_FldList_modChar(list_, KZ_T("A"), KZ_T("100%s"));
    kz_FldList_addIntVal(list_, KZ_T("A"), 2);
    kz_Diag_setHandler(takeLine);
    kz_Diag_setOutput(KZ_DIAG_OUTPUT_HANDLER, nullptr);
    kz_Diag_setLevel(3);
    kz_Diag_setCondition(0x400);
    kz_FldList_printListDiag(list_, 4, 0x400);
    kz_FldList_printListDiag(list_, 3, 0x1);
    EXPECT_EQ(dump, "");
    kz_FldList_printListDiag(list_, 3, 0x401);
    EXPECT_EQ(dump, "A V C \"100%s\" I 2\n");
    kz_Diag_disable();
    kz_Diag_setHandler(nullptr);
}

}  // namespace
