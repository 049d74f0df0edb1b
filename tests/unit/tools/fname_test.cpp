/// File names.
#include "kz_tls21an/fname.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>

#include "kz_tls21an/str.h"
#include "kz_tls21an/text.h"
#include "temp_folder.h"

namespace {

/// What a function that works in place makes of a name.
std::string inPlace(const std::string& name, const std::function<kz_Char*(kz_Char*)>& change) {
    kz_Char buffer[100];
    kz_Str_ncpy(buffer, kz::toUtf16(name).c_str(), 90);
    EXPECT_EQ(change(buffer), buffer);
    return kz::toUtf8(buffer);
}

std::string added(const std::string& name, const kz_Char* extension) {
    return inPlace(name, [=](kz_Char* text) { return kz_Fname_addExt(text, extension); });
}

std::string modified(const std::string& name, const kz_Char* extension, int keep) {
    return inPlace(name, [=](kz_Char* text) { return kz_Fname_modExt(text, extension, keep); });
}

TEST(Fname, aNameIsFolderFileAndExtension) {
    struct Case {
        const char* name;
        const char* folder;
        const char* file;
        const char* extension;
        const char* without;
    };
    const Case cases[] = {
        {"/plant/area.dwg", "/plant/", "area.dwg", "dwg", "/plant/area"},
        {"C:\\plant\\area.1.dxf", "C:\\plant\\", "area.1.dxf", "dxf", "C:\\plant\\area.1"},
        {"C:area", "C:", "area", "", "C:area"},
        {"a.b/area", "a.b/", "area", "", "a.b/area"},
        {"..\\a.b\\", "..\\a.b\\", "", "", "..\\a.b\\"},
        {"area.dwg", "", "area.dwg", "dwg", "area"},
        {"area.", "", "area.", "", "area"},
        {".profile", "", ".profile", "", ".profile"},
        {"..", "", "..", "", ".."},
        {"", "", "", "", ""},
    };
    for (const Case& each : cases) {
        kz_Char out[100] = KZ_T("untouched");
        EXPECT_EQ(kz_Fname_extractPath(kz::toUtf16(each.name).c_str(), out), *each.folder != 0);
        EXPECT_EQ(kz::toUtf8(out), each.folder) << each.name;
        EXPECT_EQ(kz_Fname_extractExt(kz::toUtf16(each.name).c_str(), out), *each.extension != 0);
        EXPECT_EQ(kz::toUtf8(out), each.extension) << each.name;
        EXPECT_EQ(inPlace(each.name, kz_Fname_rmvPath), each.file);
        EXPECT_EQ(inPlace(each.name, kz_Fname_rmvExt), each.without);
    }
    kz_Char same[] = KZ_T("a/b.c");
    EXPECT_EQ(kz_Fname_extractExt(same, same), 1);
    EXPECT_EQ(kz::toUtf8(same), "c");
}

TEST(Fname, anExtensionIsAddedWhereThereIsNoneAndReplacedOnDemand) {
    EXPECT_EQ(added("a.b/area", KZ_T("dwg")), "a.b/area.dwg");
    EXPECT_EQ(added("area.", KZ_T(".dwg")), "area.dwg");
    EXPECT_EQ(added("area.dxf", KZ_T("dwg")), "area.dxf");
    EXPECT_EQ(added("area.", KZ_T("")), "area.");
    EXPECT_EQ(added("area", nullptr), "area");
    EXPECT_EQ(modified("x.y\\area.dxf", KZ_T("dwg"), 0), "x.y\\area.dwg");
    EXPECT_EQ(modified("area", KZ_T("dwg"), 0), "area.dwg");
    EXPECT_EQ(modified("area.dxf", KZ_T("dwg"), 1), "area.dxf");
    EXPECT_EQ(modified("area", KZ_T("dwg"), 1), "area.dwg");
    EXPECT_EQ(modified("area.dxf", KZ_T(""), 0), "area");
}

TEST(Fname, foldersHaveOneForm) {
    const auto fixed = [](const char* folder) { return inPlace(folder, kz_Fname_fixDir); };
    EXPECT_EQ(fixed("C:\\plant\\\\area"), "C:/plant/area/");
    EXPECT_EQ(fixed(" \\\\server\\share\\ "), "//server/share/");
    EXPECT_EQ(fixed("//server///share"), "//server/share/");
    EXPECT_EQ(fixed("/"), "/");
    EXPECT_EQ(fixed("a"), "a/");
    EXPECT_EQ(fixed("  "), "");
}

TEST(Fname, fullPathsLeaveNoDots) {
    const std::string here = std::filesystem::current_path().string();
    const auto full = [](const char* name) {
        return kz::toUtf8(kz_Fname_fullPath(kz::toUtf16(name).c_str()));
    };
    EXPECT_EQ(full(""), here);
    EXPECT_EQ(full("a/./b//c.dwg"), here + "/a/b/c.dwg");
    EXPECT_EQ(full("a\\..\\b"), here + "/b");
    EXPECT_EQ(full("/../a/.."), "/");
    EXPECT_EQ(full("C:\\a\\..\\..\\b"), "C:/b");
    EXPECT_EQ(full("\\\\server\\a"), "//server/a");
}

TEST(Fname, temporaryFilesAreNewAndThere) {
    const TempFolder folder;
    const std::filesystem::path path = std::filesystem::path(folder.file("any")).parent_path();
    setenv("TMPDIR", path.c_str(), 1);
    const std::string first = kz::toUtf8(kz_Fname_createTemp());
    const std::string second = kz::toUtf8(kz_Fname_createTemp());
    EXPECT_NE(first, second);
    EXPECT_TRUE(std::filesystem::is_empty(first));
    EXPECT_EQ(std::filesystem::path(first).parent_path(), path);
    setenv("TMPDIR", "/nowhere", 1);
    EXPECT_EQ(kz_Fname_createTemp(), nullptr);
    unsetenv("TMPDIR");
}

TEST(Fname, noNameIsNoName) {
    kz_Char out[10] = KZ_T("x");
    EXPECT_EQ(kz_Fname_extractPath(nullptr, out), 0);
    EXPECT_EQ(*out, 0);
    EXPECT_EQ(kz_Fname_extractExt(nullptr, out), 0);
    EXPECT_EQ(kz_Fname_extractPath(KZ_T("a/b"), nullptr), 0);
    EXPECT_EQ(kz_Fname_extractExt(KZ_T("a.b"), nullptr), 0);
    for (const auto change : {kz_Fname_rmvPath, kz_Fname_rmvExt, kz_Fname_fixDir})
        EXPECT_EQ(change(nullptr), nullptr);
    EXPECT_EQ(kz_Fname_addExt(nullptr, KZ_T("a")), nullptr);
    EXPECT_EQ(kz_Fname_modExt(nullptr, KZ_T("a"), 0), nullptr);
    EXPECT_EQ(kz_Fname_fullPath(nullptr), nullptr);
}

}  // namespace
