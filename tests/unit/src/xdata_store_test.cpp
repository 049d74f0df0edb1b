/// The XDATA field store on the objects of a drawing: what a Lisp call can't show.
#include "drawing_test.h"

namespace {

using test::Arguments;
using test::chain;
using test::show;
using test::take;

class XDataStore : public test::DrawingTest {
  protected:
    static kz_FldList* listOf(const std::string& form) {
        Arguments arguments(form);
        return kz_FldList_fromRb(&arguments.at, 0);
    }
    int write(const std::string& form, const kz_Char* app = KZ_T("APP")) {
        kz_FldList* list = listOf(form);
        const int status = kz_XData_modFldList(line_, list, app);
        kz_FldList_destroy(list);
        return status;
    }
    std::string read(const kz_Char* app = KZ_T("APP")) {
        return take(kz_XData_getFldList(line_, nullptr, app));
    }
    int setInt(int16_t value, const kz_Char* name, int clear = 0, int unique = 0) {
        return kz_XData_setFld(line_, KZ_FLD_INT, &value, name, KZ_T("APP"), clear, unique);
    }
};

TEST_F(XDataStore, AListComesBackWithItsTypesAndInUpperCase) {
    const std::string form =
        "( ( \"c\" \"x\" ) ( \"h\" 5:2F ) ( \"i\" 1 ) ( \"l\" 70000L ) ( \"n\" 2.5 ) ( \"p\" "
        "<1,2,3> ) "
        "( \"m\" <1,2,3> \"M\" ) ( \"d\" <1,2,3> \"D\" ) ( \"o\" <1,2,3> \"O\" ) \"u\" ( \"v\" 1 "
        "2.5 ) )";
    ASSERT_EQ(write(form), 1);
    EXPECT_EQ(read(),
              "C:C=x H:H=2F I:I=1 L:L=70000 N:N=2.5 P:P=1,2,3 M:M=1,2,3 D:D=1,2,3 O:O=1,2,3 U:U "
              "V:V[I=1 N=2.5]");
}

TEST_F(XDataStore, TheStoredLayoutIsOneBraceGroupForEachField) {
    setInt(2, KZ_T("flag"));
    write("( ( \"ends\" <0,0,0> <5,0,0> ) )");
    EXPECT_EQ(stored(KZ_T("app")),
              "1001:APP 1002:{ 1000:flag 1070:2 1002:} "
              "1002:{ 1000:ENDS 1010:0,0,0 1010:5,0,0 1002:}");
    setInt(3, KZ_T("FLAG"), 1);
    EXPECT_EQ(stored(KZ_T("APP")).find("1001:APP 1002:{ 1000:flag 1070:3 1002:}"), 0U)
        << "the field keeps its place and its spelling";
    EXPECT_EQ(stored(KZ_T("OTHER")), "");
}

TEST_F(XDataStore, ApplicationsDoNotTouchEachOther) {
    write("( ( \"a\" 1 ) )", KZ_T("ONE"));
    write("( ( \"a\" 2 ) )", KZ_T("TWO"));
    EXPECT_EQ(kz_XData_deleteFldList(line_, KZ_T("ONE")), 1);
    EXPECT_EQ(kz_XData_deleteFldList(line_, KZ_T("ONE")), 0);
    EXPECT_EQ(read(KZ_T("ONE")), "(null)");
    EXPECT_EQ(read(KZ_T("TWO")), "A:I=2");
    EXPECT_EQ(stored(nullptr), "1001:TWO 1002:{ 1000:A 1070:2 1002:}");
}

TEST_F(XDataStore, AnEmptyListRemovesTheData) {
    write("( ( \"a\" 1 ) )");
    kz_FldList* empty = kz_FldList_create(nullptr, 0, nullptr, 0);
    EXPECT_EQ(kz_XData_initFldList(line_, empty, KZ_T("APP")), 1);
    kz_FldList_destroy(empty);
    EXPECT_EQ(stored(nullptr), "");
}

TEST_F(XDataStore, ARequestThatFailsKeepsItsContent) {
    kz_FldList* request = listOf("( ( \"a\" 7 ) )");
    EXPECT_EQ(kz_XData_getFldList(line_, request, KZ_T("APP")), nullptr);
    EXPECT_EQ(show(request), "A:I=7");
    write("( ( \"b\" 1 ) )");
    EXPECT_EQ(kz_XData_getFldList(line_, request, KZ_T("APP")), request);
    EXPECT_EQ(take(request), "");
}

TEST_F(XDataStore, TheLastEqualValuesLeaveAFieldWithNone) {
    write("( ( \"a\" 5 5 5 ) )");
    int16_t five = 5;
    const auto remove = [&](int all) {
        return kz_XData_deleteFldValue(line_, KZ_FLD_INT, &five, KZ_T("a"), KZ_T("APP"), all);
    };
    EXPECT_EQ(remove(0), 1);
    EXPECT_EQ(read(), "A:V[I=5 I=5]");
    EXPECT_EQ(remove(1), 1);
    EXPECT_EQ(read(), "A:U");
    EXPECT_EQ(remove(1), 0);
}

TEST_F(XDataStore, MissingArgumentsGiveFailureAndChangeNothing) {
    kz_FldList* list = listOf("( ( \"a\" 1 ) )");
    const ads_name none = {};
    int16_t one = 1;
    for (const int64_t* id :
         {static_cast<const int64_t*>(nullptr), static_cast<const int64_t*>(none)}) {
        EXPECT_EQ(kz_XData_modFldList(id, list, KZ_T("APP")), 0);
        EXPECT_EQ(kz_XData_getFldList(id, nullptr, KZ_T("APP")), nullptr);
        EXPECT_EQ(kz_XData_getFldListAlways(id, nullptr, KZ_T("APP")), nullptr);
        EXPECT_EQ(kz_XData_setFld(id, 'I', &one, KZ_T("A"), KZ_T("APP"), 0, 0), 0);
        EXPECT_EQ(kz_XData_deleteFldList(id, KZ_T("APP")), 0);
        EXPECT_EQ(kz_Xdata_getFromEnt(id, nullptr), nullptr);
    }
    for (const kz_Char* app : {static_cast<const kz_Char*>(nullptr), KZ_T("")}) {
        EXPECT_EQ(kz_XData_setFldList(line_, list, app, 1), 0);
        EXPECT_EQ(kz_XData_getFldList(line_, nullptr, app), nullptr);
        EXPECT_EQ(kz_XData_setFld(line_, 'I', &one, KZ_T("A"), app, 0, 0), 0);
        EXPECT_EQ(kz_XData_deleteFldList(line_, app), 0);
    }
    EXPECT_EQ(kz_XData_setFldList(line_, nullptr, KZ_T("APP"), 0), 0);
    EXPECT_EQ(kz_XData_setFld(line_, 0, &one, KZ_T("A"), KZ_T("APP"), 0, 0), 0);
    EXPECT_EQ(kz_XData_setFld(line_, 'Q', &one, KZ_T("A"), KZ_T("APP"), 0, 0), 0);
    EXPECT_EQ(kz_XData_setFld(line_, 'I', nullptr, KZ_T("A"), KZ_T("APP"), 0, 0), 0);
    EXPECT_EQ(kz_XData_setFld(line_, 'I', &one, KZ_T(""), KZ_T("APP"), 0, 0), 0);
    EXPECT_EQ(kz_XData_deleteFld(line_, nullptr, KZ_T("APP")), 1);
    EXPECT_EQ(stored(nullptr), "");
    kz_FldList_destroy(list);
}

TEST_F(XDataStore, ARefusedWriteIsTracedAndLeavesTheDataAlone) {
    write("( ( \"a\" 1 ) )");
    const std::u16string longer(300, u'x');
    traceAt(0);
    EXPECT_EQ(kz_XData_setFld(line_, 'C', longer.c_str(), KZ_T("A"), KZ_T("APP"), 1, 0), 0);
    const std::string error = std::to_string(kz_Diag_acadErrorNo());
    EXPECT_EQ(traced(),
              "Error '" + error + "' returned from kz_Xdata_setFromEnt in kz_XData_setFldList.");
    EXPECT_EQ(read(), "A:I=1");
}

TEST_F(XDataStore, ErasedEntitiesKeepTheirData) {
    write("( ( \"a\" 1 ) )");
    ASSERT_EQ(acdbEntDel(line_), RTNORM);
    EXPECT_EQ(take(kz_XData_getFldListAlways(line_, nullptr, KZ_T("APP"))), "A:I=1");
    EXPECT_EQ(acdbEntGet(line_), nullptr) << "erased as before";
    EXPECT_EQ(setInt(2, KZ_T("b")), 1) << "the store writes erased objects too";
    EXPECT_EQ(read(), "A:I=1 B:I=2");
}

TEST_F(XDataStore, AHandleStandsInAFieldOnce) {
    const auto set = [&](const kz_Char* handle, int clear) {
        return kz_XData_setHandle(line_, handle, KZ_T("ref"), KZ_T("APP"), clear);
    };
    EXPECT_EQ(set(KZ_T("2F"), 0), 1);
    EXPECT_EQ(set(KZ_T("30"), 0), 1);
    EXPECT_EQ(set(KZ_T("2F"), 0), 1);
    EXPECT_EQ(take(kz_XData_getHandle(line_, KZ_T("REF"), KZ_T("APP"))), "REF:V[H=2F H=30]");
    EXPECT_EQ(kz_XData_deleteHandle(line_, KZ_T("2F"), KZ_T("ref"), KZ_T("APP")), 1);
    EXPECT_EQ(kz_XData_deleteHandle(line_, KZ_T("2F"), KZ_T("ref"), KZ_T("APP")), 0);
    EXPECT_EQ(set(KZ_T("31"), 1), 1);
    EXPECT_EQ(read(), "REF:H=31");
}

TEST_F(XDataStore, TheDataOfAFullEntityListIsWrittenBack) {
    write("( ( \"a\" 1 ) )");
    resbuf* all = chain("\"*\"");
    resbuf* entity = acdbEntGetX(line_, all);
    kz_ResBuf_release(all);
    resbuf* app = kz_XData_getPointer(entity, KZ_T("APP"), 0);
    ASSERT_NE(app, nullptr);
    kz_FldList* list = listOf("( ( \"a\" 2 ) )");
    kz_XData_fromFldList(app, list, 1);
    kz_FldList_destroy(list);
    EXPECT_EQ(kz_Xdata_setFromEntList(KZ_T("APP"), entity), 1);
    EXPECT_EQ(read(), "A:I=2");
    EXPECT_EQ(kz_Xdata_setFromEntList(KZ_T("OTHER"), entity), 0);
    resbuf* made = kz_XData_getPointer(entity, KZ_T("OTHER"), 1);
    EXPECT_EQ(show(made), "1001:OTHER");
    kz_ResBuf_release(entity);
    EXPECT_EQ(kz_Xdata_setFromEntList(KZ_T("APP"), nullptr), 0);
}

TEST_F(XDataStore, ObjectFormsForward) {
    const auto* id = reinterpret_cast<const kz_CADObjId*>(&line_);
    const kz_Char* app = KZ_T("APP");
    kz_FldList* list = listOf("( ( \"a\" 1 ) )");
    int16_t two = 2;
    EXPECT_EQ(kz_XData_objInitFldList(id, list, app), 1);
    EXPECT_EQ(kz_XData_objSetFld(id, KZ_FLD_INT, &two, KZ_T("a"), app, 0, 0), 1);
    EXPECT_EQ(take(kz_XData_objGetFld(id, KZ_T("A"), app)), "A:V[I=1 I=2]");
    EXPECT_EQ(kz_XData_objDeleteFldValue(id, KZ_FLD_INT, &two, KZ_T("A"), app, 0), 1);
    EXPECT_EQ(kz_XData_objSetHandle(id, KZ_T("2F"), KZ_T("R"), app, 0), 1);
    EXPECT_EQ(take(kz_XData_objGetHandle(id, KZ_T("R"), app)), "R:H=2F");
    EXPECT_EQ(take(kz_XData_objGetFldList(id, nullptr, app)), "A:I=1 R:H=2F");
    EXPECT_EQ(kz_XData_objDeleteHandle(id, KZ_T("2F"), KZ_T("R"), app), 1);
    EXPECT_EQ(kz_XData_objModFldList(id, list, app), 1);
    EXPECT_EQ(kz_XData_objSetFldList(id, list, app, 1), 1);
    EXPECT_EQ(kz_XData_objDeleteFld(id, KZ_T("A"), app), 1);
    EXPECT_EQ(kz_XData_objDeleteFldList(id, app), 0);
    kz_FldList_destroy(list);
}

TEST_F(XDataStore, EntryAndArgumentsAreTracedAtLevelThree) {
    kz_FldList* list = listOf("( ( \"a\" 1 ) )");
    traceAt(3, 0x400);
    kz_XData_initFldList(line_, list, KZ_T("APP"));
    EXPECT_EQ(traced().find("Entering kz_XData_initFldList..."), 0U);
    traceAt(2, 0x400);
    kz_XData_initFldList(line_, list, KZ_T("APP"));
    EXPECT_EQ(traced(), "");
    kz_FldList_destroy(list);
}

}  // namespace
