// What is left of a text when its points have been taken out, and which points are read.
#include "gpx/gpx_outline.h"

#include <rapidxml/rapidxml.hpp>

#include <gtest/gtest.h>

#include "gpx/point_collector.h"
#include "tests/support/points.h"

namespace {

std::string Outline(const std::string& document) {
    gpx::TextWindow text(document);
    text.EndAtZero();
    gpx::TakeOutPoints(text, gpx::PointsWanted::None);
    return text.Begin();
}

std::size_t PointsRead(const std::string& document, gpx::PointsWanted wanted) {
    gpx::TextWindow text(document);
    return gpx::TakeOutPoints(text, wanted).size();
}

std::string Nested(std::size_t levels) {
    std::string text;
    for (std::size_t i = 0; i < levels; ++i) text += "<a>";
    for (std::size_t i = 0; i < levels; ++i) text += "</a>";
    return text;
}

const std::string kPoint = "<trkpt lat=\"1\" lon=\"2\"><ele>3</ele></trkpt>";

}  // namespace

TEST(GpxOutline, FirstPointOfASegment_LeavesAMark) {
    EXPECT_EQ(Outline("<gpx><trk><trkseg>" + kPoint + "\n" + kPoint + "</trkseg><trkseg/></trk></gpx>"),
              "<gpx><trk><trkseg><trkpt/></trkseg><trkseg/></trk></gpx>");
}

TEST(GpxOutline, TextBetweenPoints_IsKeptApart) {
    EXPECT_EQ(Outline("<gpx><trk><trkseg>a" + kPoint + "b" + kPoint + " " + kPoint + "c</trkseg></trk></gpx>"),
              "<gpx><trk><trkseg>a<trkpt/>b   c</trkseg></trk></gpx>");
}

TEST(GpxOutline, PointsOfLaterTracksRoutesAndWaypoints_LeaveABlank) {
    EXPECT_EQ(Outline("<gpx><wpt/><trk/><trk><trkseg>" + kPoint + "</trkseg></trk><rte><rtept/>x</rte></gpx>"),
              "<gpx> <trk/><trk><trkseg> </trkseg></trk><rte> x</rte></gpx>");
}

TEST(GpxOutline, TextWithoutPoints_StaysAsItIs) {
    for (const char* text :
         {"", "text", "<gpx/>", "<a><trkpt/></a>", "<gpx><trk><trkpt/></trk></gpx>",
          "<trkseg><trkpt/></trkseg>", "<gpx><trk><trkseg><a><trkpt/></a></trkseg></trk></gpx>",
          "<gpx><!-- <wpt/> --></gpx>"})
        EXPECT_EQ(Outline(text), text);
}

TEST(GpxOutline, WantedPoints_AreRead) {
    const std::string text = "<gpx><trk><trkseg>" + kPoint + "</trkseg><trkseg>" + kPoint + kPoint +
                             "</trkseg></trk><trk><trkseg>" + kPoint + "</trkseg></trk></gpx>";
    EXPECT_EQ(PointsRead(text, gpx::PointsWanted::None), 0u);
    EXPECT_EQ(PointsRead(text, gpx::PointsWanted::OfFirstSegment), 1u);
    EXPECT_EQ(PointsRead(text, gpx::PointsWanted::OfAllSegments), 3u);
}

TEST(GpxOutline, TextBehindAZero_IsNotLookedAt) {
    std::string text = "<gpx/>";
    text += '\0';
    text += "<";
    EXPECT_EQ(Outline(text), "<gpx/>");
}

TEST(GpxOutline, Levels_AreLimitedTo256) {
    EXPECT_EQ(Outline(Nested(256)), Nested(256));
    EXPECT_THROW(Outline(Nested(257)), rapidxml::parse_error);
    EXPECT_THROW(Outline(Nested(1000000)), rapidxml::parse_error);
}

TEST(GpxOutline, LevelsWithinAPoint_CountFromTheDocument) {
    const auto around = [](std::size_t levels) { return "<gpx><wpt>" + Nested(levels) + "</wpt></gpx>"; };
    EXPECT_EQ(Outline(around(254)), "<gpx> </gpx>");
    EXPECT_THROW(Outline(around(255)), rapidxml::parse_error);
}

TEST(GpxOutline, EmptyTags_CountAsALevel) {
    std::string text = Nested(256);
    text.insert(256 * 3, "<b/>");
    EXPECT_THROW(Outline(text), rapidxml::parse_error);
}

// An element counts once, written with an end tag or without.
TEST(GpxOutline, ElementsThatAreNoPoints_AreLimitedTo500000) {
    for (const std::string element : {"<a></a>", "<a/>", "<a>b</a>"}) {
        std::string most = "<gpx>";
        for (int i = 1; i < 500'000; ++i) most += element;
        EXPECT_NO_THROW(Outline(most + "</gpx>")) << element;
        EXPECT_THROW(Outline(most + element + "</gpx>"), rapidxml::parse_error) << element;
    }
}

TEST(GpxOutline, ElementsThatArePoints_CountForNothing) {
    std::string text = "<gpx><trk><trkseg>";
    for (int i = 0; i < 200'000; ++i) text += "<trkpt lat='1' lon='2'><a></a><b c=''/></trkpt>";
    EXPECT_EQ(Outline(text + "</trkseg></trk></gpx>").substr(0, 29), "<gpx><trk><trkseg><trkpt/>   ");
}

TEST(GpxOutline, WhatIsNoTag_CountsForNothing) {
    std::string text = "<a>";
    for (int i = 0; i < 1000; ++i) text += "<!-- <a> --><![CDATA[<a>]]><?a <a> ?><a b='<a>' c=\"/><a>\"/>";
    EXPECT_EQ(Outline(text + "</a>"), text + "</a>");
}

TEST(GpxOutline, BrokenMarkup_IsRefused) {
    for (const char* text : {"<", "<a", "<a b", "<a b=", "<a b='", "<a b=c>", "</a>", "<a></a></a>", "<a/ >",
                             "<!--", "<?a", "<![CDATA[", "<!DOCTYPE [>", "<!", "<>", "< a>"})
        EXPECT_THROW(Outline(text), rapidxml::parse_error) << text;
}

TEST(GpxOutline, TagThatEndsWithTheText_IsNotReadBeyondIt) {
    const std::string whole = "<a b='c' d=\"e\"><!-- f --><![CDATA[g]]><?h?><!DOCTYPE i [j]></a>";
    for (std::size_t size = 0; size < whole.size(); ++size) {
        try {
            Outline(whole.substr(0, size));
        } catch (const rapidxml::parse_error&) {
        }
    }
}

TEST(PointCollector, AnyNumberOfPoints_IsKeptInOrder) {
    for (const std::size_t count : {0u, 1u, 2u, 63u, 64u, 65u, 1000u, 100000u}) {
        gpx::PointCollector collector(100000);
        Points expected;
        for (std::size_t i = 0; i < count; ++i) {
            expected.push_back(At(static_cast<double>(i), 1));
            collector.Add(expected.back(), i);
        }
        EXPECT_EQ(collector.Take(), expected);
    }
}

TEST(PointCollector, PointsEvenlySpread_TakeLittleMoreThanTheirRoom) {
    gpx::PointCollector collector(1000000);
    for (std::size_t i = 0; i < 10000; ++i) collector.Add(At(1, 2), 100 * i + 50);
    EXPECT_LT(collector.Take().capacity(), 11000u);
}

TEST(PointCollector, PointsAtTheBeginningOnly_LeaveNoRoomBehind) {
    gpx::PointCollector collector(1000000);
    for (std::size_t i = 0; i < 1000; ++i) collector.Add(At(1, 2), 10 * i);
    EXPECT_LT(collector.Take().capacity(), 2000u);
}

// The file has grown, or its size could not be told.
TEST(PointCollector, PointsBehindTheExpectedEnd_AreKeptToo) {
    gpx::PointCollector collector(0);
    for (std::size_t i = 0; i < 1000; ++i) collector.Add(At(1, 2), 10 * i);
    EXPECT_EQ(collector.Take().size(), 1000u);
}
