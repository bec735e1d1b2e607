#include "record/ring_plan.h"

#include <set>
#include <string>

#include <gtest/gtest.h>

#include "tests/record/plain_ring.h"

using log_file::IsConsistent;
using log_file::PlanAppend;
using log_file::RingBlock;
using log_file::RingHeader;
using log_file::RingWrite;
using log_file::WouldOverwriteTripStart;

namespace {

RingHeader Header(int start, int count) {
    return {static_cast<std::uint16_t>(start), static_cast<std::uint16_t>(count)};
}

// The slots after a plan was carried out on them; points of the batch are 1, 2, ..., a slot of zeros is 0.
void CarryOut(const RingWrite& plan, std::vector<int>& slots) {
    for (std::size_t i = 0; i < plan.blockCount; ++i) {
        const RingBlock& block = plan.blocks[i];
        const std::size_t end = block.slot + block.points + block.zeros;
        if (slots.size() < end) slots.resize(end, PlainRing::kNeverWritten);
        for (std::size_t n = 0; n < block.points; ++n)
            slots[block.slot + n] = static_cast<int>(block.firstPoint + n) + 1;
        for (std::size_t n = 0; n < block.zeros; ++n) slots[block.slot + block.points + n] = 0;
    }
}

std::string Situation(const PlainRing& ring, int batch) {
    return "start " + std::to_string(ring.start) + ", count " + std::to_string(ring.count) + ", capacity " +
           std::to_string(ring.capacity) + ", batch " + std::to_string(batch) +
           (ring.overwrite ? ", overwrite" : ", no overwrite");
}

void ExpectAsThePlainRing(PlainRing ring, int batch) {
    SCOPED_TRACE(Situation(ring, batch));
    const auto plan = PlanAppend(Header(ring.start, ring.count), static_cast<std::size_t>(batch),
                                 static_cast<std::size_t>(ring.capacity), ring.overwrite);
    std::vector<int> slots = ring.slots;
    const PlainRing::Answer answer = ring.Append(batch);
    ASSERT_EQ(plan.has_value(), answer.accepted);
    if (!plan) return;
    CarryOut(*plan, slots);
    EXPECT_EQ(plan->header.start, ring.start);
    EXPECT_EQ(plan->header.count, ring.count);
    EXPECT_EQ(plan->recorded, static_cast<std::size_t>(answer.recorded));
    EXPECT_EQ(slots, ring.slots);
}

}  // namespace

TEST(RingPlan, EverySmallRing_IsWrittenAsThePlainRing) {
    for (int capacity = 1; capacity <= 9; ++capacity)
        for (int count = 0; count <= capacity; ++count)
            for (int start = 0; start <= count; ++start)
                for (int batch = 1; batch < capacity; ++batch)
                    for (const bool overwrite : {false, true})
                        ExpectAsThePlainRing(PlainRing(capacity, overwrite, start, count), batch);
}

TEST(RingPlan, LargestRing_DoesNotOverflowSixteenBits) {
    constexpr int kLargest = 65535;
    for (const int start : {0, 1, 40000, kLargest - 1, kLargest})
        for (const int batch : {1, 2, 40000, kLargest - 1})
            for (const bool overwrite : {false, true})
                ExpectAsThePlainRing(PlainRing(kLargest, overwrite, start, kLargest), batch);
}

TEST(RingPlan, BatchAcrossTheEnd_IsTwoBlocksOfWhichTheSecondIsAsLongAsTheBatch) {
    const auto plan = PlanAppend(Header(0, 9998), 5, 10000, true);
    ASSERT_TRUE(plan);
    EXPECT_EQ(plan->header.start, 3);
    EXPECT_EQ(plan->header.count, 10000);
    ASSERT_EQ(plan->blockCount, 2u);
    EXPECT_EQ(plan->blocks[0].slot, 9998u);
    EXPECT_EQ(plan->blocks[0].points, 2u);
    EXPECT_EQ(plan->blocks[0].zeros, 0u);
    EXPECT_EQ(plan->blocks[1].slot, 0u);
    EXPECT_EQ(plan->blocks[1].firstPoint, 2u);
    EXPECT_EQ(plan->blocks[1].points, 3u);
    EXPECT_EQ(plan->blocks[1].zeros, 2u);
}

TEST(RingPlan, SameWithoutOverwriting_DropsWhatDoesNotFit) {
    const auto plan = PlanAppend(Header(0, 9998), 5, 10000, false);
    ASSERT_TRUE(plan);
    EXPECT_EQ(plan->header.start, 0);
    EXPECT_EQ(plan->header.count, 10000);
    ASSERT_EQ(plan->blockCount, 1u);
    EXPECT_EQ(plan->blocks[0].points, 2u);
    EXPECT_EQ(plan->recorded, 2u);
}

TEST(RingPlan, WrappedRingFilledExactlyToItsEnd_CountsAsAcrossTheEnd) {
    const auto plan = PlanAppend(Header(7, 10), 3, 10, true);
    ASSERT_TRUE(plan);
    EXPECT_EQ(plan->header.start, 0);
    ASSERT_EQ(plan->blockCount, 2u);
    EXPECT_EQ(plan->blocks[1].points, 0u);
    EXPECT_EQ(plan->blocks[1].zeros, 3u);
}

TEST(RingPlan, HeaderOfNoSuchRing_IsRefused) {
    EXPECT_FALSE(PlanAppend(Header(0, 11), 1, 10, true));
    EXPECT_FALSE(PlanAppend(Header(6, 5), 1, 10, true));
}

TEST(RingPlan, Consistency_NeedsTheExactSizeStartAndBound) {
    EXPECT_TRUE(IsConsistent(Header(0, 0), 4));
    EXPECT_TRUE(IsConsistent(Header(0, 3), 4 + 48 * 3));
    EXPECT_TRUE(IsConsistent(Header(3, 3), 4 + 48 * 3));
    EXPECT_FALSE(IsConsistent(Header(4, 3), 4 + 48 * 3));
    EXPECT_FALSE(IsConsistent(Header(0, 3), 4 + 48 * 3 + 1));
    EXPECT_FALSE(IsConsistent(Header(0, 3), 4 + 48 * 3 - 1));
    EXPECT_FALSE(IsConsistent(Header(0, 3), 4 + 48 * 4));
}

TEST(RingPlan, ConsistencyBound_IsTenThousandRecords) {
    EXPECT_TRUE(IsConsistent(Header(0, 10000), 4 + 48 * 10000));
    EXPECT_FALSE(IsConsistent(Header(0, 10001), 4 + 48 * 10001));
    EXPECT_FALSE(IsConsistent(Header(0, 65535), 4 + 48 * 65535));
}

TEST(RingPlan, SizeBeyondFourGibibytes_IsNotTakenForItsLowBits) {
    EXPECT_FALSE(IsConsistent(Header(0, 3), (std::int64_t{1} << 32) + 4 + 48 * 3));
}

namespace {

// The slots that the next `batch` points are written to, told one by one.
std::set<int> SlotsWritten(int start, int batch, int capacity) {
    std::set<int> slots;
    for (int i = 0; i < batch; ++i) slots.insert((start + i) % capacity);
    return slots;
}

}  // namespace

// In a full ring the trip start P is overwritten when the batch covers slot P - 1 or has come round to slot P:
// compared with the very slots for every trip start that lies before the ring's start or behind it.
TEST(TripStart, FullRing_IsReachedByTheSlotsThatABatchCovers) {
    constexpr int kCapacity = 8;
    for (int start = 0; start < kCapacity; ++start)
        for (int batch = 1; batch < kCapacity; ++batch)
            for (int trip = 0; trip < kCapacity; ++trip) {
                const std::set<int> written = SlotsWritten(start, batch, kCapacity);
                const bool comesRound = start + batch >= kCapacity;
                const bool expected = (trip > start && written.count(trip - 1) != 0) ||
                                      (comesRound && (written.count(trip) != 0 && trip < start)) ||
                                      (comesRound && start + batch - kCapacity == trip);
                EXPECT_EQ(WouldOverwriteTripStart(Header(start, kCapacity), batch, kCapacity, trip), expected)
                    << "start " << start << ", batch " << batch << ", trip " << trip;
            }
}

TEST(TripStart, FullRing_EdgesOfTheFirstStretch) {
    EXPECT_FALSE(WouldOverwriteTripStart(Header(3, 10), 4, 10, 3));  // trip at the start itself: not yet
    EXPECT_TRUE(WouldOverwriteTripStart(Header(3, 10), 4, 10, 4));
    EXPECT_TRUE(WouldOverwriteTripStart(Header(3, 10), 4, 10, 7));  // trip at the end of the batch
    EXPECT_FALSE(WouldOverwriteTripStart(Header(3, 10), 4, 10, 8));
}

TEST(TripStart, FullRing_EdgesOfComingRound) {
    EXPECT_FALSE(WouldOverwriteTripStart(Header(8, 10), 1, 10, 0));  // end 9
    EXPECT_TRUE(WouldOverwriteTripStart(Header(8, 10), 2, 10, 0));   // end 10 = capacity, round to slot 0
    EXPECT_FALSE(WouldOverwriteTripStart(Header(8, 10), 4, 10, 3));  // round to 2
    EXPECT_TRUE(WouldOverwriteTripStart(Header(8, 10), 5, 10, 3));   // round to 3
}

TEST(TripStart, RingThatIsNotFull_IsReachedOneRoundLater) {
    EXPECT_FALSE(WouldOverwriteTripStart(Header(0, 7), 2, 10, 0));
    EXPECT_TRUE(WouldOverwriteTripStart(Header(0, 7), 3, 10, 0));
    EXPECT_FALSE(WouldOverwriteTripStart(Header(0, 7), 6, 10, 4));
    EXPECT_TRUE(WouldOverwriteTripStart(Header(0, 7), 7, 10, 4));
}

TEST(TripStart, LargestNumbers_DoNotOverflow) {
    constexpr std::int64_t kMost = 2147483647;
    EXPECT_TRUE(WouldOverwriteTripStart(Header(9999, 10000), kMost, 10000, 10000));
    EXPECT_FALSE(WouldOverwriteTripStart(Header(0, 9999), kMost, 10000, kMost));
}
