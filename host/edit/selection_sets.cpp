/// Selection sets by name: selections in a limited number of slots.
#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <utility>

#include "base/faults.h"
#include "edit/selection.h"
#include "edit/transform.h"
#include "host/counters.h"

namespace host {
namespace {

/// How many sets may live at once.
constexpr size_t kMaxSets = 128;
constexpr uint64_t kSetMark = 0x4B53U;

struct Cell {
    std::unique_ptr<Selection> set;
    uint32_t generation = 0;
};

std::array<Cell, kMaxSets>& cells() {
    static std::array<Cell, kMaxSets> all;
    return all;
}

/// The cell of a living set; NULL for any other name.
Cell* findCell(const ads_name name) {
    if (name == nullptr) return nullptr;
    const auto word0 = static_cast<uint64_t>(name[0]);
    const size_t at = word0 & 0xFFFFU;
    if (word0 >> 48U != kSetMark || at >= kMaxSets) return nullptr;
    Cell& cell = cells()[at];
    const bool same = static_cast<uint64_t>(name[1]) == (kSetMark << 48U | cell.generation);
    return same && cell.set != nullptr ? &cell : nullptr;
}

/// Transforms one member. @return false for one that can't be
bool transformMember(AcDbObjectId id, const AcGeMatrix3d& matrix) {
    Database* database = Database::find(id);
    if (database == nullptr) return false;
    const Slot slot = database->slotOf(id);
    const ObjectRecord& record = database->record(slot);
    const bool in_use = record.writer || record.readers > 0;
    if (record.erased || in_use || database->isOnLockedLayer(slot)) return false;
    return transformEntity(*database, slot, matrix) == TransformEnd::Done;
}

}  // namespace

Selection* selectionOf(const ads_name set) {
    const Cell* cell = findCell(set);
    return cell == nullptr ? nullptr : cell->set.get();
}

bool makeSelectionSet(Selection selection, ads_name set) {
    for (size_t i = 0; i < kMaxSets; ++i) {
        Cell& cell = cells()[i];
        if (cell.set != nullptr) continue;
        cell.set = std::make_unique<Selection>(std::move(selection));
        ++cell.generation;
        set[0] = static_cast<int64_t>(kSetMark << 48U | i);
        set[1] = static_cast<int64_t>(kSetMark << 48U | cell.generation);
        return true;
    }
    return false;
}

AcDbObjectId memberId(const ads_name entity) {
    const AcDbObjectId id = Database::idFromName(entity);
    const Database* database = Database::find(id);
    if (database == nullptr) return {};
    const ObjectRecord& record = database->record(database->slotOf(id));
    return record.object_class == ObjectClass::Entity ? id : AcDbObjectId{};
}

int64_t selectionSetCount() {
    return std::count_if(cells().begin(), cells().end(),
                         [](const Cell& cell) { return cell.set != nullptr; });
}

}  // namespace host

extern "C" {

int acedSSAdd(const ads_name entity, const ads_name set, ads_name result) {
    int status = 0;
    if (host::mustFail(host::Call::acedSSAdd, status)) return status;
    if (result == nullptr) return RTERROR;
    const bool with_entity = entity != nullptr && !ads_name_nil(entity);
    const AcDbObjectId id = with_entity ? host::memberId(entity) : AcDbObjectId{};
    if (with_entity && id.isNull()) return RTERROR;
    ads_name target = {0, 0};
    if (set != nullptr) ads_name_set(set, target);
    if (ads_name_nil(target) && !host::makeSelectionSet({}, target)) return RTERROR;
    host::Selection* selection = host::selectionOf(target);
    if (selection == nullptr) return RTERROR;
    if (with_entity) selection->add(id);
    ads_name_set(target, result);
    return RTNORM;
}

int acedSSDel(const ads_name entity, const ads_name set) {
    int status = 0;
    if (host::mustFail(host::Call::acedSSDel, status)) return status;
    host::Selection* selection = host::selectionOf(set);
    if (selection == nullptr) return RTERROR;
    return selection->remove(host::Database::idFromName(entity)) ? RTNORM : RTERROR;
}

int acedSSLength(const ads_name set, int32_t* length) {
    int status = 0;
    if (host::mustFail(host::Call::acedSSLength, status)) return status;
    const host::Selection* selection = host::selectionOf(set);
    if (selection == nullptr || length == nullptr) return RTERROR;
    *length = static_cast<int32_t>(selection->size());
    return RTNORM;
}

int acedSSName(const ads_name set, int32_t index, ads_name entity) {
    int status = 0;
    if (host::mustFail(host::Call::acedSSName, status)) return status;
    host::Selection* selection = host::selectionOf(set);
    if (selection == nullptr || entity == nullptr || index < 0) return RTERROR;
    const AcDbObjectId id = selection->at(static_cast<size_t>(index));
    return !id.isNull() && acdbGetAdsName(entity, id) == Acad::eOk ? RTNORM : RTERROR;
}

int acedSSMemb(const ads_name entity, const ads_name set) {
    int status = 0;
    if (host::mustFail(host::Call::acedSSMemb, status)) return status;
    const host::Selection* selection = host::selectionOf(set);
    if (selection == nullptr) return RTERROR;
    return selection->has(host::Database::idFromName(entity)) ? RTNORM : RTERROR;
}

int acedSSFree(const ads_name set) {
    host::Cell* cell = host::findCell(set);
    if (cell == nullptr) return RTERROR;
    cell->set.reset();
    return RTNORM;
}

int acedXformSS(const ads_name set, ads_matrix matrix) {
    int status = 0;
    if (host::mustFail(host::Call::acedXformSS, status)) return status;
    host::Selection* selection = host::selectionOf(set);
    if (selection == nullptr || matrix == nullptr) return RTERROR;
    AcGeMatrix3d transform;
    for (unsigned int row = 0; row < 3; ++row) {
        for (unsigned int column = 0; column < 4; ++column) {
            if (!std::isfinite(matrix[row][column])) return RTERROR;
            transform(row, column) = matrix[row][column];
        }
    }
    if (transform.isSingular(0.0)) return RTERROR;
    bool all = true;
    for (size_t i = 0; i < selection->size(); ++i)
        all = host::transformMember(selection->at(i), transform) && all;
    return all ? RTNORM : RTERROR;
}
}
