/// AutoLISP in numbers: what a call of a native function costs over the function itself, calls of
/// real twins beside their native functions, and program text read. The work in lisp/work.lsp is
/// timed beside Scheme interpreters by scripts/bench.sh.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "acad/ads.h"
#include "host/drawing.h"
#include "host/lisp.h"
#include "host/module.h"
#include "kz/kz_zaglaid.h"

namespace {

constexpr int kCalls = 10000;

/// A twin that takes what it is given and does nothing.
int emptyTwin() {
    benchmark::DoNotOptimize(acedGetArgs());
    acedRetT();
    return RTNORM;
}

bool evaluate(benchmark::State& state, std::u16string_view text) {
    const bool good = host::evalLisp(text).ok();
    if (!good) state.SkipWithError("a Lisp error");
    return good;
}

/// Time of one expression in a loop of many.
void inLoop(benchmark::State& state, const std::u16string& expression) {
    const std::u16string text = u"(repeat 10000 " + expression + u")";
    while (state.KeepRunningBatch(kCalls)) {
        if (!evaluate(state, text)) return;
    }
}

void getField(benchmark::State& state) {
    ads_name line;
    acdbEntLast(line);
    for (auto _ : state) {
        kz_FldList* list = kz_XData_getFld(line, KZ_T("STATE"), KZ_T("BENCH"));
        if (list == nullptr) return state.SkipWithError("no field");
        kz_FldList_destroy(list);
    }
}

void setField(benchmark::State& state) {
    ads_name line;
    acdbEntLast(line);
    const int16_t value = 5;
    for (auto _ : state) {
        if (kz_XData_setFld(line, KZ_FLD_INT, &value, KZ_T("STATE"), KZ_T("BENCH"), 1, 0) != 1) {
            return state.SkipWithError("no field");
        }
    }
}

/// Code of many small functions, as programs are written.
void readProgram(benchmark::State& state) {
    std::u16string text;
    for (int i = 0; i < kCalls; ++i) {
        text +=
            u"(defun area (width height / total) ; of a rectangle\n"
            u"  (setq total (* width height))\n  (if (> total 1.5e3) \"large\" 'SMALL))\n";
    }
    for (auto _ : state) {
        if (!evaluate(state, text)) return;
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.size()));
}

void addLoop(const char* name, const char16_t* expression) {
    benchmark::RegisterBenchmark(
        name, [expression](benchmark::State& state) { inLoop(state, expression); });
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    std::string error;
    const std::string program =
        std::filesystem::read_symlink("/proc/self/exe").parent_path().string();
    if (!host::loadModule(program + "/libkz_zaglaid.so", error)) {
        std::fprintf(stderr, "%s\n", error.c_str());
        return 3;
    }
    host::newDrawing();
    host::defineNative(u"bench_empty", emptyTwin);
    host::evalLisp(
        u"(setq e (entmakex '((0 . \"LINE\") (10 0.0 0.0 0.0) (11 1.0 0.0 0.0)))"
        u" l '(\"A\" (\"B\" 1 2.5) (10 1.0 2.0 3.0)))"
        u"(kz_XData_setFld e 5 \"STATE\" \"BENCH\" 1)");
    addLoop("an empty loop", u"nil");
    addLoop("a function of the language", u"(car l)");
    addLoop("an empty twin", u"(bench_empty)");
    addLoop("an empty twin, four atoms", u"(bench_empty e 5 \"STATE\" \"BENCH\")");
    addLoop("an empty twin, a list of lists", u"(bench_empty l)");
    benchmark::RegisterBenchmark("kz_XData_getFld from C++", getField);
    addLoop("kz_XData_getFld from Lisp", u"(kz_XData_getFld e \"STATE\" \"BENCH\")");
    benchmark::RegisterBenchmark("kz_XData_setFld from C++", setField);
    addLoop("kz_XData_setFld from Lisp", u"(kz_XData_setFld e 5 \"STATE\" \"BENCH\" 1)");
    benchmark::RegisterBenchmark("program text read", readProgram)->Unit(benchmark::kMillisecond);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
