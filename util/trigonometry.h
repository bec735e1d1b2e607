// Sine, cosine and arc tangent that are the same bits on every system. Those of the C libraries differ in the
// last one, even between two processors under the same library, and a track's stored length would with them.
// Only + - * / of doubles are used, which every processor rounds alike. Plain functions without state; any
// thread; nothing is thrown or allocated.
#pragma once

namespace trigonometry {

struct SineCosine {
    double sine;
    double cosine;
};

// Of an angle [rad] of any size; off by less than one unit in the last place. An angle that is infinite or no
// number has results that are no number. The sine of -0 is -0.
double Sine(double radians);
double Cosine(double radians);

// Both, for little more than the price of one.
SineCosine SineAndCosine(double radians);

// The angle [rad], -pi to pi, from the positive x axis to the position (x, y); off by about one unit in the
// last place at most. Signed zeros and infinities count as they do for std::atan2: the angle of (-1, -0) is
// -pi, that of (0, 0) is 0. No number in gives no number.
double ArcTangent(double y, double x);

}  // namespace trigonometry
