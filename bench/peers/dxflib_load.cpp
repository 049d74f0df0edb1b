/// A peer of bench_files: the time that the dxflib library takes to read each drawing and to hand
/// every entity over. It keeps nothing itself.
#include <dxflib/dl_creationadapter.h>
#include <dxflib/dl_dxf.h>

#include <chrono>
#include <cstdio>

namespace {

/// Counts what it is handed.
class Counter : public DL_CreationAdapter {
  public:
    void addLine(const DL_LineData&) override { ++entities; }
    void addCircle(const DL_CircleData&) override { ++entities; }
    void addText(const DL_TextData&) override { ++entities; }
    void addInsert(const DL_InsertData&) override { ++entities; }

    long entities = 0;
};

}  // namespace

int main(int argc, char** argv) {
    int failures = 0;
    for (int i = 1; i < argc; ++i) {
        const auto start = std::chrono::steady_clock::now();
        Counter counter;
        DL_Dxf reader;
        const bool loaded = reader.in(argv[i], &counter);
        const std::chrono::duration<double, std::milli> took =
            std::chrono::steady_clock::now() - start;
        std::printf("dxflib: load %s: %.0f ms, %ld entities%s\n", argv[i], took.count(),
                    counter.entities, loaded ? "" : " (refused)");
        failures += loaded ? 0 : 1;
    }
    return failures == 0 ? 0 : 1;
}
