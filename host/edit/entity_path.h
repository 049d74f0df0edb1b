/// An entity that is a curve, as one path.
#ifndef HOST_EDIT_ENTITY_PATH_H
#define HOST_EDIT_ENTITY_PATH_H

#include "db/database.h"
#include "geom/curve_path.h"

namespace host {

/// The path of a line (its parameter is the length), a circle, an arc or an ellipse (the angle), a
/// polyline or leader (the number of the vertex, evenly from one to the next) or a spline (as its
/// knots, by 200 chords a span), in coordinates of the entity's block. Empty for another entity.
CurvePath pathOf(Database& database, Slot entity);

}  // namespace host

#endif
