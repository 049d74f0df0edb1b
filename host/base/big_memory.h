/// Memory for what is as large as a drawing. The system maps it in large pages where it can: with
/// small ones, the first touch of each costs more than all that is done with its bytes.
#ifndef HOST_BASE_BIG_MEMORY_H
#define HOST_BASE_BIG_MEMORY_H

#include <cstddef>
#include <memory>
#include <new>

namespace host {

/// Bytes without content. @return NULL when there is no memory
void* takeBigMemory(size_t size) noexcept;
/// Gives back what takeBigMemory gave for this size.
void returnBigMemory(void* memory, size_t size) noexcept;

/// The bytes of a file.
struct BigBytesDeleter {
    size_t size = 0;
    void operator()(char* bytes) const noexcept { returnBigMemory(bytes, size); }
};
using BigBytes = std::unique_ptr<char[], BigBytesDeleter>;

/// @return NULL when there is no memory
inline BigBytes makeBigBytes(size_t size) noexcept {
    return {static_cast<char*>(takeBigMemory(size)), BigBytesDeleter{size}};
}

/// For containers that hold something for every object of a drawing.
template <class T>
struct BigAllocator {
    using value_type = T;

    BigAllocator() = default;
    template <class Other>
    BigAllocator(const BigAllocator<Other>&) noexcept {}

    T* allocate(size_t count) {
        void* memory = takeBigMemory(count * sizeof(T));
        if (memory == nullptr) throw std::bad_alloc();
        return static_cast<T*>(memory);
    }
    void deallocate(T* memory, size_t count) noexcept {
        returnBigMemory(memory, count * sizeof(T));
    }
    template <class Other>
    bool operator==(const BigAllocator<Other>&) const noexcept {
        return true;
    }
};

}  // namespace host

#endif
