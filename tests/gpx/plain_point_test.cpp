// Points read straight from the text, against the parser: what the quick way takes, the parser takes too, and
// both find the same bits in it.
#include "gpx/plain_point.h"

#include <cstring>
#include <random>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "gpx/gpx_point.h"
#include "tests/support/points.h"
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

// Writes points as programs may, and sometimes what they may not.
class PointWriter {
 public:
    explicit PointWriter(unsigned seed) : m_random(seed) {}

    std::string Write() {
        std::string text = "<trkpt";
        for (auto count = Chance(30) ? Below(4) : 2u; count > 0; --count) text += Attribute(count % 2 == 0);
        if (Chance(20)) return text + Blanks() + "/>";
        text += Blanks() + ">";
        for (auto count = Below(5); count > 0; --count) text += Blanks() + Element(2);
        text += Blanks() + "</trkpt>";
        if (Chance(4)) Damage(text);
        return text;
    }

 private:
    unsigned Below(unsigned limit) { return static_cast<unsigned>(m_random() % limit); }
    bool Chance(unsigned oneIn) { return Below(oneIn) == 0; }

    std::string Blanks() { return std::string(" \r\n\t  ").substr(0, Below(6)); }
    std::string Number() {
        if (Chance(12)) return kOddNumbers[Below(std::size(kOddNumbers))];
        std::string text = Chance(2) ? "-" : "";
        for (auto count = Below(4); count > 0; --count) text += static_cast<char>('0' + Below(10));
        if (!Chance(6)) text += '.';
        for (auto count = Below(10); count > 0; --count) text += static_cast<char>('0' + Below(10));
        return text;
    }
    std::string Attribute(bool isLatitude) {
        const std::string quote = Chance(3) ? "'" : "\"";
        const char* name = Chance(20) ? "x" : isLatitude ? "lat" : "lon";
        return (Chance(40) ? "" : " ") + Blanks() + name + "=" + quote + Number() + quote;
    }
    std::string Element(unsigned depth) {
        const std::string name = kNames[Below(std::size(kNames))];
        std::string content = Number();
        if (name == "time") content = kTimes[Below(std::size(kTimes))];
        if (Chance(6)) content = kTexts[Below(std::size(kTexts))];
        if (depth > 0 && Chance(6)) content = Blanks() + Element(depth - 1) + Blanks() + Element(depth - 1);
        return "<" + name + ">" + content + "</" + name + ">";
    }
    void Damage(std::string& text) {
        const std::size_t at = Below(static_cast<unsigned>(text.size()));
        if (Chance(2))
            text[at] = kMarks[Below(kMarks.size())];
        else
            text.erase(at, 1 + Below(3));
    }

    static constexpr std::string_view kMarks = "<>/!?&;\"'=[]-# x1.";
    static constexpr const char* kNames[] = {"ele", "ele", "time", "time", "speed", "gpxtpx:hr", "x"};
    static constexpr const char* kOddNumbers[] = {"",
                                                  ".",
                                                  "-",
                                                  "1e3",
                                                  "0x10",
                                                  " 5",
                                                  "5 ",
                                                  "+5",
                                                  "--5",
                                                  "1.2.3",
                                                  "inf",
                                                  "nan",
                                                  "&#49;",
                                                  "5&lt;",
                                                  "123456789012345",
                                                  "1234567890123456",
                                                  "0.0000000000001",
                                                  "-0",
                                                  "007"};
    static constexpr const char* kTimes[] = {
        "2001-09-09T01:46:40Z", "2001-09-09T23:59:59.125Z", "2001-09-10T00:00:00+02:00", "2001-09-09T24:00:00Z",
        "2001-02-30T01:00:00Z", "1960-01-01T00:00:00Z",     "2001-09-09 01:46:40",       "9",
        "2001-09-09T01:46:401Z"};
    static constexpr const char* kTexts[] = {"text",          "a > b",       "&amp;",       "&#x110000;",
                                             "<![CDATA[5]]>", "<!-- c -->5", "5<!-- c -->", "<?pi?>"};

    std::mt19937 m_random;
};

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
    for (int i = 0; i < 300000; ++i) {
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
    EXPECT_GT(plain, 50000);  // enough of both kinds that the comparison means something
    EXPECT_LT(plain, 250000);
}
