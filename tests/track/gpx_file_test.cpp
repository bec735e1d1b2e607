// A track as a GPX file: what it puts into the document and what it takes from one.
// The document itself, byte for byte: tests/gpx.
#include <cstdlib>
#include <ctime>

#include <gtest/gtest.h>

#include "tests/support/device.h"
#include "tests/support/machine.h"
#include "tests/track/track_fixture.h"
#include "track/geodesy.h"

namespace {

const Points kTriangle{At(47.0, 11.0, 1000), At(47.0, 11.2, 1010), At(47.1, 11.1, 1020)};

// The text of the first element of that name behind a mark; "none" without one.
std::string ElementOf(const std::string& document, const std::string& name,
                      const std::string& behind = "<gpx") {
    const std::size_t mark = document.find(behind);
    const std::size_t start = mark == std::string::npos ? mark : document.find('<' + name + '>', mark);
    if (start == std::string::npos) return "none";
    const std::size_t text = start + name.size() + 2;
    return document.substr(text, document.find('<', text) - text);
}

std::string Decimals(double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%f", static_cast<double>(static_cast<float>(value)));
    return text;
}

// The local clock as GPX texts have it.
std::string ClockText() {
    const std::tm fields = LocalTime(Now());
    char text[64];
    std::snprintf(text, sizeof text, "%d-%02d-%02dT%02d:%02d:%02dZ", fields.tm_year + 1900, fields.tm_mon + 1,
                  fields.tm_mday, fields.tm_hour, fields.tm_min, fields.tm_sec);
    return text;
}

std::string Document(const std::string& trk, const std::string& head = "") {
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\r\n<gpx version=\"1.0\">" + head + trk + "</gpx>\r\n";
}

const std::string kTwoPoints =
    "<trkseg><trkpt lat=\"47.5\" lon=\"11.25\"><ele>100.5</ele><time>1970-01-01T00:16:40Z</time></trkpt>"
    "<trkpt lat=\"-47.5\" lon=\"-11.25\"><time>1970-01-01T00:16:50Z</time></trkpt></trkseg>";
const std::string kExtensions =
    "<extensions><color>255</color><visible>0</visible><length>1234.500000</length><area>55.250000</area>"
    "<starttime>1970-01-01T00:00:05Z</starttime><endtime>1970-01-01T00:00:07Z</endtime></extensions>";

}  // namespace

class TrackGpxSave : public DeviceTest {
 protected:
    std::string Saved(OpenTrack& track) {
        EXPECT_TRUE(track.Save(std::string("\\App\\a.gpx")));
        return BytesOf("\\App\\a.gpx");
    }
};

TEST_F(TrackGpxSave, Header_IsTheTracks) {
    OpenTrack track = TrackOf(kTriangle);
    track.SetName("Zugspitze");
    track.SetColor(0x00112233);
    track.Calculate(true);

    const std::string document = Saved(track);

    EXPECT_EQ(ElementOf(document, "name", "<trk>"), "Zugspitze");
    EXPECT_EQ(ElementOf(document, "number", "<trk>"), "3");
    EXPECT_EQ(ElementOf(document, "color", "<trk>"), std::to_string(0x00112233));
    EXPECT_EQ(ElementOf(document, "visible", "<trk>"), "1");
    EXPECT_EQ(ElementOf(document, "length", "<trk>"), Decimals(AidCalLength(kTriangle)));
    EXPECT_EQ(ElementOf(document, "area", "<trk>"), Decimals(AidCalArea(kTriangle)));
    EXPECT_EQ(ElementOf(document, "starttime", "<trk>"), "1970-01-01T00:16:40Z");
    EXPECT_EQ(ElementOf(document, "endtime", "<trk>"), "1970-01-01T00:17:00Z");
}

TEST_F(TrackGpxSave, Statistics_AreTheCachedLengthAndTheMagnitudeOfTheArea) {
    OpenTrack clockwise = TrackOf({kTriangle[2], kTriangle[1], kTriangle[0]});
    clockwise.Calculate(true);
    EXPECT_EQ(ElementOf(Saved(clockwise), "area"), Decimals(clockwise.Header().area));

    OpenTrack planted = TrackRemembering(kTriangle, {"n", 1, 0, 1, 2, 77.5, 88.5});
    EXPECT_EQ(ElementOf(Saved(planted), "length"), "77.500000");
    EXPECT_EQ(ElementOf(Saved(planted), "area"), "88.500000");
}

TEST_F(TrackGpxSave, Visibility_IsWrittenAsZeroOrOne) {
    OpenTrack track = TrackOf(kTriangle);
    track.TakeHeader({"n", 0x100, 0, 0, 0, 0, 0});
    EXPECT_EQ(ElementOf(Saved(track), "visible"), "1");
    track.SetVisible(false);
    EXPECT_EQ(ElementOf(Saved(track), "visible"), "0");
}

TEST_F(TrackGpxSave, Points_AreInOneSegmentInOrder) {
    OpenTrack track = TrackOf(kTriangle);
    const std::string document = Saved(track);
    std::size_t at = 0;
    for (const char* point : {"<trkseg>", "<trkpt lat=\"47.000000\" lon=\"11.000000\"",
                              "<trkpt lat=\"47.000000\" lon=\"11.200000\"",
                              "<trkpt lat=\"47.100000\" lon=\"11.100000\"", "</trkseg>"}) {
        at = document.find(point, at);
        ASSERT_NE(at, std::string::npos) << point << " is not where it should be in\n" << document;
    }
    EXPECT_EQ(document.find("<trkseg", document.find("<trkseg") + 1), std::string::npos);
}

TEST_F(TrackGpxSave, EmptyTitle_BecomesTheNameAndStays) {
    OpenTrack track = TrackOf(kTriangle);
    track.TakeHeader({"Name", 1, 0, 0, 0, 0, 0});
    ASSERT_EQ(track.Title(), "");
    EXPECT_EQ(ElementOf(Saved(track), "name", "<trk>"), "Name");
    EXPECT_EQ(track.Title(), "Name");
    track.TakeHeader({"Another", 1, 0, 0, 0, 0, 0});
    EXPECT_EQ(ElementOf(Saved(track), "name", "<trk>"), "Name") << "the title stays";
}

TEST_F(TrackGpxSave, TitleThatDiffersFromTheName_IsWritten) {
    OpenTrack track = TrackOf(kTriangle);
    track.SetName("Title");
    track.TakeHeader({"Name", 1, 0, 0, 0, 0, 0});
    EXPECT_EQ(ElementOf(Saved(track), "name", "<trk>"), "Title");
}

TEST_F(TrackGpxSave, LongTitle_IsCutTo32Characters) {
    OpenTrack track = TrackOf(kTriangle);
    track.SetName("0123456789012345678901234567890123456789");
    EXPECT_EQ(ElementOf(Saved(track), "name", "<trk>"), "01234567890123456789012345678901");
    EXPECT_EQ(track.Title().size(), 40u);
}

TEST_F(TrackGpxSave, TitleAndPath_AreInTheAnsiCodePage) {
    OpenTrack track = TrackOf(kTriangle);
    track.SetName("\xD6\xD0");
    EXPECT_TRUE(track.Save(std::string("\\App\\\x81\x5C.gpx")));
    ASSERT_TRUE(Exists("\\App\\\xE4\xB9\x97.gpx"));
    EXPECT_EQ(ElementOf(BytesOf("\\App\\\xE4\xB9\x97.gpx"), "name", "<trk>"), "\xE4\xB8\xAD");
}

TEST_F(TrackGpxSave, Metadata_IsTheLocalClockAndATrackTextOfIt) {
    const TimeZone kathmandu("<+0545>-5:45");
    OpenTrack track = TrackOf(kTriangle);
    const std::string before = ClockText();
    const std::string document = Saved(track);
    const std::string after = ClockText();

    const std::string time = ElementOf(document, "time");
    EXPECT_LE(before, time);
    EXPECT_LE(time, after);
    EXPECT_EQ(ElementOf(document, "name"), "track" + time);
    EXPECT_LT(document.find("<time>"), document.find("<trk>"));
}

TEST_F(TrackGpxSave, PathThatCannotBeOpened_IsTrueWithoutAFile) {
    OpenTrack track = TrackOf(kTriangle);
    EXPECT_TRUE(track.Save(std::string("\\Missing\\a.gpx")));
    EXPECT_FALSE(Exists("\\Missing"));
}

TEST_F(TrackGpxSave, EmptyTrack_HasItsSegment) {
    OpenTrack track;
    EXPECT_NE(Saved(track).find("<trkseg/>"), std::string::npos);
}

class TrackGpxLoad : public DeviceTest {
 protected:
    // Writes the document and loads it into a track that held something else.
    bool Load(const std::string& document, const std::string& path = "\\App\\Tour.gpx") {
        Write(path, document);
        return track.Load(path);
    }
    OpenTrack track = TrackOf({At(9, 9, 9)});
};

TEST_F(TrackGpxLoad, Track_IsTheDocuments) {
    EXPECT_TRUE(Load(Document("<trk><name>Karwendel</name>" + kExtensions + kTwoPoints + "</trk>")));
    EXPECT_EQ(track.Header(), (TrackHeader{"Tour", 0, 255, 5, 7, 1234.5, 55.25}));
    EXPECT_EQ(track.Title(), "Karwendel");
    ASSERT_EQ(track.GetPtCount(), 2u);
    const TckPt& first = track.GetPtList()[0];
    EXPECT_EQ(first.dLatitude, 47.5);
    EXPECT_EQ(first.dLongitude, 11.25);
    EXPECT_EQ(first.dAltitude, 100.5);
    EXPECT_EQ(first.lTime, 1000);
    EXPECT_EQ(track.GetPtList()[1].lTime, 1010);
}

TEST_F(TrackGpxLoad, AllSegments_AreOneList) {
    EXPECT_TRUE(Load(Document("<trk>" + kTwoPoints + kTwoPoints + "</trk>")));
    EXPECT_EQ(track.GetPtCount(), 4u);
}

TEST_F(TrackGpxLoad, Name_IsTheFilesBetweenBackslashAndLastDot) {
    const std::string document = Document("<trk>" + kTwoPoints + "</trk>");
    EXPECT_TRUE(Load(document, "\\App\\a.b.gpx"));
    EXPECT_EQ(track.GetName(), "a.b");
    EXPECT_TRUE(Load(document, "\\Track.old\\My Tour.GPX"));
    EXPECT_EQ(track.GetName(), "My Tour");
}

TEST_F(TrackGpxLoad, NameOfDoubleBytes_IsNotSplitAtABackslashByte) {
    Write("\\App\\\xE4\xB9\x97x.gpx", Document("<trk>" + kTwoPoints + "</trk>"));
    EXPECT_TRUE(
        track.Load(std::string("\\App\\\x81\x5C"
                               "x.gpx")));
    EXPECT_EQ(track.GetName(),
              "\x81\x5C"
              "x");
}

TEST_F(TrackGpxLoad, Title_IsInTheAnsiCodePage) {
    EXPECT_TRUE(Load(Document("<trk><name>\xE4\xB8\xAD</name>" + kTwoPoints + "</trk>")));
    EXPECT_EQ(track.Title(), "\xD6\xD0");
}

TEST_F(TrackGpxLoad, DocumentWithoutExtensions_LeavesColourAndVisibility) {
    track.SetColor(0x0000FF00);
    track.SetVisible(false);
    EXPECT_TRUE(Load(Document("<trk>" + kTwoPoints + "</trk>")));
    EXPECT_EQ(track.GetColor(), 0x0000FF00u);
    EXPECT_FALSE(track.GetVisible());
    EXPECT_EQ(track.GetLength(), AidCalLength(track.GetPtList()))
        << "a length of 0 is computed from the points";
    EXPECT_EQ(track.GetStartTime(), 1000);
    EXPECT_EQ(track.GetEndTime(), 1010);
}

TEST_F(TrackGpxLoad, DocumentWithoutTrack_IsTrueWithNoPoints) {
    EXPECT_TRUE(Load(Document("")));
    EXPECT_EQ(track.GetPtCount(), 0u);
}

TEST_F(TrackGpxLoad, UnreadableFile_IsFalseWithNoPointsAndTheOldHeader) {
    const TrackHeader old{"Old", 1, 3, 4, 5, 6, 7};
    const std::string good = Document("<trk>" + kTwoPoints + "</trk>");
    track.SetName("Old");
    track.TakeHeader(old);
    EXPECT_FALSE(Load(good.substr(0, good.size() - 20))) << "malformed";
    EXPECT_EQ(track.GetPtCount(), 0u);
    track.Append(kTriangle);
    EXPECT_FALSE(Load(good, "\\App\\a.xml")) << "another extension";
    EXPECT_EQ(track.GetPtCount(), 0u);
    track.Append(kTriangle);
    EXPECT_FALSE(track.Load(std::string("\\App\\missing.gpx")));
    EXPECT_EQ(track.GetPtCount(), 0u);
    EXPECT_EQ(track.Header(), old);
    EXPECT_EQ(track.Title(), "Old");
}

TEST_F(TrackGpxLoad, SavedTrack_ComesBackToSixDecimals) {
    std::mt19937 random(191);
    OpenTrack saved;
    for (int i = 0; i < 500; ++i) {
        saved.AppendPt(At(Between(-90, 90, random), Between(-180, 180, random), 1 + i), true);
    }
    saved.SetName("Round trip");
    ASSERT_TRUE(saved.Save(std::string("\\App\\r.gpx")));
    ASSERT_TRUE(track.Load(std::string("\\App\\r.gpx")));
    ASSERT_EQ(track.GetPtCount(), 500u);
    for (std::size_t i = 0; i < 500; ++i) {
        EXPECT_NEAR(track.GetPtList()[i].dLatitude, saved.GetPtList()[i].dLatitude, 5.1e-7);
        EXPECT_NEAR(track.GetPtList()[i].dLongitude, saved.GetPtList()[i].dLongitude, 5.1e-7);
        EXPECT_EQ(track.GetPtList()[i].lTime, saved.GetPtList()[i].lTime);
    }
    EXPECT_EQ(track.Title(), "Round trip");
    EXPECT_EQ(track.GetName(), "r");
}
