/// Opening a file by a wide name.
#ifndef KZ_TOOLS_OPEN_FILE_H
#define KZ_TOOLS_OPEN_FILE_H

#include <cstdio>

#include "kz_tls21an/types.h"

namespace kz {

/// fopen with a wide name and an ASCII mode. @return NULL when the file can't be opened
std::FILE* openFile(const kz_Char* name, const char* mode);

}  // namespace kz

#endif
