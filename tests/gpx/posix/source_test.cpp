// A file that cannot be exchanged, as its folder is closed.
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
