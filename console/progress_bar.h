/// A bar on the terminal for reading and saving that takes its time.
#ifndef CONSOLE_PROGRESS_BAR_H
#define CONSOLE_PROGRESS_BAR_H

namespace console {

/// While it lives, work that lasts longer than a second shows on standard error how far it has
/// come, when that is a terminal. The bar is gone when the work is done.
class ProgressBar {
  public:
    ProgressBar();
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;
};

}  // namespace console

#endif
