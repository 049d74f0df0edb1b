/// Field list: named fields with typed values and a current field. A kz_FldList is a kz_LnkList
/// whose elements are kz_FldNode records, and the value of a V field is again such a list, of
/// nameless nodes; so the curr* operations read a field list and a value list alike.
///
/// Names are matched without regard to case and kept as they were given. Names and texts are copied
/// in.
#ifndef KZ_TLS21AN_FLDLIST_H
#define KZ_TLS21AN_FLDLIST_H

#include "kz_tls21an/lnklist.h"
#include "kz_tls21an/point.h"

typedef kz_LnkList kz_FldList;

/// Type letters of a field.
enum : int16_t {
    KZ_FLD_CHAR = 'C',     ///< text
    KZ_FLD_HANDLE = 'H',   ///< handle text
    KZ_FLD_INT = 'I',      ///< 16-bit integer
    KZ_FLD_LONG = 'L',     ///< 32-bit integer
    KZ_FLD_REAL = 'N',     ///< double
    KZ_FLD_POINT = 'P',    ///< point
    KZ_FLD_MPOINT = 'M',   ///< point, world position
    KZ_FLD_DPOINT = 'D',   ///< point, world displacement
    KZ_FLD_VECTOR = 'O',   ///< vector, world direction
    KZ_FLD_UNKNOWN = 'U',  ///< no value yet
    KZ_FLD_LIST = 'V'      ///< several values
};

/// Value of a field; the type letter tells which member holds it.
union kz_FldValue {
    kz_Char* text;     ///< C, H; owned
    int16_t integer;   ///< I
    int32_t longInt;   ///< L
    double real;       ///< N
    kz_Point point;    ///< P, M, D
    kz_Vector vector;  ///< O
    kz_LnkList* list;  ///< V; owned, of kz_FldNode without names
};

/// One field, or one value of a V field (then name is NULL).
struct kz_FldNode {
    kz_Char* name;  ///< part of the node's own block: never freed or replaced on its own
    int16_t type;   ///< type letter
    kz_FldValue value;
};

extern "C" {

/// A new list: empty when `name` is NULL, else with one field of that name, which is current. Type
/// U takes no value (`value` NULL); any other type takes `value` as kz_FldList_addVal does. `size`
/// is not used.
/// @return NULL when there is no memory or the value can't be taken; caller destroys
KZ_TLS_API kz_FldList* kz_FldList_create(const kz_Char* name, int16_t type, const void* value,
                                         int size);
/// Destroys the list with all names and values. @return 1; 0 for a NULL list
KZ_TLS_API int kz_FldList_destroy(kz_FldList* list);
/// Deep copy; NULL for NULL or without memory. The copy stands at its start.
KZ_TLS_API kz_FldList* kz_FldList_copy(const kz_FldList* list);
/// Number of fields.
KZ_TLS_API int kz_FldList_count(const kz_FldList* list);

/// Position operations, as those of kz_LnkList.
KZ_TLS_API int kz_FldList_start(kz_FldList* list);
KZ_TLS_API int kz_FldList_next(kz_FldList* list);
KZ_TLS_API int kz_FldList_eol(const kz_FldList* list);
/// The current node, lent; NULL at the end.
KZ_TLS_API kz_FldNode* kz_FldList_curr(const kz_FldList* list);
/// Makes the field `name` current. @return its node, lent; NULL when there is none (position at the
/// end)
KZ_TLS_API kz_FldNode* kz_FldList_find(kz_FldList* list, const kz_Char* name);
/// Removes the current field; the following one becomes current. @return 1; 0 at the end
KZ_TLS_API int kz_FldList_delCurr(kz_FldList* list);

/// Name of the current field, copied unbounded into `buffer`. @return 1; 0 and an empty text when
/// there is none
KZ_TLS_API int kz_FldList_currFldname(const kz_FldList* list, kz_Char* buffer);
/// Type letter of the current field. @return 1; 0 at the end, `type` untouched
KZ_TLS_API int kz_FldList_currFldtype(const kz_FldList* list, int16_t* type);
/// Text of the current field, at most size - 1 characters and terminated.
/// @return 1; 0 and an empty text when the current field is not of type C
KZ_TLS_API int kz_FldList_currChar(const kz_FldList* list, kz_Char* buffer, int size);
/// The same for type H.
KZ_TLS_API int kz_FldList_currHandle(const kz_FldList* list, kz_Char* buffer, int size);
/// Value of the current field. @return 1; 0 when it is of another type, out untouched.
/// currPoint reads P, M and D, currVector reads O.
KZ_TLS_API int kz_FldList_currInt(const kz_FldList* list, int16_t* out);
KZ_TLS_API int kz_FldList_currLong(const kz_FldList* list, int32_t* out);
KZ_TLS_API int kz_FldList_currReal(const kz_FldList* list, double* out);
KZ_TLS_API int kz_FldList_currPoint(const kz_FldList* list, kz_Point* out);
KZ_TLS_API int kz_FldList_currVector(const kz_FldList* list, kz_Vector* out);
/// Value list of the current V field, lent.
KZ_TLS_API int kz_FldList_currList(const kz_FldList* list, kz_LnkList** out);

/// Set the named field to this one value, creating it last when it is missing; it becomes current.
/// A NULL text counts as an empty one. @return 1; 0 for a NULL list or name, or without memory
KZ_TLS_API int kz_FldList_modChar(kz_FldList* list, const kz_Char* name, const kz_Char* value);
KZ_TLS_API int kz_FldList_modHandle(kz_FldList* list, const kz_Char* name, const kz_Char* value);
KZ_TLS_API int kz_FldList_modInt(kz_FldList* list, const kz_Char* name, int16_t value);
KZ_TLS_API int kz_FldList_modLong(kz_FldList* list, const kz_Char* name, int32_t value);
KZ_TLS_API int kz_FldList_modReal(kz_FldList* list, const kz_Char* name, double value);
KZ_TLS_API int kz_FldList_modPoint(kz_FldList* list, const kz_Char* name, const kz_Point* value);
KZ_TLS_API int kz_FldList_modMpoint(kz_FldList* list, const kz_Char* name, const kz_Point* value);
KZ_TLS_API int kz_FldList_modDpoint(kz_FldList* list, const kz_Char* name, const kz_Point* value);
KZ_TLS_API int kz_FldList_modVector(kz_FldList* list, const kz_Char* name, const kz_Vector* value);
/// Makes sure that the named field exists; a new one has type U, an existing one keeps its values.
KZ_TLS_API int kz_FldList_modUnknown(kz_FldList* list, const kz_Char* name);

/// Add one more value to the named field: a missing field is created last, a U field gets its only
/// value, a field with a value becomes a V field. The field becomes current. @return as
/// kz_FldList_mod*
KZ_TLS_API int kz_FldList_addCharVal(kz_FldList* list, const kz_Char* name, const kz_Char* value);
KZ_TLS_API int kz_FldList_addHandleVal(kz_FldList* list, const kz_Char* name, const kz_Char* value);
KZ_TLS_API int kz_FldList_addIntVal(kz_FldList* list, const kz_Char* name, int16_t value);
KZ_TLS_API int kz_FldList_addLongVal(kz_FldList* list, const kz_Char* name, int32_t value);
KZ_TLS_API int kz_FldList_addRealVal(kz_FldList* list, const kz_Char* name, double value);
KZ_TLS_API int kz_FldList_addPointVal(kz_FldList* list, const kz_Char* name, const kz_Point* value);
KZ_TLS_API int kz_FldList_addMpointVal(kz_FldList* list, const kz_Char* name,
                                       const kz_Point* value);
KZ_TLS_API int kz_FldList_addDpointVal(kz_FldList* list, const kz_Char* name,
                                       const kz_Point* value);
KZ_TLS_API int kz_FldList_addVectorVal(kz_FldList* list, const kz_Char* name,
                                       const kz_Vector* value);
/// The same by type letter: `value` is the text for C and H, else a pointer to the value; with U
/// the field is only made. @return also 0 for a letter that no value can have
KZ_TLS_API int kz_FldList_addVal(kz_FldList* list, const kz_Char* name, int16_t type,
                                 const void* value);

/// 0 when both nodes have the same type and value (texts exactly, doubles bit for bit equal or
/// equal as numbers, V fields value by value); non-zero otherwise. Names are not looked at.
KZ_TLS_API int kz_FldList_compareNode(const kz_FldNode* a, const kz_FldNode* b);

/// Text of the named field of type C or H, at most size - 1 characters and terminated.
/// @return 1; 0 and an empty text when there is no such field. The position stays.
KZ_TLS_API int kz_FldList_getChar(const kz_FldList* list, const kz_Char* name, kz_Char* buffer,
                                  int size);
/// Integer of the named field of type I, or of type L when it fits. @return 1, else 0 and out
/// untouched
KZ_TLS_API int kz_FldList_getInt(const kz_FldList* list, const kz_Char* name, int16_t* out);
/// Appends an integer field, also when the name occurs already. @return 1 or 0
KZ_TLS_API int kz_FldList_appInt(kz_FldList* list, const kz_Char* name, int16_t value);

/// Transforms the values of the types named in `letters` (of "PMDO"; NULL: all four): P and M are
/// rotated and moved, D and O only rotated. `origin` NULL: no move; `rotation` NULL: no rotation.
/// @return 1; 0 for a NULL list
KZ_TLS_API int kz_FldList_applyTransform(kz_FldList* list, const kz_Point* origin,
                                         const struct kz_RotMatrix* rotation,
                                         const kz_Char* letters);

/// Dumps the list to the trace output, one field a line, when `level` is not above the current
/// level and `mask` shares a bit with the condition mask.
KZ_TLS_API void kz_FldList_printListDiag(kz_FldList* list, int16_t level, int32_t mask);
}

#endif
