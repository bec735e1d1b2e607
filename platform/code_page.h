// Conversions between code pages and UTF-16. A wide string holds UTF-16 code units, one an element, on every
// system. Invalid input is replaced, never refused; a conversion fails only as stated here. Any thread.
#pragma once

namespace platform {

inline constexpr unsigned kAnsiCodePage = 0;  // what SetAnsiCodePage chose (platform/device.h)
inline constexpr unsigned kUtf8CodePage = 65001;

// Converts `length` bytes (-1: up to and including the terminator) into at most `size` UTF-16 code units.
// Returns the units written, or the units needed when `size` is 0 (then nothing is written). 0 for an unknown
// code page, a length of 0, a null source, a negative size, or a destination too small: what fitted is left
// there, without a terminator. Nothing behind what is written is touched. Invalid bytes become U+FFFD ('?' in
// double-byte pages).
int MultiByteToWideChar(unsigned codePage, const char* source, int length, wchar_t* destination, int size);

// The way back, with the same answers. What the code page lacks becomes '?', one a code unit; in UTF-8 a lone
// surrogate becomes U+FFFD.
int WideCharToMultiByte(unsigned codePage, const wchar_t* source, int length, char* destination, int size);

// Whether the byte begins a two-byte character of the ANSI code page. False for every byte in UTF-8, where no
// byte of a longer character can be taken for another one.
bool IsDBCSLeadByte(unsigned char byte);

}  // namespace platform
