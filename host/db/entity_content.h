/// What entities are made of where they are not in a drawing yet, and the groups that all types
/// have in common.
#ifndef HOST_DB_ENTITY_CONTENT_H
#define HOST_DB_ENTITY_CONTENT_H

#include <string_view>

#include "acad/ge.h"
#include "db/tags.h"

namespace host {

/// An entity that a caller made.
struct EntityContent {
    std::string_view type;
    Tags groups;  ///< behind type, handle and owner
};

/// Groups of a new entity of this class, on layer 0.
Tags newEntityTags(std::u16string_view marker);

/// The group of this code among those that all entities have in common; tags.size() for none. In an
/// entity's own class the same codes stand for other things.
size_t findCommonGroup(const Tags& tags, int code);
/// Gives a common group a value, or with NULL takes it away.
void setCommonGroup(Tags& tags, int code, const Tag* value);

/// The direction that the plane of an entity faces, with length 1.
AcGeVector3d facingOf(const Tags& tags);
/// Write a value of the entity's own class that differs from what is there; `usual` is the value of
/// a missing group.
void changeReal(Tags& tags, int code, double value, double usual);
void changePoint(Tags& tags, int code, const AcGePoint3d& point, const AcGePoint3d& usual);

/// From the coordinates of a block with this base point to those around the INSERT.
AcGeMatrix3d insertTransform(const Tags& insert, const AcGePoint3d& base);
/// Changes the groups of an INSERT so that `matrix` is its transformation. False for axes that
/// don't stand at right angles or have no length; nothing has changed then.
bool placeInsert(Tags& insert, const AcGePoint3d& base, const AcGeMatrix3d& matrix);

}  // namespace host

#endif
