/// The entries of a dictionary: in order, and hashed by key and by object. An entry keeps its index
/// for good, so that the undo journal and walks may hold it over any change.
#ifndef HOST_DB_DICTIONARY_DATA_H
#define HOST_DB_DICTIONARY_DATA_H

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace host {

class DictionaryData {
  public:
    static constexpr size_t kNone = SIZE_MAX;

    struct Entry {
        std::u16string key;
        uint64_t handle = 0;
        bool removed = false;
        bool hidden = false;  ///< its object is erased, or the drawing has none
    };

    /// Appends an entry. The key of one that is hidden goes over to it. @return its index
    size_t add(std::u16string key, uint64_t handle, bool hidden = false);
    /// Takes an entry out, or puts it back at its place.
    void setRemoved(size_t index, bool removed);
    /// Lets an entry go with its object, and come back with it.
    void setHidden(size_t index, bool hidden);
    void setKey(size_t index, std::u16string key);

    const Entry& entry(size_t index) const { return entries_[index]; }
    /// Number of all entries, removed and hidden ones too.
    size_t count() const { return entries_.size(); }
    /// Number of those that are neither.
    size_t livingCount() const { return living_.size(); }
    /// The entry with this key that was not removed, a hidden one too; kNone when there is none.
    size_t find(std::u16string_view key) const;
    /// The same by the object's handle.
    size_t findHandle(uint64_t handle) const;
    /// The first living entry at `index` or behind it; kNone at the end.
    size_t livingFrom(size_t index) const;
    /// A key "*A" and a number that no entry has had.
    std::u16string anonymousKey() const;

    int value_code = 350;  ///< 350 soft owner, 360 hard owner
    bool changed = false;  ///< the tags are behind the entries
    size_t walk = 0;       ///< index from which acdbDictNext goes on

  private:
    void showOrHide(size_t index);
    void enterKey(size_t index);
    void leaveKey(size_t index);

    std::vector<Entry> entries_;
    std::set<size_t> living_;
    std::unordered_map<std::u16string, size_t> by_key_;  ///< key in upper case
    std::unordered_map<uint64_t, size_t> by_handle_;
    uint64_t last_anonymous_ = 0;
};

}  // namespace host

#endif
