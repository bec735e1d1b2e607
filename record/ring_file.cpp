#include "record/ring_file.h"

#include <algorithm>
#include <limits>

#include "util/bytes.h"

namespace {

using log_file::RingBlock;
using Points = std::vector<TckPt, je_allocator<TckPt>>;

void WriteField(std::FILE* file, std::uint16_t value) {
    unsigned char field[sizeof value];
    bytes::StoreLittleEndian(value, field);
    std::fwrite(field, sizeof field, 1, file);
}

// Also what has to come between reading and writing a stream, in either order.
bool SeekToSlot(std::FILE* file, std::size_t slot) {
    return std::fseek(file, static_cast<long>(log_file::FileSizeOf(slot)), SEEK_SET) == 0;
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

std::int64_t log_file::SizeOf(std::FILE* file) {
    const long size = std::fseek(file, 0, SEEK_END) == 0 ? std::ftell(file) : -1;
    std::rewind(file);
    return size < 0 ? std::numeric_limits<std::int64_t>::max() : size;
}

std::optional<log_file::RingHeader> log_file::ReadHeader(std::FILE* file) {
    unsigned char header[kHeaderSize];
    if (std::fseek(file, 0, SEEK_SET) != 0) return std::nullopt;
    if (std::fread(header, sizeof header, 1, file) != 1) return std::nullopt;
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
    record = {};
    if (SeekToSlot(file, slot)) ReadRecord(file, record);
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

void log_file::Execute(std::FILE* file, const RingWrite& plan, const Points& batch) {
    if (std::fseek(file, 0, SEEK_SET) != 0) return;
    WriteHeader(file, plan.header);
    for (std::size_t i = 0; i < plan.blockCount; ++i) WriteBlock(file, plan.blocks[i], batch);
}
