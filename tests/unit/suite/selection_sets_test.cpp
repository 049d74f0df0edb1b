// Selection sets of the library: ways to choose, members, what is new in the drawing, objects in
// blocks, and that no set of the platform is left behind.
#include <functional>

#include "host/display.h"
#include "host/input.h"
#include "host/output.h"
#include "host/selection.h"
#include "host/testing.h"
#include "host/variables.h"
#include "kz/kz_zaglaid.h"
#include "suite_test.h"

namespace {

class SelectionSets : public test::SuiteTest {
  protected:
    void SetUp() override {
        SuiteTest::SetUp();
        host::setSink(host::Channel::Message,
                      [this](std::u16string_view text) { shown_ += kz::toUtf8(text); });
        host::setScreenSize(1000, 1000);
        lisp("(command \"_.zoom\" \"_c\" '(0 0) 1000.0)");
        SUITE(kz_CoordSys_world)();
        host::takeSelectionSwitches();
        host::takeHighlightedPaths();
    }
    void TearDown() override {
        host::testing::clearFault();
        EXPECT_FALSE(host::answersWait());
        host::clearAnswers();
        EXPECT_EQ(kz_CADSelSet_getNumRemaining(), 128);
        EXPECT_EQ(host::selectionFilterCount(), 0);
        host::setSink(host::Channel::Message, {});
        SUITE(kz_CoordSys_world)();
        SuiteTest::TearDown();
    }

    static void lineAt(double x, double y, const std::string& layer = "0", int color = 256) {
        char groups[200];
        snprintf(groups, sizeof groups,
                 "(entmake '((0 . \"LINE\") (8 . \"%s\") (62 . %d) (10 %f %f 0.0) (11 %f %f 0.0)))",
                 layer.c_str(), color, x, y, x + 10, y);
        lisp(groups);
    }
    /// The layers of the members; "none" for NULL. The set is destroyed.
    static std::string layers(kz_CADSelSet* set) {
        if (set == nullptr) return "none";
        std::string out;
        for (int i = 0; i < kz_CADSelSet_length(set); ++i) {
            kz_CADObjId* id = kz_CADSelSet_getNth(set, i);
            kz_Char layer[256] = {};
            kz_CADObjId_getLayer(layer, id);
            out += (out.empty() ? "" : " ") + kz::toUtf8(layer);
            kz_CADObjId_destroy(id);
        }
        kz_CADSelSet_destroy(set);
        return out;
    }
    static kz_CADSelSet* byFields(const std::vector<std::pair<const kz_Char*, const kz_Char*>>& all,
                                  int any) {
        kz_FldList* list = kz_FldList_create(nullptr, KZ_FLD_UNKNOWN, nullptr, 0);
        for (const auto& field : all)
            kz_FldList_addCharVal(list, field.first, field.second);
        kz_CADSelSet* set = kz_CADSelSet_fromAttributes(list, any);
        kz_FldList_destroy(list);
        return set;
    }
    static kz_PointList* path(const std::vector<kz_Point>& points) {
        kz_PointList* list = kz_PointList_create();
        for (const kz_Point& point : points)
            kz_PointList_insEnd(list, &point);
        return list;
    }

    std::string shown_;
};

TEST_F(SelectionSets, an_empty_choice_is_no_set) {
    lineAt(0, 0);
    const kz_Point from = {100, 100, 0}, to = {200, 200, 0};
    EXPECT_EQ(kz_CADSelSet_fromWindow(&from, &to, 1), nullptr);
    EXPECT_EQ(kz_CADSelSet_fromLayer(KZ_T("NOSUCH")), nullptr);
    EXPECT_EQ(kz_CADSelSet_fromLayer(nullptr), nullptr);
    EXPECT_EQ(kz_CADSelSet_fromColor(nullptr), nullptr);
    EXPECT_EQ(kz_CADSelSet_fromWindow(nullptr, &to, 1), nullptr);
    EXPECT_EQ(kz_CADSelSet_fromPolygon(nullptr, 1), nullptr);
    EXPECT_EQ(kz_CADSelSet_fromFence(nullptr), nullptr);
    EXPECT_EQ(kz_CADSelSet_fromPoint(nullptr, 1.0), nullptr);
    EXPECT_EQ(kz_CADSelSet_getNumRemaining(), 128);
}

TEST_F(SelectionSets, windows_polygons_and_fences_take_local_points) {
    lineAt(0, 0, "A");
    lineAt(0, 20, "B");
    const kz_Point from = {-1, -1, 0}, to = {11, 21, 0}, short_to = {5, 21, 0};
    EXPECT_EQ(layers(kz_CADSelSet_fromWindow(&from, &to, 0)), "A B");
    EXPECT_EQ(layers(kz_CADSelSet_fromWindow(&from, &short_to, 0)), "none");
    EXPECT_EQ(layers(kz_CADSelSet_fromWindow(&from, &short_to, 1)), "A B");
    kz_PointList* around = path({{-1, -1, 0}, {11, -1, 0}, {11, 5, 0}, {-1, 5, 0}});
    EXPECT_EQ(layers(kz_CADSelSet_fromPolygon(around, 0)), "A");
    kz_PointList_destroy(around);
    kz_PointList* bow = path({{0, 0, 0}, {10, 20, 0}, {10, 0, 0}, {0, 20, 0}});
    EXPECT_EQ(layers(kz_CADSelSet_fromPolygon(bow, 1)), "none");
    kz_PointList_destroy(bow);
    kz_PointList* fence = path({{5, 10, 0}, {5, 30, 0}});
    EXPECT_EQ(layers(kz_CADSelSet_fromFence(fence)), "B");
    // In a system that is moved by (0, 20).
    const kz_Vector origin = {0, 20, 0}, x = {1, 0, 0}, y = {0, 1, 0};
    ASSERT_EQ(SUITE(kz_CoordSys_fromVectorsXY)(&origin, &x, &y), 1);
    EXPECT_EQ(layers(kz_CADSelSet_fromFence(fence)), "none");
    const kz_Point at = {5, 0, 0};
    EXPECT_EQ(layers(kz_CADSelSet_fromPoint(&at, 1.0)), "B");
    EXPECT_EQ(layers(kz_CADSelSet_fromPoint(&at, 0.0)), "B");
    kz_PointList_destroy(fence);
}

TEST_F(SelectionSets, a_point_has_a_size_above_a_thousandth) {
    lineAt(0, 0, "A");
    const kz_Point on = {5, 0, 0}, beside = {5, 0.0009, 0};
    EXPECT_EQ(layers(kz_CADSelSet_fromPoint(&on, 0.001)), "A");
    EXPECT_EQ(layers(kz_CADSelSet_fromPoint(&beside, 0.001)), "none");
    EXPECT_EQ(layers(kz_CADSelSet_fromPoint(&beside, 0.002)), "A");
    EXPECT_EQ(layers(kz_CADSelSet_fromPoint(&beside, 0.0015)), "none");
    // The system is the one before, whatever was found.
    const kz_Point corner = {-1, -1, 0}, opposite = {11, 1, 0};
    EXPECT_EQ(layers(kz_CADSelSet_fromWindow(&corner, &opposite, 0)), "A");
}

TEST_F(SelectionSets, properties_choose_in_the_whole_drawing) {
    lineAt(0, 0, "A", 1);
    lineAt(0, 9, "B", 2);
    lineAt(0, 99, "C");
    EXPECT_EQ(layers(kz_CADSelSet_getAll()), "A B C");
    EXPECT_EQ(layers(kz_CADSelSet_fromColor(KZ_T("RED"))), "A");
    EXPECT_EQ(layers(kz_CADSelSet_fromColor(KZ_T("2"))), "B");
    EXPECT_EQ(layers(kz_CADSelSet_fromColor(KZ_T("BYLAYER"))), "C");
    EXPECT_EQ(layers(kz_CADSelSet_fromLayer(KZ_T("b"))), "B");
    EXPECT_EQ(layers(byFields({{KZ_T("LAYER"), KZ_T("A")}, {KZ_T("layer"), KZ_T("C")}}, 1)), "A C");
    EXPECT_EQ(layers(byFields({{KZ_T("LAYER"), KZ_T("A")}, {KZ_T("LAYER"), KZ_T("C")}}, 0)),
              "none");
    EXPECT_EQ(layers(byFields({{KZ_T("Color"), KZ_T("red")}, {KZ_T("LAYER"), KZ_T("A")}}, 0)), "A");
    EXPECT_EQ(kz_CADSelSet_fromAttributes(nullptr, 1), nullptr);
    // Without a criterion the platform is not asked.
    host::testing::failCall("acedSSGet", 1, RTERROR);
    EXPECT_EQ(layers(byFields({{KZ_T("SIZE"), KZ_T("A")}}, 1)), "none");
    EXPECT_FALSE(host::testing::faultFired());
}

TEST_F(SelectionSets, members_come_go_and_move) {
    lineAt(0, 0, "A");
    lineAt(0, 20, "B");
    kz_CADSelSet* all = kz_CADSelSet_getAll();
    kz_CADSelSet* set = kz_CADSelSet_create();
    ASSERT_NE(set, nullptr);
    kz_CADObjId* first = kz_CADSelSet_getNth(all, 0);
    kz_CADObjId* second = kz_CADSelSet_getNth(all, 1);
    EXPECT_EQ(kz_CADSelSet_getNth(all, 2), nullptr);
    EXPECT_EQ(kz_CADSelSet_getNthX(all, -1), nullptr);
    EXPECT_EQ(kz_CADSelSet_addObject(set, second), 1);
    EXPECT_EQ(kz_CADSelSet_isMember(set, first), 0);
    int32_t index = 7;
    EXPECT_EQ(kz_CADSelSet_getIndex(&index, set, first), 0);
    EXPECT_EQ(index, 0);
    EXPECT_EQ(kz_CADSelSet_append(set, all), 1);
    EXPECT_EQ(kz_CADSelSet_length(set), 2);
    EXPECT_EQ(kz_CADSelSet_getIndex(&index, set, first), 1);
    EXPECT_EQ(index, 1);
    ads_name copy = {};
    ASSERT_EQ(kz_CADSelSet_toADSSS(copy, set), 1);
    EXPECT_EQ(kz_CADSelSet_delObject(set, first), 1);
    EXPECT_EQ(kz_CADSelSet_delObject(set, first), 0);
    EXPECT_EQ(kz_CADSelSet_length(set), 1);
    kz_CADSelSet* copied = kz_CADSelSet_fromADSSS(copy);
    EXPECT_EQ(layers(copied), "B A");

    kz_TMatrix* move = kz_TMatrix_create();
    const kz_Point origin = {100, 0, 0};
    kz_TMatrix_setOrigin(move, &origin);
    EXPECT_EQ(kz_CADSelSet_transform(set, move), 1);
    kz_TMatrix_destroy(move);
    const kz_Point from = {99, 19, 0}, to = {111, 21, 0};
    EXPECT_EQ(layers(kz_CADSelSet_fromWindow(&from, &to, 0)), "B");
    AcDbObjectId id;
    EXPECT_EQ(kz_CADObjId_getAcDbObjectId(&id, second), 1);
    kz_CADSelSet_redraw(set, 3);
    EXPECT_TRUE(host::isHighlighted(id));
    kz_CADSelSet_redraw(set, 4);
    kz_CADObjIdList* ids = kz_CADObjIdList_fromCADSelSetId(all, 0);
    EXPECT_EQ(kz_CADObjIdList_length(ids), 2);
    EXPECT_EQ(kz_CADObjIdList_search(ids, second), 1);
    kz_CADObjIdList_destroy(ids);
    kz_CADSelSet* none = kz_CADSelSet_create();
    EXPECT_EQ(kz_CADObjIdList_fromCADSelSetId(none, 0), nullptr);
    EXPECT_EQ(kz_CADSelSet_append(none, nullptr), 0);
    kz_CADSelSet_destroy(none);
    kz_CADObjId_destroy(first);
    kz_CADObjId_destroy(second);
    kz_CADSelSet_destroy(all);
    kz_CADSelSet_destroy(set);
}

TEST_F(SelectionSets, nothing_is_taken_for_a_set) {
    kz_CADSelSet none = {};
    kz_CADSelSet freed = {};
    ASSERT_EQ(acedSSAdd(nullptr, nullptr, freed.name), RTNORM);
    ASSERT_EQ(acedSSFree(freed.name), RTNORM);
    ads_name out = {};
    EXPECT_EQ(kz_CADSelSetId_isNull(nullptr), 1);
    EXPECT_EQ(kz_CADSelSetId_isNull(&none), 1);
    EXPECT_EQ(kz_CADSelSetId_isNull(&freed), 0);
    EXPECT_EQ(kz_CADSelSet_toADSSS(out, &none), 0);
    EXPECT_EQ(kz_CADSelSet_length(&none), 0);
    EXPECT_EQ(kz_CADSelSet_length(&freed), 0);
    EXPECT_EQ(kz_CADSelSet_getNth(&freed, 0), nullptr);
    EXPECT_EQ(kz_CADSelSet_getNthX(&freed, 0), nullptr);
    EXPECT_EQ(kz_CADObjIdList_fromCADSelSetId(nullptr, 1), nullptr);
    kz_CADSelSet_redraw(&freed, 3);
    kz_CADSelSet_destroy(nullptr);
    kz_Point point = {1, 2, 3};
    EXPECT_EQ(kz_CADSelSet_getDragOrigin(&point), 1);
    EXPECT_EQ(point.x + point.y + point.z, 0.0);
    EXPECT_EQ(kz_CADSelSet_getDragOrigin(nullptr), 0);
    point = {1, 2, 3};
    EXPECT_EQ(kz_CADSelSet_getDragXAxis(&point), 0);
    EXPECT_EQ(point.x + point.y + point.z, 0.0);
}

TEST_F(SelectionSets, what_is_new_is_behind_the_marker) {
    EXPECT_EQ(kz_CADSelSet_begin(), nullptr);
    EXPECT_EQ(kz_CADSelSet_end(nullptr, 1), nullptr);
    lineAt(0, 0, "A");
    EXPECT_EQ(layers(kz_CADSelSet_end(nullptr, 0)), "A");
    kz_CADSelSetMarker* marker = kz_CADSelSet_begin();
    ASSERT_NE(marker, nullptr);
    EXPECT_EQ(kz_CADSelSet_end(marker, 0), nullptr);
    lisp(
        "(entmake '((0 . \"POLYLINE\") (8 . \"B\") (66 . 1)))"
        "(entmake '((0 . \"VERTEX\") (8 . \"B\") (10 0.0 0.0 0.0)))"
        "(entmake '((0 . \"VERTEX\") (8 . \"B\") (10 9.0 0.0 0.0)))(entmake '((0 . \"SEQEND\")))");
    lineAt(0, 0, "C");
    EXPECT_EQ(layers(kz_CADSelSet_end(marker, 0)), "B C");
    kz_CADSelSetMarker* at_polyline = nullptr;
    lisp("(entdel (entlast))");
    at_polyline = kz_CADSelSet_begin();
    lineAt(0, 0, "D");
    EXPECT_EQ(layers(kz_CADSelSet_end(at_polyline, 1)), "D");
    lisp("(entdel (entnext))");
    EXPECT_EQ(kz_CADSelSet_end(marker, 1), nullptr);
    kz_CADSelSet_destroyMarker(nullptr);
    ads_name next = {};
    EXPECT_EQ(kz_AcCAD_nextMainEntity(nullptr, next, 0), 1);
    EXPECT_EQ(kz_AcCAD_nextMainEntity(next, next, 0), 1);  // the first vertex
    EXPECT_EQ(kz_AcCAD_nextMainEntity(next, next, 1), 1);
    EXPECT_EQ(kz_AcCAD_nextMainEntity(next, next, 1), 0);
    EXPECT_TRUE(ads_name_nil(next));
}

TEST_F(SelectionSets, the_user_chooses) {
    lineAt(0, 0, "A");
    host::queueText(u"_all");
    host::queueEnter();
    EXPECT_EQ(layers(kz_CADSelSet_get(KZ_T("Pipes, please\n"), 0)), "A");
    EXPECT_NE(shown_.find("Pipes, please"), std::string::npos);
    EXPECT_TRUE(host::takeSelectionSwitches().empty());
    host::queueEnter();
    EXPECT_EQ(layers(kz_CADSelSet_get(nullptr, 0)), "none");
    host::queueCancel();
    EXPECT_EQ(layers(kz_CADSelSet_get(nullptr, 1)), "none");
    EXPECT_EQ(host::takeSelectionSwitches(),
              (std::vector<std::string>{"filter on", "duplicates on", "nested windows on",
                                        "duplicates off", "nested windows off", "filter off"}));
}

TEST_F(SelectionSets, objects_in_blocks_light_up_with_their_path) {
    lisp(
        "(mapcar 'entmake '(((0 . \"BLOCK\") (2 . \"IN\") (70 . 0) (10 0.0 0.0 0.0)) ((0 . "
        "\"CIRCLE\") (8 . \"C\") (10 0.0 0.0 0.0) (40 . 5.0)) ((0 . \"POINT\") (8 . \"P\") (10 0.0 "
        "0.0 0.0)) ((0 . \"ENDBLK\")) ((0 . \"BLOCK\") (2 . \"OUT\") (70 . 0) (10 0.0 0.0 0.0)) "
        "((0 . \"INSERT\") (2 . \"IN\") (10 100.0 0.0 0.0)) ((0 . \"ENDBLK\")) ((0 . \"INSERT\") "
        "(8 . \"O\") (2 . \"OUT\") (10 0.0 0.0 0.0))))");
    host::queueText(u"_w");
    host::queuePoint(90, -10);
    host::queuePoint(110, 10);
    host::queueEnter();
    kz_CADSelSet* set = kz_CADSelSet_get(nullptr, 1);
    ASSERT_NE(set, nullptr);
    EXPECT_EQ(kz_CADSelSet_length(set), 2);
    kz_CADObjIdList* ids = kz_CADObjIdList_fromCADSelSetId(set, 1);
    ASSERT_EQ(kz_CADObjIdList_length(ids), 2);
    kz_CADObjIdList_start(ids);
    EXPECT_EQ(kz_CADObjId_isOnLayer(kz_CADObjIdList_getCurr(ids), KZ_T("C")), 1);
    kz_CADObjIdList_next(ids);
    EXPECT_EQ(kz_CADObjId_isOnLayer(kz_CADObjIdList_getCurr(ids), KZ_T("P")), 1);
    kz_CADObjIdList_destroy(ids);
    EXPECT_EQ(layers(set), "O O");
    const auto paths = host::takeHighlightedPaths();
    ASSERT_EQ(paths.size(), 2U);
    ASSERT_EQ(paths[0].size(), 3U);
    ads_name last = {};
    AcDbObjectId insert;
    acdbEntLast(last);
    acdbGetObjectId(insert, last);
    EXPECT_EQ(paths[0].front(), insert);
    EXPECT_EQ(paths[1].front(), insert);
    EXPECT_NE(paths[0].back(), paths[1].back());
}

/// The first, second ... call of each platform function fails: no set, chain or switch is left.
TEST_F(SelectionSets, faults_leave_nothing_behind) {
    lineAt(0, 0, "A", 1);
    const kz_Point on = {5, 0, 0};
    const std::function<void()> run = [&] {
        layers(kz_CADSelSet_fromPoint(&on, 1.0));
        layers(kz_CADSelSet_fromColor(KZ_T("RED")));
        layers(byFields({{KZ_T("LAYER"), KZ_T("A")}}, 1));
        kz_PointList* fence = path({{5, -1, 0}, {5, 1, 0}});
        layers(kz_CADSelSet_fromFence(fence));
        kz_PointList_destroy(fence);
        kz_CADSelSet* set = kz_CADSelSet_create();
        kz_CADSelSet* all = kz_CADSelSet_getAll();
        kz_CADSelSet_append(set, all);
        ads_name copy = {};
        if (kz_CADSelSet_toADSSS(copy, all) == 1) acedSSFree(copy);
        kz_CADObjIdList_destroy(kz_CADObjIdList_fromCADSelSetId(all, 1));
        kz_CADSelSet_destroy(all);
        kz_CADSelSet_destroy(set);
        kz_CADSelSet_destroy(kz_CADSelSet_end(kz_CADSelSet_begin(), 1));
        kz_CADSelSetMarker* marker = kz_CADSelSet_begin();
        kz_CADSelSet_destroyMarker(marker);
        kz_CADSelSet_destroy(kz_CADSelSet_end(nullptr, 1));
        host::queuePoint(5, 0);
        host::queueEnter();
        layers(kz_CADSelSet_get(nullptr, 1));
        host::clearAnswers();
    };
    for (const std::string_view call : host::testing::platformCalls()) {
        for (int nth = 1; nth < 40; ++nth) {
            host::testing::failCall(call, nth, RTERROR);
            run();
            const bool fired = host::testing::faultFired();
            host::testing::clearFault();
            kz_Error_clearAll();
            ASSERT_EQ(kz_CADSelSet_getNumRemaining(), 128) << call << " " << nth;
            ASSERT_EQ(host::selectionFilterCount(), 0) << call << " " << nth;
            if (!fired) break;
        }
    }
}

}  // namespace
