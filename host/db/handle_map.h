/// Handles to slots: an open-addressing hash table, as handles are looked up for every pointer in a
/// file.
#ifndef HOST_DB_HANDLE_MAP_H
#define HOST_DB_HANDLE_MAP_H

#include <cstdint>
#include <vector>

#include "base/big_memory.h"

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
        Probe probe(handle, cells_.size() - 1);
        while (cells_[probe.index].handle != handle) {
            if (cells_[probe.index].handle == 0) return 0;
            probe.step();
        }
        return cells_[probe.index].slot;
    }

  private:
    struct Cell {
        uint64_t handle = 0;
        uint32_t slot = 0;
    };

    using Cells = std::vector<Cell, BigAllocator<Cell>>;

    /// Handles run upward one by one, so the first try is the handle itself; where that is taken,
    /// the further tries are spread by all of its bits and never run along a full stretch.
    struct Probe {
        Probe(uint64_t handle, size_t table_mask)
            : index(handle & table_mask), mask(table_mask), spread(handle * 0x9E3779B97F4A7C15U) {}
        void step() {
            spread >>= 5U;
            index = (index * 5 + 1 + spread) & mask;
        }
        size_t index;
        size_t mask;
        uint64_t spread;
    };

    Cell& cellOf(uint64_t handle) {
        Probe probe(handle, cells_.size() - 1);
        while (cells_[probe.index].handle != 0 && cells_[probe.index].handle != handle)
            probe.step();
        return cells_[probe.index];
    }

    void rehash(size_t capacity) {
        Cells old(capacity);
        old.swap(cells_);
        for (const Cell& cell : old) {
            if (cell.handle != 0) cellOf(cell.handle) = cell;
        }
    }

    Cells cells_;
    size_t count_ = 0;
};

}  // namespace host

#endif
