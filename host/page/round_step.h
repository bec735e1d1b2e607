// Round numbers for axes, graticules and scale bars.
#pragma once

#include <vector>

namespace host {

// The next 1, 2 or 5 times a power of ten that is not below; `atLeast` > 0.
double RoundStep(double atLeast);

// The whole multiples of a step from `low` to `high`, some hundreds at most.
std::vector<double> Multiples(double step, double low, double high);

}  // namespace host
