/// Undo in numbers: one step that writes a field on every entity of a drawing, against the same
/// writing without a step (the peer), then its undo and redo; and many steps of one entity each.
/// Sizes of 10,000 and 100,000 show that the cost for an entity stays the same.
#include <benchmark/benchmark.h>

#include <optional>
#include <string>
#include <vector>

#include "host/drawing.h"
#include "host/undo.h"
#include "kz/kz_zaglaid.h"

namespace {

/// A new drawing with as many lines.
std::vector<AcDbObjectId> makeDrawing(int64_t entities) {
    host::newDrawing();
    acdbRegApp(KZ_T("BENCH"));
    std::vector<AcDbObjectId> ids;
    const double start[3] = {0, 0, 0};
    const double end[3] = {1, 1, 0};
    resbuf* list = acutBuildList(RTDXF0, KZ_T("LINE"), 10, start, 11, end, RTNONE);
    for (int64_t i = 0; i < entities; ++i) {
        ads_name name = {0, 0};
        AcDbObjectId id;
        if (acdbEntMakeX(list, name) == RTNORM && acdbGetObjectId(id, name) == Acad::eOk) {
            ids.push_back(id);
        }
    }
    acutRelRb(list);
    return ids;
}

void writeField(AcDbObjectId id, int value) {
    AcDbObject* object = nullptr;
    if (acdbOpenObject(object, id, AcDb::kForWrite) != Acad::eOk) return;
    resbuf* chain = acutBuildList(1001, KZ_T("BENCH"), 1070, value, 0);
    object->setXData(chain);
    acutRelRb(chain);
    object->close();
}

void writeAll(benchmark::State& state, bool recorded) {
    const std::vector<AcDbObjectId> ids = makeDrawing(state.range(0));
    int value = 0;
    for (auto _ : state) {
        std::optional<host::UndoStep> step;
        if (recorded) step.emplace("FIELDS");
        ++value;
        for (const AcDbObjectId id : ids)
            writeField(id, value);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    host::closeDrawing();
}

void writeUnrecorded(benchmark::State& state) {
    writeAll(state, false);
}

void writeRecorded(benchmark::State& state) {
    writeAll(state, true);
}

void undoAndRedo(benchmark::State& state) {
    const std::vector<AcDbObjectId> ids = makeDrawing(state.range(0));
    {
        const host::UndoStep step("FIELDS");
        for (const AcDbObjectId id : ids)
            writeField(id, 1);
    }
    for (auto _ : state) {
        host::undo(1);
        host::redo();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0) * 2);
    host::closeDrawing();
}

/// As a script does it that changes one entity an expression.
void manySteps(benchmark::State& state) {
    const std::vector<AcDbObjectId> ids = makeDrawing(state.range(0));
    for (auto _ : state) {
        for (const AcDbObjectId id : ids) {
            const host::UndoStep step("FIELD");
            writeField(id, 1);
        }
        host::undo(ids.size());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    host::closeDrawing();
}

constexpr int64_t kSmall = 10000;
constexpr int64_t kLarge = 100000;
BENCHMARK(writeUnrecorded)->Arg(kSmall)->Arg(kLarge)->Unit(benchmark::kMillisecond);
BENCHMARK(writeRecorded)->Arg(kSmall)->Arg(kLarge)->Unit(benchmark::kMillisecond);
BENCHMARK(undoAndRedo)->Arg(kSmall)->Arg(kLarge)->Unit(benchmark::kMillisecond);
BENCHMARK(manySteps)->Arg(kSmall)->Arg(kLarge)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
