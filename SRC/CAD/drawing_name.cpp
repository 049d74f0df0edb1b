/// Names of the drawing in the editor and of the program.
#include <new>

#include "CAD/variables.h"
#include "checks.h"
#include "guards.h"
#include "kz/kz_cad_env.h"
#include "kz/kz_error.h"
#include "kz/kz_input.h"
#include "trace.h"

namespace {

constexpr const char* kTraceSource = "SRC/CAD";

/// Size of the callers' buffers for the name of a file or folder [characters].
constexpr size_t kPathSize = 512;
/// Room for a dot and "dwg" behind a name.
constexpr size_t kExtensionRoom = 4;
/// Size of the buffer of kz_CAD_isUnnamedDwg; longer names go to the heap.
constexpr size_t kNameSize = 513;

/// Says that a variable can't be read. @return 0
int tellFailure(const kz_Char* variable, int status) {
    kz_Char function[64];
    kz_Str_format(function, 64, KZ_T("acedGetVar(\"%s\")"), variable);
    kz_Char* text = kz_Diag_getDiagMsgBuf();
    kz_Error_getADSErrorMsg(text, function, status);
    try {
        kz_CAD_print(kz_Msg(kz::toUtf8(text).c_str(), "TOOL", 1));
    } catch (const std::bad_alloc&) {
        return 0;
    }
    KZ_TRACE(kz::kTraceFailure, kz::kTraceCad, text);
    return 0;
}

/// The text of a variable, which is told when it has none.
int getText(kz_Char* out, const kz_Char* variable) {
    const kz::Variable value(variable);
    if (value.status() != RTNORM) return tellFailure(variable, value.status());
    return kz::copyWhole(out, value.text(), kPathSize);
}

int isUnnamed(kz_Char* name) {
    kz_Fname_rmvExt(kz_Fname_rmvPath(name));
    return kz_Str_cmpi(name, KZ_T("UNNAMED")) == 0 ? 1 : 0;
}

}  // namespace

int kz_CAD_getDrawingName(kz_Char* out) {
    kz_Char prefix[kPathSize] = KZ_T("");
    kz_Char name[kPathSize] = KZ_T("");
    kz_Char folder[kPathSize];
    getText(prefix, KZ_T("DWGPREFIX"));
    if (getText(name, KZ_T("DWGNAME")) != 1) return 0;
    if (kz_Fname_extractPath(name, folder) == 1) *prefix = 0;
    kz_Char whole[2 * kPathSize + kExtensionRoom];
    kz_Str_format(whole, 2 * kPathSize, KZ_T("%s%s"), prefix, name);
    kz_Fname_modExt(whole, KZ_T("dwg"), 0);
    return kz::copyWhole(out, whole, kPathSize);
}

int kz_CAD_isCurrentDrawing(const kz_Char* name, int ignoreExtension) {
    const kz::OwnedText wanted(kz_Str_dup(name));
    kz_Char current[kPathSize + kExtensionRoom];
    if (wanted == nullptr || kz_CAD_getDrawingName(current) != 1) return 0;
    if (ignoreExtension != 0) {
        kz_Fname_rmvExt(wanted.get());
        kz_Fname_rmvExt(current);
    } else if (kz_Str_index(wanted.get(), KZ_T("."), 0) >= 0 &&
               kz_Str_index(current, KZ_T("."), 0) < 0) {
        kz_Fname_addExt(current, KZ_T("dwg"));
    }
    return kz_Str_cmpi(wanted.get(), current) == 0 ? 1 : 0;
}

int kz_CAD_isUnnamedDwg(const kz_Char* name) {
    if (name == nullptr) return 0;
    if (kz_Str_len(name) >= kNameSize) {
        const kz::OwnedText copy(kz_Str_dup(name));
        return copy != nullptr ? isUnnamed(copy.get()) : 0;
    }
    kz_Char copy[kNameSize];
    return isUnnamed(kz_Str_ncpy(copy, name, kNameSize - 1));
}

int kz_CAD_getSaveName(kz_Char* out) {
    return getText(out, KZ_T("SAVENAME"));
}

int kz_CAD_getTemporaryPathName(kz_Char* out) {
    return getText(out, KZ_T("TEMPPREFIX"));
}

int kz_CAD_getVersion(kz_Char* out) {
    return getText(out, KZ_T("ACADVER"));
}

int kz_CAD_getTVersion(kz_Char* out) {
    return getText(out, KZ_T("_VERNUM"));
}
