/// Geometry values of the platform.
#ifndef ACAD_GE_H
#define ACAD_GE_H

#include "acad/adesk.h"

/// A vector of three doubles.
class AcGeVector3d {
  public:
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    AcGeVector3d() = default;
    AcGeVector3d(double ax, double ay, double az) : x(ax), y(ay), z(az) {}
};

/// A point of three doubles [drawing units, WCS unless the caller says otherwise].
class AcGePoint3d {
  public:
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    AcGePoint3d() = default;
    AcGePoint3d(double ax, double ay, double az) : x(ax), y(ay), z(az) {}
};

#endif
