/// Values in the groups of an entity that is transformed.
#include "edit/transform_parts.h"

#include <iterator>

#include "edit/plane_map.h"
#include "edit/tag_values.h"

namespace host {
namespace {

/// Number of coordinates of the point at `at`.
unsigned int dimensionsAt(const Tags& tags, size_t at) {
    const int code = tags[at].code();
    unsigned int count = 1;
    while (count < 3 && at + count < tags.size() &&
           tags[at + count].code() == code + 10 * static_cast<int>(count)) {
        ++count;
    }
    return count;
}

}  // namespace

AcGePoint3d pointAt(const Tags& tags, size_t at, double flat_z) {
    AcGePoint3d point(0.0, 0.0, flat_z);
    for (unsigned int i = 0; i < dimensionsAt(tags, at); ++i)
        point[i] = tags[at + i].real();
    return point;
}

void setPointAt(Tags& tags, size_t at, const AcGePoint3d& point) {
    if (at >= tags.size()) return;
    for (unsigned int i = 0; i < dimensionsAt(tags, at); ++i)
        setRealAt(tags, at + i, point[i]);
}

void setRealAt(Tags& tags, size_t at, double value) {
    if (at >= tags.size() || tags[at].real() == value) return;
    tags[at] = Tag(tags[at].code(), value + 0.0);  // never -0.0
}

void swapReals(Tags& tags, int code, int other_code) {
    const size_t one = findTag(tags, code), other = findTag(tags, other_code);
    if (one >= tags.size() || other >= tags.size()) return;
    const double value = tags[one].real();
    setRealAt(tags, one, tags[other].real());
    setRealAt(tags, other, value);
}

void insertInClass(Tags& tags, Tags groups) {
    // Behind AcDbEntity and its marker comes the entity's own class.
    const size_t entity = findTag(tags, 100);
    const size_t own = findTag(tags, 100, entity + 1);
    const size_t next = findTag(tags, 100, own + 1);
    tags.insert(tags.begin() + static_cast<std::ptrdiff_t>(next),
                std::make_move_iterator(groups.begin()), std::make_move_iterator(groups.end()));
}

void setOrInsert(Tags& tags, Tag tag) {
    const size_t at = findTag(tags, tag.code());
    if (at < tags.size()) {
        tags[at] = std::move(tag);
    } else {
        Tags groups;
        groups.push_back(std::move(tag));
        insertInClass(tags, std::move(groups));
    }
}

AcGeVector3d normalOf(const Tags& tags) {
    const AcGeVector3d normal = vectorOf(tags, 210, AcGeVector3d::kZAxis);
    return normal.isZeroLength() ? AcGeVector3d::kZAxis : normal;
}

void setNormal(Tags& tags, const AcGeVector3d& normal) {
    const size_t at = findTag(tags, 210);
    if (at < tags.size()) {
        if (!normalOf(tags).normal().isEqualTo(normal)) {
            setPointAt(tags, at, AcGePoint3d() + normal);
        }
    } else if (!normal.isEqualTo(AcGeVector3d::kZAxis)) {
        insertInClass(tags, pointTags(210, AcGePoint3d() + normal));
    }
}

bool transformThickness(Tags& tags, const PlaneMap& plane) {
    const size_t at = findTag(tags, 39);
    if (at >= tags.size() || tags[at].real() == 0.0) return true;
    if (!plane.upright) return false;
    setRealAt(tags, at, tags[at].real() * plane.lift);
    return true;
}

}  // namespace host
