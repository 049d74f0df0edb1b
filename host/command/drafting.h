/// What commands share that draw: points of the user coordinate system in the form that entities
/// keep, the current settings, and values as prompts show them.
#ifndef HOST_COMMAND_DRAFTING_H
#define HOST_COMMAND_DRAFTING_H

#include <string>
#include <string_view>

#include "acad/ge.h"
#include "command/command.h"
#include "db/database.h"
#include "edit/shapes.h"

namespace host {

/// Groups of a new entity behind those that all entities have, in file order.
class NewGroups {
  public:
    NewGroups& mark(std::u16string_view class_name);
    NewGroups& point(int code, const AcGePoint3d& point);
    NewGroups& flatPoint(int code, const AcGePoint3d& point);  ///< without z
    NewGroups& vector(int code, const AcGeVector3d& vector);
    NewGroups& real(int code, double value);
    NewGroups& integer(int code, int64_t value);
    NewGroups& text(int code, std::u16string_view value);
    Tags take() { return std::move(tags_); }
    bool has(int code) const { return findTag(tags_, code) < tags_.size(); }

  private:
    Tags tags_;
};

/// Draws in the space that is worked in, in the coordinate system that is current when it is made.
class Drafting {
  public:
    explicit Drafting(const CommandPrompt& prompt);

    Database& drawing() const { return drawing_; }
    /// Record of the space that is worked in.
    Slot space() const { return currentSpace(drawing_); }

    /// A point or a way of the UCS in the world.
    AcGePoint3d world(const AcGePoint3d& point) const { return to_world_ * point; }
    AcGeVector3d world(const AcGeVector3d& way) const { return to_world_ * way; }
    const AcGeMatrix3d& toWorld() const { return to_world_; }
    /// A point of the UCS in the system of flat entities that lie in its x-y plane.
    AcGePoint3d flat(const AcGePoint3d& point) const { return to_flat_ * point; }
    /// A direction of the UCS [radians] in that system [degrees].
    double flatAngle(double radians) const;
    const AcGeVector3d& normal() const { return normal_; }

    /// The current thickness and the extrusion direction, where they are not the usual ones.
    void thicken(NewGroups& groups) const;
    void direct(NewGroups& groups) const;

    /// A new entity with the current settings at the end of the space.
    Slot add(std::string_view type, NewGroups& groups) const;
    Slot add(std::string_view type, NewGroups&& groups) const { return add(type, groups); }
    /// Takes one away that the command has just drawn.
    void takeBack(Slot slot) const { drawing_.setErased(slot, true); }

    /// The groups that all entities have, from the current settings.
    Tags common(std::string_view type) const;

  private:
    Database& drawing_;
    AcGeMatrix3d to_world_;
    AcGeMatrix3d to_flat_;
    AcGeVector3d normal_;
};

/// Points of prompts as geometry, and back.
inline AcGePoint3d toPoint(const ads_point point) {
    return {point[0], point[1], point[2]};
}
/// A point that is a prompt's base.
class BasePoint {
  public:
    explicit BasePoint(const AcGePoint3d& point) : values_{point.x, point.y, point.z} {}
    operator const double*() const { return values_; }

  private:
    ads_point values_;
};

/// Values as prompts show them, in the drawing's units.
std::u16string shown(double distance);
std::u16string shownAngle(double radians);
std::u16string shown(const AcGePoint3d& point);

/// Asks for a point where Enter is no answer.
AcGePoint3d askPoint(CommandPrompt& prompt, std::u16string_view text);
AcGePoint3d askPoint(CommandPrompt& prompt, std::u16string_view text, const AcGePoint3d& base);
/// Asks for a name, which may hold blanks and stand in quotes; an empty one for Enter.
std::u16string askName(CommandPrompt& prompt, std::u16string_view text);

}  // namespace host

#endif
