// The bytes of the live recording's files: host/recording/ring_image.h.
#include "host/recording/ring_image.h"

#include <gtest/gtest.h>

#include "tests/host/ring_bytes.h"

namespace host {
namespace {

std::vector<int> Numbers(const RingImage& ring) {
    std::vector<int> numbers;
    for (const RingRecord& record : ring.records)
        numbers.push_back(record.state == RecordState::Good ? record.point.lTime - kFirstTime : -1);
    return numbers;
}

TEST(RingImage, NotWrapped_HoldsTheRecordsInOrder) {
    const RingImage ring = ReadRingImage(RingBytes(0, {0, 1, 2}));
    EXPECT_TRUE(ring.isConsistent);
    EXPECT_EQ(Numbers(ring), (std::vector<int>{0, 1, 2}));
    EXPECT_EQ(ring.records[2].offset, 100u);
    EXPECT_EQ(ring.records[2].point, RingFix(2));
}

TEST(RingImage, Wrapped_BeginsAtTheStart) {
    const RingImage ring = ReadRingImage(RingBytes(2, {4, 5, 2, 3}));
    EXPECT_EQ(Numbers(ring), (std::vector<int>{2, 3, 4, 5}));
    EXPECT_EQ(ring.records[0].slot, 2u);
}

TEST(RingImage, Zeros_AreEmptyAndNotDamaged) {
    const RingImage ring = ReadRingImage(RingBytes(1, {4, -1, 2, 3}));
    EXPECT_EQ(ring.Count(RecordState::Good), 3u);
    EXPECT_EQ(ring.Count(RecordState::Empty), 1u);
    EXPECT_EQ(ring.records[0].slot, 1u);
}

TEST(RingImage, EveryFlippedBit_DamagesItsRecordOnly) {
    const std::string good = RingBytes(0, {0, 1, 2});
    for (std::size_t bit = 8 * kRingHeaderSize; bit < 8 * good.size(); ++bit) {
        std::string bytes = good;
        bytes[bit / 8] = static_cast<char>(bytes[bit / 8] ^ (1 << bit % 8));
        const RingImage ring = ReadRingImage(bytes);
        const bool isChecked = (bit / 8 - kRingHeaderSize) % kRecordSize < 42;
        ASSERT_EQ(ring.Count(RecordState::Damaged), isChecked ? 1u : 0u) << bit;
        ASSERT_EQ(ring.Count(RecordState::Good), isChecked ? 2u : 3u) << bit;
    }
}

TEST(RingImage, HeaderAndSizeThatDisagree_AreNotConsistent) {
    const std::string good = RingBytes(0, {0, 1, 2});
    for (std::size_t size = 0; size < good.size(); ++size)
        ASSERT_FALSE(ReadRingImage(good.substr(0, size)).isConsistent) << size;
    EXPECT_FALSE(ReadRingImage(good + "x").isConsistent);
    EXPECT_FALSE(ReadRingImage(RingBytes(4, {0, 1, 2})).isConsistent);
    EXPECT_EQ(ReadRingImage(good.substr(0, 120)).records.size(), 2u);
}

TEST(RingImage, GapOfHalfAnHour_BeginsANewSlice) {
    std::vector<TckPt> points = {RingFix(1), RingFix(0), RingFix(1800), RingFix(1801), RingFix(3601)};
    const auto slices = SlicesOf(points);
    ASSERT_EQ(slices.size(), 2u);  // 1799 s, then 1800 s
    EXPECT_EQ(slices[0].size(), 4u);
    EXPECT_EQ(slices[0][0].lTime, kFirstTime);
}

TEST(RingImage, HeadFile_HasNameVisibilityAndColor) {
    ByteString bytes;
    bytes.Text("Qarvolent Trace H1.0", 32).Text("Trip", 32).U32(1).U32(0x302010).Text("", 24);
    const auto head = ReadHeadImage(bytes.Bytes());
    ASSERT_TRUE(head);
    EXPECT_EQ(head->name, "Trip");
    EXPECT_TRUE(head->visible);
    EXPECT_EQ(head->color, 0x302010u);
    EXPECT_FALSE(ReadHeadImage(bytes.Bytes().substr(1)));
    EXPECT_FALSE(ReadHeadImage(std::string(96, 'x')));
}

TEST(RingImage, Note_IsWaitingOnlyWhenItIsWhole) {
    const std::string note = NoteBytes(70);
    EXPECT_EQ(StateOfNote(note), NoteState::Waiting);
    EXPECT_EQ(StateOfNote(note + "what an earlier note left"), NoteState::Waiting);
    EXPECT_EQ(StateOfNote(""), NoteState::None);
    EXPECT_EQ(StateOfNote(std::string(8, '\0')), NoteState::None);
    for (std::size_t size = 1; size < note.size(); ++size)
        ASSERT_EQ(StateOfNote(note.substr(0, size)), NoteState::Damaged) << size;
    for (std::size_t bit = 64; bit < 8 * note.size(); ++bit) {
        std::string bytes = note;
        bytes[bit / 8] = static_cast<char>(bytes[bit / 8] ^ (1 << bit % 8));
        ASSERT_EQ(StateOfNote(bytes), NoteState::Damaged) << bit;
    }
}

}  // namespace
}  // namespace host
