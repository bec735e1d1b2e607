// A file's content exchanged in one step or not at all; what else is done to a file's content: file_test.cpp.
#include <gtest/gtest.h>

#include "platform/file.h"
#include "tests/support/device.h"
#include "tests/support/ordinary_user.h"

class ExchangeFile : public DeviceTest {
 protected:
    std::size_t FilesIn(const std::string& folder) const {
        const auto entries = std::filesystem::directory_iterator(OnDisk(folder));
        return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
    }
};

TEST_F(ExchangeFile, FileThatIsThere_GetsTheContentAndKeepsItsRights) {
    Write("\\Track\\a.gpx", "old");
    std::filesystem::permissions(OnDisk("\\Track\\a.gpx"), std::filesystem::perms(0604));
    EXPECT_TRUE(platform::ExchangeFileContent(L"\\Track\\a.gpx", "new content"));
    EXPECT_EQ(BytesOf("\\Track\\a.gpx"), "new content");
    EXPECT_EQ(std::filesystem::status(OnDisk("\\Track\\a.gpx")).permissions(), std::filesystem::perms(0604));
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
    std::filesystem::permissions(OnDisk("\\Track\\a.gpx"), std::filesystem::perms(0444));
    EXPECT_FALSE(platform::ExchangeFileContent(L"\\Track\\a.gpx", "new"));
    EXPECT_EQ(BytesOf("\\Track\\a.gpx"), "old");
    EXPECT_EQ(FilesIn("\\Track"), 1u);
}

TEST_F(ExchangeFile, ClosedFolder_LeavesEvenAWritableFileAsItIs) {
    Write("\\Track\\a.gpx", "old");
    std::filesystem::permissions(m_root.Path(), std::filesystem::perms(0755));
    std::filesystem::permissions(OnDisk("\\Track"), std::filesystem::perms(0555));
    std::filesystem::permissions(OnDisk("\\Track\\a.gpx"), std::filesystem::perms(0666));
    {
        const AsOrdinaryUser user;
        EXPECT_FALSE(platform::ExchangeFileContent(L"\\Track\\a.gpx", "new"));
        EXPECT_EQ(BytesOf("\\Track\\a.gpx"), "old");
        EXPECT_TRUE(platform::ReplaceFileContent(L"\\Track\\a.gpx", "direct"));
    }
    EXPECT_EQ(BytesOf("\\Track\\a.gpx"), "direct");
    std::filesystem::permissions(OnDisk("\\Track"), std::filesystem::perms(0755));
}
