// How wide a text stands on a terminal: Chinese, Japanese and Korean characters take two columns, accents that
// combine with the character before them none.
#pragma once

#include <cstddef>
#include <string>

namespace host {

// In columns; `text` is UTF-8. Bytes that are no UTF-8 count one each.
std::size_t DisplayWidth(const std::string& text);

// The beginning that fits in so many columns, with "…" at its end where something was left out.
std::string FitWidth(const std::string& text, std::size_t columns);

// With "?" for control characters: a name from a stranger's file must not steer the terminal.
std::string Printable(std::string text);

}  // namespace host
