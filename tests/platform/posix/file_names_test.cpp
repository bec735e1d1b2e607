// Links, pipes and moves to another file system, as POSIX systems have them.
#include <sys/stat.h>
#include <unistd.h>

#include "platform/posix/move.h"
#include "tests/platform/file_names_fixture.h"

namespace fs = std::filesystem;
using platform::DeleteFileW;
using platform::MoveFileW;

TEST_F(FileNames, DeletingLinksToFoldersAndPipes_IsRefused) {
    MakeFolder("\\dir");
    ASSERT_EQ(mkfifo(OnDisk("\\pipe").c_str(), 0600), 0);
    fs::create_directory_symlink(OnDisk("\\dir"), OnDisk("\\linked"));
    for (const wchar_t* path : {L"\\linked", L"\\pipe"}) EXPECT_FALSE(DeleteFileW(path));
    EXPECT_TRUE(Exists("\\pipe") && Exists("\\linked"));
}

TEST_P(Moving, LinkThatLeadsNowhere_IsNeverReplaced) {
    Write("\\a.dat", "one");
    fs::create_symlink(OnDisk("\\nowhere"), OnDisk("\\dangling"));
    EXPECT_FALSE(MoveFileW(L"\\a.dat", L"\\dangling"));
    EXPECT_EQ(BytesOf("\\a.dat"), "one");
    EXPECT_TRUE(fs::is_symlink(OnDisk("\\dangling")));
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

TEST_P(Moving, TargetThatAppearsAtTheLastMoment_IsNeverReplaced) {
    Write("\\a.dat", "one");
    Write("\\b.dat", "two");
    EXPECT_FALSE(platform::MoveWithoutReplacing(OnDisk("\\a.dat"), OnDisk("\\b.dat")));
    EXPECT_EQ(BytesOf("\\a.dat"), "one");
    EXPECT_EQ(BytesOf("\\b.dat"), "two");
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

TEST_F(MovingToACard, Folder_IsRefused) {
    Write("\\dir\\a.dat", "one");
    EXPECT_FALSE(MoveFileW(L"\\dir", L"\\SDMMC\\dir"));
    EXPECT_EQ(BytesOf("\\dir\\a.dat"), "one");
    EXPECT_EQ(FilesOnCard(), 0);
}

TEST_F(MovingToACard, ExistingTarget_IsNeverReplaced) {
    Write("\\a.dat", "one");
    WriteFile(m_card / "b.dat", "two");
    EXPECT_FALSE(MoveFileW(L"\\a.dat", L"\\SDMMC\\b.dat"));
    EXPECT_EQ(BytesOf("\\a.dat"), "one");
    EXPECT_EQ(ReadFile(m_card / "b.dat"), "two");
    EXPECT_EQ(FilesOnCard(), 1);
}
