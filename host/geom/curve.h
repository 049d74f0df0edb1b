/// Straight and elliptic pieces of what is drawn, in three dimensions. A circle, an arc, an ellipse
/// and each of them after any transformation is one formula: a centre and two vectors that span it.
#ifndef HOST_GEOM_CURVE_H
#define HOST_GEOM_CURVE_H

#include <vector>

#include "acad/extents.h"

namespace host {

/// A place on a curve, and how far it is from where one looks.
struct CurvePlace {
    double t = 0.0;
    double distance = 0.0;
};

/// One piece. Its parameter t runs from 0 at the start to 1 at the end.
class Curve {
  public:
    static Curve line(const AcGePoint3d& from, const AcGePoint3d& to);
    /// centre + u cos a + v sin a, for angles from `from` over `sweep` [radians, may be negative]
    static Curve arc(const AcGePoint3d& centre, const AcGeVector3d& u, const AcGeVector3d& v,
                     double from, double sweep);
    static Curve circle(const AcGePoint3d& centre, const AcGeVector3d& u, const AcGeVector3d& v);
    /// From one point to another, both in a plane of constant z, along an arc whose quarter angle
    /// has this tangent; counter-clockwise about z where it is positive, straight where it is 0.
    static Curve bulge(const AcGePoint3d& from, const AcGePoint3d& to, double bulge);

    bool isLine() const { return line_; }
    bool isClosed() const;
    bool isFinite() const;
    const AcGePoint3d& centre() const { return origin_; }
    /// The half axes of an arc, the greater one first; those that it was made of on a circle.
    void axes(AcGeVector3d& major, AcGeVector3d& minor) const;

    AcGePoint3d at(double t) const;
    /// Direction and speed at t.
    AcGeVector3d tangentAt(double t) const;
    AcGePoint3d start() const { return at(0.0); }
    AcGePoint3d end() const { return at(1.0); }
    void transformBy(const AcGeMatrix3d& matrix);
    AcDbExtents extents() const;

    /// The place next to (x, y) as seen along the z axis, and its distance as seen so.
    CurvePlace nearest(double x, double y) const;
    /// Places where the way from a point meets the curve at a right angle; on the line that a
    /// straight piece is part of, also beyond its ends.
    std::vector<double> perpendiculars(const AcGePoint3d& from) const;
    /// Places where a line from a point in the plane of an arc touches it.
    std::vector<double> tangents(const AcGePoint3d& from) const;
    /// Places where an axis of an arc meets it.
    std::vector<double> quadrants() const;

    struct Crossing {
        double t, other;
    };
    /// Places where the two cross or meet as seen along the z axis.
    std::vector<Crossing> crossings(const Curve& other) const;

  private:
    double angleAt(double t) const { return from_ + sweep_ * t; }
    /// The angle of the greater axis; 0 on a circle.
    double axisAngle() const;
    /// The parameter of an angle; beyond 1 for one that is not on the arc.
    double parameterOf(double angle) const;
    void addAngle(double angle, std::vector<double>& places) const;
    bool isCircleInPlane() const;
    CurvePlace nearestOnLine(double x, double y) const;
    CurvePlace nearestOnCircle(double x, double y) const;
    CurvePlace nearestBySearch(double x, double y) const;
    void crossLines(const Curve& other, std::vector<Crossing>& out) const;
    void crossLineAndArc(const Curve& arc, bool swapped, std::vector<Crossing>& out) const;
    void crossCircles(const Curve& other, std::vector<Crossing>& out) const;
    void crossArcs(const Curve& other, std::vector<Crossing>& out) const;
    void addCrossing(const Curve& other, double angle, std::vector<Crossing>& out) const;

    AcGePoint3d origin_;  ///< start of a line, centre of an arc
    AcGeVector3d u_, v_;  ///< way of a line
    double from_ = 0.0;
    double sweep_ = 0.0;
    bool line_ = true;
};

/// Points along a B-spline, ends included, near enough to each other to draw it.
/// @param weights  one a control point, or none
/// @param chords  between two knots
/// @param parameters  gets the parameter of each point; not wanted when NULL
/// @return the control points themselves when knots and degree don't fit them
std::vector<AcGePoint3d> splinePoints(int degree, const std::vector<double>& knots,
                                      const std::vector<AcGePoint3d>& control,
                                      const std::vector<double>& weights, int chords = 12,
                                      std::vector<double>* parameters = nullptr);

}  // namespace host

#endif
