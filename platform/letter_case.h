// Letter case of file names: one UTF-16 unit at a time, the same in every locale.
#pragma once

#include <string_view>

namespace platform {

// The capital of a small letter of the Latin, Greek, Cyrillic and Armenian alphabets, Roman numerals, circled
// and full-width letters; every other unit as it is. Only letters whose capital is a single unit of its own
// take part.
wchar_t Capital(wchar_t unit);

bool EqualIgnoringCase(std::wstring_view a, std::wstring_view b);

// Order by capitals; texts that differ in letter case alone in the order of their units.
bool LessIgnoringCase(std::wstring_view a, std::wstring_view b);

}  // namespace platform
