#include "host/source/nmea_fields.h"

#include <cmath>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/german_locale.h"

namespace host {
namespace {

// An RMC or GGA with one field replaced; field 0 is the address.
std::string With(std::size_t field, const std::string& value, std::string body) {
    std::size_t begin = 0;
    for (; field > 0; --field) begin = body.find(',', begin) + 1;
    return body.replace(begin, std::min(body.find(',', begin), body.size()) - begin, value);
}

const std::string kRmc = "GPRMC,235234,A,3925.9702,N,11945.9354,W,45.1,153.1,250905,15.2,E,A";
const std::string kGga = "GPGGA,235234,3925.9702,N,11945.9354,W,1,10,0.8,1378.6,M,-22.1,M,,";

Reading RmcWith(std::size_t field, const std::string& value) {
    Rmc ignored;
    return ReadRmc(With(field, value, kRmc), ignored);
}
Reading GgaWith(std::size_t field, const std::string& value) {
    Gga ignored;
    return ReadGga(With(field, value, kGga), ignored);
}
TckPt FixWith(std::size_t field, const std::string& value) {
    Rmc rmc;
    EXPECT_EQ(ReadRmc(With(field, value, kRmc), rmc), Reading::Good) << value;
    return rmc.fix;
}

TEST(RmcFields, RecordedSentence_GivesItsFix) {
    Rmc rmc;
    ASSERT_EQ(ReadRmc(kRmc, rmc), Reading::Good);
    EXPECT_DOUBLE_EQ(rmc.fix.dLatitude, 39 + 25.9702 / 60);
    EXPECT_DOUBLE_EQ(rmc.fix.dLongitude, -(119 + 45.9354 / 60));
    EXPECT_DOUBLE_EQ(rmc.fix.dSpeed, 45.1 * 1852 / 3600);
    EXPECT_FLOAT_EQ(rmc.fix.fCourse, 153.1F);
    EXPECT_EQ(rmc.fix.lTime, 1127692354);  // 2005-09-25 23:52:34
    EXPECT_EQ(rmc.fix.dAltitude, 0.0);
    EXPECT_EQ(rmc.timeOfDay, 85954000000);
}

TEST(RmcFields, SouthAndEast_HaveTheirSigns) {
    EXPECT_LT(FixWith(4, "S").dLatitude, 0);
    EXPECT_GT(FixWith(6, "E").dLongitude, 0);
}

TEST(RmcFields, StandingStill_IsExactlyZero) {
    for (const char* speed : {"0.0", "0.00", "000.0", "0", ""})
        EXPECT_EQ(FixWith(7, speed).dSpeed, 0.0) << speed;
}

TEST(RmcFields, NoCourse_IsZero) { EXPECT_EQ(FixWith(8, "").fCourse, 0.0F); }

TEST(RmcFields, FractionOfASecond_IsCutFromTheTimeAndKeptInTheTimeOfDay) {
    Rmc rmc;
    ASSERT_EQ(ReadRmc(With(1, "235234.999", kRmc), rmc), Reading::Good);
    EXPECT_EQ(rmc.fix.lTime, 1127692354);
    EXPECT_EQ(rmc.timeOfDay, 85954999000);
}

TEST(RmcFields, PointWithoutFraction_IsAWholeSecond) { EXPECT_EQ(RmcWith(1, "235234."), Reading::Good); }

TEST(RmcFields, TwoDigitYears_Span1980To2079) {
    EXPECT_EQ(FixWith(9, "010180").lTime, 315618754);   // 1980-01-01 23:52:34
    EXPECT_EQ(FixWith(9, "311299").lTime, 946684354);   // 1999-12-31
    EXPECT_EQ(FixWith(9, "010100").lTime, 946770754);   // 2000-01-01
    EXPECT_EQ(FixWith(9, "180138").lTime, 2147471554);  // 2038-01-18
}

TEST(RmcFields, DateBeyondThe32Bits_IsRefused) {
    EXPECT_EQ(RmcWith(9, "190138"), Reading::BadField);  // the last second is 03:14:07 of that day
    EXPECT_EQ(RmcWith(9, "010179"), Reading::BadField);
}

TEST(RmcFields, DatesThatDoNotExist_AreRefused) {
    for (const char* date :
         {"310405", "290205", "000105", "011305", "2509", "25090", "2509055", "25x905", "-10905"})
        EXPECT_EQ(RmcWith(9, date), Reading::BadField) << date;
    EXPECT_EQ(RmcWith(9, "290204"), Reading::Good);
}

TEST(RmcFields, NoDateYet_IsNamedSo) { EXPECT_EQ(RmcWith(9, ""), Reading::NoDate); }

TEST(RmcFields, VoidSentence_HasNoFix) {
    Rmc rmc;
    EXPECT_EQ(RmcWith(2, "V"), Reading::NoFix);
    EXPECT_EQ(ReadRmc("GNRMC,,V,,,,,,,,,,N", rmc), Reading::NoFix);
}

TEST(RmcFields, OtherStatus_IsABadField) {
    EXPECT_EQ(RmcWith(2, ""), Reading::BadField);
    EXPECT_EQ(RmcWith(2, "B"), Reading::BadField);
}

TEST(RmcFields, MalformedTimes_AreRefused) {
    for (const char* time : {"", "2352", "23523", "2352345", "240000", "236034", "235261", "23523a", "-35234",
                             "235234,1", "235234.x", "235234.1.2"})
        EXPECT_EQ(RmcWith(1, time), Reading::BadField) << time;
}

TEST(RmcFields, LeapSecond_IsTaken) { EXPECT_EQ(FixWith(1, "235960").lTime, 1127692800); }

TEST(RmcFields, MalformedPositions_AreRefused) {
    for (const char* latitude :
         {"", "25", "9000.0001", "3960.0", "9100.0", "39e5.9", "39nan", "-325.97", "3925.9.7", "3925,9"})
        EXPECT_EQ(RmcWith(3, latitude), Reading::BadField) << latitude;
    for (const char* longitude : {"", "18000.01", "18100.0", "119 45.9", "123456.7"})
        EXPECT_EQ(RmcWith(5, longitude), Reading::BadField) << longitude;
}

TEST(RmcFields, PolesAndDateLine_AreTaken) {
    EXPECT_EQ(FixWith(3, "9000.0000").dLatitude, 90);
    EXPECT_EQ(FixWith(5, "18000.0000").dLongitude, -180);
}

TEST(RmcFields, DegreesWithoutLeadingZeros_AreUnderstood) {
    EXPECT_DOUBLE_EQ(FixWith(5, "518.8172").dLongitude, -(5 + 18.8172 / 60));
}

TEST(RmcFields, MissingHemispheres_AreRefused) {
    for (const std::size_t field : {4u, 6u})
        for (const char* side : {"", "X", "NN", "n"})
            EXPECT_EQ(RmcWith(field, side), Reading::BadField) << side;
    EXPECT_EQ(RmcWith(4, "E"), Reading::BadField);
}

TEST(RmcFields, SpeedsAndCoursesOutOfRange_AreRefused) {
    for (const char* text : {"-1", "1e3", "inf", "nan", "1.2.3", ".", "1 "})
        EXPECT_EQ(RmcWith(7, text), Reading::BadField) << text;
    EXPECT_EQ(RmcWith(8, "360.1"), Reading::BadField);
    EXPECT_EQ(RmcWith(8, "-0.1"), Reading::BadField);
    EXPECT_EQ(RmcWith(8, "360.0"), Reading::Good);
}

TEST(RmcFields, SentenceCutShort_IsABadField) {
    Rmc rmc;
    for (const char* body : {"GPRMC", "GPRMC,", "GPRMC,235234,A", "GPRMC,235234,A,3925.9702,N,11945.9354"})
        EXPECT_EQ(ReadRmc(body, rmc), Reading::BadField) << body;
}

TEST(RmcFields, SentenceThatIsRefused_LeavesTheResultAlone) {
    Rmc rmc;
    rmc.timeOfDay = 7;
    ReadRmc(With(9, "310405", kRmc), rmc);
    EXPECT_EQ(rmc.timeOfDay, 7);
    EXPECT_EQ(rmc.fix.dLatitude, 0);
}

TEST(GgaFields, RecordedSentence_GivesItsAltitude) {
    Gga gga;
    ASSERT_EQ(ReadGga(kGga, gga), Reading::Good);
    EXPECT_EQ(gga.timeOfDay, 85954000000);
    EXPECT_DOUBLE_EQ(gga.altitude.value(), 1378.6);
}

TEST(GgaFields, BelowTheSea_IsNegative) {
    Gga gga;
    ASSERT_EQ(ReadGga(With(9, "-4", kGga), gga), Reading::Good);
    EXPECT_EQ(gga.altitude.value(), -4);
}

TEST(GgaFields, NoAltitude_IsNone) {
    Gga gga;
    ASSERT_EQ(ReadGga(With(9, "", kGga), gga), Reading::Good);
    EXPECT_FALSE(gga.altitude.has_value());
}

TEST(GgaFields, QualityZeroOrNone_HasNoFix) {
    EXPECT_EQ(GgaWith(6, "0"), Reading::NoFix);
    EXPECT_EQ(GgaWith(6, ""), Reading::NoFix);
}

TEST(GgaFields, MalformedFields_AreRefused) {
    EXPECT_EQ(GgaWith(9, "high"), Reading::BadField);
    EXPECT_EQ(GgaWith(1, "x"), Reading::BadField);
    EXPECT_EQ(GgaWith(6, "x"), Reading::BadField);
    EXPECT_EQ(GgaWith(2, ""), Reading::BadField);
}

TEST(NmeaNumbers, CommaLocale_ReadsTheSame) {
    const GermanLocale german;
    if (!german.Active()) GTEST_SKIP() << "no German locale can be made here (localedef, package locales)";
    EXPECT_DOUBLE_EQ(FixWith(7, "45.1").dSpeed, 45.1 * 1852 / 3600);
}

}  // namespace
}  // namespace host
