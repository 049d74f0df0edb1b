/// Transformation of texts. A mirrored text that is to stay readable takes the place of its mirror
/// image: of its two readable forms, each seen from another side, the one that runs to the right.
#include <algorithm>

#include "edit/plane_map.h"
#include "edit/tag_values.h"
#include "edit/transform_parts.h"

namespace host {
namespace {

/// Group 72 of a text.
enum Horizontal : int { kLeft = 0, kRight = 2, kAligned = 3, kFit = 5 };
/// Group 73 of a TEXT, 74 of an attribute.
enum Vertical : int { kBaseline = 0, kMiddle = 2, kTop = 3 };

constexpr int64_t kBackward = 2;  ///< of group 71

/// True for a direction that is read from left to right, or upward.
bool isReadable(double degrees) {
    const double turn = wholeTurn(degrees);
    constexpr double kNear = 1e-6;
    return turn <= 90.0 + kNear || turn > 270.0 + kNear;
}

void placeSecond(Tags& tags, const AcGePoint3d& place) {
    const size_t second = findTag(tags, 11);
    if (second < tags.size()) {
        setPointAt(tags, second, place);
    } else {
        insertInClass(tags, pointTags(11, place));
    }
}

/// Left becomes right: the place of the text is then its second point, and back.
void swapSides(Tags& tags, int64_t horizontal, int vertical_code) {
    const AcGePoint3d first = pointOf(tags, 10), second = pointOf(tags, 11, first);
    // A text on the base line is placed by its first point, all others by the second.
    const bool on_base = integerOf(tags, vertical_code, 0) == kBaseline;
    if (horizontal == kAligned || horizontal == kFit) {
        setPointAt(tags, findTag(tags, 10), second);
        placeSecond(tags, first);
    } else if (horizontal == kLeft) {
        setOrInsert(tags, Tag(72, int64_t{kRight}));
        placeSecond(tags, on_base ? first : second);
    } else if (horizontal == kRight) {
        setOrInsert(tags, Tag(72, int64_t{kLeft}));
        setPointAt(tags, findTag(tags, 10), second);
    }
}

/// The text stands on the other side of its base line: its points move by its height.
void moveAcross(Tags& tags, int64_t vertical, double image_direction) {
    if (vertical == kMiddle) return;
    const double height = realOf(tags, 40, 0.0) * (vertical == kTop ? 1.0 : -1.0);
    const AcGeVector3d way = directionAt(image_direction + 90.0) * height;
    for (const int code : {10, 11}) {
        const size_t at = findTag(tags, code);
        if (at < tags.size()) setPointAt(tags, at, pointAt(tags, at, 0.0) + way);
    }
}

}  // namespace

bool transformText(std::string_view type, Tags& tags, const AcGeMatrix3d& matrix,
                   bool mirror_text) {
    const PlaneMap plane(normalOf(tags), matrix);
    if (!plane.similar || !transformThickness(tags, plane)) return false;
    for (const int code : {10, 11}) {
        const size_t at = findTag(tags, code);
        if (at < tags.size()) setPointAt(tags, at, plane.map * pointAt(tags, at, 0.0));
    }
    const size_t height = findTag(tags, 40);
    if (height < tags.size()) setRealAt(tags, height, tags[height].real() * plane.scale);

    const double before = realOf(tags, 50, 0.0);
    double direction = plane.angle(before);
    if (plane.mirrored && mirror_text) {
        direction = wholeTurn(direction + 180.0);
        setOrInsert(tags, Tag(71, integerOf(tags, 71, 0) ^ kBackward));
    } else if (plane.mirrored) {
        const int vertical_code = type == "TEXT" ? 73 : 74;
        if (isReadable(direction)) {
            moveAcross(tags, integerOf(tags, vertical_code, 0), direction);
        } else {
            swapSides(tags, integerOf(tags, 72, 0), vertical_code);
            direction = wholeTurn(direction + 180.0);
        }
    }
    if (direction != before) setOrInsert(tags, Tag(50, direction));
    setNormal(tags, plane.normal);
    return true;
}

bool transformMText(Tags& tags, const AcGeMatrix3d& matrix) {
    const PlaneMap plane(normalOf(tags), matrix);
    if (!plane.similar) return false;
    const size_t place = findTag(tags, 10), axis = findTag(tags, 11);
    if (place < tags.size()) setPointAt(tags, place, matrix * pointAt(tags, place, 0.0));
    for (const int code : {40, 41, 42, 43}) {
        const size_t at = findTag(tags, code);
        if (at < tags.size()) setRealAt(tags, at, tags[at].real() * plane.scale);
    }
    // The direction is a vector in the world, or an angle in the plane.
    const double angle = realOf(tags, 50, 0.0);
    double direction = plane.angle(angle);
    AcGeVector3d x;
    if (axis < tags.size()) {
        const AcGeVector3d before = pointAt(tags, axis, 0.0).asVector();
        x = (matrix * before).normal() * before.length();
        const AcGeVector3d flat = AcGeMatrix3d().setToWorldToPlane(plane.normal) * x;
        direction = toDegrees(std::atan2(flat.y, flat.x));
    }
    if (plane.mirrored) {
        const int64_t attachment = std::clamp<int64_t>(integerOf(tags, 71, 1), 1, 9) - 1;
        int64_t row = attachment / 3, column = attachment % 3;
        if (isReadable(direction)) {
            row = 2 - row;
        } else {
            column = 2 - column;
            direction = wholeTurn(direction + 180.0);
            x.negate();
        }
        setOrInsert(tags, Tag(71, row * 3 + column + 1));
    }
    if (axis < tags.size()) {
        setPointAt(tags, axis, AcGePoint3d() + x);
    } else if (direction != angle) {
        setOrInsert(tags, Tag(50, direction));
    }
    setNormal(tags, plane.normal);
    return true;
}

}  // namespace host
