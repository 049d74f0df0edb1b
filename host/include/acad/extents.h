/// Boxes around what is drawn.
#ifndef ACAD_EXTENTS_H
#define ACAD_EXTENTS_H

#include "acad/ge.h"

/// A box along the axes. It begins empty, with its least corner above its greatest one.
class ACAD_API AcDbExtents {
  public:
    AcDbExtents() = default;
    AcDbExtents(const AcGePoint3d& least, const AcGePoint3d& greatest)
        : least_(least), greatest_(greatest) {}

    const AcGePoint3d& minPoint() const { return least_; }
    const AcGePoint3d& maxPoint() const { return greatest_; }
    void set(const AcGePoint3d& least, const AcGePoint3d& greatest) {
        least_ = least;
        greatest_ = greatest;
    }
    bool isEmpty() const {
        return least_.x > greatest_.x || least_.y > greatest_.y || least_.z > greatest_.z;
    }
    void addPoint(const AcGePoint3d& point);
    /// The union; an empty box adds nothing.
    void addExt(const AcDbExtents& other);
    /// The box around the transformed box. An empty one stays empty.
    void transformBy(const AcGeMatrix3d& matrix);
    bool contains(const AcDbExtents& other) const;

  private:
    AcGePoint3d least_{1e20, 1e20, 1e20};
    AcGePoint3d greatest_{-1e20, -1e20, -1e20};
};

#endif
