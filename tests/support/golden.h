// Files that were written by hand, for comparing byte for byte what the library writes.
#pragma once

#include <filesystem>

// The file of that name in tests/golden.
std::filesystem::path GoldenFile(const char* name);
