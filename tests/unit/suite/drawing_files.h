/// Drawings for tests, made in the editor by Lisp and saved as files that attach each other.
#ifndef TESTS_SUITE_DRAWING_FILES_H
#define TESTS_SUITE_DRAWING_FILES_H

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "host/counters.h"
#include "host/drawing.h"
#include "host/drawings.h"
#include "host/lisp.h"
#include "kz_tls21an/text.h"
#include "support/temp_folder.h"

namespace test {

class DrawingFiles : public ::testing::Test {
  protected:
    void SetUp() override { host::newDrawing(); }
    void TearDown() override {
        host::closeDrawing();
        EXPECT_EQ(host::openObjectCount(), 0);
        EXPECT_EQ(host::resbufCount(), 0);
    }

    static std::string lisp(const std::string& text) {
        const host::LispOutcome outcome = host::evalLisp(kz::toUtf16(text));
        EXPECT_TRUE(outcome.ok()) << text << ": " << kz::toUtf8(outcome.message);
        return kz::toUtf8(outcome.value);
    }
    static void line(const std::string& layer, int color = 256) {
        lisp("(entmake '((0 . \"LINE\") (8 . \"" + layer + "\") (62 . " + std::to_string(color) +
             ") (10 0.0 0.0 0.0) (11 1.0 0.0 0.0)))");
    }
    static void attach(const std::string& block, const std::string& path, int flags = 4) {
        lisp("(entmake '((0 . \"BLOCK\") (2 . \"" + block + "\") (70 . " + std::to_string(flags) +
             ") (10 0.0 0.0 0.0) (1 . \"" + path + "\")))");
        lisp("(entmake '((0 . \"ENDBLK\")))");
    }
    static void insert(const std::string& block, const std::string& groups) {
        lisp("(entmake '((0 . \"INSERT\") (2 . \"" + block + "\") " + groups + "))");
    }
    /// Saves the editor's drawing and begins a new one.
    std::string saved(const std::string& name) const {
        std::string error;
        EXPECT_TRUE(host::saveDrawing(folder_.file(name), error)) << error;
        host::newDrawing();
        return folder_.file(name);
    }
    void open(const std::string& name) const {
        std::string error;
        ASSERT_TRUE(host::openDrawing(folder_.file(name), error)) << error;
    }
    static AcDbDatabase* editor() { return acdbHostApplicationServices()->workingDatabase(); }
    static std::string fileOf(const AcDbDatabase* drawing) {
        const ACHAR* name = nullptr;
        if (drawing == nullptr || drawing->getFilename(name) != Acad::eOk) return "";
        return std::filesystem::path(kz::toUtf8(name)).filename().string();
    }
    static int entities(AcDbDatabase* drawing) {
        int count = 0;
        host::forEachEntity(drawing, [&](const host::EntityLook&) { return ++count > 0; });
        return count;
    }

    TempFolder folder_;
};

}  // namespace test

#endif
