/// The user coordinate system of the drawing in the editor, and views of boxes that are told by the
/// platform's geometry.
///
/// A system is its origin and its axes in the world [drawing units, WCS]; as a kz_RotMatrix the
/// axes are the columns, in the order x, y, z.
#ifndef KZ_UCS_H
#define KZ_UCS_H

#include "kz/kz_platform.h"

extern "C" {

/// The matrix that takes world points to the UCS. NULL does nothing.
KZ_EXPORT void kz_AcCAD_getUcsTransform(AcGeMatrix3d* out);
/// Reads the UCS; either out may be NULL. The axes are rounded to the tolerance of points, the
/// origin is not. Without a drawing both are untouched.
KZ_EXPORT void kz_CAD_getUCS(kz_Point* origin, kz_RotMatrix* axes);
/// Sets the UCS; of origin and axes one may be NULL and then stays. With `coordinateService` not 0
/// the local coordinate system goes along: the present UCS and the new one become local systems.
/// @return 1; 0 when both are NULL, and when the commands fail
KZ_EXPORT int kz_CAD_setUCS(const kz_Point* origin, const kz_RotMatrix* axes,
                            int coordinateService);
/// Takes back a kz_CAD_setUCS with the coordinate service.
/// @return 1; 0 when the platform has no system to go back to; what the service gave when that has
/// none, and nothing else happens then
KZ_EXPORT int kz_CAD_setPrevUCS(void);

/// Shows a box: as a window, and then smaller or larger by a factor other than 1 between 1e-10 and
/// 1e9; with the factor 0 its centre, in the present height. With `useUCS` not 0 the box is in the
/// world, otherwise in the UCS. @return 1; 0 for NULL and when
/// a command fails
KZ_EXPORT int kz_AcCAD_zoom(const AcDbExtents* extents, double factor, int useUCS);
}

#endif
