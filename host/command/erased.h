/// What OOPS brings back.
#ifndef HOST_COMMAND_ERASED_H
#define HOST_COMMAND_ERASED_H

#include <vector>

#include "acad/db.h"

namespace host {

/// Remembers what a command has erased, in the place of what the one before had.
void rememberErased(std::vector<AcDbObjectId> ids);
/// What was remembered, which is then forgotten.
std::vector<AcDbObjectId> takeErased();

}  // namespace host

#endif
