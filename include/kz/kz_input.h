/// Input from the user: points, angles, distances, numbers, texts and windows, and the keywords
/// that may be given instead.
///
/// A keyword is not handed to the caller as a text. It names a node of a kz_KeyActionsList, whose
/// function runs while the question is still open and decides by its status whether the question is
/// put again or how it ends. One node may be the default action, which Enter alone runs. Points are
/// in the caller's local coordinates; where no service keeps such a system they are the UCS's.
#ifndef KZ_INPUT_H
#define KZ_INPUT_H

#include "kz/kz_platform.h"

/// What an input function gives. An action's function gives one of these, too; any other number of
/// it ends the question and is handed on.
enum : int32_t {
    KZ_INPUT_ENTER = -5,  ///< Enter, and there is no default action
    KZ_INPUT_VALUE = -4,  ///< there is a value, stored at the result address
    KZ_INPUT_AGAIN = -3,  ///< from an action: ask again; no input function gives it
    KZ_INPUT_CANCEL = -2  ///< cancelled, an error of the platform, or a question that can't be put
};

/// The action of a keyword. `result` is the address that the input function was given for its
/// value, of the value's type and in local coordinates; `args` is what the node holds.
typedef int32_t (*kz_KeyActionFunc)(void* result, void* args);

/// A keyword and its action. Allocated with kz_Malloc.
struct kz_KeyActionsNode {
    kz_Char* key;           ///< as acedInitGet takes it; owned, never NULL
    kz_KeyActionFunc func;  ///< may be NULL
    void* args;             ///< handed to func; not owned
    int32_t status;         ///< what the keyword gives when there is no func
    int32_t isDefault;      ///< 1 for the default action, else 0
};

/// List of kz_KeyActionsNode records that the list owns.
typedef kz_LnkList kz_KeyActionsList;

extern "C" {

// --- keywords and their actions -----------------------------------------------------------------
//
// NULL for a list is accepted everywhere: it has no keywords, no default, and can't be changed.
// The functions that search, and copy and generateKeyString, move the position of the list, so an
// action must not rely on it.

/// A new empty list. @return NULL without memory; caller destroys
KZ_EXPORT kz_KeyActionsList* kz_KeyActionsList_create(void);
/// A new node with a copy of the key. Any `isDefault` but 0 counts as 1.
/// @return NULL for a NULL key and without memory; caller destroys
KZ_EXPORT kz_KeyActionsNode* kz_KeyActionsNode_create(const kz_Char* key, kz_KeyActionFunc func,
                                                      void* args, int status, int isDefault);
/// Frees the key and the node.
KZ_EXPORT void kz_KeyActionsNode_destroy(kz_KeyActionsNode* node);
/// Appends a new node. @return 1; 0 for NULL and without memory
KZ_EXPORT int kz_KeyActionsList_append(kz_KeyActionsList* list, const kz_Char* key,
                                       kz_KeyActionFunc func, void* args, int status,
                                       int isDefault);
/// A new list of copies of the nodes. The position of `list` ends behind the last one.
/// @return NULL for NULL and without memory; caller destroys
KZ_EXPORT kz_KeyActionsList* kz_KeyActionsList_copy(kz_KeyActionsList* list);
/// @return 1; 0 for NULL
KZ_EXPORT int kz_KeyActionsList_destroy(kz_KeyActionsList* list);
/// Empties the list. @return 1; 0 for NULL
KZ_EXPORT int kz_KeyActionsList_delAll(kz_KeyActionsList* list);
/// Removes the current node; the following one becomes current. @return 1; 0 when there is none
KZ_EXPORT int kz_KeyActionsList_delCurr(kz_KeyActionsList* list);
/// To the first and to the last node. @return 1; 0 when there is none
KZ_EXPORT int kz_KeyActionsList_start(kz_KeyActionsList* list);
KZ_EXPORT int kz_KeyActionsList_end(kz_KeyActionsList* list);
/// One step forward and back. @return 1; 0 when the list is at its end or reaches it
KZ_EXPORT int kz_KeyActionsList_next(kz_KeyActionsList* list);
KZ_EXPORT int kz_KeyActionsList_prev(kz_KeyActionsList* list);
/// 1 when there is no current node.
KZ_EXPORT int kz_KeyActionsList_eol(const kz_KeyActionsList* list);
KZ_EXPORT int kz_KeyActionsList_length(const kz_KeyActionsList* list);
/// The current node and its fields, lent; NULL at the end.
KZ_EXPORT kz_KeyActionsNode* kz_KeyActionsList_getCurr(const kz_KeyActionsList* list);
KZ_EXPORT const kz_Char* kz_KeyActionsList_getCurrKey(const kz_KeyActionsList* list);
KZ_EXPORT kz_KeyActionFunc kz_KeyActionsList_getCurrFunc(const kz_KeyActionsList* list);
KZ_EXPORT void* kz_KeyActionsList_getCurrArgs(const kz_KeyActionsList* list);
/// The first node with this key, compared without regard to case; lent. The list then stands on it.
/// @return NULL when there is none; the list then stands at its end
KZ_EXPORT kz_KeyActionsNode* kz_KeyActionsList_find(kz_KeyActionsList* list, const kz_Char* key);
/// The same as a position counted from 0; -1 when there is none.
KZ_EXPORT int kz_KeyActionsList_search(kz_KeyActionsList* list, const kz_Char* key);
/// The first node that is the default action, lent; NULL when there is none.
KZ_EXPORT kz_KeyActionsNode* kz_KeyActionsList_getDefault(kz_KeyActionsList* list);
/// The keywords as acedInitGet takes them, each followed by a blank, as a new text that the caller
/// frees. @return NULL for NULL, without memory, and, with a trace, for a key of more than 255
/// characters or keywords of more than 511 together with their blanks
KZ_EXPORT kz_Char* kz_KeyActionsList_generateKeyString(kz_KeyActionsList* list);
/// Prepares the platform's next input function with the flags of acedInitGet and the keywords.
/// @return what acedInitGet gives; RTERROR when the keywords make no key string
KZ_EXPORT int kz_KeyActionsList_initKeywords(kz_KeyActionsList* list, int flags);
/// Runs the action of a keyword. An unknown one is told on the command line.
/// @return what the function gives, or the node's status when it has none; KZ_INPUT_AGAIN for an
/// unknown keyword
KZ_EXPORT int kz_KeyActionsList_executeAction(kz_KeyActionsList* list, const kz_Char* key,
                                              void* result);
/// Runs the default action. @return as above; KZ_INPUT_ENTER when there is none
KZ_EXPORT int kz_KeyActionsList_executeDefaultAction(kz_KeyActionsList* list, void* result);

// --- input --------------------------------------------------------------------------------------
//
// Each asks until there is an answer. The prompt may be NULL; it may not be longer than 255
// characters, and the list must make a key string (see above): otherwise nothing is asked, and the
// result is KZ_INPUT_CANCEL (0 for texts) with a trace. With `allowNone` 0 the platform refuses
// Enter alone. `out` is stored to when there is a value (KZ_INPUT_VALUE), and by actions; a NULL
// `out` drops the value.
//
// @return KZ_INPUT_VALUE, KZ_INPUT_ENTER, KZ_INPUT_CANCEL, or what an action gave

/// A point. From `base`, if there is one, the platform draws a line to the cursor.
KZ_EXPORT int kz_CAD_getPoint(kz_Point* out, const kz_Char* prompt, kz_KeyActionsList* list,
                              const kz_Point* base, int allowNone);
/// An angle [degrees].
KZ_EXPORT int kz_CAD_getAngle(double* out, const kz_Char* prompt, kz_KeyActionsList* list,
                              const kz_Point* base, int allowNone);
/// A distance [drawing units].
KZ_EXPORT int kz_CAD_getDistance(double* out, const kz_Char* prompt, kz_KeyActionsList* list,
                                 const kz_Point* base, int allowNone);
/// A number.
KZ_EXPORT int kz_CAD_getReal(double* out, const kz_Char* prompt, kz_KeyActionsList* list,
                             int allowNone);
/// A window by two corners. With `askFirst` 0 only the second one is asked for, seen from the
/// point at `first`, or from the origin when that is NULL. Otherwise the first one is asked for
/// and written to `first` if there is one. `second` may be NULL, too: the result is then
/// KZ_INPUT_VALUE however the second question ended. Actions run on the point that was asked for;
/// what one gives at the first question stands until the second one has its answer. Keywords and
/// `allowNone` hold for the first question that is put. A cancel at the second question leads back
/// to the first; where that isn't put, a second cancel ends the input.
KZ_EXPORT int kz_CAD_getWindow(kz_Point* first, kz_Point* second, int askFirst,
                               const kz_Char* firstPrompt, const kz_Char* secondPrompt,
                               kz_KeyActionsList* list, int allowNone);
/// A text with its blanks, of up to 132 characters, for a buffer of 256. With keywords no text but
/// these is an answer, and `out` gets what their actions write there.
/// @return 1 for a text, 0 for a cancel; KZ_INPUT_ENTER, or what an action gave
KZ_EXPORT int kz_CAD_getString(kz_Char* out, const kz_Char* prompt, kz_KeyActionsList* list,
                               int allowNone);
/// The same for a buffer of `length` characters, in which a longer text is cut to length - 1.
KZ_EXPORT int kz_CAD_getStringWithLength(kz_Char* out, int length, const kz_Char* prompt,
                                         kz_KeyActionsList* list, int allowNone);

/// The vector from `base` to a point that is asked for. @return 1; 0 for NULL and without a point
KZ_EXPORT int kz_CAD_getVector(kz_Vector* out, const kz_Point* base, const kz_Char* prompt);
/// The unit vector at right angles to `reference`, from the line through `base` along it to the
/// side of a point that is asked for. @return 1; 0 for NULL, without a point, for one on that line,
/// and for a reference without length
KZ_EXPORT int kz_CAD_getOrthoVector(kz_Vector* out, const kz_Point* base,
                                    const kz_Vector* reference, const kz_Char* prompt);
/// The point that the first object snap of `modes` which hits anything finds near `point`. The
/// modes are separated by commas, semicolons or blanks; `out` may be `point`.
/// @return 1; 0 for NULL and when none hits, `out` is then the point itself
KZ_EXPORT int kz_CAD_snapPoint(kz_Point* out, const kz_Point* point, const kz_Char* modes);

// --- output and screens -------------------------------------------------------------------------

/// Prints on the command line; the text is a format without arguments, in which %% is a per cent
/// sign. NULL prints nothing. @return the platform's status
KZ_EXPORT int kz_CAD_print(const kz_Char* text);
/// Shows a text on the command line as it stands. @return the platform's status
KZ_EXPORT int kz_CAD_prompt(const kz_Char* text);
/// Switches to the picture and to the text. @return 1 or 0
KZ_EXPORT int kz_CAD_displayGraphicsScreen(void);
KZ_EXPORT int kz_CAD_displayTextScreen(void);
}

#endif
