/// Fixture of the tests that need a drawing: a new one for each test, with a line in it. A test
/// that leaves an object open fails.
#ifndef TESTS_DRAWING_TEST_H
#define TESTS_DRAWING_TEST_H

#include "chain_text.h"
#include "host/drawing.h"

namespace test {

class DrawingTest : public ChainTest {
  protected:
    void SetUp() override {
        ChainTest::SetUp();
        host::newDrawing();
        makeLine(line_);
    }
    void TearDown() override {
        EXPECT_EQ(host::openObjectCount(), 0) << "objects were left open";
        host::closeDrawing();
        ChainTest::TearDown();
    }

    static void makeLine(ads_name name) {
        resbuf* list = chain("0:LINE 8:0 10:0,0,0 11:1,1,0");
        ASSERT_EQ(acdbEntMakeX(list, name), RTNORM);
        kz_ResBuf_release(list);
    }
    static std::string handleOf(const ads_name name) {
        resbuf* list = acdbEntGet(name);
        const resbuf* handle = kz_Rb_entitem(list, 5);
        std::string text = handle != nullptr ? narrow(handle->resval.rstring) : "";
        kz_ResBuf_release(list);
        return text;
    }
    /// The application's chain on the line.
    std::string stored(const kz_Char* app) { return take(kz_Xdata_getFromEnt(line_, app)); }

    ads_name line_ = {};
};

}  // namespace test

#endif
