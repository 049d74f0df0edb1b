/// Dictionaries: ordered entries with hashed keys. The tags of a changed dictionary are made again
/// when somebody next asks for them, so that many changes cost no more than their number.
#include "db/database.h"
#include "kz_tls21an/text.h"

namespace host {
namespace {

bool isDictionaryType(const std::string& type) {
    return type == "DICTIONARY" || type == "ACDBDICTIONARYWDFLT";
}

}  // namespace

Slot Database::needNamedObjects() {
    if (named_objects_ != kNoSlot) return named_objects_;
    Tags tags;
    tags.emplace_back(100, u"AcDbDictionary");
    tags.emplace_back(281, int64_t{1});
    named_objects_ = makeRecord("DICTIONARY", ObjectClass::Object, 0, std::move(tags));
    return named_objects_;
}

DictionaryData* Database::dictionary(Slot slot) {
    if (slot == kNoSlot || !isDictionaryType(typeName(slot))) return nullptr;
    const auto present = dictionaries_.find(slot);
    if (present != dictionaries_.end()) return present->second.get();
    auto made = std::make_unique<DictionaryData>();
    const Tags& groups = tags(slot);
    bool in_class = false;
    for (size_t i = 0; i < groups.size(); ++i) {
        const int code = groups[i].code();
        if (code == 100) in_class = true;
        if (!in_class) continue;
        if (code == 3) {
            made->entries.push_back({groups[i].text(codec_), 0, false});
        } else if ((code == 350 || code == 360) && !made->entries.empty()) {
            made->entries.back().handle = groups[i].handleValue();
            made->value_code = code;
        } else if (code == 280 && groups[i].integer() == 1) {
            made->value_code = 360;
        }
    }
    for (size_t i = 0; i < made->entries.size(); ++i) {
        made->by_key.emplace(kz::toUpper(made->entries[i].key), i);
    }
    return dictionaries_.emplace(slot, std::move(made)).first->second.get();
}

Slot Database::dictionaryEntry(Slot slot, std::u16string_view key) {
    const DictionaryData* entries = dictionary(slot);
    if (entries == nullptr) return kNoSlot;
    const auto found = entries->by_key.find(kz::toUpper(key));
    if (found == entries->by_key.end()) return kNoSlot;
    const Slot object = findHandle(entries->entries[found->second].handle);
    return object == kNoSlot || records_[object].erased ? kNoSlot : object;
}

bool Database::dictionaryAdd(Slot slot, std::u16string_view key, Slot object) {
    DictionaryData* entries = dictionary(slot);
    if (entries == nullptr || key.empty() || object == kNoSlot) return false;
    if (records_[object].object_class != ObjectClass::Object) return false;
    if (dictionaryEntry(slot, key) != kNoSlot) return false;
    const std::u16string upper = kz::toUpper(key);
    const auto dead = entries->by_key.find(upper);
    changeEntries(slot);
    if (dead != entries->by_key.end() && !entries->entries[dead->second].removed) {
        undo_.keepEntry(slot, dead->second);
        entries->entries[dead->second].removed = true;
    }
    undo_.keepEntry(slot, entries->entries.size());
    entries->by_key.insert_or_assign(upper, entries->entries.size());
    entries->entries.push_back({std::u16string(key), records_[object].handle, false});
    touch(slot);
    Tags& groups = changeTags(object);
    // Behind 5 and the groups in braces; the braces hold 330 groups of their own.
    size_t at = 1;
    bool in_braces = false;
    size_t found = groups.size();
    for (; at < groups.size() && groups[at].code() != 100; ++at) {
        if (groups[at].code() == 102) {
            in_braces = !in_braces;
        } else if (groups[at].code() == 330 && !in_braces) {
            found = at;
        }
    }
    const Tag link = Tag::handle(330, records_[slot].handle);
    if (found < groups.size()) {
        groups[found] = link;
    } else {
        groups.insert(groups.begin() + static_cast<std::ptrdiff_t>(at), link);
    }
    setOwner(object, slot);
    touch(object);
    return true;
}

bool Database::dictionaryRemove(Slot slot, std::u16string_view key) {
    DictionaryData* entries = dictionary(slot);
    if (entries == nullptr || dictionaryEntry(slot, key) == kNoSlot) return false;
    const auto found = entries->by_key.find(kz::toUpper(key));
    changeEntries(slot);
    undo_.keepEntry(slot, found->second);
    entries->entries[found->second].removed = true;
    entries->by_key.erase(found);
    touch(slot);
    return true;
}

bool Database::dictionaryRename(Slot slot, std::u16string_view key, std::u16string_view new_key) {
    DictionaryData* entries = dictionary(slot);
    if (entries == nullptr || new_key.empty()) return false;
    const auto found = entries->by_key.find(kz::toUpper(key));
    if (found == entries->by_key.end()) return false;
    const size_t index = found->second;
    const std::u16string upper = kz::toUpper(new_key);
    const auto taken = entries->by_key.find(upper);
    if (taken != entries->by_key.end() && taken->second != index) return false;
    changeEntries(slot);
    undo_.keepKey(slot, index);
    entries->by_key.erase(found);
    entries->by_key.insert_or_assign(upper, index);
    entries->entries[index].key = new_key;
    touch(slot);
    return true;
}

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
    for (const DictionaryData::Entry& entry : entries.entries) {
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
