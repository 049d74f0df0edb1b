/// What must hold between groups, their entities and each other, checked on what was read of a
/// drawing, and mended where the drawing itself tells how. docs/formats/groups.md has the rules.
#ifndef CONSOLE_GROUP_CHECK_H
#define CONSOLE_GROUP_CHECK_H

#include <set>
#include <string>
#include <utility>
#include <vector>

#include "group_scan.h"

namespace console {

struct Finding {
    std::u16string about;  ///< key of the group, or handle of the entity
    std::string what;      ///< what is wrong
    std::string mend;      ///< what mends it, as "the name is removed"; empty when a guess would
};

/// Checks a drawing's groups and, in the memory of `scan`, mends them: what is found later is found
/// in a drawing where all before is mended.
class GroupCheck {
  public:
    explicit GroupCheck(GroupScan scan) : scan_(std::move(scan)) {}

    const std::vector<Finding>& run();
    /// Writes to the drawing in the editor what run() has mended.
    /// @return what could not be written
    std::vector<Finding> write();

  private:
    enum Change : unsigned { kFields = 1, kList = 2, kType = 4, kErased = 8, kParts = 16 };

    /// Handles by the names of sub-groups.
    using Parts = std::map<std::u16string, std::set<std::u16string>>;

    ScannedGroup& group(size_t index) { return scan_.groups[index]; }
    ScannedEntity& entity(size_t index) { return scan_.entities[index]; }
    void find(const std::u16string& about, std::string what, std::string mend = {});
    bool isErased(size_t index) const { return (changes_[index] & kErased) != 0; }
    void erase(size_t index);

    bool checkBare(size_t index);
    void checkNames();
    void rename(const std::unordered_map<std::u16string, std::u16string>& renamed);
    void checkEntities(size_t index);
    bool checkEmpty(size_t index);
    bool checkMaster(size_t index);
    size_t masterByFields(size_t index);
    void checkMasterFields(size_t index);
    void checkMembers(size_t index);
    size_t groupOf(size_t entity_index);
    void checkTreeReferences();
    void checkParent(size_t index);
    void checkChildren(size_t index);
    void addMissingChildren();
    void checkCycles();
    size_t containerOf(size_t index) const;
    void checkTrees();
    void checkTree(const std::vector<size_t>& tree);
    void checkContainerFields(size_t index, const std::vector<size_t>& named_by);
    void checkContainerList(size_t index, const std::vector<size_t>& named_by);
    bool takeParts(size_t index, Parts& parts);
    void checkParts(size_t index);
    void copyReferences();

    void writeGroup(size_t index, std::vector<Finding>& failed);
    void writeEntity(size_t index, std::vector<Finding>& failed);
    void writeNewContainers(std::vector<Finding>& failed);

    GroupScan scan_;
    std::vector<Finding> findings_;
    std::vector<unsigned> changes_;             ///< of groups
    std::vector<bool> entity_changed_;          ///< fields of entities
    std::vector<bool> has_master_;              ///< groups of which the master is beyond doubt
    std::vector<std::vector<size_t>> holders_;  ///< of entities: groups that are no containers
    std::vector<std::vector<size_t>> without_container_;  ///< trees, the root in front
};

}  // namespace console

#endif
