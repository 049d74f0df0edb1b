/// Picks: the entity at a point of the screen, and what inside of it is there.
#ifndef HOST_EDIT_PICK_H
#define HOST_EDIT_PICK_H

#include <optional>
#include <vector>

#include "acad/ge.h"
#include "db/database.h"

namespace host {

/// What is at a point.
struct Picked {
    /// An insertion, or another entity that shows a block.
    struct Container {
        Database* drawing;
        Slot entity;
    };
    Slot main = kNoSlot;          ///< the entity of the space that is worked in
    Database* drawing = nullptr;  ///< of `part`: the same, or one attached at any depth
    /// The innermost entity; the vertex that a segment starts at, or the attribute.
    Slot part = kNoSlot;
    AcGeMatrix3d to_world;              ///< from the coordinates of the part's block
    std::vector<Container> containers;  ///< around the part, innermost first
};

/// The latest drawn entity that shows something in the pick box around a point. What is on a layer
/// that is off or frozen is not seen. A text, a hatch and a solid are picked inside, too; an
/// insertion that has nothing to show, as of a missing drawing, at its insertion point.
/// @param point  in the user coordinate system
std::optional<Picked> pickAt(Database& database, const AcGePoint3d& point);

}  // namespace host

#endif
