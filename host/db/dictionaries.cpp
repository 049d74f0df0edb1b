/// Dictionaries: their entries are decoded when one of them is first asked for. The tags of a
/// changed dictionary are made again when somebody next asks for them, so that many changes cost no
/// more than their number.
#include <algorithm>
#include <utility>

#include "db/database.h"
#include "db/reactors.h"
#include "kz_tls21an/text.h"

namespace host {
namespace {

/// Keys are no longer than other names.
bool isGoodKey(std::u16string_view key) {
    constexpr size_t kLongestKey = 255;
    return !key.empty() && key.size() <= kLongestKey;
}

}  // namespace

Slot Database::needNamedObjects() {
    if (named_objects_ != kNoSlot) return named_objects_;
    named_objects_ = makeRecord("DICTIONARY", ObjectClass::Object, 0, dictionaryTags());
    return named_objects_;
}

Slot Database::needGroups() {
    const Slot root = needNamedObjects();
    const Slot present = dictionaryEntry(root, u"ACAD_GROUP");
    if (present != kNoSlot) return present;
    const Slot made = makeRecord("DICTIONARY", ObjectClass::Object, 0, dictionaryTags());
    return dictionaryAdd(root, u"ACAD_GROUP", made) == Acad::eOk ? made : kNoSlot;
}

Tags dictionaryTags() {
    Tags tags;
    tags.emplace_back(100, u"AcDbDictionary");
    tags.emplace_back(281, int64_t{1});
    return tags;
}

// --- entries ------------------------------------------------------------------------------------

bool Database::isDictionary(Slot slot) const {
    if (slot == kNoSlot) return false;
    const std::string& type = typeName(slot);
    return type == "DICTIONARY" || type == "ACDBDICTIONARYWDFLT";
}

DictionaryData* Database::dictionary(Slot slot) {
    if (!isDictionary(slot)) return nullptr;
    const auto present = dictionaries_.find(slot);
    if (present != dictionaries_.end()) return present->second.get();
    return dictionaries_.emplace(slot, decodeEntries(tags(slot))).first->second.get();
}

std::unique_ptr<DictionaryData> Database::decodeEntries(const Tags& groups) const {
    auto made = std::make_unique<DictionaryData>();
    bool keyed = false;
    std::u16string key;
    for (size_t i = findTag(groups, 100); i < groups.size(); ++i) {
        const int code = groups[i].code();
        if (code == 3) {
            key = groups[i].text(codec_);
            keyed = true;
        } else if ((code == 350 || code == 360) && keyed) {
            const uint64_t handle = groups[i].handleValue();
            made->add(std::exchange(key, {}), handle, !isLiving(findHandle(handle)));
            made->value_code = code;
            keyed = false;
        } else if (code == 280 && groups[i].integer() == 1) {
            made->value_code = 360;
        }
    }
    return made;
}

bool Database::isLiving(Slot slot) const {
    return slot != kNoSlot && !records_[slot].erased;
}

Slot Database::dictionaryObject(Slot slot, size_t index) {
    const DictionaryData* entries = dictionary(slot);
    if (entries == nullptr || index == DictionaryData::kNone) return kNoSlot;
    const Slot object = findHandle(entries->entry(index).handle);
    return isLiving(object) ? object : kNoSlot;
}

Slot Database::dictionaryEntry(Slot slot, std::u16string_view key) {
    const DictionaryData* entries = dictionary(slot);
    return entries == nullptr ? kNoSlot : dictionaryObject(slot, entries->find(key));
}

size_t Database::dictionaryNext(Slot slot, size_t from) {
    const DictionaryData* entries = dictionary(slot);
    if (entries == nullptr) return DictionaryData::kNone;
    // An object that another dictionary owns may be erased without this one having heard of it.
    size_t index = entries->livingFrom(from);
    while (index != DictionaryData::kNone && dictionaryObject(slot, index) == kNoSlot)
        index = entries->livingFrom(index + 1);
    return index;
}

Acad::ErrorStatus Database::checkNewEntry(Slot slot, std::u16string_view key, Slot object) {
    if (dictionary(slot) == nullptr) return Acad::eNotThatKindOfClass;
    if (!isGoodKey(key)) return Acad::eInvalidKey;
    if (dictionaryEntry(slot, key) != kNoSlot) return Acad::eDuplicateKey;
    if (object == kNoSlot) return Acad::eOk;
    const ObjectRecord& record = records_[object];
    if (record.object_class != ObjectClass::Object) return Acad::eNotThatKindOfClass;
    if (record.erased) return Acad::eWasErased;
    if (object == named_objects_) return Acad::eInvalidInput;
    const DictionaryData* owner = dictionary(record.owner);
    if (owner != nullptr && owner->findHandle(record.handle) != DictionaryData::kNone) {
        return Acad::eAlreadyInDb;
    }
    // No dictionary gets into what it holds itself.
    const DictionaryData* held = dictionary(object);
    if (held == nullptr || held->livingCount() == 0) {
        return object == slot ? Acad::eInvalidInput : Acad::eOk;
    }
    for (Slot above = slot; above != kNoSlot; above = records_[above].owner) {
        if (above == object) return Acad::eInvalidInput;
    }
    return Acad::eOk;
}

Acad::ErrorStatus Database::dictionaryAdd(Slot slot, std::u16string_view key, Slot object) {
    const Acad::ErrorStatus status =
        object == kNoSlot ? Acad::eNullObjectId : checkNewEntry(slot, key, object);
    if (status != Acad::eOk) return status;
    DictionaryData* entries = dictionary(slot);
    const size_t dead = entries->find(key);
    if (dead != DictionaryData::kNone) removeEntry(slot, dead);
    changeEntries(slot);
    undo_.keepEntry(slot, entries->count());
    entries->add(std::u16string(key), records_[object].handle);
    touch(slot);
    Tags& groups = changeTags(object);
    setOwnerGroup(groups, records_[slot].handle);
    addReactor(groups, records_[slot].handle);
    setOwner(object, slot);
    touch(object);
    if (isGroup(object)) followEntry(object, key);
    return Acad::eOk;
}

void Database::removeEntry(Slot slot, size_t index) {
    DictionaryData& entries = *dictionary(slot);
    changeEntries(slot);
    undo_.keepEntry(slot, index);
    entries.setRemoved(index, true);
    touch(slot);
    const Slot object = findHandle(entries.entry(index).handle);
    if (object == kNoSlot || records_[object].owner != slot) return;
    Tags& groups = changeTags(object);
    setOwnerGroup(groups, 0);
    removeReactor(groups, records_[slot].handle);
    setOwner(object, kNoSlot);
    touch(object);
    if (isGroup(object)) bindMembers(object);
}

Acad::ErrorStatus Database::dictionaryRemove(Slot slot, std::u16string_view key) {
    if (dictionary(slot) == nullptr) return Acad::eNotThatKindOfClass;
    if (dictionaryEntry(slot, key) == kNoSlot) return Acad::eKeyNotFound;
    removeEntry(slot, dictionary(slot)->find(key));
    return Acad::eOk;
}

Acad::ErrorStatus Database::dictionaryRename(Slot slot, std::u16string_view key,
                                             std::u16string_view new_key) {
    DictionaryData* entries = dictionary(slot);
    if (entries == nullptr) return Acad::eNotThatKindOfClass;
    if (!isGoodKey(new_key)) return Acad::eInvalidKey;
    if (dictionaryEntry(slot, key) == kNoSlot) return Acad::eKeyNotFound;
    const size_t index = entries->find(key);
    const size_t taken = entries->find(new_key);
    if (taken != DictionaryData::kNone && taken != index) {
        if (dictionaryObject(slot, taken) != kNoSlot) return Acad::eDuplicateKey;
        removeEntry(slot, taken);
    }
    changeEntries(slot);
    undo_.keepKey(slot, index);
    entries->setKey(index, std::u16string(new_key));
    touch(slot);
    const Slot object = dictionaryObject(slot, index);
    if (isGroup(object)) followEntry(object, new_key);
    return Acad::eOk;
}

namespace {

/// Index of the group that names the extension dictionary; the number of tags when there is none.
size_t extensionPlace(const Tags& tags, const dxf::TextCodec& codec) {
    for (size_t i = 1; i + 1 < tags.size() && tags[i].code() != 100; ++i) {
        if (tags[i].code() == 102 && tags[i].text(codec) == kExtension) return i + 1;
    }
    return tags.size();
}

}  // namespace

Slot Database::extension(Slot object) {
    const Tags& groups = tags(object);
    const size_t at = extensionPlace(groups, codec_);
    if (at == groups.size()) return kNoSlot;
    const Slot found = findHandle(groups[at].handleValue());
    return isLiving(found) ? found : kNoSlot;
}

bool Database::addExtension(Slot object, Slot made) {
    if (!isDictionary(made) || !isLiving(made) || !isUnowned(made)) return false;
    if (extension(object) != kNoSlot) return false;
    Tags& groups = changeTags(object);
    const size_t at = extensionPlace(groups, codec_);
    Tag name = Tag::handle(360, records_[made].handle);
    if (at < groups.size()) {
        groups[at] = std::move(name);
    } else {
        // Behind type and handle, as others write it.
        Tags link;
        link.emplace_back(102, std::u16string(kExtension));
        link.push_back(std::move(name));
        link.emplace_back(102, u"}");
        const auto handle = std::find_if(groups.begin(), groups.end(), [](const Tag& tag) {
            return tag.code() == 5 || tag.code() == 105;
        });
        groups.insert(handle == groups.end() ? groups.begin() + 1 : handle + 1, link.begin(),
                      link.end());
    }
    touch(object);
    setOwnerGroup(changeTags(made), records_[object].handle);
    setOwner(made, object);
    touch(made);
    return true;
}

bool Database::isUnowned(Slot slot) const {
    const ObjectRecord& record = records_[slot];
    if (record.object_class != ObjectClass::Object || slot == named_objects_) return false;
    if (record.owner != kNoSlot || record.data == nullptr || !record.data->has_tags) return false;
    // What a file has without an owner stays as it is: only a group that was made here says so.
    const Tags& groups = record.data->tags;
    const size_t at = ownerPlace(groups);
    return hasOwnerGroup(groups, at) && !groups[at].isSource() && groups[at].handleValue() == 0;
}

// --- tags ---------------------------------------------------------------------------------------

void Database::changeEntries(Slot slot) {
    ObjectRecord& record = records_[slot];
    ObjectData& object = data(slot);
    if (!object.has_tags) decodeTags(record, object);
    // The journal keeps the entries one by one: the tags of a large dictionary would be copied in
    // each step that adds one.
    undo_.keepWhole(slot);
    record.data->tags_changed = true;
    record.changed = true;
    dictionaries_.at(slot)->changed = true;
    noteChange();
}

void Database::writeDictionaryTags(Slot slot) {
    DictionaryData& entries = *dictionaries_.at(slot);
    entries.changed = false;
    ObjectData& object = *records_[slot].data;
    Tags kept;
    Tags behind;
    bool in_class = false;
    bool after_entries = false;
    for (Tag& tag : object.tags) {
        const int code = tag.code();
        const bool marker = code == 100;
        if (in_class && (code == 3 || code == 350 || code == 360)) {
            after_entries = true;
            continue;
        }
        if (marker && in_class) after_entries = true;
        in_class = in_class || marker;
        (after_entries ? behind : kept).push_back(std::move(tag));
    }
    for (size_t i = 0; i < entries.count(); ++i) {
        const DictionaryData::Entry& entry = entries.entry(i);
        const Slot target = findHandle(entry.handle);
        if (entry.removed || (target != kNoSlot && records_[target].erased)) continue;
        kept.emplace_back(3, entry.key);
        kept.push_back(Tag::handle(entries.value_code, entry.handle));
    }
    for (Tag& tag : behind)
        kept.push_back(std::move(tag));
    object.tags = std::move(kept);
}

}  // namespace host
