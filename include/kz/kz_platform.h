/// The one place where the library meets its surroundings: the platform's and the tools library's
/// headers, and the export mark of its own functions. No other header or source of the library
/// names them, so that another platform takes another include folder and nothing else.
#ifndef KZ_PLATFORM_H
#define KZ_PLATFORM_H

#include "acad/ads.h"
#include "acad/blocks.h"
#include "acad/db.h"
#include "acad/dict.h"
#include "acad/documents.h"
#include "acad/ed.h"
#include "acad/entities.h"
#include "acad/ge.h"
#include "acad/groups.h"
#include "acad/rx.h"
#include "acad/tables.h"
#include "kz_tls21an/base36.h"
#include "kz_tls21an/diag.h"
#include "kz_tls21an/fldlist.h"
#include "kz_tls21an/fname.h"
#include "kz_tls21an/format.h"
#include "kz_tls21an/lnklist.h"
#include "kz_tls21an/matrix.h"
#include "kz_tls21an/memory.h"
#include "kz_tls21an/msg.h"
#include "kz_tls21an/point.h"
#include "kz_tls21an/pointlist.h"
#include "kz_tls21an/str.h"
#include "kz_tls21an/strlist.h"
#include "kz_tls21an/text.h"
#include "kz_tls21an/vector.h"

#if defined(_WIN32)
#if defined(KZ_ZAGLAID_BUILD)
#define KZ_EXPORT __declspec(dllexport)
#else
#define KZ_EXPORT __declspec(dllimport)
#endif
#else
#define KZ_EXPORT __attribute__((visibility("default")))
#endif

#endif
