// Streams as a POSIX system has them: other kinds of files, rights, what child processes inherit, and when the
// storage is told.
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstring>

#include "tests/platform/stream_fixture.h"

namespace fs = std::filesystem;

namespace {
std::atomic<int> s_iCommits = 0;
std::atomic<int> s_iFolderCommits = 0;
std::atomic<bool> s_bStorageFails = false;
}  // namespace

// The program's own definitions come before the C library's: they count, and then do the real thing.
extern "C" int fdatasync(int descriptor) {
    ++s_iCommits;
    if (s_bStorageFails) return errno = EIO, -1;
    return static_cast<int>(syscall(SYS_fdatasync, descriptor));
}

extern "C" int fsync(int descriptor) {
    ++s_iFolderCommits;
    return static_cast<int>(syscall(SYS_fsync, descriptor));
}

TEST_F(Stream, Fifo_IsRefusedWithoutWaiting) {
    ASSERT_EQ(mkfifo(OnDisk("\\pipe.gpx").c_str(), 0600), 0);
    for (const wchar_t* mode : {L"rb", L"wb", L"rb+", L"ab"}) EXPECT_EQ(Open(L"\\pipe.gpx", mode), nullptr);
}

TEST_F(Stream, SocketAndDevice_AreRefused) {
    const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, OnDisk("\\s.gpx").c_str(), sizeof address.sun_path - 1);
    ASSERT_EQ(bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(Open(L"\\s.gpx", L"rb"), nullptr);
    close(listener);
    fs::create_symlink("/dev/null", OnDisk("\\null.gpx"));
    EXPECT_EQ(Open(L"\\null.gpx", L"rb"), nullptr);
    EXPECT_EQ(Open(L"\\null.gpx", L"wb"), nullptr);
}

TEST_F(Stream, ExistingNameOfAnotherSystem_CanBeOpened) {
    WriteFile(m_root.Path() / "12:30.gpx", "one");
    EXPECT_TRUE(Opens(L"\\12:30.gpx", L"rb"));
}

TEST_F(Stream, ChildProcesses_DoNotInheritIt) {
    for (const wchar_t* mode : {L"wb+", L"wbc+", L"rb", L"rbc+"}) {
        std::FILE* stream = Open(L"\\a.dat", mode);
        ASSERT_NE(stream, nullptr);
        EXPECT_NE(fcntl(fileno(stream), F_GETFD) & FD_CLOEXEC, 0);
        platform::fclose(stream);
    }
}

TEST_F(Stream, NewFile_HasTheRightsThatTheUserChose) {
    const mode_t before = umask(027);
    EXPECT_TRUE(Opens(L"\\a.dat", L"wb"));
    umask(before);
    struct stat status {};
    ASSERT_EQ(stat(OnDisk("\\a.dat").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777u, 0640u);
}

// A name that no device could hold, on disk all the same; and one that only looks like a wildcard.
TEST_F(Stream, WildcardInANameOnDisk_IsRefused) {
    WriteFile(m_root.Path() / "a*.dat", "one");
    EXPECT_EQ(Open(L"\\a*.dat", L"rb"), nullptr);
}

TEST_F(Stream, CommittedStream_IsCommittedByEveryFlush) {
    for (const wchar_t* mode : {L"wbc+", L"rbc+"}) {
        std::FILE* stream = Open(L"\\a.dat", mode);
        ASSERT_NE(stream, nullptr);
        const int before = s_iCommits;
        Put(stream, "abc");
        EXPECT_EQ(platform::fflush(stream), 0);
        EXPECT_EQ(s_iCommits, before + 1);
        EXPECT_EQ(BytesOf("\\a.dat"), "abc");
        EXPECT_EQ(platform::fflush(stream), 0);
        EXPECT_EQ(s_iCommits, before + 2);
        platform::fclose(stream);
    }
}

TEST_F(Stream, CommittedNarrowStream_IsCommittedToo) {
    std::FILE* stream = platform::fopen("\\a.dat", "wbc+");
    const int before = s_iCommits;
    EXPECT_EQ(platform::fflush(stream), 0);
    EXPECT_EQ(s_iCommits, before + 1);
    platform::fclose(stream);
}

TEST_F(Stream, OrdinaryStreamAfterACommittedOne_IsNotTakenForIt) {
    for (int i = 0; i < 3; ++i) {  // the C library hands out the same address again
        std::fclose(Open(L"\\a.dat", L"wbc+"));
        std::FILE* stream = Open(L"\\a.dat", L"wb+");
        const int before = s_iCommits;
        EXPECT_EQ(platform::fflush(stream), 0);
        EXPECT_EQ(s_iCommits, before);
        platform::fclose(stream);
    }
}

TEST_F(Stream, NameOfANewCommittedFile_IsCommittedAtOnce) {
    int before = s_iFolderCommits;
    EXPECT_TRUE(Opens(L"\\a.dat", L"wbc+"));
    EXPECT_EQ(s_iFolderCommits, before + 1);
    before = s_iFolderCommits;
    EXPECT_TRUE(Opens(L"\\a.dat", L"rbc+"));
    EXPECT_TRUE(Opens(L"\\b.dat", L"wb+"));
    EXPECT_EQ(s_iFolderCommits, before);
}

TEST_F(Stream, StorageThatFails_IsReported) {
    std::FILE* stream = Open(L"\\a.dat", L"wbc+");
    s_bStorageFails = true;
    EXPECT_EQ(platform::fflush(stream), EOF);
    s_bStorageFails = false;
    platform::fclose(stream);
}

TEST_F(Stream, OrdinaryStream_IsFlushedOnly) {
    std::FILE* stream = Open(L"\\a.dat", L"wb+");
    const int before = s_iCommits;
    Put(stream, "abc");
    EXPECT_EQ(platform::fflush(stream), 0);
    EXPECT_EQ(s_iCommits, before);
    platform::fclose(stream);
}
