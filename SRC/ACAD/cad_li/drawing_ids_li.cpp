/// Lisp twins of the drawing ids, and of the objects of a drawing by handle.
///
/// In the forms, `drawing` is a drawing id as kz_CADDwgId_create gives it.
#include <algorithm>
#include <utility>

#include "ACAD/cad_li/cad_call.h"
#include "APP/services.h"

namespace {

/// What a refused argument is traced with.
constexpr const kz_Char* kNoDrawing = KZ_T(": Invalid or missing drawing id parameter.");
constexpr const kz_Char* kNoParameters = KZ_T(": Invalid or missing parameters.");

/// A drawing that is open, attached or unknown.
constexpr int kAnyDrawing = 3;
/// Room for a drawing's name at least [characters].
constexpr size_t kNameSize = 512;

/// The twins that ask one thing of a drawing.
int ask(const kz_Char* name, int (*question)(const kz_CADDwgId*)) {
    kz::CadCall call(name, kNoDrawing);
    const kz_CADDwgId* drawing = call.drawing();
    if (call.readAll() && question(drawing) != 0) acedRetT();
    return 1;
}

/// The drawing's name as the service tells it; NULL when it has none.
kz::OwnedText nameOf(const kz_CADDwgId* drawing) {
    // The service doesn't know how much room there is.
    const size_t size = std::max(kNameSize, kz_Str_len(drawing->name) + 1);
    kz::OwnedText name(static_cast<kz_Char*>(kz_Malloc(size * sizeof(kz_Char))));
    if (name == nullptr) return nullptr;
    *name = 0;
    return kz_CADDwgId_getName(name.get(), drawing) == 1 ? std::move(name) : nullptr;
}

}  // namespace

/// (kz_CADDwgId_create [filename [mode]]) -> drawing
/// The id of the drawing in the editor, or of the one with this name. Mode 3, which is taken when
/// none is given, looks among all drawings and reads the file when it is not there; mode 2 is for a
/// file that was just written. A failure gives an entity name of two zero words, not nil.
KZ_TWIN kz_CADDwgId_create_li(void) {
    kz::CadCall call(KZ_T("kz_CADDwgId_create_li"), KZ_T(": Drawing name parameter missing."));
    const kz_Char* file = call.textOrNull();
    const int mode = call.integer(kAnyDrawing);
    const kz_CADDwgId* drawing = call.readAll() ? kz_CADDwgId_create(file, mode) : nullptr;
    ads_name name = {};
    kz_CADDwgId_toADSName(name, drawing);
    if (call.readAll()) call.setStatus(drawing != nullptr);
    acedRetName(name, RTENAME);
    return 1;
}

/// (kz_CADDwgId_destroy drawing) -> void
/// Ends the use of the id that kz_CADDwgId_create began. An id that is gone is passed over.
KZ_TWIN kz_CADDwgId_destroy_li(void) {
    kz::CadCall call(KZ_T("kz_CADDwgId_destroy_li"), KZ_T(": Drawing id parameter missing."));
    const int64_t* name = call.drawingName();
    if (!call.readAll()) return 1;
    kz_CADDwgId_destroy(kz_CADDwgId_fromADSName(name, 1));
    acedRetVoid();
    return 1;
}

/// (kz_CADDwgId_destroyAll) -> void
/// Ends the use of all drawing ids.
KZ_TWIN kz_CADDwgId_destroyAll_li(void) {
    const kz::CadCall call(KZ_T("kz_CADDwgId_destroyAll_li"), KZ_T(""));
    kz_CADDwgId_destroyAll();
    acedRetVoid();
    return 1;
}

/// (kz_CADDwgId_getName drawing) -> filename | nil
/// The drawing's file; nil for a drawing that was never saved.
KZ_TWIN kz_CADDwgId_getName_li(void) {
    kz::CadCall call(KZ_T("kz_CADDwgId_getName_li"), kNoDrawing);
    const kz_CADDwgId* drawing = call.drawing();
    if (!call.readAll()) return 1;
    const kz::OwnedText name = nameOf(drawing);
    call.setStatus(name != nullptr);
    if (name != nullptr) acedRetStr(name.get());
    return 1;
}

/// (kz_CADDwgId_getRefCount drawing) -> count
/// How many uses of the id have not ended; 0 for what is no drawing id.
KZ_TWIN kz_CADDwgId_getRefCount_li(void) {
    kz::CadCall call(KZ_T("kz_CADDwgId_getRefCount_li"), kNoDrawing);
    const kz_CADDwgId* drawing = call.drawing();
    acedRetInt(call.readAll() ? kz_CADDwgId_getRefCount(drawing) : 0);
    return 1;
}

/// (kz_CADDwgId_isAttached drawing) -> T | nil
/// Whether the drawing is attached to another one.
KZ_TWIN kz_CADDwgId_isAttached_li(void) {
    return ask(KZ_T("kz_CADDwgId_isAttached_li"), kz_CADDwgId_isAttached);
}

/// (kz_CADDwgId_isInEditor drawing) -> T | nil
/// Whether the drawing is the one in the editor.
KZ_TWIN kz_CADDwgId_isInEditor_li(void) {
    return ask(KZ_T("kz_CADDwgId_isInEditor_li"), kz_CADDwgId_isInEditor);
}

/// (kz_CADDwgId_isValid drawing) -> T | nil
/// Whether the drawing is still there; nil when it was closed.
KZ_TWIN kz_CADDwgId_isValid_li(void) {
    return ask(KZ_T("kz_CADDwgId_isValid_li"), kz_CADDwgId_isValid);
}

/// (kz_CADDwgId_isEqual drawing drawing) -> T | nil
/// Whether both ids stand for one drawing.
KZ_TWIN kz_CADDwgId_isEqual_li(void) {
    kz::CadCall call(KZ_T("kz_CADDwgId_isEqual_li"),
                     KZ_T(": Invalid or missing drawing id parameter(s)."));
    const kz_CADDwgId* first = call.drawing();
    const kz_CADDwgId* second = call.drawing();
    if (call.readAll() && kz_CADDwgId_isEqual(first, second) != 0) acedRetT();
    return 1;
}

/// (kz_CADDwgId_save drawing) -> T | nil
/// Saves the drawing to its file.
KZ_TWIN kz_CADDwgId_save_li(void) {
    kz::CadCall call(KZ_T("kz_CADDwgId_save_li"), kNoDrawing);
    kz_CADDwgId* drawing = call.drawing();
    if (call.readAll()) call.answerStatus(kz_CADDwgId_save(drawing));
    return 1;
}

/// (kz_CADDwgId_saveAs drawing filename) -> T | nil
/// Saves the drawing to another file.
KZ_TWIN kz_CADDwgId_saveAs_li(void) {
    kz::CadCall call(KZ_T("kz_CADDwgId_saveAs_li"), kNoParameters);
    kz_CADDwgId* drawing = call.drawing();
    const kz_Char* file = call.longText();
    if (call.readAll()) call.answerStatus(kz_CADDwgId_saveAs(drawing, file) == 1 ? 1 : 0);
    return 1;
}

/// (kz_CADObjId_createFromDwgId [handle] [drawing]) -> entname | nil
/// The object with this handle in the drawing, or without one in the drawing in the editor.
KZ_TWIN kz_CADObjId_createFromDwgId_li(void) {
    kz::CadCall call(KZ_T("kz_CADObjId_createFromDwgId_li"), kNoParameters);
    const kz_Char* handle = call.textOrNull();
    const kz_CADDwgId* drawing = call.drawingOrWorking();
    if (!call.readAll()) return 1;
    kz_CADObjId* id = kz_CADObjId_createFromDwgId(handle, drawing);
    call.answerName(id != nullptr ? id->ename : nullptr);
    kz_CADObjId_destroy(id);
    return 1;
}

/// (kz_Ename_fromHandleInDwgId handle [drawing]) -> entname | nil
/// The object with this handle in the drawing, or without one in the drawing in the editor.
KZ_TWIN kz_Ename_fromHandleInDwgId_li(void) {
    kz::CadCall call(KZ_T("kz_Ename_fromHandleInDwgId_li"), kNoParameters);
    const kz_Char* handle = call.longText();
    const kz_CADDwgId* drawing = call.drawingOrWorking();
    if (!call.readAll()) return 1;
    ads_name name = {};
    kz_Ename_fromHandleInDwgId(name, handle, drawing);
    call.answerName(name);
    return 1;
}
