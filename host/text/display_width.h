// How wide a text stands on a terminal: Chinese, Japanese and Korean characters take two columns, accents that
// combine with the character before them none.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace host {

// In columns; `text` is UTF-8. Bytes that are no UTF-8 count one each.
std::size_t DisplayWidth(const std::string& text);

// The beginning that fits in so many columns, with "…" at its end where something was left out.
std::string FitWidth(const std::string& text, std::size_t columns);

// With "?" for each control character: a name from a stranger's file must not steer the terminal, nor turn
// round the writing beside it.
std::string Printable(const std::string& text);

// With "\u009b" for each control character but the line end: the same to whoever reads it as JSON.
std::string EscapeControls(std::string_view json);

// With `instead` for each control character: those below a blank, U+007F to U+009F, and those of the writing
// direction. Of bytes that are no UTF-8, those of these values.
std::string ReplaceControls(std::string_view text, char instead);

}  // namespace host
