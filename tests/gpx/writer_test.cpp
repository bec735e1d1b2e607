// What ExportGpx writes, rule by rule. The whole document against RapidXML's printer:
// writer_reference_test.cpp.
#include <cmath>
#include <limits>

#include "tests/gpx/gpx_fixture.h"
#include "tests/support/golden.h"

namespace {

bool Contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

// From the first occurrence of `begin` up to the end of the next line that holds `last`.
std::string Part(const std::string& text, const std::string& begin, const std::string& last) {
    const std::size_t start = text.find(begin);
    if (start == std::string::npos) return {};
    const std::size_t end = text.find('\n', text.find(last, start));
    return text.substr(start, end - start + 1);
}

}  // namespace

class GpxWriter : public GpxTest {
 protected:
    std::string Segment() { return Part(Exported(), "\t\t<trkseg", "</trk>"); }
    std::string Extensions() { return Part(Exported(), "\t\t<extensions>", "</extensions>"); }
    std::string WrittenPoint(const TckPt& point) {
        m_points.assign(1, point);
        return Part(Exported(), "\t\t\t<trkpt", "</trkseg>").erase(0, 3);
    }
};

TEST_F(GpxWriter, CompleteTrack_IsTheDocumentWrittenByHand) {
    Put(m_metadata.name, "track2014-05-01T10:20:30Z");
    Put(m_metadata.desc, "Up & down, 5 > 3");
    Put(m_metadata.author, "Jo");
    Put(m_metadata.email, "jo@example.org");
    Put(m_metadata.url, "http://example.org/?a=1&b=2");
    Put(m_metadata.urlname, "the \"long\" way");
    Put(m_metadata.time, "2014-05-01T10:20:30Z");
    Put(m_metadata.keywords, "hill, lake");
    m_metadata.minlat = 46.5F;
    m_metadata.minlon = 7.75F;
    m_metadata.maxlat = 47.5F;
    m_metadata.maxlon = 8.75F;
    Put(m_info.name, "\xB3\xA4\xB3\xC7 <1>");  // two Chinese characters in code page 936
    m_info.number = 4;
    m_info.color = 0xFF0000FF;
    m_info.visible = 1;
    m_info.length = 1234.5;
    m_info.area = 0.25;
    m_info.startTime = 1000000000;
    m_info.endTime = -1;
    m_points = {Fix(47.1234567, 8.5, 432.5, 1000000000), Fix(-33, -179.9999991, -0.0, 0), Fix(0, 0, 0, -1),
                Fix(90, 180, 0, 0)};
    EXPECT_EQ(Exported(), ReadFile(GoldenFile("track.gpx")));
}

TEST_F(GpxWriter, ExampleInTheFormatsPage_IsWhatIsWritten) {
    Put(m_metadata.name, "track2014-05-01T10:20:30Z");
    Put(m_metadata.time, "2014-05-01T10:20:30Z");
    Put(m_info.name, "Lake & back");
    m_info.number = 2;
    m_info.color = 0x00FF0000;
    m_info.visible = 1;
    m_info.length = 138.125;
    m_info.startTime = m_info.endTime = 1398938400;
    m_points = {Fix(47.25, 8.5, 432.1, 1398938400), Fix(47.251, 8.501, 0, 0)};
    const std::string page = ReadFile(GoldenFile("../../docs/formats/gpx.md"));
    const std::size_t begin = page.find("```xml\n") + 7;
    EXPECT_EQ(Exported(), "\xEF\xBB\xBF" + page.substr(begin, page.find("```", begin) - begin));
}

TEST_F(GpxWriter, EmptyTrack_HasDeclarationRootAndOneTrack) {
    EXPECT_EQ(Exported(),
              "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"utf-8\" standalone=\"yes\"?>\n"
              "<gpx version=\"1.0\" creator=\"ExpertGPS 1.1 - http://www.topografix.com\""
              " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
              " xmlns=\"http://www.topografix.com/GPX/1/0\""
              " xsi:schemaLocation=\"http://www.topografix.com/GPX/1/0"
              " http://www.topografix.com/GPX/1/0/gpx.xsd\">\n"
              "\t<trk>\n"
              "\t\t<extensions>\n"
              "\t\t\t<color>0</color>\n"
              "\t\t\t<visible>0</visible>\n"
              "\t\t</extensions>\n"
              "\t\t<trkseg/>\n"
              "\t</trk>\n"
              "</gpx>\n"
              "\n");
}

TEST_F(GpxWriter, MetadataWithANameOnly_HasNoOtherElement) {
    Put(m_metadata.name, "Sunday");
    EXPECT_TRUE(Contains(Exported(), "gpx.xsd\">\n\t<name>Sunday</name>\n\t<trk>\n"));
}

TEST_F(GpxWriter, MetadataText_IsWrittenUpToItsLastByte) {
    Put(m_metadata.keywords, std::string(64, 'k'));
    EXPECT_TRUE(Contains(Exported(), "\t<keywords>" + std::string(64, 'k') + "</keywords>\n"));
}

TEST_F(GpxWriter, MetadataOfDoubleByteCharacters_FitsInUtf8) {
    std::string chinese;
    for (int i = 0; i < 32; ++i) chinese += "\xB3\xA4";
    Put(m_metadata.desc, chinese);
    std::string utf8;
    for (int i = 0; i < 32; ++i) utf8 += "\u957F";
    EXPECT_TRUE(Contains(Exported(), "\t<desc>" + utf8 + "</desc>\n"));
}

TEST_F(GpxWriter, BoundsOfZero_AreLeftOut) { EXPECT_FALSE(Contains(Exported(), "<bounds")); }

TEST_F(GpxWriter, OneBoundOfNegativeZero_IsWritten) {
    m_metadata.maxlon = -0.0F;
    EXPECT_TRUE(Contains(Exported(),
                         "\t<bounds minlat=\"0.000000\" minlon=\"0.000000\" maxlat=\"0.000000\""
                         " maxlon=\"-0.000000\"/>\n"));
}

TEST_F(GpxWriter, EachBoundAlone_MakesTheElement) {
    for (float GpxMetadata::*bound :
         {&GpxMetadata::minlat, &GpxMetadata::minlon, &GpxMetadata::maxlat, &GpxMetadata::maxlon}) {
        m_metadata = {};
        m_metadata.*bound = 1.1F;
        EXPECT_TRUE(Contains(Exported(), "=\"1.100000\""));
    }
}

TEST_F(GpxWriter, Bounds_AreInSinglePrecision) {
    m_metadata.minlat = 12345678.9F;  // the nearest float
    EXPECT_TRUE(Contains(Exported(), "minlat=\"12345679.000000\""));
}

TEST_F(GpxWriter, TrackName_IsTheFirstChildAndLeftOutWhenEmpty) {
    EXPECT_TRUE(Contains(Exported(), "\t<trk>\n\t\t<extensions>"));
    Put(m_info.name, "Home");
    EXPECT_TRUE(Contains(Exported(), "\t<trk>\n\t\t<name>Home</name>\n\t\t<extensions>"));
}

TEST_F(GpxWriter, Number_IsLeftOutWhenZero) {
    EXPECT_FALSE(Contains(Exported(), "<number>"));
    m_info.number = -7;
    EXPECT_TRUE(Contains(Exported(), "\t<trk>\n\t\t<number>-7</number>\n\t\t<extensions>"));
}

TEST_F(GpxWriter, ColourWithTheHighestBit_IsNegative) {
    m_info.color = 0xFF0000FF;
    EXPECT_TRUE(Contains(Extensions(), "\t\t\t<color>-16776961</color>\n"));
    m_info.color = 0x80000000;
    EXPECT_TRUE(Contains(Extensions(), "\t\t\t<color>-2147483648</color>\n"));
    m_info.color = 0x7FFFFFFF;
    EXPECT_TRUE(Contains(Extensions(), "\t\t\t<color>2147483647</color>\n"));
}

TEST_F(GpxWriter, Extensions_StandInTheirOrder) {
    m_info.color = 1;
    m_info.visible = 1;
    m_info.length = 2;
    m_info.area = 3;
    m_info.startTime = 4;
    m_info.endTime = 5;
    EXPECT_EQ(Extensions(),
              "\t\t<extensions>\n"
              "\t\t\t<color>1</color>\n"
              "\t\t\t<visible>1</visible>\n"
              "\t\t\t<length>2.000000</length>\n"
              "\t\t\t<area>3.000000</area>\n"
              "\t\t\t<starttime>1970-01-01T00:00:04Z</starttime>\n"
              "\t\t\t<endtime>1970-01-01T00:00:05Z</endtime>\n"
              "\t\t</extensions>\n");
}

TEST_F(GpxWriter, TinyLengthAndArea_AreLeftOut) {
    m_info.length = 0.0000005;
    m_info.area = -0.0000005;
    EXPECT_FALSE(Contains(Extensions(), "length") || Contains(Extensions(), "area"));
    m_info.length = m_info.area = 0.000001;  // the threshold itself
    EXPECT_FALSE(Contains(Extensions(), "length") || Contains(Extensions(), "area"));
}

// As doubles: narrowed, both would be the same float.
TEST_F(GpxWriter, LengthAHairAboveTheThreshold_IsWritten) {
    m_info.length = m_info.area = std::nextafter(0.000001, 1.0);
    EXPECT_TRUE(Contains(Extensions(), "<length>0.000001</length>"));
    EXPECT_TRUE(Contains(Extensions(), "<area>0.000001</area>"));
}

TEST_F(GpxWriter, LengthAndArea_AreInSinglePrecision) {
    m_info.length = 1234.5;
    m_info.area = 123456789.0;
    EXPECT_TRUE(Contains(Extensions(), "<length>1234.500000</length>"));
    EXPECT_TRUE(Contains(Extensions(), "<area>123456792.000000</area>"));
    m_info.length = -0.1;
    EXPECT_TRUE(Contains(Extensions(), "<length>-0.100000</length>"));
}

TEST_F(GpxWriter, LengthBeyondSinglePrecision_IsInfinite) {
    m_info.length = 1e300;
    EXPECT_TRUE(Contains(Extensions(), "<length>inf</length>"));
}

TEST_F(GpxWriter, LengthThatIsNoNumber_IsLeftOut) {
    m_info.length = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(Contains(Extensions(), "length"));
}

TEST_F(GpxWriter, Times_AreLeftOutWhenZeroAndGoBackBefore1970) {
    EXPECT_FALSE(Contains(Extensions(), "time>"));
    m_info.startTime = std::numeric_limits<std::int32_t>::min();
    m_info.endTime = std::numeric_limits<std::int32_t>::max();
    EXPECT_TRUE(Contains(Extensions(), "<starttime>1901-12-13T20:45:52Z</starttime>"));
    EXPECT_TRUE(Contains(Extensions(), "<endtime>2038-01-19T03:14:07Z</endtime>"));
}

TEST_F(GpxWriter, PointsWithoutAltitudeAndTime_HaveAttributesOnly) {
    m_points = {Fix(1, 2, 0, 0), Fix(3, 4, 0, 0)};
    EXPECT_EQ(Segment(),
              "\t\t<trkseg>\n"
              "\t\t\t<trkpt lat=\"1.000000\" lon=\"2.000000\"/>\n"
              "\t\t\t<trkpt lat=\"3.000000\" lon=\"4.000000\"/>\n"
              "\t\t</trkseg>\n"
              "\t</trk>\n");
}

TEST_F(GpxWriter, Position_IsInDoublePrecision) {
    EXPECT_TRUE(Contains(WrittenPoint(Fix(12345678.900001, -12345678.900001, 0, 0)),
                         "lat=\"12345678.900001\" lon=\"-12345678.900001\""));
}

TEST_F(GpxWriter, Altitude_IsInSinglePrecision) {
    EXPECT_TRUE(Contains(WrittenPoint(Fix(0, 0, 1000.1, 0)), "\t\t\t\t<ele>1000.099976</ele>\n"));
}

TEST_F(GpxWriter, AltitudeOfZero_IsLeftOutButNegativeZeroIsWritten) {
    EXPECT_FALSE(Contains(WrittenPoint(Fix(0, 0, 0.0, 1)), "<ele>"));
    EXPECT_TRUE(Contains(WrittenPoint(Fix(0, 0, -0.0, 1)), "<ele>-0.000000</ele>"));
    EXPECT_TRUE(Contains(WrittenPoint(Fix(0, 0, 1e-300, 1)), "<ele>0.000000</ele>"));
}

TEST_F(GpxWriter, TimeBefore1970_IsWritten) {
    EXPECT_TRUE(Contains(WrittenPoint(Fix(0, 0, 0, -1)), "\t\t\t\t<time>1969-12-31T23:59:59Z</time>\n"));
}

TEST_F(GpxWriter, OtherFieldsOfAPoint_AreNotWritten) {
    TckPt point = Fix(1, 2, 3, 4);
    const std::string plain = WrittenPoint(point);
    point.dSpeed = 5;
    point.fCourse = 6;
    point.reserved[0] = 7;
    EXPECT_EQ(WrittenPoint(point), plain);
}

TEST_F(GpxWriter, InfinitiesAndNoNumbers_AreWrittenAsWords) {
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_TRUE(Contains(WrittenPoint(Fix(infinity, -infinity, std::nan(""), 0)),
                         "<trkpt lat=\"inf\" lon=\"-inf\">\n\t\t\t\t<ele>nan</ele>"));
}

TEST_F(GpxWriter, LargestPosition_IsWrittenInFull) {
    EXPECT_TRUE(
        Contains(WrittenPoint(Fix(std::numeric_limits<double>::max(), 0, 0, 0)), "lat=\"179769313486231570"));
}

TEST_F(GpxWriter, UnopenablePath_IsTrueAndLeavesNoFile) {
    EXPECT_TRUE(ExportTo(L"\\Nowhere\\a.gpx"));
    EXPECT_FALSE(Exists("\\Nowhere"));
    EXPECT_TRUE(ExportTo(L""));
    EXPECT_TRUE(ExportTo(L"\\Track\\a?.gpx"));
    EXPECT_TRUE(ExportTo(L"\\" + std::wstring(300, L'a') + L".gpx"));
    EXPECT_TRUE(std::filesystem::is_empty(OnDisk("\\Track")));
}

TEST_F(GpxWriter, FolderOfThatName_IsTrueAndStays) {
    std::filesystem::create_directories(OnDisk("\\Track\\a.gpx"));
    EXPECT_TRUE(ExportTo(L"\\Track\\a.gpx"));
    EXPECT_TRUE(std::filesystem::is_directory(OnDisk("\\Track\\a.gpx")));
}

TEST_F(GpxWriter, FileThatIsThere_IsReplacedAndKeepsItsRights) {
    Write("\\Track\\exported.gpx", std::string(100000, 'x'));
    std::filesystem::permissions(OnDisk("\\Track\\exported.gpx"), std::filesystem::perms(0640));
    const auto rights = std::filesystem::status(OnDisk("\\Track\\exported.gpx")).permissions();
    EXPECT_TRUE(Exported().ends_with("</gpx>\n\n"));
    EXPECT_EQ(std::filesystem::status(OnDisk("\\Track\\exported.gpx")).permissions(), rights);
}

TEST_F(GpxWriter, Folder_HoldsTheDocumentAndNothingElse) {
    Exported();
    const auto folder = std::filesystem::directory_iterator(OnDisk("\\Track"));
    EXPECT_EQ(std::distance(begin(folder), end(folder)), 1);
}

TEST_F(GpxWriter, ChinesePath_IsTheFileOfThatName) {
    EXPECT_TRUE(ExportTo(L"\\Track\\\u957F\u57CE.gpx"));
    EXPECT_TRUE(Exists("\\Track\\\u957F\u57CE.gpx"));
}

// The file is named in the ANSI code page; what it lacks becomes a question mark, which no file name may hold.
TEST_F(GpxWriter, PathThatTheCodePageLacks_IsTrueAndLeavesNoFile) {
    EXPECT_TRUE(ExportTo(L"\\Track\\\u0E01.gpx"));
    EXPECT_TRUE(std::filesystem::is_empty(OnDisk("\\Track")));
}

TEST_F(GpxWriter, MetadataAndTrack_AreThoseGivenLast) {
    GpxMetadata first{};
    Put(first.name, "first");
    GpxTrackInfo other = m_info;
    other.number = 5;
    std::filesystem::create_directories(OnDisk("\\Track"));
    CGPXTransmit transmit;
    transmit.SetMetadata(&first);
    transmit.SetMetadata(&m_metadata);
    transmit.SetTrackInfo(&other);
    transmit.SetTrackInfo(&m_info);
    EXPECT_TRUE(transmit.ExportGpx(L"\\Track\\a.gpx"));
    EXPECT_EQ(BytesOf("\\Track\\a.gpx"), Exported());
}

// Copied, not referred to: the caller's record may be gone by the time of the export.
TEST_F(GpxWriter, MetadataChangedAfterwards_StaysAsItWasGiven) {
    Put(m_metadata.name, "given");
    CGPXTransmit transmit;
    transmit.SetMetadata(&m_metadata);
    Put(m_metadata.name, "changed");
    EXPECT_STREQ(transmit.Metadata().name, "given");
}

TEST_F(GpxWriter, SecondExportOfOneObject_IsTheSame) {
    std::filesystem::create_directories(OnDisk("\\Track"));
    m_points = {Fix(1, 2, 3, 4)};
    CGPXTransmit transmit;
    transmit.SetTrackInfo(&m_info);
    EXPECT_TRUE(transmit.ExportGpx(L"\\Track\\a.gpx") && transmit.ExportGpx(L"\\Track\\b.gpx"));
    EXPECT_EQ(BytesOf("\\Track\\a.gpx"), BytesOf("\\Track\\b.gpx"));
}
