// Each call that the library makes to the system for its files fails once, in turn, in every way that such a
// call can fail: nothing crashes or hangs, and nothing that was there before is lost.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <map>
#include <set>

#include "qtrace.h"
#include "tests/power/laboratory.h"

namespace power {
namespace {

using Points = std::vector<TckPt, je_allocator<TckPt>>;

constexpr std::int32_t kOldTrip = 1'600'000'000,
                       kLaterTrip = 1'650'000'000;  // [s] both recorded before the session
constexpr std::int32_t kSession = 1'700'000'000;
constexpr int kMostCalls = 2000;
constexpr std::size_t kLargestBatch = 5;
constexpr std::size_t kMostBeforeRemoving = 3 * kLargestBatch;

struct Fault {
    const char* name;
    const char* text;  // for the shim
    std::size_t mostLost = kLargestBatch;
    bool maySetAside = false;
};
void PrintTo(const Fault& fault, std::ostream* out) { *out << fault.name; }

Points Fixes(std::int32_t begin, int count) {
    Points points;
    for (std::int32_t i = 0; i < count; ++i)
        points.push_back(TckPt{47 + i * 1e-4, 8 + i % 7 * 1e-4, 400, 10, begin + i, 90, {}});
    return points;
}

// The beginning of a point's record, up to its time: a point of one of the trips recorded before the session.
std::string RecordOf(std::int32_t time) {
    const std::int32_t trip = time < kLaterTrip ? kOldTrip : kLaterTrip;
    const TckPt point = Fixes(trip, time - trip + 1).back();
    return {reinterpret_cast<const char*>(&point), offsetof(TckPt, fCourse)};
}

void StoreTrack(const std::string& name, int points) {
    CTrack track;
    track.SetName(name.c_str());
    for (const TckPt& point : Fixes(kOldTrip, points)) track.AppendPt(point, false);
    track.Calculate(true);
    track.Save("\\UserData\\Track\\" + name + ".gpx");
}

// The times of the recording's points, as the next start finds them; fixes without time are records of zeros.
std::set<std::int32_t> RecordedTimes() {
    CTrackEx recording(200);
    recording.SetFilePathEx("Log.dat", "LogHd.dat");
    EXPECT_TRUE(recording.OpenEx());
    std::set<std::int32_t> times;
    for (int i = 0; i < recording.GetSliceNum(); ++i)
        for (const TckPt& point : recording.GetSliceTrace(i)->GetPtList()) times.insert(point.lTime);
    recording.CloseEx();
    return times;
}

std::size_t PointsOf(const std::string& name) {
    CTrack track;
    return track.Load("\\UserData\\Track\\" + name + ".gpx") ? track.GetPtCount() : 0;
}

class Faults : public ::testing::TestWithParam<Fault> {
 protected:
    Faults() {
        CTrackEx recording(200);
        recording.SetOverWrt(true);
        recording.SetFilePathEx("Log.dat", "LogHd.dat");
        recording.OpenEx();
        for (const std::int32_t trip : {kOldTrip, kLaterTrip}) {
            Points batch = Fixes(trip, 30);
            recording.AppendEx(batch);
        }
        recording.CloseEx();
        StoreTrack("one", 40);
        StoreTrack("two", 50);
        m_before = m_laboratory.Content();
    }
    // The session with one fault; false when it made fewer calls.
    bool Run(long call) {
        m_laboratory.Write(m_before);
        const int code = m_laboratory.RunWithFault("everything", 1, call, GetParam().text, m_failed);
        EXPECT_EQ(code, 0) << "call " << call << ", " << m_failed;
        return !m_failed.empty();
    }
    // The first slice, the old trip, was removed by the session, or is still whole. A file that could not be
    // read may have been set aside.
    void ExpectRecordingKept(const std::set<std::int32_t>& faultless) const {
        const std::set<std::int32_t> found = RecordedTimes();
        const std::string aside = GetParam().maySetAside ? FilesSetAside() : "";
        std::size_t lost = 0;
        for (const std::int32_t time : faultless) {
            if (found.count(time) != 0 || (time < kSession && aside.find(RecordOf(time)) != std::string::npos))
                continue;
            ++lost;
            EXPECT_GE(time, kSession) << "a point of before the session";
        }
        // The slice that the session removes is then its own first one.
        const std::size_t removed = aside.empty() ? 0 : kMostBeforeRemoving;
        EXPECT_LE(lost, GetParam().mostLost + removed) << "more than the batch in hand";
        const auto old = std::count_if(found.begin(), found.end(),
                                       [](std::int32_t time) { return time != 0 && time < kLaterTrip; });
        EXPECT_TRUE(old == 0 || old == 30) << old << " points of the old trip";
    }
    std::string FilesSetAside() const {
        std::string all;
        for (const auto& [path, content] : m_laboratory.Content())
            if (path.ends_with(".bk")) all += content;
        return all;
    }
    static void ExpectTracksKept() {
        const std::size_t one = PointsOf("one"), two = PointsOf("two") + PointsOf("renamed");
        EXPECT_TRUE(one == 40 || one == 5000) << one << " points";
        EXPECT_EQ(two, 50u);
    }

    Laboratory m_laboratory;
    Disk m_before;
    std::string m_failed;
};

TEST_P(Faults, OfEachCallInTurn_LoseNothingThatWasThere) {
    ASSERT_FALSE(Run(0));
    const std::set<std::int32_t> faultless = RecordedTimes();
    ASSERT_EQ(faultless.count(kLaterTrip), 1u);
    std::map<std::string, int> failures;
    long call = 1;
    for (; call < kMostCalls && Run(call); ++call) {
        ++failures[m_failed];
        SCOPED_TRACE("call " + std::to_string(call) + ", " + m_failed);
        ExpectRecordingKept(faultless);
        ExpectTracksKept();
        if (HasFailure()) break;
    }
    EXPECT_LT(call, kMostCalls);
    EXPECT_GT(call, 100) << "the session does its work under the shim";
    for (const auto& [name, count] : failures)
        std::cout << GetParam().name << "  " << name << "  " << count << '\n';
}

INSTANTIATE_TEST_SUITE_P(Kinds, Faults,
                         ::testing::Values(Fault{"ENOSPC", "28"}, Fault{"EIO", "5"}, Fault{"EACCES", "13"},
                                           Fault{"EROFS", "30"}, Fault{"EINTR", "4"},
                                           Fault{"ShortWrite", "short"},
                                           Fault{"TwoInARow", "5 2", kLargestBatch, true},
                                           Fault{"ThreeInARow", "5 3", kLargestBatch, true},
                                           Fault{"FiveInARow", "5 5", 2 * kLargestBatch, true},
                                           Fault{"TenInARow", "5 10", 3 * kLargestBatch, true}),
                         [](const auto& fault) { return std::string(fault.param.name); });

}  // namespace
}  // namespace power
