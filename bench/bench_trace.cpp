/// What trace statements cost: silent by level, silent by mask, and, to compare with, one that
/// formats its message for a receiver that drops it. A silent one should stay under 2 ns.
#include <benchmark/benchmark.h>

#include "kz/kz_zaglaid.h"
#include "trace.h"

namespace {

constexpr const char* kTraceSource = "bench";

void statement(benchmark::State& state, int16_t level, int32_t mask) {
    kz_Diag_setHandler([](const kz_Char*, const char*, int) {});
    kz_Diag_setOutput(KZ_DIAG_OUTPUT_HANDLER, nullptr);
    kz_Diag_setLevel(level);
    kz_Diag_setCondition(mask);
    int number = 0;
    for (auto _ : state) {
        KZ_TRACEF(kz::kTraceEntry, kz::kTraceData, KZ_T("Field %d of %s"), ++number,
                  KZ_T("kz_XData_getFldList"));
        benchmark::ClobberMemory();
    }
    kz_Diag_disable();
    kz_Diag_setHandler(nullptr);
}

void silentByLevel(benchmark::State& state) {
    statement(state, -1, -1);
}
void silentByMask(benchmark::State& state) {
    statement(state, kz::kTraceEntry, ~kz::kTraceData);
}
void speaking(benchmark::State& state) {
    statement(state, kz::kTraceEntry, kz::kTraceData);
}

/// The measuring itself.
void nothing(benchmark::State& state) {
    for (auto _ : state)
        benchmark::ClobberMemory();
}

BENCHMARK(nothing);
BENCHMARK(silentByLevel);
BENCHMARK(silentByMask);
BENCHMARK(speaking);

}  // namespace

BENCHMARK_MAIN();
