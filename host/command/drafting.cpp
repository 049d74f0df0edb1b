/// What commands share that draw.
#include "command/drafting.h"

#include <cmath>

#include "command/property_values.h"
#include "edit/plane_map.h"
#include "edit/sysvars.h"
#include "edit/tag_values.h"
#include "edit/ucs.h"
#include "edit/units.h"
#include "kz_tls21an/text.h"

namespace host {
// --- groups -------------------------------------------------------------------------------------

NewGroups& NewGroups::mark(std::u16string_view class_name) {
    return text(100, class_name);
}

NewGroups& NewGroups::point(int code, const AcGePoint3d& point) {
    for (Tag& tag : pointTags(code, point))
        tags_.push_back(std::move(tag));
    return *this;
}

NewGroups& NewGroups::flatPoint(int code, const AcGePoint3d& point) {
    return real(code, point.x).real(code + 10, point.y);
}

NewGroups& NewGroups::vector(int code, const AcGeVector3d& vector) {
    return point(code, AcGePoint3d() + vector);
}

NewGroups& NewGroups::real(int code, double value) {
    tags_.emplace_back(code, value + 0.0);  // never -0.0
    return *this;
}

NewGroups& NewGroups::integer(int code, int64_t value) {
    tags_.emplace_back(code, value);
    return *this;
}

NewGroups& NewGroups::text(int code, std::u16string_view value) {
    tags_.emplace_back(code, std::u16string(value));
    return *this;
}

// --- drawing ------------------------------------------------------------------------------------

Drafting::Drafting(const CommandPrompt& prompt)
    : drawing_(commandDrawing(prompt)), to_world_(currentUcs(drawing_).toWorld()) {
    normal_ = (to_world_ * AcGeVector3d::kZAxis).normal();
    if (normal_.isEqualTo(AcGeVector3d::kZAxis)) normal_ = AcGeVector3d::kZAxis;
    to_flat_ = AcGeMatrix3d().setToWorldToPlane(normal_) * to_world_;
}

double Drafting::flatAngle(double radians) const {
    const double turn = std::atan2(to_flat_(1, 0), to_flat_(0, 0));
    return wholeTurn(toDegrees(radians) + toDegrees(turn));
}

void Drafting::direct(NewGroups& groups) const {
    if (!normal_.isEqualTo(AcGeVector3d::kZAxis)) groups.vector(210, normal_);
}

void Drafting::thicken(NewGroups& groups) const {
    const double thickness = realVariable("THICKNESS", 0.0);
    if (thickness != 0.0) groups.real(39, thickness);
}

Tags Drafting::common(std::string_view type) const {
    NewGroups groups;
    groups.mark(u"AcDbEntity");
    if (space() == drawing_.paperSpace()) groups.integer(67, 1);
    groups.text(8, textVariable("CLAYER"));
    const std::u16string linetype = textVariable("CELTYPE");
    if (kz::compareNoCase(linetype, u"ByLayer") != 0) groups.text(6, linetype);
    const int colour = colourOf(textVariable("CECOLOR")).value_or(kColourByLayer);
    if (colour != kColourByLayer) groups.integer(62, colour);
    const int weight = integerVariable("CELWEIGHT", kWeightByLayer);
    if (weight != kWeightByLayer && drawing_.version() >= "AC1015") groups.integer(370, weight);
    const double scale = realVariable("CELTSCALE", 1.0);
    if (scale != 1.0 && type != "VIEWPORT") groups.real(48, scale);
    return groups.take();
}

Slot Drafting::add(std::string_view type, NewGroups& groups) const {
    const Slot record = space();
    Tags tags = common(type);
    for (Tag& tag : groups.take())
        tags.push_back(std::move(tag));
    const Slot slot = drawing_.makeRecord(type, ObjectClass::Entity, drawing_.record(record).handle,
                                          std::move(tags));
    drawing_.appendEntity(record, slot);
    return slot;
}

// --- values in prompts --------------------------------------------------------------------------

std::u16string shown(double distance) {
    const DrawingUnits units = drawingUnits();
    return distanceText(distance, units.linear, units.linear_precision, units.style)
        .value_or(std::u16string());
}

std::u16string shownAngle(double radians) {
    const DrawingUnits units = drawingUnits();
    return angleText(radians, units.angular, units.angular_precision, units.style, units.origin)
        .value_or(std::u16string());
}

std::u16string shown(const AcGePoint3d& point) {
    return shown(point.x) + u"," + shown(point.y) + u"," + shown(point.z);
}

AcGePoint3d askPoint(CommandPrompt& prompt, std::u16string_view text) {
    ads_point point;
    prompt.point({std::u16string(text), RSG_NONULL, u"", nullptr}, point);
    return toPoint(point);
}

AcGePoint3d askPoint(CommandPrompt& prompt, std::u16string_view text, const AcGePoint3d& base) {
    const BasePoint from(base);
    ads_point point;
    prompt.point({std::u16string(text), RSG_NONULL, u"", from}, point);
    return toPoint(point);
}

std::u16string askName(CommandPrompt& prompt, std::u16string_view text) {
    std::u16string name = prompt.text(text, true);
    std::erase(name, u'"');
    const size_t start = name.find_first_not_of(u' ');
    if (start == std::u16string::npos) return {};
    name.erase(name.find_last_not_of(u' ') + 1);
    return name.substr(start);
}

}  // namespace host
