// Moving the bytes of Log.dat between memory and an open stream, and nothing else: what is to be written is
// decided in record/ring_plan.h, when and from what in record/log_track_files.cpp. Inner to the library.
#pragma once

#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "record/log_format.h"
#include "record/ring_plan.h"
#include "track/point.h"
#include "util/je_allocator.h"

// Streams are non-null, open for reading and writing, and stay the caller's. Every operation but ReadRecord
// leaves its place in the stream behind what it touched. Write errors are not reported; only Commit and Execute
// flush.
namespace log_file {

// Opens a file, or makes it where there is none: one that cannot be opened for the moment must not be emptied.
// Null when neither can be done. Each flush of the stream waits until the storage has the data. `isNew`, which
// may be null, is set when it was made.
std::FILE* OpenOrMake(const char* path, bool* isNew = nullptr);

// Bytes in the file, leaving the stream at its beginning. A size that cannot be told is answered with the
// largest number, which fits no header.
std::int64_t SizeOf(std::FILE* file);

// The header at the beginning of the file; nullopt when it cannot be read whole.
std::optional<RingHeader> ReadHeader(std::FILE* file);

// The header at the stream's place. The two fields are two writes, start first.
void WriteHeader(std::FILE* file, RingHeader header);

// The next 48 bytes. False, with `record` cleared, at the end of the file or when they cannot be read.
bool ReadRecord(std::FILE* file, TckPt& record);

// The record in a slot; cleared when it cannot be read.
void ReadSlot(std::FILE* file, std::size_t slot, TckPt& record);

// Fills `records` with what stands from the stream's place on; those that cannot be read whole are cleared,
// and it answers false.
bool ReadRecords(std::FILE* file, std::vector<TckPt, je_allocator<TckPt>>& records);

// Writes `points` from a slot on, in one write; nothing when the slot cannot be reached.
void WriteSlots(std::FILE* file, std::size_t slot, const std::vector<TckPt, je_allocator<TckPt>>& points);

// Writes `points` behind the stream's place, in one write.
void WriteRecords(std::FILE* file, const std::vector<TckPt, je_allocator<TckPt>>& points);

// A whole file of these records, not wrapped; at most 65535.
std::string WholeFile(const std::vector<TckPt, je_allocator<TckPt>>& points);

// Waits until the storage has what was written. False when it does not take it, or did not before.
bool Commit(std::FILE* file);

// Carries out what PlanAppend decided for `batch`: the header, then each block in one write. Where the file
// grows and turns, the oldest records are written over only when the storage had room for those at the end.
void Execute(std::FILE* file, const RingWrite& plan, const std::vector<TckPt, je_allocator<TckPt>>& batch);

}  // namespace log_file
