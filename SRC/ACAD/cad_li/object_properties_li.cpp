/// Lisp twins of the properties of single objects.
#include "ACAD/cad_li/cad_call.h"
#include "kz/kz_objprops.h"

namespace {

/// What a refused argument is traced with.
constexpr const kz_Char* kNoObject = KZ_T(": Invalid or missing object id parameter.");
constexpr const kz_Char* kNoSet = KZ_T(": Invalid or missing selection set parameter.");

/// Size of the buffers for texts [characters].
constexpr size_t kTextSize = 256;

/// The twins that read a text of an object.
int answerText(const kz_Char* name, int (*read)(kz_Char*, const kz_CADObjId*)) {
    kz::CadCall call(name, kNoObject);
    const kz_CADObjId* object = call.object();
    kz_Char text[kTextSize];
    call.setStatus(call.readAll() ? read(text, object) : 0);
    if (call.status() == 1) acedRetStr(text);
    return 1;
}

/// The twins that give an object a value, which is a text.
int setText(const kz_Char* name, int (*set)(const kz_CADObjId*, const kz_Char*)) {
    kz::CadCall call(name, kNoObject);
    const kz_CADObjId* object = call.object();
    const kz_Char* value = call.textOrNull();
    if (call.readAll()) call.answerStatus(set(object, value));
    return 1;
}

}  // namespace

// --- reading ------------------------------------------------------------------------------------

/// (kz_CADObjId_getColor entity) -> text | nil
/// The index of the entity's colour, as "1"; "256" by layer, "0" by block.
KZ_TWIN kz_CADObjId_getColor_li(void) {
    return answerText(KZ_T("kz_CADObjId_getColor_li"), kz_CADObjId_getColor);
}

/// (kz_CADObjId_getLayer entity) -> name | nil
/// The entity's layer.
KZ_TWIN kz_CADObjId_getLayer_li(void) {
    return answerText(KZ_T("kz_CADObjId_getLayer_li"), kz_CADObjId_getLayer);
}

/// (kz_CADObjId_getLineStyle entity) -> name | nil
/// The entity's line type.
KZ_TWIN kz_CADObjId_getLineStyle_li(void) {
    return answerText(KZ_T("kz_CADObjId_getLineStyle_li"), kz_CADObjId_getLineStyle);
}

/// (kz_CADObjId_getLineWeight entity) -> text | nil
/// The width of a polyline with vertices in a plane, as "0.500000"; "0.000000" for other entities.
KZ_TWIN kz_CADObjId_getLineWeight_li(void) {
    return answerText(KZ_T("kz_CADObjId_getLineWeight_li"), kz_CADObjId_getLineWeight);
}

/// (kz_CADObjId_getLineStyleScale entity) -> real | nil
/// The scale of the entity's line type.
KZ_TWIN kz_CADObjId_getLineStyleScale_li(void) {
    kz::CadCall call(KZ_T("kz_CADObjId_getLineStyleScale_li"), kNoObject);
    const kz_CADObjId* object = call.object();
    double scale = 0.0;
    call.setStatus(call.readAll() ? kz_CADObjId_getLineStyleScale(&scale, object) : 0);
    if (call.status() == 1) acedRetReal(scale);
    return 1;
}

/// (kz_CADObjId_isVisible entity) -> T | nil
/// Whether the entity is visible.
KZ_TWIN kz_CADObjId_isVisible_li(void) {
    kz::CadCall call(KZ_T("kz_CADObjId_isVisible_li"), kNoObject);
    const kz_CADObjId* object = call.object();
    if (call.readAll()) call.answerStatus(kz_CADObjId_isVisible(object));
    return 1;
}

/// (kz_CADObjId_getDrawingName entity) -> filename | nil
/// The file of the entity's drawing; nil when it has none.
KZ_TWIN kz_CADObjId_getDrawingName_li(void) {
    kz::CadCall call(KZ_T("kz_CADObjId_getDrawingName_li"), kNoObject);
    const kz_CADObjId* object = call.object();
    AcDbObjectId id;
    call.setStatus(call.readAll() ? kz_CADObjId_getAcDbObjectId(&id, object) : 0);
    if (call.status() != 1) return 1;
    int attached = 0, found_open = 0;
    const kz::OwnedText file(kz_AcCAD_getDwgNameFromEntObjId(&id, &attached, &found_open, 1));
    call.setStatus(file != nullptr ? 1 : 0);
    if (file != nullptr) acedRetStr(file.get());
    return 1;
}

// --- changing -----------------------------------------------------------------------------------

/// (kz_CADObjId_setColor entity color) -> T | nil
/// Gives the entity, with its vertices or attributes, a colour: a name, a number or
/// "USE_CADENGINE_DEFAULT", which is the current one.
KZ_TWIN kz_CADObjId_setColor_li(void) {
    return setText(KZ_T("kz_CADObjId_setColor_li"), kz_CADObjId_setColor);
}

/// (kz_CADObjId_setLayer entity name) -> T | nil
/// Puts the entity on a layer of the drawing, or on the current one.
KZ_TWIN kz_CADObjId_setLayer_li(void) {
    return setText(KZ_T("kz_CADObjId_setLayer_li"), kz_CADObjId_setLayer);
}

/// (kz_CADObjId_setLineStyle entity name) -> T | nil
/// Gives the entity a line type of the drawing, or the current one.
KZ_TWIN kz_CADObjId_setLineStyle_li(void) {
    return setText(KZ_T("kz_CADObjId_setLineStyle_li"), kz_CADObjId_setLineStyle);
}

/// (kz_CADObjId_setLineWeight entity text) -> T | nil
/// Gives a polyline with vertices in a plane a width, or that of new polylines; nil for others.
KZ_TWIN kz_CADObjId_setLineWeight_li(void) {
    return setText(KZ_T("kz_CADObjId_setLineWeight_li"), kz_CADObjId_setLineWeight);
}

/// (kz_CADObjId_setLineStyleScale entity scale) -> T | nil
/// Sets the scale of the entity's line type, which can't be 0.
KZ_TWIN kz_CADObjId_setLineStyleScale_li(void) {
    kz::CadCall call(KZ_T("kz_CADObjId_setLineStyleScale_li"), kNoObject);
    const kz_CADObjId* object = call.object();
    const double scale = call.realOrZero();
    if (call.readAll()) call.answerStatus(kz_CADObjId_setLineStyleScale(object, scale));
    return 1;
}

/// (kz_CADObjId_setVisibility entity [show]) -> T | nil
/// Hides the entity, or shows it when there is a value that isn't nil. Tells whether it was visible
/// before.
KZ_TWIN kz_CADObjId_setVisibility_li(void) {
    kz::CadCall call(KZ_T("kz_CADObjId_setVisibility_li"), kNoObject);
    const kz_CADObjId* object = call.object();
    const int show = call.given();
    if (call.readAll()) call.answerStatus(kz_CADObjId_setVisibility(object, show));
    return 1;
}

/// (kz_CADSelSet_setVisibility set [show]) -> T | nil
/// Hides the members of a selection set, or shows them when there is a value that isn't nil. The
/// set stays.
KZ_TWIN kz_CADSelSet_setVisibility_li(void) {
    kz::CadCall call(KZ_T("kz_CADSelSet_setVisibility_li"), kNoSet);
    const kz_CADSelSetId* set = call.selectionSet();
    const int show = call.given();
    if (call.readAll()) call.answerStatus(kz_CADSelSet_setVisibility(set, show));
    return 1;
}

/// (kz_CADObjId_delete entity) -> T | nil
/// Erases the object.
KZ_TWIN kz_CADObjId_delete_li(void) {
    kz::CadCall call(KZ_T("kz_CADObjId_delete_li"), kNoObject);
    kz_CADObjId* object = call.object();
    // The record is the call's own.
    if (call.readAll()) call.answerStatus(kz_CADObjId_erase(object, 0));
    return 1;
}
