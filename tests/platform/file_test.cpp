// Streams on device paths: opening modes, what is refused, and bringing content to storage.
#include "platform/file.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "platform/device.h"
#include "tests/support/device.h"

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

namespace {

class Stream : public DeviceTest {
 protected:
    ~Stream() override { s_bStorageFails = false; }

    static std::FILE* Open(const wchar_t* path, const wchar_t* mode) { return platform::_wfopen(path, mode); }

    static bool Opens(const wchar_t* path, const wchar_t* mode) {
        std::FILE* stream = Open(path, mode);
        return platform::fclose(stream) == 0;
    }

    static void Put(std::FILE* stream, const std::string& bytes) {
        EXPECT_EQ(std::fwrite(bytes.data(), 1, bytes.size(), stream), bytes.size());
    }

    static std::string Rest(std::FILE* stream) {
        char bytes[64];
        return {bytes, std::fread(bytes, 1, sizeof bytes, stream)};
    }
};

// ---- opening

TEST_F(Stream, UpdateOfAMissingFile_Fails) {
    EXPECT_EQ(Open(L"\\no.dat", L"rb+"), nullptr);
    EXPECT_EQ(Open(L"\\no.dat", L"rbc+"), nullptr);
    EXPECT_EQ(Open(L"\\no.dat", L"rb"), nullptr);
    EXPECT_FALSE(Exists("\\no.dat"));
}

TEST_F(Stream, UpdateOfAFile_KeepsItsContent) {
    for (const wchar_t* mode : {L"rb+", L"rbc+"}) {
        Write("\\a.dat", "12345");
        std::FILE* stream = Open(L"\\a.dat", mode);
        ASSERT_NE(stream, nullptr);
        EXPECT_EQ(Rest(stream), "12345");
        std::fseek(stream, 1, SEEK_SET);
        Put(stream, "x");
        platform::fclose(stream);
        EXPECT_EQ(BytesOf("\\a.dat"), "1x345");
    }
}

TEST_F(Stream, NewContent_CreatesOrTruncates) {
    for (const wchar_t* mode : {L"wb+", L"wbc+", L"wb", L"w"}) {
        Write("\\old.dat", "old");
        EXPECT_TRUE(Opens(L"\\old.dat", mode));
        EXPECT_EQ(BytesOf("\\old.dat"), "");
        fs::remove(OnDisk("\\new.dat"));
        EXPECT_TRUE(Opens(L"\\new.dat", mode));
        EXPECT_TRUE(Exists("\\new.dat"));
    }
}

TEST_F(Stream, UpdateMode_ReadsWhatItWrote) {
    std::FILE* stream = Open(L"\\a.dat", L"wbc+");
    ASSERT_NE(stream, nullptr);
    Put(stream, "abc");
    std::rewind(stream);
    EXPECT_EQ(Rest(stream), "abc");
    platform::fclose(stream);
}

TEST_F(Stream, AppendMode_AddsAtTheEnd) {
    Write("\\a.dat", "one");
    std::FILE* stream = Open(L"\\a.dat", L"ab");
    ASSERT_NE(stream, nullptr);
    Put(stream, "two");
    platform::fclose(stream);
    EXPECT_EQ(BytesOf("\\a.dat"), "onetwo");
}

TEST_F(Stream, ExclusiveMode_NeverTakesAnExistingFile) {
    Write("\\a.dat", "one");
    EXPECT_EQ(Open(L"\\a.dat", L"wbx"), nullptr);
    EXPECT_EQ(BytesOf("\\a.dat"), "one");
    EXPECT_TRUE(Opens(L"\\b.dat", L"wbx"));
}

TEST_F(Stream, ReadingMode_CannotWrite) {
    Write("\\a.dat", "one");
    std::FILE* stream = Open(L"\\a.dat", L"rb");
    ASSERT_NE(stream, nullptr);
    EXPECT_EQ(std::fwrite("x", 1, 1, stream), 0u);
    platform::fclose(stream);
}

TEST_F(Stream, ModeThatIsNone_Fails) {
    Write("\\a.dat", "one");
    for (const wchar_t* mode : {L"", L"b", L"c", L"+"}) EXPECT_EQ(Open(L"\\a.dat", mode), nullptr);
    EXPECT_EQ(Open(L"\\a.dat", nullptr), nullptr);
    EXPECT_EQ(platform::fopen("\\a.dat", nullptr), nullptr);
    EXPECT_EQ(platform::fopen(nullptr, "rb"), nullptr);
    EXPECT_EQ(Open(nullptr, L"rb"), nullptr);
    EXPECT_EQ(Open(L"", L"wb"), nullptr);
}

TEST_F(Stream, NarrowPath_IsInTheAnsiCodePage) {
    Write("\\\xE4\xB8\xAD.dat", "one");  // U+4E2D on disk
    std::FILE* stream = platform::fopen("\\\xD6\xD0.dat", "rb");
    ASSERT_NE(stream, nullptr);
    EXPECT_EQ(Rest(stream), "one");
    platform::fclose(stream);
    ASSERT_TRUE(SetAnsiCodePage(65001));
    EXPECT_EQ(platform::fclose(platform::fopen("\\\xE4\xB8\xAD.dat", "rb")), 0);
}

TEST_F(Stream, NarrowPathWithABackslashAsSecondByte_StaysOneName) {
    ASSERT_EQ(platform::fclose(platform::fopen("\\\x81\x5C.dat", "wb")), 0);  // U+4E57
    EXPECT_TRUE(Exists("\\\xE4\xB9\x97.dat"));
}

TEST_F(Stream, LetterCase_IsIgnored) {
    Write("\\Track\\Log.Dat", "one");
    EXPECT_TRUE(Opens(L"\\TRACK\\LOG.DAT", L"rb"));
    EXPECT_TRUE(Opens(L"\\track\\log.dat", L"rb+"));
    EXPECT_TRUE(Opens(L"\\tRACK\\New.dat", L"wb"));
    EXPECT_TRUE(Exists("\\Track\\New.dat"));
}

TEST_F(Stream, Folder_IsRefusedInEveryMode) {
    fs::create_directory(OnDisk("\\dir"));
    for (const wchar_t* mode : {L"rb", L"rb+", L"wb", L"wb+", L"ab"}) {
        EXPECT_EQ(Open(L"\\dir", mode), nullptr);
        EXPECT_EQ(Open(L"\\", mode), nullptr);
        EXPECT_EQ(Open(L"\\dir\\", mode), nullptr);
    }
}

TEST_F(Stream, FileWithATrailingSeparator_IsRefused) {
    Write("\\a.dat", "one");
    EXPECT_EQ(Open(L"\\a.dat\\", L"rb"), nullptr);
    EXPECT_EQ(Open(L"\\b.dat\\", L"wb"), nullptr);
    EXPECT_FALSE(Exists("\\b.dat"));
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

TEST_F(Stream, Wildcards_AreRefused) {
    Write("\\a.dat", "one");
    WriteFile(m_root.Path() / "a*.dat", "one");
    for (const wchar_t* path : {L"\\*.dat", L"\\a?dat", L"\\a*.dat"}) {
        EXPECT_EQ(Open(path, L"rb"), nullptr);
        EXPECT_EQ(Open(path, L"wb"), nullptr);
    }
}

TEST_F(Stream, NewNameThatNoDeviceCouldHold_IsRefused) {
    for (const wchar_t* path :
         {L"\\a<.dat", L"\\a>.dat", L"\\a|.dat", L"\\a\".dat", L"\\a:b", L"\\a\n.dat", L"\\\xD83D"})
        EXPECT_EQ(Open(path, L"wb"), nullptr);
    EXPECT_EQ(std::distance(fs::directory_iterator(m_root.Path()), {}), 1);  // the program's folder
}

TEST_F(Stream, ExistingNameOfAnotherSystem_CanBeOpened) {
    WriteFile(m_root.Path() / "12:30.gpx", "one");
    EXPECT_TRUE(Opens(L"\\12:30.gpx", L"rb"));
}

TEST_F(Stream, PathOf260Characters_IsRefused) {
    const std::wstring folder = L"\\" + std::wstring(100, L'a'), middle = L"\\" + std::wstring(100, L'b');
    fs::create_directories(OnDisk("\\" + std::string(100, 'a') + "\\" + std::string(100, 'b')));
    const std::wstring prefix = folder + middle + L"\\";
    EXPECT_TRUE(Opens((prefix + std::wstring(259 - prefix.size(), L'c')).c_str(), L"wb"));
    EXPECT_EQ(Open((prefix + std::wstring(260 - prefix.size(), L'd')).c_str(), L"wb"), nullptr);
    const std::string narrow(300, 'e');
    EXPECT_EQ(platform::fopen(narrow.c_str(), "wb"), nullptr);
}

TEST_F(Stream, ReadOnlyFile_IsReadButNotWritten) {
    Write("\\a.dat", "one");
    chmod(OnDisk("\\a.dat").c_str(), 0444);
    EXPECT_TRUE(Opens(L"\\a.dat", L"rb"));
    for (const wchar_t* mode : {L"rb+", L"wb", L"ab"}) EXPECT_EQ(Open(L"\\a.dat", mode), nullptr);
    EXPECT_EQ(BytesOf("\\a.dat"), "one");
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

// ---- bringing content to storage

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

TEST_F(Stream, OrdinaryStream_IsFlushedOnly) {
    std::FILE* stream = Open(L"\\a.dat", L"wb+");
    const int before = s_iCommits;
    Put(stream, "abc");
    EXPECT_EQ(platform::fflush(stream), 0);
    EXPECT_EQ(s_iCommits, before);
    EXPECT_EQ(BytesOf("\\a.dat"), "abc");
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

TEST_F(Stream, Null_IsHarmless) {
    EXPECT_EQ(platform::fclose(nullptr), EOF);
    EXPECT_EQ(platform::fflush(nullptr), EOF);
}

}  // namespace
