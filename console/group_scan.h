/// The groups of the drawing in the editor as the drawing has them, right or wrong: read once, each
/// object opened once, so that lists, pictures and checks take time in step with the drawing.
#ifndef CONSOLE_GROUP_SCAN_H
#define CONSOLE_GROUP_SCAN_H

#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include "acad/db.h"
#include "kz/kz_platform.h"

namespace console {

/// No group, no entity.
inline constexpr size_t kNobody = SIZE_MAX;

/// What a group object and its master bear alike.
struct GroupReferences {
    std::u16string name, parent, container;
    std::vector<std::u16string> children;
    bool operator==(const GroupReferences& other) const = default;
};

/// Texts and handles of fields, by the name of the field.
using FieldTexts = std::map<std::u16string, std::vector<std::u16string>>;

struct ScannedEntity {
    AcDbObjectId id;
    std::u16string handle;
    std::u16string role;    ///< "MS" of a master, "MM" of a member
    std::u16string master;  ///< handle that a member bears
    GroupReferences references;
    FieldTexts parts;  ///< a master's sub-groups with their handles; a member's with an empty text
};

struct ScannedGroup {
    AcDbObjectId id;
    std::u16string handle, key, type;
    std::u16string master;      ///< handle
    std::u16string other_name;  ///< name that it bore before a check changed it
    GroupReferences references;
    std::vector<size_t> entities;  ///< those that are there, in order
    size_t gone = 0;               ///< entities of the list that are not
    bool is_container = false;
};

struct GroupScan {
    std::vector<ScannedGroup> groups;  ///< of this system, in the order of their dictionary
    std::vector<ScannedEntity> entities;
    std::unordered_map<std::u16string, size_t> by_key;  ///< groups, by keys in upper case
    std::unordered_map<std::u16string, size_t> by_handle;

    /// The group of this name, kNobody for none.
    size_t groupNamed(const std::u16string& name) const;
    size_t entityOf(const std::u16string& handle) const;
    /// Reads what an entity bears. @return its index
    size_t add(AcDbObjectId id, const std::u16string& handle);
    /// For each group the top of its tree: kNobody where the parents lead back, and for containers.
    std::vector<size_t> roots() const;
};

/// Reads the groups of the drawing in the editor.
GroupScan scanGroups();

/// True for the handle of an object of the drawing.
bool isThere(const std::u16string& handle);

/// Handle of an object that is there, in upper case; empty for any other.
std::u16string handleOf(AcDbObjectId id);

}  // namespace console

#endif
