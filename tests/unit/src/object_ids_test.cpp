/// Object ids, their lists, and the names of objects among each other, without the suite's module.
/// What needs it stands in tests/unit/suite.
#include <memory>

#include "drawing_test.h"
#include "host/display.h"
#include "host/lisp.h"
#include "host/testing.h"
#include "kz_tls21an/text.h"
#include "printed_test.h"

namespace {

using test::narrow;
using test::wide;

struct IdDestroyer {
    void operator()(kz_CADObjId* id) const { kz_CADObjId_destroy(id); }
};
using Id = std::unique_ptr<kz_CADObjId, IdDestroyer>;

class ObjectIds : public test::DrawingTest {
  protected:
    void SetUp() override {
        DrawingTest::SetUp();
        handle_ = wide(handleOf(line_));
        records_ = kz_Record_count();
    }
    void TearDown() override {
        kz_Error_clearAll();
        EXPECT_EQ(kz_Record_count(), records_);
        DrawingTest::TearDown();
    }

    const kz_Char* handle() const { return handle_.c_str(); }
    bool isLine(const kz_CADObjId* id) const {
        return id != nullptr && ads_name_equal(id->ename, line_);
    }
    /// A new id of the line as a pick inside an attached drawing leaves it.
    Id picked() const {
        Id id(kz_CADObjId_create(handle()));
        const kz_Point origin = {10.0, 20.0, 30.0};
        EXPECT_EQ(kz_CADObjId_setOrigin(id.get(), &origin), 1);
        kz_CADObjId_setNestedState(id.get(), 2);
        return id;
    }
    static double originX(const kz_CADObjId* id) {
        kz_Point origin = {-1.0, -1.0, -1.0};
        EXPECT_EQ(kz_CADObjId_getOrigin(&origin, id), kz_CADObjId_getTMatrix(id) != nullptr);
        return origin.x;
    }
    AcDbObjectId objectId() const {
        AcDbObjectId object;
        EXPECT_EQ(acdbGetObjectId(object, line_), Acad::eOk);
        return object;
    }
    static AcDbDatabase* working() { return acdbHostApplicationServices()->workingDatabase(); }

    std::u16string handle_;
    int64_t records_ = 0;
};

// --- records -------------------------------------------------------------------------------------

TEST_F(ObjectIds, AHandleThatNobodyHasMakesANullIdAndNotNull) {
    EXPECT_TRUE(isLine(Id(kz_CADObjId_create(handle())).get()));
    EXPECT_TRUE(isLine(Id(kz_CADObjId_createFromDwgId(handle(), nullptr)).get()));
    for (const kz_Char* unknown : {static_cast<const kz_Char*>(nullptr), KZ_T(""), KZ_T("FFFF"),
                                   KZ_T("no handle"), KZ_T("11112222333344445")}) {
        for (const auto& create :
             {+[](const kz_Char* text) { return kz_CADObjId_create(text); },
              +[](const kz_Char* text) { return kz_CADObjId_createFromDwgId(text, nullptr); }}) {
            const Id id(create(unknown));
            ASSERT_NE(id, nullptr);
            EXPECT_EQ(kz_CADObjId_isNull(id.get()), 1);
            EXPECT_EQ(id->tMatrix, nullptr);
            EXPECT_EQ(id->nestedState, 0);
        }
    }
}

TEST_F(ObjectIds, SettingChangesTheNameAloneAndOnlyWhenItSucceeds) {
    const Id id = picked();
    ads_name second = {};
    makeLine(second);
    EXPECT_EQ(kz_CADObjId_set(id.get(), wide(handleOf(second)).c_str()), 1);
    EXPECT_TRUE(ads_name_equal(id->ename, second));
    EXPECT_EQ(originX(id.get()), 10.0);
    for (const kz_Char* unknown : {KZ_T("FFFF"), KZ_T("no handle")}) {
        EXPECT_EQ(kz_CADObjId_set(id.get(), unknown), 0);
        EXPECT_EQ(kz_CADObjId_setFromDwgId(id.get(), unknown, nullptr), 0);
    }
    EXPECT_EQ(kz_CADObjId_set(id.get(), KZ_T("")), 0);
    EXPECT_EQ(kz_CADObjId_set(id.get(), nullptr), 1);
    EXPECT_EQ(kz_CADObjId_setFromDwgId(id.get(), KZ_T(""), nullptr), 1);
    EXPECT_EQ(kz_CADObjId_setFromDwgId(id.get(), nullptr, nullptr), 1);
    EXPECT_TRUE(ads_name_equal(id->ename, second));
    EXPECT_EQ(kz_CADObjId_setFromDwgId(id.get(), handle(), nullptr), 1);
    EXPECT_TRUE(isLine(id.get()));
    EXPECT_EQ(kz_CADObjId_set(nullptr, handle()), 0);
    EXPECT_EQ(kz_CADObjId_setFromDwgId(nullptr, nullptr, nullptr), 0);
}

TEST_F(ObjectIds, EqualityIsOfNamesAndNullOfTheTwoWords) {
    const Id a = picked();
    const Id b(kz_CADObjId_create(handle()));
    const Id none(kz_CADObjId_create(nullptr));
    EXPECT_EQ(kz_CADObjId_isEqual(a.get(), b.get()), 1);
    EXPECT_EQ(kz_CADObjId_isEqual(a.get(), none.get()), 0);
    EXPECT_EQ(kz_CADObjId_isEqual(a.get(), nullptr), 0);
    EXPECT_EQ(kz_CADObjId_isEqual(nullptr, a.get()), 0);
    EXPECT_EQ(kz_CADObjId_isEqual(nullptr, nullptr), 1);
    none->ename[1] = 1;
    EXPECT_EQ(kz_CADObjId_isNull(none.get()), 0);
    EXPECT_EQ(kz_CADObjId_isNull(a.get()), 0);
    EXPECT_EQ(kz_CADObjId_isNull(nullptr), 1);
}

TEST_F(ObjectIds, ACopyHasATransformOfItsOwn) {
    Id id = picked();
    const Id copy(kz_CADObjId_copy(id.get()));
    ASSERT_NE(copy, nullptr);
    EXPECT_TRUE(isLine(copy.get()));
    EXPECT_EQ(kz_CADObjId_getNestedState(copy.get()), 2);
    EXPECT_NE(copy->tMatrix, id->tMatrix);
    id.reset();
    EXPECT_EQ(originX(copy.get()), 10.0);
    EXPECT_EQ(kz_CADObjId_copy(nullptr), nullptr);
}

TEST_F(ObjectIds, CloningReplacesTransformAndState) {
    const Id id = picked();
    const Id other(kz_CADObjId_create(nullptr));
    kz_CADObjId_cloneTMatrixAndState(id.get(), id.get());
    EXPECT_EQ(originX(id.get()), 10.0);
    kz_CADObjId_cloneTMatrixAndState(other.get(), id.get());
    kz_CADObjId_cloneTMatrixAndState(other.get(), id.get());
    EXPECT_EQ(originX(other.get()), 10.0);
    EXPECT_EQ(other->nestedState, 2);
    EXPECT_EQ(kz_CADObjId_isNull(other.get()), 1);
    const Id plain(kz_CADObjId_create(handle()));
    kz_CADObjId_cloneTMatrixAndState(other.get(), plain.get());
    EXPECT_EQ(other->tMatrix, nullptr);
    EXPECT_EQ(other->nestedState, 0);
    kz_CADObjId_cloneTMatrixAndState(nullptr, id.get());
    kz_CADObjId_cloneTMatrixAndState(id.get(), nullptr);
    EXPECT_EQ(originX(id.get()), 10.0);
}

TEST_F(ObjectIds, TheTransformIsMadeWhenAPartIsSet) {
    const Id id(kz_CADObjId_create(handle()));
    kz_Point origin = {1.0, 2.0, 3.0};
    kz_RotMatrix rotation = {};
    EXPECT_EQ(kz_CADObjId_getOrigin(&origin, id.get()), 0);
    EXPECT_EQ(kz_CADObjId_getRMatrix(&rotation, id.get()), 0);
    EXPECT_EQ(kz_CADObjId_getTMatrixCopy(id.get()), nullptr);
    rotation.element[0][1] = 5.0;
    EXPECT_EQ(kz_CADObjId_setRMatrix(id.get(), &rotation), 1);
    EXPECT_EQ(originX(id.get()), 0.0);
    EXPECT_EQ(kz_CADObjId_setOrigin(id.get(), &origin), 1);
    EXPECT_EQ(originX(id.get()), 1.0);
    rotation = {};
    EXPECT_EQ(kz_CADObjId_getRMatrix(&rotation, id.get()), 1);
    EXPECT_EQ(rotation.element[0][1], 5.0);
    EXPECT_EQ(kz_CADObjId_setOrigin(nullptr, &origin), 0);
    EXPECT_EQ(kz_CADObjId_setRMatrix(nullptr, &rotation), 0);
    EXPECT_EQ(kz_CADObjId_getOrigin(nullptr, id.get()), 0);
    EXPECT_EQ(kz_CADObjId_getRMatrix(nullptr, id.get()), 0);
    EXPECT_EQ(kz_CADObjId_getRMatrix(&rotation, nullptr), 0);
}

TEST_F(ObjectIds, TheIdTakesTheTransformThatItIsGiven) {
    const Id id = picked();
    kz_TMatrix* const given = kz_CADObjId_getTMatrixCopy(id.get());
    ASSERT_NE(given, nullptr);
    EXPECT_NE(given, id->tMatrix);
    EXPECT_EQ(kz_CADObjId_setTMatrix(id.get(), given), 1);
    EXPECT_EQ(kz_CADObjId_setTMatrix(id.get(), given), 1);
    EXPECT_EQ(kz_CADObjId_getTMatrix(id.get()), given);
    EXPECT_EQ(originX(id.get()), 10.0);
    EXPECT_EQ(kz_CADObjId_setTMatrix(id.get(), nullptr), 1);
    EXPECT_EQ(kz_CADObjId_getTMatrix(id.get()), nullptr);
    EXPECT_EQ(kz_CADObjId_setTMatrix(nullptr, nullptr), 0);
}

TEST_F(ObjectIds, NullIsAnIdForAllThatTakesOne) {
    kz_CADObjId_init(nullptr);
    kz_CADObjId_destroy(nullptr);
    kz_CADObjId_setNestedState(nullptr, 1);
    kz_CADObjId_redrawObject(nullptr, 1);
    EXPECT_EQ(kz_CADObjId_getNestedState(nullptr), 0);
    EXPECT_EQ(kz_CADObjId_getTMatrix(nullptr), nullptr);
    EXPECT_EQ(kz_CADObjId_getTMatrixCopy(nullptr), nullptr);
    EXPECT_EQ(kz_CADObjId_erase(nullptr, 1), 0);
    EXPECT_EQ(kz_CADObjId_delete(nullptr), 0);
    EXPECT_EQ(kz_CADObjId_fromADSEname(nullptr), nullptr);
    EXPECT_EQ(kz_CADObjId_fromAcDbObjectId(nullptr), nullptr);
    kz_CADObjId id = {{1, 2}, nullptr, 3};
    id.tMatrix = reinterpret_cast<kz_TMatrix*>(&id);
    kz_CADObjId_init(&id);
    EXPECT_EQ(kz_CADObjId_isNull(&id), 1);
    EXPECT_EQ(id.tMatrix, nullptr);
    EXPECT_EQ(id.nestedState, 0);
}

TEST_F(ObjectIds, WithoutMemoryThereIsNoIdAndNoHalfCopy) {
    const Id id = picked();
    const Id target(kz_CADObjId_create(nullptr));
    const AcDbObjectId object = objectId();
    for (size_t nth = 1; nth <= 2; ++nth) {
        kz_Malloc_failFrom(nth);
        EXPECT_EQ(kz_CADObjId_copy(id.get()), nullptr) << nth;
        kz_Malloc_failFrom(0);
    }
    kz_Malloc_failFrom(1);
    EXPECT_EQ(kz_CADObjId_create(handle()), nullptr);
    EXPECT_EQ(kz_CADObjId_createFromDwgId(handle(), nullptr), nullptr);
    EXPECT_EQ(kz_CADObjId_fromADSEname(line_), nullptr);
    EXPECT_EQ(kz_CADObjId_fromAcDbObjectId(&object), nullptr);
    EXPECT_EQ(kz_CADObjId_getTMatrixCopy(id.get()), nullptr);
    const kz_Point origin = {};
    EXPECT_EQ(kz_CADObjId_setOrigin(target.get(), &origin), 0);
    kz_CADObjId_cloneTMatrixAndState(target.get(), id.get());
    EXPECT_EQ(kz_CADObjIdList_create(id.get(), nullptr), nullptr);
    kz_Malloc_failFrom(0);
    EXPECT_EQ(target->nestedState, 0);
    kz_Malloc_failFrom(2);
    EXPECT_EQ(kz_CADObjIdList_create(id.get(), nullptr), nullptr);
    kz_Malloc_failFrom(0);
    EXPECT_TRUE(isLine(id.get()));
}

// --- objects -------------------------------------------------------------------------------------

TEST_F(ObjectIds, ErasingOpensTheObjectAndDestroysTheIdOnRequest) {
    const Id id(kz_CADObjId_create(handle()));
    AcDbObject* open = nullptr;
    ASSERT_EQ(acdbOpenObject(open, objectId(), AcDb::kForRead), Acad::eOk);
    EXPECT_EQ(kz_CADObjId_erase(id.get(), 0), 0);
    EXPECT_EQ(kz_CADObjId_erase(kz_CADObjId_copy(id.get()), 1), 0);
    open->close();
    EXPECT_EQ(kz_CADObjId_erase(id.get(), 0), 1);
    EXPECT_EQ(acdbEntGet(line_), nullptr);
    EXPECT_EQ(kz_CADObjId_erase(id.get(), 0), 0);
    acdbEntDel(line_);
    EXPECT_EQ(kz_CADObjId_delete(kz_CADObjId_copy(id.get())), 1);
    EXPECT_EQ(acdbEntGet(line_), nullptr);
    EXPECT_EQ(kz_CADObjId_delete(kz_CADObjId_create(nullptr)), 0);
    EXPECT_EQ(kz_Error_isOk(), 1);
}

TEST_F(ObjectIds, ErasingFailsWithEachPlatformCall) {
    const Id id(kz_CADObjId_create(handle()));
    for (const char* call : {"acdbGetObjectId", "acdbOpenObject", "erase"}) {
        host::testing::failCall(call, 1, 6);
        EXPECT_EQ(kz_CADObjId_delete(kz_CADObjId_copy(id.get())), 0) << call;
        EXPECT_TRUE(host::testing::faultFired()) << call;
        host::testing::clearFault();
        EXPECT_EQ(host::openObjectCount(), 0) << call;
        EXPECT_NE(handleOf(line_), "") << call;
    }
}

TEST_F(ObjectIds, RedrawingPassesOnTheFourModes) {
    const Id id(kz_CADObjId_create(handle()));
    kz_CADObjId_redrawObject(id.get(), 3);
    kz_CADObjId_redrawObject(id.get(), 2);
    EXPECT_TRUE(host::isHighlighted(objectId()) && host::isOffScreen(objectId()));
    for (const int mode : {0, 5, -4, -1, 10000})
        kz_CADObjId_redrawObject(id.get(), mode);
    // A null id must not redraw everything.
    kz_CADObjId none = {};
    kz_CADObjId_redrawObject(&none, 1);
    EXPECT_TRUE(host::isHighlighted(objectId()) && host::isOffScreen(objectId()));
    kz_CADObjId_redrawObject(id.get(), 4);
    kz_CADObjId_redrawObject(id.get(), 1);
    EXPECT_FALSE(host::isHighlighted(objectId()) || host::isOffScreen(objectId()));
}

class ObjectIdErrors : public test::PrintedTest {};

TEST_F(ObjectIdErrors, ARefusedNameGoesToTheErrorListAndAnAssertionSpeaks) {
    traceAt(1);
    kz_CADObjId id = {{17, 4}, nullptr, 0};
    AcDbObjectId object(99);
    EXPECT_EQ(kz_CADObjId_getAcDbObjectId(&object, &id), 0);
    EXPECT_EQ(object.asOldId(), 99U);
    EXPECT_EQ(traced(), "KZ_Assertion failed");
    kz_Error_outputAllToStdErr();
    kz_Char text[KZ_DIAG_BUFFER_SIZE];
    kz_Error_getARXErrorMsg(text, KZ_T("acdbGetObjectId"), Acad::eInvalidKey);
    EXPECT_EQ(printed(), "11, " + narrow(text) + "\n");
    kz_Error_clearAll();
    EXPECT_EQ(kz_AcCAD_getAcDbDatabaseFromEname(id.ename), nullptr);
    EXPECT_EQ(traced(), "KZ_Assertion failed");
    kz_CADObjId_init(&id);
    EXPECT_EQ(kz_CADObjId_getAcDbObjectId(&object, &id), 0);
    EXPECT_EQ(kz_CADObjId_getAcDbObjectId(&object, nullptr), 0);
    EXPECT_EQ(kz_CADObjId_getAcDbObjectId(nullptr, &id), 0);
    EXPECT_EQ(traced(), "");
    EXPECT_EQ(kz_Error_isOk(), 1);
}

// --- names ---------------------------------------------------------------------------------------

TEST_F(ObjectIds, NamesLeadToEachOther) {
    const Id id(kz_CADObjId_fromADSEname(line_));
    EXPECT_TRUE(isLine(id.get()));
    AcDbObjectId object;
    EXPECT_EQ(kz_CADObjId_getAcDbObjectId(&object, id.get()), 1);
    EXPECT_EQ(object, objectId());
    EXPECT_TRUE(isLine(Id(kz_CADObjId_fromAcDbObjectId(&object)).get()));
    object.setNull();
    EXPECT_EQ(kz_AcCAD_getAcDbObjIdFromHandle(&object, handle(), nullptr), 1);
    EXPECT_EQ(object, objectId());
    ads_name name = {};
    EXPECT_EQ(kz_AcCAD_getEntNameFromHandle(name, handle(), working()), 1);
    EXPECT_TRUE(ads_name_equal(name, line_));
    kz_Char text[256] = {};
    EXPECT_EQ(kz_AcCAD_getHandleFromAcDbObjectId(text, &object), 1);
    EXPECT_EQ(narrow(text), narrow(handle()));
    EXPECT_EQ(narrow(kz_Ename_toHandle(line_)), narrow(handle()));
    EXPECT_EQ(kz_AcCAD_getAcDbDatabaseFromAcDbObjectId(&object), working());
    EXPECT_EQ(kz_AcCAD_getAcDbDatabaseFromEname(line_), working());
}

TEST_F(ObjectIds, WhatLeadsNowhereChangesNothing) {
    const AcDbObjectId none;
    AcDbObjectId object(99);
    ads_name name = {17, 4};
    kz_Char text[256] = KZ_T("text");
    EXPECT_EQ(kz_CADObjId_fromAcDbObjectId(&none), nullptr);
    for (const kz_Char* unknown : {static_cast<const kz_Char*>(nullptr), KZ_T(""), KZ_T("FFFF")}) {
        EXPECT_EQ(kz_AcCAD_getAcDbObjIdFromHandle(&object, unknown, nullptr), 0);
        EXPECT_EQ(kz_AcCAD_getEntNameFromHandle(name, unknown, nullptr), 0);
        EXPECT_EQ(kz_Ename_fromHandleInDwgId(name, unknown, nullptr), 0);
    }
    EXPECT_EQ(kz_AcCAD_getAcDbObjIdFromHandle(nullptr, handle(), nullptr), 0);
    EXPECT_EQ(kz_AcCAD_getEntNameFromHandle(nullptr, handle(), nullptr), 0);
    EXPECT_EQ(kz_AcCAD_getHandleFromAcDbObjectId(text, &none), 0);
    EXPECT_EQ(kz_AcCAD_getHandleFromAcDbObjectId(text, nullptr), 0);
    EXPECT_EQ(kz_AcCAD_getAcDbDatabaseFromAcDbObjectId(&none), nullptr);
    EXPECT_EQ(kz_AcCAD_getAcDbDatabaseFromAcDbObjectId(nullptr), nullptr);
    EXPECT_EQ(kz_AcCAD_getAcDbDatabaseFromEname(nullptr), nullptr);
    EXPECT_EQ(kz_AcCADDwgId_getAcDbDatabase(nullptr), nullptr);
    EXPECT_EQ(kz_Ename_toHandle(name), nullptr);
    EXPECT_EQ(kz_Ename_toHandle(nullptr), nullptr);
    EXPECT_EQ(object.asOldId(), 99U);
    EXPECT_TRUE(name[0] == 17 && name[1] == 4);
    EXPECT_EQ(narrow(text), "text");
    EXPECT_EQ(kz_Error_isOk(), 1);
}

TEST_F(ObjectIds, AnEntityMustExistForFromHandleAlone) {
    ads_name name = {17, 4};
    EXPECT_EQ(kz_Ename_fromHandle(name, nullptr), 0);
    EXPECT_TRUE(name[0] == 17 && name[1] == 4);
    EXPECT_EQ(kz_Ename_fromHandle(nullptr, handle()), 0);
    EXPECT_EQ(kz_Ename_fromHandle(name, handle()), 1);
    EXPECT_TRUE(ads_name_equal(name, line_));
    EXPECT_EQ(kz_Ename_fromHandle(name, KZ_T("FFFF")), 0);
    EXPECT_TRUE(ads_name_nil(name));
    acdbEntDel(line_);
    ads_name_set(line_, name);
    EXPECT_EQ(kz_Ename_fromHandle(name, handle()), 0);
    EXPECT_TRUE(ads_name_nil(name));
    EXPECT_EQ(kz_Ename_fromHandleInDwgId(name, handle(), nullptr), 1);
    EXPECT_TRUE(ads_name_equal(name, line_));
    EXPECT_EQ(kz_Ename_toHandle(line_), nullptr);
    EXPECT_EQ(kz_AcCAD_getAcDbDatabaseFromEname(line_), nullptr);
}

TEST_F(ObjectIds, AHandleMeansAnotherObjectInAnotherDrawing) {
    AcDbDatabase other;
    kz_CADDwgId drawing = {{u'K', u'Z', u'_', u'D'}, nullptr, &other};
    ads_name inside = {};
    ads_name here = {};
    // New drawings give the same handles.
    ASSERT_EQ(acdbNamedObjDict(here), RTNORM);
    const std::u16string both = wide(handleOf(here));
    EXPECT_EQ(kz_Ename_fromHandleInDwgId(inside, both.c_str(), &drawing), 1);
    EXPECT_FALSE(ads_name_equal(inside, here));
    EXPECT_EQ(kz_AcCAD_getAcDbDatabaseFromEname(inside), &other);
    const Id id(kz_CADObjId_createFromDwgId(both.c_str(), &drawing));
    EXPECT_TRUE(ads_name_equal(id->ename, inside));
    // Of a drawing that was closed; its handles must not be taken for those of the editor's.
    drawing.database = nullptr;
    EXPECT_EQ(kz_Ename_fromHandleInDwgId(inside, both.c_str(), &drawing), 0);
    EXPECT_EQ(kz_CADObjId_setFromDwgId(id.get(), both.c_str(), &drawing), 0);
    EXPECT_EQ(kz_AcCADDwgId_getAcDbDatabase(&drawing), nullptr);
    EXPECT_TRUE(ads_name_equal(id->ename, inside));
    host::closeDrawing();
    EXPECT_EQ(kz_Ename_fromHandleInDwgId(inside, both.c_str(), nullptr), 0);
    EXPECT_EQ(kz_AcCAD_getEntNameFromHandle(inside, both.c_str(), nullptr), 0);
}

// --- lists ---------------------------------------------------------------------------------------

class ObjectIdLists : public ObjectIds {
  protected:
    static kz_CADObjId* named(int64_t number) {
        const ads_name name = {number, 0};
        return kz_CADObjId_fromADSEname(name);
    }
    static std::string show(kz_CADObjIdList* list) {
        std::string text;
        for (kz_CADObjIdList_start(list); kz_CADObjIdList_eol(list) == 0;
             kz_CADObjIdList_next(list))
            text += std::to_string(kz_CADObjIdList_getCurr(list)->ename[0]);
        return text;
    }
};

TEST_F(ObjectIdLists, AreMadeOfIdsUpToANullAndDestroyThem) {
    kz_CADObjId* const none = nullptr;
    kz_CADObjIdList* const empty = kz_CADObjIdList_create(nullptr);
    ASSERT_NE(empty, nullptr);
    EXPECT_EQ(kz_CADObjIdList_length(empty), 0);
    kz_CADObjIdList* const list = kz_CADObjIdList_create(named(1), named(2), named(3), none);
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(kz_CADObjIdList_getCurr(list)->ename[0], 1);
    EXPECT_NE(kz_CADObjIdList_insEnd(list, picked().release()), nullptr);
    EXPECT_EQ(kz_CADObjIdList_delNth(list, 3), 1);
    EXPECT_EQ(kz_CADObjIdList_delNth(list, 3), 0);
    EXPECT_NE(kz_CADObjIdList_insEnd(empty, named(4)), nullptr);
    EXPECT_EQ(kz_CADObjIdList_join(list, empty), 1);
    EXPECT_EQ(show(list), "1234");
    EXPECT_EQ(kz_CADObjIdList_start(list), 1);
    EXPECT_EQ(kz_CADObjIdList_next(list), 1);
    EXPECT_EQ(kz_CADObjIdList_delCurr(list), 1);
    EXPECT_EQ(kz_CADObjIdList_getCurr(list)->ename[0], 3);
    EXPECT_EQ(show(list), "134");
    EXPECT_EQ(kz_CADObjIdList_delCurr(list), 0);
    EXPECT_EQ(kz_CADObjIdList_delAll(list), 1);
    EXPECT_EQ(kz_CADObjIdList_length(list), 0);
    EXPECT_EQ(kz_CADObjIdList_destroy(list), 1);
    EXPECT_EQ(kz_CADObjIdList_destroy(nullptr), 0);
}

TEST_F(ObjectIdLists, SearchGivesThePlaceAndStandsThere) {
    kz_CADObjId* const none = nullptr;
    kz_CADObjIdList* const list = kz_CADObjIdList_create(named(1), named(2), named(2), none);
    const Id two(named(2));
    const Id nine(named(9));
    EXPECT_EQ(kz_CADObjIdList_search(list, two.get()), 1);
    EXPECT_EQ(kz_CADObjIdList_getCurr(list)->ename[0], 2);
    EXPECT_EQ(kz_CADObjIdList_search(list, nine.get()), -1);
    EXPECT_EQ(kz_CADObjIdList_eol(list), 1);
    EXPECT_EQ(kz_CADObjIdList_search(list, nullptr), -1);
    EXPECT_EQ(kz_CADObjIdList_search(nullptr, two.get()), -1);
    kz_CADObjIdList_destroy(list);
}

// --- without the service -------------------------------------------------------------------------

class WithoutDrawingService : public test::PrintedTest {};

TEST_F(WithoutDrawingService, ThereAreNoDrawingIds) {
    ads_name name = {17, 4};
    kz_CADDwgId_toADSName(name, nullptr);
    EXPECT_TRUE(name[0] == 17 && name[1] == 4);
    kz_CADDwgId record = {{u'K', u'Z', u'_', u'D'}, nullptr, nullptr};
    kz_CADDwgId_toADSName(name, &record);
    EXPECT_EQ(name[1], 0);
    EXPECT_EQ(kz_CADDwgId_fromADSName(name, 0), &record);
    EXPECT_EQ(kz_CADDwgId_check(&record, 0), &record);
    EXPECT_EQ(kz_CADDwgId_check(nullptr, 1), nullptr);
    EXPECT_EQ(kz_CADDwgId_fromADSName(nullptr, 1), nullptr);
    EXPECT_EQ(printed(), "");
    EXPECT_EQ(kz_CADDwgId_fromADSName(name, 1), nullptr);
    EXPECT_NE(printed().find("KZ_CADSERVICE service not loaded."), std::string::npos);
    const ads_name wild = {8, 0};
    EXPECT_EQ(kz_CADDwgId_fromADSName(wild, 1), nullptr);
}

TEST_F(WithoutDrawingService, NoObjectsAreFound) {
    const std::string missing = "\nkz_CADFuncPtr_get: KZ_CADSERVICE service not loaded.\n";
    EXPECT_EQ(kz_CADObjIdList_fromLayer(nullptr, KZ_T("0")), nullptr);
    EXPECT_EQ(printed(), missing);
    EXPECT_EQ(kz_CADObjIdList_fromColor(KZ_T("a.dxf"), KZ_T("RED")), nullptr);
    EXPECT_EQ(printed(), missing);
    EXPECT_EQ(kz_CADObjIdList_fromLayer(nullptr, KZ_T("")), nullptr);
    EXPECT_EQ(kz_CADObjIdList_fromColor(nullptr, nullptr), nullptr);
    EXPECT_EQ(kz_CADObjIdList_fromAttributes(nullptr, nullptr, 0), nullptr);
    EXPECT_EQ(printed(), "");
}

}  // namespace
