// The power is cut at each moment of a run, and the recording must be there as before or behind the step in
// hand. How: tests/power/laboratory.h.
#include <gtest/gtest.h>

#include "record/fcs16.h"
#include "tests/power/laboratory.h"
#include "tests/support/seed.h"

namespace power {
namespace {

// What is opened: the states, each a disk different from the others of its step; over all tests at least
// 20,000.
struct Case {
    const char* scenario;
    unsigned seeds;       // sessions, each with its own batches
    std::size_t atLeast;  // states
};
void PrintTo(const Case& run, std::ostream* out) { *out << run.scenario; }

class PowerCut : public ::testing::TestWithParam<Case> {
 protected:
    Count CutPower(const std::string& refuse = "") {
        Count all;
        for (unsigned seed = Seed(1); seed < Seed(1) + GetParam().seeds; ++seed) {
            const Count one = m_laboratory.CutPower(GetParam().scenario, seed, AtFirst(), refuse);
            all.states += one.states;
            if (all.losses == 0) all.firstLoss = one.firstLoss;
            all.losses += one.losses;
        }
        RecordProperty("states", static_cast<int>(all.states));
        RecordProperty("losses", static_cast<int>(all.losses));
        std::cout << all.states << " states, " << all.losses << " losses\n";
        return all;
    }
    // What is there before the session begins: for the salvaging, records of a ring that lost its header.
    static Disk AtFirst() {
        if (std::string_view(GetParam().scenario) != "salvaging") return {};
        std::string records;
        for (int second = 0; second < 5; ++second) {
            TckPt fix{47, 8, 400, 10, 1'600'000'000 + second, 90, {}};
            fcs16::Stamp(fix);
            records.append(reinterpret_cast<const char*>(&fix), sizeof fix);
        }
        return {{"App/Log.dat", records}, {"UserData/Track/TmpTk.bk", "an older backup"}};
    }

    Laboratory m_laboratory;
};

TEST_P(PowerCut, AtEveryMoment_LosesNothing) {
    const Count count = CutPower();
    EXPECT_EQ(count.losses, 0u) << count.firstLoss;
    EXPECT_GE(count.states, GetParam().atLeast);
}

// A second cut, while the append that the first one interrupted is being finished.
TEST(PowerCutAfterAPowerCut, AtEveryMoment_FinishesTheAppend) {
    Laboratory laboratory;
    Count all;
    for (unsigned seed = Seed(1); seed < Seed(1) + 3; ++seed) {
        for (const Disk& disk : laboratory.CutInTheMiddleOfAnAppend("turning", seed)) {
            const Count one = laboratory.CutPower("recovering", seed, disk);
            all.states += one.states;
            if (all.losses == 0) all.firstLoss = one.firstLoss;
            all.losses += one.losses;
        }
    }
    std::cout << all.states << " states, " << all.losses << " losses\n";
    EXPECT_EQ(all.losses, 0u) << all.firstLoss;
    EXPECT_GE(all.states, 1000u);
}

// The laboratory sees: without the note of the append in hand, cuts in the middle of one cost the recording.
TEST(PowerCutWithoutTheNote, InTheMiddleOfAnAppend_LosesTheRecording) {
    Laboratory laboratory;
    Count all;
    for (const char* scenario : {"growing", "turning"}) {
        const Count one = laboratory.CutPower(scenario, Seed(1), {}, ".redo");
        all.states += one.states;
        all.losses += one.losses;
    }
    std::cout << all.states << " states, " << all.losses << " losses\n";
    EXPECT_GT(all.losses, 0u);
}

INSTANTIATE_TEST_SUITE_P(Sessions, PowerCut,
                         ::testing::Values(Case{"growing", 24, 4700}, Case{"turning", 24, 7000},
                                           Case{"filling", 24, 1100}, Case{"slices", 20, 4200},
                                           Case{"reopening", 16, 2700}, Case{"shrinking", 16, 1900},
                                           Case{"salvaging", 8, 100}, Case{"tracks", 4, 100}),
                         [](const auto& run) { return std::string(run.param.scenario); });

}  // namespace
}  // namespace power
