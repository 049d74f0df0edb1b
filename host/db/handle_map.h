/// Handles to slots: an open-addressing hash table, as handles are looked up for every pointer in a
/// file.
#ifndef HOST_DB_HANDLE_MAP_H
#define HOST_DB_HANDLE_MAP_H

#include <cstdint>
#include <vector>

namespace host {

class HandleMap {
  public:
    void reserve(size_t count) {
        size_t capacity = 64;
        while (capacity < count * 2)
            capacity *= 2;
        if (capacity > cells_.size()) rehash(capacity);
    }

    /// False when the handle is there already, or is 0; then nothing changes.
    bool insert(uint64_t handle, uint32_t slot) {
        if (handle == 0) return false;
        if ((count_ + 1) * 2 > cells_.size()) rehash(cells_.empty() ? 64 : cells_.size() * 2);
        Cell& cell = cellOf(handle);
        if (cell.handle == handle) return false;
        cell = {handle, slot};
        ++count_;
        return true;
    }

    /// Leads a handle that is there to another slot.
    void replace(uint64_t handle, uint32_t slot) { cellOf(handle).slot = slot; }

    /// The slot of a handle; 0 when there is none.
    uint32_t find(uint64_t handle) const {
        if (handle == 0 || cells_.empty()) return 0;
        for (size_t i = start(handle);; i = (i + 1) & (cells_.size() - 1)) {
            if (cells_[i].handle == handle) return cells_[i].slot;
            if (cells_[i].handle == 0) return 0;
        }
    }

  private:
    struct Cell {
        uint64_t handle = 0;
        uint32_t slot = 0;
    };

    size_t start(uint64_t handle) const {
        // Handles run upward one by one: neighbours stay neighbours within blocks of 4096, and the
        // blocks are spread over the table.
        return (handle ^ ((handle >> 12U) * 0x9E3779B97F4A7C15U >> 20U)) & (cells_.size() - 1);
    }

    Cell& cellOf(uint64_t handle) {
        size_t i = start(handle);
        while (cells_[i].handle != 0 && cells_[i].handle != handle)
            i = (i + 1) & (cells_.size() - 1);
        return cells_[i];
    }

    void rehash(size_t capacity) {
        std::vector<Cell> old(capacity);
        old.swap(cells_);
        for (const Cell& cell : old) {
            if (cell.handle != 0) cellOf(cell.handle) = cell;
        }
    }

    std::vector<Cell> cells_;
    size_t count_ = 0;
};

}  // namespace host

#endif
