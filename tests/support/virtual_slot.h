// The place of a virtual operation among those of its class, as hosts count them that were built earlier: the
// destructor is number 0. Adding or moving one would make such hosts call another.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

// By the C++ ABI that all compilers but Microsoft's follow: a pointer to a virtual member begins with the byte
// offset in the class's table (one more than it on some processors), where the destructor takes two entries.
template <typename Operation>
std::size_t SlotOf(Operation operation) {
    std::uintptr_t offset = 0;
    static_assert(sizeof operation == 2 * sizeof offset);
    std::memcpy(&offset, &operation, sizeof offset);
    return (offset & ~std::uintptr_t{1}) / sizeof(void*) - 1;
}
