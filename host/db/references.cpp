/// Attached drawings: blocks that stand for another file, the drawings read for them, where they
/// are placed; and the walk over a drawing's entities.
#include <numbers>

#include "db/attach.h"
#include "db/entity_content.h"
#include "edit/tag_values.h"
#include "kz_tls21an/text.h"

namespace host {
namespace {

std::u16string textOf(Database& drawing, Slot slot, int code, std::u16string_view otherwise) {
    const Tags& tags = drawing.tags(slot);
    const size_t at = findTag(tags, code);
    return at < tags.size() ? tags[at].text(drawing.codec()) : std::u16string(otherwise);
}

/// The placement that an INSERT of a block with this base point gives.
Placement placementOf(const Tags& insert, const AcGePoint3d& base) {
    AcGePoint3d origin;
    AcGeVector3d axes[3];
    insertTransform(insert, base).getCoordSystem(origin, axes[0], axes[1], axes[2]);
    Placement out;
    out.angle = realOf(insert, 50, 0.0) * std::numbers::pi / 180.0;
    for (unsigned int i = 0; i < 3; ++i) {
        out.origin[i] = origin[i];
        for (unsigned int axis = 0; axis < 3; ++axis)
            out.axes[axis][i] = axes[axis][i];
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
    Database* const attached =
        drawing == nullptr ? nullptr : attachedDatabase(*drawing, drawing->slotOf(block));
    return attached == nullptr ? nullptr : attached->facade();
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
        out = placementOf(drawing->tags(slot), pointOf(drawing->tags(block->begin), 10));
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
