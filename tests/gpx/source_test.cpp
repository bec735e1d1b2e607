// What is done to a file before it is parsed: its line ends and its encoding.
#include "platform/device.h"
#include "platform/file.h"
#include "tests/gpx/source_fixture.h"
#include "tests/support/machine.h"

TEST_F(GpxLineEnds, LineFeeds_BecomeCrLfInTheFile) {
    EXPECT_EQ(Rewritten("<gpx>\n<trk/>\n</gpx>\n"), "<gpx>\r\n<trk/>\r\n</gpx>\r\n");
}

TEST_F(GpxLineEnds, RewrittenText_IsWhatIsParsed) {
    Write("\\Track\\a.gpx", "<gpx>\n</gpx>");
    EXPECT_EQ(Parsed(), "<gpx>\r\n</gpx>\r\n");
    EXPECT_EQ(BytesOf("\\Track\\a.gpx"), "<gpx>\r\n</gpx>\r\n");
}

TEST_F(GpxLineEnds, EmptyLines_Vanish) { EXPECT_EQ(Rewritten("\n\na\n\n\nb\n\n"), "a\r\nb\r\n"); }

TEST_F(GpxLineEnds, LastLineWithoutLineFeed_GetsCrLf) { EXPECT_EQ(Rewritten("a\nb"), "a\r\nb\r\n"); }

TEST_F(GpxLineEnds, NothingButLineFeeds_LeavesNothing) { EXPECT_EQ(Rewritten("\n\n\n"), ""); }

TEST_F(GpxLineEnds, CrLfOrNoLineFeed_IsLeftAlone) {
    for (const char* text : {"", "a", "a\r\nb\r\n", "\r\n\r\na", "a\rb\r", "<gpx/>"})
        EXPECT_EQ(Rewritten(text), text);
}

TEST_F(GpxLineEnds, MixedLineEnds_KeepTheOldCarriageReturn) {
    EXPECT_EQ(Rewritten("a\r\nb\nc\r\n\r\nd"), "a\r\r\nb\r\nc\r\r\n\r\r\nd\r\n");
}

TEST_F(GpxLineEnds, FirstByteALineFeed_IsRewritten) { EXPECT_EQ(Rewritten("\na\r\n"), "a\r\r\n"); }

TEST_F(GpxLineEnds, LineFeedAmongTheFirst256Bytes_Decides) {
    EXPECT_EQ(Rewritten(std::string(255, 'a') + "\nb"), std::string(255, 'a') + "\r\nb\r\n");
    EXPECT_EQ(Rewritten(std::string(256, 'a') + "\nb"), std::string(256, 'a') + "\nb");
    EXPECT_EQ(Rewritten(std::string(254, 'a') + "\r\nb\n"), std::string(254, 'a') + "\r\nb\n");
    EXPECT_EQ(Rewritten(std::string(255, 'a') + "\r\nb\n"), std::string(255, 'a') + "\r\nb\n");
}

TEST_F(GpxLineEnds, CrLfFirst_LaterLineFeedAmongTheFirst256StillDecides) {
    EXPECT_EQ(Rewritten("a\r\nb\n"), "a\r\r\nb\r\n");
}

TEST_F(GpxLineEnds, SecondReading_ChangesNothing) {
    const std::string once = Rewritten("a\r\nb\n\nc");
    EXPECT_EQ(Rewritten(once), once);
}

TEST_F(GpxLineEnds, TextWithAZero_IsNeverRewritten) {
    const std::string utf16("<\0\n\0>\0", 6);
    EXPECT_EQ(Rewritten(utf16), utf16);
    const std::string late = "a\nb" + std::string(1000, 'c') + std::string(1, '\0');
    EXPECT_EQ(Rewritten(late), late);
}

TEST_F(GpxLineEnds, ByteOrderMark_StaysInFront) {
    EXPECT_EQ(Rewritten("\xEF\xBB\xBF<gpx>\n</gpx>\n"), "\xEF\xBB\xBF<gpx>\r\n</gpx>\r\n");
}

TEST_F(GpxLineEnds, Rights_AreKept) {
    Write("\\Track\\a.gpx", "a\n");
    std::filesystem::permissions(OnDisk("\\Track\\a.gpx"), std::filesystem::perms(0640));
    const auto rights = std::filesystem::status(OnDisk("\\Track\\a.gpx")).permissions();
    EXPECT_EQ(Parsed(), "a\r\n");
    EXPECT_EQ(std::filesystem::status(OnDisk("\\Track\\a.gpx")).permissions(), rights);
}

// Another name of the same file shows whether it was written over.
TEST_F(GpxLineEnds, File_IsExchangedNotWrittenOver) {
    Write("\\Track\\a.gpx", "a\n");
    std::filesystem::create_hard_link(OnDisk("\\Track\\a.gpx"), OnDisk("\\Track\\other"));
    EXPECT_EQ(Parsed(), "a\r\n");
    EXPECT_EQ(BytesOf("\\Track\\other"), "a\n");
    EXPECT_EQ(BytesOf("\\Track\\a.gpx"), "a\r\n");
}

TEST_F(GpxLineEnds, ReadOnlyFile_IsReadAsItIs) {
    Write("\\Track\\a.gpx", "a\n\nb");
    MakeReadOnly("\\Track\\a.gpx");
    EXPECT_EQ(Parsed(), "a\n\nb");
    EXPECT_EQ(BytesOf("\\Track\\a.gpx"), "a\n\nb");
}

TEST_F(GpxLineEnds, Folder_HoldsNothingElseAfterwards) {
    Rewritten("a\nb\n");
    const auto entries = std::filesystem::directory_iterator(OnDisk("\\Track"));
    EXPECT_EQ(std::distance(begin(entries), end(entries)), 1);
}

TEST_F(GpxLineEndsOfALongFile, DeletedMeanwhile_DoNotBringItBack) {
    ParseWhile([] { EXPECT_TRUE(platform::DeleteFileW(L"\\Track\\a.gpx")); });
    EXPECT_FALSE(Exists("\\Track\\a.gpx"));
}

TEST_F(GpxLineEndsOfALongFile, RenamedMeanwhile_DoNotBringTheOldNameBack) {
    ParseWhile([] { EXPECT_TRUE(platform::MoveFileW(L"\\Track\\a.gpx", L"\\Track\\b.gpx")); });
    EXPECT_FALSE(Exists("\\Track\\a.gpx"));
    EXPECT_TRUE(Exists("\\Track\\b.gpx"));
}

TEST_F(GpxEncoding, ByteOrderMarkOfUtf8_IsUtf8) {
    EXPECT_EQ(EncodingOf("\xEF\xBB\xBF<gpx/>"), 1);
    EXPECT_EQ(EncodingOf("\xEF\xBB\xBF"), 1);
    EXPECT_EQ(EncodingOf("\xEF\xBB<gpx/>"), 0);
}

TEST_F(GpxEncoding, DeclarationOfUtf8_IsUtf8) {
    EXPECT_EQ(EncodingOf("<?xml version=\"1.0\" encoding=\"UTF-8\"?><gpx/>"), 1);
    EXPECT_EQ(EncodingOf("<gpx creator='UTF-8'/>"), 1);
}

TEST_F(GpxEncoding, DeclarationInOtherLetterCase_IsAnsi) {
    EXPECT_EQ(EncodingOf("<?xml version=\"1.0\" encoding=\"utf-8\"?><gpx/>"), 0);
    EXPECT_EQ(EncodingOf("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><gpx/>"), 0);
}

TEST_F(GpxEncoding, First64Bytes_AreLookedAt) {
    EXPECT_EQ(EncodingOf(std::string(59, ' ') + "UTF-8"), 1);
    EXPECT_EQ(EncodingOf(std::string(60, ' ') + "UTF-8"), 0);
}

TEST_F(GpxEncoding, ShortFiles_AreAnsi) {
    for (const char* text : {"", "a", "ab", "abc", "UTF-"}) EXPECT_EQ(EncodingOf(text), 0) << text;
}

TEST_F(GpxEncoding, EachImport_SetsItAnew) {
    Imported imported;
    Write("\\Track\\a.gpx", "\xEF\xBB\xBF<gpx/>");
    ImportFile(L"\\Track\\a.gpx", imported);
    EXPECT_EQ(imported.encoding, 1);
    Write("\\Track\\a.gpx", "<gpx/>");
    ImportFile(L"\\Track\\a.gpx", imported);
    EXPECT_EQ(imported.encoding, 0);
}

namespace {

std::string LittleEndian(const std::u16string& text) {
    std::string bytes;
    for (const char16_t unit : text) (bytes += static_cast<char>(unit & 0xFF)) += static_cast<char>(unit >> 8);
    return bytes;
}

std::size_t TemporaryFiles() {
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::temp_directory_path()))
        count += entry.is_regular_file() ? 1 : 0;
    return count;
}

// The system's temporary folder for as long as this exists.
class OwnTemporaryFolder {
 public:
    const std::filesystem::path& Path() const { return m_folder.Path(); }

 private:
    TemporaryFolder m_folder;
    EnvironmentVariable m_variable{kTemporaryFolderVariable, ToUtf8(m_folder.Path())};
};

}  // namespace

TEST_F(GpxEncoding, LittleEndianUtf16_IsParsedInCodePage936) {
    Write("\\Track\\a.gpx", "\xFF\xFE" + LittleEndian(u"<gpx>\u957F\u00FC</gpx>"));
    EXPECT_EQ(Parsed(), "<gpx>\xB3\xA4\xA8\xB9</gpx>");
    EXPECT_EQ(m_encoding, 2);
}

TEST_F(GpxEncoding, Utf16_IsParsedInCodePage936WhateverTheAnsiCodePageIs) {
    SetAnsiCodePage(1252);
    Write("\\Track\\a.gpx", "\xFF\xFE" + LittleEndian(u"\u957F"));
    EXPECT_EQ(Parsed(), "\xB3\xA4");
}

TEST_F(GpxEncoding, Utf16WithLineFeeds_IsNotRewritten) {
    const std::string document = "\xFF\xFE" + LittleEndian(u"<gpx>\n</gpx>\n");
    EXPECT_EQ(Rewritten(document), document);
}

TEST_F(GpxEncoding, BigEndianUtf16_IsRefused) {
    Imported imported;
    std::string document = "\xFE\xFF";
    for (const char c : std::string("<gpx/>")) (document += '\0') += c;
    EXPECT_FALSE(Import(document, imported));
    EXPECT_EQ(imported.encoding, 2);
}

// The units are little-endian whatever the mark says.
TEST_F(GpxEncoding, BigEndianMarkOnLittleEndianText_IsRead) {
    Imported imported;
    EXPECT_TRUE(Import("\xFE\xFF" + LittleEndian(u"<gpx/>"), imported));
    EXPECT_EQ(imported.encoding, 2);
}

TEST_F(GpxEncoding, Utf16Text_EndsAtItsFirstZero) {
    Write("\\Track\\a.gpx", "\xFF\xFE" + LittleEndian(std::u16string(u"<a/>\0<b/>", 9)));
    EXPECT_EQ(Parsed(), "<a/>");
}

TEST_F(GpxEncoding, OddByteAtTheEndOfUtf16_IsLeftOut) {
    Write("\\Track\\a.gpx", "\xFF\xFE" + LittleEndian(u"<a/>") + "<");
    EXPECT_EQ(Parsed(), "<a/>");
}

TEST_F(GpxEncoding, MarkOfUtf16Alone_IsAnEmptyText) {
    Write("\\Track\\a.gpx", "\xFF\xFE");
    EXPECT_EQ(Parsed(), "");
    EXPECT_EQ(m_encoding, 2);
}

TEST_F(GpxEncoding, TemporaryFile_IsGoneWhetherTheDocumentIsReadOrRefused) {
    const OwnTemporaryFolder temporary;
    for (const auto& text : {u"<gpx/>", u"<gpx>", u"", u"\u957F"}) {
        Imported imported;
        Import("\xFF\xFE" + LittleEndian(text), imported);
        EXPECT_EQ(imported.encoding, 2);
        EXPECT_EQ(TemporaryFiles(), 0u);
    }
}

TEST_F(GpxEncoding, NoTemporaryFile_IsRefused) {
    const EnvironmentVariable missing(kTemporaryFolderVariable, ToUtf8(m_root.Path() / "nowhere"));
    Imported imported;
    EXPECT_FALSE(Import("\xFF\xFE" + LittleEndian(u"<gpx/>"), imported));
}

// Texts are taken for UTF-8 whatever the declaration and the detection say.
TEST_F(GpxEncoding, DeclaredIso8859_IsReadAsUtf8) {
    Imported imported;
    EXPECT_TRUE(
        Import("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><gpx><name>\u957F</name></gpx>", imported));
    EXPECT_STREQ(imported.metadata.name, "\xB3\xA4");
    EXPECT_EQ(imported.encoding, 0);
}

// Once in code page 936, they are no UTF-8 any more.
TEST_F(GpxEncoding, ChineseInUtf16_IsTakenForUtf8) {
    Imported imported;
    EXPECT_TRUE(Import("\xFF\xFE" + LittleEndian(u"<gpx><name>a\u957Fb</name></gpx>"), imported));
    EXPECT_STREQ(imported.metadata.name, "a??b");
}
