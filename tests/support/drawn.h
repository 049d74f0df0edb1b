/// Fixture for tests on entities: a new drawing that Lisp fills, and typed opening of what it drew.
#ifndef TESTS_SUPPORT_DRAWN_H
#define TESTS_SUPPORT_DRAWN_H

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "acad/blocks.h"
#include "acad/entities.h"
#include "host/counters.h"
#include "host/drawing.h"
#include "host/lisp.h"
#include "kz_tls21an/memory.h"
#include "kz_tls21an/text.h"
#include "temp_folder.h"

namespace drawn {

/// An object while it is open; closed at the end of its scope.
template <class T>
class Open {
  public:
    explicit Open(AcDbObjectId id, AcDb::OpenMode mode = AcDb::kForWrite, bool erased = false)
        : status(acdbOpenObject(object_, id, mode, erased)) {}
    /// Takes what is open already.
    explicit Open(T* object) : object_(object) {}
    ~Open() { close(); }
    Open(const Open&) = delete;
    Open& operator=(const Open&) = delete;
    T* operator->() const { return object_; }
    T* get() const { return object_; }
    void close() {
        if (object_ == nullptr) return;
        EXPECT_EQ(object_->close(), Acad::eOk);
        object_ = nullptr;
    }

  private:
    T* object_ = nullptr;

  public:
    Acad::ErrorStatus status = Acad::eOk;
};

/// A text that the platform hands out; it is freed.
inline std::string text(ACHAR* given) {
    if (given == nullptr) return "<null>";
    const std::string copy = kz::toUtf8(given);
    kz_Free(given);
    return copy;
}

class Drawing : public testing::Test {
  protected:
    Drawing() : nodes_before_(host::resbufCount()) { host::newDrawing(); }
    ~Drawing() override {
        EXPECT_EQ(host::openObjectCount(), 0);
        host::closeDrawing();
        EXPECT_EQ(host::resbufCount(), nodes_before_);
    }

    static AcDbDatabase* database() { return acdbHostApplicationServices()->workingDatabase(); }
    static std::string lisp(const std::string& expression) {
        const host::LispOutcome outcome = host::evalLisp(kz::toUtf16(expression));
        EXPECT_TRUE(outcome.ok()) << expression << ": " << kz::toUtf8(outcome.message);
        return kz::toUtf8(outcome.value);
    }
    /// Draws by entmake, one list after the other. @return the last main entity
    static AcDbObjectId draw(const std::string& lists) {
        lisp("(mapcar 'entmake '(" + lists + "))");
        ads_name name = {};
        AcDbObjectId id;
        EXPECT_EQ(acdbEntLast(name), RTNORM);
        EXPECT_EQ(acdbGetObjectId(id, name), Acad::eOk);
        return id;
    }
    /// The n-th sub-entity behind an entity.
    static AcDbObjectId part(AcDbObjectId of, int n) {
        ads_name name = {};
        AcDbObjectId id;
        EXPECT_EQ(acdbGetAdsName(name, of), Acad::eOk);
        for (; n >= 0; --n)
            EXPECT_EQ(acdbEntNext(name, name), RTNORM);
        EXPECT_EQ(acdbGetObjectId(id, name), Acad::eOk);
        return id;
    }
    static AcDbObjectId line() {
        return draw("((0 . \"LINE\") (8 . \"Walls\") (10 0.0 0.0 0.0) (11 3.0 4.0 0.0))");
    }
    /// A polyline with two vertices; `flags` tell its kind.
    static AcDbObjectId polyline(int flags = 0) {
        const int of_vertex = flags == 8 ? 32 : 0;
        return draw("((0 . \"POLYLINE\") (66 . 1) (70 . " + std::to_string(flags) +
                    ") (10 0.0 0.0 0.0) (40 . 0.5)) ((0 . \"VERTEX\") (10 0.0 0.0 0.0) (70 . " +
                    std::to_string(of_vertex) + ")) ((0 . \"VERTEX\") (10 5.0 0.0 0.0) (70 . " +
                    std::to_string(of_vertex) + ")) ((0 . \"SEQEND\"))");
    }
    /// A reference, with one attribute, to a block that holds a line.
    static AcDbObjectId reference() {
        return draw(
            "((0 . \"BLOCK\") (2 . \"Part\") (70 . 2) (10 1.0 0.0 0.0)) "
            "((0 . \"LINE\") (10 1.0 0.0 0.0) (11 2.0 0.0 0.0)) ((0 . \"ENDBLK\")) "
            "((0 . \"INSERT\") (2 . \"Part\") (66 . 1) (10 10.0 20.0 0.0) (41 . 2.0) (42 . 2.0) "
            "(43 . 2.0) (50 . 1.5707963267948966)) ((0 . \"ATTRIB\") (10 10.0 21.0 0.0) (40 . 1.0) "
            "(1 . \"A1\") "
            "(2 . \"TAG\") (70 . 0)) ((0 . \"SEQEND\"))");
    }
    /// A group of an object's list as Lisp shows it; "nil" where it has none.
    static std::string group(AcDbObjectId id, int code) {
        ads_name name = {};
        EXPECT_EQ(acdbGetAdsName(name, id), Acad::eOk);
        resbuf* list = acdbEntGet(name);
        const resbuf* node = list;
        while (node != nullptr && node->restype != code)
            node = node->rbnext;
        std::string shown = "nil";
        if (node != nullptr && (code < 10 || code == 100)) {
            shown = kz::toUtf8(node->resval.rstring);
        } else if (node != nullptr && code >= 60 && code < 80) {
            shown = std::to_string(node->resval.rint);
        } else if (node != nullptr) {
            shown = std::to_string(node->resval.rreal);
        }
        acutRelRb(list);
        return shown;
    }

    TempFolder folder_;

  private:
    int64_t nodes_before_;
};

}  // namespace drawn

#endif
