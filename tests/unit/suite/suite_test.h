/// Fixture of the tests that call the suite's module as everybody does: loaded by the host, its
/// functions found by service and name.
#ifndef TESTS_SUITE_SUITE_TEST_H
#define TESTS_SUITE_SUITE_TEST_H

#include "acad/rx.h"
#include "cadservice.h"
#include "drawing_files.h"
#include "host/module.h"

/// Calls a function of the module by its name in the service KZ_CADSERVICE.
#define SUITE(function) \
    ::test::symbol<decltype(&::function)>(KZ_T("KZ_CADSERVICE"), KZ_T(#function))
/// The same for KZ_START.
#define START(function) ::test::symbol<decltype(&::function)>(KZ_T("KZ_START"), KZ_T(#function))

namespace test {

template <class Function>
Function symbol(const kz_Char* service, const kz_Char* name) {
    void* const address = acrxGetServiceSymbolAddr(service, name);
    EXPECT_NE(address, nullptr) << kz::toUtf8(name);
    return reinterpret_cast<Function>(address);
}

class SuiteTest : public DrawingFiles {
  protected:
    static void SetUpTestSuite() {
        if (acrxServiceIsRegistered(KZ_T("KZ_CADSERVICE"))) return;
        std::string error;
        ASSERT_TRUE(host::loadModule(KZ_BUILD_DIR "/libkz_cadservice.so", error)) << error;
    }
    void TearDown() override {
        SUITE(kz_CADDwgId_destroyAll)();
        DrawingFiles::TearDown();
    }

    static kz_CADDwgId* drawing(const std::string& name, int mode = 3) {
        return SUITE(kz_CADDwgId_create)(kz::toUtf16(name).c_str(), mode);
    }
    static std::string nameOf(const kz_CADDwgId* id) {
        kz_Char name[600] = KZ_T("untouched");
        const int status = SUITE(kz_CADDwgId_getName)(name, id);
        EXPECT_EQ(status, *name == 0 ? 0 : 1);
        return std::filesystem::path(kz::toUtf8(name)).filename().string();
    }
};

}  // namespace test

#endif
