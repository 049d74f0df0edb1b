// Every operation of the services with the first, second ... call of each platform function
// failing, and with memory that ends at each allocation: whatever it answers, nothing stays open or
// alive.
#include <functional>
#include <vector>

#include "host/testing.h"
#include "suite_test.h"

namespace {

class ServiceFaults : public test::SuiteTest {
  protected:
    struct Operation {
        const char* name;
        std::function<void()> run;
    };

    void SetUp() override {
        SuiteTest::SetUp();
        line("A", 1);
        saved("part.dxf");
        lisp("(entmake '((0 . \"BLOCK\") (2 . \"PUMP\") (70 . 0) (10 0.0 0.0 0.0)))");
        lisp("(entmake '((0 . \"ENDBLK\")))");
        attach("PART", "part.dxf");
        insert("PART", "(10 5.0 5.0 0.0)");
        line("B", 3);
        saved("host.dxf");
    }

    static void release(kz_CADObjIdList* list) {
        if (list != nullptr) kz_LnkList_destroy(list, kz_Free);
    }

    std::vector<Operation> operations() {
        return {
            {"open, ask and save a drawing",
             [this] {
                 kz_CADDwgId* id = drawing(folder_.file("part.dxf"), 2);
                 SUITE(kz_CADDwgId_isAttached)(id);
                 SUITE(kz_CADDwgId_getTransform)(nullptr, nullptr, nullptr, nullptr, id);
                 SUITE(kz_CADDwgId_saveAs)(id, kz::toUtf16(folder_.file("copy.dxf")).c_str());
                 SUITE(kz_CADDwgId_destroy)(id);
             }},
            {"walk the known drawings",
             [] {
                 kz_CADDwgIdList* list = SUITE(kz_CADDwgIdList_create)(0, 0, 1);
                 while (SUITE(kz_CADDwgIdList_eol)(list) == 0)
                     SUITE(kz_CADDwgIdList_next)(list);
                 SUITE(kz_CADDwgIdList_destroy)(list);
                 kz_StrList_destroy(SUITE(kz_CAD_getAttachedDrawings)(nullptr));
             }},
            {"objects by layer, colour and attributes",
             [] {
                 release(SUITE(kz_CADDwgId_getCADObjIdListFromLayer)(nullptr, KZ_T("B")));
                 release(SUITE(kz_CADDwgId_getCADObjIdListFromColor)(nullptr, KZ_T("3")));
                 kz_FldList* wanted = kz_FldList_create(nullptr, 0, nullptr, 0);
                 kz_FldList_addCharVal(wanted, KZ_T("LAYER"), KZ_T("B"));
                 release(SUITE(kz_CADDwgId_getCADObjIdListFromAttributes)(nullptr, wanted, 1));
                 kz_FldList_destroy(wanted);
             }},
            {"insert a block",
             [] {
                 const kz_Point at = {1.0, 2.0, 0.0};
                 SUITE(kz_CADObject_addToDrawing)
                 (SUITE(kz_CADBlockIns3d_create)(KZ_T("PUMP"), nullptr, &at, 1.0, 1.0, 1.0,
                                                 KZ_T("0")));
             }},
            {"coordinates",
             [] {
                 const kz_Point point = {1.0, 2.0, 3.0};
                 kz_Point out = {};
                 SUITE(kz_CoordSys_fromView)(&point);
                 SUITE(kz_CoordSys_transPointLocaltoUCS)(&out, &point);
                 kz_PointList* points = kz_PointList_create();
                 kz_PointList_insEnd(points, &point);
                 acutRelRb(SUITE(kz_CoordSys_transPointListLocaltoUCS)(points));
                 kz_PointList_destroy(points);
                 SUITE(kz_CoordSys_previous)();
             }},
            {"a master's reactor",
             [] {
                 kz_CADObjId id = {};
                 if (acdbEntLast(id.ename) != RTNORM) return;
                 SUITE(kz_Group_attachMasterEntReactor)(&id, &id);
                 SUITE(kz_Group_detachMasterEntReactor)(&id, &id);
             }},
        };
    }

    /// Runs an operation on the drawing as it was made, and looks at what it left.
    void run(const Operation& operation, const std::string& where, const std::function<void()>& arm,
             const std::function<void()>& disarm) {
        SUITE(kz_CADDwgId_destroyAll)();
        open("host.dxf");
        const int64_t nodes = host::resbufCount();
        const int64_t records = kz_Record_count();
        arm();
        operation.run();
        disarm();
        EXPECT_EQ(host::openObjectCount(), 0) << operation.name << ", " << where;
        EXPECT_EQ(host::resbufCount(), nodes) << operation.name << ", " << where;
        EXPECT_EQ(kz_Record_count(), records) << operation.name << ", " << where;
    }
};

TEST_F(ServiceFaults, PlatformCallsFailOnceEach) {
    for (const Operation& operation : operations()) {
        run(
            operation, "without a fault", [] {}, [] {});
        for (const std::string_view call : host::testing::platformCalls()) {
            bool fired = true;
            for (int nth = 1; fired && nth < 200; ++nth) {
                run(
                    operation, std::string(call) + " number " + std::to_string(nth),
                    [&] {
                        host::testing::failCall(call, nth, call.starts_with("aced") ? RTERROR : 6);
                    },
                    [&] {
                        fired = host::testing::faultFired();
                        host::testing::clearFault();
                    });
            }
        }
    }
}

TEST_F(ServiceFaults, MemoryEndsAtEachAllocation) {
    for (const Operation& operation : operations()) {
        for (size_t nth = 1; nth < 40; ++nth) {
            run(
                operation, "allocation " + std::to_string(nth), [&] { kz_Malloc_failFrom(nth); },
                [] { kz_Malloc_failFrom(0); });
        }
    }
}

}  // namespace
