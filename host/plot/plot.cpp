/// Pictures: what is shown, and the page that it comes on.
#include "host/plot.h"

#include <algorithm>
#include <cmath>

#include "edit/shapes.h"
#include "edit/view.h"
#include "plot/painter.h"

namespace host {
namespace {

bool isArea(double width, double height) {
    return std::isfinite(width) && std::isfinite(height) && width > 0.0 && height > 0.0;
}

/// What the page shows, in the plane of the picture; false with a sentence for a window without an
/// area.
bool shownPart(Database& drawing, Slot space, const AcGeMatrix3d& to_plane,
               const PlotRequest& request, AcDbExtents& shown, std::string& error) {
    if (!request.has_window) {
        shown = drawnExtents(drawing, space, to_plane);
        if (shown.isEmpty()) shown.set({0, 0, 0}, {420, 297, 0});
        return true;
    }
    const double* window = request.window;
    const AcGePoint3d least(std::min(window[0], window[2]), std::min(window[1], window[3]), 0.0);
    const AcGePoint3d greatest(std::max(window[0], window[2]), std::max(window[1], window[3]), 0.0);
    shown.set(least, greatest);
    if (isArea(greatest.x - least.x, greatest.y - least.y)) return true;
    error = "the window has no area";
    return false;
}

}  // namespace

bool plotDrawing(const PlotRequest& request, PlotCanvas& canvas, PlotReport& report,
                 std::string& error) {
    report = {};
    Database* const drawing = currentDatabase();
    if (drawing == nullptr) {
        error = "there is no drawing";
        return false;
    }
    if (!isArea(request.page_width - 2 * request.margin,
                request.page_height - 2 * request.margin) ||
        request.margin < 0.0) {
        error = "the page has no room for a picture";
        return false;
    }
    const Slot space = request.paper ? drawing->paperSpace() : drawing->modelSpace();
    AcGeMatrix3d to_plane;
    if (request.as_viewed && !request.paper) to_plane = currentView(*drawing).worldToDisplay();
    AcDbExtents shown;
    if (!shownPart(*drawing, space, to_plane, request, shown, error)) return false;
    const Page page(shown, request);
    report.scale = page.scale();
    canvas.clip({page.frame()});
    Painter(*drawing, request, page, page.toPage() * to_plane, canvas, report).paint(space);
    canvas.unclip();
    return true;
}

}  // namespace host
