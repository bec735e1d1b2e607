// Memory that is never given back, on purpose, told to the leak checker where it happens.
#pragma once

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

inline void KeepLeaked([[maybe_unused]] const void* block) {
#if defined(__SANITIZE_ADDRESS__)
    __lsan_ignore_object(block);
#endif
}
