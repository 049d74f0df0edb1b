/// What is out at the moment; a program warns and a test fails when a count doesn't come back.
#ifndef HOST_COUNTERS_H
#define HOST_COUNTERS_H

#include "host/export.h"

namespace host {

/// Openings of database objects that were not closed.
HOST_API int64_t openObjectCount();
/// Result-buffer nodes that were not released.
HOST_API int64_t resbufCount();
/// Living selection sets.
HOST_API int64_t selectionSetCount();

}  // namespace host

#endif
