// The check sequence of a stored point: the 16-bit frame check sequence of PPP over its first 40 bytes.
// Which bytes it lies in: record/log_format.h. Inner to the library.
#pragma once

#include <cstddef>
#include <cstdint>

#include "track/point.h"

namespace fcs16 {

// Check sequence of `size` bytes. Any thread; never fails.
// Source: RFC 1662, appendix C.2; the same as CRC-16/X-25.
std::uint16_t CheckSequence(const unsigned char* bytes, std::size_t size);

// Stores the check sequence of the point's first 40 bytes in the two bytes behind them.
void Stamp(TckPt& point);

// Whether the point carries the check sequence of its first 40 bytes. A point of zeros does not.
bool IsValid(const TckPt& point);

}  // namespace fcs16
