/// The limits that Linux has: of the machine, of the control group (both versions of these) and
/// of the process.
#include "base/system_memory.h"

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <fstream>

namespace host {

size_t systemMemory() {
    auto least = static_cast<uint64_t>(sysconf(_SC_PHYS_PAGES)) *
                 static_cast<uint64_t>(sysconf(_SC_PAGESIZE));
    // A container sees its own limits at these places; "max" is no number and no limit.
    for (const char* file :
         {"/sys/fs/cgroup/memory.max", "/sys/fs/cgroup/memory/memory.limit_in_bytes"}) {
        uint64_t limit = 0;
        if (std::ifstream(file) >> limit && limit > 0) least = std::min(least, limit);
    }
    rlimit space{};
    if (::getrlimit(RLIMIT_AS, &space) == 0 && space.rlim_cur != RLIM_INFINITY)
        least = std::min<uint64_t>(least, space.rlim_cur);
    return static_cast<size_t>(least);
}

}  // namespace host
