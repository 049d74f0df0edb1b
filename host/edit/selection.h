/// What a selection is made of: members in the order of choosing, and how each was chosen. Sets,
/// prompts and the previous choice are selections.
#ifndef HOST_EDIT_SELECTION_H
#define HOST_EDIT_SELECTION_H

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "acad/db.h"
#include "db/database.h"

namespace host {

/// How members were chosen, by the numbers that acedSSNameX gives.
enum class ChosenBy : int16_t { Other = 0, Pick = 1, Window = 2, Crossing = 3, Fence = 4 };

struct HowChosen {
    ChosenBy by = ChosenBy::Other;
    size_t polygon = 0;                             ///< of a window: index of its corners
    std::vector<AcGePoint3d> points;                ///< of a pick, or where a fence crosses; WCS
    AcGeVector3d direction = AcGeVector3d::kZAxis;  ///< of a pick: toward the viewer
    /// Of an object in a block: from the member inward to it.
    std::vector<AcDbObjectId> path;
};

class Selection {
  public:
    size_t size() const { return members_.size() - holes_; }
    bool empty() const { return size() == 0; }
    bool has(AcDbObjectId id) const { return places_.count(id.asOldId()) != 0; }

    /// Adds a member that is none yet. @param how  index from addHow
    /// @return false for one that is there already
    bool add(AcDbObjectId id, uint32_t how = 0);
    /// Adds one also when it is there already, as another member.
    void addAgain(AcDbObjectId id, uint32_t how);
    /// Takes the first member with this id out. @return false when there is none
    bool remove(AcDbObjectId id);
    /// Member by its place. Indexes count from 0.
    AcDbObjectId at(size_t index);
    std::vector<AcDbObjectId> ids();
    /// Takes all members out; the notes stay.
    void clearMembers();
    const HowChosen& howAt(size_t index);
    uint32_t howIndexAt(size_t index);

    /// Notes a way of choosing for members to come; 0 is one that nobody knows.
    uint32_t addHow(HowChosen how);
    const HowChosen& how(uint32_t index) const { return hows_[index]; }
    /// Notes the corners of a window [WCS].
    size_t addPolygon(std::vector<AcGePoint3d> corners);
    const std::vector<std::vector<AcGePoint3d>>& polygons() const { return polygons_; }
    size_t howCount() const { return hows_.size(); }

  private:
    /// Closes the holes, so that indexes count members; done only when somebody asks by index.
    void pack();

    std::vector<AcDbObjectId> members_;  ///< null where one was taken out
    std::vector<uint32_t> member_hows_;  ///< as long as members_, or empty while all are 0
    std::unordered_map<uint64_t, size_t> places_;
    std::vector<HowChosen> hows_ = std::vector<HowChosen>(1);
    std::vector<std::vector<AcGePoint3d>> polygons_;
    size_t holes_ = 0;
    bool duplicates_ = false;
};

/// Takes the notes of one selection over into another.
class SelectionMap {
  public:
    SelectionMap(const Selection& from, Selection& to);
    /// The place that a note of the first has in the second.
    uint32_t how(uint32_t index) const { return index == 0 ? 0 : index + shift_; }

  private:
    uint32_t shift_;
};

/// Id of a main entity that a set can hold; null for any other name.
AcDbObjectId memberId(const ads_name entity);
/// Makes a selection a set of the platform. @return false when no set is left
bool makeSelectionSet(Selection selection, ads_name set);
/// The selection of a set, to be changed or read while the set lives; NULL for no set.
Selection* selectionOf(const ads_name set);

/// What acedSSNameX tells of members: a list of a list for each, then one for each window that they
/// were chosen by. @return NULL without memory; caller releases
resbuf* choiceChain(Selection& selection, size_t begin, size_t end);

}  // namespace host

#endif
