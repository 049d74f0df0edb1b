/// The XDATA of an object by applications: records, lists, and chains that are taken apart.
#include <memory>

#include "drawing_test.h"
#include "host/testing.h"

namespace {

using test::narrow;
using test::show;
using test::wide;

struct ListDestroyer {
    void operator()(kz_AppDataList* list) const { kz_AppDataList_destroy(list); }
};
using List = std::unique_ptr<kz_AppDataList, ListDestroyer>;

class AppDataLists : public test::DrawingTest {
  protected:
    void SetUp() override {
        DrawingTest::SetUp();
        ads_name_set(line_, id_.ename);
        records_ = kz_Record_count();
    }
    void TearDown() override {
        host::testing::clearFault();
        EXPECT_EQ(kz_Record_count(), records_);
        DrawingTest::TearDown();
    }

    static kz_FldList* number(const kz_Char* name, int16_t value) {
        kz_FldList* list = kz_FldList_create(nullptr, 0, nullptr, 0);
        EXPECT_EQ(kz_FldList_appInt(list, name, value), 1);
        return list;
    }
    void write(const kz_Char* app, int16_t value) {
        kz_FldList* list = number(KZ_T("N"), value);
        EXPECT_EQ(kz_CADObj_initXDataFldList(&id_, list, app), 1);
        kz_FldList_destroy(list);
    }
    /// "APP FIELDS / APP FIELDS" from the position on.
    static std::string text(kz_AppDataList* list) {
        std::string all;
        for (kz_AppDataList_start(list); kz_AppDataList_eol(list) == 0; kz_AppDataList_next(list)) {
            const kz_AppData* data = kz_AppDataList_getCurr(list);
            const std::string fields = show(data->fields);
            all += (all.empty() ? "" : " / ") + narrow(data->name) +
                   (fields.empty() ? "" : " " + fields);
        }
        return all;
    }
    /// What a chain is taken apart to, behind the status; the chain has to stay as it was.
    static std::string read(const std::string& nodes) {
        resbuf* chain = test::chain(nodes);
        const std::string before = show(chain);
        kz_AppDataList* list = nullptr;
        const int status = kz_AppDataList_fromXdata(&list, chain);
        EXPECT_EQ(show(chain), before);
        kz_ResBuf_release(chain);
        const List owned(list);
        return std::to_string(status) + ": " + text(list);
    }

    kz_CADObjId id_ = {};
    int64_t records_ = 0;
};

TEST_F(AppDataLists, ApplicationsComeInTheOrderOfTheData) {
    write(KZ_T("KZ_GRP"), 1);
    write(KZ_T("OTHER"), 2);
    write(KZ_T("THIRD"), 3);
    write(KZ_T("KZ_GRP"), 4);
    const List list(kz_AppDataList_getFromCADObjId(&id_));
    EXPECT_EQ(text(list.get()), "KZ_GRP N:I=4 / OTHER N:I=2 / THIRD N:I=3");
}

TEST_F(AppDataLists, WithoutDataThereIsNoList) {
    const kz_CADObjId null = {};
    EXPECT_EQ(kz_AppDataList_getFromCADObjId(nullptr), nullptr);
    EXPECT_EQ(kz_AppDataList_getFromCADObjId(&null), nullptr);
    EXPECT_EQ(kz_AppDataList_getFromCADObjId(&id_), nullptr);
    write(KZ_T("KZ_GRP"), 1);
    host::testing::failCall("xData", 1, 6);
    EXPECT_EQ(kz_AppDataList_getFromCADObjId(&id_), nullptr);
}

TEST_F(AppDataLists, AChainIsTakenApartAndPutTogetherAgain) {
    EXPECT_EQ(read("1001:A 1002:{ 1000:N 1070:1 1002:} 1001:B 1002:{ 1000:T 1000:x 1002:}"),
              "1: A N:I=1 / B T:C=x");
    EXPECT_EQ(read("1001:A 1001:B 1002:{ 1000:N 1070:1 1002:}"), "1: A / B N:I=1");
    EXPECT_EQ(read("-3: 1070:5 1001:A 1002:{ 1000:N 1070:1 1002:}"), "1: A N:I=1");
    EXPECT_EQ(read("1070:5"), "0: ");
}

TEST_F(AppDataLists, DataThatIsNoFieldsHasNoRecordAndTheLastOneCounts) {
    const std::string bad = "1001:BAD 1070:5 ";
    const std::string good = "1001:GOOD 1002:{ 1000:N 1070:1 1002:} ";
    EXPECT_EQ(read(bad + good), "1: GOOD N:I=1");
    EXPECT_EQ(read(good + bad), "0: GOOD N:I=1");
}

TEST_F(AppDataLists, NothingIsReadWithoutListOrChain) {
    kz_AppDataList* list = nullptr;
    EXPECT_EQ(kz_AppDataList_fromXdata(&list, nullptr), 0);
    EXPECT_EQ(list, nullptr);
    resbuf* chain = test::chain("1001:A");
    EXPECT_EQ(kz_AppDataList_fromXdata(nullptr, chain), 0);
    kz_ResBuf_release(chain);
}

TEST_F(AppDataLists, AnApplicationIsFoundInAnyCase) {
    write(KZ_T("OTHER"), 1);
    write(KZ_T("KZ_GRP"), 2);
    const List list(kz_AppDataList_getFromCADObjId(&id_));
    kz_AppData* found = kz_AppDataList_search(list.get(), KZ_T("kz_grp"));
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(kz_AppDataList_getCurr(list.get()), found);
    EXPECT_EQ(kz_AppDataList_getFldList(list.get(), KZ_T("Kz_Grp")), found->fields);
    EXPECT_EQ(kz_AppDataList_search(list.get(), KZ_T("KZ")), nullptr);
    EXPECT_EQ(kz_AppDataList_eol(list.get()), 1);
    EXPECT_EQ(kz_AppDataList_getFldList(list.get(), nullptr), nullptr);
    EXPECT_EQ(kz_AppDataList_search(nullptr, KZ_T("KZ_GRP")), nullptr);
}

TEST_F(AppDataLists, ACopyOutlivesItsSourceAndLeavesItWhereItStood) {
    const kz_Char* names[] = {KZ_T("A"), KZ_T("B")};
    List list(kz_AppDataList_create());
    for (const kz_Char* name : names)
        kz_AppDataList_insEnd(list.get(), kz_AppData_create(name, number(name, 1)));
    kz_AppDataList_insEnd(list.get(), kz_AppData_create(KZ_T("EMPTY"), nullptr));
    kz_AppDataList_end(list.get());
    const List copy(kz_AppDataList_dup(list.get()));
    EXPECT_EQ(kz_AppDataList_isLast(list.get()), 1);
    list.reset();
    EXPECT_EQ(narrow(kz_AppDataList_getCurr(copy.get())->name), "A");
    EXPECT_EQ(text(copy.get()), "A A:I=1 / B B:I=1 / EMPTY (null)");
    EXPECT_EQ(kz_AppDataList_dup(nullptr), nullptr);
}

TEST_F(AppDataLists, RecordsOwnWhatTheyHold) {
    kz_AppData* data = kz_AppData_create(KZ_T("A"), number(KZ_T("N"), 1));
    kz_AppData* copy = kz_AppData_dup(data);
    kz_AppData_destroy(data);
    EXPECT_EQ(narrow(copy->name) + " " + show(copy->fields), "A N:I=1");
    kz_AppData_destroy(copy);
    kz_AppData_destroy(nullptr);
    EXPECT_EQ(kz_AppData_dup(nullptr), nullptr);
    EXPECT_EQ(kz_AppData_create(nullptr, nullptr), nullptr);
}

TEST_F(AppDataLists, RemovedRecordsAreDestroyed) {
    const List list(kz_AppDataList_create());
    const List tail(kz_AppDataList_create());
    for (int i = 0; i < 3; ++i) {
        kz_AppDataList_insStart(list.get(), kz_AppData_create(KZ_T("A"), number(KZ_T("N"), 1)));
    }
    kz_AppDataList_start(list.get());
    EXPECT_EQ(kz_AppDataList_delCurr(list.get()), 1);
    EXPECT_EQ(kz_AppDataList_delNth(list.get(), 1), 1);
    EXPECT_EQ(kz_AppDataList_delNth(list.get(), 1), 0);
    EXPECT_EQ(kz_AppDataList_length(list.get()), 1);
    EXPECT_EQ(kz_AppDataList_delAll(list.get()), 1);
    EXPECT_EQ(kz_AppDataList_destroy(nullptr), 0);
}

TEST_F(AppDataLists, ATransformReachesEveryRecordAndEndsAtTheStart) {
    resbuf* chain = test::chain(
        "1001:A 1002:{ 1000:P 1010:1,2,3 1002:} 1001:B 1002:{ 1000:D 1013:1,0,0 1002:}");
    kz_AppDataList* read = nullptr;
    ASSERT_EQ(kz_AppDataList_fromXdata(&read, chain), 1);
    kz_ResBuf_release(chain);
    const List list(read);
    const kz_Point origin = {10, 20, 30};
    kz_RotMatrix turn;
    kz_RotMatrix_setIdentity(&turn);
    kz_RotMatrix_setElement(&turn, 0, 0, 0.0);
    kz_RotMatrix_setElement(&turn, 0, 1, -1.0);
    kz_RotMatrix_setElement(&turn, 1, 0, 1.0);
    kz_RotMatrix_setElement(&turn, 1, 1, 0.0);
    EXPECT_EQ(kz_AppData_applyTransform(list.get(), &origin, &turn, KZ_T("PMDO")), 1);
    EXPECT_EQ(narrow(kz_AppDataList_getCurr(list.get())->name), "A");
    EXPECT_EQ(text(list.get()), "A P:P=8,21,33 / B D:O=0,1,0");
    EXPECT_EQ(kz_AppData_applyTransform(nullptr, &origin, &turn, KZ_T("PMDO")), 0);
}

TEST_F(AppDataLists, FieldListsOnObjectsAreTracedAndForwarded) {
    traceAt(2, 0x1);
    write(KZ_T("KZ_GRP"), 1);
    kz_FldList* more = number(KZ_T("M"), 2);
    EXPECT_EQ(kz_CADObj_modXDataFldList(&id_, more, KZ_T("KZ_GRP")), 1);
    kz_FldList_destroy(more);
    EXPECT_EQ(test::take(kz_CADObj_getXDataFldList(&id_, nullptr, KZ_T("KZ_GRP"))), "N:I=1 M:I=2");
    EXPECT_EQ(kz_CADObj_deleteXDataFldList(&id_, KZ_T("KZ_GRP")), 1);
    EXPECT_EQ(kz_CADObj_getXDataFldList(&id_, nullptr, KZ_T("KZ_GRP")), nullptr);
    const std::string lines = traced();
    for (const char* name : {"kz_CADObj_initXDataFldList", "kz_CADObj_modXDataFldList",
                             "kz_CADObj_deleteXDataFldList", "kz_CADObj_getXDataFldList"})
        EXPECT_NE(lines.find(name), std::string::npos) << name;
    EXPECT_EQ(kz_CADObj_getXDataFldList(nullptr, nullptr, KZ_T("KZ_GRP")), nullptr);
    EXPECT_EQ(kz_CADObj_deleteXDataFldList(nullptr, KZ_T("KZ_GRP")), 0);
}

}  // namespace
