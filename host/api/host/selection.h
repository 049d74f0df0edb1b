/// What programs have done to the choosing of objects; for tests.
#ifndef HOST_API_SELECTION_H
#define HOST_API_SELECTION_H

#include <string>
#include <vector>

#include "acad/db.h"
#include "host/export.h"

namespace host {

/// The switches in the order in which they were set since the last call: "filter on", "duplicates
/// on", "nested windows on", and the same with "off".
HOST_API std::vector<std::string> takeSelectionSwitches();
/// Paths that filters have lit up since the last call, each from the outermost object inward.
HOST_API std::vector<std::vector<AcDbObjectId>> takeHighlightedPaths();
/// Filters that see choices at the moment.
HOST_API int64_t selectionFilterCount();

}  // namespace host

#endif
