/// Distances and directions as texts, in the units of the drawing or in others.
#include <cmath>

#include "CAD/variables.h"
#include "kz/kz_cad_env.h"

namespace {

/// Units of distances.
constexpr int kDecimal = 2;
constexpr int kEngineering = 3;
constexpr int kArchitectural = 4;
constexpr int kFractional = 5;

/// In the place of units or a precision: the drawing's.
constexpr int kUnitsOfDrawing = 0;
constexpr int kOfDrawing = -1;
/// The drawing's precision, but a fine one for feet and inches.
constexpr int kFineForFeet = -2;
constexpr int kFinePrecision = 6;

constexpr double kInchesInAFoot = 12.0;

/// Sizes of the static texts, and what the platform is told of them [characters].
constexpr size_t kTextSize = 40;
constexpr size_t kPlatformSize = 33;
/// No number's text is longer, unless its precision asks for it.
constexpr size_t kLongestNumber = 400;

int precisionOf(int precision) {
    const int units = kz_CAD_getUnits();
    const bool feet = units == kEngineering || units == kArchitectural;
    if (precision == kFineForFeet && feet) return kFinePrecision;
    return precision == kOfDrawing || precision == kFineForFeet ? kz_CAD_getUnitsPrec() : precision;
}

int linearUnits(int units) {
    return units == kUnitsOfDrawing ? kz_CAD_getUnits() : units;
}

int angularUnits(int units) {
    const int chosen = units == kOfDrawing ? kz::integerVariable(KZ_T("AUNITS"), 0) : units;
    return chosen >= 1 && chosen <= 4 ? chosen : 0;
}

/// Feet and inches, with the sign in front of both.
int formatFeet(kz_Char* out, double value, int precision) {
    const double length = std::fabs(value);
    return kz_Str_format(out, kLongestNumber, KZ_T("%s%.0lf'-%.*lf\""),
                         value < 0.0 ? KZ_T("-") : KZ_T(""), std::floor(length / kInchesInAFoot),
                         precision, std::fmod(length, kInchesInAFoot));
}

int formatNumber(kz_Char* out, double value, int units, int precision) {
    if (units == kEngineering) return formatFeet(out, value, precision);
    if (units == kDecimal)
        return kz_Str_format(out, kLongestNumber, KZ_T("%.*lf"), precision, value);
    return kz_Str_format(out, kLongestNumber, KZ_T("%lf"), value);
}

/// Writes the distance. @return false when it has no text, or one that is too long
bool writeDistance(kz_Char (&out)[kTextSize], double value, int units, int precision) {
    if (units == kArchitectural || units == kFractional) {
        return acdbRToS(value, units, precision, out, kPlatformSize) == RTNORM;
    }
    kz_Char text[kLongestNumber];
    if (static_cast<size_t>(formatNumber(text, value, units, precision)) >= kTextSize) return false;
    kz_Str_ncpy(out, text, kTextSize - 1);
    return true;
}

void tell(int* ok, bool good) {
    if (ok != nullptr) *ok = good ? 1 : 0;
}

}  // namespace

int kz_CAD_getUnits(void) {
    const int units = kz::integerVariable(KZ_T("LUNITS"), kDecimal);
    return units >= kDecimal && units <= kFractional ? units : kDecimal;
}

int kz_CAD_getUnitsPrec(void) {
    return kz::integerVariable(KZ_T("LUPREC"), 0);
}

const kz_Char* kz_CAD_strFromDouble(double value, int units, int precision, int* ok) {
    static kz_Char text[kTextSize];
    *text = 0;
    const bool good = writeDistance(text, value, linearUnits(units), precisionOf(precision));
    tell(ok, good);
    if (!good) *text = 0;
    return text;
}

double kz_CAD_strToDouble(const kz_Char* text, int units, int* ok) {
    double value = 0.0;
    tell(ok, acdbDisToF(text, linearUnits(units), &value) == RTNORM);
    return value;
}

const kz_Char* kz_CAD_strFromAngle(double radians, int units, int precision, int* ok) {
    static kz_Char text[kTextSize];
    *text = 0;
    const int decimals =
        precision == kOfDrawing ? kz::integerVariable(KZ_T("AUPREC"), 0) : precision;
    tell(ok, acdbAngToS(radians, angularUnits(units), decimals, text, kPlatformSize) == RTNORM);
    return text;
}

double kz_CAD_strToAngle(const kz_Char* text, int units, int* ok) {
    double radians = 0.0;
    tell(ok, acdbAngToF(text, angularUnits(units), &radians) == RTNORM);
    return radians;
}
