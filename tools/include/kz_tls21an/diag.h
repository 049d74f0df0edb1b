/// The trace facility. Whether a statement speaks is decided by a level and a condition mask, both
/// process-wide; callers test level, then mask, before they format anything.
#ifndef KZ_TLS21AN_DIAG_H
#define KZ_TLS21AN_DIAG_H

#include "kz_tls21an/types.h"

/// Size of the shared message buffer in characters.
#define KZ_DIAG_BUFFER_SIZE 4096

/// Output options of kz_Diag_setOutput.
enum {
    KZ_DIAG_OUTPUT_NONE = 0,    ///< nowhere
    KZ_DIAG_OUTPUT_STDERR = 1,  ///< the standard error stream (the start value)
    KZ_DIAG_OUTPUT_FILE = 2,    ///< a file, emptied when it is selected
    KZ_DIAG_OUTPUT_APPEND = 3,  ///< a file, added to
    KZ_DIAG_OUTPUT_HANDLER = 4  ///< the function given to kz_Diag_setHandler
};

/// Receives one trace line without its line end, and where it came from.
typedef void (*kz_DiagHandler)(const kz_Char* message, const char* source, int line);

extern "C" {

/// The shared message buffer, KZ_DIAG_BUFFER_SIZE characters, overwritten by the next statement.
KZ_TLS_API extern kz_Char KZ_DiagMsgBuf[KZ_DIAG_BUFFER_SIZE];

/// What the two functions below give; only for them, so that a silent statement needs no call.
KZ_TLS_API extern int16_t KZ_DiagLevel;
KZ_TLS_API extern int32_t KZ_DiagCondition;

/// The level; starts at -1, at which nothing speaks.
KZ_TLS_API inline int16_t kz_Diag_getLevel(void) {
    return KZ_DiagLevel;
}
/// The condition mask; starts at 0.
KZ_TLS_API inline int32_t kz_Diag_getCondition(void) {
    return KZ_DiagCondition;
}
/// Sets the level. @return the level before
KZ_TLS_API int16_t kz_Diag_setLevel(int16_t level);
/// Sets the mask. @return the mask before
KZ_TLS_API int32_t kz_Diag_setCondition(int32_t mask);
/// Writes one fixed message as "source(line): message".
KZ_TLS_API void kz_Diag_putOutputMsg(const kz_Char* message, const char* source, int line);
/// Writes the message in `buffer`, `count` characters long (negative: up to its terminator).
KZ_TLS_API void kz_Diag_putOutput(int count, const kz_Char* buffer, const char* source, int line);
/// KZ_DiagMsgBuf.
KZ_TLS_API kz_Char* kz_Diag_getDiagMsgBuf(void);
/// The output option; `buffer` (256 characters, may be NULL) gets the file name for options 2 and 3
/// and is emptied for the others.
KZ_TLS_API int kz_Diag_getOutput(kz_Char* buffer);
/// Selects the output. Options 2 and 3 need a file name that can be opened for writing.
/// @return 1; 0 for an unknown option, a missing name or a file that can't be opened, output
/// unchanged
KZ_TLS_API int kz_Diag_setOutput(int option, const kz_Char* fileName);
/// Level -1, mask 0, output to the standard error stream; an open file is closed.
KZ_TLS_API void kz_Diag_disable(void);
/// The receiver of option 4; NULL takes it away. @return the receiver before
KZ_TLS_API kz_DiagHandler kz_Diag_setHandler(kz_DiagHandler handler);

// A library above this one may export kz_Diag_putOutputMsg, kz_Diag_putOutput and kz_Diag_setOutput
// once more. Those names then lead to the library that the loader finds first; these lead here.

KZ_TLS_API void kz_tls_Diag_putOutputMsg(const kz_Char* message, const char* source, int line);
KZ_TLS_API void kz_tls_Diag_putOutput(int count, const kz_Char* buffer, const char* source,
                                      int line);
KZ_TLS_API int kz_tls_Diag_setOutput(int option, const kz_Char* fileName);
}

#endif
