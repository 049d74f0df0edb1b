/// Where groups live, and whether they are selectable.
#include "ACAD/cad_rx/cad_rx.h"
#include "ACAD/kz_acgrp/kz_acgrp.h"
#include "kz/kz_cad_env.h"
#include "kz/kz_objprops.h"

namespace {

constexpr const char* kTraceSource = "SRC/ACAD/kz_acgrp";

/// Size of the buffers for files [characters].
constexpr size_t kPathSize = 513;

}  // namespace

// --- drawings -----------------------------------------------------------------------------------

kz_Char* kz_AcGroup_getDwgNameFromGroupObjId(const AcDbObjectId* group) {
    const kz::GroupTrace trace(KZ_T("kz_AcGroup_getDwgNameFromGroupObjId"));
    if (group == nullptr) return nullptr;
    const kz::Opened<AcDbGroup> opened = kz::openObject<AcDbGroup>(*group, AcDb::kForRead);
    if (!opened) return nullptr;
    const AcDbDatabase* drawing = opened->database();
    kz_Char name[kPathSize];
    if (drawing == kz::workingDatabase()) {
        return kz_CAD_getDrawingName(name) == 1 ? kz_Str_dup(name) : nullptr;
    }
    const ACHAR* file = nullptr;
    if (drawing->getFilename(file) == Acad::eOk) return kz_Str_dup(file);
    std::vector<AcDbObjectId> entities;
    int attached = 0, found_open = 0;
    if (opened->allEntityIds(entities) == 0) return nullptr;
    return kz_AcCAD_getDwgNameFromEntObjId(&entities.front(), &attached, &found_open, 1);
}

int kz_AcGroup_getDrawingName(kz_Char* out, const kz_GroupId* id) {
    AcDbObjectId object;
    if (out == nullptr || kz_Group_isNull(id) == 1) return 0;
    if (kz_Group_getAcDbObjectId(&object, id) != 1) return 0;
    const kz::OwnedText file(kz_AcGroup_getDwgNameFromGroupObjId(&object));
    if (file == nullptr) return 0;
    kz_Str_ncpy(out, file.get(), kz_Str_len(file.get()));
    return 1;
}

// --- selectability ------------------------------------------------------------------------------

int kz_AcGroup_isSelectable(const kz_GroupId* id) {
    const kz::GroupTrace trace(KZ_T("kz_AcGroup_isSelectable"));
    AcDbObjectId object;
    if (kz_Group_isNull(id) == 1 || kz_Group_getAcDbObjectId(&object, id) != 1) return 0;
    const kz::Opened<AcDbGroup> group = kz::openObject<AcDbGroup>(object, AcDb::kForWrite);
    return group && group->isSelectable() ? 1 : 0;
}

int kz_AcDbGroup_setSelectable(const kz_GroupId* id, int value, int* before) {
    AcDbObjectId object;
    if (before == nullptr || kz_Group_getAcDbObjectId(&object, id) != 1) return 0;
    const kz::Opened<AcDbGroup> group = kz::openGroup(object, AcDb::kForWrite);
    KZ_ASSERTION(static_cast<bool>(group));
    if (!group) return 0;
    const bool wanted = value != 0;
    *before = group->isSelectable() ? 1 : 0;
    if (group->isSelectable() == wanted) return 1;
    return group->setSelectable(wanted) == Acad::eOk ? 1 : 0;
}

int kz_AcGroup_setSelectable(const kz_GroupId* id, int queryOnly, int value) {
    const kz::GroupTrace trace(KZ_T("kz_AcGroup_setSelectable"));
    if (kz_Group_isNull(id) == 1) {
        kz::submitGroupError(kz::kNoGroupId);
        return 0;
    }
    if (queryOnly != 0) return kz_Group_isSelectable(id);
    int before = 0;
    kz_AcDbGroup_setSelectable(id, value, &before);
    return before;
}
