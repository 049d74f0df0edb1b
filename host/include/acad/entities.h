/// Graphical objects: what all entities have in common, and the types that callers tell apart by
/// class. Points and vectors are those of the world, also where the drawing keeps them in the plane
/// of the entity.
///
/// An entity that a caller made has its properties before it is in a drawing, too; names of layers
/// and line types are then looked up in the working database.
#ifndef ACAD_ENTITIES_H
#define ACAD_ENTITIES_H

#include <memory>
#include <vector>

#include "acad/db.h"
#include "acad/ge.h"

namespace host {
class Tag;
struct EntityContent;
}  // namespace host

namespace AcDb {
enum Visibility { kVisible = 0, kInvisible = 1 };
}

/// Any graphical object. Reading wants it open for read or write, and gives the value of a plain
/// new entity otherwise. Changes want it open for write and give eNotOpenForWrite otherwise; with
/// `doSubents` they reach the vertices or attributes behind it too.
class ACAD_API AcDbEntity : public AcDbObject {
  public:
    ~AcDbEntity() override;
    /// The object as an entity; NULL when it is none.
    static AcDbEntity* cast(AcDbObject* object) { return dynamic_cast<AcDbEntity*>(object); }

    AcDb::Visibility visibility() const;
    Acad::ErrorStatus setVisibility(AcDb::Visibility visibility, bool doSubents = true);
    /// 0 by block, 1 to 255, 256 by layer.
    uint16_t colorIndex() const;
    /// Takes the place of a true colour, too. @return eInvalidIndex above 256
    Acad::ErrorStatus setColorIndex(uint16_t index, bool doSubents = true);
    /// Name of the layer, a heap copy that the caller frees. @return NULL for an entity that is not
    /// open, and without memory
    ACHAR* layer() const;
    /// @return eInvalidInput for NULL, eKeyNotFound for a layer that the drawing doesn't have
    Acad::ErrorStatus setLayer(const ACHAR* name, bool doSubents = true);
    /// Name of the line type, as layer().
    ACHAR* linetype() const;
    /// @return eInvalidInput for NULL, eKeyNotFound for a line type that the drawing doesn't have;
    /// "ByLayer" and "ByBlock" it always has
    Acad::ErrorStatus setLinetype(const ACHAR* name, bool doSubents = true);
    double linetypeScale() const;
    /// @return eInvalidInput for 0 and for what is no number
    Acad::ErrorStatus setLinetypeScale(double scale, bool doSubents = true);

    /// Shows the whole entity highlighted, or ends that. The drawing doesn't change by it. @return
    /// eNoDatabase for an entity in no drawing, eNotOpenForRead, eWasErased
    Acad::ErrorStatus highlight() const;
    Acad::ErrorStatus unhighlight() const;

    /// Moves, turns, scales or mirrors the entity with what belongs to it. @return
    /// eCannotScaleNonUniformly for a matrix that an entity of this type can't take,
    /// eNotApplicable for a type whose shape isn't known, eNoDatabase for an entity in no drawing;
    /// nothing has changed then
    Acad::ErrorStatus transformBy(const AcGeMatrix3d& matrix);

  protected:
    friend class host::Database;
    AcDbEntity();

    /// The groups of the entity, of one that is not open none.
    const std::vector<host::Tag>& groups() const;
    /// Changes the groups of this entity alone by `change`, a function on them.
    template <class Change>
    Acad::ErrorStatus changeGroups(Change change);
    Acad::ErrorStatus setReal(int code, double value);
    Acad::ErrorStatus setPoint(int code, const AcGePoint3d& point);
    /// The direction that the entity's plane faces, and a point that is kept in this plane.
    AcGeVector3d facing() const;
    void setFacing(const AcGeVector3d& direction);
    AcGePoint3d planePoint(int code) const;
    Acad::ErrorStatus setPlanePoint(int code, const AcGePoint3d& point);

  private:
    friend class AcDbBlockTableRecord;
    /// What a new entity of the class begins with. @return false for a class that callers don't
    /// make
    virtual bool begin(host::EntityContent& out) const;
    Acad::ErrorStatus checkWritable() const;
    host::EntityContent& content() const;
    ACHAR* nameIn(int code, const ACHAR* otherwise) const;
    Acad::ErrorStatus showHighlighted(bool on) const;
    Acad::ErrorStatus setCommon(int code, const host::Tag* value, bool doSubents);

    mutable std::unique_ptr<host::EntityContent> content_;  ///< of one outside of a drawing
};

/// A polyline of vertices in one plane, each an object of its own. The ones without such vertices
/// (LWPOLYLINE) are of another class, which has no widths here.
class ACAD_API AcDb2dPolyline : public AcDbEntity {
  public:
    static AcDb2dPolyline* cast(AcDbObject* object) {
        return dynamic_cast<AcDb2dPolyline*>(object);
    }
    /// Widths of the vertices that don't say their own.
    double defaultStartWidth() const;
    double defaultEndWidth() const;
    /// @return eInvalidInput for a negative width
    Acad::ErrorStatus setDefaultStartWidth(double width);
    Acad::ErrorStatus setDefaultEndWidth(double width);

  private:
    friend class host::Database;
    AcDb2dPolyline() = default;
};

/// A polyline of vertices in space.
class ACAD_API AcDb3dPolyline : public AcDbEntity {
  public:
    static AcDb3dPolyline* cast(AcDbObject* object) {
        return dynamic_cast<AcDb3dPolyline*>(object);
    }

  private:
    friend class host::Database;
    AcDb3dPolyline() = default;
};

class ACAD_API AcDbPoint : public AcDbEntity {
  public:
    /// A new point, at the origin unless a place is given.
    AcDbPoint();
    explicit AcDbPoint(const AcGePoint3d& position);
    static AcDbPoint* cast(AcDbObject* object) { return dynamic_cast<AcDbPoint*>(object); }
    AcGePoint3d position() const;
    Acad::ErrorStatus setPosition(const AcGePoint3d& position);

  private:
    bool begin(host::EntityContent& out) const override;
};

class ACAD_API AcDbCircle : public AcDbEntity {
  public:
    /// A new circle, of radius 1 around the origin unless another is given.
    AcDbCircle();
    AcDbCircle(const AcGePoint3d& center, const AcGeVector3d& normal, double radius);
    static AcDbCircle* cast(AcDbObject* object) { return dynamic_cast<AcDbCircle*>(object); }
    AcGePoint3d center() const;
    double radius() const;
    AcGeVector3d normal() const { return facing(); }
    Acad::ErrorStatus setCenter(const AcGePoint3d& center);
    /// @return eInvalidInput for a radius that isn't above 0
    Acad::ErrorStatus setRadius(double radius);

  private:
    bool begin(host::EntityContent& out) const override;
};

/// A whole ellipse, or an arc of one.
class ACAD_API AcDbEllipse : public AcDbEntity {
  public:
    /// A new ellipse: around the origin, with half axes of 1 along x and y, unless another is
    /// given by the half of its major axis and the ratio of the minor one to it.
    AcDbEllipse();
    AcDbEllipse(const AcGePoint3d& center, const AcGeVector3d& normal,
                const AcGeVector3d& majorAxis, double radiusRatio);
    static AcDbEllipse* cast(AcDbObject* object) { return dynamic_cast<AcDbEllipse*>(object); }
    AcGePoint3d center() const;
    /// Half of the major axis.
    AcGeVector3d majorAxis() const;
    double radiusRatio() const;
    AcGeVector3d normal() const { return facing(); }

  private:
    bool begin(host::EntityContent& out) const override;
};

/// A block in its place. Some stand for a whole attached drawing.
class ACAD_API AcDbBlockReference : public AcDbEntity {
  public:
    /// A new reference; it needs a block before it can go into a drawing.
    AcDbBlockReference();
    AcDbBlockReference(const AcGePoint3d& position, AcDbObjectId block);
    static AcDbBlockReference* cast(AcDbObject* object) {
        return dynamic_cast<AcDbBlockReference*>(object);
    }

    /// The record of the block; null when the drawing has none of that name.
    AcDbObjectId blockTableRecord() const;
    /// @return eInvalidInput for what is no block, or one of another drawing than the reference
    Acad::ErrorStatus setBlockTableRecord(AcDbObjectId block);
    /// Where the base point of the block lies.
    AcGePoint3d position() const;
    Acad::ErrorStatus setPosition(const AcGePoint3d& position);
    /// The turn in the plane of the reference [radians].
    double rotation() const;
    Acad::ErrorStatus setRotation(double angle);
    AcGeVector3d normal() const { return facing(); }
    /// From the coordinates of the block to those of the drawing.
    AcGeMatrix3d blockTransform() const;
    /// Places the reference so that `matrix` is its transformation. Attributes stay where they are.
    /// @return eCannotScaleNonUniformly for a matrix whose axes don't stand at right angles or of
    /// which one has no length; nothing has changed then
    Acad::ErrorStatus setBlockTransform(const AcGeMatrix3d& matrix);

  private:
    bool begin(host::EntityContent& out) const override;
    AcGePoint3d basePoint() const;
};

#endif
