// Exchanging a file's content in one step, and temporary files.
#include <new>

#include <gtest/gtest.h>

#include "tests/platform/replace_file_fixture.h"

namespace fs = std::filesystem;
using platform::ReplaceFileContent;

namespace {

TEST_F(ReplacingContent, EmptyAndLargeContent_AreWrittenWhole) {
    const std::string large(5000000, 'x');
    EXPECT_TRUE(ReplaceFileContent(L"\\a.gpx", large));
    EXPECT_EQ(BytesOf("\\a.gpx"), large);
    EXPECT_TRUE(ReplaceFileContent(L"\\a.gpx", ""));
    EXPECT_EQ(BytesOf("\\a.gpx"), "");
}

TEST_F(ReplacingContent, Pieces_AreWrittenOneBehindTheOther) {
    const std::string large(1000000, 'x');
    EXPECT_TRUE(ReplaceFileContent(L"\\a.gpx", [&](const platform::TakePiece& take) {
        for (const std::string& piece : {std::string("one "), std::string(), large, std::string("\0two", 4)})
            EXPECT_TRUE(take(piece));
    }));
    EXPECT_EQ(BytesOf("\\a.gpx"), "one " + large + std::string("\0two", 4));
    EXPECT_TRUE(ReplaceFileContent(L"\\a.gpx", [](const platform::TakePiece&) {}));
    EXPECT_EQ(BytesOf("\\a.gpx"), "");
}

TEST_F(ReplacingContent, ContentThatThrows_LeavesTheOldContentAndNothingElse) {
    Write("\\Track\\a.gpx", "old");
    const auto breaksOff = [](const platform::TakePiece& take) {
        take("new");
        throw std::bad_alloc();
    };
    EXPECT_THROW(ReplaceFileContent(L"\\Track\\a.gpx", breaksOff), std::bad_alloc);
    EXPECT_THROW(ReplaceFileContent(L"\\Track\\new.gpx", breaksOff), std::bad_alloc);
    EXPECT_EQ(BytesOf("\\Track\\a.gpx"), "old");
    EXPECT_EQ(FileCount("\\Track"), 1);
}

TEST_F(ReplacingContent, WhatIsNoFile_IsRefused) {
    fs::create_directories(OnDisk("\\dir"));
    for (const wchar_t* path :
         {L"\\dir", L"\\dir\\", L"\\", L"", L"\\no\\a.gpx", L"\\*.gpx", L"\\a<b", L"\\a.gpx\\"})
        EXPECT_FALSE(ReplaceFileContent(path, "new"));
    EXPECT_FALSE(ReplaceFileContent(nullptr, "new"));
    EXPECT_EQ(FileCount("\\dir"), 0);
    EXPECT_EQ(FileCount("\\"), 2);
}

TEST_F(ReplacingContent, ReadOnlyFile_IsRefused) {
    Write("\\a.gpx", "old");
    MakeReadOnly("\\a.gpx");
    EXPECT_FALSE(ReplaceFileContent(L"\\a.gpx", "new"));
    EXPECT_EQ(BytesOf("\\a.gpx"), "old");
}

// ---- temporary files

TEST_F(TemporaryFiles, NewFile_IsWrittenReadAndDeleted) {
    std::string path;
    std::FILE* stream = platform::CreateTemporaryFile(path);
    ASSERT_NE(stream, nullptr);
    EXPECT_EQ(fs::path(path).parent_path(), m_root.Path());
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
    SetEnvironment(kTemporaryFolderVariable, ToUtf8(m_root.Path() / "no"));
    std::string path = "unchanged";
    EXPECT_EQ(platform::CreateTemporaryFile(path), nullptr);
    EXPECT_EQ(path, "unchanged");
}

}  // namespace
