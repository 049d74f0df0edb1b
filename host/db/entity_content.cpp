/// Common groups of entities, and the place of an INSERT.
#include "db/entity_content.h"

#include "base/angles.h"
#include "edit/tag_values.h"

namespace host {
namespace {

/// Where the groups of the common class end.
size_t commonEnd(const Tags& tags) {
    return findTag(tags, 100, findTag(tags, 100) + 1);
}

}  // namespace

AcGeVector3d facingOf(const Tags& tags) {
    const AcGeVector3d direction = vectorOf(tags, 210, AcGeVector3d::kZAxis);
    return direction.isZeroLength() ? AcGeVector3d::kZAxis : direction.normal();
}

void changeReal(Tags& tags, int code, double value, double usual) {
    if (realOf(tags, code, usual) != value) replaceTag(tags, Tag(code, value));
}

void changePoint(Tags& tags, int code, const AcGePoint3d& point, const AcGePoint3d& usual) {
    const AcGePoint3d present = pointOf(tags, code, usual);
    if (present.x == point.x && present.y == point.y && present.z == point.z) return;
    size_t at = findTag(tags, code);
    for (int coordinate = code; at < tags.size() && tags[at].code() == coordinate; coordinate += 10)
        tags.erase(tags.begin() + static_cast<std::ptrdiff_t>(at));
    const Tags fresh = pointTags(code, point);
    tags.insert(tags.begin() + static_cast<std::ptrdiff_t>(at), fresh.begin(), fresh.end());
}

Tags newEntityTags(std::u16string_view marker) {
    Tags tags;
    tags.emplace_back(100, u"AcDbEntity");
    tags.emplace_back(8, u"0");
    tags.emplace_back(100, std::u16string(marker));
    return tags;
}

size_t findCommonGroup(const Tags& tags, int code) {
    const size_t at = findTag(tags, code);
    return at < commonEnd(tags) ? at : tags.size();
}

void setCommonGroup(Tags& tags, int code, const Tag* value) {
    const size_t at = findCommonGroup(tags, code);
    if (at < tags.size()) {
        if (value != nullptr) {
            tags[at] = *value;
        } else {
            tags.erase(tags.begin() + static_cast<std::ptrdiff_t>(at));
        }
    } else if (value != nullptr) {
        const size_t layer = findCommonGroup(tags, 8);
        const size_t place = layer < tags.size() ? layer + 1 : commonEnd(tags);
        tags.insert(tags.begin() + static_cast<std::ptrdiff_t>(place), *value);
    }
}

AcGeMatrix3d insertTransform(const Tags& insert, const AcGePoint3d& base) {
    AcGeMatrix3d to_world, way, turn, scale, from_base;
    to_world.setToPlaneToWorld(facingOf(insert));
    way.setToTranslation(pointOf(insert, 10).asVector());
    turn.setToRotation(toRadians(realOf(insert, 50, 0.0)), AcGeVector3d::kZAxis);
    for (unsigned int axis = 0; axis < 3; ++axis)
        scale(axis, axis) = realOf(insert, 41 + static_cast<int>(axis), 1.0);
    from_base.setToTranslation(-base.asVector());
    return to_world * way * turn * scale * from_base;
}

bool placeInsert(Tags& insert, const AcGePoint3d& base, const AcGeMatrix3d& matrix) {
    AcGePoint3d origin;
    AcGeVector3d x, y, z;
    matrix.getCoordSystem(origin, x, y, z);
    const auto square = [](const AcGeVector3d& a, const AcGeVector3d& b) {
        constexpr double kTolerance = 1e-9;
        return std::fabs(a.normal().dotProduct(b.normal())) <= kTolerance;
    };
    const bool flat = x.isZeroLength() || y.isZeroLength() || z.isZeroLength();
    if (flat || !square(x, y) || !square(y, z) || !square(z, x)) return false;
    // A reference keeps facing where it did when it can.
    const AcGeVector3d before = facingOf(insert);
    AcGeVector3d normal = z.normal();
    if (normal.isEqualTo(-before)) normal = before;
    AcGeMatrix3d to_plane;
    to_plane.setToWorldToPlane(normal);
    const AcGeVector3d flat_x = to_plane * x;
    const bool mirrored = normal.crossProduct(x).dotProduct(y) < 0.0;
    const AcGePoint3d place = to_plane * (matrix * base);
    if (!isFinite(place)) return false;
    changePoint(insert, 10, place, AcGePoint3d::kOrigin);
    changeReal(insert, 41, x.length(), 1.0);
    changeReal(insert, 42, mirrored ? -y.length() : y.length(), 1.0);
    changeReal(insert, 43, z.dotProduct(normal), 1.0);
    double degrees = toDegrees(std::atan2(flat_x.y, flat_x.x));
    if (degrees < 0.0) degrees += 360.0;
    changeReal(insert, 50, degrees, 0.0);
    changePoint(insert, 210, AcGePoint3d() + normal, AcGePoint3d(0.0, 0.0, 1.0));
    return true;
}

}  // namespace host
