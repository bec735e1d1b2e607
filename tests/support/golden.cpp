#include "tests/support/golden.h"

std::filesystem::path GoldenFile(const char* name) { return std::filesystem::path(QTRACE_GOLDEN) / name; }
