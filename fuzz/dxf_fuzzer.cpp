/// Any bytes as a drawing file: opened or refused, and what was opened saves and closes.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "acad/ads.h"
#include "host/drawing.h"

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

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string& path = inputPath();
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) return 0;
    std::fwrite(data, 1, size, file);
    std::fclose(file);
    std::string error;
    if (host::openDrawing(path, error)) {
        readEntities();
        acdbRegApp(u"FUZZ");
        host::saveDrawing(path, error);
        host::closeDrawing();
    }
    return 0;
}
