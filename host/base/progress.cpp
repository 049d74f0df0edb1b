/// The watcher of long work.
#include "base/progress.h"

#include <utility>

namespace host {
namespace {

constexpr uint64_t kStep = uint64_t{1} << 20U;

ProgressWatcher& watcher() {
    static ProgressWatcher present;
    return present;
}

}  // namespace

void setProgressWatcher(ProgressWatcher wanted) {
    watcher() = std::move(wanted);
}

Progress::Progress(Work work, uint64_t total)
    : work_(work), total_(total), next_(watcher() ? kStep : UINT64_MAX) {}

Progress::~Progress() {
    if (next_ != UINT64_MAX && next_ > kStep) watcher()(work_, total_, total_);
}

void Progress::tell(uint64_t done) {
    next_ = done + kStep;
    if (watcher()) watcher()(work_, done, total_);
}

}  // namespace host
