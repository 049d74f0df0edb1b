/// Numbers and angles to texts. Everything is rounded on decimal digits or on whole parts of an
/// inch, so that a carry runs through seconds, minutes, inches and feet by itself.
#include "edit/units.h"

#include <charconv>
#include <cmath>
#include <numbers>
#include <numeric>

namespace host {
namespace {

constexpr int kMostDecimals = 32;
constexpr int kFinestFraction = 8;  // 1/256
constexpr int kReliableDigits = 15;
constexpr double kTooBigForDecimals = 1e16;
constexpr int kKeepFeetAndInches = 1, kKeepFeet = 2, kKeepInches = 3;
constexpr int kNoLeadingZero = 4, kNoTrailingZeros = 8;
constexpr double kTurn = 2 * std::numbers::pi;

/// Digits of a number: d.ddd times ten to the exponent.
struct Digits {
    std::string digits;
    int exponent = 0;
};

/// The reliable digits of a magnitude, or all that it takes to tell it from its neighbours.
Digits digitsOf(double magnitude, bool all) {
    char text[40];
    const auto form = std::chars_format::scientific;
    char* const limit = text + sizeof text;
    const char* const end = (all ? std::to_chars(text, limit, magnitude, form)
                                 : std::to_chars(text, limit, magnitude, form, kReliableDigits - 1))
                                .ptr;
    Digits out;
    const char* at = text;
    for (; *at != 'e'; ++at) {
        if (*at != '.') out.digits += *at;
    }
    if (*++at == '+') ++at;
    std::from_chars(at, end, out.exponent);
    return out;
}

void addOne(std::string& digits) {
    size_t at = digits.size();
    while (at > 0 && digits[at - 1] == '9')
        digits[--at] = '0';
    if (at > 0) {
        ++digits[at - 1];
    } else {
        digits.insert(0, 1, '1');
    }
}

/// Rounded to `count` digits; one more when the carry ran through. No digit at all leaves 0 or the
/// carry.
std::string roundedDigits(const Digits& all, int count) {
    if (count < 0) return "0";
    const auto kept = static_cast<size_t>(count);
    std::string digits = all.digits.substr(0, kept);
    digits.resize(kept, '0');
    if (kept < all.digits.size() && all.digits[kept] >= '5') addOne(digits);
    return digits.empty() ? "0" : digits;
}

/// A magnitude with a number of decimals.
struct Fixed {
    std::string whole;
    std::string decimals;
    uint64_t wholeNumber() const {
        uint64_t number = 0;
        std::from_chars(whole.data(), whole.data() + whole.size(), number);
        return number;
    }
    bool noDecimals() const { return decimals.find_first_not_of('0') == std::string::npos; }
    bool isZero() const { return wholeNumber() == 0 && noDecimals(); }
};

Fixed fixed(double magnitude, int decimals) {
    Digits all = digitsOf(magnitude, false);
    if (all.exponent + 1 + decimals >= kReliableDigits) all = digitsOf(magnitude, true);
    std::string digits = roundedDigits(all, all.exponent + 1 + decimals);
    const auto places = static_cast<size_t>(decimals);
    if (digits.size() <= places) digits.insert(0, places + 1 - digits.size(), '0');
    const size_t point = digits.size() - places;
    return {digits.substr(0, point), digits.substr(point)};
}

void dropTrailingZeros(std::string& decimals) {
    while (!decimals.empty() && decimals.back() == '0')
        decimals.pop_back();
}

/// "12.50" as the style wants it. A zero in front stays where something else stands before it.
std::string decimalText(const std::string& whole, std::string decimals, const NumberStyle& style,
                        bool may_start_with_point = true) {
    if ((style.zero_suppression & kNoTrailingZeros) != 0) dropTrailingZeros(decimals);
    if (decimals.empty()) return whole;
    const bool no_zero =
        may_start_with_point && whole == "0" && (style.zero_suppression & kNoLeadingZero) != 0;
    return (no_zero ? "" : whole) + "." + decimals;
}

/// A text and whether it shows zero, which has no sign.
struct Shown {
    std::string text;
    bool zero = false;
};

Shown scientific(double magnitude, int precision, const NumberStyle& style) {
    const int count = precision + 1;
    Digits all = digitsOf(magnitude, count >= kReliableDigits);
    std::string digits = roundedDigits(all, count);
    if (digits.size() > static_cast<size_t>(count)) ++all.exponent;
    std::string decimals = digits.substr(1, static_cast<size_t>(precision));
    if ((style.zero_suppression & kNoTrailingZeros) != 0) dropTrailingZeros(decimals);
    std::string exponent = std::to_string(std::abs(all.exponent));
    if (exponent.size() < 2) exponent.insert(0, 1, '0');
    return {digits.substr(0, 1) + (decimals.empty() ? "" : "." + decimals) + "E" +
                (all.exponent < 0 ? "-" : "+") + exponent,
            magnitude == 0.0};
}

/// Which of feet and inches are shown.
struct FeetAndInches {
    uint64_t feet, inches;
    bool shows_feet, shows_inches;
    FeetAndInches(uint64_t whole_inches, bool no_parts, const NumberStyle& style)
        : feet(whole_inches / 12), inches(whole_inches % 12) {
        const int keep = style.zero_suppression & 3;
        shows_feet = feet != 0 || keep == kKeepFeetAndInches || keep == kKeepFeet;
        shows_inches = inches != 0 || !no_parts || !shows_feet || keep == kKeepFeetAndInches ||
                       keep == kKeepInches;
    }
    /// The inches' text with the feet before it.
    std::string text(const std::string& inches_text, const NumberStyle& style) const {
        std::string out;
        if (shows_feet) out = std::to_string(feet) + "'";
        if (shows_feet && shows_inches && !style.as_typed) out += "-";
        if (shows_inches) out += inches_text + "\"";
        return out;
    }
};

Shown engineering(double magnitude, int precision, const NumberStyle& style) {
    const Fixed total = fixed(magnitude, precision);
    const FeetAndInches parts(total.wholeNumber(), total.noDecimals(), style);
    const std::string inches =
        decimalText(std::to_string(parts.inches), total.decimals, style, !parts.shows_feet);
    return {parts.text(inches, style), total.isZero()};
}

/// "5 1/2": a whole number, a fraction in its lowest terms, or both.
std::string mixedText(uint64_t whole, bool shows_zero, uint64_t numerator, uint64_t denominator,
                      const NumberStyle& style) {
    if (numerator == 0) return std::to_string(whole);
    const uint64_t common = std::gcd(numerator, denominator);
    std::string fraction =
        std::to_string(numerator / common) + "/" + std::to_string(denominator / common);
    if (whole == 0 && !shows_zero) return fraction;
    return std::to_string(whole) + (style.as_typed ? "-" : " ") + fraction;
}

Shown fractions(double magnitude, int precision, bool with_feet, const NumberStyle& style) {
    const uint64_t denominator = uint64_t{1} << std::min(precision, kFinestFraction);
    const auto total =
        static_cast<uint64_t>(std::round(magnitude * static_cast<double>(denominator)));
    const uint64_t whole = total / denominator, numerator = total % denominator;
    if (!with_feet) return {mixedText(whole, false, numerator, denominator, style), total == 0};
    const FeetAndInches parts(whole, numerator == 0, style);
    const std::string inches =
        mixedText(parts.inches, parts.shows_feet, numerator, denominator, style);
    return {parts.text(inches, style), total == 0};
}

Shown shown(double magnitude, int units, int precision, const NumberStyle& style) {
    if (units == kScientific || magnitude >= kTooBigForDecimals) {
        return scientific(magnitude, precision, style);
    }
    if (units == kEngineering) return engineering(magnitude, precision, style);
    if (units != kDecimal) return fractions(magnitude, precision, units == kArchitectural, style);
    const Fixed number = fixed(magnitude, precision);
    return {decimalText(number.whole, number.decimals, style), number.isZero()};
}

/// An angle below the full circle, which a number that rounds up to it shows as 0.
std::string circleText(double angle, int full, int precision, const NumberStyle& style) {
    Fixed number = fixed(angle, precision);
    if (number.wholeNumber() == static_cast<uint64_t>(full)) number.whole = "0";
    return decimalText(number.whole, number.decimals, style);
}

/// Degrees with as many minutes and seconds as the precision asks for.
struct Sexagesimal {
    uint64_t degrees = 0;
    std::string rest;   ///< behind the degrees' mark
    bool whole = true;  ///< no minutes, no seconds
};

Sexagesimal sexagesimal(double degrees, int precision, const NumberStyle& style) {
    constexpr int kSeconds = 4;  // the precision up to which there are no decimals
    const int parts = precision == 0 ? 1 : precision <= 2 ? 60 : 3600;
    const int decimals = std::max(0, precision - kSeconds);
    const Fixed total = fixed(degrees * parts, decimals);
    const uint64_t number = total.wholeNumber();
    const auto unit = static_cast<uint64_t>(parts);
    Sexagesimal out{number / unit, "", number % unit == 0 && total.noDecimals()};
    const uint64_t minutes = number % unit / (unit / (parts == 1 ? 1 : 60));
    if (parts >= 60) out.rest = std::to_string(minutes) + "'";
    if (parts == 3600) {
        out.rest += decimalText(std::to_string(number % 60), total.decimals, style, false) + "\"";
    }
    return out;
}

std::string bearingText(double degrees, int precision, const NumberStyle& style) {
    const bool north = degrees < 180.0, east = degrees < 90.0 || degrees >= 270.0;
    const double from_east_west =
        north ? (east ? degrees : 180.0 - degrees) : (east ? 360.0 - degrees : degrees - 180.0);
    const Sexagesimal angle = sexagesimal(90.0 - from_east_west, precision, style);
    if (angle.degrees == 0 && angle.whole) return north ? "N" : "S";
    if (angle.degrees == 90) return east ? "E" : "W";
    const std::string blank = style.as_typed ? "" : " ";
    return (north ? "N" : "S") + blank + std::to_string(angle.degrees) + "d" + angle.rest + blank +
           (east ? "E" : "W");
}

std::string angleShown(double radians, int units, int precision, const NumberStyle& style) {
    const double degrees = radians * 180.0 / std::numbers::pi;
    switch (units) {
        case kDegreesMinutesSeconds: {
            const Sexagesimal angle = sexagesimal(degrees, precision, style);
            return std::to_string(angle.degrees % 360) + "d" + angle.rest;
        }
        case kGrads:
            return circleText(radians * 200.0 / std::numbers::pi, 400, precision, style) + "g";
        case kRadians: {
            const Fixed number = fixed(radians, precision);
            return decimalText(number.whole, number.decimals, style) + "r";
        }
        case kSurveyor:
            return bearingText(degrees, precision, style);
        default:
            return circleText(degrees, 360, precision, style);
    }
}

std::u16string widened(const std::string& text) {
    return {text.begin(), text.end()};
}

/// The angle from 0 to below the full circle.
double withinCircle(double radians) {
    radians = std::fmod(radians, kTurn);
    if (radians < 0.0) radians += kTurn;
    return radians < kTurn ? radians : 0.0;
}

}  // namespace

std::optional<std::u16string> distanceText(double value, int units, int precision,
                                           const NumberStyle& style) {
    if (units < kScientific || units > kFractional || precision < 0 || !std::isfinite(value)) {
        return std::nullopt;
    }
    const Shown number = shown(std::fabs(value), units, std::min(precision, kMostDecimals), style);
    return widened((value < 0.0 && !number.zero ? "-" : "") + number.text);
}

std::optional<std::u16string> angleText(double radians, int units, int precision,
                                        const NumberStyle& style, const AngleOrigin& origin) {
    if (units < kDegrees || units > kSurveyor || precision < 0 || !std::isfinite(radians)) {
        return std::nullopt;
    }
    const double angle = angleFrom(radians, origin);
    return widened(angleShown(angle, units, std::min(precision, kMostDecimals), style));
}

double directionOf(double radians, const AngleOrigin& origin) {
    return withinCircle(origin.clockwise ? origin.base - radians : origin.base + radians);
}

double angleFrom(double direction, const AngleOrigin& origin) {
    return withinCircle(origin.clockwise ? origin.base - direction : direction - origin.base);
}

}  // namespace host
