// Searches in a device of its own.
#pragma once

#include <string>
#include <vector>

#include "platform/find.h"
#include "tests/support/device.h"

using Names = std::vector<std::wstring>;

class Searching : public DeviceTest {
 protected:
    static Names Found(const std::wstring& pattern) {
        Names names;
        platform::FindData entry;
        const platform::Handle search = platform::FindFirstFileW(pattern.c_str(), &entry);
        if (search == platform::kInvalidHandle) return names;
        do names.push_back(entry.name);
        while (platform::FindNextFileW(search, &entry));
        EXPECT_TRUE(platform::FindClose(search));
        return names;
    }

    // The one entry of a path; attributes ~0 when there is none.
    static platform::FindData Only(const wchar_t* path) {
        platform::FindData entry{~0u, 0, L""};
        platform::FindClose(platform::FindFirstFileW(path, &entry));
        return entry;
    }

    static bool FindsFolder(const wchar_t* path) {
        return Only(path).attributes == platform::kDirectoryAttribute;
    }
    static bool FindsFile(const wchar_t* path) { return Only(path).attributes == 0; }
    static bool FindsNothing(const wchar_t* path) { return Only(path).attributes == ~0u; }
};
