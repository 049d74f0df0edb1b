/// Angles: drawings hold degrees, callers work in radians.
#ifndef HOST_BASE_ANGLES_H
#define HOST_BASE_ANGLES_H

#include <algorithm>
#include <cmath>
#include <numbers>

namespace host {

inline constexpr double kDegree = std::numbers::pi / 180.0;  ///< [radians]
inline constexpr double kTurn = 2 * std::numbers::pi;        ///< [radians]

/// The way from one angle counter-clockwise to another, at most a turn; a whole one for the same.
inline double sweepBetween(double from, double to) {
    const double way = std::fmod(to - from, kTurn);
    return way <= 1e-12 ? way + kTurn : way;
}

/// Groups of entities and tables that hold an angle.
constexpr bool isAngleCode(int code) {
    return code >= 50 && code <= 58;
}

constexpr double toRadians(double degrees) {
    return degrees * kDegree;
}

/// 30 degrees that became radians come back as 30.
inline double toDegrees(double radians) {
    const double degrees = radians * 180.0 / std::numbers::pi;
    constexpr double kNoise = 1e-12;
    const double whole = std::round(degrees * 1e6) / 1e6;
    if (std::fabs(degrees - whole) <= kNoise * std::max(1.0, std::fabs(degrees))) return whole;
    return degrees;
}

/// Whether two angles [degrees] are one but for what toRadians and toDegrees do to it.
inline bool isSameAngle(double a, double b) {
    constexpr double kNoise = 2e-12;
    return std::fabs(a - b) <= kNoise * std::max({1.0, std::fabs(a), std::fabs(b)});
}

}  // namespace host

#endif
