// What is no file, and what the system knows of our memory and our open files.
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <cstdlib>
#include <fstream>

#include "tests/gpx/robustness_fixture.h"
#include "tests/support/posix/closed_folder.h"

namespace {

// A sanitizer takes memory of its own.
#if defined(QTRACE_SANITIZED)
constexpr bool kMemoryIsOurs = false;
#else
constexpr bool kMemoryIsOurs = true;
#endif

// A figure of this process in bytes, from the system's own account of it.
std::size_t MemoryFigure(const std::string& name) {
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word)
        if (word == name + ":" && status >> word) return std::stoul(word) * 1024;
    throw std::runtime_error("no figure " + name);
}

void LimitMemoryTo(std::size_t more) {
    const rlim_t limit = MemoryFigure("VmSize") + more;
    const rlimit both{limit, limit};
    if (::setrlimit(RLIMIT_AS, &both) != 0) throw std::runtime_error("cannot limit the memory");
}

// What is left does for small things.
void UseUpLargeBlocks() {
    static void* volatile block;  // seen by all, so that the compiler does not make do without it
    do {
        block = std::malloc(1 << 16);
    } while (block != nullptr);
}

// An emulator takes the limit and goes on without it.
bool CanLimitMemory() {
    rlimit before, now;
    ::getrlimit(RLIMIT_AS, &before);
    const rlimit tried{before.rlim_max == RLIM_INFINITY ? rlim_t{1} << 40 : before.rlim_max - 1,
                       before.rlim_max};
    ::setrlimit(RLIMIT_AS, &tried);
    ::getrlimit(RLIMIT_AS, &now);
    ::setrlimit(RLIMIT_AS, &before);
    return now.rlim_cur == tried.rlim_cur;
}

}  // namespace

TEST_F(GpxRobustness, Device_IsRefused) {
    std::filesystem::create_directories(OnDisk("\\Track"));
    std::filesystem::create_symlink("/dev/zero", OnDisk("\\Track\\a.gpx"));
    EXPECT_FALSE(IsFileRead());
}

TEST_F(GpxRobustness, FifoThatNobodyWrites_IsRefusedAndNotWaitedFor) {
    std::filesystem::create_directories(OnDisk("\\Track"));
    ASSERT_EQ(::mkfifo(OnDisk("\\Track\\a.gpx").c_str(), 0600), 0);
    EXPECT_FALSE(IsFileRead());
}

TEST_F(GpxRobustness, Refusals_LeaveNoFileOpen) {
    const auto openFiles = [] {
        const auto entries = std::filesystem::directory_iterator("/proc/self/fd");
        return std::distance(begin(entries), end(entries));
    };
    const auto before = openFiles();
    for (const char* document : {"", "<gpx>", "<a/>", "\xFF\xFE<", "<gpx/>", "<gpx>\n</gpx>"}) IsRead(document);
    IsFileRead();
    ExportTo(L"\\Nowhere\\a.gpx");
    EXPECT_EQ(openFiles(), before);
}

TEST_F(GpxRobustness, LargeFile_TakesAFewTimesItsSizeAtMost) {
    if (!kMemoryIsOurs) GTEST_SKIP() << "a sanitizer takes memory of its own";
    for (const std::string& document : {ManyPoints(200000), DocumentOfPoints([] {
                                            std::string dense;
                                            for (int i = 0; i < 500000; ++i)
                                                dense += "<trkpt lat=\"1\" lon=\"2\"/>";
                                            return dense;
                                        }())}) {
        Write("\\Track\\a.gpx", document);
        const auto import = [&] {
            ::prctl(PR_SET_THP_DISABLE, 1, 0, 0, 0);  // or the system rounds what is used up to huge pages
            const std::size_t before = MemoryFigure("VmHWM");
            const bool isRead = IsFileRead();
            std::exit(isRead && MemoryFigure("VmHWM") - before <= 5 * document.size() ? 0 : 1);
        };
        EXPECT_EXIT(import(), ::testing::ExitedWithCode(0), "");
    }
}

TEST_F(GpxRobustness, FileTooLargeForTheMemory_IsRefused) {
    if (!kMemoryIsOurs) GTEST_SKIP() << "a sanitizer takes memory of its own";
    if (!CanLimitMemory()) GTEST_SKIP() << "no limit of memory counts here";
    Write("\\Track\\a.gpx", "<gpx><name>" + std::string(200u << 20, 'a') + "</name></gpx>");
    const auto import = [&] {
        LimitMemoryTo(100u << 20);
        std::exit(IsFileRead() ? 1 : 0);
    };
    EXPECT_EXIT(import(), ::testing::ExitedWithCode(0), "");
}

TEST_F(GpxRobustness, LongTrack_IsExportedInTheMemoryOfAPiece) {
    if (!kMemoryIsOurs) GTEST_SKIP() << "a sanitizer takes memory of its own";
    if (!CanLimitMemory()) GTEST_SKIP() << "no limit of memory counts here";
    m_points.resize(200000);
    const auto write = [&] {
        LimitMemoryTo(1u << 20);
        std::exit(ExportTo(L"\\Track\\exported.gpx") ? 0 : 1);
    };
    EXPECT_EXIT(write(), ::testing::ExitedWithCode(0), "");
    EXPECT_GT(std::filesystem::file_size(OnDisk("\\Track\\exported.gpx")), 4u << 20);
    Imported imported;
    ASSERT_TRUE(ImportFile(L"\\Track\\exported.gpx", imported));
    EXPECT_EQ(imported.points.size(), m_points.size());
}

TEST_F(GpxRobustness, LongTrackInAFolderThatTakesNoNewFile_IsExportedWhole) {
    m_points.resize(20000);
    for (TckPt& point : m_points) point.dLatitude = 48.5;
    const std::string document = Exported();
    Write("\\Track\\exported.gpx", "old");
    const ClosedFolder closed(m_root.Path(), OnDisk("\\Track\\exported.gpx"));
    const AsOrdinaryUser user;
    EXPECT_TRUE(Exported() == document);  // not shown where it differs: it is long
}

TEST_F(GpxRobustness, NoMemoryForAPiece_ExportsNothingAndLosesNothing) {
    if (!kMemoryIsOurs) GTEST_SKIP() << "a sanitizer takes memory of its own";
    if (!CanLimitMemory()) GTEST_SKIP() << "no limit of memory counts here";
    Write("\\Track\\exported.gpx", "old");
    m_points.resize(200000);
    const auto write = [&] {
        LimitMemoryTo(1u << 20);
        UseUpLargeBlocks();
        std::exit(ExportTo(L"\\Track\\exported.gpx") ? 1 : 0);
    };
    EXPECT_EXIT(write(), ::testing::ExitedWithCode(0), "");
    EXPECT_TRUE(BytesOf("\\Track\\exported.gpx") == "old");  // not shown where it differs: it is long
}
