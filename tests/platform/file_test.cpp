// Streams on device paths: opening modes, what is refused, and bringing content to storage.
#include "platform/file.h"
#include "platform/device.h"
#include "tests/platform/stream_fixture.h"

namespace fs = std::filesystem;

namespace {

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

TEST_F(Stream, Wildcards_AreRefused) {
    Write("\\a.dat", "one");
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
    MakeReadOnly("\\a.dat");
    EXPECT_TRUE(Opens(L"\\a.dat", L"rb"));
    for (const wchar_t* mode : {L"rb+", L"wb", L"ab"}) EXPECT_EQ(Open(L"\\a.dat", mode), nullptr);
    EXPECT_EQ(BytesOf("\\a.dat"), "one");
}

// Whoever reads a track does not keep the user from renaming or deleting it.
TEST_F(Stream, FileThatIsRead_CanBeMovedAndDeleted) {
    Write("\\a.dat", "one");
    std::FILE* stream = Open(L"\\a.dat", L"rb");
    ASSERT_NE(stream, nullptr);
    EXPECT_TRUE(platform::MoveFileW(L"\\a.dat", L"\\b.dat"));
    EXPECT_TRUE(platform::DeleteFileW(L"\\b.dat"));
    EXPECT_EQ(Rest(stream), "one");
    platform::fclose(stream);
    EXPECT_FALSE(Exists("\\a.dat") || Exists("\\b.dat"));
}

// ---- bringing content to storage

TEST_F(Stream, Flush_PutsTheContentIntoTheFile) {
    for (const wchar_t* mode : {L"wb+", L"wbc+", L"rbc+"}) {
        std::FILE* stream = Open(L"\\a.dat", mode);
        ASSERT_NE(stream, nullptr);
        Put(stream, "abc");
        EXPECT_EQ(platform::fflush(stream), 0);
        EXPECT_EQ(BytesOf("\\a.dat"), "abc");
        platform::fclose(stream);
    }
}

TEST_F(Stream, CutBack_ForgetsWhatIsNotInTheFileYet) {
    Write("\\a.dat", "abcdef");
    std::FILE* stream = Open(L"\\a.dat", L"rbc+");
    ASSERT_NE(stream, nullptr);
    Put(stream, "UVWXYZ");
    EXPECT_TRUE(platform::CutBack(stream, 3));
    EXPECT_EQ(platform::fflush(stream), 0);
    EXPECT_EQ(BytesOf("\\a.dat"), "abc");
    std::fseek(stream, 3, SEEK_SET);
    Put(stream, "on");
    platform::fclose(stream);
    EXPECT_EQ(BytesOf("\\a.dat"), "abcon");
}

TEST_F(Stream, Null_IsHarmless) {
    EXPECT_EQ(platform::fclose(nullptr), EOF);
    EXPECT_EQ(platform::fflush(nullptr), EOF);
}

}  // namespace
