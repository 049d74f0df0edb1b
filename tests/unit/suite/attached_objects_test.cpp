/// Objects inside attached drawings, with the service there: their drawing and its file, how it
/// lies in the current one, and their data in the coordinates of the current one. Further what the
/// twins of properties trace and put on the error list, and moving in local coordinates.
#include <cmath>
#include <memory>
#include <utility>

#include "entity_list.h"
#include "host/input.h"
#include "host/output.h"
#include "host/testing.h"
#include "kz/kz_zaglaid.h"
#include "suite_test.h"

namespace {

std::string traced_lines;

void collect(const kz_Char* message, const char* /*source*/, int /*line*/) {
    traced_lines += kz::toUtf8(message) + '\n';
}

class AttachedObjects : public test::SuiteTest {
  protected:
    void SetUp() override {
        SuiteTest::SetUp();
        std::string error;
        ASSERT_TRUE(host::loadModule(KZ_BUILD_DIR "/libkz_zaglaid.so", error)) << error;
        host::setSink(host::Channel::Message,
                      [this](std::u16string_view text) { printed_ += kz::toUtf8(text); });
        kz_Diag_setHandler(collect);
        kz_Diag_setOutput(KZ_DIAG_OUTPUT_HANDLER, KZ_T(""));
        records_ = kz_Record_count();
    }
    void TearDown() override {
        kz_Diag_disable();
        kz_Error_clearAll();
        EXPECT_EQ(kz_Record_count(), records_);
        host::resetLisp();
        host::setSink(host::Channel::Message, {});
        SuiteTest::TearDown();
    }

    /// Attaches a drawing with one line that has data; the block stands at (10, 20, 0), turned by
    /// 90 degrees. @return the line inside
    kz_CADObjId attachLine() {
        line("0");
        lisp(
            "(regapp \"KZ\") (setq l (entget (entlast)))"
            "(entmod (append l '((-3 (\"KZ\" (1002 . \"{\") (1000 . \"AT\") (1010 1.0 2.0 3.0) "
            "(1002 . \"}\"))))))");
        saved("inner.dxf");
        attach("Inner", "inner.dxf");
        insert("Inner", "(10 10.0 20.0 0.0) (50 . 1.5707963267948966)");
        saved("outer.dxf");
        open("outer.dxf");
        return firstOf(host::attachedDrawing(host::attachments(editor())[0].block));
    }
    /// The first entity of a drawing.
    static kz_CADObjId firstOf(AcDbDatabase* drawing) {
        kz_CADObjId id = {};
        host::forEachEntity(drawing, [&](const host::EntityLook& look) {
            EXPECT_EQ(acdbGetAdsName(id.ename, look.id), Acad::eOk);
            return false;
        });
        return id;
    }
    static std::string drawingOf(const kz_CADObjId& id) {
        kz_Char file[600] = {};
        const int status = kz_CADObjId_getDrawingName(file, &id);
        return status == 1 ? std::filesystem::path(kz::toUtf8(file)).filename().string() : "<none>";
    }
    /// A point field as its three coordinates.
    static std::string pointIn(kz_FldList* list) {
        const kz_FldNode* field = kz_FldList_find(list, KZ_T("AT"));
        if (field == nullptr || field->type != KZ_FLD_POINT) return "<none>";
        const kz_Point& at = field->value.point;
        return std::to_string(std::lround(at.x)) + "," + std::to_string(std::lround(at.y)) + "," +
               std::to_string(std::lround(at.z));
    }
    std::string errors() {
        printed_.clear();
        kz_Error_outputAllToStdErr();
        kz_Error_clearAll();
        return std::exchange(printed_, {});
    }

    /// Makes three drawings, each attached to the next, and opens the last one: "deep.dxf" with a
    /// line from (0 0) to (4 0) and a polyline; "mid.dxf", which has it at (10 0), turned by 90
    /// degrees, by 2; "top.dxf", which has that at (100 50), turned by 180 degrees, by 3. A point
    /// (x y) of deep is at (10 - 2y, 2x) in mid and at (70 + 6y, 50 - 6x) in top.
    void attachTwice() {
        lisp(
            "(setvar \"CMDECHO\" 0) (entmake '((0 . \"LINE\") (8 . \"0\") (10 0.0 0.0 0.0) "
            "(11 4.0 0.0 0.0))) (entmake '((0 . \"POLYLINE\") (8 . \"0\") (66 . 1) (70 . 0))) "
            "(entmake '((0 . \"VERTEX\") (8 . \"0\") (10 0.0 9.0 0.0))) "
            "(entmake '((0 . \"VERTEX\") (8 . \"0\") (10 4.0 9.0 0.0))) "
            "(entmake '((0 . \"SEQEND\")))");
        saved("deep.dxf");
        lisp("(command \"_.xref\" \"_attach\" \"DEEP=" + folder_.file("deep.dxf") +
             "\" '(10 0) 2.0 \"\" 90.0)");
        mark("KZ");
        saved("mid.dxf");
        lisp("(command \"_.xref\" \"_attach\" \"MID=" + folder_.file("mid.dxf") +
             "\" '(100 50) 3.0 \"\" 180.0)");
        saved("top.dxf");
        open("top.dxf");
        lisp("(command \"_.zoom\" \"_c\" '(60 40) 100.0)");
    }
    /// Gives the last entity data of an application.
    static void mark(const std::string& application) {
        lisp("(regapp \"" + application + "\") (entmod (append (entget (entlast)) '((-3 (\"" +
             application +
             "\" (1002 . \"{\") (1000 . \"AT\") (1010 1.0 2.0 3.0) (1002 . \"}\"))))))");
    }
    /// What a pick gave: type, file, state, and where the drawing's origin and x axis lie.
    static std::string told(kz_CADObjId* picked) {
        const OwnedId id(picked);
        if (id == nullptr) return "none";
        const Chain groups(acdbEntGet(id->ename));
        std::string text = kz::toUtf8(textAt(groups.get(), 0)) + " " + drawingOf(*id) + " " +
                           std::to_string(kz_CADObjId_getNestedState(id.get()));
        kz_Point origin = {};
        kz_RotMatrix rotation;
        if (kz_CADObjId_getTMatrix(id.get()) == nullptr) return text;
        int attached = -1;
        EXPECT_EQ(kz_CADObjId_getDwgTransform(&attached, &origin, &rotation, id.get()), 1);
        EXPECT_EQ(attached, 1);
        for (const double value :
             {origin.x, origin.y, origin.z, rotation.element[0][0], rotation.element[1][0]})
            text += " " + std::to_string(std::lround(value));
        return text;
    }
    static std::string at(double x, double y) {
        const kz_Point point = {x, y, 0};
        return told(kz_CADObjId_getAtPoint(&point));
    }
    static std::string selected(double x, double y, kz_Point* point = nullptr) {
        host::queuePoint(x, y);
        return told(kz_CADObjId_select(KZ_T("Pick: "), point));
    }

    struct IdDestroy {
        void operator()(kz_CADObjId* id) const { kz_CADObjId_destroy(id); }
    };
    using OwnedId = std::unique_ptr<kz_CADObjId, IdDestroy>;

  private:
    std::string printed_;
    int64_t records_ = 0;
};

TEST_F(AttachedObjects, APickInNestedDrawingsGivesObjectDrawingAndTransform) {
    attachTwice();
    // (2 0) of deep. Its insertion in mid has data, the line has none.
    EXPECT_EQ(at(70, 38), "INSERT mid.dxf 2 70 50 0 0 -6");
    lisp("(command \"_.xref\" \"_unload\" \"MID\") (command \"_.u\")");
    EXPECT_EQ(at(70, 38), "INSERT mid.dxf 2 70 50 0 0 -6") << "after an undo";
    kz_Point point = {};
    EXPECT_EQ(selected(70, 38, &point), "INSERT mid.dxf 2 70 50 0 0 -6");
    EXPECT_EQ(point.x * 100 + point.y, 7038);
    // (2 9), the polyline.
    EXPECT_EQ(at(124, 38), "INSERT mid.dxf 2 70 50 0 0 -6");
    EXPECT_EQ(at(76, 38), "none");
    EXPECT_NE(errors().find("acedNEntSelP"), std::string::npos);
    lisp("(command \"_.xref\" \"_unload\" \"MID\")");
    EXPECT_EQ(at(70, 38), "none");
    kz_Error_clearAll();
}

TEST_F(AttachedObjects, WithoutDataAroundItTheInnermostObjectIsPicked) {
    attachTwice();
    AcDbDatabase* const middle = host::attachedDrawing(host::attachments(editor())[0].block);
    AcDbObjectId insert;
    host::forEachEntity(middle, [&](const host::EntityLook& look) {
        insert = look.id;
        return false;
    });
    AcDbEntity* entity = nullptr;
    ASSERT_EQ(acdbOpenObject(entity, insert, AcDb::kForWrite), Acad::eOk);
    const Chain no_data(acutBuildList(1001, KZ_T("KZ"), 0));
    EXPECT_EQ(entity->setXData(no_data.get()), Acad::eOk);
    entity->close();
    EXPECT_EQ(at(70, 38), "LINE deep.dxf 2 70 50 0 0 -6");
    EXPECT_EQ(at(124, 38), "POLYLINE deep.dxf 2 70 50 0 0 -6") << "not its vertex";
    EXPECT_EQ(selected(124, 38), "POLYLINE deep.dxf 2 70 50 0 0 -6");
    const kz_Point inside = {70, 38, 0};
    const OwnedId id(kz_CADObjId_getAtPoint(&inside));
    kz_CADDwgId* deep = kz_CADObjId_getDwgId(id.get());
    EXPECT_EQ(nameOf(deep), "deep.dxf");
    SUITE(kz_CADDwgId_destroy)(deep);
}

TEST_F(AttachedObjects, AGroupMemberAroundThePickGoesFirst) {
    attachTwice();
    mark("KZ_GRP");
    EXPECT_EQ(selected(70, 38), "INSERT top.dxf 2 70 50 0 0 -6");
    EXPECT_EQ(at(70, 38), "INSERT mid.dxf 2 70 50 0 0 -6") << "a point looks for any data";
}

TEST_F(AttachedObjects, PicksInTheDrawingItselfHaveNoTransform) {
    attachTwice();
    lisp(
        "(entmake '((0 . \"BLOCK\") (2 . \"OWN\") (70 . 0) (10 0.0 0.0 0.0)))"
        "(entmake '((0 . \"LINE\") (8 . \"0\") (10 0.0 0.0 0.0) (11 4.0 0.0 0.0)))"
        "(entmake '((0 . \"ENDBLK\")))"
        "(entmake '((0 . \"INSERT\") (8 . \"0\") (66 . 1) (2 . \"OWN\") (10 50.0 30.0 0.0)))"
        "(entmake '((0 . \"ATTRIB\") (8 . \"0\") (10 50.0 40.0 0.0) (40 . 2.0) (1 . \"AB\") "
        "(2 . \"T\") (70 . 0)))"
        "(entmake '((0 . \"SEQEND\")))");
    EXPECT_EQ(at(52, 30), "LINE top.dxf 1");
    EXPECT_EQ(selected(52, 30), "INSERT top.dxf 1");
    EXPECT_EQ(at(51, 41), "INSERT top.dxf 1") << "not its attribute";
    mark("KZ");
    EXPECT_EQ(at(52, 30), "INSERT top.dxf 1") << "it has data";
    line("0");
    EXPECT_EQ(selected(0.5, 0), "LINE top.dxf 1");
}

TEST_F(AttachedObjects, PicksAreMadeInLocalCoordinates) {
    attachTwice();
    const kz_Vector origin = {100, 100, 0}, x = {0, 1, 0}, y = {-1, 0, 0};
    ASSERT_EQ(SUITE(kz_CoordSys_fromVectorsXY)(&origin, &x, &y), 1);
    EXPECT_EQ(at(-62, 30), "INSERT mid.dxf 2 70 50 0 0 -6");
    kz_Point point = {};
    EXPECT_EQ(selected(70, 38, &point), "INSERT mid.dxf 2 70 50 0 0 -6");
    EXPECT_NEAR(point.x, -62, 1e-9);
    EXPECT_NEAR(point.y, 30, 1e-9);
    SUITE(kz_CoordSys_previous)();
}

TEST_F(AttachedObjects, PicksThatFailSaySoWhereItIsNotTheUser) {
    attachTwice();
    EXPECT_EQ(selected(0, 0), "none");
    host::queueCancel();
    EXPECT_EQ(kz_CADObjId_select(nullptr, nullptr), nullptr);
    EXPECT_EQ(kz_CADObjId_getAtPoint(nullptr), nullptr);
    lisp("(kz_CADObjId_getAtPoint 5) (kz_CADObjId_select 5)");
    EXPECT_EQ(errors(), "");
    // The entity is opened twice before its block.
    host::testing::failCall("acdbOpenObject", 3, Acad::eOutOfMemory);
    EXPECT_EQ(selected(70, 38), "INSERT top.dxf 1");
    host::testing::clearFault();
    EXPECT_NE(errors().find("acdbOpenAcDbObject"), std::string::npos);
    ads_name none = {0, 0}, out = {7, 7};
    int has_data = -1;
    EXPECT_EQ(kz_AcCAD_resolvePickedEntity(out, none, nullptr, &has_data), 0);
    EXPECT_EQ(out[0] + out[1] + has_data, 0);
    EXPECT_EQ(kz_AcCAD_resolvePickedEntity(nullptr, out, nullptr, nullptr), 0);
}

TEST_F(AttachedObjects, DataComesInTheCoordinatesOfTheCurrentDrawing) {
    const kz_CADObjId inside = attachLine();
    kz_FldList* fields = kz_CADObj_getXDataFldList(&inside, nullptr, KZ_T("KZ"));
    EXPECT_EQ(pointIn(fields), "8,21,3");
    kz_FldList_destroy(fields);
    fields = kz_XData_getFldList(inside.ename, nullptr, KZ_T("KZ"));
    EXPECT_EQ(pointIn(fields), "1,2,3") << "what is stored stays";
    kz_FldList_destroy(fields);
    kz_AppDataList* list = kz_AppDataList_getFromCADObjId(&inside);
    EXPECT_EQ(pointIn(kz_AppDataList_getFldList(list, KZ_T("kz"))), "8,21,3");
    kz_AppDataList_destroy(list);
}

TEST_F(AttachedObjects, DataOfTheCurrentDrawingStaysWhereItIs) {
    attachLine();
    lisp(
        "(regapp \"KZ\") (entmake '((0 . \"POINT\") (10 0.0 0.0 0.0) (-3 (\"KZ\" (1002 . \"{\") "
        "(1000 . \"AT\") (1010 1.0 2.0 3.0) (1002 . \"}\")))))");
    kz_CADObjId own = {};
    ASSERT_EQ(acdbEntLast(own.ename), RTNORM);
    kz_FldList* fields = kz_CADObj_getXDataFldList(&own, nullptr, KZ_T("KZ"));
    EXPECT_EQ(pointIn(fields), "1,2,3");
    kz_FldList_destroy(fields);
}

TEST_F(AttachedObjects, TheTransformIsThatOfThePickOrElseOfTheService) {
    kz_CADObjId inside = attachLine();
    int attached = -1;
    kz_Point origin = {};
    kz_RotMatrix rotation;
    EXPECT_EQ(kz_CADObjId_getDwgTransform(&attached, &origin, &rotation, &inside), 1);
    EXPECT_EQ(attached, 1);
    EXPECT_EQ(origin.x + origin.y, 30.0);
    EXPECT_NEAR(rotation.element[1][0], 1.0, 1e-12);
    EXPECT_EQ(kz_CADObjId_getDwgTransform(nullptr, &origin, &rotation, &inside), 1);
    EXPECT_EQ(kz_CADObjId_getDwgTransform(&attached, &origin, &rotation, nullptr), 0);

    // A pick inside an attached drawing brought its own.
    const kz_Point picked = {1, 2, 3};
    kz_CADObjId_setOrigin(&inside, &picked);
    kz_CADObjId_setNestedState(&inside, 2);
    attached = -1;
    EXPECT_EQ(kz_CADObjId_getDwgTransform(&attached, &origin, &rotation, &inside), 1);
    EXPECT_EQ(attached, 1);
    EXPECT_EQ(origin.z, 3.0);
    EXPECT_EQ(kz_RotMatrix_isIdentity(&rotation), 1);
    // A pick in the drawing itself has none; the service is asked.
    kz_CADObjId_setTMatrix(&inside, nullptr);
    kz_CADObjId_setNestedState(&inside, 1);
    EXPECT_EQ(kz_CADObjId_getDwgTransform(&attached, &origin, &rotation, &inside), 1);
    EXPECT_EQ(origin.y, 20.0);
}

TEST_F(AttachedObjects, EveryObjectHasTheFileOfItsDrawing) {
    const kz_CADObjId inside = attachLine();
    EXPECT_EQ(drawingOf(inside), "inner.dxf");
    line("0");
    EXPECT_EQ(drawingOf(firstOf(editor())), "outer.dxf");
    AcDbObjectId object;
    int attached = -1, found_open = -1;
    ASSERT_EQ(kz_CADObjId_getAcDbObjectId(&object, &inside), 1);
    kz_Free(kz_AcCAD_getDwgNameFromEntObjId(&object, &attached, &found_open, 0));
    EXPECT_EQ(attached * 10 + found_open, 10);

    // A drawing that is known without being attached is found only when it is looked for.
    line("0");
    const std::string file = saved("third.dxf");
    const kz_CADDwgId* third = drawing(file);
    ASSERT_NE(third, nullptr);
    const kz_CADObjId elsewhere = firstOf(third->database);
    ASSERT_EQ(kz_CADObjId_getAcDbObjectId(&object, &elsewhere), 1);
    EXPECT_EQ(kz_AcCAD_getDwgNameFromEntObjId(&object, &attached, &found_open, 0), nullptr);
    EXPECT_EQ(attached * 10 + found_open, 0);
    kz_Free(kz_AcCAD_getDwgNameFromEntObjId(&object, &attached, &found_open, 1));
    EXPECT_EQ(attached * 10 + found_open, 1);
    EXPECT_EQ(drawingOf(elsewhere), "third.dxf");
}

TEST_F(AttachedObjects, TheIdOfAnObjectsDrawingIsTheServices) {
    const kz_CADObjId inside = attachLine();
    kz_CADDwgId* id = kz_CADObjId_getDwgId(&inside);
    EXPECT_EQ(nameOf(id), "inner.dxf");
    SUITE(kz_CADDwgId_destroy)(id);
    line("0");
    const kz_CADObjId own = firstOf(editor());
    id = kz_CADObjId_getDwgId(&own);
    EXPECT_EQ(SUITE(kz_CADDwgId_isInEditor)(id), 1);
    SUITE(kz_CADDwgId_destroy)(id);
    EXPECT_EQ(kz_CADObjId_getDwgId(nullptr), nullptr);
    const kz_CADObjId stale = {{42, 42}, nullptr, 0};
    EXPECT_EQ(kz_CADObjId_getDwgId(&stale), nullptr);
}

TEST_F(AttachedObjects, APropertyOfAnObjectInsideIsChangedThere) {
    const kz_CADObjId inside = attachLine();
    kz_Char text[256] = {};
    EXPECT_EQ(kz_CADObjId_setColor(&inside, KZ_T("GREEN")), 1);
    EXPECT_EQ(kz_CADObjId_getColor(text, &inside), 1);
    EXPECT_EQ(kz::toUtf8(text), "3");
    // The layer is sought in the drawing of the editor.
    lisp("(command \"_.layer\" \"_off\" \"0\" \"_y\" \"\")");
    int32_t frozen = -1, locked = -1, off = -1;
    EXPECT_EQ(kz_CADObjId_unlockThawOnLayer(text, &frozen, &locked, &off, &inside), 1);
    EXPECT_EQ(off, 1);
    EXPECT_EQ(kz_CAD_LayerIsOff(KZ_T("0")), 0);
}

TEST_F(AttachedObjects, AMoveIsByLocalPoints) {
    line("0");
    const kz_CADObjId id = firstOf(editor());
    const kz_Vector origin = {100, 100, 0}, x = {0, 1, 0}, y = {-1, 0, 0};
    ASSERT_EQ(SUITE(kz_CoordSys_fromVectorsXY)(&origin, &x, &y), 1);
    const kz_Point from = {0, 0, 0}, to = {2, 0, 0};
    EXPECT_EQ(kz_CADObjId_move(&id, &from, &to), 1);
    SUITE(kz_CoordSys_previous)();
    EXPECT_EQ(lisp("(equal (cdr (assoc 10 (entget (entlast)))) '(0.0 2.0 0.0) 1e-9)"), "T");
}

TEST_F(AttachedObjects, AWrongObjectIsToldOnTheErrorListAndTraced) {
    for (const std::string twin :
         {"kz_CADObjId_getColor", "kz_CADObjId_getLayer", "kz_CADObjId_getLineStyle",
          "kz_CADObjId_getLineWeight", "kz_CADObjId_getDrawingName",
          "kz_CADObjId_getLineStyleScale", "kz_CADObjId_isVisible", "kz_CADObjId_setColor",
          "kz_CADObjId_setLayer", "kz_CADObjId_setLineStyle", "kz_CADObjId_setLineWeight",
          "kz_CADObjId_setLineStyleScale", "kz_CADObjId_setVisibility", "kz_CADObjId_delete",
          "kz_CADObjId_getDwgId"}) {
        traced_lines.clear();
        kz_Diag_setLevel(2);
        kz_Diag_setCondition(0x1000);
        lisp("(" + twin + " 5)");
        kz_Diag_setCondition(0);
        EXPECT_EQ(errors(), "12, Invalid or missing parameter(s)\n") << twin;
        EXPECT_NE(traced_lines.find(twin + "_li: Invalid or missing object id parameter."),
                  std::string::npos)
            << traced_lines;
    }
    lisp("(kz_CADSelSet_setVisibility 5 T)");
    EXPECT_EQ(errors(), "12, Invalid or missing parameter(s)\n");
}

}  // namespace
