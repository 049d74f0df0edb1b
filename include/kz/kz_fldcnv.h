/// Field lists to and from result-buffer chains, in two forms. The Lisp form is a list of fields,
/// each a list of its name and its values: (("FLAG" 2) ("ENDS" (0.0 0.0 0.0) (5.0 0.0 0.0))); a
/// bare name is a field with no value. The XData form has each field between braces (1002), its
/// name (1000) first.
///
/// When the Lisp form is read, a text behind a point names the point's type by its first letter (D,
/// M or O, all else P), and a list of a group code and a value, as (1005 "2F") or (1040 . 2.5),
/// gives a value in the type of that code. Field names are folded to upper case and cut at 511
/// characters. Written texts are cut there, too.
#ifndef KZ_FLDCNV_H
#define KZ_FLDCNV_H

#include "kz/kz_platform.h"

extern "C" {

/// Reads fields into `*list`, which is made when it is NULL and added to otherwise, up to the end
/// of the enclosing list (Lisp form; the cursor ends behind it) or of the chain (XData form).
/// @return 1; 0 for a value that a field list can't hold: the list is then destroyed, `*list` NULL
/// and the cursor behind the offending node
KZ_EXPORT int kz_Rb_convertRbToFldList(kz_FldList** list, resbuf** cursor, int xdataMode);
/// Stores the value at the cursor in the field `name`, in the type of group `code`. `*position` is
/// 1 for the field's first value, which replaces what the field held, and above 1 for a further
/// one; it is counted up. On 1 the cursor stands behind the value.
/// @return 0 when the value does not fit the code, or for position 0
KZ_EXPORT int kz_Rb_convertRbNode(kz_FldList** list, const kz_Char* name, int code, resbuf** cursor,
                                  int* position);

/// Appends the current field of the list to the chain. `wrap` allows the markers around it: with
/// `open` the opening one and the name, with `close` the closing one.
/// @return 1; 0 without memory, without a current field and, in the XData form, for a type that it
/// does not have. The chain then holds what was appended until there.
KZ_EXPORT int kz_Rb_convertFldListToRb(resbuf** chain, kz_FldList* list, int xdataMode, int open,
                                       int close, int wrap);
/// The same; with `listMarkers` the XData form has RTLB and RTLE in place of the braces.
KZ_EXPORT int kz_Rb_convertFldListToRbExt(resbuf** chain, kz_FldList* list, int xdataMode, int open,
                                          int close, int wrap, int listMarkers);

/// The list in the Lisp form, its fields one after the other; without `withValues` only their
/// names. `outerList` puts one pair of markers around all. The position ends behind the last field.
/// @return a new chain that the caller releases; NULL for NULL, and for an empty list without
/// `outerList`
KZ_EXPORT resbuf* kz_FldList_toRb(kz_FldList* list, int withValues, int outerList);
/// The same chain, for callers that hand it to a Lisp function.
KZ_EXPORT resbuf* kz_FldList_toRbForInvoke(kz_FldList* list, int withValues, int outerList);
/// The field list at the cursor in the Lisp form. With `keepBegin` the marker at the cursor opens
/// the first field instead of the list, so that fields in a row with no list around them read as
/// one.
/// @return a new list that the caller destroys; NULL for nil (which is stepped over), and, with a
/// trace, for all that is no field list
KZ_EXPORT kz_FldList* kz_FldList_fromRb(resbuf** cursor, int keepBegin);

/// Reader of a call's argument: a field list, which the caller destroys. Works as the readers in
/// kz_rb.h, but passes over no marker.
KZ_EXPORT int kz_Rb_getNextFldList(kz_FldList** out, resbuf** cursor, int* isNil, int nilAllowed);
/// Gives the list back to Lisp as the value of the running call; nil for NULL and for an empty
/// list. The field list stays the caller's.
KZ_EXPORT void kz_FldList_returnList(kz_FldList* list);
}

#endif
