/// Drawing data in numbers: one record of many groups written and read, many records in one
/// dictionary entered, walked, found and removed. Each with ten times less beside it, so that one
/// sees whether time goes with the number.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#include "host/drawing.h"
#include "kz/kz_zaglaid.h"
#include "kz_tls21an/text.h"

namespace {

AcDbDatabase* database() {
    return acdbHostApplicationServices()->workingDatabase();
}

/// The chain of a record with this many groups: texts, integers, reals and points in turn.
resbuf* groups(int64_t count) {
    const ads_point point = {1.0, 2.0, 3.0};
    resbuf* head = nullptr;
    resbuf** tail = &head;
    for (int64_t i = 0; i < count; ++i) {
        switch (i % 4) {
            case 0:
                *tail = acutBuildList(1, KZ_T("a text of some length"), 0);
                break;
            case 1:
                *tail = acutBuildList(70, static_cast<int>(i % 1000), 0);
                break;
            case 2:
                *tail = acutBuildList(40, 0.25 * static_cast<double>(i), 0);
                break;
            default:
                *tail = acutBuildList(10, point, 0);
                break;
        }
        tail = &(*tail)->rbnext;
    }
    return head;
}

void writeRecord(benchmark::State& state) {
    host::newDrawing();
    resbuf* chain = groups(state.range(0));
    for (auto _ : state) {
        if (kz_AcXrecord_saveToDict(database(), KZ_T("BENCH"), KZ_T("RECORD"), chain) != 1) {
            state.SkipWithError("the record was refused");
        }
    }
    acutRelRb(chain);
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void readRecord(benchmark::State& state) {
    host::newDrawing();
    resbuf* chain = groups(state.range(0));
    kz_AcXrecord_saveToDict(database(), KZ_T("BENCH"), KZ_T("RECORD"), chain);
    acutRelRb(chain);
    for (auto _ : state)
        acutRelRb(kz_AcXrecord_getFromDict(database(), KZ_T("BENCH"), KZ_T("RECORD")));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

/// A field with this many values written and read as a list.
void fieldOfManyValues(benchmark::State& state) {
    host::newDrawing();
    kz_FldList* list = kz_FldList_create(nullptr, 0, nullptr, 0);
    for (int64_t i = 0; i < state.range(0); ++i)
        kz_FldList_addIntVal(list, KZ_T("VALUES"), static_cast<int16_t>(i % 1000));
    for (auto _ : state) {
        kz_DwgData_setFldList(nullptr, KZ_T("BENCH"), KZ_T("FIELD"), list, 1);
        kz_FldList_destroy(kz_DwgData_getFldList(nullptr, KZ_T("BENCH"), KZ_T("FIELD"), nullptr));
    }
    kz_FldList_destroy(list);
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

/// Every tenth of this many fields merged into a record that has them all.
void mergeIntoManyFields(benchmark::State& state) {
    resbuf* chain = nullptr;
    kz_FldList* list = kz_FldList_create(nullptr, 0, nullptr, 0);
    resbuf** tail = &chain;
    for (int64_t i = 0; i < state.range(0); ++i) {
        const std::u16string name = kz::toUtf16("FIELD" + std::to_string(i));
        *tail = acutBuildList(2, KZ_T("{"), 1, name.c_str(), 70, 1, 2, KZ_T("}"), 0);
        while (*tail != nullptr)
            tail = &(*tail)->rbnext;
        if (i % 10 == 0) kz_FldList_appInt(list, name.c_str(), 2);
    }
    for (auto _ : state)
        kz_AcDwgData_fromFldList(&chain, list, 0);
    acutRelRb(chain);
    kz_FldList_destroy(list);
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

/// A new drawing with a dictionary, which is open for write for as long as this lives.
class OpenDictionary {
  public:
    OpenDictionary() {
        host::newDrawing();
        AcDbDictionary* root = nullptr;
        AcDbObjectId id;
        database()->getNamedObjectsDictionary(root, AcDb::kForWrite);
        dictionary_ = new AcDbDictionary;
        root->setAt(KZ_T("BENCH"), dictionary_, id);
        root->close();
    }
    ~OpenDictionary() { dictionary_->close(); }
    OpenDictionary(const OpenDictionary&) = delete;
    OpenDictionary& operator=(const OpenDictionary&) = delete;
    AcDbDictionary* operator->() const { return dictionary_; }

    void fill(int64_t count) const {
        resbuf* chain = acutBuildList(70, 1, 0);
        for (int64_t i = 0; i < count; ++i) {
            auto* record = new AcDbXrecord;
            AcDbObjectId id;
            dictionary_->setAt(key(i).c_str(), record, id);
            record->setFromRbChain(chain);
            record->close();
        }
        acutRelRb(chain);
    }
    static std::u16string key(int64_t index) {
        return kz::toUtf16("RECORD" + std::to_string(index));
    }

  private:
    AcDbDictionary* dictionary_ = nullptr;
};

void enterRecords(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        const OpenDictionary dictionary;
        state.ResumeTiming();
        dictionary.fill(state.range(0));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void walkRecords(benchmark::State& state) {
    const OpenDictionary dictionary;
    dictionary.fill(state.range(0));
    for (auto _ : state) {
        const std::unique_ptr<AcDbDictionaryIterator> at(dictionary->newIterator());
        int64_t count = 0;
        for (; !at->done(); at->next()) {
            benchmark::DoNotOptimize(at->name());
            ++count;
        }
        if (count != state.range(0)) state.SkipWithError("the walk lost entries");
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void findRecords(benchmark::State& state) {
    const OpenDictionary dictionary;
    dictionary.fill(state.range(0));
    std::vector<std::u16string> keys;
    for (int64_t i = 0; i < state.range(0); ++i)
        keys.push_back(OpenDictionary::key(i));
    for (auto _ : state) {
        for (const std::u16string& key : keys) {
            if (!dictionary->has(key.c_str())) state.SkipWithError("an entry is lost");
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

/// From the first to the last, each found by a walk of its own.
void removeRecords(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        const OpenDictionary dictionary;
        dictionary.fill(state.range(0));
        state.ResumeTiming();
        for (int64_t i = 0; i < state.range(0); ++i) {
            const std::unique_ptr<AcDbDictionaryIterator> first(dictionary->newIterator());
            dictionary->remove(first->objectId());
        }
        if (dictionary->numEntries() != 0) state.SkipWithError("entries are left");
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

/// One record written anew this many times, with a look at all keys in between.
void rewriteRecord(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        host::newDrawing();
        state.ResumeTiming();
        for (int64_t i = 0; i < state.range(0); ++i) {
            const auto value = static_cast<int16_t>(i % 1000);
            kz_DwgData_setFld(nullptr, KZ_T("BENCH"), KZ_T("COUNTER"), KZ_T("NEXT"), KZ_FLD_INT,
                              &value, 1, 1);
            kz_StrList_destroy(kz_DwgData_getXGroups(nullptr, KZ_T("BENCH")));
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

#define SIZES Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond)
BENCHMARK(writeRecord)->SIZES;
BENCHMARK(readRecord)->SIZES;
BENCHMARK(fieldOfManyValues)->SIZES;
BENCHMARK(mergeIntoManyFields)->SIZES;
BENCHMARK(enterRecords)->SIZES;
BENCHMARK(walkRecords)->SIZES;
BENCHMARK(findRecords)->SIZES;
BENCHMARK(removeRecords)->SIZES;
BENCHMARK(rewriteRecord)->SIZES;

}  // namespace

BENCHMARK_MAIN();
