// Moving to another volume, as a card is.
#include <windows.h>

#include "platform/device.h"
#include "tests/platform/file_names_fixture.h"

namespace fs = std::filesystem;

namespace {

// Wine's view of the machine's folder in memory is one; otherwise there is none that a test may write to.
class MovingToAnotherVolume : public FileNames {
 protected:
    void SetUp() override {
        m_card = L"Z:\\dev\\shm\\qtrace-test-" + std::to_wstring(::GetCurrentProcessId());
        const bool isOne = RunsUnderWine() && ::CreateDirectoryW(m_card.c_str(), nullptr);
        Write("\\probe", "");
        const std::wstring probe = OnDisk("\\probe").wstring(), target = m_card.wstring() + L"\\probe";
        if (isOne && !::MoveFileExW(probe.c_str(), target.c_str(), 0) &&
            ::GetLastError() == ERROR_NOT_SAME_DEVICE)
            return SetDeviceRoot("");
        GTEST_SKIP() << "no second volume here";
    }
    void TearDown() override { RemoveFolder(m_card); }

    std::wstring OnDevice(const char* name) const { return m_root.Path().wstring() + FromUtf8(name).wstring(); }
    std::wstring OnCard(const wchar_t* name) const { return m_card.wstring() + L'\\' + name; }
    bool Move(const char* name, const wchar_t* nameOnCard) const {
        return platform::MoveFileW(OnDevice(name).c_str(), OnCard(nameOnCard).c_str());
    }
    auto FilesOnCard() const { return std::distance(fs::directory_iterator(m_card), {}); }

    fs::path m_card;
};

TEST_F(MovingToAnotherVolume, File_IsCopiedWithItsTime) {
    Write("\\a.dat", std::string(200000, 'x'));
    constexpr std::int64_t kSeconds = 1000000000;
    SetLastWriteTime(OnDisk("\\a.dat"), kSeconds);
    const auto time = fs::last_write_time(OnDisk("\\a.dat"));
    EXPECT_TRUE(Move("\\a.dat", L"b.dat"));
    EXPECT_FALSE(Exists("\\a.dat"));
    EXPECT_EQ(ReadFile(OnCard(L"b.dat")), std::string(200000, 'x'));
    EXPECT_EQ(fs::last_write_time(OnCard(L"b.dat")), time);
    EXPECT_EQ(FilesOnCard(), 1);
}

TEST_F(MovingToAnotherVolume, ReadOnlyFile_StaysReadOnly) {
    Write("\\a.dat", "one");
    MakeReadOnly("\\a.dat");
    EXPECT_TRUE(Move("\\a.dat", L"b.dat"));
    EXPECT_FALSE(Exists("\\a.dat"));
    EXPECT_EQ(ReadFile(OnCard(L"b.dat")), "one");
    EXPECT_NE(::GetFileAttributesW(OnCard(L"b.dat").c_str()) & FILE_ATTRIBUTE_READONLY, 0u);
}

TEST_F(MovingToAnotherVolume, FileThatCannotBeDeleted_StaysWhereItIs) {
    Write("\\a.dat", "one");
    const HANDLE reader = ::CreateFileW(OnDevice("\\a.dat").c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                        OPEN_EXISTING, 0, nullptr);
    EXPECT_FALSE(Move("\\a.dat", L"b.dat"));
    ::CloseHandle(reader);
    EXPECT_EQ(BytesOf("\\a.dat"), "one");
    EXPECT_EQ(FilesOnCard(), 0);
}

TEST_F(MovingToAnotherVolume, Folder_IsRefused) {
    Write("\\dir\\a.dat", "one");
    EXPECT_FALSE(Move("\\dir", L"dir"));
    EXPECT_EQ(BytesOf("\\dir\\a.dat"), "one");
    EXPECT_EQ(FilesOnCard(), 0);
}

TEST_F(MovingToAnotherVolume, ExistingTarget_IsNeverReplaced) {
    Write("\\a.dat", "one");
    WriteFile(OnCard(L"b.dat"), "two");
    EXPECT_FALSE(Move("\\a.dat", L"b.dat"));
    EXPECT_EQ(BytesOf("\\a.dat"), "one");
    EXPECT_EQ(ReadFile(OnCard(L"b.dat")), "two");
    EXPECT_EQ(FilesOnCard(), 1);
}

}  // namespace
