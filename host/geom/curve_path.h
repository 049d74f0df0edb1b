/// Curves end to end, with one parameter over all of them and their length along the way.
#ifndef HOST_GEOM_CURVE_PATH_H
#define HOST_GEOM_CURVE_PATH_H

#include <vector>

#include "geom/curve.h"

namespace host {

class CurvePath {
  public:
    /// Appends a piece. Its parameters run evenly from the end of what is there to `to`; the first
    /// piece begins at `from`.
    void add(const Curve& curve, double from, double to);

    bool empty() const { return pieces_.empty(); }
    double startParameter() const { return pieces_.front().from; }
    double endParameter() const { return pieces_.back().to; }
    bool has(double parameter) const;
    /// True when it ends where it starts.
    bool isClosed() const;
    double length() const;

    AcGePoint3d at(double parameter) const;
    /// Change of the point with the parameter.
    AcGeVector3d derivativeAt(double parameter) const;
    /// Length from the start to a parameter.
    double lengthTo(double parameter) const;
    /// The parameter at a length from the start; the nearest end for one beyond.
    double parameterAtLength(double length) const;
    /// The parameter of the point next to a point, in space.
    double nearest(const AcGePoint3d& point) const;
    /// The point next to a point; a single piece counts with what it is part of: the whole line,
    /// the whole ellipse.
    AcGePoint3d nearestBeyond(const AcGePoint3d& point) const;
    /// Twice the area that the path and the chord between its ends enclose, as a vector that stands
    /// on it.
    AcGeVector3d doubleArea() const;

  private:
    struct Piece {
        Curve curve;
        double from, to;      ///< parameters
        double before, size;  ///< length in front of it, and its own
    };
    const Piece& pieceAt(double parameter) const;

    std::vector<Piece> pieces_;
};

}  // namespace host

#endif
