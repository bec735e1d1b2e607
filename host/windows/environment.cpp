#include "host/settings/environment.h"

#include <cstdlib>

#include "host/windows/wide_text.h"

// Of the C library, without a header.
struct StartUp {
    int newMode;
};
extern "C" int __cdecl __wgetmainargs(int* count, wchar_t*** words, wchar_t*** variables, int expandWildcards,
                                      StartUp* startUp);

namespace host {

// Those of main() are in a code page that need not have all of their characters. No shell of this system puts
// the files in the place of "*.gpx": that is left to the programs.
std::vector<std::string> Arguments(int, char**) {
    constexpr int kExpandWildcards = 1;
    int count = 0;
    wchar_t **words = nullptr, **variables = nullptr;
    StartUp usual{};
    std::vector<std::string> arguments;
    if (__wgetmainargs(&count, &words, &variables, kExpandWildcards, &usual) != 0) return arguments;
    for (int i = 1; i < count; ++i) arguments.push_back(NarrowText(words[i]));
    return arguments;
}

std::string Environment(const char* variable) {
    const wchar_t* value = _wgetenv(WideText(variable).c_str());
    return value == nullptr ? "" : NarrowText(value);
}

}  // namespace host
