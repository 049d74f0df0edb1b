/// Geometry of the utilities: distances, transformations, boxes.
#include <algorithm>
#include <cmath>

#include "acad/ads.h"
#include "acad/extents.h"

extern "C" ads_real acutDistance(const ads_point a, const ads_point b) {
    return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

// --- vectors and points -------------------------------------------------------------------------

AcGeVector3d AcGeVector3d::perpVector() const {
    constexpr double kNearZ = 1.0 / 64.0;
    const AcGeVector3d unit = normal();
    const bool near_z = std::fabs(unit.x) < kNearZ && std::fabs(unit.y) < kNearZ;
    return (near_z ? kYAxis : kZAxis).crossProduct(unit).normal();
}

AcGeVector3d& AcGeVector3d::rotateBy(double angle, const AcGeVector3d& axis) {
    return transformBy(AcGeMatrix3d().setToRotation(angle, axis));
}

AcGeVector3d& AcGeVector3d::transformBy(const AcGeMatrix3d& matrix) {
    return *this = matrix * *this;
}

AcGePoint3d& AcGePoint3d::transformBy(const AcGeMatrix3d& matrix) {
    return *this = matrix * *this;
}

// --- matrices -----------------------------------------------------------------------------------

AcGeMatrix3d AcGeMatrix3d::operator*(const AcGeMatrix3d& other) const {
    AcGeMatrix3d out;
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            double sum = 0.0;
            for (int i = 0; i < 4; ++i)
                sum += entry[row][i] * other.entry[i][column];
            out.entry[row][column] = sum;
        }
    }
    return out;
}

AcGeVector3d AcGeMatrix3d::operator*(const AcGeVector3d& v) const {
    const auto row = [&](int i) {
        return entry[i][0] * v.x + entry[i][1] * v.y + entry[i][2] * v.z;
    };
    return {row(0), row(1), row(2)};
}

AcGePoint3d AcGeMatrix3d::operator*(const AcGePoint3d& point) const {
    return AcGePoint3d() + (*this * point.asVector() + translation());
}

double AcGeMatrix3d::det() const {
    AcGePoint3d origin;
    AcGeVector3d x, y, z;
    getCoordSystem(origin, x, y, z);
    return x.crossProduct(y).dotProduct(z);
}

AcGeMatrix3d AcGeMatrix3d::inverse() const {
    AcGePoint3d origin;
    AcGeVector3d x, y, z;
    getCoordSystem(origin, x, y, z);
    const double size = x.crossProduct(y).dotProduct(z);
    if (size == 0.0) return *this;
    // The rows of the inverse are perpendicular to the other two axes.
    const AcGeVector3d rows[] = {y.crossProduct(z) / size, z.crossProduct(x) / size,
                                 x.crossProduct(y) / size};
    AcGeMatrix3d out;
    for (int i = 0; i < 3; ++i) {
        for (unsigned int column = 0; column < 3; ++column)
            out.entry[i][column] = rows[i][column];
        out.entry[i][3] = -rows[i].dotProduct(origin.asVector());
    }
    return out;
}

bool AcGeMatrix3d::isEqualTo(const AcGeMatrix3d& other, double tolerance) const {
    return std::equal(&entry[0][0], &entry[0][0] + 16, &other.entry[0][0],
                      [tolerance](double a, double b) { return std::fabs(a - b) <= tolerance; });
}

AcGeMatrix3d& AcGeMatrix3d::setCoordSystem(const AcGePoint3d& origin, const AcGeVector3d& x,
                                           const AcGeVector3d& y, const AcGeVector3d& z) {
    const AcGeVector3d columns[] = {x, y, z, origin.asVector()};
    setToIdentity();
    for (unsigned int row = 0; row < 3; ++row) {
        for (int column = 0; column < 4; ++column)
            entry[row][column] = columns[column][row];
    }
    return *this;
}

void AcGeMatrix3d::getCoordSystem(AcGePoint3d& origin, AcGeVector3d& x, AcGeVector3d& y,
                                  AcGeVector3d& z) const {
    const auto column = [this](int i) {
        return AcGeVector3d(entry[0][i], entry[1][i], entry[2][i]);
    };
    x = column(0);
    y = column(1);
    z = column(2);
    origin = AcGePoint3d() + column(3);
}

AcGeMatrix3d& AcGeMatrix3d::setToTranslation(const AcGeVector3d& way) {
    return setToIdentity().setTranslation(way);
}

AcGeMatrix3d& AcGeMatrix3d::setTranslation(const AcGeVector3d& way) {
    for (unsigned int row = 0; row < 3; ++row)
        entry[row][3] = way[row];
    return *this;
}

AcGeMatrix3d& AcGeMatrix3d::setToRotation(double angle, const AcGeVector3d& axis,
                                          const AcGePoint3d& centre) {
    const AcGeVector3d unit = axis.normal();
    const double cosine = std::cos(angle), sine = std::sin(angle);
    const auto turned = [&](const AcGeVector3d& v) {
        return v * cosine + unit.crossProduct(v) * sine +
               unit * (unit.dotProduct(v) * (1.0 - cosine));
    };
    setCoordSystem(AcGePoint3d(), turned(AcGeVector3d::kXAxis), turned(AcGeVector3d::kYAxis),
                   turned(AcGeVector3d::kZAxis));
    return setTranslation(centre - *this * centre);
}

AcGeMatrix3d& AcGeMatrix3d::setToScaling(double factor, const AcGePoint3d& centre) {
    setToIdentity();
    for (int i = 0; i < 3; ++i)
        entry[i][i] = factor;
    return setTranslation(centre.asVector() * (1.0 - factor));
}

AcGeMatrix3d& AcGeMatrix3d::setToPlaneToWorld(const AcGeVector3d& normal) {
    const AcGeVector3d z = normal.normal(), x = normal.perpVector();
    return setCoordSystem(AcGePoint3d(), x, z.crossProduct(x), z);
}

AcGeMatrix3d& AcGeMatrix3d::setToWorldToPlane(const AcGeVector3d& normal) {
    return setToPlaneToWorld(normal).invert();
}

// --- boxes --------------------------------------------------------------------------------------

void AcDbExtents::addPoint(const AcGePoint3d& point) {
    for (unsigned int i = 0; i < 3; ++i) {
        least_[i] = std::min(least_[i], point[i]);
        greatest_[i] = std::max(greatest_[i], point[i]);
    }
}

void AcDbExtents::addExt(const AcDbExtents& other) {
    if (other.isEmpty()) return;
    addPoint(other.least_);
    addPoint(other.greatest_);
}

void AcDbExtents::transformBy(const AcGeMatrix3d& matrix) {
    if (isEmpty()) return;
    AcDbExtents out;
    for (unsigned int corner = 0; corner < 8; ++corner) {
        AcGePoint3d point;
        for (unsigned int i = 0; i < 3; ++i)
            point[i] = (corner >> i & 1U) == 0 ? least_[i] : greatest_[i];
        out.addPoint(matrix * point);
    }
    *this = out;
}

bool AcDbExtents::contains(const AcDbExtents& other) const {
    for (unsigned int i = 0; i < 3; ++i) {
        if (other.least_[i] < least_[i] || other.greatest_[i] > greatest_[i]) return false;
    }
    return true;
}
