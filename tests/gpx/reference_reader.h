// A plain reader of GPX documents: the whole document as a RapidXML tree, numbers through the C library. Slow,
// and large in memory, but each line says one rule; the reader of the library must find the same.
#pragma once

#include <cstdlib>
#include <cstring>
#include <memory>
#include <rapidxml/rapidxml.hpp>
#include <string>

#include "gpx/gpx.h"
#include "platform/clock.h"
#include "tests/gpx/imported.h"
#include "tests/support/c_number.h"
#include "util/text.h"
#include "util/time.h"

class ReferenceReader {
 public:
    enum class Content { Whole, Head, FirstPoints };

    // The text of a file as it is parsed. Fills `imported` as the import of that content would.
    void Read(std::string text, Content wanted, Imported& imported) {
        try {
            m_document->parse<0>(text.data());
        } catch (const rapidxml::parse_error&) {
            return;
        }
        const Node* gpx = m_document->first_node("gpx");
        if (gpx == nullptr) return;
        ReadMetadata(gpx, imported.metadata);
        const Node* track = gpx->first_node("trk");
        const Node* segment = track == nullptr ? nullptr : track->first_node("trkseg");
        const bool isChain = segment != nullptr && segment->first_node("trkpt") != nullptr;
        imported.isRead = wanted == Content::Whole || isChain;
        if (!imported.isRead) return;
        if (wanted != Content::FirstPoints && track != nullptr) ReadHeader(track, imported.info);
        if (wanted == Content::FirstPoints) ReadSegment(segment, imported.points);
        if (wanted == Content::Whole)
            for (; segment != nullptr; segment = segment->next_sibling("trkseg"))
                ReadSegment(segment, imported.points);
    }

 private:
    using Node = rapidxml::xml_node<char>;

    static void ReadMetadata(const Node* gpx, GpxMetadata& metadata) {
        ReadField(gpx, "name", metadata.name);
        ReadField(gpx, "desc", metadata.desc);
        ReadPerson(gpx, metadata);
        ReadField(gpx, "url", metadata.url);
        ReadField(gpx, "urlname", metadata.urlname);
        ReadField(gpx, "time", metadata.time);
        ReadField(gpx, "keywords", metadata.keywords);
        if (const Node* bounds = gpx->first_node("bounds")) {
            ReadBound(bounds, "minlat", metadata.minlat);
            ReadBound(bounds, "minlon", metadata.minlon);
            ReadBound(bounds, "maxlat", metadata.maxlat);
            ReadBound(bounds, "maxlon", metadata.maxlon);
        }
    }

    static void ReadPerson(const Node* gpx, GpxMetadata& metadata) {
        const std::string version = Ansi(AttributeText(gpx, "version"), 7);
        if (std::string("1.0").compare(0, version.size(), version) == 0) {
            ReadField(gpx, "author", metadata.author);
            ReadField(gpx, "email", metadata.email);
        } else if (std::string("1.1").compare(0, version.size(), version) == 0) {
            if (const Node* author = gpx->first_node("author")) ReadField(author, "name", metadata.author);
            const Node* email = gpx->first_node("email");
            if (email == nullptr ||
                (email->first_attribute("id") == nullptr && email->first_attribute("domain") == nullptr))
                return;
            const std::string joined =
                Ansi(AttributeText(email, "id"), 31) + "%s@%s" + Ansi(AttributeText(email, "domain"), 63);
            Put(metadata.email, Ansi(joined, 64));
        }
    }

    static void ReadHeader(const Node* track, GpxTrackInfo& info) {
        if (const Node* name = track->first_node("name")) {
            std::memset(info.name, 0, sizeof info.name);
            Ansi(ElementText(name), 32).copy(info.name, 32);
        }
        if (const Node* number = track->first_node("number"))
            info.number = std::atoi(ElementText(number).c_str());
        const Node* own = track->first_node("extensions") != nullptr ? track->first_node("extensions") : track;
        if (const Node* color = own->first_node("color"))
            info.color = static_cast<std::uint32_t>(std::atoi(ElementText(color).c_str()));
        if (const Node* visible = own->first_node("visible"))
            info.visible = std::atoi(ElementText(visible).c_str()) != 0;
        if (const Node* length = own->first_node("length")) info.length = RealByCLibrary(ElementText(length));
        if (const Node* area = own->first_node("area")) info.area = RealByCLibrary(ElementText(area));
        if (const Node* start = own->first_node("starttime")) info.startTime = Time(start);
        if (const Node* end = own->first_node("endtime")) info.endTime = Time(end);
    }

    static void ReadSegment(const Node* segment, Points& points) {
        TckPt point{};
        for (const Node* node = segment->first_node("trkpt"); node != nullptr;
             node = node->next_sibling("trkpt")) {
            if (node->first_attribute("lat") == nullptr || node->first_attribute("lon") == nullptr) continue;
            point.dLatitude = RealByCLibrary(AttributeText(node, "lat"));
            point.dLongitude = RealByCLibrary(AttributeText(node, "lon"));
            if (const Node* ele = node->first_node("ele")) point.dAltitude = RealByCLibrary(ElementText(ele));
            if (const Node* time = node->first_node("time")) point.lTime = Time(time);
            points.push_back(point);
        }
    }

    static std::int32_t Time(const Node* node) {
        const std::string text = Ansi(ElementText(node), 31);
        SYSTEMTIME time{};
        if (text.empty())
            platform::GetSystemTime(&time);
        else
            DTSTR2SYS(text, time);
        return static_cast<std::int32_t>(ChangeSYSTIMEToTime_T(time));
    }

    template <std::size_t Room>
    static void ReadField(const Node* parent, const char* name, char (&field)[Room]) {
        const Node* node = parent->first_node(name);
        if (node != nullptr && !ElementText(node).empty()) Put(field, Ansi(ElementText(node), Room - 1));
    }

    static void ReadBound(const Node* bounds, const char* name, float& field) {
        if (bounds->first_attribute(name) != nullptr)
            field = static_cast<float>(RealByCLibrary(AttributeText(bounds, name)));
    }

    static std::string AttributeText(const Node* node, const char* name) {
        const auto* attribute = node->first_attribute(name);
        return attribute == nullptr ? std::string() : std::string(attribute->value(), attribute->value_size());
    }

    static std::string ElementText(const Node* node) {
        std::string joined;
        bool hasSection = false;
        for (const Node* child = node->first_node(); child != nullptr; child = child->next_sibling()) {
            if (child->type() != rapidxml::node_cdata && child->type() != rapidxml::node_data) continue;
            joined.append(child->value(), child->value_size());
            hasSection |= child->type() == rapidxml::node_cdata;
        }
        return hasSection ? joined : std::string(node->value(), node->value_size());
    }

    static std::string Ansi(const std::string& utf8, int size) {
        char text[512] = {};
        UTF_8ToAnsic(utf8.c_str(), text, size);
        return text;
    }

    std::unique_ptr<rapidxml::xml_document<char>> m_document = std::make_unique<rapidxml::xml_document<char>>();
};
