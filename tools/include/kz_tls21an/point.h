/// Points of the suite: three doubles x, y, z [drawing units unless the caller says otherwise].
/// Two values closer than KZ_TOLERANCE count as equal in every test of this family.
#ifndef KZ_TLS21AN_POINT_H
#define KZ_TLS21AN_POINT_H

#include "kz_tls21an/types.h"

/// Tolerance of all geometric tests [drawing units].
#define KZ_TOLERANCE 1.0e-6

struct kz_Point {
    double x;
    double y;
    double z;
};

struct kz_Vector {
    double x;
    double y;
    double z;
};

#endif
