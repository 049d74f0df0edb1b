/// The platform's conversions of distances and angles, in the units of the drawing unless the
/// caller names others.
#include <cstring>

#include "acad/ads.h"
#include "base/faults.h"
#include "db/database.h"
#include "edit/sysvars.h"
#include "edit/units.h"

namespace host {

DrawingUnits drawingUnits() {
    DrawingUnits units;
    units.linear = integerVariable("LUNITS", units.linear);
    units.linear_precision = integerVariable("LUPREC", units.linear_precision);
    units.angular = integerVariable("AUNITS", units.angular);
    units.angular_precision = integerVariable("AUPREC", units.angular_precision);
    units.style.zero_suppression = integerVariable("DIMZIN", 0);
    units.style.as_typed = integerVariable("UNITMODE", 0) != 0;
    units.origin.base = realVariable("ANGBASE", 0.0);
    units.origin.clockwise = integerVariable("ANGDIR", 0) != 0;
    return units;
}

namespace {

/// In the place of units or a precision: those of the drawing.
constexpr int kOfDrawing = -1;

int chosen(int asked, int of_drawing) {
    return asked == kOfDrawing ? of_drawing : asked;
}

int give(const std::optional<std::u16string>& text, ACHAR* buffer, size_t size) {
    if (!text || buffer == nullptr || text->size() >= size) return RTERROR;
    std::memcpy(buffer, text->c_str(), (text->size() + 1) * sizeof(ACHAR));
    return RTNORM;
}

}  // namespace
}  // namespace host

extern "C" {

int acdbRToS(ads_real value, int unit, int precision, ACHAR* text, size_t size) {
    int status = 0;
    if (host::mustFail(host::Call::acdbRToS, status)) return status;
    const host::DrawingUnits units = host::drawingUnits();
    return host::give(
        host::distanceText(value, host::chosen(unit, units.linear),
                           host::chosen(precision, units.linear_precision), units.style),
        text, size);
}

int acdbDisToF(const ACHAR* text, int unit, ads_real* value) {
    int status = 0;
    if (host::mustFail(host::Call::acdbDisToF, status)) return status;
    if (text == nullptr || value == nullptr) return RTERROR;
    if (unit != host::kOfDrawing && (unit < host::kScientific || unit > host::kFractional)) {
        return RTERROR;
    }
    const std::optional<double> distance = host::parseDistance(text);
    if (!distance) return RTERROR;
    *value = *distance;
    return RTNORM;
}

int acdbAngToS(ads_real radians, int unit, int precision, ACHAR* text, size_t size) {
    int status = 0;
    if (host::mustFail(host::Call::acdbAngToS, status)) return status;
    const host::DrawingUnits units = host::drawingUnits();
    return host::give(host::angleText(radians, host::chosen(unit, units.angular),
                                      host::chosen(precision, units.angular_precision), units.style,
                                      units.origin),
                      text, size);
}

int acdbAngToF(const ACHAR* text, int unit, ads_real* radians) {
    int status = 0;
    if (host::mustFail(host::Call::acdbAngToF, status)) return status;
    if (text == nullptr || radians == nullptr) return RTERROR;
    const host::DrawingUnits units = host::drawingUnits();
    const std::optional<double> angle = host::parseAngle(text, host::chosen(unit, units.angular));
    if (!angle) return RTERROR;
    *radians = host::directionOf(*angle, units.origin);
    return RTNORM;
}
}
