/// Geometry values of the platform: points, vectors and transformations, by value. A matrix
/// transforms columns: its first three columns are the images of the axes, its fourth that of the
/// origin.
#ifndef ACAD_GE_H
#define ACAD_GE_H

#include <cmath>

#include "acad/adesk.h"

class AcGeMatrix3d;

/// Lengths up to this count as none where nobody says otherwise.
constexpr double kGeTolerance = 1e-10;

/// A vector of two doubles.
class AcGeVector2d {
  public:
    double x = 0.0;
    double y = 0.0;
    AcGeVector2d() = default;
    AcGeVector2d(double ax, double ay) : x(ax), y(ay) {}
    double length() const { return std::hypot(x, y); }
    double dotProduct(const AcGeVector2d& other) const { return x * other.x + y * other.y; }
};

/// A point of two doubles.
class AcGePoint2d {
  public:
    double x = 0.0;
    double y = 0.0;
    AcGePoint2d() = default;
    AcGePoint2d(double ax, double ay) : x(ax), y(ay) {}
    AcGeVector2d operator-(const AcGePoint2d& other) const { return {x - other.x, y - other.y}; }
    AcGePoint2d operator+(const AcGeVector2d& v) const { return {x + v.x, y + v.y}; }
    double distanceTo(const AcGePoint2d& other) const { return (*this - other).length(); }
};

/// A vector of three doubles.
class AcGeVector3d {
  public:
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    AcGeVector3d() = default;
    AcGeVector3d(double ax, double ay, double az) : x(ax), y(ay), z(az) {}
    AcGeVector3d& set(double ax, double ay, double az) { return *this = {ax, ay, az}; }

    static const AcGeVector3d kIdentity, kXAxis, kYAxis, kZAxis;

    AcGeVector3d operator+(const AcGeVector3d& v) const { return {x + v.x, y + v.y, z + v.z}; }
    AcGeVector3d operator-(const AcGeVector3d& v) const { return {x - v.x, y - v.y, z - v.z}; }
    AcGeVector3d operator-() const { return {-x, -y, -z}; }
    AcGeVector3d operator*(double factor) const { return {x * factor, y * factor, z * factor}; }
    AcGeVector3d operator/(double divisor) const { return {x / divisor, y / divisor, z / divisor}; }
    AcGeVector3d& operator+=(const AcGeVector3d& v) { return *this = *this + v; }
    AcGeVector3d& operator-=(const AcGeVector3d& v) { return *this = *this - v; }
    AcGeVector3d& operator*=(double factor) { return *this = *this * factor; }
    double operator[](unsigned int i) const { return i == 0 ? x : i == 1 ? y : z; }
    double& operator[](unsigned int i) { return i == 0 ? x : i == 1 ? y : z; }

    double dotProduct(const AcGeVector3d& v) const { return x * v.x + y * v.y + z * v.z; }
    AcGeVector3d crossProduct(const AcGeVector3d& v) const {
        return {y * v.z - z * v.y, z * v.x - x * v.z, x * v.y - y * v.x};
    }
    double length() const { return std::hypot(x, y, z); }
    double lengthSqrd() const { return dotProduct(*this); }
    bool isZeroLength(double tolerance = kGeTolerance) const { return length() <= tolerance; }
    /// The same direction with length 1; the vector itself when it has no length.
    AcGeVector3d normal() const { return isZeroLength() ? *this : *this / length(); }
    AcGeVector3d& normalize() { return *this = normal(); }
    AcGeVector3d& negate() { return *this = -*this; }
    bool isEqualTo(const AcGeVector3d& v, double tolerance = kGeTolerance) const {
        return (*this - v).length() <= tolerance;
    }
    bool isParallelTo(const AcGeVector3d& v, double tolerance = kGeTolerance) const {
        return normal().crossProduct(v.normal()).length() <= tolerance;
    }
    /// The angle between the two, from 0 to pi.
    double angleTo(const AcGeVector3d& v) const {
        return std::atan2(crossProduct(v).length(), dotProduct(v));
    }
    /// A vector perpendicular to this one, by the arbitrary axis rule: the x axis of entities whose
    /// extrusion direction this is.
    ACAD_API AcGeVector3d perpVector() const;
    ACAD_API AcGeVector3d& rotateBy(double angle, const AcGeVector3d& axis);
    ACAD_API AcGeVector3d& transformBy(const AcGeMatrix3d& matrix);
};

inline AcGeVector3d operator*(double factor, const AcGeVector3d& v) {
    return v * factor;
}
inline const AcGeVector3d AcGeVector3d::kIdentity{0, 0, 0};
inline const AcGeVector3d AcGeVector3d::kXAxis{1, 0, 0};
inline const AcGeVector3d AcGeVector3d::kYAxis{0, 1, 0};
inline const AcGeVector3d AcGeVector3d::kZAxis{0, 0, 1};

/// A point of three doubles [drawing units, WCS unless the caller says otherwise].
class AcGePoint3d {
  public:
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    AcGePoint3d() = default;
    AcGePoint3d(double ax, double ay, double az) : x(ax), y(ay), z(az) {}
    AcGePoint3d& set(double ax, double ay, double az) { return *this = {ax, ay, az}; }

    static const AcGePoint3d kOrigin;

    AcGePoint3d operator+(const AcGeVector3d& v) const { return {x + v.x, y + v.y, z + v.z}; }
    AcGePoint3d operator-(const AcGeVector3d& v) const { return {x - v.x, y - v.y, z - v.z}; }
    AcGeVector3d operator-(const AcGePoint3d& p) const { return {x - p.x, y - p.y, z - p.z}; }
    AcGePoint3d& operator+=(const AcGeVector3d& v) { return *this = *this + v; }
    AcGePoint3d& operator-=(const AcGeVector3d& v) { return *this = *this - v; }
    double operator[](unsigned int i) const { return i == 0 ? x : i == 1 ? y : z; }
    double& operator[](unsigned int i) { return i == 0 ? x : i == 1 ? y : z; }

    AcGeVector3d asVector() const { return {x, y, z}; }
    double distanceTo(const AcGePoint3d& p) const { return (*this - p).length(); }
    bool isEqualTo(const AcGePoint3d& p, double tolerance = kGeTolerance) const {
        return distanceTo(p) <= tolerance;
    }
    ACAD_API AcGePoint3d& transformBy(const AcGeMatrix3d& matrix);
};

inline const AcGePoint3d AcGePoint3d::kOrigin{0, 0, 0};

/// A transformation of points and vectors; vectors don't take part in its translation.
class ACAD_API AcGeMatrix3d {
  public:
    double entry[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};

    double operator()(unsigned int row, unsigned int column) const { return entry[row][column]; }
    double& operator()(unsigned int row, unsigned int column) { return entry[row][column]; }

    AcGeMatrix3d& setToIdentity() { return *this = AcGeMatrix3d(); }
    /// This transformation behind the other one.
    AcGeMatrix3d operator*(const AcGeMatrix3d& other) const;
    AcGeMatrix3d& operator*=(const AcGeMatrix3d& other) { return *this = *this * other; }
    AcGeMatrix3d& preMultBy(const AcGeMatrix3d& left) { return *this = left * *this; }
    AcGeMatrix3d& postMultBy(const AcGeMatrix3d& right) { return *this = *this * right; }
    AcGeMatrix3d& setToProduct(const AcGeMatrix3d& a, const AcGeMatrix3d& b) {
        return *this = a * b;
    }
    AcGePoint3d operator*(const AcGePoint3d& point) const;
    AcGeVector3d operator*(const AcGeVector3d& vector) const;

    /// Determinant of the three axes.
    double det() const;
    bool isSingular(double tolerance = kGeTolerance) const { return std::fabs(det()) <= tolerance; }
    /// The inverse; the matrix itself when there is none.
    AcGeMatrix3d inverse() const;
    AcGeMatrix3d& invert() { return *this = inverse(); }
    bool isEqualTo(const AcGeMatrix3d& other, double tolerance = kGeTolerance) const;

    /// From the system of these axes to that in which they are given.
    AcGeMatrix3d& setCoordSystem(const AcGePoint3d& origin, const AcGeVector3d& x,
                                 const AcGeVector3d& y, const AcGeVector3d& z);
    void getCoordSystem(AcGePoint3d& origin, AcGeVector3d& x, AcGeVector3d& y,
                        AcGeVector3d& z) const;
    AcGeMatrix3d& setToTranslation(const AcGeVector3d& way);
    /// Changes the translation and leaves the axes.
    AcGeMatrix3d& setTranslation(const AcGeVector3d& way);
    AcGeVector3d translation() const { return {entry[0][3], entry[1][3], entry[2][3]}; }
    /// @param angle  radians, counter-clockwise as seen from the end of the axis
    AcGeMatrix3d& setToRotation(double angle, const AcGeVector3d& axis,
                                const AcGePoint3d& centre = AcGePoint3d::kOrigin);
    AcGeMatrix3d& setToScaling(double factor, const AcGePoint3d& centre = AcGePoint3d::kOrigin);
    /// From the system of an extrusion direction to the world.
    AcGeMatrix3d& setToPlaneToWorld(const AcGeVector3d& normal);
    AcGeMatrix3d& setToWorldToPlane(const AcGeVector3d& normal);
};

#endif
