/// A new drawing for tests of the editor's inside, with entities made from text.
#ifndef TESTS_UNIT_HOST_EDIT_EDITOR_TEST_H
#define TESTS_UNIT_HOST_EDIT_EDITOR_TEST_H

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <string>

#include "db/database.h"
#include "dxf_text.h"
#include "edit/sysvars.h"
#include "host/counters.h"
#include "host/drawing.h"
#include "host/lisp.h"
#include "kz_tls21an/text.h"

inline void PrintTo(const AcGePoint3d& p, std::ostream* out) {
    *out << "(" << p.x << " " << p.y << " " << p.z << ")";
}

constexpr double kPi = std::numbers::pi;

/// Equality within a billionth.
inline testing::AssertionResult near(const AcGePoint3d& a, const AcGePoint3d& b) {
    if (a.isEqualTo(b, 1e-9)) return testing::AssertionSuccess();
    return testing::AssertionFailure()
           << testing::PrintToString(a) << " is not " << testing::PrintToString(b);
}
inline testing::AssertionResult near(const AcGeVector3d& a, const AcGeVector3d& b) {
    return near(AcGePoint3d() + a, AcGePoint3d() + b);
}

class EditorTest : public testing::Test {
  protected:
    EditorTest() {
        host::newDrawing();
        host::resetLisp();
        nodes_before_ = host::resbufCount();
    }
    ~EditorTest() override {
        EXPECT_EQ(host::openObjectCount(), 0);
        EXPECT_EQ(host::resbufCount(), nodes_before_);
        host::resetLisp();
        host::setScreenSize(1920, 1080);
        host::closeDrawing();
    }

    static host::Database& drawing() { return *host::currentDatabase(); }

    /// Value of a Lisp text.
    static std::string eval(const std::string& text) {
        const host::LispOutcome outcome = host::evalLisp(kz::toUtf16(text));
        return kz::toUtf8(outcome.ok() ? outcome.value : u"error: " + outcome.message);
    }
    /// A new entity from its groups: "(0 . \"LINE\") (10 0 0 0) ...".
    static host::Slot make(const std::string& groups) {
        EXPECT_NE(eval("(entmake '(" + groups + "))"), "nil") << groups;
        return drawing().lastEntity(drawing().modelSpace());
    }

  private:
    int64_t nodes_before_ = 0;
};

#endif
