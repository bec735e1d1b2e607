// What the platform services answer, printed: one line a call. Every build prints the same lines, but for those
// that tests/builds/differences.txt names with their reason (scripts/compare-builds).
#pragma once

#include <cstdint>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace answers {

// Prints "call => answer".
void Print(const std::string& call, const std::string& answer);

// The units, or bytes, in hexadecimal: "4e2d 0061".
std::string Hex(std::wstring_view units);
std::string Hex(std::string_view bytes);

// A path as it is written in C, with what is not ASCII in hexadecimal.
std::string Quoted(std::wstring_view path);

// What stands at a path now: "-", "folder", or the content.
std::string Content(const std::wstring& path);

// Makes or empties the file first.
void Put(const std::wstring& path, const char* content);

// Paths of exactly that length which lead to that name in the folder: by separators that count as one, and by
// names that stay where they are.
std::vector<std::wstring> Lengthened(const std::wstring& folder, const std::wstring& name, std::size_t length);

inline std::string YesNo(bool answer) { return answer ? "true" : "false"; }

void CodePages();
void Calendar();
void Searches();
void FileNames();
void Lengths();
void Streams();

}  // namespace answers
