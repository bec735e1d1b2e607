// A fix as a source hands it over: the point that may be recorded, and what the receiver says about its worth.
#pragma once

#include <optional>

#include "qtrace.h"

namespace host {

struct Fix : TckPt {
    std::optional<double> hdop;  // horizontal dilution of precision; none when the receiver does not tell
};

}  // namespace host
