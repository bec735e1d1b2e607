// A search in progress, which each system reads in its way: platform/posix/find.cpp, platform/windows/find.cpp.
#pragma once

#include <memory>

#include "platform/find.h"

namespace platform {

class Search {
 public:
    Search() = default;
    virtual ~Search() = default;
    Search(const Search&) = delete;
    Search& operator=(const Search&) = delete;

    // Fills the record with the next entry; false, with the record untouched, after the last.
    virtual bool Advance(FindData* entry) = 0;
};

// Null for a pattern that can find nothing, of a folder that cannot be read among others.
std::unique_ptr<Search> MakeSearch(const wchar_t* pattern);

}  // namespace platform
