/// Lisp twins of the picks, and of the way from an object to its drawing.
#include <memory>

#include "ACAD/cad_li/cad_call.h"
#include "APP/services.h"
#include "kz/kz_objprops.h"

namespace {

using OwnedId = std::unique_ptr<kz_CADObjId, kz::Destroyer<kz_CADObjId_destroy>>;

}  // namespace

/// (kz_CADObjId_getDwgId entity) -> drawing | nil
/// The id of the drawing that the entity lies in, in the editor or elsewhere. It is the caller's,
/// who ends its use with kz_CADDwgId_destroy.
KZ_TWIN kz_CADObjId_getDwgId_li(void) {
    kz::CadCall call(KZ_T("kz_CADObjId_getDwgId_li"),
                     KZ_T(": Invalid or missing object id parameter."));
    const kz_CADObjId* object = call.object();
    const kz_CADDwgId* drawing = call.readAll() ? kz_CADObjId_getDwgId(object) : nullptr;
    ads_name name = {};
    kz_CADDwgId_toADSName(name, drawing);
    if (call.readAll()) call.answerName(name);
    return 1;
}

/// (kz_CADObjId_getAtPoint point) -> entity | nil
/// The entity at a point, in blocks and attached drawings, too: the innermost one, or the first
/// around it that has data of its own.
KZ_TWIN kz_CADObjId_getAtPoint_li(void) {
    kz::CadCall call(KZ_T("kz_CADObjId_getAtPoint_li"), nullptr);
    const kz_Point* point = call.point();
    const OwnedId id(call.readAll() ? kz_CADObjId_getAtPoint(point) : nullptr);
    if (id != nullptr) call.answerName(id->ename);
    return 1;
}

/// (kz_CADObjId_select prompt) -> (entity point) | nil
/// Lets the user pick an entity; the prompt may be nil. In an attached drawing the entity at the
/// point inside is picked, or one around it that belongs to a group or has data.
KZ_TWIN kz_CADObjId_select_li(void) {
    kz::CadCall call(KZ_T("kz_CADObjId_select_li"), nullptr);
    const kz_Char* prompt = call.textOrNull();
    kz_Point point = {};
    const OwnedId id(call.readAll() ? kz_CADObjId_select(prompt, &point) : nullptr);
    call.setStatus(id != nullptr ? 1 : 0);
    if (id == nullptr) return 1;
    const double at[3] = {point.x, point.y, point.z};
    const kz::OwnedChain list(acutBuildList(RTLB, RTENAME, id->ename, RT3DPOINT, at, RTLE, 0));
    if (list != nullptr) acedRetList(list.get());
    return 1;
}
