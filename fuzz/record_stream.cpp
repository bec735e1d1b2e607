// A record stream, as a track loads it from an open file.
#include <cstdio>

#include "fuzz/device_in_memory.h"
#include "track/track.h"

constexpr unsigned long kMostPoints = 10000;  // what the stream says beyond that is not believed

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    std::FILE* stream = fmemopen(const_cast<std::uint8_t*>(data), size, "rb");
    fuzz::Require(stream != nullptr);
    CTrack track;
    if (track.Load(static_cast<void*>(stream))) fuzz::Require(track.GetPtCount() <= kMostPoints);
    std::fclose(stream);
    track.Calculate(true);
    return 0;
}
