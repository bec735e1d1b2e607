#include "host/recording/saved_mark.h"

#include <cstdint>
#include <string_view>
#include <system_error>

#include "host/recording/recording_files.h"
#include "host/text/file_bytes.h"
#include "host/text/output_file.h"
#include "host/text/utf8_path.h"

namespace fs = std::filesystem;

namespace host {
namespace {

constexpr std::uint64_t kLargestRing = 16'000'000, kLargestMark = 10'000;

fs::path MarkOf(const DeviceFolder& device) { return device.Recording() / "Log.dat.saved"; }

// FNV-1a: Fowler, Noll and Vo's hash of 64 bits.
std::uint64_t HashOf(const std::string& bytes) {
    std::uint64_t hash = 0xcbf29ce484222325;
    for (const char byte : bytes) hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001b3;
    return hash;
}

constexpr std::string_view kIn = " points in ";

// The mark's first line.
std::optional<std::string> RingLine(const DeviceFolder& device) {
    const FileBytes ring = ReadWholeFile(Utf8Of(RingFileOf(device)), kLargestRing);
    if (!ring.problem.empty()) return std::nullopt;
    return "all of Log.dat is saved: " + std::to_string(ring.bytes.size()) + " bytes, FNV-1a " +
           std::to_string(HashOf(ring.bytes)) + '\n';
}

// Its second, without the line's end.
std::string TrackLine(std::uint64_t points, const fs::path& file) {
    return std::to_string(points) + std::string(kIn) + Utf8Of(file);
}

bool IsThere(const DeviceFolder& device, const std::string& trackLine) {
    const std::size_t in = trackLine.find(kIn);
    if (in == std::string::npos) return false;
    const fs::path file = PathOf(trackLine.substr(in + kIn.size()));
    const auto track = ReadSavedTrack(device, file);
    return track && TrackLine(track->pointsReadBack, file) == trackLine;
}

}  // namespace

std::optional<std::string> MarkAsSaved(const DeviceFolder& device, const SavedTrack& track) {
    const auto ring = RingLine(device);
    if (!ring) return Utf8Of(RingFileOf(device)) + " cannot be read back";
    return ReplaceContent(MarkOf(device), *ring + TrackLine(track.pointsReadBack, track.file) + '\n');
}

bool IsMarkedAsSaved(const DeviceFolder& device) {
    const FileBytes mark = ReadWholeFile(Utf8Of(MarkOf(device)), kLargestMark);
    const auto ring = RingLine(device);
    if (!mark.problem.empty() || !ring || !mark.bytes.starts_with(*ring) || !mark.bytes.ends_with('\n'))
        return false;
    return IsThere(device, mark.bytes.substr(ring->size(), mark.bytes.size() - ring->size() - 1));
}

std::optional<std::string> RemoveSavedMark(const DeviceFolder& device) {
    std::error_code problem;
    fs::remove(MarkOf(device), problem);
    if (!problem) return std::nullopt;
    return Utf8Of(MarkOf(device)) + " cannot be removed: " + problem.message();
}

}  // namespace host
