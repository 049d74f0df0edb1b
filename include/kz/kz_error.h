/// The error list of the process. A function that fails may add an entry; a later caller decides
/// when the list is shown, where, and when it is cleared. Nothing in the library shows or clears
/// it. The list is newest first, and so are all outputs.
#ifndef KZ_ERROR_H
#define KZ_ERROR_H

#include "kz/kz_platform.h"

/// One row of a table of errors. A table ends with a row of code -1; any module may have its own.
struct kz_ErrorMsg {
    int32_t code;            ///< unique in its table, not negative
    const kz_Char* message;  ///< default wording
    const kz_Char* module;   ///< module name for kz_Msg
    int32_t format;          ///< format number for kz_Msg
};

/// Bits of an output mask.
enum {
    KZ_ERROR_TO_STDERR = 1,  ///< the command line
    KZ_ERROR_TO_LOG = 2,     ///< the log file
    KZ_ERROR_TO_DIALOG = 4   ///< a dialog for each entry
};

extern "C" {

/// The general errors.
KZ_EXPORT extern const kz_ErrorMsg kz_ErrorGroupGeneral[];

// --- the list -----------------------------------------------------------------------------------

/// Adds the error `code` of a table, which must stay where it is. `helpFile` and `helpTopic` lead
/// to its help and may be NULL; they are copied.
/// @return the entry's place in the list; NULL when there is no memory, and nothing is added
KZ_EXPORT kz_LnkPos kz_Error_submit(const kz_ErrorMsg* group, int code, const kz_Char* helpFile,
                                    const kz_Char* helpTopic);
/// The same with a text of its own, which is copied, in the place of a table's. `text` may be the
/// shared message buffer of the trace facility.
KZ_EXPORT kz_LnkPos kz_Error_submitCustomError(const kz_Char* text, int code,
                                               const kz_Char* helpFile, const kz_Char* helpTopic);
/// 1 when the list has no entry, otherwise 0.
KZ_EXPORT int kz_Error_isOk(void);
/// Removes all entries.
KZ_EXPORT void kz_Error_clearAll(void);

// --- outputs ------------------------------------------------------------------------------------
//
// A line of output is the code, a comma, a blank and the text, which is empty for a code that its
// table does not have. Several outputs come in the order of their bits. The list stays as it is.

/// Shows all entries. A mask of 0 is the default mask.
KZ_EXPORT void kz_Error_outputAll(int mask);
/// Shows the newest entry only. A mask of 0 is the default mask.
KZ_EXPORT void kz_Error_outputCurr(int mask);
/// Show all entries on one output.
KZ_EXPORT void kz_Error_outputAllToStdErr(void);
KZ_EXPORT void kz_Error_outputAllToLogFile(void);
KZ_EXPORT void kz_Error_outputAllToDialog(void);
/// Sets the default mask, which is 1 at first; 0 and masks of other bits change nothing.
/// @return the default mask before
KZ_EXPORT int kz_Error_setDefaultOutput(int mask);
/// Names the log file (UTF-8). Each output to it starts it anew; one that can't be opened is passed
/// over. NULL and an empty name stand for KZ_ERROR.LOG, with a message on the command line.
/// @return 1
KZ_EXPORT int kz_ErrorLogFile_set(const kz_Char* name);

// --- texts --------------------------------------------------------------------------------------

/// Display text of an error of a table, valid until the next call. NULL without a table, for a code
/// that the table does not have, and without memory.
KZ_EXPORT const kz_Char* kz_ErrorMsg_getFromTable(const kz_ErrorMsg* group, int code);
/// Says in `buffer` what a function of the platform gave, by the name of the status or, when it has
/// none, by its number. `buffer` holds KZ_DIAG_BUFFER_SIZE characters; NULL does nothing. A NULL
/// name of the function prints as "<Unknown>".
KZ_EXPORT void kz_Error_getADSErrorMsg(kz_Char* buffer, const kz_Char* functionName, int status);
/// The same for a status of the database's classes, always by its number.
KZ_EXPORT void kz_Error_getARXErrorMsg(kz_Char* buffer, const kz_Char* functionName, int status);
}

#endif
