// Device paths on a file system that tells letter case apart, and takes names and links that no device knows.
#include "tests/platform/device_fixture.h"

namespace fs = std::filesystem;

TEST_F(Device, NameWithSeparatorsOnDisk_IsNoWayOut) {
    WriteFile(m_root.Path() / "..\\a.gpx", "one");
    EXPECT_FALSE(Opens(L"\\..\\a.gpx"));
}

TEST_F(Device, OfNamesInSeveralLetterCases_TheExactOneCounts) {
    Write("\\Track\\a.gpx", "small");
    Write("\\Track\\A.GPX", "capital");
    Write("\\TRACK\\b.gpx", "other");
    ASSERT_TRUE(platform::DeleteFileW(L"\\Track\\a.gpx"));
    EXPECT_EQ(BytesOf("\\Track\\A.GPX"), "capital");
    EXPECT_TRUE(Opens(L"\\TRACK\\b.gpx"));
    EXPECT_FALSE(Opens(L"\\Track\\b.gpx"));
}

TEST_F(Device, OfNamesInOtherLetterCases_TheFirstInByteOrderCounts) {
    for (const char* name : {"abc", "abC", "aBc", "aBC", "Abc", "AbC", "ABc"})
        Write(std::string("\\Track\\") + name, "");
    ASSERT_TRUE(platform::DeleteFileW(L"\\Track\\ABC"));
    EXPECT_FALSE(Exists("\\Track\\ABc"));
    ASSERT_TRUE(platform::DeleteFileW(L"\\Track\\ABC"));
    EXPECT_FALSE(Exists("\\Track\\AbC"));
    EXPECT_TRUE(Exists("\\Track\\Abc"));
}

TEST_F(Device, NameOnDiskThatIsNotUtf8_DoesNoHarm) {
    WriteFile(m_root.Path() / "a\xFF.gpx", "one");
    fs::create_directory(m_root.Path() / "\xFE\xFE");
    Write("\\B.gpx", "two");
    EXPECT_TRUE(Opens(L"\\b.gpx"));
    EXPECT_FALSE(Opens(L"\\a\xFFFD.gpx"));
    EXPECT_TRUE(Makes(L"\\a\xFFFD.gpx"));
    EXPECT_EQ(ReadFile(m_root.Path() / "a\xFF.gpx"), "one");
}

TEST_F(Device, LinkedFolder_LeadsWhereItWasLinked) {
    const TemporaryFolder elsewhere;
    fs::create_directory_symlink(elsewhere.Path(), m_root.Path() / "SDMMC");
    EXPECT_TRUE(Makes(L"\\sdmmc\\a.gpx"));
    EXPECT_TRUE(fs::exists(elsewhere.Path() / "a.gpx"));
    EXPECT_TRUE(Makes(L"\\SDMMC\\..\\b.gpx"));
    EXPECT_TRUE(Exists("\\b.gpx"));
}
