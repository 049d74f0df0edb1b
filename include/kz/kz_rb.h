/// Result buffers: the kinds that their codes fold into, nodes, the list toolkit over chains, the
/// readers of a Lisp call's arguments and the writers of its result.
///
/// A list is a pointer to its first node, an empty list is NULL; a function that can change the
/// first node takes the address of that pointer. A cursor is the address of a pointer that walks a
/// chain that is somebody else's.
///
/// A value is handed to the building functions by a generic pointer whose meaning follows from the
/// kind of the code: the text itself for texts (the node gets a copy), a pointer to 2 bytes for a
/// short, 4 for a long, a double for a real, three doubles for a point, a two-word name for
/// entities and selection sets; anything else takes no value. Without a pointer a text is empty and
/// any other value 0.
#ifndef KZ_RB_H
#define KZ_RB_H

#include "kz/kz_platform.h"

/// Kinds of value. kz_Rb_type can also give 1002 (a brace of extended data), 5000 (no value) and,
/// for codes above 2000 that it does not know, the code itself. -8 is not used.
enum : int {
    KZ_RB_SHORT = -1,
    KZ_RB_LONG = -2,
    KZ_RB_REAL = -3,
    KZ_RB_STRING = -4,
    KZ_RB_POINT = -5,
    KZ_RB_ENAME = -6,
    KZ_RB_SELSET = -7,
    KZ_RB_LISTBEGIN = -9,
    KZ_RB_LISTEND = -10,
    KZ_RB_NIL = -11,
    KZ_RB_T = -12,
    KZ_RB_HANDLE = -13
};

extern "C" {

// --- kinds --------------------------------------------------------------------------------------

/// Kind of a DXF group or result type code.
KZ_EXPORT int kz_Rb_type(int code);
/// Kind of a node; KZ_RB_NIL for NULL. A brace of extended data (1002) is a KZ_RB_LISTBEGIN when
/// its text starts with '{' and a KZ_RB_LISTEND otherwise, so that brace groups and Lisp lists read
/// alike.
KZ_EXPORT int kz_Rb_typeRb(const resbuf* node);
/// 1 when the node holds a text (kinds string and handle, code 1002); 0 for NULL.
KZ_EXPORT int kz_Rb_typeString(const resbuf* node);

// --- nodes --------------------------------------------------------------------------------------

/// One node with no value. @return NULL when it can't be made; caller releases
KZ_EXPORT resbuf* kz_ResBuf_new(int code);
/// Releases the whole chain with its texts; NULL is ignored.
KZ_EXPORT void kz_ResBuf_release(resbuf* chain);
/// One node with a value. @return NULL when it can't be made; caller releases
KZ_EXPORT resbuf* kz_Rb_create(int code, const void* value);
/// Gives the node another code and value; its old text is freed. NULL is ignored, and without
/// memory the node stays as it was.
KZ_EXPORT void kz_Rb_modify(resbuf* node, int code, const void* value);
/// Frees a chain whose nodes and texts came from the runtime's heap, one by one. Not for chains of
/// this library, which are released with kz_ResBuf_release. NULL is ignored.
KZ_EXPORT void kz_Rb_free(resbuf* chain);

// --- building and changing lists ----------------------------------------------------------------

/// Appends a node; walks to the end of the list.
/// @return the new node, lent; NULL when it can't be made, the list is then unchanged
KZ_EXPORT resbuf* kz_Rb_insEnd(resbuf** list, int code, const void* value);
/// Inserts a node first. @return as kz_Rb_insEnd
KZ_EXPORT resbuf* kz_Rb_insStart(resbuf** list, int code, const void* value);
/// Inserts a node before position `n`, counted from 0; behind the last node when the list is
/// shorter.
/// @return as kz_Rb_insEnd; a negative `n` does nothing and gives NULL
KZ_EXPORT resbuf* kz_Rb_insNth(resbuf** list, int n, int code, const void* value);
/// Inserts a node before the first one that is not smaller by kz_Rb_cmp. @return as kz_Rb_insEnd
KZ_EXPORT resbuf* kz_Rb_insSorted(resbuf** list, int code, const void* value);
/// Append an RTSHORT, an RTREAL, an RTSTR (an empty one for NULL), a node with no value such as
/// RTLB.
/// @return 1; 0 when the node can't be made
KZ_EXPORT int kz_Rb_addIntToList(resbuf** list, int16_t value);
KZ_EXPORT int kz_Rb_addRealToList(resbuf** list, double value);
KZ_EXPORT int kz_Rb_addStrToList(resbuf** list, const kz_Char* text);
KZ_EXPORT int kz_Rb_addTagToList(resbuf** list, int code);
/// Links `tail` behind the last node of `list`, which owns it from then on. Either NULL: nothing.
KZ_EXPORT void kz_Rb_join(resbuf* list, resbuf* tail);
/// Unlinks and releases the node at position `n`; nothing for a position that is not there.
KZ_EXPORT void kz_Rb_delNth(resbuf** list, int n);
/// kz_Rb_modify of the node at position `n`; nothing for a position that is not there.
KZ_EXPORT void kz_Rb_modNth(resbuf* list, int n, int code, const void* value);
/// Sorts ascending by kz_Rb_cmp, in place and stable; nodes are relinked, not copied.
///
/// kz_Rb_cmp is no strict order: numbers closer than 0.001 are equal, points and differing names
/// have no order. Up to 64 nodes the result is that of a selection sort which takes the first of
/// the smallest nodes each time, whatever kz_Rb_cmp says. Longer lists are merge-sorted, which
/// gives the same order as long as no two differing numbers are closer than 0.001 and entity or set
/// names, where there are any, all differ; otherwise such nodes end up in another order among
/// themselves.
KZ_EXPORT void kz_Rb_sort(resbuf** list);

// --- reading lists ------------------------------------------------------------------------------

/// Number of nodes.
KZ_EXPORT int kz_Rb_length(const resbuf* list);
/// The last node, lent; NULL for an empty list.
KZ_EXPORT resbuf* kz_Rb_getLast(resbuf* list);
/// The first node with exactly this code, lent; NULL when there is none. Two names of one search.
KZ_EXPORT resbuf* kz_Rb_entitem(resbuf* list, int code);
KZ_EXPORT resbuf* kz_Rb_searchType(resbuf* list, int16_t code);
/// The first node equal to this code and value by kz_Rb_cmp, lent; NULL when there is none.
KZ_EXPORT resbuf* kz_Rb_search(resbuf* list, int code, const void* value);
/// Three-way comparison: by code as numbers, then by value. Real, long and short: equal below a
/// difference of 0.001. Points: equal below a distance of 0.001, else 1 in both directions. Texts:
/// by code units, any negative or positive number. Names: 0 or -1. All other kinds are equal.
/// @return -2 when either is NULL
KZ_EXPORT int kz_Rb_cmp(const resbuf* a, const resbuf* b);
/// Copy of `count` nodes from position `start` on (a negative count: to the end). The copies share
/// their texts with the list, which must outlive them; the copies' texts must not be freed.
/// @return NULL when nothing is left to copy; a node that can't be made is left out
KZ_EXPORT resbuf* kz_Rb_sublst(const resbuf* list, int start, int count);
/// The Lisp value at the cursor as a flat chain with texts of its own: the inside of a list, with
/// the cursor then behind its close; the two or three reals of a point, with the cursor unmoved.
/// @return NULL for any other node and for an empty list; caller releases
KZ_EXPORT resbuf* kz_Rb_fromRb(resbuf** cursor);

/// Text of the first node with this code, cut at 511 characters; NULL when there is none. The node
/// must hold a text. In a static buffer that the next call overwrites.
KZ_EXPORT const kz_Char* kz_Rb_toString(resbuf* list, int code);
/// Value of a node as text, cut at 511 characters: texts as they are, "%d", "%ld", "%f", and for
/// points two or three "%f" with blanks between. Empty for all else and for NULL. In a static
/// buffer that the next call overwrites.
KZ_EXPORT const kz_Char* kz_Rb_getString(const resbuf* node);
/// Number of a node; a text by its decimal beginning. 0.0 for all else and for NULL.
KZ_EXPORT double kz_Rb_getDouble(const resbuf* node);
/// The same as an integer; a real is truncated toward zero.
KZ_EXPORT int kz_Rb_getInt(const resbuf* node);
/// Number of a real, long or short; 0.0 for all else, texts too.
KZ_EXPORT double kz_Rb_num(const resbuf* node);
/// Three doubles from the first node with this code; without one the numbers of the list's nodes,
/// which must be three at most (elements beyond them stay as they were). @return 1
KZ_EXPORT int kz_Rb_getPoint(const resbuf* list, int code, double out[3]);

// --- readers of a call's arguments --------------------------------------------------------------
//
// A reader clears `out`, passes over list markers, and takes one value from the cursor. `isNil`
// (may be NULL) gets 1 when the value is nil or the list has ended, else 0; `nilAllowed` says
// whether that will do. On 1 the cursor stands behind the value, on 0 on the node that did not fit,
// `out` is cleared and a trace at level 0 says what was wrong.

/// T is 1, texts by their decimal beginning, reals truncated toward zero; the low 16 bits.
KZ_EXPORT int kz_Rb_getNextInt(int16_t* out, resbuf** cursor, int* isNil, int nilAllowed);
/// The same with 32 bits.
KZ_EXPORT int kz_Rb_getNextLong(int32_t* out, resbuf** cursor, int* isNil, int nilAllowed);
/// T is 1.0; a text is a distance in the drawing's linear units, 0.0 when it is none.
KZ_EXPORT int kz_Rb_getNextReal(double* out, resbuf** cursor, int* isNil, int nilAllowed);
/// A point, or three numbers in a row of which the first is a short or a real. A point with two
/// coordinates gets its z from the system variable ELEVATION. On 0 the first numbers may be stored.
KZ_EXPORT int kz_Rb_getNextPoint(double out[3], resbuf** cursor, int* isNil, int nilAllowed);
/// A text or handle, copied. `maxChars` is the size of the buffer, terminator included; with 0 the
/// copy is unbounded.
KZ_EXPORT int kz_Rb_getNextString(kz_Char* out, int maxChars, resbuf** cursor, int* isNil,
                                  int nilAllowed);
/// A text or handle as a new heap text that the caller frees; NULL for nil.
KZ_EXPORT int kz_Rb_getNextStringPtr(kz_Char** out, resbuf** cursor, int* isNil, int nilAllowed);
/// A handle or text as it stands, or the handle of an entity name (empty for an entity that has
/// none); copied unbounded. A name that leads nowhere fails.
KZ_EXPORT int kz_Rb_getNextHandle(kz_Char* out, resbuf** cursor, int* isNil, int nilAllowed);
/// An entity name, or the name of the entity with this handle; an unknown handle is no failure and
/// gives the null name.
KZ_EXPORT int kz_Rb_getNextADSName(ads_name out, resbuf** cursor, int* isNil, int nilAllowed);
/// A selection set.
KZ_EXPORT int kz_Rb_getNextSelSet(ads_name out, resbuf** cursor, int* isNil, int nilAllowed);
/// Any number, text, handle, point or T as a new list of one field "Unknown", which the caller
/// destroys; T is the integer 1. NULL for nil.
KZ_EXPORT int kz_Rb_getNextUnknown(kz_FldList** out, resbuf** cursor, int* isNil, int nilAllowed);
/// The code of the next node, list markers too. The cursor steps over the node in any case.
KZ_EXPORT int kz_Rb_getNextType(int16_t* type, resbuf** cursor, int* isNil, int nilAllowed);
/// The same with the first eight bytes of the node's value (0 at the end of the list): a number, or
/// the address of a text that still belongs to the list. `maxSize` is not looked at. Never traces.
KZ_EXPORT int kz_Rb_getNextValue(int16_t* type, int maxSize, void* value, resbuf** cursor,
                                 int* isNil, int nilAllowed);

// --- writers of a call's result -----------------------------------------------------------------

/// Makes the nodes the elements of the list that the running call gives back. The list stays the
/// caller's and has an RTLE behind its last node afterwards. NULL gives nil.
/// @return 1; 0 when the host refuses the list or a marker can't be made
KZ_EXPORT int kz_ResBuf_returnList(resbuf* list);
/// The same, and releases the list. @return as kz_ResBuf_returnList
KZ_EXPORT int kz_Rb_returnList(resbuf* list);
/// Gives one node back as a Lisp value; a long as a real, a kind that Lisp can't have as nil. The
/// node stays the caller's.
KZ_EXPORT void kz_Rb_returnValue(const resbuf* node);

// --- readers of what a Lisp function returned ---------------------------------------------------
//
// Each looks at one node (NULL is accepted), moves no cursor and frees nothing. Those with `out`
// clear it first and give 0 for a NULL `out`.

/// 1 for T and for an RTSHORT other than 0, else 0.
KZ_EXPORT int kz_Resbuf_getRetStat(const resbuf* rb);
/// 1 for T, the value of an RTSHORT, else 0.
KZ_EXPORT int kz_Resbuf_getRetErrStat(const resbuf* rb);
/// Value of a short, else 0.
KZ_EXPORT int kz_Resbuf_getRetInteger(const resbuf* rb);
/// Real, long or short. @return 1 or 0
KZ_EXPORT int kz_Resbuf_getRetReal(double* out, const resbuf* rb);
/// A point, or three numeric nodes in a row. @return 1 or 0
KZ_EXPORT int kz_Resbuf_getRetPoint(double out[3], const resbuf* rb);
/// Entity name. @return 1 or 0
KZ_EXPORT int kz_Resbuf_getRetName(ads_name out, const resbuf* rb);
/// Selection set. @return 1 or 0
KZ_EXPORT int kz_Resbuf_getRetSelSet(ads_name out, const resbuf* rb);
/// Text, copied unbounded. @return 1 or 0
KZ_EXPORT int kz_Resbuf_getRetString(kz_Char* out, const resbuf* rb);

// --- string lists -------------------------------------------------------------------------------

/// The texts of the list at the cursor; other values are passed over. The cursor ends on the
/// closing marker; for nil it stays. @return a new list, perhaps empty, that the caller destroys
KZ_EXPORT kz_StrList* kz_StrList_fromLisp(resbuf** cursor);
/// Gives the entries, each cut at 511 characters, back to Lisp as a list; nil for none and for
/// NULL.
KZ_EXPORT void kz_StrList_toLisp(kz_StrList* list);
/// RTLB, an RTSTR for each entry, RTLE; NULL for NULL or without memory. Caller releases
KZ_EXPORT resbuf* kz_StrList_toRb(kz_StrList* list);
/// 1 when `text` matches the wildcard `pattern`; 0 for NULL.
KZ_EXPORT int kz_Str_wcMatch(const kz_Char* text, const kz_Char* pattern);

// --- printing -----------------------------------------------------------------------------------

/// One node as a labelled line, with a line feed at its end when `lineEnd` is not 0; cut at 511
/// characters. Empty for NULL. In a static buffer that the next call overwrites.
KZ_EXPORT const kz_Char* kz_Rb_printBuffer(const resbuf* node, int lineEnd);
/// Prints every node on the command line, one a line.
KZ_EXPORT void kz_Rb_printList(const resbuf* list);
/// Writes every node to the trace output when `level` is not above the current level and `mask`
/// shares a bit with the condition mask.
KZ_EXPORT void kz_Rb_printListDiag(const resbuf* list, int16_t level, int32_t mask);
}

#endif
