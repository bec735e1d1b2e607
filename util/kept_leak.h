// Memory that is never given back, on purpose, told to the leak checker where it happens.
#pragma once

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define QTRACE_LEAK_CHECKER
#endif
#elif defined(__SANITIZE_ADDRESS__)
#define QTRACE_LEAK_CHECKER
#endif
#if defined(QTRACE_LEAK_CHECKER)
#include <sanitizer/lsan_interface.h>
#endif

inline void KeepLeaked([[maybe_unused]] const void* block) {
#if defined(QTRACE_LEAK_CHECKER)
    __lsan_ignore_object(block);
#endif
}
