// A host's malloc stays the C library's although the point lists take their memory from jemalloc. Linked once
// with the shared library and once with the static one; says what is wrong and fails.
#include <dlfcn.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "util/je_allocator.h"

namespace {

using Mallctl = int (*)(const char*, void*, std::size_t*, void*, std::size_t);

constexpr std::size_t kBlock = 1000000;

// The file whose function a call of that name reaches.
std::string OwnerOf(const char* function) {
    void* address = dlsym(RTLD_DEFAULT, function);
    Dl_info info{};
    if (address == nullptr || dladdr(address, &info) == 0) return "nobody";
    const std::string file = info.dli_fname;
    return file.substr(file.rfind('/') + 1);
}

bool BelongsToTheCLibrary(const char* function) {
    const std::string owner = OwnerOf(function);
    if (owner.starts_with("libc.so")) return true;
    std::printf("%s belongs to %s, not to the C library\n", function, owner.c_str());
    return false;
}

// What jemalloc has given to this thread so far, in bytes.
std::uint64_t GivenByJemalloc(Mallctl mallctl) {
    std::uint64_t bytes = 0;
    std::size_t size = sizeof bytes;
    if (mallctl("thread.allocated", &bytes, &size, nullptr, 0) != 0) std::puts("jemalloc counts nothing here");
    return bytes;
}

bool OnlyPointListsCount(Mallctl mallctl) {
    const std::uint64_t atFirst = GivenByJemalloc(mallctl);
    void* ofHost = std::malloc(kBlock);
    const std::uint64_t afterHost = GivenByJemalloc(mallctl);
    void* ofList = je_memory::Allocate(kBlock);
    const std::uint64_t afterList = GivenByJemalloc(mallctl);
    je_memory::Free(ofList);
    std::free(ofHost);
    if (afterHost != atFirst) std::puts("malloc took its memory from jemalloc");
    if (afterList < afterHost + kBlock) std::puts("the point lists do not take theirs from jemalloc");
    return afterHost == atFirst && afterList >= afterHost + kBlock;
}

}  // namespace

int main() {
    bool right = true;
    for (const char* function : {"malloc", "calloc", "realloc", "free", "posix_memalign", "aligned_alloc"})
        right = BelongsToTheCLibrary(function) && right;
    void* mallctl = dlsym(RTLD_DEFAULT, "mallctl");
    if (mallctl == nullptr) std::puts("jemalloc is not there");
    right = mallctl != nullptr && OnlyPointListsCount(reinterpret_cast<Mallctl>(mallctl)) && right;
    return right ? EXIT_SUCCESS : EXIT_FAILURE;
}
