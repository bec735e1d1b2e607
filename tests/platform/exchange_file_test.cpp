// A file's content exchanged in one step or not at all; what else is done to a file's content: file_test.cpp.
#include <gtest/gtest.h>

#include "tests/platform/exchange_file_fixture.h"

TEST_F(ExchangeFile, FileThatIsThere_GetsTheContentAndKeepsItsRights) {
    Write("\\Track\\a.gpx", "old");
    std::filesystem::permissions(OnDisk("\\Track\\a.gpx"), std::filesystem::perms(0604));
    const auto rights = std::filesystem::status(OnDisk("\\Track\\a.gpx")).permissions();
    EXPECT_TRUE(platform::ExchangeFileContent(L"\\Track\\a.gpx", "new content"));
    EXPECT_EQ(BytesOf("\\Track\\a.gpx"), "new content");
    EXPECT_EQ(std::filesystem::status(OnDisk("\\Track\\a.gpx")).permissions(), rights);
    EXPECT_EQ(FilesIn("\\Track"), 1u);
}

// A repair says nothing new: lists that are in order of time stay as they are.
TEST_F(ExchangeFile, FileThatIsThere_KeepsItsWriteTime) {
    Write("\\Track\\a.gpx", "old");
    const auto written = std::filesystem::last_write_time(OnDisk("\\Track\\a.gpx")) - std::chrono::hours(1000);
    std::filesystem::last_write_time(OnDisk("\\Track\\a.gpx"), written);
    EXPECT_TRUE(platform::ExchangeFileContent(L"\\Track\\a.gpx", "new content"));
    EXPECT_EQ(std::filesystem::last_write_time(OnDisk("\\Track\\a.gpx")), written);
}

// One that is open keeps what it had: the content was not written over it.
TEST_F(ExchangeFile, FileThatIsThere_IsNeverWrittenOver) {
    Write("\\Track\\a.gpx", "old");
    std::filesystem::create_hard_link(OnDisk("\\Track\\a.gpx"), OnDisk("\\Track\\link"));
    EXPECT_TRUE(platform::ExchangeFileContent(L"\\Track\\a.gpx", "new"));
    EXPECT_EQ(BytesOf("\\Track\\link"), "old");
}

TEST_F(ExchangeFile, ReadOnlyFile_StaysAsItIs) {
    Write("\\Track\\a.gpx", "old");
    MakeReadOnly("\\Track\\a.gpx");
    EXPECT_FALSE(platform::ExchangeFileContent(L"\\Track\\a.gpx", "new"));
    EXPECT_EQ(BytesOf("\\Track\\a.gpx"), "old");
    EXPECT_EQ(FilesIn("\\Track"), 1u);
}
