/// The page of a picture: from drawing units to millimetres, and what lies outside.
#ifndef HOST_PLOT_PAGE_H
#define HOST_PLOT_PAGE_H

#include "acad/extents.h"
#include "geom/curve.h"
#include "host/plot.h"

namespace host {

class Page {
  public:
    /// @param shown    what the page shows, in the plane of the picture
    /// @param request  size and margin of the page
    Page(const AcDbExtents& shown, const PlotRequest& request);

    /// From the plane of the picture to the page; z is kept flat.
    const AcGeMatrix3d& toPage() const { return to_page_; }
    double scale() const { return scale_; }
    /// The part of the page that is drawn on.
    PlotPath frame() const;
    bool sees(const AcDbExtents& box) const;

    /// Appends the points of a curve on the page, without its first one when `on` tells that it is
    /// there already. Far-off ends of lines are cut.
    /// @return false for a curve outside
    bool add(const Curve& curve, bool on, std::vector<PlotPoint>& points) const;
    /// The same for a part of a boundary, which is kept whole, and outside of the page as a
    /// straight line: it bounds what lies inside.
    void addBoundary(const Curve& curve, bool on, std::vector<PlotPoint>& points) const;

  private:
    bool cut(PlotPoint& from, PlotPoint& to) const;

    AcGeMatrix3d to_page_;
    double scale_ = 1.0;
    double least_x_, least_y_, greatest_x_, greatest_y_;
};

/// The part of a line that lies in a box (Liang and Barsky). @return false when none does
bool cutLine(PlotPoint& from, PlotPoint& to, const PlotPoint& least, const PlotPoint& greatest);

}  // namespace host

#endif
