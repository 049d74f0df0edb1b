/// Drawing ids and the list of known drawings.
#include <cmath>
#include <cstring>

#include "suite_test.h"

namespace {

class DrawingIds : public test::SuiteTest {
  protected:
    /// "host.dxf" in the editor with "part.dxf" attached, which has "nut.dxf" attached.
    void openHost() {
        line("NUT");
        saved("nut.dxf");
        attach("NUT", "nut.dxf");
        insert("NUT", "(10 0.0 5.0 0.0)");
        saved("part.dxf");
        attach("PART", "part.dxf");
        attach("AGAIN", "part.dxf");
        insert("PART", "(10 10.0 0.0 0.0) (50 . 1.5707963267948966)");
        saved("host.dxf");
        open("host.dxf");
    }
};

TEST_F(DrawingIds, RecordHasSignatureNameAndDatabase) {
    openHost();
    kz_CADDwgId* const id = SUITE(kz_CADDwgId_create)(nullptr, 3);
    ASSERT_NE(id, nullptr);
    EXPECT_EQ(std::memcmp(id->signature, KZ_T("KZ_D"), 4 * sizeof(kz_Char)), 0);
    EXPECT_EQ(kz::toUtf8(id->name), folder_.file("host.dxf"));
    EXPECT_EQ(id->database, editor());
    EXPECT_EQ(nameOf(id), "host.dxf");
    EXPECT_EQ(SUITE(kz_CADDwgId_isInEditor)(id), 1);
    EXPECT_EQ(SUITE(kz_CADDwgId_isAttached)(id), 0);
    EXPECT_EQ(SUITE(kz_CADDwgId_create)(nullptr, 1), nullptr);
    line("LATER");
    EXPECT_TRUE(host::drawingIsUnsaved());
    EXPECT_EQ(SUITE(kz_CADDwgId_save)(id), 1);
    EXPECT_FALSE(host::drawingIsUnsaved());
    open("host.dxf");
    EXPECT_EQ(entities(editor()), 2);
    host::newDrawing();
    kz_CADDwgId* const unnamed = drawing("");
    ASSERT_NE(unnamed, nullptr);
    EXPECT_EQ(unnamed->name, nullptr);
    EXPECT_EQ(nameOf(unnamed), "");
    EXPECT_EQ(SUITE(kz_CADDwgId_save)(unnamed), 0);
    host::closeDrawing();
    EXPECT_EQ(drawing(""), nullptr);
}

TEST_F(DrawingIds, UsesAreCountedAndTheLastOneFreesTheRecord) {
    openHost();
    kz_CADDwgId* const id = drawing("");
    EXPECT_EQ(drawing("host.dxf"), id);
    EXPECT_EQ(drawing(folder_.file("host.dxf"), 2), id);
    EXPECT_EQ(SUITE(kz_CADDwgId_getRefCount)(id), 3);
    SUITE(kz_CADDwgId_destroy)(id);
    SUITE(kz_CADDwgId_destroy)(nullptr);
    EXPECT_EQ(SUITE(kz_CADDwgId_isValid)(id), 1);
    SUITE(kz_CADDwgId_destroy)(id);
    SUITE(kz_CADDwgId_destroy)(id);
    EXPECT_EQ(SUITE(kz_CADDwgId_isValid)(id), 0);
    SUITE(kz_CADDwgId_destroy)(id);
    EXPECT_EQ(SUITE(kz_CADDwgId_getRefCount)(id), 0);
}

TEST_F(DrawingIds, PointersThatAreNoLivingRecordAreNeverFollowed) {
    auto* const nonsense = reinterpret_cast<kz_CADDwgId*>(uintptr_t{0x4B5A000100000007});
    for (kz_CADDwgId* id : {nonsense, static_cast<kz_CADDwgId*>(nullptr)}) {
        EXPECT_EQ(SUITE(kz_CADDwgId_isValid)(id), 0);
        EXPECT_EQ(SUITE(kz_CADDwgId_isAttached)(id), 0);
        EXPECT_EQ(SUITE(kz_CADDwgId_isInEditor)(id), 0);
        EXPECT_EQ(SUITE(kz_CADDwgId_isEqual)(id, id), 0);
        EXPECT_EQ(SUITE(kz_CADDwgId_saveAs)(id, KZ_T("x")), 0);
        EXPECT_EQ(nameOf(id), "");
        int flag = 7;
        EXPECT_EQ(SUITE(kz_CADDwgId_getTransform)(&flag, nullptr, nullptr, nullptr, id), 0);
        EXPECT_EQ(flag, 7);
        SUITE(kz_CADDwgId_destroy)(id);
    }
    EXPECT_EQ(SUITE(kz_CADDwgId_getCADObjIdListFromLayer)(nonsense, KZ_T("0")), nullptr);
}

TEST_F(DrawingIds, AttachedDrawingKnowsItsPlaceThroughAllDrawingsBetween) {
    openHost();
    kz_CADDwgId* const part = drawing("PART.DXF");
    kz_CADDwgId* const nut = drawing(folder_.file("nut.dxf"));
    ASSERT_TRUE(part != nullptr && nut != nullptr);
    EXPECT_EQ(SUITE(kz_CADDwgId_isAttached)(nut), 1);
    EXPECT_EQ(SUITE(kz_CADDwgId_isInEditor)(nut), 0);
    int attached = 0;
    kz_Point origin{};
    kz_RotMatrix rotation{};
    double angle = 0.0;
    ASSERT_EQ(SUITE(kz_CADDwgId_getTransform)(&attached, &origin, &rotation, &angle, nut), 1);
    EXPECT_EQ(attached, 1);
    const kz_Point expected{5.0, 0.0, 0.0};
    EXPECT_TRUE(kz_Point_equal(&origin, &expected)) << origin.x << " " << origin.y;
    EXPECT_NEAR(rotation.element[1][0], 1.0, 1e-12);
    EXPECT_NEAR(rotation.element[0][1], -1.0, 1e-12);
    EXPECT_NEAR(angle, std::acos(0.0), 1e-12);
    ASSERT_EQ(SUITE(kz_CADDwgId_getTransform)(&attached, &origin, &rotation, &angle, drawing("")),
              1);
    EXPECT_EQ(attached, 0);
    EXPECT_EQ(kz_RotMatrix_isIdentity(&rotation), 1);
    EXPECT_EQ(angle, 0.0);
}

TEST_F(DrawingIds, ModeTwoGivesTheFileOnItsOwnToChangeAndSave) {
    openHost();
    kz_CADDwgId* const attached = drawing("part.dxf", 3);
    kz_CADDwgId* const own = drawing(folder_.file("part.dxf"), 2);
    ASSERT_TRUE(own != nullptr && attached != nullptr);
    EXPECT_NE(own->database, attached->database);
    EXPECT_EQ(SUITE(kz_CADDwgId_isAttached)(own), 0);
    EXPECT_EQ(SUITE(kz_CADDwgId_isEqual)(own, attached), 1);
    EXPECT_EQ(SUITE(kz_CADDwgId_isEqual)(own, drawing("")), 0);
    AcDbObjectId insertion;
    host::forEachEntity(own->database, [&](const host::EntityLook& look) {
        insertion = look.id;
        return false;
    });
    AcDbEntity* entity = nullptr;
    ASSERT_EQ(acdbOpenObject(entity, insertion, AcDb::kForWrite), Acad::eOk);
    entity->erase();
    entity->close();
    const std::u16string copy = kz::toUtf16(folder_.file("copy.dxf"));
    EXPECT_EQ(SUITE(kz_CADDwgId_saveAs)(own, copy.c_str()), 1);
    EXPECT_EQ(SUITE(kz_CADDwgId_saveAs)(own, KZ_T("/nowhere/copy.dxf")), 0);
    EXPECT_EQ(nameOf(own), "part.dxf");
    EXPECT_EQ(SUITE(kz_CADDwgId_save)(own), 1);
    for (const char* file : {"copy.dxf", "part.dxf"})
        EXPECT_EQ(entities(drawing(folder_.file(file), 2)->database), 0) << file;
    EXPECT_EQ(drawing(folder_.file("none.dxf"), 2), nullptr);
    EXPECT_EQ(drawing(folder_.write("torn.dxf", "no drawing"), 3), nullptr);
}

TEST_F(DrawingIds, RecordOutlivesItsDrawingWithoutADatabase) {
    openHost();
    kz_CADDwgId* const id = drawing("");
    kz_CADDwgId* const part = drawing("part.dxf");
    host::newDrawing();
    for (kz_CADDwgId* closed : {id, part}) {
        EXPECT_EQ(closed->database, nullptr);
        EXPECT_EQ(SUITE(kz_CADDwgId_isValid)(closed), 0);
        EXPECT_EQ(SUITE(kz_CADDwgId_save)(closed), 0);
        EXPECT_EQ(SUITE(kz_CADDwgId_getRefCount)(closed), 1);
    }
    EXPECT_EQ(nameOf(id), "host.dxf");
    EXPECT_NE(drawing(""), id);
}

TEST_F(DrawingIds, ListWalksTheKnownDrawingsAndHoldsTheirRecords) {
    openHost();
    drawing(folder_.file("part.dxf"), 2);
    kz_CADDwgIdList* const list = SUITE(kz_CADDwgIdList_create)(0, 0, 1);
    ASSERT_NE(list, nullptr);
    std::string names;
    for (SUITE(kz_CADDwgIdList_start)(list); SUITE(kz_CADDwgIdList_eol)(list) == 0;
         SUITE(kz_CADDwgIdList_next)(list))
        names += nameOf(SUITE(kz_CADDwgIdList_getCurr)(list)) + " ";
    EXPECT_EQ(names, "host.dxf part.dxf nut.dxf part.dxf nut.dxf part.dxf ");
    EXPECT_EQ(SUITE(kz_CADDwgIdList_getCurr)(list), nullptr);
    EXPECT_EQ(SUITE(kz_CADDwgIdList_next)(list), 0);
    kz_CADDwgId* const id = drawing("");
    EXPECT_EQ(SUITE(kz_CADDwgId_getRefCount)(id), 2);
    EXPECT_EQ(SUITE(kz_CADDwgIdList_destroy)(list), 1);
    EXPECT_EQ(SUITE(kz_CADDwgId_getRefCount)(id), 1);
    EXPECT_EQ(SUITE(kz_CADDwgIdList_destroy)(list), 0);
    EXPECT_EQ(SUITE(kz_CADDwgIdList_eol)(nullptr), 1);

    kz_CADDwgIdList* const emptied = SUITE(kz_CADDwgIdList_create)(0, 0, 1);
    SUITE(kz_CADDwgId_destroyAll)();
    EXPECT_EQ(SUITE(kz_CADDwgId_isValid)(id), 0);
    EXPECT_EQ(SUITE(kz_CADDwgIdList_start)(emptied), 0);
    EXPECT_EQ(SUITE(kz_CADDwgIdList_destroy)(emptied), 1);
}

TEST_F(DrawingIds, AttachedDrawingsAreListedOnceByTheirFiles) {
    openHost();
    kz_StrList* files = SUITE(kz_CAD_getAttachedDrawings)(nullptr);
    ASSERT_EQ(kz_StrList_length(files), 2);
    EXPECT_TRUE(kz::toUtf8(kz_StrList_getNth(files, 0)).ends_with("/part.dxf"));
    EXPECT_TRUE(kz::toUtf8(kz_StrList_getNth(files, 1)).ends_with("/nut.dxf"));
    kz_StrList_destroy(files);
    files = SUITE(kz_CAD_getAttachedDrawings)(KZ_T("part.dxf"));
    EXPECT_EQ(kz_StrList_length(files), 1);
    kz_StrList_destroy(files);
    EXPECT_EQ(SUITE(kz_CAD_getAttachedDrawings)(KZ_T("nut.dxf")), nullptr);
    EXPECT_EQ(SUITE(kz_CAD_getAttachedDrawings)(KZ_T("none.dxf")), nullptr);
    EXPECT_EQ(SUITE(kz_CADDwgId_getRefCount)(drawing("")), 1);
}

}  // namespace
