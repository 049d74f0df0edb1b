/// Selection sets: ordered members with hashed membership, in a limited number of slots.
#include <algorithm>
#include <array>
#include <memory>
#include <unordered_map>
#include <vector>

#include "base/faults.h"
#include "db/database.h"
#include "host/counters.h"

namespace host {
namespace {

/// How many sets may live at once.
constexpr size_t kMaxSets = 128;
constexpr uint64_t kSetMark = 0x4B53U;

struct SelectionSet {
    std::vector<AcDbObjectId> members;  ///< null where one was taken out
    std::unordered_map<uint64_t, size_t> places;
    size_t holes = 0;

    bool has(AcDbObjectId id) const { return places.count(id.asOldId()) != 0; }

    void add(AcDbObjectId id) {
        if (has(id)) return;
        places.emplace(id.asOldId(), members.size());
        members.push_back(id);
    }

    bool remove(AcDbObjectId id) {
        const auto found = places.find(id.asOldId());
        if (found == places.end()) return false;
        members[found->second].setNull();
        places.erase(found);
        ++holes;
        return true;
    }

    /// Closes the holes, so that indexes count members; done only when somebody asks by index.
    void pack() {
        if (holes == 0) return;
        std::erase_if(members, [](AcDbObjectId id) { return id.isNull(); });
        for (size_t i = 0; i < members.size(); ++i)
            places[members[i].asOldId()] = i;
        holes = 0;
    }
};

struct Cell {
    std::unique_ptr<SelectionSet> set;
    uint32_t generation = 0;
};

std::array<Cell, kMaxSets>& cells() {
    static std::array<Cell, kMaxSets> all;
    return all;
}

SelectionSet* findSet(const ads_name name, size_t* index = nullptr) {
    if (name == nullptr) return nullptr;
    const auto word0 = static_cast<uint64_t>(name[0]);
    const size_t at = word0 & 0xFFFFU;
    if (word0 >> 48U != kSetMark || at >= kMaxSets) return nullptr;
    const Cell& cell = cells()[at];
    if (static_cast<uint64_t>(name[1]) != (kSetMark << 48U | cell.generation)) return nullptr;
    if (index != nullptr) *index = at;
    return cell.set.get();
}

/// A new empty set; NULL when all slots are taken.
SelectionSet* newSet(ads_name name) {
    for (size_t i = 0; i < kMaxSets; ++i) {
        Cell& cell = cells()[i];
        if (cell.set != nullptr) continue;
        cell.set = std::make_unique<SelectionSet>();
        ++cell.generation;
        name[0] = static_cast<int64_t>(kSetMark << 48U | i);
        name[1] = static_cast<int64_t>(kSetMark << 48U | cell.generation);
        return cell.set.get();
    }
    return nullptr;
}

/// Id of a main entity that a set can hold; null for anything else.
AcDbObjectId memberId(const ads_name entity) {
    const AcDbObjectId id = Database::idFromName(entity);
    const Database* database = Database::find(id);
    if (database == nullptr) return {};
    const ObjectRecord& record = database->record(database->slotOf(id));
    return record.object_class == ObjectClass::Entity ? id : AcDbObjectId{};
}

}  // namespace

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
    const bool is_new = set == nullptr || ads_name_nil(set);
    ads_name made = {0, 0};
    host::SelectionSet* target = is_new ? host::newSet(made) : host::findSet(set);
    if (target == nullptr) return RTERROR;
    if (with_entity) target->add(id);
    ads_name_set(is_new ? made : set, result);
    return RTNORM;
}

int acedSSDel(const ads_name entity, const ads_name set) {
    host::SelectionSet* target = host::findSet(set);
    if (target == nullptr) return RTERROR;
    return target->remove(host::Database::idFromName(entity)) ? RTNORM : RTERROR;
}

int acedSSLength(const ads_name set, int32_t* length) {
    const host::SelectionSet* target = host::findSet(set);
    if (target == nullptr || length == nullptr) return RTERROR;
    *length = static_cast<int32_t>(target->places.size());
    return RTNORM;
}

int acedSSName(const ads_name set, int32_t index, ads_name entity) {
    int status = 0;
    if (host::mustFail(host::Call::acedSSName, status)) return status;
    host::SelectionSet* target = host::findSet(set);
    if (target == nullptr || entity == nullptr) return RTERROR;
    target->pack();
    if (index < 0 || static_cast<size_t>(index) >= target->members.size()) return RTERROR;
    return acdbGetAdsName(entity, target->members[static_cast<size_t>(index)]) == Acad::eOk
               ? RTNORM
               : RTERROR;
}

int acedSSMemb(const ads_name entity, const ads_name set) {
    const host::SelectionSet* target = host::findSet(set);
    if (target == nullptr) return RTERROR;
    return target->has(host::Database::idFromName(entity)) ? RTNORM : RTERROR;
}

int acedSSFree(const ads_name set) {
    size_t index = 0;
    if (host::findSet(set, &index) == nullptr) return RTERROR;
    host::cells()[index].set.reset();
    return RTNORM;
}
}
