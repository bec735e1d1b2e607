#include "record/append_redo.h"

#include <array>
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

void PutBlock(std::string& note, const RingBlock& block, const Points& batch) {
    Put(note, static_cast<std::uint16_t>(block.slot));
    Put(note, static_cast<std::uint16_t>(block.points + block.zeros));
    note.append(reinterpret_cast<const char*>(batch.data() + block.firstPoint), block.points * sizeof(TckPt));
    note.append(block.zeros * sizeof(TckPt), '\0');
}

std::string NoteOf(RingHeader before, const RingWrite& plan, const Points& batch) {
    std::string note;
    Put(note, before);
    Put(note, plan.header);
    for (std::size_t i = 0; i < plan.blockCount; ++i) PutBlock(note, plan.blocks[i], batch);
    return note;
}

std::string Framed(const std::string& note) {
    std::string framed;
    Put(framed, Crc32(note));
    Put(framed, static_cast<std::uint32_t>(note.size()));
    return framed + note;
}

// Takes fields off the front of a note; a note that passed its check has them all.
class NoteReader {
 public:
    explicit NoteReader(std::string_view note) : m_note(note) {}

    bool AtEnd() const { return m_note.empty(); }
    std::uint16_t Number() {
        const auto value =
            bytes::LoadLittleEndian<std::uint16_t>(reinterpret_cast<const unsigned char*>(m_note.data()));
        m_note.remove_prefix(sizeof value);
        return value;
    }
    RingHeader Header() {
        const std::uint16_t start = Number();
        return {start, Number()};
    }
    std::string_view Records(std::size_t count) {
        const std::string_view records = m_note.substr(0, count * sizeof(TckPt));
        m_note.remove_prefix(records.size());
        return records;
    }

 private:
    std::string_view m_note;
};

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

bool operator==(RingHeader a, RingHeader b) { return a.start == b.start && a.count == b.count; }

}  // namespace

void log_file::AppendRedo::Open(const char* path) {
    Close();
    m_pFile = platform::fopen(path, "rbc+");
    if (m_pFile == nullptr) m_pFile = platform::fopen(path, "wbc+");
    m_bNoted = m_pFile != nullptr && ReadNote(m_pFile).has_value();
}

void log_file::AppendRedo::Close() {
    Forget();
    platform::fclose(m_pFile);
    m_pFile = nullptr;
}

void log_file::AppendRedo::Note(RingHeader before, const RingWrite& plan, const Points& batch) {
    if (m_pFile == nullptr || std::fseek(m_pFile, 0, SEEK_SET) != 0) return;
    const std::string framed = Framed(NoteOf(before, plan, batch));
    std::fwrite(framed.data(), framed.size(), 1, m_pFile);
    platform::fflush(m_pFile);
    m_bNoted = true;
}

void log_file::AppendRedo::Forget() {
    if (m_pFile == nullptr || !m_bNoted || std::fseek(m_pFile, 0, SEEK_SET) != 0) return;
    const std::string nothing(kFrameSize, '\0');
    std::fwrite(nothing.data(), nothing.size(), 1, m_pFile);
    platform::fflush(m_pFile);
    m_bNoted = false;
}

bool log_file::AppendRedo::Replay(std::FILE* ring) const {
    const auto note = m_pFile == nullptr ? std::nullopt : ReadNote(m_pFile);
    const auto now = ReadHeader(ring);
    if (!note || !now) return false;
    NoteReader reader(*note);
    const RingHeader before = reader.Header();
    const RingHeader after = reader.Header();
    if (!(*now == before || *now == after) || std::fseek(ring, 0, SEEK_SET) != 0) return false;
    WriteHeader(ring, after);
    while (!reader.AtEnd()) {
        const std::size_t slot = reader.Number();
        const std::string_view records = reader.Records(reader.Number());
        if (std::fseek(ring, static_cast<long>(FileSizeOf(slot)), SEEK_SET) != 0) return true;
        std::fwrite(records.data(), 1, records.size(), ring);
    }
    return true;
}
