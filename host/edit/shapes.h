/// What entities look like: the curves and marked points of an entity, blocks that it inserts
/// resolved, in the coordinates that the caller wants. Snapping, extents, selection by place and
/// plotting stand on this.
#ifndef HOST_EDIT_SHAPES_H
#define HOST_EDIT_SHAPES_H

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "db/database.h"
#include "geom/curve.h"

namespace host {

/// What a curve is to its entity.
enum class CurveRole {
    Drawn,        ///< the curve itself
    Approximate,  ///< a straight part of a curve that has no better form here
    Frame,        ///< around what has no curves: a text, an image
    Endless       ///< part of a line without ends
};

enum class MarkKind {
    Node,       ///< a point
    Insertion,  ///< where a block or a text is put
    End         ///< of a curve that comes in approximate parts
};

/// Gets the parts of what a walk meets.
class ShapeVisitor {
  public:
    virtual ~ShapeVisitor() = default;
    virtual void curve(const Curve& curve, CurveRole role) = 0;
    virtual void mark(MarkKind, const AcGePoint3d&) {}
    /// An entity begins and ends, also each one in a block; its parts come in between.
    virtual void begin(Slot) {}
    virtual void end(Slot) {}
    /// Whether to look into an insertion whose contents lie in this box. @param depth  0 for one
    /// that is in no block itself
    virtual bool enters(const AcDbExtents& box, int depth) {
        (void)box;
        (void)depth;
        return true;
    }
    /// What the insertion that has begun last puts there begins and ends: a block of a drawing, or
    /// an attached drawing. @param to  from its coordinates to the visitor's
    virtual void enterBlock(Database&, const AcGeMatrix3d& to) { (void)to; }
    virtual void leaveBlock() {}
    /// Gives the entities of an attached drawing that are to be visited, in drawing order, where
    /// that is known without a walk over all of them. Nothing is asked of `enters` then.
    /// @return false: all of them, if `enters` says so
    virtual bool chooses(Database&, const AcGeMatrix3d& to, std::vector<Slot>& chosen) {
        (void)to;
        (void)chosen;
        return false;
    }
};

/// Walks over entities of one drawing that does not change meanwhile, and of those attached to it.
/// What is invisible, on a frozen layer or, if wanted, on one that is off is left out. The layers
/// of an attached drawing have the state that the drawing gives them under NAME|LAYER.
class ShapeWalker {
  public:
    explicit ShapeWalker(Database& database, bool with_layers_off = false)
        : database_(database), with_layers_off_(with_layers_off) {}

    /// Visits one entity. @param to  from the coordinates of its block to the visitor's
    void visit(Slot entity, const AcGeMatrix3d& to, ShapeVisitor& visitor);
    /// Visits the main entities of a block in drawing order.
    void visitBlock(Slot block, const AcGeMatrix3d& to, ShapeVisitor& visitor);
    /// A box in the coordinates of its block that nothing which an entity shows, or could show,
    /// reaches out of: hidden parts and lines without ends count, blocks with their boxes.
    AcDbExtents reachOf(Slot entity);
    /// True for an entity that is visible on its layer, whether or not it is erased.
    bool shows(Slot entity) { return isVisible(entity, layerOf(entity)); }
    /// True for an entity that stands for a block.
    bool inserts(Slot entity) const;

  private:
    /// Of a drawing attached to the one that `outer` walks over.
    ShapeWalker(Database& database, const ShapeWalker& outer, std::u16string prefix);

    /// What a layer's state does to its entities.
    struct Layer {
        std::u16string name;
        bool known = false;
        bool frozen = false;
        bool off = false;
    };
    Layer layerNamed(std::u16string name);
    /// The layer whose state counts for an entity.
    const Layer& layerOf(Slot entity);
    bool isVisible(Slot entity, const Layer& layer);
    /// Visits main entities of a block.
    void visitContents(Slot block, const std::vector<Slot>& contents, const AcGeMatrix3d& to,
                       ShapeVisitor& visitor);
    void visitAttributes(Slot main, const AcGeMatrix3d& to, ShapeVisitor& visitor);
    void visitInserted(std::u16string_view name, const AcGeMatrix3d& to, ShapeVisitor& visitor);
    /// Box around a block's contents, in its own coordinates; hidden ones count.
    const AcDbExtents& boxOf(Slot block);
    bool isOpen(Slot block) const;
    /// True for a block that stands for another drawing.
    bool isAttachment(Slot block);
    /// The walk over the drawing that such a block stands for; NULL when there is none.
    ShapeWalker* attachedWalker(Slot block);
    /// Insertions around the present one, in the outer drawings too.
    size_t depth() const { return outer_depth_ + layers_.size() - 1; }

    Database& database_;
    bool with_layers_off_;
    bool measuring_ = false;
    std::vector<Slot> open_;     ///< blocks that are being visited, outermost first
    std::vector<Layer> layers_;  ///< of the insertions that they are visited for
    Layer last_layer_;           ///< most entities are on the layer of the one before
    std::unordered_map<Slot, AcDbExtents> boxes_;
    const ShapeWalker* outer_ = nullptr;
    std::u16string prefix_;  ///< of its layers in the outer drawings: "NAME|"
    size_t outer_depth_ = 0;
    std::unordered_map<Slot, std::unique_ptr<ShapeWalker>> attached_;
};

/// Box around one entity, with all that it inserts; empty for one that shows nothing.
AcDbExtents entityExtents(Database& database, Slot entity);
/// Box around what is drawn in a space, on layers that are not frozen. @param to  from the world to
/// the coordinates of the box
AcDbExtents drawnExtents(Database& database, Slot space, const AcGeMatrix3d& to = {});
/// The block of the space that is worked in.
Slot currentSpace(Database& database);

}  // namespace host

#endif
