/// The bar is drawn over itself on one line.
#include "progress_bar.h"

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "host/progress.h"

namespace console {

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kPatience = std::chrono::seconds(1);
constexpr auto kPause = std::chrono::milliseconds(100);
constexpr int kWidth = 30;

const char* nameOf(host::Work work) {
    switch (work) {
        case host::Work::Reading:
            return "reading";
        case host::Work::Converting:
            return "converting";
        case host::Work::Saving:
            return "saving";
    }
    return "";
}

/// The work that is shown.
class Bar {
  public:
    void follow(host::Work work, uint64_t done, uint64_t total) {
        const Clock::time_point now = Clock::now();
        // Reading, converting and saving in a row are one wait.
        if (now - last_ > kPatience) start_ = now;
        last_ = now;
        if (work != work_) clear();
        work_ = work;
        if (done >= total) {
            clear();
        } else if (now - start_ > kPatience && now - drawn_ > kPause) {
            draw(done, total);
            drawn_ = now;
        }
    }

  private:
    void draw(uint64_t done, uint64_t total) {
        const double part = static_cast<double>(done) / static_cast<double>(total);
        const int filled = static_cast<int>(part * kWidth);
        std::string line = "\r";
        line += nameOf(work_);
        line += " [" + std::string(static_cast<size_t>(filled), '#') +
                std::string(static_cast<size_t>(kWidth - filled), ' ') + "] " +
                std::to_string(static_cast<int>(part * 100)) + " %\x1b[K";
        put(line);
        shown_ = true;
    }
    void clear() {
        if (shown_) put("\r\x1b[K");
        shown_ = false;
    }
    static void put(std::string_view text) {
        std::fwrite(text.data(), 1, text.size(), stderr);
        std::fflush(stderr);
    }

    bool shown_ = false;
    host::Work work_ = host::Work::Reading;
    Clock::time_point start_, last_, drawn_;  ///< of the wait, of the last report and picture
};

bool isTerminal() {
    const char* kind = std::getenv("TERM");
    return isatty(STDERR_FILENO) != 0 && kind != nullptr && std::string_view(kind) != "dumb";
}

}  // namespace

ProgressBar::ProgressBar() {
    if (!isTerminal()) return;
    host::setProgressWatcher([bar = Bar()](host::Work work, uint64_t done, uint64_t total) mutable {
        bar.follow(work, done, total);
    });
}

ProgressBar::~ProgressBar() {
    host::setProgressWatcher({});
}

}  // namespace console
