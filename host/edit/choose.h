/// Choosing objects: by names, by place, or as the user answers at "Select objects: ".
#ifndef HOST_EDIT_CHOOSE_H
#define HOST_EDIT_CHOOSE_H

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "edit/select_filter.h"
#include "edit/select_region.h"
#include "edit/selection.h"

namespace host {

/// What a choice takes.
struct ChooseRules {
    const SelectFilter* filter = nullptr;  ///< NULL: everything
    bool single = false;                   ///< the first choice ends it
    bool everything = false;               ///< a point takes all that is under the pick box
    bool no_locked = false;                ///< what is on locked layers is left out
    bool nested = false;                   ///< points look for objects in blocks
    bool duplicates = false;               ///< objects may be selected more than once
};

/// One choice. Points are in the user coordinate system.
class Choice {
  public:
    Choice(Database& database, const ChooseRules& rules) : database_(database), rules_(rules) {}

    void addWindow(const AcGePoint3d& corner, const AcGePoint3d& opposite, ScreenRegion::Kind kind);
    /// A polygon or a fence. @return a sentence for one that is none
    Refusal addPath(const std::vector<AcGePoint3d>& points, ScreenRegion::Kind kind);
    /// What is seen at a point. @return false when nothing is
    bool addPoint(const AcGePoint3d& point);
    /// All entities of the current space that are not on frozen layers.
    void addAll();
    /// The entity of the current space drawn last that is seen.
    void addLast();
    /// Living entities of this drawing; others are passed over.
    void addIds(const std::vector<AcDbObjectId>& ids);
    void addName(const ads_name entity);
    void addSet(const ads_name set);
    /// Members of a group. @return false when there is none of this name
    bool addGroup(std::u16string_view name);

    Selection& selection() { return selection_; }
    size_t found() const { return found_; }        ///< before anything was left out
    size_t filtered() const { return filtered_; }  ///< left out by the filter
    size_t locked() const { return locked_; }      ///< left out for their layer

  private:
    void add(Slot entity, uint32_t how = 0);
    void addLocated(const std::vector<Located>& located, ChosenBy by, size_t polygon,
                    const AcGePoint3d* picked);
    std::vector<Located> search(const ScreenRegion& region) const;
    size_t notePolygon(const std::vector<AcGePoint2d>& corners, double depth);

    Database& database_;
    ChooseRules rules_;
    Selection selection_;
    size_t found_ = 0;
    size_t filtered_ = 0;
    size_t locked_ = 0;
};

/// Asks "Select objects: " until Enter. What was chosen before the question, by acedSSSetFirst,
/// answers it. Becomes the previous choice.
/// @param say  shows how many were found
/// @return RTNORM, also when nothing was chosen; RTCAN, `out` is then as it was
int chooseObjects(Database& database, const ChooseRules& rules, std::u16string_view prompt,
                  const std::function<void(std::u16string_view)>& say, Selection& out);
/// Asks for one object until there is one. @return RTNORM, RTNONE for Enter, RTCAN
int chooseObject(Database& database, std::u16string_view prompt,
                 const std::function<void(std::u16string_view)>& say, AcDbObjectId& out);

}  // namespace host

#endif
