#include "tests/support/ring_file.h"

#include <algorithm>
#include <cstring>

#include "tests/support/device.h"

namespace {

constexpr std::size_t kHeaderSize = 4;

unsigned Word(const std::string& bytes, std::size_t at) {
    return static_cast<unsigned char>(bytes[at]) + 256u * static_cast<unsigned char>(bytes[at + 1]);
}

}  // namespace

RingFile ReadRingFile(const std::filesystem::path& file) {
    RingFile ring;
    if (!std::filesystem::exists(file)) return ring;
    const std::string bytes = ReadFile(file);
    if (bytes.size() < kHeaderSize) return ring;
    ring.start = Word(bytes, 0);
    ring.count = Word(bytes, 2);
    ring.points.resize(std::min<std::size_t>(ring.count, (bytes.size() - kHeaderSize) / sizeof(TckPt)));
    if (!ring.points.empty())
        std::memcpy(ring.points.data(), bytes.data() + kHeaderSize, ring.points.size() * sizeof(TckPt));
    if (ring.start < ring.points.size())
        std::rotate(ring.points.begin(), ring.points.begin() + ring.start, ring.points.end());
    return ring;
}
