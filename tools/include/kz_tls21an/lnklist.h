/// Linked list of untyped elements with a current position. The list owns its nodes; the elements
/// belong to it only as far as the destructor handed to the removing operations says (NULL:
/// elements stay the caller's). A NULL list is accepted everywhere: it is empty, and changing it
/// fails.
#ifndef KZ_TLS21AN_LNKLIST_H
#define KZ_TLS21AN_LNKLIST_H

#include "kz_tls21an/types.h"

typedef struct kz_LnkList kz_LnkList;

/// A saved position. Valid until the element at that position is removed.
typedef void* kz_LnkPos;

extern "C" {

/// A new empty list. @return NULL when there is no memory; caller destroys
KZ_TLS_API kz_LnkList* kz_LnkList_create(void);
/// Destroys each element with `destructor` (may be NULL), then the list. @return 1; 0 for a NULL
/// list
KZ_TLS_API int kz_LnkList_destroy(kz_LnkList* list, kz_Destructor destructor);
/// Removes all elements; the list is empty afterwards and at its end. @return 1; 0 for a NULL list
KZ_TLS_API int kz_LnkList_delAll(kz_LnkList* list, kz_Destructor destructor);
/// Removes the current element; the following one becomes current. @return 1; 0 when there is none
KZ_TLS_API int kz_LnkList_delCurr(kz_LnkList* list, kz_Destructor destructor);
/// Removes element `n`, counted from 0. A current position on it moves to the following element.
/// @return 1; 0 when there is no such element
KZ_TLS_API int kz_LnkList_delNth(kz_LnkList* list, int n, kz_Destructor destructor);

/// Appends. The position stays. @return the new node's position, to be tested for NULL: no memory
KZ_TLS_API kz_LnkPos kz_LnkList_insEnd(kz_LnkList* list, void* element);
/// Inserts first. The position stays. @return as kz_LnkList_insEnd
KZ_TLS_API kz_LnkPos kz_LnkList_insStart(kz_LnkList* list, void* element);
/// Inserts before the current element, or last when the list is at its end. The position stays.
KZ_TLS_API kz_LnkPos kz_LnkList_insBefore(kz_LnkList* list, void* element);
/// Moves all elements of `tail` behind those of `list` and destroys the emptied `tail`.
/// @return 1; 0 when either is NULL or both are the same list, and nothing changes
KZ_TLS_API int kz_LnkList_join(kz_LnkList* list, kz_LnkList* tail);

/// To the first element. @return 1; 0 when the list is empty
KZ_TLS_API int kz_LnkList_start(kz_LnkList* list);
/// To the last element. @return 1; 0 when the list is empty
KZ_TLS_API int kz_LnkList_end(kz_LnkList* list);
/// One step forward. @return 1; 0 when the list is at its end already or reaches it
KZ_TLS_API int kz_LnkList_next(kz_LnkList* list);
/// One step back; before the first element the list is at its end. @return as kz_LnkList_next
KZ_TLS_API int kz_LnkList_prev(kz_LnkList* list);
/// `n` steps forward. @return 1; 0 when the list ends before
KZ_TLS_API int kz_LnkList_skip(kz_LnkList* list, int n);
/// 1 when there is no current element, also for a NULL list.
KZ_TLS_API int kz_LnkList_eol(const kz_LnkList* list);
/// 1 when the current element is the last one.
KZ_TLS_API int kz_LnkList_isLast(const kz_LnkList* list);

/// Number of elements; 0 for a NULL list. Constant time.
KZ_TLS_API int kz_LnkList_length(const kz_LnkList* list);
/// The current element, lent; NULL at the end.
KZ_TLS_API void* kz_LnkList_getCurr(const kz_LnkList* list);
/// Element `n`, counted from 0, lent; NULL when there is none. The position stays.
KZ_TLS_API void* kz_LnkList_getNth(const kz_LnkList* list, int n);
/// Saves the position.
KZ_TLS_API kz_LnkPos kz_LnkList_getPos(const kz_LnkList* list);
/// Goes back to a saved position.
KZ_TLS_API void kz_LnkList_setPos(kz_LnkList* list, kz_LnkPos position);
}

#endif
