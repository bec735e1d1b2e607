#include "host/source/gpx_source.h"

#include <filesystem>
#include <system_error>

#include "host/text/descriptor.h"
#include "host/text/text.h"
#include "host/text/utf8_path.h"

namespace fs = std::filesystem;

namespace host {
namespace {

constexpr std::size_t kPointsBetweenLooks = 256;  // for a signal that asks to stop

// A folder for the copy, gone with it.
class CopyFolder {
 public:
    CopyFolder() {
        std::error_code problem;
        std::string name = Utf8Of(fs::temp_directory_path(problem) / "qtrace-XXXXXX");
        if (MakeNewFolder(name)) m_path = PathOf(name);
    }
    ~CopyFolder() {
        std::error_code ignored;
        if (!m_path.empty()) fs::remove_all(m_path, ignored);
    }
    CopyFolder(const CopyFolder&) = delete;
    CopyFolder& operator=(const CopyFolder&) = delete;
    const fs::path& Path() const { return m_path; }

 private:
    fs::path m_path;
};

std::optional<std::string> ReadTrack(const std::string& file, CTrack& track) {
    std::error_code problem;
    if (fs::is_directory(PathOf(file), problem))
        return std::make_error_code(std::errc::is_a_directory).message();
    const CopyFolder folder;
    if (folder.Path().empty()) return "there is no temporary folder for a copy of it";
    fs::copy_file(PathOf(file), folder.Path() / "copy.gpx", problem);
    if (problem) return problem.message();
    SetDeviceRoot(Utf8Of(folder.Path()));
    if (!track.Load("\\copy.gpx")) return "it is no readable GPX document with a track";
    return std::nullopt;
}

}  // namespace

GpxSource::GpxSource(const std::string& file) : m_name(file) {
    CTrack track;
    m_unreadable = ReadTrack(file, track);
    m_points.assign(track.GetPtList().begin(), track.GetPtList().end());
}

FixSource::Got GpxSource::Next(StopSignals& stop, std::chrono::milliseconds, Fix& fix) {
    if (m_next == m_points.size()) return Got::End;
    if (m_next % kPointsBetweenLooks == 0 && !stop.Sleep({})) return Got::Stopped;
    const TckPt& point = m_points[m_next++];
    if (point.lTime == 0) {
        ++m_withoutTime;
        return Got::Nothing;
    }
    ++m_fixes;
    fix = Fix{point, std::nullopt};
    return Got::Fix;
}

std::optional<double> GpxSource::Share() const {
    if (m_points.empty()) return std::nullopt;
    return static_cast<double>(m_next) / static_cast<double>(m_points.size());
}

SourceCounts GpxSource::Counts() const {
    const std::string refused = m_withoutTime == 0 ? "" : std::to_string(m_withoutTime) + " without time";
    return {m_fixes, Counted(m_next, "point of the track", "points of the track"), refused, 0};
}

}  // namespace host
