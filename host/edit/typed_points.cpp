/// Points, distances, angles and numbers from typed texts.
#include "edit/typed_points.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>
#include <string>
#include <vector>

#include "edit/units.h"
#include "kz_tls21an/text.h"

namespace host {
namespace {

std::optional<double> finite(std::optional<double> value) {
    return value && std::isfinite(*value) ? value : std::nullopt;
}

std::vector<std::u16string_view> split(std::u16string_view text, char16_t separator) {
    std::vector<std::u16string_view> parts;
    for (;;) {
        const size_t end = text.find(separator);
        parts.push_back(text.substr(0, end));
        if (end == std::u16string_view::npos) return parts;
        text.remove_prefix(end + 1);
    }
}

bool addCartesian(const std::vector<std::u16string_view>& parts, ads_point offset) {
    if (parts.size() < 2 || parts.size() > 3) return false;
    for (size_t i = 0; i < parts.size(); ++i) {
        const auto value = typedDistance(parts[i]);
        if (!value) return false;
        offset[i] = *value;
    }
    return true;
}

/// "5<45", "5<45,3" and "5<45<30". `has_z` tells whether z was among it.
bool addPolar(std::u16string_view text, ads_point offset, bool& has_z) {
    std::vector<std::u16string_view> parts = split(text, u'<');
    if (parts.size() < 2 || parts.size() > 3) return false;
    const auto distance = typedDistance(parts[0]);
    if (!distance) return false;
    double z = 0.0;
    const std::vector<std::u16string_view> last = split(parts.back(), u',');
    if (last.size() > 2 || (last.size() == 2 && parts.size() == 3)) return false;
    parts.back() = last[0];
    has_z = last.size() == 2 || parts.size() == 3;
    if (last.size() == 2) {
        const auto height = typedDistance(last[1]);
        if (!height) return false;
        z = *height;
    }
    const auto direction = typedDirection(parts[1]);
    if (!direction) return false;
    double flat = *distance;
    if (parts.size() == 3) {
        const auto rise = typedAngle(parts[2]);
        if (!rise) return false;
        z = *distance * std::sin(*rise);
        flat = *distance * std::cos(*rise);
    }
    offset[0] = flat * std::cos(*direction);
    offset[1] = flat * std::sin(*direction);
    offset[2] = z;
    return true;
}

double elevation() {
    resbuf value{};
    return acedGetVar(u"ELEVATION", &value) == RTNORM && value.restype == RTREAL
               ? value.resval.rreal
               : 0.0;
}

void worldToUser(ads_point point) {
    const resbuf world = {nullptr, RTSHORT, {}};
    resbuf user = {nullptr, RTSHORT, {}};
    user.resval.rint = 1;
    ads_point out;
    if (acedTrans(point, &world, &user, 0, out) != RTNORM) return;
    for (int i = 0; i < 3; ++i)
        point[i] = out[i];
}

}  // namespace

std::optional<double> typedDistance(std::u16string_view text) {
    return finite(parseDistance(text));
}

std::optional<double> typedDirection(std::u16string_view text) {
    const DrawingUnits units = drawingUnits();
    const auto angle = finite(parseAngle(text, units.angular));
    if (!angle) return std::nullopt;
    return directionOf(*angle, units.origin);
}

std::optional<double> typedAngle(std::u16string_view text) {
    return finite(parseAngle(text, drawingUnits().angular));
}

std::optional<double> typedReal(std::u16string_view text) {
    const std::string plain = kz::toUtf8(text);
    char* end = nullptr;
    const double value = std::strtod(plain.c_str(), &end);
    // strtod takes hexadecimal numbers, names of no numbers and blanks in front.
    const bool good = end != plain.c_str() && *end == '\0' &&
                      plain.find_first_not_of("0123456789+-.eE") == std::string::npos;
    return good ? finite(value) : std::nullopt;
}

std::optional<int32_t> typedInteger(std::u16string_view text) {
    const std::string plain = kz::toUtf8(text);
    if (plain.empty() || plain.find_first_not_of("0123456789+-") != std::string::npos) return {};
    char* end = nullptr;
    const long long value = std::strtoll(plain.c_str(), &end, 10);
    if (*end != '\0' || value < INT32_MIN || value > INT32_MAX) return std::nullopt;
    return static_cast<int32_t>(value);
}

void handedPoint(const InputToken& token, ads_point out) {
    std::copy(token.point, token.point + 3, out);
    if (token.flat) out[2] = elevation();
}

bool typedPoint(std::u16string_view text, const ads_point from, ads_point out) {
    // "*" and "@" may stand in either order.
    bool relative = false;
    bool world = false;
    while (text.starts_with(u'@') || text.starts_with(u'*')) {
        bool& flag = text[0] == u'@' ? relative : world;
        if (flag) return false;
        flag = true;
        text.remove_prefix(1);
    }
    ads_point offset = {0, 0, 0};
    bool has_z = false;
    if (text.find(u'<') != std::u16string_view::npos) {
        if (!addPolar(text, offset, has_z)) return false;
    } else if (!text.empty() || !relative) {
        const std::vector<std::u16string_view> parts = split(text, u',');
        has_z = parts.size() == 3;
        if (!addCartesian(parts, offset)) return false;
    }
    if (!relative) {
        if (!has_z && !world) offset[2] = elevation();
        if (world) worldToUser(offset);
    }
    for (int i = 0; i < 3; ++i)
        out[i] = offset[i] + (relative ? from[i] : 0.0);
    return true;
}

void lastPoint(ads_point out) {
    resbuf value{};
    const bool known = acedGetVar(u"LASTPOINT", &value) == RTNORM && value.restype == RT3DPOINT;
    for (int i = 0; i < 3; ++i)
        out[i] = known ? value.resval.rpoint[i] : 0.0;
}

void setLastPoint(const ads_point point) {
    resbuf value = {nullptr, RT3DPOINT, {}};
    for (int i = 0; i < 3; ++i)
        value.resval.rpoint[i] = point[i];
    acedSetVar(u"LASTPOINT", &value);
}

}  // namespace host
