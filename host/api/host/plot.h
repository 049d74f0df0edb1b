/// Pictures of the drawing in the editor: what is shown, where it lies on the page, and the canvas
/// that it is drawn on. Lengths on the page are millimetres from its upper left corner, y downward.
#ifndef HOST_PLOT_H
#define HOST_PLOT_H

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "acad/db.h"
#include "host/export.h"

namespace host {

struct PlotColor {
    uint8_t red = 0;
    uint8_t green = 0;
    uint8_t blue = 0;
};

struct PlotPoint {
    double x = 0.0;
    double y = 0.0;
};

struct PlotPath {
    std::vector<PlotPoint> points;
    bool closed = false;
};
using PlotPaths = std::vector<PlotPath>;

/// How lines are drawn.
struct PlotPen {
    PlotColor color;
    double width = 0.25;
    std::vector<double> dashes;  ///< lengths of dashes and gaps in turn; empty for a solid line
    bool round = true;           ///< ends and corners; square ones for wide polylines
};

/// Where a text stands: its letters have capitals as high as the way from `origin` to `up` and are
/// as much wider or slanted as the ways say.
struct PlotText {
    PlotPoint origin;  ///< left end of the base line
    PlotPoint along;   ///< where the base line ends after one height of a capital
    PlotPoint up;      ///< above the origin, where capitals end
};

/// What pictures are drawn on.
class PlotCanvas {
  public:
    virtual ~PlotCanvas() = default;
    virtual void stroke(const PlotPaths& paths, const PlotPen& pen) = 0;
    /// Fills what lies inside of an odd number of the paths.
    virtual void fill(const PlotPaths& paths, PlotColor color) = 0;
    /// Until `unclip`, only what lies inside of an odd number of the paths is drawn; may be nested.
    virtual void clip(const PlotPaths& paths) = 0;
    virtual void unclip() = 0;
    virtual void text(const std::string& utf8, const PlotText& place, PlotColor color) = 0;
    /// Width of a text whose capitals are 1 high.
    virtual double textWidth(const std::string& utf8) = 0;
};

struct PlotRequest {
    double page_width = 420.0;
    double page_height = 297.0;
    double margin = 10.0;
    bool has_window = false;             ///< otherwise all that is drawn is shown
    double window[4] = {0, 0, 0, 0};     ///< x and y of two corners, in the plane of the picture
    bool as_viewed = false;              ///< as the drawing is viewed; otherwise from above
    bool paper = false;                  ///< paper space with what its viewports show
    bool dark = false;                   ///< on black, as on a screen
    bool handles = false;                ///< beside each entity its handle
    std::vector<AcDbObjectId> stressed;  ///< drawn in red and thick, all others in grey
    /// Entities in colours of their own, all others in grey. Used when it is not empty.
    std::map<uint64_t, PlotColor> colored;
};

struct PlotReport {
    size_t drawn = 0;                         ///< entities of the space that show something
    std::map<std::string, size_t> not_drawn;  ///< entities, by type, that have no picture here
    double scale = 0.0;                       ///< millimetres that a drawing unit takes
};

/// Draws the drawing in the editor.
/// @return true; false with a sentence in `error` when there is none, and for a page or a window
/// without an area
HOST_API bool plotDrawing(const PlotRequest& request, PlotCanvas& canvas, PlotReport& report,
                          std::string& error);

/// The colour of an index from 1 to 255, 7 as black or white, whichever `dark` makes visible.
HOST_API PlotColor plotColor(int index, bool dark);

}  // namespace host

#endif
