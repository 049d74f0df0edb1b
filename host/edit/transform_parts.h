/// Inside of the transformation of entities: values in groups, and the types with a file of their
/// own. Functions that answer with bool give false for a matrix that the entity can't take.
#ifndef HOST_EDIT_TRANSFORM_PARTS_H
#define HOST_EDIT_TRANSFORM_PARTS_H

#include <string_view>

#include "acad/ge.h"
#include "db/tags.h"

namespace host {

struct PlaneMap;

/// The point whose x stands at `at`; a flat one has the given z.
AcGePoint3d pointAt(const Tags& tags, size_t at, double flat_z);
/// Puts a point in the place of one that is there, with as many coordinates. What keeps its value
/// stays as it was read.
void setPointAt(Tags& tags, size_t at, const AcGePoint3d& point);
void setRealAt(Tags& tags, size_t at, double value);
void swapReals(Tags& tags, int code, int other_code);
/// Inserts groups at the end of the first class behind the common one.
void insertInClass(Tags& tags, Tags groups);
/// Puts a group in the place of the first one with its code; a new one goes to its class.
void setOrInsert(Tags& tags, Tag tag);

/// Extrusion direction; the z axis where there is none.
AcGeVector3d normalOf(const Tags& tags);
/// A z axis is only written where there was another direction.
void setNormal(Tags& tags, const AcGeVector3d& normal);
/// False for a thickness that would lean over.
bool transformThickness(Tags& tags, const PlaneMap& plane);

bool transformText(std::string_view type, Tags& tags, const AcGeMatrix3d& matrix, bool mirror_text);
bool transformMText(Tags& tags, const AcGeMatrix3d& matrix);
bool transformHatch(Tags& tags, const AcGeMatrix3d& matrix);

}  // namespace host

#endif
