/// Texts on the page: where their justification puts them.
#include "plot/plot_text.h"

#include <algorithm>
#include <cmath>

#include "base/angles.h"
#include "edit/entity_system.h"
#include "edit/tag_values.h"
#include "kz_tls21an/text.h"
#include "plot/text_content.h"

namespace host {
namespace {

/// Where one line of letters stands in the coordinates of its entity.
struct Line {
    AcGePoint3d origin;
    AcGeVector3d along;  ///< of one height of a capital
    AcGeVector3d up;
};

class TextDrawer {
  public:
    TextDrawer(Database& drawing, Slot entity, const AcGeMatrix3d& to, PlotColor color,
               PlotCanvas& canvas)
        : tags_(ownTags(drawing.tags(entity))),
          codec_(drawing.codec()),
          to_(to),
          color_(color),
          canvas_(canvas) {}

    void drawLine(const AcGeMatrix3d& plane, int code) {
        const std::string text = kz::toUtf8(plainText(textOf(code)));
        to_ = to_ * plane;
        const double height = realOf(tags_, 40, 1.0);
        const double wide = canvas_.textWidth(text);
        if (text.empty() || height <= 0.0 || wide <= 0.0) return;
        const int64_t across = integerOf(tags_, 72, kLeft), above = integerOf(tags_, 73, 0);
        const AcGePoint3d first = pointOf(tags_, 10), second = pointOf(tags_, 11, first);
        double angle = toRadians(realOf(tags_, 50, 0.0)), tall = height;
        double factor = positive(realOf(tags_, 41, 1.0));
        const bool stretched = across == kAligned || across == kFit;
        if (stretched && (second - first).length() > 0.0) {
            const AcGeVector3d way = second - first;
            angle = std::atan2(way.y, way.x);
            if (across == kAligned) tall = way.length() / (wide * factor);
            if (across == kFit) factor = way.length() / (wide * height);
        }
        const AcGeVector3d x(std::cos(angle), std::sin(angle), 0.0), y(-x.y, x.x, 0.0);
        const double slant = std::tan(toRadians(std::clamp(realOf(tags_, 51, 0.0), -85.0, 85.0)));
        Line line = {first, x * (tall * factor), (y + x * slant) * tall};
        const bool by_second = !stretched && (across != kLeft || above != 0);
        if (by_second) {
            const double left = across == kCentre || across == kMiddle ? 0.5
                                : across == kRight                     ? 1.0
                                                                       : 0.0;
            const double down = across == kMiddle || above == 2 ? 0.5
                                : above == 3                    ? 1.0
                                : above == 1                    ? -kDescent
                                                                : 0.0;
            line.origin = second - line.along * (wide * left) - y * (tall * down);
        }
        turnOver(line, wide);
        draw(text, line);
    }

    void drawParagraphs() {
        const double height = positive(realOf(tags_, 40, 1.0));
        const AcGeVector3d normal = vectorOf(tags_, 210, AcGeVector3d::kZAxis).normal();
        const double angle = toRadians(realOf(tags_, 50, 0.0));
        const AcGeMatrix3d plane = AcGeMatrix3d().setToPlaneToWorld(normal);
        const AcGeVector3d turned = plane * AcGeVector3d(std::cos(angle), std::sin(angle), 0.0);
        const AcGeVector3d x = vectorOf(tags_, 11, turned).normal();
        const AcGeVector3d y = normal.crossProduct(x);
        const std::vector<std::string> lines = wrapped(realOf(tags_, 41, 0.0) / height);
        // Base lines are 5/3 of the height of a capital apart.
        const double step = height * 5.0 / 3.0 * positive(realOf(tags_, 44, 1.0));
        const double all = height + step * static_cast<double>(lines.size() - 1);
        const int64_t place = std::clamp<int64_t>(integerOf(tags_, 71, 1), 1, 9) - 1;
        const int64_t row = place / 3;
        const double left = static_cast<double>(place % 3) / 2;
        const double down = static_cast<double>(row) / 2;
        AcGePoint3d base = pointOf(tags_, 10) + y * (all * down - height);
        for (const std::string& text : lines) {
            const double wide = text.empty() ? 0.0 : canvas_.textWidth(text);
            draw(text, {base - x * (wide * height * left), x * height, y * height});
            base = base - y * step;
        }
    }

  private:
    /// Horizontal justification, as group 72.
    enum Justified : int64_t { kLeft, kCentre, kRight, kAligned, kMiddle, kFit };
    /// What letters reach below the base line, by the height of a capital.
    static constexpr double kDescent = 0.33;

    static double positive(double value) {
        return std::isfinite(value) && value > 0.0 ? value : 1.0;
    }

    std::u16string textOf(int code) const {
        const size_t at = findTag(tags_, code);
        return at < tags_.size() ? tags_[at].text(codec_) : std::u16string();
    }

    /// Backward and upside down letters, as group 71.
    void turnOver(Line& line, double wide) const {
        enum Flags : int64_t { kBackward = 2, kUpsideDown = 4 };
        const int64_t flags = integerOf(tags_, 71, 0);
        if ((flags & kBackward) != 0) {
            line.origin = line.origin + line.along * wide;
            line.along = -line.along;
        }
        if ((flags & kUpsideDown) != 0) {
            line.origin = line.origin + line.up;
            line.up = -line.up;
        }
    }

    /// The lines of a paragraph text. @param room  width by the height of a capital; 0 for no limit
    std::vector<std::string> wrapped(double room) {
        std::u16string all;
        for (const Tag& tag : tags_) {
            if (tag.code() == 3 || tag.code() == 1) all += tag.text(codec_);
            if (tag.code() == 1) break;
        }
        std::vector<std::string> lines;
        for (const std::u16string& paragraph : paragraphs(all))
            wrap(kz::toUtf8(paragraph), room, lines);
        return lines;
    }

    void wrap(const std::string& paragraph, double room, std::vector<std::string>& lines) {
        std::string line;
        size_t at = 0;
        while (at < paragraph.size()) {
            const size_t end = std::min(paragraph.find(' ', at + 1), paragraph.size());
            const std::string longer = line + paragraph.substr(at, end - at);
            if (room > 0.0 && !line.empty() && canvas_.textWidth(longer) > room) {
                lines.push_back(line);
                line = paragraph.substr(at + (paragraph[at] == ' ' ? 1 : 0),
                                        end - at - (paragraph[at] == ' ' ? 1 : 0));
            } else {
                line = longer;
            }
            at = end;
        }
        lines.push_back(line);
    }

    void draw(const std::string& text, const Line& line) {
        if (text.empty()) return;
        const AcGePoint3d origin = to_ * line.origin, along = to_ * (line.origin + line.along),
                          up = to_ * (line.origin + line.up);
        if (!isFinite(origin) || !isFinite(along) || !isFinite(up)) return;
        canvas_.text(text, {{origin.x, origin.y}, {along.x, along.y}, {up.x, up.y}}, color_);
    }

    const Tags tags_;
    const dxf::TextCodec& codec_;
    AcGeMatrix3d to_;
    PlotColor color_;
    PlotCanvas& canvas_;
};

}  // namespace

bool isText(std::string_view type) {
    return type == "TEXT" || type == "MTEXT" || type == "ATTRIB" || type == "ATTDEF";
}

void drawText(Database& drawing, Slot entity, const AcGeMatrix3d& to, PlotColor color,
              PlotCanvas& canvas) {
    const std::string& type = drawing.typeName(entity);
    TextDrawer drawer(drawing, entity, to, color, canvas);
    if (type == "MTEXT") return drawer.drawParagraphs();
    // A definition shows its tag, an attribute its value.
    drawer.drawLine(entityToWorld(drawing, entity), type == "ATTDEF" ? 2 : 1);
}

}  // namespace host
