/// Object snaps: exact points of what is drawn near a picked one.
#ifndef HOST_EDIT_OSNAP_H
#define HOST_EDIT_OSNAP_H

#include <optional>
#include <string_view>

#include "acad/ge.h"
#include "db/database.h"

namespace host {

/// Modes of object snaps, by the bits of OSMODE.
enum SnapMode : int {
    kSnapEnd = 1,
    kSnapMiddle = 2,
    kSnapCentre = 4,
    kSnapNode = 8,
    kSnapQuadrant = 16,
    kSnapIntersection = 32,
    kSnapInsertion = 64,
    kSnapPerpendicular = 128,
    kSnapTangent = 256,
    kSnapNearest = 512,
    kSnapQuick = 1024,
    kSnapApparent = 2048
};

/// The modes of a text: names from three letters on, with commas in between, in any case and with
/// or without an underscore. @return 0 for "none"; nothing for a text that names an unknown mode
std::optional<int> snapModes(std::string_view text);

/// The point that the modes find at what crosses the aperture around a point, the next one when
/// there are several. Perpendicular and tangent go by the last point.
/// @param point  in the user coordinate system, as is the result
std::optional<AcGePoint3d> snapPoint(Database& database, const AcGePoint3d& point, int modes);

}  // namespace host

#endif
