// What an import takes from the first trk into the track record.
#include <cmath>
#include <cstdlib>

#include "tests/gpx/gpx_fixture.h"
#include "tests/support/machine.h"
#include "util/time.h"

class GpxTrackHeader : public GpxTest {
 protected:
    const GpxTrackInfo& Read(const std::string& children) {
        EXPECT_TRUE(Import(Document("<trk>" + children + "<trkseg><trkpt lat=\"1\" lon=\"2\"/></trkseg></trk>"),
                           m_imported, &CGPXTransmit::ImportGpxHead));
        return m_imported.info;
    }

    Imported m_imported;
};

TEST_F(GpxTrackHeader, FieldsUnderExtensions_AreRead) {
    const GpxTrackInfo& info = Read(
        "<name>T</name><number>12</number><extensions><color>-16776961</color><visible>1</visible>"
        "<length>1234.5</length><area>-2.5</area><starttime>2001-09-09T01:46:40Z</starttime>"
        "<endtime>1969-12-31T23:59:59Z</endtime></extensions>");
    EXPECT_STREQ(info.name, "T");
    EXPECT_EQ(info.number, 12);
    EXPECT_EQ(info.color, 0xFF0000FFu);
    EXPECT_EQ(info.visible, 1);
    EXPECT_EQ(info.length, 1234.5);
    EXPECT_EQ(info.area, -2.5);
    EXPECT_EQ(info.startTime, 1000000000);
    EXPECT_EQ(info.endTime, -1);
}

TEST_F(GpxTrackHeader, FieldsDirectlyUnderTrk_AreReadWithoutExtensions) {
    const GpxTrackInfo& info = Read(
        "<color>5</color><visible>1</visible><length>6</length><area>7</area>"
        "<starttime>1970-01-01T00:00:08Z</starttime><endtime>1970-01-01T00:00:09Z</endtime>");
    EXPECT_EQ(info.color, 5u);
    EXPECT_EQ(info.visible, 1);
    EXPECT_EQ(info.length, 6);
    EXPECT_EQ(info.area, 7);
    EXPECT_EQ(info.startTime, 8);
    EXPECT_EQ(info.endTime, 9);
}

TEST_F(GpxTrackHeader, ExtensionsWithoutAField_DoNotFallBackToTheTrack) {
    m_imported.info.color = 3;
    EXPECT_EQ(Read("<color>5</color><extensions><visible>1</visible></extensions>").color, 3u);
    EXPECT_EQ(Read("<color>5</color><extensions/>").color, 3u);
}

TEST_F(GpxTrackHeader, NameAndNumber_AreNotLookedForUnderExtensions) {
    const GpxTrackInfo& info = Read("<extensions><name>T</name><number>5</number></extensions>");
    EXPECT_STREQ(info.name, "");
    EXPECT_EQ(info.number, 0);
}

TEST_F(GpxTrackHeader, AbsentElements_KeepWhatTheFieldsHeld) {
    GpxTrackInfo& info = m_imported.info;
    Put(info.name, "old");
    info.number = 1;
    info.color = 2;
    info.visible = 1;
    info.length = 3;
    info.area = 4;
    info.startTime = 5;
    info.endTime = 6;
    Read("");
    EXPECT_STREQ(info.name, "old");
    EXPECT_EQ(info.number, 1);
    EXPECT_EQ(info.color, 2u);
    EXPECT_EQ(info.visible, 1);
    EXPECT_EQ(info.length, 3);
    EXPECT_EQ(info.area, 4);
    EXPECT_EQ(info.startTime, 5);
    EXPECT_EQ(info.endTime, 6);
}

TEST_F(GpxTrackHeader, LongName_IsCutAt32Bytes) {
    EXPECT_EQ(Read("<name>" + std::string(50, 'n') + "</name>").name, std::string(32, 'n'));
    std::string utf8 = "a", ansi = "a";
    for (int i = 0; i < 20; ++i) utf8 += "\u957F";
    for (int i = 0; i < 15; ++i) ansi += "\xB3\xA4";
    EXPECT_EQ(Read("<name>" + utf8 + "</name>").name, ansi);
}

TEST_F(GpxTrackHeader, NameInCdata_IsTheName) {
    EXPECT_STREQ(Read("<name><![CDATA[2021-01-07 22:51]]></name>").name, "2021-01-07 22:51");
}

TEST_F(GpxTrackHeader, EmptyName_IsEmpty) {
    Put(m_imported.info.name, "old");
    EXPECT_STREQ(Read("<name/>").name, "");
}

TEST_F(GpxTrackHeader, NumbersThatDoNotParse_AreZero) {
    m_imported.info.number = 1;
    m_imported.info.color = 2;
    m_imported.info.length = 3;
    const GpxTrackInfo& info = Read(
        "<number>x</number><extensions><color>red</color><visible>yes</visible><length/><area>..</area></"
        "extensions>");
    EXPECT_EQ(info.number, 0);
    EXPECT_EQ(info.color, 0u);
    EXPECT_EQ(info.visible, 0);
    EXPECT_EQ(info.length, 0);
    EXPECT_EQ(info.area, 0);
}

TEST_F(GpxTrackHeader, NumbersWithATail_AreReadUpToIt) {
    const GpxTrackInfo& info =
        Read("<number> 12 points</number><length>\r\n+1.5e1m</length><color>7.9</color>");
    EXPECT_EQ(info.number, 12);
    EXPECT_EQ(info.length, 15);
    EXPECT_EQ(info.color, 7u);
}

TEST_F(GpxTrackHeader, UnsignedColour_IsTakenTo32Bits) {
    EXPECT_EQ(Read("<color>4278190335</color>").color, 0xFF0000FFu);
}

TEST_F(GpxTrackHeader, AnyNumberButZero_IsVisible) {
    EXPECT_EQ(Read("<visible>-7</visible>").visible, 1);
    EXPECT_EQ(Read("<visible>0</visible>").visible, 0);
    EXPECT_EQ(Read("<visible>256</visible>").visible, 1);
}

TEST_F(GpxTrackHeader, LengthThatIsNoFiniteNumber_IsTakenAsItStands) {
    EXPECT_TRUE(std::isnan(Read("<length>NaN</length>").length));
    EXPECT_TRUE(std::isinf(Read("<length>-inf</length>").length));
    EXPECT_TRUE(std::isinf(Read("<length>1e999</length>").length));
}

TEST_F(GpxTrackHeader, FractionsAndZones_AreIgnoredInTimes) {
    for (const char* text :
         {"2001-09-09T01:46:40", "2001-09-09T01:46:40Z", "2001-09-09T01:46:40.250Z",
          "2001-09-09T01:46:40.1234567890Z", "2001-09-09T01:46:40+02:00", "2001-09-09T01:46:40.5-11:30",
          "2001-9-9T1:46:40Z", " 2001-09-09T01:46:40Z", "2001-09-09T01:46:40ZT12:00", "+2001-09-09T 01: 46: 40",
          "2001-09-09T01:46:40 and a text that goes on and on"})
        EXPECT_EQ(Read("<starttime>" + std::string(text) + "</starttime>").startTime, 1000000000) << text;
}

// Found out by the rule: hour and minute up to their colons, second from what is left.
TEST_F(GpxTrackHeader, TimesOfOtherForms_AreReadFieldByField) {
    EXPECT_EQ(Read("<starttime>1970-01-01T00:00</starttime>").startTime, 0);
    EXPECT_EQ(Read("<starttime>1970-01-02T5</starttime>").startTime, 86405);
    EXPECT_EQ(Read("<starttime>1970-01-02T1:5</starttime>").startTime, 86400 + 3600 + 5);
    EXPECT_EQ(Read("<starttime>1970-01-01T00:00:0012</starttime>").startTime, 12);
    EXPECT_EQ(Read("<starttime>1970-1-1T0:0:7</starttime>").startTime, 7);
}

TEST_F(GpxTrackHeader, TimeWithoutT_IsTheSameAsAnEmptyCalendarRecord) {
    const auto noDate = static_cast<std::int32_t>(ChangeSYSTIMEToTime_T(SYSTEMTIME{}));
    EXPECT_EQ(Read("<starttime>2001-09-09 01:46:40Z</starttime>").startTime, noDate);
    EXPECT_EQ(Read("<starttime>2001-09-09t01:46:40Z</starttime>").startTime, noDate);
}

TEST_F(GpxTrackHeader, TimeThatIsCutAt31Bytes_LosesItsTail) {
    EXPECT_EQ(Read("<starttime>" + std::string(12, ' ') + "2001-09-09T01:46:40Z</starttime>").startTime,
              1000000000 - 0);
}

// In a place whose clocks show something else.
TEST_F(GpxTrackHeader, EmptyTime_IsNowInUtc) {
    const TimeZone kathmandu("NPT-5:45");
    const auto before = static_cast<std::int32_t>(Now());
    const std::int32_t read = Read("<starttime></starttime><endtime/>").startTime;
    const auto after = static_cast<std::int32_t>(Now());
    EXPECT_TRUE(before <= read && read <= after);
    EXPECT_TRUE(before <= m_imported.info.endTime && m_imported.info.endTime <= after);
}

TEST_F(GpxTrackHeader, TimeInCdata_IsRead) {
    EXPECT_EQ(Read("<starttime><![CDATA[2001-09-09T01:46:40Z]]></starttime>").startTime, 1000000000);
}

TEST_F(GpxTrackHeader, SecondTrack_IsNotRead) {
    Imported imported;
    EXPECT_TRUE(Import(Document("<trk><number>1</number></trk><trk><number>2</number><color>3</color></trk>"),
                       imported));
    EXPECT_EQ(imported.info.number, 1);
    EXPECT_EQ(imported.info.color, 0u);
}
