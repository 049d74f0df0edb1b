/// The way of an object's data from its own drawing into the current one.
#ifndef SRC_CAD_ATTACHED_POINTS_H
#define SRC_CAD_ATTACHED_POINTS_H

#include "kz/kz_objprops.h"

namespace kz {

/// How the points of an object's data become those of the current drawing.
class DrawingTransform {
  public:
    explicit DrawingTransform(const kz_CADObjId* id);
    /// False when the points stay as they are.
    bool moves() const { return moves_; }
    const kz_Point* origin() const { return &origin_; }
    const kz_RotMatrix* rotation() const { return &rotation_; }
    /// All types of points.
    static const kz_Char* letters() { return KZ_T("PMDO"); }

  private:
    bool moves_ = false;
    kz_Point origin_ = {};
    kz_RotMatrix rotation_ = {};
};

}  // namespace kz

#endif
