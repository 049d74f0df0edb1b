/// Numbers and angles as texts in the units of a drawing, and back. Pure conversions: what the
/// drawing says about units comes in as values, so that prompts and functions share them.
///
/// Texts are rounded to the nearest, ties away from zero. What lies a hair beside a decimal tie, as
/// 1.005 does, counts as the tie: the first 15 digits decide.
#ifndef HOST_EDIT_UNITS_H
#define HOST_EDIT_UNITS_H

#include <optional>
#include <string>
#include <string_view>

namespace host {

/// Values of LUNITS.
enum LinearUnits : int { kScientific = 1, kDecimal, kEngineering, kArchitectural, kFractional };
/// Values of AUNITS.
enum AngularUnits : int { kDegrees = 0, kDegreesMinutesSeconds, kGrads, kRadians, kSurveyor };

/// How numbers are written.
struct NumberStyle {
    /// As DIMZIN. Its values 0 to 3: which of zero feet and zero inches are left out (0 both, 1
    /// none, 2 inches, 3 feet); plus 4: the zero before a decimal point; plus 8: zeros at the end
    /// of decimals.
    int zero_suppression = 0;
    /// As UNITMODE: feet, inches and fractions as they are typed (1'3-1/2") and not as they are
    /// shown (1'-3 1/2"); bearings without blanks.
    bool as_typed = false;
};

/// From where and in which sense angles are counted, as ANGBASE and ANGDIR.
struct AngleOrigin {
    double base = 0.0;  ///< direction of the angle 0 [radians from the x axis]
    bool clockwise = false;
};

/// A distance as text.
/// @param precision  decimals (at most 32), or for architectural and fractional units the power of
///                   two that is the greatest denominator (at most 8)
/// @return nothing for units that are none, a precision below 0, and NaN or infinity. Numbers of
/// 1e16 and more, which have no decimals to show, come out in scientific form in all units.
std::optional<std::u16string> distanceText(double value, int units, int precision,
                                           const NumberStyle& style);

/// A distance from its text; blanks around it don't count. All spellings are read whatever the
/// drawing's units are: decimals, exponents, fractions, feet and inches in both styles.
/// @return nothing for a text that is no distance, or one beyond the range of reals
std::optional<double> parseDistance(std::u16string_view text);

/// An angle as text, between 0 and the full circle.
/// @param radians    counted from the x axis, counter-clockwise
/// @param precision  decimals; in degrees, minutes and seconds (also of bearings) 0 shows degrees,
///                   1 and 2 minutes, 3 and 4 seconds, and each one above 4 a decimal of these
/// @return nothing as in distanceText
std::optional<std::u16string> angleText(double radians, int units, int precision,
                                        const NumberStyle& style, const AngleOrigin& origin);

/// An angle as it is written: with its sign and any number of turns, a bearing between 0 and the
/// full circle from east. Marks (45d30'15.5", 50g, 0.5r, N 45d E) are read whatever the units are;
/// a number without any is in `units`.
/// @return radians; nothing for a text that is no angle, units that are none, or one beyond the
/// range of reals
std::optional<double> parseAngle(std::u16string_view text, int units);

/// The direction that an angle counted from `origin` has. @return radians from the x axis,
/// counter-clockwise, from 0 to below the full circle
double directionOf(double radians, const AngleOrigin& origin);
/// The angle counted from `origin` that a direction has; the inverse.
double angleFrom(double direction, const AngleOrigin& origin);

/// What the drawing in the editor says about units (its system variables).
struct DrawingUnits {
    int linear = kDecimal;
    int linear_precision = 4;
    int angular = kDegrees;
    int angular_precision = 0;
    NumberStyle style;
    AngleOrigin origin;
};
DrawingUnits drawingUnits();

}  // namespace host

#endif
