// Searching folders.
#include <cstring>

#include "tests/platform/search_fixture.h"
#include "tests/support/machine.h"

namespace fs = std::filesystem;
using namespace platform;

namespace {

TEST_F(Searching, Path_FindsTheEntryItself) {
    Write("\\Track\\a.gpx", "");
    EXPECT_TRUE(FindsFolder(L"\\Track"));
    EXPECT_TRUE(FindsFolder(L"\\tRACK"));
    EXPECT_STREQ(Only(L"\\TRACK").name, L"Track");
    EXPECT_TRUE(FindsFile(L"\\Track\\a.gpx"));
    EXPECT_STREQ(Only(L"\\track\\A.GPX").name, L"a.gpx");
    EXPECT_EQ(Found(L"\\Track"), Names{L"Track"});
}

TEST_F(Searching, WhatIsNotThere_IsNotFound) {
    Write("\\a.gpx", "");
    for (const wchar_t* path : {L"\\no", L"\\no\\a.gpx", L"\\a.gpx\\b", L"\\a.gpx\\*", L"\\no\\*", L""})
        EXPECT_TRUE(FindsNothing(path));
    EXPECT_TRUE(FindsNothing(nullptr));
}

TEST_F(Searching, Failure_LeavesTheRecordUntouched) {
    FindData entry, before;
    std::memset(&entry, 0x5A, sizeof entry);
    before = entry;
    EXPECT_EQ(FindFirstFileW(L"\\no", &entry), kInvalidHandle);
    EXPECT_EQ(FindFirstFileW(L"\\*.no", &entry), kInvalidHandle);
    EXPECT_EQ(std::memcmp(&entry, &before, sizeof entry), 0);
}

TEST_F(Searching, EndOfTheSearch_LeavesTheRecordUntouched) {
    Write("\\a.gpx", "");
    FindData entry{};
    const Handle search = FindFirstFileW(L"\\*.gpx", &entry);
    ASSERT_NE(search, kInvalidHandle);
    const FindData last = entry;
    EXPECT_FALSE(FindNextFileW(search, &entry));
    EXPECT_FALSE(FindNextFileW(search, &entry));
    EXPECT_EQ(std::memcmp(&entry, &last, sizeof entry), 0);
    EXPECT_TRUE(FindClose(search));
}

TEST_F(Searching, TrailingSeparatorAndRoot_AreRefused) {
    Write("\\Track\\a.gpx", "");
    for (const wchar_t* path :
         {L"\\Track\\", L"\\Track\\a.gpx\\", L"\\", L"/", L"\\.", L"\\..", L"\\Track\\..", L"\\..\\.."})
        EXPECT_TRUE(FindsNothing(path));
}

TEST_F(Searching, DotNames_AreFollowed) {
    Write("\\Track\\a.gpx", "");
    EXPECT_STREQ(Only(L"\\Track\\.").name, L"Track");
    EXPECT_STREQ(Only(L"\\Track. \\.").name, L"Track");
    EXPECT_STREQ(Only(L"\\Track\\.\\a.gpx").name, L"a.gpx");
    EXPECT_STREQ(Only(L"\\App\\..\\Track").name, L"Track");
}

TEST_F(Searching, DoubledSeparators_CountAsOne) {
    Write("\\qt\\Track\\a.gpx", "");
    EXPECT_TRUE(FindsFolder(L"\\qt\\\\Track"));
    EXPECT_EQ(Found(L"\\qt\\Track\\\\*.gpx"), Names{L"a.gpx"});
    EXPECT_EQ(Found(L"/qt/Track/*.gpx"), Names{L"a.gpx"});
}

TEST_F(Searching, TwoSeparatorsInFront_NameANetworkAndFindNothing) {
    Write("\\a.gpx", "");
    EXPECT_EQ(Found(L"\\*.gpx"), Names{L"a.gpx"});
    EXPECT_TRUE(FindsNothing(L"\\\\*.gpx"));
    EXPECT_TRUE(FindsNothing(L"\\\\a.gpx"));
    EXPECT_TRUE(FindsNothing(L"\\\\App"));
}

TEST_F(Searching, DotsAndBlanksAtTheEnd_AreIgnored) {
    Write("\\Track\\a.gpx", "");
    EXPECT_TRUE(FindsFile(L"\\Track\\a.gpx. ."));
    EXPECT_TRUE(FindsFolder(L"\\Track. "));
}

TEST_F(Searching, Wildcard_MayFindAFolderForAnyCaller) {
    Write("\\Track\\a.gpx", "");
    EXPECT_TRUE(FindsFolder(L"\\Tra*"));
    EXPECT_TRUE(FindsFolder(L"\\tr?ck"));
    EXPECT_TRUE(FindsNothing(L"\\tr?k"));
}

TEST_F(Searching, WildcardInAnEarlierName_IsRefused) {
    Write("\\Track\\a.gpx", "");
    EXPECT_TRUE(FindsNothing(L"\\Tra*\\a.gpx"));
    EXPECT_TRUE(FindsNothing(L"\\Tr?ck\\*.gpx"));
}

TEST_F(Searching, Extension_MatchesLongNamesInAnyLetterCase) {
    for (const char* name :
         {"a.gpx", "B.GPX", "c.Gpx", "with space.gpx", "h.x.gpx", "\xE4\xB8\xAD\xE6\x96\x87.gpx", ".gpx", "gpx",
          "f.gp", "g.gpx.bak", "d.gpx2", "e.gpxx", "g.gpx~"})
        Write(std::string("\\Track\\") + name, "");
    const Names expected = {L".gpx",    L"a.gpx",          L"B.GPX",           L"c.Gpx",
                            L"h.x.gpx", L"with space.gpx", L"\x4E2D\x6587.gpx"};
    EXPECT_EQ(Found(L"\\Track\\*.gpx"), expected);
    EXPECT_EQ(Found(L"\\Track\\*.GPX"), expected);
}

TEST_F(Searching, FolderNamedLikeAFile_IsFoundAsAFolder) {
    fs::create_directories(OnDisk("\\Track\\x.gpx"));
    EXPECT_TRUE(FindsFolder(L"\\Track\\*.gpx"));
    EXPECT_STREQ(Only(L"\\Track\\*.gpx").name, L"x.gpx");
}

TEST_F(Searching, AllNames_IncludeTheFolderAndItsParentBelowTheRoot) {
    Write("\\Track\\a.gpx", "");
    Write("\\Track\\plain", "");
    const Names all = {L".", L"..", L"a.gpx", L"plain"};
    EXPECT_EQ(Found(L"\\Track\\*"), all);
    EXPECT_EQ(Found(L"\\Track\\*.*"), all);
    EXPECT_EQ(Found(L"\\*"), (Names{L"App", L"Track"}));
    EXPECT_EQ(Found(L"\\Track\\**"), (Names{L"a.gpx", L"plain"}));
    EXPECT_EQ(Found(L"\\Track\\?"), Names{});
}

TEST_F(Searching, Entries_ComeInNameOrder) {
    for (const char* name : {"b.gpx", "A.gpx", "C.gpx", "a1.gpx", "_.gpx", "10.gpx", "9.gpx"})
        Write(std::string("\\Track\\") + name, "");
    EXPECT_EQ(Found(L"\\Track\\*.gpx"),
              (Names{L"10.gpx", L"9.gpx", L"A.gpx", L"a1.gpx", L"b.gpx", L"C.gpx", L"_.gpx"}));
}

TEST_F(Searching, Patterns_MatchAsTheyShould) {
    for (const char* name : {"aab", "ab", "b", "abab", "xaby"}) Write(std::string("\\m\\") + name, "");
    EXPECT_EQ(Found(L"\\m\\*ab"), (Names{L"aab", L"ab", L"abab"}));
    EXPECT_EQ(Found(L"\\m\\a*b"), (Names{L"aab", L"ab", L"abab"}));
    EXPECT_EQ(Found(L"\\m\\*ab*"), (Names{L"aab", L"ab", L"abab", L"xaby"}));
    EXPECT_EQ(Found(L"\\m\\?a*b?"), Names{L"xaby"});
    EXPECT_EQ(Found(L"\\m\\??"), Names{L"ab"});
    EXPECT_EQ(Found(L"\\m\\a*a*b"), (Names{L"aab", L"abab"}));
}

TEST_F(Searching, PatternOfManyStars_EndsQuickly) {
    Write("\\m\\" + std::string(200, 'a'), "");
    std::wstring pattern = L"\\m\\";
    for (int i = 0; i < 60; ++i) pattern += L"a*";
    EXPECT_EQ(Found(pattern + L"b"), Names{});
    EXPECT_EQ(Found(pattern).size(), 1u);
}

TEST_F(Searching, WriteTime_IsUtcWithMilliseconds) {
    Write("\\a.gpx", "");
    constexpr std::int64_t kSeconds = 1000000000;
    SetLastWriteTime(OnDisk("\\a.gpx"), kSeconds, 123456789);
    EXPECT_EQ(Only(L"\\a.gpx").lastWriteTime, 116444736000000000u + kSeconds * 10000000u + 1234567u);
    SYSTEMTIME calendar{};
    const FileTime time = Only(L"\\*.gpx").lastWriteTime;
    ASSERT_TRUE(FileTimeToSystemTime(&time, &calendar));
    EXPECT_EQ(calendar.wYear, 2001);
    EXPECT_EQ(calendar.wSecond, 40);
    EXPECT_EQ(calendar.wMilliseconds, 123);
}

TEST_F(Searching, FileThatVanishesDuringTheSearch_IsSkipped) {
    for (const char* name : {"a.gpx", "b.gpx", "c.gpx"}) Write(std::string("\\Track\\") + name, "");
    FindData entry;
    const Handle search = FindFirstFileW(L"\\Track\\*.gpx", &entry);
    fs::remove(OnDisk("\\Track\\b.gpx"));
    ASSERT_TRUE(FindNextFileW(search, &entry));
    EXPECT_STREQ(entry.name, L"c.gpx");
    EXPECT_TRUE(FindClose(search));
}

TEST_F(Searching, LongestNames_AreFound) {
    const std::string name = std::string(245, 'n') + ".gpx";
    Write("\\t\\" + name, "");
    EXPECT_EQ(Found(L"\\t\\*.gpx"), Names{std::wstring(245, L'n') + L".gpx"});
    EXPECT_TRUE(FindsNothing((L"\\" + std::wstring(259, L'n')).c_str()));
}

TEST_F(Searching, SearchesSideBySide_DoNotMix) {
    Write("\\a\\1.gpx", "");
    Write("\\a\\2.gpx", "");
    Write("\\b\\3.gpx", "");
    FindData entry;
    const Handle first = FindFirstFileW(L"\\a\\*.gpx", &entry), second = FindFirstFileW(L"\\b\\*.gpx", &entry);
    EXPECT_NE(first, second);
    EXPECT_FALSE(FindNextFileW(second, &entry));
    EXPECT_TRUE(FindNextFileW(first, &entry));
    EXPECT_STREQ(entry.name, L"2.gpx");
    EXPECT_TRUE(FindClose(first));
    EXPECT_TRUE(FindClose(second));
}

TEST_F(Searching, HandleThatIsNone_IsHarmless) {
    FindData entry;
    Write("\\a.gpx", "");
    const Handle search = FindFirstFileW(L"\\a.gpx", &entry);
    EXPECT_TRUE(FindClose(search));
    for (Handle none : {search, kInvalidHandle, Handle{0}, Handle{1000000}}) {
        EXPECT_FALSE(FindNextFileW(none, &entry));
        EXPECT_FALSE(FindClose(none));
    }
}

}  // namespace
