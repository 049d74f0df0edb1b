/// TEXT: one line of text.
#include <cmath>
#include <utility>

#include "command/arcs.h"
#include "command/drafting.h"
#include "edit/plane_map.h"
#include "edit/sysvars.h"
#include "edit/tag_values.h"
#include "edit/typed_points.h"
#include "kz_tls21an/text.h"

namespace host {
namespace {

/// A justification with its groups 72 and 73.
struct Justification {
    std::u16string_view word;
    std::u16string_view asks;
    int horizontal;
    int vertical;
};

constexpr int kAligned = 3, kFit = 5;
constexpr Justification kJustifications[] = {
    {u"Left", u"Specify start point of text: ", 0, 0},
    {u"Align", u"Specify first endpoint of text baseline: ", kAligned, 0},
    {u"Fit", u"Specify first endpoint of text baseline: ", kFit, 0},
    {u"Center", u"Specify center point of text: ", 1, 0},
    {u"Middle", u"Specify middle point of text: ", 4, 0},
    {u"Right", u"Specify right endpoint of text baseline: ", 2, 0},
    {u"TL", u"Specify top-left point of text: ", 0, 3},
    {u"TC", u"Specify top-center point of text: ", 1, 3},
    {u"TR", u"Specify top-right point of text: ", 2, 3},
    {u"ML", u"Specify middle-left point of text: ", 0, 2},
    {u"MC", u"Specify middle point of text: ", 1, 2},
    {u"MR", u"Specify middle-right point of text: ", 2, 2},
    {u"BL", u"Specify bottom-left point of text: ", 0, 1},
    {u"BC", u"Specify bottom-center point of text: ", 1, 1},
    {u"BR", u"Specify bottom-right point of text: ", 2, 1}};
constexpr const char16_t* kWords = u"Left Align Fit Center Middle Right TL TC TR ML MC MR BL BC BR";

class TextCommand {
  public:
    explicit TextCommand(CommandPrompt& prompt)
        : prompt_(prompt), drafting_(prompt), style_(textVariable("TEXTSTYLE")) {}

    void run() {
        askPlace();
        if (isBetween()) {
            second_ = askPoint(prompt_, u"Specify second endpoint of text baseline: ", place_);
            rotation_ = directionTo(inPlane(place_), inPlane(second_));
            if (inPlane(place_).distanceTo(inPlane(second_)) == 0.0) {
                prompt_.refuse(u"the base line has no length.");
            }
        }
        if (justification_->horizontal != kAligned) askHeight();
        if (!isBetween()) askRotation();
        const std::u16string text = prompt_.text(u"Enter text: ", true);
        if (!text.empty()) add(text);
    }

  private:
    bool isBetween() const {
        return justification_->horizontal == kAligned || justification_->horizontal == kFit;
    }

    const Tags& style() {
        Database& drawing = drafting_.drawing();
        static const Tags kNone;
        const Slot record = drawing.findSymbol("STYLE", style_);
        return record == kNoSlot ? kNone : drawing.tags(record);
    }

    void askPlace() {
        for (;;) {
            ads_point given;
            const Answered answer =
                prompt_.point({u"Specify start point of text or [Justify/Style]: ", RSG_NONULL,
                               std::u16string(u"Justify Style ") + kWords, nullptr},
                              given);
            if (answer == Answered::Value) {
                place_ = toPoint(given);
                return;
            }
            if (prompt_.given(u"Style")) {
                askStyle();
                continue;
            }
            if (prompt_.given(u"Justify")) {
                prompt_.keyword(
                    {u"Enter an option [Left/Center/Right/Align/Middle/Fit/TL/TC/TR/"
                     u"ML/MC/MR/BL/BC/BR]: ",
                     RSG_NONULL, kWords, nullptr});
            }
            for (const Justification& one : kJustifications) {
                if (prompt_.given(one.word)) justification_ = &one;
            }
            place_ = askPoint(prompt_, justification_->asks);
            return;
        }
    }

    void askStyle() {
        const std::u16string name = askName(prompt_, u"Enter style name <" + style_ + u">: ");
        if (name.empty()) return;
        if (drafting_.drawing().findSymbol("STYLE", name) == kNoSlot) {
            prompt_.say(u"There is no text style " + name + u".");
            return;
        }
        style_ = name;
        setVariable("TEXTSTYLE", name);
    }

    /// The style's own height goes before all others.
    void askHeight() {
        height_ = realOf(style(), 40, 0.0);
        if (height_ > 0.0) return;
        height_ = realVariable("TEXTSIZE", 2.5);
        const BasePoint base(place_);
        prompt_.distance(
            {u"Specify height <" + shown(height_) + u">: ", RSG_NOZERO | RSG_NONEG, u"", base},
            height_);
        setVariable("TEXTSIZE", height_);
    }

    void askRotation() {
        const BasePoint base(place_);
        prompt_.angle(
            {u"Specify rotation angle of text <" + shownAngle(0.0) + u">: ", 0, u"", base},
            rotation_);
    }

    /// A text between two points has the height that makes it fill the way; letters count as high
    /// as they are wide.
    double heightBetween(size_t letters) const {
        return inPlane(place_).distanceTo(inPlane(second_)) /
               static_cast<double>(std::max<size_t>(letters, 1));
    }

    void add(const std::u16string& text) {
        const double height =
            justification_->horizontal == kAligned ? heightBetween(text.size()) : height_;
        const bool placed_by_second =
            justification_->horizontal != 0 || justification_->vertical != 0;
        NewGroups groups;
        drafting_.thicken(groups.mark(u"AcDbText"));
        groups.point(10, drafting_.flat(place_)).real(40, height).text(1, text);
        const double rotation = drafting_.flatAngle(rotation_);
        if (rotation != 0.0) groups.real(50, rotation);
        const Tags& form = style();
        if (realOf(form, 41, 1.0) != 1.0) groups.real(41, realOf(form, 41, 1.0));
        if (realOf(form, 50, 0.0) != 0.0) groups.real(51, realOf(form, 50, 0.0));
        if (kz::compareNoCase(style_, u"Standard") != 0) groups.text(7, style_);
        if (integerOf(form, 71, 0) != 0) groups.integer(71, integerOf(form, 71, 0));
        if (justification_->horizontal != 0) groups.integer(72, justification_->horizontal);
        if (placed_by_second) groups.point(11, drafting_.flat(isBetween() ? second_ : place_));
        drafting_.direct(groups);
        groups.mark(u"AcDbText");
        if (justification_->vertical != 0) groups.integer(73, justification_->vertical);
        drafting_.add("TEXT", groups);
    }

    CommandPrompt& prompt_;
    Drafting drafting_;
    std::u16string style_;
    const Justification* justification_ = &kJustifications[0];
    AcGePoint3d place_;
    AcGePoint3d second_;
    double height_ = 0.0;
    double rotation_ = 0.0;
};

void drawText(CommandPrompt& prompt) {
    TextCommand(prompt).run();
}

const Command kCommands[] = {
    {u"TEXT", nullptr, drawText, true, "Writes a line of text."},
    {u"DTEXT", u"DT", drawText, true, "Writes a line of text."},
};

}  // namespace

std::span<const Command> textCommands() {
    return kCommands;
}

}  // namespace host
