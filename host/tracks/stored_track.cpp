#include "host/tracks/stored_track.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <fstream>
#include <iterator>

#include "host/text/descriptor.h"
#include "host/text/output_file.h"
#include "host/text/utf8_path.h"

namespace fs = std::filesystem;

namespace host {
namespace {

constexpr double kAsWritten = 1e-6;          // [deg] positions have six decimals in a file
constexpr double kAltitudeAsWritten = 0.01;  // [m] in single precision

std::string BytesOf(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

// A stranger's file states no length, and its number is not that of the points.
void KnowHeader(CTrackProxy& track) {
    if (track.GetPtCount() == 0 || track.GetLength() == 0.0) track.Caculate();
}

// How `write` fails on so many bytes; 0 when it does not.
int TryToFill(int descriptor, std::size_t bytes) {
    return WriteAll(descriptor, std::string(bytes, '\0')) && Commit(descriptor) ? 0 : errno;
}

// The file of before, in the system's temporary folder; empty when not even that can be written.
fs::path KeepCopy(const fs::path& file, const std::string& bytes) {
    std::error_code problem;
    std::string copy = Utf8Of(fs::temp_directory_path(problem) / "qtrace-XXXXXX") + Utf8Of(file.extension());
    const int made = MakeNewFile(copy);
    if (made < 0) return {};
    const bool isKept = WriteAll(made, bytes) && Commit(made);
    CloseFile(made);
    return isKept ? PathOf(copy) : fs::path();
}

// What has become of a file whose change does not show. `before`: its bytes, and the track in it.
std::string Aftermath(const fs::path& file, const std::string& path, const std::string& bytes,
                      const StoredTrack& before) {
    std::error_code unknown;
    const fs::perms rights = fs::status(file, unknown).permissions();
    const bool readOnly =
        (rights & (fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write)) ==
        fs::perms::none;
    const std::string reason = readOnly ? "it is read-only" : WhyNotWritable(file.parent_path(), bytes.size());
    const std::string message = Utf8Of(file) + " could not be written" + (reason.empty() ? "" : ": " + reason);
    const auto now = ReadStoredTrack(path);
    if (now && SamePoints(now->points, before.points)) return message + "; the track is as it was";
    const fs::path copy = KeepCopy(file, bytes);
    return message + (copy.empty() ? "; the track in it may be damaged" : "; it is kept in " + Utf8Of(copy));
}

}  // namespace

std::optional<StoredTrack> ReadStoredTrack(const std::string& path) {
    CTrackProxy onDisk(path.c_str());
    if (!onDisk.Load(nullptr)) return std::nullopt;
    StoredTrack track{onDisk.GetName(), onDisk.GetColor(), onDisk.GetVisible(), {}};
    onDisk.GetPtList(track.points);
    return track;
}

bool SamePoints(const Points& a, const Points& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const TckPt& p, const TckPt& q) {
        return p.lTime == q.lTime && std::fabs(p.dLatitude - q.dLatitude) <= kAsWritten &&
               std::fabs(p.dLongitude - q.dLongitude) <= kAsWritten &&
               std::fabs(p.dAltitude - q.dAltitude) <= kAltitudeAsWritten;
    });
}

std::optional<std::string> ChangeHeader(const Library& library, CTrackProxy& track,
                                        const std::function<void(CTrackProxy&)>& change) {
    const fs::path file = library.FileOf(track);
    const std::string path = track.GetTrackPath();
    const auto before = ReadStoredTrack(path);
    if (!before) return Utf8Of(file) + " cannot be read any more";
    const std::string bytes = BytesOf(file);
    CTrackProxy wanted(path.c_str());
    wanted.Load(nullptr);
    KnowHeader(wanted);
    change(wanted);
    wanted.SaveTrackData();
    const auto after = ReadStoredTrack(path);
    const bool done = after && after->name == wanted.GetName() && after->color == wanted.GetColor() &&
                      after->visible == wanted.GetVisible() && SamePoints(after->points, before->points);
    return done ? std::nullopt : std::optional(Aftermath(file, path, bytes, *before));
}

std::string WhyNotWritable(const fs::path& folder, std::size_t bytes) {
    std::string name;
    const int descriptor = MakeTemporary(folder, name);
    if (descriptor < 0) return std::strerror(errno);
    const int problem = TryToFill(descriptor, bytes);
    CloseFile(descriptor);
    std::error_code ignored;
    fs::remove(PathOf(name), ignored);
    return problem == 0 ? "" : std::strerror(problem);
}

}  // namespace host
