// New content that is put in a file's place, or written over the old one, where the system does not let it.
#include "platform/windows/new_content.h"

#include "tests/platform/replace_file_fixture.h"

namespace {

class NewContent : public ReplacingContent {
 protected:
    std::wstring OnSystem(const std::string& devicePath) const { return OnDisk(devicePath).wstring(); }
    std::wstring Beside(const std::string& bytes) const {
        Write("\\beside", bytes);
        return OnSystem("\\beside");
    }
};

using platform::IfMissing;
using platform::PutInPlace;
using platform::WriteOver;

// ReplaceFileW as it fails when the old file is out of the way already.
BOOL WINAPI LoseTheOldFile(LPCWSTR replaced, LPCWSTR, LPCWSTR, DWORD, LPVOID, LPVOID) {
    ::DeleteFileW(replaced);
    ::SetLastError(ERROR_UNABLE_TO_MOVE_REPLACEMENT);
    return FALSE;
}

BOOL WINAPI KeepTheOldFile(LPCWSTR, LPCWSTR, LPCWSTR, DWORD, LPVOID, LPVOID) {
    ::SetLastError(ERROR_UNABLE_TO_REMOVE_REPLACED);
    return FALSE;
}

}  // namespace

TEST_F(NewContent, OldFileThatTheSystemHasLost_IsReplacedAllTheSame) {
    for (const IfMissing ifMissing : {IfMissing::Make, IfMissing::Leave}) {
        Write("\\a.gpx", "old");
        EXPECT_EQ(PutInPlace(Beside("new"), OnSystem("\\a.gpx"), ifMissing, LoseTheOldFile), 0u);
        EXPECT_EQ(BytesOf("\\a.gpx"), "new");
        EXPECT_FALSE(Exists("\\beside"));
    }
}

TEST_F(NewContent, OldFileLostAndItsNameOutOfReach_StaysBeside) {
    EXPECT_NE(PutInPlace(Beside("new"), OnSystem("\\no\\a.gpx"), IfMissing::Make, LoseTheOldFile), 0u);
    EXPECT_EQ(BytesOf("\\beside"), "new");
}

TEST_F(NewContent, OldFileThatCannotBeReplaced_StaysAlone) {
    Write("\\a.gpx", "old");
    EXPECT_EQ(PutInPlace(Beside("new"), OnSystem("\\a.gpx"), IfMissing::Make, KeepTheOldFile),
              DWORD{ERROR_UNABLE_TO_REMOVE_REPLACED});
    EXPECT_EQ(BytesOf("\\a.gpx"), "old");
    EXPECT_FALSE(Exists("\\beside"));
}

TEST_F(NewContent, MissingFile_IsMadeOnlyWhenAskedFor) {
    EXPECT_NE(PutInPlace(Beside("new"), OnSystem("\\a.gpx"), IfMissing::Leave), 0u);
    EXPECT_EQ(FileCount("\\"), 1);
    EXPECT_EQ(PutInPlace(Beside("new"), OnSystem("\\a.gpx"), IfMissing::Make), 0u);
    EXPECT_EQ(BytesOf("\\a.gpx"), "new");
    EXPECT_EQ(FileCount("\\"), 2);
}

// Of a process of the same number that ended before it was done.
TEST_F(NewContent, FilesLeftBehind_DoNotStandInTheWay) {
    const std::string stale = "\\Track\\~qtrace-" + std::to_string(::GetCurrentProcessId()) + "-";
    for (int i = 0; i < 50; ++i) Write(stale + std::to_string(i) + ".tmp", "stale");
    Write("\\Track\\a.gpx", "old");
    EXPECT_TRUE(platform::ReplaceFileContent(L"\\Track\\a.gpx", "new"));
    EXPECT_EQ(BytesOf("\\Track\\a.gpx"), "new");
    EXPECT_EQ(BytesOf(stale + "0.tmp"), "stale");
    EXPECT_EQ(FileCount("\\Track"), 51);
}

TEST_F(NewContent, WrittenOver_IsAllThatIsThere) {
    Write("\\a.gpx", "the old content");
    for (const std::string content : {"new", "a content that is longer than any before", ""}) {
        EXPECT_TRUE(WriteOver(OnSystem("\\a.gpx"), content));
        EXPECT_EQ(BytesOf("\\a.gpx"), content);
    }
}

TEST_F(NewContent, FileInUse_IsNotWrittenOver) {
    Write("\\a.gpx", "the old content");
    const HANDLE reader = ::CreateFileW(OnSystem("\\a.gpx").c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                        OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(reader, INVALID_HANDLE_VALUE);
    EXPECT_FALSE(WriteOver(OnSystem("\\a.gpx"), "new"));
    ::CloseHandle(reader);
    EXPECT_EQ(BytesOf("\\a.gpx"), "the old content");
}
