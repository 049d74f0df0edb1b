/// Values in the tags of objects: readers with a default, and writers that keep the order.
#ifndef HOST_EDIT_TAG_VALUES_H
#define HOST_EDIT_TAG_VALUES_H

#include "acad/ge.h"
#include "db/tags.h"

namespace host {

double realOf(const Tags& tags, int code, double otherwise);
int64_t integerOf(const Tags& tags, int code, int64_t otherwise);
/// A point by the code of its x, the first one from `from` on; a missing z is 0.
AcGePoint3d pointOf(const Tags& tags, int code, const AcGePoint3d& otherwise = {}, size_t from = 0);
AcGeVector3d vectorOf(const Tags& tags, int code, const AcGeVector3d& otherwise);

/// All points, and all numbers, of a code, in order.
std::vector<AcGePoint3d> pointsOf(const Tags& tags, int code);
std::vector<double> realsOf(const Tags& tags, int code);

/// The tags in front of an embedded object (101), which has groups of its own.
Tags ownTags(const Tags& tags);

/// Puts a tag in the place of the first one with its code, or at the end.
void replaceTag(Tags& tags, Tag tag);
void replacePoint(Tags& tags, int code, const AcGePoint3d& point);
void replacePoint(Tags& tags, int code, const AcGePoint2d& point);
/// The tags of a point.
Tags pointTags(int code, const AcGePoint3d& point);

inline bool isFinite(const AcGePoint3d& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}
inline bool isFinite(const AcGeVector3d& v) {
    return isFinite(AcGePoint3d() + v);
}

}  // namespace host

#endif
