/// Points as people type them.
#ifndef HOST_EDIT_TYPED_POINTS_H
#define HOST_EDIT_TYPED_POINTS_H

#include <optional>
#include <string_view>

#include "edit/input.h"

namespace host {

/// Values that a typed text means in the drawing's units; nothing for a text that is none, NaN and
/// infinities.
std::optional<double> typedDistance(std::u16string_view text);
/// An angle as a direction: radians counterclockwise from the x axis.
std::optional<double> typedDirection(std::u16string_view text);
/// The same without ANGBASE and ANGDIR.
std::optional<double> typedAngle(std::u16string_view text);
std::optional<double> typedReal(std::u16string_view text);
std::optional<int32_t> typedInteger(std::u16string_view text);

/// A point in the user coordinate system: "x,y", "x,y,z", polar "5<45", cylindrical "5<45,3",
/// spherical "5<45<30"; with "@" from `from`, alone that point itself; with "*" in world
/// coordinates. A point without z lies at the current elevation, a relative one beside `from`.
/// @return false for a text that is no point
bool typedPoint(std::u16string_view text, const ads_point from, ads_point out);

/// The point of an answer that is one; without z it lies at the current elevation.
void handedPoint(const InputToken& token, ads_point out);

/// The point that was given last in the drawing (LASTPOINT).
void lastPoint(ads_point out);
void setLastPoint(const ads_point point);

}  // namespace host

#endif
