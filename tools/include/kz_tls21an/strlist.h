/// List of strings with a current position. Entries are copied in and stay readable until they are
/// removed. The entries lie in an array: counting and reaching entry n take constant time.
///
/// A NULL list is accepted everywhere: it is empty, and changing it fails. Operations that insert
/// refuse a NULL text.
#ifndef KZ_TLS21AN_STRLIST_H
#define KZ_TLS21AN_STRLIST_H

#include "kz_tls21an/types.h"

typedef struct kz_StrList kz_StrList;

extern "C" {

/// A new list: empty when `first` is NULL, else with a copy of `first` as its only entry. A call
/// may close its arguments with 0, as in kz_StrList_create(text, 0); `end` is not looked at.
/// @return NULL when there is no memory; caller destroys
KZ_TLS_API kz_StrList* kz_StrList_create(const kz_Char* first = nullptr,
                                         const kz_Char* end = nullptr);
/// Destroys the list and its entries. @return 1; 0 for a NULL list
KZ_TLS_API int kz_StrList_destroy(kz_StrList* list);
/// Deep copy, standing at its start; NULL for NULL or without memory.
KZ_TLS_API kz_StrList* kz_StrList_copy(const kz_StrList* list);

/// Appends a copy of `text`. The position stays. @return 1; 0 without memory, the list unchanged
KZ_TLS_API int kz_StrList_insEnd(kz_StrList* list, const kz_Char* text);
/// Inserts a copy of `text` first. The position stays on its entry. @return as kz_StrList_insEnd
KZ_TLS_API int kz_StrList_insStart(kz_StrList* list, const kz_Char* text);
/// Inserts a copy of `text` into a list that is sorted by kz_Str_cmpi, behind the entries equal to
/// it. In a list that is not sorted the place is undefined. @return as kz_StrList_insEnd
KZ_TLS_API int kz_StrList_insSorted(kz_StrList* list, const kz_Char* text);
/// Removes entry `n`, counted from 0. A current position on it moves to the following entry.
/// @return 1; 0 when there is no such entry
KZ_TLS_API int kz_StrList_delNth(kz_StrList* list, int n);
/// Removes all entries. @return 1; 0 for a NULL list
KZ_TLS_API int kz_StrList_delAll(kz_StrList* list);

/// To the first entry. @return 1; 0 when the list is empty
KZ_TLS_API int kz_StrList_start(kz_StrList* list);
/// One step forward. @return 1; 0 when the list is at its end already or reaches it
KZ_TLS_API int kz_StrList_next(kz_StrList* list);
/// 1 when there is no current entry, also for a NULL list.
KZ_TLS_API int kz_StrList_eol(const kz_StrList* list);
/// The current entry, lent; NULL at the end.
KZ_TLS_API const kz_Char* kz_StrList_getCurr(const kz_StrList* list);

/// Number of entries; 0 for a NULL list.
KZ_TLS_API int kz_StrList_length(const kz_StrList* list);
/// Entry `n`, counted from 0, lent; NULL when there is none. The position stays.
KZ_TLS_API const kz_Char* kz_StrList_getNth(const kz_StrList* list, int n);
/// Index of the first entry equal to `text`, compared without regard to case when `ignoreCase` is
/// not 0; -1 when there is none. The position stays.
KZ_TLS_API int kz_StrList_search(const kz_StrList* list, const kz_Char* text, int ignoreCase);

/// The pieces of `text` between the characters of `separators`. Empty pieces are left out, so that
/// "a, b" split at comma and blank gives two entries. NULL separators: one piece.
/// @return a new list, standing at its start, that the caller destroys; NULL for a NULL text or
/// without memory
KZ_TLS_API kz_StrList* kz_StrList_fromDelimitedString(const kz_Char* text,
                                                      const kz_Char* separators);
}

#endif
