/// Telling the program's watcher how far a piece of work has come.
#ifndef HOST_BASE_PROGRESS_H
#define HOST_BASE_PROGRESS_H

#include "host/progress.h"

namespace host {

/// A piece of work of `total` bytes. Its end is told at the end of its scope.
class Progress {
  public:
    Progress(Work work, uint64_t total);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Tells that `done` bytes in all are done, when that is a megabyte more than when it was told.
    void at(uint64_t done) {
        if (done >= next_) tell(done);
    }
    /// Bytes after which the next call of `at` tells something.
    uint64_t next() const { return next_; }

  private:
    void tell(uint64_t done);

    Work work_;
    uint64_t total_;
    uint64_t next_;
};

}  // namespace host

#endif
