#include "host/tracks/foreign_content.h"

#include <cstdint>
#include <set>

#include "host/program.h"
#include "host/text/text.h"
#include "host/text/utf8_path.h"
#include "host/text/xml_reader.h"
#include "host/tracks/named_tracks.h"

namespace host {
namespace {

// Where elements may stand that a rewrite keeps, or writes anew.
const std::set<std::string> kKept = {"/gpx",
                                     "/gpx/name",
                                     "/gpx/time",
                                     "/gpx/bounds",
                                     "/gpx/trk",
                                     "/gpx/trk/name",
                                     "/gpx/trk/number",
                                     "/gpx/trk/extensions",
                                     "/gpx/trk/extensions/color",
                                     "/gpx/trk/extensions/visible",
                                     "/gpx/trk/extensions/length",
                                     "/gpx/trk/extensions/area",
                                     "/gpx/trk/extensions/starttime",
                                     "/gpx/trk/extensions/endtime",
                                     "/gpx/trk/trkseg",
                                     "/gpx/trk/trkseg/trkpt",
                                     "/gpx/trk/trkseg/trkpt/ele",
                                     "/gpx/trk/trkseg/trkpt/time"};

void AddPart(std::string& text, const std::string& part) { text += (text.empty() ? "" : ", ") + part; }

// Names what stands at the top of each part that is foreign.
class ForeignParts : public XmlEvents {
 public:
    std::string OnStart(std::string_view name, const XmlAttributes&) override {
        m_path += '/';
        m_path += name;
        if (m_insideForeign != 0 || !IsKept(name)) ++m_insideForeign;
        return "";
    }
    void OnEnd() override {
        m_path.erase(m_path.rfind('/'));
        if (m_insideForeign != 0) --m_insideForeign;
    }
    void OnText(std::string_view) override {}

    void Add(const std::string& what) { m_others.insert(what); }

    // "3 waypoints, 1 more track, extensions".
    std::string Found() const {
        std::string text;
        if (m_waypoints != 0) AddPart(text, Counted(m_waypoints, "waypoint", "waypoints"));
        if (m_routes != 0) AddPart(text, Counted(m_routes, "route", "routes"));
        if (m_tracks > 1) AddPart(text, Counted(m_tracks - 1, "more track", "more tracks"));
        for (const std::string& what : m_others) AddPart(text, what);
        return text;
    }

 private:
    // Counts the element that m_path leads to, which lies in no foreign one. What is below a further track goes
    // with it, whatever it is.
    bool IsKept(std::string_view name) {
        if (m_path == "/gpx/trk") return ++m_tracks == 1;
        if (m_path == "/gpx/trk/trkseg" && ++m_segments == 2) Add("several segments");
        if (kKept.contains(m_path)) return true;
        if (m_path == "/gpx/wpt")
            ++m_waypoints;
        else if (m_path == "/gpx/rte")
            ++m_routes;
        else
            Add(std::string(name));
        return false;
    }

    std::string m_path;
    std::set<std::string> m_others;
    std::uint64_t m_waypoints = 0, m_routes = 0, m_tracks = 0, m_segments = 0;
    int m_insideForeign = 0;  // depth below the outermost foreign element
};

}  // namespace

std::string ForeignContent(const std::filesystem::path& file) {
    ForeignParts parts;
    FileReader reader(Utf8Of(file));
    if (!ReadXml(reader, parts).problem.empty()) parts.Add("parts that are no well-formed XML");
    return parts.Found();
}

bool IsKeptForForeignContent(const Library& library, CTrackProxy& track, const std::string& command,
                             bool force) {
    const std::string foreign = force ? "" : ForeignContent(library.FileOf(track));
    if (foreign.empty()) return false;
    Fail(command, Utf8Of(library.FileOf(track)) + " holds more than the track " + ShownName(track) + " (" +
                      foreign + "), which would be lost; nothing was changed; --force does it all the same");
    return true;
}

}  // namespace host
