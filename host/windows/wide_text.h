// Texts as the system takes them, in UTF-16, and as the program keeps them, in UTF-8. What is malformed becomes
// U+FFFD.
#pragma once

#include <string>
#include <string_view>

namespace host {

std::wstring WideText(std::string_view utf8);
std::string NarrowText(std::wstring_view wide);

}  // namespace host
