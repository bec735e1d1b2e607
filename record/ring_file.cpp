#include "record/ring_file.h"

#include <algorithm>
#include <limits>

#include "platform/file.h"
#include "util/bytes.h"

namespace {

using log_file::RingBlock;
using Points = std::vector<TckPt, je_allocator<TckPt>>;

void WriteField(std::FILE* file, std::uint16_t value) {
    unsigned char field[sizeof value];
    bytes::StoreLittleEndian(value, field);
    std::fwrite(field, sizeof field, 1, file);
}

// An error that passes costs nothing: it is tried twice.
bool SeekTo(std::FILE* file, long place, int from = SEEK_SET) {
    return std::fseek(file, place, from) == 0 || std::fseek(file, place, from) == 0;
}

// Also what has to come between reading and writing a stream, in either order.
bool SeekToSlot(std::FILE* file, std::size_t slot) {
    return SeekTo(file, static_cast<long>(log_file::FileSizeOf(slot)));
}

long PlaceIn(std::FILE* file) {
    const long place = std::ftell(file);
    return place < 0 ? std::ftell(file) : place;
}

// Returns the bytes read; likewise, what is left is read once more.
std::size_t ReadAt(std::FILE* file, long place, void* to, std::size_t size) {
    if (!SeekTo(file, place)) return 0;
    std::size_t done = std::fread(to, 1, size, file);
    if (done == size || std::ferror(file) == 0) return done;
    std::clearerr(file);
    if (!SeekTo(file, place + static_cast<long>(done))) return done;
    return done + std::fread(static_cast<unsigned char*>(to) + done, 1, size - done, file);
}

Points WithZeros(const RingBlock& block, const Points& batch) {
    Points records(block.points + block.zeros, TckPt{});
    std::copy_n(batch.data() + block.firstPoint, block.points, records.data());
    return records;
}

// Where the place cannot be reached nothing is written: records in another place would be worse than none.
void WriteBlock(std::FILE* file, const RingBlock& block, const Points& batch) {
    if (!SeekToSlot(file, block.slot)) return;
    if (block.zeros != 0) return log_file::WriteRecords(file, WithZeros(block, batch));
    std::fwrite(batch.data() + block.firstPoint, sizeof(TckPt), block.points, file);
}

}  // namespace

std::FILE* log_file::OpenOrMake(const char* path, bool* isNew) {
    std::FILE* const existing = platform::fopen(path, "rbc+");
    if (existing != nullptr) return existing;
    std::FILE* const made = platform::fopen(path, "wbxc+");
    if (isNew != nullptr) *isNew = made != nullptr;
    return made;
}

std::int64_t log_file::SizeOf(std::FILE* file) {
    const long size = SeekTo(file, 0, SEEK_END) ? PlaceIn(file) : -1;
    std::rewind(file);
    return size < 0 ? std::numeric_limits<std::int64_t>::max() : size;
}

std::optional<log_file::RingHeader> log_file::ReadHeader(std::FILE* file) {
    unsigned char header[kHeaderSize];
    if (ReadAt(file, 0, header, sizeof header) != sizeof header) return std::nullopt;
    return RingHeader{bytes::LoadLittleEndian<std::uint16_t>(header),
                      bytes::LoadLittleEndian<std::uint16_t>(header + 2)};
}

void log_file::WriteHeader(std::FILE* file, RingHeader header) {
    WriteField(file, header.start);
    WriteField(file, header.count);
}

bool log_file::ReadRecord(std::FILE* file, TckPt& record) {
    if (std::fread(&record, sizeof record, 1, file) == 1) return true;
    record = {};
    return false;
}

void log_file::ReadSlot(std::FILE* file, std::size_t slot, TckPt& record) {
    if (ReadAt(file, static_cast<long>(FileSizeOf(slot)), &record, sizeof record) != sizeof record) record = {};
}

bool log_file::ReadRecords(std::FILE* file, Points& records) {
    const std::size_t size = records.size() * kRecordSize;
    const std::size_t whole = ReadAt(file, PlaceIn(file), records.data(), size) / kRecordSize;
    std::fill(records.begin() + static_cast<std::ptrdiff_t>(whole), records.end(), TckPt{});
    return whole == records.size();
}

void log_file::WriteSlots(std::FILE* file, std::size_t slot, const Points& points) {
    if (SeekToSlot(file, slot)) WriteRecords(file, points);
}

void log_file::WriteRecords(std::FILE* file, const Points& points) {
    std::fwrite(points.data(), sizeof(TckPt), points.size(), file);
}

std::string log_file::WholeFile(const Points& points) {
    unsigned char header[kHeaderSize] = {};
    bytes::StoreLittleEndian(static_cast<std::uint16_t>(points.size()), header + 2);
    std::string file(reinterpret_cast<const char*>(header), sizeof header);
    file.append(reinterpret_cast<const char*>(points.data()), points.size() * sizeof(TckPt));
    return file;
}

bool log_file::Commit(std::FILE* file) { return platform::fflush(file) == 0 && std::ferror(file) == 0; }

void log_file::Execute(std::FILE* file, const RingWrite& plan, const Points& batch) {
    if (!SeekTo(file, 0)) return;
    WriteHeader(file, plan.header);
    for (std::size_t i = 0; i < plan.blockCount && (i == 0 || !plan.growsAndTurns || Commit(file)); ++i)
        WriteBlock(file, plan.blocks[i], batch);
}
