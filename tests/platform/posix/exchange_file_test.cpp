// A file that may be written in a folder that may not.
#include <gtest/gtest.h>

#include "tests/platform/exchange_file_fixture.h"
#include "tests/support/posix/ordinary_user.h"

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
