/// Properties of objects as native code sees them: what the Lisp suite can't show, which is outs,
/// results that are no flags, hidden lines, layers opened for work, places, and what is put on the
/// error list.
#include "drawing_test.h"
#include "host/display.h"
#include "host/testing.h"
#include "printed_test.h"

namespace {

using test::narrow;

class ObjectProperties : public test::DrawingTest {
  protected:
    void SetUp() override {
        DrawingTest::SetUp();
        ads_name_set(line_, id_.ename);
        records_ = kz_Record_count();
    }
    void TearDown() override {
        host::testing::clearFault();
        kz_Error_clearAll();
        EXPECT_EQ(kz_Record_count(), records_);
        DrawingTest::TearDown();
    }

    /// Draws an entity. @return its id
    static kz_CADObjId draw(const std::string& list) {
        kz_CADObjId id = {};
        resbuf* nodes = test::chain(list);
        EXPECT_EQ(acdbEntMakeX(nodes, id.ename), RTNORM) << list;
        kz_ResBuf_release(nodes);
        return id;
    }
    static kz_CADObjId circle() { return draw("0:CIRCLE 8:0 10:3,4,10 40:5.0"); }
    static kz_CADObjId ellipse(const std::string& axis) {
        return draw("0:ELLIPSE 100:AcDbEntity 8:0 100:AcDbEllipse 10:3,4,10 11:" + axis +
                    " 40:0.5 41:0.0 42:6.28");
    }
    static void makeLayer(const std::string& name, int flags, int colour = 7) {
        ads_name made = {};
        resbuf* list =
            test::chain("0:LAYER 100:AcDbSymbolTableRecord 100:AcDbLayerTableRecord 2:" + name +
                        " 70:" + std::to_string(flags) + " 62:" + std::to_string(colour));
        EXPECT_EQ(acdbEntMakeX(list, made), RTNORM);
        kz_ResBuf_release(list);
    }
    /// A layer's bits (1 frozen, 4 locked) and, when it is off, 100 more.
    static int state(const kz_Char* layer) {
        resbuf* list = acdbTblSearch(KZ_T("LAYER"), layer, 0);
        const int bits = kz_Rb_getInt(kz_Rb_entitem(list, 70)) & 5;
        const bool off = kz_Rb_getInt(kz_Rb_entitem(list, 62)) < 0;
        kz_ResBuf_release(list);
        return bits + (off ? 100 : 0);
    }
    static std::string layerOf(const kz_CADObjId& id) {
        kz_Char name[256] = {};
        return kz_CADObjId_getLayer(name, &id) == 1 ? narrow(name) : "<none>";
    }
    static AcDbEntity* open(const kz_CADObjId& id, AcDb::OpenMode mode) {
        AcDbObjectId object;
        AcDbEntity* entity = nullptr;
        EXPECT_EQ(acdbGetObjectId(object, id.ename), Acad::eOk);
        EXPECT_EQ(acdbOpenObject(entity, object, mode), Acad::eOk);
        return entity;
    }
    static void refuse(const char* call, int nth = 1) {
        EXPECT_TRUE(host::testing::failCall(call, nth, 6));
    }

    kz_CADObjId id_ = {};
    kz_CADObjId null_ = {};
    int64_t records_ = 0;
};

// --- reading and changing ------------------------------------------------------------------------

TEST_F(ObjectProperties, AnOutThatIsMissingOrANullIdGivesNothing) {
    kz_Char text[256] = KZ_T("kept");
    double scale = -1.0;
    int32_t flag = -1;
    EXPECT_EQ(kz_CADObjId_getColor(nullptr, &id_), 0);
    EXPECT_EQ(kz_CADObjId_getLineStyleScale(nullptr, &id_), 0);
    EXPECT_EQ(kz_CADObjId_getVisibility(nullptr, &id_), 0);
    for (const kz_CADObjId* none : std::initializer_list<const kz_CADObjId*>{nullptr, &null_}) {
        EXPECT_EQ(kz_CADObjId_getColor(text, none), 0);
        EXPECT_EQ(kz_CADObjId_getLayer(text, none), 0);
        EXPECT_EQ(kz_CADObjId_getLineStyle(text, none), 0);
        EXPECT_EQ(kz_CADObjId_getLineWeight(text, none), 0);
        EXPECT_EQ(kz_CADObjId_getLineStyleScale(&scale, none), 0);
        EXPECT_EQ(kz_CADObjId_getVisibility(&flag, none), 0);
        EXPECT_EQ(kz_CADObjId_setVisibility(none, 1), 0);
        EXPECT_EQ(kz_CADObjId_highlight(none, 1), 0);
    }
    EXPECT_EQ(narrow(text), "kept");
    EXPECT_EQ(scale + flag, -2.0);
    EXPECT_EQ(kz_Error_isOk(), 1);
}

TEST_F(ObjectProperties, VisibilityAsAValueIsThereForWhatIsNot) {
    int32_t flag = -1;
    EXPECT_EQ(kz_CADObjId_getVisibility(&flag, &id_), 1);
    EXPECT_EQ(flag, 1);
    acdbEntDel(line_);
    EXPECT_EQ(kz_CADObjId_getVisibility(&flag, &id_), 1);
    EXPECT_EQ(flag, 0);
}

TEST_F(ObjectProperties, WhatThePlatformRefusesChangesNothing) {
    for (const auto& [call, change] :
         {std::pair{"setColorIndex",
                    +[](const kz_CADObjId* id) { return kz_CADObjId_setColor(id, KZ_T("1")); }},
          {"setLayer", +[](const kz_CADObjId* id) { return kz_CADObjId_setLayer(id, KZ_T("0")); }},
          {"setLinetype",
           +[](const kz_CADObjId* id) { return kz_CADObjId_setLineStyle(id, KZ_T("ByBlock")); }},
          {"setLinetypeScale",
           +[](const kz_CADObjId* id) { return kz_CADObjId_setLineStyleScale(id, 3.0); }},
          {"highlight", +[](const kz_CADObjId* id) { return kz_CADObjId_highlight(id, 1); }},
          {"acdbOpenObject", +[](const kz_CADObjId* id) { return kz_CADObjId_isVisible(id); }}}) {
        refuse(call);
        EXPECT_EQ(change(&id_), 0) << call;
        host::testing::clearFault();
        EXPECT_EQ(change(&id_), 1) << call;
    }
    kz_Char text[256] = KZ_T("kept");
    refuse("layer");
    EXPECT_EQ(kz_CADObjId_getLayer(text, &id_), 0);
    EXPECT_EQ(narrow(text), "kept");
    host::testing::clearFault();
    refuse("acedGetVar");
    EXPECT_EQ(kz_CADObjId_setLayer(&id_, KZ_T("USE_CADENGINE_DEFAULT")), 0);
}

TEST_F(ObjectProperties, AnObjectThatSomebodyWritesIsLeftAlone) {
    AcDbEntity* entity = open(id_, AcDb::kForWrite);
    kz_Char text[256] = {};
    EXPECT_EQ(kz_CADObjId_getColor(text, &id_), 0);
    EXPECT_EQ(kz_CADObjId_setColor(&id_, KZ_T("1")), 0);
    EXPECT_EQ(entity->close(), Acad::eOk);
    EXPECT_EQ(kz_CADObjId_getColor(text, &id_), 1);
    EXPECT_EQ(narrow(text), "256");
}

TEST_F(ObjectProperties, APolylineIsPaintedWithoutALookAtTheAnswer) {
    EXPECT_EQ(kz_AcCAD_setPolylineColor(nullptr, 1), 0);
    EXPECT_EQ(kz_AcCAD_setPolylineLayer(nullptr, KZ_T("0")), 0);
    AcDbEntity* entity = open(id_, AcDb::kForRead);
    EXPECT_EQ(kz_AcCAD_setPolylineColor(entity, 1), 1);
    EXPECT_EQ(kz_AcCAD_setPolylineLayer(entity, KZ_T("Nowhere")), 1);
    EXPECT_EQ(entity->colorIndex(), 256);
    entity->close();
}

TEST_F(ObjectProperties, HighlightingIsSwitched) {
    AcDbObjectId object;
    ASSERT_EQ(kz_CADObjId_getAcDbObjectId(&object, &id_), 1);
    EXPECT_EQ(kz_CADObjId_highlight(&id_, 1), 1);
    EXPECT_TRUE(host::isHighlighted(object));
    EXPECT_EQ(kz_CADObjId_highlight(&id_, 0), 1);
    EXPECT_FALSE(host::isHighlighted(object));
}

// --- places --------------------------------------------------------------------------------------

TEST_F(ObjectProperties, AnObjectMovesByTheWayBetweenTwoPoints) {
    const kz_Point from = {1, 1, 1}, to = {3, 4, 5};
    EXPECT_EQ(kz_CADObjId_move(&id_, &from, &to), 1);
    resbuf* list = acdbEntGet(line_);
    EXPECT_EQ(test::show(kz_Rb_entitem(list, 10)).substr(0, 8), "10:2,3,4");
    kz_ResBuf_release(list);
    EXPECT_EQ(kz_CADObjId_move(&null_, &from, &to), 0);
    EXPECT_EQ(kz_CADObjId_move(&id_, nullptr, &to), 0);
    EXPECT_EQ(kz_CADObjId_move(&id_, &from, nullptr), 0);
}

TEST_F(ObjectProperties, ACircleMatchesInThePlaneAndAnEllipseInSpace) {
    const kz_Point flat = {3, 4, 0}, up = {3, 4, 10}, beside = {3.1, 4, 0};
    const kz_CADObjId round = circle();
    EXPECT_EQ(kz_CADObjId_isMatchingCircle(&round, &flat, 5.0), 1);
    EXPECT_EQ(kz_CADObjId_isMatchingCircle(&round, &up, 5.0), 0);
    EXPECT_EQ(kz_CADObjId_isMatchingCircle(&round, &beside, 5.0), 0);
    EXPECT_EQ(kz_CADObjId_isMatchingCircle(&round, &flat, 5.0 + 9e-6), 1);
    EXPECT_EQ(kz_CADObjId_isMatchingCircle(&round, &flat, 5.0 + 2e-5), 0);
    const kz_CADObjId oval = ellipse("3,4,0");
    EXPECT_EQ(kz_CADObjId_isMatchingCircle(&oval, &up, 5.0), 1);
    EXPECT_EQ(kz_CADObjId_isMatchingCircle(&oval, &flat, 5.0), 0);
    const kz_CADObjId upright = ellipse("0,0,5");
    EXPECT_EQ(kz_CADObjId_isMatchingCircle(&upright, &up, 0.0), 1);
    EXPECT_EQ(kz_CADObjId_isMatchingCircle(&id_, &flat, 5.0), 0);
    EXPECT_EQ(kz_CADObjId_isMatchingCircle(&round, nullptr, 5.0), 0);
    EXPECT_EQ(kz_CADObjId_isMatchingCircle(&null_, &flat, 5.0), 0);
}

TEST_F(ObjectProperties, ANewEntityGoesIntoModelSpace) {
    auto* point = new AcDbPoint({1, 2, 3});
    AcDbObjectId object;
    EXPECT_EQ(kz_AcCAD_addToModelSpace(&object, point), 1);
    EXPECT_EQ(point->objectId(), object);
    EXPECT_EQ(point->close(), Acad::eOk);
    ads_name last = {}, name = {};
    EXPECT_EQ(acdbEntLast(last), RTNORM);
    EXPECT_EQ(acdbGetAdsName(name, object), Acad::eOk);
    EXPECT_TRUE(ads_name_equal(last, name));
}

TEST_F(ObjectProperties, AnEntityThatIsNotAddedIsToldOnTheErrorListAndTraced) {
    AcDbPoint point;
    for (const char* call : {"getSymbolTable", "getAt", "acdbOpenObject", "appendAcDbEntity"}) {
        traceAt(1, 0x1000);
        refuse(call);
        EXPECT_EQ(kz_AcCAD_addToModelSpace(nullptr, &point), 0) << call;
        host::testing::clearFault();
        EXPECT_EQ(traced(), "ARX function kz_AcCAD_AddToModelSpace returned error status: 6.");
        EXPECT_EQ(kz_Error_isOk(), 0);
        kz_Error_clearAll();
    }
    EXPECT_EQ(kz_AcCAD_addToModelSpace(nullptr, nullptr), 0);
    EXPECT_EQ(point.database(), nullptr);
}

TEST_F(ObjectProperties, WhatIsNoObjectIsTakenOffTheScreen) {
    refuse("acgsRemoveAnonymousGraphics");
    kz_AcCAD_removeAnonymousGraphics(7);
    EXPECT_TRUE(host::testing::faultFired());
}

// --- hidden lines --------------------------------------------------------------------------------

TEST_F(ObjectProperties, HiddenLinesAreKeptInXData) {
    EXPECT_EQ(kz_CADObjId_isHLRHidden(&id_), 0);
    EXPECT_EQ(kz_CADObjId_setHLRHidden(&id_, 7), 1);
    EXPECT_EQ(kz_CADObjId_isHLRHidden(&id_), 1);
    EXPECT_EQ(stored(KZ_T("KZ_HLR")), "1001:KZ_HLR 1002:{ 1000:HIDDEN 1070:1 1002:}");
    EXPECT_EQ(kz_CADObjId_setHLRHidden(&id_, 0), 1);
    EXPECT_EQ(kz_CADObjId_isHLRHidden(&id_), 0);
    EXPECT_EQ(stored(KZ_T("KZ_HLR")), "1001:KZ_HLR 1002:{ 1000:HIDDEN 1070:0 1002:}");
}

TEST_F(ObjectProperties, HiddenLinesStandBesideTheDataOfOthers) {
    kz_FldList* other = kz_FldList_create(nullptr, 0, nullptr, 0);
    kz_FldList_appInt(other, KZ_T("HIDDEN"), 1);
    EXPECT_EQ(kz_XData_initFldList(line_, other, KZ_T("OTHER")), 1);
    EXPECT_EQ(kz_CADObjId_isHLRHidden(&id_), 0);
    EXPECT_EQ(kz_CADObjId_setHLRHidden(&id_, 1), 1);
    EXPECT_EQ(kz_CADObjId_isHLRHidden(&id_), 1);
    EXPECT_EQ(kz_XData_deleteFldList(line_, KZ_T("KZ_HLR")), 1);
    EXPECT_EQ(kz_CADObjId_isHLRHidden(&id_), 0);
    kz_FldList_destroy(other);
}

TEST_F(ObjectProperties, AnEntityOpenForReadIsRaisedToHideItAndGoesBack) {
    AcDbEntity* entity = open(id_, AcDb::kForRead);
    EXPECT_EQ(kz_AcCADEntity_setHLRHidden(entity, 1), 1);
    EXPECT_FALSE(entity->isWriteEnabled());
    EXPECT_EQ(kz_AcCADEntity_isHLRHidden(entity), 1);
    // A second reader keeps it from being raised.
    AcDbEntity* again = open(id_, AcDb::kForRead);
    EXPECT_EQ(kz_AcCADEntity_setHLRHidden(entity, 0), 0);
    again->close();
    entity->close();
    EXPECT_EQ(kz_CADObjId_isHLRHidden(&id_), 1);
}

TEST_F(ObjectProperties, WhatIsNotHiddenSaysWhy) {
    EXPECT_EQ(kz_CADObjId_setHLRHidden(nullptr, 1), 7);
    EXPECT_EQ(kz_CADObjId_setHLRHidden(&null_, 1), 7);
    EXPECT_EQ(kz_AcCADEntity_setHLRHidden(nullptr, 1), 7);
    EXPECT_EQ(kz_AcCADEntity_isHLRHidden(nullptr), 0);
    const kz_CADObjId stale = {{42, 42}, nullptr, 0};
    EXPECT_EQ(kz_CADObjId_setHLRHidden(&stale, 1), 4);
    refuse("acutBuildList");
    EXPECT_EQ(kz_CADObjId_setHLRHidden(&id_, 1), 5);
    refuse("setXData");
    EXPECT_EQ(kz_CADObjId_setHLRHidden(&id_, 1), 0);
    refuse("acdbOpenObject");
    EXPECT_EQ(kz_CADObjId_setHLRHidden(&id_, 1), 0);
    host::testing::clearFault();
    EXPECT_EQ(stored(KZ_T("KZ_HLR")), "");
}

// --- layers --------------------------------------------------------------------------------------

TEST_F(ObjectProperties, ALayerIsOpenedForWorkAndBroughtBack) {
    makeLayer("Walls", 5, -3);
    const kz_CADObjId wall = draw("0:POINT 8:Walls 10:0,0,0");
    kz_Char layer[256] = {};
    int32_t frozen = -1, locked = -1, off = -1;
    EXPECT_EQ(kz_CADObjId_setColor(&wall, KZ_T("1")), 0);
    EXPECT_EQ(kz_CADObjId_unlockThawOnLayer(layer, &frozen, &locked, &off, &wall), 1);
    EXPECT_EQ(narrow(layer), "Walls");
    EXPECT_EQ(frozen + locked + off, 3);
    EXPECT_EQ(state(layer), 0);
    EXPECT_EQ(kz_CADObjId_setColor(&wall, KZ_T("1")), 1);
    kz_LayerStateList* list = kz_LnkList_create();
    kz_LnkList_insEnd(list, kz_LayerStateNode_create(KZ_T("Nowhere"), 1, 1, 1));
    kz_LnkList_insEnd(list, kz_LayerStateNode_create(KZ_T(""), 1, 1, 1));
    EXPECT_EQ(kz_LayerStateList_setLayerStates(list), 0);
    kz_LnkList_insEnd(list, kz_LayerStateNode_create(KZ_T("WALLS"), frozen, locked, off));
    EXPECT_EQ(kz_LayerStateList_setLayerStates(list), 1);
    EXPECT_EQ(state(layer), 105);
    kz_LnkList_destroy(
        list, [](void* node) { kz_LayerStateNode_destroy(static_cast<kz_LayerStateNode*>(node)); });
    EXPECT_EQ(kz_LayerStateList_setLayerStates(nullptr), 0);
}

TEST_F(ObjectProperties, ALayerIsNotOpenedWithoutAllOuts) {
    kz_Char layer[256] = {};
    int32_t flag = -1;
    EXPECT_EQ(kz_CADObjId_unlockThawOnLayer(nullptr, &flag, &flag, &flag, &id_), 0);
    EXPECT_EQ(kz_CADObjId_unlockThawOnLayer(layer, nullptr, &flag, &flag, &id_), 0);
    EXPECT_EQ(kz_CADObjId_unlockThawOnLayer(layer, &flag, nullptr, &flag, &id_), 0);
    EXPECT_EQ(kz_CADObjId_unlockThawOnLayer(layer, &flag, &flag, nullptr, &id_), 0);
    EXPECT_EQ(kz_CADObjId_unlockThawOnLayer(layer, &flag, &flag, &flag, &null_), 0);
    EXPECT_EQ(flag, -1);
}

TEST_F(ObjectProperties, RecordsOfLayerStates) {
    kz_LayerStateNode* a = kz_LayerStateNode_create(KZ_T("Walls"), 1, 0, 2);
    kz_LayerStateNode* b = kz_LayerStateNode_create(KZ_T("WALLS"), 0, 0, 0);
    kz_LayerStateNode* c = kz_LayerStateNode_create(KZ_T("Zone"), 0, 0, 0);
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(narrow(a->name), "Walls");
    EXPECT_EQ(a->frozen * 100 + a->locked * 10 + a->off, 102);
    EXPECT_EQ(kz_LayerStateNode_compare(a, b), 0);
    EXPECT_LT(kz_LayerStateNode_compare(a, c), 0);
    EXPECT_GT(kz_LayerStateNode_compare(c, a), 0);
    EXPECT_EQ(kz_LayerStateNode_compare(a, nullptr), -1);
    EXPECT_EQ(kz_LayerStateNode_compare(nullptr, a), -1);
    EXPECT_EQ(kz_LayerStateNode_create(nullptr, 0, 0, 0), nullptr);
    EXPECT_EQ(kz_LayerStateNode_create(std::u16string(256, u'x').c_str(), 0, 0, 0), nullptr);
    for (kz_LayerStateNode* node : {a, b, c, static_cast<kz_LayerStateNode*>(nullptr)})
        kz_LayerStateNode_destroy(node);
}

TEST_F(ObjectProperties, EveryObjectIsOnTheLayerOfAllButNoneIs) {
    EXPECT_EQ(kz_CADObjId_isOnLayer(&id_, KZ_T("0")), 1);
    EXPECT_EQ(kz_CADObjId_isOnLayer(&id_, KZ_T("Walls")), 0);
    kz_CADObjIdList* list = kz_CADObjIdList_create(nullptr);
    for (const kz_Char* every : {static_cast<const kz_Char*>(nullptr), KZ_T(""), KZ_T("*")}) {
        EXPECT_EQ(kz_CADObjId_isOnLayer(&id_, every), 1);
        EXPECT_EQ(kz_CADObjId_isOnLayer(&null_, every), 0);
        EXPECT_EQ(kz_CADObjIdList_isOnLayer(list, every), 1);
        EXPECT_EQ(kz_CADObjIdList_isOnLayer(nullptr, every), 0);
    }
    EXPECT_EQ(kz_CADObjIdList_isOnLayer(list, KZ_T("0")), 0);
    makeLayer("Walls", 0);
    const kz_CADObjId wall = draw("0:POINT 8:Walls 10:0,0,0");
    for (const kz_CADObjId* id : std::initializer_list<const kz_CADObjId*>{&null_, &id_, &wall})
        kz_CADObjIdList_insEnd(list, kz_CADObjId_copy(id));
    EXPECT_EQ(kz_CADObjIdList_isOnLayer(list, KZ_T("walls")), 1);
    EXPECT_EQ(kz_CADObjIdList_isOnLayer(list, KZ_T("Doors")), 0);
    kz_CADObjIdList_destroy(list);
}

// --- selection sets ------------------------------------------------------------------------------

TEST_F(ObjectProperties, ASetIsHiddenAlsoBehindAMemberThatIsNotToBeHad) {
    kz_CADSelSet set = {};
    const kz_CADObjId round = circle();
    EXPECT_EQ(acedSSAdd(line_, nullptr, set.name), RTNORM);
    EXPECT_EQ(acedSSAdd(round.ename, set.name, set.name), RTNORM);
    refuse("acedSSName");
    EXPECT_EQ(kz_CADSelSet_setVisibility(&set, 0), 0);
    host::testing::clearFault();
    EXPECT_EQ(kz_CADObjId_isVisible(&id_), 1);
    EXPECT_EQ(kz_CADObjId_isVisible(&round), 0);
    EXPECT_EQ(kz_CADSelSet_setVisibility(&set, 1), 1);
    EXPECT_EQ(kz_CADObjId_isVisible(&round), 1);
    EXPECT_EQ(kz_CADSelSet_setVisibility(nullptr, 1), 0);
    acedSSFree(set.name);
    const kz_CADSelSet none = {};
    EXPECT_EQ(kz_CADSelSet_setVisibility(&none, 1), 0);
}

}  // namespace
