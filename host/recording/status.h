// The line that a recording shows while it runs, as text. Where it is drawn: host/recording/status_line.h.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace host {

struct Status {
    long time = 0;        // of the newest fix [s since 1970]; 0 before the first
    bool hasFix = false;  // the newest fix is a fresh one
    double speed = 0;     // [m/s]
    double distance = 0;  // [m] recorded by this run
    std::uint64_t fixes = 0;
    std::uint64_t points = 0;  // of this run, the waiting ones included
    std::int64_t behind = 0;   // [s] from the last point to the newest fix
    int slices = 0;
    double fill = 0;              // of the ring, 0 to 1
    std::optional<double> share;  // of a file, 0 to 1
};

// "08:15:07 UTC  fix  43 km/h  1.24 km  98 points  1 slice  ring 1.0 %"; "98 points, 12 s behind" when there
// was none for a while.
std::string LiveText(const Status& status);

// "[########............]  41 %  125000 fixes/s  0:07 left  51234 points"; `elapsed` [s] since the beginning.
std::string FileText(const Status& status, double elapsed);

// The beginning of an ASCII text that fits in so many columns: a line that wraps could not be taken back.
std::string CutToWidth(const std::string& text, std::size_t columns);

}  // namespace host
