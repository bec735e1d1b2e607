// Numbers in documents: the same under every locale, and exact. As the user reads them: host/text/text.h.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace host {

// The shortest decimal number, without exponent, that reads back as exactly this value; finite values only.
std::string ExactText(double value);

// The shortest that reads back as the same value in single precision, which is how tracks keep altitudes and
// courses: 432.1 stored and read again is 432.100006, and "432.1" here.
std::string SingleText(double value);

// The whole text, blanks around it aside, as a finite decimal number.
std::optional<double> ReadNumber(std::string_view text);

std::string_view WithoutBlanks(std::string_view text);

}  // namespace host
