/// Readers of a Lisp call's arguments. All but the raw ones share one frame, readArgument; what
/// differs is the conversion of a value that is there.
#include <cstring>

#include "RB/number_text.h"
#include "guards.h"
#include "kz/kz_point_cnv.h"
#include "kz/kz_rb.h"
#include "trace.h"

namespace {

constexpr const char* kTraceSource = "SRC/RB";

/// The two messages of a reader.
struct ReaderTexts {
    const kz_Char* incorrect;
    const kz_Char* required;
};

#define READER_TEXTS(name)                                                                     \
    ReaderTexts {                                                                              \
        KZ_T("Incorrect argument passed to " name "."), KZ_T("Argument required in " name ".") \
    }

/// What came of converting a value.
enum class Outcome {
    Converted,
    Moved,   ///< converted, and the cursor stands behind the value already
    Unfit,   ///< traced as an incorrect argument
    Failed,  ///< traced by the conversion
    Nil
};

void skipListMarkers(resbuf** cursor) {
    while (*cursor != nullptr && ((*cursor)->restype == RTLB || (*cursor)->restype == RTLE)) {
        *cursor = (*cursor)->rbnext;
    }
}

/// The frame: `convert(node, kind)` sees only values that are not nil.
template <class Convert>
int readArgument(const ReaderTexts& texts, resbuf** cursor, int* isNil, int nilAllowed,
                 Convert convert) {
    skipListMarkers(cursor);
    const int kind = kz_Rb_typeRb(*cursor);
    const Outcome outcome = kind == KZ_RB_NIL ? Outcome::Nil : convert(*cursor, kind);
    if (outcome == Outcome::Unfit) KZ_TRACE(kz::kTraceArgument, kz::kTraceData, texts.incorrect);
    bool good = outcome != Outcome::Unfit && outcome != Outcome::Failed;
    if (outcome == Outcome::Nil && nilAllowed == 0) {
        good = false;
        KZ_TRACE(kz::kTraceArgument, kz::kTraceData, texts.required);
    }
    if (isNil != nullptr) *isNil = outcome == Outcome::Nil;
    if (good && outcome != Outcome::Moved && *cursor != nullptr) *cursor = (*cursor)->rbnext;
    return good;
}

Outcome convertToLong(int32_t& out, const resbuf* node, int kind) {
    switch (kind) {
        case KZ_RB_T:
            out = 1;
            return Outcome::Converted;
        case KZ_RB_STRING:
            out = kz::parseLong(node->resval.rstring);
            return Outcome::Converted;
        case KZ_RB_REAL:
            out = kz::truncateToLong(node->resval.rreal);
            return Outcome::Converted;
        case KZ_RB_LONG:
            out = node->resval.rlong;
            return Outcome::Converted;
        case KZ_RB_SHORT:
            out = node->resval.rint;
            return Outcome::Converted;
        default:
            return Outcome::Unfit;
    }
}

Outcome convertToReal(double& out, const resbuf* node, int kind) {
    switch (kind) {
        case KZ_RB_T:
            out = 1.0;
            return Outcome::Converted;
        case KZ_RB_STRING:
            acdbDisToF(node->resval.rstring, -1, &out);
            return Outcome::Converted;
        case KZ_RB_REAL:
        case KZ_RB_LONG:
        case KZ_RB_SHORT:
            out = kz_Rb_num(node);
            return Outcome::Converted;
        default:
            return Outcome::Unfit;
    }
}

double currentElevation() {
    resbuf value{};
    return acedGetVar(KZ_T("ELEVATION"), &value) == RTNORM ? value.resval.rreal : 0.0;
}

/// Three numbers in a row. The cursor goes back to the first one when they are fewer.
Outcome readCoordinates(double out[3], resbuf** cursor) {
    resbuf* const first = *cursor;
    for (int i = 0; i < 3; ++i) {
        if (kz_Rb_getNextReal(&out[i], cursor, nullptr, 0) != 1) {
            *cursor = first;
            return Outcome::Unfit;
        }
    }
    return Outcome::Moved;
}

Outcome convertToPoint(double out[3], resbuf** cursor) {
    const resbuf* node = *cursor;
    switch (node->restype) {
        case RT3DPOINT:
        case 1010:
        case 1011:
        case 1012:
        case 1013:
            std::memcpy(out, node->resval.rpoint, sizeof node->resval.rpoint);
            return Outcome::Converted;
        case RTPOINT:
            kz_ADSPoint_set(out, node->resval.rpoint[0], node->resval.rpoint[1],
                            currentElevation());
            return Outcome::Converted;
        case RTSHORT:
        case RTREAL:
            return readCoordinates(out, cursor);
        default:
            return Outcome::Unfit;
    }
}

bool isTextOrHandle(int kind) {
    return kind == KZ_RB_STRING || kind == KZ_RB_HANDLE;
}

void copyText(kz_Char* out, const kz_Char* text) {
    kz_Str_ncpy(out, text, kz_Str_len(text));
}

/// The handle in the entity's list; an entity without one leaves `out` as it is.
Outcome handleOfEntity(kz_Char* out, const ads_name name) {
    const kz::OwnedChain entity(acdbEntGet(name));
    if (entity == nullptr) {
        KZ_TRACE(kz::kTraceFailure, kz::kTraceData,
                 KZ_T("Invalid entname passed to kz_Rb_getNextHandle."));
        return Outcome::Failed;
    }
    const resbuf* handle = kz_Rb_entitem(entity.get(), 5);
    if (handle != nullptr) copyText(out, handle->resval.rstring);
    return Outcome::Converted;
}

void nameOfHandle(ads_name out, const kz_Char* handle) {
    ads_name found{};
    if (acdbHandEnt(handle, found) == RTNORM) {
        ads_name_set(found, out);
    } else {
        KZ_TRACE(kz::kTraceFailure, kz::kTraceData,
                 KZ_T("Invalid handle passed to kz_Rb_getNextADSName."));
    }
}

/// Adds the value of the node to the list as its only field.
int addUnknown(kz_FldList* list, const resbuf* node, int kind) {
    const kz_Char* const name = KZ_T("Unknown");
    kz_Point point{};
    switch (kind) {
        case KZ_RB_HANDLE:
            return kz_FldList_addHandleVal(list, name, node->resval.rstring);
        case KZ_RB_T:
            return kz_FldList_addIntVal(list, name, 1);
        case KZ_RB_POINT:
            kz_Point_fromADSPoint(&point, node->resval.rpoint);
            return kz_FldList_addPointVal(list, name, &point);
        case KZ_RB_STRING:
            return kz_FldList_addCharVal(list, name, node->resval.rstring);
        case KZ_RB_REAL:
            return kz_FldList_addRealVal(list, name, node->resval.rreal);
        case KZ_RB_LONG:
            return kz_FldList_addLongVal(list, name, node->resval.rlong);
        case KZ_RB_SHORT:
            return kz_FldList_addIntVal(list, name, node->resval.rint);
        default:
            return 0;
    }
}

/// Raw reading: the code of the next node, which is stepped over whatever it is.
int takeType(int16_t* type, resbuf** cursor, int* isNil, int nilAllowed) {
    *type = 0;
    if (*cursor != nullptr) *type = (*cursor)->restype;
    const bool nil = *cursor == nullptr || *type == RTNIL;
    if (isNil != nullptr) *isNil = nil;
    if (*cursor != nullptr) *cursor = (*cursor)->rbnext;
    return !nil || nilAllowed != 0;
}

}  // namespace

int kz_Rb_getNextInt(int16_t* out, resbuf** cursor, int* isNil, int nilAllowed) {
    int32_t value = 0;
    const int status = readArgument(
        READER_TEXTS("kz_Rb_getNextInt"), cursor, isNil, nilAllowed,
        [&value](const resbuf* node, int kind) { return convertToLong(value, node, kind); });
    *out = static_cast<int16_t>(value);
    return status;
}

int kz_Rb_getNextLong(int32_t* out, resbuf** cursor, int* isNil, int nilAllowed) {
    *out = 0;
    return readArgument(
        READER_TEXTS("kz_Rb_getNextLong"), cursor, isNil, nilAllowed,
        [out](const resbuf* node, int kind) { return convertToLong(*out, node, kind); });
}

int kz_Rb_getNextReal(double* out, resbuf** cursor, int* isNil, int nilAllowed) {
    *out = 0.0;
    return readArgument(
        READER_TEXTS("kz_Rb_getNextReal"), cursor, isNil, nilAllowed,
        [out](const resbuf* node, int kind) { return convertToReal(*out, node, kind); });
}

int kz_Rb_getNextPoint(double out[3], resbuf** cursor, int* isNil, int nilAllowed) {
    kz_ADSPoint_set(out, 0.0, 0.0, 0.0);
    return readArgument(READER_TEXTS("kz_Rb_getNextPoint"), cursor, isNil, nilAllowed,
                        [=](const resbuf*, int) { return convertToPoint(out, cursor); });
}

int kz_Rb_getNextString(kz_Char* out, int maxChars, resbuf** cursor, int* isNil, int nilAllowed) {
    *out = 0;
    return readArgument(READER_TEXTS("kz_Rb_getNextString"), cursor, isNil, nilAllowed,
                        [=](const resbuf* node, int kind) {
                            if (!isTextOrHandle(kind)) return Outcome::Unfit;
                            const kz_Char* text = node->resval.rstring;
                            if (maxChars > 0) {
                                kz_Str_ncpy(out, text, static_cast<size_t>(maxChars) - 1);
                            } else {
                                copyText(out, text);
                            }
                            return Outcome::Converted;
                        });
}

int kz_Rb_getNextStringPtr(kz_Char** out, resbuf** cursor, int* isNil, int nilAllowed) {
    *out = nullptr;
    return readArgument(READER_TEXTS("kz_Rb_getNextStringPtr"), cursor, isNil, nilAllowed,
                        [out](const resbuf* node, int kind) {
                            if (!isTextOrHandle(kind)) return Outcome::Unfit;
                            *out = kz_Str_dupW(node->resval.rstring);
                            return *out != nullptr ? Outcome::Converted : Outcome::Failed;
                        });
}

int kz_Rb_getNextHandle(kz_Char* out, resbuf** cursor, int* isNil, int nilAllowed) {
    *out = 0;
    return readArgument(READER_TEXTS("kz_Rb_getNextHandle"), cursor, isNil, nilAllowed,
                        [out](const resbuf* node, int kind) {
                            if (kind == KZ_RB_ENAME) {
                                return handleOfEntity(out, node->resval.rlname);
                            }
                            if (!isTextOrHandle(kind)) return Outcome::Unfit;
                            copyText(out, node->resval.rstring);
                            return Outcome::Converted;
                        });
}

int kz_Rb_getNextADSName(ads_name out, resbuf** cursor, int* isNil, int nilAllowed) {
    ads_name_clear(out);
    return readArgument(READER_TEXTS("kz_Rb_getNextADSName"), cursor, isNil, nilAllowed,
                        [out](const resbuf* node, int kind) {
                            if (kind == KZ_RB_ENAME) {
                                ads_name_set(node->resval.rlname, out);
                                return Outcome::Converted;
                            }
                            if (!isTextOrHandle(kind)) return Outcome::Unfit;
                            nameOfHandle(out, node->resval.rstring);
                            return Outcome::Converted;
                        });
}

int kz_Rb_getNextSelSet(ads_name out, resbuf** cursor, int* isNil, int nilAllowed) {
    ads_name_clear(out);
    return readArgument(READER_TEXTS("kz_Rb_getNextSelSet"), cursor, isNil, nilAllowed,
                        [out](const resbuf* node, int kind) {
                            if (kind != KZ_RB_SELSET) return Outcome::Unfit;
                            ads_name_set(node->resval.rlname, out);
                            return Outcome::Converted;
                        });
}

int kz_Rb_getNextUnknown(kz_FldList** out, resbuf** cursor, int* isNil, int nilAllowed) {
    *out = nullptr;
    return readArgument(READER_TEXTS("kz_Rb_getNextUnknown"), cursor, isNil, nilAllowed,
                        [out](const resbuf* node, int kind) {
                            kz::OwnedFldList list(kz_FldList_create(nullptr, 0, nullptr, 0));
                            KZ_ASSERTION(list != nullptr);
                            if (list == nullptr) return Outcome::Failed;
                            if (addUnknown(list.get(), node, kind) != 1) return Outcome::Unfit;
                            *out = list.release();
                            return Outcome::Converted;
                        });
}

int kz_Rb_getNextType(int16_t* type, resbuf** cursor, int* isNil, int nilAllowed) {
    const int status = takeType(type, cursor, isNil, nilAllowed);
    if (status == 0) {
        KZ_TRACE(kz::kTraceArgument, kz::kTraceData,
                 KZ_T("Non-NIL type is required in kz_Rb_getNextType."));
    }
    return status;
}

int kz_Rb_getNextValue(int16_t* type, int /*maxSize*/, void* value, resbuf** cursor, int* isNil,
                       int nilAllowed) {
    constexpr size_t kValueBytes = 8;
    if (*cursor != nullptr) {
        std::memcpy(value, &(*cursor)->resval, kValueBytes);
    } else {
        std::memset(value, 0, kValueBytes);
    }
    return takeType(type, cursor, isNil, nilAllowed);
}
