// Points as texts, of the usual form and of others.
#pragma once

#include <iterator>
#include <random>
#include <string>
#include <string_view>

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
