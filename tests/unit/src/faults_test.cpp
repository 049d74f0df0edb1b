// Every platform call fails once: each operation is run with the first, second ... call of each
// platform function failing until it no longer gets that far. Whatever fails, nothing stays open or
// unreleased, and a write that reports failure has changed nothing.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "chain_text.h"
#include "dxf_text.h"
#include "entity_list.h"
#include "host/counters.h"
#include "host/drawing.h"
#include "host/testing.h"
#include "kz/kz_zaglaid.h"
#include "temp_folder.h"

namespace {

using dxf_text::drawing;
using dxf_text::line;

struct Operation {
    const char* name;
    bool writes;
    std::function<bool(const ads_name)> run;  ///< true for success
};

kz_FldList* request(const kz_Char* name) {
    return kz_FldList_create(name, KZ_FLD_UNKNOWN, nullptr, 0);
}

bool destroyed(kz_FldList* list) {
    return kz_FldList_destroy(list) == 1;
}

bool writeList(const ads_name id, int (*write)(const ads_name, kz_FldList*, const kz_Char*)) {
    kz_FldList* list = kz_FldList_create(nullptr, 0, nullptr, 0);
    kz_FldList_addRealVal(list, KZ_T("SIZE"), 50.0);
    kz_FldList_addCharVal(list, KZ_T("NEW"), KZ_T("text"));
    const bool good = write(id, list, KZ_T("OTHER")) == 1;
    kz_FldList_destroy(list);
    return good;
}

constexpr const kz_Char* kDict = KZ_T("DATA");
constexpr const kz_Char* kGroup = KZ_T("GROUP");

int writeRecord(const kz_Char* dict, const kz_Char* group, bool clear) {
    kz_FldList* list = kz_FldList_create(nullptr, 0, nullptr, 0);
    kz_FldList_addRealVal(list, KZ_T("SIZE"), 50.0);
    kz_FldList_addCharVal(list, KZ_T("NEW"), KZ_T("text"));
    const int status = kz_DwgData_setFldList(nullptr, dict, group, list, clear ? 1 : 0);
    kz_FldList_destroy(list);
    return status;
}

void destroyFields(void* list) {
    kz_FldList_destroy(static_cast<kz_FldList*>(list));
}

const std::vector<Operation>& operations() {
    static const int16_t kFive = 5;
    static const std::vector<Operation> kOperations = {
        {"getFldList", false,
         [](const ads_name id) {
             return destroyed(kz_XData_getFldList(id, nullptr, KZ_T("OTHER")));
         }},
        {"getFldList with a request", false,
         [](const ads_name id) {
             kz_FldList* list = request(KZ_T("SIZE"));
             const bool good = kz_XData_getFldList(id, list, KZ_T("OTHER")) != nullptr;
             kz_FldList_destroy(list);
             return good;
         }},
        {"getFldListAlways", false,
         [](const ads_name id) {
             return destroyed(kz_XData_getFldListAlways(id, nullptr, KZ_T("OTHER")));
         }},
        {"getFld", false,
         [](const ads_name id) {
             return destroyed(kz_XData_getFld(id, KZ_T("SIZE"), KZ_T("OTHER")));
         }},
        {"initFldList", true,
         [](const ads_name id) { return writeList(id, kz_XData_initFldList); }},
        {"modFldList", true, [](const ads_name id) { return writeList(id, kz_XData_modFldList); }},
        {"deleteFldList", true,
         [](const ads_name id) { return kz_XData_deleteFldList(id, KZ_T("OTHER")) == 1; }},
        {"setFld adding", true,
         [](const ads_name id) {
             return kz_XData_setFld(id, KZ_FLD_INT, &kFive, KZ_T("SIZE"), KZ_T("OTHER"), 0, 1) == 1;
         }},
        {"setFld replacing", true,
         [](const ads_name id) {
             return kz_XData_setFld(id, KZ_FLD_INT, &kFive, KZ_T("SIZE"), KZ_T("OTHER"), 1, 0) == 1;
         }},
        {"setFld for a new application", true,
         [](const ads_name id) {
             return kz_XData_setFld(id, KZ_FLD_INT, &kFive, KZ_T("A"), KZ_T("FRESH"), 0, 0) == 1;
         }},
        {"deleteFld", true,
         [](const ads_name id) {
             return kz_XData_deleteFld(id, KZ_T("SIZE"), KZ_T("OTHER")) == 1;
         }},
        {"deleteFldValue", true,
         [](const ads_name id) {
             const double size = 40.0;
             return kz_XData_deleteFldValue(id, KZ_FLD_REAL, &size, KZ_T("SIZE"), KZ_T("OTHER"),
                                            0) == 1;
         }},
        {"setHandle", true,
         [](const ads_name id) {
             return kz_XData_setHandle(id, KZ_T("30"), KZ_T("LINK"), KZ_T("OTHER"), 0) == 1;
         }},
        {"drawing data getFldList", false,
         [](const ads_name) {
             return destroyed(kz_DwgData_getFldList(nullptr, kDict, kGroup, nullptr));
         }},
        {"drawing data getFld", false,
         [](const ads_name) {
             return destroyed(kz_DwgData_getFld(nullptr, kDict, kGroup, KZ_T("size")));
         }},
        {"drawing data getXGroups", false,
         [](const ads_name) {
             return kz_StrList_destroy(kz_DwgData_getXGroups(nullptr, kDict)) == 1;
         }},
        {"drawing data getDict", false,
         [](const ads_name) {
             kz_LnkList* lists = kz_AcDwgData_getDict(nullptr, kDict);
             return kz_LnkList_destroy(lists, destroyFields) == 1;
         }},
        {"drawing data setFldList", true,
         [](const ads_name) { return writeRecord(kDict, kGroup, false) == 1; }},
        {"drawing data setFldList replacing", true,
         [](const ads_name) { return writeRecord(kDict, kGroup, true) == 1; }},
        {"drawing data setFldList for a new application", true,
         [](const ads_name) { return writeRecord(KZ_T("NEW"), kGroup, false) == 1; }},
        {"drawing data setFld", true,
         [](const ads_name) {
             return kz_DwgData_setFld(nullptr, kDict, kGroup, KZ_T("SIZE"), KZ_FLD_INT, &kFive, 0,
                                      1) == 1;
         }},
        {"drawing data deleteFldValue", true,
         [](const ads_name) {
             const double size = 50.0;
             return kz_DwgData_deleteFldValue(nullptr, kDict, kGroup, KZ_T("SIZE"), KZ_FLD_REAL,
                                              &size, 0) == 1;
         }},
        {"drawing data deleteFldList", true,
         [](const ads_name) { return kz_DwgData_deleteFldList(nullptr, kDict, kGroup) == 1; }},
        {"drawing data delDict", true,
         [](const ads_name) { return kz_AcDwgData_delDict(nullptr, kDict) == 1; }},
    };
    return kOperations;
}

class Faults : public testing::TestWithParam<size_t> {
  protected:
    void open() {
        const std::string fields =
            "1001 OTHER | 1002 { | 1000 SIZE | 1040 40.0 | 1002 } | 1002 { | 1000 TAG | 1000 P-1 | "
            "1002 }";
        std::string error;
        ASSERT_TRUE(
            host::openDrawing(folder_.write("in.dxf", drawing(line("30", "0", fields))), error))
            << error;
        ASSERT_EQ(writeRecord(kDict, kGroup, false), 1);
    }

    static std::string keysOf(const kz_Char* dict) {
        std::string keys;
        kz_StrList* list = kz_DwgData_getXGroups(nullptr, dict);
        for (; kz_StrList_eol(list) == 0; kz_StrList_next(list))
            keys += test::narrow(kz_StrList_getCurr(list)) + " ";
        kz_StrList_destroy(list);
        return keys;
    }

    static bool hasDictionary(const kz_Char* key) {
        ads_name root;
        acdbNamedObjDict(root);
        const Chain found(acdbDictSearch(root, key, 0));
        return found != nullptr;
    }

    /// What the entity holds, of both applications, and what the drawing does.
    static std::string state() {
        const Ename entity(u"30");
        return test::take(kz_Xdata_getFromEnt(entity.name, KZ_T("OTHER"))) + " / " +
               test::take(kz_Xdata_getFromEnt(entity.name, KZ_T("FRESH"))) + " / " + keysOf(kDict) +
               test::take(kz_AcXrecord_getFromDict(nullptr, kDict, kGroup)) + " / " +
               (hasDictionary(KZ_T("NEW")) ? "NEW" : "");
    }

    TempFolder folder_;
};

TEST_P(Faults, leave_nothing_open_and_nothing_half_written) {
    const Operation& operation = operations()[GetParam()];
    open();
    const std::string before = state();
    bool succeeds = operation.run(Ename(u"30").name);
    EXPECT_TRUE(succeeds) << "without a fault";
    for (const std::string_view call : host::testing::platformCalls()) {
        for (int nth = 1; nth < 1000; ++nth) {
            open();
            const Ename entity(u"30");
            const int64_t nodes = host::resbufCount();
            host::testing::failCall(call, nth, call.starts_with("aced") ? RTERROR : 6);
            succeeds = operation.run(entity.name);
            const bool fired = host::testing::faultFired();
            host::testing::clearFault();
            const std::string where = std::string(call) + " number " + std::to_string(nth);
            EXPECT_EQ(host::openObjectCount(), 0) << where;
            EXPECT_EQ(host::resbufCount(), nodes) << where;
            if (operation.writes && !succeeds) {
                EXPECT_EQ(state(), before) << where;
            }
            if (!fired) {
                EXPECT_TRUE(succeeds) << where << " was not reached";
                break;
            }
        }
    }
    host::closeDrawing();
}

TEST_P(Faults, memory_may_end_at_any_allocation) {
    const Operation& operation = operations()[GetParam()];
    open();
    const std::string before = state();
    for (size_t nth = 1;; ++nth) {
        open();
        const Ename entity(u"30");
        const int64_t nodes = host::resbufCount();
        const int64_t records = kz_Record_count();
        kz_Malloc_failFrom(nth);
        const bool succeeds = operation.run(entity.name);
        kz_Malloc_failFrom(0);
        const std::string where = "allocation " + std::to_string(nth);
        EXPECT_EQ(host::openObjectCount(), 0) << where;
        EXPECT_EQ(host::resbufCount(), nodes) << where;
        EXPECT_EQ(kz_Record_count(), records) << where;
        if (operation.writes && !succeeds) {
            EXPECT_EQ(state(), before) << where;
        }
        if (succeeds || nth == 1000) break;
    }
    host::closeDrawing();
}

INSTANTIATE_TEST_SUITE_P(EveryOperation, Faults, testing::Range(size_t{0}, operations().size()),
                         [](const auto& param) {
                             std::string name = operations()[param.param].name;
                             for (char& c : name) {
                                 if (c == ' ') c = '_';
                             }
                             return name;
                         });

}  // namespace
