/// The coordinate systems of entities: that in which their points are stored, and that which a
/// user means by "the system of this object".
#ifndef HOST_EDIT_ENTITY_SYSTEM_H
#define HOST_EDIT_ENTITY_SYSTEM_H

#include <vector>

#include "acad/ge.h"
#include "db/database.h"

namespace host {

struct Ucs;

/// From the coordinates in which an entity's points are stored to the world: flat entities keep
/// them in the system of their extrusion direction, all others in the world.
AcGeMatrix3d entityToWorld(Database& database, Slot entity);

/// The system that an entity defines by its place and direction.
/// @param pick  in the world; chooses an end of a line or arc, and a direction on a circle
/// @return false for entities that define none; `out` is then as it was
bool entitySystem(Database& database, Slot entity, const AcGePoint3d& pick, Ucs& out);

/// The ways from a block to where an INSERT puts it: one, or one for each of its rows and columns.
/// Of more than 65536 only those at the corners.
std::vector<AcGeMatrix3d> insertionWays(Database& database, Slot insert);

/// Vertices of a POLYLINE that its picture goes through, in order: control points of a spline don't
/// count.
std::vector<Slot> drawnVertices(Database& database, Slot polyline);

/// Living sub-entities of a type behind their main entity, in order.
std::vector<Slot> subEntities(Database& database, Slot main, std::string_view type);

}  // namespace host

#endif
