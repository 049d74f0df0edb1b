/// The filter of a selection: which entities a chain of groups lets through.
///
/// Every group must be met by the entity. Texts are wildcard patterns without regard to case. A
/// node -4 in front of a group says how to compare ("=", "!=", "/=", "<>", "<", "<=", ">", ">=",
/// "*", for integers "&" and "&="; for points one for each coordinate, as in ">,>,*"), or opens and
/// closes a group of tests ("<AND" "AND>", "<OR" "OR>", "<XOR" "XOR>" around two of them, "<NOT"
/// "NOT>" around one). Behind -3 stand the applications (1001) that must have data on the entity.
#ifndef HOST_EDIT_SELECT_FILTER_H
#define HOST_EDIT_SELECT_FILTER_H

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "db/database.h"

namespace host {

class EntityGroups;

class SelectFilter {
  public:
    SelectFilter();
    ~SelectFilter();
    SelectFilter(const SelectFilter&) = delete;
    SelectFilter& operator=(const SelectFilter&) = delete;

    /// Takes over what the chain says; NULL lets every entity through.
    /// @return false for a chain that is no filter, which then lets nothing through
    bool read(const resbuf* chain);
    /// Whether the filter lets an entity through. The object is not decoded for it.
    bool matches(Database& drawing, Slot entity) const;

  private:
    struct Test;
    std::unique_ptr<Test> all_;
    std::unique_ptr<EntityGroups> groups_;
};

}  // namespace host

#endif
