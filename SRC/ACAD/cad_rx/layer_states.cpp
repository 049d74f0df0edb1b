/// Layers that are opened for work on an object, and brought back to their state.
#include "ACAD/cad_rx/cad_rx.h"
#include "checks.h"
#include "guards.h"
#include "kz/kz_objprops.h"

namespace {

/// A layer of the working database, open for write; nothing is open when it is missing.
kz::Opened<AcDbLayerTableRecord> openLayer(const kz_Char* name) {
    const AcDbDatabase* drawing = kz::workingDatabase();
    AcDbLayerTable* table = nullptr;
    if (drawing == nullptr || drawing->getSymbolTable(table, AcDb::kForRead) != Acad::eOk) {
        return {};
    }
    AcDbLayerTableRecord* layer = nullptr;
    table->getAt(name, layer, AcDb::kForWrite);
    table->close();
    return kz::Opened<AcDbLayerTableRecord>(layer);
}

void setState(AcDbLayerTableRecord& layer, bool frozen, bool locked, bool off) {
    layer.setIsFrozen(frozen);
    layer.setIsLocked(locked);
    layer.setIsOff(off);
}

}  // namespace

int kz_CADObjId_unlockThawOnLayer(kz_Char* layer, int32_t* frozen, int32_t* locked, int32_t* off,
                                  const kz_CADObjId* id) {
    if (frozen == nullptr || locked == nullptr || off == nullptr) return 0;
    if (kz_CADObjId_getLayer(layer, id) != 1) return 0;
    const kz::Opened<AcDbLayerTableRecord> record = openLayer(layer);
    if (!record) return 0;
    *frozen = record->isFrozen() ? 1 : 0;
    *locked = record->isLocked() ? 1 : 0;
    *off = record->isOff() ? 1 : 0;
    setState(*record.get(), false, false, false);
    return 1;
}

int kz_LayerStateList_setLayerStates(kz_LayerStateList* list) {
    int reached = 0;
    for (kz_LnkList_start(list); kz_LnkList_eol(list) == 0; kz_LnkList_next(list)) {
        const auto* node = static_cast<const kz_LayerStateNode*>(kz_LnkList_getCurr(list));
        if (node == nullptr || *node->name == 0) continue;
        const kz::Opened<AcDbLayerTableRecord> record = openLayer(node->name);
        if (!record) continue;
        setState(*record.get(), node->frozen != 0, node->locked != 0, node->off != 0);
        reached = 1;
    }
    return reached;
}
