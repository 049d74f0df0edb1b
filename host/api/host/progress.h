/// How far reading and saving of drawings have come, for programs that want to show it.
#ifndef HOST_PROGRESS_H
#define HOST_PROGRESS_H

#include <cstdint>
#include <functional>

#include "host/export.h"

namespace host {

enum class Work { Reading, Converting, Saving };

/// Is told of the bytes that are done, about every megabyte; a last call has done == total. It must
/// not touch the drawing.
using ProgressWatcher = std::function<void(Work work, uint64_t done, uint64_t total)>;

/// Sets who is told; an empty function for nobody.
HOST_API void setProgressWatcher(ProgressWatcher watcher);

}  // namespace host

#endif
