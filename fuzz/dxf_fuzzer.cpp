/// Any bytes as a drawing file: opened, recovered or refused, and what was opened is described,
/// saves, and can be opened again, also as another version. Damage can always be recovered from.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "acad/ads.h"
#include "host/drawing.h"
#include "host/drawing_info.h"

namespace {

/// A file of its own for this process; removed at its end.
const std::string& inputPath() {
    static const std::string path = [] {
        char name[] = "/tmp/kz_dxf_fuzzer.XXXXXX";
        const int fd = mkstemp(name);
        if (fd >= 0) close(fd);
        return std::string(name);
    }();
    std::atexit([] { std::remove(path.c_str()); });
    return path;
}

/// Reads every entity, so that whatever was accepted is decoded too.
void readEntities() {
    ads_name name = {0, 0};
    for (int i = 0; i < 1000 && acdbEntNext(i == 0 ? nullptr : name, name) == RTNORM; ++i) {
        resbuf apps = {nullptr, RTSTR, {}};
        ACHAR any[] = u"*";
        apps.resval.rstring = any;
        acutRelRb(acdbEntGetX(name, &apps));
    }
}

/// What the host writes it must be able to read.
void saveAndOpen(const char* version) {
    host::SaveOptions options;
    options.version = version;
    options.force = true;
    std::string error;
    const host::SaveOutcome outcome = host::saveDrawing(inputPath(), options);
    if (outcome.saved && !host::openDrawing(inputPath(), error)) {
        std::fprintf(stderr, "saved as \"%s\": %s\n", version, error.c_str());
        std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string& path = inputPath();
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) return 0;
    std::fwrite(data, 1, size, file);
    std::fclose(file);
    host::OpenOutcome outcome = host::openDrawing(path, host::OpenOptions());
    const bool damaged = outcome.damaged;
    host::OpenOptions opening;
    opening.recover = damaged;
    if (damaged) outcome = host::openDrawing(path, opening);
    if (outcome.opened) {
        host::DrawingInfo info;
        host::describeDrawing(path, info, opening);
        readEntities();
        acdbRegApp(u"FUZZ");
        saveAndOpen(size % 2 == 0 ? "R2000" : "R2018");
        saveAndOpen("");
        host::closeDrawing();
    } else if (damaged && outcome.error.find("nothing of a drawing") == std::string::npos) {
        std::fprintf(stderr, "not recovered: %s\n", outcome.error.c_str());
        std::abort();
    }
    return 0;
}
