#include "record/append_redo.h"

#include <array>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

#include "platform/file.h"
#include "record/ring_file.h"
#include "util/bytes.h"

namespace {

using log_file::RingBlock;
using log_file::RingHeader;
using log_file::RingWrite;
using Points = std::vector<TckPt, je_allocator<TckPt>>;

// CRC-32 and length of the note, then the note itself.
constexpr std::size_t kFrameSize = 8;
constexpr std::size_t kLargestNote = 1 << 22;  // far more than a batch of the largest ring takes

constexpr std::array<std::uint32_t, 256> MakeCrcTable() {
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t byte = 0; byte < table.size(); ++byte) {
        std::uint32_t crc = byte;
        for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xEDB88320u : 0u);
        table[byte] = crc;
    }
    return table;
}

// CRC-32 as in IEEE 802.3.
std::uint32_t Crc32(std::string_view bytes) {
    static constexpr std::array<std::uint32_t, 256> kTable = MakeCrcTable();
    std::uint32_t crc = 0xFFFFFFFFu;
    for (const char byte : bytes) crc = (crc >> 8) ^ kTable[(crc ^ static_cast<unsigned char>(byte)) & 0xFF];
    return ~crc;
}

template <typename Field>
void Put(std::string& note, Field value) {
    unsigned char raw[sizeof value];
    bytes::StoreLittleEndian(value, raw);
    note.append(reinterpret_cast<const char*>(raw), sizeof raw);
}

void Put(std::string& note, RingHeader header) {
    Put(note, header.start);
    Put(note, header.count);
}

// What tells a ring from another one of the same header: its newest record.
struct Mark {
    std::uint16_t slot = 0;
    TckPt record{};
};

// Of a ring without records every mark is the same.
Mark MarkOf(std::FILE* ring, RingHeader header) {
    Mark mark;
    if (header.count == 0) return mark;
    mark.slot = static_cast<std::uint16_t>((header.start == 0 ? header.count : header.start) - 1);
    log_file::ReadSlot(ring, mark.slot, mark.record);
    return mark;
}

void Put(std::string& note, const TckPt& record) {
    note.append(reinterpret_cast<const char*>(&record), sizeof record);
}

void PutBlock(std::string& note, const RingBlock& block, const Points& batch) {
    Put(note, static_cast<std::uint16_t>(block.slot));
    Put(note, static_cast<std::uint16_t>(block.points + block.zeros));
    for (std::size_t i = 0; i < block.points; ++i) Put(note, batch[block.firstPoint + i]);
    note.append(block.zeros * sizeof(TckPt), '\0');
}

std::string NoteOf(const Mark& mark, RingHeader before, const RingWrite& plan, const Points& batch) {
    std::string note;
    Put(note, before);
    Put(note, plan.header);
    Put(note, mark.slot);
    Put(note, mark.record);
    for (std::size_t i = 0; i < plan.blockCount; ++i) PutBlock(note, plan.blocks[i], batch);
    return note;
}

std::string Framed(const std::string& note) {
    std::string framed;
    Put(framed, Crc32(note));
    Put(framed, static_cast<std::uint32_t>(note.size()));
    return framed + note;
}

// A note taken apart again.
struct Noted {
    struct Block {
        std::size_t slot;
        Points records;
    };
    RingHeader before;
    RingHeader after;
    Mark mark;
    std::vector<Block> blocks;
};

// Takes fields off the front of a note; fails for good at the first that is not there whole.
class NoteReader {
 public:
    explicit NoteReader(std::string_view note) : m_note(note) {}

    bool AtEnd() const { return m_note.empty(); }
    bool Take(void* to, std::size_t size) {
        if (m_note.size() < size) return false;
        m_note.copy(static_cast<char*>(to), size);
        m_note.remove_prefix(size);
        return true;
    }
    bool Take(std::uint16_t& number) {
        unsigned char raw[sizeof number];
        if (!Take(raw, sizeof raw)) return false;
        number = bytes::LoadLittleEndian<std::uint16_t>(raw);
        return true;
    }
    bool Take(RingHeader& header) { return Take(header.start) && Take(header.count); }
    bool Take(Noted::Block& block) {
        std::uint16_t slot = 0;
        std::uint16_t count = 0;
        if (!Take(slot) || !Take(count) || m_note.size() < count * sizeof(TckPt)) return false;
        block.slot = slot;
        block.records.resize(count);
        return Take(block.records.data(), count * sizeof(TckPt));
    }

 private:
    std::string_view m_note;
};

// nullopt for what is no note of ours, or one that would lead out of the ring.
std::optional<Noted> TakeApart(std::string_view note) {
    Noted noted;
    NoteReader reader(note);
    if (!reader.Take(noted.before) || !reader.Take(noted.after) || !reader.Take(noted.mark.slot) ||
        !reader.Take(&noted.mark.record, sizeof(TckPt)))
        return std::nullopt;
    while (!reader.AtEnd()) {
        Noted::Block block;
        if (!reader.Take(block) || block.slot + block.records.size() > noted.after.count) return std::nullopt;
        noted.blocks.push_back(std::move(block));
    }
    return noted;
}

// nullopt for a note that is void or was not written to its end.
std::optional<std::string> ReadNote(std::FILE* file) {
    unsigned char frame[kFrameSize];
    if (std::fseek(file, 0, SEEK_SET) != 0 || std::fread(frame, sizeof frame, 1, file) != 1)
        return std::nullopt;
    const std::size_t size = bytes::LoadLittleEndian<std::uint32_t>(frame + 4);
    if (size == 0 || size > kLargestNote) return std::nullopt;
    std::string note(size, '\0');
    if (std::fread(note.data(), size, 1, file) != 1) return std::nullopt;
    if (Crc32(note) != bytes::LoadLittleEndian<std::uint32_t>(frame)) return std::nullopt;
    return note;
}

bool Same(RingHeader a, RingHeader b) { return a.start == b.start && a.count == b.count; }
bool Same(const TckPt& a, const TckPt& b) { return std::memcmp(&a, &b, sizeof a) == 0; }

// What the append leaves in the mark's slot; null when it leaves it alone.
const TckPt* WrittenOver(const Noted& noted) {
    const TckPt* record = nullptr;
    for (const Noted::Block& block : noted.blocks)
        if (noted.mark.slot >= block.slot && noted.mark.slot < block.slot + block.records.size())
            record = &block.records[noted.mark.slot - block.slot];
    return record;
}

// Whether the note was made for this ring, which may be as before the append, as after it, or torn between.
bool IsFor(const Noted& noted, std::FILE* ring) {
    const auto now = log_file::ReadHeader(ring);
    if (!now || !(Same(*now, noted.before) || Same(*now, noted.after))) return false;
    if (noted.before.count == 0) return true;
    TckPt record{};
    log_file::ReadSlot(ring, noted.mark.slot, record);
    const TckPt* later = WrittenOver(noted);
    return Same(record, noted.mark.record) || (later != nullptr && Same(record, *later));
}

}  // namespace

void log_file::AppendRedo::Open(const char* path) {
    Close();
    m_bKept = false;
    m_pFile = OpenOrMake(path);
    m_bNoted = m_pFile != nullptr && ReadNote(m_pFile).has_value();
}

void log_file::AppendRedo::Close() {
    if (!m_bKept) Forget();
    platform::fclose(m_pFile);
    m_pFile = nullptr;
}

void log_file::AppendRedo::Note(std::FILE* ring, RingHeader before, const RingWrite& plan,
                                const Points& batch) {
    if (m_pFile == nullptr || std::fseek(m_pFile, 0, SEEK_SET) != 0) return;
    const std::string framed = Framed(NoteOf(MarkOf(ring, before), before, plan, batch));
    m_bNoted = true;  // also when only a part of it can be written
    m_bKept = false;
    std::fwrite(framed.data(), framed.size(), 1, m_pFile);
    platform::fflush(m_pFile);
}

void log_file::AppendRedo::Forget() {
    if (m_pFile == nullptr || !m_bNoted || std::fseek(m_pFile, 0, SEEK_SET) != 0) return;
    const std::string nothing(kFrameSize, '\0');
    std::fwrite(nothing.data(), nothing.size(), 1, m_pFile);
    m_bNoted = platform::fflush(m_pFile) != 0;
}

std::optional<RingHeader> log_file::AppendRedo::Replay(std::FILE* ring) const {
    const auto note = m_pFile == nullptr ? std::nullopt : ReadNote(m_pFile);
    const auto noted = note ? TakeApart(*note) : std::nullopt;
    if (!noted || !IsFor(*noted, ring) || std::fseek(ring, 0, SEEK_SET) != 0) return std::nullopt;
    WriteHeader(ring, noted->after);
    for (const Noted::Block& block : noted->blocks) {
        WriteSlots(ring, block.slot, block.records);
        if (&block != &noted->blocks.back() && !Commit(ring)) break;  // as Execute
    }
    return noted->before;
}
