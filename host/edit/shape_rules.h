/// The parts of one entity.
#ifndef HOST_EDIT_SHAPE_RULES_H
#define HOST_EDIT_SHAPE_RULES_H

#include <string_view>

#include "db/database.h"
#include "edit/shapes.h"

namespace host {

/// Width of a text. Fonts are not read; most letters are about 0.8 of their height wide.
constexpr double textWidth(double letters, double height) {
    return letters * height * 0.8;
}

/// Shows the parts of an entity to a visitor. What it inserts is left to the walker.
class EntityShape {
  public:
    /// @param to  from the coordinates of the entity's block to the visitor's
    EntityShape(Database& database, Slot entity, const AcGeMatrix3d& to, ShapeVisitor& visitor)
        : database_(database), entity_(entity), to_(to), visitor_(visitor) {}

    /// Shows what the entity draws by itself; nothing for a type that is not known.
    void show();

    /// An entity that stands for a block.
    struct Inserted {
        std::u16string name;
        std::vector<AcGeMatrix3d> ways;  ///< from the block to the coordinates of the entity
    };
    /// True for a type of entity that stands for blocks.
    static bool isInserting(std::string_view type);
    /// @return false for one that stands for none
    bool inserts(Inserted& out);

  private:
    const Tags& tags() { return database_.tags(entity_); }
    AcGeMatrix3d entityPlane();
    void curve(Curve curve, CurveRole role, const AcGeMatrix3d& plane = {});
    void mark(MarkKind kind, const AcGePoint3d& point, const AcGeMatrix3d& plane = {});
    void path(const std::vector<AcGePoint3d>& points, bool closed, CurveRole role,
              const AcGeMatrix3d& plane = {});

    void line();
    void circle();
    void arc();
    void ellipse();
    void lightPolyline();
    void polyline();
    void mesh(const std::vector<AcGePoint3d>& points);
    void faces(const std::vector<Slot>& vertices);
    void point();
    void insertion();
    void text();
    void paragraph();
    void spline();
    void solid();
    void face();
    void leader();
    void multiline();
    void endless();
    void viewport();
    void image();
    void hatch();

    struct Row;
    static const Row kRows[];

    Database& database_;
    Slot entity_;
    AcGeMatrix3d to_;
    ShapeVisitor& visitor_;
};

}  // namespace host

#endif
