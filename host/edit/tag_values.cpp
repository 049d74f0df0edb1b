/// Values in the tags of objects.
#include "edit/tag_values.h"

namespace host {

double realOf(const Tags& tags, int code, double otherwise) {
    const size_t at = findTag(tags, code);
    return at < tags.size() ? tags[at].real() : otherwise;
}

int64_t integerOf(const Tags& tags, int code, int64_t otherwise) {
    const size_t at = findTag(tags, code);
    return at < tags.size() ? tags[at].integer() : otherwise;
}

AcGePoint3d pointOf(const Tags& tags, int code, const AcGePoint3d& otherwise, size_t from) {
    const size_t at = findTag(tags, code, from);
    if (at >= tags.size()) return otherwise;
    AcGePoint3d point(tags[at].real(), 0.0, 0.0);
    // The other coordinates stand right behind the first.
    for (unsigned int axis = 1; axis < 3; ++axis) {
        const size_t next = at + axis;
        if (next >= tags.size() || tags[next].code() != code + 10 * static_cast<int>(axis)) break;
        point[axis] = tags[next].real();
    }
    return point;
}

AcGeVector3d vectorOf(const Tags& tags, int code, const AcGeVector3d& otherwise) {
    return pointOf(tags, code, AcGePoint3d() + otherwise).asVector();
}

Tags ownTags(const Tags& tags) {
    constexpr int kEmbedded = 101;
    const auto end = static_cast<ptrdiff_t>(findTag(tags, kEmbedded));
    return {tags.begin(), tags.begin() + end};
}

void replaceTag(Tags& tags, Tag tag) {
    const size_t at = findTag(tags, tag.code());
    if (at < tags.size()) {
        tags[at] = std::move(tag);
    } else {
        tags.push_back(std::move(tag));
    }
}

void replacePoint(Tags& tags, int code, const AcGePoint3d& point) {
    for (Tag& tag : pointTags(code, point))
        replaceTag(tags, std::move(tag));
}

void replacePoint(Tags& tags, int code, const AcGePoint2d& point) {
    replaceTag(tags, Tag(code, point.x));
    replaceTag(tags, Tag(code + 10, point.y));
}

Tags pointTags(int code, const AcGePoint3d& point) {
    Tags tags;
    for (unsigned int axis = 0; axis < 3; ++axis)
        tags.emplace_back(code + 10 * static_cast<int>(axis), point[axis]);
    return tags;
}

std::vector<AcGePoint3d> pointsOf(const Tags& tags, int code) {
    std::vector<AcGePoint3d> points;
    for (size_t at = findTag(tags, code); at < tags.size(); at = findTag(tags, code, at + 1))
        points.push_back(pointOf(tags, code, {}, at));
    return points;
}

std::vector<double> realsOf(const Tags& tags, int code) {
    std::vector<double> values;
    for (size_t at = findTag(tags, code); at < tags.size(); at = findTag(tags, code, at + 1))
        values.push_back(tags[at].real());
    return values;
}

}  // namespace host
