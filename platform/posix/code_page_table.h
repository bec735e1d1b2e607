// Code pages of one or two bytes a character, as tables made once from the system's converter.
#pragma once

#include <array>
#include <bitset>
#include <cstdint>

namespace platform {

// A character's code is its byte, or lead byte << 8 | trail byte; lead bytes are 0x80 and above, so the two
// never meet.
struct CodePageTable {
    unsigned codePage;
    std::array<std::uint16_t, 0x10000> units;  // by code: the UTF-16 unit, '?' where the page has none
    std::array<std::uint16_t, 0x10000> codes;  // by UTF-16 unit: the code, '?' where the page has none
    std::bitset<0x100> isLead;
};

// The table of a page. Null for a number that the system's converter does not know, and for pages that do not
// hold ASCII in its place or take more than two bytes a character: device paths and track names could not be
// read in them. It lives as long as the process. Any thread; the first call for a page takes some milliseconds.
const CodePageTable* FindCodePageTable(unsigned codePage);

}  // namespace platform
