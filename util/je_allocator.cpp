// The one place that knows which jemalloc is installed. Debian's is built without the je_ prefix, so its entry
// points that exist under no other allocator's name are used; other builds, and sanitizers, take the system's
// allocator.
#include "util/je_allocator.h"

#if defined(QTRACE_JEMALLOC)
#include <jemalloc/jemalloc.h>
#else
#include <cstdlib>
#endif

namespace {

#if defined(QTRACE_JEMALLOC)
void* je_malloc(std::size_t bytes) { return mallocx(bytes, 0); }
void je_free(void* block) { dallocx(block, 0); }
#else
void* je_malloc(std::size_t bytes) { return std::malloc(bytes); }
void je_free(void* block) { std::free(block); }
#endif

}  // namespace

void* je_memory::Allocate(std::size_t bytes) noexcept { return bytes == 0 ? nullptr : je_malloc(bytes); }

void je_memory::Free(void* block) noexcept {
    if (block != nullptr) je_free(block);
}
