// A GPX document read into points: ours, what its users' programs do with pugixml, expat and libxml2, and the
// limit, the XML parser within ours reading the same text without taking anything from it.
// Then a document as other programs write them, which ours gives other line ends when it reads it for the first
// time.
//   bench_gpx_read [POINTS...]
#include <expat.h>
#include <libxml/xmlreader.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <pugixml.hpp>
#include <rapidxml/rapidxml.hpp>
#include <rapidxml/rapidxml_utils.hpp>

#include "bench/support/drive.h"
#include "bench/support/peer_values.h"
#include "bench/support/side_by_side.h"

namespace {

void Check(bool isRight) { ::Check(isRight, "a reader does not find the points"); }

CTrack ReadOurs(const std::string& devicePath) {
    CTrack track;
    Check(track.Load(devicePath));
    return track;
}

PointList ReadWithPugixml(const std::string& path) {
    pugi::xml_document document;
    Check(document.load_file(path.c_str()));
    PointList points;
    for (const auto& segment : document.child("gpx").child("trk").children("trkseg"))
        for (const auto& element : segment.children("trkpt")) {
            TckPt point{};
            point.dLatitude = PeerReal(element.attribute("lat").value());
            point.dLongitude = PeerReal(element.attribute("lon").value());
            point.dAltitude = PeerReal(element.child_value("ele"));
            point.lTime = PeerTime(element.child_value("time"));
            points.push_back(point);
        }
    return points;
}

// expat calls back for each tag and each piece of text.
class ExpatReader {
 public:
    PointList Read(const std::string& path) {
        XML_Parser parser = XML_ParserCreate(nullptr);
        XML_SetUserData(parser, this);
        XML_SetElementHandler(parser, &OnStart, &OnEnd);
        XML_SetCharacterDataHandler(parser, &OnText);
        std::FILE* file = std::fopen(path.c_str(), "rb");
        for (bool isLast = false; !isLast;) {
            constexpr int kBlock = 1 << 16;
            void* const buffer = XML_GetBuffer(parser, kBlock);
            const auto size = std::fread(buffer, 1, kBlock, file);
            isLast = size < kBlock;
            Check(XML_ParseBuffer(parser, static_cast<int>(size), isLast) == XML_STATUS_OK);
        }
        std::fclose(file);
        XML_ParserFree(parser);
        return std::move(m_points);
    }

 private:
    static void OnStart(void* self, const char* name, const char** attributes) {
        auto& reader = *static_cast<ExpatReader*>(self);
        reader.m_text.clear();
        if (std::strcmp(name, "trkpt") != 0) return;
        reader.m_point = {};
        for (; *attributes != nullptr; attributes += 2) {
            if (std::strcmp(attributes[0], "lat") == 0) reader.m_point.dLatitude = PeerReal(attributes[1]);
            if (std::strcmp(attributes[0], "lon") == 0) reader.m_point.dLongitude = PeerReal(attributes[1]);
        }
    }
    static void OnEnd(void* self, const char* name) {
        auto& reader = *static_cast<ExpatReader*>(self);
        if (std::strcmp(name, "trkpt") == 0) reader.m_points.push_back(reader.m_point);
        if (std::strcmp(name, "ele") == 0) reader.m_point.dAltitude = PeerReal(reader.m_text);
        if (std::strcmp(name, "time") == 0) reader.m_point.lTime = PeerTime(reader.m_text);
    }
    static void OnText(void* self, const char* text, int size) {
        static_cast<ExpatReader*>(self)->m_text.append(text, static_cast<std::size_t>(size));
    }

    PointList m_points;
    TckPt m_point{};
    std::string m_text;
};

class Libxml2Reader {
 public:
    PointList Read(const std::string& path) {
        m_reader = xmlReaderForFile(path.c_str(), nullptr, 0);
        while (xmlTextReaderRead(m_reader) == 1) {
            const int type = xmlTextReaderNodeType(m_reader);
            if (type == XML_READER_TYPE_ELEMENT) OnStart();
            if (type == XML_READER_TYPE_TEXT) OnText();
            if (type == XML_READER_TYPE_END_ELEMENT && IsNamed("trkpt")) m_points.push_back(m_point);
        }
        xmlFreeTextReader(m_reader);
        return std::move(m_points);
    }

 private:
    bool IsNamed(const char* name) const {
        return xmlStrEqual(xmlTextReaderConstLocalName(m_reader), Xml(name)) != 0;
    }
    static const xmlChar* Xml(const char* text) { return reinterpret_cast<const xmlChar*>(text); }
    static const char* Plain(const xmlChar* text) { return reinterpret_cast<const char*>(text); }

    double RealAttribute(const char* name) const {
        xmlChar* const value = xmlTextReaderGetAttribute(m_reader, Xml(name));
        const double real = value == nullptr ? 0.0 : PeerReal(Plain(value));
        xmlFree(value);
        return real;
    }
    void OnStart() {
        m_isElevation = IsNamed("ele");
        m_isTime = IsNamed("time");
        if (!IsNamed("trkpt")) return;
        m_point = {};
        m_point.dLatitude = RealAttribute("lat");
        m_point.dLongitude = RealAttribute("lon");
    }
    void OnText() {
        if (m_isElevation) m_point.dAltitude = PeerReal(Plain(xmlTextReaderConstValue(m_reader)));
        if (m_isTime) m_point.lTime = PeerTime(Plain(xmlTextReaderConstValue(m_reader)));
        m_isElevation = m_isTime = false;
    }

    xmlTextReaderPtr m_reader = nullptr;
    PointList m_points;
    TckPt m_point{};
    bool m_isElevation = false;
    bool m_isTime = false;
};

void ParseOnly(const std::string& path) {
    rapidxml::file<> text(path.c_str());
    rapidxml::xml_document<> document;
    document.parse<0>(text.data());
    Check(document.first_node("gpx") != nullptr);
}

// A document by another program: lines end with a line feed, positions have all the digits that a double needs,
// and there is an extension with an attribute at each tenth point.
std::string ForeignDocument(const PointList& points) {
    std::string text =
        "<?xml version=\"1.0\"?>\n<gpx version=\"1.1\" creator=\"another\">\n<trk><name>track</name><trkseg>\n";
    char line[512];
    for (std::size_t i = 0; i < points.size(); ++i) {
        const TckPt& point = points[i];
        const int size = std::snprintf(
            line, sizeof line,
            "<trkpt lat=\"%.15g\" lon=\"%.17g\">\n <ele>%.17g</ele>\n"
            " <time>2001-09-09T%02zu:%02zu:%02zu.000Z</time>\n%s</trkpt>\n",
            point.dLatitude, point.dLongitude, point.dAltitude, i / 3600 % 24, i / 60 % 60, i % 60,
            i % 10 == 0 ? " <extensions><speed unit=\"m/s\">14.0</speed></extensions>\n" : "");
        text.append(line, static_cast<std::size_t>(size));
    }
    return text + "</trkseg></trk></gpx>\n";
}

bool Same(const PointList& a, const PointList& b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (std::memcmp(&a[i], &b[i], sizeof(TckPt)) != 0) return false;
    return true;
}

void MeasureReading(std::size_t count) {
    const BenchDevice device;
    const std::string devicePath = device.StoreTrack("track", Drive(count));
    const std::string path = device.HostPath("Tracks/track.gpx");
    const CTrack ours = ReadOurs(devicePath);
    const PointList& expected = ours.GetPtList();
    Check(expected.size() == count && Same(expected, ReadWithPugixml(path)) &&
          Same(expected, ExpatReader().Read(path)) && Same(expected, Libxml2Reader().Read(path)));

    SideBySide works("read GPX", count);
    works.Add("ours", [&] { ReadOurs(devicePath); });
    works.Add("pugixml", [&] { ReadWithPugixml(path); });
    works.Add("expat", [&] { ExpatReader().Read(path); });
    works.Add("libxml2 reader", [&] { Libxml2Reader().Read(path); });
    works.Add("limit: bare RapidXML load and parse", [&] { ParseOnly(path); });
    works.Measure();
}

void MeasureForeignReading(std::size_t count) {
    const BenchDevice device;
    const std::string devicePath = "\\Tracks\\foreign.gpx";
    const std::string path = device.HostPath("Tracks/foreign.gpx");
    const std::string document = ForeignDocument(Drive(count));
    const auto write = [&] { std::ofstream(path, std::ios::binary) << document; };
    write();
    const PointList expected = ReadWithPugixml(path);
    Check(expected.size() == count && Same(expected, ReadOurs(devicePath).GetPtList()));

    SideBySide first("read GPX of another program, the first time", count);
    first.Add(
        "ours", [&] { ReadOurs(devicePath); }, write);
    first.Add(
        "pugixml", [&] { ReadWithPugixml(path); }, write);
    first.Measure();
    ReadOurs(devicePath);
    SideBySide later("read GPX of another program, later on", count);
    later.Add("ours", [&] { ReadOurs(devicePath); });
    later.Add("pugixml", [&] { ReadWithPugixml(path); });
    later.Measure();
}

}  // namespace

int main(int argc, char** argv) {
    for (const std::size_t size : SizesFrom(argc, argv, {1000, 10'000, 100'000, 1'000'000})) {
        MeasureReading(size);
        if (size <= 100'000) MeasureForeignReading(size);
    }
    return 0;
}
