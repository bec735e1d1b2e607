// The live recording's point file as its bytes say, read without the library: ring start u16, record count u16,
// then slots of 48 bytes, everything little-endian.
#pragma once

#include <filesystem>
#include <vector>

#include "track/point.h"

struct RingFile {
    unsigned start = 0;         // slot of the oldest point
    unsigned count = 0;         // slots in use
    std::vector<TckPt> points;  // in track order, oldest first; check sequences as stored
};

// Reads what is there; fewer points than `count` when the file is shorter. A missing file holds nothing.
RingFile ReadRingFile(const std::filesystem::path& file);
