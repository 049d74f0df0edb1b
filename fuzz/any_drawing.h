/// A drawing file of any bytes: opened, recovered or refused, and what was opened is described,
/// saves, and can be opened again, also as another version. Damage can always be recovered from.
#ifndef FUZZ_ANY_DRAWING_H
#define FUZZ_ANY_DRAWING_H

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "acad/ads.h"
#include "host/drawing.h"
#include "host/drawing_info.h"

namespace fuzz {

/// A file of its own for this process; removed at its end.
inline const std::string& inputPath() {
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
inline void readEntities() {
    ads_name name = {0, 0};
    for (int i = 0; i < 1000 && acdbEntNext(i == 0 ? nullptr : name, name) == RTNORM; ++i) {
        resbuf apps = {nullptr, RTSTR, {}};
        ACHAR any[] = u"*";
        apps.resval.rstring = any;
        acutRelRb(acdbEntGetX(name, &apps));
    }
}

/// What the host writes it must be able to read.
inline void saveAndOpen(const char* version) {
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

/// Tries a file that consists of two parts.
inline void tryDrawing(std::string_view head, const uint8_t* data, size_t size) {
    const std::string& path = inputPath();
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) return;
    std::fwrite(head.data(), 1, head.size(), file);
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
}

}  // namespace fuzz

#endif
