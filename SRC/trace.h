/// Trace statements. Level and mask are tested, in this order, before anything is evaluated or
/// formatted, so a silent statement costs two reads. A source that traces defines kTraceSource, the
/// path of its module as "SRC/RB".
#ifndef SRC_TRACE_H
#define SRC_TRACE_H

#include "kz/kz_platform.h"

namespace kz {

/// Bits of the condition mask, one for each subject.
enum TraceMask : int32_t {
    kTraceCadFields = 0x1,  ///< field lists on CAD objects
    kTracePoints = 0x8,
    kTraceMatrices = 0x10,
    kTraceVectors = 0x20,
    kTraceErrors = 0x100,
    kTraceData = 0x400,  ///< result buffers, field lists, XDATA, drawing data
    kTraceCad = 0x1000,
    kTraceGroups = 0x4000
};

/// Levels of statements.
enum TraceLevel : int16_t {
    kTraceArgument = 0,  ///< a wrong argument
    kTraceFailure = 1,   ///< a failed operation
    kTraceExit = 2,      ///< exit of a Lisp twin, a missing field
    kTraceEntry = 3      ///< entry, exit, dumps
};

inline bool traceSpeaks(int16_t level, int32_t mask) {
    return kz_Diag_getLevel() >= level && (kz_Diag_getCondition() & mask) != 0;
}

/// Formats into the shared message buffer and writes it.
template <class... Args>
void traceFormatted(const char* source, int line, const kz_Char* format, Args... args) {
    kz_Char* buffer = kz_Diag_getDiagMsgBuf();
    const int count = kz_Str_format(buffer, KZ_DIAG_BUFFER_SIZE, format, args...);
    kz_Diag_putOutput(count, buffer, source, line);
}

/// An assertion speaks whichever bit is set. Execution goes on behind it.
inline void traceAssertion(bool holds, const char* source, int line) {
    if (holds || kz_Diag_getLevel() < kTraceFailure || kz_Diag_getCondition() == 0) return;
    kz_Diag_putOutputMsg(KZ_T("KZ_Assertion failed"), source, line);
}

}  // namespace kz

#define KZ_TRACE(level, mask, text)                                                           \
    do {                                                                                      \
        if (kz::traceSpeaks(level, mask)) kz_Diag_putOutputMsg(text, kTraceSource, __LINE__); \
    } while (false)

#define KZ_TRACEF(level, mask, ...)                                                                \
    do {                                                                                           \
        if (kz::traceSpeaks(level, mask)) kz::traceFormatted(kTraceSource, __LINE__, __VA_ARGS__); \
    } while (false)

#define KZ_ASSERTION(condition) kz::traceAssertion((condition), kTraceSource, __LINE__)

#endif
