/// Xrecords: objects of the OBJECTS section that hold groups of any kind for anybody.
#ifndef HOST_DB_XRECORDS_H
#define HOST_DB_XRECORDS_H

#include "db/database.h"

namespace host {

/// What an xrecord that is in no drawing yet was filled with.
struct XrecordContent {
    const Database* drawing = nullptr;  ///< where it will be
    Tags groups;
};

/// Groups of an xrecord in front of its data: its class and, since R2000, whether copies of a
/// drawing replace it.
Tags xrecordHead(const Database& drawing);
/// Index of the first data group in the tags of an xrecord.
size_t xrecordData(const Database& drawing, const Tags& tags);
/// Appends the groups of the nodes from `first` up to `end`. @return eBadDxfSequence for a group
/// that no xrecord can have, eInvalidInput for a value that its group can't have
Acad::ErrorStatus appendXrecordGroups(const Database& drawing, const resbuf* first,
                                      const resbuf* end, Tags& tags);
/// The class and data groups of an xrecord from an entity list, whose own groups in front of the
/// class are left out. False for a list without the class or with groups that no xrecord can have.
bool xrecordFromList(const Database& drawing, const resbuf* list, Tags& tags);

}  // namespace host

#endif
