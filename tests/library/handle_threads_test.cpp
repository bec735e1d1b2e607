// Handles that a host made itself, one thread each: they read side by side, of one file and of several, while
// the manager loads the same files. Races are found where this runs under ThreadSanitizer.
#include <atomic>
#include <thread>

#include "tests/library/library_fixture.h"

namespace {

class HandleThreads : public LibraryTest {
 protected:
    // Line feeds alone: whoever reads the file first exchanges it for one with other line ends.
    void StoreWithLineFeeds(const std::string& file) const {
        std::string text = TextOf(StoredTrack{});
        std::erase(text, '\r');
        Write(PathOf(file), text);
    }
    // Header and points, through a handle of this thread's own.
    static bool ReadsWell(const std::string& file) {
        const auto handle = Handle(file);
        Points points;
        if (!handle->Load(nullptr)) return false;
        handle->GetPtList(points);
        return handle->GetName() == "Morning ride" && handle->GetLength() == 1234.5 && points.size() == 3 &&
               points[2].dAltitude == 7;
    }
};

TEST_F(HandleThreads, OfOneFileAndOfSeveral_ReadSideBySideWhileTheLibraryLoads) {
    constexpr int kThreads = 4, kRounds = 5;
    for (const char* file : {"a", "b", "c"}) StoreWithLineFeeds(file);
    std::atomic<int> good = 0;
    const auto readAll = [&good] {
        for (int round = 0; round < kRounds; ++round)
            for (const char* file : {"a", "b", "c"}) good += ReadsWell(file) ? 1 : 0;
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) threads.emplace_back(readAll);
    Load();
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(good, kThreads * kRounds * 3);
    EXPECT_EQ(Library().GetCnt(), 3u);
}

}  // namespace
