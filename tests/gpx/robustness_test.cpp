// What strangers' files, and shortage, may not do: crash, hang, lose a file or take memory out of proportion.
#include <atomic>
#include <fstream>
#include <thread>

#include "tests/gpx/robustness_fixture.h"

TEST_F(GpxRobustness, Folder_IsRefused) {
    std::filesystem::create_directories(OnDisk("\\Track\\a.gpx"));
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
            std::error_code refused;
            std::filesystem::resize_file(OnDisk("\\Track\\a.gpx"), round * 7919 % document.size(), refused);
            std::ofstream(OnDisk("\\Track\\a.gpx"), std::ios::app) << document;
        }
    });
    for (int i = 0; i < 100; ++i) IsFileRead();
    isDone = true;
    writer.join();
}
