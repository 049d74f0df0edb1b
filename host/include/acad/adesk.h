/// Basic types of the platform's interface and the export mark of the host library.
#ifndef ACAD_ADESK_H
#define ACAD_ADESK_H

#include <cstddef>
#include <cstdint>

#include "kz_tls21an/types.h"

/// One UTF-16 code unit of the platform; the same unit as the suite's.
typedef kz_Char ACHAR;

#if defined(_WIN32)
#if defined(KZ_HOST_BUILD)
#define ACAD_API __declspec(dllexport)
#else
#define ACAD_API __declspec(dllimport)
#endif
#else
#define ACAD_API __attribute__((visibility("default")))
#endif

#endif
