#include "host/recording/recording_files.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <system_error>

#include "host/text/text.h"
#include "host/text/utf8_path.h"
#include "host/tracks/stored_track.h"

namespace fs = std::filesystem;

namespace host {
namespace {

constexpr std::uint64_t kHeaderSize = 4, kRecordSize = 48;

}  // namespace

fs::path RingFileOf(const DeviceFolder& device) { return device.Recording() / "Log.dat"; }

std::optional<std::uint64_t> PointsInRingFile(const DeviceFolder& device) {
    std::array<char, kHeaderSize> header{};
    std::ifstream file(RingFileOf(device), std::ios::binary);
    if (!file.read(header.data(), header.size())) return std::nullopt;
    const std::uint64_t count = static_cast<unsigned char>(header[2]) |
                                static_cast<std::uint64_t>(static_cast<unsigned char>(header[3])) << 8;
    std::error_code unreadable;
    const std::uint64_t size = fs::file_size(RingFileOf(device), unreadable);
    return !unreadable && size == kHeaderSize + count * kRecordSize ? std::optional(count) : std::nullopt;
}

std::optional<std::string> WhyIncomplete(const DeviceFolder& device, std::uint64_t points) {
    const auto inFile = PointsInRingFile(device);
    if (inFile == points) return std::nullopt;
    const std::string holds =
        inFile ? "holds " + std::to_string(*inFile) + " of " + Counted(points, "point", "points")
               : "cannot be read back";
    return Utf8Of(RingFileOf(device)) + ' ' + holds + " (" + WhyNothingIsWritten(device.Recording()) + ')';
}

std::string WhyNotOpened(const DeviceFolder& device) {
    errno = 0;
    const std::fstream file(RingFileOf(device), std::ios::in | std::ios::out | std::ios::binary);
    if (file || errno == ENOENT) return WhyNothingIsWritten(device.Recording());
    return std::strerror(errno);
}

std::set<fs::path> PutAsideFiles(const DeviceFolder& device) {
    std::set<fs::path> files;
    for (const fs::path& folder : {device.Tracks(), device.Recording()}) {
        std::error_code unreadable;
        for (const auto& entry : fs::directory_iterator(folder, unreadable))
            if (entry.path().extension() == ".bk" && Utf8Of(entry.path().stem()).starts_with("TmpTk"))
                files.insert(entry.path());
    }
    return files;
}

std::string WhyNothingIsWritten(const fs::path& folder) {
    constexpr std::size_t kTrial = 65536;
    const std::string why = WhyNotWritable(folder, kTrial);
    return why.empty() ? "a trial file of " + std::to_string(kTrial) + " bytes could be written there just now"
                       : why;
}

}  // namespace host
