// The strategies against their rules written down once more, word for word and with whole runs, on random
// drives.
#include <cmath>
#include <cstring>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "record/recording_strategy.h"
#include "tests/support/seed.h"
#include "track/geodesy.h"

namespace {

using Points = std::vector<TckPt, je_allocator<TckPt>>;

enum class Rule { Distance, Time, Automatic };

// The rules, told one by one.
class PlainStrategy {
 public:
    PlainStrategy(Rule rule, int metres, int seconds)
        : m_rule(rule), m_metres(metres), m_seconds(static_cast<std::uint32_t>(seconds)) {}

    int AddFix(const TckPt& fix) {
        if (fix.lTime == 0) return 0;
        if (m_lastTime != 0 && fix.lTime < m_lastTime) return 0;
        return m_rule == Rule::Time ? ByTime(fix) : ByRun(fix);
    }

    Points chosen;

 private:
    int ByTime(const TckPt& fix) {
        if (std::llabs(std::int64_t{fix.lTime} - m_lastTime) >= std::int64_t{m_seconds}) {
            chosen.push_back(fix);
            m_lastTime = fix.lTime;
        }
        return chosen.size() < 60 / m_seconds ? 1 : 2;
    }

    int ByRun(const TckPt& fix) {
        m_lastTime = fix.lTime;
        m_run.push_back(fix);
        if (m_run.size() == 1 || !IsComplete()) return 0;
        chosen.push_back(m_run.front());
        m_run = {fix};
        return chosen.size() < (m_rule == Rule::Distance ? 30u : 60u) ? 1 : 2;
    }

    bool IsComplete() const {
        const std::int64_t age = std::int64_t{m_run.back().lTime} - m_run.front().lTime;
        return RunLength() >= m_metres || (m_rule == Rule::Automatic && age >= std::int64_t{m_seconds});
    }

    double RunLength() const {
        double length = 0.0;
        for (std::size_t i = 1; i < m_run.size(); ++i) length += Step(m_run[i - 1], m_run[i]);
        return length;
    }

    static double Step(const TckPt& a, const TckPt& b) {
        const double seconds = b.lTime - a.lTime;
        if (seconds < 5.0) return std::fabs((a.dSpeed + b.dSpeed) * seconds * 0.5);
        double distance = 0.0;
        double bearing = 0.0;
        CalDistance(b.dLatitude, b.dLongitude, a.dLatitude, a.dLongitude, 0, &distance, &bearing);
        return distance;
    }

    Rule m_rule;
    double m_metres;
    std::uint32_t m_seconds;
    std::int32_t m_lastTime = 0;
    Points m_run;
};

std::unique_ptr<ITrackSaveStragy> Make(Rule rule, int metres, int seconds) {
    const auto interval = static_cast<std::uint32_t>(seconds);
    if (rule == Rule::Distance) return std::make_unique<CTrackDistStragy>(metres);
    if (rule == Rule::Time) return std::make_unique<CTrackTimeStragy>(interval);
    return std::make_unique<CTrackAutoStragy>(metres, interval);
}

// Stops, steps back in time, gaps, fixes without time.
class RandomDrive {
 public:
    explicit RandomDrive(unsigned seed) : m_random(Seed(seed)) {}

    TckPt Next() {
        const int kind = Upto(100);
        m_fix.lTime += kind < 70 ? 1 : kind < 80 ? 0 : kind < 85 ? -Upto(4) : kind < 98 ? Upto(12) : Upto(4000);
        m_fix.dSpeed = Upto(4) == 0 ? 0.0 : Upto(300) / 10.0;
        m_fix.dLatitude += (Upto(21) - 10) * 1e-5;
        m_fix.dLongitude += (Upto(21) - 10) * 1e-5;
        m_fix.reserved[3] = static_cast<unsigned char>(Upto(256));
        TckPt fix = m_fix;
        if (Upto(50) == 0) fix.lTime = 0;
        return fix;
    }
    int Upto(int limit) { return static_cast<int>(m_random() % static_cast<unsigned>(limit)); }

 private:
    std::mt19937 m_random;
    TckPt m_fix{47.0, 8.0, 0.0, 0.0, 1'000'000'000, 0.0f, {}};
};

bool SamePoints(const Points& a, const Points& b) {
    return a.size() == b.size() &&
           (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(TckPt)) == 0);
}

void Drive(Rule rule, unsigned seed) {
    RandomDrive drive(seed);
    const int metres = drive.Upto(60);
    const int seconds = 1 + drive.Upto(80);
    SCOPED_TRACE("seed " + std::to_string(seed) + ", " + std::to_string(metres) + " m, " +
                 std::to_string(seconds) + " s");
    const auto strategy = Make(rule, metres, seconds);
    PlainStrategy plain(rule, metres, seconds);
    for (int number = 0; number < 400; ++number) {
        const TckPt fix = drive.Next();
        ASSERT_EQ(strategy->AddFixPt(fix), plain.AddFix(fix)) << "fix " << number;
        Points chosen;
        strategy->GetSavePtLst(chosen);
        ASSERT_TRUE(SamePoints(chosen, plain.chosen)) << "fix " << number;
        if (drive.Upto(40) == 0) {
            strategy->ClearSavePtLst();
            plain.chosen.clear();
        }
    }
}

}  // namespace

TEST(RandomDrives, ByDistance_AreChosenByTheRules) {
    for (unsigned seed = 1; seed <= 100; ++seed) Drive(Rule::Distance, seed);
}
TEST(RandomDrives, ByTime_AreChosenByTheRules) {
    for (unsigned seed = 1; seed <= 100; ++seed) Drive(Rule::Time, seed);
}
TEST(RandomDrives, Automatic_AreChosenByTheRules) {
    for (unsigned seed = 1; seed <= 100; ++seed) Drive(Rule::Automatic, seed);
}
