// The allocator of every point list.
#include "util/je_allocator.h"

#include <cstdint>
#include <limits>
#include <list>
#include <map>
#include <new>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

TEST(JeMemory, Block_IsAlignedAndWritable) {
    for (const std::size_t bytes : {1u, 7u, 48u, 4096u, 480000u}) {
        auto* block = static_cast<unsigned char*>(je_memory::Allocate(bytes));
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % alignof(std::max_align_t), 0u) << bytes;
        block[0] = block[bytes - 1] = 0xA5;
        EXPECT_EQ(block[bytes - 1], 0xA5);
        je_memory::Free(block);
    }
}

TEST(JeMemory, NothingAsked_IsNull) { EXPECT_EQ(je_memory::Allocate(0), nullptr); }

TEST(JeMemory, NullGivenBack_IsHarmless) { EXPECT_NO_THROW(je_memory::Free(nullptr)); }

TEST(JeAllocator, MoreThanThereIs_Throws) {
    je_allocator<double> doubles;
    EXPECT_THROW(doubles.allocate(std::numeric_limits<std::size_t>::max()), std::bad_alloc);
    EXPECT_THROW(doubles.allocate(std::numeric_limits<std::size_t>::max() / sizeof(double) + 1),
                 std::bad_alloc);
}

TEST(JeAllocator, AnyTwo_AreEqualAndFreeEachOthersBlocks) {
    je_allocator<int> one;
    je_allocator<int> another;
    je_allocator<double> ofDoubles(one);
    EXPECT_TRUE(one == another);
    EXPECT_FALSE(one != another);
    EXPECT_TRUE(one == je_allocator<int>(ofDoubles));
    another.deallocate(one.allocate(10), 10);
}

TEST(JeAllocator, Containers_WorkWithIt) {
    std::vector<int, je_allocator<int>> numbers;
    for (int i = 0; i < 100000; ++i) numbers.push_back(i);
    std::vector<int, je_allocator<int>> copy = numbers;
    numbers.clear();
    numbers.shrink_to_fit();
    EXPECT_EQ(copy.size(), 100000u);
    EXPECT_EQ(copy.back(), 99999);

    const std::list<int, je_allocator<int>> list(copy.begin(), copy.begin() + 3);
    EXPECT_EQ(list.size(), 3u);
    std::map<int, int, std::less<int>, je_allocator<std::pair<const int, int>>> map;
    map[3] = 4;
    EXPECT_EQ(map.at(3), 4);
}

TEST(JeAllocator, BlockOfOneThread_IsFreedByAnother) {
    std::vector<int, je_allocator<int>> numbers;
    std::thread([&] { numbers.assign(100000, 7); }).join();
    EXPECT_EQ(numbers.back(), 7);
    std::thread([&] { std::vector<int, je_allocator<int>>().swap(numbers); }).join();
    EXPECT_TRUE(numbers.empty());
}
