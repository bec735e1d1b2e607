// Points read straight from the text, against the parser: what the quick way takes, the parser takes too, and
// both find the same bits in it.
#include "gpx/plain_point.h"

#include <cstring>
#include <random>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "gpx/gpx_point.h"
#include "tests/gpx/point_writer.h"
#include "tests/support/points.h"
#include "tests/support/rounds.h"
#include "tests/support/seed.h"

namespace {

constexpr std::string_view kUsual =
    "<trkpt lat=\"47.123456\" "
    "lon=\"-8.500000\">\r\n<ele>412.250000</ele>\r\n<time>2001-09-09T01:46:40Z</time>\r\n"
    "</trkpt>";

// What is there before a point that does not state everything.
TckPt Before() {
    TckPt point{};
    point.dAltitude = 99.0;
    point.lTime = 77;
    return point;
}

// By the parser. False when it refuses the text, or finds more in it than one element.
bool Parse(std::string text, TckPt& point) {
    gpx::XmlDocument document;
    try {
        document.parse<rapidxml::parse_default>(text.data());
    } catch (const rapidxml::parse_error&) {
        return false;
    }
    const gpx::XmlNode* element = document.first_node();
    return element != nullptr && element->next_sibling() == nullptr && gpx::ReadPoint(*element, point);
}

// Points of one shape: the same but for their digits, and now and then for one more byte.
class ShapeWriter {
 public:
    explicit ShapeWriter(unsigned seed) : m_random(seed), m_points(seed) {}

    std::string Shape() {
        if (Below(8) != 0) return m_points.Write();
        std::string usual(kUsual);  // about as long as the longest that is remembered
        return usual.insert(usual.find("</trkpt>"), "<x>" + std::string(170 + Below(40), '7') + "</x>");
    }
    std::string Variant(std::string text) {
        for (char& c : text)
            if (c >= '0' && c <= '9') c = static_cast<char>('0' + Below(10));
        if (Below(2) == 0) ChangeOneByte(text);
        if (Below(2) == 0) text += "\r\n<trkpt lat='";
        text.shrink_to_fit();  // a sanitizer then sees what reads beyond its end
        return text;
    }

 private:
    unsigned Below(std::size_t limit) { return static_cast<unsigned>(m_random() % limit); }
    void ChangeOneByte(std::string& text) {
        constexpr std::string_view kMarks("<>&/ \"'.-:;a0\t\0\xFF", 16);
        const std::size_t at = Below(text.size());
        switch (Below(8)) {
            case 0:
                text.erase(at, 1);
                break;
            case 1:
                text.insert(at, 1, kMarks[Below(kMarks.size())]);
                break;
            case 2:
                text.resize(at);
                break;
            case 3:  // next to the digits in the table of characters
                text[at] = "/:"[Below(2)];
                break;
            default:
                text[at] = kMarks[Below(kMarks.size())];
                break;
        }
    }

    std::mt19937 m_random;
    PointWriter m_points;
};

std::size_t Measured(gpx::PlainPointReader& reader, const std::string& text) {
    return reader.Measure(text.c_str(), text.c_str() + text.size());
}

}  // namespace

TEST(PlainPoint, UsualPoint_IsReadToItsEnd) {
    gpx::PlainPointReader reader;
    TckPt point = Before();
    const std::string text = std::string(kUsual) + "\r\n<trkpt ";
    EXPECT_EQ(reader.Read(text.c_str(), point), kUsual.size());
    EXPECT_EQ(point.dLatitude, 47.123456);
    EXPECT_EQ(point.dLongitude, -8.5);
    EXPECT_EQ(point.dAltitude, 412.25);
    EXPECT_EQ(point.lTime, 1000000000);
    EXPECT_EQ(reader.Measure(text.c_str(), text.c_str() + text.size()), kUsual.size());
}

TEST(PlainPoint, WhatIsNotStated_StaysAsItIs) {
    gpx::PlainPointReader reader;
    TckPt point = Before();
    EXPECT_NE(reader.Read("<trkpt lon='2' lat='1'/>", point), 0u);
    EXPECT_EQ(point.dLatitude, 1.0);
    EXPECT_EQ(point.dAltitude, 99.0);
    EXPECT_EQ(point.lTime, 77);
}

TEST(PlainPoint, AnyOtherForm_IsLeftToTheParser) {
    for (const char* text :
         {"", "<", "<trkpt", "<trkpt/>", "<trkpt lat=\"1\"/>", "<trkpt lat=\"1\" lat=\"1\"/>",
          "<trkpt lat=\"1\" lon=\"2\" x=\"3\"/>", "<trkpt lat=\"1\" lon=\"2\">text</trkpt>",
          "<trkpt lat=\"1\" lon=\"2\"><!-- --></trkpt>", "<trkpts lat=\"1\" lon=\"2\"/>",
          "<trkpt lat=\"1\" lon=\"2\"><ele> 5</ele></trkpt>", "<trkpt lat=\"1\" lon=\"2\"><time/></trkpt>",
          "<trkpt lat=\"1\" lon=\"2\"><time></time></trkpt>", "<trkpt lat=\"1\" lon=\"2\"><a>&amp;</a></trkpt>",
          "<trkpt lat=\"1\" lon=\"2\"><a></b></trkpt>", "<trkpt lat=\"1\" lon=\"2\"><a></a>",
          "<rtept lat=\"1\" lon=\"2\"/>"}) {
        gpx::PlainPointReader reader;
        TckPt point = Before();
        EXPECT_EQ(reader.Read(text, point), 0u) << text;
        EXPECT_EQ(reader.Measure(text, text + std::strlen(text)), 0u) << text;
        EXPECT_EQ(point, Before()) << text;
    }
}

TEST(PlainPoint, FirstElevationAndTime_Count) {
    gpx::PlainPointReader reader;
    TckPt point = Before();
    ASSERT_NE(reader.Read("<trkpt lat='1' "
                          "lon='2'><x><ele>9</ele></x><ele>5</ele><ele>6</ele><time>1970-01-01T00:00:05Z</time>"
                          "<time>1970-01-01T00:00:06Z</time></trkpt>",
                          point),
              0u);
    EXPECT_EQ(point.dAltitude, 5.0);
    EXPECT_EQ(point.lTime, 5);
}

TEST(PlainPoint, ElementsNestedDeep_AreLeftToTheParser) {
    const auto nested = [](int levels) {
        std::string text = "<trkpt lat='1' lon='2'>";
        for (int i = 0; i < levels; ++i) text += "<a>";
        for (int i = 0; i < levels; ++i) text += "</a>";
        return text + "</trkpt>";
    };
    gpx::PlainPointReader reader;
    TckPt point{};
    EXPECT_NE(reader.Read(nested(8).c_str(), point), 0u);
    EXPECT_EQ(reader.Read(nested(9).c_str(), point), 0u);
    EXPECT_EQ(reader.Read(nested(1000000).c_str(), point), 0u);
}

TEST(PlainPoint, LikeTheOneMeasuredBefore_IsToldFromWhatIsNot) {
    const std::string usual(kUsual);
    gpx::PlainPointReader reader;
    ASSERT_EQ(reader.Measure(usual.c_str(), usual.c_str() + usual.size()), usual.size());
    for (std::size_t i = 0; i < usual.size(); ++i)
        for (const char c : std::string_view("<>&/ \"'.a05\0", 12)) {
            std::string text = usual;
            text[i] = c;
            gpx::PlainPointReader fresh;
            EXPECT_EQ(reader.Measure(text.c_str(), text.c_str() + text.size()),
                      fresh.Measure(text.c_str(), text.c_str() + text.size()))
                << text;
            reader.Measure(usual.c_str(), usual.c_str() + usual.size());
        }
    const std::string cut = usual.substr(0, usual.size() - 1);
    EXPECT_EQ(reader.Measure(cut.c_str(), cut.c_str() + cut.size()), 0u);
}

TEST(PlainPointReference, RandomPoints_AreReadAsTheParserReadsThem) {
    PointWriter writer(Seed(808));
    gpx::PlainPointReader reader;
    int plain = 0;
    for (int i = 0; i < Rounds(300000); ++i) {
        const std::string text = writer.Write();
        TckPt point = Before();
        const std::size_t size = reader.Read(text.c_str(), point);
        const std::size_t measured = reader.Measure(text.c_str(), text.c_str() + text.size());
        ASSERT_EQ(measured, size) << text;
        if (size == 0) continue;
        ++plain;
        TckPt expected = Before();
        ASSERT_TRUE(Parse(text.substr(0, size), expected)) << text;
        ASSERT_EQ(point, expected) << text;
    }
    EXPECT_GT(plain, Rounds(50000));  // enough of both kinds that the comparison means something
    EXPECT_LT(plain, Rounds(250000));
}

TEST(PlainPointReference, RandomPointsOfOneShape_AreMeasuredAsByThemselves) {
    ShapeWriter writer(Seed(809));
    gpx::PlainPointReader reader;
    int plain = 0;
    std::string shape;
    for (int i = 0; i < Rounds(1000000); ++i) {
        if (i % 10 == 0) shape = writer.Shape();
        Measured(reader, shape);
        const std::string text = writer.Variant(shape);
        gpx::PlainPointReader fresh;
        const std::size_t size = Measured(fresh, text);
        ASSERT_EQ(Measured(reader, text), size) << shape << "\nand then\n" << text;
        plain += size != 0 ? 1 : 0;
    }
    EXPECT_GT(plain, Rounds(200000));
    EXPECT_LT(plain, Rounds(800000));
}
