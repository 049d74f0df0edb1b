/// The module's registration, session values, object lists, block insertions, coordinates and
/// reactors.
#include <cmath>
#include <initializer_list>

#include "kz/kz_services.h"
#include "suite_test.h"

namespace {

using Services = test::SuiteTest;

TEST_F(Services, EverySymbolThatTheLibraryForwardsToIsRegistered) {
    const std::initializer_list<const kz_Char*> start = {u"kz_Env_getSes", u"kz_Env_setSes",
                                                         u"kz_Env_resetSes"};
    for (const kz_Char* name : start)
        EXPECT_NE(acrxGetServiceSymbolAddr(u"KZ_START", name), nullptr) << kz::toUtf8(name);
    const std::initializer_list<const kz_Char*> cad = {u"kz_CADBlockIns3d_create",
                                                       u"kz_CADDwgIdList_create",
                                                       u"kz_CADDwgIdList_destroy",
                                                       u"kz_CADDwgIdList_eol",
                                                       u"kz_CADDwgIdList_getCurr",
                                                       u"kz_CADDwgIdList_next",
                                                       u"kz_CADDwgIdList_start",
                                                       u"kz_CADDwgId_create",
                                                       u"kz_CADDwgId_destroy",
                                                       u"kz_CADDwgId_destroyAll",
                                                       u"kz_CADDwgId_getCADObjIdListFromAttributes",
                                                       u"kz_CADDwgId_getCADObjIdListFromColor",
                                                       u"kz_CADDwgId_getCADObjIdListFromLayer",
                                                       u"kz_CADDwgId_getName",
                                                       u"kz_CADDwgId_getRefCount",
                                                       u"kz_CADDwgId_getTransform",
                                                       u"kz_CADDwgId_isAttached",
                                                       u"kz_CADDwgId_isEqual",
                                                       u"kz_CADDwgId_isInEditor",
                                                       u"kz_CADDwgId_isValid",
                                                       u"kz_CADDwgId_save",
                                                       u"kz_CADDwgId_saveAs",
                                                       u"kz_CADObject_addToDrawing",
                                                       u"kz_CAD_getAttachedDrawings",
                                                       u"kz_CoordSys_fromVectorsXY",
                                                       u"kz_CoordSys_fromView",
                                                       u"kz_CoordSys_previous",
                                                       u"kz_CoordSys_rotateVectorUCStoLocal",
                                                       u"kz_CoordSys_transPointListLocaltoUCS",
                                                       u"kz_CoordSys_transPointLocaltoUCS",
                                                       u"kz_CoordSys_transPointUCStoLocal",
                                                       u"kz_CoordSys_transformPointWorld",
                                                       u"kz_CoordSys_world",
                                                       u"kz_CommandReactor_create",
                                                       u"kz_CommandReactor_setExternalDwgPath",
                                                       u"kz_Group_attachMasterEntReactor",
                                                       u"kz_Group_detachMasterEntReactor",
                                                       u"kz_Group_createReactor",
                                                       u"kz_Group_disableMasterEntReactor",
                                                       u"kz_Group_restoreMasterEntReactor",
                                                       u"kz_Reactor_disable",
                                                       u"kz_Reactor_enable",
                                                       u"kz_Reactor_isEnabled",
                                                       u"kz_Reactor_remove",
                                                       u"kz_Reactor_removeAll",
                                                       u"kz_TagsReactor_create"};
    for (const kz_Char* name : cad)
        EXPECT_NE(acrxGetServiceSymbolAddr(u"KZ_CADSERVICE", name), nullptr) << kz::toUtf8(name);
}

TEST_F(Services, ASecondStartOfTheModuleIsRefused) {
    std::string error;
    EXPECT_FALSE(host::loadModule(KZ_BUILD_DIR "/libkz_cadservice.so", error));
    EXPECT_NE(error.find("refuses"), std::string::npos) << error;
    EXPECT_NE(drawing(""), nullptr);
}

TEST_F(Services, SessionValuesAreKeptByNameUntilReset) {
    EXPECT_EQ(START(kz_Env_getSes)(u"A"), nullptr);
    EXPECT_EQ(START(kz_Env_setSes)(u"Path", u"x"), 1);
    EXPECT_EQ(START(kz_Env_setSes)(u"B", u"y"), 1);
    const kz_Char* lent = START(kz_Env_getSes)(u"PATH");
    ASSERT_NE(lent, nullptr);
    EXPECT_EQ(START(kz_Env_setSes)(u"path", lent), 1);
    EXPECT_EQ(std::u16string(START(kz_Env_getSes)(u"path")), u"x");
    EXPECT_EQ(START(kz_Env_setSes)(u"PATH", u""), 1);
    EXPECT_EQ(START(kz_Env_getSes)(u"path"), nullptr);
    EXPECT_EQ(START(kz_Env_setSes)(u"", u"z"), 0);
    EXPECT_EQ(START(kz_Env_setSes)(nullptr, u"z"), 0);
    EXPECT_EQ(START(kz_Env_getSes)(nullptr), nullptr);
    START(kz_Env_resetSes)();
    EXPECT_EQ(START(kz_Env_getSes)(u"B"), nullptr);
}

TEST_F(Services, TheLibraryReachesTheModuleThroughItsForwarders) {
    int key = 0;
    EXPECT_EQ(kz_TagsReactor_create(&key), 1);
    EXPECT_EQ(SUITE(kz_Reactor_isEnabled)(&key), 1);
    EXPECT_EQ(kz_Reactor_remove(&key), 1);
    EXPECT_EQ(SUITE(kz_Reactor_isEnabled)(&key), 0);
    EXPECT_EQ(kz_Env_setSes_stub(u"NAME", u"text"), 1);
    EXPECT_EQ(std::u16string(kz_Env_getSes_stub(u"name")), u"text");
    kz_Env_resetSes_stub();
    EXPECT_EQ(kz_Env_getSes_stub(u"name"), nullptr);
    saved("part.dxf");
    attach("PART", "part.dxf");
    saved("host.dxf");
    open("host.dxf");
    kz_StrList* const files = kz_CAD_getAttachedDrawings(nullptr);
    EXPECT_EQ(kz_StrList_length(files), 1);
    kz_StrList_destroy(files);
}

// --- objects ------------------------------------------------------------------------------------

class ObjectLists : public test::SuiteTest {
  protected:
    void SetUp() override {
        SuiteTest::SetUp();
        line("A", 1);
        line("B", 1);
        line("a", 256);
        line("B", 5);
        line("A", 1);
        lisp("(entdel (entlast))");
    }
    static void destroyId(void* element) { kz_Free(element); }
    /// Layer and colour of each object, and the end of the list.
    static std::string take(kz_CADObjIdList* list) {
        if (list == nullptr) return "none";
        std::string out;
        for (; kz_LnkList_eol(list) == 0; kz_LnkList_next(list)) {
            const auto* id = static_cast<kz_CADObjId*>(kz_LnkList_getCurr(list));
            EXPECT_EQ(id->tMatrix, nullptr);
            EXPECT_EQ(id->nestedState, 0);
            AcDbObjectId object;
            EXPECT_EQ(acdbGetObjectId(object, id->ename), Acad::eOk);
            host::forEachEntity(editor(), [&](const host::EntityLook& look) {
                if (look.id == object)
                    out += kz::toUtf8(look.layer) + std::to_string(look.color) + " ";
                return true;
            });
        }
        kz_LnkList_destroy(list, destroyId);
        return out;
    }
    static std::string matching(kz_FldList* fields, int any) {
        const std::string out =
            take(SUITE(kz_CADDwgId_getCADObjIdListFromAttributes)(nullptr, fields, any));
        kz_FldList_destroy(fields);
        return out;
    }
    static kz_FldList* fields(
        std::initializer_list<std::pair<const kz_Char*, const kz_Char*>> all) {
        kz_FldList* list = kz_FldList_create(nullptr, KZ_FLD_UNKNOWN, nullptr, 0);
        for (const auto& [name, value] : all)
            kz_FldList_addCharVal(list, name, value);
        return list;
    }
};

TEST_F(ObjectLists, ByLayerAndByColour) {
    const auto layer = [](const kz_Char* name) {
        return take(SUITE(kz_CADDwgId_getCADObjIdListFromLayer)(nullptr, name));
    };
    const auto color = [](const kz_Char* text) {
        return take(SUITE(kz_CADDwgId_getCADObjIdListFromColor)(nullptr, text));
    };
    EXPECT_EQ(layer(u"b"), "B1 B5 ");
    EXPECT_EQ(layer(u"*"), "none");
    EXPECT_EQ(layer(nullptr), "none");
    EXPECT_EQ(color(u"red"), "A1 B1 ");
    EXPECT_EQ(color(u"5"), "B5 ");
    EXPECT_EQ(color(u"ByLayer"), "a256 ");
    for (const kz_Char* text : {u"", u"257", u"1x", u"-1", u"PINK", u"99999999999"})
        EXPECT_EQ(color(text), "none") << kz::toUtf8(text);
}

TEST_F(ObjectLists, ByAttributesAllOrAny) {
    EXPECT_EQ(matching(fields({{u"color", u"RED"}, {u"Layer", u"B"}}), 0), "B1 ");
    EXPECT_EQ(matching(fields({{u"COLOR", u"5"}, {u"LAYER", u"A"}}), 1), "A1 a256 B5 ");
    EXPECT_EQ(matching(fields({{u"LAYER", u"A"}, {u"LAYER", u"B"}}), 1), "A1 B1 a256 B5 ");
    EXPECT_EQ(matching(fields({{u"LAYER", u"A"}, {u"LAYER", u"B"}}), 0), "none");
    EXPECT_EQ(matching(fields({{u"COLOR", u"1"}, {u"WEIGHT", u"B"}}), 0), "A1 B1 ");
    EXPECT_EQ(matching(fields({{u"WEIGHT", u"B"}}), 1), "none");
    EXPECT_EQ(matching(nullptr, 1), "none");
}

TEST_F(ObjectLists, OfAnotherDrawingAndWithoutMemory) {
    saved("other.dxf");
    kz_CADDwgId* const other = drawing(folder_.file("other.dxf"));
    kz_CADObjIdList* list = SUITE(kz_CADDwgId_getCADObjIdListFromLayer)(other, u"B");
    EXPECT_EQ(kz_LnkList_length(list), 2);
    kz_LnkList_destroy(list, destroyId);
    EXPECT_EQ(SUITE(kz_CADDwgId_getCADObjIdListFromLayer)(nullptr, u"B"), nullptr);
    for (size_t n = 1; n < 4; ++n) {
        kz_Malloc_failFrom(n);
        list = SUITE(kz_CADDwgId_getCADObjIdListFromLayer)(other, u"B");
        kz_Malloc_failFrom(0);
        EXPECT_EQ(list, nullptr) << n;
        kz_LnkList_destroy(list, destroyId);
    }
}

TEST_F(ObjectLists, BlockInsertionEntersTheDrawingOnce) {
    lisp("(entmake '((0 . \"BLOCK\") (2 . \"MASTER\") (70 . 0) (10 0.0 0.0 0.0)))");
    lisp("(entmake '((0 . \"ENDBLK\")))");
    const auto create = SUITE(kz_CADBlockIns3d_create);
    const auto add = SUITE(kz_CADObject_addToDrawing);
    const kz_Point point{1, 2, 3};
    kz_CADObject* const object = create(u"MASTER", u"", &point, 1.0, 2.0, 0.5, u"0");
    ASSERT_NE(object, nullptr);
    EXPECT_EQ(add(object), 1);
    EXPECT_EQ(lisp("(mapcar '(lambda (c) (cdr (assoc c (entget (entlast))))) '(0 2 8 10 42 43))"),
              "(\"INSERT\" \"MASTER\" \"0\" (1.0 2.0 3.0) 2.0 0.5)");
    EXPECT_EQ(add(object), 0);
    EXPECT_EQ(add(nullptr), 0);
    EXPECT_EQ(add(create(u"NOBLOCK", nullptr, &point, 1, 1, 1, nullptr)), 0);
    EXPECT_EQ(create(u"", u"", &point, 1, 1, 1, u"0"), nullptr);
    EXPECT_EQ(create(u"MASTER", u"a.dxf", &point, 1, 1, 1, u"0"), nullptr);
    EXPECT_EQ(create(u"MASTER", u"", nullptr, 1, 1, 1, u"0"), nullptr);
    EXPECT_EQ(create(u"MASTER", u"", &point, 1, 0, 1, u"0"), nullptr);
    EXPECT_EQ(create(u"MASTER", u"", &point, 1, 1, std::nan(""), u"0"), nullptr);
    // One that is never added is the module's to free.
    EXPECT_NE(create(u"MASTER", u"", &point, 1, 1, 1, u"0"), nullptr);
}

// --- coordinates --------------------------------------------------------------------------------

class Coordinates : public test::SuiteTest {
  protected:
    void TearDown() override {
        while (SUITE(kz_CoordSys_previous)() == 1) {
        }
        SuiteTest::TearDown();
    }
    /// A drawing whose UCS has its origin at (10, 0, 0) and is turned by 90 degrees.
    void openTurned() {
        saved("plain.dxf");
        std::string text = TempFolder::read(folder_.file("plain.dxf"));
        replaceVariable(text, "$UCSORG", "10.0", "0.0", "0.0");
        replaceVariable(text, "$UCSXDIR", "0.0", "1.0", "0.0");
        replaceVariable(text, "$UCSYDIR", "-1.0", "0.0", "0.0");
        folder_.write("turned.dxf", text);
        open("turned.dxf");
    }
    static void replaceVariable(std::string& text, const std::string& name, const std::string& x,
                                const std::string& y, const std::string& z) {
        const size_t at = text.find(name + "\n");
        ASSERT_NE(at, std::string::npos) << name;
        const size_t begin = at + name.size() + 1;
        size_t end = begin;
        for (int lines = 0; lines < 6; ++lines)
            end = text.find('\n', end) + 1;
        text.replace(begin, end - begin, " 10\n" + x + "\n 20\n" + y + "\n 30\n" + z + "\n");
    }
    static std::string shown(double x, double y, double z) {
        const auto round = [](double value) { return std::to_string(std::lround(value * 1000)); };
        return round(x) + " " + round(y) + " " + round(z);
    }
    template <class Function>
    static std::string moved(Function function, kz_Point point) {
        EXPECT_EQ(function(&point, &point), 1);
        return shown(point.x, point.y, point.z);
    }
    static std::string world(kz_Point point) {
        return moved(SUITE(kz_CoordSys_transformPointWorld), point);
    }
};

TEST_F(Coordinates, LocalUserAndWorldSystemMeet) {
    openTurned();
    EXPECT_EQ(moved(SUITE(kz_CoordSys_transPointLocaltoUCS), {10, 2, 0}), "2000 0 0");
    const kz_Vector origin{0, 0, 5}, x{0, 2, 0}, nearY{-3, 1, 0};
    EXPECT_EQ(SUITE(kz_CoordSys_fromVectorsXY)(&origin, &x, &nearY), 1);
    EXPECT_EQ(world({1, 2, 3}), "-2000 1000 8000");
    EXPECT_EQ(moved(SUITE(kz_CoordSys_transPointLocaltoUCS), {1, 2, 3}), "1000 12000 8000");
    EXPECT_EQ(moved(SUITE(kz_CoordSys_transPointUCStoLocal), {1, 12, 8}), "1000 2000 3000");
    kz_Vector vector{1, 0, 0};
    EXPECT_EQ(SUITE(kz_CoordSys_rotateVectorUCStoLocal)(&vector, &vector), 1);
    EXPECT_EQ(shown(vector.x, vector.y, vector.z), "1000 0 0");
    EXPECT_EQ(SUITE(kz_CoordSys_transPointLocaltoUCS)(nullptr, nullptr), 0);
    EXPECT_EQ(SUITE(kz_CoordSys_rotateVectorUCStoLocal)(&vector, nullptr), 0);
}

TEST_F(Coordinates, HistoryGoesBackStepByStep) {
    const kz_Vector origin{7, 0, 0}, x{0, 1, 0}, y{-1, 0, 0}, none{0, 0, 0};
    EXPECT_EQ(SUITE(kz_CoordSys_previous)(), 0);
    EXPECT_EQ(SUITE(kz_CoordSys_fromVectorsXY)(&origin, &x, &y), 1);
    EXPECT_EQ(SUITE(kz_CoordSys_fromVectorsXY)(nullptr, &y, &x), 1);
    EXPECT_EQ(world({1, 0, 0}), "6000 0 0") << "the present origin stands in for none";
    EXPECT_EQ(SUITE(kz_CoordSys_fromVectorsXY)(&origin, &x, &x), 0);
    EXPECT_EQ(SUITE(kz_CoordSys_fromVectorsXY)(&origin, &none, &y), 0);
    EXPECT_EQ(SUITE(kz_CoordSys_fromVectorsXY)(&origin, nullptr, &y), 0);
    EXPECT_EQ(SUITE(kz_CoordSys_world)(), 1);
    EXPECT_EQ(world({1, 0, 0}), "1000 0 0");
    EXPECT_EQ(SUITE(kz_CoordSys_previous)(), 1);
    EXPECT_EQ(SUITE(kz_CoordSys_previous)(), 1);
    EXPECT_EQ(world({1, 0, 0}), "7000 1000 0");
    EXPECT_EQ(SUITE(kz_CoordSys_previous)(), 1);
    EXPECT_EQ(world({1, 0, 0}), "1000 0 0");
    EXPECT_EQ(SUITE(kz_CoordSys_previous)(), 0);
}

TEST_F(Coordinates, ViewPlaneLiesAcrossTheViewThroughThePoint) {
    lisp("(setq v (tblobjname \"VPORT\" \"*ACTIVE\"))");
    lisp("(entmod (list (cons -1 v) '(16 1.0 0.0 0.0)))");
    const kz_Point point{4, 5, 6};
    EXPECT_EQ(SUITE(kz_CoordSys_fromView)(&point), 1);
    EXPECT_EQ(world({0, 0, 0}), "4000 5000 6000");
    EXPECT_EQ(world({1, 0, 0}), "4000 6000 6000") << "seen along -x, y points to the right";
    EXPECT_EQ(world({0, 1, 0}), "4000 5000 7000") << "and z up";
    EXPECT_EQ(SUITE(kz_CoordSys_previous)(), 1);
    lisp("(entmod (list (cons -1 v) '(16 0.0 0.0 1.0) '(51 . 1.5707963267948966)))");
    EXPECT_EQ(SUITE(kz_CoordSys_fromView)(&point), 1);
    EXPECT_EQ(world({1, 0, 0}), "4000 4000 6000") << "a twist turns the picture to the left";
    EXPECT_EQ(SUITE(kz_CoordSys_fromView)(nullptr), 0);
}

TEST_F(Coordinates, ListOfPointsBecomesAChainInTheUcs) {
    openTurned();
    kz_PointList* const points = kz_PointList_create();
    EXPECT_EQ(SUITE(kz_CoordSys_transPointListLocaltoUCS)(points), nullptr);
    EXPECT_EQ(SUITE(kz_CoordSys_transPointListLocaltoUCS)(nullptr), nullptr);
    for (const kz_Point& point : {kz_Point{10, 1, 0}, kz_Point{10, 2, 0}})
        kz_PointList_insEnd(points, &point);
    resbuf* const chain = SUITE(kz_CoordSys_transPointListLocaltoUCS)(points);
    std::string text;
    for (const resbuf* node = chain; node != nullptr; node = node->rbnext) {
        EXPECT_EQ(node->restype, RT3DPOINT);
        text += shown(node->resval.rpoint[0], node->resval.rpoint[1], node->resval.rpoint[2]) + ";";
    }
    EXPECT_EQ(text, "1000 0 0;2000 0 0;");
    acutRelRb(chain);
    kz_PointList_destroy(points);
}

// --- reactors -----------------------------------------------------------------------------------

class Reactors : public test::SuiteTest {
  protected:
    void SetUp() override {
        SuiteTest::SetUp();
        line("0");
        line("0");
        line("0");
        acdbEntNext(nullptr, group_.ename);
        acdbEntNext(group_.ename, master_.ename);
        acdbEntNext(master_.ename, other_.ename);
        lisp("(setq m (entnext (entnext)))");
    }
    std::string seen(const kz_CADObjId& group) const {
        kz_MasterEvents events{};
        if (SUITE(kz_Group_getMasterEntEvents)(&events, &group, &master_) != 1) return "none";
        return std::to_string(events.changed) + " " + std::to_string(events.erased) + " " +
               std::to_string(events.restored);
    }
    static void change(const char* layer) {
        lisp("(entmod (list (cons -1 m) '(8 . \"" + std::string(layer) + "\")))");
    }
    int attach(const kz_CADObjId& group) const {
        return SUITE(kz_Group_attachMasterEntReactor)(&group, &master_);
    }

    kz_CADObjId group_{}, master_{}, other_{};
};

TEST_F(Reactors, MasterReactorSeesChangeErasureAndReturn) {
    EXPECT_EQ(seen(group_), "none");
    ASSERT_EQ(attach(group_), 1);
    EXPECT_EQ(seen(group_), "0 0 0");
    change("X");
    lisp("(entdel m) (entdel m)");
    lisp("(entdel (entlast))");
    EXPECT_EQ(attach(group_), 1);
    EXPECT_EQ(seen(group_), "1 1 1");
    EXPECT_EQ(seen(other_), "none");
    EXPECT_EQ(SUITE(kz_Group_detachMasterEntReactor)(&other_, &master_), 0);
    EXPECT_EQ(attach(other_), 1);
    EXPECT_EQ(seen(group_), "none");
    EXPECT_EQ(seen(other_), "0 0 0");
    EXPECT_EQ(SUITE(kz_Group_detachMasterEntReactor)(&other_, &master_), 1);
    change("Y");
    EXPECT_EQ(seen(other_), "none");
    const kz_CADObjId nothing{};
    EXPECT_EQ(attach(nothing), 0);
    EXPECT_EQ(SUITE(kz_Group_attachMasterEntReactor)(&group_, nullptr), 0);
}

TEST_F(Reactors, DisabledMasterReactorsSeeNothingUntilTheMatchingRestore) {
    attach(group_);
    SUITE(kz_Group_restoreMasterEntReactor)();
    SUITE(kz_Group_disableMasterEntReactor)();
    SUITE(kz_Group_disableMasterEntReactor)();
    change("X");
    SUITE(kz_Group_restoreMasterEntReactor)();
    lisp("(entdel m) (entdel m)");
    EXPECT_EQ(seen(group_), "0 0 0");
    SUITE(kz_Group_restoreMasterEntReactor)();
    change("Y");
    EXPECT_EQ(seen(group_), "1 0 0");
}

TEST_F(Reactors, MasterReactorGoesWithItsDrawing) {
    attach(group_);
    host::newDrawing();
    EXPECT_EQ(seen(group_), "none");
    EXPECT_EQ(attach(group_), 0);
}

TEST_F(Reactors, DeclaredReactorsAreKeptByTheirKey) {
    int command = 0, group = 0, tags = 0;
    EXPECT_EQ(SUITE(kz_CommandReactor_create)(&command, &tags, 1, nullptr, 0), 1);
    EXPECT_EQ(SUITE(kz_CommandReactor_create)(&command, &tags, 1, nullptr, 0), 0);
    EXPECT_EQ(SUITE(kz_Group_createReactor)(&group, 1, nullptr, 0), 1);
    EXPECT_EQ(SUITE(kz_TagsReactor_create)(&tags), 1);
    EXPECT_EQ(SUITE(kz_TagsReactor_create)(nullptr), 0);
    SUITE(kz_CommandReactor_setExternalDwgPath)(u"a.dxf");
    SUITE(kz_CommandReactor_setExternalDwgPath)(nullptr);
    const auto isEnabled = SUITE(kz_Reactor_isEnabled);
    EXPECT_EQ(isEnabled(&group), 1);
    EXPECT_EQ(SUITE(kz_Reactor_disable)(&group), 1);
    EXPECT_EQ(isEnabled(&group), 0);
    EXPECT_EQ(isEnabled(&command), 1);
    EXPECT_EQ(SUITE(kz_Reactor_enable)(&group), 1);
    EXPECT_EQ(isEnabled(&group), 1);
    EXPECT_EQ(SUITE(kz_Reactor_remove)(&group), 1);
    EXPECT_EQ(SUITE(kz_Reactor_remove)(&group), 0);
    EXPECT_EQ(SUITE(kz_Reactor_enable)(&group), 0);
    EXPECT_EQ(isEnabled(&group), 0);
    SUITE(kz_Reactor_removeAll)();
    EXPECT_EQ(isEnabled(&command) + isEnabled(&tags), 0);
}

}  // namespace
