#include "host/tracks/foreign_content.h"

#include <expat.h>

#include <fstream>
#include <map>
#include <memory>
#include <set>
#include <vector>

#include "host/program.h"
#include "host/text/text.h"
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

// What a path of element names is called; others are called by their last name.
const std::map<std::string, std::string> kCalled = {{"/gpx/wpt", "waypoints"}, {"/gpx/rte", "routes"}};

// Names what stands at the top of each part that is foreign, once.
class Reader {
 public:
    void Begin(const char* name) {
        m_path.push_back(name);
        if (m_insideForeign != 0) {
            ++m_insideForeign;
            return;
        }
        const std::string path = Path();
        if (path == "/gpx/trk" && ++m_tracks == 2) m_found.insert("further tracks");
        if (path == "/gpx/trk/trkseg" && m_tracks == 1 && ++m_segments == 2) m_found.insert("several segments");
        if (kKept.contains(path)) return;
        const auto called = kCalled.find(path);
        m_found.insert(called == kCalled.end() ? name : called->second);
        m_insideForeign = 1;
    }

    void End() {
        m_path.pop_back();
        if (m_insideForeign != 0) --m_insideForeign;
    }

    void Add(const std::string& what) { m_found.insert(what); }

    std::string Found() const {
        std::string text;
        for (const std::string& what : m_found) text += (text.empty() ? "" : ", ") + what;
        return text;
    }

 private:
    std::string Path() const {
        std::string path;
        for (const std::string& name : m_path) path += '/' + name;
        return path;
    }

    std::vector<std::string> m_path;
    std::set<std::string> m_found;
    int m_tracks = 0, m_segments = 0;
    int m_insideForeign = 0;  // depth below the outermost foreign element
};

void XMLCALL OnBegin(void* reader, const char* name, const char**) {
    static_cast<Reader*>(reader)->Begin(name);
}
void XMLCALL OnEnd(void* reader, const char*) { static_cast<Reader*>(reader)->End(); }

}  // namespace

std::string ForeignContent(const std::filesystem::path& file) {
    const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(XML_ParserCreate(nullptr),
                                                                              &XML_ParserFree);
    Reader reader;
    XML_SetUserData(parser.get(), &reader);
    XML_SetElementHandler(parser.get(), OnBegin, OnEnd);
    std::ifstream in(file, std::ios::binary);
    std::vector<char> buffer(65536);
    bool good = in.is_open();
    while (good && in) {
        in.read(buffer.data(), static_cast<std::streamsize>(buffer.size()));
        const bool isLast = !in;
        good = XML_Parse(parser.get(), buffer.data(), static_cast<int>(in.gcount()), isLast ? 1 : 0) ==
               XML_STATUS_OK;
    }
    if (!good) reader.Add("parts that are no well-formed XML");
    return reader.Found();
}

bool IsKeptForForeignContent(const Library& library, CTrackProxy& track, const std::string& command,
                             bool force) {
    const std::string foreign = force ? "" : ForeignContent(library.FileOf(track));
    if (foreign.empty()) return false;
    Fail(command, library.FileOf(track).string() + " holds more than the track " + ShownName(track) + " (" +
                      foreign + "), which would be lost; nothing was changed; --force does it all the same");
    return true;
}

}  // namespace host
