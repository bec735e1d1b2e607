#include "host/recording/saved_mark.h"

#include <cstdint>
#include <system_error>

#include "host/recording/recording_files.h"
#include "host/text/file_bytes.h"
#include "host/text/output_file.h"

namespace fs = std::filesystem;

namespace host {
namespace {

constexpr std::uint64_t kLargestRing = 16'000'000, kLargestMark = 1000;

fs::path MarkOf(const DeviceFolder& device) { return device.Recording() / "Log.dat.saved"; }

// FNV-1a: Fowler, Noll and Vo's hash of 64 bits.
std::uint64_t HashOf(const std::string& bytes) {
    std::uint64_t hash = 0xcbf29ce484222325;
    for (const char byte : bytes) hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001b3;
    return hash;
}

// The whole content of the mark, so that comparing it is all there is to reading it.
std::optional<std::string> MarkText(const DeviceFolder& device) {
    const FileBytes ring = ReadWholeFile(RingFileOf(device).string(), kLargestRing);
    if (!ring.problem.empty()) return std::nullopt;
    return "all of Log.dat is saved: " + std::to_string(ring.bytes.size()) + " bytes, FNV-1a " +
           std::to_string(HashOf(ring.bytes)) + '\n';
}

}  // namespace

std::optional<std::string> MarkAsSaved(const DeviceFolder& device) {
    const auto text = MarkText(device);
    return text ? ReplaceFile(MarkOf(device), *text)
                : std::optional(RingFileOf(device).string() + " cannot be read back");
}

bool IsMarkedAsSaved(const DeviceFolder& device) {
    const FileBytes mark = ReadWholeFile(MarkOf(device).string(), kLargestMark);
    return mark.problem.empty() && MarkText(device) == mark.bytes;
}

std::optional<std::string> RemoveSavedMark(const DeviceFolder& device) {
    std::error_code problem;
    fs::remove(MarkOf(device), problem);
    if (!problem) return std::nullopt;
    return MarkOf(device).string() + " cannot be removed: " + problem.message();
}

}  // namespace host
