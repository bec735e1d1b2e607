// What file systems of Windows have beyond a device's: short names, and drives.
#include <windows.h>

#include "platform/device.h"
#include "platform/file.h"
#include "tests/platform/search_fixture.h"
#include "tests/support/machine.h"

namespace {

// The second name that the system keeps for a file; empty where it keeps none.
std::wstring ShortNameOf(const std::filesystem::path& file) {
    wchar_t path[MAX_PATH] = L"";
    ::GetShortPathNameW(file.c_str(), path, MAX_PATH);
    const std::wstring name = std::filesystem::path(path).filename().wstring();
    return name == file.filename().wstring() ? L"" : name;
}

}  // namespace

TEST_F(Searching, ShortName_IsNobodys) {
    Write("\\Track\\averylongnameofatrack.gpx", "one");
    const std::wstring name = ShortNameOf(OnDisk("\\Track\\averylongnameofatrack.gpx"));
    if (name.empty()) GTEST_SKIP() << "no short names here";
    const std::wstring path = L"\\Track\\" + name;
    EXPECT_TRUE(FindsNothing(path.c_str()));
    for (const wchar_t* mode : {L"rb", L"rb+", L"wb"})
        EXPECT_EQ(platform::_wfopen(path.c_str(), mode), nullptr);
    EXPECT_FALSE(platform::DeleteFileW(path.c_str()));
    EXPECT_FALSE(platform::MoveFileW(path.c_str(), L"\\Track\\b.gpx"));
    EXPECT_FALSE(platform::ReplaceFileContent(path.c_str(), "new"));
    EXPECT_EQ(BytesOf("\\Track\\averylongnameofatrack.gpx"), "one");
}

TEST_F(Searching, NameWithATilde_IsLikeAnyOther) {
    Write("\\Track\\home~1.gpx", "one");
    EXPECT_TRUE(FindsFile(L"\\Track\\HOME~1.gpx"));
    EXPECT_EQ(platform::fclose(platform::_wfopen(L"\\Track\\HOME~1.GPX", L"rb")), 0);
    EXPECT_EQ(platform::fclose(platform::_wfopen(L"\\Track\\new~1.gpx", L"wb")), 0);
}

TEST_F(Searching, FolderRightBelowADrive_HasAParent) {
    const std::filesystem::path drive = m_root.Path().root_path(), top = *m_root.Path().relative_path().begin();
    SetDeviceRoot("");
    const Names found = Found((drive / top).wstring() + L"\\*");
    ASSERT_GE(found.size(), 2u);
    EXPECT_EQ(found[0], L".");
    EXPECT_EQ(found[1], L"..");
}
