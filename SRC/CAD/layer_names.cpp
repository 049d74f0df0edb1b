/// Names of layers and other symbols: comparing, looking up, repairing.
#include <cwctype>

#include "checks.h"
#include "guards.h"
#include "kz/kz_cad_env.h"
#include "kz/kz_dwgdata.h"

namespace {

constexpr int16_t kFlagsGroup = 70;
/// Size of the static buffer of kz_CAD_validateSymbolName [characters].
constexpr size_t kNameSize = 264;

kz::OwnedChain findLayer(const kz_Char* name) {
    return kz::OwnedChain(kz::isEmpty(name) ? nullptr : acdbTblSearch(KZ_T("LAYER"), name, 0));
}

/// What stands behind the last '|'.
const kz_Char* withoutReference(const kz_Char* name) {
    const kz_Char* own = name;
    for (const kz_Char* unit = name; *unit != 0; ++unit) {
        if (*unit == '|') own = unit + 1;
    }
    return own;
}

/// Letters and digits. What the runtime says of letters beyond ASCII depends on a setting of the
/// process.
bool isAlphanumeric(kz_Char unit) {
    constexpr kz_Char kSharpS = 0xDF;
    constexpr kz_Char kFirstKana = 0x3041;
    constexpr kz_Char kFirstSurrogate = 0xD800;
    if (kz::upperUnit(unit) != kz::lowerUnit(unit) || unit == kSharpS) return true;
    return (unit >= kFirstKana && unit < kFirstSurrogate) ||
           std::iswalnum(static_cast<wint_t>(unit)) != 0;
}

bool mayStandInLayerName(kz_Char unit) {
    return isAlphanumeric(unit) || unit == '$' || unit == '-' || unit == '_';
}

}  // namespace

int kz_CAD_LayerExists(const kz_Char* name) {
    return findLayer(name) != nullptr ? 1 : 0;
}

int kz_CAD_LayerCreate(const kz_Char* name) {
    return kz_CAD_createLayer(nullptr, name);
}

int kz_CAD_LayerSet(const kz_Char* name) {
    return kz_CAD_setLayer(nullptr, name);
}

int kz_CAD_LayerIsEqual(const kz_Char* a, const kz_Char* b, int wildcard, int strip) {
    if (a == nullptr || b == nullptr) return 0;
    const kz_Char* first = strip != 0 ? withoutReference(a) : a;
    const kz_Char* second = strip != 0 ? withoutReference(b) : b;
    if (wildcard != 0) return kz_Str_wcMatch(first, second);
    return kz_Str_cmpi(first, second) == 0 ? 1 : 0;
}

int kz_AcCAD_getLayerFlags(const kz_Char* name) {
    const kz::OwnedChain layer = findLayer(name);
    const resbuf* flags = kz_Rb_searchType(layer.get(), kFlagsGroup);
    return flags != nullptr ? flags->resval.rint : 0;
}

int kz_CAD_fixLayerName(kz_Char* out, const kz_Char* text, kz_Char replacement, int limit) {
    if (out == nullptr || text == nullptr) return 0;
    kz_Char* end = out;
    for (int count = 0; *text != 0 && count < limit; ++text) {
        const kz_Char unit = mayStandInLayerName(*text) ? *text : replacement;
        if (unit == 0) continue;
        *end++ = unit;
        ++count;
    }
    *end = 0;
    return 1;
}

int kz_CAD_isValidSymbolName(const kz_Char* name, int allowPipe) {
    return !kz::isEmpty(name) && acdbSNValid(name, allowPipe) == RTNORM ? 1 : 0;
}

const kz_Char* kz_CAD_validateSymbolName(const kz_Char* name, int allowPipe) {
    static kz_Char text[kNameSize];
    // A name that must be cut would be another one.
    const bool fits = kz_Str_len(name) < kNameSize;
    kz_Str_delBlks(kz_Str_ncpy(text, fits ? name : nullptr, kNameSize - 1));
    if (kz_CAD_isValidSymbolName(text, allowPipe) == 1) return text;
    kz_Str_ncpy(text, kz_Str_replaceChar(text, KZ_T(" "), KZ_T("_")), kNameSize - 1);
    if (kz_CAD_isValidSymbolName(text, allowPipe) == 1) return text;
    kz_Str_ncpy(text, kz_DwgIdCode_create(), kNameSize - 1);
    if (kz_CAD_isValidSymbolName(text, allowPipe) != 1) *text = 0;
    return text;
}
