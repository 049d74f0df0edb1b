/// Masters that draw nothing of note: references to a block that holds a point.
#include "ACAD/cad_rx/cad_rx.h"
#include "APP/services.h"
#include "checks.h"
#include "kz/kz_group_edit.h"

namespace {

/// Puts a point at the block's origin that is coloured as its reference is.
bool addPoint(AcDbBlockTableRecord& block) {
    constexpr uint16_t kByBlock = 0;
    std::unique_ptr<AcDbPoint> point(new AcDbPoint(AcGePoint3d{0, 0, 0}));
    if (point == nullptr || point->setColorIndex(kByBlock, true) != Acad::eOk) return false;
    if (block.appendAcDbEntity(point.get()) != Acad::eOk) return false;
    return kz::Opened<AcDbPoint>(point.release()).close();
}

/// Adds the block to a table that is open for write. One that stays without its point goes again.
int addBlock(AcDbBlockTable& blocks, const kz_Char* name) {
    std::unique_ptr<AcDbBlockTableRecord> record(new AcDbBlockTableRecord);
    if (record == nullptr || record->setName(name) != Acad::eOk) return 0;
    if (blocks.add(record.get()) != Acad::eOk) return 0;
    const kz::Opened<AcDbBlockTableRecord> block(record.release());
    if (addPoint(*block.get())) return 1;
    block->erase(true);
    return 0;
}

}  // namespace

int kz_CAD_MasterEntityBlock_create(const kz_Char* block) {
    AcDbDatabase* const working = kz::workingDatabase();
    if (kz::isEmpty(block) || working == nullptr) return 0;
    AcDbBlockTable* opened = nullptr;
    if (working->getSymbolTable(opened, AcDb::kForRead) != Acad::eOk) return 0;
    kz::Opened<AcDbBlockTable> blocks(opened);
    if (blocks->has(block)) return 1;
    if (blocks->upgradeOpen() != Acad::eOk) return 0;
    return addBlock(*blocks.get(), block);
}

int kz_CAD_MasterEntityBlock_insert(const kz_Char* block, const kz_Point* point) {
    if (kz::isEmpty(block) || point == nullptr) return 0;
    if (kz_CAD_MasterEntityBlock_create(block) != 1) return 0;
    kz_CADObject* insertion =
        kz_CADBlockIns3d_create(block, KZ_T(""), point, 1.0, 1.0, 1.0, KZ_T("0"));
    return insertion != nullptr ? kz_CADObject_addToDrawing(insertion) : 0;
}

int kz_CAD_MasterEntity_create(const kz_Char* block, const kz_Point* point) {
    if (kz::isEmpty(block) || point == nullptr) return 0;
    if (kz_CAD_MasterEntityBlock_create(block) != 1) return 0;
    return kz_CAD_MasterEntityBlock_insert(block, point);
}
