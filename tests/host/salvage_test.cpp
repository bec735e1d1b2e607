// Records out of damaged bytes: host/recording/salvage.h.
#include "host/recording/salvage.h"

#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "tests/host/ring_bytes.h"
#include "tests/support/seed.h"

namespace host {
namespace {

constexpr int kRecords = 6;

std::string SmallRing() { return RingBytes(0, UpTo(kRecords)); }

std::vector<int> Found(const std::string& bytes) {
    std::vector<int> numbers;
    for (const TckPt& point : PointsOf(FindRecords(bytes))) numbers.push_back(point.lTime - kFirstTime);
    return numbers;
}

constexpr std::size_t kChecked = 42;  // bytes of a record; the others may be anything

// All numbers but those whose checked bytes, at their place in the ring, meet the bytes from `first` to `last`.
std::vector<int> AllBut(std::size_t first, std::size_t last) {
    std::vector<int> numbers;
    for (int i = 0; i < kRecords; ++i) {
        const std::size_t begin = kRingHeaderSize + kRecordSize * static_cast<std::size_t>(i);
        if (last < begin || first >= begin + kChecked) numbers.push_back(i);
    }
    return numbers;
}

std::string Junk(std::size_t size, std::mt19937& random) {
    std::string junk(size, '\0');
    for (char& c : junk) c = static_cast<char>(random());
    return junk;
}

TEST(Salvage, IntactRing_GivesAllRecordsAndTheirPlaces) {
    const auto records = FindRecords(SmallRing());
    ASSERT_EQ(records.size(), static_cast<std::size_t>(kRecords));
    for (std::size_t i = 0; i < records.size(); ++i) {
        EXPECT_EQ(records[i].offset, kRingHeaderSize + kRecordSize * i);
        EXPECT_EQ(records[i].point, RingFix(static_cast<int>(i)));
    }
}

TEST(Salvage, EveryFlippedBit_CostsOneRecordAtMost) {
    const std::string good = SmallRing();
    for (std::size_t bit = 0; bit < 8 * good.size(); ++bit) {
        std::string bytes = good;
        bytes[bit / 8] = static_cast<char>(bytes[bit / 8] ^ (1 << bit % 8));
        ASSERT_EQ(Found(bytes), AllBut(bit / 8, bit / 8)) << bit;
    }
}

TEST(Salvage, CutAtEveryLength_GivesTheWholeRecords) {
    const std::string good = SmallRing();
    for (std::size_t size = 0; size <= good.size(); ++size) {
        ASSERT_EQ(Found(good.substr(0, size)), AllBut(size, good.size())) << size;
        ASSERT_EQ(Found(good.substr(size)), AllBut(0, size == 0 ? 0 : size - 1)) << size;
    }
}

TEST(Salvage, LostBytes_CostTheRecordsTheyWereIn) {
    const std::string good = SmallRing();
    for (std::size_t at = 0; at < good.size(); ++at)
        for (const std::size_t count : {1u, 3u, 47u, 48u, 49u}) {
            std::string bytes = good;
            bytes.erase(at, count);
            const std::size_t last = std::min(at + count, good.size()) - 1;
            ASSERT_EQ(Found(bytes), AllBut(at, last)) << at << ' ' << count;
        }
}

// Between two records nothing is lost; within one, that one.
TEST(Salvage, AddedBytes_CostOneRecordAtMost) {
    const std::string good = SmallRing();
    for (std::size_t at = 0; at <= good.size(); ++at)
        for (const std::size_t count : {1u, 5u, 100u}) {
            std::string bytes = good;
            bytes.insert(at, count, '\xA5');
            const bool isBetween = at <= kRingHeaderSize || (at - kRingHeaderSize) % kRecordSize == 0;
            ASSERT_EQ(Found(bytes), isBetween ? UpTo(kRecords) : AllBut(at, at)) << at << ' ' << count;
        }
}

TEST(Salvage, RandomBytes_HoldNoRecord) {
    std::mt19937 random(Seed(8));
    for (int i = 0; i < 20; ++i) ASSERT_TRUE(FindRecords(Junk(200'000, random)).empty());
}

TEST(Salvage, EvenBytes_HoldNoRecord) {
    for (const int byte : {0x00, 0xff, 0x20, 0x40})
        EXPECT_TRUE(FindRecords(std::string(10'000, static_cast<char>(byte))).empty()) << byte;
}

// The check sequence agrees, and yet no receiver has measured this.
TEST(Salvage, ImpossibleFigures_AreNoRecord) {
    const auto record = [](auto change) {
        TckPt fix = RingFix(0);
        change(fix);
        const std::string bytes = PointBytes(fix).substr(0, 40);
        return ByteString().Raw(bytes).U16(Remainder<std::uint16_t>(bytes, 0x8408)).Text("", 6).Bytes();
    };
    EXPECT_EQ(FindRecords(record([](TckPt&) {})).size(), 1u);
    EXPECT_EQ(FindRecords(record([](TckPt& fix) { fix.dLatitude = 90.1; })).size(), 0u);
    EXPECT_EQ(FindRecords(record([](TckPt& fix) { fix.dLongitude = -181; })).size(), 0u);
    EXPECT_EQ(FindRecords(record([](TckPt& fix) { fix.dSpeed = -1; })).size(), 0u);
    EXPECT_EQ(FindRecords(record([](TckPt& fix) { fix.dAltitude = NAN; })).size(), 0u);
    EXPECT_EQ(FindRecords(record([](TckPt& fix) { fix.fCourse = INFINITY; })).size(), 0u);
    EXPECT_EQ(FindRecords(record([](TckPt& fix) { fix.lTime = 0; })).size(), 0u);
    EXPECT_EQ(FindRecords(record([](TckPt& fix) { fix.dLatitude = 1e-200; })).size(), 0u);
}

// Immensely small figures do occur where a host computes speeds; beside another record they are believed.
TEST(Salvage, TinySpeedBesideAnotherRecord_IsBelieved) {
    TckPt fix = RingFix(1);
    fix.dSpeed = 1e-17;
    const std::string bytes = PointBytes(fix).substr(0, 40);
    const std::string tiny =
        ByteString().Raw(bytes).U16(Remainder<std::uint16_t>(bytes, 0x8408)).Text("", 6).Bytes();
    EXPECT_EQ(Found(PointBytes(RingFix(0)) + tiny), (std::vector<int>{0, 1}));
    EXPECT_EQ(Found(tiny), std::vector<int>{});
}

TEST(Salvage, Points_AreInTimeOrderAndOnce) {
    EXPECT_EQ(Found(RingBytes(2, {4, 5, 2, 3, 2}) + "x" + RingBytes(0, {5, 6})),
              (std::vector<int>{2, 3, 4, 5, 6}));
}

TEST(Salvage, Records_NeverOverlap) {
    std::mt19937 random(Seed(9));
    for (int i = 0; i < 2000; ++i) {
        std::string bytes = SmallRing();
        for (int piece = 0; piece < 3; ++piece)  // whole records dropped into the middle of others
            bytes.insert(random() % bytes.size(), PointBytes(RingFix(10 + piece)));
        const auto records = FindRecords(bytes);
        for (std::size_t k = 1; k < records.size(); ++k)
            ASSERT_GE(records[k].offset, records[k - 1].offset + kChecked);
        ASSERT_GE(records.size(), 4u);
    }
}

}  // namespace
}  // namespace host
