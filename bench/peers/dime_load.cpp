/// A peer of bench_files: the time that the dime library takes to load each drawing.
#include <dime/Input.h>
#include <dime/Model.h>

#include <chrono>
#include <cstdio>

int main(int argc, char** argv) {
    int failures = 0;
    for (int i = 1; i < argc; ++i) {
        const auto start = std::chrono::steady_clock::now();
        dimeInput input;
        dimeModel model;
        const bool loaded = input.setFile(argv[i]) && model.read(&input);
        const std::chrono::duration<double, std::milli> took =
            std::chrono::steady_clock::now() - start;
        std::printf("dime: load %s: %.0f ms%s\n", argv[i], took.count(),
                    loaded ? "" : " (refused)");
        failures += loaded ? 0 : 1;
    }
    return failures == 0 ? 0 : 1;
}
