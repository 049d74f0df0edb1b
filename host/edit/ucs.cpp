/// The user coordinate system: where it is kept, ways to say which one, and its history.
#include "edit/ucs.h"

#include "edit/drawing_state.h"
#include "edit/entity_system.h"
#include "edit/tag_values.h"
#include "edit/zoom.h"

namespace host {
namespace {

constexpr Refusal kNotFinite = u"A coordinate system needs numbers that are finite.";

std::string headerName(bool paper, const char* name) {
    return (paper ? "$P" : "$") + std::string(name);
}

/// Axes of length 1 with y perpendicular to x. False for axes that make no system.
bool straighten(Ucs& ucs) {
    if (!isFinite(ucs.origin) || !isFinite(ucs.x) || !isFinite(ucs.y)) return false;
    const AcGeVector3d z = ucs.x.normal().crossProduct(ucs.y.normal());
    if (ucs.x.isZeroLength() || ucs.y.isZeroLength() || z.isZeroLength()) return false;
    ucs.x.normalize();
    ucs.y = z.normal().crossProduct(ucs.x);
    return true;
}

AcGePoint3d toWorld(Database& database, const AcGePoint3d& point) {
    return currentUcs(database).toWorld() * point;
}

void writeUcs(Database& database, const Ucs& ucs) {
    const bool paper = inPaperSpace(database);
    database.setHeader(headerName(paper, "UCSORG"), pointTags(10, ucs.origin));
    database.setHeader(headerName(paper, "UCSXDIR"), pointTags(10, AcGePoint3d() + ucs.x));
    database.setHeader(headerName(paper, "UCSYDIR"), pointTags(10, AcGePoint3d() + ucs.y));
    database.setHeader(headerName(paper, "UCSNAME"), Tag(2, ucs.name));
    constexpr int kFollowsUcs = 8;
    if ((currentView(database).mode & kFollowsUcs) != 0) planView(database, ucs);
}

Ucs storedUcs(Database& database, bool paper) {
    const auto read = [&](const char* name, const AcGePoint3d& otherwise) {
        const HeaderVariable* header = database.header(headerName(paper, name));
        return header == nullptr ? otherwise : pointOf(header->tags, 10, otherwise);
    };
    Ucs ucs;
    ucs.origin = read("UCSORG", ucs.origin);
    ucs.x = read("UCSXDIR", AcGePoint3d(1, 0, 0)).asVector();
    ucs.y = read("UCSYDIR", AcGePoint3d(0, 1, 0)).asVector();
    if (!straighten(ucs)) return Ucs();
    const HeaderVariable* name = database.header(headerName(paper, "UCSNAME"));
    if (name != nullptr) ucs.name = name->tags.front().text(database.codec());
    return ucs;
}

/// The record of a named system; kNoSlot for none.
Slot namedUcs(Database& database, std::u16string_view name) {
    return database.findSymbol("UCS", name);
}

}  // namespace

bool Ucs::isWorld() const {
    return origin.isEqualTo(AcGePoint3d()) && x.isEqualTo(AcGeVector3d::kXAxis) &&
           y.isEqualTo(AcGeVector3d::kYAxis);
}

Ucs currentUcs(Database& database) {
    return storedUcs(database, inPaperSpace(database));
}

Ucs modelSpaceUcs(Database& database) {
    return storedUcs(database, false);
}

Refusal setUcs(Database& database, Ucs wanted) {
    if (!isFinite(wanted.origin)) return kNotFinite;
    if (!straighten(wanted)) return u"These directions make no coordinate system.";
    drawingState(database).systems[inPaperSpace(database) ? 1 : 0].push(currentUcs(database));
    writeUcs(database, wanted);
    return kDone;
}

Refusal setWorldUcs(Database& database) {
    return setUcs(database, Ucs());
}

Refusal setUcsOrigin(Database& database, const AcGePoint3d& origin) {
    Ucs ucs = currentUcs(database);
    ucs.origin = ucs.toWorld() * origin;
    ucs.name.clear();
    return setUcs(database, ucs);
}

Refusal setUcsByThreePoints(Database& database, const AcGePoint3d& origin, const AcGePoint3d& on_x,
                            const AcGePoint3d& in_xy) {
    Ucs ucs;
    ucs.origin = toWorld(database, origin);
    ucs.x = toWorld(database, on_x) - ucs.origin;
    ucs.y = toWorld(database, in_xy) - ucs.origin;
    if (!isFinite(ucs.x) || !isFinite(ucs.y)) return kNotFinite;
    if (ucs.x.isZeroLength()) return u"The point on the x axis must differ from the origin.";
    if (ucs.y.isZeroLength() || ucs.x.isParallelTo(ucs.y)) {
        return u"The three points must not lie on a line.";
    }
    return setUcs(database, ucs);
}

Refusal setUcsByZAxis(Database& database, const AcGePoint3d& origin, const AcGePoint3d& on_z) {
    Ucs ucs;
    ucs.origin = toWorld(database, origin);
    const AcGeVector3d z = toWorld(database, on_z) - ucs.origin;
    if (!isFinite(z)) return kNotFinite;
    if (z.isZeroLength()) return u"The point on the z axis must differ from the origin.";
    ucs.x = z.perpVector();
    ucs.y = z.crossProduct(ucs.x);
    return setUcs(database, ucs);
}

Refusal rotateUcs(Database& database, int axis, double angle) {
    if (!std::isfinite(angle)) return kNotFinite;
    Ucs ucs = currentUcs(database);
    const AcGeVector3d about = axis == 0 ? ucs.x : axis == 1 ? ucs.y : ucs.z();
    ucs.x.rotateBy(angle, about);
    ucs.y.rotateBy(angle, about);
    ucs.name.clear();
    return setUcs(database, ucs);
}

Refusal setUcsByEntity(Database& database, Slot entity, const AcGePoint3d& pick) {
    Ucs ucs;
    if (!entitySystem(database, entity, toWorld(database, pick), ucs)) {
        return u"This object does not define a coordinate system.";
    }
    return setUcs(database, ucs);
}

Refusal setUcsByView(Database& database) {
    Ucs ucs = currentUcs(database);
    AcGePoint3d target;
    AcGeVector3d z;
    currentView(database).displayToWorld().getCoordSystem(target, ucs.x, ucs.y, z);
    ucs.name.clear();
    return setUcs(database, ucs);
}

Refusal setPreviousUcs(Database& database) {
    History<Ucs>& history = drawingState(database).systems[inPaperSpace(database) ? 1 : 0];
    if (history.empty()) return u"There is no coordinate system before this one.";
    writeUcs(database, history.pop());
    return kDone;
}

Refusal saveUcs(Database& database, std::u16string_view name) {
    if (acdbSNValid(std::u16string(name).c_str(), 0) != RTNORM) {
        return u"This is no name for a coordinate system.";
    }
    Ucs ucs = currentUcs(database);
    Slot record = namedUcs(database, name);
    if (record == kNoSlot) {
        Tags flags;
        flags.emplace_back(70, int64_t{0});
        record = database.makeSymbol("UCS", name, std::move(flags));
    }
    Tags& tags = database.changeTags(record);
    replacePoint(tags, 10, ucs.origin);
    replacePoint(tags, 11, AcGePoint3d() + ucs.x);
    replacePoint(tags, 12, AcGePoint3d() + ucs.y);
    database.touch(record);
    ucs.name = database.symbolName(record);
    writeUcs(database, ucs);
    return kDone;
}

Refusal restoreUcs(Database& database, std::u16string_view name) {
    const Slot record = namedUcs(database, name);
    if (record == kNoSlot) return u"There is no coordinate system of this name.";
    const Tags& tags = database.tags(record);
    Ucs ucs;
    ucs.origin = pointOf(tags, 10);
    ucs.x = vectorOf(tags, 11, ucs.x);
    ucs.y = vectorOf(tags, 12, ucs.y);
    ucs.name = database.symbolName(record);
    return setUcs(database, ucs);
}

Refusal deleteUcs(Database& database, std::u16string_view name) {
    const Slot record = namedUcs(database, name);
    if (record == kNoSlot) return u"There is no coordinate system of this name.";
    const std::u16string spelling = database.symbolName(record);
    database.setErased(record, true);
    Ucs ucs = currentUcs(database);
    if (ucs.name == spelling) {
        ucs.name.clear();
        writeUcs(database, ucs);
    }
    return kDone;
}

}  // namespace host
