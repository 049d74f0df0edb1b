/// Lisp twins of the layers.
#include "ACAD/cad_li/cad_call.h"
#include "kz/kz_cad_env.h"
#include "trace.h"

namespace {

constexpr kz::TwinFamily kFamily = {"SRC/ACAD/cad_li", kz::kTraceCad};

/// The twins that ask one thing of a layer; a wrong argument is no layer.
int ask(const kz_Char* name, int (*question)(const kz_Char*)) {
    kz::TwinCall call(kFamily, name, nullptr);
    const kz_Char* layer = call.longText();
    if (call.readAll() && question(layer) == 1) acedRetT();
    return 1;
}

}  // namespace

/// (kz_CAD_LayerIsFrozen layer) -> T | nil
/// Whether a layer of the drawing in the editor is frozen.
KZ_TWIN kz_CAD_LayerIsFrozen_li(void) {
    return ask(KZ_T("kz_CAD_LayerIsFrozen_li"), kz_CAD_LayerIsFrozen);
}

/// (kz_CAD_LayerIsLocked layer) -> T | nil
/// Whether a layer of the drawing in the editor is locked.
KZ_TWIN kz_CAD_LayerIsLocked_li(void) {
    return ask(KZ_T("kz_CAD_LayerIsLocked_li"), kz_CAD_LayerIsLocked);
}

/// (kz_CAD_LayerIsOff layer) -> T | nil
/// Whether a layer of the drawing in the editor is switched off.
KZ_TWIN kz_CAD_LayerIsOff_li(void) {
    return ask(KZ_T("kz_CAD_LayerIsOff_li"), kz_CAD_LayerIsOff);
}

/// (kz_CAD_createLayer drawing layer) -> T | nil
/// Makes a new layer with the line type CONTINUOUS; nil when there is one of this name. A drawing
/// of nil is the one in the editor. A wrong argument is put on the error list.
KZ_TWIN kz_CAD_createLayer_li(void) {
    kz::CadCall call(KZ_T("kz_CAD_createLayer_li"), KZ_T(": Invalid or missing parameter(s)."));
    const kz_CADDwgId* drawing = call.drawingOrWorking();
    const kz_Char* layer = call.longText();
    if (call.readAll()) call.answerStatus(kz_CAD_createLayer(drawing, layer));
    return 1;
}
