// What an import takes from the trkpt elements.
#include <cmath>

#include "platform/clock.h"
#include "tests/gpx/gpx_fixture.h"
#include "util/time.h"

class GpxPoints : public GpxTest {
 protected:
    const Points& Read(const std::string& points) {
        m_imported.points.clear();
        EXPECT_TRUE(Import(DocumentOfPoints(points), m_imported));
        return m_imported.points;
    }
    TckPt ReadOne(const std::string& point) {
        const Points& points = Read(point);
        return points.size() == 1 ? points[0] : AnyOther();
    }
    static TckPt AnyOther() { return Fix(-999, -999, -999, -999); }

    Imported m_imported;
};

TEST_F(GpxPoints, PositionAltitudeAndTime_AreRead) {
    EXPECT_EQ(
        ReadOne(
            "<trkpt lat=\"47.5\" lon=\"-8.25\"><ele>432.125</ele><time>2001-09-09T01:46:40Z</time></trkpt>"),
        Fix(47.5, -8.25, 432.125, 1000000000));
}

TEST_F(GpxPoints, Numbers_AreReadInDoublePrecision) {
    EXPECT_EQ(ReadOne("<trkpt lat=\"47.1234567891\" lon=\"1e-7\"><ele>1000.1</ele></trkpt>"),
              Fix(47.1234567891, 1e-7, 1000.1, 0));
}

TEST_F(GpxPoints, OrderOfAttributesAndChildren_DoesNotMatter) {
    EXPECT_EQ(
        ReadOne(
            "<trkpt a='0' lon='2' lat='1'><x/><time>1970-01-01T00:00:04Z</time><y>9</y><ele>3</ele></trkpt>"),
        Fix(1, 2, 3, 4));
}

TEST_F(GpxPoints, WithoutElevation_TakesTheLastOne) {
    EXPECT_EQ(Read("<trkpt lat=\"1\" lon=\"2\"><ele>3</ele></trkpt><trkpt lat=\"4\" lon=\"5\"/><trkpt "
                   "lat=\"6\" lon=\"7\">"
                   "<ele>8</ele></trkpt><trkpt lat=\"9\" lon=\"10\"></trkpt>"),
              (Points{Fix(1, 2, 3, 0), Fix(4, 5, 3, 0), Fix(6, 7, 8, 0), Fix(9, 10, 8, 0)}));
}

TEST_F(GpxPoints, WithoutTime_TakesTheLastOne) {
    EXPECT_EQ(
        Read("<trkpt lat=\"1\" lon=\"2\"><time>1970-01-01T00:00:03Z</time></trkpt><trkpt lat=\"4\" lon=\"5\">"
             "<ele>6</ele></trkpt>"),
        (Points{Fix(1, 2, 0, 3), Fix(4, 5, 6, 3)}));
}

TEST_F(GpxPoints, FirstOfASegmentWithoutElevationAndTime_HasZeros) {
    EXPECT_EQ(
        Read("<trkpt lat=\"1\" lon=\"2\"><ele>3</ele><time>1970-01-01T00:00:04Z</time></trkpt></trkseg><trkseg>"
             "<trkpt lat=\"5\" lon=\"6\"/>"),
        (Points{Fix(1, 2, 3, 4), Fix(5, 6, 0, 0)}));
}

TEST_F(GpxPoints, WithoutLatitudeOrLongitude_AreSkipped) {
    EXPECT_EQ(Read("<trkpt/><trkpt lat=\"1\"/><trkpt lon=\"2\"/><trkpt Lat=\"1\" lon=\"2\"/><trkpt lat=\"3\" "
                   "lon=\"4\"/>"),
              (Points{Fix(3, 4, 0, 0)}));
}

// A point that is skipped gives nothing to the one behind it.
TEST_F(GpxPoints, BehindASkippedOne_TakeNothingFromIt) {
    EXPECT_EQ(Read("<trkpt lat=\"1\" lon=\"2\"><ele>3</ele></trkpt><trkpt lat=\"1\"><ele>9</ele></trkpt>"
                   "<trkpt lat=\"4\" lon=\"5\"/>"),
              (Points{Fix(1, 2, 3, 0), Fix(4, 5, 3, 0)}));
}

TEST_F(GpxPoints, SkippedOne_StillMakesTheChainComplete) {
    Imported head;
    EXPECT_TRUE(Import(DocumentOfPoints("<trkpt/>"), head, &CGPXTransmit::ImportGpxHead));
}

TEST_F(GpxPoints, NumbersThatDoNotParse_AreZero) {
    EXPECT_EQ(ReadOne("<trkpt lat=\"\" lon=\"x\"><ele/></trkpt>"), Fix(0, 0, 0, 0));
    EXPECT_EQ(ReadOne("<trkpt lat=\"1,5\" lon=\" 2.5 \"><ele>3.5 m</ele></trkpt>"), Fix(1, 2.5, 3.5, 0));
}

TEST_F(GpxPoints, EmptyElevation_IsZeroAndNotTheLastOne) {
    EXPECT_EQ(
        Read(
            "<trkpt lat=\"1\" lon=\"2\"><ele>3</ele></trkpt><trkpt lat=\"4\" lon=\"5\"><ele></ele></trkpt>")[1],
        Fix(4, 5, 0, 0));
}

TEST_F(GpxPoints, InfinitiesAndNoNumbers_AreTakenAsTheyStand) {
    const TckPt point = ReadOne("<trkpt lat=\"NaN\" lon=\"-inf\"><ele>1e999</ele></trkpt>");
    EXPECT_TRUE(std::isnan(point.dLatitude));
    EXPECT_TRUE(std::isinf(point.dLongitude) && point.dLongitude < 0);
    EXPECT_TRUE(std::isinf(point.dAltitude));
}

TEST_F(GpxPoints, EmptyTime_IsNow) {
    SYSTEMTIME clock{};
    platform::GetSystemTime(&clock);
    const auto now = static_cast<std::int32_t>(ChangeSYSTIMEToTime_T(clock));
    EXPECT_NEAR(ReadOne("<trkpt lat=\"1\" lon=\"2\"><time/></trkpt>").lTime, now, 100);
}

TEST_F(GpxPoints, ElementsWithin_DoNotCountAsTheirs) {
    EXPECT_EQ(ReadOne("<trkpt lat=\"1\" lon=\"2\"><extensions><ele>9</ele><trkpt lat=\"7\" "
                      "lon=\"8\"/></extensions></trkpt>"),
              Fix(1, 2, 0, 0));
}

TEST_F(GpxPoints, PrefixedChildren_AreNotTheirs) {
    EXPECT_EQ(ReadOne("<trkpt lat=\"1\" lon=\"2\"><x:ele>9</x:ele></trkpt>"), Fix(1, 2, 0, 0));
}

TEST_F(GpxPoints, QuotedMarkup_IsNoMarkup) {
    EXPECT_EQ(ReadOne("<trkpt name='</trkpt><trkpt/>' note=\"a > b '\" lat='1' lon='2'><ele>3</ele></trkpt>"),
              Fix(1, 2, 3, 0));
}

TEST_F(GpxPoints, CommentsCdataAndInstructions_AreNoPoints) {
    EXPECT_EQ(
        Read("<!-- <trkpt lat=\"1\" lon=\"2\"/> --><![CDATA[<trkpt lat=\"3\" lon=\"4\"/>]]><?x <trkpt/> ?>"
             "<trkpt lat=\"5\" lon=\"6\"><!-- <ele>7</ele> --></trkpt>"),
        (Points{Fix(5, 6, 0, 0)}));
}

TEST_F(GpxPoints, EntitiesInAttributes_AreTranslated) {
    EXPECT_EQ(ReadOne("<trkpt lat=\"&#49;&#x2E;5\" lon='2'/>"), Fix(1.5, 2, 0, 0));
}

TEST_F(GpxPoints, ElevationInCdata_IsRead) {
    EXPECT_EQ(ReadOne("<trkpt lat=\"1\" lon=\"2\"><ele><![CDATA[3]]></ele></trkpt>"), Fix(1, 2, 3, 0));
}

TEST_F(GpxPoints, ElsewhereThanInASegmentOfATrack_AreNotRead) {
    Imported imported;
    const std::string point = "<trkpt lat=\"1\" lon=\"2\"/>";
    EXPECT_TRUE(Import(Document(point + "<trk>" + point + "<trkseg><a>" + point +
                                "</a></trkseg></trk><trkseg>" + point + "</trkseg><rte>" + point + "</rte>"),
                       imported));
    EXPECT_TRUE(imported.points.empty());
}

TEST_F(GpxPoints, OtherElementsBetween_AreLeftAlone) {
    EXPECT_EQ(Read("text<trkpt lat=\"1\" lon=\"2\"/>&amp;<x/><trkpt lat=\"3\" lon=\"4\"/>more"),
              (Points{Fix(1, 2, 0, 0), Fix(3, 4, 0, 0)}));
}

TEST_F(GpxPoints, FieldsThatADocumentCannotState_AreZero) {
    const TckPt point = ReadOne("<trkpt lat=\"1\" lon=\"2\"><speed>3</speed><course>4</course></trkpt>");
    EXPECT_EQ(point, Fix(1, 2, 0, 0));
}
