// Files that others have open for a moment.
#include "platform/windows/persist.h"

#include <gtest/gtest.h>

#include "tests/platform/file_names_fixture.h"
#include "tests/platform/windows/passing_handle.h"

namespace {

using platform::Persist;

// Fails with that error so many times; how often it was called.
struct Failing {
    DWORD error;
    int times;
    int calls = 0;
    bool operator()() {
        ::SetLastError(error);
        return calls++ >= times;
    }
};

TEST(Persist, WhatPasses_IsWaitedFor) {
    for (const DWORD error :
         {ERROR_SHARING_VIOLATION, ERROR_LOCK_VIOLATION, ERROR_ACCESS_DENIED, ERROR_USER_MAPPED_FILE}) {
        Failing call{error, 3};
        EXPECT_TRUE(Persist([&] { return call(); }));
        EXPECT_EQ(call.calls, 4);
    }
}

TEST(Persist, WhatStays_IsTriedOnce) {
    for (const DWORD error :
         {ERROR_FILE_NOT_FOUND, ERROR_DISK_FULL, ERROR_ALREADY_EXISTS, ERROR_FILE_INVALID}) {
        Failing call{error, 3};
        EXPECT_FALSE(Persist([&] { return call(); }));
        EXPECT_EQ(call.calls, 1);
    }
}

TEST(Persist, WhatDoesNotPassInTime_FailsWithItsError) {
    Failing call{ERROR_SHARING_VIOLATION, 1000};
    EXPECT_FALSE(Persist([&] { return call(); }));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_SHARING_VIOLATION});
    EXPECT_EQ(call.calls, 10);
}

TEST_F(FileNames, FileThatAnotherHasOpenForAMoment_IsMoved) {
    Write("\\a.gpx", "one");
    const PassingHandle other(OnDisk("\\a.gpx"));
    ASSERT_TRUE(other.IsOpen());
    EXPECT_TRUE(platform::MoveFileW(L"\\a.gpx", L"\\b.gpx"));
    EXPECT_EQ(Names("\\"), (std::set<std::string>{"App", "b.gpx"}));
}

TEST_F(FileNames, FileThatAnotherHasOpenForAMoment_IsDeleted) {
    Write("\\a.gpx", "one");
    const PassingHandle other(OnDisk("\\a.gpx"));
    ASSERT_TRUE(other.IsOpen());
    EXPECT_TRUE(platform::DeleteFileW(L"\\a.gpx"));
    EXPECT_EQ(Names("\\"), std::set<std::string>{"App"});
}

TEST_F(FileNames, FileThatAnotherHasOpenForAMoment_IsReplaced) {
    Write("\\a.gpx", "old");
    const PassingHandle other(OnDisk("\\a.gpx"));
    ASSERT_TRUE(other.IsOpen());
    EXPECT_TRUE(platform::ReplaceFileContent(L"\\a.gpx", "new"));
    EXPECT_EQ(BytesOf("\\a.gpx"), "new");
    EXPECT_EQ(Names("\\"), (std::set<std::string>{"App", "a.gpx"}));
}

}  // namespace
