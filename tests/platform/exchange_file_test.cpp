// A file's content exchanged in one step or not at all; what else is done to a file's content: file_test.cpp.
#include <gtest/gtest.h>

#include "tests/platform/exchange_file_fixture.h"
#include "tests/support/machine.h"
#include "tests/support/meanwhile.h"

namespace fs = std::filesystem;

TEST_F(ExchangeFile, FileThatIsThere_GetsTheContentAndKeepsItsRights) {
    Write("\\Track\\a.gpx", "old");
    fs::permissions(OnDisk("\\Track\\a.gpx"), fs::perms(0604));
    const auto rights = fs::status(OnDisk("\\Track\\a.gpx")).permissions();
    EXPECT_TRUE(Exchange(Read(), "new content"));
    EXPECT_EQ(BytesOf("\\Track\\a.gpx"), "new content");
    EXPECT_EQ(fs::status(OnDisk("\\Track\\a.gpx")).permissions(), rights);
    EXPECT_EQ(FilesIn("\\Track"), 1u);
}

// A repair says nothing new: lists that are in order of time stay as they are.
TEST_F(ExchangeFile, FileThatIsThere_KeepsItsWriteTime) {
    Write("\\Track\\a.gpx", "old");
    const auto written = fs::last_write_time(OnDisk("\\Track\\a.gpx")) - std::chrono::hours(1000);
    fs::last_write_time(OnDisk("\\Track\\a.gpx"), written);
    EXPECT_TRUE(Exchange(Read(), "new content"));
    EXPECT_EQ(fs::last_write_time(OnDisk("\\Track\\a.gpx")), written);
}

// One that is open keeps what it had: the content was not written over it.
TEST_F(ExchangeFile, FileThatIsThere_IsNeverWrittenOver) {
    Write("\\Track\\a.gpx", "old");
    fs::create_hard_link(OnDisk("\\Track\\a.gpx"), OnDisk("\\Track\\link"));
    EXPECT_TRUE(Exchange(Read(), "new"));
    EXPECT_EQ(BytesOf("\\Track\\link"), "old");
}

TEST_F(ExchangeFile, ReadOnlyFile_StaysAsItIs) {
    Write("\\Track\\a.gpx", "old");
    MakeReadOnly("\\Track\\a.gpx");
    EXPECT_FALSE(Exchange(Read(), "new"));
    EXPECT_EQ(BytesOf("\\Track\\a.gpx"), "old");
    EXPECT_EQ(FilesIn("\\Track"), 1u);
}

TEST_F(ExchangeFile, MissingFile_IsNotMade) {
    Write("\\Track\\a.gpx", "old");
    const platform::FileState read = Read();
    fs::remove(OnDisk("\\Track\\a.gpx"));
    for (const auto& state : {read, platform::FileState{}}) EXPECT_FALSE(Exchange(state, "new"));
    EXPECT_EQ(FilesIn("\\Track"), 0u);
}

TEST_F(ExchangeFile, FileSavedSinceItWasRead_StaysAsItIs) {
    Write("\\Track\\a.gpx", "old");
    const platform::FileState read = Read();
    ASSERT_TRUE(platform::ReplaceFileContent(L"\\Track\\a.gpx", "saved"));
    const auto written = fs::last_write_time(OnDisk("\\Track\\a.gpx"));
    EXPECT_FALSE(Exchange(read, "new"));
    EXPECT_EQ(BytesOf("\\Track\\a.gpx"), "saved");
    EXPECT_EQ(fs::last_write_time(OnDisk("\\Track\\a.gpx")), written);
    EXPECT_EQ(FilesIn("\\Track"), 1u);
}

TEST_F(ExchangeFile, FileThatHasGrownSinceItWasRead_StaysAsItIs) {
    Write("\\Track\\a.gpx", "old");
    const auto written = fs::last_write_time(OnDisk("\\Track\\a.gpx"));
    const platform::FileState read = Read();
    fs::resize_file(OnDisk("\\Track\\a.gpx"), 4);
    fs::last_write_time(OnDisk("\\Track\\a.gpx"), written);
    EXPECT_FALSE(Exchange(read, "new"));
    EXPECT_EQ(fs::file_size(OnDisk("\\Track\\a.gpx")), 4u);
}

TEST_F(ExchangeFile, FileWrittenSinceItWasRead_StaysAsItIs) {
    Write("\\Track\\a.gpx", "old");
    const platform::FileState read = Read();
    const auto written = fs::last_write_time(OnDisk("\\Track\\a.gpx"));
    fs::last_write_time(OnDisk("\\Track\\a.gpx"), written + std::chrono::microseconds(1));
    EXPECT_FALSE(Exchange(read, "new"));
    EXPECT_EQ(BytesOf("\\Track\\a.gpx"), "old");
}

// Of the same size, and written at the same time.
TEST_F(ExchangeFile, AnotherFileInItsPlace_StaysAsItIs) {
    Write("\\Track\\a.gpx", "old");
    Write("\\Other\\b.gpx", "two");
    fs::last_write_time(OnDisk("\\Other\\b.gpx"), fs::last_write_time(OnDisk("\\Track\\a.gpx")));
    const platform::FileState read = Read();
    fs::rename(OnDisk("\\Track\\a.gpx"), OnDisk("\\Other\\a.gpx"));
    fs::rename(OnDisk("\\Other\\b.gpx"), OnDisk("\\Track\\a.gpx"));
    EXPECT_FALSE(Exchange(read, "new"));
    EXPECT_EQ(BytesOf("\\Track\\a.gpx"), "two");
}

// So long a content that the other comes while it is written.
TEST_F(ExchangeFile, FileDeletedWhileItIsExchanged_StaysAway) {
    if (!FilesCanChangePlaces()) GTEST_SKIP() << "files cannot change places here";
    Write("\\Track\\a.gpx", "old");
    const platform::FileState read = Read();
    WithOther(
        OnDisk("\\Track"), [&] { Exchange(read, std::string(8'000'000, 'x')); },
        [] { EXPECT_TRUE(platform::DeleteFileW(L"\\Track\\a.gpx")); });
    EXPECT_EQ(FilesIn("\\Track"), 0u);
}

TEST_F(ExchangeFile, StreamThatIsNone_HasNoState) { EXPECT_FALSE(platform::StateOf(nullptr)); }
