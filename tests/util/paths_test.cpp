// Folders, full paths, extensions and file names, on a device tree of the test's own.
#include "util/paths.h"

#include <algorithm>
#include <filesystem>
#include <vector>

#include <gtest/gtest.h>

#include "platform/device.h"
#include "tests/support/device.h"
#include "tests/support/machine.h"

namespace fs = std::filesystem;

namespace {

std::string Cut(const std::string& src, int maxBytes, bool makeFileName = false) {
    std::string dst = "earlier content";
    GetString_1(src, dst, maxBytes, makeFileName);
    return dst;
}

// What FileAbsolutPath leaves in a buffer filled with '#', up to the terminator, or all of it.
std::string FullPath(const char* name, int size, bool onCard) {
    std::vector<char> dst(600, '#');
    FileAbsolutPath(dst.data(), name, size, onCard);
    const std::string all(dst.begin(), dst.end());
    return all.substr(0, all.find('\0'));
}
const std::string kUntouched(600, '#');

std::wstring Suffix(const std::wstring& path) {
    std::wstring suffix = L"untouched";
    return GetFileSuffixName(path, suffix) ? suffix : suffix + L" and false";
}

}  // namespace

class ProgramFolder : public DeviceTest {};

TEST_F(ProgramFolder, WhenSet_IsWhatWasSet) {
    SetProgramFolder(L"\\Programs\\Track");
    EXPECT_EQ(GetInitGlobalPath(), L"\\Programs\\Track");
}

TEST_F(ProgramFolder, ByDefault_IsTheExecutablesFolder) {
    SetProgramFolder(L"");
    SetDeviceRoot("");
    std::wstring expected = ExecutableOnDisk().parent_path().wstring();
    std::replace(expected.begin(), expected.end(), L'/', L'\\');
    EXPECT_EQ(GetInitGlobalPath(), expected);
}

class FullPathTest : public DeviceTest {};

TEST_F(FullPathTest, OnTheCard_IsBelowTheCardsRoot) {
    EXPECT_EQ(FullPath("Log.dat", 260, true), "\\SDMMC\\Log.dat");
}

TEST_F(FullPathTest, NotOnTheCard_IsBelowTheProgramsFolder) {
    EXPECT_EQ(FullPath("Log.dat", 260, false), "\\App\\Log.dat");
}

TEST_F(FullPathTest, CardElsewhere_IsUsed) {
    SetStorageCardRoot(L"\\Storage Card");
    EXPECT_EQ(FullPath("Log.dat", 260, true), "\\Storage Card\\Log.dat");
}

TEST_F(FullPathTest, EmptyName_IsFolderAndBackslash) { EXPECT_EQ(FullPath("", 260, true), "\\SDMMC\\"); }

TEST_F(FullPathTest, NameThatLeavesNoRoom_LeavesTheBufferAlone) {
    for (const int size : {8, 7, 1, 0}) EXPECT_EQ(FullPath("Log.dat", size, true), kUntouched) << size;
}

TEST_F(FullPathTest, NameThatJustFits_GetsItsFolder) {
    EXPECT_EQ(FullPath("Log.dat", 9, true), "\\SDMMC\\Log.dat");
}

TEST_F(FullPathTest, FolderLongerThanTheSize_IsCutToIt) {
    SetProgramFolder(L"\\ABCDEFGHIJKL");
    EXPECT_EQ(FullPath("Log.dat", 9, false), "\\ABCDEFGH\\Log.dat");
}

TEST_F(FullPathTest, FolderOfChinese_IsInTheAnsiCodePage) {
    SetProgramFolder(L"\\\u4E2D");
    EXPECT_EQ(FullPath("Log.dat", 260, false), "\\\xD6\xD0\\Log.dat");
}

TEST_F(FullPathTest, LongFolder_IsTakenWhole) {
    SetProgramFolder(L"\\" + std::wstring(240, L'f'));
    EXPECT_EQ(FullPath("Log.dat", 260, false), "\\" + std::string(240, 'f') + "\\Log.dat");
}

// Each call keeps its scratch memory for good, on purpose: a leak checker that runs with the tests must not
// call that a leak.
TEST_F(FullPathTest, ManyCalls_AreNoLeakToTheChecker) {
    for (int i = 0; i < 100; ++i) EXPECT_EQ(FullPath("Log.dat", 260, true), "\\SDMMC\\Log.dat");
}

class FolderLookup : public DeviceTest {
 protected:
    // A folder of one name below another, the path as long as asked for.
    std::wstring FolderOfLength(std::size_t length) const {
        const std::size_t second = length - 202;
        fs::create_directories(m_root.Path() / std::string(200, 'a') / std::string(second, 'b'));
        return L"\\" + std::wstring(200, L'a') + L"\\" + std::wstring(second, L'b');
    }
};

TEST_F(FolderLookup, Folder_IsThere) { EXPECT_TRUE(CheckDirectoryExist(L"\\App")); }

TEST_F(FolderLookup, FolderInAFolder_IsThere) {
    fs::create_directories(m_root.Path() / "Track" / "Auto Save");
    EXPECT_TRUE(CheckDirectoryExist(L"\\Track\\Auto Save"));
}

TEST_F(FolderLookup, File_IsNoFolder) {
    Write("\\Track\\a.gpx", "x");
    EXPECT_FALSE(CheckDirectoryExist(L"\\Track\\a.gpx"));
}

TEST_F(FolderLookup, Missing_IsNot) {
    EXPECT_FALSE(CheckDirectoryExist(L"\\Nothing"));
    EXPECT_FALSE(CheckDirectoryExist(L"\\Nothing\\Below"));
    EXPECT_FALSE(CheckDirectoryExist(L""));
}

TEST_F(FolderLookup, LetterCase_DoesNotMatter) {
    fs::create_directories(m_root.Path() / "Track" / "Auto");
    EXPECT_TRUE(CheckDirectoryExist(L"\\tRACK\\AUTO"));
}

TEST_F(FolderLookup, NameBeyondAscii_IsUtf8OnDisk) {
    fs::create_directory(OnDisk("\\\xE4\xB8\xAD\xE5\x9B\xBD"));
    EXPECT_TRUE(CheckDirectoryExist(L"\\\u4E2D\u56FD"));
}

TEST_F(FolderLookup, RootAndTrailingBackslash_AreNot) {
    EXPECT_FALSE(CheckDirectoryExist(L"\\"));
    EXPECT_FALSE(CheckDirectoryExist(L"\\App\\"));
}

TEST_F(FolderLookup, Wildcard_FindsTheFirstMatch) {
    fs::create_directory(m_root.Path() / "Track");
    EXPECT_TRUE(CheckDirectoryExist(L"\\Tra*"));
    EXPECT_FALSE(CheckDirectoryExist(L"\\Trx*"));
}

TEST_F(FolderLookup, PathOf259Characters_IsLookedFor) { EXPECT_TRUE(CheckDirectoryExist(FolderOfLength(259))); }

TEST_F(FolderLookup, PathOf260Characters_IsNeverThere) {
    EXPECT_FALSE(CheckDirectoryExist(FolderOfLength(260)));
    EXPECT_FALSE(CheckDirectoryExist(FolderOfLength(261)));
    EXPECT_FALSE(CheckDirectoryExist(std::wstring(100000, L'x')));
}

TEST_F(FolderLookup, ManyLookups_LeaveNothingOpen) {
    const auto before = OpenHandles();
    for (int i = 0; i < 200; ++i) {
        CheckDirectoryExist(L"\\App");
        CheckDirectoryExist(L"\\Nothing");
        CheckDirectoryExist(L"\\*");
    }
    EXPECT_EQ(OpenHandles(), before);
}

class FolderMaking : public DeviceTest {
 protected:
    bool IsFolder(const std::string& path) const { return fs::is_directory(OnDisk(path)); }
};

TEST_F(FolderMaking, NewFolder_IsMade) {
    EXPECT_TRUE(CreateDir("\\Track"));
    EXPECT_TRUE(IsFolder("\\Track"));
}

TEST_F(FolderMaking, ExistingFolder_IsTrueAndKeepsItsContent) {
    Write("\\Track\\a.gpx", "x");
    EXPECT_TRUE(CreateDir("\\Track"));
    EXPECT_TRUE(CreateDir("\\TRACK"));
    EXPECT_EQ(BytesOf("\\Track\\a.gpx"), "x");
    const auto folders = fs::directory_iterator(m_root.Path());
    EXPECT_EQ(std::distance(begin(folders), end(folders)), 2) << "no second folder in other letters";
}

TEST_F(FolderMaking, OnlyTheLastLevel_IsMade) {
    EXPECT_FALSE(CreateDir("\\Track\\Auto"));
    EXPECT_FALSE(Exists("\\Track"));
    EXPECT_TRUE(CreateDir("\\Track"));
    EXPECT_TRUE(CreateDir("\\Track\\Auto"));
    EXPECT_TRUE(IsFolder("\\Track\\Auto"));
}

TEST_F(FolderMaking, PlainFileOfThatName_IsFalse) {
    Write("\\Track", "a file");
    EXPECT_FALSE(CreateDir("\\Track"));
    EXPECT_FALSE(CreateDir("\\Track\\Auto"));
    EXPECT_EQ(BytesOf("\\Track"), "a file");
}

TEST_F(FolderMaking, EmptyPathOrRoot_IsFalse) {
    EXPECT_FALSE(CreateDir(""));
    EXPECT_FALSE(CreateDir("\\"));
}

// The folder is made, but a search does not find it by that path, and it cannot be made twice.
TEST_F(FolderMaking, TrailingBackslash_IsTrueOnlyOnce) {
    EXPECT_TRUE(CreateDir("\\New\\"));
    EXPECT_TRUE(IsFolder("\\New"));
    EXPECT_FALSE(CreateDir("\\New\\"));
}

TEST_F(FolderMaking, DoubleByteName_IsOneFolderUtf8OnDisk) {
    EXPECT_TRUE(CreateDir("\\\xD6\xD0"));
    EXPECT_TRUE(IsFolder("\\\xE4\xB8\xAD"));
}

TEST_F(FolderMaking, BackslashAsSecondByte_DoesNotDivideThePath) {
    EXPECT_TRUE(
        CreateDir("\\\x81\x5C"
                  "x"));
    EXPECT_TRUE(IsFolder("\\\xE4\xB9\x97x"));
}

TEST_F(FolderMaking, InvalidCharacter_IsFalse) {
    for (const char* path : {"\\a?b", "\\a<b", "\\a>b", "\\a|b", "\\a\"b"})
        EXPECT_FALSE(CreateDir(path)) << path;
}

TEST_F(FolderMaking, PathTooLong_IsFalseAndMakesNothing) {
    const std::string parent = "\\" + std::string(100, 'p');
    ASSERT_TRUE(CreateDir(parent.c_str()));
    EXPECT_TRUE(CreateDir((parent + "\\" + std::string(138, 'c')).c_str())) << "240 characters";
    for (const std::size_t length : {264u, 300u, 5000u})
        EXPECT_FALSE(CreateDir((parent + "\\" + std::string(length - 102, 'd')).c_str())) << length;
    EXPECT_EQ(std::distance(fs::directory_iterator(OnDisk(parent)), fs::directory_iterator()), 1);
}

TEST(FileSuffix, TextBehindTheLastDot_IsTheSuffix) {
    EXPECT_EQ(Suffix(L"\\Track\\a.b.gpx"), L"gpx");
    EXPECT_EQ(Suffix(L"a.GpX"), L"GpX");
    EXPECT_EQ(Suffix(L".gpx"), L"gpx");
}

TEST(FileSuffix, NoDot_IsFalseAndLeavesTheSuffix) {
    EXPECT_EQ(Suffix(L"\\Track\\abc"), L"untouched and false");
    EXPECT_EQ(Suffix(L""), L"untouched and false");
}

TEST(FileSuffix, DotAtTheEnd_IsAnEmptySuffix) { EXPECT_EQ(Suffix(L"\\Track\\a."), L""); }

TEST(FileSuffix, DotInAFolderName_CountsToo) { EXPECT_EQ(Suffix(L"\\Track.old\\abc"), L"old\\abc"); }

TEST(CutString, ShortText_IsCopied) {
    EXPECT_EQ(Cut("abc", 10), "abc");
    EXPECT_EQ(Cut("abc", 3), "abc");
    EXPECT_EQ(Cut("", 10), "");
}

TEST(CutString, LongText_IsCut) { EXPECT_EQ(Cut("abcdef", 3), "abc"); }

TEST(CutString, NoBytesAllowed_IsEmpty) {
    EXPECT_EQ(Cut("abc", 0), "");
    EXPECT_EQ(Cut("abc", -1), "");
}

TEST(CutString, DoubleByteCharacter_IsNeverSplit) {
    EXPECT_EQ(Cut("AB\xD6\xD0", 3), "AB");
    EXPECT_EQ(Cut("AB\xD6\xD0", 4), "AB\xD6\xD0");
    EXPECT_EQ(Cut("\xD6\xD0", 1), "");
    EXPECT_EQ(Cut("\xD6\xD0\xB9\xFA", 3), "\xD6\xD0");
}

TEST(CutString, AnyByteAbove7F_BeginsAPair) {
    EXPECT_EQ(Cut("\x7F\x7F", 1), "\x7F");
    EXPECT_EQ(Cut("\x80x", 1), "");
    EXPECT_EQ(Cut("\x80x", 2), "\x80x");
    EXPECT_EQ(Cut("\xFFxy", 2), "\xFFx");
}

TEST(CutString, SecondByteBelow80_BelongsToThePair) { EXPECT_EQ(Cut("\x81\x40z", 2), "\x81\x40"); }

TEST(CutString, LoneLeadByteAtTheEnd_CountsTwo) {
    EXPECT_EQ(Cut("A\xD6", 2), "A");
    EXPECT_EQ(Cut("A\xD6", 3), "A\xD6");
}

TEST(CutString, ZeroInside_EndsTheText) { EXPECT_EQ(Cut(std::string("ab\0cd", 5), 10), "ab"); }

TEST(CutString, LongestText_IsCutNotLost) {
    EXPECT_EQ(Cut(std::string(1000, 'x'), 259), std::string(259, 'x'));
}

TEST(CutString, FileName_HasUnderscoresForInvalidCharacters) {
    EXPECT_EQ(Cut("a:b?c", 10, true), "a_b_c");
    EXPECT_EQ(Cut("\\/:*?\"<>|", 20, true), "_________");
    EXPECT_EQ(Cut("a.b c;d'e", 20, true), "a.b c;d'e");
}

TEST(CutString, FileNameOfDoubleBytes_Stays) { EXPECT_EQ(Cut("\xD6\xD0?", 10, true), "\xD6\xD0_"); }

TEST(CutString, FileName_IsCutBeforeItIsMended) { EXPECT_EQ(Cut("ab?cd", 3, true), "ab_"); }

TEST(CutString, NoFileName_KeepsInvalidCharacters) { EXPECT_EQ(Cut("a:b?c", 10, false), "a:b?c"); }

TEST(InvalidCharacters, AreTheNineOfAFileName) {
    EXPECT_STREQ(paths::kInvalidFileNameCharacters, "\\/:*?\"<>|");
}
