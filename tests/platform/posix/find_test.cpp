// Searches in folders that hold what no device's folder can: names that differ in letter case alone, names that
// are none, links and pipes.
#include <sys/stat.h>

#include "tests/platform/search_fixture.h"

namespace fs = std::filesystem;

TEST_F(Searching, NamesThatDifferInLetterCaseAlone_ComeInExactOrder) {
    for (const char* name : {"a.gpx", "A.gpx", "a.GPX"}) Write(std::string("\\Track\\") + name, "");
    EXPECT_EQ(Found(L"\\Track\\*.gpx"), (Names{L"A.gpx", L"a.GPX", L"a.gpx"}));
}

TEST_F(Searching, Links_CountAsWhatTheyLeadTo) {
    Write("\\Real\\a.gpx", "");
    fs::create_directories(OnDisk("\\Track"));
    fs::create_symlink(OnDisk("\\Real\\a.gpx"), OnDisk("\\Track\\file.gpx"));
    fs::create_directory_symlink(OnDisk("\\Real"), OnDisk("\\Track\\folder.gpx"));
    fs::create_symlink(OnDisk("\\nowhere"), OnDisk("\\Track\\dangling.gpx"));
    EXPECT_EQ(Found(L"\\Track\\*.gpx"), (Names{L"file.gpx", L"folder.gpx"}));
    EXPECT_TRUE(FindsFile(L"\\Track\\file.gpx"));
    EXPECT_TRUE(FindsFolder(L"\\Track\\folder.gpx"));
    EXPECT_TRUE(FindsNothing(L"\\Track\\dangling.gpx"));
}

TEST_F(Searching, DevicesAndPipes_AreNoEntries) {
    fs::create_directories(OnDisk("\\Track"));
    ASSERT_EQ(mkfifo(OnDisk("\\Track\\pipe.gpx").c_str(), 0600), 0);
    EXPECT_TRUE(FindsNothing(L"\\Track\\*.gpx"));
    EXPECT_TRUE(FindsNothing(L"\\Track\\pipe.gpx"));
}

TEST_F(Searching, NamesThatNoDevicePathReaches_AreSkipped) {
    const fs::path folder = OnDisk("\\Track");
    fs::create_directories(folder);
    for (const char* name : {"a\xFF.gpx", "b\\c.gpx", "d*.gpx", "e?.gpx", "\xED\xA0\x80.gpx", "good.gpx"})
        WriteFile(folder / name, "");
    EXPECT_EQ(Found(L"\\Track\\*.gpx"), Names{L"good.gpx"});
}
