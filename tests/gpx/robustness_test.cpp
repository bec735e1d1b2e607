// What strangers' files, and shortage, may not do: crash, hang, lose a file or take memory out of proportion.
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <fstream>
#include <thread>

#include "tests/gpx/gpx_fixture.h"

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kMemoryIsOurs = false;  // a sanitizer takes memory of its own
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

std::string ManyPoints(std::size_t count) {
    std::string points;
    for (std::size_t i = 0; i < count; ++i)
        points += "\t\t\t<trkpt lat=\"47." + std::to_string(100000 + i % 800000) +
                  "\" lon=\"8.123456\">\r\n\t\t\t\t<ele>432.123456</ele>\r\n"
                  "\t\t\t\t<time>2014-05-01T10:20:30Z</time>\r\n\t\t\t</trkpt>\r\n";
    return DocumentOfPoints(points);
}

}  // namespace

class GpxRobustness : public GpxTest {
 protected:
    bool IsRead(const std::string& document) {
        Imported imported;
        return Import(document, imported);
    }
    bool IsFileRead() {
        Imported imported;
        return ImportFile(L"\\Track\\a.gpx", imported);
    }
};

TEST_F(GpxRobustness, Folder_IsRefused) {
    std::filesystem::create_directories(OnDisk("\\Track\\a.gpx"));
    EXPECT_FALSE(IsFileRead());
}

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

TEST_F(GpxRobustness, EmptyFile_IsRefused) { EXPECT_FALSE(IsRead("")); }

TEST_F(GpxRobustness, FileCutAnywhere_IsRefusedUntilItIsWhole) {
    const std::string whole =
        "\xEF\xBB\xBF<?xml version=\"1.0\"?>\r\n<!-- c --><gpx "
        "version=\"1.1\"><name><![CDATA[n]]></name><trk><trkseg>"
        "<trkpt lat=\"1\" lon='2'><ele>3</ele></trkpt></trkseg></trk></gpx>";
    for (std::size_t size = 0; size < whole.size(); ++size) EXPECT_FALSE(IsRead(whole.substr(0, size))) << size;
    EXPECT_TRUE(IsRead(whole));
}

TEST_F(GpxRobustness, ZeroBehindTheDocument_EndsIt) {
    EXPECT_TRUE(IsRead("<gpx/>" + std::string(1, '\0') + "<"));
}

TEST_F(GpxRobustness, ZeroWithinTheDocument_IsRefused) {
    EXPECT_FALSE(IsRead("<gpx><name>a" + std::string(1, '\0') + "</name></gpx>"));
    EXPECT_FALSE(IsRead(std::string(1000, '\0')));
}

TEST_F(GpxRobustness, OtherDocuments_AreRefused) {
    for (const char* document :
         {"<?xml version=\"1.0\"?><kml><Document/></kml>", "$GPRMC,1*00\r\n", "{}", "\x89PNG\r\n\x1A\n",
          "Qarvolent Trace H1.0", "\xFF\xFE", "\xEF\xBB\xBF", "<html><body>gpx</body></html>"})
        EXPECT_FALSE(IsRead(document)) << document;
}

TEST_F(GpxRobustness, DeepNesting_IsRefused) {
    std::string document = "<gpx>";
    for (int i = 0; i < 2000000; ++i) document += "<a>";
    EXPECT_FALSE(IsRead(document));
    for (int i = 0; i < 2000000; ++i) document += "</a>";
    EXPECT_FALSE(IsRead(document + "</gpx>"));
}

TEST_F(GpxRobustness, DeepestNestingAllowed_IsRead) {
    std::string document = "<gpx>";
    for (int i = 0; i < 255; ++i) document += "<a>";
    for (int i = 0; i < 255; ++i) document += "</a>";
    EXPECT_TRUE(IsRead(document + "</gpx>"));
    document.insert(5, "<a>");
    EXPECT_FALSE(IsRead(document + "</a></gpx>"));
}

TEST_F(GpxRobustness, HugeTextsAndAttributes_AreRead) {
    const std::string huge(3000000, 'x');
    Imported imported;
    EXPECT_TRUE(Import("<gpx a=\"" + huge + "\"><name>" + huge +
                           "</name><trk><trkseg><trkpt lat=\"1\" lon=\"2\"><ele>" + huge +
                           "</ele></trkpt></trkseg></trk></gpx>",
                       imported));
    EXPECT_EQ(imported.metadata.name, std::string(64, 'x'));
    EXPECT_EQ(imported.points.size(), 1u);
}

TEST_F(GpxRobustness, ManyAttributesCommentsAndReferences_AreReadInOneGo) {
    std::string document = "<gpx";
    for (int i = 0; i < 100000; ++i) document += " a=''";
    document += "><name>";
    for (int i = 0; i < 100000; ++i) document += "&amp;";
    document += "</name>";
    for (int i = 0; i < 100000; ++i) document += "<!----><![CDATA[]]>";
    EXPECT_TRUE(IsRead(document + "</gpx>"));
}

// A tree of them would take many times the size of their text.
TEST_F(GpxRobustness, MillionsOfElementsThatAreNoPoints_AreRefused) {
    std::string elements;
    for (int i = 0; i < 2'000'000; ++i) elements += "<a/>";
    std::string comments;
    for (int i = 0; i < 1'000'000; ++i) comments += "x<!---->";
    EXPECT_FALSE(IsRead("<gpx>" + elements + "</gpx>"));
    EXPECT_FALSE(IsRead("<gpx>" + comments + "</gpx>"));
    EXPECT_FALSE(
        IsRead("<gpx><trk><trkseg><trkpt lat='1' lon='2'>" + elements + "</trkpt></trkseg></trk></gpx>"));
}

TEST_F(GpxRobustness, ManyCdataSections_AreJoined) {
    std::string document = "<gpx><name>";
    for (int i = 0; i < 200000; ++i) document += "<![CDATA[a]]>b";
    Imported imported;
    EXPECT_TRUE(Import(document + "</name></gpx>", imported));
    EXPECT_STREQ(imported.metadata.name, "abababababababababababababababababababababababababababababababab");
}

// Another program may be writing while we read.
TEST_F(GpxRobustness, FileThatShrinksAndGrowsWhileRead_IsReadOrRefused) {
    const std::string document = ManyPoints(2000);
    Write("\\Track\\a.gpx", document);
    std::atomic<bool> isDone = false;
    std::thread writer([&] {
        for (std::size_t round = 0; !isDone; ++round) {
            if (::truncate(OnDisk("\\Track\\a.gpx").c_str(),
                           static_cast<off_t>(round * 7919 % document.size())) != 0)
                return;
            std::ofstream(OnDisk("\\Track\\a.gpx"), std::ios::app) << document;
        }
    });
    for (int i = 0; i < 100; ++i) IsFileRead();
    isDone = true;
    writer.join();
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
            const std::size_t before = MemoryFigure("VmHWM");
            const bool isRead = IsFileRead();
            std::exit(isRead && MemoryFigure("VmHWM") - before <= 5 * document.size() ? 0 : 1);
        };
        EXPECT_EXIT(import(), ::testing::ExitedWithCode(0), "");
    }
}

TEST_F(GpxRobustness, FileTooLargeForTheMemory_IsRefused) {
    if (!kMemoryIsOurs) GTEST_SKIP() << "a sanitizer takes memory of its own";
    Write("\\Track\\a.gpx", "<gpx>");
    std::filesystem::resize_file(OnDisk("\\Track\\a.gpx"), 1u << 30);
    const auto import = [&] {
        LimitMemoryTo(100u << 20);
        std::exit(IsFileRead() ? 1 : 0);
    };
    EXPECT_EXIT(import(), ::testing::ExitedWithCode(0), "");
}

TEST_F(GpxRobustness, TrackTooLargeForTheMemory_IsNotExportedAndLosesNothing) {
    if (!kMemoryIsOurs) GTEST_SKIP() << "a sanitizer takes memory of its own";
    Write("\\Track\\exported.gpx", "old");
    m_points.resize(1000000);
    const auto write = [&] {
        LimitMemoryTo(20u << 20);
        std::exit(ExportTo(L"\\Track\\exported.gpx") ? 1 : 0);
    };
    EXPECT_EXIT(write(), ::testing::ExitedWithCode(0), "");
    EXPECT_EQ(BytesOf("\\Track\\exported.gpx"), "old");
}
