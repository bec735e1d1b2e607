// Finds the records of a damaged recording wherever they stand in its bytes. Pure functions on bytes. The
// layout of a record: docs/formats/log-file.md. The command: host/commands/salvage_command.cpp.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "qtrace.h"

namespace host {

struct SalvagedRecord {
    std::size_t offset = 0;  // in the file
    TckPt point{};
};

// All valid records at whatever byte offset, by offset; in what is checked none overlaps another. A record is
// valid when its check sequence agrees and it is what a receiver can have measured. The check alone would take
// one in 65536 places of random data: a record on its own therefore has to have figures of a sensible size in
// every field, while one that touches another valid record may also hold numbers that are merely within their
// range. Where valid records overlap, the longer unbroken run of records is the real one.
std::vector<SalvagedRecord> FindRecords(std::string_view bytes);

// The points in time order, those of one second as they stand in the file; equal ones once.
std::vector<TckPt> PointsOf(const std::vector<SalvagedRecord>& records);

}  // namespace host
