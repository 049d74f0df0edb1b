/// Moving, turning, scaling and mirroring of entities by a matrix. Everything works on groups, so
/// that it serves entities of the drawing, of blocks, and copies that are in no drawing yet.
#ifndef HOST_EDIT_TRANSFORM_H
#define HOST_EDIT_TRANSFORM_H

#include <string_view>

#include "acad/ge.h"
#include "db/database.h"

namespace host {

enum class TransformEnd {
    Done,
    Unknown,    ///< the geometry of this type isn't known
    CannotTake  ///< the entity can't take this matrix, such as a circle unequal scales
};

/// What the groups of an entity don't say themselves.
struct TransformRules {
    /// Mirrored texts are shown mirrored, as MIRRTEXT 1; otherwise they stay readable and take the
    /// mirrored place.
    bool mirror_text = false;
    /// Extrusion direction of the flat polyline that a VERTEX belongs to.
    AcGeVector3d vertex_normal = AcGeVector3d::kZAxis;
};

/// Transforms the groups of one entity or sub-entity. @return on anything but Done they are as they
/// were
TransformEnd transformTags(std::string_view type, Tags& tags, const AcGeMatrix3d& matrix,
                           const TransformRules& rules = {});

/// Places, ways and lengths in XDATA (1011, 1012, 1013, 1041, 1042) go with their entity.
/// @return false when there are none
bool transformXData(XData& data, const AcGeMatrix3d& matrix);

/// Transforms an entity of the drawing with its sub-entities and XDATA, of a dimension also the
/// picture in its block. Locked layers are not asked for. @return on anything but Done nothing has
/// changed
TransformEnd transformEntity(Database& database, Slot entity, const AcGeMatrix3d& matrix);

/// Living sub-entities behind their main entity, in order.
std::vector<Slot> partsOf(Database& database, Slot main);

}  // namespace host

#endif
