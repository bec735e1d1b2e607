#include "host/page/round_step.h"

#include <cmath>

namespace host {

double RoundStep(double atLeast) {
    const double power = std::pow(10, std::floor(std::log10(atLeast)));
    for (const double digit : {1.0, 2.0, 5.0})
        if (digit * power >= atLeast * 0.999) return digit * power;
    return 10 * power;
}

std::vector<double> Multiples(double step, double low, double high) {
    std::vector<double> values;
    const double first = std::ceil(low / step - 1e-9), last = std::floor(high / step + 1e-9);
    for (double n = first; n <= last && values.size() < 400; ++n)
        values.push_back(n == 0 ? 0 : n * step);  // never -0
    return values;
}

}  // namespace host
