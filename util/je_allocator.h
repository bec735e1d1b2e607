// The allocator of every point list, and of the texts they are read from. Its memory comes from jemalloc; the
// host's own malloc is left as it is.
#pragma once

#include <cstddef>
#include <limits>
#include <new>

#include "util/export.h"

// Where the memory comes from. Any thread; nothing is thrown here.
struct QTRACE_API je_memory {
    // A block of at least `bytes` bytes, aligned for every fundamental type; null when there is none or `bytes`
    // is 0.
    static void* Allocate(std::size_t bytes) noexcept;
    // Takes back a block that Allocate gave; null is allowed.
    static void Free(void* block) noexcept;
};

// A standard allocator over je_memory, without state: any instance frees what another one allocated.
template <typename T>
class je_allocator {
 public:
    using value_type = T;  // as the standard asks

    je_allocator() noexcept = default;
    // Of another type of object: the memory is the same.
    template <typename Other>
    je_allocator(const je_allocator<Other>&) noexcept {}

    // Room for `count` objects; throws std::bad_alloc when there is none.
    T* allocate(std::size_t count) {
        if (count > std::numeric_limits<std::size_t>::max() / sizeof(T)) throw std::bad_array_new_length();
        void* block = je_memory::Allocate(count * sizeof(T));
        if (block == nullptr && count != 0) throw std::bad_alloc();
        return static_cast<T*>(block);
    }
    // Takes back what allocate gave.
    void deallocate(T* block, std::size_t) noexcept { je_memory::Free(block); }
};

// Any two are equal.
template <typename A, typename B>
bool operator==(const je_allocator<A>&, const je_allocator<B>&) noexcept {
    return true;
}
// No two differ.
template <typename A, typename B>
bool operator!=(const je_allocator<A>&, const je_allocator<B>&) noexcept {
    return false;
}
