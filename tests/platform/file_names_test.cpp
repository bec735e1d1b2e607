// Making folders, deleting and moving by device path.
#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdio>

#include <gtest/gtest.h>

#include "platform/file.h"
#include "platform/posix/move.h"
#include "tests/support/device.h"

namespace fs = std::filesystem;
using platform::CreateDirectoryW;
using platform::DeleteFileW;
using platform::MoveFileW;

namespace {
bool s_bKnowsNoReplace = true;
bool s_bKnowsLinks = true;
}  // namespace

// The program's own definitions come before the C library's: so they stand for older kernels and simpler file
// systems.
extern "C" int renameat2(int fromFolder, const char* from, int toFolder, const char* to,
                         unsigned flags) noexcept {
    if (!s_bKnowsNoReplace) return errno = EINVAL, -1;
    return static_cast<int>(syscall(SYS_renameat2, fromFolder, from, toFolder, to, flags));
}

extern "C" int link(const char* from, const char* to) noexcept {
    if (!s_bKnowsLinks) return errno = EPERM, -1;
    return static_cast<int>(syscall(SYS_linkat, AT_FDCWD, from, AT_FDCWD, to, 0));
}

namespace {

class FileNames : public DeviceTest {
 protected:
    ~FileNames() override { s_bKnowsNoReplace = s_bKnowsLinks = true; }

    void MakeFolder(const std::string& path) const { fs::create_directories(OnDisk(path)); }
    bool IsFolder(const std::string& path) const { return fs::is_directory(OnDisk(path)); }
};

// ---- CreateDirectoryW

TEST_F(FileNames, NewFolder_IsMadeOnce) {
    EXPECT_TRUE(CreateDirectoryW(L"\\Track"));
    EXPECT_TRUE(IsFolder("\\Track"));
    EXPECT_FALSE(CreateDirectoryW(L"\\Track"));
    EXPECT_FALSE(CreateDirectoryW(L"\\TRACK"));
    EXPECT_FALSE(Exists("\\TRACK"));
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
    ASSERT_EQ(mkfifo(OnDisk("\\pipe").c_str(), 0600), 0);
    fs::create_directory_symlink(OnDisk("\\dir"), OnDisk("\\linked"));
    for (const wchar_t* path : {L"\\dir", L"\\dir\\", L"\\linked", L"\\pipe", L"\\", L"", L"\\no\\a.gpx",
                                L"\\*.gpx", L"\\a.gp?", L"\\a.gpx\\"})
        EXPECT_FALSE(DeleteFileW(path));
    EXPECT_FALSE(DeleteFileW(nullptr));
    EXPECT_TRUE(IsFolder("\\dir") && Exists("\\a.gpx") && Exists("\\pipe") && Exists("\\linked"));
}

TEST_F(FileNames, DeletingAReadOnlyFile_IsRefused) {
    Write("\\a.gpx", "one");
    chmod(OnDisk("\\a.gpx").c_str(), 0444);
    EXPECT_FALSE(DeleteFileW(L"\\a.gpx"));
    EXPECT_TRUE(Exists("\\a.gpx"));
}

TEST_F(FileNames, DeletingALink_LeavesWhatItLeadsTo) {
    Write("\\a.gpx", "one");
    fs::create_symlink(OnDisk("\\a.gpx"), OnDisk("\\link.gpx"));
    fs::create_symlink(OnDisk("\\nowhere"), OnDisk("\\dangling.gpx"));
    EXPECT_TRUE(DeleteFileW(L"\\link.gpx"));
    EXPECT_TRUE(DeleteFileW(L"\\dangling.gpx"));
    EXPECT_EQ(BytesOf("\\a.gpx"), "one");
    EXPECT_FALSE(fs::is_symlink(OnDisk("\\link.gpx")));
    EXPECT_FALSE(fs::is_symlink(OnDisk("\\dangling.gpx")));
}

// ---- MoveFileW

// The three ways to move without replacing: the kernel's own, by a second name, and, for want of both, by
// looking first.
struct Abilities {
    bool noReplace;
    bool links;
};

class Moving : public FileNames, public ::testing::WithParamInterface<Abilities> {
 protected:
    Moving() {
        s_bKnowsNoReplace = GetParam().noReplace;
        s_bKnowsLinks = GetParam().links;
    }
};

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
    fs::create_symlink(OnDisk("\\nowhere"), OnDisk("\\dangling"));
    for (const wchar_t* to : {L"\\b.dat", L"\\B.DAT", L"\\dir", L"\\dangling"})
        EXPECT_FALSE(MoveFileW(L"\\a.dat", to));
    EXPECT_EQ(BytesOf("\\a.dat"), "one");
    EXPECT_EQ(BytesOf("\\b.dat"), "two");
    EXPECT_TRUE(IsFolder("\\dir"));
    EXPECT_TRUE(fs::is_symlink(OnDisk("\\dangling")));
}

TEST_P(Moving, TargetThatAppearsAtTheLastMoment_IsNeverReplaced) {
    Write("\\a.dat", "one");
    Write("\\b.dat", "two");
    EXPECT_FALSE(platform::MoveWithoutReplacing(OnDisk("\\a.dat"), OnDisk("\\b.dat")));
    EXPECT_EQ(BytesOf("\\a.dat"), "one");
    EXPECT_EQ(BytesOf("\\b.dat"), "two");
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
    Write("\\a.dat", "one");
    MakeFolder("\\dir");
    EXPECT_TRUE(MoveFileW(L"\\a.dat", L"\\A.Dat"));
    EXPECT_TRUE(MoveFileW(L"\\dir", L"\\DIR"));
    EXPECT_TRUE(Exists("\\A.Dat"));
    EXPECT_FALSE(Exists("\\a.dat"));
    EXPECT_TRUE(IsFolder("\\DIR"));
}

TEST_P(Moving, ReadOnlyFile_CanBeMoved) {
    Write("\\a.dat", "one");
    chmod(OnDisk("\\a.dat").c_str(), 0444);
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

TEST_P(Moving, Link_IsMovedItself) {
    Write("\\a.dat", "one");
    fs::create_symlink(OnDisk("\\a.dat"), OnDisk("\\link"));
    EXPECT_TRUE(MoveFileW(L"\\link", L"\\moved"));
    EXPECT_TRUE(fs::is_symlink(OnDisk("\\moved")));
    EXPECT_EQ(BytesOf("\\a.dat"), "one");
}

TEST_P(Moving, OpenStream_FollowsTheFile) {
    std::FILE* stream = platform::_wfopen(L"\\a.dat", L"wb");
    ASSERT_NE(stream, nullptr);
    EXPECT_TRUE(MoveFileW(L"\\a.dat", L"\\b.dat"));
    std::fputs("late", stream);
    platform::fclose(stream);
    EXPECT_EQ(BytesOf("\\b.dat"), "late");
}

std::string WayOfMoving(const ::testing::TestParamInfo<Abilities>& way) {
    return way.param.noReplace ? "ByTheKernel" : way.param.links ? "BySecondName" : "ByLookingFirst";
}

INSTANTIATE_TEST_SUITE_P(Ways, Moving,
                         ::testing::Values(Abilities{true, true}, Abilities{false, true},
                                           Abilities{false, false}),
                         WayOfMoving);

// A folder of the device on another file system, as a card is.
class MovingToACard : public FileNames {
 protected:
    void SetUp() override {
        struct stat device {
        }, card{};
        std::string pattern = "/dev/shm/qtrace-test-XXXXXX";
        if (mkdtemp(pattern.data()) == nullptr) GTEST_SKIP() << "no second file system here";
        m_card = pattern;
        stat(m_root.Path().c_str(), &device);
        stat(m_card.c_str(), &card);
        if (device.st_dev == card.st_dev) GTEST_SKIP() << "no second file system here";
        fs::create_directory_symlink(m_card, m_root.Path() / "SDMMC");
    }
    void TearDown() override {
        if (!m_card.empty()) fs::remove_all(m_card);
    }
    auto FilesOnCard() const { return std::distance(fs::directory_iterator(m_card), {}); }

    fs::path m_card;
};

TEST_F(MovingToACard, File_IsCopiedWithRightsAndTime) {
    Write("\\a.dat", std::string(200000, 'x'));
    chmod(OnDisk("\\a.dat").c_str(), 0640);
    const auto time = fs::last_write_time(OnDisk("\\a.dat")) - std::chrono::hours(5);
    fs::last_write_time(OnDisk("\\a.dat"), time);
    EXPECT_TRUE(MoveFileW(L"\\a.dat", L"\\SDMMC\\b.dat"));
    EXPECT_FALSE(Exists("\\a.dat"));
    EXPECT_EQ(ReadFile(m_card / "b.dat"), std::string(200000, 'x'));
    EXPECT_EQ(fs::status(m_card / "b.dat").permissions(), fs::perms(0640));
    EXPECT_EQ(fs::last_write_time(m_card / "b.dat"), time);
    EXPECT_EQ(FilesOnCard(), 1);
}

TEST_F(MovingToACard, ExistingTarget_IsNeverReplaced) {
    Write("\\a.dat", "one");
    WriteFile(m_card / "b.dat", "two");
    EXPECT_FALSE(MoveFileW(L"\\a.dat", L"\\SDMMC\\b.dat"));
    EXPECT_EQ(BytesOf("\\a.dat"), "one");
    EXPECT_EQ(ReadFile(m_card / "b.dat"), "two");
    EXPECT_EQ(FilesOnCard(), 1);
}

TEST_F(MovingToACard, Folder_IsRefused) {
    Write("\\dir\\a.dat", "one");
    EXPECT_FALSE(MoveFileW(L"\\dir", L"\\SDMMC\\dir"));
    EXPECT_EQ(BytesOf("\\dir\\a.dat"), "one");
    EXPECT_EQ(FilesOnCard(), 0);
}

}  // namespace
