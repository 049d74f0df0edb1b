/// Display text of messages, and where trace lines go.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "kz_tls21an/diag.h"
#include "kz_tls21an/msg.h"
#include "kz_tls21an/str.h"
#include "kz_tls21an/text.h"

namespace {

namespace fs = std::filesystem;

std::string msg(const char* text, const char* module, int format) {
    return kz::toUtf8(kz_Msg(text, module, format));
}

/// A folder of its own for each test, with one file in it.
class Files : public testing::Test {
  protected:
    Files()
        : folder_(fs::temp_directory_path() /
                  (std::string("kz_tools_test_") +
                   testing::UnitTest::GetInstance()->current_test_info()->name())),
          path_(folder_ / "t\xC3\xBCr.txt") {
        fs::create_directories(folder_);
    }
    ~Files() override {
        kz_Diag_disable();
        kz_Diag_setHandler(nullptr);
        kz_Msg_setCatalogue(nullptr);
        fs::remove_all(folder_);
    }

    std::u16string name() const { return kz::toUtf16(path_.string()); }
    void write(const std::string& text) { std::ofstream(path_, std::ios::binary) << text; }
    std::string read() const {
        std::ifstream file(path_, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    fs::path folder_;
    fs::path path_;
};

using Msg = Files;
using Diag = Files;

TEST_F(Msg, theFormatSetsLineEnds) {
    EXPECT_EQ(msg("text", "TOOL", 0), "text");
    EXPECT_EQ(msg("text", "TOOL", 1), "text");
    EXPECT_EQ(msg("text", "TOOL", 3), "\ntext");
    EXPECT_EQ(msg("text", "TOOL", 5), "text\n");
    EXPECT_EQ(msg("t\xC3\xA4xt %s", nullptr, 7), "\nt\xC3\xA4xt %s\n");
    EXPECT_EQ(msg(nullptr, "TOOL", 7), "");
}

TEST_F(Msg, sixteenResultsLiveAtOnce) {
    const kz_Char* first = kz_Msg("first", "TOOL", 1);
    for (int call = 0; call < 15; ++call)
        kz_Msg("a text too long for any small buffer", "TOOL", 1);
    EXPECT_EQ(kz::toUtf8(first), "first");
}

TEST_F(Msg, theCatalogueTranslatesByModuleAndText) {
    write(
        "\xEF\xBB\xBF# comment|a=b\r\nTOOL|Yes=Ja\r\nTOOL|a\\=b\\n=x=y\\\\\nCAD|Yes=Oui\nno "
        "line\n");
    ASSERT_EQ(kz_Msg_setCatalogue(name().c_str()), 1);
    EXPECT_EQ(msg("Yes", "TOOL", 5), "Ja\n");
    EXPECT_EQ(msg("Yes", "CAD", 1), "Oui");
    EXPECT_EQ(msg("a=b\n", "TOOL", 1), "x=y\\");
    EXPECT_EQ(msg("No", "TOOL", 1), "No");
    EXPECT_EQ(kz_Msg_setCatalogue(KZ_T("/no/such/file")), 0);
    EXPECT_EQ(msg("Yes", "TOOL", 1), "Ja") << "a failed change keeps the catalogue";
    EXPECT_EQ(kz_Msg_setCatalogue(nullptr), 1);
    EXPECT_EQ(msg("Yes", "TOOL", 1), "Yes");
}

TEST_F(Diag, settersGiveWhatWasSetBefore) {
    EXPECT_EQ(kz_Diag_setLevel(3), -1);
    EXPECT_EQ(kz_Diag_setLevel(-1), 3);
    EXPECT_EQ(kz_Diag_setCondition(INT32_MIN), 0);
    EXPECT_EQ(kz_Diag_getCondition(), INT32_MIN);
    kz_Diag_disable();
    EXPECT_EQ(kz_Diag_getCondition(), 0);
}

TEST_F(Diag, linesReachTheFileAtOnceAsUtf8) {
    ASSERT_EQ(kz_Diag_setOutput(KZ_DIAG_OUTPUT_FILE, name().c_str()), 1);
    kz_Diag_putOutputMsg(KZ_T("caf\u00E9\n"), "SRC/RB", 12);
    EXPECT_EQ(read(), "SRC/RB(12): caf\xC3\xA9\n");
    kz_Str_ncpy(kz_Diag_getDiagMsgBuf(), KZ_T("two words"), KZ_DIAG_BUFFER_SIZE - 1);
    kz_Diag_putOutput(3, KZ_DiagMsgBuf, "SRC/XD", 7);
    kz_Diag_putOutput(-1, nullptr, nullptr, 0);
    EXPECT_EQ(read(), "SRC/RB(12): caf\xC3\xA9\nSRC/XD(7): two\n(0): \n");
}

TEST_F(Diag, aFileIsEmptiedOrAddedTo) {
    write("old\n");
    ASSERT_EQ(kz_Diag_setOutput(KZ_DIAG_OUTPUT_APPEND, name().c_str()), 1);
    kz_Diag_putOutputMsg(KZ_T("new"), "s", 1);
    EXPECT_EQ(read(), "old\ns(1): new\n");
    kz_Char file[256];
    EXPECT_EQ(kz_Diag_getOutput(file), KZ_DIAG_OUTPUT_APPEND);
    EXPECT_EQ(file, name());
    ASSERT_EQ(kz_Diag_setOutput(KZ_DIAG_OUTPUT_FILE, name().c_str()), 1);
    EXPECT_EQ(read(), "");
    kz_Diag_disable();
    EXPECT_EQ(kz_Diag_getOutput(file), KZ_DIAG_OUTPUT_STDERR);
    EXPECT_EQ(file[0], 0);
}

TEST_F(Diag, aRefusedOutputChangesNothing) {
    ASSERT_EQ(kz_Diag_setOutput(KZ_DIAG_OUTPUT_FILE, name().c_str()), 1);
    EXPECT_EQ(kz_Diag_setOutput(5, nullptr), 0);
    EXPECT_EQ(kz_Diag_setOutput(-1, nullptr), 0);
    EXPECT_EQ(kz_Diag_setOutput(KZ_DIAG_OUTPUT_FILE, KZ_T("")), 0);
    EXPECT_EQ(kz_Diag_setOutput(KZ_DIAG_OUTPUT_APPEND, nullptr), 0);
    EXPECT_EQ(kz_Diag_setOutput(KZ_DIAG_OUTPUT_FILE, KZ_T("/no/such/folder/file")), 0);
    kz_Diag_putOutputMsg(KZ_T("still here"), "s", 1);
    EXPECT_EQ(read(), "s(1): still here\n");
}

std::string received;

TEST_F(Diag, theHandlerGetsOneLineWithItsSource) {
    const kz_DiagHandler handler = [](const kz_Char* message, const char* source, int line) {
        received += std::string(source) + ":" + std::to_string(line) + ":" + kz::toUtf8(message);
    };
    EXPECT_EQ(kz_Diag_setHandler(handler), nullptr);
    ASSERT_EQ(kz_Diag_setOutput(KZ_DIAG_OUTPUT_HANDLER, nullptr), 1);
    kz_Diag_putOutput(2, KZ_T("a\nb"), "s", 3);
    EXPECT_EQ(received, "s:3:a");
    EXPECT_EQ(kz_Diag_setHandler(nullptr), handler);
    kz_Diag_putOutputMsg(KZ_T("lost"), "s", 3);
    ASSERT_EQ(kz_Diag_setOutput(KZ_DIAG_OUTPUT_NONE, nullptr), 1);
    kz_Diag_putOutputMsg(KZ_T("lost"), "s", 3);
    EXPECT_EQ(received, "s:3:a");
}

}  // namespace
