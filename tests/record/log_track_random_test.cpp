// The recording against its description carried out point by point on random batches: the file byte for byte,
// the slices point by point, their statistics against a computation from scratch, and the same after a restart.
#include <cmath>
#include <random>

#include "tests/record/log_track_fixture.h"
#include "tests/record/plain_ring.h"
#include "tests/support/seed.h"
#include "track/geodesy.h"

namespace {

constexpr int kLongestPause = 1800;  // [s] from here on a slice ends

// The file and the slices as the description tells them. Slots of the plain ring hold numbers of fixes, from 1.
class PlainRecording {
 public:
    PlainRecording(int capacity, bool overwrite) : m_ring(capacity, overwrite) {}

    // Fixes are numbered on from those offered before.
    bool Append(const Points& batch) {
        const int first = static_cast<int>(m_offered.size()) + 1;
        for (const TckPt& fix : batch) m_offered.push_back(described::Record(fix));
        const PlainRing::Answer answer = m_ring.Append(static_cast<int>(batch.size()), first);
        for (int i = 0; i < answer.recorded; ++i)
            Remember(described::Stamped(batch[static_cast<std::size_t>(i)]));
        while (PointCount() > static_cast<std::size_t>(m_ring.capacity)) ForgetOldest();
        return answer.accepted;
    }

    std::string File() const {
        std::vector<std::string> slots;
        for (const int number : m_ring.slots) slots.push_back(RecordOf(number));
        return described::RingFile(static_cast<unsigned>(m_ring.start), slots);
    }

    // What a restart finds.
    void Restart() {
        Points points;
        for (int i = 0; i < m_ring.count; ++i) {
            const auto slot = static_cast<std::size_t>((m_ring.start + i) % m_ring.count);
            const std::string record = RecordOf(m_ring.slots[slot]);
            points.push_back(described::IsIntact(record) ? described::Point(record) : TckPt{});
        }
        std::stable_sort(points.begin(), points.end(),
                         [](const TckPt& a, const TckPt& b) { return a.lTime < b.lTime; });
        slices.clear();
        for (const TckPt& point : points) Remember(point);
    }

    void WriteAnew() {
        m_ring.slots.clear();
        for (const Points& slice : slices)
            for (const TckPt& point : slice) m_ring.slots.push_back(NumberOf(point));
        m_ring.start = 0;
        m_ring.count = static_cast<int>(m_ring.slots.size());
    }

    std::size_t PointCount() const {
        std::size_t count = 0;
        for (const Points& slice : slices) count += slice.size();
        return count;
    }

    std::vector<Points> slices;

 private:
    void Remember(const TckPt& point) {
        const bool cut = slices.empty() ||
                         std::llabs(std::int64_t{point.lTime} - slices.back().back().lTime) >= kLongestPause;
        if (cut) slices.emplace_back();
        slices.back().push_back(point);
    }
    void ForgetOldest() {
        slices.front().erase(slices.front().begin());
        if (slices.front().empty()) slices.erase(slices.begin());
    }
    std::string RecordOf(int number) const {
        return number == 0 ? described::kZeros : m_offered[static_cast<std::size_t>(number - 1)];
    }
    int NumberOf(const TckPt& point) const {
        for (std::size_t i = m_offered.size(); i-- > 0;)
            if (m_offered[i] == RawBytes(point)) return static_cast<int>(i) + 1;
        return 0;
    }

    PlainRing m_ring;
    std::vector<std::string> m_offered;
};

}  // namespace

class RandomRecording : FilesInMemory, public LogTrackTest {
 protected:
    int Upto(int limit) { return static_cast<int>(m_random() % static_cast<unsigned>(limit)); }

    // Mostly a second later, sometimes after a pause about as long as cuts a slice, sometimes back in time.
    TckPt RandomFix() {
        const int kind = Upto(40);
        m_fix.lTime += kind < 34 ? 1 : kind < 36 ? 1798 + Upto(4) : kind < 37 ? -Upto(2500) : Upto(1000);
        m_fix.dLatitude += (Upto(2001) - 1000) * 1e-6;
        m_fix.dLongitude += (Upto(2001) - 1000) * 1e-6;
        m_fix.dSpeed = Upto(40);
        for (unsigned char& byte : m_fix.reserved) byte = static_cast<unsigned char>(Upto(256));
        return m_fix;
    }
    Points RandomBatch(int capacity) {
        Points batch(static_cast<std::size_t>(Upto(8) == 0 ? Upto(capacity + 2) : Upto(capacity / 2 + 2)));
        for (TckPt& fix : batch) fix = RandomFix();
        return batch;
    }

    void ExpectAs(const PlainRecording& plain) {
        ASSERT_EQ(BytesOf(kPointFile), plain.File());
        ASSERT_EQ(m_track->GetPtCount(), plain.PointCount());
        ASSERT_EQ(static_cast<std::size_t>(m_track->GetSliceNum()), plain.slices.size());
        for (std::size_t i = 0; i < plain.slices.size(); ++i) ExpectSlice(static_cast<int>(i), plain.slices[i]);
    }
    void ExpectSlice(int index, const Points& points) {
        CTrack slice(*m_track->GetSliceTrace(index));
        ASSERT_TRUE(SamePoints(slice.GetPtList(), points)) << "slice " << index;
        ASSERT_NEAR(slice.GetLength(), AidCalLength(points), 1e-3) << "slice " << index;
        ASSERT_NEAR(slice.GetArea(), std::fabs(AidCalArea(points)), 50.0) << "slice " << index;
        ASSERT_EQ(slice.GetStartTime(), std::min(points.front().lTime, points.back().lTime));
        ASSERT_EQ(slice.GetEndTime(), std::max(points.front().lTime, points.back().lTime));
    }

    // Batches of random size into a ring of this capacity, with restarts and cleared slices in between.
    void RecordAtRandom(int capacity, bool overwrite, int batches) {
        Close();
        std::filesystem::remove(OnDisk(kPointFile));
        PlainRecording plain(capacity, overwrite);
        ASSERT_TRUE(Open(capacity, overwrite));
        for (int number = 0; number < batches; ++number) {
            SCOPED_TRACE("batch " + std::to_string(number));
            Points batch = RandomBatch(capacity);
            const bool accepted = plain.Append(batch);
            ASSERT_EQ(m_track->AppendEx(batch), accepted);
            ASSERT_NO_FATAL_FAILURE(ExpectAs(plain));
            if (Upto(25) == 0) Restart(plain, capacity, overwrite);
            if (Upto(50) == 0) ClearASlice(plain);
            if (HasFatalFailure()) return;
        }
    }
    void Restart(PlainRecording& plain, int capacity, bool overwrite) {
        SCOPED_TRACE("after a restart");
        plain.Restart();
        ASSERT_TRUE(Open(capacity, overwrite));
        ExpectAs(plain);
    }
    void ClearASlice(PlainRecording& plain) {
        SCOPED_TRACE("after a slice was cleared");
        const int slice = Upto(static_cast<int>(plain.slices.size()) + 1);
        m_track->ClearSliceTrace(slice);
        if (static_cast<std::size_t>(slice) < plain.slices.size())
            plain.slices.erase(plain.slices.begin() + slice);
        plain.WriteAnew();
        ASSERT_TRUE(m_track->SaveSliceData());
        ExpectAs(plain);
    }
    void RecordAtRandom(unsigned seed, bool overwrite, int batches) {
        m_random.seed(Seed(seed));
        const int capacity = 2 + Upto(seed % 4 == 0 ? 60 : 12);
        SCOPED_TRACE("seed " + std::to_string(seed) + ", capacity " + std::to_string(capacity));
        ASSERT_NO_FATAL_FAILURE(RecordAtRandom(capacity, overwrite, batches));
    }

    std::mt19937 m_random;
    TckPt m_fix{47.0, 8.0, 400.0, 0.0, kFirstTime, 0.0f, {}};
};

TEST_F(RandomRecording, Overwriting_IsAsDescribed) {
    for (unsigned seed = 1; seed <= 120 && !HasFatalFailure(); ++seed) RecordAtRandom(seed, true, 200);
}

TEST_F(RandomRecording, NotOverwriting_IsAsDescribed) {
    for (unsigned seed = 1; seed <= 160 && !HasFatalFailure(); ++seed) RecordAtRandom(seed, false, 40);
}
