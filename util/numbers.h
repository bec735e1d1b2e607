// Numbers as texts. They read and write what atoi, atof and printf do in the C locale, whatever locale the
// process runs in. Plain functions without state; any thread; nothing is thrown or allocated.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace numbers {

// Reads leading blanks, one sign and decimal digits, and stops at the first character that is none of these; 0
// without a digit. A number beyond 64 bits counts as the nearest that has 64; of the result the low 32 bits are
// taken, so the unsigned colour 4278190335 is -16776961.
std::int32_t ParseInteger(std::string_view text);

// Reads leading blanks, one sign and a decimal number with optional fraction and exponent, a hexadecimal one
// (0x), "inf", "infinity" or "nan" in any letter case, and stops where that ends; 0 without a number. The
// result is the nearest double; a number too large is an infinity, one too small a zero, each with its sign.
double ParseReal(std::string_view text);

// Reads what most numbers in a document are: a minus sign or none, then digits with a point or none among them.
// Returns where it ends; null, with `value` not defined, when no such number stands at `at`, in a
// zero-terminated text. What follows is the caller's to look at: where it ends the number for ParseReal too,
// both give the same value.
const char* ReadPlainReal(const char* at, double& value);

inline constexpr std::size_t kIntegerRoom = 11;  // what WriteInteger and WriteReal need at most
inline constexpr std::size_t kRealRoom = 320;

// Writes the number as "%d" does; returns the end of what was written. No terminator.
char* WriteInteger(std::int32_t value, char* to);

// As "%f": six decimals, rounded from the exact value, a half to the even digit; also "inf", "nan", each with
// its minus sign.
char* WriteReal(double value, char* to);

}  // namespace numbers
