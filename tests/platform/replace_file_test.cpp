// Exchanging a file's content in one step, and temporary files.
#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

#include <gtest/gtest.h>

#include "platform/file.h"
#include "tests/support/device.h"
#include "tests/support/ordinary_user.h"

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

class ReplacingContent : public DeviceTest {
 protected:
    mode_t RightsOf(const std::string& path) const {
        struct stat status {};
        stat(OnDisk(path).c_str(), &status);
        return status.st_mode & 07777;
    }
    auto FileCount(const std::string& folder) const {
        return std::distance(fs::directory_iterator(OnDisk(folder)), {});
    }

    // A file in \dir that an ordinary user may write, but not exchange: the folder is closed to him.
    void WriteInClosedFolder(const std::string& bytes) const {
        Write("\\dir\\a.gpx", bytes);
        if (geteuid() == 0) {
            ASSERT_EQ(chown(OnDisk("\\dir\\a.gpx").c_str(), AsOrdinaryUser::kNobody, AsOrdinaryUser::kNobody),
                      0);
            ASSERT_EQ(chmod(m_root.Path().c_str(), 0755), 0);
        }
        ASSERT_EQ(chmod(OnDisk("\\dir").c_str(), 0555), 0);
    }
    ~ReplacingContent() override { chmod(OnDisk("\\dir").c_str(), 0755); }
};

TEST_F(ReplacingContent, NewFile_GetsTheContentAndTheUsersRights) {
    const mode_t before = umask(027);
    EXPECT_TRUE(ReplaceFileContent(L"\\a.gpx", std::string("a\0b", 3)));
    umask(before);
    EXPECT_EQ(BytesOf("\\a.gpx"), std::string("a\0b", 3));
    EXPECT_EQ(RightsOf("\\a.gpx"), 0640u);
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

TEST_F(ReplacingContent, WhoeverReadsTheOldFile_GoesOnReadingIt) {
    Write("\\a.gpx", "old");
    std::FILE* reader = platform::_wfopen(L"\\a.gpx", L"rb");
    EXPECT_TRUE(ReplaceFileContent(L"\\a.gpx", "new"));
    char bytes[4] = {};
    EXPECT_EQ(std::fread(bytes, 1, 3, reader), 3u);
    EXPECT_STREQ(bytes, "old");
    platform::fclose(reader);
}

TEST_F(ReplacingContent, EmptyAndLargeContent_AreWrittenWhole) {
    const std::string large(5000000, 'x');
    EXPECT_TRUE(ReplaceFileContent(L"\\a.gpx", large));
    EXPECT_EQ(BytesOf("\\a.gpx"), large);
    EXPECT_TRUE(ReplaceFileContent(L"\\a.gpx", ""));
    EXPECT_EQ(BytesOf("\\a.gpx"), "");
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

TEST_F(ReplacingContent, WhatIsNoFile_IsRefused) {
    fs::create_directories(OnDisk("\\dir"));
    ASSERT_EQ(mkfifo(OnDisk("\\pipe").c_str(), 0600), 0);
    fs::create_symlink("/dev/null", OnDisk("\\null"));
    fs::create_symlink(OnDisk("\\nowhere"), OnDisk("\\dangling"));
    for (const wchar_t* path : {L"\\dir", L"\\dir\\", L"\\", L"", L"\\no\\a.gpx", L"\\*.gpx", L"\\a<b",
                                L"\\pipe", L"\\null", L"\\dangling", L"\\a.gpx\\"})
        EXPECT_FALSE(ReplaceFileContent(path, "new"));
    EXPECT_FALSE(ReplaceFileContent(nullptr, "new"));
    EXPECT_EQ(FileCount("\\dir"), 0);
    EXPECT_EQ(FileCount("\\"), 5);
}

TEST_F(ReplacingContent, ReadOnlyFile_IsRefused) {
    Write("\\a.gpx", "old");
    chmod(OnDisk("\\a.gpx").c_str(), 0444);
    EXPECT_FALSE(ReplaceFileContent(L"\\a.gpx", "new"));
    EXPECT_EQ(BytesOf("\\a.gpx"), "old");
}

TEST_F(ReplacingContent, FolderThatTakesNoNewFile_IsWrittenDirectly) {
    WriteInClosedFolder("the old content");
    const AsOrdinaryUser user;
    EXPECT_TRUE(ReplaceFileContent(L"\\dir\\a.gpx", "new"));
    EXPECT_EQ(BytesOf("\\dir\\a.gpx"), "new");
    EXPECT_TRUE(ReplaceFileContent(L"\\dir\\a.gpx", "a content that is longer than any before"));
    EXPECT_EQ(BytesOf("\\dir\\a.gpx"), "a content that is longer than any before");
    EXPECT_FALSE(ReplaceFileContent(L"\\dir\\new.gpx", "new"));
    EXPECT_EQ(FileCount("\\dir"), 1);
}

TEST_F(ReplacingContent, WrittenDirectlyWithoutRoom_LeavesTheOldContent) {
    WriteInClosedFolder("the old content");
    const AsOrdinaryUser user;
    const SmallStorage small(1000);
    EXPECT_FALSE(ReplaceFileContent(L"\\dir\\a.gpx", std::string(100000, 'x')));
    EXPECT_EQ(BytesOf("\\dir\\a.gpx"), "the old content");
}

// ---- temporary files

class TemporaryFiles : public DeviceTest {
 protected:
    TemporaryFiles() { setenv("TMPDIR", m_root.Path().c_str(), 1); }
    ~TemporaryFiles() override { unsetenv("TMPDIR"); }
};

TEST_F(TemporaryFiles, NewFile_IsWrittenReadAndDeleted) {
    std::string path;
    std::FILE* stream = platform::CreateTemporaryFile(path);
    ASSERT_NE(stream, nullptr);
    EXPECT_EQ(fs::path(path).parent_path(), m_root.Path());
    EXPECT_EQ(fs::status(path).permissions(), fs::perms(0600));
    EXPECT_NE(fcntl(fileno(stream), F_GETFD) & FD_CLOEXEC, 0);
    std::fputs("abc", stream);
    platform::fclose(stream);
    std::FILE* reader = platform::OpenTemporaryFile(path);
    ASSERT_NE(reader, nullptr);
    EXPECT_EQ(std::fgetc(reader), 'a');
    platform::fclose(reader);
    EXPECT_TRUE(platform::DeleteTemporaryFile(path));
    EXPECT_FALSE(fs::exists(path));
    EXPECT_FALSE(platform::DeleteTemporaryFile(path));
    EXPECT_EQ(platform::OpenTemporaryFile(path), nullptr);
}

TEST_F(TemporaryFiles, EachFile_HasItsOwnName) {
    std::string first, second;
    std::fclose(platform::CreateTemporaryFile(first));
    std::fclose(platform::CreateTemporaryFile(second));
    EXPECT_NE(first, second);
}

TEST_F(TemporaryFiles, FolderThatIsMissing_GivesNone) {
    setenv("TMPDIR", (m_root.Path() / "no").c_str(), 1);
    std::string path = "unchanged";
    EXPECT_EQ(platform::CreateTemporaryFile(path), nullptr);
    EXPECT_EQ(path, "unchanged");
}

TEST_F(TemporaryFiles, WithoutAChosenFolder_TheSystemsOwnServes) {
    setenv("TMPDIR", "", 1);
    std::string path;
    std::FILE* stream = platform::CreateTemporaryFile(path);
    ASSERT_NE(stream, nullptr);
    std::fclose(stream);
    EXPECT_EQ(fs::path(path).parent_path(), "/tmp");
    EXPECT_TRUE(platform::DeleteTemporaryFile(path));
}

}  // namespace
