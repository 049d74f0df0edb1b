/// Files at their limits: a drawing of a million entities is loaded, one entity of it opened, the
/// drawing saved untouched and with one change, each beside its floor in the same run. One pass
/// each, since the first one is what a user waits for; the arguments are drawings.
#include <fcntl.h>
#include <unistd.h>

#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>

#include "acad/ads.h"
#include "acad/db.h"
#include "host/drawing.h"

namespace {

double measured(const std::string& what, double floor, const auto& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
    std::printf("host: %s: %.2f ms", what.c_str(), took.count());
    if (floor > 0) std::printf(", %.2f times the floor", took.count() / floor);
    std::printf("\n");
    return took.count();
}

std::string readBytes(const std::string& path) {
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    std::string bytes(static_cast<size_t>(file.tellg()), '\0');
    file.seekg(0);
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return bytes;
}

/// Splits lines into pairs by memchr and reads each code.
size_t splitIntoPairs(const std::string& path) {
    const std::string bytes = readBytes(path);
    const char* at = bytes.data();
    const char* const end = at + bytes.size();
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
        sum += static_cast<size_t>(code);
        at = value_end + 1;
    }
    return sum;
}

void copyBytes(const std::string& bytes, const std::string& target) {
    const int fd = ::open(target.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    for (size_t done = 0; done < bytes.size();) {
        const ssize_t wrote = ::write(fd, bytes.data() + done, bytes.size() - done);
        if (wrote <= 0) break;
        done += static_cast<size_t>(wrote);
    }
    ::fsync(fd);
    ::close(fd);
}

/// Peak memory of the process in bytes; `reset` begins anew.
size_t peakMemory(bool reset) {
    if (reset) std::ofstream("/proc/self/clear_refs") << "5";
    std::ifstream status("/proc/self/status");
    std::string word;
    size_t kilobytes = 0;
    while (status >> word) {
        if (word == "VmHWM:") status >> kilobytes;
    }
    return kilobytes * 1024;
}

void need(bool good, const std::string& error) {
    if (good) return;
    std::fprintf(stderr, "bench_files: %s\n", error.c_str());
    std::exit(3);
}

void measure(const std::string& path) {
    const std::string name = path.substr(path.rfind('/') + 1);
    const std::string target = path + ".saved";
    std::string error;
    size_t sum = 0;
    size_t size = 0;
    double copied = 0;
    {
        const std::string bytes = readBytes(path);
        size = bytes.size();
        copied = measured("floor: copy the bytes of " + name, 0, [&] { copyBytes(bytes, target); });
        ::unlink(target.c_str());
    }
    const double split =
        measured("floor: split " + name + " into pairs", 0, [&] { sum = splitIntoPairs(path); });
    const size_t before = peakMemory(true);
    need(host::openDrawing(path, error), error);
    const auto used = static_cast<double>(peakMemory(false) - before);
    // The second time, as the splitter had its memory once before, too.
    host::closeDrawing();
    measured("load " + name, split, [&] { need(host::openDrawing(path, error), error); });
    std::printf("host: memory of %s: %.2f times the file (%zu pairs' codes)\n", name.c_str(),
                used / static_cast<double>(size), sum);
    ads_name last;
    need(acdbEntLast(last) == RTNORM, "no entity");
    measured("open one entity by handle and decode it", 0, [&] {
        ads_name found;
        need(acdbHandEnt(u"2000", found) == RTNORM, "no such handle");
        resbuf* list = acdbEntGet(found);
        need(list != nullptr, "no list");
        acutRelRb(list);
    });
    measured("save " + name + " untouched", copied,
             [&] { need(host::saveDrawing(target, error), error); });
    ::unlink(target.c_str());
    measured("erase one entity", 0, [&] { acdbEntDel(last); });
    measured("save " + name + " with one change", copied,
             [&] { need(host::saveDrawing(target, error), error); });
    ::unlink(target.c_str());
    host::closeDrawing();
}

}  // namespace

int main(int argc, char** argv) {
    for (int i = 1; i < argc; ++i)
        measure(argv[i]);
    return 0;
}
