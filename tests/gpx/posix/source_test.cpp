// A file that cannot be exchanged, as its folder is closed, or as somebody is faster.
#include "platform/file.h"
#include "tests/gpx/source_fixture.h"
#include "tests/support/posix/ordinary_user.h"

TEST_F(GpxLineEnds, FolderWhereNothingCanBeMade_LeavesTheFileAsItIs) {
    Write("\\Track\\a.gpx", "a\n");
    std::filesystem::permissions(m_root.Path(), std::filesystem::perms(0755));
    std::filesystem::permissions(OnDisk("\\Track\\a.gpx"), std::filesystem::perms(0666));
    std::filesystem::permissions(OnDisk("\\Track"), std::filesystem::perms(0555));
    {
        const AsOrdinaryUser user;
        EXPECT_EQ(Parsed(), "a\n");
    }
    std::filesystem::permissions(OnDisk("\\Track"), std::filesystem::perms(0755));
    EXPECT_EQ(BytesOf("\\Track\\a.gpx"), "a\n");
}

TEST_F(GpxLineEndsOfALongFile, SavedMeanwhile_AreThoseOfTheSavedFile) {
    ParseWhile([] { EXPECT_TRUE(platform::ReplaceFileContent(L"\\Track\\a.gpx", "saved\n")); });
    EXPECT_TRUE(BytesOf("\\Track\\a.gpx") == "saved\n") << "the old text is back";
}
