// Making folders, deleting and moving by device path.
#include <cstdio>

#include "tests/platform/file_names_fixture.h"

namespace fs = std::filesystem;
using platform::CreateDirectoryW;
using platform::DeleteFileW;
using platform::MoveFileW;

namespace {

// ---- CreateDirectoryW

TEST_F(FileNames, NewFolder_IsMadeOnce) {
    EXPECT_TRUE(CreateDirectoryW(L"\\Track"));
    EXPECT_TRUE(IsFolder("\\Track"));
    EXPECT_FALSE(CreateDirectoryW(L"\\Track"));
    EXPECT_FALSE(CreateDirectoryW(L"\\TRACK"));
    EXPECT_EQ(Names("\\"), (std::set<std::string>{"App", "Track"}));
}

TEST_F(FileNames, FolderOverAFile_IsRefused) {
    Write("\\Track", "a file");
    EXPECT_FALSE(CreateDirectoryW(L"\\Track"));
    EXPECT_FALSE(CreateDirectoryW(L"\\track"));
    EXPECT_FALSE(CreateDirectoryW(L"\\Track\\Sub"));
    EXPECT_EQ(BytesOf("\\Track"), "a file");
}

TEST_F(FileNames, FolderWithoutParent_IsRefused) {
    EXPECT_FALSE(CreateDirectoryW(L"\\No\\Track"));
    EXPECT_FALSE(Exists("\\No"));
}

TEST_F(FileNames, EmptyNullAndRoot_AreNoNewFolders) {
    EXPECT_FALSE(CreateDirectoryW(L""));
    EXPECT_FALSE(CreateDirectoryW(nullptr));
    EXPECT_FALSE(CreateDirectoryW(L"\\"));
    EXPECT_FALSE(CreateDirectoryW(L"\\."));
    EXPECT_FALSE(CreateDirectoryW(L"\\.."));
}

TEST_F(FileNames, FolderWithTrailingBackslash_IsMade) {
    EXPECT_TRUE(CreateDirectoryW(L"\\New\\"));
    EXPECT_TRUE(IsFolder("\\New"));
    EXPECT_FALSE(CreateDirectoryW(L"\\New\\"));
}

TEST_F(FileNames, FolderWithImpossibleCharacter_IsRefused) {
    for (const wchar_t* path : {L"\\a?", L"\\a*", L"\\a<", L"\\a>", L"\\a|", L"\\a\"", L"\\a:", L"\\a\x01"})
        EXPECT_FALSE(CreateDirectoryW(path));
    EXPECT_EQ(std::distance(fs::directory_iterator(m_root.Path()), {}), 1);  // the program's folder
}

TEST_F(FileNames, DotsAndBlanksAtTheEndOfAFolder_AreDropped) {
    EXPECT_TRUE(CreateDirectoryW(L"\\one."));
    EXPECT_TRUE(CreateDirectoryW(L"\\two . ."));
    EXPECT_TRUE(IsFolder("\\one"));
    EXPECT_TRUE(IsFolder("\\two"));
    EXPECT_TRUE(CreateDirectoryW(L"\\.hidden"));
    EXPECT_TRUE(IsFolder("\\.hidden"));
    EXPECT_FALSE(CreateDirectoryW(L"\\..."));
}

TEST_F(FileNames, FolderOf260Characters_IsRefused) {
    std::wstring path;
    while (path.size() < 180) {
        path += L"\\" + std::wstring(29, L'a');
        ASSERT_TRUE(CreateDirectoryW(path.c_str()));
    }
    EXPECT_TRUE(CreateDirectoryW((path + L"\\" + std::wstring(59, L'b')).c_str()));   // 240
    EXPECT_FALSE(CreateDirectoryW((path + L"\\" + std::wstring(79, L'c')).c_str()));  // 260
    EXPECT_FALSE(CreateDirectoryW((path + L"\\" + std::wstring(83, L'c')).c_str()));  // 264
}

// ---- DeleteFileW

TEST_F(FileNames, DeletedFile_IsGone) {
    Write("\\Track\\a.gpx", "one");
    EXPECT_TRUE(DeleteFileW(L"\\TRACK\\A.GPX"));
    EXPECT_FALSE(Exists("\\Track\\a.gpx"));
    EXPECT_FALSE(DeleteFileW(L"\\Track\\a.gpx"));
}

TEST_F(FileNames, DeletingWhatIsNoFile_IsRefused) {
    MakeFolder("\\dir");
    Write("\\a.gpx", "one");
    for (const wchar_t* path :
         {L"\\dir", L"\\dir\\", L"\\", L"", L"\\no\\a.gpx", L"\\*.gpx", L"\\a.gp?", L"\\a.gpx\\"})
        EXPECT_FALSE(DeleteFileW(path));
    EXPECT_FALSE(DeleteFileW(nullptr));
    EXPECT_TRUE(IsFolder("\\dir") && Exists("\\a.gpx"));
}

TEST_F(FileNames, DeletingAReadOnlyFile_IsRefused) {
    Write("\\a.gpx", "one");
    MakeReadOnly("\\a.gpx");
    EXPECT_FALSE(DeleteFileW(L"\\a.gpx"));
    EXPECT_TRUE(Exists("\\a.gpx"));
}

// ---- MoveFileW

TEST_P(Moving, File_GetsItsNewName) {
    Write("\\a.dat", "one");
    MakeFolder("\\Track");
    EXPECT_TRUE(MoveFileW(L"\\A.dat", L"\\TRACK\\b.dat"));
    EXPECT_FALSE(Exists("\\a.dat"));
    EXPECT_EQ(BytesOf("\\Track\\b.dat"), "one");
}

TEST_P(Moving, ExistingTarget_IsNeverReplaced) {
    Write("\\a.dat", "one");
    Write("\\b.dat", "two");
    MakeFolder("\\dir");
    for (const wchar_t* to : {L"\\b.dat", L"\\B.DAT", L"\\dir"}) EXPECT_FALSE(MoveFileW(L"\\a.dat", to));
    EXPECT_EQ(BytesOf("\\a.dat"), "one");
    EXPECT_EQ(BytesOf("\\b.dat"), "two");
    EXPECT_TRUE(IsFolder("\\dir"));
}

TEST_P(Moving, Folder_TakesItsContentAlong) {
    Write("\\from\\a.dat", "one");
    MakeFolder("\\empty");
    EXPECT_FALSE(MoveFileW(L"\\from", L"\\empty"));
    EXPECT_TRUE(MoveFileW(L"\\from", L"\\to\\"));
    EXPECT_EQ(BytesOf("\\to\\a.dat"), "one");
    EXPECT_FALSE(Exists("\\from"));
    EXPECT_FALSE(MoveFileW(L"\\to", L"\\to\\inside"));
    EXPECT_TRUE(IsFolder("\\to"));
}

TEST_P(Moving, OntoItself_IsTrue) {
    Write("\\a.dat", "one");
    MakeFolder("\\dir");
    EXPECT_TRUE(MoveFileW(L"\\a.dat", L"\\a.dat"));
    EXPECT_TRUE(MoveFileW(L"\\dir", L"\\dir"));
    EXPECT_EQ(BytesOf("\\a.dat"), "one");
}

TEST_P(Moving, AnotherLetterCase_IsStored) {
    if (RunsUnderWine()) GTEST_SKIP() << "Wine leaves the name as it is, other than Windows";
    Write("\\a.dat", "one");
    MakeFolder("\\dir");
    EXPECT_TRUE(MoveFileW(L"\\a.dat", L"\\A.Dat"));
    EXPECT_TRUE(MoveFileW(L"\\dir", L"\\DIR"));
    EXPECT_EQ(Names("\\"), (std::set<std::string>{"A.Dat", "App", "DIR"}));
    EXPECT_TRUE(IsFolder("\\DIR"));
}

TEST_P(Moving, ReadOnlyFile_CanBeMoved) {
    Write("\\a.dat", "one");
    MakeReadOnly("\\a.dat");
    EXPECT_TRUE(MoveFileW(L"\\a.dat", L"\\b.dat"));
    EXPECT_TRUE(Exists("\\b.dat"));
}

TEST_P(Moving, WhatIsNotPossible_ChangesNothing) {
    Write("\\a.dat", "one");
    for (const wchar_t* to : {L"\\no\\b.dat", L"", L"\\b*", L"\\b?", L"\\b<", L"\\", L"\\b\\", L"\\a.dat\\b"})
        EXPECT_FALSE(MoveFileW(L"\\a.dat", to));
    for (const wchar_t* from : {L"\\no.dat", L"\\no\\a.dat", L"", L"\\", L"\\*.dat", L"\\a.dat\\"})
        EXPECT_FALSE(MoveFileW(from, L"\\b.dat"));
    EXPECT_FALSE(MoveFileW(nullptr, L"\\b.dat"));
    EXPECT_FALSE(MoveFileW(L"\\a.dat", nullptr));
    EXPECT_EQ(BytesOf("\\a.dat"), "one");
    EXPECT_FALSE(Exists("\\b.dat"));
}

TEST_P(Moving, HardLinkOfTheSameFile_IsAnotherEntry) {
    Write("\\a.dat", "one");
    fs::create_hard_link(OnDisk("\\a.dat"), OnDisk("\\b.dat"));
    EXPECT_FALSE(MoveFileW(L"\\a.dat", L"\\b.dat"));
    EXPECT_TRUE(Exists("\\a.dat") && Exists("\\b.dat"));
}

INSTANTIATE_TEST_SUITE_P(Ways, Moving, ::testing::ValuesIn(WaysOfMoving()),
                         [](const auto& way) { return std::string(way.param.name); });

}  // namespace
