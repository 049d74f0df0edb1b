/// The callers' own ("local") coordinates and the UCS, through the coordinate service. While that
/// is missing both are the same.
#ifndef SRC_LOCAL_POINTS_H
#define SRC_LOCAL_POINTS_H

#include "APP/services.h"

namespace kz {

// The service may leave its target alone, so the target starts as the point itself.

inline kz_Point localToUcs(const kz_Point& point) {
    kz_Point out = point;
    kz_CoordSys_transPointLocaltoUCS(&out, &point);
    return out;
}

inline kz_Point ucsToLocal(const kz_Point& point) {
    kz_Point out = point;
    kz_CoordSys_transPointUCStoLocal(&out, &point);
    return out;
}

inline kz_Vector ucsToLocal(const kz_Vector& vector) {
    kz_Vector out = vector;
    kz_CoordSys_rotateVectorUCStoLocal(&out, &vector);
    return out;
}

}  // namespace kz

#endif
