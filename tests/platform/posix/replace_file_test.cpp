// Exchanging a file's content with its rights, owner and links, in closed folders and on a full storage; where
// temporary files lie, and who may read them.
#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "tests/platform/replace_file_fixture.h"
#include "tests/support/machine.h"
#include "tests/support/posix/closed_folder.h"

namespace fs = std::filesystem;
using platform::ReplaceFileContent;

namespace {

// No file of this process grows beyond some bytes while it lives, as on a full storage.
class SmallStorage {
 public:
    explicit SmallStorage(rlim_t bytes) {
        m_before = signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_limit);
        const rlimit small = {bytes, m_limit.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
    }
    ~SmallStorage() {
        setrlimit(RLIMIT_FSIZE, &m_limit);
        signal(SIGXFSZ, m_before);
    }

 private:
    rlimit m_limit{};
    sighandler_t m_before;
};

mode_t RightsOf(const fs::path& file) {
    struct stat status {};
    stat(file.c_str(), &status);
    return status.st_mode & 07777;
}

}  // namespace

TEST_F(ReplacingContent, NewFile_GetsTheContentAndTheUsersRights) {
    const mode_t before = umask(027);
    EXPECT_TRUE(ReplaceFileContent(L"\\a.gpx", std::string("a\0b", 3)));
    umask(before);
    EXPECT_EQ(BytesOf("\\a.gpx"), std::string("a\0b", 3));
    EXPECT_EQ(RightsOf(OnDisk("\\a.gpx")), 0640u);
}

TEST_F(ReplacingContent, ExistingFile_KeepsRightsAndOwner) {
    Write("\\Track\\a.gpx", "a longer old content");
    const std::string file = OnDisk("\\Track\\a.gpx");
    if (geteuid() == 0) {
        ASSERT_EQ(chown(file.c_str(), 1234, 4321), 0);
    }
    struct stat before {
    }, after{};
    ASSERT_EQ(chmod(file.c_str(), 0604), 0);
    ASSERT_EQ(stat(file.c_str(), &before), 0);
    EXPECT_TRUE(ReplaceFileContent(L"\\TRACK\\A.GPX", "new"));
    ASSERT_EQ(stat(file.c_str(), &after), 0);
    EXPECT_EQ(BytesOf("\\Track\\a.gpx"), "new");
    EXPECT_EQ(after.st_mode, before.st_mode);
    EXPECT_EQ(after.st_uid, before.st_uid);
    EXPECT_EQ(after.st_gid, before.st_gid);
    EXPECT_EQ(FileCount("\\Track"), 1);
}

TEST_F(ReplacingContent, Link_KeepsLeadingToTheFile) {
    Write("\\Other\\a.gpx", "old");
    fs::create_symlink(OnDisk("\\Other\\a.gpx"), OnDisk("\\link.gpx"));
    EXPECT_TRUE(ReplaceFileContent(L"\\link.gpx", "new"));
    EXPECT_TRUE(fs::is_symlink(OnDisk("\\link.gpx")));
    EXPECT_EQ(BytesOf("\\Other\\a.gpx"), "new");
    EXPECT_EQ(FileCount("\\Other"), 1);
}

TEST_F(ReplacingContent, StorageThatIsFull_LeavesTheOldContentAndNothingElse) {
    Write("\\Track\\a.gpx", "old");
    const SmallStorage small(1000);
    EXPECT_FALSE(ReplaceFileContent(L"\\Track\\a.gpx", std::string(100000, 'x')));
    EXPECT_FALSE(ReplaceFileContent(L"\\Track\\new.gpx", std::string(100000, 'x')));
    EXPECT_EQ(BytesOf("\\Track\\a.gpx"), "old");
    EXPECT_EQ(FileCount("\\Track"), 1);
}

TEST_F(ReplacingContent, PieceWithoutRoom_IsTheLastThatIsWanted) {
    Write("\\Track\\a.gpx", "old");
    const SmallStorage small(1000);
    int wanted = 0;
    EXPECT_FALSE(ReplaceFileContent(L"\\Track\\a.gpx", [&](const platform::TakePiece& take) {
        while (take(std::string(400, 'x'))) ++wanted;
        EXPECT_FALSE(take(""));
    }));
    EXPECT_EQ(wanted, 2);
    EXPECT_EQ(BytesOf("\\Track\\a.gpx"), "old");
    EXPECT_EQ(FileCount("\\Track"), 1);
}

TEST_F(ReplacingContent, FolderThatTakesNoNewFile_IsWrittenDirectly) {
    Write("\\dir\\a.gpx", "the old content");
    const ClosedFolder closed(m_root.Path(), OnDisk("\\dir\\a.gpx"));
    const AsOrdinaryUser user;
    EXPECT_TRUE(ReplaceFileContent(L"\\dir\\a.gpx", "new"));
    EXPECT_EQ(BytesOf("\\dir\\a.gpx"), "new");
    EXPECT_TRUE(ReplaceFileContent(L"\\dir\\a.gpx", "a content that is longer than any before"));
    EXPECT_EQ(BytesOf("\\dir\\a.gpx"), "a content that is longer than any before");
    EXPECT_TRUE(ReplaceFileContent(L"\\dir\\a.gpx", [](const platform::TakePiece& take) {
        take("in ");
        take("pieces");
    }));
    EXPECT_EQ(BytesOf("\\dir\\a.gpx"), "in pieces");
    EXPECT_FALSE(ReplaceFileContent(L"\\dir\\new.gpx", "new"));
    EXPECT_EQ(FileCount("\\dir"), 1);
}

TEST_F(ReplacingContent, WrittenDirectlyWithoutRoom_LeavesTheOldContent) {
    Write("\\dir\\a.gpx", "the old content");
    const ClosedFolder closed(m_root.Path(), OnDisk("\\dir\\a.gpx"));
    const AsOrdinaryUser user;
    const SmallStorage small(1000);
    EXPECT_FALSE(ReplaceFileContent(L"\\dir\\a.gpx", std::string(100000, 'x')));
    EXPECT_EQ(BytesOf("\\dir\\a.gpx"), "the old content");
}

TEST_F(ReplacingContent, WhoeverReadsTheOldFile_GoesOnReadingIt) {
    Write("\\a.gpx", "old");
    std::FILE* reader = platform::_wfopen(L"\\a.gpx", L"rb");
    EXPECT_TRUE(ReplaceFileContent(L"\\a.gpx", "new"));
    char bytes[4] = {};
    EXPECT_EQ(std::fread(bytes, 1, 3, reader), 3u);
    EXPECT_STREQ(bytes, "old");
    platform::fclose(reader);
}

TEST_F(TemporaryFiles, WithoutAChosenFolder_TheSystemsOwnServes) {
    SetEnvironment(kTemporaryFolderVariable, "");
    std::string path;
    std::FILE* stream = platform::CreateTemporaryFile(path);
    ASSERT_NE(stream, nullptr);
    std::fclose(stream);
    EXPECT_EQ(fs::path(path).parent_path(), "/tmp");
    EXPECT_TRUE(platform::DeleteTemporaryFile(path));
}

TEST_F(ReplacingContent, PipesDevicesAndLinksToNowhere_AreRefused) {
    ASSERT_EQ(mkfifo(OnDisk("\\pipe").c_str(), 0600), 0);
    fs::create_symlink("/dev/null", OnDisk("\\null"));
    fs::create_symlink(OnDisk("\\nowhere"), OnDisk("\\dangling"));
    for (const wchar_t* path : {L"\\pipe", L"\\null", L"\\dangling"})
        EXPECT_FALSE(ReplaceFileContent(path, "new"));
    EXPECT_EQ(FileCount("\\"), 4);
}

TEST_F(TemporaryFiles, NewFile_IsForThisUserAndThisProcessAlone) {
    std::string path;
    std::FILE* stream = platform::CreateTemporaryFile(path);
    ASSERT_NE(stream, nullptr);
    EXPECT_EQ(fs::status(path).permissions(), fs::perms(0600));
    EXPECT_NE(fcntl(fileno(stream), F_GETFD) & FD_CLOEXEC, 0);
    platform::fclose(stream);
    EXPECT_TRUE(platform::DeleteTemporaryFile(path));
}
