// A file that may be written in a folder that may not, and one that is saved at the same time.
#include <gtest/gtest.h>

#include "tests/platform/exchange_file_fixture.h"
#include "tests/platform/file_names_fixture.h"
#include "tests/support/machine.h"
#include "tests/support/meanwhile.h"
#include "tests/support/posix/ordinary_user.h"

TEST_F(ExchangeFile, ClosedFolder_LeavesEvenAWritableFileAsItIs) {
    Write("\\Track\\a.gpx", "old");
    std::filesystem::permissions(m_root.Path(), std::filesystem::perms(0755));
    std::filesystem::permissions(OnDisk("\\Track"), std::filesystem::perms(0555));
    std::filesystem::permissions(OnDisk("\\Track\\a.gpx"), std::filesystem::perms(0666));
    {
        const AsOrdinaryUser user;
        EXPECT_FALSE(Exchange(Read(), "new"));
        EXPECT_EQ(BytesOf("\\Track\\a.gpx"), "old");
        EXPECT_TRUE(platform::ReplaceFileContent(L"\\Track\\a.gpx", "direct"));
    }
    EXPECT_EQ(BytesOf("\\Track\\a.gpx"), "direct");
    std::filesystem::permissions(OnDisk("\\Track"), std::filesystem::perms(0755));
}

// So long a content that the other comes while it is written.
TEST_F(ExchangeFile, FileSavedWhileItIsExchanged_StaysAsItWasSaved) {
    if (!FilesCanChangePlaces()) GTEST_SKIP() << "files cannot change places here";
    Write("\\Track\\a.gpx", "old");
    const platform::FileState read = Read();
    WithOther(
        OnDisk("\\Track"), [&] { Exchange(read, std::string(8'000'000, 'x')); },
        [] { EXPECT_TRUE(platform::ReplaceFileContent(L"\\Track\\a.gpx", "saved")); });
    EXPECT_TRUE(BytesOf("\\Track\\a.gpx") == "saved") << "the content exchanged for is there";
    EXPECT_EQ(FilesIn("\\Track"), 1u);
}

// There the look before the exchange is all there is.
TEST_F(ExchangeFile, FileSystemWhereFilesCannotChangePlaces_DoesItByRenaming) {
    for (const WayOfMoving& way : WaysOfMoving()) {
        Write("\\Track\\a.gpx", "old");
        const platform::FileState read = Read();
        way.take();
        EXPECT_TRUE(Exchange(read, "new")) << way.name;
        EXPECT_FALSE(Exchange(read, "newer")) << way.name;
        EXPECT_EQ(BytesOf("\\Track\\a.gpx"), "new") << way.name;
        EXPECT_EQ(FilesIn("\\Track"), 1u) << way.name;
    }
    WaysOfMoving().front().take();
}
