/// Draws what a walk over entities shows: lines with their dashes and widths, filled areas, texts.
#ifndef HOST_PLOT_PAINTER_H
#define HOST_PLOT_PAINTER_H

#include <map>
#include <memory>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "edit/shapes.h"
#include "plot/page.h"
#include "plot/styles.h"

namespace host {

class Painter : public ShapeVisitor {
  public:
    /// @param to_page  from the coordinates of the space to the page
    Painter(Database& drawing, const PlotRequest& request, const Page& page,
            const AcGeMatrix3d& to_page, PlotCanvas& canvas, PlotReport& report);
    ~Painter() override;

    /// Draws a space.
    void paint(Slot space);

    void begin(Slot entity) override;
    void end(Slot entity) override;
    void curve(const Curve& curve, CurveRole role) override;
    void mark(MarkKind kind, const AcGePoint3d& point) override;
    bool enters(const AcDbExtents& box, int depth) override;
    void enterBlock(Database& drawing, const AcGeMatrix3d& to) override;
    void leaveBlock() override;

  private:
    /// What an entity's parts make together.
    enum class Kind { Lines, Area, Hatch, Mask, Frame, Text, Window };
    /// The widths of a polyline's segment [page].
    struct Segment {
        double from = 0.0;
        double to = 0.0;
    };
    struct Open {
        Slot entity = kNoSlot;
        Kind kind = Kind::Lines;
        PlotContext style;
        PlotPaths paths;
        std::vector<Segment> widths;  ///< of a wide polyline
        size_t curves = 0;
        bool shows = false;
        bool hidden = false;
        bool wide = false;      ///< a segment of a polyline has a width
        bool replaced = false;  ///< the colour stands for something else than the entity's own
        std::optional<PlotPoint> place;  ///< where its label goes
    };
    /// A block that is open.
    struct Inside {
        Database* drawing;
        StyleBook* styles;
        AcGeMatrix3d to_page;
        std::optional<PlotContext> outer;  ///< of the insertion
    };

    Database& drawing() { return *inside_.back().drawing; }
    const AcGeMatrix3d& toPage() const { return inside_.back().to_page; }
    Kind kindOf(Slot entity);
    std::vector<Segment> widthsOf(Slot entity);
    void restyle(Open& open) const;
    PlotPen penOf(const PlotStyle& style) const;
    bool isOnPage(const Open& open) const;
    void flush(Open& open);
    void paintWide(Open& open);
    void paintHatch(Open& open);
    void paintPattern(const Tags& tags, const AcGeMatrix3d& plane, const Open& open);
    void paintWindow(Open& open);
    void paintPoint(const PlotPoint& at, const Open& open);
    void label(const Open& open);

    Database& database_;
    const PlotRequest& request_;
    const Page& page_;
    PlotCanvas& canvas_;
    PlotReport& report_;
    std::map<std::pair<Database*, std::u16string>, std::unique_ptr<StyleBook>> books_;
    std::unordered_set<Slot> stressed_;
    std::vector<Inside> inside_;
    std::vector<Open> open_;
    std::unordered_set<Slot> hidden_layers_;  ///< of the viewport that is drawn
    bool in_window_ = false;
    int64_t point_mode_ = 0;
    double point_size_ = 0.0;
    bool fills_ = true;
};

}  // namespace host

#endif
