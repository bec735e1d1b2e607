// Statistics as the user reads them on the terminal. As JSON: host/text/json.h.
#pragma once

#include <string>

#include "host/tracks/statistics.h"

namespace host {

// "1:28:45", hours:minutes:seconds; days count as 24 hours.
std::string DurationText(long seconds);
// "35.7 km/h" from metres a second.
std::string SpeedText(double metresASecond);
// "840 m²", "1.25 km²".
std::string AreaText(double squareMetres);

// On standard output, a line each; what is not known is left out.
void PrintStatistics(const Statistics& statistics);

// "  label      text" on standard output.
void PrintLabelled(const std::string& label, const std::string& text);

}  // namespace host
