/// What the host knows of entity types beyond their tags: which class markers a type's file form
/// has, and which groups it can't do without.
#ifndef HOST_DB_ENTITY_RULES_H
#define HOST_DB_ENTITY_RULES_H

#include <string_view>
#include <vector>

#include "db/tags.h"

namespace host {

/// An entity type whose list may come without class markers.
struct EntityRule {
    std::string_view type;
    std::u16string_view marker;         ///< first class behind AcDbEntity
    std::u16string_view second_marker;  ///< another class behind it; empty for none
    std::vector<int> second_codes;      ///< groups of the second class; with none of them
                                        ///< given both markers stand in front of all groups
    std::vector<int> required;
};

/// Rule of a type; NULL for a type that needs its markers given.
const EntityRule* entityRule(std::string_view type);

/// True for the groups that every entity has in common (layer, colour, line type ...).
bool isCommonEntityCode(int code);

/// True for a group that is a point in space, or a direction, whatever a file leaves of it: simple
/// writers leave out heights of 0.
bool isSpacePoint(std::string_view type, int code);

/// Brings the groups of an entity's list into file order: AcDbEntity with the common groups, then
/// the classes with theirs. Handles, owners and type are not among them. False when a type without
/// a rule comes without markers, or a required group is missing.
bool arrangeEntity(std::string_view type, Tags& tags);

}  // namespace host

#endif
