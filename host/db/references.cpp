/// Attached drawings: blocks that stand for another file, the drawings read for them, where they
/// are placed; and the walk over a drawing's entities.
#include <cmath>
#include <numbers>

#include "db/attach.h"
#include "db/links.h"
#include "dxf/reader.h"
#include "kz_tls21an/text.h"

namespace host {
namespace {

std::u16string textOf(Database& drawing, Slot slot, int code, std::u16string_view otherwise) {
    const Tags& tags = drawing.tags(slot);
    const size_t at = findTag(tags, code);
    return at < tags.size() ? tags[at].text(drawing.codec()) : std::u16string(otherwise);
}

double realOf(const Tags& tags, int code, double otherwise) {
    const size_t at = findTag(tags, code);
    return at < tags.size() ? tags[at].real() : otherwise;
}

int64_t integerOf(const Tags& tags, int code, int64_t otherwise) {
    const size_t at = findTag(tags, code);
    return at < tags.size() ? tags[at].integer() : otherwise;
}

/// The axes of an extrusion direction by the arbitrary axis rule of the DXF reference.
void extrusionAxes(const Tags& tags, double axes[3][3]) {
    double z[3] = {realOf(tags, 210, 0.0), realOf(tags, 220, 0.0), realOf(tags, 230, 1.0)};
    const double length = std::hypot(z[0], z[1], z[2]);
    if (length < 1e-12) return;
    for (double& value : z)
        value /= length;
    constexpr double kNearZ = 1.0 / 64.0;
    double x[3] = {-z[1], z[0], 0.0};
    if (std::fabs(z[0]) < kNearZ && std::fabs(z[1]) < kNearZ) {
        x[0] = z[2];
        x[1] = 0.0;
        x[2] = -z[0];
    }
    const double width = std::hypot(x[0], x[1], x[2]);
    for (int i = 0; i < 3; ++i) {
        axes[0][i] = x[i] / width;
        axes[2][i] = z[i];
    }
    for (int i = 0; i < 3; ++i) {
        const int next = (i + 1) % 3, last = (i + 2) % 3;
        axes[1][i] = axes[2][next] * axes[0][last] - axes[2][last] * axes[0][next];
    }
}

/// The placement that an INSERT of a block with this BLOCK gives.
Placement placementOf(const Tags& insert, const Tags& begin) {
    Placement own;
    extrusionAxes(insert, own.axes);
    const double degrees = realOf(insert, 50, 0.0);
    Placement out;
    out.angle = degrees * std::numbers::pi / 180.0;
    const double cosine = std::cos(out.angle), sine = std::sin(out.angle);
    const double scale[3] = {realOf(insert, 41, 1.0), realOf(insert, 42, 1.0),
                             realOf(insert, 43, 1.0)};
    for (int i = 0; i < 3; ++i) {
        out.axes[0][i] = scale[0] * (own.axes[0][i] * cosine + own.axes[1][i] * sine);
        out.axes[1][i] = scale[1] * (own.axes[1][i] * cosine - own.axes[0][i] * sine);
        out.axes[2][i] = scale[2] * own.axes[2][i];
        for (int axis = 0; axis < 3; ++axis) {
            const int code = 10 * (axis + 1);
            out.origin[i] += own.axes[axis][i] * realOf(insert, code, 0.0);
        }
    }
    for (int i = 0; i < 3; ++i) {
        for (int axis = 0; axis < 3; ++axis)
            out.origin[i] -= out.axes[axis][i] * realOf(begin, 10 * (axis + 1), 0.0);
    }
    return out;
}

bool isSpace(std::u16string_view name) {
    const std::u16string upper = kz::toUpper(name.substr(0, 12));
    return upper == u"*MODEL_SPACE" || upper == u"*PAPER_SPACE";
}

bool visitBlock(Database& drawing, const Block& block,
                const std::function<bool(const EntityLook&)>& visit) {
    for (const Slot slot : block.contents) {
        const ObjectRecord& record = drawing.record(slot);
        if (record.erased || record.object_class != ObjectClass::Entity) continue;
        const EntityLook look{drawing.idOf(slot), textOf(drawing, slot, 8, u"0"),
                              static_cast<int>(integerOf(drawing.tags(slot), 62, 256))};
        if (!visit(look)) return false;
    }
    return true;
}

}  // namespace

std::vector<Attachment> attachments(AcDbDatabase* facade) {
    std::vector<Attachment> found;
    Database* drawing = Database::of(facade);
    if (drawing == nullptr) return found;
    for (const Slot record : drawing->blockRecords()) {
        Attachment attachment;
        if (describeAttachment(*drawing, record, attachment)) {
            found.push_back(std::move(attachment));
        }
    }
    return found;
}

AcDbDatabase* attachedDrawing(AcDbObjectId block) {
    Database* drawing = Database::find(block);
    if (drawing == nullptr) return nullptr;
    const Slot record = drawing->slotOf(block);
    DatabaseLinks& links = drawing->links();
    Attachment attachment;
    if (links.unloaded.contains(record) || !describeAttachment(*drawing, record, attachment)) {
        return nullptr;
    }
    const auto present = links.attached.find(record);
    if (present != links.attached.end()) return present->second->facade();
    // An overlay is for the drawing that it was attached to, and not for those above.
    if (attachment.overlay && links.host_drawing != nullptr) return nullptr;
    const std::string file = attachmentFile(*drawing, attachment.path);
    if (file.empty() || leadsBack(drawing, file)) return nullptr;
    std::string error;
    std::unique_ptr<Database> read = dxf::readFile(file, error);
    if (read == nullptr) return nullptr;
    read->links().host_drawing = drawing;
    read->links().host_block = record;
    AcDbDatabase* const facade = read->facade();
    links.attached.emplace(record, std::move(read));
    return facade;
}

bool firstPlacement(AcDbObjectId id, Placement& out) {
    Database* drawing = Database::find(id);
    const Block* block = drawing == nullptr ? nullptr : drawing->findBlock(drawing->slotOf(id));
    const Block* space = drawing == nullptr ? nullptr : drawing->findBlock(drawing->modelSpace());
    if (block == nullptr || space == nullptr || block->begin == kNoSlot) return false;
    const std::u16string name = drawing->symbolName(block->record);
    for (const Slot slot : space->contents) {
        if (drawing->record(slot).erased || drawing->typeName(slot) != "INSERT") continue;
        if (kz::compareNoCase(textOf(*drawing, slot, 2, u""), name) != 0) continue;
        out = placementOf(drawing->tags(slot), drawing->tags(block->begin));
        return true;
    }
    return false;
}

void forEachEntity(AcDbDatabase* facade, const std::function<bool(const EntityLook&)>& visit) {
    Database* drawing = Database::of(facade);
    if (drawing == nullptr) return;
    for (const Slot record : drawing->blockRecords()) {
        if (!isSpace(drawing->symbolName(record))) continue;
        const Block* block = drawing->findBlock(record);
        if (block != nullptr && !visitBlock(*drawing, *block, visit)) return;
    }
}

}  // namespace host
