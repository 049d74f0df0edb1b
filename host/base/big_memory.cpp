/// Mapping of large blocks.
#include "base/big_memory.h"

#include <sys/mman.h>

#include <cstdint>

namespace host {

namespace {

/// Size of the machine's large pages; blocks below some of them come from the heap.
constexpr size_t kPage = size_t{2} << 20;
constexpr size_t kFromSystem = 2 * kPage;

size_t rounded(size_t size) {
    return (size + 4095) & ~size_t{4095};
}

}  // namespace

void* takeBigMemory(size_t size) noexcept {
    if (size < kFromSystem) return ::operator new(size, std::nothrow);
    if (size > SIZE_MAX / 2) return nullptr;
    // Mapped with room to begin at a large page; the rest in front and behind goes back.
    const size_t length = rounded(size);
    void* mapped =
        ::mmap(nullptr, length + kPage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapped == MAP_FAILED) return nullptr;
    auto* begin = static_cast<char*>(mapped);
    const size_t past = reinterpret_cast<uintptr_t>(begin) % kPage;
    const size_t front = past == 0 ? 0 : kPage - past;
    if (front != 0) ::munmap(begin, front);
    ::munmap(begin + front + length, kPage - front);
    ::madvise(begin + front, length, MADV_HUGEPAGE);
    return begin + front;
}

void returnBigMemory(void* memory, size_t size) noexcept {
    if (memory == nullptr) return;
    if (size < kFromSystem) {
        ::operator delete(memory);
    } else {
        ::munmap(memory, rounded(size));
    }
}

}  // namespace host
