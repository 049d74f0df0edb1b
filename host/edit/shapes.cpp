/// The walk over entities and the blocks that they insert, and the boxes around what is drawn.
#include "edit/shapes.h"

#include <algorithm>
#include <utility>

#include "db/attach.h"
#include "edit/drawing_state.h"
#include "edit/entity_system.h"
#include "edit/shape_rules.h"
#include "edit/tag_values.h"
#include "kz_tls21an/text.h"

namespace host {
namespace {

/// Blocks in blocks deeper than this are not looked into.
constexpr size_t kDeepest = 64;

class BoxVisitor : public ShapeVisitor {
  public:
    void curve(const Curve& curve, CurveRole role) override {
        if (role != CurveRole::Endless || reach) box.addExt(curve.extents());
    }
    void mark(MarkKind kind, const AcGePoint3d& point) override {
        if (kind == MarkKind::Node || reach) box.addPoint(point);
    }
    /// The exact contents, as far as they can widen the box; the box of what is deep inside.
    bool enters(const AcDbExtents& inserted, int depth) override {
        if (box.contains(inserted)) return false;
        constexpr int kExactDepth = 3;
        if (depth < kExactDepth && exact) return true;
        box.addExt(inserted);
        return false;
    }

    AcDbExtents box;
    bool exact = true;
    bool reach = false;  ///< all that is there counts, not only what is drawn
};

}  // namespace

ShapeWalker::ShapeWalker(Database& database, const ShapeWalker& outer, std::u16string prefix)
    : database_(database),
      with_layers_off_(outer.with_layers_off_),
      outer_(&outer),
      prefix_(std::move(prefix)) {}

bool ShapeWalker::isAttachment(Slot block) {
    constexpr int64_t kAttachedOrOverlay = 4 | 8;
    const Block* found = database_.findBlock(block);
    return found != nullptr && found->begin != kNoSlot &&
           (integerOf(database_.tags(found->begin), 70, 0) & kAttachedOrOverlay) != 0;
}

ShapeWalker* ShapeWalker::attachedWalker(Slot block) {
    const auto [found, made] = attached_.try_emplace(block);
    Database* const drawing = made ? attachedDatabase(database_, block) : nullptr;
    if (drawing != nullptr) {
        found->second.reset(new ShapeWalker(*drawing, *this, database_.symbolName(block) + u"|"));
    }
    return found->second.get();
}

bool ShapeWalker::isOpen(Slot block) const {
    return std::find(open_.begin(), open_.end(), block) != open_.end();
}

ShapeWalker::Layer ShapeWalker::layerNamed(std::u16string name) {
    Layer layer{std::move(name), false, false, false};
    // The outermost drawing that knows the layer says how it is.
    Database* holder = &database_;
    Slot record = database_.findSymbol("LAYER", layer.name);
    for (const ShapeWalker* walker = this; walker->outer_ != nullptr; walker = walker->outer_) {
        Database& outer = walker->outer_->database_;
        const Slot dependent = outer.findSymbol("LAYER", prefix_ + layer.name);
        if (dependent == kNoSlot) continue;
        holder = &outer;
        record = dependent;
    }
    if (record == kNoSlot) return layer;
    constexpr int64_t kFrozen = 1;
    const Tags& tags = holder->tags(record);
    layer.known = true;
    layer.frozen = (integerOf(tags, 70, 0) & kFrozen) != 0;
    layer.off = integerOf(tags, 62, 7) < 0;
    return layer;
}

const ShapeWalker::Layer& ShapeWalker::layerOf(Slot entity) {
    const Tags& tags = database_.tags(entity);
    const size_t at = findTag(tags, 8);
    std::u16string name = at < tags.size() ? tags[at].text(database_.codec()) : u"0";
    // What stands on layer 0 of a block is where the insertion is.
    if (name == u"0" && !layers_.empty() && layers_.back().known) return layers_.back();
    if (name != last_layer_.name) last_layer_ = layerNamed(std::move(name));
    return last_layer_;
}

bool ShapeWalker::isVisible(Slot entity, const Layer& layer) {
    if (measuring_) return true;
    if (integerOf(database_.tags(entity), 60, 0) != 0 || layer.frozen) return false;
    // An insertion on a layer that is off shows what its block has on other layers.
    return !layer.off || with_layers_off_ || database_.typeName(entity) == "INSERT";
}

void ShapeWalker::visit(Slot entity, const AcGeMatrix3d& to, ShapeVisitor& visitor) {
    if (database_.record(entity).erased) return;
    const Layer layer = layerOf(entity);
    if (!isVisible(entity, layer)) return;
    visitor.begin(entity);
    EntityShape shape(database_, entity, to, visitor);
    shape.show();
    EntityShape::Inserted inserted;
    if (shape.inserts(inserted)) {
        layers_.push_back(layer);
        for (const AcGeMatrix3d& way : inserted.ways)
            visitInserted(inserted.name, to * way, visitor);
        layers_.pop_back();
    }
    visitAttributes(entity, to, visitor);
    visitor.end(entity);
}

void ShapeWalker::visitAttributes(Slot main, const AcGeMatrix3d& to, ShapeVisitor& visitor) {
    if (database_.typeName(main) != "INSERT") return;
    constexpr int64_t kInvisible = 1;
    for (const Slot attribute : subEntities(database_, main, "ATTRIB")) {
        if ((integerOf(database_.tags(attribute), 70, 0) & kInvisible) != 0) continue;
        visit(attribute, to, visitor);
    }
}

void ShapeWalker::visitInserted(std::u16string_view name, const AcGeMatrix3d& to,
                                ShapeVisitor& visitor) {
    const Slot block = database_.findSymbol("BLOCK_RECORD", name);
    if (block == kNoSlot || isOpen(block) || outer_depth_ + open_.size() > kDeepest) return;
    ShapeWalker* const walker = isAttachment(block) ? attachedWalker(block) : this;
    if (walker == nullptr) return;
    const Slot contents = walker == this ? block : walker->database_.modelSpace();
    std::vector<Slot> chosen;
    const bool some = walker != this && visitor.chooses(walker->database_, to, chosen);
    if (!some) {
        AcDbExtents box = walker->boxOf(contents);
        box.transformBy(to);
        if (box.isEmpty() || !visitor.enters(box, static_cast<int>(depth()))) return;
    }
    if (walker != this) {
        walker->layers_ = {layers_.back()};
        walker->outer_depth_ = depth();
    }
    visitor.enterBlock(walker->database_, to);
    if (some) {
        walker->visitContents(contents, chosen, to, visitor);
    } else {
        walker->visitBlock(contents, to, visitor);
    }
    visitor.leaveBlock();
}

void ShapeWalker::visitBlock(Slot block, const AcGeMatrix3d& to, ShapeVisitor& visitor) {
    const Block* contents = database_.findBlock(block);
    if (contents != nullptr) visitContents(block, contents->contents, to, visitor);
}

void ShapeWalker::visitContents(Slot block, const std::vector<Slot>& contents,
                                const AcGeMatrix3d& to, ShapeVisitor& visitor) {
    open_.push_back(block);
    for (const Slot slot : contents) {
        if (database_.record(slot).object_class != ObjectClass::Entity) continue;
        // An attribute's definition shows through the attributes of the insertions.
        if (!layers_.empty() && database_.typeName(slot) == "ATTDEF") continue;
        visit(slot, to, visitor);
    }
    open_.pop_back();
}

const AcDbExtents& ShapeWalker::boxOf(Slot block) {
    const auto [found, made] = boxes_.try_emplace(block);
    if (!made) return found->second;  // empty while it is being measured
    AcDbExtents& box = found->second;
    const bool outer = std::exchange(measuring_, true);
    BoxVisitor visitor;
    visitor.exact = false;
    layers_.emplace_back();
    visitBlock(block, {}, visitor);
    layers_.pop_back();
    measuring_ = outer;
    box = visitor.box;
    return box;
}

bool ShapeWalker::inserts(Slot entity) const {
    return EntityShape::isInserting(database_.typeName(entity));
}

AcDbExtents ShapeWalker::reachOf(Slot entity) {
    const bool outer = std::exchange(measuring_, true);
    BoxVisitor visitor;
    visitor.exact = false;
    visitor.reach = true;
    visit(entity, {}, visitor);
    measuring_ = outer;
    return visitor.box;
}

AcDbExtents entityExtents(Database& database, Slot entity) {
    BoxVisitor visitor;
    ShapeWalker(database, true).visit(entity, {}, visitor);
    return visitor.box;
}

AcDbExtents drawnExtents(Database& database, Slot space, const AcGeMatrix3d& to) {
    BoxVisitor visitor;
    ShapeWalker(database, true).visitBlock(space, to, visitor);
    return visitor.box;
}

Slot currentSpace(Database& database) {
    return inPaperSpace(database) ? database.paperSpace() : database.modelSpace();
}

}  // namespace host
