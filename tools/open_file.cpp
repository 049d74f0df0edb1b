/// Opening a file by a wide name: UTF-8 bytes where the system's names are bytes.
#include "open_file.h"

#include <cstring>
#include <string>

#include "kz_tls21an/text.h"

std::FILE* kz::openFile(const kz_Char* name, const char* mode) {
#if defined(_WIN32)
    return _wfopen(name, std::wstring(mode, mode + std::strlen(mode)).c_str());
#else
    return std::fopen(toUtf8(name).c_str(), mode);
#endif
}
