/// How much memory there is for this program.
#ifndef HOST_BASE_SYSTEM_MEMORY_H
#define HOST_BASE_SYSTEM_MEMORY_H

#include <cstddef>

namespace host {

/// Bytes: the machine's memory, or less where the container or the process has a limit.
size_t systemMemory();

}  // namespace host

#endif
