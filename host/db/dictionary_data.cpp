/// Entries of a dictionary.
#include "db/dictionary_data.h"

#include <algorithm>
#include <utility>

#include "kz_tls21an/text.h"

namespace host {
namespace {

/// The number in a key "*A12"; 0 for any other key.
uint64_t anonymousNumber(std::u16string_view upper_key) {
    constexpr size_t kMostDigits = 18;
    if (!upper_key.starts_with(u"*A") || upper_key.size() > kMostDigits + 2) return 0;
    uint64_t number = 0;
    for (const char16_t unit : upper_key.substr(2)) {
        if (unit < u'0' || unit > u'9') return 0;
        number = number * 10 + static_cast<uint64_t>(unit - u'0');
    }
    return number;
}

}  // namespace

size_t DictionaryData::add(std::u16string key, uint64_t handle, bool hidden) {
    const size_t index = entries_.size();
    entries_.push_back({std::move(key), handle, false, hidden});
    enterKey(index);
    by_handle_.insert_or_assign(handle, index);
    showOrHide(index);
    return index;
}

void DictionaryData::setRemoved(size_t index, bool removed) {
    Entry& entry = entries_[index];
    entry.removed = removed;
    if (removed) {
        leaveKey(index);
        const auto present = by_handle_.find(entry.handle);
        if (present != by_handle_.end() && present->second == index) by_handle_.erase(present);
    } else {
        enterKey(index);
        by_handle_.insert_or_assign(entry.handle, index);
    }
    showOrHide(index);
}

void DictionaryData::setHidden(size_t index, bool hidden) {
    entries_[index].hidden = hidden;
    showOrHide(index);
}

void DictionaryData::setKey(size_t index, std::u16string key) {
    leaveKey(index);
    entries_[index].key = std::move(key);
    enterKey(index);
}

size_t DictionaryData::find(std::u16string_view key) const {
    const auto found = by_key_.find(kz::toUpper(key));
    return found == by_key_.end() ? kNone : found->second;
}

size_t DictionaryData::findHandle(uint64_t handle) const {
    const auto found = by_handle_.find(handle);
    return found == by_handle_.end() ? kNone : found->second;
}

size_t DictionaryData::livingFrom(size_t index) const {
    const auto found = living_.lower_bound(index);
    return found == living_.end() ? kNone : *found;
}

std::u16string DictionaryData::anonymousKey() const {
    return u"*A" + kz::toUtf16(std::to_string(last_anonymous_ + 1));
}

void DictionaryData::showOrHide(size_t index) {
    const Entry& entry = entries_[index];
    if (entry.removed || entry.hidden) {
        living_.erase(index);
    } else {
        living_.insert(living_.end(), index);
    }
}

void DictionaryData::enterKey(size_t index) {
    std::u16string key = kz::toUpper(entries_[index].key);
    last_anonymous_ = std::max(last_anonymous_, anonymousNumber(key));
    const auto [place, made] = by_key_.emplace(std::move(key), index);
    // Of two living entries with one key, which only a file can have, the first has it.
    const size_t other = place->second;
    if (made || other == index) return;
    if (entries_[other].hidden || entries_[other].removed) place->second = index;
}

void DictionaryData::leaveKey(size_t index) {
    const auto present = by_key_.find(kz::toUpper(entries_[index].key));
    if (present != by_key_.end() && present->second == index) by_key_.erase(present);
}

}  // namespace host
