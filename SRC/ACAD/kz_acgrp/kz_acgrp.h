/// What the sources of groups share: the keys that groups have in a drawing, owners, and the steps
/// that are no part of the library's interface.
#ifndef SRC_ACAD_KZ_ACGRP_KZ_ACGRP_H
#define SRC_ACAD_KZ_ACGRP_KZ_ACGRP_H

#include <set>
#include <string_view>
#include <utility>

#include "checks.h"
#include "group_errors.h"
#include "guards.h"
#include "kz/kz_group_fields.h"
#include "kz/kz_selset.h"
#include "trace.h"

namespace kz {

/// Applications of the fields.
inline constexpr const kz_Char* kGroupApp = KZ_T("KZ_GRP");
inline constexpr const kz_Char* kSubGroupApp = KZ_T("KZ_SUBGRP");

// Fields of groups, masters and members.
inline constexpr const kz_Char* kRoleField = KZ_T("MT");
inline constexpr const kz_Char* kMasterField = KZ_T("MN");
inline constexpr const kz_Char* kNameField = KZ_T("GN");
inline constexpr const kz_Char* kTypeField = KZ_T("GT");
inline constexpr const kz_Char* kOldNameField = KZ_T("OL");
inline constexpr const kz_Char* kParentField = KZ_T("PR");
inline constexpr const kz_Char* kChildField = KZ_T("CH");
inline constexpr const kz_Char* kContainerField = KZ_T("CN");

// What the field of the role says.
inline constexpr const kz_Char* kMasterRole = KZ_T("MS");
inline constexpr const kz_Char* kMemberRole = KZ_T("MM");

/// Longest group and sub-group name, and sizes of buffers with the terminator [characters].
inline constexpr size_t kLongestName = 28;
inline constexpr int kNameSize = 32;
inline constexpr int kNameRead = 29;  ///< what reads a name whole and no more
inline constexpr int kTypeSize = 256;
inline constexpr int kHandleSize = 33;

/// Rows of the errors of groups, and of the general ones.
enum GroupError {
    kInvalidGroup = 1,
    kNoGroupName = 2,
    kNoGroupId = 3,
    kSameGroups = 4,
    kGroupNotOpened = 5,
    kNoMaster = 8,
    kNoEntities = 9,
    kNotInGroup = 10,
    kMasterOfOthers = 11,
    kNotDeleted = 12
};
enum GeneralError { kInvalidHandle = 8, kInvalidName = 9, kFieldNotFound = 10 };

void submitGroupError(int code);
void submitGeneralError(int code);

using OwnedGroup = std::unique_ptr<kz_GroupId, Destroyer<kz_Group_destroyId>>;
using OwnedObject = std::unique_ptr<kz_CADObjId, Destroyer<kz_CADObjId_destroy>>;
using OwnedObjects = std::unique_ptr<kz_CADObjIdList, Destroyer<kz_CADObjIdList_destroy>>;
/// A selection set.
using OwnedSet = std::unique_ptr<kz_CADSelSet, Destroyer<kz_CADSelSet_destroy>>;

/// Traces entry and exit of a function.
class GroupTrace {
  public:
    explicit GroupTrace(const kz_Char* function);
    ~GroupTrace();
    GroupTrace(const GroupTrace&) = delete;
    GroupTrace& operator=(const GroupTrace&) = delete;

  private:
    const kz_Char* function_;
};

/// Objects that a walk has been to, so that it ends where a tree leads back into itself.
class Visited {
  public:
    /// True for the first visit.
    bool enter(const ads_name name) { return names_.emplace(name[0], name[1]).second; }

  private:
    std::set<std::pair<int64_t, int64_t>> names_;
};

/// NULL, empty or "*": no filter, no name.
inline bool isAny(const kz_Char* text) {
    return isEmpty(text) || (text[0] == u'*' && text[1] == 0);
}

/// True for equal texts, with regard to case.
inline bool isSame(const kz_Char* a, const kz_Char* b) {
    return std::u16string_view(a) == b;
}

/// The drawing of an object, also of an erased one; NULL for one that is open to be written.
AcDbDatabase* databaseOfObject(const AcDbObjectId& object);

/// Opens a group object; an erased one isn't opened. One that can't be opened adds group error 5.
Opened<AcDbGroup> openGroup(const AcDbObjectId& object, AcDb::OpenMode mode);

}  // namespace kz

extern "C" {

/// The object under a key in the dictionary of groups of a database (NULL: the working one), then
/// with `searchXrefs` in the drawings attached to the working database, and with `searchDrawings`,
/// too, in all known ones.
int kz_GroupKeyToAcDbObjectId(AcDbObjectId* out, const kz_Char* name, AcDbDatabase* database,
                              int searchXrefs, int searchDrawings);
/// A code above all in the names of the groups of the working database, in a static buffer.
const kz_Char* kz_Group_scanNextGroupCode(void);
/// Hands out the drawing's next group code, in a static buffer; NULL when it can't be stored.
const kz_Char* kz_Group_nextGroupCode(const kz_CADDwgId* drawing);
/// Handle of an object that is not erased; the buffer is emptied first.
int kz_Group_getHandleFromEname(kz_Char* out, const ads_name name);
/// The description of a group object, at most 255 characters.
int kz_AcDbGroup_getDesc(kz_Char* out, const AcDbObjectId* group);
/// 1 for a group object with this description, in any case.
int kz_AcDbGroup_isTypeOf(const AcDbObjectId* group, const kz_Char* type);
/// The master of the group of this name, which is looked for everywhere.
int kz_AcGroup_getMasterEntNameFromGroupName(ads_name out, const kz_Char* name, int fromField,
                                             AcDbDatabase* database);
/// Appends a group's entities to a set or a list, each of which may be NULL.
int kz_AcGroup_getMembers(kz_CADSelSet* set, kz_CADObjIdList* list, const kz_GroupId* id,
                          const kz_Char* type, const kz_Char* subGroup, int noChildren,
                          int includeMaster);
/// File of the drawing of a group object, as a new text that the caller frees.
kz_Char* kz_AcGroup_getDwgNameFromGroupObjId(const AcDbObjectId* group);
/// Sets whether a group is selectable, and tells how it was.
int kz_AcDbGroup_setSelectable(const kz_GroupId* id, int value, int* before);
}

#endif
