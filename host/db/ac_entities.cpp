/// AcDbEntity and its classes: views of an object's groups, or of the groups of an entity that is
/// in no drawing yet.
#include <algorithm>
#include <cmath>
#include <numbers>

#include "acad/entities.h"
#include "base/angles.h"
#include "db/ac_fault.h"
#include "db/database.h"
#include "db/entity_content.h"
#include "db/heap_text.h"
#include "edit/block_definition.h"
#include "edit/tag_values.h"
#include "edit/transform.h"
#include "host/display.h"
#include "kz_tls21an/text.h"

namespace {

constexpr int kLayer = 8;
constexpr int kLinetype = 6;
constexpr int kLinetypeScale = 48;
constexpr int kInvisible = 60;
constexpr int kColour = 62;
constexpr int kTrueColour = 420;
constexpr int kColourName = 430;
constexpr int64_t kByLayer = 256;
constexpr const ACHAR* kByLayerName = u"ByLayer";
constexpr const ACHAR* kByBlockName = u"ByBlock";

/// True when the common group has this value already, or for NULL none.
bool hasCommonGroup(const host::Tags& tags, const host::dxf::TextCodec& codec, int code,
                    const host::Tag* value) {
    const size_t at = host::findCommonGroup(tags, code);
    if (at == tags.size() || value == nullptr) return at == tags.size() && value == nullptr;
    if (value->type() == host::dxf::GroupType::Text)
        return tags[at].text(codec) == value->text(codec);
    return tags[at].real() == value->real();
}

/// The drawing that names of an entity are looked up in.
host::Database* nameDrawing(host::Database* own) {
    return own != nullptr ? own : host::currentDatabase();
}

const host::dxf::TextCodec& codecOf(const host::Database* drawing) {
    static const host::dxf::TextCodec kPlain;
    return drawing != nullptr ? drawing->codec() : kPlain;
}

bool isWidth(double value) {
    return std::isfinite(value) && value >= 0.0;
}

}  // namespace

// --- what entities have in common ---------------------------------------------------------------

AcDbEntity::AcDbEntity() = default;
AcDbEntity::~AcDbEntity() = default;

bool AcDbEntity::begin(host::EntityContent&) const {
    return false;
}

host::EntityContent& AcDbEntity::content() const {
    if (content_ == nullptr) {
        content_ = std::make_unique<host::EntityContent>();
        begin(*content_);
    }
    return *content_;
}

const host::Tags& AcDbEntity::groups() const {
    static const host::Tags kNone;
    if (database_ == nullptr) return content().groups;
    return isReadEnabled() ? database_->tags(slot_) : kNone;
}

Acad::ErrorStatus AcDbEntity::checkWritable() const {
    return isWriteEnabled() ? Acad::eOk : Acad::eNotOpenForWrite;
}

template <class Change>
Acad::ErrorStatus AcDbEntity::changeGroups(Change change) {
    const Acad::ErrorStatus status = checkWritable();
    if (status != Acad::eOk) return status;
    if (database_ == nullptr) {
        change(content().groups);
        return Acad::eOk;
    }
    change(database_->changeTags(slot_));
    database_->touch(slot_);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbEntity::setReal(int code, double value) {
    return changeGroups([&](host::Tags& tags) { host::replaceTag(tags, host::Tag(code, value)); });
}

Acad::ErrorStatus AcDbEntity::setPoint(int code, const AcGePoint3d& point) {
    if (!host::isFinite(point)) return Acad::eInvalidInput;
    return changeGroups(
        [&](host::Tags& tags) { host::changePoint(tags, code, point, AcGePoint3d::kOrigin); });
}

AcGeVector3d AcDbEntity::facing() const {
    return host::facingOf(groups());
}

void AcDbEntity::setFacing(const AcGeVector3d& direction) {
    if (direction.isZeroLength()) return;
    changeGroups([&](host::Tags& tags) {
        host::changePoint(tags, 210, AcGePoint3d() + direction.normal(), {0.0, 0.0, 1.0});
    });
}

AcGePoint3d AcDbEntity::planePoint(int code) const {
    return AcGeMatrix3d().setToPlaneToWorld(facing()) * host::pointOf(groups(), code);
}

Acad::ErrorStatus AcDbEntity::setPlanePoint(int code, const AcGePoint3d& point) {
    return setPoint(code, AcGeMatrix3d().setToWorldToPlane(facing()) * point);
}

Acad::ErrorStatus AcDbEntity::setCommon(int code, const host::Tag* value, bool doSubents) {
    const Acad::ErrorStatus status = checkWritable();
    if (status != Acad::eOk) return status;
    if (database_ == nullptr) {
        host::setCommonGroup(content().groups, code, value);
        return Acad::eOk;
    }
    std::vector<host::Slot> slots = {slot_};
    if (doSubents) {
        for (const host::Slot part : host::partsOf(*database_, slot_)) {
            const host::ObjectRecord& record = database_->record(part);
            if (record.writer) return Acad::eWasOpenForWrite;
            if (record.readers > 0) return Acad::eWasOpenForRead;
            slots.push_back(part);
        }
    }
    for (const host::Slot slot : slots) {
        if (hasCommonGroup(database_->tags(slot), database_->codec(), code, value)) continue;
        host::setCommonGroup(database_->changeTags(slot), code, value);
        database_->touch(slot);
    }
    return Acad::eOk;
}

AcDb::Visibility AcDbEntity::visibility() const {
    const size_t at = host::findCommonGroup(groups(), kInvisible);
    return at < groups().size() && groups()[at].integer() != 0 ? AcDb::kInvisible : AcDb::kVisible;
}

Acad::ErrorStatus AcDbEntity::setVisibility(AcDb::Visibility visibility, bool doSubents) {
    const Acad::ErrorStatus failed = host::fault(host::Call::setVisibility);
    if (failed != Acad::eOk) return failed;
    const host::Tag hidden(kInvisible, int64_t{1});
    return setCommon(kInvisible, visibility == AcDb::kInvisible ? &hidden : nullptr, doSubents);
}

uint16_t AcDbEntity::colorIndex() const {
    const size_t at = host::findCommonGroup(groups(), kColour);
    // A negative index is that of a colour that is switched off, which entities don't have.
    const int64_t index = at < groups().size() ? groups()[at].integer() : kByLayer;
    return static_cast<uint16_t>(index < 0 ? -index : index);
}

Acad::ErrorStatus AcDbEntity::setColorIndex(uint16_t index, bool doSubents) {
    const Acad::ErrorStatus failed = host::fault(host::Call::setColorIndex);
    if (failed != Acad::eOk) return failed;
    if (index > kByLayer) return Acad::eInvalidIndex;
    const host::Tag colour(kColour, static_cast<int64_t>(index));
    const Acad::ErrorStatus status =
        setCommon(kColour, index == kByLayer ? nullptr : &colour, doSubents);
    if (status != Acad::eOk) return status;
    setCommon(kTrueColour, nullptr, doSubents);
    return setCommon(kColourName, nullptr, doSubents);
}

ACHAR* AcDbEntity::nameIn(int code, const ACHAR* otherwise) const {
    if (!isReadEnabled()) return nullptr;
    const size_t at = host::findCommonGroup(groups(), code);
    return host::heapText(at < groups().size() ? groups()[at].text(codecOf(database_)) : otherwise);
}

ACHAR* AcDbEntity::layer() const {
    return host::mustFail(host::Call::layer) ? nullptr : nameIn(kLayer, u"0");
}

ACHAR* AcDbEntity::linetype() const {
    return host::mustFail(host::Call::linetype) ? nullptr : nameIn(kLinetype, kByLayerName);
}

Acad::ErrorStatus AcDbEntity::setLayer(const ACHAR* name, bool doSubents) {
    const Acad::ErrorStatus failed = host::fault(host::Call::setLayer);
    if (failed != Acad::eOk) return failed;
    if (name == nullptr) return Acad::eInvalidInput;
    host::Database* drawing = nameDrawing(database_);
    if (drawing == nullptr) return Acad::eNoDatabase;
    const host::Slot record = drawing->findSymbol("LAYER", name);
    if (record == host::kNoSlot) return Acad::eKeyNotFound;
    const host::Tag layer(kLayer, drawing->symbolName(record));
    return setCommon(kLayer, &layer, doSubents);
}

Acad::ErrorStatus AcDbEntity::setLinetype(const ACHAR* name, bool doSubents) {
    const Acad::ErrorStatus failed = host::fault(host::Call::setLinetype);
    if (failed != Acad::eOk) return failed;
    if (name == nullptr) return Acad::eInvalidInput;
    if (kz::compareNoCase(name, kByLayerName) == 0) return setCommon(kLinetype, nullptr, doSubents);
    std::u16string known = kByBlockName;
    if (kz::compareNoCase(name, kByBlockName) != 0) {
        host::Database* drawing = nameDrawing(database_);
        if (drawing == nullptr) return Acad::eNoDatabase;
        const host::Slot record = drawing->findSymbol("LTYPE", name);
        if (record == host::kNoSlot) return Acad::eKeyNotFound;
        known = drawing->symbolName(record);
    }
    const host::Tag linetype(kLinetype, std::move(known));
    return setCommon(kLinetype, &linetype, doSubents);
}

double AcDbEntity::linetypeScale() const {
    const size_t at = host::findCommonGroup(groups(), kLinetypeScale);
    return at < groups().size() ? groups()[at].real() : 1.0;
}

Acad::ErrorStatus AcDbEntity::setLinetypeScale(double scale, bool doSubents) {
    const Acad::ErrorStatus failed = host::fault(host::Call::setLinetypeScale);
    if (failed != Acad::eOk) return failed;
    if (!std::isfinite(scale) || scale == 0.0) return Acad::eInvalidInput;
    const host::Tag value(kLinetypeScale, scale);
    return setCommon(kLinetypeScale, scale == 1.0 ? nullptr : &value, doSubents);
}

Acad::ErrorStatus AcDbEntity::highlight() const {
    const Acad::ErrorStatus failed = host::fault(host::Call::highlight);
    if (failed != Acad::eOk) return failed;
    return showHighlighted(true);
}

Acad::ErrorStatus AcDbEntity::unhighlight() const {
    const Acad::ErrorStatus failed = host::fault(host::Call::unhighlight);
    if (failed != Acad::eOk) return failed;
    return showHighlighted(false);
}

Acad::ErrorStatus AcDbEntity::showHighlighted(bool on) const {
    if (database_ == nullptr) return Acad::eNoDatabase;
    if (!isReadEnabled()) return Acad::eNotOpenForRead;
    if (isErased()) return Acad::eWasErased;
    host::setHighlighted(objectId(), on);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbEntity::transformBy(const AcGeMatrix3d& matrix) {
    const Acad::ErrorStatus failed = host::fault(host::Call::transformBy);
    if (failed != Acad::eOk) return failed;
    if (database_ == nullptr) return Acad::eNoDatabase;
    const Acad::ErrorStatus status = checkWritable();
    if (status != Acad::eOk) return status;
    switch (host::transformEntity(*database_, slot_, matrix)) {
        case host::TransformEnd::Done:
            return Acad::eOk;
        case host::TransformEnd::CannotTake:
            return Acad::eCannotScaleNonUniformly;
        default:
            return Acad::eNotApplicable;
    }
}

// --- polylines ----------------------------------------------------------------------------------

double AcDb2dPolyline::defaultStartWidth() const {
    return host::realOf(groups(), 40, 0.0);
}

double AcDb2dPolyline::defaultEndWidth() const {
    return host::realOf(groups(), 41, 0.0);
}

Acad::ErrorStatus AcDb2dPolyline::setDefaultStartWidth(double width) {
    const Acad::ErrorStatus failed = host::fault(host::Call::setDefaultStartWidth);
    if (failed != Acad::eOk) return failed;
    return isWidth(width) ? setReal(40, width) : Acad::eInvalidInput;
}

Acad::ErrorStatus AcDb2dPolyline::setDefaultEndWidth(double width) {
    const Acad::ErrorStatus failed = host::fault(host::Call::setDefaultEndWidth);
    if (failed != Acad::eOk) return failed;
    return isWidth(width) ? setReal(41, width) : Acad::eInvalidInput;
}

// --- points, circles, ellipses ------------------------------------------------------------------

AcDbPoint::AcDbPoint() = default;

AcDbPoint::AcDbPoint(const AcGePoint3d& position) {
    setPosition(position);
}

bool AcDbPoint::begin(host::EntityContent& out) const {
    out.type = "POINT";
    out.groups = host::newEntityTags(u"AcDbPoint");
    for (host::Tag& tag : host::pointTags(10, AcGePoint3d::kOrigin))
        out.groups.push_back(std::move(tag));
    return true;
}

AcGePoint3d AcDbPoint::position() const {
    return host::pointOf(groups(), 10);
}

Acad::ErrorStatus AcDbPoint::setPosition(const AcGePoint3d& position) {
    return setPoint(10, position);
}

AcDbCircle::AcDbCircle() = default;

AcDbCircle::AcDbCircle(const AcGePoint3d& center, const AcGeVector3d& normal, double radius) {
    setFacing(normal);
    setCenter(center);
    setRadius(radius);
}

bool AcDbCircle::begin(host::EntityContent& out) const {
    out.type = "CIRCLE";
    out.groups = host::newEntityTags(u"AcDbCircle");
    for (host::Tag& tag : host::pointTags(10, AcGePoint3d::kOrigin))
        out.groups.push_back(std::move(tag));
    out.groups.emplace_back(40, 1.0);
    return true;
}

AcGePoint3d AcDbCircle::center() const {
    return planePoint(10);
}

double AcDbCircle::radius() const {
    return host::realOf(groups(), 40, 0.0);
}

Acad::ErrorStatus AcDbCircle::setCenter(const AcGePoint3d& center) {
    return setPlanePoint(10, center);
}

Acad::ErrorStatus AcDbCircle::setRadius(double radius) {
    const bool good = std::isfinite(radius) && radius > 0.0;
    return good ? setReal(40, radius) : Acad::eInvalidInput;
}

AcDbEllipse::AcDbEllipse() = default;

AcDbEllipse::AcDbEllipse(const AcGePoint3d& center, const AcGeVector3d& normal,
                         const AcGeVector3d& majorAxis, double radiusRatio) {
    setFacing(normal);
    setPoint(10, center);
    if (!majorAxis.isZeroLength()) setPoint(11, AcGePoint3d() + majorAxis);
    if (radiusRatio > 0.0 && radiusRatio <= 1.0) setReal(40, radiusRatio);
}

bool AcDbEllipse::begin(host::EntityContent& out) const {
    out.type = "ELLIPSE";
    out.groups = host::newEntityTags(u"AcDbEllipse");
    for (host::Tag& tag : host::pointTags(10, AcGePoint3d::kOrigin))
        out.groups.push_back(std::move(tag));
    for (host::Tag& tag : host::pointTags(11, AcGePoint3d(1.0, 0.0, 0.0)))
        out.groups.push_back(std::move(tag));
    out.groups.emplace_back(40, 1.0);
    out.groups.emplace_back(41, 0.0);
    out.groups.emplace_back(42, 2.0 * std::numbers::pi);
    return true;
}

AcGePoint3d AcDbEllipse::center() const {
    return host::pointOf(groups(), 10);
}

AcGeVector3d AcDbEllipse::majorAxis() const {
    return host::vectorOf(groups(), 11, AcGeVector3d::kXAxis);
}

double AcDbEllipse::radiusRatio() const {
    return host::realOf(groups(), 40, 1.0);
}

// --- block references ---------------------------------------------------------------------------

AcDbBlockReference::AcDbBlockReference() = default;

AcDbBlockReference::AcDbBlockReference(const AcGePoint3d& position, AcDbObjectId block) {
    setBlockTableRecord(block);
    setPosition(position);
}

bool AcDbBlockReference::begin(host::EntityContent& out) const {
    out.type = "INSERT";
    out.groups = host::newEntityTags(u"AcDbBlockReference");
    out.groups.emplace_back(2, u"");
    for (host::Tag& tag : host::pointTags(10, AcGePoint3d::kOrigin))
        out.groups.push_back(std::move(tag));
    return true;
}

AcDbObjectId AcDbBlockReference::blockTableRecord() const {
    host::Database* drawing = nameDrawing(database_);
    const size_t at = host::findTag(groups(), 2);
    if (drawing == nullptr || at == groups().size()) return {};
    return drawing->idOf(drawing->findSymbol("BLOCK_RECORD", groups()[at].text(drawing->codec())));
}

Acad::ErrorStatus AcDbBlockReference::setBlockTableRecord(AcDbObjectId block) {
    host::Database* drawing = nameDrawing(database_);
    if (drawing == nullptr) return Acad::eNoDatabase;
    const host::Slot record = drawing->slotOf(block);
    if (drawing->findBlock(record) == nullptr) return Acad::eInvalidInput;
    host::Tag name(2, drawing->symbolName(record));
    return changeGroups([&](host::Tags& tags) { host::replaceTag(tags, std::move(name)); });
}

AcGePoint3d AcDbBlockReference::position() const {
    return planePoint(10);
}

Acad::ErrorStatus AcDbBlockReference::setPosition(const AcGePoint3d& position) {
    return setPlanePoint(10, position);
}

double AcDbBlockReference::rotation() const {
    return host::toRadians(host::realOf(groups(), 50, 0.0));
}

Acad::ErrorStatus AcDbBlockReference::setRotation(double angle) {
    return std::isfinite(angle) ? setReal(50, host::toDegrees(angle)) : Acad::eInvalidInput;
}

AcGePoint3d AcDbBlockReference::basePoint() const {
    host::Database* drawing = host::Database::find(blockTableRecord());
    if (drawing == nullptr) return {};
    return host::blockBase(*drawing, drawing->slotOf(blockTableRecord()));
}

AcGeMatrix3d AcDbBlockReference::blockTransform() const {
    return host::insertTransform(groups(), basePoint());
}

Acad::ErrorStatus AcDbBlockReference::setBlockTransform(const AcGeMatrix3d& matrix) {
    const Acad::ErrorStatus failed = host::fault(host::Call::setBlockTransform);
    if (failed != Acad::eOk) return failed;
    host::Tags placed = groups();
    if (!host::placeInsert(placed, basePoint(), matrix)) return Acad::eCannotScaleNonUniformly;
    return changeGroups([&](host::Tags& tags) { tags = std::move(placed); });
}
