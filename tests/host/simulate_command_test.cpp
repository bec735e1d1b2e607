// `qtrace simulate`. The vehicle and the receiver also drive the sample: sample_drive_test.cpp.
#include <cmath>

#include <gtest/gtest.h>

#include "host/simulation/simulated_vehicle.h"
#include "tests/host/commands.h"
#include "tests/host/recorder.h"

namespace fs = std::filesystem;

namespace host {
namespace {

class Simulate : public Commands {
 protected:
    std::string Trip(const std::vector<std::string>& arguments) const {
        const ProcessResult run = Run("simulate", arguments);
        EXPECT_EQ(run.exitCode, 0) << run.err;
        return run.out;
    }
};

double Distance(const TckPt& a, const TckPt& b) {
    double distance = 0, bearing = 0;
    CalDistance(a.dLatitude, a.dLongitude, b.dLatitude, b.dLongitude, 0, &distance, &bearing);
    return distance;
}

TEST_F(Simulate, SameSeed_GivesTheSameBytes) {
    EXPECT_EQ(Trip({"--seed", "5", "--duration", "10m"}), Trip({"--seed", "5", "--duration", "10m"}));
    EXPECT_NE(Trip({"--seed", "5", "--duration", "10m"}), Trip({"--seed", "6", "--duration", "10m"}));
}

TEST_F(Simulate, Sentences_AreValidAndAsManyAsAsked) {
    for (const char* profile : {"car", "walk", "boat"}) {
        NmeaReader reader([](const TckPt&) {});
        reader.Push(Trip({"--profile", profile, "--duration", "30m"}));
        reader.Finish();
        const NmeaCounts counts = reader.Counts();
        EXPECT_EQ(counts.Refused(), counts.Refused(Refusal::NoFix)) << profile;
        EXPECT_EQ(counts.otherLines, 0u);
        EXPECT_EQ(counts.fixes * 4 + counts.Refused(), counts.sentences);
        EXPECT_EQ(counts.fixes + counts.Refused() / 2, 1800u);
    }
}

TEST_F(Simulate, Rate_GivesSeveralFixesASecond) {
    for (const int rate : {1, 2, 5, 10}) {
        const auto fixes = FixesIn(Trip({"--rate", std::to_string(rate), "--duration", "1m"}));
        EXPECT_EQ(fixes.size(), static_cast<std::size_t>(rate) * 54) << rate;  // the first fix takes 6 s
    }
}

TEST_F(Simulate, Start_IsTheFirstTimeAndDaysGoOn) {
    const auto fixes = FixesIn(Trip({"--start", "2026-12-31T23:59:00Z", "--duration", "2m"}));
    EXPECT_EQ(fixes.front().lTime, 1798761540 + 6);
    EXPECT_EQ(fixes.back().lTime, 1798761540 + 119);
}

// What is said and where the positions lie agree; nothing jumps.
TEST_F(Simulate, Car_DrivesLikeACar) {
    const auto fixes = FixesIn(Trip({"--seed", "11", "--duration", "3h"}));
    double fastest = 0, highest = 0, lowest = 1e9;
    int standing = 0, gaps = 0;
    for (std::size_t i = 1; i < fixes.size(); ++i) {
        const int seconds = fixes[i].lTime - fixes[i - 1].lTime;
        gaps += seconds > 5;
        standing += fixes[i].dSpeed == 0;
        fastest = std::max(fastest, fixes[i].dSpeed);
        highest = std::max(highest, fixes[i].dAltitude);
        lowest = std::min(lowest, fixes[i].dAltitude);
        if (seconds > 1) continue;
        ASSERT_NEAR(Distance(fixes[i - 1], fixes[i]), (fixes[i].dSpeed + fixes[i - 1].dSpeed) / 2, 3) << i;
        ASSERT_LE(std::fabs(fixes[i].dSpeed - fixes[i - 1].dSpeed), 3.5) << i;
    }
    EXPECT_GT(fastest, 25);
    EXPECT_LT(fastest, 40);
    EXPECT_GT(standing, 60);
    EXPECT_GE(gaps, 1);  // tunnels
    EXPECT_GT(highest - lowest, 30);
}

// Speed times the change of course in a second is the lateral acceleration.
TEST_F(Simulate, Curves_AreTakenAtSensibleSpeeds) {
    const auto fixes = FixesIn(Trip({"--seed", "12", "--duration", "2h"}));
    for (std::size_t i = 1; i < fixes.size(); ++i) {
        if (fixes[i].lTime - fixes[i - 1].lTime != 1 || fixes[i].dSpeed < 3 || fixes[i - 1].dSpeed < 3)
            continue;
        const double turned = std::remainder(fixes[i].fCourse - fixes[i - 1].fCourse, 360.0f);
        const double noise =
            1.4 * fixes[i].dSpeed * 0.0174533;  // the receiver's courses are off by 0.6 degrees
        ASSERT_LE(std::fabs(turned) * 0.0174533 * fixes[i].dSpeed, 5 + noise) << i;
    }
}

TEST_F(Simulate, WalkersAndBoats_KeepTheirPace) {
    double fastest = 0;
    for (const TckPt& fix : FixesIn(Trip({"--profile", "walk", "--duration", "1h"})))
        fastest = std::max(fastest, fix.dSpeed);
    EXPECT_LT(fastest, 2);
    fastest = 0;
    for (const TckPt& fix : FixesIn(Trip({"--profile", "boat", "--duration", "1h"}))) {
        fastest = std::max(fastest, fix.dSpeed);
        ASSERT_LT(std::fabs(fix.dAltitude), 20);
    }
    EXPECT_LT(fastest, 4.5);
}

TEST_F(Simulate, LongTrip_StaysNearItsStart) {
    const auto fixes = FixesIn(Trip({"--duration", "8h"}));
    for (const TckPt& fix : fixes) ASSERT_LT(Distance(fixes.front(), fix), 60'000);
}

TEST_F(Simulate, PipedIntoARecorder_BecomesATrack) {
    Process recorder(Command("record", {"-"}));
    recorder.Write(Trip({"--duration", "10m"}));
    EXPECT_EQ(recorder.Wait().exitCode, 0);
    EXPECT_TRUE(Contains(Run("list").out, "AutoSaveTrk-"));
}

TEST_F(Simulate, OutputFile_AppearsWholeAndIsNotReplaced) {
    EXPECT_EQ(Run("simulate", {"--duration", "1m", "-o", Path("a.nmea")}).exitCode, 0);
    EXPECT_EQ(ReadFile(Path("a.nmea")), Trip({"--duration", "1m"}));
    const ProcessResult again = Run("simulate", {"--duration", "2m", "-o", Path("a.nmea")});
    EXPECT_EQ(again.exitCode, 1);
    EXPECT_EQ(ReadFile(Path("a.nmea")), Trip({"--duration", "1m"}));
}

TEST_F(Simulate, BrokenPipe_EndsQuietly) {
    const ProcessResult run = RunIntoBrokenPipe("simulate", {"--duration", "30d"});
    EXPECT_EQ(run.exitCode, 141);  // the signal SIGPIPE
    EXPECT_EQ(run.err, "");
}

TEST_F(Simulate, WrongUsageAndNoSpace_AreToldApart) {
    EXPECT_EQ(Run("simulate", {"--duration", "soon"}).exitCode, 2);
    EXPECT_EQ(Run("simulate", {"--duration", "0"}).exitCode, 2);
    EXPECT_EQ(Run("simulate", {"--start", "yesterday"}).exitCode, 2);
    EXPECT_EQ(Run("simulate", {"--start", "1979-01-01T00:00:00Z"}).exitCode, 2);
    EXPECT_EQ(Run("simulate", {"--rate", "3"}).exitCode, 2);
    EXPECT_EQ(Run("simulate", {"--profile", "kite"}).exitCode, 2);
    const ProcessResult full = Run("simulate", {"-o", "/dev/full"});
    EXPECT_EQ(full.exitCode, 1);
    EXPECT_TRUE(Contains(full.err, "No space left on device")) << full.err;
}

// Against the system's own, on angles of all sizes.
TEST(SteadyMath, SineAndCosine_AreExactToTheLastDigits) {
    for (double degrees = -1000; degrees < 1000; degrees += 0.37) {
        const double radians = degrees * 3.14159265358979 / 180;
        ASSERT_NEAR(SineOf(degrees), std::sin(radians), 1e-12) << degrees;
        ASSERT_NEAR(CosineOf(degrees), std::cos(radians), 1e-12) << degrees;
    }
}

}  // namespace
}  // namespace host
