#include "platform/posix/code_page_table.h"

#include <iconv.h>

#include <atomic>
#include <cerrno>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace platform {

namespace {

constexpr std::uint16_t kMissing = '?';

// The bytes that begin two-byte characters. The converter knows those of its own characters alone, not those of
// the areas that users may fill.
struct LeadBytes {
    unsigned codePage;
    unsigned first;
    unsigned last;
};

constexpr LeadBytes kLeadBytes[] = {
    {932, 0x81, 0x9F}, {932, 0xE0, 0xFC}, {936, 0x81, 0xFE}, {949, 0x81, 0xFE}, {950, 0x81, 0xFE}};

// Windows' numbers of pages that the converter knows by their own names alone.
constexpr struct {
    unsigned codePage;
    const char* name;
} kNames[] = {{20127, "US-ASCII"},    {20866, "KOI8-R"},     {21866, "KOI8-U"},     {28591, "ISO-8859-1"},
              {28592, "ISO-8859-2"},  {28593, "ISO-8859-3"}, {28594, "ISO-8859-4"}, {28595, "ISO-8859-5"},
              {28596, "ISO-8859-6"},  {28597, "ISO-8859-7"}, {28598, "ISO-8859-8"}, {28599, "ISO-8859-9"},
              {28603, "ISO-8859-13"}, {28605, "ISO-8859-15"}};

// One direction of the system's converter.
class Converter {
 public:
    Converter(const std::string& to, const std::string& from)
        : m_handle(iconv_open(to.c_str(), from.c_str())) {}
    ~Converter() {
        if (IsKnown()) iconv_close(m_handle);
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    bool IsKnown() const { return m_handle != reinterpret_cast<iconv_t>(-1); }

    // Converts one character. Its bytes go to `output`; their number, or the error: EINVAL when it needs more
    // bytes.
    struct Result {
        int error;
        std::size_t size;
        unsigned char output[16];
    };
    Result Convert(const unsigned char* input, std::size_t size) {
        Result result{};
        char* in = const_cast<char*>(reinterpret_cast<const char*>(input));
        char* out = reinterpret_cast<char*>(result.output);
        std::size_t room = sizeof result.output;
        iconv(m_handle, nullptr, nullptr, nullptr, nullptr);
        const bool isConverted = iconv(m_handle, &in, &size, &out, &room) != static_cast<std::size_t>(-1);
        if (!isConverted) result.error = errno;
        // Pages with combining marks hold a letter back until they know that no mark follows.
        if (isConverted) iconv(m_handle, nullptr, nullptr, &out, &room);
        result.size = sizeof result.output - room;
        return result;
    }

 private:
    iconv_t m_handle;
};

class TableMaker {
 public:
    explicit TableMaker(unsigned codePage)
        : m_codePage(codePage), m_decoder("UTF-16LE", Name(codePage)), m_encoder(Name(codePage), "UTF-16LE") {}

    // Null when the page is none of ours.
    std::unique_ptr<CodePageTable> Make() {
        if (!m_decoder.IsKnown() || !m_encoder.IsKnown()) return nullptr;
        m_table->codePage = m_codePage;
        m_table->units.fill(kMissing);
        m_table->codes.fill(kMissing);
        ReadSingleBytes();
        if (!HoldsAscii() || !ReadDoubleBytes()) return nullptr;
        AddWhatTheConverterLacks();
        FillCodes();
        return std::move(m_table);
    }

 private:
    static std::string Name(unsigned codePage) {
        for (const auto& [number, name] : kNames)
            if (number == codePage) return name;
        return "CP" + std::to_string(codePage);
    }

    // The unit of one character; nothing when its bytes are incomplete, kMissing when they are no character.
    std::optional<std::uint16_t> Decode(const unsigned char* bytes, std::size_t size) {
        const auto result = m_decoder.Convert(bytes, size);
        if (result.error == EINVAL) return std::nullopt;
        if (result.error != 0 || result.size != 2) return kMissing;
        return static_cast<std::uint16_t>(result.output[0] | result.output[1] << 8);
    }

    void ReadSingleBytes() {
        for (unsigned byte = 0; byte < 0x100; ++byte) {
            const auto character = static_cast<unsigned char>(byte);
            const auto unit = Decode(&character, 1);
            m_table->isLead[byte] = !unit;
            if (unit) m_table->units[byte] = *unit;
        }
        for (const LeadBytes& leads : kLeadBytes)
            for (unsigned byte = leads.first; leads.codePage == m_codePage && byte <= leads.last; ++byte)
                m_table->isLead[byte] = true;
    }

    bool HoldsAscii() const {
        for (unsigned byte = 0; byte < 0x80; ++byte)
            if (m_table->units[byte] != byte || m_table->isLead[byte]) return false;
        return true;
    }

    // False when two bytes do not complete a character.
    bool ReadDoubleBytes() {
        for (unsigned code = 0x8000; code < 0x10000; ++code) {
            const unsigned char bytes[] = {static_cast<unsigned char>(code >> 8),
                                           static_cast<unsigned char>(code)};
            if (!m_table->isLead[bytes[0]]) continue;
            const auto unit = Decode(bytes, 2);
            if (!unit) return false;
            m_table->units[code] = *unit;
        }
        return true;
    }

    void AddWhatTheConverterLacks() {
        for (unsigned byte = 0x80; byte < 0xA0; ++byte)
            if (!m_table->isLead[byte]) Add(byte, byte);
        if (m_codePage == 936) AddChineseUserDefined();
    }

    // The three areas that users of page 936 may fill, in the order of their characters U+E000 to U+E765, and
    // then whatever else is left of the page, up to U+E864.
    void AddChineseUserDefined() {
        unsigned unit = 0xE000;
        AddRows(0xAA, 0xAF, 0xA1, 0xFE, unit);
        AddRows(0xF8, 0xFE, 0xA1, 0xFE, unit);
        AddRows(0xA1, 0xA7, 0x40, 0xA0, unit);
        AddRows(0x81, 0xFE, 0x40, 0xFE, unit);
        Add(0x80, 0x20AC);
        m_table->isLead[0xFF] = false;
        Add(0xFF, 0xF8F5);
    }

    void AddRows(unsigned firstLead, unsigned lastLead, unsigned firstTrail, unsigned lastTrail,
                 unsigned& unit) {
        for (unsigned lead = firstLead; lead <= lastLead; ++lead)
            for (unsigned trail = firstTrail; trail <= lastTrail; ++trail)
                if (trail != 0x7F && Add(lead << 8 | trail, unit)) ++unit;
    }

    // False when the converter has that one.
    bool Add(unsigned code, unsigned unit) {
        if (m_table->units[code] != kMissing) return false;
        m_table->units[code] = static_cast<std::uint16_t>(unit);
        return true;
    }

    void FillCodes() {
        for (unsigned code = 0; code < 0x10000; ++code) {
            const std::uint16_t unit = m_table->units[code];
            if (unit == kMissing) continue;
            std::uint16_t& known = m_table->codes[unit];
            known = known == kMissing ? static_cast<std::uint16_t>(code) : Preferred(unit, known);
        }
    }

    // A character that the page holds twice: the converter knows which of them is written.
    std::uint16_t Preferred(std::uint16_t unit, std::uint16_t otherwise) {
        const unsigned char bytes[] = {static_cast<unsigned char>(unit), static_cast<unsigned char>(unit >> 8)};
        const auto result = m_encoder.Convert(bytes, 2);
        if (result.error != 0 || result.size < 1 || result.size > 2) return otherwise;
        if (result.size == 1) return result.output[0];
        return static_cast<std::uint16_t>(result.output[0] << 8 | result.output[1]);
    }

    unsigned m_codePage;
    Converter m_decoder;
    Converter m_encoder;
    std::unique_ptr<CodePageTable> m_table = std::make_unique<CodePageTable>();
};

// Never destroyed: a background thread may still convert while the process ends.
struct Cache {
    std::mutex guard;
    std::map<unsigned, std::unique_ptr<CodePageTable>> tables;
};

Cache& TheCache() {
    static Cache& cache = *new Cache;
    return cache;
}

const CodePageTable* CachedTable(unsigned codePage) {
    Cache& cache = TheCache();
    const std::lock_guard lock(cache.guard);
    const auto [entry, isNew] = cache.tables.try_emplace(codePage);
    if (isNew) entry->second = TableMaker(codePage).Make();
    return entry->second.get();
}

}  // namespace

const CodePageTable* FindCodePageTable(unsigned codePage) {
    static std::atomic<const CodePageTable*> recent = nullptr;
    const CodePageTable* table = recent.load(std::memory_order_acquire);
    if (table != nullptr && table->codePage == codePage) return table;
    table = CachedTable(codePage);
    if (table != nullptr) recent.store(table, std::memory_order_release);
    return table;
}

}  // namespace platform
