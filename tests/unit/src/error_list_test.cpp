/// The error list: what is on it, where it is shown, and the texts of its tables.
#include <dlfcn.h>
#include <elf.h>

#include <cstring>

#include "printed_test.h"
#include "support/temp_folder.h"

namespace {

using test::narrow;
using test::wide;

constexpr int32_t kErrorBit = 0x100;

class ErrorList : public test::PrintedTest {
  protected:
    void TearDown() override {
        kz_Error_clearAll();
        kz_Error_setDefaultOutput(KZ_ERROR_TO_STDERR);
        kz_Msg_setCatalogue(nullptr);
        PrintedTest::TearDown();
    }

    /// Sends the log to a file of this test. @return its path
    std::string useLog() {
        const std::string path = folder_.file("l\xC3\xB6g 50%s.txt");
        EXPECT_EQ(kz_ErrorLogFile_set(wide(path).c_str()), 1);
        return path;
    }

    TempFolder folder_;
};

TEST_F(ErrorList, IsInOrderUntilTheFirstEntryAndAfterClearing) {
    EXPECT_EQ(kz_Error_isOk(), 1);
    kz_Error_clearAll();
    for (int round = 0; round < 2; ++round) {
        EXPECT_NE(kz_Error_submit(kz_ErrorGroupGeneral, 12, nullptr, nullptr), nullptr);
        EXPECT_EQ(kz_Error_isOk(), 0);
        kz_Error_clearAll();
        EXPECT_EQ(kz_Error_isOk(), 1);
    }
    kz_Error_outputAll(1);
    kz_Error_outputCurr(1);
    EXPECT_EQ(printed(), "");
}

TEST_F(ErrorList, IsShownNewestFirstAndStays) {
    kz_Error_submit(kz_ErrorGroupGeneral, 12, KZ_T("help"), KZ_T("topic"));
    kz_Error_submitCustomError(KZ_T("50% of %s, 100%"), 11, nullptr, nullptr);
    kz_Error_submit(kz_ErrorGroupGeneral, 6, nullptr, nullptr);
    const std::string all = "6, \n11, 50% of %s, 100%\n12, Invalid or missing parameter(s)\n";
    kz_Error_outputAllToStdErr();
    EXPECT_EQ(printed(), all);
    kz_Error_outputAll(0);
    EXPECT_EQ(printed(), all);
    kz_Error_outputCurr(0);
    EXPECT_EQ(printed(), "6, \n");
    EXPECT_EQ(kz_Error_isOk(), 0);
}

TEST_F(ErrorList, EntriesWithoutTableOrTextShowTheirCode) {
    kz_Error_submit(nullptr, 12, nullptr, nullptr);
    kz_Error_submitCustomError(nullptr, -3, nullptr, nullptr);
    kz_Error_outputAll(1);
    EXPECT_EQ(printed(), "-3, \n12, \n");
}

TEST_F(ErrorList, TheDefaultMaskTakesOnlyTheThreeBits) {
    for (const int refused : {0, 8, 15, -1}) {
        EXPECT_EQ(kz_Error_setDefaultOutput(refused), 1) << refused;
    }
    EXPECT_EQ(kz_Error_setDefaultOutput(2), 1);
    EXPECT_EQ(kz_Error_setDefaultOutput(0), 2);
    const std::string log = useLog();
    kz_Error_submit(kz_ErrorGroupGeneral, 7, nullptr, nullptr);
    kz_Error_outputAll(0);
    EXPECT_EQ(printed(), "");
    EXPECT_EQ(TempFolder::read(log), "7, NULL input\n");
    kz_Error_outputAll(8);
    EXPECT_EQ(printed(), "");
}

TEST_F(ErrorList, EachLogOutputStartsTheFileAnew) {
    const std::string log = useLog();
    kz_Error_submitCustomError(KZ_T("f\u00FCr 1%s"), 11, nullptr, nullptr);
    kz_Error_submit(kz_ErrorGroupGeneral, 0, nullptr, nullptr);
    kz_Error_outputAllToLogFile();
    EXPECT_EQ(TempFolder::read(log), "0, OK\n11, f\xC3\xBCr 1%s\n");
    kz_Error_outputCurr(2);
    kz_Error_outputCurr(2);
    EXPECT_EQ(TempFolder::read(log), "0, OK\n");
    EXPECT_EQ(printed(), "");
}

TEST_F(ErrorList, ALogThatCannotBeOpenedIsPassedOver) {
    kz_ErrorLogFile_set(wide(folder_.file("no/such/folder")).c_str());
    kz_Error_submit(kz_ErrorGroupGeneral, 0, nullptr, nullptr);
    kz_Error_outputAll(3);
    EXPECT_EQ(printed(), "0, OK\n");
    EXPECT_EQ(folder_.count(), 0U);
}

TEST_F(ErrorList, AnInvalidLogNameFallsBackToTheDefault) {
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(std::filesystem::path(folder_.file("")));
    for (const kz_Char* name : {KZ_T(""), static_cast<const kz_Char*>(nullptr)}) {
        EXPECT_EQ(kz_ErrorLogFile_set(name), 1);
        EXPECT_EQ(printed(),
                  "\nkz_ErrorLogFile_set: Error log file name specified is invalid."
                  "\nDefaulting to log file: KZ_ERROR.LOG\n");
    }
    kz_Error_submit(kz_ErrorGroupGeneral, 0, nullptr, nullptr);
    kz_Error_outputAll(2);
    EXPECT_EQ(TempFolder::read(folder_.file("KZ_ERROR.LOG")), "0, OK\n");
    std::filesystem::current_path(before);
}

TEST_F(ErrorList, DialogsAreReplacedByOneLineBehindTheOtherOutputs) {
    kz_Error_outputAllToDialog();
    EXPECT_EQ(printed(), "");
    kz_Error_submit(kz_ErrorGroupGeneral, 0, nullptr, nullptr);
    kz_Error_submit(kz_ErrorGroupGeneral, 1, nullptr, nullptr);
    kz_Error_outputAll(5);
    EXPECT_EQ(printed(), "1, Unknown Error\n0, OK\n\nErrors can't be shown in dialogs here.\n");
}

TEST_F(ErrorList, TextsAreCopiedAlsoFromTheSharedBufferWhileTracing) {
    traceAt(3, kErrorBit);
    kz_Error_getADSErrorMsg(kz_Diag_getDiagMsgBuf(), KZ_T("acedGetVar"), RTCAN);
    kz_Error_submitCustomError(kz_Diag_getDiagMsgBuf(), 11, nullptr, nullptr);
    kz_Str_ncpy(kz_Diag_getDiagMsgBuf(), KZ_T("overwritten"), 20);
    kz_Error_outputAll(1);
    EXPECT_EQ(printed(), "11, ADS function acedGetVar returned RTCAN.\n");
    kz_Error_clearAll();
    EXPECT_EQ(traced(), "Entering kz_ErrorEntry_create...\nEntering kz_ErrorEntry_destroy...");
    traceAt(2, kErrorBit);
    kz_Error_submit(kz_ErrorGroupGeneral, 1, nullptr, nullptr);
    traceAt(3, ~kErrorBit);
    kz_Error_clearAll();
    EXPECT_EQ(traced(), "");
}

TEST_F(ErrorList, AnEntryWithoutMemoryIsDropped) {
    kz_LnkPos place = nullptr;
    for (size_t good = 1; place == nullptr && good < 20; ++good) {
        kz_Malloc_failFrom(good);
        place = kz_Error_submitCustomError(KZ_T("text"), 6, KZ_T("file"), KZ_T("topic"));
        kz_Malloc_failFrom(0);
        EXPECT_EQ(kz_Error_isOk(), place == nullptr);
    }
    kz_Error_outputAll(1);
    EXPECT_EQ(printed().substr(0, 3), "6, ");
}

TEST(ErrorTable, RowsAreCompleteUpToTheEndRecord) {
    const kz_ErrorMsg* row = kz_ErrorGroupGeneral;
    std::string codes;
    for (; row->code != -1; ++row) {
        codes += std::to_string(row->code) + ' ';
        EXPECT_EQ(narrow(kz_ErrorMsg_getFromTable(kz_ErrorGroupGeneral, row->code)),
                  narrow(row->message));
        EXPECT_EQ(narrow(row->module), "");
        EXPECT_EQ(row->format, 0);
    }
    EXPECT_EQ(codes, "0 1 2 3 4 5 7 8 9 10 12 13 14 ");
    EXPECT_EQ(row->message, nullptr);
    EXPECT_EQ(row->module, nullptr);
    EXPECT_EQ(row->format, 0);
}

TEST(ErrorTable, LookUpsWithoutARowGiveNothing) {
    EXPECT_EQ(kz_ErrorMsg_getFromTable(kz_ErrorGroupGeneral, 6), nullptr);
    EXPECT_EQ(kz_ErrorMsg_getFromTable(kz_ErrorGroupGeneral, -1), nullptr);
    EXPECT_EQ(kz_ErrorMsg_getFromTable(nullptr, 0), nullptr);
}

TEST(ErrorTable, AModulesOwnTableIsTranslatedByItsModuleAndFormat) {
    const kz_ErrorMsg table[] = {{3, nullptr, KZ_T("PUMPS"), 0},
                                 {3, KZ_T("Pump %s stopped"), KZ_T("PUMPS"), 5},
                                 {3, KZ_T("never reached"), KZ_T("PUMPS"), 0},
                                 {-1, nullptr, nullptr, 0}};
    const TempFolder folder;
    const std::string catalogue =
        folder.write("messages", "PUMPS|Pump %s stopped=Pumpe %s h\xC3\xA4lt\n");
    ASSERT_EQ(kz_Msg_setCatalogue(wide(catalogue).c_str()), 1);
    EXPECT_EQ(narrow(kz_ErrorMsg_getFromTable(table, 3)), "Pumpe %s h\xC3\xA4lt\n");
    kz_Msg_setCatalogue(nullptr);
}

/// Where a section of a shared library lies; empty when it has none of that name.
struct Range {
    uintptr_t begin = 0;
    uintptr_t end = 0;
};
Range sectionOf(const std::string& library, uintptr_t base, const char* wanted) {
    const std::string bytes = TempFolder::read(library);
    const auto* head = reinterpret_cast<const Elf64_Ehdr*>(bytes.data());
    const auto* sections = reinterpret_cast<const Elf64_Shdr*>(bytes.data() + head->e_shoff);
    const char* names = bytes.data() + sections[head->e_shstrndx].sh_offset;
    for (int i = 0; i < head->e_shnum; ++i) {
        const Elf64_Shdr& section = sections[i];
        if (std::strcmp(names + section.sh_name, wanted) != 0) continue;
        return {base + section.sh_addr, base + section.sh_addr + section.sh_size};
    }
    return {};
}

TEST(ErrorTable, LiesInASectionOfItsOwn) {
    const char* library = KZ_BUILD_DIR "/libkz_zaglaid.so";
    void* handle = dlopen(library, RTLD_NOW | RTLD_NOLOAD);
    ASSERT_NE(handle, nullptr);
    const void* table = dlsym(handle, "kz_ErrorGroupGeneral");
    Dl_info image;
    ASSERT_NE(dladdr(table, &image), 0);
    const Range section =
        sectionOf(library, reinterpret_cast<uintptr_t>(image.dli_fbase), "ERRGRP");
    EXPECT_EQ(section.begin, reinterpret_cast<uintptr_t>(table));
    EXPECT_EQ(section.end - section.begin, 14 * sizeof(kz_ErrorMsg));
    EXPECT_EQ(dlsym(handle, "kz_ErrorGroupGroup"), nullptr);
    dlclose(handle);
}

TEST(ErrorStatus, IsNamedWhereItHasAName) {
    const std::pair<int, const char*> cases[] = {
        {RTNORM, "RTNORM."}, {RTERROR, "RTERROR."}, {RTCAN, "RTCAN."}, {RTREJ, "RTREJ."},
        {RTFAIL, "RTFAIL."}, {RTKWORD, "RTKWORD."}, {-5006, "-5006."}, {0, "0."},
    };
    kz_Char* buffer = kz_Diag_getDiagMsgBuf();
    for (const auto& [status, name] : cases) {
        kz_Error_getADSErrorMsg(buffer, KZ_T("ads%s"), status);
        EXPECT_EQ(narrow(buffer), std::string("ADS function ads%s returned ") + name);
    }
    kz_Error_getARXErrorMsg(buffer, KZ_T("acdbOpenObject"), RTNORM);
    EXPECT_EQ(narrow(buffer), "ARX function acdbOpenObject returned error status: 5100.");
    kz_Error_getADSErrorMsg(buffer, nullptr, RTCAN);
    EXPECT_EQ(narrow(buffer), "ADS function <Unknown> returned RTCAN.");
    kz_Error_getARXErrorMsg(buffer, nullptr, 22);
    EXPECT_EQ(narrow(buffer), "ARX function <Unknown> returned error status: 22.");
    kz_Error_getADSErrorMsg(nullptr, KZ_T("f"), 1);
    kz_Error_getARXErrorMsg(nullptr, KZ_T("f"), 1);
}

}  // namespace
