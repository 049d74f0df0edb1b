/// Groups in numbers: many small groups made, entities that leave and enter a large group, its
/// master changed, and a tree made, moved and deleted. Each with less beside it, so that one sees
/// whether the time for one operation stays the same.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include "host/drawing.h"
#include "host/module.h"
#include "kz/kz_zaglaid.h"

namespace {

/// A new drawing with lines, and the services that groups want. @return the names of the lines
std::vector<kz_CADObjId> makeDrawing(int64_t entities) {
    static bool loaded = false;
    std::string error;
    if (!loaded) loaded = host::loadModule(KZ_BUILD_DIR "/libkz_cadservice.so", error);
    host::newDrawing();
    std::vector<kz_CADObjId> lines(static_cast<size_t>(entities));
    const double start[3] = {0, 0, 0}, end[3] = {1, 1, 0};
    resbuf* list = acutBuildList(RTDXF0, KZ_T("LINE"), 10, start, 11, end, RTNONE);
    for (kz_CADObjId& line : lines) {
        kz_CADObjId_init(&line);
        acdbEntMakeX(list, line.ename);
    }
    acutRelRb(list);
    return lines;
}

/// A set of `count` lines from `first` on; the caller destroys it.
kz_CADSelSet* setOf(const std::vector<kz_CADObjId>& lines, size_t first, size_t count) {
    kz_CADSelSet* set = kz_CADSelSet_create();
    for (size_t i = 0; i < count; ++i)
        kz_CADSelSet_addObject(set, &lines[first + i]);
    return set;
}

kz_GroupId* makeGroup(const std::vector<kz_CADObjId>& lines, size_t first, size_t count,
                      const kz_GroupId* parent = nullptr) {
    kz_CADSelSet* set = setOf(lines, first, count);
    kz_GroupId* id =
        kz_Group_createFromSelSet(KZ_T("PIPE"), nullptr, nullptr, nullptr, set, parent);
    kz_CADSelSet_destroy(set);
    return id;
}

constexpr size_t kSmallGroup = 10;

void createGroups(benchmark::State& state) {
    const auto groups = static_cast<size_t>(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        const std::vector<kz_CADObjId> lines = makeDrawing(state.range(0) * kSmallGroup);
        state.ResumeTiming();
        for (size_t i = 0; i < groups; ++i) {
            kz_GroupId* id = makeGroup(lines, i * kSmallGroup, kSmallGroup);
            if (id == nullptr) state.SkipWithError("no group");
            kz_Group_destroyId(id);
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    host::closeDrawing();
}

/// Removals from a group of this size and as many additions.
void removeAndAdd(benchmark::State& state) {
    constexpr size_t kMoves = 1000;
    const std::vector<kz_CADObjId> lines = makeDrawing(state.range(0));
    kz_GroupId* id = makeGroup(lines, 0, lines.size());
    for (auto _ : state) {
        for (size_t i = 1; i <= kMoves; ++i) {
            if (kz_Group_removeMember(nullptr, id, &lines[i]) != 1) state.SkipWithError("removal");
        }
        for (size_t i = 1; i <= kMoves; ++i) {
            if (kz_Group_add(id, &lines[i], nullptr) != 1) state.SkipWithError("addition");
        }
    }
    kz_Group_destroyId(id);
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(kMoves) * 2);
    host::closeDrawing();
}

/// Every member gets the handle of the new master.
void changeMaster(benchmark::State& state) {
    const std::vector<kz_CADObjId> lines = makeDrawing(state.range(0));
    kz_GroupId* id = makeGroup(lines, 0, lines.size());
    size_t master = 0;
    for (auto _ : state) {
        master = (master + 1) % lines.size();
        if (kz_Group_setMasterObject(id, &lines[master]) != 1) state.SkipWithError("master");
    }
    kz_Group_destroyId(id);
    state.SetItemsProcessed(state.iterations() * state.range(0));
    host::closeDrawing();
}

constexpr size_t kChildren = 10;

/// A tree under group 0, in which each group has ten children. @return its groups
std::vector<kz_GroupId*> makeTree(const std::vector<kz_CADObjId>& lines, size_t groups) {
    std::vector<kz_GroupId*> tree;
    for (size_t i = 0; i < groups; ++i) {
        const kz_GroupId* parent = i == 0 ? nullptr : tree[(i - 1) / kChildren];
        tree.push_back(makeGroup(lines, i * 2, 2, parent));
    }
    return tree;
}

void destroyIds(std::vector<kz_GroupId*>& ids) {
    for (kz_GroupId* id : ids)
        kz_Group_destroyId(id);
    ids.clear();
}

/// The tree made, moved under another root, and deleted.
void growMoveFell(benchmark::State& state) {
    const auto groups = static_cast<size_t>(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        const std::vector<kz_CADObjId> lines = makeDrawing(state.range(0) * 2 + 2);
        state.ResumeTiming();
        std::vector<kz_GroupId*> tree = makeTree(lines, groups);
        kz_GroupId* other = makeGroup(lines, groups * 2, 2);
        if (kz_Group_makeChild(tree[0], other, 0) != 1) state.SkipWithError("move");
        destroyIds(tree);
        if (kz_Group_deleteAll(other, nullptr, 0, 0) != 1) state.SkipWithError("deletion");
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    host::closeDrawing();
}

/// As many children of one root as its data can name.
void flatTree(benchmark::State& state) {
    const auto groups = static_cast<size_t>(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        const std::vector<kz_CADObjId> lines = makeDrawing(state.range(0) + 1);
        state.ResumeTiming();
        kz_GroupId* root = makeGroup(lines, 0, 1);
        for (size_t i = 1; i <= groups; ++i)
            kz_Group_destroyId(makeGroup(lines, i, 1, root));
        if (kz_Group_getNumChildren(root, nullptr) != static_cast<int>(groups)) {
            state.SkipWithError("children are missing");
        }
        if (kz_Group_deleteAll(root, nullptr, 0, 0) != 1) state.SkipWithError("deletion");
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    host::closeDrawing();
}

void makeGroups(int64_t groups) {
    const std::vector<kz_CADObjId> lines = makeDrawing(groups * static_cast<int64_t>(kSmallGroup));
    for (size_t i = 0; i < static_cast<size_t>(groups); ++i)
        kz_Group_destroyId(makeGroup(lines, i * kSmallGroup, kSmallGroup));
}

/// The walk over all groups with the members of each. @return how many members there were
int64_t fetchAll() {
    int64_t members = 0;
    int erased = 0;
    kz_Group_beginGetNext(nullptr);
    while (kz_GroupId* id = kz_Group_getNext(&erased, nullptr, 0)) {
        kz_CADObjIdList* list = kz_Group_getMemberList(id, nullptr, nullptr, 1, 1);
        members += kz_CADObjIdList_length(list);
        kz_CADObjIdList_destroy(list);
        kz_Group_destroyId(id);
    }
    kz_Group_endGetNext();
    return members;
}

void fetchMembers(benchmark::State& state) {
    makeGroups(state.range(0));
    int64_t members = 0;
    for (auto _ : state)
        members += fetchAll();
    if (members != state.iterations() * state.range(0) * static_cast<int64_t>(kSmallGroup)) {
        state.SkipWithError("members are missing");
    }
    state.SetItemsProcessed(members);
    host::closeDrawing();
}

/// A drawing of groups of ten, on disk: opened, walked, saved.
void openWalkSave(benchmark::State& state) {
    const std::string path = KZ_BUILD_DIR "/bench_groups.dxf";
    std::string error;
    makeGroups(state.range(0));
    if (!host::saveDrawing(path, error)) return state.SkipWithError(error.c_str());
    double seconds[3] = {};
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        if (!host::openDrawing(path, error)) return state.SkipWithError(error.c_str());
        const auto opened = std::chrono::steady_clock::now();
        if (fetchAll() != state.range(0) * static_cast<int64_t>(kSmallGroup)) {
            state.SkipWithError("members are missing");
        }
        const auto walked = std::chrono::steady_clock::now();
        if (!host::saveDrawing(path, error)) return state.SkipWithError(error.c_str());
        const auto saved = std::chrono::steady_clock::now();
        seconds[0] += std::chrono::duration<double>(opened - start).count();
        seconds[1] += std::chrono::duration<double>(walked - opened).count();
        seconds[2] += std::chrono::duration<double>(saved - walked).count();
    }
    const auto each = benchmark::Counter::kAvgIterations;
    state.counters["open_ms"] = benchmark::Counter(seconds[0] * 1000, each);
    state.counters["walk_ms"] = benchmark::Counter(seconds[1] * 1000, each);
    state.counters["save_ms"] = benchmark::Counter(seconds[2] * 1000, each);
    host::closeDrawing();
    std::remove(path.c_str());
}

BENCHMARK(createGroups)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(fetchMembers)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(openWalkSave)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(removeAndAdd)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(changeMaster)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(growMoveFell)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(flatTree)->Arg(100)->Arg(400)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
