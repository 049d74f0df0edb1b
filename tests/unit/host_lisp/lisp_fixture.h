/// A new drawing, a fresh interpreter, and both output channels caught.
#ifndef TESTS_UNIT_HOST_LISP_LISP_FIXTURE_H
#define TESTS_UNIT_HOST_LISP_LISP_FIXTURE_H

#include <gtest/gtest.h>

#include <string>

#include "acad/ads.h"
#include "host/drawing.h"
#include "host/lisp.h"
#include "host/output.h"
#include "kz_tls21an/text.h"

// Printed by GoogleTest where two texts differ.
inline void PrintTo(const std::u16string& text, std::ostream* out) {
    *out << kz::toUtf8(text);
}

class Lisp : public testing::Test {
  protected:
    Lisp() {
        host::newDrawing();
        host::resetLisp();
        host::setSink(host::Channel::Lisp, [this](std::u16string_view text) { printed += text; });
        host::setSink(host::Channel::Message,
                      [this](std::u16string_view text) { messages += text; });
    }
    ~Lisp() override {
        host::setSink(host::Channel::Lisp, {});
        host::setSink(host::Channel::Message, {});
        host::resetLisp();
    }

    /// The value of a text, or its error message.
    static std::u16string eval(std::u16string_view text) {
        const host::LispOutcome outcome = host::evalLisp(text);
        return outcome.ok() ? outcome.value : u"error: " + outcome.message;
    }

    std::u16string printed, messages;
};

#endif
