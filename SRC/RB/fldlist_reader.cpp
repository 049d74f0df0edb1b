/// Chains to field lists: one state machine for the Lisp form and the XData form, which differ only
/// in how a point tells its type, since braces read as list markers.
#include "guards.h"
#include "kz/kz_fldcnv.h"
#include "kz/kz_point_cnv.h"
#include "kz/kz_rb.h"
#include "trace.h"

namespace {

constexpr const char* kTraceSource = "SRC/RB";
/// Size of the buffer of a field's name [characters].
constexpr size_t kNameSize = 512;

#define IMPROPER_USE(kind) \
    KZ_T("Improper use of " kind " value in Field list in kz_Rb_convertRbToFldList.")

/// Stores a value: the first one of a field (position 1) in the place of what the field held, a
/// further one behind it. Position 0 is no place for a value.
template <auto Modify, auto Add, class Value>
int storeValue(kz_FldList* list, const kz_Char* name, int position, Value value) {
    if (position <= 0) return 0;
    return position == 1 ? Modify(list, name, value) : Add(list, name, value);
}

int storeText(kz_FldList* list, const kz_Char* name, int position, const kz_Char* value) {
    return storeValue<kz_FldList_modChar, kz_FldList_addCharVal>(list, name, position, value);
}
int storeHandle(kz_FldList* list, const kz_Char* name, int position, const kz_Char* value) {
    return storeValue<kz_FldList_modHandle, kz_FldList_addHandleVal>(list, name, position, value);
}
int storeInt(kz_FldList* list, const kz_Char* name, int position, int16_t value) {
    return storeValue<kz_FldList_modInt, kz_FldList_addIntVal>(list, name, position, value);
}
int storeLong(kz_FldList* list, const kz_Char* name, int position, int32_t value) {
    return storeValue<kz_FldList_modLong, kz_FldList_addLongVal>(list, name, position, value);
}
int storeReal(kz_FldList* list, const kz_Char* name, int position, double value) {
    return storeValue<kz_FldList_modReal, kz_FldList_addRealVal>(list, name, position, value);
}

/// Stores a point in the type of this letter (P, M, D or O).
int storePoint(kz_FldList* list, const kz_Char* name, int position, int16_t letter,
               const kz_Point& value) {
    const kz_Point* point = &value;
    const kz_Vector vector = {value.x, value.y, value.z};
    switch (letter) {
        case KZ_FLD_MPOINT:
            return storeValue<kz_FldList_modMpoint, kz_FldList_addMpointVal>(list, name, position,
                                                                             point);
        case KZ_FLD_DPOINT:
            return storeValue<kz_FldList_modDpoint, kz_FldList_addDpointVal>(list, name, position,
                                                                             point);
        case KZ_FLD_VECTOR:
            return storeValue<kz_FldList_modVector, kz_FldList_addVectorVal>(list, name, position,
                                                                             &vector);
        default:
            return storeValue<kz_FldList_modPoint, kz_FldList_addPointVal>(list, name, position,
                                                                           point);
    }
}

/// Type letter of a point in extended data; 0 for a code that no field has.
int16_t letterOfCode(int code) {
    switch (code) {
        case 1010:
            return KZ_FLD_POINT;
        case 1011:
            return KZ_FLD_MPOINT;
        case 1012:
            return KZ_FLD_DPOINT;
        case 1013:
            return KZ_FLD_VECTOR;
        default:
            return 0;
    }
}

/// Type letter that a tag behind a point chooses.
int16_t letterOfTag(const kz_Char* tag) {
    switch (*tag) {
        case KZ_T('D'):
        case KZ_T('d'):
            return KZ_FLD_DPOINT;
        case KZ_T('M'):
        case KZ_T('m'):
            return KZ_FLD_MPOINT;
        case KZ_T('O'):
        case KZ_T('o'):
            return KZ_FLD_VECTOR;
        default:
            return KZ_FLD_POINT;
    }
}

/// The machine: reads one chain into one list.
class FieldReader {
  public:
    FieldReader(kz_FldList** list, resbuf** cursor, bool xdata)
        : list_(list), cursor_(cursor), xdata_(xdata) {
        name_[0] = 0;
    }

    /// Reads to the end of the enclosing list or of the chain. False at the first value that does
    /// not fit; the cursor is then behind it.
    bool read() {
        bool good = true;
        while (good && *cursor_ != nullptr && depth_ >= 1) {
            good = readNode(*cursor_);
            if (*cursor_ != nullptr) *cursor_ = (*cursor_)->rbnext;
        }
        return good;
    }

  private:
    bool readNode(const resbuf* node) {
        switch (kz_Rb_typeRb(node)) {
            case KZ_RB_LISTBEGIN:
                ++depth_;
                saved_position_ = position_;
                position_ = 0;
                return true;
            case KZ_RB_LISTEND:
                return readListEnd();
            case KZ_RB_STRING:
                return readString(node->resval.rstring);
            case KZ_RB_SHORT:
                return readShort(node->resval.rint);
            case KZ_RB_LONG:
                if (!expectsValue()) return refuse(IMPROPER_USE("long"));
                return counted(storeLong(*list_, name_, position_, node->resval.rlong));
            case KZ_RB_REAL:
                if (!expectsValue()) return refuse(IMPROPER_USE("real"));
                return counted(storeReal(*list_, name_, position_, node->resval.rreal));
            case KZ_RB_HANDLE:
                if (!expectsValue()) return refuse(IMPROPER_USE("handle"));
                return counted(storeHandle(*list_, name_, position_, node->resval.rstring));
            case KZ_RB_T:
                if (!expectsValue()) return refuse(IMPROPER_USE("t"));
                return counted(storeInt(*list_, name_, position_, 1));
            case KZ_RB_NIL:
                if (!expectsValue()) return refuse(IMPROPER_USE("nil"));
                return counted(storeInt(*list_, name_, position_, 0));
            case KZ_RB_POINT:
                if (!expectsValue()) return refuse(IMPROPER_USE("point"));
                return readPoint(node);
            default:
                return refuse(KZ_T("Unsupport variable type passed to kz_Rb_convertRbToFldList."));
        }
    }

    /// Inside a field, behind its name.
    bool expectsValue() const { return depth_ > 1 && position_ > 0; }

    bool counted(int status) {
        ++position_;
        return status == 1;
    }

    static bool refuse(const kz_Char* message) {
        KZ_TRACE(kz::kTraceArgument, kz::kTraceData, message);
        return false;
    }

    void takeName(const kz_Char* text) {
        kz_Str_ncpy(name_, text, kNameSize - 1);
        kz_Str_upper(name_);
    }

    bool readListEnd() {
        bool good = true;
        if (position_ == 1) good = counted(kz_FldList_modUnknown(*list_, name_));
        --depth_;
        return good;
    }

    bool readString(const kz_Char* text) {
        if (depth_ == 1) {
            takeName(text);
            return kz_FldList_modUnknown(*list_, name_) == 1;
        }
        if (position_ == 0) {
            takeName(text);
            position_ = 1;
            return true;
        }
        return counted(storeText(*list_, name_, position_, text));
    }

    bool readShort(int16_t value) {
        if (depth_ <= 1) return refuse(IMPROPER_USE("int"));
        if (position_ == 0) return readTypedPair(value);
        return counted(storeInt(*list_, name_, position_, value));
    }

    /// A pair of group code and value counts as one more value of the enclosing field. The cursor
    /// ends on the node that closes the pair, whatever that is.
    bool readTypedPair(int16_t code) {
        *cursor_ = (*cursor_)->rbnext;
        if (*cursor_ == nullptr) return true;
        if (kz_Rb_convertRbNode(list_, name_, code, cursor_, &saved_position_) != 1) {
            return refuse(
                KZ_T("Unable to interpret resbuf node for Field list in "
                     "kz_Rb_convertRbToFldList."));
        }
        position_ = saved_position_;
        --depth_;
        return true;
    }

    bool readPoint(const resbuf* node) {
        kz_Point point{};
        kz_Point_fromADSPoint(&point, node->resval.rpoint);
        const int16_t letter = xdata_ ? letterOfCode(node->restype) : readTag(node->rbnext);
        if (letter == 0) return counted(1);  // no value, but a place is taken
        return counted(storePoint(*list_, name_, position_, letter, point));
    }

    /// Letter of the tag behind a point; a tag is stepped onto.
    int16_t readTag(resbuf* behind) {
        if (behind == nullptr || kz_Rb_type(behind->restype) != KZ_RB_STRING) return KZ_FLD_POINT;
        *cursor_ = behind;
        return letterOfTag(behind->resval.rstring);
    }

    kz_FldList** list_;
    resbuf** cursor_;
    bool xdata_;
    int depth_ = 1;     ///< the enclosing list is open already
    int position_ = 0;  ///< 0: a name is expected, 1: the first value, above: a further one
    int saved_position_ = 0;
    kz_Char name_[kNameSize];
};

/// Stores the point of a typed pair: a point node, or three numbers. `moved` tells that the cursor
/// stands behind it already.
int storePairedPoint(kz_FldList* list, const kz_Char* name, int code, resbuf** cursor, int position,
                     bool& moved) {
    ads_point coordinates{};
    if (kz_Rb_typeRb(*cursor) == KZ_RB_POINT) {
        kz_ADSPoint_set(coordinates, (*cursor)->resval.rpoint[0], (*cursor)->resval.rpoint[1],
                        (*cursor)->resval.rpoint[2]);
    } else if (kz_Rb_getNextPoint(coordinates, cursor, nullptr, 0) == 1) {
        moved = true;
    } else {
        return 0;
    }
    const int16_t letter = letterOfCode(code);
    if (letter == 0) return 0;
    kz_Point point{};
    kz_Point_fromADSPoint(&point, coordinates);
    return storePoint(list, name, position, letter, point);
}

/// Stores the value of a typed pair of this kind.
int storePair(kz_FldList* list, const kz_Char* name, int code, resbuf** cursor, int position,
              bool& moved) {
    const ads_u_val& value = (*cursor)->resval;
    switch (kz_Rb_type(code)) {
        case KZ_RB_HANDLE:
            return storeHandle(list, name, position, value.rstring);
        case KZ_RB_STRING:
            return storeText(list, name, position, value.rstring);
        case KZ_RB_REAL:
            return storeReal(list, name, position, value.rreal);
        case KZ_RB_LONG:
            return storeLong(list, name, position, value.rlong);
        case KZ_RB_SHORT:
            return storeInt(list, name, position, value.rint);
        case KZ_RB_POINT:
            return storePairedPoint(list, name, code, cursor, position, moved);
        default:
            KZ_TRACE(kz::kTraceArgument, kz::kTraceData,
                     KZ_T("Unsupport variable type passed to kz_Rb_convertRbNode."));
            return 0;
    }
}

}  // namespace

int kz_Rb_convertRbNode(kz_FldList** list, const kz_Char* name, int code, resbuf** cursor,
                        int* position) {
    const int want = kz_Rb_type(code);
    const int have = kz_Rb_typeRb(*cursor);
    const bool fits =
        want == have || (want == KZ_RB_HANDLE && have == KZ_RB_STRING) || want == KZ_RB_POINT;
    if (!fits) {
        KZ_TRACE(kz::kTraceArgument, kz::kTraceData,
                 KZ_T("Mismatched variable type passed to kz_Rb_convertRbNode."));
        return 0;
    }
    bool moved = false;
    if (*cursor == nullptr || storePair(*list, name, code, cursor, *position, moved) != 1) return 0;
    ++*position;
    if (!moved) *cursor = (*cursor)->rbnext;
    return 1;
}

int kz_Rb_convertRbToFldList(kz_FldList** list, resbuf** cursor, int xdataMode) {
    if (list == nullptr || cursor == nullptr) return 0;
    if (*list == nullptr) *list = kz_FldList_create(nullptr, 0, nullptr, 0);
    KZ_ASSERTION(*list != nullptr);
    if (*list == nullptr) return 0;
    if (FieldReader(list, cursor, xdataMode != 0).read()) return 1;
    kz_FldList_destroy(*list);
    *list = nullptr;
    return 0;
}

int kz_Rb_getNextFldList(kz_FldList** out, resbuf** cursor, int* isNil, int nilAllowed) {
    *out = nullptr;
    if (isNil != nullptr) *isNil = 0;
    switch (kz_Rb_typeRb(*cursor)) {
        case KZ_RB_LISTBEGIN:
            *cursor = (*cursor)->rbnext;
            if (kz_Rb_convertRbToFldList(out, cursor, 0) == 1) return 1;
            KZ_TRACE(kz::kTraceArgument, kz::kTraceData,
                     KZ_T("Argument error in kz_Rb_getNextFldList."));
            return 0;
        case KZ_RB_NIL:
            if (isNil != nullptr) *isNil = 1;
            if (nilAllowed == 0) {
                KZ_TRACE(kz::kTraceArgument, kz::kTraceData,
                         KZ_T("Argument required in kz_Rb_getNextFldList."));
                return 0;
            }
            if (*cursor != nullptr) *cursor = (*cursor)->rbnext;
            return 1;
        default:
            KZ_TRACE(kz::kTraceArgument, kz::kTraceData,
                     KZ_T("Incorrect argument passed to kz_Rb_getNextFldList."));
            return 0;
    }
}
