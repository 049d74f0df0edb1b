/// The main road in numbers: load a drawing, set a field on every entity from C++ and from Lisp,
/// save. The drawings are arguments (scripts/bench.sh makes them); the floor of each step is
/// measured in the same run: splitting the file's lines into pairs, copying its bytes.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <charconv>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "host/drawing.h"
#include "host/lisp.h"
#include "host/module.h"
#include "kz/kz_zaglaid.h"
#include "kz_tls21an/text.h"

namespace {

std::string readBytes(const std::string& path) {
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) return {};
    std::fseek(file, 0, SEEK_END);
    std::string bytes(static_cast<size_t>(std::ftell(file)), '\0');
    std::rewind(file);
    if (std::fread(bytes.data(), 1, bytes.size(), file) != bytes.size()) bytes.clear();
    std::fclose(file);
    return bytes;
}

/// The floor of loading: read the file, split its lines by memchr, read each code.
void splitIntoPairs(benchmark::State& state, const std::string& path) {
    for (auto _ : state) {
        const std::string bytes = readBytes(path);
        const char* at = bytes.data();
        const char* end = at + bytes.size();
        size_t pairs = 0;
        size_t sum = 0;
        while (at < end) {
            const auto* code_end =
                static_cast<const char*>(std::memchr(at, '\n', static_cast<size_t>(end - at)));
            if (code_end == nullptr) break;
            while (*at == ' ')
                ++at;
            int code = 0;
            std::from_chars(at, code_end, code);
            const auto* value_end = static_cast<const char*>(
                std::memchr(code_end + 1, '\n', static_cast<size_t>(end - code_end - 1)));
            if (value_end == nullptr) break;
            sum += static_cast<size_t>(code) + static_cast<size_t>(value_end - code_end);
            ++pairs;
            at = value_end + 1;
        }
        benchmark::DoNotOptimize(sum);
        state.counters["pairs"] = static_cast<double>(pairs);
    }
}

void load(benchmark::State& state, const std::string& path) {
    std::string error;
    for (auto _ : state) {
        if (!host::openDrawing(path, error)) state.SkipWithError(error.c_str());
    }
    host::closeDrawing();
}

/// The floor of saving: the bytes written to a new file and synced.
void copyBytes(benchmark::State& state, const std::string& path) {
    const std::string bytes = readBytes(path);
    const std::string target = path + ".copy";
    for (auto _ : state) {
        const int fd = ::open(target.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        if (::write(fd, bytes.data(), bytes.size()) < 0) state.SkipWithError("write failed");
        ::fsync(fd);
        ::close(fd);
        ::unlink(target.c_str());
    }
}

void saveUntouched(benchmark::State& state, const std::string& path) {
    std::string error;
    const std::string target = path + ".saved";
    if (!host::openDrawing(path, error)) state.SkipWithError(error.c_str());
    for (auto _ : state) {
        ::unlink(target.c_str());
        if (!host::saveDrawing(target, error)) state.SkipWithError(error.c_str());
    }
    ::unlink(target.c_str());
    host::closeDrawing();
}

/// kz_XData_setFld on every entity of a drawing that was just opened.
void setFields(benchmark::State& state, const std::string& path) {
    std::string error;
    size_t calls = 0;
    for (auto _ : state) {
        state.PauseTiming();
        if (!host::openDrawing(path, error)) state.SkipWithError(error.c_str());
        state.ResumeTiming();
        ads_name name = {0, 0};
        const ads_name* from = nullptr;
        for (int16_t value = 0; acdbEntNext(from == nullptr ? nullptr : *from, name) == RTNORM;
             ++value) {
            from = &name;
            if (kz_XData_setFld(name, KZ_FLD_INT, &value, KZ_T("STATE"), KZ_T("BENCH"), 1, 0) !=
                1) {
                state.SkipWithError("kz_XData_setFld failed");
            }
            ++calls;
        }
    }
    state.SetItemsProcessed(static_cast<int64_t>(calls));
    host::closeDrawing();
}

void setFieldsFromLisp(benchmark::State& state, const std::string& path) {
    std::string error;
    size_t calls = 0;
    for (auto _ : state) {
        state.PauseTiming();
        if (!host::openDrawing(path, error)) state.SkipWithError(error.c_str());
        state.ResumeTiming();
        const host::LispOutcome outcome = host::evalLisp(
            u"(setq n 0 e (entnext)) (while e (kz_XData_setFld e (rem n 1000) \"STATE\" \"BENCH\" "
            u"1)"
            u" (setq n (1+ n) e (entnext e))) n");
        if (!outcome.ok()) state.SkipWithError("the Lisp loop failed");
        calls += static_cast<size_t>(std::stol(kz::toUtf8(outcome.value)));
    }
    state.SetItemsProcessed(static_cast<int64_t>(calls));
    host::closeDrawing();
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
    for (int i = 1; i < argc; ++i) {
        const std::string path = argv[i];
        const auto add = [&path](const char* what,
                                 void (*run)(benchmark::State&, const std::string&)) {
            const std::string name = std::string(what) + " " + path.substr(path.rfind('/') + 1);
            benchmark::RegisterBenchmark(name.c_str(), run, path)->Unit(benchmark::kMillisecond);
        };
        add("floor: split into pairs", splitIntoPairs);
        add("load", load);
        add("floor: copy the bytes", copyBytes);
        add("save untouched", saveUntouched);
        add("kz_XData_setFld from C++", setFields);
        add("kz_XData_setFld from Lisp", setFieldsFromLisp);
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
