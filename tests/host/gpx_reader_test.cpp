// Tracks out of GPX documents by anybody: host/tracks/gpx_reader.h, over host/text/xml_reader.h and
// host/text/xml_encoding.h.
#include "host/tracks/gpx_reader.h"

#include <iconv.h>

#include <cmath>

#include <gtest/gtest.h>

#include "tests/host/commands.h"

namespace host {
namespace {

class GpxReader : public ::testing::Test {
 protected:
    const std::vector<GpxTrack>& Read(const std::string& bytes) {
        WriteFile(m_folder.Path() / "a.gpx", bytes);
        FileReader file((m_folder.Path() / "a.gpx").string());
        m_tracks.clear();
        m_outcome = ReadGpx(file, [this](const GpxTrack& track) { m_tracks.push_back(track); });
        return m_tracks;
    }
    // The only point of a track with this inside.
    TckPt Point(const std::string& inside) {
        Read(Gpx("<trk><trkseg><trkpt lat='47.5' lon='-8.25'>" + inside + "</trkpt></trkseg></trk>"));
        return m_tracks.size() == 1 && m_tracks[0].points.size() == 1 ? m_tracks[0].points[0] : TckPt{};
    }
    const std::string& Problem() const { return m_outcome.xml.problem; }

    TemporaryFolder m_folder;
    GpxOutcome m_outcome;
    std::vector<GpxTrack> m_tracks;
};

std::string Converted(const std::string& text, const char* encoding) {
    const iconv_t converter = iconv_open(encoding, "UTF-8");
    std::string in = text, out(8 * text.size() + 8, '\0');
    char *from = in.data(), *to = out.data();
    std::size_t left = in.size(), room = out.size();
    iconv(converter, &from, &left, &to, &room);
    iconv_close(converter);
    out.resize(out.size() - room);
    return out;
}

TEST_F(GpxReader, Point_HasAllThatIsStated) {
    const TckPt point =
        Point("<ele>432.1</ele><time>2001-09-09T01:46:40Z</time><course>90.5</course><speed>3.25</speed>");
    EXPECT_EQ(Problem(), "");
    EXPECT_EQ(point.dLatitude, 47.5);
    EXPECT_EQ(point.dLongitude, -8.25);
    EXPECT_EQ(point.dAltitude, 432.1);
    EXPECT_EQ(point.lTime, 1000000000);
    EXPECT_EQ(point.fCourse, 90.5f);
    EXPECT_EQ(point.dSpeed, 3.25);
}

TEST_F(GpxReader, SpeedAndCourse_AreFoundInAnyExtension) {
    const TckPt point = Point(
        "<extensions><gpxtpx:TrackPointExtension><gpxtpx:hr>99</gpxtpx:hr><gpxtpx:speed>3.25</gpxtpx:speed>"
        "<gpxtpx:course>12</gpxtpx:course></gpxtpx:TrackPointExtension></extensions>");
    EXPECT_EQ(point.dSpeed, 3.25);
    EXPECT_EQ(point.fCourse, 12.0f);
}

TEST_F(GpxReader, MissingElevationAndTime_AreThoseOfThePointBefore) {
    Read(
        Gpx("<trk><trkseg><trkpt lat='1' lon='1'/><trkpt lat='2' lon='1'><ele>5</ele>"
            "<time>2001-09-09T01:46:40Z</time></trkpt><trkpt lat='3' "
            "lon='1'><ele/><time/></trkpt></trkseg></trk>"));
    ASSERT_EQ(m_tracks.at(0).points.size(), 3u);
    EXPECT_EQ(m_tracks[0].points[0].lTime, 0);
    EXPECT_EQ(m_tracks[0].points[2].lTime, 1000000000);
    EXPECT_EQ(m_tracks[0].points[2].dAltitude, 5);
    EXPECT_EQ(m_tracks[0].badTimes, 0u);
}

TEST_F(GpxReader, ElevationOfZero_IsToldFromNone) {
    EXPECT_TRUE(std::signbit(Point("<ele>0.0</ele>").dAltitude));
    EXPECT_EQ(Point("<ele>0.0</ele>").dAltitude, 0);
    for (const char* none : {"", "<ele/>", "<ele>high</ele>"})
        EXPECT_FALSE(std::signbit(Point(none).dAltitude));
}

TEST_F(GpxReader, TimesBeyond32Bits_AreCountedAndLeftOut) {
    EXPECT_EQ(Point("<time>2038-01-19T03:14:07Z</time>").lTime, 2147483647);
    EXPECT_EQ(Point("<time>2038-01-19T03:14:08Z</time>").lTime, 0);
    EXPECT_EQ(m_tracks.at(0).badTimes, 1u);
    EXPECT_EQ(Point("<time>1969-12-31T23:59:59Z</time>").lTime, -1);
    EXPECT_EQ(Point("<time>1901-01-01T00:00:00Z</time>").lTime, 0);
    EXPECT_EQ(m_tracks.at(0).badTimes, 1u);
}

TEST_F(GpxReader, BadPositions_AreSkippedAndCounted) {
    Read(
        Gpx("<trk><trkseg><trkpt lat='90.1' lon='0'/><trkpt lat='0' lon='180.1'/><trkpt lat='x' lon='0'/>"
            "<trkpt lon='0'/><trkpt lat='nan' lon='0'/><trkpt lat='47,5' lon='0'/><trkpt lat='-90' lon='-180'/>"
            "</trkseg></trk>"));
    EXPECT_EQ(m_tracks.at(0).points.size(), 1u);
    EXPECT_EQ(m_tracks[0].badPositions, 6u);
}

TEST_F(GpxReader, BadNumbers_AreCountedAndThePointStays) {
    Point("<ele>high</ele><speed>-1</speed><course>east</course>");
    EXPECT_EQ(m_tracks.at(0).points.size(), 1u);
    EXPECT_EQ(m_tracks[0].badNumbers, 3u);
}

TEST_F(GpxReader, Segments_AreJoinedAndCounted) {
    Read(
        Gpx("<trk><trkseg><trkpt lat='1' lon='1'/></trkseg><trkseg/><trkseg><trkpt lat='2' "
            "lon='1'/></trkseg></trk>"));
    EXPECT_EQ(m_tracks.at(0).points.size(), 2u);
    EXPECT_EQ(m_tracks[0].segments, 2u);
}

TEST_F(GpxReader, SeveralTracks_KeepNameAndColorApart) {
    Read(Gpx(
        "<trk><name> A &amp; <![CDATA[B]]> </name><extensions><line><color>ff8000</color></line></extensions>"
        "<trkseg><trkpt lat='1' lon='1'><name>not this</name></trkpt></trkseg></trk><trk/>"));
    ASSERT_EQ(m_tracks.size(), 2u);
    EXPECT_EQ(m_tracks[0].name, "A & B");
    EXPECT_EQ(m_tracks[0].color, 0x0080fful);
    EXPECT_EQ(m_tracks[1].name, "");
    EXPECT_FALSE(m_tracks[1].color);
}

TEST_F(GpxReader, Colors_OfOtherProgramsAreUnderstood) {
    const auto color = [this](const std::string& element) {
        Read(Gpx("<trk><extensions>" + element + "</extensions></trk>"));
        return m_tracks.at(0).color.value_or(0xffffffff);
    };
    EXPECT_EQ(color("<gpxx:TrackExtension><gpxx:DisplayColor>Red</gpxx:DisplayColor></gpxx:TrackExtension>"),
              0xffu);
    EXPECT_EQ(color("<topografix:color>102030</topografix:color>"), 0x302010u);
    EXPECT_EQ(color("<osmand:color>#80102030</osmand:color>"), 0x302010u);
    EXPECT_EQ(color("<color>16711680</color>"), 0xff0000u);
    EXPECT_EQ(color("<color>-16776961</color>"), 0xff0000ffu);
    EXPECT_EQ(color("<gpxx:DisplayColor>Transparent</gpxx:DisplayColor>"), 0xffffffffu);
}

TEST_F(GpxReader, RoutesAndWaypoints_AreCounted) {
    Read(
        Gpx("<wpt lat='1' lon='1'/><wpt lat='1' lon='1'/><rte><rtept lat='1' lon='1'/><rtept lat='1' lon='1'/>"
            "<rtept lat='1' lon='1'/></rte>"));
    EXPECT_EQ(m_outcome.waypoints, 2u);
    EXPECT_EQ(m_outcome.routes, 1u);
    EXPECT_EQ(m_outcome.routePoints, 3u);
    EXPECT_TRUE(m_tracks.empty());
}

TEST_F(GpxReader, PrefixesVersionsAndBlankLinesInFront_DoNotMatter) {
    Read(
        "\n \r\n<?xml version='1.0'?><g:gpx><g:trk><g:name>A</g:name><g:trkseg>"
        "<g:trkpt g:lat='1' lon='2'/></g:trkseg></g:trk></g:gpx>");
    EXPECT_EQ(Problem(), "");
    ASSERT_EQ(m_tracks.size(), 1u);
    EXPECT_EQ(m_tracks[0].name, "A");
    EXPECT_EQ(m_tracks[0].points.size(), 1u);
}

TEST_F(GpxReader, AnyEncoding_IsRead) {
    const std::string body =
        "<gpx><trk><name>Zürich</name><trkseg><trkpt lat='1' lon='2'/></trkseg></trk></gpx>";
    for (const char* encoding : {"UTF-8", "windows-1252", "ISO-8859-15", "UTF-16", "CP850", "GBK"}) {
        const std::string head = std::string("<?xml version='1.0' encoding='") + encoding + "'?>";
        Read(Converted(head + body, encoding));
        EXPECT_EQ(Problem(), "") << encoding;
        EXPECT_EQ(m_tracks.at(0).name, "Zürich") << encoding;
    }
}

TEST_F(GpxReader, TwoByteCodePage_KeepsItsCharacters) {
    const std::string text = "<?xml version='1.0' encoding='GBK'?><gpx><trk><name>轨迹 A</name></trk></gpx>";
    EXPECT_EQ(Read(Converted(text, "GBK")).at(0).name, "轨迹 A");
}

TEST_F(GpxReader, Utf8UnderADeclarationOfUtf16_IsReadAsItIs) {
    const std::string text =
        "<?xml version=\"1.0\" encoding=\"utf-16\"?><gpx><trk><name>Zürich</name></trk></gpx>";
    EXPECT_EQ(Read(text).at(0).name, "Zürich");
    EXPECT_EQ(Read("\xEF\xBB\xBF" + text).at(0).name, "Zürich");
}

TEST_F(GpxReader, UnknownEncoding_IsNamed) {
    Read("<?xml version='1.0' encoding='no-such'?><gpx/>");
    EXPECT_EQ(Problem(), "unknown encoding");
}

// Latin-1 in a document that says UTF-8: one bad byte in a name must not cost the points.
TEST_F(GpxReader, BytesThatAreNoUtf8_BecomeQuestionMarks) {
    Read("<gpx><trk><name>Z\xFCrich \xC3</name><trkseg><trkpt lat='1' lon='2'/></trkseg></trk></gpx>");
    EXPECT_EQ(Problem(), "");
    EXPECT_EQ(m_tracks.at(0).name, "Z?rich ?");
    EXPECT_EQ(m_outcome.xml.replacedBytes, 2u);
}

// The characters of a long text lie across the reader's pieces in all ways.
TEST_F(GpxReader, CharactersAcrossPieces_AreNotTornApart) {
    for (int shift = 0; shift < 4; ++shift) {
        std::string comment(static_cast<std::size_t>(shift), ' ');
        for (int i = 0; i < 40000; ++i) comment += "€";
        Read("<gpx><!--" + comment + "--><trk><name>😀</name></trk></gpx>");
        EXPECT_EQ(Problem(), "");
        EXPECT_EQ(m_outcome.xml.replacedBytes, 0u);
        EXPECT_EQ(m_tracks.at(0).name, "😀");
    }
}

TEST_F(GpxReader, DocumentCutAnywhere_GivesTheWholePointsBeforeTheCut) {
    const std::string whole = Gpx(GpxTrackText("A", 3));
    for (std::size_t size = 0; size < whole.size() - 1; ++size) {
        const std::string cut = whole.substr(0, size);
        std::size_t points = 0;
        for (std::size_t at = 0; (at = cut.find("</trkpt>", at)) != std::string::npos; ++at) ++points;
        Read(cut);
        ASSERT_NE(Problem(), "") << size;
        ASSERT_EQ(m_tracks.empty() ? 0 : m_tracks[0].points.size(), points) << size;
    }
}

TEST_F(GpxReader, Damage_IsNamedWithItsLine) {
    Read("<gpx>\n<trk><trkseg>\n<trkpt lat='1' lon='1'/>\n</trk></gpx>");
    EXPECT_EQ(Problem(), "mismatched tag");
    EXPECT_EQ(m_outcome.xml.line, 4u);
    EXPECT_EQ(m_tracks.at(0).points.size(), 1u);
}

TEST_F(GpxReader, ZeroFilledTail_IsDamageBehindTheTrack) {
    Read(Gpx(GpxTrackText("A", 3)) + std::string(5000, '\0'));
    EXPECT_NE(Problem(), "");
    EXPECT_EQ(m_tracks.at(0).points.size(), 3u);
}

TEST_F(GpxReader, EntityBomb_IsRefused) {
    std::string bomb = "<?xml version='1.0'?><!DOCTYPE gpx [<!ENTITY a0 'ha'>";
    for (int i = 1; i < 30; ++i)
        bomb += "<!ENTITY a" + std::to_string(i) + " '&a" + std::to_string(i - 1) + ";&a" +
                std::to_string(i - 1) + ";'>";
    Read(bomb + "]><gpx><trk><name>&a29;</name></trk></gpx>");
    EXPECT_TRUE(Contains(Problem(), "declares entities")) << Problem();
    EXPECT_TRUE(m_tracks.empty());
}

TEST_F(GpxReader, BoundsOfNestingAndTokens_AreKept) {
    std::string deep = "<gpx>";
    for (int i = 0; i < 300; ++i) deep += "<a>";
    Read(deep);
    EXPECT_TRUE(Contains(Problem(), "nested")) << Problem();
    Read("<gpx a='" + std::string(9'000'000, 'x') + "'/>");
    EXPECT_TRUE(Contains(Problem(), "longer than 4 MB")) << Problem();
}

TEST_F(GpxReader, OtherFiles_AreToldApart) {
    Read("");
    EXPECT_EQ(Problem(), "it is empty");
    Read("\x1f\x8b\x08 and so on");
    EXPECT_TRUE(Contains(Problem(), "compressed (gzip)")) << Problem();
    Read("PK\x03\x04 and so on");
    EXPECT_TRUE(Contains(Problem(), "compressed (zip)")) << Problem();
    Read("<kml><Document/></kml>");
    EXPECT_TRUE(Contains(Problem(), "begins with <kml>")) << Problem();
    Read("$GPRMC,1,2,3");
    EXPECT_NE(Problem(), "");
}

}  // namespace
}  // namespace host
