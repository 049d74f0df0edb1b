/// Blocks, their contents and the walk over entities.
#include <algorithm>

#include "db/database.h"

namespace host {

Block& Database::block(Slot record) {
    std::unique_ptr<Block>& block = blocks_[record];
    if (block == nullptr) {
        block = std::make_unique<Block>();
        block->record = record;
        block_order_.push_back(record);
    }
    return *block;
}

Block* Database::findBlock(Slot record) {
    const auto found = blocks_.find(record);
    return found == blocks_.end() ? nullptr : found->second.get();
}

Slot Database::mainEntity(Slot slot) const {
    const ObjectRecord& object = records_[slot];
    return object.object_class == ObjectClass::SubEntity ? object.owner : slot;
}

Block* Database::blockOfEntity(Slot slot) {
    const Slot main = mainEntity(slot);
    if (main == kNoSlot || records_[main].object_class != ObjectClass::Entity) return nullptr;
    return findBlock(records_[main].owner);
}

void Database::setSpaces(Slot model, Slot paper) {
    model_space_ = model;
    paper_space_ = paper;
}

void Database::appendEntity(Slot record, Slot entity) {
    Block& target = block(record);
    ObjectRecord& object = records_[entity];
    object.position = static_cast<uint32_t>(target.contents.size());
    target.contents.push_back(entity);
    target.living_end = target.contents.size();
    if (object.object_class == ObjectClass::Entity) object.owner = record;
    tellWatcher(entity);
}

Slot Database::lastEntity(Slot space_record) {
    Block* space = findBlock(space_record);
    if (space == nullptr) return kNoSlot;
    bool only_erased = true;
    for (size_t i = space->living_end; i-- > space->living_begin;) {
        const ObjectRecord& object = records_[space->contents[i]];
        only_erased = only_erased && object.erased;
        if (only_erased) space->living_end = i;
        if (!object.erased && object.object_class == ObjectClass::Entity) return space->contents[i];
    }
    return kNoSlot;
}

Slot Database::nextEntity(Slot slot, Slot space) {
    Block* block = slot == kNoSlot ? findBlock(space) : blockOfEntity(slot);
    if (block == nullptr) return kNoSlot;
    const size_t from = slot == kNoSlot ? 0 : records_[slot].position + 1;
    const bool from_start = from <= block->living_begin;
    for (size_t i = std::max(from, block->living_begin); i < block->living_end; ++i) {
        if (records_[block->contents[i]].erased) continue;
        if (from_start) block->living_begin = i;
        return block->contents[i];
    }
    return kNoSlot;
}

bool Database::isOnLockedLayer(Slot slot) {
    const ObjectClass object_class = records_[slot].object_class;
    if (object_class != ObjectClass::Entity && object_class != ObjectClass::SubEntity) return false;
    const Tags& groups = tags(slot);
    const size_t at = findTag(groups, 8);
    const std::u16string name = at < groups.size() ? groups[at].text(codec_) : u"0";
    const Slot layer = findSymbol("LAYER", name);
    if (layer == kNoSlot) return false;
    const Tags& flags = tags(layer);
    const size_t flag = findTag(flags, 70);
    return flag < flags.size() && (flags[flag].integer() & 4) != 0;
}

}  // namespace host
