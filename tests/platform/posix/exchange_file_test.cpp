// A file that may be written in a folder that may not, and one that is saved at the same time.
#include <fstream>
#include <set>

#include <gtest/gtest.h>

#include "tests/platform/exchange_file_fixture.h"
#include "tests/platform/file_names_fixture.h"
#include "tests/platform/posix/changing_places.h"
#include "tests/support/machine.h"
#include "tests/support/meanwhile.h"
#include "tests/support/posix/ordinary_user.h"

TEST_F(ExchangeFile, ClosedFolder_LeavesEvenAWritableFileAsItIs) {
    Write("\\Track\\a.gpx", "old");
    std::filesystem::permissions(m_root.Path(), std::filesystem::perms(0755));
    std::filesystem::permissions(OnDisk("\\Track"), std::filesystem::perms(0555));
    std::filesystem::permissions(OnDisk("\\Track\\a.gpx"), std::filesystem::perms(0666));
    {
        const AsOrdinaryUser user;
        EXPECT_FALSE(Exchange(Read(), "new"));
        EXPECT_EQ(BytesOf("\\Track\\a.gpx"), "old");
        EXPECT_TRUE(platform::ReplaceFileContent(L"\\Track\\a.gpx", "direct"));
    }
    EXPECT_EQ(BytesOf("\\Track\\a.gpx"), "direct");
    std::filesystem::permissions(OnDisk("\\Track"), std::filesystem::perms(0755));
}

// So long a content that the other comes while it is written.
TEST_F(ExchangeFile, FileSavedWhileItIsExchanged_StaysAsItWasSaved) {
    if (!FilesCanChangePlaces()) GTEST_SKIP() << "files cannot change places here";
    Write("\\Track\\a.gpx", "old");
    const platform::FileState read = Read();
    WithOther(
        OnDisk("\\Track"), [&] { Exchange(read, std::string(8'000'000, 'x')); },
        [] { EXPECT_TRUE(platform::ReplaceFileContent(L"\\Track\\a.gpx", "saved")); });
    EXPECT_TRUE(BytesOf("\\Track\\a.gpx") == "saved") << "the content exchanged for is there";
    EXPECT_EQ(FilesIn("\\Track"), 1u);
}

// Between the last look and the exchange somebody saves the file, and then the storage fails.
TEST_F(ExchangeFile, FileSavedMeanwhileThatCannotGoBack_IsKeptBeside) {
    if (!FilesCanChangePlaces()) GTEST_SKIP() << "files cannot change places here";
    Write("\\Track\\a.gpx", "old");
    const platform::FileState read = Read();
    static int calls;
    static std::filesystem::path file;
    calls = 0;
    file = OnDisk("\\Track\\a.gpx");
    g_pMayChangePlaces = [] {
        if (++calls == 1) std::ofstream(file) << "saved";
        return calls == 1;
    };
    EXPECT_FALSE(Exchange(read, "new"));
    g_pMayChangePlaces = nullptr;
    EXPECT_EQ(calls, 2);
    std::set<std::string> contents;
    for (const auto& entry : std::filesystem::directory_iterator(OnDisk("\\Track")))
        contents.insert(ReadFile(entry.path()));
    EXPECT_EQ(contents, (std::set<std::string>{"new", "saved"}));
}

// There the look before the exchange is all there is.
TEST_F(ExchangeFile, FileSystemWhereFilesCannotChangePlaces_DoesItByRenaming) {
    for (const WayOfMoving& way : WaysOfMoving()) {
        Write("\\Track\\a.gpx", "old");
        const platform::FileState read = Read();
        way.take();
        EXPECT_TRUE(Exchange(read, "new")) << way.name;
        EXPECT_FALSE(Exchange(read, "newer")) << way.name;
        EXPECT_EQ(BytesOf("\\Track\\a.gpx"), "new") << way.name;
        EXPECT_EQ(FilesIn("\\Track"), 1u) << way.name;
    }
    WaysOfMoving().front().take();
}
