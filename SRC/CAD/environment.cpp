/// Current settings of the drawing in the editor, from its system variables.
#include "kz/kz_cad_env.h"

#include "CAD/variables.h"

namespace {

/// Size of the callers' buffers [characters].
constexpr size_t kTextSize = 256;

/// The viewport that is paper space itself.
constexpr int kPaperViewPort = 1;

int getText(kz_Char* out, const kz_Char* name) {
    return kz::copyWhole(out, kz::Variable(name).text(), kTextSize);
}

int getReal(double* out, const kz_Char* name) {
    const kz::Variable variable(name);
    if (out == nullptr || !variable.isReal()) return 0;
    *out = variable.real();
    return 1;
}

int setInteger(const kz_Char* name, int value) {
    resbuf node{};
    node.restype = RTSHORT;
    node.resval.rint = static_cast<int16_t>(value);
    return node.resval.rint == value && acedSetVar(name, &node) == RTNORM ? 1 : 0;
}

}  // namespace

int kz_AcCADEngine_getColor(kz_Char* out) {
    return getText(out, KZ_T("CECOLOR"));
}

int kz_CAD_ColorGet(kz_Char* out) {
    return kz_AcCADEngine_getColor(out);
}

int kz_AcCADEngine_getCurrLayer(kz_Char* out) {
    return getText(out, KZ_T("CLAYER"));
}

int kz_CAD_LayerGet(kz_Char* out) {
    return kz_AcCADEngine_getCurrLayer(out);
}

int kz_AcCADEngine_getLineStyle(kz_Char* out) {
    return getText(out, KZ_T("CELTYPE"));
}

int kz_AcCADEngine_getLineStyleScale(double* out) {
    return getReal(out, KZ_T("LTSCALE"));
}

int kz_AcCADEngine_getPlineWid(double* out) {
    return getReal(out, KZ_T("PLINEWID"));
}

int kz_AcCADEngine_getLineWeight(kz_Char* out) {
    double width = 0.0;
    if (out == nullptr || kz_AcCADEngine_getPlineWid(&width) != 1) return 0;
    kz_Char text[kTextSize];
    const int length = kz_Str_format(text, kTextSize, KZ_T("%lf"), width);
    return static_cast<size_t>(length) < kTextSize - 1 ? kz::copyWhole(out, text, kTextSize) : 0;
}

int kz_CAD_getObjectSnapMode(void) {
    return kz::integerVariable(KZ_T("OSMODE"), 0);
}

int kz_CAD_getOrthoMode(void) {
    return kz::integerVariable(KZ_T("orthomode"), 0);
}

int kz_CAD_getTileMode(void) {
    return kz::integerVariable(KZ_T("TILEMODE"), 0);
}

int kz_CAD_getCurrViewPort(void) {
    return kz::integerVariable(KZ_T("CVPORT"), 1);
}

int kz_CAD_isDrawingTitled(void) {
    return kz::integerVariable(KZ_T("DWGTITLED"), 1);
}

int kz_CAD_setObjectSnapMode(int mode) {
    return setInteger(KZ_T("OSMODE"), mode);
}

int kz_CAD_setTileMode(int mode) {
    return setInteger(KZ_T("TILEMODE"), mode);
}

int kz_CAD_getFeetInchSuppression(void) {
    return kz::integerVariable(KZ_T("DIMZIN"), 0);
}

int kz_CAD_inPaperSpace(void) {
    return kz_CAD_getTileMode() == 0 && kz_CAD_getCurrViewPort() == kPaperViewPort ? 1 : 0;
}

int kz_CAD_inModelSpace(void) {
    return kz_CAD_inPaperSpace() == 0 ? 1 : 0;
}

int kz_CAD_setModelSpace(void) {
    if (kz_CAD_getTileMode() != 0) return 1;
    acedCommandS(RTSTR, KZ_T("_.mspace"), RTNONE);
    // A layout without a viewport has no model space to work in.
    if (kz_CAD_getCurrViewPort() == kPaperViewPort) kz_CAD_setTileMode(1);
    return 1;
}

int kz_CAD_setPaperSpace(void) {
    if (kz_CAD_getTileMode() == 1) kz_CAD_setTileMode(0);
    if (kz_CAD_getCurrViewPort() != kPaperViewPort) {
        acedCommandS(RTSTR, KZ_T("_.pspace"), RTNONE);
    }
    return 1;
}

int kz_CAD_IsQuillmontPipingProfile(void) {
    const kz::Variable profile(KZ_T("CPROFILE"));
    return kz_Str_index(profile.text(), KZ_T("Quillmont_Piping"), 0) >= 0 ? 1 : 0;
}

int kz_CAD_isHlrAvailable(void) {
    return 1;
}

int kz_CAD_propertiesLoad(void) {
    return 0;
}

int kz_CAD_propertiesUnload(void) {
    return 0;
}
