/// Groups: their entities are decoded when they are first asked for, and the tags of a changed
/// group made again when somebody next asks for them, as those of dictionaries are.
#include <algorithm>

#include "db/database.h"
#include "db/reactors.h"

namespace host {
namespace {

constexpr int kMember = 340;
constexpr int kUnnamed = 70;

bool isUnnamed(std::u16string_view key) {
    return key.starts_with(u'*');
}

}  // namespace

bool Database::isGroup(Slot slot) const {
    return slot != kNoSlot && typeName(slot) == "GROUP";
}

GroupData* Database::group(Slot slot) {
    if (!isGroup(slot)) return nullptr;
    const auto present = groups_.find(slot);
    if (present != groups_.end()) return present->second.get();
    return groups_.emplace(slot, decodeMembers(tags(slot))).first->second.get();
}

/// What a file names twice counts once, what the drawing doesn't have or is no entity not at all.
std::unique_ptr<GroupData> Database::decodeMembers(const Tags& groups) const {
    auto made = std::make_unique<GroupData>();
    for (size_t i = findTag(groups, 100); i < groups.size(); ++i) {
        if (groups[i].code() != kMember) continue;
        const Slot entity = findHandle(groups[i].handleValue());
        if (entity == kNoSlot || made->contains(entity)) continue;
        if (records_[entity].object_class != ObjectClass::Entity) continue;
        made->insert(made->size(), entity);
    }
    return made;
}

void Database::changeMembers(Slot slot) {
    ObjectRecord& record = records_[slot];
    ObjectData& object = data(slot);
    if (!object.has_tags) decodeTags(record, object);
    // The journal keeps the entities one by one, as it keeps the entries of dictionaries.
    undo_.keepWhole(slot);
    record.data->tags_changed = true;
    record.changed = true;
    groups_.at(slot)->changed = true;
    noteChange();
}

Acad::ErrorStatus Database::groupInsert(Slot slot, size_t index, Slot entity) {
    GroupData* members = group(slot);
    const bool fits = members != nullptr && entity != kNoSlot &&
                      records_[entity].object_class == ObjectClass::Entity;
    if (!fits) return Acad::eNotThatKindOfClass;
    if (members->contains(entity)) return Acad::eAlreadyInGroup;
    changeMembers(slot);
    undo_.keepMember(slot, entity, std::min(index, members->size()));
    members->insert(index, entity);
    touch(slot);
    bindMember(slot, entity, true);
    return Acad::eOk;
}

Acad::ErrorStatus Database::groupRemove(Slot slot, Slot entity) {
    GroupData* members = group(slot);
    if (members == nullptr) return Acad::eNotThatKindOfClass;
    const size_t index = members->indexOf(entity);
    if (index == GroupData::kNone) return Acad::eKeyNotFound;
    changeMembers(slot);
    undo_.keepMember(slot, entity, index);
    members->remove(entity);
    touch(slot);
    bindMember(slot, entity, false);
    return Acad::eOk;
}

void Database::changeGroupTags(Slot slot, Tags tags) {
    const GroupData* members = group(slot);
    const std::unique_ptr<GroupData> wanted = decodeMembers(tags);
    changeTags(slot) = std::move(tags);
    for (const Slot entity : members->all()) {
        if (!wanted->contains(entity)) groupRemove(slot, entity);
    }
    const std::vector<Slot> order = wanted->all();
    for (size_t i = 0; i < order.size(); ++i) {
        if (members->at(i) == order[i]) continue;
        groupRemove(slot, order[i]);
        groupInsert(slot, i, order[i]);
    }
    // Other programs don't always tell the entities of their groups.
    bindMembers(slot);
}

// --- reactors -----------------------------------------------------------------------------------

void Database::bindMember(Slot slot, Slot entity, bool bound) {
    const ObjectRecord& holder = records_[slot];
    const bool wanted = bound && !holder.erased && holder.owner != kNoSlot;
    const Tags& present = tags(entity);
    // An entity without class markers is of an old form, where there are no reactors.
    const bool old_form = findTag(present, 100) == present.size();
    if (old_form || hasReactor(present, holder.handle) == wanted) return;
    if (wanted) {
        addReactor(changeTags(entity), holder.handle);
    } else {
        removeReactor(changeTags(entity), holder.handle);
    }
}

void Database::bindMembers(Slot slot) {
    for (const Slot entity : group(slot)->all())
        bindMember(slot, entity, true);
}

void Database::followEntry(Slot slot, std::u16string_view key) {
    const Tags& present = tags(slot);
    const size_t marker = findTag(present, 100);
    const size_t at = findTag(present, kUnnamed, marker);
    const int64_t wanted = isUnnamed(key) ? 1 : 0;
    if (at < present.size() && present[at].integer() != wanted) {
        changeTags(slot)[at] = Tag(kUnnamed, wanted);
        touch(slot);
    }
    bindMembers(slot);
}

// --- tags ---------------------------------------------------------------------------------------

void Database::writeGroupTags(Slot slot) {
    GroupData& members = *groups_.at(slot);
    members.changed = false;
    Tags& present = records_[slot].data->tags;
    const size_t marker = findTag(present, 100);
    const size_t place = std::min(findTag(present, kMember, marker), present.size());
    Tags kept;
    kept.reserve(present.size() + members.size());
    const auto addMembers = [&] {
        for (const Slot entity : members.all())
            kept.push_back(Tag::handle(kMember, records_[entity].handle));
    };
    for (size_t i = 0; i < present.size(); ++i) {
        if (i == place) addMembers();
        const bool member = i > marker && present[i].code() == kMember;
        if (!member) kept.push_back(std::move(present[i]));
    }
    if (place == present.size()) addMembers();
    present = std::move(kept);
}

}  // namespace host
