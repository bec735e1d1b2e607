// New content that is put in a file's place, or written over the old one, where the system does not let it.
#include "platform/windows/new_content.h"

#include <aclapi.h>
#include <sddl.h>

#include "platform/windows/file_handle.h"
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

using platform::PutInPlace;
using platform::WriteOver;

// Rights, owner and group, as the system writes them.
std::wstring RightsOf(const std::wstring& file) {
    constexpr SECURITY_INFORMATION kAll =
        OWNER_SECURITY_INFORMATION | GROUP_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION;
    PSECURITY_DESCRIPTOR rights = nullptr;
    LPWSTR text = nullptr;
    ::GetNamedSecurityInfoW(file.c_str(), SE_FILE_OBJECT, kAll, nullptr, nullptr, nullptr, nullptr, &rights);
    ::ConvertSecurityDescriptorToStringSecurityDescriptorW(rights, SDDL_REVISION_1, kAll, &text, nullptr);
    const std::wstring result = text == nullptr ? L"" : text;
    ::LocalFree(text);
    ::LocalFree(rights);
    return result;
}

// For its owner alone, whatever the folder says.
bool MakePrivate(const std::wstring& file) {
    const std::wstring before = RightsOf(file), owner = before.substr(2, before.find(L"G:") - 2);
    PSECURITY_DESCRIPTOR rights = nullptr;
    const bool isSet = ::ConvertStringSecurityDescriptorToSecurityDescriptorW(
                           (L"D:P(A;;FA;;;" + owner + L")").c_str(), SDDL_REVISION_1, &rights, nullptr) &&
                       ::SetFileSecurityW(file.c_str(), DACL_SECURITY_INFORMATION, rights);
    ::LocalFree(rights);
    return isSet;
}

std::uint64_t CreationOf(const std::wstring& file) {
    WIN32_FILE_ATTRIBUTE_DATA status{};
    ::GetFileAttributesExW(file.c_str(), GetFileExInfoStandard, &status);
    return std::uint64_t{status.ftCreationTime.dwHighDateTime} << 32 | status.ftCreationTime.dwLowDateTime;
}

}  // namespace

TEST_F(NewContent, File_IsReplacedOrMade) {
    for (const char* content : {"new", "newer"}) {
        EXPECT_EQ(PutInPlace(Beside(content), OnSystem("\\a.gpx"), nullptr), 0u);
        EXPECT_EQ(BytesOf("\\a.gpx"), content);
        EXPECT_FALSE(Exists("\\beside"));
    }
}

TEST_F(NewContent, FolderThatIsMissing_LeavesNothing) {
    EXPECT_EQ(PutInPlace(Beside("new"), OnSystem("\\no\\a.gpx"), nullptr), DWORD{ERROR_PATH_NOT_FOUND});
    EXPECT_FALSE(Exists("\\beside"));
}

TEST_F(NewContent, FileThatOthersKeepOpen_StaysAlone) {
    Write("\\a.gpx", "old");
    {
        const platform::FileHandle reader(::CreateFileW(OnSystem("\\a.gpx").c_str(), GENERIC_READ,
                                                        FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
        EXPECT_NE(PutInPlace(Beside("new"), OnSystem("\\a.gpx"), nullptr), 0u);
    }
    EXPECT_EQ(BytesOf("\\a.gpx"), "old");
    EXPECT_FALSE(Exists("\\beside"));
}

TEST_F(NewContent, AnotherFileThanTheOneRead_StaysAlone) {
    Write("\\a.gpx", "old");
    const auto read = platform::LookAt(OnSystem("\\a.gpx"))->state;
    Write("\\a.gpx", "saved since");
    EXPECT_EQ(PutInPlace(Beside("new"), OnSystem("\\a.gpx"), &read), DWORD{ERROR_FILE_INVALID});
    EXPECT_EQ(BytesOf("\\a.gpx"), "saved since");
    EXPECT_FALSE(Exists("\\beside"));
}

TEST_F(NewContent, ReplacedFile_KeepsItsRights) {
    Write("\\a.gpx", "old");
    const std::wstring file = OnSystem("\\a.gpx"), before = RightsOf(file);
    ASSERT_TRUE(MakePrivate(file));
    const std::wstring rights = RightsOf(file);
    ASSERT_NE(rights, before);
    EXPECT_TRUE(platform::ReplaceFileContent(L"\\a.gpx", "new"));
    EXPECT_EQ(BytesOf("\\a.gpx"), "new");
    EXPECT_EQ(RightsOf(file), rights);
}

TEST_F(NewContent, ReplacedFile_StaysAsOldAndHiddenAsItWas) {
    Write("\\a.gpx", "old");
    const std::wstring file = OnSystem("\\a.gpx");
    ASSERT_TRUE(::SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM));
    const std::uint64_t created = CreationOf(file);
    ::Sleep(30);
    EXPECT_TRUE(platform::ReplaceFileContent(L"\\a.gpx", "new"));
    EXPECT_EQ(BytesOf("\\a.gpx"), "new");
    constexpr DWORD kHidden = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
    EXPECT_EQ(::GetFileAttributesW(file.c_str()) & kHidden, kHidden);
    if (RunsUnderWine()) GTEST_SKIP() << "Wine has no time of creation of its own";
    EXPECT_EQ(CreationOf(file), created);
}

// Of a process of the same number that ended before it was done.
TEST_F(NewContent, FilesLeftBehind_DoNotStandInTheWay) {
    const std::string stale = "\\Track\\.qtrace-" + std::to_string(::GetCurrentProcessId()) + "-";
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
