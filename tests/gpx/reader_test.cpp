// The three ways of importing a document: which file is taken, what is needed, what is filled. What is filled
// in is in metadata_test.cpp, track_header_test.cpp and points_test.cpp.
#include "tests/gpx/gpx_fixture.h"

namespace {

constexpr ImportWay kWhole = &CGPXTransmit::ImportGpx;
constexpr ImportWay kHead = &CGPXTransmit::ImportGpxHead;
constexpr ImportWay kPoints = &CGPXTransmit::ImportGpxPoints;
constexpr ImportWay kWays[] = {kWhole, kHead, kPoints};

const std::string kTwoSegments = Document(
    "<name>M</name><trk><name>T</name><number>7</number><trkseg><trkpt lat=\"1\" lon=\"1\"/>"
    "<trkpt lat=\"2\" lon=\"2\"/><trkpt lat=\"3\" lon=\"3\"/></trkseg><trkseg><trkpt lat=\"4\" lon=\"4\"/>"
    "<trkpt lat=\"5\" lon=\"5\"/><trkpt lat=\"6\" lon=\"6\"/><trkpt lat=\"7\" lon=\"7\"/></trkseg></trk>"
    "<trk><name>second</name><trkseg><trkpt lat=\"8\" lon=\"8\"/></trkseg></trk>");

}  // namespace

class GpxReader : public GpxTest {
 protected:
    bool IsTaken(const std::wstring& path) {
        Imported imported;
        return ImportFile(path, imported);
    }
};

TEST_F(GpxReader, ExtensionInAnyLetterCase_IsTaken) {
    for (const char* name : {"\\Track\\track.Gpx", "\\Track\\b.GPX", "\\Track\\c.gpx", "\\Track\\d.x.gPX"})
        Write(name, kTwoSegments);
    EXPECT_TRUE(IsTaken(L"\\Track\\track.Gpx") && IsTaken(L"\\Track\\b.GPX") && IsTaken(L"\\Track\\c.gpx") &&
                IsTaken(L"\\Track\\d.x.gPX"));
}

TEST_F(GpxReader, AnyOtherExtension_IsRefused) {
    for (const char* name : {"\\Track\\track.xml", "\\Track\\a.gpxx", "\\Track\\a.gp", "\\Track\\agpx",
                             "\\Track\\a.gpx.bak", "\\Track\\a.", "\\x.gpx\\a", "\\x.gpx\\b.txt"})
        Write(name, kTwoSegments);
    for (const wchar_t* path :
         {L"\\Track\\track.xml", L"\\Track\\a.gpxx", L"\\Track\\a.gp", L"\\Track\\agpx", L"\\Track\\a.gpx.bak",
          L"\\Track\\a.", L"\\x.gpx\\a", L"\\x.gpx\\b.txt", L"gpx", L""})
        EXPECT_FALSE(IsTaken(path));
}

// Its lines would be rewritten if it were opened.
TEST_F(GpxReader, OtherExtension_IsRefusedUnopened) {
    Write("\\Track\\track.xml", "<gpx>\n</gpx>\n");
    for (const ImportWay way : kWays) {
        Imported imported;
        EXPECT_FALSE(ImportFile(L"\\Track\\track.xml", imported, way));
        EXPECT_EQ(imported.encoding, 0);
    }
    EXPECT_EQ(BytesOf("\\Track\\track.xml"), "<gpx>\n</gpx>\n");
}

TEST_F(GpxReader, MissingFile_IsRefusedAndNotCreated) {
    std::filesystem::create_directories(OnDisk("\\Track"));
    EXPECT_FALSE(IsTaken(L"\\Track\\missing.gpx"));
    EXPECT_FALSE(IsTaken(L"\\Nowhere\\missing.gpx"));
    EXPECT_TRUE(std::filesystem::is_empty(OnDisk("\\Track")));
}

TEST_F(GpxReader, WholeImport_FillsHeaderAndPointsOfAllSegmentsOfTheFirstTrack) {
    Imported imported;
    EXPECT_TRUE(Import(kTwoSegments, imported, kWhole));
    EXPECT_STREQ(imported.info.name, "T");
    EXPECT_EQ(imported.info.number, 7);
    ASSERT_EQ(imported.points.size(), 7u);
    for (std::size_t i = 0; i < 7; ++i) EXPECT_EQ(imported.points[i].dLatitude, static_cast<double>(i + 1));
}

TEST_F(GpxReader, HeadImport_FillsTheHeaderAndNoPoint) {
    Imported imported;
    EXPECT_TRUE(Import(kTwoSegments, imported, kHead));
    EXPECT_STREQ(imported.info.name, "T");
    EXPECT_TRUE(imported.points.empty());
}

TEST_F(GpxReader, PointsImport_FillsThePointsOfTheFirstSegmentAndNoHeader) {
    Imported imported;
    EXPECT_TRUE(Import(kTwoSegments, imported, kPoints));
    EXPECT_STREQ(imported.info.name, "");
    EXPECT_EQ(imported.info.number, 0);
    EXPECT_EQ(imported.points.size(), 3u);
}

TEST_F(GpxReader, EveryImport_FillsTheMetadata) {
    for (const ImportWay way : kWays) {
        Imported imported;
        EXPECT_TRUE(Import(kTwoSegments, imported, way));
        EXPECT_STREQ(imported.metadata.name, "M");
    }
}

TEST_F(GpxReader, Points_AreAppendedToThoseThatAreThere) {
    Imported imported;
    imported.points.push_back(At(-1, -1));
    EXPECT_TRUE(Import(kTwoSegments, imported, kWhole));
    ASSERT_EQ(imported.points.size(), 8u);
    EXPECT_EQ(imported.points.front().dLatitude, -1);
    EXPECT_EQ(imported.points.back().dLatitude, 7);
}

TEST_F(GpxReader, NoGpxElement_IsRefusedInEveryWay) {
    for (const char* document : {"", " ", "<kml><trk/></kml>", "<g:gpx><g:trk/></g:gpx>", "<GPX/>",
                                 "<a><gpx/></a>", "<?xml version=\"1.0\"?>"})
        for (const ImportWay way : kWays) {
            Imported imported;
            EXPECT_FALSE(Import(document, imported, way)) << document;
        }
}

TEST_F(GpxReader, GpxElementAlone_IsEnoughForTheWholeImportOnly) {
    for (const char* children :
         {"", "<trk/>", "<trk><name>T</name></trk>", "<trk><trkseg/></trk>", "<trk><trkseg></trkseg></trk>",
          "<wpt lat=\"1\" lon=\"2\"/>", "<trk/><trk><trkseg><trkpt lat=\"1\" lon=\"2\"/></trkseg></trk>"}) {
        Imported whole, head, points;
        EXPECT_TRUE(Import(Document(children), whole, kWhole)) << children;
        EXPECT_FALSE(Import(Document(children), head, kHead)) << children;
        EXPECT_FALSE(Import(Document(children), points, kPoints)) << children;
        EXPECT_TRUE(whole.points.empty());
    }
}

// Points in a later segment do not count.
TEST_F(GpxReader, EmptyFirstSegment_IsRefusedByHeadAndPointsImport) {
    const std::string document =
        Document("<trk><name>T</name><trkseg/><trkseg><trkpt lat=\"1\" lon=\"2\"/></trkseg></trk>");
    Imported whole, head, points;
    EXPECT_TRUE(Import(document, whole, kWhole));
    EXPECT_EQ(whole.points.size(), 1u);
    EXPECT_FALSE(Import(document, head, kHead));
    EXPECT_FALSE(Import(document, points, kPoints));
    EXPECT_TRUE(points.points.empty());
}

TEST_F(GpxReader, IncompleteChain_LeavesTheHeaderButFillsTheMetadata) {
    Imported imported;
    Put(imported.info.name, "old");
    imported.info.number = 5;
    EXPECT_FALSE(Import(Document("<name>M</name><trk><name>T</name><number>7</number><trkseg/></trk>"),
                        imported, kHead));
    EXPECT_STREQ(imported.info.name, "old");
    EXPECT_EQ(imported.info.number, 5);
    EXPECT_STREQ(imported.metadata.name, "M");
}

TEST_F(GpxReader, MalformedDocument_IsRefusedAndFillsNothing) {
    for (const char* children :
         {"<trk", "<trk>", "<trk><trkseg>", "</trk></trk>", "<name a=b/>", "<name a='1/>", "<!-- ", "<![CDATA[",
          "<?pi", "<name>&#0</name>", "<trk><trkseg><trkpt lat=\"1\" lon=\"2\"><ele></trkpt></trkseg></trk>",
          "<trk><trkseg><trkpt lat=\"1\" lon=\"2\">&#x110000;</trkpt></trkseg></trk>", "<wpt><name></wpt>"})
        for (const ImportWay way : kWays) {
            Imported imported;
            EXPECT_FALSE(Import(Document("<name>M</name>" + std::string(children)), imported, way)) << children;
            EXPECT_STREQ(imported.metadata.name, "");
            EXPECT_TRUE(imported.points.empty());
        }
}

TEST_F(GpxReader, TextOutsideTheRoot_IsRefused) {
    Imported before, after;
    EXPECT_FALSE(Import("x<gpx/>", before));
    EXPECT_FALSE(Import("<gpx/>x", after));
}

// A header is read without looking at most points, but not without parsing them.
TEST_F(GpxReader, ErrorBehindTheFirstPoint_IsRefusedByEveryImport) {
    for (const ImportWay way : kWays) {
        Imported imported;
        EXPECT_FALSE(
            Import(DocumentOfPoints("<trkpt lat=\"1\" lon=\"2\"/><trkpt lat=\"3\" lon=4/>"), imported, way));
        EXPECT_TRUE(imported.points.empty());
    }
}

TEST_F(GpxReader, MismatchedEndTags_AreNotLookedAt) {
    Imported imported;
    EXPECT_TRUE(Import(Document("<trk><trkseg><trkpt lat=\"1\" lon=\"2\"></x></y></z>"), imported));
    EXPECT_EQ(imported.points.size(), 1u);
}

TEST_F(GpxReader, FirstGpxElement_IsTheOneThatIsRead) {
    Imported imported;
    EXPECT_TRUE(
        Import("<a/><gpx><name>1</name><trk><trkseg><trkpt lat=\"1\" lon=\"1\"/></trkseg></trk></gpx>"
               "<gpx><name>2</name><trk><trkseg><trkpt lat=\"2\" lon=\"2\"/></trkseg></trk></gpx>",
               imported));
    EXPECT_STREQ(imported.metadata.name, "1");
    ASSERT_EQ(imported.points.size(), 1u);
    EXPECT_EQ(imported.points[0].dLatitude, 1);
}

TEST_F(GpxReader, ElementsBehindThePoints_AreRead) {
    Imported imported;
    EXPECT_TRUE(
        Import(Document("<trk><trkseg><trkpt lat=\"1\" lon=\"1\"/></trkseg><name>T</name></trk><name>M</name>"),
               imported));
    EXPECT_STREQ(imported.info.name, "T");
    EXPECT_STREQ(imported.metadata.name, "M");
}

TEST_F(GpxReader, RefusedImport_StillKeepsTheTrackRecord) {
    m_info.number = 42;
    std::filesystem::create_directories(OnDisk("\\Track"));
    CGPXTransmit transmit;
    EXPECT_FALSE(transmit.ImportGpx(L"\\Track\\a.xml", &m_info));
    EXPECT_TRUE(transmit.ExportGpx(L"\\Track\\a.gpx"));
    EXPECT_NE(BytesOf("\\Track\\a.gpx").find("<number>42</number>"), std::string::npos);
}

TEST_F(GpxReader, OneObject_ImportsAgainAfterARefusal) {
    Write("\\Track\\bad.gpx", "<gpx>");
    Write("\\Track\\good.gpx", kTwoSegments);
    CGPXTransmit transmit;
    EXPECT_FALSE(transmit.ImportGpx(L"\\Track\\bad.gpx", &m_info));
    EXPECT_TRUE(transmit.ImportGpx(L"\\Track\\good.gpx", &m_info));
    EXPECT_EQ(m_points.size(), 7u);
}

TEST_F(GpxReader, ImportedTrackAndMetadata_AreWhatIsExportedNext) {
    Write("\\Track\\a.gpx", kTwoSegments);
    CGPXTransmit transmit;
    EXPECT_TRUE(transmit.ImportGpx(L"\\Track\\a.gpx", &m_info) && transmit.ExportGpx(L"\\Track\\b.gpx"));
    Imported again;
    EXPECT_TRUE(ImportFile(L"\\Track\\b.gpx", again));
    EXPECT_EQ(again.points, m_points);
    EXPECT_STREQ(again.metadata.name, "M");
}

TEST_F(GpxReader, ChinesePath_IsRead) {
    Write("\\Track\\\u957F\u57CE.gpx", kTwoSegments);
    EXPECT_TRUE(IsTaken(L"\\Track\\\u957F\u57CE.gpx"));
}

// The file that is parsed is named in the ANSI code page.
TEST_F(GpxReader, PathThatTheCodePageLacks_IsRefused) {
    Write("\\Track\\\u0E01.gpx", kTwoSegments);
    EXPECT_FALSE(IsTaken(L"\\Track\\\u0E01.gpx"));
}
