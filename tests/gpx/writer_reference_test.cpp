// The written document against the tree that its description states, built and printed by RapidXML, with random
// content.
#include <cmath>
#include <cstdio>
#include <iterator>
#include <memory>
#include <random>
#include <rapidxml/rapidxml_print.hpp>

#include "platform/device.h"
#include "tests/gpx/gpx_fixture.h"
#include "tests/support/seed.h"
#include "util/text.h"
#include "util/time.h"

namespace {

// A plain writer: every element a node, every number through the C library.
class ReferenceWriter {
 public:
    std::string Document(const GpxMetadata& metadata, const GpxTrackInfo& info) {
        m_document->append_node(Declaration());
        m_document->append_node(Root(metadata, info));
        std::string text = "\xEF\xBB\xBF";
        rapidxml::print(std::back_inserter(text), *m_document, 0);
        return text;
    }

 private:
    using Node = rapidxml::xml_node<char>;

    Node* Declaration() {
        Node* node = m_document->allocate_node(rapidxml::node_declaration);
        Attribute(node, "version", "1.0");
        Attribute(node, "encoding", "utf-8");
        Attribute(node, "standalone", "yes");
        return node;
    }

    Node* Root(const GpxMetadata& metadata, const GpxTrackInfo& info) {
        Node* gpx = m_document->allocate_node(rapidxml::node_element, "gpx");
        Attribute(gpx, "version", "1.0");
        Attribute(gpx, "creator", "ExpertGPS 1.1 - http://www.topografix.com");
        Attribute(gpx, "xmlns:xsi", "http://www.w3.org/2001/XMLSchema-instance");
        Attribute(gpx, "xmlns", "http://www.topografix.com/GPX/1/0");
        Attribute(gpx, "xsi:schemaLocation",
                  "http://www.topografix.com/GPX/1/0 http://www.topografix.com/GPX/1/0/gpx.xsd");
        AddMetadata(gpx, metadata);
        AddTrack(gpx, info);
        return gpx;
    }

    void AddMetadata(Node* gpx, const GpxMetadata& metadata) {
        AnsiText(gpx, "name", metadata.name);
        AnsiText(gpx, "desc", metadata.desc);
        AnsiText(gpx, "author", metadata.author);
        AnsiText(gpx, "email", metadata.email);
        AnsiText(gpx, "url", metadata.url);
        AnsiText(gpx, "urlname", metadata.urlname);
        AnsiText(gpx, "time", metadata.time);
        AnsiText(gpx, "keywords", metadata.keywords);
        const float zeros[4] = {};
        if (std::memcmp(&metadata.minlat, zeros, sizeof zeros) == 0) return;
        Node* bounds = Element(gpx, "bounds");
        Attribute(bounds, "minlat", Real(metadata.minlat));
        Attribute(bounds, "minlon", Real(metadata.minlon));
        Attribute(bounds, "maxlat", Real(metadata.maxlat));
        Attribute(bounds, "maxlon", Real(metadata.maxlon));
    }

    void AddTrack(Node* gpx, const GpxTrackInfo& info) {
        Node* track = Element(gpx, "trk");
        AnsiText(track, "name", info.name);
        if (info.number != 0) Element(track, "number", Integer(info.number));
        Node* extensions = Element(track, "extensions");
        Element(extensions, "color", Integer(static_cast<int>(info.color)));
        Element(extensions, "visible", Integer(info.visible));
        if (std::fabs(info.length) > 1e-6) Element(extensions, "length", Real(static_cast<float>(info.length)));
        if (std::fabs(info.area) > 1e-6) Element(extensions, "area", Real(static_cast<float>(info.area)));
        if (info.startTime != 0) Element(extensions, "starttime", Time(info.startTime));
        if (info.endTime != 0) Element(extensions, "endtime", Time(info.endTime));
        Node* segment = Element(track, "trkseg");
        for (const TckPt& point : *info.points) AddPoint(segment, point);
    }

    void AddPoint(Node* segment, const TckPt& point) {
        Node* node = Element(segment, "trkpt");
        Attribute(node, "lat", Real(point.dLatitude));
        Attribute(node, "lon", Real(point.dLongitude));
        const char zeros[8] = {};
        if (std::memcmp(&point.dAltitude, zeros, sizeof zeros) != 0)
            Element(node, "ele", Real(static_cast<float>(point.dAltitude)));
        if (point.lTime != 0) Element(node, "time", Time(point.lTime));
    }

    void AnsiText(Node* parent, const char* name, const char* ansi) {
        char utf8[513] = {};
        if (*ansi == '\0') return;
        AnsicToUTF_8(ansi, utf8, 512);
        Element(parent, name, utf8);
    }

    Node* Element(Node* parent, const char* name, const std::string& value = {}) {
        Node* node = m_document->allocate_node(rapidxml::node_element, name, Kept(value));
        parent->append_node(node);
        return node;
    }
    void Attribute(Node* node, const char* name, const std::string& value) {
        node->append_attribute(m_document->allocate_attribute(name, Kept(value)));
    }
    const char* Kept(const std::string& text) { return m_document->allocate_string(text.c_str()); }

    template <typename... Values>
    static std::string Formatted(const char* format, Values... values) {
        char text[512];
        std::snprintf(text, sizeof text, format, values...);
        return text;
    }
    static std::string Integer(int value) { return Formatted("%d", value); }
    static std::string Real(double value) {
        if (std::isnan(value))
            return std::signbit(value) ? "-nan" : "nan";  // not every C library shows the sign
        return Formatted("%f", value);
    }
    static std::string Time(long seconds) {
        SYSTEMTIME time{};
        TimetToSystemTime(seconds, &time);
        return Formatted("%d-%02d-%02dT%02d:%02d:%02dZ", time.wYear, time.wMonth, time.wDay, time.wHour,
                         time.wMinute, time.wSecond);
    }

    std::unique_ptr<rapidxml::xml_document<char>> m_document = std::make_unique<rapidxml::xml_document<char>>();
};

}  // namespace

class GpxWriterReference : public GpxTest {
 protected:
    template <std::size_t Room>
    void PutAnyText(char (&field)[Room], std::size_t longest) {
        std::string text(m_random() % 3 == 0 ? 0 : m_random() % (longest + 1), ' ');
        for (char& c : text) c = static_cast<char>(1 + m_random() % 255);
        Put(field, text);
    }
    double AnyReal() {
        switch (m_random() % 6) {
            case 0:
                return 0.0;
            case 1:
                return -0.0;
            case 2:
                return Between(-180, 180, m_random);
            case 3:
                return std::ldexp(Between(-1, 1, m_random), static_cast<int>(m_random() % 200) - 100);
            case 4:
                return static_cast<double>(static_cast<int>(m_random() % 20000) - 10000) / 128;
            default:
                return AnyBytes(m_random).dLatitude;
        }
    }
    std::int32_t AnyInteger() { return m_random() % 4 == 0 ? 0 : static_cast<std::int32_t>(m_random()); }

    void FillWithAnything() { FillWithAnything(m_random() % 8); }
    void FillWithAnything(std::size_t points) {
        for (auto* field : {&m_metadata.name, &m_metadata.desc, &m_metadata.author, &m_metadata.email,
                            &m_metadata.url, &m_metadata.urlname, &m_metadata.time, &m_metadata.keywords})
            PutAnyText(*field, 64);
        for (float* bound : {&m_metadata.minlat, &m_metadata.minlon, &m_metadata.maxlat, &m_metadata.maxlon})
            *bound = static_cast<float>(AnyReal());
        PutAnyText(m_info.name, 32);
        m_info.number = AnyInteger();
        m_info.color = static_cast<std::uint32_t>(m_random());
        m_info.visible = AnyInteger();
        m_info.length = AnyReal();
        m_info.area = AnyReal();
        m_info.startTime = AnyInteger();
        m_info.endTime = AnyInteger();
        m_points.resize(points);
        for (TckPt& point : m_points) {
            point = AnyBytes(m_random);
            point.dLatitude = AnyReal();
            point.dLongitude = AnyReal();
            point.dAltitude = AnyReal();
            point.lTime = AnyInteger();
        }
    }

    std::mt19937 m_random{Seed(20140501)};
};

TEST_F(GpxWriterReference, AnyTrack_IsWrittenAsTheTreeIsPrinted) {
    for (int i = 0; i < 300; ++i) {
        FillWithAnything();
        ASSERT_EQ(Exported(), ReferenceWriter().Document(m_metadata, m_info)) << "track " << i;
    }
}

// So long that it goes to the file in several pieces.
TEST_F(GpxWriterReference, LongTrack_IsWrittenAsTheTreeIsPrinted) {
    FillWithAnything(10000 + m_random() % 1000);
    const std::string document = Exported();
    EXPECT_GT(document.size(), std::size_t{1} << 20);
    EXPECT_TRUE(document ==
                ReferenceWriter().Document(m_metadata, m_info));  // not shown where it differs: it is long
}

TEST_F(GpxWriterReference, InEveryCodePage_TextIsWrittenAsTheTreeIsPrinted) {
    for (const unsigned codePage : {936u, 1252u, 65001u}) {
        ASSERT_TRUE(SetAnsiCodePage(codePage));
        for (int i = 0; i < 30; ++i) {
            FillWithAnything();
            ASSERT_EQ(Exported(), ReferenceWriter().Document(m_metadata, m_info)) << codePage;
        }
    }
}
