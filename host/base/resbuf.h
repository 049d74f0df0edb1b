/// The pool of result-buffer nodes. Nodes carry a little more than the platform shows: a stamp that
/// tells a living node from a released one, and whether a point has two coordinates only.
#ifndef HOST_BASE_RESBUF_H
#define HOST_BASE_RESBUF_H

#include <array>
#include <string_view>

#include "acad/ads.h"

namespace host {

/// Kind of the value that a node with this restype holds.
enum class ValueKind : uint8_t { None, Text, Short, Long, Int64, Real, Point, Name };

/// Kind of a DXF group's value: 10-19, 110-112, 210-219 and 1010-1019 are points, 320-369, 390-399,
/// 480-481, -1 and -2 names, 5, 105 and 1005 texts.
constexpr ValueKind computeGroupKind(int code) {
    if (code == -4) return ValueKind::Text;
    if (code == -1 || code == -2) return ValueKind::Name;
    if (code < 0) return ValueKind::None;
    if (code == 1071) return ValueKind::Long;
    if (code >= 1000) code -= 1000;
    struct Range {
        int first;
        int last;
        ValueKind kind;
    };
    constexpr Range kRanges[] = {
        {0, 9, ValueKind::Text},      {10, 19, ValueKind::Point},   {20, 59, ValueKind::Real},
        {60, 79, ValueKind::Short},   {90, 99, ValueKind::Long},    {100, 109, ValueKind::Text},
        {110, 112, ValueKind::Point}, {113, 149, ValueKind::Real},  {160, 169, ValueKind::Int64},
        {170, 179, ValueKind::Short}, {210, 219, ValueKind::Point}, {220, 239, ValueKind::Real},
        {270, 299, ValueKind::Short}, {300, 319, ValueKind::Text},  {320, 369, ValueKind::Name},
        {370, 389, ValueKind::Short}, {390, 399, ValueKind::Name},  {400, 409, ValueKind::Short},
        {410, 419, ValueKind::Text},  {420, 429, ValueKind::Long},  {430, 439, ValueKind::Text},
        {440, 459, ValueKind::Long},  {460, 469, ValueKind::Real},  {470, 479, ValueKind::Text},
        {480, 481, ValueKind::Name},  {999, 999, ValueKind::Text},
    };
    for (const Range& range : kRanges) {
        if (code >= range.first && code <= range.last) return range.kind;
    }
    return ValueKind::None;
}

/// Kind of a value with a result type code.
constexpr ValueKind resultKind(int restype) {
    switch (restype) {
        case RTREAL:
        case RTANG:
        case RTORINT:
            return ValueKind::Real;
        case RTPOINT:
        case RT3DPOINT:
            return ValueKind::Point;
        case RTSHORT:
            return ValueKind::Short;
        case RTLONG:
            return ValueKind::Long;
        case RTSTR:
        case RTDXF0:
            return ValueKind::Text;
        case RTENAME:
        case RTPICKS:
            return ValueKind::Name;
        default:
            return ValueKind::None;
    }
}

constexpr int kFirstGroup = -4;
constexpr int kLastGroup = 1071;

inline constexpr auto kGroupKinds = [] {
    std::array<ValueKind, kLastGroup - kFirstGroup + 1> kinds{};
    for (int code = kFirstGroup; code <= kLastGroup; ++code) {
        kinds[static_cast<size_t>(code - kFirstGroup)] = computeGroupKind(code);
    }
    return kinds;
}();

/// Kind by restype, an RT code or a DXF group.
constexpr ValueKind valueKind(int restype) {
    if (restype >= kFirstGroup && restype <= kLastGroup) {
        return kGroupKinds[static_cast<size_t>(restype - kFirstGroup)];
    }
    return resultKind(restype);
}

/// Stamp of a living node, never 0; 0 after its release. A node that comes out of the pool again
/// has another stamp, so a caller that kept the stamp knows whether its node is still the same.
uint32_t stampOf(const resbuf* node);

/// A node with a text of its own copy; NULL without memory.
resbuf* newTextNode(int restype, std::u16string_view text);

/// Marks a point node as having x and y only, as vertices of flat polylines do in an entity list.
void markPoint2d(resbuf* node);
bool isPoint2d(const resbuf* node);

}  // namespace host

#endif
