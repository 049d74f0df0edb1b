/// The tables of error numbers and messages, and looking a message up.
#include <new>

#include "group_errors.h"
#include "guards.h"
#include "kzerror/kzerror.h"

// The general table lies in a section of its own, by which it is found in the library's image.
#if defined(_MSC_VER)
#pragma section("ERRGRP", read)
#define KZ_ERROR_SECTION __declspec(allocate("ERRGRP"))
#else
#define KZ_ERROR_SECTION __attribute__((section("ERRGRP")))
#endif

#define ERROR_ROW(code, text) \
    { code, KZ_T(text), KZ_T(""), 0 }
#define END_ROW \
    { -1, nullptr, nullptr, 0 }

// The codes 6 and 11 stand for errors with a text of their own.
KZ_ERROR_SECTION const kz_ErrorMsg kz_ErrorGroupGeneral[] = {
    ERROR_ROW(0, "OK"),
    ERROR_ROW(1, "Unknown Error"),
    ERROR_ROW(2, "Feature not implemented"),
    ERROR_ROW(3, "Not applicable"),
    ERROR_ROW(4, "Invalid input"),
    ERROR_ROW(5, "Out of memory"),
    ERROR_ROW(7, "NULL input"),
    ERROR_ROW(8, "Invalid entity handle"),
    ERROR_ROW(9, "Invalid entity name"),
    ERROR_ROW(10, "Field not found in xdata"),
    ERROR_ROW(12, "Invalid or missing parameter(s)"),
    ERROR_ROW(13, "Unknown field type"),
    ERROR_ROW(14, "Unknown data type"),
    END_ROW,
};

const kz_ErrorMsg kz_ErrorGroupGroup[] = {
    ERROR_ROW(1, "Invalid group identifier"),
    ERROR_ROW(2, "No group name specified"),
    ERROR_ROW(3, "No group id specified"),
    ERROR_ROW(4, "Parent and child groups are the same"),
    ERROR_ROW(5, "Attempt to open group object failed"),
    ERROR_ROW(6, "Attempt to open group dictionary failed"),
    ERROR_ROW(7, "Attempt to open AcDbObject failed"),
    ERROR_ROW(8, "No master object exists for the given group"),
    ERROR_ROW(9, "Group has no member objects"),
    ERROR_ROW(10, "CAD object is not a member of the given group"),
    ERROR_ROW(11, "Cannot delete master from populated group"),
    ERROR_ROW(12, "Group deletion failed"),
    END_ROW,
};

namespace {

/// Text of the last look-up.
kz::OwnedText last_text;

const kz_ErrorMsg* findRow(const kz_ErrorMsg* group, int code) {
    for (const kz_ErrorMsg* row = group; row->code >= 0; ++row) {
        if (row->code == code && row->message != nullptr) return row;
    }
    return nullptr;
}

kz_Char* displayText(const kz_ErrorMsg& row) {
    try {
        const std::string module = row.module != nullptr ? kz::toUtf8(row.module) : "";
        return kz_Str_dup(kz_Msg(kz::toUtf8(row.message).c_str(), module.c_str(), row.format));
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

}  // namespace

const kz_Char* kz_ErrorMsg_getFromTable(const kz_ErrorMsg* group, int code) {
    last_text.reset();
    const kz_ErrorMsg* row = group != nullptr ? findRow(group, code) : nullptr;
    if (row != nullptr) last_text.reset(displayText(*row));
    return last_text.get();
}
