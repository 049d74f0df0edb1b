/// Selection by place in numbers: a window of a hundred lines in drawings of 10,000 to 1,000,000,
/// by the index and, as its peer, by a look at every line; and the first window, which builds the
/// index. The ratio of the two is printed behind each size.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <vector>

#include "acad/ads.h"
#include "acad/db.h"
#include "host/drawing.h"

namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

/// A new drawing with lines of length 1 on a square grid of width 2.
void makeDrawing(int64_t entities) {
    host::newDrawing();
    const auto side = static_cast<int64_t>(std::ceil(std::sqrt(static_cast<double>(entities))));
    for (int64_t i = 0; i < entities; ++i) {
        const double x = 2.0 * static_cast<double>(i % side);
        const double y = 2.0 * static_cast<double>(i / side);
        const double start[3] = {x, y, 0}, end[3] = {x + 1, y + 1, 0};
        resbuf* list = acutBuildList(RTDXF0, u"LINE", 10, start, 11, end, RTNONE);
        acdbEntMakeX(list, nullptr);
        acutRelRb(list);
    }
}

constexpr double kLow = 99.5, kHigh = 119.0;

int32_t selectWindow() {
    const ads_point low = {kLow, kLow, 0}, high = {kHigh, kHigh, 0};
    ads_name set = {};
    int32_t count = 0;
    if (acedSSGet(u"_W", low, high, nullptr, set) != RTNORM) return 0;
    acedSSLength(set, &count);
    acedSSFree(set);
    return count;
}

/// The same without the index: reads each line's points.
int32_t scanLines() {
    int32_t count = 0;
    ads_name name = {};
    for (int more = acdbEntNext(nullptr, name); more == RTNORM; more = acdbEntNext(name, name)) {
        resbuf* list = acdbEntGet(name);
        bool inside = true;
        for (const resbuf* node = list; node != nullptr; node = node->rbnext) {
            if (node->restype != 10 && node->restype != 11) continue;
            const double* p = node->resval.rpoint;
            inside = inside && p[0] >= kLow && p[0] <= kHigh && p[1] >= kLow && p[1] <= kHigh;
        }
        acutRelRb(list);
        count += inside ? 1 : 0;
    }
    return count;
}

void window(benchmark::State& state) {
    makeDrawing(state.range(0));
    const Clock::time_point first = Clock::now();
    const int32_t found = selectWindow();
    const double build = secondsSince(first);
    double indexed = 0.0;
    int64_t rounds = 0;
    for (auto _ : state) {
        const Clock::time_point start = Clock::now();
        benchmark::DoNotOptimize(selectWindow());
        indexed += secondsSince(start);
        ++rounds;
    }
    const Clock::time_point start = Clock::now();
    const int32_t scanned = scanLines();
    const double scan = secondsSince(start);
    if (found != scanned) state.SkipWithError("the index and the scan differ");
    state.counters["found"] = found;
    state.counters["first_ms"] = build * 1e3;
    state.counters["scan_ms"] = scan * 1e3;
    state.counters["scan/indexed"] = scan / (indexed / static_cast<double>(rounds));
    host::closeDrawing();
}
BENCHMARK(window)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
