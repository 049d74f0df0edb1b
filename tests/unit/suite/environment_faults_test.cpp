// Input, settings, layers, views and coordinate systems with the first, second ... call of each
// platform function failing, and with memory that ends at each allocation: nothing stays open or
// alive, and what reports a failure has not done half of its work.
#include <functional>
#include <vector>

#include "host/input.h"
#include "host/output.h"
#include "host/testing.h"
#include "kz/kz_zaglaid.h"
#include "suite_test.h"

namespace {

class EnvironmentFaults : public test::SuiteTest {
  protected:
    struct Operation {
        const char* name;
        std::function<void()> run;
    };

    void SetUp() override {
        SuiteTest::SetUp();
        host::setSink(host::Channel::Message, [](std::u16string_view) {});
        lisp("(entmake '((0 . \"POINT\") (10 0.0 0.0 0.0)))");
        attached_ = saved("attached.dxf");
        // The error list is made for its first entry and then stays.
        kz_Error_submit(kz_ErrorGroupGeneral, 12, nullptr, nullptr);
    }
    void TearDown() override {
        kz_Error_clearAll();
        host::setSink(host::Channel::Message, {});
        SuiteTest::TearDown();
    }

    static bool hasLayer(const kz_Char* name) {
        resbuf* layer = acdbTblSearch(KZ_T("LAYER"), name, 0);
        acutRelRb(layer);
        return layer != nullptr;
    }

    static void askForValues() {
        kz_KeyActionsList* list = kz_KeyActionsList_create();
        kz_KeyActionsList_append(list, KZ_T("Yes"), nullptr, nullptr, KZ_INPUT_AGAIN, 0);
        kz_KeyActionsList_append(list, KZ_T("No"), nullptr, nullptr, 1, 1);
        kz_KeyActionsList_destroy(kz_KeyActionsList_copy(list));
        const kz_Point base = {1.0, 1.0, 0.0};
        kz_Point point = {};
        kz_Vector vector = {};
        double value = 0.0;
        kz_Char text[256];
        const std::function<void()> questions[] = {
            [&] { kz_CAD_getPoint(&point, KZ_T("Q"), list, &base, 0); },
            [&] { kz_CAD_getAngle(&value, KZ_T("Q"), list, &base, 0); },
            [&] { kz_CAD_getDistance(&value, KZ_T("Q"), list, &base, 0); },
            [&] { kz_CAD_getReal(&value, KZ_T("Q"), list, 0); },
            [&] { kz_CAD_getWindow(&point, &point, 1, KZ_T("Q"), KZ_T("Q"), list, 0); },
            [&] { kz_CAD_getWindow(nullptr, &point, 0, KZ_T("Q"), KZ_T("Q"), list, 1); },
            [&] { kz_CAD_getString(text, KZ_T("Q"), list, 1); },
            [&] { kz_CAD_getString(text, KZ_T("Q"), nullptr, 1); },
            [&] { kz_CAD_getVector(&vector, &base, KZ_T("Q")); }};
        for (const auto& question : questions) {
            for (const char16_t* answer : {u"y", u"", u"3,4", u"no"})
                host::queueText(answer);
            question();
            host::clearAnswers();
        }
        kz_CAD_snapPoint(&point, &base, KZ_T("_end,_mid"));
        kz_KeyActionsList_destroy(list);
    }

    static void workOnLayers() {
        kz_CADDwgId* drawing = SUITE(kz_CADDwgId_create)(nullptr, 3);
        if (kz_CAD_createLayer(drawing, KZ_T("New")) != 1) {
            EXPECT_FALSE(hasLayer(KZ_T("New")));
        }
        kz_CAD_setLayer(drawing, KZ_T("New"));
        kz_CAD_LayerSetColor(drawing, KZ_T("New"), KZ_T("RED"));
        kz_CAD_LayerIsLocked(KZ_T("New"));
        kz_AcCAD_getLayerFlags(KZ_T("New"));
        kz_CAD_LayerIsEqual(KZ_T("A"), KZ_T("*"), 1, 1);
        kz_CAD_validateSymbolName(KZ_T("a*b"), 0);
        SUITE(kz_CADDwgId_destroy)(drawing);
    }

    static void readSettings() {
        kz_Char text[512];
        double value = 0.0;
        kz_AcCADEngine_getColor(text);
        kz_AcCADEngine_getLineWeight(text);
        kz_AcCADEngine_getLineStyleScale(&value);
        kz_CAD_ColorSet(KZ_CAD_DEFAULT);
        kz_CAD_setPaperSpace();
        kz_CAD_setModelSpace();
        kz_CAD_IsQuillmontPipingProfile();
        kz_StrList_destroy(kz_CAD_getStandardColors(1));
        kz_CAD_isCurrentDrawing(KZ_T("area.dwg"), 0);
        kz_CAD_getSaveName(text);
        for (const int units : {2, 3, 4, 5})
            kz_CAD_strFromDouble(1.5, units, -1, nullptr);
        kz_CAD_strToDouble(KZ_T("1"), 0, nullptr);
        kz_CAD_strFromAngle(1.0, -1, -1, nullptr);
        kz_CAD_strToAngle(KZ_T("1"), -1, nullptr);
    }

    static void lookAround() {
        const kz_Point at = {1.0, 2.0, 0.0};
        const AcDbExtents box({0, 0, 0}, {1, 1, 0});
        kz_Point point = {};
        kz_Vector vector = {};
        kz_CAD_getViewCenter(&point);
        kz_CAD_getDrawingExtentsMin(&point);
        kz_CAD_getViewDir(&vector);
        kz_CAD_zoomCenter(&at, 1.0);
        kz_AcCAD_zoom(&box, 2.0, 1);
        kz_CAD_highlightPosition(&at, KZ_T("KZ_MARK"));
        kz_CAD_dehighlightPosition(KZ_T("KZ_MARK"));
        kz_CAD_setUCS(&at, nullptr, 1);
        kz_CAD_setPrevUCS();
        SUITE(kz_CoordSys_world)();
    }

    /// Picks in an attached drawing, of which the point at (1 2) is to be seen.
    void pick() const {
        host::evalLisp(kz::toUtf16("(command \"_.xref\" \"_attach\" \"P=" + attached_ +
                                   "\" '(1 2) \"\" \"\" \"\")"));
        const kz_Point at = {1.0, 2.0, 0.0};
        kz_Point point = {};
        kz_RotMatrix rotation;
        host::queuePoint(1, 2);
        kz_CADObjId* id = kz_CADObjId_select(KZ_T("Q"), &point);
        kz_CADObjId_getDwgTransform(nullptr, &point, &rotation, id);
        kz_CADObjId_destroy(id);
        kz_CADObjId_destroy(kz_CADObjId_getAtPoint(&at));
        host::clearAnswers();
    }

    std::vector<Operation> operations() const {
        return {{"input", askForValues},
                {"layers", workOnLayers},
                {"settings", readSettings},
                {"view", lookAround},
                {"picks", [this] { pick(); }}};
    }

    /// Runs an operation on a new drawing, and looks at what it left.
    static void run(const Operation& operation, const std::string& where) {
        const int64_t nodes = host::resbufCount();
        const int64_t records = kz_Record_count();
        operation.run();
        EXPECT_EQ(host::openObjectCount(), 0) << operation.name << ", " << where;
        EXPECT_EQ(host::resbufCount(), nodes) << operation.name << ", " << where;
        EXPECT_EQ(kz_Record_count(), records) << operation.name << ", " << where;
        EXPECT_EQ(host::selectionSetCount(), 0) << operation.name << ", " << where;
    }
    static void begin() {
        SUITE(kz_CADDwgId_destroyAll)();
        host::newDrawing();
    }

    std::string attached_;
};

TEST_F(EnvironmentFaults, PlatformCallsFailOnceEach) {
    int failures = 0;
    for (const Operation& operation : operations()) {
        for (const std::string_view call : host::testing::platformCalls()) {
            // An input that can't be taken is put again.
            for (const int status : {call.starts_with("ac") ? int{RTERROR} : 6, int{RTREJ}}) {
                bool fired = true;
                for (int nth = 1; fired && nth < 200; ++nth) {
                    begin();
                    host::testing::failCall(call, nth, status);
                    run(operation, std::string(call) + " number " + std::to_string(nth));
                    fired = host::testing::faultFired();
                    host::testing::clearFault();
                    failures += fired ? 1 : 0;
                }
            }
        }
    }
    EXPECT_GT(failures, 300);
}

TEST_F(EnvironmentFaults, MemoryEndsAtEachAllocation) {
    for (const Operation& operation : operations()) {
        for (size_t nth = 1; nth < 40; ++nth) {
            begin();
            kz_Malloc_failFrom(nth);
            run(operation, "allocation " + std::to_string(nth));
            kz_Malloc_failFrom(0);
        }
    }
}

}  // namespace
