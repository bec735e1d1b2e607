// Seeds of the random tests: fixed, so that every run does the same, unless QTRACE_SEED asks for others.
// scripts/random-tests tries new ones for a while and names the one that failed.
#pragma once

#include <cstdlib>

// `fixed`, moved by the number in QTRACE_SEED.
inline unsigned Seed(unsigned fixed) {
    const char* offset = std::getenv("QTRACE_SEED");
    return offset == nullptr ? fixed : fixed + static_cast<unsigned>(std::strtoul(offset, nullptr, 10));
}
