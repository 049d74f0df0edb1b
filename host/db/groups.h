/// Conversion between the tags of an object and the groups that callers see: points are one group,
/// a pointer is an entity name.
#ifndef HOST_DB_GROUPS_H
#define HOST_DB_GROUPS_H

#include "db/database.h"

namespace host {

/// Builds a chain node by node; a failed allocation sticks, and the chain is then given up.
class ChainBuilder {
  public:
    ChainBuilder() = default;
    ~ChainBuilder() { acutRelRb(head_); }
    ChainBuilder(const ChainBuilder&) = delete;
    ChainBuilder& operator=(const ChainBuilder&) = delete;

    /// Appends a node, or a chain; NULL counts as a failed allocation. @return the node
    resbuf* add(resbuf* node);
    resbuf* addText(int code, std::u16string_view text);
    resbuf* addName(int code, const ads_name name);
    resbuf* addShort(int code, int value);
    /// The chain, NULL after a failure; the builder is empty afterwards.
    resbuf* release();

  private:
    resbuf* head_ = nullptr;
    resbuf** tail_ = &head_;
    bool failed_ = false;
};

/// Appends the groups of `tags` from index `from` on.
void addGroups(const Database& database, const Tags& tags, size_t from, ChainBuilder& chain);
/// Appends those of an entity, a table record or an object of a type, with angles in radians and
/// points in space with their three coordinates. What an xrecord holds is left as it is.
void addObjectGroups(const Database& database, const Tags& tags, std::string_view type,
                     ChainBuilder& chain);

/// Appends the group of a node. False for one that no object can have.
bool appendGroup(const resbuf& node, Tags& tags);

/// Takes the groups of a chain up to a -3 node or the end, angles from radians. Groups -1 and -2
/// are left out. False for a group that no object can have.
bool tagsFromChain(const resbuf* chain, Tags& tags);

/// The first node with this restype; NULL when there is none.
const resbuf* findNode(const resbuf* chain, int code);

}  // namespace host

#endif
