// A long life: fixes with pauses, a ring that turns again and again, saves, and restarts, under limits of
// memory and files. QTRACE_SOAK_FIXES says how many fixes; scripts/soak runs ten million.
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <thread>

#include "qtrace.h"
#include "tests/support/device.h"
#include "tests/support/files_in_memory.h"

namespace power {
namespace {

constexpr long kUsualFixes = 200'000;
constexpr long kFixesBetweenStarts = 25'000;
constexpr long kFixesBetweenSaves = 70'000;
constexpr long kFixesBetweenPauses = 9'000;
constexpr long kSlackKiB = 3072;  // a start leaves a few hundred bytes for each path that it makes, on purpose
constexpr rlim_t kMostFiles = 40;
constexpr rlim_t kMostMemory = 512 << 20;  // [bytes] of addresses, the program itself included

class Soak : FilesInMemory, public DeviceTest {
 protected:
    Soak() {
        std::filesystem::create_directories(OnDisk("\\App"));
        Limit(RLIMIT_NOFILE, kMostFiles);
        Limit(RLIMIT_AS, kMostMemory);
        prctl(PR_SET_THP_DISABLE, 1, 0, 0, 0);  // the system would round what is used up to huge pages
    }
    ~Soak() override { delete CTrackMan::Instance(); }

    static void Limit(__rlimit_resource what, rlim_t most) {
        rlimit limit{};
        getrlimit(what, &limit);
        limit.rlim_cur = most;
        ASSERT_EQ(setrlimit(what, &limit), 0);
    }
    static void StartAgain() {
        delete CTrackMan::Instance();
        CTrackMan& manager = *CTrackMan::Instance();
        char userData[] = "\\UserData", tracks[] = "\\UserData\\Track";
        manager.GetTrackMangSet()->SetNdUserDataPath(userData);
        manager.GetTrackMangSet()->SetNdExtTrackPath(tracks);
        manager.GetTrackMangSet()->SetNdTmpTrackAutoSavePath(tracks);
        manager.SetIsHasEnoughSpaceCallFun([](bool onCard) { return !onCard; });
        manager.LoadData();
        while (manager.IsLoadingDataToMap()) std::this_thread::yield();
        manager.Start();
    }
    void SaveAndForget() {
        std::vector<TckPt, je_allocator<TckPt>> nothing;
        EXPECT_TRUE(CTrackMan::Instance()->SaveTempTrkToTrack(nothing));
        std::filesystem::remove_all(
            OnDisk("\\UserData\\Track"));  // thousands of saves are not what is tried here
        std::filesystem::create_directories(OnDisk("\\UserData\\Track"));
    }
    TckPt NextFix() {
        m_time += m_number % kFixesBetweenPauses == 0 ? 2000 : 1;
        const double turn = static_cast<double>(m_number++) * 0.01;
        TckPt fix{};
        fix.dLatitude = 47.0 + 0.1 * std::sin(turn * 0.37);
        fix.dLongitude = 8.0 + 0.1 * std::sin(turn * 0.23);
        fix.dSpeed = 14.0;
        fix.lTime = m_time;
        return fix;
    }
    void Record(long fixes) {
        for (long i = 0; i < fixes; ++i) {
            if (m_number % kFixesBetweenStarts == 0) StartAgain();
            if (m_number % kFixesBetweenSaves == 0) SaveAndForget();
            CTrackMan::Instance()->SaveToTempTrack(NextFix());
        }
    }
    static long ResidentKiB() {
        std::ifstream statm("/proc/self/statm");
        long total = 0, resident = 0;
        statm >> total >> resident;
        return resident * (sysconf(_SC_PAGESIZE) / 1024);
    }
    static long OpenFiles() {
        return std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                             std::filesystem::directory_iterator{});
    }

    std::int32_t m_time = 1'000'000'000;
    long m_number = 0;
};

TEST_F(Soak, ManyFixesWithPausesTurnsAndRestarts_LeaveMemoryAndFilesFlat) {
    const char* wanted = std::getenv("QTRACE_SOAK_FIXES");
    const long fixes = wanted == nullptr ? kUsualFixes : std::atol(wanted);
    Record(fixes / 2);
    const long memory = ResidentKiB(), files = OpenFiles();
    Record(fixes / 2);
    std::cout << fixes << " fixes, resident " << memory << " KiB half way, " << ResidentKiB()
              << " KiB at the end, " << OpenFiles() << " files open\n";
    EXPECT_LE(ResidentKiB(), memory + kSlackKiB);
    EXPECT_EQ(OpenFiles(), files);
    EXPECT_EQ(CTrackMan::Instance()->GetLogTrack()->GetPtCount(), 10000u);
}

}  // namespace
}  // namespace power
