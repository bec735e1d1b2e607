// Documents for the reader, whole and damaged.
#pragma once

#include <cstdint>
#include <iterator>
#include <random>
#include <string>
#include <string_view>

#include "tests/support/seed.h"

// Damages a document as programs, storages and people do.
class Vandal {
 public:
    explicit Vandal(std::uint32_t seed) : m_random(Seed(seed)) {}

    void Damage(std::string& text) {
        for (auto count = 1 + m_random() % 4; count > 0; --count) DamageOnce(text);
    }

 private:
    void DamageOnce(std::string& text) {
        const std::size_t at = m_random() % (text.size() + 1);
        const std::size_t length = m_random() % 3 == 0 ? m_random() % 200 : m_random() % 12;
        switch (m_random() % 6) {
            case 0:
                text.erase(at, length);
                break;
            case 1:
                text.insert(at, text.substr(m_random() % (text.size() + 1), length));
                break;
            case 2:
                text.insert(at, kPieces[m_random() % std::size(kPieces)]);
                break;
            case 3:
                text.insert(text.find('<', at) == text.npos ? at : text.find('<', at),
                            kPieces[m_random() % std::size(kPieces)]);
                break;
            case 4:
                Replace(text, at, kMarks[m_random() % kMarks.size()]);
                break;
            default:
                Replace(text, at, static_cast<char>(m_random()));
                break;
        }
    }
    static void Replace(std::string& text, std::size_t at, char c) {
        if (at < text.size()) text[at] = c;
    }

    static constexpr std::string_view kMarks = "<>/!?&;\"'=[]-# x1.";
    static constexpr const char* kPieces[] = {"<!-- a > b -->",
                                              "<!--",
                                              "-->",
                                              "<![CDATA[x]]>",
                                              "<![CDATA[ <y> ]]>",
                                              "<![CDATA[",
                                              "]]>",
                                              "<?pi ?>",
                                              "<?",
                                              "?>",
                                              "<!DOCTYPE a [<!ENTITY b \"c\">]>",
                                              "<!DOCTYPE a>",
                                              "<!DOCTYPE ",
                                              "<!x>",
                                              "<trkpt/>",
                                              "<trkpt lat='1' lon='2'/>",
                                              "<trkpt lat=\"3>\" lon=\"/4\"><ele>5</ele></trkpt>",
                                              "<trkpt lat=\"&#49;\" lon='&quot;'>",
                                              "</trkpt>",
                                              "<trkseg>",
                                              "</trkseg>",
                                              "<trkseg/>",
                                              "<trk>",
                                              "</trk>",
                                              "<gpx>",
                                              "</gpx>",
                                              "</wrong>",
                                              "</>",
                                              "<>",
                                              "<a/",
                                              "<a b>",
                                              "<wpt/>",
                                              "<rte><rtept a='b'/></rte>",
                                              "<ele>1</ele>",
                                              "<ele/>",
                                              "<time/>",
                                              "<time>2001-09-09T01:46:40Z</time>",
                                              "&#65;",
                                              "&#x41;",
                                              "&#",
                                              "&#x110000;",
                                              "&lt;",
                                              "&unknown;",
                                              "&#60;trkpt/&#62;",
                                              "\r\n",
                                              "<name>n</name>",
                                              "<extensions/>",
                                              "<extensions><color>7</color></extensions>",
                                              "<email id=\"a\" domain=\"b\"/>",
                                              "<bounds minlat=\"1.5\"/>"};

    std::mt19937 m_random;
};

// A little of everything.
inline const std::string kSample =
    "\xEF\xBB\xBF<?xml version=\"1.0\"?>\r\n<!DOCTYPE gpx>\r\n<gpx version=\"1.1\"><!-- trkpt -->\r\n"
    "<name>N &amp; M</name><desc><![CDATA[a < b]]></desc><author><name>Jo</name></author>"
    "<email id='jo' domain='example'/><bounds minlat='1' maxlon=\"2.5\"/><wpt lat='1' "
    "lon='2'><name>w</name></wpt>\r\n"
    "<trk><name>T</name><number>3</number><extensions><color>-5</color><visible>1</visible><length>12.5</"
    "length>"
    "<starttime>2001-09-09T01:46:40Z</starttime></extensions>\r\n"
    "<trkseg>\r\n<trkpt lat=\"47.5\" lon=\"8.25\"><ele>400</ele><time>2001-09-09T01:46:40Z</time></trkpt>\r\n"
    "<trkpt lon='9' lat='48'/><trkpt lat='1'/>text<trkpt lat=\"-1e1\" "
    "lon=\"0x10\"><x><ele>9</ele></x><ele>7</ele>"
    "</trkpt></trkseg>\r\n<trkseg/><trkseg><trkpt lat=\"2\" lon=\"3\"><time>x</time></trkpt></trkseg></trk>\r\n"
    "<trk><trkseg><trkpt lat='5' lon='6'/></trkseg></trk><rte><rtept lat='7' lon='8'/></rte></gpx>\r\n";

// Points of the usual form, one like the other: those are not given to the parser.
inline std::string PlainDrive() {
    std::string drive = "<gpx version=\"1.0\"><trk><name>T</name>";
    for (int segment = 0; segment < 2; ++segment) {
        drive += "<trkseg>\r\n";
        for (int i = 10; i < 18; ++i)
            drive += "\t<trkpt lat=\"47.1234" + std::to_string(i) + "\" lon=\"8.5000" + std::to_string(i) +
                     "\">\r\n\t\t<ele>4" + std::to_string(i) +
                     ".500000</ele>\r\n\t\t<time>2001-09-09T01:46:" + std::to_string(i) +
                     "Z</time>\r\n\t</trkpt>\r\n";
        drive += segment == 0 ? "</trkseg></trk><trk>" : "</trkseg></trk></gpx>";
    }
    return drive;
}
