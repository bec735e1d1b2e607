#include "host/source/nmea_reader.h"

#include <cmath>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/device.h"
#include "tests/support/nmea.h"
#include "tests/support/recorded_data.h"

namespace host {
namespace {

class Reader : public ::testing::Test {
 protected:
    void Push(const std::string& body) { m_reader.Push(NmeaLine(body)); }
    void Rmc(const std::string& time) {
        Push("GPRMC," + time + ",A,5222.3215,N,00454.5778,E,0.58,251.34,030414,,,A");
    }
    void Gga(const std::string& time, const std::string& altitude = "16.0") {
        Push("GPGGA," + time + ",5222.3215,N,00454.5778,E,1,4,2.95," + altitude + ",M,47.0,M,,");
    }
    std::vector<double> Altitudes() const {
        std::vector<double> altitudes;
        for (const TckPt& fix : m_fixes) altitudes.push_back(fix.dAltitude);
        return altitudes;
    }
    std::uint64_t Refused(Refusal why) const { return m_reader.Counts().Refused(why); }

    std::vector<TckPt> m_fixes;
    NmeaReader m_reader{[this](const TckPt& fix) { m_fixes.push_back(fix); }};
};

using Heights = std::vector<double>;

TEST_F(Reader, GgaThenRmc_IsOneFixAtOnce) {
    Gga("085411.000");
    Rmc("085411.000");
    EXPECT_EQ(Altitudes(), Heights{16});
}

TEST_F(Reader, RmcThenGga_IsOneFixAtOnce) {
    Rmc("085411.000");
    EXPECT_TRUE(m_fixes.empty());
    Gga("085411.000");
    EXPECT_EQ(Altitudes(), Heights{16});
}

TEST_F(Reader, TimesWrittenDifferently_AreTheSameTime) {
    Rmc("085411");
    Gga("085411.00");
    EXPECT_EQ(Altitudes(), Heights{16});
}

TEST_F(Reader, RmcOnly_GivesEachFixWhenTheNextArrives) {
    Rmc("085411");
    Rmc("085412");
    EXPECT_EQ(Altitudes(), Heights{0});
    m_reader.Finish();
    EXPECT_EQ(Altitudes(), (Heights{0, 0}));
}

TEST_F(Reader, GgaOfAnotherTime_IsNotJoined) {
    Rmc("085411");
    Gga("085412", "20");
    Rmc("085412");
    EXPECT_EQ(Altitudes(), (Heights{0, 20}));
}

TEST_F(Reader, GgaOnly_GivesNoFix) {
    Gga("085411");
    Gga("085412");
    m_reader.Finish();
    EXPECT_TRUE(m_fixes.empty());
    EXPECT_EQ(Refused(Refusal::UnpairedGga), 2u);
}

TEST_F(Reader, GgaWithoutAltitude_GivesAFixWithout) {
    Gga("085411", "");
    Rmc("085411");
    EXPECT_EQ(Altitudes(), Heights{0});
}

// 0 is what nobody measured.
TEST_F(Reader, AltitudeOfZero_IsMeasured) {
    Gga("085411", "0.0");
    Rmc("085411");
    Gga("085412", "");
    Rmc("085412");
    ASSERT_EQ(Altitudes(), (Heights{0, 0}));
    EXPECT_TRUE(std::signbit(Altitudes()[0]));
    EXPECT_FALSE(std::signbit(Altitudes()[1]));
}

TEST_F(Reader, TenFixesASecond_AreAllHandedOver) {
    for (int tenth = 0; tenth < 10; ++tenth) {
        Gga("085411." + std::to_string(tenth), std::to_string(tenth));
        Rmc("085411." + std::to_string(tenth));
    }
    EXPECT_EQ(Altitudes(), (Heights{0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
    for (const TckPt& fix : m_fixes) EXPECT_EQ(fix.lTime, m_fixes[0].lTime);
}

// The date comes from the RMC alone, so a GGA of the new day finds its RMC whichever comes first.
TEST_F(Reader, Midnight_JoinsBothOrders) {
    Push("GPGGA,235959,5222.3215,N,00454.5778,E,1,4,2.95,1,M,47.0,M,,");
    Push("GPRMC,235959,A,5222.3215,N,00454.5778,E,0.58,251.34,030414,,,A");
    Push("GPGGA,000000,5222.3215,N,00454.5778,E,1,4,2.95,2,M,47.0,M,,");
    Push("GPRMC,000000,A,5222.3215,N,00454.5778,E,0.58,251.34,040414,,,A");
    Push("GPRMC,000001,A,5222.3215,N,00454.5778,E,0.58,251.34,040414,,,A");
    Push("GPGGA,000001,5222.3215,N,00454.5778,E,1,4,2.95,3,M,47.0,M,,");
    EXPECT_EQ(Altitudes(), (Heights{1, 2, 3}));
    EXPECT_EQ(m_fixes[1].lTime, m_fixes[0].lTime + 1);
    EXPECT_EQ(m_fixes[2].lTime, m_fixes[1].lTime + 1);
}

TEST_F(Reader, AnyTalker_IsTakenAndProprietaryIsNot) {
    for (const char* talker : {"GP", "GN", "GL", "GA", "BD", "II"})
        Push(std::string(talker) + "RMC,085411,A,5222.3215,N,00454.5778,E,0.58,251.34,030414,,,A");
    Push("PXRMC,085411,A,5222.3215,N,00454.5778,E,0.58,251.34,030414,,,A");
    Push("PGRME,2.3,M,3.3,M,4.0,M");
    Push("GPGSA,A,1");
    m_reader.Finish();
    EXPECT_EQ(m_reader.Counts().fixes, 6u);
    EXPECT_EQ(m_reader.Counts().others, 3u);
}

TEST_F(Reader, LostFix_HandsOverTheOneBefore) {
    Rmc("085411");
    Push("GPRMC,085412,V,,,,,,,030414,,,N");
    Push("GPGGA,085412,,,,,0,00,99.99,,,,,,");
    EXPECT_EQ(m_fixes.size(), 1u);
    EXPECT_EQ(Refused(Refusal::NoFix), 2u);
}

TEST_F(Reader, EachSentence_IsAccountedFor) {
    Gga("085411");
    Rmc("085411");
    m_reader.Push("$GPRMC,085412,A*FF\n$GPGSV,1\n$GPG$GPGGA\r\n" + std::string("$") + std::string(600, 'A') +
                  "\n");
    Push("GPRMC,085413,A,5222.3215,N,00454.5778,E,0.58,251.34,,,,A");
    Push("GPRMC,085413,A,5222.3215,N,00454.5778,E,0.58,999,030414,,,A");
    Gga("085414");
    Push("GPVTG,251.34,T,,M,0.58,N,1.07,K,A");
    m_reader.Push("no sentence\n$GPRMC,0854");
    m_reader.Finish();
    const NmeaCounts counts = m_reader.Counts();
    for (const auto& [why, count] : {std::pair{Refusal::BadChecksum, 1u},
                                     {Refusal::NoChecksum, 2u},
                                     {Refusal::CutOff, 2u},
                                     {Refusal::TooLong, 1u},
                                     {Refusal::NoDate, 1u},
                                     {Refusal::BadField, 1u},
                                     {Refusal::UnpairedGga, 1u},
                                     {Refusal::NoFix, 0u}})
        EXPECT_EQ(counts.Refused(why), count) << NameOf(why);
    EXPECT_EQ(counts.sentences, 2 + counts.Refused() + counts.others);
    EXPECT_EQ(counts.otherLines, 1u);
}

// Damage of every kind: a tenth of a percent of the bytes become any other byte.
TEST_F(Reader, DamagedLog_AccountsForEachSentence) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        std::mt19937 random(seed);
        std::string log = ReadFile(std::filesystem::path(QTRACE_SAMPLES) / "drive.nmea").substr(0, 60'000);
        for (int i = 0; i < 60; ++i) log[random() % log.size()] = static_cast<char>(random());
        std::uint64_t fixes = 0;
        NmeaReader reader([&](const TckPt&) { ++fixes; });
        reader.Push(log);
        reader.Finish();
        const NmeaCounts counts = reader.Counts();
        const std::uint64_t used = counts.sentences - counts.Refused() - counts.others;
        EXPECT_EQ(fixes, counts.fixes) << "seed " << seed;
        EXPECT_TRUE(used >= fixes && used <= 2 * fixes) << "seed " << seed;
        EXPECT_GT(counts.Refused(), 10u) << "seed " << seed;
        EXPECT_GT(fixes, 300u) << "seed " << seed;
    }
}

struct Log {
    const char* name;
    unsigned fixes, otherLines;
    void (*check)(const NmeaCounts&) = [](const NmeaCounts&) {};
};

class RecordedLog : public ::testing::TestWithParam<Log> {};

// The counts stand in the description of the recorded logs, which were counted by other programs.
TEST_P(RecordedLog, GivesAFixForEachValidRmc) {
    const auto file = RecordedFile("nmea", GetParam().name);
    if (!file) GTEST_SKIP() << "no recorded data here";
    std::uint64_t fixes = 0;
    NmeaReader reader([&](const TckPt&) { ++fixes; });
    reader.Push(ReadFile(*file));
    reader.Finish();
    EXPECT_EQ(fixes, GetParam().fixes);
    EXPECT_EQ(reader.Counts().otherLines, GetParam().otherLines);
    GetParam().check(reader.Counts());
}

INSTANTIATE_TEST_SUITE_P(
    Nmea, RecordedLog,
    ::testing::Values(Log{"drive-sierra-nevada.nmea", 4469, 4}, Log{"sail-ruegen.nmea", 14264, 16597},
                      Log{"drift-amsterdam.nmea", 1201, 0,
                          [](const NmeaCounts& c) { EXPECT_EQ(c.Refused(Refusal::UnpairedGga), 1u); }},
                      Log{"still-46s-gap.nmea", 123, 0}, Log{"sail-short-ais.nmea", 48, 118},
                      Log{"boat-many-talkers.nmea", 146, 10},
                      Log{"walk-lost-fix.nmea", 68, 10,
                          [](const NmeaCounts& c) { EXPECT_GE(c.Refused(Refusal::NoFix), 6u); }},
                      Log{"coldstart-gn-talkers.nmea", 23, 8,
                          [](const NmeaCounts& c) { EXPECT_GE(c.Refused(Refusal::NoFix), 37u); }},
                      Log{"rtk-10hz-gap.nmea", 122, 9},
                      Log{"bad-gga-checksums.nmea", 23, 5,
                          [](const NmeaCounts& c) { EXPECT_EQ(c.Refused(Refusal::BadChecksum), 23u); }},
                      Log{"time-goes-back.nmea", 13, 12,
                          [](const NmeaCounts& c) { EXPECT_GE(c.Refused(Refusal::NoFix), 4u); }},
                      Log{"gaps-67s-307s.nmea", 9, 10,
                          [](const NmeaCounts& c) { EXPECT_GE(c.Refused(Refusal::NoFix), 5u); }}),
    [](const auto& log) {
        std::string name = log.param.name;
        name.erase(name.rfind('.'));
        for (char& c : name)
            if (c == '-') c = '_';
        return name;
    });

}  // namespace
}  // namespace host
