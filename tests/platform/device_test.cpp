// The settings, the program's path, and where device paths lead on this machine.
#include "platform/device.h"

#include "platform/device_state.h"
#include "platform/find.h"
#include "tests/platform/device_fixture.h"
#include "tests/support/machine.h"

namespace fs = std::filesystem;

namespace {

// ---- settings

TEST_F(Device, Settings_AreReadBack) {
    SetProgramFolder(L"\\Programs\\Nav");
    EXPECT_EQ(platform::ProgramFolder(), L"\\Programs\\Nav");
    SetProgramFolder(L"");
    EXPECT_EQ(platform::ProgramFolder(), L"");
    EXPECT_EQ(platform::StorageCardRoot(), L"\\SDMMC");
    SetStorageCardRoot(L"\\Card");
    EXPECT_EQ(platform::StorageCardRoot(), L"\\Card");
}

TEST_F(Device, RootWithTrailingSlashes_IsTheSameRoot) {
    Write("\\a.gpx", "one");
    SetDeviceRoot(ToUtf8(m_root.Path()) + "//");
    EXPECT_TRUE(Opens(L"\\a.gpx"));
}

TEST_F(Device, RelativeRoot_StaysWhereItWasGiven) {
    Write("\\inner\\a.gpx", "one");
    const fs::path before = fs::current_path();
    fs::current_path(m_root.Path());
    SetDeviceRoot("inner");
    fs::current_path(before);
    EXPECT_TRUE(Opens(L"\\a.gpx"));
}

TEST_F(Device, EmptyRoot_IsTheMachinesOwn) {
    Write("\\a.gpx", "one");
    for (const char* root : {"", "/"}) {
        SetDeviceRoot(root);
        EXPECT_TRUE(Opens((m_root.Path() / "a.gpx").wstring()));
        EXPECT_TRUE(Opens(WithBackslashes((m_root.Path() / "A.GPX").wstring())));
        platform::FindData entry;
        EXPECT_EQ(platform::FindFirstFileW(L"\\", &entry), platform::kInvalidHandle);
    }
}

TEST_F(Device, RootThatIsMissing_HoldsNothing) {
    SetDeviceRoot(ToUtf8(m_root.Path() / "no"));
    EXPECT_FALSE(Opens(L"\\a.gpx"));
    EXPECT_FALSE(Makes(L"\\a.gpx"));
    EXPECT_FALSE(platform::CreateDirectoryW(L"\\dir"));
}

// ---- the program

TEST_F(Device, ProgramBelowTheRoot_HasADevicePath) {
    SetDeviceRoot(ToUtf8(ExecutableOnDisk().parent_path().parent_path()));
    const fs::path relative =
        ExecutableOnDisk().lexically_relative(ExecutableOnDisk().parent_path().parent_path());
    EXPECT_EQ(Executable(), L"\\" + WithBackslashes(relative.wstring()));
    EXPECT_TRUE(Opens(Executable()));
}

TEST_F(Device, ProgramOutsideOfTheRoot_HasItsPathOnTheMachine) {
    EXPECT_EQ(Executable(), WithBackslashes(ExecutableOnDisk().wstring()));
    SetDeviceRoot(
        ToUtf8(ExecutableOnDisk()).substr(0, ToUtf8(ExecutableOnDisk()).size() - 1));  // a prefix, no folder
    EXPECT_EQ(Executable(), WithBackslashes(ExecutableOnDisk().wstring()));
    SetDeviceRoot("");
    EXPECT_EQ(Executable(), WithBackslashes(ExecutableOnDisk().wstring()));
}

TEST_F(Device, ProgramPathInASmallBuffer_IsCut) {
    const std::wstring whole = Executable();
    const auto size = static_cast<unsigned>(whole.size());
    std::wstring path(whole.size() + 2, L'#');
    EXPECT_EQ(platform::GetModuleFileNameW(path.data(), 5), 5u);
    EXPECT_EQ(path.substr(0, 6), whole.substr(0, 4) + L'\0' + L'#');
    EXPECT_EQ(platform::GetModuleFileNameW(path.data(), size), size);
    EXPECT_EQ(path.substr(0, size), whole.substr(0, size - 1) + L'\0');
    EXPECT_EQ(platform::GetModuleFileNameW(path.data(), size + 1), size);
    EXPECT_EQ(path, whole + L'\0' + L'#');
    EXPECT_EQ(platform::GetModuleFileNameW(path.data(), 1), 1u);
    EXPECT_EQ(path[0], L'\0');
    EXPECT_EQ(platform::GetModuleFileNameW(path.data(), 0), 0u);
    EXPECT_EQ(platform::GetModuleFileNameW(nullptr, 10), 0u);
}

// ---- paths

TEST_F(Device, ParentNames_NeverClimbAboveTheRoot) {
    Write("\\dir\\b.gpx", "one");
    WriteFile(m_root.Path() / "a.gpx", "one");
    SetDeviceRoot(ToUtf8(m_root.Path() / "dir"));
    for (const wchar_t* path : {L"\\..\\a.gpx", L"..\\a.gpx", L"\\..\\..\\a.gpx", L"/../a.gpx",
                                L"\\.\\..\\a.gpx", L"\\x\\..\\..\\a.gpx"}) {
        EXPECT_FALSE(Opens(path));
        EXPECT_FALSE(platform::DeleteFileW(path));
    }
    EXPECT_TRUE(Opens(L"\\..\\..\\b.gpx"));
    EXPECT_TRUE(Makes(L"\\..\\new.gpx"));
    EXPECT_TRUE(platform::ReplaceFileContent(L"\\..\\..\\other.gpx", ""));
    EXPECT_TRUE(platform::CreateDirectoryW(L"\\..\\sub"));
    EXPECT_TRUE(platform::MoveFileW(L"\\b.gpx", L"\\..\\moved.gpx"));
    for (const char* name : {"new.gpx", "other.gpx", "sub", "moved.gpx"}) {
        EXPECT_TRUE(fs::exists(m_root.Path() / "dir" / name));
        EXPECT_FALSE(fs::exists(m_root.Path() / name));
    }
}

TEST_F(Device, Separators_MayBeMixedAndRepeated) {
    Write("\\Track\\a.gpx", "one");
    for (const wchar_t* path : {L"\\Track\\a.gpx", L"/Track/a.gpx", L"Track\\a.gpx", L"\\\\Track\\\\a.gpx",
                                L"\\Track/\\a.gpx", L"\\Track\\.\\a.gpx", L"\\App\\..\\Track\\a.gpx"})
        EXPECT_TRUE(Opens(path));
}

// What the path leads to is there: nothing but its length can be wrong.
TEST_F(Device, PathOf259Characters_IsTheLongestThatLeadsSomewhere) {
    for (const std::size_t length : {259u, 260u}) {
        const bool isPath = length == 259;
        const auto lengthened = [length](const std::wstring& name) {
            return L"\\Track" + std::wstring(length - 6 - name.size(), L'\\') + name;
        };
        const std::wstring path = lengthened(L"a.gpx");
        platform::FindData entry;
        Write("\\Track\\a.gpx", "one");
        EXPECT_EQ(Opens(path), isPath);
        EXPECT_EQ(platform::FindClose(platform::FindFirstFileW(path.c_str(), &entry)), isPath);
        EXPECT_EQ(platform::FindClose(platform::FindFirstFileW(lengthened(L"*.gpx").c_str(), &entry)), isPath);
        EXPECT_EQ(platform::ReplaceFileContent(path.c_str(), "two"), isPath);
        EXPECT_EQ(platform::CreateDirectoryW(lengthened(L"dir").c_str()), isPath);
        EXPECT_EQ(platform::MoveFileW(path.c_str(), L"\\Track\\from.gpx"), isPath);
        EXPECT_EQ(platform::MoveFileW(L"\\Track\\from.gpx", path.c_str()), isPath);
        EXPECT_EQ(platform::DeleteFileW(path.c_str()), isPath);
    }
}

TEST_F(Device, DotsAndBlanksAtTheEnd_AreDropped) {
    EXPECT_TRUE(Makes(L"\\a.gpx. "));
    EXPECT_TRUE(Exists("\\a.gpx"));
    EXPECT_TRUE(Opens(L"\\a.gpx..."));
    Write("\\Track\\a.gpx", "");
    EXPECT_FALSE(Opens(L"\\Track.\\a.gpx"));  // of the last name only
    EXPECT_FALSE(Makes(L"\\..."));
    EXPECT_FALSE(Makes(L"\\ "));
}

TEST_F(Device, EveryName_IsFoundInAnyLetterCase) {
    Write("\\Nav\\Tracks\\Home \xC3\x84\xC3\x96.gpx", "one");     // capital A and O with diaeresis
    Write("\\Nav\\\xD0\x9F\xD1\x83\xD1\x82\xD1\x8C.gpx", "two");  // Cyrillic
    Write("\\Nav\\\xCE\xA9.gpx", "three");                        // capital omega
    EXPECT_TRUE(Opens(L"\\NAV\\tracks\\hOME \xE4\xF6.GPX"));
    EXPECT_TRUE(Opens(L"\\nav\\\x043F\x0423\x0422\x042C.gpx"));
    EXPECT_TRUE(Opens(L"\\nav\\\x03C9.gpx"));
    EXPECT_FALSE(Opens(L"\\nav\\tracks\\home ao.gpx"));
}

TEST_F(Device, CharactersAboveTheBasicPlane_AreOneOnDisk) {
    EXPECT_TRUE(Makes(L"\\\xD83D\xDE00.gpx"));
    EXPECT_TRUE(Exists("\\\xF0\x9F\x98\x80.gpx"));
    EXPECT_TRUE(Opens(L"\\\xD83D\xDE00.GPX"));
}

}  // namespace
