// UTF-8 is our own (platform/utf.h); the other pages are tables (platform/posix/code_page_table.h).
#include "platform/code_page.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <cwchar>
#include <type_traits>

#include "platform/device_state.h"
#include "platform/posix/code_page_table.h"
#include "platform/utf.h"

namespace platform {

namespace {

// The destination of a conversion: it takes whole characters while there is room, or with no room at all only
// counts.
template <class Unit>
class Destination {
 public:
    Destination(Unit* start, int size) : m_start(start), m_size(size) {}

    // False when the character does not fit any more.
    template <int Capacity>
    bool Put(const Units<Unit, Capacity>& character) {
        if (m_size > 0) {
            if (character.count > m_size - m_count) return false;
            for (int i = 0; i < character.count; ++i) m_start[m_count + i] = character.values[i];
        }
        m_count += character.count;
        return true;
    }

    int Count() const { return m_count <= INT_MAX ? static_cast<int>(m_count) : 0; }

 private:
    Unit* m_start;
    long long m_size;
    long long m_count = 0;
};

template <class In, class Out>
bool CanConvert(const In* source, int length, const Out* destination, int size) {
    return source != nullptr && length != 0 && size >= 0 && (size == 0 || destination != nullptr);
}

// Every page that may be the ANSI one holds ASCII in its place, so such a text needs no table: making one takes
// longer than all the rest of a host's start.
template <class In>
bool IsAscii(const In* at, const In* end) {
    return std::all_of(at, end, [](In unit) { return static_cast<std::make_unsigned_t<In>>(unit) < 0x80; });
}

template <class In, class Out>
int CopyAscii(const In* at, const In* end, Destination<Out> destination) {
    for (; at < end; ++at)
        if (!destination.Put(Units<Out, 1>{{static_cast<Out>(*at)}, 1})) return 0;
    return destination.Count();
}

unsigned Resolved(unsigned codePage) { return codePage == kAnsiCodePage ? AnsiCodePage() : codePage; }

int WideFromUtf8(const char* at, const char* end, Destination<wchar_t> wide) {
    while (at < end)
        if (!wide.Put(WriteUtf16(ReadUtf8(at, end)))) return 0;
    return wide.Count();
}

int Utf8FromWide(const wchar_t* at, const wchar_t* end, Destination<char> bytes) {
    while (at < end)
        if (!bytes.Put(WriteUtf8(ReadUtf16(at, end)))) return 0;
    return bytes.Count();
}

// A lead byte takes whatever follows it but a terminator; without a byte to take it stands for no character.
wchar_t ReadUnit(const CodePageTable& table, const char*& at, const char* end) {
    const auto first = static_cast<unsigned char>(*at++);
    if (!table.isLead[first]) return table.units[first];
    if (at == end || *at == '\0') return L'?';
    return table.units[static_cast<unsigned>(first << 8 | static_cast<unsigned char>(*at++))];
}

Units<char, 2> WriteCode(const CodePageTable& table, wchar_t unit) {
    const auto index = static_cast<unsigned>(unit);
    const unsigned code = index < table.codes.size() ? table.codes[index] : '?';
    if (code < 0x100) return {{static_cast<char>(code)}, 1};
    return {{static_cast<char>(code >> 8), static_cast<char>(code)}, 2};
}

int WideFromTable(const CodePageTable& table, const char* at, const char* end, Destination<wchar_t> wide) {
    while (at < end)
        if (!wide.Put(Units<wchar_t, 1>{{ReadUnit(table, at, end)}, 1})) return 0;
    return wide.Count();
}

int TableFromWide(const CodePageTable& table, const wchar_t* at, const wchar_t* end, Destination<char> bytes) {
    while (at < end)
        if (!bytes.Put(WriteCode(table, *at++))) return 0;
    return bytes.Count();
}

}  // namespace

int MultiByteToWideChar(unsigned codePage, const char* source, int length, wchar_t* destination, int size) {
    if (!CanConvert(source, length, destination, size)) return 0;
    const char* end = source + (length < 0 ? std::strlen(source) + 1 : static_cast<std::size_t>(length));
    if (codePage == kAnsiCodePage && IsAscii(source, end))
        return CopyAscii<char, wchar_t>(source, end, {destination, size});
    const unsigned page = Resolved(codePage);
    if (page == kUtf8CodePage) return WideFromUtf8(source, end, {destination, size});
    const CodePageTable* table = FindCodePageTable(page);
    return table == nullptr ? 0 : WideFromTable(*table, source, end, {destination, size});
}

int WideCharToMultiByte(unsigned codePage, const wchar_t* source, int length, char* destination, int size) {
    if (!CanConvert(source, length, destination, size)) return 0;
    const wchar_t* end = source + (length < 0 ? std::wcslen(source) + 1 : static_cast<std::size_t>(length));
    if (codePage == kAnsiCodePage && IsAscii(source, end))
        return CopyAscii<wchar_t, char>(source, end, {destination, size});
    const unsigned page = Resolved(codePage);
    if (page == kUtf8CodePage) return Utf8FromWide(source, end, {destination, size});
    const CodePageTable* table = FindCodePageTable(page);
    return table == nullptr ? 0 : TableFromWide(*table, source, end, {destination, size});
}

bool CanBeAnsiCodePage(unsigned codePage) {
    return codePage == kUtf8CodePage || FindCodePageTable(codePage) != nullptr;
}

bool IsDBCSLeadByte(unsigned char byte) {
    if (byte < 0x80) return false;
    const unsigned page = AnsiCodePage();
    const CodePageTable* table = page == kUtf8CodePage ? nullptr : FindCodePageTable(page);
    return table != nullptr && table->isLead[byte];
}

}  // namespace platform
