// The handles of searches; how a system reads its folders: platform/search.h.
#include "platform/find.h"

#include "platform/registry.h"
#include "platform/search.h"

namespace platform {

namespace {

Registry<std::unique_ptr<Search>>& TheSearches() {
    static auto& searches = *new Registry<std::unique_ptr<Search>>(kFirstSearch);
    return searches;
}

}  // namespace

Handle FindFirstFileW(const wchar_t* pattern, FindData* entry) {
    auto search = MakeSearch(pattern);
    if (search == nullptr || !search->Advance(entry)) return kInvalidHandle;
    return TheSearches().Add(std::move(search));
}

bool FindNextFileW(Handle handle, FindData* entry) {
    return TheSearches().With(handle, false, [entry](auto& search) { return search->Advance(entry); });
}

bool FindClose(Handle handle) { return TheSearches().Remove(handle); }

}  // namespace platform
