// What an import takes from the children of the gpx element into the metadata.
#include "platform/device.h"
#include "tests/gpx/gpx_fixture.h"

class GpxMetadataImport : public GpxTest {
 protected:
    const GpxMetadata& Read(const std::string& children, const std::string& version = "1.0") {
        EXPECT_TRUE(Import(Document(children, version), m_imported));
        return m_imported.metadata;
    }

    Imported m_imported;
};

TEST_F(GpxMetadataImport, EveryTextAndBound_IsRead) {
    const GpxMetadata& metadata = Read(
        "<name>N</name><desc>D</desc><author>A</author><email>E</email><url>U</url><urlname>UN</urlname>"
        "<time>T</time><keywords>K</keywords><bounds minlat=\"1.5\" minlon=\"-2.5\" maxlat=\"3.5\" "
        "maxlon=\"4e1\"/>");
    EXPECT_STREQ(metadata.name, "N");
    EXPECT_STREQ(metadata.desc, "D");
    EXPECT_STREQ(metadata.author, "A");
    EXPECT_STREQ(metadata.email, "E");
    EXPECT_STREQ(metadata.url, "U");
    EXPECT_STREQ(metadata.urlname, "UN");
    EXPECT_STREQ(metadata.time, "T");
    EXPECT_STREQ(metadata.keywords, "K");
    EXPECT_EQ(metadata.minlat, 1.5F);
    EXPECT_EQ(metadata.minlon, -2.5F);
    EXPECT_EQ(metadata.maxlat, 3.5F);
    EXPECT_EQ(metadata.maxlon, 40.0F);
}

TEST_F(GpxMetadataImport, AbsentOrEmptyElement_KeepsWhatTheFieldHeld) {
    Put(m_imported.metadata.name, "old name");
    Put(m_imported.metadata.desc, "old desc");
    m_imported.metadata.minlat = 7;
    Read("<name/><keywords></keywords><bounds maxlat=\"1\"/>");
    EXPECT_STREQ(m_imported.metadata.name, "old name");
    EXPECT_STREQ(m_imported.metadata.desc, "old desc");
    EXPECT_EQ(m_imported.metadata.minlat, 7);
    EXPECT_EQ(m_imported.metadata.maxlat, 1);
}

TEST_F(GpxMetadataImport, ShorterText_LeavesNothingOfTheOldOne) {
    Put(m_imported.metadata.name, "a long old name");
    EXPECT_STREQ(Read("<name>b</name>").name, "b");
    EXPECT_EQ(std::string(m_imported.metadata.name, 65), "b" + std::string(64, '\0'));
}

TEST_F(GpxMetadataImport, LongText_IsCutAt64Bytes) {
    EXPECT_EQ(Read("<desc>" + std::string(64, 'd') + "</desc>").desc, std::string(64, 'd'));
    EXPECT_EQ(Read("<desc>" + std::string(100000, 'e') + "</desc>").desc, std::string(64, 'e'));
}

TEST_F(GpxMetadataImport, Cut_NeverSplitsADoubleByteCharacter) {
    std::string utf8 = "a", ansi = "a";
    for (int i = 0; i < 40; ++i) utf8 += "\u957F";
    for (int i = 0; i < 31; ++i) ansi += "\xB3\xA4";
    EXPECT_EQ(Read("<name>" + utf8 + "</name>").name, ansi);
}

// The byte behind the cut belongs to an older, longer text otherwise.
TEST_F(GpxMetadataImport, CutTextOverAnOldOne_IsTerminated) {
    Put(m_imported.metadata.name, std::string(64, 'x'));
    std::string utf8 = "a";
    for (int i = 0; i < 40; ++i) utf8 += "\u957F";
    Read("<name>" + utf8 + "</name>");
    EXPECT_EQ(std::strlen(m_imported.metadata.name), 63u);
}

TEST_F(GpxMetadataImport, Text_IsConvertedToTheAnsiCodePage) {
    SetAnsiCodePage(1252);
    EXPECT_STREQ(Read("<name>\u00FC\u957F</name>").name, "\xFC?");
}

TEST_F(GpxMetadataImport, EntitiesAndCharacterReferences_AreTranslated) {
    EXPECT_STREQ(Read("<name>&lt;&gt;&amp;&apos;&quot;&#65;&#x42;&other;</name>").name, "<>&'\"AB&other;");
}

TEST_F(GpxMetadataImport, WhiteSpace_IsKept) { EXPECT_STREQ(Read("<name> a  b\t</name>").name, " a  b\t"); }

TEST_F(GpxMetadataImport, WhiteSpaceAlone_IsNoValue) {
    Put(m_imported.metadata.name, "old");
    EXPECT_STREQ(Read("<name>  \r\n </name>").name, "old");
}

TEST_F(GpxMetadataImport, CdataSection_IsText) {
    EXPECT_STREQ(Read("<name><![CDATA[a < b & c]]></name>").name, "a < b & c");
    EXPECT_STREQ(Read("<name>\r\n  <![CDATA[d]]>\r\n</name>").name, "d");
}

TEST_F(GpxMetadataImport, CdataSectionsAndTextBetween_AreJoined) {
    EXPECT_STREQ(Read("<name>a &amp; <![CDATA[b]]> c<![CDATA[]]]]><![CDATA[>d]]></name>").name, "a & b c]]>d");
}

TEST_F(GpxMetadataImport, CommentInText_EndsIt) { EXPECT_STREQ(Read("<name>a<!-- x -->b</name>").name, "a"); }

TEST_F(GpxMetadataImport, FirstElementOfAName_IsTheOneThatCounts) {
    EXPECT_STREQ(Read("<name>1</name><name>2</name>").name, "1");
    Put(m_imported.metadata.desc, "old");
    EXPECT_STREQ(Read("<desc/><desc>2</desc>").desc, "old");
}

// GPX 1.1 has them there; they are looked for directly under gpx all the same.
TEST_F(GpxMetadataImport, TextsWithinMetadata_AreNotRead) {
    const GpxMetadata& metadata =
        Read("<metadata><name>N</name><author><name>A</name></author></metadata>", "1.1");
    EXPECT_STREQ(metadata.name, "");
    EXPECT_STREQ(metadata.author, "");
}

TEST_F(GpxMetadataImport, TextsWithinTheTrack_AreNotRead) {
    EXPECT_STREQ(Read("<trk><name>T</name></trk>").name, "");
}

TEST_F(GpxMetadataImport, AuthorOfGpx11_IsItsName) {
    EXPECT_STREQ(Read("<author>text<name>Jo</name></author>", "1.1").author, "Jo");
    EXPECT_STREQ(Read("<author>Jane</author>", "1.1").author, "Jo");
}

TEST_F(GpxMetadataImport, AuthorOfGpx10_IsItsText) {
    EXPECT_STREQ(Read("<author>text<name>Jo</name></author>", "1.0").author, "text");
}

TEST_F(GpxMetadataImport, VersionThatIsABeginning_CountsAsThatVersion) {
    for (const char* version : {"", "1", "1.", "1.0"}) {
        Put(m_imported.metadata.author, "");
        EXPECT_STREQ(Read("<author>A<name>B</name></author>", version).author, "A") << version;
    }
}

TEST_F(GpxMetadataImport, MissingVersion_CountsAsGpx10) {
    EXPECT_TRUE(Import("<gpx><author>A</author></gpx>", m_imported));
    EXPECT_STREQ(m_imported.metadata.author, "A");
}

TEST_F(GpxMetadataImport, AnyOtherVersion_HasNeitherAuthorNorEmail) {
    for (const char* version : {"2.0", "1.2", "1.00", "1.0 ", " 1.0", "1.0.0", "1.10", "x"}) {
        const GpxMetadata& metadata =
            Read("<author>A<name>B</name></author><email id=\"a\" domain=\"b\">E</email>", version);
        EXPECT_STREQ(metadata.author, "") << version;
        EXPECT_STREQ(metadata.email, "") << version;
    }
}

// Seven bytes of it are compared.
TEST_F(GpxMetadataImport, LongVersion_IsCut) {
    EXPECT_STREQ(Read("<author>A</author>", "1.0      x").author, "");
}

TEST_F(GpxMetadataImport, EmailOfGpx11_IsJoinedLiterally) {
    EXPECT_STREQ(Read("<email id=\"jo\" domain=\"example\"/>", "1.1").email, "jo%s@%sexample");
}

TEST_F(GpxMetadataImport, EmailOfGpx11_IsNoFormat) {
    EXPECT_STREQ(Read("<email id=\"%n%s\" domain=\"%d\"/>", "1.1").email, "%n%s%s@%s%d");
}

TEST_F(GpxMetadataImport, EmailPartsOfGpx11_AreCut) {
    const std::string email =
        Read("<email id=\"" + std::string(40, 'i') + "\" domain=\"" + std::string(70, 'd') + "\"/>", "1.1")
            .email;
    EXPECT_EQ(email, std::string(31, 'i') + "%s@%s" + std::string(64 - 31 - 5, 'd'));
}

TEST_F(GpxMetadataImport, LongDomainOfGpx11_IsCutAt63Bytes) {
    EXPECT_EQ(Read("<email id=\"\" domain=\"" + std::string(62, 'd') + "ef\"/>", "1.1").email,
              "%s@%s" + std::string(59, 'd'));
}

// The second conversion takes the ANSI bytes for UTF-8.
TEST_F(GpxMetadataImport, EmailOfGpx11_IsConvertedTwice) {
    SetAnsiCodePage(1252);
    EXPECT_STREQ(Read("<email id=\"j\u00F6\" domain=\"x\"/>", "1.1").email, "j?%s@%sx");
}

TEST_F(GpxMetadataImport, EmailOfGpx11WithOnePart_TakesTheOtherForEmpty) {
    EXPECT_STREQ(Read("<email id=\"jo\"/>", "1.1").email, "jo%s@%s");
    EXPECT_STREQ(Read("<email domain=\"example\"/>", "1.1").email, "%s@%sexample");
}

TEST_F(GpxMetadataImport, EmailOfGpx11WithoutParts_KeepsWhatTheFieldHeld) {
    Put(m_imported.metadata.email, "old");
    EXPECT_STREQ(Read("<email>jo@example.org</email>", "1.1").email, "old");
}

TEST_F(GpxMetadataImport, EmailOfGpx10_IsItsText) {
    EXPECT_STREQ(Read("<email id=\"a\" domain=\"b\">jo@example.org</email>", "1.0").email, "jo@example.org");
}

TEST_F(GpxMetadataImport, BoundsThatAreNoNumbers_AreZero) {
    m_imported.metadata.minlat = 7;
    EXPECT_EQ(Read("<bounds minlat=\"x\" maxlat=\"1e99\"/>").minlat, 0.0F);
    EXPECT_TRUE(m_imported.metadata.maxlat > 3e38F);
}
